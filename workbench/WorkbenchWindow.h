#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>

class GraphDock;
class QLabel;
class QUndoStack;
class SceneDock;
class Selection;
class ViewAttendant;

namespace Orvane {
class Context;
class Node;
namespace Qt4 {
class QorViewManager;
}
} // namespace Orvane

/// The main window of the workbench: a view manager in the middle, panels beside it, a menu, and a status
/// line with what the frames cost.
class WorkbenchWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// With \a interactive true the manager drives its own frames; else the caller runs them.
    explicit WorkbenchWindow(bool interactive);
    ~WorkbenchWindow() override;

    /// Opens a scene file. False when it cannot be loaded: the present scene stays, and `loadError()` says
    /// why.
    bool open(const QString& file);
    QString loadError() const { return _loadError; }

    /// Stops the scene's clock; a negative value lets it run.
    void holdTime(double seconds);

    /// Selects the node of that name. False when the scene has none.
    bool showNode(const QString& name);

    /// What all panels show.
    Selection* selection() const { return _selection; }

    /// What the user did to the scene and can take back; empty after another scene was opened.
    QUndoStack* steps() const { return _steps; }

    Orvane::Qt4::QorViewManager* viewManager() const { return _manager; }

    /// Shows or hides the strip of buttons in each view.
    void showButtons(bool visible);

public slots:
    /// Shows what the last frames cost, and the tree of the scene that the manager has now.
    void updateStatus();

private:
    void openByDialog();
    void saveByDialog();
    void openOrTell(const QString& file);
    Orvane::Context* context() const;
    Orvane::Node* sceneRoot() const;

    Orvane::Qt4::QorViewManager* _manager;
    Selection* _selection;
    QUndoStack* _steps;
    SceneDock* _sceneDock;
    GraphDock* _graphDock;
    ViewAttendant* _attendant;
    QLabel* _status;
    QTimer _statusTimer;
    QString _file;
    QString _loadError;
};
