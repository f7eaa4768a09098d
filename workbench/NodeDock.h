#pragma once

#include "FindBar.h"
#include "RecordingDelegate.h"
#include <QDockWidget>

class Selection;
class Steps;

namespace Orvane::Qt4 {
class QorObservingNodeEditor;
}

/// The panel of the selected node: an editor that follows the running scene, and whose edits are steps. A
/// node that is dropped here is selected.
class NodeDock : public QDockWidget
{
    Q_OBJECT

public:
    /// Both are borrowed.
    NodeDock(Selection* selection, Steps* steps, QWidget* parent);
    ~NodeDock() override;

    /// Lists the fields anew, when it is this node that is shown. Open rows stay open.
    void refresh(Orvane::Node* node);

    /// Finds fields by name, value and type, and makes their rows the current ones.
    FindBar* findBar() const { return _findBar; }

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void find(FindBar::Step step);
    void showNode(Orvane::Node* node);

    Selection* _selection;
    RecordingDelegate _delegate;
    Orvane::Qt4::QorObservingNodeEditor* _editor;
    FindBar* _findBar;
};
