#include "QorPaintedCell.h"

#include <QtCore/QSize>

namespace Orvane::Qt4 {

namespace {

/// What an area can show of a text: as many lines as fit, and of each no more characters than pixels.
QString visiblePart(const QString& text, const QSize& size, int lineHeight)
{
    const int width = qMax(size.width(), 0);
    if (text.size() <= width)
        return text;
    QString part;
    int start = 0;
    for (int lines = size.height() / qMax(lineHeight, 1) + 1; lines > 0 && start < text.size(); --lines) {
        const int lineEnd = text.indexOf(QLatin1Char('\n'), start);
        const int end = lineEnd < 0 ? text.size() : lineEnd;
        part += text.midRef(start, qMin(end - start, width));
        if (end - start > width)
            part += QChar(0x2026);
        if (lineEnd >= 0)
            part += QLatin1Char('\n');
        start = end + 1;
    }
    return part;
}

} // namespace

QModelIndex QorPaintedCell::standIn(const QModelIndex& cell, const QSize& size, int lineHeight)
{
    _cell = cell;
    _text = cell.data(Qt::DisplayRole);
    if (_text.type() == QVariant::String)
        _text = visiblePart(_text.toString(), size, lineHeight);
    return createIndex(0, 0);
}

int QorPaintedCell::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

int QorPaintedCell::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant QorPaintedCell::data(const QModelIndex&, int role) const
{
    return role == Qt::DisplayRole ? _text : _cell.data(role);
}

} // namespace Orvane::Qt4
