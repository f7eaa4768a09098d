#include "QorScenegraphModel.h"

#include "QorLog.h"
#include "QorNodeItem.h"
#include "QorPlaceSearch.h"
#include "QorTools.h"
#include "QorTypeFilter.h"
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <list>

namespace Orvane::Qt4 {

namespace {

const int ColumnCount = 2;

} // namespace

QorScenegraphModel::QorScenegraphModel(Orvane::Node* rootNode, QObject* parent)
    : QAbstractItemModel(parent)
{
    if (rootNode)
        QorScenegraphModel::setRootNode(rootNode);
}

QorScenegraphModel::~QorScenegraphModel() = default;

void QorScenegraphModel::setRootNode(Orvane::Node* rootNode)
{
    if (_rootItem) {
        dropIndexesBelow(_rootItem.get());
        _rootItem.reset();
    }
    _rootNode = rootNode;
    _rootItem = std::make_unique<QorNodeItem>(this, Orvane::NodePath(nullptr), nullptr);
    setupRootNode(_rootNode, _rootItem.get());
}

void QorScenegraphModel::setupRootNode(Orvane::Node* rootNode, QorNodeItem* parentItem)
{
    if (!rootNode) {
        QOR_FATAL("QorScenegraphModel::setupRootNode: root node is 0.\n");
        return;
    }
    auto* item = new QorNodeItem(this, Orvane::NodePath(rootNode), parentItem);
    _rootItem->appendChild(item);
    QList<Orvane::NodeLink*> links;
    nodeLinks(rootNode, links, false);
    for (Orvane::NodeLink* link : qAsConst(links)) {
        const Orvane::NodePath path(std::list<Orvane::NodeLink*>{link});
        if (isTypeShown(*link->directNode(), _showTypeFilter, _hideTypeFilter))
            item->appendChild(new QorNodeItem(this, path, item));
    }
}

QorNodeItem* QorScenegraphModel::rootItem() const
{
    return _rootItem ? _rootItem->child(0) : nullptr;
}

QorNodeItem* QorScenegraphModel::itemOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<QorNodeItem*>(index.internalPointer()) : _rootItem.get();
}

QModelIndex QorScenegraphModel::index(int row, int column, const QModelIndex& parent) const
{
    const QorNodeItem* item = itemOf(parent);
    QorNodeItem* child = item ? item->child(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex QorScenegraphModel::index(Orvane::NodePath path) const
{
    QorNodeItem* item = path.isValid() ? recursiveSearchItemOf(_rootItem.get(), path) : nullptr;
    return item ? createIndex(item->row(), 1, item) : QModelIndex();
}

QModelIndex QorScenegraphModel::parent(const QModelIndex& index) const
{
    const QorNodeItem* item = index.isValid() ? itemOf(index) : nullptr;
    QorNodeItem* parentItem = item ? item->parent() : nullptr;
    if (!parentItem || parentItem == _rootItem.get())
        return QModelIndex();
    return createIndex(parentItem->row(), 0, parentItem);
}

int QorScenegraphModel::rowCount(const QModelIndex& parent) const
{
    const QorNodeItem* item = itemOf(parent);
    return item ? item->childCount() : 0;
}

int QorScenegraphModel::columnCount(const QModelIndex& parent) const
{
    const QorNodeItem* item = itemOf(parent);
    return item ? item->columnCount() : ColumnCount;
}

QVariant QorScenegraphModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || role != Qt::DisplayRole)
        return QVariant();
    return itemOf(index)->data(index.column());
}

Qt::ItemFlags QorScenegraphModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
}

QVariant QorScenegraphModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case 0:
        return tr("Type");
    case 1:
        return tr("Name");
    case 2:
        return tr("Valid");
    default:
        return QVariant();
    }
}

Orvane::NodePath QorScenegraphModel::nodePath(const QModelIndex& index) const
{
    return itemOf(index)->nodePath();
}

void QorScenegraphModel::setHideTypeFilter(const QStringList& types)
{
    if (types == _hideTypeFilter)
        return;
    _hideTypeFilter = types;
    emit layoutChanged();
}

void QorScenegraphModel::setShowTypeFilter(const QStringList& types)
{
    if (types == _showTypeFilter)
        return;
    _showTypeFilter = types;
    emit layoutChanged();
}

void QorScenegraphModel::setShowProtoBody(bool show)
{
    if (show == _showProtoBody)
        return;
    _showProtoBody = show;
    emit layoutChanged();
}

void QorScenegraphModel::triggerLayoutChanged()
{
    emit layoutChanged();
}

QorNodeItem* QorScenegraphModel::recursiveSearchItemOf(QorNodeItem* currentItem,
                                                       const Orvane::NodePath& path) const
{
    if (!currentItem) {
        QOR_FATAL("QorScenegraphModel::recursiveSearchItemOf: current item is 0!\n");
        return nullptr;
    }
    if (!path.isValid() || !path.node()) {
        QOR_FATAL("QorScenegraphModel::recursiveSearchItemOf: nodePath invalid or node is 0.\n Aborting "
                  "recursive search.\n");
        return nullptr;
    }
    return QorPlaceSearch(path).searchFrom(currentItem);
}

QVector<QorNodeItem*> QorScenegraphModel::searchNodeItems(Orvane::Node* node, QorNodeItem* currentItem) const
{
    QVector<QorNodeItem*> found;
    QVector<QorNodeItem*> ahead;
    if (currentItem)
        ahead.append(currentItem);
    while (!ahead.isEmpty()) {
        QorNodeItem* const item = ahead.takeLast();
        if (item->node() == node)
            found.append(item);
        // There would only be a placeholder.
        if (isUnbuilt(*item))
            continue;
        for (int row = item->childCount(); row-- > 0;)
            ahead.append(item->child(row));
    }
    return found;
}

bool QorScenegraphModel::insertRows(int row, int count, const QModelIndex& parent)
{
    QOR_NOTICE("QorScenegraphModel::insertRows: row=%d, count=%d\n", row, count);
    if (!parent.isValid()) {
        QOR_FATAL("QorScenegraphModel::insertRows: parent index is invalid!\n");
        return false;
    }
    if (count > 1) {
        QOR_FATAL(
            "QorScenegraphModel::insertRows: inserting more than 1 row is not supported (used count=%d)\n",
            count);
        return false;
    }
    QorNodeItem* const item = itemOf(parent);
    if (!item) {
        QOR_FATAL("QorScenegraphModel::insertRows: didn't an item for the model index.\n");
        return false;
    }
    // Views look for rows below column 0 only.
    beginInsertRows(createIndex(parent.row(), 0, item), row, row + count - 1);
    item->updateInsertedChild(static_cast<unsigned int>(row));
    endInsertRows();
    return true;
}

bool QorScenegraphModel::removeRows(int row, int count, const QModelIndex& parent)
{
    QOR_NOTICE("QorScenegraphModel::removeRows: row=%d, count=%d\n", row, count);
    if (!parent.isValid()) {
        QOR_FATAL("QorScenegraphModel::removeRows: invalid parent model index.\n");
        return false;
    }
    if (count > 1) {
        QOR_FATAL(
            "QorScenegraphModel::removeRows: removing more than 1 row is not supported (used count=%d)\n",
            count);
        return false;
    }
    QorNodeItem* const item = itemOf(parent);
    if (!item)
        return false;
    beginRemoveRows(createIndex(parent.row(), 0, item), row, row + count - 1);
    item->updateRemovedChild(static_cast<unsigned int>(row));
    endRemoveRows();
    return true;
}

void QorScenegraphModel::dropIndexesBelow(const QorNodeItem* top)
{
    QModelIndexList dropped;
    const QModelIndexList kept = persistentIndexList();
    for (const QModelIndex& index : kept) {
        const QorNodeItem* item = itemOf(index);
        for (item = item ? item->parent() : nullptr; item; item = item->parent()) {
            if (item == top) {
                dropped.append(index);
                break;
            }
        }
    }
    QModelIndexList nowhere;
    for (int i = 0; i < dropped.size(); ++i)
        nowhere.append(QModelIndex());
    changePersistentIndexList(dropped, nowhere);
}

void QorScenegraphModel::dumpNodeLinkStack(QList<Orvane::NodeLink*>& links)
{
    for (Orvane::NodeLink* link : qAsConst(links))
        QOR_LOG("    %p, %s\n", static_cast<const void*>(link), nodeName(link->directNode()).c_str());
}

} // namespace Orvane::Qt4
