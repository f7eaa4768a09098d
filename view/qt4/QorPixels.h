#pragma once

#include <QtCore/QRectF>

namespace Orvane::Qt4 {

/// Number of pixels beyond which places are taken as just that far: differences of such places fit an int.
constexpr double farthestPixel = 1 << 29;

/// The nearest pixel, also for places that no int can hold.
inline QPoint toPixel(const QPointF& place)
{
    const auto bounded = [](double value) { return qBound(-farthestPixel, value, farthestPixel); };
    return QPointF(bounded(place.x()), bounded(place.y())).toPoint();
}

/// As `QRectF::toRect`, also for corners that no int can hold.
inline QRect toPixels(const QRectF& rect)
{
    const QRectF all(-farthestPixel, -farthestPixel, 2.0 * farthestPixel, 2.0 * farthestPixel);
    if (all.contains(rect))
        return rect.toRect();
    return QRect(toPixel(rect.topLeft()), toPixel(rect.bottomRight()) - QPoint(1, 1));
}

} // namespace Orvane::Qt4
