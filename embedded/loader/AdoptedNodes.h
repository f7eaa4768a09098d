#pragma once

#include "base/NodeRef.h"
#include <memory>
#include <vector>

/// What becomes of nodes that a scene takes over from a text.
namespace Orvane {

class Node;
class NodeNameSpace;
class NodeType;

/// The prototypes of which a scene can have instances: those that it declares, and those of which it has
/// some. Of several that bear one name the last one counts.
std::vector<std::shared_ptr<NodeType>> usablePrototypes(const Node& scene);

/// True when two prototypes are declared alike, so that each may stand for the other.
bool isSameDeclaration(const NodeType& a, const NodeType& b);

/// Takes the content out of the root of a text, and gives what stands among the names of the text to those of
/// the scene.
void adoptContent(Node& textRoot, NodeNameSpace& textNames, Node& scene, std::vector<NodeRef>& content);

} // namespace Orvane
