#include "QorNodeEditorTreeView.h"

#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeEditorHeaderView.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include <Orvane/LogModule.h>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QMenu>

// The lines of this view go out under the runtime's module word.
#define TREE_INFO(...) QOR_LOG_LINE(osg::LOG_INFO, Orvane::LogModuleName, __VA_ARGS__)
#define TREE_FATAL(...) QOR_LOG_LINE(osg::LOG_FATAL, Orvane::LogModuleName, __VA_ARGS__)

namespace Orvane::Qt4 {

namespace {

QorFieldItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorFieldItem*>(index.internalPointer());
}

/// The multi field of a row whose values were never turned into rows; else null.
QorMFieldItem* unfilledItem(const QModelIndex& index)
{
    QorFieldItem* item = itemOf(index);
    QorMFieldItem* fieldItem = item && item->field() ? item->toMFieldItem() : nullptr;
    return fieldItem && fieldItem->isInitialisationDelayed() && !fieldItem->isInitialised() ? fieldItem
                                                                                            : nullptr;
}

bool hasSeveralLines(const QModelIndex& row)
{
    for (int column = 0; row.isValid() && column < row.model()->columnCount(); ++column) {
        if (row.sibling(row.row(), column).data().toString().contains(QLatin1Char('\n')))
            return true;
    }
    return false;
}

} // namespace

QorNodeEditorTreeView::QorNodeEditorTreeView(QWidget* parent)
    : QTreeView(parent)
{
    setAlternatingRowColors(true);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    setContextMenuPolicy(Qt::DefaultContextMenu);
    dropShaping(*this);
    auto* header = new QorNodeEditorHeaderView(Qt::Horizontal, this);
    header->setDefaultAlignment(Qt::AlignLeft);
    setHeader(header);
}

QorNodeModel* QorNodeEditorTreeView::nodeModel() const
{
    return qobject_cast<QorNodeModel*>(model());
}

QorMFieldValueItem* QorNodeEditorTreeView::currentValueItem() const
{
    QorFieldItem* item = nodeModel() ? itemOf(currentIndex()) : nullptr;
    return item ? item->toMFieldValueItem() : nullptr;
}

void QorNodeEditorTreeView::chooseRowHeights()
{
    // With rows of their own heights, each notification of a field far down has the rows above it turned into
    // text. Uniform ones are as high as the first.
    setUniformRowHeights(model() && !hasSeveralLines(model()->index(0, 0)));
}

void QorNodeEditorTreeView::reset()
{
    chooseRowHeights();
    QTreeView::reset();
}

void QorNodeEditorTreeView::doItemsLayout()
{
    chooseRowHeights();
    QTreeView::doItemsLayout();
}

void QorNodeEditorTreeView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    // Only the first column of a row knows whether it is expanded.
    if (event->button() == Qt::LeftButton && index.isValid() && nodeModel() &&
        !isExpanded(index.sibling(index.row(), 0)))
    {
        if (QorMFieldItem* item = unfilledItem(index)) {
            // The view has not asked for the rows below a collapsed one, so that nobody need be told.
            setCursor(Qt::WaitCursor);
            item->updateChildValues(true);
            nodeModel()->renewIndexes();
            unsetCursor();
        }
    }
    QTreeView::mousePressEvent(event);
}

void QorNodeEditorTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    QTreeView::mouseReleaseEvent(event);
}

void QorNodeEditorTreeView::mouseMoveEvent(QMouseEvent* event)
{
    QTreeView::mouseMoveEvent(event);
}

void QorNodeEditorTreeView::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
}

void QorNodeEditorTreeView::contextMenuEvent(QContextMenuEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    if (!index.isValid()) {
        TREE_INFO("QorNodeEditorTreeView::contextMenuEvent: no item hit.\n");
        event->ignore();
        return;
    }
    const QorNodeModel* model = nodeModel();
    QorFieldItem* item = model ? itemOf(index) : nullptr;
    if (!item)
        return;

    // Menus stay with the view: the slot of an entry runs while its menu still closes.
    if (item->toMFieldItem() && model->canInsertRows(index)) {
        auto* menu = new QMenu(this);
        menu->addAction(tr("Insert value at front"), this, &QorNodeEditorTreeView::onInsertValueAtFront);
        menu->popup(event->globalPos());
        event->accept();
    }
    if (!item->toMFieldValueItem())
        return;

    TREE_INFO("QorNodeEditorTreeView::contextMenuEvent: mfieldValueItem item hit.\n");
    auto* menu = new QMenu(this);
    if (model->canInsertRows(index)) {
        menu->addAction(tr("Insert value before"), this, &QorNodeEditorTreeView::onInsertValueBeforeSelected);
        menu->addAction(tr("Insert value behind"), this, &QorNodeEditorTreeView::onInsertValueBehindSelected);
    }
    if (model->canRemoveRows(index))
        menu->addAction(tr("Remove value"), this, &QorNodeEditorTreeView::onRemoveSelectedValue);
    menu->popup(event->globalPos());
    event->accept();
}

QStyleOptionViewItem QorNodeEditorTreeView::viewOptions() const
{
    QStyleOptionViewItem option = QTreeView::viewOptions();
    option.displayAlignment = Qt::AlignLeft | Qt::AlignTop;
    return option;
}

void QorNodeEditorTreeView::commitData(QWidget* editor)
{
    QTreeView::commitData(editor);
    // An edit may have replaced the rows of its field; nobody else tells the view.
    if (nodeModel())
        nodeModel()->renewIndexes();
    scheduleDelayedItemsLayout();
}

void QorNodeEditorTreeView::onInsertValueAtFront()
{
    QorNodeModel* model = nodeModel();
    if (!model)
        return;
    TREE_INFO("QorNodeEditorTreeView::onInsertValueBeforeSelected: inserting 1 at begin.\n");
    model->insertRows(0, 1, currentIndex());
    scheduleDelayedItemsLayout();
}

void QorNodeEditorTreeView::onInsertValueBeforeSelected()
{
    if (const QorMFieldValueItem* item = currentValueItem())
        insertValue(item->index());
}

void QorNodeEditorTreeView::onInsertValueBehindSelected()
{
    if (const QorMFieldValueItem* item = currentValueItem())
        insertValue(item->index() + 1);
}

void QorNodeEditorTreeView::insertValue(int row)
{
    TREE_INFO("QorNodeEditorTreeView::onInsertValueBeforeSelected: inserting 1 at %d.\n", row);
    nodeModel()->insertRows(row, 1, currentIndex().parent());
    scheduleDelayedItemsLayout();
}

void QorNodeEditorTreeView::onRemoveSelectedValue()
{
    QorNodeModel* model = nodeModel();
    if (!model)
        return;
    if (!currentIndex().isValid()) {
        TREE_FATAL("QorNodeEditorTreeView::onRemoveSelectedValue: invalid model index.\n");
        return;
    }
    const QorMFieldValueItem* item = currentValueItem();
    if (!item)
        return;
    model->removeRows(item->index(), 1, currentIndex().parent());
    scheduleDelayedItemsLayout();
}

} // namespace Orvane::Qt4
