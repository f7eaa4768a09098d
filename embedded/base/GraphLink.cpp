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
    _node = &child;
    GraphLink*& first = child.data()->firstParent;
    if (first) {
        _previous = first->_previous;
        _previous->_next = this;
    } else {
        first = this;
    }
    first->_previous = this;
}

void GraphLink::detach()
{
    GraphLink*& first = _node->data()->firstParent;
    if (first == this)
        first = _next;
    else
        _previous->_next = _next;
    if (_next)
        _next->_previous = _previous;
    else if (first)
        first->_previous = _previous;
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
