#pragma once

#include "core/FaceList.h"
#include "core/MeshData.h"
#include "core/MeshFaults.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// Values that the corners or the faces of a mesh pick from a list: normals, colours, texture coordinates.
/// Refers to fields of nodes.
template <class Value>
struct MeshAttribute
{
    const std::vector<Value>* values = nullptr; ///< null when the mesh brings none
    const std::vector<int>* index = nullptr;    ///< null or empty: numbers of points or of faces serve
    bool perVertex = true;

    bool isGiven() const { return values && !values->empty(); }
};

/// What a mesh of polygons is made of.
struct MeshSource
{
    const FaceList* faces = nullptr;
    MeshAttribute<osg::Vec3f> normals;
    MeshAttribute<osg::Color3f> colors;
    MeshAttribute<osg::Color4f> colorsRGBA;
    MeshAttribute<osg::Vec2f> texCoords;
    /// Several sets of coordinates, all picked by the index of `texCoords`, in place of its values.
    const std::vector<TexCoordView>* texCoordSets = nullptr;
    bool ccw = true;
    bool convex = true;
    bool wantsPoints = false; ///< the mesh tells of its vertices which point each one shows
    float creaseAngle = 0.0F; ///< radians, for normals that are to be made
};

/// Turns polygons into triangles with normals. What cannot be drawn is left out and noted in \a faults.
ORVANE_API MeshData buildMesh(const MeshSource& source, MeshFaults& faults);

/// Gives a mesh the texture coordinates that X3D asks for where the scene has none: along the two longest
/// sides of the bounding box, from 0 to 1 along the longest. Pairs.
ORVANE_API std::vector<float> defaultTexCoords(const std::vector<osg::Pnt3f>& positions);

} // namespace Orvane
