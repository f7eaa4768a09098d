#pragma once

#include <Orvane/HeldNode.h>
#include <Orvane/NodePath.h>
#include <QKeySequence>
#include <QObject>
#include <functional>
#include <utility>
#include <vector>

class QAction;
class QMenu;
class QWidget;
class SceneTreeView;
class Selection;
class Steps;

namespace Orvane {
class Node;
class NodeType;
} // namespace Orvane

/// The commands on the nodes of a scene: add, delete, duplicate, rename, move, cut, copy and paste. Each is a
/// step that can be taken back, and works on the selected place. Nodes stand on the clipboard as a scene in
/// classic encoding, so that they go from window to window, and to and from editors of text.
class SceneEditing : public QObject
{
    Q_OBJECT

public:
    /// All are borrowed. \a window is the parent of dialogs; the keys of most commands belong to the tree.
    SceneEditing(Selection* selection, Steps* steps, SceneTreeView* tree, QWidget* window);

    /// Adds the commands to a menu.
    void addTo(QMenu* menu);

    /// The scene whose nodes are edited; null for none.
    void setRootNode(Orvane::Node* root);

    /// Asks \a guard before the user deletes a node; false keeps it.
    void setGuard(std::function<bool(Orvane::Node&)> guard) { _guard = std::move(guard); }

    /// Adds a node of a type at or above the selected place, where one fits, and selects it. \a name may be
    /// empty. False, and told, when no place fits or the name cannot be.
    bool addNode(const QString& type, const QString& name);
    /// Adds the nodes of a text. Its addresses count from the file at \a origin, if that is not empty. False,
    /// and told, when that is not possible.
    bool addText(const QString& text, const QByteArray& origin = {});
    /// Names the selected node; an empty name takes its name away. False, and told, when the name cannot be.
    bool rename(const QString& name);

signals:
    /// Something for the user to read.
    void told(const QString& text);

private:
    void askForNode();
    void askForName();
    void deleteSelected();
    void duplicateSelected();
    void cutSelected();
    bool copySelected();
    void copy() { copySelected(); }
    void paste();
    void moveUp() { moveSelected(-1); }
    void moveDown() { moveSelected(1); }
    void moveSelected(int rows);
    void moveTo(const Orvane::NodePath& moved, const Orvane::NodePath& target, int side);

    QAction* makeAction(const QString& text, const QKeySequence& keys, void (SceneEditing::*command)());
    void updateActions();
    void tellOfLoss(int steps);
    void leaveNode(Orvane::Node* parent);
    Orvane::Node* root() const;
    QString nameFault(const QString& name, const Orvane::Node* bearer) const;
    bool isNameFree(const QString& name, const Orvane::Node* bearer);
    std::vector<Orvane::Node*> wayToSelected() const;
    Orvane::Node* parentFor(const Orvane::NodeType& type) const;
    bool putBelow(Orvane::Node& node);
    std::vector<Orvane::HeldNode> makeNodes(const QString& text, const QByteArray& origin = {});

    Selection* _selection;
    Steps* _steps;
    SceneTreeView* _tree;
    QWidget* _window;
    std::function<bool(Orvane::Node&)> _guard;
    unsigned long long _rootId = 0;
    int _stepCount = 0; ///< that were done when steps changed last
    std::vector<QAction*> _actions;
    std::vector<QAction*> _onSelected; ///< those that need a selected node
};
