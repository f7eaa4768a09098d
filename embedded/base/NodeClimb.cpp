#include "base/NodeClimb.h"
#include "base/ContextData.h"
#include "base/NodeData.h"
#include <unordered_set>

namespace Orvane {

namespace {

GraphLink* oldestParentLink(const Node& node)
{
    return node.data()->firstParent;
}

/// The way of a depth-first search: for a graph in which the oldest links run in a circle.
std::vector<GraphLink*> searchUp(const Node& node)
{
    std::unordered_set<const Node*> seen{&node};
    std::vector<GraphLink*> way;
    GraphLink* link = oldestParentLink(node);
    for (;;) {
        while (link && seen.count(link->parent()) > 0)
            link = link->nextParentLink();
        if (link) {
            const Node& parent = *link->parent();
            seen.insert(&parent);
            way.push_back(link);
            link = oldestParentLink(parent);
            if (!link)
                return way;
        } else if (way.empty()) {
            return way;
        } else {
            link = way.back()->nextParentLink();
            way.pop_back();
        }
    }
}

} // namespace

std::vector<GraphLink*> climb(const Node& node)
{
    std::vector<GraphLink*> way;
    // Longer than all nodes of the context is only a circle.
    const std::size_t longest = contextData(node).nodeCount;
    for (GraphLink* link = oldestParentLink(node); link; link = oldestParentLink(*link->parent())) {
        if (way.size() >= longest)
            return searchUp(node);
        way.push_back(link);
    }
    return way;
}

std::vector<Node*> nodesAbove(const Node& node)
{
    std::vector<Node*> nodes;
    for (const GraphLink* link : climb(node))
        nodes.push_back(link->parent());
    return nodes;
}

std::vector<Node*> parentsOf(const Node& node)
{
    std::vector<Node*> nodes;
    for (const GraphLink* link = oldestParentLink(node); link; link = link->nextParentLink())
        nodes.push_back(link->parent());
    return nodes;
}

Node* Node::contextRoot() const
{
    // Nearly always the oldest links lead to it.
    const Node* top = this;
    std::size_t steps = 0;
    for (; GraphLink* link = oldestParentLink(*top); top = link->parent())
        if (top->type()->isContextRoot() || ++steps > contextData(*this).nodeCount)
            break;
    if (top->type()->isContextRoot())
        return const_cast<Node*>(top);

    std::unordered_set<const Node*> seen{this};
    std::vector<const Node*> stack{this};
    while (!stack.empty()) {
        const Node* node = stack.back();
        stack.pop_back();
        if (node->type()->isContextRoot())
            return const_cast<Node*>(node);
        for (GraphLink* link = oldestParentLink(*node); link; link = link->nextParentLink())
            if (seen.insert(link->parent()).second)
                stack.push_back(link->parent());
    }
    return nullptr;
}

} // namespace Orvane
