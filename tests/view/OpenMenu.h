#pragma once

#include <QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>
#include <functional>

/// The menu that is open, with its entries as text.
inline QMenu* openMenu()
{
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}
inline QStringList entriesOf(const QMenu* menu)
{
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts << action->text();
    return texts;
}
/// Clicks an entry of the menu that is open.
inline void choose(const char* entry)
{
    QMenu* menu = openMenu();
    for (QAction* action : menu->actions()) {
        if (action->text() == QLatin1String(entry)) {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
            return;
        }
    }
    qFatal("no entry %s", entry);
}

/// Calls \a then as soon as a menu is open, from inside its event loop when it has one. It is left to \a then
/// to close it.
inline void whenMenuOpens(QObject* context, const std::function<void()>& then)
{
    QTimer::singleShot(1, context, [context, then] {
        if (openMenu())
            then();
        else
            whenMenuOpens(context, then);
    });
}
