#include "navigation/ExamineMotion.h"

#include "navigation/UserView.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

ExamineMotion::ExamineMotion(const UserView& view, const osg::Vec3d& pivot, double nearest)
    : _start(view.pose())
    , _pivot(pivot)
    , _axis(view.turntableAxis())
    , _nearest(nearest)
    , _halfHeight(view.halfHeight())
    , _parallel(view.isParallel())
{
    // Head down, what is dragged to the right still goes there.
    if (_start.up().dot(_axis) < 0.0)
        _axis = -_axis;
}

Pose ExamineMotion::turned(double right, double upwards) const
{
    const Pose aside = _start.turnedAbout(_pivot, _axis, right);
    return aside.turnedAbout(_pivot, aside.right(), upwards);
}

Pose ExamineMotion::panned(const Pose& pose, double right, double down) const
{
    const double depth = std::max((_pivot - pose.position).dot(pose.forward()), 0.0);
    const double height = 2.0 * _halfHeight * (_parallel ? 1.0 : depth);
    Pose result = pose;
    result.position = pose.position - pose.right() * (right * height) + pose.up() * (down * height);
    return result;
}

Pose ExamineMotion::closer(const Pose& pose, double factor) const
{
    const osg::Vec3d arm = pose.position - _pivot;
    const double length = arm.length();
    if (!(length > 0.0))
        return pose;
    const double wanted = length * std::clamp(factor, 1e-3, 1e3);
    Pose result = pose;
    result.position = _pivot + arm * (std::max(wanted, std::min(_nearest, length)) / length);
    return result;
}

} // namespace Orvane
