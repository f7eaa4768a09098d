#pragma once

#include <Orvane/Field.h>
#include <cstdint>
#include <vector>

namespace Orvane {

class LiveRoute;
class Node;
class Proc;

/// The events of a context. A write marks its field; `run` delivers what is marked, in order, and what comes
/// of it. However often a field is written, it has one event until that is delivered.
///
/// A route hands on at most one value in a run, so that loops of routes end. Behaviours are not told of what
/// they write to their own node, so that they cannot chase themselves; behaviours that chase each other go on
/// in the next run after `longestExchange` rounds.
class Cascade
{
public:
    static constexpr unsigned int longestExchange = 256;

    /// Names the node whose behaviour is at work.
    class WriterScope
    {
    public:
        WriterScope(Cascade& cascade, const Node& node)
            : _cascade(cascade)
            , _outer(cascade._writer)
        {
            cascade._writer = &node;
        }
        WriterScope(const WriterScope&) = delete;
        WriterScope& operator=(const WriterScope&) = delete;
        ~WriterScope() { _cascade._writer = _outer; }

    private:
        Cascade& _cascade;
        const Node* _outer;
    };

    /// The field of a running node has been written. During a run the writes of hosts wait for the next one.
    void write(Field& field, double time, Field::CallerType caller);

    /// Delivers all events. Does nothing inside itself.
    void run(double time);

    /// The behaviour wants to be told when the events of the run have been delivered.
    void requestSettle(Proc& proc);

    /// True when events wait for the next run.
    bool isPending() const { return !_events.empty() || !_later.empty() || !_toSettle.empty(); }

    /// The field dies, or leaves its node.
    void forget(Field& field);
    /// The behaviour ends.
    void forget(Proc& proc);

private:
    void queue(Field& field, bool later, bool own);
    void deliver(Field& field, double time);
    void followRoutes(Field& field);
    static void keepInStep(LiveRoute& route, const Field& from);
    void queueRouted(Field& field);
    void deliverAll(double time, std::size_t& endOfRound);
    void settleAll(double time);

    std::vector<Field*> _events;  ///< null where the field has died or the event is delivered
    std::vector<Field*> _later;   ///< of the next run
    std::vector<Proc*> _toSettle; ///< null where one has ended
    std::vector<Proc*> _settling;
    std::size_t _next = 0;
    unsigned int _round = 0; ///< of the present run: events that earlier events have led to
    std::uint64_t _serial = 0;
    bool _isRunning = false;
    Field* _delivering = nullptr; ///< null when it has died under way
    const Node* _writer = nullptr;
};

} // namespace Orvane
