#pragma once

class QAbstractSpinBox;
class QEvent;

namespace Orvane::Qt4 {

/// Hands a key event that reached an editor on to its spin box, which then need not have the focus. False
/// when the event is another one, or comes up from the spin box itself: what that ignored it is not given
/// again.
bool passKeyToSpinBox(QEvent* event, QAbstractSpinBox* spinBox);

} // namespace Orvane::Qt4
