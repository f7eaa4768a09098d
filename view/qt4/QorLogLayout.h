#pragma once

#include "QorExport.h"
#include <QtCore/QVector>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QFont>
#include <array>

namespace Orvane::Qt4 {

/// Lays out the lines of a log: one below the other, none of them wrapped, all in the font of the document.
/// How far a line of common letters reaches is summed up from a table; the line itself is laid out when
/// somebody looks at it, so that a document may grow by many lines at once. The document owns it.
class QOR_EXPORT QorLogLayout : public QAbstractTextDocumentLayout
{
public:
    /// For \a document, which is to be given it and then owns it.
    explicit QorLogLayout(QTextDocument* document);

    void draw(QPainter* painter, const PaintContext& context) override;
    int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
    int pageCount() const override;
    QSizeF documentSize() const override;
    QRectF frameBoundingRect(QTextFrame* frame) const override;
    /// Lays out the lines of the block, too, for one who goes on to ask for them.
    QRectF blockBoundingRect(const QTextBlock& block) const override;

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override;

private:
    /// What a block takes up, in pixels without the margin of the document.
    struct Row
    {
        qreal bottom; ///< which is the top of the next one
        qreal width;
    };

    qreal top(int row) const { return row > 0 ? _rows.at(row - 1).bottom : 0.0; }
    /// The row at a height, the first or last one beyond them.
    int rowAt(qreal y) const;
    QSizeF measure(const QTextBlock& block) const;
    /// Makes lines, and answers what they take up.
    QSizeF layOut(QTextLayout& layout) const;
    /// The lines of a block, which are made when they are asked for.
    QTextLayout& linesOf(const QTextBlock& block) const;
    void readFont();

    QVector<Row> _rows; ///< by the number of their block
    qreal _width = 0.0; ///< of the widest row
    QFont _font;        ///< that the following are of
    qreal _lineHeight = 0.0;
    std::array<qreal, 128> _advances{}; ///< by character; 0 for one whose line must be laid out to be known
};

} // namespace Orvane::Qt4
