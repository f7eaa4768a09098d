#pragma once

#include "base/NodeRef.h"
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class Field;
class Node;

/// The text form of a link: the name of the node, else its id text; "NULL" for none.
std::string nodeText(const Node* node);

/// The nodes that a text form names, in the name space and the context of the field's node. NULL gives none.
/// False, with the reason in \a error, when one is not found.
bool findNodes(const Field& field, std::string_view text, std::vector<NodeRef>& nodes, std::string& error);

} // namespace Orvane
