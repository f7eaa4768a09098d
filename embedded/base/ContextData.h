#pragma once

#include "base/Cascade.h"
#include "base/FrameClock.h"
#include "base/FrameScheduler.h"
#include "base/FrameWindow.h"
#include "base/NameSpace.h"
#include "base/NodeData.h"
#include <Orvane/Context.h>
#include <deque>
#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

namespace Orvane {

class LoadWatcher;

/// What a context is made of.
struct Context::Data
{
    Data(Context& owner, UInt64 number)
        : context(owner)
        , id(number)
    {
    }

    Context& context;
    const UInt64 id; ///< process-wide, never used again
    std::vector<NodeRef> roots;
    NameSpaceList nameSpaces;
    std::unordered_multimap<const Node*, SceneNames*> namesOfRoots; ///< those that are not closed
    bool isRunning = false; ///< the roots have been set running, so what joins them runs too

    std::size_t nodeCount = 0;

    Cascade cascade;
    FrameScheduler scheduler;
    FrameClock clock;

    unsigned int busy = 0;              ///< operations under way during which no node dies
    std::deque<Node*> released;         ///< nodes that nothing holds, to die when nothing is under way
    bool mayHaveCycles = false;         ///< roots have gone: nodes that hold each other may be left behind
    unsigned int loads = 0;             ///< loads under way
    std::vector<NodeRef> toStart;       ///< nodes that a load has linked below running ones
    LoadWatcher* loadWatcher = nullptr; ///< null for none
    bool isLoadGivenUp = false;         ///< the watcher has ended the last load
    LoadReport report;
    std::set<const NodeType*> toldTypes; ///< of which the log has said that their nodes do nothing
    std::vector<std::string> saveNotes;  ///< of the last save

    bool isInFrame = false;
    std::vector<FrameWindow*> windows; ///< null where one has left while they are being gone through
    FrameStatistics drawn;             ///< of the last drawn frame, and the counts
    std::deque<double> drawTimes;      ///< of the last second, on the steady clock
};

/// Keeps released nodes alive as long as it lives; they die at the end of the outermost one.
class ORVANE_API BusyScope
{
public:
    explicit BusyScope(Context& context);
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;
    ~BusyScope();

private:
    Context::Data& _data;
};

/// Keeps a context alive while it works, even if a host lets go of it under way.
class RefGuard
{
public:
    explicit RefGuard(Context& context)
        : _context(context)
    {
        ++context._refCount;
    }
    RefGuard(const RefGuard&) = delete;
    RefGuard& operator=(const RefGuard&) = delete;
    ~RefGuard() { _context.subRef(); }

private:
    Context& _context;
};

inline Context::Data& contextData(const Node& node)
{
    return *node.data()->context->data();
}

/// The stamp of notifications: the time of the last frame.
inline double timeOf(const Node& node)
{
    return node.data()->context->timeStamp();
}

/// Gives a new root to the context; a `Scene` without names gets its name space.
void addRoot(Context& context, const NodeRef& root);

/// Lets the windows come and go as the nodes ask.
void settleWindows(Context& context);

/// All contexts in order of creation.
const std::vector<Context*>& livingContexts();

} // namespace Orvane
