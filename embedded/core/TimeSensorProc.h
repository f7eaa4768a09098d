#pragma once

#include "base/Proc.h"
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a `TimeSensor`. It ticks only while it is active or waits for a moment to come.
class ORVANE_API TimeSensorProc : public Proc
{
public:
    using Proc::Proc;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void tick(double time) override;

private:
    /// Starts, ends, pauses and resumes as the fields and the time \a now ask.
    void evaluate(double now);
    bool mayRun(double now) const;
    void activate(double now);
    void run(double now);
    /// Ends the run that has lasted \a elapsed seconds.
    void finish(double now, double elapsed);
    /// Begins or ends a pause as the fields ask.
    void checkPause(double now);
    /// Sends fraction, elapsed time and time.
    void send(double now, double elapsed);
    void sleepUntil(double now, double moment);

    double _startTime = 0.0;     ///< of the present run; what is written to the field meanwhile is ignored
    double _cycleInterval = 1.0; ///< likewise
    double _cycle = 0.0;         ///< number of the present cycle
    double _uncounted = 0.0;     ///< seconds before the run that its elapsed time leaves out
    double _pauseBegin = 0.0;
    double _pausedFor = 0.0; ///< seconds of all pauses of the run that are over
    bool _active = false;
    bool _paused = false;
};

} // namespace Orvane
