#include "QorGraphEdge.h"

#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include "QorPixels.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/Route.h>
#include <QtGui/QPainter>
#include <algorithm>

namespace Orvane::Qt4 {

QorGraphEdge::QorGraphEdge(QorGraphView* view, QorGraphNodeView* src, QorGraphNodeView* dest,
                           unsigned int outSlotId, unsigned int inSlotId)
    : QorGraphDrawable(view)
    , _srcNode(src)
    , _destNode(dest)
    , _outSlotId(outSlotId)
    , _inSlotId(inSlotId)
{
}

QorGraphEdge::~QorGraphEdge() = default;

bool QorGraphEdge::isViewForRoute(Orvane::Route* route) const
{
    if (!route || !route->outSlot() || !route->inSlot() || !_srcNode || !_destNode)
        return false;
    const Node* const source = route->outSlot()->field()->node();
    const Node* const destination = route->inSlot()->field()->node();
    const Node* const shownSource = _srcNode->node();
    const Node* const shownDestination = _destNode->node();
    if (!source || !destination || !shownSource || !shownDestination)
        return false;
    const int outId = source->findEventOutSlotID(route->outSlot()->name());
    const int inId = destination->findEventInSlotID(route->inSlot()->name());
    return shownSource->ID() == source->ID() && shownDestination->ID() == destination->ID() &&
           _inSlotId == static_cast<unsigned int>(inId) && _outSlotId == static_cast<unsigned int>(outId);
}

void QorGraphEdge::paint(QPainter* painter)
{
    QColor color =
        _palette.brush(QPalette::Current, _selected ? QPalette::Highlight : QPalette::Button).color();
    color.setAlpha(_alpha);
    const QRect pixels = wholePixels();
    if (!pixels.isEmpty() && painter->testRenderHint(QPainter::Antialiasing) &&
        painter->transform().isIdentity()) {
        painter->fillRect(pixels, color);
        return;
    }
    painter->setPen(QPen(QBrush(color), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter->drawLine(QLineF(_pos, _pos + QPointF(_size.width(), _size.height())));
}

// A line along an axis covers whole pixels with its width and its caps. Most lines of a graph in order are
// such, and a rectangle costs a small part of a line.
QRect QorGraphEdge::wholePixels() const
{
    const QPointF exactEnd = _pos + QPointF(_size.width(), _size.height());
    const QPoint start = toPixel(_pos);
    const QPoint end = toPixel(exactEnd);
    const bool isAlongAxis = (start.x() == end.x()) != (start.y() == end.y());
    if (!isAlongAxis || QPointF(start) != _pos || QPointF(end) != exactEnd)
        return {};
    const QPoint first(std::min(start.x(), end.x()), std::min(start.y(), end.y()));
    const QPoint last(std::max(start.x(), end.x()), std::max(start.y(), end.y()));
    return QRect(first - QPoint(1, 1), last);
}

} // namespace Orvane::Qt4
