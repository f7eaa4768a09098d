#include "QorLogLayout.h"

#include <QtCore/QtMath>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtGui/QTextLayout>
#include <algorithm>

namespace Orvane::Qt4 {

namespace {

/// More than any line takes.
constexpr qreal NoLimit = 1 << 24;

/// Makes the lines of a text, below each other, and answers what they take up.
QSizeF makeLines(QTextLayout& layout)
{
    QSizeF size(0.0, 0.0);
    qreal y = 0.0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(NoLimit);
        line.setPosition(QPointF(0.0, y));
        size = QSizeF(std::max(size.width(), line.naturalTextWidth()), y + line.height());
        // Lines of one block stand closer where the leading of the font is negative.
        y += qCeil(line.ascent() + line.descent() + line.leading());
    }
    layout.endLayout();
    return size;
}

/// The part of a selection that lies in a block.
QTextLayout::FormatRange rangeIn(const QTextBlock& block,
                                 const QAbstractTextDocumentLayout::Selection& selection)
{
    const int start = std::max(selection.cursor.selectionStart() - block.position(), 0);
    const int end = std::min(selection.cursor.selectionEnd() - block.position(), block.length());
    return {start, end - start, selection.format};
}

} // namespace

QorLogLayout::QorLogLayout(QTextDocument* document)
    : QAbstractTextDocumentLayout(document)
{
    // Read by the text edit, which has the document laid out at each of its own sizes otherwise.
    setProperty("contentHasAlignment", false);
}

int QorLogLayout::rowAt(qreal y) const
{
    const auto below = [](qreal height, const Row& row) { return height < row.bottom; };
    const auto found = std::upper_bound(_rows.begin(), _rows.end(), y, below);
    return std::min(static_cast<int>(found - _rows.begin()), _rows.size() - 1);
}

void QorLogLayout::readFont()
{
    _font = document()->defaultFont();
    const QFont font = paintDevice() ? QFont(_font, paintDevice()) : _font;
    QTextLayout sample(QStringLiteral("x"), font, paintDevice());
    _lineHeight = makeLines(sample).height();

    _advances.fill(0.0);
    if (!(_font.styleStrategy() & QFont::PreferNoShaping))
        return; // letters stand at other distances in pairs
    const QFontMetricsF metrics(font, paintDevice());
    for (char letter = ' '; letter <= '~'; ++letter)
        _advances[static_cast<std::size_t>(letter)] = metrics.horizontalAdvance(QLatin1Char(letter));
}

QSizeF QorLogLayout::measure(const QTextBlock& block) const
{
    qreal width = 0.0;
    const QString text = block.text();
    for (const QChar letter : text) {
        const qreal advance = letter.unicode() < _advances.size() ? _advances[letter.unicode()] : 0.0;
        if (advance <= 0.0)
            return layOut(*block.layout());
        width += advance;
    }
    return QSizeF(width, _lineHeight);
}

QSizeF QorLogLayout::layOut(QTextLayout& layout) const
{
    QTextOption option = document()->defaultTextOption();
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    return makeLines(layout);
}

QTextLayout& QorLogLayout::linesOf(const QTextBlock& block) const
{
    QTextLayout& layout = *block.layout();
    if (layout.lineCount() == 0)
        layOut(layout);
    return layout;
}

void QorLogLayout::documentChanged(int from, int, int charsAdded)
{
    if (_rows.isEmpty() || document()->defaultFont() != _font)
        readFont();

    const int lastPosition = document()->characterCount() - 1;
    QTextBlock block = document()->findBlock(std::min(from, lastPosition));
    const int first = block.blockNumber();
    const int count =
        document()->findBlock(std::min(from + charsAdded, lastPosition)).blockNumber() - first + 1;
    const int replaced = count - (document()->blockCount() - _rows.size());

    const auto isWidest = [this](const Row& row) { return row.width >= _width; };
    const auto old = _rows.begin() + first;
    const bool losesWidest = std::any_of(old, old + replaced, isWidest);
    const qreal oldBottom = top(first + replaced);
    _rows.erase(old, old + replaced);
    _rows.insert(first, count, Row());

    qreal bottom = top(first);
    for (int row = first; row < first + count; ++row, block = block.next()) {
        block.clearLayout();
        const QSizeF size = measure(block);
        bottom += size.height();
        _rows[row] = Row{bottom, size.width()};
        _width = std::max(_width, size.width());
    }
    if (bottom != oldBottom) {
        for (int row = first + count; row < _rows.size(); ++row)
            _rows[row].bottom += bottom - oldBottom;
    }
    if (losesWidest) {
        const auto isNarrower = [](const Row& a, const Row& b) { return a.width < b.width; };
        _width = std::max_element(_rows.cbegin(), _rows.cend(), isNarrower)->width;
    }

    emit documentSizeChanged(documentSize());
    const qreal y = document()->documentMargin() + top(first);
    emit update(QRectF(0.0, y, NoLimit, bottom == oldBottom ? bottom - top(first) : NoLimit));
}

void QorLogLayout::draw(QPainter* painter, const PaintContext& context)
{
    const qreal margin = document()->documentMargin();
    const QRectF clip = context.clip.isValid() ? context.clip : QRectF(QPointF(), documentSize());
    painter->setPen(context.palette.color(QPalette::Text));
    int row = rowAt(clip.top() - margin);
    for (QTextBlock block = document()->findBlockByNumber(row); block.isValid(); block = block.next(), ++row)
    {
        const QPointF place(margin, margin + top(row));
        if (place.y() > clip.bottom())
            return;
        QTextLayout& lines = linesOf(block);
        QVector<QTextLayout::FormatRange> ranges;
        for (const Selection& selection : context.selections) {
            const QTextLayout::FormatRange range = rangeIn(block, selection);
            if (range.length > 0)
                ranges.append(range);
        }
        lines.draw(painter, place, ranges, clip);
        if (block.contains(context.cursorPosition))
            lines.drawCursor(painter, place, context.cursorPosition - block.position());
    }
}

int QorLogLayout::hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const
{
    const QTextBlock block = document()->findBlockByNumber(rowAt(point.y() - document()->documentMargin()));
    const QRectF area = blockBoundingRect(block);
    const QPointF inside = point - area.topLeft();
    const QTextLayout& layout = linesOf(block);
    int number = 0;
    while (number + 1 < layout.lineCount() && layout.lineAt(number).rect().bottom() <= inside.y())
        ++number;
    const QTextLine line = layout.lineAt(number);
    if (accuracy == Qt::ExactHit) {
        const bool isHit = line.naturalTextRect().contains(inside);
        return isHit ? block.position() + line.xToCursor(inside.x(), QTextLine::CursorOnCharacter) : -1;
    }
    if (inside.y() < 0.0)
        return block.position();
    if (inside.y() > area.height())
        return block.position() + block.length() - 1;
    return block.position() + line.xToCursor(inside.x());
}

int QorLogLayout::pageCount() const
{
    return 1;
}

QSizeF QorLogLayout::documentSize() const
{
    const qreal margins = 2.0 * document()->documentMargin();
    return QSizeF(_width + margins, top(_rows.size()) + margins);
}

QRectF QorLogLayout::frameBoundingRect(QTextFrame*) const
{
    return QRectF(QPointF(0.0, 0.0), documentSize());
}

QRectF QorLogLayout::blockBoundingRect(const QTextBlock& block) const
{
    if (!block.isValid() || block.blockNumber() >= _rows.size())
        return QRectF();
    linesOf(block);
    const int row = block.blockNumber();
    const qreal margin = document()->documentMargin();
    return QRectF(margin, margin + top(row), _rows.at(row).width, _rows.at(row).bottom - top(row));
}

} // namespace Orvane::Qt4
