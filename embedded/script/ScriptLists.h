#pragma once

#include <Orvane/NodePartDataType.h>
#include <duktape.h>

namespace Orvane {

class Field;
class FieldHandle;
struct View;

/// The lists of scripts, such as `MFVec3f`: they have a length, elements that are read and written by index
/// and grow when they are written behind their end, and what arrays can do.

/// Pushes an object that shows a list of a node.
void pushList(duk_context* engine, Field& field);

/// Pushes a list of the script's own, which is empty.
const View& pushNewList(duk_context* engine, NodePartDataType type);

/// Gives a list at least the length; raises a `RangeError` when that is none or too long.
void growList(duk_context* engine, FieldHandle& list, double length);

/// Pushes the handler of what is done to lists.
void makeListHandler(duk_context* engine);

/// Adds the classes of lists to the global object on top of the stack.
void addListClasses(duk_context* engine);

} // namespace Orvane
