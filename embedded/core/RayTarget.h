#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace Orvane {

/// What of a scene a ray or a picture meets, as traversal masks of OpenSG's nodes. Most nodes belong to all.
enum RayTarget : osg::UInt32 {
    PictureTarget = 1,  ///< what is seen
    ObstacleTarget = 2, ///< what stands in the way of the viewer
    /// What is seen in generated cube maps: all but the shapes that show them. The first of several.
    FirstMapTarget = 0x100,
    AllTargets = ~osg::UInt32(0)
};

/// The number of targets of generated cube maps.
constexpr unsigned int MapTargets = 16;

} // namespace Orvane
