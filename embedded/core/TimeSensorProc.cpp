#include "core/TimeSensorProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane {

namespace {

const Part cycleInterval("cycleInterval");
const Part cycleTime("cycleTime");
const Part elapsedTime("elapsedTime");
const Part enabled("enabled");
const Part fractionChanged("fraction_changed");
const Part isActive("isActive");
const Part isPaused("isPaused");
const Part loop("loop");
const Part pauseTime("pauseTime");
const Part resumeTime("resumeTime");
const Part startTime("startTime");
const Part stopTime("stopTime");
const Part timeOut("time");

constexpr double Never = std::numeric_limits<double>::infinity();

const ProcRegistration registration("TimeSensor", makeProc<TimeSensorProc>);

double timeOf(const Part& part, const Node& node)
{
    return part.read<SFTime>(node).value();
}

} // namespace

void TimeSensorProc::start(double)
{
    setTicking(true);
}

void TimeSensorProc::fieldChanged(Field& field, double time)
{
    for (const Part* part : {&cycleInterval, &enabled, &loop, &pauseTime, &resumeTime, &startTime, &stopTime})
    {
        if (part->is(field)) {
            evaluate(time);
            return;
        }
    }
}

void TimeSensorProc::tick(double time)
{
    evaluate(time);
}

bool TimeSensorProc::mayRun(double now) const
{
    const double stop = timeOf(stopTime, node());
    const bool stopped = stop > _startTime && now >= stop;
    const bool over = !loop.read<SFBool>(node()).value() && now >= _startTime + _cycleInterval;
    return !stopped && !over;
}

void TimeSensorProc::evaluate(double now)
{
    if (_active) {
        run(now);
        // A run that has just ended may have a successor: a start time that lies behind the end.
        if (_active)
            return;
    }
    _startTime = timeOf(startTime, node());
    _cycleInterval = timeOf(cycleInterval, node());
    const bool sound = std::isfinite(_startTime) && _cycleInterval > 0.0;
    if (!sound || !enabled.read<SFBool>(node()).value() || !mayRun(std::max(now, _startTime)))
        sleepUntil(now, Never);
    else if (now < _startTime)
        sleepUntil(now, _startTime);
    else
        activate(now);
}

void TimeSensorProc::activate(double now)
{
    _active = true;
    _paused = false;
    _pausedFor = 0.0;
    _cycle = std::floor((now - _startTime) / _cycleInterval);
    // A sensor that loops since long ago is active since now only.
    _uncounted = _cycle > 0.0 ? now - _startTime : 0.0;
    isActive.edit<SFBool>(node()).setValue(now, true, Field::EVENT_CT);
    cycleTime.edit<SFTime>(node()).setValue(now, now, Field::EVENT_CT);
    run(now);
}

void TimeSensorProc::run(double now)
{
    checkPause(now);
    const double stop = timeOf(stopTime, node());
    const bool stopped = stop > _startTime && now >= stop;
    double end = stopped ? stop : now;
    if (_paused)
        end = std::min(end, _pauseBegin);
    const double elapsed = std::max(0.0, end - _startTime - _pausedFor);
    const double cycleEnd = (_cycle + 1.0) * _cycleInterval;
    if (!loop.read<SFBool>(node()).value() && elapsed >= cycleEnd) {
        finish(now, cycleEnd);
        return;
    }
    if (stopped || !enabled.read<SFBool>(node()).value()) {
        finish(now, elapsed);
        return;
    }
    if (_paused) {
        const double resume = timeOf(resumeTime, node());
        sleepUntil(now, std::min(resume > _pauseBegin ? resume : Never, stop > _startTime ? stop : Never));
        return;
    }
    const double cycle = std::floor(elapsed / _cycleInterval);
    if (cycle > _cycle) {
        _cycle = cycle;
        cycleTime.edit<SFTime>(node()).setValue(now, now, Field::EVENT_CT);
    }
    send(now, elapsed);
    setTicking(true);
    requestFrame();
}

void TimeSensorProc::finish(double now, double elapsed)
{
    send(now, elapsed);
    _active = false;
    if (_paused) {
        _paused = false;
        isPaused.edit<SFBool>(node()).setValue(now, false, Field::EVENT_CT);
    }
    isActive.edit<SFBool>(node()).setValue(now, false, Field::EVENT_CT);
}

void TimeSensorProc::checkPause(double now)
{
    const double pause = timeOf(pauseTime, node());
    const double resume = timeOf(resumeTime, node());
    // A pause time of an earlier run says nothing about this one.
    const bool wanted = pause > resume && now >= pause && pause >= _startTime;
    if (wanted && !_paused) {
        _paused = true;
        _pauseBegin = std::max(pause, _startTime);
        send(now, std::max(0.0, _pauseBegin - _startTime - _pausedFor));
        isPaused.edit<SFBool>(node()).setValue(now, true, Field::EVENT_CT);
    } else if (_paused && resume >= pause && now >= resume) {
        _paused = false;
        _pausedFor += std::max(0.0, resume - _pauseBegin);
        isPaused.edit<SFBool>(node()).setValue(now, false, Field::EVENT_CT);
    }
}

void TimeSensorProc::send(double now, double elapsed)
{
    const double cycles = elapsed / _cycleInterval;
    double fraction = cycles - std::floor(cycles);
    // The end of a cycle is its fraction 1, not the next one's 0. Intervals too short to count are all end.
    if (!std::isfinite(fraction) || (fraction == 0.0 && elapsed > 0.0))
        fraction = 1.0;
    fractionChanged.edit<SFFloat>(node()).setValue(now, static_cast<float>(fraction), Field::EVENT_CT);
    elapsedTime.edit<SFTime>(node()).setValue(now, std::max(0.0, elapsed - _uncounted), Field::EVENT_CT);
    timeOut.edit<SFTime>(node()).setValue(now, now, Field::EVENT_CT);
}

void TimeSensorProc::sleepUntil(double now, double moment)
{
    const bool comes = moment > now && moment < Never;
    setTicking(comes);
    if (comes)
        requestFrame(moment - now);
}

} // namespace Orvane
