#pragma once

#include <Orvane/Types.h>

namespace Orvane {

class Node;

/// The living nodes of the process by id. Ids count up from 1, so none is ever used again.
namespace nodeTable {

/// Gives the node an id.
UInt64 add(Node& node);
void remove(UInt64 id);
/// Null for an id that no living node has.
Node* find(UInt64 id);

} // namespace nodeTable

} // namespace Orvane
