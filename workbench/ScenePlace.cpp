#include "ScenePlace.h"

#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <list>

using namespace Orvane;

namespace {

NodeLink* linkAt(const Node& parent, const std::string& name, int index)
{
    Field* const field = parent.findField(name, Node::EXACT_FSO);
    if (auto* const single = dynamic_cast<SFNode*>(field))
        return &single->link();
    auto* const multi = dynamic_cast<MFNode*>(field);
    return multi && index >= 0 && index < static_cast<int>(multi->size()) ? &multi->elem(index) : nullptr;
}

} // namespace

ScenePlace ScenePlace::of(const NodePath& path)
{
    ScenePlace place;
    const Node* const node = path.node();
    if (!node)
        return place;
    place.name = node->name() ? *node->name() : std::string();
    place.type = node->type()->name;
    std::list<NodeLink*> links;
    path.nodeLinks(links);
    for (auto link = links.rbegin(); link != links.rend(); ++link) {
        Turn turn{(*link)->field()->name(), 0};
        if (auto* const multi = dynamic_cast<MFNode*>((*link)->field())) {
            while (&multi->elem(turn.index) != *link)
                ++turn.index;
        }
        place.way.push_back(turn);
    }
    return place;
}

NodePath ScenePlace::find(Node& root) const
{
    NodePath path(&root);
    Node* node = &root;
    for (const Turn& turn : way) {
        NodeLink* const link = node ? linkAt(*node, turn.field, turn.index) : nullptr;
        node = link ? link->directNode() : nullptr;
        if (node)
            path.addNode(node);
    }
    const bool isThere = node && node->type()->name == type && path.node() == node;
    const std::string present = isThere && node->name() ? *node->name() : std::string();
    // A file that was written has given names to nodes without one.
    if (isThere && (name.empty() || present == name))
        return path;
    // It may have moved.
    Node* const named = name.empty() ? nullptr : NodeNameSpace::findNode(root.nameSpace(), name);
    return NodePath(named && named->type()->name == type ? named : nullptr);
}
