#include "QorNodeEditorHeaderView.h"

#include "QorNodeEditorTreeView.h"
#include "QorNodeModel.h"
#include <QtGui/QContextMenuEvent>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QMenu>

namespace Orvane::Qt4 {

namespace {

QString headerText(const QAbstractItemModel* model, int column)
{
    return model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
}

} // namespace

QorNodeEditorHeaderView::QorNodeEditorHeaderView(Qt::Orientation orientation, QorNodeEditorTreeView* parent)
    : QHeaderView(orientation, parent)
{
    setSectionsMovable(false);
    setSectionsClickable(false);
}

void QorNodeEditorHeaderView::setModel(QAbstractItemModel* model)
{
    QHeaderView::setModel(model);
    updateContextMenu();
}

void QorNodeEditorHeaderView::updateContextMenu()
{
    const auto* view = qobject_cast<QorNodeEditorTreeView*>(parent());
    const auto* model = view ? qobject_cast<QorNodeModel*>(view->model()) : nullptr;

    delete _contextMenu;
    _contextMenu = new QMenu(this);
    _contextMenu->setTitle(tr("Show field column"));
    auto* group = new QActionGroup(_contextMenu);
    group->setExclusive(false);
    if (!model)
        return;

    for (int column = 0; column < model->columnCount(); ++column) {
        auto* action = new QAction(headerText(model, column), group);
        action->setCheckable(true);
        action->setChecked(!view->isColumnHidden(column));
    }
    _contextMenu->addActions(group->actions());
    connect(group, &QActionGroup::triggered, this, &QorNodeEditorHeaderView::onContextAction);
}

void QorNodeEditorHeaderView::contextMenuEvent(QContextMenuEvent* event)
{
    // The marks of the entries are those of this moment.
    updateContextMenu();
    _contextMenu->popup(event->globalPos());
}

void QorNodeEditorHeaderView::onContextAction(QAction* action)
{
    auto* view = qobject_cast<QorNodeEditorTreeView*>(parent());
    if (!view || !view->model() || !action)
        return;
    for (int column = 0; column < view->model()->columnCount(); ++column) {
        if (headerText(view->model(), column) != action->text())
            continue;
        if (action->isChecked())
            view->showColumn(column);
        else
            view->hideColumn(column);
    }
}

} // namespace Orvane::Qt4
