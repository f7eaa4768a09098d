#pragma once

#include <Orvane/NodePath.h>
#include <vector>

namespace Orvane {
class Node;
class NodeLink;
} // namespace Orvane

/// The nodes below a root in the order of the tree of a scene, each once, at the first of its places. A
/// picture of the moment: it is used before the scene changes.
class NodeSearch
{
public:
    /// With \a withBodies what lies inside instances of prototypes is listed, too.
    NodeSearch(Orvane::Node& root, bool withBodies);

    int size() const { return static_cast<int>(_places.size()); }
    Orvane::Node* node(int place) const { return _places[static_cast<std::size_t>(place)].node; }
    /// The way to a node from the root of the search, which is a root of its context.
    Orvane::NodePath path(int place) const;

private:
    struct Place
    {
        Orvane::Node* node;
        Orvane::NodeLink* link; ///< that leads to the node; null for the root
        int above;              ///< place of the node that has the link
    };

    std::vector<Place> _places;
};
