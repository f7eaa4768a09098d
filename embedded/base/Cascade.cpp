#include "base/Cascade.h"
#include "base/LiveRoute.h"
#include "base/NodeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

// The marks of a field: three flags, and above them the place of its event while that is pending, else the
// number of the last run that delivered one.
constexpr unsigned int pendingMark = 1;
constexpr unsigned int laterMark = 2; ///< pending for the next run
constexpr unsigned int ownMark = 4;   ///< written by the behaviour of its own node alone
constexpr unsigned int numberShift = 3;

unsigned int numbered(std::size_t number)
{
    return static_cast<unsigned int>(number) << numberShift;
}

} // namespace

void Cascade::queue(Field& field, bool later, bool own)
{
    std::vector<Field*>& events = later ? _later : _events;
    FieldAccess::marks(field) =
        numbered(events.size()) | pendingMark | (later ? laterMark : 0U) | (own ? ownMark : 0U);
    events.push_back(&field);
}

void Cascade::write(Field& field, double time, Field::CallerType caller)
{
    unsigned int& marks = FieldAccess::marks(field);
    bool own = caller == Field::EVENT_CT && field.node() == _writer;
    bool later = _isRunning && (caller == Field::EXTERNAL_CT || time == 0.0);
    if (marks & pendingMark) {
        own = own && (marks & ownMark);
        if (later || !(marks & laterMark)) {
            marks = own ? marks : marks & ~ownMark;
            return;
        }
        _later[marks >> numberShift] = nullptr;
    } else if (_isRunning && _round > longestExchange &&
               (marks & ~(pendingMark | laterMark | ownMark)) == numbered(_serial))
    {
        later = true;
    }
    queue(field, later, own);
}

void Cascade::queueRouted(Field& field)
{
    const unsigned int marks = FieldAccess::marks(field);
    if (!(marks & pendingMark)) {
        queue(field, false, false);
    } else if (marks & laterMark) {
        _later[marks >> numberShift] = nullptr;
        queue(field, false, false);
    } else {
        FieldAccess::marks(field) &= ~ownMark;
    }
}

void Cascade::forget(Field& field)
{
    unsigned int& marks = FieldAccess::marks(field);
    if (marks & pendingMark)
        (marks & laterMark ? _later : _events)[marks >> numberShift] = nullptr;
    marks = 0;
    if (_delivering == &field)
        _delivering = nullptr;
}

void Cascade::run(double time)
{
    if (_isRunning)
        return;
    _isRunning = true;
    ++_serial;
    std::size_t endOfRound = _events.size();
    _next = 0;
    _round = 0;
    deliverAll(time, endOfRound);
    while (!_toSettle.empty()) {
        settleAll(time);
        deliverAll(time, endOfRound);
    }
    _isRunning = false;
    _events.clear();
    _events.swap(_later);
    for (Field* field : _events)
        if (field)
            FieldAccess::marks(*field) &= ~laterMark;
}

void Cascade::deliverAll(double time, std::size_t& endOfRound)
{
    for (; _next < _events.size(); ++_next) {
        if (_next == endOfRound) {
            endOfRound = _events.size();
            ++_round;
        }
        if (Field* field = std::exchange(_events[_next], nullptr))
            deliver(*field, time);
    }
}

void Cascade::settleAll(double time)
{
    _settling.swap(_toSettle);
    for (std::size_t i = 0; i < _settling.size(); ++i) {
        Proc* const proc = std::exchange(_settling[i], nullptr);
        if (!proc)
            continue;
        proc->_settleRequested = 0;
        const WriterScope writer(*this, proc->node());
        proc->settle(time);
    }
    _settling.clear();
}

void Cascade::requestSettle(Proc& proc)
{
    if (proc._settleRequested)
        return;
    proc._settleRequested = 1;
    _toSettle.push_back(&proc);
}

void Cascade::forget(Proc& proc)
{
    if (!proc._settleRequested)
        return;
    std::replace(_toSettle.begin(), _toSettle.end(), &proc, static_cast<Proc*>(nullptr));
    std::replace(_settling.begin(), _settling.end(), &proc, static_cast<Proc*>(nullptr));
}

void Cascade::deliver(Field& field, double time)
{
    unsigned int& marks = FieldAccess::marks(field);
    const bool own = marks & ownMark;
    marks = numbered(_serial);
    _delivering = &field;

    if (field._inSlot) {
        field._inSlot->processEventSubject().fire(time, field._inSlot);
        if (!_delivering)
            return;
    }
    Proc* const proc = field.node()->data()->proc.get();
    if (proc && !own) {
        const WriterScope writer(*this, *field.node());
        proc->fieldChanged(field, time);
        if (!_delivering)
            return;
    }
    if (field._outSlot) {
        field._outSlot->processEventSubject().fire(time, field._outSlot);
        if (_delivering && field._outSlot)
            followRoutes(field);
    }
    _delivering = nullptr;
}

/// A field that stands for another one has its value, even where the run has no further event for it.
void Cascade::keepInStep(LiveRoute& route, const Field& from)
{
    Field& target = *route.inSlot()->field();
    if (route.opposite && !holdsNodes(target.dataType()) && !target.hasValueOf(from))
        target.assignValue(from);
}

/// A route may come and go while a value that links nodes is handed on; then the slot is gone through again,
/// for what has not handed on its value in this run.
void Cascade::followRoutes(Field& field)
{
    EventOutSlot& slot = *field._outSlot;
    for (std::size_t i = 0; i < static_cast<std::size_t>(slot.end() - slot.begin());) {
        auto* const route = static_cast<LiveRoute*>(slot.begin()[static_cast<std::ptrdiff_t>(i++)]);
        Field& target = *route->inSlot()->field();
        if (route->lastRun == _serial) {
            keepInStep(*route, field);
            continue;
        }
        route->lastRun = _serial;
        if (route->opposite)
            route->opposite->lastRun = _serial;
        if (!holdsNodes(target.dataType())) {
            target.assignValue(field);
            if (target.node()->state() == RUNNING_NS)
                queueRouted(target);
            continue;
        }
        Node& node = *target.node();
        const UInt64 id = node.ID();
        target.assignValue(field);
        if (!_delivering)
            return;
        if (Node::findNode(id) == &node && node.state() == RUNNING_NS)
            queueRouted(target);
        i = 0;
    }
}

} // namespace Orvane
