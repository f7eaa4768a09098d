#pragma once

#include "navigation/Pose.h"

namespace Orvane {

class UserView;

/// Moves a camera round a point that it keeps an eye on. All motions start from the pose at the beginning of
/// the drag, so that a drag back to where it began undoes itself.
class ExamineMotion
{
public:
    /// \a pivot is in the world; the camera comes no nearer to it than \a nearest.
    ExamineMotion(const UserView& view, const osg::Vec3d& pivot, double nearest);

    const osg::Vec3d& pivot() const { return _pivot; }

    /// Turns by angles in radians: to the right about the upright axis of the scene, upwards about the
    /// camera's own.
    Pose turned(double right, double upwards) const;
    /// Shifts the camera in its own plane by parts of the picture's height, so that what lies at the pivot
    /// follows the pointer.
    Pose panned(const Pose& pose, double right, double down) const;
    /// Brings the camera to \a factor of its distance from the pivot.
    Pose closer(const Pose& pose, double factor) const;
    /// The start.
    const Pose& start() const { return _start; }

private:
    Pose _start;
    osg::Vec3d _pivot;
    osg::Vec3d _axis;
    double _nearest;
    double _halfHeight;
    bool _parallel;
};

} // namespace Orvane
