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
        const std::vector<Node*>* moved; ///< all children that can be out of date; null when all can
        bool referred;

        Node* child() { return moved ? (*moved)[next++] : node->_children[next++].getCPtr(); }
    };

    // A node that is in work already is one that appears inside itself: it adds nothing to its own volume.
    const auto outdated = [](const Node& node) {
        return !node._volume.isValid() && !node._volume.isStatic() && !node._updating;
    };
    if (!outdated(*this))
        return;

    std::vector<Visit> path;
    const auto enter = [&path](Node& node) {
        node._updating = true;
        Visit visit{&node, 0, 0, nullptr, static_cast<bool>(node._core)};
        const ChildTree* const tree = node._extras ? node._extras->childTree.get() : nullptr;
        if (tree && !tree->isStale()) {
            visit.moved = &tree->moved();
            visit.last = static_cast<UInt32>(tree->moved().size());
        } else {
            const NodeCore::ChildRange range = activeChildren(node);
            visit.next = range.first;
            visit.last = range.last;
        }
        path.push_back(visit);
    };
    enter(*this);
    while (!path.empty()) {
        Visit& visit = path.back();
        Node* below = nullptr;
        while (!below && visit.next < visit.last) {
            Node* const child = visit.child();
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
    uniteChildren();
    if (_core) {
        const NodePtr tree = _core->getReferredTree();
        if (tree && !tree->_updating)
            _volume.extendBy(tree->_volume);
        _core->adjustVolume(_volume);
    }
    _volume.setValid();
    _updating = false;
}

void Node::uniteChildren()
{
    const NodeCore::ChildRange range = activeChildren(*this);
    ChildTree* const tree = _extras ? _extras->childTree.get() : nullptr;
    if (tree && range.first == 0 && range.last == getNChildren() && tree->isSettled()) {
        tree->update(*this);
        Pnt3f low;
        Pnt3f high;
        if (tree->getBounds(low, high)) {
            if (low[0] <= high[0]) {
                _volume.extendBy(low);
                _volume.extendBy(high);
            }
            return;
        }
    }
    for (UInt32 i = range.first; i < range.last; ++i)
        _volume.extendBy(_children[i]->_volume);
}

ChildTree& Node::makeChildTree()
{
    if (!_extras)
        _extras = std::make_unique<Extras>();
    if (!_extras->childTree)
        _extras->childTree = std::make_unique<ChildTree>();
    return *_extras->childTree;
}

const ChildTree& Node::childTree()
{
    ChildTree& tree = makeChildTree();
    tree.update(*this);
    return tree;
}

void Node::invalidateVolume()
{
    if (_extras && _extras->childTree)
        _extras->childTree->setStale();
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
        Node* const node = waiting.back();
        waiting.pop_back();
        if (Node* const parent = node->_parent.getCPtr()) {
            parent->noteMoved(*node);
            invalidate(parent);
        }
        if (!node->_extras)
            continue;
        for (const VisitSubTree* referrer : node->_extras->referrers) {
            for (const NodePtr& place : referrer->getParents())
                invalidate(place.getCPtr());
        }
    }
}

void Node::noteMoved(Node& child)
{
    // While a tree is being made its volumes are out of date anyway.
    if (!_volume.isValid() && !(_extras && _extras->childTree))
        return;
    if (getNChildren() >= ChildTree::fewestChildren)
        makeChildTree().noteMoved(child);
}

} // namespace osg
