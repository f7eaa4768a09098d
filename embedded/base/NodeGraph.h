#pragma once

#include <Orvane/Field.h>

namespace Orvane {

class GraphLink;
class MFNode;
class Node;
class SFNode;

/// The changes of the graph. Each tells the observers and the node's behaviour; none marks the field as
/// written, which is the caller's to do.

/// True when the field may link the node: both live in the same context.
bool mayLink(const Field& field, const Node* child);

/// Leads the empty link of a field to a node.
void setLink(SFNode& field, Node& child);
void insertLink(MFNode& field, unsigned int index, Node& child);
/// Empties the link of an `SFNode`, or takes a link out of an `MFNode`.
void removeLink(GraphLink& link);
/// Removes all links of the field, the last one first.
void removeAllLinks(Field& field);

/// Deletes all routes at the field.
void endRoutes(Field& field);

} // namespace Orvane
