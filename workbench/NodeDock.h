#pragma once

#include <QDockWidget>
#include <QorNodeItemDelegate.h>

class QAction;

namespace Orvane {
class Node;
namespace Qt4 {
class QorObservingNodeEditor;
class QorRenderView;
class QorViewManager;
} // namespace Qt4
} // namespace Orvane

/// The panel of the node that was picked last: an editor that follows the running scene. While picking is on,
/// a press in any view of the manager leads the editor to the node under the pointer.
class NodeDock : public QDockWidget
{
    Q_OBJECT

public:
    /// \a manager is borrowed; views that come later are followed too.
    NodeDock(Orvane::Qt4::QorViewManager* manager, QWidget* parent);
    ~NodeDock() override;

    /// Shows a node; null for none.
    void setNode(Orvane::Node* node);

    /// Switches picking on and off, for a menu.
    QAction* pickAction() const { return _pickAction; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow(Orvane::Qt4::QorRenderView* view);
    void setPicking(bool picking);

    Orvane::Qt4::QorViewManager* _manager;
    Orvane::Qt4::QorNodeItemDelegate _delegate;
    Orvane::Qt4::QorObservingNodeEditor* _editor;
    QAction* _pickAction;
};
