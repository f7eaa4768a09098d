#pragma once

namespace Orvane {

class Field;
class Node;
class NodeType;

/// True for a field whose values are nodes.
bool holdsNodes(const Field& field);
/// True for a field that an author gave to one node and that must be declared with it. What an unknown node
/// or an instance holds beside its type is told as a plain value.
bool isDeclaredField(const NodeType& owner, const Field& field);
/// Number of links of a field that holds nodes.
int linkCount(const Field& field);
/// The node behind a link of such a field; null for an empty link.
const Node* linkedNode(const Field& field, int link);
bool hasNodes(const Field& field);

/// True when two fields hold the same values, nodes being the same that are alike in types, values and
/// children. Names and routes are not looked at.
bool holdsAlike(const Field& a, const Field& b);

} // namespace Orvane
