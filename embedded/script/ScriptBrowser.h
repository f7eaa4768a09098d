#pragma once

#include <duktape.h>

namespace Orvane {

/// Adds what the words of the browser and of scenes need of the program to the object on top of the stack.
void addBrowserFunctions(duk_context* engine);

/// Pushes the nodes of the VRML text at \a index as a list; raises an error when there are none to be read.
void pushNodesFromString(duk_context* engine, duk_idx_t index);

} // namespace Orvane
