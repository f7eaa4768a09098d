#pragma once

#include <Orvane/Export.h>
#include <vector>

namespace Orvane {

class GraphLink;
class Node;

/// The way from a node up to a node without parents, by the oldest links that lead there: the deepest link
/// first. No node comes twice; a link that leads only into what hangs below the node is not taken. Empty for
/// a node from which no such way leads up.
ORVANE_API std::vector<GraphLink*> climb(const Node& node);

} // namespace Orvane
