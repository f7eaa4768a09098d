#pragma once

#include <Orvane/BaseObject.h>

namespace Orvane {

class Field;
class Node;

/// A link from a parent node to a child: an element of an `SFNode` or `MFNode` field. The field owns its
/// links. A copy is no link of the graph: its field is null, it does not count as a parent, its end changes
/// nothing.
class ORVANE_API NodeLink : public BaseObject
{
public:
    /// An empty link outside of any field.
    NodeLink();
    /// A copy is no link of the graph.
    NodeLink(const NodeLink& other);
    NodeLink& operator=(const NodeLink& other);
    ~NodeLink() override;

    /// The linked node, behind a reference when the link holds one; null when empty.
    Node* node();
    /// The node stored in the link itself; null when empty.
    Node* directNode() { return _node; }
    /// The node that holds the link; null for a copy.
    Node* parent() const;
    /// The field that holds the link; null for a copy.
    Field* field() const { return _field; }

protected:
    Field* _field = nullptr;
    Node* _node = nullptr;
};

} // namespace Orvane
