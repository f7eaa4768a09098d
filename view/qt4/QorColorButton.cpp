#include "QorColorButton.h"

#include <QtGui/QPainter>

namespace Orvane::Qt4 {

QorColorButton::QorColorButton(QWidget* parent)
    : QAbstractButton(parent)
{
}

QorColorButton::~QorColorButton() = default;

const QColor& QorColorButton::color() const
{
    return palette().brush(QPalette::Current, QPalette::Button).color();
}

void QorColorButton::setColor(const QColor& color)
{
    QPalette changed = palette();
    changed.setBrush(QPalette::All, QPalette::Button, color);
    setPalette(changed);
}

void QorColorButton::setFlat(bool)
{
}

QSize QorColorButton::sizeHint() const
{
    const int height = fontMetrics().height();
    return {2 * height, height + 4};
}

void QorColorButton::paintEvent(QPaintEvent*)
{
    // A disabled button keeps a frame in its own colour, so that one can still tell which it has.
    const QPalette::ColorRole fill = isEnabled() ? QPalette::Button : QPalette::Window;
    QPainter painter(this);
    painter.setPen(color());
    painter.setBrush(palette().brush(QPalette::Current, fill).color());
    painter.drawRect(rect());
}

} // namespace Orvane::Qt4
