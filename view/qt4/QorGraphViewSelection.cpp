#include "QorGraphNodeView.h"
#include "QorGraphView.h"

namespace Orvane::Qt4 {

void QorGraphView::select(Orvane::Node* node)
{
    QorGraphNodeView* const view = viewOf(node);
    if (!view || view->isSelected())
        return;
    view->select();
    _selectedNodes.append(view);
    emit nodeSelected(node);
}

void QorGraphView::selectAll()
{
    for (int i = _nodeViews.size() - 1; i >= 0; --i) {
        QorGraphNodeView* const view = _nodeViews.at(i);
        if (view->isSelected())
            continue;
        view->select();
        _selectedNodes.append(view);
    }
    updateBoxes(_nodeViews);
}

void QorGraphView::deselectAll()
{
    for (QorGraphNodeView* const view : qAsConst(_nodeViews))
        view->deselect();
    _selectedNodes.clear();
    updateBoxes(_nodeViews);
}

void QorGraphView::updateBoxes(const QList<QorGraphNodeView*>& views)
{
    if (!_partialUpdate) {
        update();
        return;
    }
    for (const QorGraphNodeView* const view : views)
        update(view->rect().toAlignedRect());
}

void QorGraphView::toggleNodeTypeVisible()
{
    for (QorGraphNodeView* const view : qAsConst(_nodeViews))
        view->setNodeTypeVisible(!view->isNodeTypeVisible());
    update();
}

void QorGraphView::setNodeTypeVisible(bool visible)
{
    // Meant to call itself once for each box, and so without end when there is one: this slot is for the
    // repaint of an empty canvas, and hosts go by toggleNodeTypeVisible().
    for (int i = 0; i < _nodeViews.size(); ++i)
        setNodeTypeVisible(visible);
    update();
}

} // namespace Orvane::Qt4
