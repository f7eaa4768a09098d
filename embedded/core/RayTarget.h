#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace Orvane {

/// What of a scene a ray or a picture meets, as traversal masks of OpenSG's nodes. Most nodes belong to all.
enum RayTarget : osg::UInt32 {
    PictureTarget = 1,  ///< what is seen
    ObstacleTarget = 2, ///< what stands in the way of the viewer
    AllTargets = ~osg::UInt32(0)
};

} // namespace Orvane
