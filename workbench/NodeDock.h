#pragma once

#include "FindBar.h"
#include <QDockWidget>
#include <QorNodeItemDelegate.h>

class Selection;

namespace Orvane::Qt4 {
class QorObservingNodeEditor;
}

/// The panel of the selected node: an editor that follows the running scene. A node that is dropped here is
/// selected.
class NodeDock : public QDockWidget
{
    Q_OBJECT

public:
    /// \a selection is borrowed.
    NodeDock(Selection* selection, QWidget* parent);
    ~NodeDock() override;

    /// Lists the fields anew, when it is this node that is shown.
    void refresh(Orvane::Node* node);

    /// Finds fields by name, value and type, and makes their rows the current ones.
    FindBar* findBar() const { return _findBar; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void find(FindBar::Step step);

    Selection* _selection;
    Orvane::Qt4::QorNodeItemDelegate _delegate;
    Orvane::Qt4::QorObservingNodeEditor* _editor;
    FindBar* _findBar;
};
