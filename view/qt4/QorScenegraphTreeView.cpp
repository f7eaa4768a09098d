#include "QorScenegraphTreeView.h"

#include "QorLog.h"
#include "QorNodeItem.h"
#include "QorScenegraphItemDelegate.h"
#include "QorScenegraphModel.h"
#include "QorTools.h"
#include <QtGui/QMouseEvent>
#include <QtWidgets/QHeaderView>

namespace Orvane::Qt4 {

QorScenegraphTreeView::QorScenegraphTreeView(QWidget* parent)
    : QTreeView(parent)
{
    setObjectName(QStringLiteral("QorScenegraphTreeView"));
    setWindowTitle(QStringLiteral("Scenegraph tree view"));
    setAlternatingRowColors(true);
    header()->setSectionResizeMode(QHeaderView::Stretch);
    header()->setSectionsClickable(false);
    header()->setSectionsMovable(false);
    setItemDelegate(new QorScenegraphItemDelegate(this));
    setIndentation(14);
    setRootIsDecorated(true);
    connect(this, SIGNAL(expanded(QModelIndex)), this, SLOT(onItemExpanded(QModelIndex)));
}

QorScenegraphTreeView::QorScenegraphTreeView(QorScenegraphTreeView&)
    : QTreeView(nullptr)
{
}

QorScenegraphTreeView::~QorScenegraphTreeView()
{
    delete _ownModel;
}

QorScenegraphModel* QorScenegraphTreeView::scenegraphModel() const
{
    return qobject_cast<QorScenegraphModel*>(model());
}

void QorScenegraphTreeView::setRootNode(Orvane::Node* rootNode)
{
    QOR_NOTICE("QorScenegraphTreeView::setRootNode:\n");
    reset();
    _rootNode = rootNode;
    delete model();
    // The one of the last root, when a host has set another since.
    delete _ownModel;
    if (!rootNode)
        return;

    auto* model = new QorScenegraphModel(rootNode, nullptr);
    _ownModel = model;
    if (_hideTypeFilter.isEmpty())
        model->setShowTypeFilter(_showTypeFilter);
    else
        model->setHideTypeFilter(_hideTypeFilter);
    setModel(model);
    expand(model->index(0, 0, QModelIndex()));
}

void QorScenegraphTreeView::setShowTypeFilter(const QStringList& types)
{
    _showTypeFilter = types;
    _hideTypeFilter.clear();
}

void QorScenegraphTreeView::setHideTypeFilter(const QStringList& types)
{
    _hideTypeFilter = types;
    _showTypeFilter.clear();
}

void QorScenegraphTreeView::removeFilter()
{
    QOR_NOTICE("QorScenegraphTreeView::removeFilter\n");
    if (!_hideTypeFilter.isEmpty())
        _hideTypeFilter.clear();
    else if (!_showTypeFilter.isEmpty())
        _showTypeFilter.clear();
    else
        QOR_WARNING("QorScenegraphTreeView::removeFilter: no filter found to remove.\n");
}

void QorScenegraphTreeView::mousePressEvent(QMouseEvent* event)
{
    QTreeView::mousePressEvent(event);
}

void QorScenegraphTreeView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTreeView::mouseDoubleClickEvent(event);
}

void QorScenegraphTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    // Whoever hears of a click may end the view.
    const QPointer<QorScenegraphTreeView> living(this);
    QTreeView::mouseReleaseEvent(event);
    if (!living)
        return;
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid()) {
        QOR_WARNING("QorScenegraphTreeView::mousePressEvent: invalid model index.\n");
        return;
    }
    const QorScenegraphModel* model = scenegraphModel();
    if (!model || (event->button() != Qt::LeftButton && event->button() != Qt::RightButton))
        return;
    const Orvane::NodePath np = model->nodePath(index);
    if (!np.node()) {
        QOR_NOTICE("QorScenegraphTreeView::mousePressEvent: np.node()=0!\n");
        return;
    }
    emit nodeSelected(np);
    if (living)
        emit nodeSelected(np.node());
}

void QorScenegraphTreeView::onItemExpanded(QModelIndex index)
{
    QOR_NOTICE("QorScenegraphTreeView::onItemExpanded.\n");
    // Another model points at things of its own.
    const bool isOurs = qobject_cast<const QorScenegraphModel*>(index.model());
    auto* item = isOurs ? static_cast<QorNodeItem*>(index.internalPointer()) : nullptr;
    if (item) {
        item->updateCache(true);
        QOR_NOTICE("QorScenegraphTreeView::onItemExpanded: item %s/%s\n",
                   toRuntime(item->data(0).toString()).c_str(), toRuntime(item->data(1).toString()).c_str());
    }
    QOR_NOTICE("QorScenegraphTreeView::onItemExpanded: leaving...\n");
}

} // namespace Orvane::Qt4
