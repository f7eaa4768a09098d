#pragma once

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

// Growing and shrinking the fields of many values, for the classes whose list of values can be changed.

/// True for these classes; false for null and for lists of nodes.
bool isEditableList(const Orvane::Field* field);

/// Appends \a count new values. False for any other class.
bool appendValues(Orvane::Field& field, int count);
/// Puts \a count new values in front of the one at \a index. False for any other class.
bool insertValues(Orvane::Field& field, int index, int count);
/// Removes the value at \a index. False for any other class.
bool removeValue(Orvane::Field& field, int index);

} // namespace Orvane::Qt4
