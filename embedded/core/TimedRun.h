#pragma once

#include <Orvane/Export.h>
#include <limits>

namespace Orvane {

class Field;
class Node;

/// The run of a node that depends on time: from its start time to its stop time, cycle by cycle, with pauses.
/// Sends what all such nodes send. Behaviours derive from it, and ask it in each tick and for each field that
/// concerns it.
class ORVANE_API TimedRun
{
public:
    static constexpr double Never = std::numeric_limits<double>::infinity();

    /// The run of \a node, which has the fields of an `X3DTimeDependentNode`, `enabled` and `loop`.
    explicit TimedRun(Node& node);
    TimedRun(const TimedRun&) = delete;
    TimedRun& operator=(const TimedRun&) = delete;
    virtual ~TimedRun();

    /// True for a field on which the run of any node depends.
    static bool concerns(const Field& field);
    /// Starts, ends, pauses and resumes as the fields and the time \a now ask. Tells when to ask again: \a
    /// now for the next frame, `Never` for a change of the fields.
    double evaluate(double now);
    /// Ends the run, if there is one, at a time inside it.
    void end(double now);

    bool isRunning() const { return _active; }

protected:
    /// Seconds of a cycle, asked for when a run may start: 0 or below when none can, infinite for a cycle
    /// without end.
    virtual double cycleInterval() = 0;
    /// Seconds that may pass between two looks at a run; 0 for a look in each frame.
    virtual double pace() const { return 0.0; }
    /// A cycle begins.
    virtual void beginCycle(double /*now*/) {}
    /// Which share of the cycle is over; its end is 1, not the 0 of the next one.
    virtual void sendFraction(double /*now*/, double /*fraction*/) {}

private:
    bool mayRun(double now) const;
    void activate(double now);
    /// Goes on with the run. Tells when to ask again.
    double run(double now);
    /// Seconds that the run has lasted at a moment, without its pauses.
    double elapsedAt(double moment) const;
    /// The moment of the next look at a run that goes on.
    double nextLook(double now) const;
    /// Ends the run that has lasted \a elapsed seconds.
    void finish(double now, double elapsed);
    /// Begins or ends a pause as the fields ask.
    void checkPause(double now);
    void send(double now, double elapsed);

    Node& _node;
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
