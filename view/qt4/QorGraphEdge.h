#pragma once

#include "QorGraphDrawable.h"

namespace Orvane {
class Route;
}

namespace Orvane::Qt4 {

class QorGraphNodeView;

/// The straight line that stands for a route between two boxes of a graph canvas. It holds no route: boxes
/// and slot numbers say which one is meant, so that it also stands for a route made again between the same
/// slots. Place and size are valid only while the canvas paints; the size is an offset and may be negative.
class QOR_EXPORT QorGraphEdge : public QorGraphDrawable
{
    Q_OBJECT

public:
    /// The boxes are borrowed; \a outSlotId and \a inSlotId number the events of their nodes.
    QorGraphEdge(QorGraphView* view, QorGraphNodeView* src, QorGraphNodeView* dest, unsigned int outSlotId,
                 unsigned int inSlotId);
    ~QorGraphEdge() override;

    /// The boxes at both ends, and the numbers of the events there.
    QorGraphNodeView* srcNode() { return _srcNode; }
    const QorGraphNodeView* srcNode() const { return _srcNode; }
    QorGraphNodeView* destNode() { return _destNode; }
    const QorGraphNodeView* destNode() const { return _destNode; }
    unsigned int outSlotId() const { return _outSlotId; }
    unsigned int inSlotId() const { return _inSlotId; }

    /// True when \a route joins the same slots of the same nodes; false for null.
    bool isViewForRoute(Orvane::Route* route) const;

protected:
    friend class QorGraphView;

    void paint(QPainter* painter) override;

private:
    /// What a line along an axis covers; empty for any other.
    QRect wholePixels() const;

    QorGraphNodeView* _srcNode;
    QorGraphNodeView* _destNode;
    unsigned int _outSlotId;
    unsigned int _inSlotId;
    /// Stands in the canvas's list of today.
    bool _listed = false;
};

} // namespace Orvane::Qt4
