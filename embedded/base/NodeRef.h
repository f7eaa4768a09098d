#pragma once

#include <Orvane/Export.h>
#include <utility>

namespace Orvane {

class Node;

/// Holds a node that no link holds yet, or not any more. When the last holder and the last link have gone,
/// the node dies at the next moment at which no event is being delivered.
class ORVANE_API NodeRef
{
public:
    NodeRef() = default;
    explicit NodeRef(Node* node);
    NodeRef(const NodeRef& other);
    NodeRef(NodeRef&& other) noexcept
        : _node(std::exchange(other._node, nullptr))
    {
    }
    NodeRef& operator=(NodeRef other) noexcept
    {
        std::swap(_node, other._node);
        return *this;
    }
    ~NodeRef();

    Node* get() const { return _node; }
    Node& operator*() const { return *_node; }
    Node* operator->() const { return _node; }
    explicit operator bool() const { return _node; }

private:
    Node* _node = nullptr;
};

} // namespace Orvane
