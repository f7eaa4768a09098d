#pragma once

#include <Orvane/NodePartDataType.h>
#include <duktape.h>

namespace Orvane {

class Field;
class ScriptHeap;
struct View;

/// Pushes what a script sees of a field: numbers, truth values and texts by value, all else as an object that
/// shows what the field holds and writes it when it is written.
void pushLive(duk_context* engine, Field& field);

/// Pushes the value of a field as one of the script's own.
void pushCopy(duk_context* engine, const Field& field);

/// Pushes an element of a list, as `pushLive` does with fields.
void pushElement(duk_context* engine, const View& list, unsigned int index);

/// Takes over the value at \a index into the field, without an event. Raises a `TypeError` when it is not of
/// the field's type, and cannot be made so.
void takeValue(duk_context* engine, duk_idx_t index, Field& field);

/// Takes over the value at \a index as an element of a list, which is long enough, without an event.
void takeElement(duk_context* engine, duk_idx_t index, const View& list, unsigned int element);

/// Raises a `TypeError`: what stands at \a index is no value of the type.
[[noreturn]] void refuseValue(duk_context* engine, duk_idx_t index, NodePartDataType type);

/// Adds the classes of values of which fields show themselves to the heap.
void pushViewPrototypeOf(duk_context* engine, NodePartDataType type);

} // namespace Orvane
