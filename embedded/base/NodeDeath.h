#pragma once

namespace Orvane {

class Context;
class Node;

/// Lets a node die that nothing holds: at once, or when what is under way in its context has ended.
void releaseNode(Node& node);

/// Ends all released nodes of a context of which nothing is under way, and what only they held.
void endReleasedNodes(Context& context);

/// Ends all nodes of a context, whatever holds them.
void endAllNodes(Context& context);

} // namespace Orvane
