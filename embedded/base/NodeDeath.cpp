#include "base/NodeDeath.h"
#include "base/ContextData.h"
#include "base/NameSpace.h"
#include "base/NodeData.h"
#include "base/NodeGraph.h"
#include "base/NodeTable.h"
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

/// Takes the links of other nodes to the node out of their fields, as if their owners had done so.
void removeParentLinks(Node& node)
{
    while (GraphLink* link = node.data()->firstParent)
        removeLink(*link);
}

void leaveContext(Node& node)
{
    Context::Data& context = contextData(node);
    Node::Data& data = *node.data();
    --context.nodeCount;
    if (data.isReleased)
        std::replace(context.released.begin(), context.released.end(), &node, static_cast<Node*>(nullptr));
}

/// All that a node's death means, but for the memory. It comes in this order: observers hear of it while
/// everything can be read, then its routes go, its name, what it does, and its links to children.
void endNode(Node& node)
{
    Node::Data& data = *node.data();
    Context::Data& context = contextData(node);
    NodeAccess::setState(node, DYING_NS);
    Node::_deleteObject.fire(timeOf(node), &node);

    std::vector<Field*> fields;
    forEachField(node, [&fields](Field& field) { fields.push_back(&field); });
    for (Field* field : fields)
        endRoutes(*field);
    data.proc.reset();
    if (data.extras)
        data.extras->resting.reset();
    leaveNameSpace(node);
    NodeAccess::clearRefs(node);
    context.roots.erase(
        std::remove_if(context.roots.begin(), context.roots.end(), [](const NodeRef& root) { return !root; }),
        context.roots.end());

    std::vector<GraphLink*> links;
    forEachChildLink(node, [&links](GraphLink& link) { links.push_back(&link); });
    for (GraphLink* link : links) {
        Node& child = *link->child();
        link->detach();
        if (!isHeld(child) && child.state() != DYING_NS)
            releaseNode(child);
    }
    leaveContext(node);
    nodeTable::remove(data.id);
}

/// The nodes of a context to which a way leads from some of them.
class Reach
{
public:
    explicit Reach(const std::vector<Node*>& nodes)
        : _firstId(nodes.front()->ID())
        , _isReached(nodes.back()->ID() - _firstId + 1, false)
    {
    }

    void from(const Node& node)
    {
        add(node);
        while (!_stack.empty()) {
            const Node* const next = _stack.back();
            _stack.pop_back();
            forEachChildLink(*next, [this](GraphLink& link) { add(*link.child()); });
        }
    }
    bool has(const Node& node) const { return _isReached[node.ID() - _firstId]; }

private:
    void add(const Node& node)
    {
        if (has(node))
            return;
        _isReached[node.ID() - _firstId] = true;
        _stack.push_back(&node);
    }

    UInt64 _firstId;
    std::vector<bool> _isReached;
    std::vector<const Node*> _stack;
};

/// Tells what works outside of the world that it has gone, so that it lets go of what it holds.
void announceLeave(Context::Data& context)
{
    const std::vector<Node*> nodes = nodeTable::nodesOf(context.context);
    if (nodes.empty())
        return;
    Reach reach(nodes);
    for (const NodeRef& root : context.roots)
        if (root)
            reach.from(*root);
    std::vector<NodeRef> left;
    for (Node* node : nodes)
        if (node->data()->proc && !reach.has(*node))
            left.emplace_back(node);
    for (const NodeRef& node : left)
        if (node && node->data()->proc)
            node->data()->proc->leaveWorld();
}

/// Releases the nodes to which neither a root nor a holder leads, which are those that only hold each other.
void releaseCycles(Context::Data& context)
{
    const std::vector<Node*> nodes = nodeTable::nodesOf(context.context);
    if (nodes.empty())
        return;
    Reach reach(nodes);
    for (const Node* node : nodes)
        if (node->data()->firstRef)
            reach.from(*node);
    for (Node* node : nodes) {
        if (reach.has(*node))
            continue;
        while (GraphLink* link = node->data()->firstParent)
            link->detach();
        releaseNode(*node);
    }
}

void announceEnd(Node& node)
{
    const NodeExtras* const extras = node.data()->extras.get();
    if (node.data()->proc)
        node.data()->proc->ending();
    else if (extras && extras->resting)
        extras->resting->ending();
}

} // namespace

void releaseNode(Node& node)
{
    Node::Data& data = *node.data();
    if (!data.isReleased) {
        data.isReleased = true;
        contextData(node).released.push_back(&node);
    }
    if (contextData(node).busy == 0)
        endReleasedNodes(*data.context);
}

void endReleasedNodes(Context& context)
{
    Context::Data& data = *context.data();
    ++data.busy;
    do {
        while (!data.released.empty()) {
            Node* const node = data.released.front();
            data.released.pop_front();
            if (!node)
                continue;
            node->data()->isReleased = false;
            if (!isHeld(*node))
                announceEnd(*node);
            if (!isHeld(*node))
                delete node;
        }
        if (std::exchange(data.mayHaveCycles, false)) {
            announceLeave(data);
            releaseCycles(data);
        }
    } while (!data.released.empty());
    --data.busy;
}

void endAllNodes(Context& context)
{
    Context::Data& data = *context.data();
    ++data.busy;
    data.roots.clear();
    data.toStart.clear();
    --data.busy;
    endReleasedNodes(context);
    ++data.busy;
    while (data.nodeCount > 0) {
        std::vector<UInt64> ids;
        for (const Node* node : nodeTable::nodesOf(context))
            ids.push_back(node->ID());
        for (const UInt64 id : ids) {
            // Another one may have taken it along.
            if (Node* const node = nodeTable::find(id))
                announceEnd(*node);
            delete nodeTable::find(id);
        }
    }
    data.released.clear();
    --data.busy;
}

Node::~Node()
{
    if (!_data)
        return;
    BusyScope busy(*_data->context);
    removeParentLinks(*this);
    endNode(*this);
    NodeType& type = *_type;
    delete _data;
    _data = nullptr;
    if (_name)
        dropName(_name);
    countNode(type, -1);
}

} // namespace Orvane
