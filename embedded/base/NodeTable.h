#pragma once

#include <Orvane/Types.h>
#include <vector>

namespace Orvane {

class Context;
class Node;

/// The living nodes of the process by id. Ids count up from 1, so none is ever used again.
namespace nodeTable {

/// Gives the node an id.
UInt64 add(Node& node);
void remove(UInt64 id);
/// All nodes of a context, in order of creation.
std::vector<Node*> nodesOf(const Context& context);
/// Null for an id that no living node has.
Node* find(UInt64 id);

} // namespace nodeTable

} // namespace Orvane
