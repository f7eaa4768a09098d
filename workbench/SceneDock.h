#pragma once

#include "FindBar.h"
#include <Orvane/NodePath.h>
#include <Orvane/Observer.h>
#include <QDockWidget>
#include <QSet>
#include <QTimer>
#include <memory>
#include <vector>

class QCheckBox;
class QComboBox;
class QLineEdit;
class SceneModel;
class SceneTreeView;
class Selection;

namespace Orvane {
class Node;
}

/// The panel of the scene: a tree that follows the running graph, a filter of node types, and a switch for
/// the bodies of prototypes. The selected node is opened and shown, a click selects, and nodes can be dragged
/// out.
class SceneDock : public QDockWidget
{
    Q_OBJECT

public:
    /// \a selection is borrowed.
    SceneDock(Selection* selection, QWidget* parent);
    ~SceneDock() override;

    /// Shows the tree below a node from now on; null for none. Nothing happens when it is shown already.
    void setRootNode(Orvane::Node* root);
    SceneTreeView* treeView() const { return _view; }
    /// Finds nodes of the whole scene by name and type, and selects them.
    FindBar* findBar() const { return _findBar; }

    /// What is filtered, as a text for the settings.
    QString filter() const;
    /// Filters as a text of `filter()` says.
    void setFilter(const QString& filter);

private:
    /// Lets go of the tree when its root dies.
    class EndObserver : public Orvane::Observer
    {
    public:
        explicit EndObserver(SceneDock* dock);
        void notify(const double& time, Orvane::BaseObject* node, Orvane::BaseObject* second,
                    Orvane::BaseObject* third) override;

    private:
        SceneDock* _dock;
    };

    void find(FindBar::Step step);
    void applyFilter();
    void rebuild();
    void rebuildLater(const QModelIndex& parent);
    void rebuildChanged();
    void refresh(const QModelIndex& index);
    bool isFiltering() const;

    Selection* _selection;
    SceneTreeView* _view;
    FindBar* _findBar;
    QComboBox* _filterMode;
    QLineEdit* _types;
    QCheckBox* _bodies;
    std::unique_ptr<SceneModel> _model;
    unsigned long long _rootId = 0;
    QTimer _rebuildTimer;
    std::vector<Orvane::NodePath> _changedRows;
    EndObserver _endObserver;
};
