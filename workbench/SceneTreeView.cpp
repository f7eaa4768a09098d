#include "SceneTreeView.h"

#include <Orvane/NodeLink.h>
#include <QApplication>
#include <QDrag>
#include <QMouseEvent>
#include <QorNodeItem.h>
#include <QorNodePathMimeData.h>
#include <QorScenegraphModel.h>
#include <list>

using namespace Orvane::Qt4;

namespace {

constexpr int deepestOpened = 8;

} // namespace

SceneTreeView::SceneTreeView(QWidget* parent)
    : QorScenegraphTreeView(parent)
{
    // Rows have no editor; a double click is to open and close them.
    setEditTriggers(NoEditTriggers);
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
    if (event->key() == Qt::Key_Asterisk)
        expandRecursively(currentIndex(), deepestOpened);
    else
        QorScenegraphTreeView::keyPressEvent(event);
}

void SceneTreeView::mousePressEvent(QMouseEvent* event)
{
    const QModelIndex index = indexAt(event->pos());
    const bool starts = event->button() == Qt::LeftButton && index.isValid() && scenegraphModel();
    _pressedPath = starts ? scenegraphModel()->nodePath(index) : Orvane::NodePath();
    _pressPosition = event->pos();
    QorScenegraphTreeView::mousePressEvent(event);
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
        drag->exec(Qt::CopyAction);
    }
}
