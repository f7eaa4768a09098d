#pragma once

#include "core/MeshBuilder.h"
#include "core/MeshData.h"
#include "core/MeshFaults.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// What a set of lines is made of. Colours per vertex are picked by their index, else by that of the point;
/// colours per line by their index, else in order.
struct LineSource
{
    const std::vector<osg::Vec3f>* points = nullptr;
    const std::vector<int>* index = nullptr; ///< lines that end with -1 each; the last one may lack it
    MeshAttribute<osg::Color3f> colors;
    MeshAttribute<osg::Color4f> colorsRGBA;
    bool wantsPoints = false; ///< the mesh tells of its vertices which point each one shows
};

/// Turns polylines into separate lines. What cannot be drawn is left out and noted in \a faults.
ORVANE_API MeshData buildLines(const LineSource& source, MeshFaults& faults);

/// What a set of points is made of. Colours go by number.
struct PointSource
{
    const std::vector<osg::Vec3f>* points = nullptr;
    MeshAttribute<osg::Color3f> colors;
    MeshAttribute<osg::Color4f> colorsRGBA;
    bool wantsPoints = false; ///< as above
};

/// The points that can be drawn.
ORVANE_API MeshData buildPoints(const PointSource& source, MeshFaults& faults);

} // namespace Orvane
