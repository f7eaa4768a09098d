#include "QorSpinBoxKeys.h"

#include <QtCore/QEvent>
#include <QtCore/QLocale>
#include <QtWidgets/QAbstractSpinBox>

namespace Orvane::Qt4 {

bool passKeyToSpinBox(QEvent* event, QAbstractSpinBox* spinBox)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
        break;
    default:
        return false;
    }
    if (spinBox->hasFocus())
        return false;
    // Straight into the handler: an event that is sent goes up to the parent again when it is ignored.
    spinBox->event(event);
    return true;
}

void keepPlainNumbers(QAbstractSpinBox* spinBox)
{
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    spinBox->setLocale(plain);
}

} // namespace Orvane::Qt4
