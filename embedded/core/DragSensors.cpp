#include "base/ValueFields.h"
#include "core/DragSensorProc.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part diskAnglePart("diskAngle");
const Part maxAnglePart("maxAngle");
const Part maxPositionPart("maxPosition");
const Part minAnglePart("minAngle");
const Part minPositionPart("minPosition");
const Part offsetPart("offset");
const Part rotationPart("rotation_changed");
const Part translationPart("translation_changed");

constexpr double Pi = 3.14159265358979323846;

/// The limits of a drag count only when they are in order.
template <class T>
T limited(T value, T low, T high)
{
    return low <= high ? std::clamp(value, low, high) : value;
}

/// Where the ray meets the plane on which \a axis has the value \a height.
bool meetPlane(const PointerSpot& spot, osg::UInt32 axis, double height, osg::Vec3d& point)
{
    // Rays along the plane lead too far away to be meant.
    constexpr double Flattest = 1e-4;
    if (!(std::abs(spot.direction[axis]) > Flattest))
        return false;
    const double t = (height - spot.origin[axis]) / spot.direction[axis];
    if (!(t > 0.0))
        return false;
    point = osg::Vec3d(spot.origin) + spot.direction * t;
    return true;
}

/// Where the ray origin + t direction meets the ball, or circle, of a radius about the origin, \a direction
/// being of any length: the near place, or the far one. A ray that passes by rolls on over the edge by as
/// much as it is off.
bool meetBall(const osg::Vec3d& origin, const osg::Vec3d& direction, double radius, bool far,
              osg::Vec3d& point)
{
    const double length = direction.length();
    if (!(length > 0.0) || !(radius > 0.0))
        return false;
    const osg::Vec3d along = direction / length;
    const double toNearest = -origin.dot(along);
    const osg::Vec3d nearest = origin + along * toNearest;
    const double off = nearest.length();
    if (off < radius) {
        const double half = std::sqrt(radius * radius - off * off);
        point = nearest + along * (far ? half : -half);
        return true;
    }
    const double beyond = std::min((off - radius) / radius, Pi);
    point =
        nearest * (std::cos(beyond) * radius / off) + along * (std::sin(beyond) * (far ? -radius : radius));
    return true;
}

/// Moves what is dragged in the plane through the grabbed place.
class PlaneSensorProc : public DragSensorProc
{
public:
    using DragSensorProc::DragSensorProc;

protected:
    bool grab(const osg::Vec3d& point, const PointerSpot&) override
    {
        _from = point;
        axes().inverse().multVec(osg::Vec3d(usableVector(offsetPart.read<SFVec3f>(node()).value())), _offset);
        return true;
    }

    bool track(const PointerSpot& spot, osg::Vec3d& point) const override
    {
        return meetPlane(spot, 2, _from[2], point);
    }

    void send(const osg::Vec3d& point, double time) override
    {
        osg::Vec3d way = point - _from + _offset;
        const osg::Vec2f& low = minPositionPart.read<SFVec2f>(node()).value();
        const osg::Vec2f& high = maxPositionPart.read<SFVec2f>(node()).value();
        for (osg::UInt32 i = 0; i < 2; ++i)
            way[i] = limited<double>(way[i], low[i], high[i]);
        way[2] = _offset[2];
        axes().multVec(way, way);
        _last = osg::Vec3f(way);
        translationPart.edit<SFVec3f>(node()).setValue(time, _last, Field::EVENT_CT);
    }

    void keepOffset(double time) override
    {
        offsetPart.edit<SFVec3f>(node()).setValue(time, _last, Field::EVENT_CT);
    }

private:
    osg::Vec3d _from;
    osg::Vec3d _offset;
    osg::Vec3f _last;
};

/// Turns what is dragged like a ball about the origin.
class SphereSensorProc : public DragSensorProc
{
public:
    using DragSensorProc::DragSensorProc;

protected:
    bool grab(const osg::Vec3d& point, const PointerSpot& spot) override
    {
        _from = point;
        _radius = point.length();
        _inside = osg::Vec3d(spot.origin).length() < _radius;
        _offset = toQuaterniond(offsetPart.read<SFRotation>(node()).value());
        return _radius > 0.0;
    }

    bool track(const PointerSpot& spot, osg::Vec3d& point) const override
    {
        return meetBall(osg::Vec3d(spot.origin), spot.direction, _radius, _inside, point);
    }

    void send(const osg::Vec3d& point, double time) override
    {
        const osg::Vec3d from = _from / _radius;
        const osg::Vec3d to = point / _radius;
        const osg::Vec3d axis = from.cross(to);
        Quaterniond turn(axis, std::atan2(axis.length(), from.dot(to)));
        turn.mult(_offset);
        _last = toRotation(turn);
        rotationPart.edit<SFRotation>(node()).setValue(time, _last, Field::EVENT_CT);
    }

    void keepOffset(double time) override
    {
        offsetPart.edit<SFRotation>(node()).setValue(time, _last, Field::EVENT_CT);
    }

private:
    osg::Vec3d _from;
    Quaterniond _offset;
    double _radius = 0.0;
    bool _inside = false; ///< the viewer stands inside of the ball
    Rotation _last;
};

/// Turns what is dragged about the y axis: like a disk when looked at along the axis, else like a cylinder.
class CylinderSensorProc : public DragSensorProc
{
public:
    using DragSensorProc::DragSensorProc;

protected:
    bool grab(const osg::Vec3d& point, const PointerSpot& spot) override
    {
        const double slope = std::acos(std::min(std::abs(spot.direction[1]), 1.0));
        _isDisk = slope < diskAnglePart.read<SFFloat>(node()).value();
        _height = point[1];
        _radius = std::hypot(point[0], point[2]);
        _inside = std::hypot(spot.origin[0], spot.origin[2]) < _radius;
        _bearing = bearing(point);
        _angle = usableNumber(offsetPart.read<SFFloat>(node()).value(), 0.0F);
        return _radius > 0.0;
    }

    bool track(const PointerSpot& spot, osg::Vec3d& point) const override
    {
        if (_isDisk)
            return meetPlane(spot, 1, _height, point);
        const osg::Vec3d across(spot.direction[0], 0.0, spot.direction[2]);
        const osg::Vec3d origin(spot.origin[0], 0.0, spot.origin[2]);
        if (!meetBall(origin, across, _radius, _inside, point))
            return false;
        const double t = (point - origin).dot(across) / across.dot(across);
        point[1] = spot.origin[1] + t * spot.direction[1];
        return true;
    }

    void send(const osg::Vec3d& point, double time) override
    {
        // The shorter way from the last bearing, so that the turn goes on through several rounds.
        const double now = bearing(point);
        _angle += std::remainder(now - _bearing, 2.0 * Pi);
        _bearing = now;
        _last = limited(static_cast<float>(_angle), minAnglePart.read<SFFloat>(node()).value(),
                        maxAnglePart.read<SFFloat>(node()).value());
        osg::Vec3d axis;
        axes().multVec(osg::Vec3d(0.0, 1.0, 0.0), axis);
        const Rotation turn(static_cast<float>(axis[0]), static_cast<float>(axis[1]),
                            static_cast<float>(axis[2]), _last);
        rotationPart.edit<SFRotation>(node()).setValue(time, turn, Field::EVENT_CT);
    }

    void keepOffset(double time) override
    {
        offsetPart.edit<SFFloat>(node()).setValue(time, _last, Field::EVENT_CT);
    }

private:
    /// Angle about the axis, from z towards x.
    static double bearing(const osg::Vec3d& point) { return std::atan2(point[0], point[2]); }

    double _height = 0.0;
    double _radius = 0.0;
    double _bearing = 0.0; ///< of the last tracked place
    double _angle = 0.0;   ///< without the limits
    float _last = 0.0F;
    bool _isDisk = false;
    bool _inside = false; ///< the viewer stands inside of the cylinder
};

const ProcRegistration planeSensor("PlaneSensor", makeProc<PlaneSensorProc>);
const ProcRegistration sphereSensor("SphereSensor", makeProc<SphereSensorProc>);
const ProcRegistration cylinderSensor("CylinderSensor", makeProc<CylinderSensorProc>);

} // namespace

} // namespace Orvane
