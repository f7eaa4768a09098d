#include "QorGraphDrawable.h"

#include "QorGraphView.h"

namespace Orvane::Qt4 {

QorGraphDrawable::QorGraphDrawable(QorGraphView* graphView)
    : QObject(graphView)
    , _graphView(graphView)
{
    setObjectName(QStringLiteral("QorGraphDrawable"));
}

QorGraphDrawable::~QorGraphDrawable() = default;

void QorGraphDrawable::toggleSelection()
{
    _selected = !_selected;
}

void QorGraphDrawable::deselect()
{
    _selected = false;
}

void QorGraphDrawable::select()
{
    _selected = true;
}

void QorGraphDrawable::mousePressEvent(QMouseEvent*)
{
}

void QorGraphDrawable::mouseMoveEvent(QMouseEvent*)
{
}

void QorGraphDrawable::mouseReleaseEvent(QMouseEvent*)
{
}

void QorGraphDrawable::enterEvent(QEvent*)
{
}

void QorGraphDrawable::leaveEvent(QEvent*)
{
}

} // namespace Orvane::Qt4
