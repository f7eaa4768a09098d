#include "physics/RigidPose.h"
#include "core/UsableValues.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

Turn operator*(const Turn& a, const Turn& b)
{
    return {a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z, a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x, a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w};
}

osg::Vec3d turned(const Turn& turn, const osg::Vec3d& v)
{
    const osg::Vec3d axis(turn.x, turn.y, turn.z);
    const osg::Vec3d across = axis.cross(v) * 2.0;
    return v + across * turn.w + axis.cross(across);
}

Turn toTurn(const Rotation& rotation)
{
    const osg::Vec3f axis(rotation.x(), rotation.y(), rotation.z());
    if (!isUsable(axis) || isNull(axis) || !isDrawable(rotation.angle()))
        return {};
    const double length = std::hypot(double(axis[0]), double(axis[1]), double(axis[2]));
    const double half = 0.5 * std::remainder(double(rotation.angle()), 4.0 * M_PI);
    const double s = std::sin(half) / length;
    return {std::cos(half), axis[0] * s, axis[1] * s, axis[2] * s};
}

Rotation toRotation(const Turn& turn)
{
    const double sign = turn.w < 0.0 ? -1.0 : 1.0;
    const double length = std::hypot(turn.x, turn.y, turn.z);
    if (!(length > 1e-9))
        return {};
    const double scale = sign / length;
    return Rotation(static_cast<float>(turn.x * scale), static_cast<float>(turn.y * scale),
                    static_cast<float>(turn.z * scale),
                    static_cast<float>(2.0 * std::atan2(length, sign * turn.w)));
}

RigidPose operator*(const RigidPose& outer, const RigidPose& inner)
{
    return {outer.position + turned(outer.turn, inner.position), outer.turn * inner.turn};
}

RigidPose toPose(const osg::Vec3f& translation, const Rotation& rotation)
{
    return {toDouble(translation), toTurn(rotation)};
}

osg::Vec3f toFloat(const osg::Vec3d& v)
{
    return osg::Vec3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
}

osg::Vec3d toDouble(const osg::Vec3f& v)
{
    osg::Vec3d result;
    for (osg::UInt32 i = 0; i < 3; ++i)
        result[i] = bounded(v[i], -FarthestPlace, FarthestPlace, 0.0);
    return result;
}

osg::Vec3d toDirection(const osg::Vec3f& v, const osg::Vec3d& fallback)
{
    const double length = std::hypot(double(v[0]), double(v[1]), double(v[2]));
    if (!(length > 1e-12 && length < 1e30))
        return fallback;
    return osg::Vec3d(v[0] / length, v[1] / length, v[2] / length);
}

double bounded(double value, double least, double most, double fallback)
{
    return std::isnan(value) ? fallback : std::clamp(value, least, most);
}

} // namespace Orvane
