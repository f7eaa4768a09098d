#include "base/GraphLink.h"
#include "base/NodeData.h"

namespace Orvane {

GraphLink::~GraphLink()
{
    if (_node)
        detach();
}

void GraphLink::attach(Node& child)
{
    Node::Data& data = *child.data();
    _node = &child;
    _previous = data.lastParent;
    (data.lastParent ? data.lastParent->_next : data.firstParent) = this;
    data.lastParent = this;
}

void GraphLink::detach()
{
    Node::Data& data = *_node->data();
    (_previous ? _previous->_next : data.firstParent) = _next;
    (_next ? _next->_previous : data.lastParent) = _previous;
    _previous = nullptr;
    _next = nullptr;
    _node = nullptr;
    if (_handle) {
        _handle->link = nullptr;
        if (_handle->holders == 0)
            delete _handle;
        _handle = nullptr;
    }
}

LinkHandle* GraphLink::holdHandle()
{
    if (!_handle)
        _handle = new LinkHandle{this};
    ++_handle->holders;
    return _handle;
}

NodeLink::NodeLink() = default;

NodeLink::NodeLink(const NodeLink& other)
    : BaseObject(other)
    , _node(other._node)
{
}

NodeLink& NodeLink::operator=(const NodeLink& other)
{
    // A link of the graph leads where its field says; only a copy takes over another one's node.
    if (!_field)
        _node = other._node;
    return *this;
}

NodeLink::~NodeLink() = default;

Node* NodeLink::node()
{
    return _node;
}

Node* NodeLink::parent() const
{
    return _field ? _field->node() : nullptr;
}

} // namespace Orvane
