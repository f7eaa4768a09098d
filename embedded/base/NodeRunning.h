#pragma once

#include <Orvane/Types.h>

namespace Orvane {

class Context;
class Node;

/// A node has been linked below another: it comes to run if that one does.
void joinParent(const Node& parent, Node& child);

/// Brings a node and what hangs below it to run, children first.
void startNode(Node& node);

/// Stops what a running node does, as `Authoring::rest` tells.
void restNode(Node& node);

/// Brings the nodes from \a node down to a state below running, those that have not come so far.
void raiseState(Node& node, NodeState state);

/// Starts what loads have linked below running nodes.
void startJoinedNodes(Context& context);

} // namespace Orvane
