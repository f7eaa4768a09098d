#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

/// The axes in which a cross-section stands at a joint of a spine: \a y along the spine, all of length 1.
struct SpineFrame
{
    osg::Vec3f x{1.0F, 0.0F, 0.0F};
    osg::Vec3f y{0.0F, 1.0F, 0.0F};
    osg::Vec3f z{0.0F, 0.0F, 1.0F};
};

/// The frames of all joints of a spine, as ISO/IEC 19775-1 tells for `Extrusion`: Z stands on the plane of
/// the bend, and is taken over from the neighbours where the spine runs straight. A spine that is straight
/// from end to end turns the axes of space by the shortest way.
ORVANE_API std::vector<SpineFrame> spineFrames(const std::vector<osg::Vec3f>& spine);

} // namespace Orvane
