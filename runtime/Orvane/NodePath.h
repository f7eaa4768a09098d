#pragma once

#include <Orvane/Export.h>
#include <list>

namespace Orvane {

class Node;
class NodeLink;

/// A chain of links from a root node down to a node: one place of the node in the graph. A value; it stays
/// safe when its links or nodes die, and is then no longer valid.
class ORVANE_API NodePath
{
public:
    /// The path that climbs from \a node to its root by the oldest parent links. Of a root it has no links.
    NodePath(Node* node = nullptr);
    NodePath(const NodePath& other);
    /// As `setNode`.
    explicit NodePath(const std::list<NodeLink*>& links);
    NodePath& operator=(const NodePath& other);
    virtual ~NodePath();

    /// Same root and same links.
    bool operator==(const NodePath& other) const;
    bool operator!=(const NodePath& other) const { return !(*this == other); }

    /// The last node; null when the path is not valid.
    Node* node() const;
    /// False when there is no node or a link is gone.
    bool isValid() const;
    /// Goes on to \a child, by the first link of the present last node to it. Without such a link nothing
    /// changes.
    const NodePath& addNode(Node* child);
    /// The links, the deepest first. Empty for a root and for a path that is not valid.
    void nodeLinks(std::list<NodeLink*>& links) const;
    /// Replaces the chain; \a links have the deepest first.
    void setNode(const std::list<NodeLink*>& links);

    struct Data;

private:
    Data* _data = nullptr;
};

} // namespace Orvane
