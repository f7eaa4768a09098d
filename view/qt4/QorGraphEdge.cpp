#include "QorGraphEdge.h"

#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/Route.h>
#include <QtGui/QPainter>

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
    painter->setPen(QPen(QBrush(color), 2.0, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter->drawLine(QLineF(_pos, _pos + QPointF(_size.width(), _size.height())));
}

} // namespace Orvane::Qt4
