#include "core/TimeSensorProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/SFFloat.h>

namespace Orvane {

namespace {

const Part cycleIntervalPart("cycleInterval");
const Part cycleTime("cycleTime");
const Part fractionChanged("fraction_changed");
const Part timeOut("time");

const ProcRegistration registration("TimeSensor", makeProc<TimeSensorProc>);

} // namespace

TimeSensorProc::TimeSensorProc(Node& node)
    : Proc(node)
    , TimedRun(node)
{
}

void TimeSensorProc::start(double)
{
    setTicking(true);
}

void TimeSensorProc::fieldChanged(Field& field, double time)
{
    if (concerns(field) || cycleIntervalPart.is(field))
        tick(time);
}

void TimeSensorProc::tick(double time)
{
    const double next = evaluate(time);
    setTicking(next < Never);
    if (next < Never)
        requestFrame(next - time);
}

double TimeSensorProc::cycleInterval()
{
    return cycleIntervalPart.read<SFTime>(node()).value();
}

void TimeSensorProc::beginCycle(double now)
{
    cycleTime.edit<SFTime>(node()).setValue(now, now, Field::EVENT_CT);
}

void TimeSensorProc::sendFraction(double now, double fraction)
{
    fractionChanged.edit<SFFloat>(node()).setValue(now, static_cast<float>(fraction), Field::EVENT_CT);
    timeOut.edit<SFTime>(node()).setValue(now, now, Field::EVENT_CT);
}

} // namespace Orvane
