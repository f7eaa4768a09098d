#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGVector.h>

namespace Orvane {

using Quaterniond = osg::QuaternionBase<double>;

/// A place and a way to stand there, in some system: what moving turns and shifts, but never scales. In
/// double precision, so that many small steps far from the origin add up to what they should.
struct Pose
{
    osg::Vec3d position;
    Quaterniond rotation;

    /// The pose of a matrix without scale.
    static Pose of(const osg::Matrix& matrix);
    osg::Matrix matrix() const;

    /// From the system of a pose to the one that it stands in.
    osg::Vec3d toOuter(const osg::Vec3d& point) const { return position + turned(point); }
    /// The same for a direction.
    osg::Vec3d turned(const osg::Vec3d& direction) const;
    Pose inverse() const;
    /// The pose in the outer system of one that is given in the system of this one.
    Pose operator*(const Pose& inner) const;

    osg::Vec3d right() const { return turned(osg::Vec3d(1, 0, 0)); }
    osg::Vec3d up() const { return turned(osg::Vec3d(0, 1, 0)); }
    /// Where a camera in this pose looks to.
    osg::Vec3d forward() const { return turned(osg::Vec3d(0, 0, -1)); }

    /// The pose after a turn by \a angle radians about an axis through a point, all in the outer system.
    Pose turnedAbout(const osg::Vec3d& point, const osg::Vec3d& axis, double angle) const;
    /// The pose that looks along \a forward, with \a up as far upwards as may be.
    static Pose looking(const osg::Vec3d& from, const osg::Vec3d& forward, const osg::Vec3d& up);

    /// False when a number in it is none, or so large that nothing can be drawn there.
    bool isUsable() const;
    bool operator==(const Pose& other) const;
    bool operator!=(const Pose& other) const { return !(*this == other); }
};

/// What lies between two poses: \a t runs from 0 to 1. It goes straight and turns by the shorter way.
Pose blend(const Pose& a, const Pose& b, double t);

} // namespace Orvane
