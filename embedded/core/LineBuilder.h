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
};

/// Turns polylines into separate lines. What cannot be drawn is left out and noted in \a faults.
ORVANE_API MeshData buildLines(const LineSource& source, MeshFaults& faults);

/// The points that can be drawn, with their colours by number.
ORVANE_API MeshData buildPoints(const std::vector<osg::Vec3f>& points,
                                const MeshAttribute<osg::Color3f>& colors,
                                const MeshAttribute<osg::Color4f>& colorsRGBA, MeshFaults& faults);

} // namespace Orvane
