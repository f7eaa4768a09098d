#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Rotation.h>
#include <array>

namespace Orvane {

/// A turn as unit quaternion.
struct Turn
{
    double w = 1.0;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Turn inverse() const { return {w, -x, -y, -z}; }
    bool operator==(const Turn& other) const
    {
        return w == other.w && x == other.x && y == other.y && z == other.z;
    }
};

/// First \a inner, then \a outer.
Turn operator*(const Turn& outer, const Turn& inner);
osg::Vec3d turned(const Turn& turn, const osg::Vec3d& v);
/// The turn of a rotation; none for one that makes no sense.
Turn toTurn(const Rotation& rotation);
Rotation toRotation(const Turn& turn);

/// Where something stands and how it is turned, in the precision of the simulation.
struct RigidPose
{
    osg::Vec3d position;
    Turn turn;

    bool operator==(const RigidPose& other) const
    {
        return position[0] == other.position[0] && position[1] == other.position[1] &&
               position[2] == other.position[2] && turn == other.turn;
    }
    bool operator!=(const RigidPose& other) const { return !(*this == other); }
};

/// The place in the system of \a outer of what stands at \a inner inside it.
RigidPose operator*(const RigidPose& outer, const RigidPose& inner);

/// The pose of the fields of a node; numbers that cannot be worked with count as 0.
RigidPose toPose(const osg::Vec3f& translation, const Rotation& rotation);

osg::Vec3f toFloat(const osg::Vec3d& v);
/// The vector, with components that are no usable number as 0, and others within what can be simulated.
osg::Vec3d toDouble(const osg::Vec3f& v);
/// The unit vector in the direction of \a v, or \a fallback when it has none.
osg::Vec3d toDirection(const osg::Vec3f& v, const osg::Vec3d& fallback);
/// \a value within the limits; \a fallback when it is not a number.
double bounded(double value, double least, double most, double fallback);

/// Nothing is simulated farther from the origin than this, in metres.
constexpr double FarthestPlace = 1e7;

} // namespace Orvane
