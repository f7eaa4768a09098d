#include "base/NodeRunning.h"
#include "base/ContextData.h"
#include "base/KeptTypes.h"
#include "base/NodeData.h"
#include <Orvane/Authoring.h>
#include <algorithm>

namespace Orvane {

namespace {

/// A node on the way down, with the children that are still to be started.
struct Step
{
    NodeRef node;
    std::vector<NodeRef> children;
};

Step stepInto(Node& node)
{
    NodeAccess::setState(node, SETUP_NS);
    Step step{NodeRef(&node), {}};
    forEachChildLink(node, [&step](GraphLink& link) {
        if (link.child()->state() < SETUP_NS)
            step.children.emplace_back(link.child());
    });
    // Taken from the back, in the order of the fields.
    std::reverse(step.children.begin(), step.children.end());
    return step;
}

/// The behaviour that has waited for the node to come back; null when none has.
std::unique_ptr<Proc> takeResting(Node& node)
{
    NodeExtras* const extras = node.data()->extras.get();
    return extras ? std::move(extras->resting) : nullptr;
}

void startAlone(Node& node)
{
    Context::Data& context = contextData(node);
    if (std::unique_ptr<Proc> waiting = takeResting(node)) {
        node.data()->proc = std::move(waiting);
        NodeAccess::setState(node, RUNNING_NS);
        const Cascade::WriterScope writer(context.cascade, node);
        node.data()->proc->resume(context.context.timeStamp());
        return;
    }
    if (const ProcFactory makeProc = node.type()->data()->behaviour->makeProc)
        node.data()->proc.reset(makeProc(node));
    else
        tellOfKept(node);
    NodeAccess::setState(node, RUNNING_NS);
    if (Proc* proc = node.data()->proc.get()) {
        const Cascade::WriterScope writer(context.cascade, node);
        proc->start(context.context.timeStamp());
    }
}

} // namespace

void joinParent(const Node& parent, Node& child)
{
    if (parent.state() < SETUP_NS || parent.state() == DYING_NS || child.state() >= SETUP_NS)
        return;
    Context::Data& context = contextData(parent);
    if (context.loads > 0)
        context.toStart.emplace_back(&child);
    else
        startNode(child);
}

void startNode(Node& node)
{
    if (node.state() >= SETUP_NS)
        return;
    BusyScope busy(*node.data()->context);
    std::vector<Step> way;
    way.push_back(stepInto(node));
    while (!way.empty()) {
        Step& step = way.back();
        if (!step.node || step.node->state() != SETUP_NS) {
            way.pop_back(); // its life has ended meanwhile
        } else if (step.children.empty()) {
            const NodeRef done = std::move(step.node);
            way.pop_back();
            startAlone(*done);
        } else {
            const NodeRef child = std::move(step.children.back());
            step.children.pop_back();
            if (child && child->state() < SETUP_NS)
                way.push_back(stepInto(*child));
        }
    }
}

void restNode(Node& node)
{
    if (node.state() != RUNNING_NS)
        return;
    const BusyScope busy(*node.data()->context);
    Context::Data& context = contextData(node);
    const NodeRef held(&node);
    Proc* const proc = node.data()->proc.get();
    bool waits = false;
    if (proc) {
        const Cascade::WriterScope writer(context.cascade, node);
        waits = proc->rest(context.context.timeStamp());
        if (!waits)
            proc->ending();
    }
    if (!held)
        return;
    if (waits) {
        context.scheduler.forget(*proc);
        context.cascade.forget(*proc);
        node.data()->makeExtras().resting = std::move(node.data()->proc);
    }
    node.data()->proc.reset();
    NodeAccess::setState(node, LOADED_NS);
}

void Authoring::rest(Node& node)
{
    restNode(node);
}

void raiseState(Node& node, NodeState state)
{
    std::vector<Node*> stack{&node};
    while (!stack.empty()) {
        Node* const next = stack.back();
        stack.pop_back();
        if (next->state() >= state)
            continue;
        NodeAccess::setState(*next, state);
        forEachChildLink(*next, [&stack](GraphLink& link) { stack.push_back(link.child()); });
    }
}

void startJoinedNodes(Context& context)
{
    std::vector<NodeRef> joined;
    joined.swap(context.data()->toStart);
    for (const NodeRef& node : joined)
        if (node && node->data()->firstParent)
            startNode(*node);
}

} // namespace Orvane
