#include "QorObservingScenegraphModel.h"

#include "QorLog.h"
#include "QorNodeItem.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeType.h>
#include <QtCore/QPointer>

#define NOTIFY "QorObservingScenegraphModel::ChangedObserver::notify: "

namespace Orvane::Qt4 {

namespace {

const void* address(const void* object)
{
    return object;
}

/// The item of the root while that runs, else null.
QorNodeItem* runningRoot(const QorObservingScenegraphModel* model)
{
    QorNodeItem* const item = model ? model->rootItem() : nullptr;
    const Orvane::Node* const node = item ? item->node() : nullptr;
    return node && node->state() == Orvane::RUNNING_NS ? item : nullptr;
}

} // namespace

QorObservingScenegraphModel::ChangedObserver::ChangedObserver(QorObservingScenegraphModel* model,
                                                              int changeType)
    : Orvane::Observer(nullptr)
    , _changeType(changeType)
    , _model(model)
{
}

QorObservingScenegraphModel::ChangedObserver::~ChangedObserver() = default;

void QorObservingScenegraphModel::ChangedObserver::notify(const double&, Orvane::BaseObject* subject,
                                                          Orvane::BaseObject* a, Orvane::BaseObject*)
{
    auto* node = dynamic_cast<Orvane::Node*>(subject);
    auto* link = dynamic_cast<Orvane::NodeLink*>(a);
    if (!link) {
        QOR_FATAL(NOTIFY "invalid NodeLink! Ignoring update.\n");
        return;
    }
    const Orvane::Field* const field = link->field();
    if (!field) {
        QOR_FATAL(NOTIFY "invalid field in NodeLink! Ignoring update.\n");
        return;
    }
    if (!field->_desc) {
        QOR_FATAL(NOTIFY "invalid field description in NodeLink! Ignoring update.\n");
        return;
    }
    if (field->partType() == Orvane::EVENTOUTP || field->partType() == Orvane::EVENTINP)
        return;
    if (!node || node->state() != Orvane::RUNNING_NS || !runningRoot(_model))
        return;

    if (_changeType == ADD)
        addRow(*_model, *node, *link);
    else if (_changeType == REMOVE)
        removeRow(*_model, *node, *link);
}

void QorObservingScenegraphModel::ChangedObserver::addRow(QorObservingScenegraphModel& model,
                                                          const Orvane::Node& node, Orvane::NodeLink& link)
{
    const Orvane::NodePath parentPath(link.parent());
    const QorNodeItem* item = nullptr;
    if (node.type()->isContextRoot()) {
        QOR_NOTICE(NOTIFY "ADDING nodeLink.node()=%s/%p to context root nodeLink.parent()=%s/%p\n",
                   nodeName(link.node()).c_str(), address(link.node()), nodeName(link.parent()).c_str(),
                   address(link.parent()));
        item = model.rootItem();
    } else {
        QOR_NOTICE(NOTIFY "ADDING nodeLink.node()=%s/%p to nodeLink.parent()=%s/%p.\n",
                   nodeName(link.node()).c_str(), address(link.node()), nodeName(link.parent()).c_str(),
                   address(link.parent()));
        item = model.recursiveSearchItemOf(model.rootItem(), parentPath);
    }
    if (!item) {
        QOR_WARNING("ADD... no item found for node %s/%p.\n", nodeName(parentPath.node()).c_str(),
                    address(parentPath.node()));
        return;
    }
    const int row = nodeLinkRow(&link);
    QOR_NOTICE(NOTIFY "ADDING found node of item to add at index %d\n", row);
    if (row < 0)
        return;
    const QModelIndex index = model.index(parentPath);
    if (index.isValid())
        model.insertRow(row, index);
    else
        QOR_WARNING("#### NOT found model for index nodepath.\n");
}

void QorObservingScenegraphModel::ChangedObserver::removeRow(QorObservingScenegraphModel& model,
                                                             Orvane::Node& node, Orvane::NodeLink& link)
{
    // Whoever hears of the removal may end the model, and this observer with it.
    const QPointer<QorObservingScenegraphModel> living(&model);
    const Orvane::NodePath parentPath(link.parent());
    if (!parentPath.isValid())
        QOR_FATAL(NOTIFY "REMOVE could not create valid nodepath for parent item %s\n",
                  nodeName(link.parent()).c_str());
    if (node.type()->isContextRoot())
        removeBelowContextRoot(model, node, link);
    else if (!removeBelow(model, link))
        return;
    if (living && !living->rootItem())
        QOR_WARNING("REMOVE... NO ITEM FOR CONTEXT ROOT\n");
}

void QorObservingScenegraphModel::ChangedObserver::removeBelowContextRoot(QorObservingScenegraphModel& model,
                                                                          const Orvane::Node& node,
                                                                          Orvane::NodeLink& link)
{
    QOR_NOTICE(NOTIFY
               "REMOVE context root=%p, nodeLink=%p, nodeLink->node()=%p, nodeLink->parent()=%p, name=%s.\n",
               address(&node), address(&link), address(link.node()), address(link.parent()),
               nodeName(link.node()).c_str());
    // A change in another context.
    if (model.rootNode()->contextRoot() != node.contextRoot())
        return;
    const int row = nodeLinkRow(&link);
    if (row < 0) {
        model.rootItem()->invalidate(link.node());
        model.rootItem()->updateCache(true);
        return;
    }
    const QModelIndex index = model.index(Orvane::NodePath(link.parent()));
    if (index.isValid())
        model.removeRow(row, index);
}

/// False when items were only marked for a rebuild.
bool QorObservingScenegraphModel::ChangedObserver::removeBelow(QorObservingScenegraphModel& model,
                                                               Orvane::NodeLink& link)
{
    const Orvane::NodePath parentPath(link.parent());
    if (!parentPath.isValid()) {
        QOR_FATAL(NOTIFY "REMOVE Invalid NodePath! Skipping treeview update.\n");
        return true;
    }
    QOR_NOTICE(NOTIFY "REMOVING nodeLink.node()=%s/%p from nodeLink.parent()=%s/%p.\n",
               nodeName(link.node()).c_str(), address(link.node()), nodeName(link.parent()).c_str(),
               address(link.parent()));
    if (!model.recursiveSearchItemOf(model.rootItem(), parentPath))
        return true;
    const QModelIndex index = model.index(parentPath);
    if (!index.isValid()) {
        QOR_WARNING("#### REMOVE: NOT found model for index nodepath.\n");
        return true;
    }
    const int row = nodeLinkRow(&link);
    if (row >= 0) {
        QOR_LOG(NOTIFY "REMOVING specialized update row %d\n", row);
        model.removeRow(row, index);
        return true;
    }
    QOR_WARNING(NOTIFY "Unable to find NodeLink in field. field.size=%d, indexOfRemovedNode=%d\n",
                static_cast<int>(link.field()->size()), row);
    invalidateItems(model, link, index);
    return false;
}

void QorObservingScenegraphModel::ChangedObserver::invalidateItems(QorObservingScenegraphModel& model,
                                                                   Orvane::NodeLink& link,
                                                                   const QModelIndex& index)
{
    const QPointer<QorObservingScenegraphModel> living(&model);
    const QVector<QorNodeItem*> items = model.searchNodeItems(link.parent(), model.rootItem());
    QOR_NOTICE(NOTIFY "REMOVING found %d items for node \n", items.size());
    for (QorNodeItem* item : items) {
        // Whoever heard of the last one may have built rows anew.
        if (!living || !model.searchNodeItems(link.parent(), model.rootItem()).contains(item))
            continue;
        item->invalidate(link.directNode());
        model.invalidateRemovedChilds(index);
    }
}

QorObservingScenegraphModel::QorObservingScenegraphModel(Orvane::Node* rootNode, QObject* parent)
    : QorScenegraphModel(nullptr, parent)
{
    if (rootNode)
        setRootNode(rootNode);
    _childAddedObserver = std::make_unique<ChangedObserver>(this, ADD);
    _childRemovedObserver = std::make_unique<ChangedObserver>(this, REMOVE);
    Orvane::Node::_childAdded.attach(*_childAddedObserver);
    Orvane::Node::_childRemoved.attach(*_childRemovedObserver);
}

QorObservingScenegraphModel::~QorObservingScenegraphModel()
{
    Orvane::Node::_childAdded.detach(*_childAddedObserver);
    // Its own end takes the other one out of the subject that it is attached to.
    Orvane::Node::_childAdded.detach(*_childRemovedObserver);
}

void QorObservingScenegraphModel::setupRootNode(Orvane::Node* rootNode, QorNodeItem* parentItem)
{
    std::unique_ptr<QorNodeItem> item;
    if (rootNode)
        item = std::make_unique<QorNodeItem>(this, Orvane::NodePath(rootNode), parentItem);
    QOR_NOTICE("QorObservingScenegraphModel::setupRootNode: #1 rootItem()=%p, node=%p, nodename=%s\n",
               address(rootItem()), address(rootNode), nodeName(rootNode).c_str());
    internalRootItem()->appendChild(item.release());
}

void QorObservingScenegraphModel::invalidateRemovedChilds(const QModelIndex& index)
{
    emit childsRemoved(index);
}

} // namespace Orvane::Qt4
