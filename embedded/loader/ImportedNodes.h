#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Orvane {

class Node;
class NodeNameSpace;

/// The nodes that the file of an inline exports and the scene imports, with their names in the scene.
std::vector<std::pair<std::string, Node*>> importedNodes(const Node& inlineNode);

/// All nodes that are imported among the names of a file, by their names there; those of one inline may be
/// left out.
std::unordered_map<std::string, Node*> importedNodes(const NodeNameSpace& names,
                                                     const Node* exceptInline = nullptr);

} // namespace Orvane
