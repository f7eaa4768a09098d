#pragma once

#include <Orvane/Node.h>

namespace Orvane::Qt4 {

/// A node of the runtime, or none, that may die while it is remembered: the id tells whether the node of that
/// address is still the one that was meant.
class QorBorrowedNode
{
public:
    QorBorrowedNode() = default;
    /// Remembers a node; null is none.
    explicit QorBorrowedNode(Orvane::Node* node)
        : _node(node)
        , _id(node ? node->ID() : 0)
    {
    }

    /// The node while it lives, else null.
    Orvane::Node* get() const { return _node && Orvane::Node::findNode(_id) == _node ? _node : nullptr; }

private:
    Orvane::Node* _node = nullptr;
    unsigned long long _id = 0;
};

} // namespace Orvane::Qt4
