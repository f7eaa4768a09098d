// What an image canvas draws, and the strokes of the mouse.

#include "QorImgCanvasView.h"

#include "QorLog.h"
#include <QtGui/QMouseEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <algorithm>
#include <cmath>

namespace Orvane::Qt4 {

namespace {

constexpr unsigned int ControlConstraint = 4;
/// All lines of a denser grid coincide long before.
constexpr int DensestGrid = 16;

const Qt::GlobalColor channelColors[] = {Qt::red, Qt::green, Qt::blue, Qt::lightGray};

QPen linePen(Qt::GlobalColor color, Qt::PenStyle style = Qt::SolidLine)
{
    return {QBrush(color), 1.0, style, Qt::SquareCap, Qt::BevelJoin};
}

/// Buttons before the event and modifiers, as one number.
int stateBefore(const QMouseEvent& event)
{
    return static_cast<int>(event.buttons() ^ event.button()) | static_cast<int>(event.modifiers());
}

float unitRange(float value)
{
    if (!(value < 1.0F))
        value = 1.0F;
    if (!(value > 0.0F))
        value = 0.0F;
    return value;
}

} // namespace

// ---- Drawing

QPoint QorImgCanvasView::pixel(const Point2f& point) const
{
    return {static_cast<int>(static_cast<float>(width() - 1) * point.x),
            static_cast<int>(static_cast<float>(height() - 1) * (1.0F - point.y))};
}

void QorImgCanvasView::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    painter.save();
    painter.setClipRegion(event->region().intersected(contentsRect()));
    drawContents(&painter);
    painter.restore();
    if (!_preview.isNull())
        painter.drawPixmap(0, 0, _preview);
}

void QorImgCanvasView::drawContents(QPainter* painter)
{
    drawGrid(painter, _grid);
    for (int channel = 0; channel < ChannelCount; ++channel) {
        painter->setPen(linePen(channelColors[channel]));
        paint(painter, &curve(channel));
    }
}

void QorImgCanvasView::paint(QPainter* painter, std::vector<Point2f>* curve)
{
    QVector<QLine> lines;
    lines.reserve(static_cast<int>(curve->size()));
    for (std::size_t k = 1; k < curve->size(); ++k)
        lines.append(QLine(pixel((*curve)[k - 1]), pixel((*curve)[k])));
    painter->drawLines(lines);
}

void QorImgCanvasView::drawGrid(QPainter* painter, int size)
{
    const int n = static_cast<int>(std::pow(2.0F, static_cast<float>(std::min(size, DensestGrid))));
    if (n <= 1)
        return;
    for (int i = 1; i < n; ++i) {
        const bool isMiddle = static_cast<float>(i) == static_cast<float>(n) * 0.5F;
        painter->setPen(isMiddle ? linePen(Qt::gray) : linePen(Qt::darkGray, Qt::DotLine));
        painter->drawLine(width() * i / n, 0, width() * i / n, height() - 1);
        painter->drawLine(0, height() * i / n, width() - 1, height() * i / n);
    }
}

void QorImgCanvasView::resizeEvent(QResizeEvent* event)
{
    const float w = static_cast<float>(event->size().width() - 1);
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const std::vector<Point2f> old = curve(channel);
        if (old.size() <= 2 || w < 1.0F)
            continue;
        std::vector<Point2f> snapped;
        for (std::size_t k = 0; k < old.size(); ++k) {
            const float x = static_cast<float>(static_cast<int>(w * old[k].x)) / w;
            // Measured against where the point before was, not where it is now.
            if (k > 0 && !(std::fabs(x - old[k - 1].x) > 1e-6))
                continue;
            snapped.push_back({x, old[k].y});
        }
        replaceCurve(channel, std::move(snapped));
    }
    refresh();
}

// ---- Strokes

void QorImgCanvasView::mousePressEvent(QMouseEvent* event)
{
    _pressed = true;
    _lastX = event->x();
    _lastY = event->y();
    for (int channel = 0; channel < ChannelCount; ++channel)
        forgetStroke(channel);
    _addMode = event->button() == Qt::LeftButton;

    // Only a modifier that is held alone counts.
    const int state = stateBefore(*event);
    if (state == Qt::ShiftModifier || state == Qt::AltModifier)
        _constraint |= static_cast<unsigned int>(state);
    else if (state == Qt::ControlModifier)
        _constraint |= ControlConstraint;

    mouseMoveEvent(event);
    if (_channels != 0)
        updateTable();
}

int QorImgCanvasView::constrainedY(const QMouseEvent& event) const
{
    if (_constraint & static_cast<unsigned int>(Qt::ShiftModifier))
        return _lastY;
    if (_constraint & static_cast<unsigned int>(Qt::AltModifier))
        return std::max(_lastY, event.y());
    if (_constraint & ControlConstraint)
        return _lastX > event.x() ? std::max(_lastY, event.y()) : std::min(_lastY, event.y());
    return event.y();
}

void QorImgCanvasView::mouseMoveEvent(QMouseEvent* event)
{
    if (!_pressed)
        return;
    _lastY = constrainedY(*event);
    _lastX = event->x();
    const float x = unitRange(static_cast<float>(event->x()) / static_cast<float>(width() - 1));
    const float y = unitRange(static_cast<float>(height() - _lastY - 1) / static_cast<float>(height() - 1));

    QPainter painter;
    if (!_addMode && !size().isEmpty()) {
        if (_preview.isNull()) {
            _preview = QPixmap(size() * devicePixelRatioF());
            _preview.setDevicePixelRatio(devicePixelRatioF());
            _preview.fill(Qt::transparent);
        }
        painter.begin(&_preview);
    }
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (!(_channels & (1U << channel)))
            continue;
        if (painter.isActive())
            painter.setPen(linePen(channelColors[channel]));
        drag(&painter, &curve(channel), x, y, channel);
    }
    if (painter.isActive()) {
        painter.end();
        update();
    }

    if (_channels == 0)
        return;
    updateTable();
    QOR_INFO("(%.6f, %.6f)\n", static_cast<double>(x), static_cast<double>(y));
    if (_addMode)
        refresh();
}

void QorImgCanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!_addMode) {
        _addMode = true;
        if (event->button() == Qt::RightButton)
            mouseMoveEvent(event);
    }
    _pressed = false;
    _lastX = event->x();
    _lastY = event->y();
    _constraint = 0;
    for (int channel = 0; channel < ChannelCount; ++channel)
        forgetStroke(channel);
    refresh();
    if (_channels != 0)
        updateTable();
}

int QorImgCanvasView::findPoint(std::vector<Point2f>* curve, float x)
{
    if (curve->empty())
        return -1;
    return findPoint(curve, x, 0, static_cast<int>(curve->size()) - 1);
}

int QorImgCanvasView::findPoint(std::vector<Point2f>* curve, float x, int lo, int hi)
{
    const float tolerance = std::fabs(x * 2e-6F);
    while (lo <= hi) {
        const int middle = (lo + hi) >> 1;
        const float distance = x - (*curve)[static_cast<std::size_t>(middle)].x;
        if (-tolerance > distance)
            hi = middle - 1;
        else if (distance > tolerance)
            lo = middle + 1;
        else
            return middle;
    }
    return -2 - hi;
}

int QorImgCanvasView::insertPoint(std::vector<Point2f>* curve, Point2f point, float& oldY)
{
    int index = findPoint(curve, point.x);
    if (index >= 0) {
        float& y = (*curve)[static_cast<std::size_t>(index)].y;
        oldY = y;
        y = point.y;
        return index;
    }
    oldY = -1.0F;
    index = -1 - index;
    curve->insert(curve->begin() + index, point);
    return index;
}

void QorImgCanvasView::drag(QPainter* painter, std::vector<Point2f>* curve, float x, float y, int channel)
{
    float oldY = -1.0F;
    int i = findPoint(curve, x);
    const bool isPoint = i >= 0;
    if (isPoint)
        oldY = (*curve)[static_cast<std::size_t>(i)].y;
    else
        i = -1 - i;

    if (!_addMode) {
        const QPoint point(static_cast<int>(static_cast<float>(width() - 1) * x),
                           static_cast<int>(static_cast<float>(height() - 1) * (1.0F - y)));
        drawPreview(painter, curve, point, channel, i, oldY);
        return;
    }

    // What the stroke has passed over since its last point goes.
    const int last = _lastIndex[channel];
    if (last >= 0 && i != last) {
        int from = last + 1;
        int to = i;
        if (i < last) {
            from = isPoint ? i + 1 : i;
            to = last;
        }
        if (from < to)
            curve->erase(curve->begin() + from, curve->begin() + to);
    }
    _lastIndex[channel] = insertPoint(curve, {x, y}, oldY);
}

void QorImgCanvasView::drawPreview(QPainter* painter, std::vector<Point2f>* curve, QPoint point, int channel,
                                   int index, float oldY)
{
    const int count = static_cast<int>(curve->size());
    if (count < 2 || index >= count || !painter->isActive())
        return;
    const auto at = [&](int i) { return pixel((*curve)[static_cast<std::size_t>(i)]); };
    const int previous = index != 0 ? 1 : 0;
    const int next = index == count - 1 || oldY < 0.0F ? 0 : 1;

    int& shown = _previewIndex[channel];
    const bool isFirst = shown < 0;
    const bool hasMoved = shown >= 0 && shown != index;
    if (hasMoved) {
        painter->drawLine(at(shown - (shown >= 1 ? 1 : 0)), at(shown));
        // Asks with a number of pixels, which lies behind every point but at the left edge. Kept: previews
        // look as they always did.
        if (findPoint(curve, static_cast<float>(_previewX[channel])) >= 0)
            painter->drawLine(at(shown), at(shown == count - 1 ? shown : shown + 1));
    }
    if (hasMoved || isFirst) {
        painter->drawLine(at(index - previous), at(index));
        if (oldY >= 0.0F)
            painter->drawLine(at(index), at(index + next));
    }
    if (shown >= 0) {
        const QPoint old(_previewX[channel], _previewY[channel]);
        QPoint end = at(1);
        if (shown > 0) {
            end = at(shown);
            --shown;
        }
        painter->drawLine(at(shown), old);
        painter->drawLine(old, end);
    }
    painter->drawLine(at(index - previous), point);
    painter->drawLine(point, at(index == 0 ? 1 : index));

    shown = index;
    _previewX[channel] = point.x();
    _previewY[channel] = point.y();
}

} // namespace Orvane::Qt4
