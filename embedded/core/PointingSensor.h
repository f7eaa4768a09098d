#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Where the pointer is, in the system of the group that a sensor belongs to.
struct PointerSpot
{
    osg::Pnt3d origin;    ///< of the ray from the viewer
    osg::Vec3d direction; ///< of the ray, of length 1
    bool isOver = false;  ///< the pointer is over geometry of the sensor, and what follows is known
    osg::Pnt3f point;
    osg::Pnt3f worldPoint; ///< the same in the world
    osg::Vec3f normal;     ///< of length 1
    osg::Vec2f texCoord;
    bool hasTexCoord = false;
};

/// What a pointer tells of itself to whatever reacts to it: a sensor about its siblings, an anchor about its
/// children.
class ORVANE_API PointingSensor
{
public:
    virtual ~PointingSensor();

    virtual bool isEnabled() const = 0;
    /// True from activation until the pointer's button is released, or the sensor has given up by itself.
    virtual bool isActivated() const = 0;
    /// True when the sensor reads the texture coordinates of what is pointed at.
    virtual bool wantsTexCoord() const { return false; }

    /// The pointer has come over geometry of the sensor, or left it.
    virtual void setOver(bool over, double time) = 0;
    /// The pointer moves over geometry of the sensor, with no button down.
    virtual void hover(const PointerSpot& spot, double time);
    /// The button was pressed over geometry of the sensor.
    virtual void activate(const PointerSpot& spot, double time) = 0;
    /// The pointer moves while the sensor is active, wherever it is.
    virtual void drag(const PointerSpot& spot, double time);
    /// The button was released; \a over tells whether over geometry of the sensor.
    virtual void deactivate(bool over, double time) = 0;
};

} // namespace Orvane
