#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Orvane {

/// Texture coordinates of the vertices of a mesh.
struct TexCoordSet
{
    unsigned int dimension = 2; ///< numbers of each vertex, 2 to 4
    std::vector<float> values;  ///< empty when there are none
};

/// A list of texture coordinates that stands elsewhere.
struct TexCoordView
{
    const float* values = nullptr;
    std::size_t count = 0; ///< coordinates, of `dimension` numbers each
    unsigned int dimension = 0;
};

/// Triangles, lines or points as they are drawn: one list of values per property, all of the same length or
/// empty, and indices into them. Without indices the vertices are drawn in their order.
struct MeshData
{
    std::vector<osg::Pnt3f> positions;
    std::vector<osg::Vec3f> normals;
    std::vector<osg::Color4f> colors;
    std::vector<float> texCoords;          ///< pairs
    std::vector<TexCoordSet> texCoordSets; ///< by number; when not empty, these count in place of `texCoords`
    std::vector<std::uint32_t> indices;
    std::vector<std::uint32_t>
        points; ///< of each vertex the number of its point, where the builder was asked
};

/// A coordinate that can be drawn: a finite number, of a size whose squares are finite too.
inline bool isDrawable(float coordinate)
{
    return coordinate > -1e15F && coordinate < 1e15F;
}

inline bool isDrawable(const osg::Pnt3f& p)
{
    return isDrawable(p[0]) && isDrawable(p[1]) && isDrawable(p[2]);
}

} // namespace Orvane
