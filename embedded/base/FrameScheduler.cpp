#include "base/FrameScheduler.h"
#include "base/Cascade.h"
#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/Proc.h"
#include <algorithm>

namespace Orvane {

namespace {

/// Room for so many updates is kept for the next frame.
constexpr std::size_t largestKept = 4096;

} // namespace

void FrameScheduler::setTicking(Proc& proc, bool ticking)
{
    if ((proc._tickSlot != 0) == ticking)
        return;
    if (ticking) {
        _ticking.push_back(&proc);
        proc._tickSlot = static_cast<std::uint32_t>(_ticking.size());
        requestFrame(0.0);
    } else {
        _ticking[proc._tickSlot - 1] = nullptr;
        proc._tickSlot = 0;
    }
}

void FrameScheduler::requestUpdate(Proc& proc)
{
    if (proc._updateSlot != 0)
        return;
    _updates.push_back(&proc);
    proc._updateSlot = static_cast<std::uint32_t>(_updates.size());
}

void FrameScheduler::requestFrame(double seconds)
{
    _wantedIn = std::min(_wantedIn, std::max(0.0, seconds));
    _hasAsked = true;
}

void FrameScheduler::forget(Proc& proc)
{
    setTicking(proc, false);
    if (proc._updateSlot == 0)
        return;
    // Lists keep their places when they change their roles.
    const std::size_t place = proc._updateSlot - 1;
    const bool isWaiting = place < _updates.size() && _updates[place] == &proc;
    (isWaiting ? _updates : _updating)[place] = nullptr;
    proc._updateSlot = 0;
}

void FrameScheduler::tick(double time, Cascade& cascade)
{
    const std::size_t count = _ticking.size();
    for (std::size_t i = 0; i < count; ++i) {
        Proc* const proc = _ticking[i];
        if (!proc)
            continue;
        const Cascade::WriterScope writer(cascade, proc->node());
        _hasAsked = false;
        proc->tick(time);
        if (_ticking[i] && !_hasAsked)
            requestFrame(0.0);
    }
    // Close the gaps of those that have left; the others keep their order.
    std::size_t place = 0;
    for (Proc* proc : _ticking)
        if (proc) {
            _ticking[place++] = proc;
            proc->_tickSlot = static_cast<std::uint32_t>(place);
        }
    _ticking.resize(place);
}

void FrameScheduler::update(Cascade& cascade)
{
    for (unsigned int round = 0; round < longestUpdate && !_updates.empty(); ++round) {
        _updating.swap(_updates);
        for (std::size_t i = 0; i < _updating.size(); ++i) {
            Proc* const proc = _updating[i];
            if (!proc)
                continue;
            _updating[i] = nullptr;
            proc->_updateSlot = 0;
            const Cascade::WriterScope writer(cascade, proc->node());
            proc->update();
        }
        _updating.clear();
    }
    // The first frame of a scene updates all of it, later ones little.
    if (_updating.capacity() > largestKept)
        std::vector<Proc*>().swap(_updating);
    if (_updates.empty() && _updates.capacity() > largestKept)
        std::vector<Proc*>().swap(_updates);
}

} // namespace Orvane
