#pragma once

#include <QObject>

class QAction;
class Selection;

namespace Orvane::Qt4 {
class QorRenderView;
class QorViewManager;
} // namespace Orvane::Qt4

/// Selects by presses in the views of a manager. While picking is on, a press selects the node under the
/// pointer; else the mouse navigates.
class Picker : public QObject
{
    Q_OBJECT

public:
    /// \a manager and \a selection are borrowed; views that come later are followed too.
    Picker(Orvane::Qt4::QorViewManager* manager, Selection* selection, QObject* parent);

    /// Switches picking on and off, for a menu.
    QAction* action() const { return _action; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(Orvane::Qt4::QorRenderView* view);
    void setPicking(bool picking);

    Orvane::Qt4::QorViewManager* _manager;
    Selection* _selection;
    QAction* _action;
};
