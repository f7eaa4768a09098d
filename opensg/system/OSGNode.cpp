#include <OpenSG/OSGNode.h>

#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGVisitSubTree.h>

#include "OSGContainerType.h"
#include "OSGNodeExtras.h"
#include "OSGSceneStamp.h"

#include <algorithm>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(Node, AttachmentContainer)

NodePtr Node::createEmpty()
{
    return create();
}

Node::Node() = default;

Node::~Node()
{
    SceneStamp::renew();
    if (_extras) {
        for (VisitSubTree* referrer : _extras->referrers) {
            referrer->_subTreeRoot = NullFC;
            referrer->invalidateVolume();
        }
    }
    if (_core)
        _core->subParent(NodePtr(this));
    clearRefCP(_core);
    for (NodePtr& child : _children) {
        child->_parent = NullFC;
        clearRefCP(child);
    }
}

void Node::setCore(const NodeCorePtr& core)
{
    if (core == _core)
        return;
    const NodeCorePtr next = core;
    if (_core)
        _core->subParent(NodePtr(this));
    setRefdCP(_core, next);
    if (_core)
        _core->addParent(NodePtr(this));
    invalidateVolume();
}

NodePtr Node::getChild(UInt32 index) const
{
    return index < _children.size() ? _children[index] : NodePtr();
}

bool Node::canAdopt(const NodePtr& child) const
{
    if (!child)
        return false;
    bool below = child.getCPtr() == this;
    // A node without children has nothing below it; this keeps the building of deep chains linear.
    if (child->getNChildren() > 0) {
        for (const Node* node = this; node && !below; node = node->_parent.getCPtr())
            below = node == child.getCPtr();
    }
    if (below)
        SWARNING << "Node: a node cannot be added below itself" << std::endl;
    return !below;
}

// Takes the reference first: it may be the old parent that keeps the child alive.
void Node::adopt(const NodePtr& child)
{
    addRefCP(child);
    if (child->_parent)
        child->_parent->subChild(child);
    child->_parent = NodePtr(this);
}

void Node::addChild(const NodePtr& child)
{
    insertChild(getNChildren(), child);
}

void Node::insertChild(UInt32 index, const NodePtr& child)
{
    if (!canAdopt(child))
        return;
    const NodePtr added = child;
    adopt(added);
    const UInt32 place = std::min(index, getNChildren());
    _children.insert(_children.begin() + place, added);
    invalidateVolume();
}

void Node::replaceChild(UInt32 index, const NodePtr& child)
{
    if (index >= getNChildren() || child == _children[index] || !canAdopt(child))
        return;
    const NodePtr added = child;
    const NodePtr dropped = _children[index];
    adopt(added);
    // The new child may have stood before the old one in this very node.
    _children[static_cast<UInt32>(findChild(dropped))] = added;
    dropped->_parent = NullFC;
    subRefCP(dropped);
    invalidateVolume();
}

bool Node::replaceChildBy(const NodePtr& present, const NodePtr& next)
{
    const Int32 index = findChild(present);
    if (index < 0 || !next)
        return false;
    const NodePtr added = next;
    replaceChild(static_cast<UInt32>(index), added);
    return added->_parent.getCPtr() == this;
}

Int32 Node::findChild(const NodePtr& child) const
{
    const auto found = std::find(_children.begin(), _children.end(), child);
    return found == _children.end() ? -1 : static_cast<Int32>(found - _children.begin());
}

void Node::subChild(const NodePtr& child)
{
    const Int32 index = findChild(child);
    if (index >= 0)
        dropAt(static_cast<UInt32>(index));
}

void Node::subChild(UInt32 index)
{
    if (index < getNChildren())
        dropAt(index);
}

void Node::dropAt(UInt32 index)
{
    const NodePtr dropped = _children[index];
    _children.erase(_children.begin() + index);
    dropped->_parent = NullFC;
    subRefCP(dropped);
    invalidateVolume();
}

void Node::setTravMask(UInt32 mask)
{
    if (mask != _travMask)
        SceneStamp::renew();
    _travMask = mask;
}

Matrix Node::getToWorld() const
{
    Matrix result;
    getToWorld(result);
    return result;
}

void Node::getToWorld(Matrix& result) const
{
    std::vector<const NodeCore*> cores;
    for (const Node* node = this; node; node = node->_parent.getCPtr()) {
        if (node->_core)
            cores.push_back(node->_core.getCPtr());
    }
    result.setIdentity();
    for (auto core = cores.rbegin(); core != cores.rend(); ++core)
        (*core)->accumulateMatrix(result);
}

void Node::addReferrer(VisitSubTree* referrer)
{
    if (!_extras)
        _extras = std::make_unique<Extras>();
    _extras->referrers.push_back(referrer);
}

void Node::subReferrer(VisitSubTree* referrer)
{
    std::vector<VisitSubTree*>& referrers = _extras->referrers;
    const auto found = std::find(referrers.rbegin(), referrers.rend(), referrer);
    *found = referrers.back();
    referrers.pop_back();
}

NodePtr makeNodeFor(const NodeCorePtr& core)
{
    const NodePtr node = Node::create();
    node->setCore(core);
    return node;
}

NodePtr cloneTree(const NodePtr& root)
{
    if (!root)
        return NullFC;
    const auto copyOf = [](const NodePtr& node) {
        const NodePtr copy = makeNodeFor(node->getCore());
        copy->setTravMask(node->getTravMask());
        return copy;
    };
    const NodePtr result = copyOf(root);
    std::vector<std::pair<NodePtr, NodePtr>> waiting{{root, result}};
    while (!waiting.empty()) {
        const auto [source, copy] = waiting.back();
        waiting.pop_back();
        for (const NodePtr& child : source->getChildren()) {
            copy->addChild(copyOf(child));
            waiting.emplace_back(child, copy->getChildren().back());
        }
    }
    return result;
}

} // namespace osg
