#pragma once

#include <duktape.h>

namespace Orvane {

class Field;
class Node;
class NodeNameSpace;

/// What scripts ask of a scene: its nodes, their names and its routes.

/// The names of the scene at \a index; raises an error when there is none.
NodeNameSpace& namesOfSceneAt(duk_context* engine, duk_idx_t index);

/// The field of the nodes that stand at the top of a scene: below another root than a `Scene` it is the one
/// that no user sees. Null when there is none.
Field* nodesOfRoot(Node& root);
/// The same of the scene at \a index; raises an error when there is none.
Field& nodesOfSceneAt(duk_context* engine, duk_idx_t index);

/// Adds what the words of scenes need of the program to the object on top of the stack.
void addSceneFunctions(duk_context* engine);

} // namespace Orvane
