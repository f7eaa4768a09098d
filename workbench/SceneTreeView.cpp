#include "SceneTreeView.h"

#include <Orvane/NodeLink.h>
#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QPainter>
#include <QorNodeItem.h>
#include <QorNodePathMimeData.h>
#include <QorScenegraphModel.h>
#include <list>

using namespace Orvane::Qt4;

namespace {

constexpr int deepestOpened = 8;

const QorNodePathMimeData* draggedNode(const QDropEvent* event)
{
    return qobject_cast<const QorNodePathMimeData*>(event->mimeData());
}

} // namespace

SceneTreeView::SceneTreeView(QWidget* parent)
    : QorScenegraphTreeView(parent)
{
    // Rows have no editor; a double click is to open and close them.
    setEditTriggers(NoEditTriggers);
    setAcceptDrops(true);
    setAutoScroll(true);
}

void SceneTreeView::reveal(const Orvane::NodePath& path)
{
    const QorScenegraphModel* model = scenegraphModel();
    if (!model || !model->rootItem() || !path.isValid())
        return;
    std::list<Orvane::NodeLink*> links;
    path.nodeLinks(links);
    std::list<Orvane::NodeLink*> way;
    QModelIndex row = model->index(0, 0);
    while (!links.empty()) {
        expand(row);
        // A row that is open already is not read anew by itself.
        static_cast<QorNodeItem*>(row.internalPointer())->updateCache(true);
        way.push_front(links.back());
        links.pop_back();
        const QModelIndex next = model->index(Orvane::NodePath(way));
        if (!next.isValid())
            break;
        row = next.sibling(next.row(), 0);
    }
    const bool isSeen = viewport()->rect().contains(visualRect(row));
    setCurrentIndex(row);
    if (!isSeen)
        scrollTo(row, PositionAtCenter);
}

QMimeData* SceneTreeView::dragData(const Orvane::NodePath& path)
{
    return path.node() ? new QorNodePathMimeData(path) : nullptr;
}

void SceneTreeView::keyPressEvent(QKeyEvent* event)
{
    const QPersistentModelIndex before = currentIndex();
    if (event->key() == Qt::Key_Asterisk)
        expandRecursively(currentIndex(), deepestOpened);
    else
        QorScenegraphTreeView::keyPressEvent(event);
    if (before != currentIndex())
        selectCurrent();
}

void SceneTreeView::selectCurrent()
{
    const QModelIndex row = currentIndex();
    if (!row.isValid() || !scenegraphModel())
        return;
    const Orvane::NodePath path = scenegraphModel()->nodePath(row);
    if (path.node())
        emit nodeSelected(path);
}

void SceneTreeView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    const bool starts = event->button() == Qt::LeftButton && index.isValid() && scenegraphModel();
    _pressedPath = starts ? scenegraphModel()->nodePath(index) : Orvane::NodePath();
    _pressPosition = event->pos();
    QorScenegraphTreeView::mousePressEvent(event);
    // The menu comes with the press, and works on what is selected.
    if (event->button() == Qt::RightButton && index.isValid())
        selectCurrent();
}

void SceneTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    // A click below the rows is no mistake that the log should tell of.
    if (indexAt(event->pos()).isValid())
        QorScenegraphTreeView::mouseReleaseEvent(event);
    else
        QTreeView::mouseReleaseEvent(event);
}

void SceneTreeView::mouseMoveEvent(QMouseEvent* event)
{
    const bool isFar = (event->pos() - _pressPosition).manhattanLength() >= QApplication::startDragDistance();
    if (!(event->buttons() & Qt::LeftButton) || !isFar) {
        QorScenegraphTreeView::mouseMoveEvent(event);
        return;
    }
    // Moves of a pressed button would select rows on the way.
    if (QMimeData* data = dragData(_pressedPath)) {
        _pressedPath = Orvane::NodePath();
        auto* drag = new QDrag(this); // ends itself
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
    }
}

/// -1 for the upper edge of a row, 1 for the lower one, else 0.
int SceneTreeView::sideOf(const QModelIndex& row, const QPoint& place) const
{
    const QRect rect = visualRect(row);
    const int edge = rect.height() / 4;
    if (place.y() < rect.top() + edge)
        return -1;
    return place.y() > rect.bottom() - edge ? 1 : 0;
}

void SceneTreeView::markDrop(const QModelIndex& row, int side)
{
    _dropRow = row;
    _dropSide = side;
    viewport()->update();
}

void SceneTreeView::dragEnterEvent(QDragEnterEvent* event)
{
    if (draggedNode(event))
        event->acceptProposedAction();
}

void SceneTreeView::dragMoveEvent(QDragMoveEvent* event)
{
    const QModelIndex row = indexAt(event->pos());
    if (!draggedNode(event) || !row.isValid()) {
        event->ignore();
        markDrop({}, 0);
        return;
    }
    markDrop(row, sideOf(row, event->pos()));
    event->setDropAction(Qt::MoveAction);
    event->accept();
    if (!viewport()->rect().adjusted(0, autoScrollMargin(), 0, -autoScrollMargin()).contains(event->pos()))
        scrollTo(event->pos().y() < height() / 2 ? indexAbove(row) : indexBelow(row));
}

void SceneTreeView::dragLeaveEvent(QDragLeaveEvent*)
{
    markDrop({}, 0);
}

void SceneTreeView::dropEvent(QDropEvent* event)
{
    const QorNodePathMimeData* const dragged = draggedNode(event);
    const QModelIndex row = indexAt(event->pos());
    markDrop({}, 0);
    if (!dragged || !row.isValid() || !scenegraphModel())
        return;
    event->setDropAction(Qt::MoveAction);
    event->accept();
    emit nodeDropped(dragged->nodePath(), scenegraphModel()->nodePath(row), sideOf(row, event->pos()));
}

void SceneTreeView::paintEvent(QPaintEvent* event)
{
    QorScenegraphTreeView::paintEvent(event);
    if (!_dropRow.isValid())
        return;
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    QRect rect = visualRect(_dropRow);
    rect.setRight(viewport()->width() - 2);
    if (_dropSide == 0)
        painter.drawRect(rect);
    else
        painter.drawLine(_dropSide < 0 ? rect.topLeft() : rect.bottomLeft(),
                         _dropSide < 0 ? rect.topRight() : rect.bottomRight());
}
