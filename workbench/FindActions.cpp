#include "FindActions.h"

#include "FindBar.h"
#include <QAction>
#include <QApplication>
#include <QMainWindow>

FindActions::FindActions(const std::vector<FindBar*>& bars, QMainWindow* window)
    : QObject(window)
    , _bars(bars.begin(), bars.end())
    , _last(bars.front())
{
    const auto add = [&](const QString& text, const QKeySequence& key, auto work) {
        auto* action = new QAction(text, window);
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, [this, work] {
            if (FindBar* found = bar())
                work(*found);
        });
        _actions << action;
    };
    const auto go = [](FindBar& found, FindBar::Step step) {
        // Without a text there is nothing to go on with.
        if (found.text().isEmpty() && found.choice() == 0)
            found.open();
        else
            emit found.wanted(step);
    };
    add(tr("&Find..."), QKeySequence(Qt::CTRL | Qt::Key_F), [](FindBar& found) { found.open(); });
    add(tr("Find &next"), QKeySequence(Qt::Key_F3), [go](FindBar& found) { go(found, FindBar::Next); });
    add(tr("Find pre&vious"), QKeySequence(Qt::SHIFT | Qt::Key_F3),
        [go](FindBar& found) { go(found, FindBar::Previous); });
}

FindBar* FindActions::bar()
{
    const QWidget* focused = QApplication::focusWidget();
    for (FindBar* each : _bars) {
        if (each && focused && each->parentWidget()->isAncestorOf(focused))
            _last = each;
    }
    return _last;
}
