#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Orvane {

class Node;

/// The nodes that the file of an inline exports and the scene imports, with their names in the scene.
std::vector<std::pair<std::string, const Node*>> importedNodes(const Node& inlineNode);

} // namespace Orvane
