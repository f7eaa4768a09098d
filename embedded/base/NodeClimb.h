#pragma once

#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

class GraphLink;
class Node;

/// The way from a node up to a node without parents, by the oldest links that lead there: the deepest link
/// first. No node comes twice; a link that leads only into what hangs below the node is not taken. Empty for
/// a node from which no such way leads up.
std::vector<GraphLink*> climb(const Node& node);

/// The nodes on that way, the lowest one first, without the node itself.
ORVANE_API std::vector<Node*> nodesAbove(const Node& node);

/// The nodes that link to a node, once for each link, by the oldest one first.
ORVANE_API std::vector<Node*> parentsOf(const Node& node);

} // namespace Orvane
