#pragma once

#include <QtGui/QFont>
#include <QtGui/QTextLayout>

class QPainter;

namespace Orvane::Qt4 {

/// The text in the middle of a box, laid out once: most of what painting a box anew would cost. It draws the
/// very pixels of `QPainter::drawText` with `Qt::AlignCenter`.
class QorGraphLabel
{
public:
    /// Draws \a text in the painter's font and pen; what leaves \a rect is cut off.
    void draw(QPainter* painter, const QRect& rect, const QString& text);

private:
    void layOut(const QPainter& painter, const QString& text);

    QTextLayout _layout;
    QString _text;
    QFont _font;
    int _resolution = 0;
};

} // namespace Orvane::Qt4
