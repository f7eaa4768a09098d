#include "QorGraphLabel.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPaintDevice>
#include <QtGui/QPainter>
#include <QtGui/QTextOption>
#include <algorithm>
#include <cmath>

namespace Orvane::Qt4 {

void QorGraphLabel::layOut(const QPainter& painter, const QString& text)
{
    _text = text;
    _font = painter.font();
    _resolution = painter.device()->logicalDpiY();

    QTextOption option;
    option.setTextDirection(painter.layoutDirection());
    option.setWrapMode(QTextOption::NoWrap);
    QString shown = text;
    shown.replace(QLatin1Char('\n'), QChar(QChar::LineSeparator));
    shown.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
    _layout.setText(shown);
    _layout.setFont(_font);
    _layout.setTextOption(option);
    _layout.setCacheEnabled(true);

    // As a painter stacks lines: with the font's leading, each on a whole pixel.
    const qreal leading = QFontMetricsF(_font).leading();
    qreal height = -leading;
    _layout.beginLayout();
    for (QTextLine line = _layout.createLine(); line.isValid(); line = _layout.createLine()) {
        constexpr qreal noEnd = 0x01000000;
        line.setLineWidth(noEnd);
        height = std::ceil(height + leading);
        line.setPosition(QPointF(0.0, height));
        height += line.height();
    }
    _layout.endLayout();
}

void QorGraphLabel::draw(QPainter* painter, const QRect& rect, const QString& text)
{
    if (text.isEmpty())
        return;
    if (text != _text || painter->font() != _font || painter->device()->logicalDpiY() != _resolution)
        layOut(*painter, text);

    // A line that fills the room is the last one.
    const QRectF room(rect);
    QSizeF size;
    int lineCount = 0;
    while (lineCount < _layout.lineCount() && size.height() < room.height()) {
        const QTextLine line = _layout.lineAt(lineCount++);
        size = QSizeF(std::max(size.width(), line.naturalTextWidth()), line.y() + line.height());
    }
    const qreal top = room.y() + (room.height() - size.height()) / 2.0;
    const qreal left = room.x() + (room.width() - size.width()) / 2.0;
    const bool isCut = !room.contains(QRectF(QPointF(left, top), size));
    if (isCut) {
        painter->save();
        painter->setClipRect(room, Qt::IntersectClip);
    }
    for (int i = 0; i < lineCount; ++i) {
        const QTextLine line = _layout.lineAt(i);
        line.draw(painter, QPointF(room.x() + (room.width() - line.horizontalAdvance()) / 2.0, top));
    }
    if (isCut)
        painter->restore();
}

} // namespace Orvane::Qt4
