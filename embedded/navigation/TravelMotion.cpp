#include "navigation/TravelMotion.h"

#include "navigation/Collider.h"
#include "navigation/UserView.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

constexpr double turnSpeed = 1.2;    // radians a second
constexpr double steepest = 1.5;     // radians from level to where nobody looks further up or down
constexpr double gravity = 9.81;     // metres for a body of that height
constexpr double bodyHeight = 1.6;   // metres
constexpr double climbHeights = 3.0; // heights of the body a second when stepping up

/// The part of a direction that stands upright on another one, of length 1 or null.
osg::Vec3d levelled(const osg::Vec3d& direction, const osg::Vec3d& up)
{
    const osg::Vec3d level = direction - up * direction.dot(up);
    const double length = level.length();
    return length > 1e-6 ? level * (1.0 / length) : osg::Vec3d();
}

} // namespace

bool Velocity::isNull() const
{
    return forward == 0.0 && right == 0.0 && up == 0.0 && turn == 0.0 && tilt == 0.0;
}

Pose TravelMotion::advanced(const UserView& view, const Velocity& velocity, double speed, double seconds,
                            bool upright, const Collider& collider)
{
    Pose pose = view.pose();
    const osg::Vec3d up = view.up();
    if (velocity.turn != 0.0)
        pose = pose.turnedAbout(pose.position, up, velocity.turn * turnSpeed * seconds);
    if (velocity.tilt != 0.0) {
        const double now = std::asin(std::clamp(pose.forward().dot(up), -1.0, 1.0));
        const double limit = std::max(steepest, std::abs(now));
        const double next = std::clamp(now + velocity.tilt * turnSpeed * seconds, -limit, limit);
        pose = pose.turnedAbout(pose.position, pose.right(), next - now);
    }
    osg::Vec3d ahead = pose.forward();
    if (upright) {
        ahead = levelled(pose.forward(), up);
        if (ahead.length() < 0.5) // looks straight up or down
            ahead = levelled(pose.up() * (pose.forward().dot(up) > 0.0 ? -1.0 : 1.0), up);
    }
    const osg::Vec3d aside = upright ? levelled(pose.right(), up) : pose.right();
    osg::Vec3d step = ahead * velocity.forward + aside * velocity.right;
    if (!upright)
        step = step + pose.up() * velocity.up;
    step *= speed * seconds;
    if (step.length() > 0.0)
        pose.position = pose.position + collider.allowed(pose.position, step, up, upright);
    return pose;
}

bool TravelMotion::settle(const UserView& view, const Collider& collider, double height, double seconds,
                          Pose& pose)
{
    const osg::Vec3d up = view.up();
    double distance = 0.0;
    if (!collider.findFloor(pose.position, up, distance)) {
        stop();
        return false;
    }
    const double gap = distance - height;
    // Rays are of single precision, and a camera that follows their last digits would tremble.
    const double tolerance = std::max(height * 1e-3, pose.position.length() * 1e-6);
    if (std::abs(gap) <= tolerance) {
        stop();
        return false;
    }
    double drop = 0.0;
    if (gap < 0.0) {
        stop();
        drop = std::max(gap, -climbHeights * height * seconds);
    } else {
        _fall += gravity * (height / bodyHeight) * seconds;
        drop = std::min(gap, _fall * seconds);
    }
    pose.position = pose.position - up * drop;
    return true;
}

} // namespace Orvane
