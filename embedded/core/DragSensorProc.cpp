#include "core/DragSensorProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/SFBool.h>
#include <cmath>

namespace Orvane {

namespace {

const Part autoOffsetPart("autoOffset");
const Part axisRotationPart("axisRotation");
const Part trackPointPart("trackPoint_changed");

bool isFinite(const osg::Vec3d& v)
{
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

} // namespace

PointerSpot DragSensorProc::turned(const PointerSpot& spot) const
{
    const Quaterniond back = _axes.inverse();
    PointerSpot result = spot;
    osg::Vec3d place;
    back.multVec(osg::Vec3d(spot.origin), place);
    result.origin = osg::Pnt3d(place);
    back.multVec(spot.direction, result.direction);
    back.multVec(osg::Vec3d(spot.point), place);
    result.point = osg::Pnt3f(place);
    return result;
}

void DragSensorProc::begin(const PointerSpot& spot, double)
{
    _axes.setIdentity();
    if (axisRotationPart.isIn(node()))
        _axes = toQuaterniond(axisRotationPart.read<SFRotation>(node()).value());
    const PointerSpot local = turned(spot);
    const osg::Vec3d point(local.point);
    _grabbed = isFinite(point) && grab(point, local);
    _sent = false;
}

void DragSensorProc::drag(const PointerSpot& spot, double time)
{
    osg::Vec3d point;
    if (!_grabbed || !track(turned(spot), point) || !isFinite(point))
        return;
    osg::Vec3d trackPoint;
    _axes.multVec(point, trackPoint);
    trackPointPart.edit<SFVec3f>(node()).setValue(time, osg::Vec3f(trackPoint), Field::EVENT_CT);
    send(point, time);
    _sent = true;
}

void DragSensorProc::end(bool, double time)
{
    if (_sent && autoOffsetPart.read<SFBool>(node()).value())
        keepOffset(time);
    _grabbed = false;
}

Rotation toRotation(const Quaterniond& rotation)
{
    osg::Vec3d axis;
    double angle = 0.0;
    rotation.getValueAsAxisRad(axis, angle);
    return Rotation(static_cast<float>(axis[0]), static_cast<float>(axis[1]), static_cast<float>(axis[2]),
                    static_cast<float>(angle));
}

Quaterniond toQuaterniond(const Rotation& rotation)
{
    const osg::Quaternion single = toQuaternion(rotation);
    Quaterniond result;
    result.setValueAsQuat(single.x(), single.y(), single.z(), single.w());
    return result;
}

} // namespace Orvane
