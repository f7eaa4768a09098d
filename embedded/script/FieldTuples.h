#pragma once

#include <Orvane/NodePartDataType.h>

namespace Orvane {

class Field;

/// So many numbers a value has at most.
constexpr unsigned int longestTuple = 16;

/// What the numbers of a value are called in scripts.
struct TupleShape
{
    unsigned int size = 0;             ///< 0 for values that are no numbers
    const char* const* keys = nullptr; ///< null for single numbers and matrices
};

/// The shape of a value of a single data type, or of one element of a list.
TupleShape tupleShape(NodePartDataType type);

/// The type of one element of a list; a single type is its own.
constexpr NodePartDataType elementType(NodePartDataType type)
{
    return type % 2 == 0 ? static_cast<NodePartDataType>(type - 1) : type;
}

constexpr bool isList(NodePartDataType type)
{
    return type % 2 == 0;
}

/// Reads a value of numbers: the element \a index of a list, or the value of a single field. \a index must be
/// inside.
void readTuple(const Field& field, unsigned int index, double* out);

/// Writes such a value in place, without any event. Whole numbers are brought into range.
void writeTuple(Field& field, unsigned int index, const double* in);

/// Gives a list other than of nodes another length, without any event; new elements have their type's own
/// value.
void resizeList(Field& field, unsigned int size);

} // namespace Orvane
