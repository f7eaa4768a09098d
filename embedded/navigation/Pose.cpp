#include "navigation/Pose.h"

#include <cmath>

namespace Orvane {

namespace {

constexpr double farthest = 1e15;

} // namespace

Pose Pose::of(const osg::Matrix& matrix)
{
    osg::Matrix4d turn;
    for (osg::UInt32 column = 0; column < 3; ++column) {
        for (osg::UInt32 row = 0; row < 3; ++row)
            turn[column][row] = static_cast<double>(matrix[column][row]);
    }
    Pose pose;
    pose.position = osg::Vec3d(matrix[3][0], matrix[3][1], matrix[3][2]);
    pose.rotation = Quaterniond(turn);
    return pose;
}

osg::Matrix Pose::matrix() const
{
    osg::Matrix4d turn;
    rotation.getValue(turn);
    osg::Matrix result;
    for (osg::UInt32 column = 0; column < 3; ++column) {
        for (osg::UInt32 row = 0; row < 3; ++row)
            result[column][row] = static_cast<float>(turn[column][row]);
    }
    result.setTranslate(static_cast<float>(position[0]), static_cast<float>(position[1]),
                        static_cast<float>(position[2]));
    return result;
}

osg::Vec3d Pose::turned(const osg::Vec3d& direction) const
{
    osg::Vec3d result;
    rotation.multVec(direction, result);
    return result;
}

Pose Pose::inverse() const
{
    Pose result;
    result.rotation = rotation.inverse();
    result.position = -result.turned(position);
    return result;
}

Pose Pose::operator*(const Pose& inner) const
{
    Pose result = *this;
    result.position = toOuter(inner.position);
    result.rotation.mult(inner.rotation);
    return result;
}

Pose Pose::turnedAbout(const osg::Vec3d& point, const osg::Vec3d& axis, double angle) const
{
    const Quaterniond turn(axis, angle);
    Pose result = *this;
    osg::Vec3d arm;
    turn.multVec(position - point, arm);
    result.position = point + arm;
    result.rotation.multLeft(turn);
    return result;
}

Pose Pose::looking(const osg::Vec3d& from, const osg::Vec3d& forward, const osg::Vec3d& up)
{
    Pose result;
    result.position = from;
    const double length = forward.length();
    if (!(length > 0.0))
        return result;
    const osg::Vec3d back = forward * (-1.0 / length);
    osg::Vec3d right = up.cross(back);
    if (!(right.length() > 1e-9)) // straight up or down: any direction is as good for the right side
        right = (std::abs(back[0]) < 0.9 ? osg::Vec3d(1, 0, 0) : osg::Vec3d(0, 0, 1)).cross(back);
    right *= 1.0 / right.length();
    const osg::Vec3d newUp = back.cross(right);
    osg::Matrix4d turn;
    turn.setValue(right, newUp, back);
    result.rotation = Quaterniond(turn);
    return result;
}

bool Pose::isUsable() const
{
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (!(std::abs(position[i]) < farthest))
            return false;
    }
    return std::abs(rotation.length() - 1.0) < 0.01;
}

bool Pose::operator==(const Pose& other) const
{
    // To the bit: what has not moved at all is told from what has moved a little.
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (position[i] != other.position[i])
            return false;
    }
    for (osg::UInt32 i = 0; i < 4; ++i) {
        if (rotation[i] != other.rotation[i])
            return false;
    }
    return true;
}

Pose blend(const Pose& a, const Pose& b, double t)
{
    Pose result;
    result.position = a.position + (b.position - a.position) * t;
    result.rotation = Quaterniond::slerp(a.rotation, b.rotation, t);
    return result;
}

} // namespace Orvane
