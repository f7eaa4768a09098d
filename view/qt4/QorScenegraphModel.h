#pragma once

#include "QorExport.h"
#include <QtCore/QAbstractItemModel>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <memory>

namespace Orvane {
class Node;
class NodeLink;
class NodePath;
} // namespace Orvane

namespace Orvane::Qt4 {

class QorNodeItem;

/// A node and everything below it as a tree. The internal pointer of an index is the `QorNodeItem` of its
/// row; a node that stands at several places has one at each. Levels are read when they are expanded
/// (`QorNodeItem::updateCache`). The model reads the graph, never changes it, and does not follow it.
class QOR_EXPORT QorScenegraphModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// \a rootNode is borrowed; with null the model has no items until `setRootNode`.
    QorScenegraphModel(Orvane::Node* rootNode, QObject* parent);
    ~QorScenegraphModel() override;

    using QObject::parent;

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    /// The cell in column 1 of the first built row at a place; invalid when there is none.
    QModelIndex index(Orvane::NodePath path) const;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Makes the row of the child that the node of \a parent has got at \a row, one at a time. False, with a
    /// log line, when that is not possible.
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Takes the row out of a child that the node of \a parent loses, as `insertRows`.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// Starts a new tree. Views are not told: this is for models that no view shows.
    virtual void setRootNode(Orvane::Node* rootNode);

    /// The node of the first row; null for an empty model.
    Orvane::Node* rootNode() const { return _rootNode; }
    /// The row of the root node, the only one at top level; null without a root.
    QorNodeItem* rootItem() const;
    /// The place of a row; \a index must be valid.
    Orvane::NodePath nodePath(const QModelIndex& index) const;

    /// Names of node types; a type that both lists name is shown. A new list counts for rows that are built
    /// from now on.
    const QStringList& hideTypeFilter() const { return _hideTypeFilter; }
    void setHideTypeFilter(const QStringList& types);
    const QStringList& showTypeFilter() const { return _showTypeFilter; }
    void setShowTypeFilter(const QStringList& types);
    /// Whether instances of prototypes show what lies inside them; for rows that are built from now on.
    bool isShowingProtoBody() const { return _showProtoBody; }
    void setShowProtoBody(bool show);

    /// The first built item at a place, in row order from \a currentItem down; null when there is none, with
    /// a log line when the search makes no sense.
    QorNodeItem* recursiveSearchItemOf(QorNodeItem* currentItem, const Orvane::NodePath& path) const;
    /// The built items of a node at all its places, from \a currentItem down, parents first.
    QVector<QorNodeItem*> searchNodeItems(Orvane::Node* node, QorNodeItem* currentItem) const;

protected:
    /// The item above the top level: without node, never shown.
    QorNodeItem* internalRootItem() const { return _rootItem.get(); }
    /// Builds the first rows below the new internal root \a parentItem.
    virtual void setupRootNode(Orvane::Node* rootNode, QorNodeItem* parentItem);
    void triggerLayoutChanged();
    /// Logs links and the names of their nodes.
    static void dumpNodeLinkStack(QList<Orvane::NodeLink*>& links);

private:
    friend class QorNodeItem;

    QorNodeItem* itemOf(const QModelIndex& index) const;
    /// Makes the indexes that views keep of rows below \a top invalid. Call it while these rows still live.
    void dropIndexesBelow(const QorNodeItem* top);

    std::unique_ptr<QorNodeItem> _rootItem;
    Orvane::Node* _rootNode = nullptr;
    QStringList _hideTypeFilter;
    QStringList _showTypeFilter;
    bool _showProtoBody = false;
};

} // namespace Orvane::Qt4
