#pragma once

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

class QorFieldItem;

/// The position in \a field of the value that a row stands for; -1 when the row is no value row, or stands
/// for a value that the field no longer has.
int editedValueIndex(QorFieldItem* item, const Orvane::Field* field);

} // namespace Orvane::Qt4
