#include "core/TimedRun.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/SFBool.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part elapsedTime("elapsedTime");
const Part enabled("enabled");
const Part isActive("isActive");
const Part isPaused("isPaused");
const Part loop("loop");
const Part pauseTime("pauseTime");
const Part resumeTime("resumeTime");
const Part startTime("startTime");
const Part stopTime("stopTime");

double timeOf(const Part& part, const Node& node)
{
    return part.read<SFTime>(node).value();
}

} // namespace

TimedRun::TimedRun(Node& node)
    : _node(node)
{
}

TimedRun::~TimedRun() = default;

bool TimedRun::concerns(const Field& field)
{
    for (const Part* part : {&enabled, &loop, &pauseTime, &resumeTime, &startTime, &stopTime}) {
        if (part->is(field))
            return true;
    }
    return false;
}

bool TimedRun::mayRun(double now) const
{
    const double stop = timeOf(stopTime, _node);
    const bool stopped = stop > _startTime && now >= stop;
    const bool over = !loop.read<SFBool>(_node).value() && now >= _startTime + _cycleInterval;
    return !stopped && !over;
}

double TimedRun::evaluate(double now)
{
    if (_active) {
        const double next = run(now);
        // A run that has just ended may have a successor, but by another start time alone: a longer cycle
        // that was written meanwhile does not take it up again.
        if (_active || timeOf(startTime, _node) == _startTime)
            return next;
    }
    _startTime = timeOf(startTime, _node);
    _cycleInterval = cycleInterval();
    const bool sound = std::isfinite(_startTime) && _cycleInterval > 0.0;
    if (!sound || !enabled.read<SFBool>(_node).value() || !mayRun(std::max(now, _startTime)))
        return Never;
    if (now < _startTime)
        return _startTime;
    activate(now);
    return run(now);
}

void TimedRun::end(double now)
{
    if (_active)
        finish(now, elapsedAt(_paused ? std::min(now, _pauseBegin) : now));
}

void TimedRun::activate(double now)
{
    _active = true;
    _paused = false;
    _pausedFor = 0.0;
    _cycle = std::floor((now - _startTime) / _cycleInterval);
    // A node that loops since long ago is active since now only.
    _uncounted = _cycle > 0.0 ? now - _startTime : 0.0;
    isActive.edit<SFBool>(_node).setValue(now, true, Field::EVENT_CT);
    beginCycle(now);
}

double TimedRun::elapsedAt(double moment) const
{
    return std::max(0.0, moment - _startTime - _pausedFor);
}

double TimedRun::run(double now)
{
    checkPause(now);
    const double stop = timeOf(stopTime, _node);
    const bool stopped = stop > _startTime && now >= stop;
    const double last = stopped ? stop : now;
    const double elapsed = elapsedAt(_paused ? std::min(last, _pauseBegin) : last);
    const double cycleEnd = (_cycle + 1.0) * _cycleInterval;
    if (!loop.read<SFBool>(_node).value() && elapsed >= cycleEnd) {
        finish(now, cycleEnd);
        return Never;
    }
    if (stopped || !enabled.read<SFBool>(_node).value()) {
        finish(now, elapsed);
        return Never;
    }
    if (_paused) {
        const double resume = timeOf(resumeTime, _node);
        const double next = std::min(resume > _pauseBegin ? resume : Never, stop > _startTime ? stop : Never);
        return next > now ? next : Never;
    }
    const double cycle = std::floor(elapsed / _cycleInterval);
    if (cycle > _cycle) {
        _cycle = cycle;
        beginCycle(now);
    }
    send(now, elapsed);
    return nextLook(now);
}

double TimedRun::nextLook(double now) const
{
    double next = now + std::max(0.0, pace());
    const double cycleEnd = _startTime + _pausedFor + (_cycle + 1.0) * _cycleInterval;
    for (const double moment : {cycleEnd, timeOf(stopTime, _node), timeOf(pauseTime, _node)}) {
        if (moment > now && moment < next)
            next = moment;
    }
    return next;
}

void TimedRun::finish(double now, double elapsed)
{
    send(now, elapsed);
    _active = false;
    if (_paused) {
        _paused = false;
        isPaused.edit<SFBool>(_node).setValue(now, false, Field::EVENT_CT);
    }
    isActive.edit<SFBool>(_node).setValue(now, false, Field::EVENT_CT);
}

void TimedRun::checkPause(double now)
{
    const double pause = timeOf(pauseTime, _node);
    const double resume = timeOf(resumeTime, _node);
    // A pause time of an earlier run says nothing about this one.
    const bool wanted = pause > resume && now >= pause && pause >= _startTime;
    if (wanted && !_paused) {
        _paused = true;
        _pauseBegin = std::max(pause, _startTime);
        send(now, elapsedAt(_pauseBegin));
        isPaused.edit<SFBool>(_node).setValue(now, true, Field::EVENT_CT);
    } else if (_paused && resume >= pause && now >= resume) {
        _paused = false;
        _pausedFor += std::max(0.0, resume - _pauseBegin);
        isPaused.edit<SFBool>(_node).setValue(now, false, Field::EVENT_CT);
    }
}

void TimedRun::send(double now, double elapsed)
{
    const double cycles = elapsed / _cycleInterval;
    double fraction = cycles - std::floor(cycles);
    // Intervals too short to count are all end.
    if (!std::isfinite(fraction) || (fraction == 0.0 && cycles > 0.0))
        fraction = 1.0;
    sendFraction(now, fraction);
    elapsedTime.edit<SFTime>(_node).setValue(now, std::max(0.0, elapsed - _uncounted), Field::EVENT_CT);
}

} // namespace Orvane
