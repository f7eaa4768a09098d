#pragma once

#include <vector>

namespace Orvane {
class Node;
class NodePath;
} // namespace Orvane

/// All nodes at and below some, each once, parents first. Graphs may be deeper than the call stack, and may
/// contain themselves.
std::vector<Orvane::Node*> nodesBelow(const std::vector<Orvane::Node*>& roots);

/// The nodes at and below \a node to which no root of its context leads.
std::vector<Orvane::Node*> strandedNodes(Orvane::Node& node);

/// True for a place in the body of a prototype's instance or in an inlined file, which the scene only shows.
bool isForeign(const Orvane::NodePath& path);
