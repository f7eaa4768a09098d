#pragma once

#include "QorExport.h"
#include <QtWidgets/QItemDelegate>

namespace Orvane::Qt4 {

/// Paints the rows of a `QorScenegraphModel`: a node that stands at several places in italics, a node that
/// does not run not at all. No row is ever edited. Owned by whoever made it.
class QOR_EXPORT QorScenegraphItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    /// Without \a parent the maker owns it.
    explicit QorScenegraphItemDelegate(QObject* parent);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// Null.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
};

} // namespace Orvane::Qt4
