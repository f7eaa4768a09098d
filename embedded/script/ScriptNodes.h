#pragma once

#include <duktape.h>

namespace Orvane {

class Node;

/// The nodes of scripts: an object has a property for each field, and is the same object wherever a script
/// meets the node. It keeps the node alive, but for a world that ends.

/// Pushes the object of a node; null for none.
void pushNode(duk_context* engine, Node* node);

/// The node that stands at \a index, null for null. False when there is no node; raises an error when the
/// node has died.
bool takeNode(duk_context* engine, duk_idx_t index, Node*& node);

/// Pushes an object that stands for a scene: that of the names among which \a member stands.
void pushScene(duk_context* engine, Node& member);

/// The node for whose scene the object at \a index stands; null when it is no scene. Raises an error when
/// that has gone.
Node* takeScene(duk_context* engine, duk_idx_t index);

/// Pushes the handler of what is done to nodes.
void makeNodeHandler(duk_context* engine);

/// Adds the class `SFNode` to the global object on top of the stack.
void addNodeClass(duk_context* engine);

} // namespace Orvane
