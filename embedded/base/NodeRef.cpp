#include "base/NodeRef.h"
#include "base/NodeData.h"
#include "base/NodeDeath.h"

namespace Orvane {

NodeRef::NodeRef(Node* node)
{
    hold(node);
}

NodeRef::NodeRef(const NodeRef& other)
{
    hold(other._node);
}

NodeRef::NodeRef(NodeRef&& other) noexcept
{
    hold(other._node);
    other.letGo();
}

NodeRef& NodeRef::operator=(NodeRef other) noexcept
{
    Node* const taken = other.letGo();
    other.hold(letGo()); // which lets it go for good
    hold(taken);
    return *this;
}

NodeRef::~NodeRef()
{
    Node* const node = letGo();
    if (node && !isHeld(*node))
        releaseNode(*node);
}

void NodeRef::hold(Node* node)
{
    _node = node;
    if (!node)
        return;
    _next = node->data()->firstRef;
    if (_next)
        _next->_previous = this;
    node->data()->firstRef = this;
}

/// Takes the holder out of its node's list; whether the node lives on is the caller's to see to.
Node* NodeRef::letGo()
{
    Node* const node = _node;
    if (!node)
        return nullptr;
    (_previous ? _previous->_next : node->data()->firstRef) = _next;
    if (_next)
        _next->_previous = _previous;
    _node = nullptr;
    _previous = nullptr;
    _next = nullptr;
    return node;
}

void NodeAccess::clearRefs(Node& node)
{
    while (node.data()->firstRef)
        node.data()->firstRef->letGo();
}

} // namespace Orvane
