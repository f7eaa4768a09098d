#include "PanelKeys.h"

#include <QAction>
#include <QApplication>
#include <QDockWidget>
#include <QShortcutEvent>

PanelKeys::PanelKeys(QDockWidget* panel)
    : QObject(panel)
    , _panel(panel)
{
    panel->toggleViewAction()->installEventFilter(this);
}

void PanelKeys::lead()
{
    _panel->show();
    _panel->raise();
    if (_panel->isWindow())
        _panel->activateWindow();
    // A content that cannot be used takes no focus.
    QWidget* const content = _panel->widget();
    QWidget* const target = content && content->isEnabled() ? content : _panel;
    target->setFocus(Qt::ShortcutFocusReason);
}

bool PanelKeys::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Shortcut || static_cast<QShortcutEvent*>(event)->isAmbiguous() ||
        _panel == QApplication::focusWidget() || _panel->isAncestorOf(QApplication::focusWidget()))
        return QObject::eventFilter(object, event);
    lead();
    return true;
}
