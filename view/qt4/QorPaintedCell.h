#pragma once

#include "QorExport.h"
#include <QtCore/QAbstractTableModel>

namespace Orvane::Qt4 {

/// Stands in for a cell while a delegate paints it. `QItemDelegate` asks twice for the text and lays out all
/// of it; here it is read once and cut to what can show, so that a text of a megabyte costs no more to paint
/// than a short one. One serves a delegate for all cells, one after the other.
class QOR_EXPORT QorPaintedCell : public QAbstractTableModel
{
public:
    /// An index to paint in the place of \a cell, good until the next call. The text is cut to an area of
    /// \a size pixels, with lines \a lineHeight high.
    QModelIndex standIn(const QModelIndex& cell, const QSize& size, int lineHeight);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    QModelIndex _cell;
    QVariant _text;
};

} // namespace Orvane::Qt4
