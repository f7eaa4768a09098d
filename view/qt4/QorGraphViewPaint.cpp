#include "QorGraphEdge.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorPixels.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <QtCore/QTime>
#include <QtGui/QPainter>
#include <QtGui/QTextOption>
#include <algorithm>

namespace Orvane::Qt4 {

namespace {

/// How far pens reach beyond what they draw.
constexpr double penReach = 4.0;

/// While a route is drawn, all else steps back.
int alphaIn(QorGraphView::Mode mode)
{
    return mode == QorGraphView::CREATEROUTE_M ? 127 : 255;
}

} // namespace

QPoint QorGraphView::startPoint(const QorGraphEdge* edge)
{
    const QorGraphNodeView* const box = edge->srcNode();
    return toPixel(box->pos() + QPointF(box->size().width(), box->size().height() * 0.5));
}

QPoint QorGraphView::endPoint(const QorGraphEdge* edge)
{
    // Half the height of the source box: boxes are of one height.
    return toPixel(edge->destNode()->pos() + QPointF(0.0, edge->srcNode()->size().height() * 0.5));
}

QPoint QorGraphView::outSlotPos(QorGraphNodeView* view, const QString&)
{
    return toPixel(view->pos() + QPointF(view->size().width(), view->size().height() * 0.5));
}

void QorGraphView::paintEvent(QPaintEvent* event)
{
    if (_nodeViews.isEmpty()) {
        paintEmptyView(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    const QTime before = QTime::currentTime();
    paintBoxes(&painter);
    const int milliseconds = std::max(0, before.msecsTo(QTime::currentTime()));
    paintEdges(&painter);

    if (_mode == RECTSELECT_M) {
        painter.setPen(Qt::white);
        painter.setBrush(Qt::NoBrush);
        painter.drawRects(&_selectRect, 1);
    }
    if (_mode == CREATEROUTE_M)
        paintNewRoute(&painter);
    paintStatus(&painter, milliseconds);
}

/// False for what lies beside the canvas, with what it may reach beyond its place.
bool QorGraphView::isSeen(const QRectF& place, double reach) const
{
    return place.normalized().adjusted(-reach, -reach, reach, reach).intersects(rect());
}

void QorGraphView::paintBoxes(QPainter* painter)
{
    const int alpha = alphaIn(_mode);
    for (int i = _nodeViews.size() - 1; i >= 0; --i) {
        QorGraphNodeView* const view = _nodeViews.at(i);
        view->_alpha = alpha;
        // The arrows of a flat box are higher than itself.
        if (isSeen(view->rect(), penReach + view->inputAreaRect().width()))
            view->paint(painter);
    }
    // What follows is drawn in the font of the topmost box, whether or not that is seen.
    painter->setFont(_nodeViews.constFirst()->font());
}

void QorGraphView::paintEdges(QPainter* painter)
{
    const int alpha = alphaIn(_mode);
    for (QorGraphEdge* const edge : qAsConst(_edges)) {
        const QPoint start = startPoint(edge);
        const QPoint end = endPoint(edge);
        edge->move(start);
        edge->_alpha = alpha;
        // One more each way, as the size of a rectangle has it.
        edge->resize(end.x() - start.x() + 1, end.y() - start.y() + 1);
        if (isSeen(edge->rect(), penReach))
            edge->paint(painter);
    }
}

void QorGraphView::paintNewRoute(QPainter* painter)
{
    const QPoint start = _routeLine.p1();
    if (_routeSource) {
        const Node* const node = _routeSource->node();
        const Field* const field = node ? node->findField(_routeSourceField) : nullptr;
        const QString name = field ? fromRuntime(field->name()) : QString();
        // The rectangle of a text lies about its base line, so that the tag stands above the start.
        const QRect tag = QFontMetrics(font(), this).boundingRect(name).adjusted(-2, -2, 2, 2);
        const QRect tagOnCanvas = tag.translated(start);
        painter->setPen(Qt::NoPen);
        painter->setBrush(Qt::red);
        painter->drawRects(&tagOnCanvas, 1);
        painter->setPen(Qt::white);
        painter->drawText(QRectF(tagOnCanvas.translated(1, 0)), name, QTextOption());
    }
    painter->setPen(QPen(QBrush(Qt::red), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawLines(&_routeLine, 1);
}

void QorGraphView::paintStatus(QPainter* painter, int milliseconds)
{
    const QString text = QStringLiteral("zoom: %5, nodes: %1, fps: %2, mouse: %3, %4 %6")
                             .arg(_nodeViews.size(), 0, 10)
                             .arg(1000.0F / static_cast<float>(milliseconds), 0, 'f', 1)
                             .arg(_mousePos.x(), 0, 'g')
                             .arg(_mousePos.y(), 0, 'g')
                             .arg(_viewMatrix.m11(), 0, 'f', 1)
                             .arg(modeToString(_mode));
    painter->setPen(_nodeColor);
    painter->drawText(QPointF(8.0, height() - 12), text);
}

void QorGraphView::paintEmptyView(QPaintEvent*)
{
    QPainter painter(this);
    painter.eraseRect(rect());
    const QString text = tr("Drop some nodes here!");
    const QRect bounds = QFontMetrics(font()).boundingRect(text);
    painter.setPen(Qt::white);
    painter.drawText(width() / 2 - bounds.width() / 2, height() / 2 - bounds.height() / 2, text);
}

} // namespace Orvane::Qt4
