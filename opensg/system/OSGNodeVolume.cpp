#include <OpenSG/OSGNode.h>

#include <OpenSG/OSGVisitSubTree.h>

#include "OSGNodeExtras.h"
#include "OSGSceneStamp.h"

#include <algorithm>

// The part of Node that keeps bounding volumes. Trees may be deeper than the stack allows to recurse: what is
// still to do is kept in vectors.

namespace osg {

namespace {

NodeCore::ChildRange activeChildren(const Node& node)
{
    const UInt32 count = node.getNChildren();
    if (!node.getCore())
        return {0, count};
    const NodeCore::ChildRange range = node.getCore()->getActiveChildren(count);
    return {range.first, std::min(range.last, count)};
}

} // namespace

DynamicVolume& Node::getVolume(bool update)
{
    if (update)
        updateVolume();
    return _volume;
}

void Node::getWorldVolume(DynamicVolume& result)
{
    result = getVolume(true);
    if (_parent)
        result.transform(_parent->getToWorld());
}

void Node::updateVolume()
{
    struct Visit
    {
        Node* node;
        UInt32 next;
        UInt32 last;
        bool referred;
    };

    // A node that is in work already is one that appears inside itself: it adds nothing to its own volume.
    const auto outdated = [](const Node& node) {
        return !node._volume.isValid() && !node._volume.isStatic() && !node._updating;
    };
    if (!outdated(*this))
        return;

    std::vector<Visit> path;
    const auto enter = [&path](Node& node) {
        const NodeCore::ChildRange range = activeChildren(node);
        node._updating = true;
        path.push_back({&node, range.first, range.last, static_cast<bool>(node._core)});
    };
    enter(*this);
    while (!path.empty()) {
        Visit& visit = path.back();
        Node* below = nullptr;
        while (!below && visit.next < visit.last) {
            Node* child = visit.node->_children[visit.next++].getCPtr();
            below = outdated(*child) ? child : nullptr;
        }
        if (!below && visit.referred) {
            visit.referred = false;
            Node* tree = visit.node->_core->getReferredTree().getCPtr();
            below = tree && outdated(*tree) ? tree : nullptr;
        }
        if (below) {
            enter(*below);
        } else {
            visit.node->computeVolume();
            path.pop_back();
        }
    }
}

void Node::computeVolume()
{
    _volume.setEmpty();
    const NodeCore::ChildRange range = activeChildren(*this);
    for (UInt32 i = range.first; i < range.last; ++i)
        _volume.extendBy(_children[i]->_volume);
    if (_core) {
        const NodePtr tree = _core->getReferredTree();
        if (tree && !tree->_updating)
            _volume.extendBy(tree->_volume);
        _core->adjustVolume(_volume);
    }
    _volume.setValid();
    _updating = false;
    if (_extras && _extras->childTree)
        _extras->childTree->setStale();
}

const ChildTree& Node::childTree()
{
    if (!_extras)
        _extras = std::make_unique<Extras>();
    if (!_extras->childTree)
        _extras->childTree = std::make_unique<ChildTree>();
    _extras->childTree->update(*this);
    return *_extras->childTree;
}

void Node::invalidateVolume()
{
    // A volume that is out of date has told so already to all that depend on it, and is in no picture.
    if (!_volume.isValid() && !_volume.isStatic())
        return;
    SceneStamp::renew();
    if (_volume.isStatic())
        return;
    std::vector<Node*> waiting;
    const auto invalidate = [&waiting](Node* node) {
        if (node && node->_volume.isValid() && !node->_volume.isStatic()) {
            node->_volume.setValid(false);
            waiting.push_back(node);
        }
    };
    invalidate(this);
    while (!waiting.empty()) {
        const Node* node = waiting.back();
        waiting.pop_back();
        invalidate(node->_parent.getCPtr());
        if (!node->_extras)
            continue;
        for (const VisitSubTree* referrer : node->_extras->referrers) {
            for (const NodePtr& place : referrer->getParents())
                invalidate(place.getCPtr());
        }
    }
}

} // namespace osg
