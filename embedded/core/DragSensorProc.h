#pragma once

#include "core/PointingSensorProc.h"
#include <OpenSG/OSGQuaternion.h>
#include <Orvane/Rotation.h>

namespace Orvane {

using Quaterniond = osg::QuaternionBase<osg::Real64>;

/// A sensor that turns the way of the pointer, while the button is held, into a movement. What it computes
/// with stands in the system of its axes: that of its group, turned by `axisRotation` where it has one.
class DragSensorProc : public PointingSensorProc
{
public:
    using PointingSensorProc::PointingSensorProc;

    void drag(const PointerSpot& spot, double time) override;

protected:
    void begin(const PointerSpot& spot, double time) override;
    void end(bool over, double time) override;

    /// The drag begins at \a point. False when nothing can be dragged there.
    virtual bool grab(const osg::Vec3d& point, const PointerSpot& spot) = 0;
    /// The place to which the ray drags what was grabbed; false when it leads nowhere.
    virtual bool track(const PointerSpot& spot, osg::Vec3d& point) const = 0;
    /// Sends the movement from the grabbed place to \a point.
    virtual void send(const osg::Vec3d& point, double time) = 0;
    /// Makes the last movement the offset of the next one.
    virtual void keepOffset(double time) = 0;

    /// From the system of the axes to that of the group; constant while dragging.
    const Quaterniond& axes() const { return _axes; }

private:
    PointerSpot turned(const PointerSpot& spot) const;

    Quaterniond _axes;
    bool _grabbed = false;
    bool _sent = false;
};

/// Rotations as fields hold them; what is no rotation counts as none.
Quaterniond toQuaterniond(const Rotation& rotation);
Rotation toRotation(const Quaterniond& rotation);

} // namespace Orvane
