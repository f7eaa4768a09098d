#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <vector>

class FindBar;
class QAction;
class QMainWindow;

/// The commands to find in a window with several panels to search: they work on the panel that has the
/// focus, else on the one that was searched last, at first on the first one.
class FindActions : public QObject
{
    Q_OBJECT

public:
    /// \a bars are borrowed; there is at least one.
    FindActions(const std::vector<FindBar*>& bars, QMainWindow* window);

    /// Find, Find next, Find previous; of the window.
    const QList<QAction*>& actions() const { return _actions; }

private:
    FindBar* bar();

    std::vector<QPointer<FindBar>> _bars;
    QPointer<FindBar> _last;
    QList<QAction*> _actions;
};
