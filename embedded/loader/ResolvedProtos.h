#pragma once

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Orvane {

class EventInSlot;
class EventOutSlot;
class Field;
class Node;

/// A route between two nodes that are written.
struct WrittenRoute
{
    const EventOutSlot* from;
    const EventInSlot* to;
};

/// The graph as it is to be written: with its instances of prototypes, or with the plain nodes of their
/// bodies in their places.
class ResolvedProtos
{
public:
    explicit ResolvedProtos(bool isResolving)
        : _isResolving(isResolving)
    {
    }

    /// The node that is written where \a node stands: the first one of an instance's body. The node itself
    /// when it is no instance, or its body is not known; null when the body is empty. The rest of the body
    /// joins `unseen`.
    const Node* resolve(const Node* node);
    /// The node that bears the name of \a node: the instance for which it stands, or itself.
    const Node& bearer(const Node& node) const;

    /// Nodes of bodies that are not drawn but do their work, as they are met.
    const std::vector<const Node*>& unseen() const { return _unseen; }

    /// The routes of the scene that leave \a nodes, those across instances led to where they begin and end.
    std::vector<WrittenRoute> routes(const std::vector<const Node*>& nodes) const;

private:
    bool isResolved(const Node& node) const;
    void follow(const EventOutSlot& source, std::vector<WrittenRoute>& found) const;

    bool _isResolving;
    std::vector<const Node*> _unseen;
    std::unordered_set<const Node*> _metInstances;
    std::unordered_map<const Node*, const Node*> _standsFor; ///< first nodes of bodies, and their instances
};

} // namespace Orvane
