#include "QorGraphEdge.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorLog.h"
#include "QorPixels.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <QtCore/QPointer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <algorithm>
#include <climits>
#include <cmath>

namespace Orvane::Qt4 {

namespace {

/// The event as a box sees it.
QMouseEvent relativeTo(const QorGraphNodeView& view, const QMouseEvent& event)
{
    const QPoint local = toPixel(event.pos() - view.pos());
    return QMouseEvent(event.type(), local, event.windowPos(), event.screenPos(), event.button(),
                       event.buttons(), event.modifiers());
}

/// The scalar product, exact wherever it fits.
float product(qint64 ax, qint64 ay, qint64 bx, qint64 by)
{
    constexpr qint64 limit = INT_MAX;
    const auto fits = [](qint64 value) { return value >= -limit && value <= limit; };
    if (fits(ax) && fits(ay) && fits(bx) && fits(by))
        return static_cast<float>(ax * bx + ay * by);
    return static_cast<float>(static_cast<double>(ax) * bx + static_cast<double>(ay) * by);
}

/// Of the rotation that is stronger, in eighths of a degree.
int deltaOf(const QWheelEvent& event)
{
    const QPoint angle = event.angleDelta();
    return std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
}

} // namespace

void QorGraphView::mousePressEvent(QMouseEvent* event)
{
    event->accept();
    if (_mode == DEFAULT_M) {
        processDefaultPressEvent(event);
    } else if (_mode == CREATEROUTE_M) {
        if (QorGraphNodeView* const view = nodeViewAt(event->pos()))
            view->showFields(QorGraphNodeView::InputMenu);
    }
}

void QorGraphView::processDefaultPressEvent(QMouseEvent* event)
{
    if (QorGraphEdge* const edge = edgeAt(event->pos())) {
        pressEdge(edge, event);
        return;
    }
    QorGraphNodeView* const view = nodeViewAt(event->pos());
    if (view && event->button() == Qt::LeftButton) {
        pressBox(view, event);
        return;
    }
    const QPointer<QorGraphView> living(this);
    switch (event->button()) {
    case Qt::MiddleButton:
        QOR_LOG("QorGraphView::processDefaultPressEvent: PANNING canvas.\n");
        setMode(PANCANVAS_M);
        break;
    case Qt::RightButton:
        event->accept();
        if (view)
            select(view->node());
        if (!living)
            return;
        (view ? _nodeMenu : _canvasMenu)->move(event->globalPos());
        (view ? _nodeMenu : _canvasMenu)->show();
        break;
    case Qt::LeftButton:
        deselectAll();
        setMode(RECTSELECT_M);
        _selectRect = QRect(event->pos(), event->pos());
        break;
    default:
        break;
    }
    update();
}

void QorGraphView::pressEdge(QorGraphEdge* edge, QMouseEvent* event)
{
    event->accept();
    if (event->button() == Qt::LeftButton) {
        if (edge->isSelected())
            _selectedEdges.removeAll(edge);
        else
            _selectedEdges.append(edge);
        edge->toggleSelection();
    } else if (event->button() == Qt::RightButton) {
        auto* menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addAction(tr("Delete route"), this, &QorGraphView::deleteSelectedRoutesEvent);
        menu->move(event->globalPos());
        menu->show();
    }
}

void QorGraphView::pressBox(QorGraphNodeView* view, QMouseEvent* event)
{
    QMouseEvent local = relativeTo(*view, *event);
    if (!view->inputAreaContains(local.pos()) && !view->outputAreaContains(local.pos()))
        setMode(MOVENODE_M);
    const QPointer<QorGraphView> living(this);
    view->mousePressEvent(&local);
    // A field menu has had an event loop of its own, in which anything may have happened.
    if (!living)
        return;
    if (_nodeViews.contains(view)) {
        _pressOffset = event->pos() - view->pos();
        if (!(event->modifiers() & Qt::ControlModifier) && !view->isSelected())
            deselectAll();
        if (!_selectedNodes.contains(view)) {
            select(view->node());
            if (!living)
                return;
            QOR_NOTICE("selected %s\n", view->node() ? view->node()->getIDStr().c_str() : "");
        }
    }
    _mousePos = event->pos();
    update();
}

void QorGraphView::mouseMoveEvent(QMouseEvent* event)
{
    const bool isLeftDown = event->buttons() & Qt::LeftButton;
    switch (_mode) {
    case DEFAULT_M:
        processDefaultMoveEvent(event);
        break;
    case MOVENODE_M:
        if (isLeftDown)
            processMoveNodeMoveEvent(event);
        break;
    case RECTSELECT_M:
        if (isLeftDown)
            processRectSelectMoveEvent(event);
        break;
    case CREATEROUTE_M:
        _routeLine.setP2(event->pos());
        break;
    case PANCANVAS_M:
        processPanCanvasMoveEvent(event);
        break;
    default:
        QOR_WARNING("QorGraphView::mouseMoveEvent: invalid mode.\n");
    }
    _mousePos = event->pos();
    update();
}

void QorGraphView::processDefaultMoveEvent(QMouseEvent* event)
{
    // Over boxes before over lines, the other way round than a press.
    for (QorGraphNodeView* const view : qAsConst(_nodeViews)) {
        if (view->rect().contains(event->pos())) {
            _edgeLabel->hide();
            if (view != _hoverView)
                hover(view);
            QMouseEvent local = relativeTo(*view, *event);
            view->mouseMoveEvent(&local);
            update();
            return;
        }
        if (view == _hoverView)
            hover(nullptr);
    }
    _fontMetrics = QFontMetrics(font());
    if (const QorGraphEdge* const edge = edgeAt(event->pos()))
        showEdgeLabel(edge, event);
    else
        _edgeLabel->hide();
    event->accept();
}

/// Takes the mouse from one box to another; both may be null.
void QorGraphView::hover(QorGraphNodeView* view)
{
    if (_hoverView) {
        QEvent leave(QEvent::Leave);
        _hoverView->leaveEvent(&leave);
    }
    _hoverView = view;
    if (_hoverView) {
        QEvent enter(QEvent::Enter);
        _hoverView->enterEvent(&enter);
    }
}

void QorGraphView::showEdgeLabel(const QorGraphEdge* edge, const QMouseEvent* event)
{
    const QString text = edgeText(edge);
    _edgeLabel->setText(text);
    const int left = event->x() - _fontMetrics.horizontalAdvance(text) / 2;
    _edgeLabel->move(left, event->y() + static_cast<int>(_fontMetrics.height() * -1.2));
    // One that shows already keeps its size.
    if (!_edgeLabel->isVisible()) {
        _edgeLabel->adjustSize();
        _edgeLabel->show();
    }
}

QString QorGraphView::edgeText(const QorGraphEdge* edge) const
{
    const auto idOf = [](const Node* node) { return node ? fromRuntime(node->getIDStr()) : QString(); };
    const auto nameOf = [](const Node* node, unsigned int id) {
        const Field* const field = node ? node->findField(id) : nullptr;
        return field ? fromRuntime(field->name()) : QString();
    };
    const Node* const source = edge->srcNode()->node();
    const Node* const destination = edge->destNode()->node();
    return QStringLiteral("%1.%2  -  %3.%4")
        .arg(idOf(source), nameOf(source, edge->outSlotId()), idOf(destination),
             nameOf(destination, edge->inSlotId()));
}

void QorGraphView::processMoveNodeMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || _selectedNodes.isEmpty())
        return;
    const QPointF delta = _mousePos - event->pos();
    updateBoxes(_selectedNodes);
    for (QorGraphNodeView* const view : qAsConst(_selectedNodes))
        view->move(view->pos() - delta);
    updateBoxes(_selectedNodes);
}

void QorGraphView::processRectSelectMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    _selectRect.setBottomRight(event->pos());
    selectByRect();
    updateBoxes(_nodeViews);
}

void QorGraphView::selectByRect()
{
    _selectedNodes.clear();
    for (QorGraphNodeView* const view : qAsConst(_nodeViews)) {
        if (_selectRect.intersects(toPixels(view->rect()))) {
            view->select();
            _selectedNodes.append(view);
        } else {
            view->deselect();
        }
    }
}

void QorGraphView::processPanCanvasMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::MiddleButton))
        return;
    _translation -= _mousePos - event->pos();
    updateViewMatrix();
}

void QorGraphView::mouseReleaseEvent(QMouseEvent* event)
{
    event->accept();
    if (_mode == CREATEROUTE_M)
        setMode(DEFAULT_M);
    if (event->button() == Qt::LeftButton && _mode == RECTSELECT_M) {
        selectByRect();
        setMode(DEFAULT_M);
        update();
        return;
    }
    if ((event->button() == Qt::LeftButton && _mode == MOVENODE_M) ||
        (event->button() == Qt::MiddleButton && _mode == PANCANVAS_M))
        setMode(DEFAULT_M);
    if (_mode == DEFAULT_M) {
        if (QorGraphNodeView* const view = nodeViewAt(event->pos())) {
            const QPointer<QorGraphView> living(this);
            QMouseEvent local = relativeTo(*view, *event);
            view->mouseReleaseEvent(&local);
            if (!living)
                return;
        }
    }
    update();
}

void QorGraphView::wheelEvent(QWheelEvent* event)
{
    event->accept();
    const double scale = deltaOf(*event) / 120.0 * 0.1 + _scale;
    if (scale == _scale)
        return;
    _scale = std::max(0.1, scale);
    updateViewMatrix();
}

void QorGraphView::keyPressEvent(QKeyEvent* event)
{
    QOR_NOTICE("QorGraphView::keyPressEvent: key=%d.\n", event->key());
    // Every key but Delete goes on to the host, too.
    event->ignore();
    if (event->key() == Qt::Key_Delete) {
        const bool anySelected = std::any_of(_edges.cbegin(), _edges.cend(),
                                             [](const QorGraphEdge* edge) { return edge->isSelected(); });
        if (anySelected) {
            event->accept();
            deleteSelectedRoutesEvent();
        }
    } else if (event->key() == Qt::Key_A) {
        selectAll();
    }
}

float QorGraphView::magnitude(const QPoint& a, const QPoint& b)
{
    const auto dx = static_cast<float>(qint64(a.x()) - b.x());
    const auto dy = static_cast<float>(qint64(a.y()) - b.y());
    return std::sqrt(dy * dy + dx * dx);
}

bool QorGraphView::distancePointLine(const QPoint& p, const QPoint& a, const QPoint& b, float& distance)
{
    const float length = magnitude(a, b);
    const qint64 dx = qint64(b.x()) - a.x();
    const qint64 dy = qint64(b.y()) - a.y();
    if (dx == 0 && dy == 0)
        return false;
    const float u = product(qint64(p.x()) - a.x(), qint64(p.y()) - a.y(), dx, dy) / (length * length);
    if (u < 0.0F || u > 1.0F)
        return false;
    const auto truncated = [](float value) {
        return static_cast<int>(qBound<double>(INT_MIN, static_cast<double>(value), INT_MAX));
    };
    const QPoint foot(truncated(static_cast<float>(dx) * u + static_cast<float>(a.x())),
                      truncated(static_cast<float>(dy) * u + static_cast<float>(a.y())));
    distance = magnitude(foot, p);
    return true;
}

QorGraphEdge* QorGraphView::edgeAt(const QPoint& point)
{
    for (QorGraphEdge* const edge : qAsConst(_edges)) {
        float distance = 0.0F;
        if (distancePointLine(point, startPoint(edge), endPoint(edge), distance) &&
            _routeHitDistance >= distance)
            return edge;
    }
    return nullptr;
}

QorGraphNodeView* QorGraphView::nodeViewAt(const QPoint& point) const
{
    for (QorGraphNodeView* const view : _nodeViews) {
        if (view->rect().contains(point))
            return view;
    }
    return nullptr;
}

} // namespace Orvane::Qt4
