#pragma once

#include <Orvane/Export.h>

namespace Orvane {

class Node;

/// Holds a node that no link holds yet, or not any more. When the last holder and the last link have gone,
/// the node dies at the next moment at which no event is being delivered. A node that dies all the same, with
/// its context or by `delete`, leaves its holders empty.
class ORVANE_API NodeRef
{
public:
    NodeRef() = default;
    explicit NodeRef(Node* node);
    NodeRef(const NodeRef& other);
    NodeRef(NodeRef&& other) noexcept;
    NodeRef& operator=(NodeRef other) noexcept;
    ~NodeRef();

    Node* get() const { return _node; }
    Node& operator*() const { return *_node; }
    Node* operator->() const { return _node; }
    explicit operator bool() const { return _node; }

private:
    friend class NodeAccess;

    void hold(Node* node);
    Node* letGo();

    Node* _node = nullptr;
    NodeRef* _previous = nullptr; ///< holders of the same node
    NodeRef* _next = nullptr;
};

} // namespace Orvane
