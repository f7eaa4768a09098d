#include "QorGraphNodeView.h"

#include "QorGraphLabel.h"
#include "QorGraphView.h"
#include "QorLog.h"
#include "QorPixels.h"
#include "QorTools.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

namespace Orvane::Qt4 {

QorGraphNodeView::QorGraphNodeView(QorGraphView* view, Orvane::Node* node)
    : QorGraphDrawable(view)
    , _node(node)
    , _label(std::make_unique<QorGraphLabel>())
{
    _size = QSizeF(80, 20);
}

QorGraphNodeView::~QorGraphNodeView() = default;

QorGraphView* QorGraphNodeView::parentWidget() const
{
    return dynamic_cast<QorGraphView*>(parent());
}

const QRectF QorGraphNodeView::inputAreaRect() const
{
    return QRectF(0.0, 0.0, _size.width() * _fieldAreaWidth / 100.0, _size.height());
}

const QRectF QorGraphNodeView::outputAreaRect() const
{
    const double width = _size.width() * _fieldAreaWidth / 100.0;
    return QRectF(_size.width() - width, 0.0, width, _size.height());
}

bool QorGraphNodeView::inputAreaContains(const QPoint& point) const
{
    return inputAreaRect().contains(QPointF(point));
}

bool QorGraphNodeView::outputAreaContains(const QPoint& point) const
{
    return outputAreaRect().contains(QPointF(point));
}

QString QorGraphNodeView::labelText() const
{
    QString text;
    if (!_node)
        return text;
    if (_nodeTypeVisible)
        text = fromRuntime(_node->type()->name) + QLatin1Char('\n');
    return text + fromRuntime(_node->getIDStr());
}

void QorGraphNodeView::paint(QPainter* painter)
{
    QColor base =
        _palette.brush(QPalette::Current, _selected ? QPalette::Highlight : QPalette::Button).color();
    base.setAlpha(_alpha);
    if (_hovered)
        base = base.lighter(130);
    const QColor strip = base.darker(130);
    const QColor arrow = base.lighter(150);

    painter->fillRect(rect(), base);
    painter->fillRect(inputAreaRect().translated(_pos), strip);
    painter->fillRect(outputAreaRect().translated(_pos), strip);

    // Both arrows point to the right: they show the way through the box.
    const auto width = static_cast<float>(inputAreaRect().width());
    const QRectF left(_pos.x() + 1.0, _pos.y() + _size.height() * 0.5 - width / 2, width - 2, width);
    paintArrow(painter, toPixels(left), ArrowRight, arrow);
    paintArrow(painter, toPixels(left.translated(_size.width() - width, 0.0)), ArrowRight, arrow);

    painter->setPen(_palette.brush(QPalette::Current, QPalette::WindowText).color());
    painter->setFont(_font);
    _label->draw(painter, toPixels(rect()), labelText());
}

void QorGraphNodeView::paintArrow(QPainter* painter, const QRect& rect, const ArrowDirection& direction,
                                  const QColor& color)
{
    const qreal left = rect.x();
    const qreal right = rect.x() + rect.width();
    const qreal top = rect.y();
    const qreal bottom = rect.y() + rect.height();
    const qreal middle = rect.height() * 0.5F + rect.y();
    const bool toLeft = direction == ArrowLeft;
    const QPointF corners[] = {
        {toLeft ? left : right, middle}, {toLeft ? right : left, top}, {toLeft ? right : left, bottom}};

    const QPen pen = painter->pen();
    painter->setPen(color);
    painter->setBrush(color);
    painter->drawPolygon(corners, 3, Qt::OddEvenFill);
    painter->setPen(pen);
}

void QorGraphNodeView::mousePressEvent(QMouseEvent* event)
{
    QOR_NOTICE("QorGraphNodeView::mousePressEvent: %s, e->pos()=%d,%d\n",
               _node ? _node->getIDStr().c_str() : "", event->pos().x(), event->pos().y());
    event->accept();
    const QPointer<QorGraphNodeView> living(this);
    if (inputAreaContains(event->pos())) {
        emit inputAreaPressed();
        if (living)
            showFields(InputMenu);
    } else if (outputAreaContains(event->pos())) {
        emit outputAreaPressed();
        if (living)
            showFields(OutputMenu);
    } else {
        QOR_NOTICE("QorGraphNodeView::mousePressEvent: body hit.\n");
        emit pressed();
    }
}

void QorGraphNodeView::mouseMoveEvent(QMouseEvent*)
{
}

void QorGraphNodeView::mouseReleaseEvent(QMouseEvent* event)
{
    if (inputAreaContains(event->pos()))
        emit inputAreaReleased();
    else if (outputAreaContains(event->pos()))
        emit outputAreaReleased();
    else
        emit released();
    event->accept();
}

void QorGraphNodeView::enterEvent(QEvent*)
{
    _hovered = true;
}

void QorGraphNodeView::leaveEvent(QEvent*)
{
    _hovered = false;
}

void QorGraphNodeView::keyPressEvent(QKeyEvent* event)
{
    constexpr int step = 2;
    const auto nudge = [&](int dx, int dy) {
        move(static_cast<int>(_pos.x() + dx), static_cast<int>(_pos.y() + dy));
        event->accept();
    };
    switch (event->key()) {
    case Qt::Key_Left:
        nudge(-step, 0);
        break;
    case Qt::Key_Up:
        nudge(0, -step);
        break;
    case Qt::Key_Right:
        nudge(step, 0);
        break;
    case Qt::Key_Down:
        nudge(0, step);
        break;
    default:
        event->ignore();
    }
}

} // namespace Orvane::Qt4
