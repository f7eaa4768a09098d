#pragma once

#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <vector>

class CodeDock;
class DocumentFile;
class GraphDock;
class LogDock;
class NodeDock;
class QDockWidget;
class QLabel;
class SceneDock;
class SceneEditing;
class Selection;
class Steps;
class TableDock;
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
    QString loadError() const;

    /// The file of the scene: what opens it for the user, and saves it.
    DocumentFile* document() const { return _document; }

    /// Takes on what was kept when the last window was closed, and keeps what this one is left with. False
    /// when there is nothing yet.
    bool useSettings();

    /// Stops the scene's clock; a negative value lets it run.
    void holdTime(double seconds);

    /// Selects the node of that name. False when the scene has none.
    bool showNode(const QString& name);

    /// What all panels show.
    Selection* selection() const { return _selection; }

    /// What the user did to the scene and can take back; empty after another scene was opened.
    Steps* steps() const { return _steps; }

    SceneEditing* editing() const { return _editing; }

    Orvane::Qt4::QorViewManager* viewManager() const { return _manager; }

    /// The panels, in the order of the menu View.
    QMenu* createPopupMenu() override;

    /// Shows or hides the strip of buttons in each view.
    void showButtons(bool visible);

public slots:
    /// Light writing on a dark ground, or the colours of the system.
    void setDark(bool dark);
    /// The same for this window, until the user chooses: it is not kept.
    void showDark(bool dark);
    /// Shows all routes of the scene in their panel.
    void showRoutes();
    /// Shows what the last frames cost, and the tree of the scene that the manager has now.
    void updateStatus();

protected:
    /// Asks about changes that were not saved.
    void closeEvent(QCloseEvent* event) override;

private:
    std::vector<QDockWidget*> panels() const;
    void makeDocks();
    void makeMenus();
    QMenu* makeViewMenu();
    void makeToolBar(const QList<QAction*>& edits);
    void takeFiles(QWidget* widget);
    void tell(const QString& text);
    Orvane::Context* context() const;
    Orvane::Node* sceneRoot() const;

    Orvane::Qt4::QorViewManager* _manager;
    Selection* _selection;
    Steps* _steps;
    DocumentFile* _document;
    SceneDock* _sceneDock;
    NodeDock* _nodeDock;
    GraphDock* _graphDock;
    CodeDock* _codeDock;
    LogDock* _logDock;
    TableDock* _tableDock;
    SceneEditing* _editing;
    ViewAttendant* _attendant;
    QLabel* _status;
    QAction* _pick = nullptr;
    QAction* _dark = nullptr;
    QTimer _statusTimer;
    bool _keepsSettings = false;
    bool _isDarkKept = false; ///< what the user has chosen
};
