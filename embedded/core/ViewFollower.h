#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>

namespace Orvane {

/// From where, and how large, a viewport is about to show a scene.
struct DrawnView
{
    osg::Matrix cameraToWorld;
    float pixelSize = 0.0F; ///< in world units; of a view with perspective at a distance of 1
    bool hasPerspective = true;
    osg::Vec2f pixels; ///< width and height of the viewport
};

/// What turns or stretches itself to suit the viewer, right before each picture.
class ORVANE_API ViewFollower
{
public:
    virtual ~ViewFollower();

    /// Suits itself to a view. True when that changed anything.
    virtual bool follow(const DrawnView& view) = 0;
};

} // namespace Orvane
