#pragma once

class QAbstractSpinBox;
class QEvent;

namespace Orvane::Qt4 {

/// Hands a key event that reached an editor on to its spin box, which then need not have the focus. False
/// when the event is another one, or comes up from the spin box itself: what that ignored it is not given
/// again.
bool passKeyToSpinBox(QEvent* event, QAbstractSpinBox* spinBox);

/// Numbers are shown and typed with a point in every locale, as the cells and the scene files write them;
/// where the user's locale parts thousands by points, 4.25 would otherwise become 425.
void keepPlainNumbers(QAbstractSpinBox* spinBox);

} // namespace Orvane::Qt4
