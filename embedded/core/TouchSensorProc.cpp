#include "base/ValueFields.h"
#include "core/GeoSystem.h"
#include "core/Part.h"
#include "core/PointingSensorProc.h"

namespace Orvane {

namespace {

const Part hitGeoCoordPart("hitGeoCoord_changed");
const Part hitNormalPart("hitNormal_changed");
const Part hitPointPart("hitPoint_changed");
const Part hitTexCoordPart("hitTexCoord_changed");
const Part touchTimePart("touchTime");

/// Tells where its siblings are pointed at, and when they are clicked.
class TouchSensorProc : public PointingSensorProc
{
public:
    using PointingSensorProc::PointingSensorProc;

    bool wantsTexCoord() const override { return true; }

    void hover(const PointerSpot& spot, double time) override
    {
        hitPointPart.edit<SFVec3f>(node()).setValue(time, osg::Vec3f(spot.point), Field::EVENT_CT);
        hitNormalPart.edit<SFVec3f>(node()).setValue(time, spot.normal, Field::EVENT_CT);
        if (spot.hasTexCoord)
            hitTexCoordPart.edit<SFVec2f>(node()).setValue(time, spot.texCoord, Field::EVENT_CT);
    }

    void drag(const PointerSpot& spot, double time) override
    {
        if (spot.isOver)
            hover(spot, time);
    }

protected:
    void end(bool over, double time) override
    {
        if (over)
            touchTimePart.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
    }
};

/// Tells of geographic places too. They are those of the world, in whatever groups the sensor stands.
class GeoTouchSensorProc : public TouchSensorProc
{
public:
    using TouchSensorProc::TouchSensorProc;

    void hover(const PointerSpot& spot, double time) override
    {
        TouchSensorProc::hover(spot, time);
        const osg::Vec3d place(spot.worldPoint[0], spot.worldPoint[1], spot.worldPoint[2]);
        hitGeoCoordPart.edit<SFVec3d>(node()).setValue(time, GeoSystem::of(node()).fromScene(place),
                                                       Field::EVENT_CT);
    }
};

const ProcRegistration geoTouchSensor("GeoTouchSensor", makeProc<GeoTouchSensorProc>);
const ProcRegistration touchSensor("TouchSensor", makeProc<TouchSensorProc>);

} // namespace

} // namespace Orvane
