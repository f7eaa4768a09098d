#include "core/PointingSensorProc.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part enabledPart("enabled");
const Part isActivePart("isActive");
const Part isOverPart("isOver");

} // namespace

PointingSensor::~PointingSensor() = default;

void PointingSensor::hover(const PointerSpot&, double)
{
}

void PointingSensor::drag(const PointerSpot&, double)
{
}

PointingSensorProc::~PointingSensorProc()
{
    if (_scene)
        _scene->sensorsChanged();
}

void PointingSensorProc::start(double)
{
    _scene = SceneState::ofScene(node());
    if (_scene)
        _scene->sensorsChanged();
}

void PointingSensorProc::fieldChanged(Field& field, double time)
{
    if (!enabledPart.is(field))
        return;
    if (!isEnabled()) {
        deactivate(false, time);
        setOver(false, time);
    }
    if (_scene)
        _scene->sensorsChanged();
}

bool PointingSensorProc::isEnabled() const
{
    return enabledPart.read<SFBool>(node()).value();
}

void PointingSensorProc::setOver(bool over, double time)
{
    if (_over == over)
        return;
    _over = over;
    isOverPart.edit<SFBool>(node()).setValue(time, over, Field::EVENT_CT);
}

void PointingSensorProc::activate(const PointerSpot& spot, double time)
{
    _active = true;
    isActivePart.edit<SFBool>(node()).setValue(time, true, Field::EVENT_CT);
    begin(spot, time);
}

void PointingSensorProc::deactivate(bool over, double time)
{
    if (!_active)
        return;
    _active = false;
    isActivePart.edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
    end(over, time);
}

} // namespace Orvane
