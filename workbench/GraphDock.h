#pragma once

#include <QDockWidget>

class QMenu;
class RouteCanvas;
class Selection;
class Steps;

namespace Orvane {
class Node;
class NodePath;
} // namespace Orvane

/// The panel of routes: a canvas of boxes and lines, with a strip of buttons for what fills and orders it. A
/// box that is selected selects its node everywhere, and the other way round.
class GraphDock : public QDockWidget
{
    Q_OBJECT

public:
    /// \a selection and \a steps are borrowed.
    GraphDock(Selection* selection, Steps* steps, QWidget* parent);
    ~GraphDock() override;

    RouteCanvas* canvas() const { return _canvas; }

    /// Adds the commands of the strip to a menu.
    void addTo(QMenu* menu);

    /// What "All routes" fills the canvas from; null for no scene.
    void setRootNode(Orvane::Node* root);

public slots:
    /// Shows every node of the scene that has routes.
    void showAllRoutes();
    /// Adds a box for the selected node, and for those at the other ends of its routes.
    void addSelected();

private:
    void showSelected(const Orvane::NodePath& path);

    Selection* _selection;
    RouteCanvas* _canvas;
    QList<QAction*> _commands;
    unsigned long long _rootId = 0;
};
