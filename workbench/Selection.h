#pragma once

#include <QObject>
#include <QorMetaTypes.h>

/// The one place in the graph that all panels of the workbench show. Whoever lets the user choose a node
/// tells this object, and whoever shows one listens to it.
class Selection : public QObject
{
    Q_OBJECT

public:
    explicit Selection(QObject* parent);

    /// Not valid when nothing is selected, and once something on the way to the node has died.
    const Orvane::NodePath& path() const { return _path; }
    /// The selected node, or null.
    Orvane::Node* node() const { return _path.node(); }

public slots:
    /// Selects a place; a path that is not valid selects nothing.
    void selectPath(Orvane::NodePath path);
    /// Selects a node at the oldest of its places; null selects nothing.
    void selectNode(Orvane::Node* node);
    /// Selects the last of a chain of nodes, at the place that the others lead to.
    void selectChain(const std::vector<Orvane::Node*>& nodes);

signals:
    /// Something else is selected now.
    void changed(Orvane::NodePath path);

private:
    Orvane::NodePath _path;
};
