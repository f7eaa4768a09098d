#pragma once

#include "QorExport.h"
#include "QorMetaTypes.h"
#include <QtWidgets/QItemDelegate>
#include <memory>

namespace Orvane::Qt4 {

class QorFieldEditor;
class QorFieldItem;
class QorPaintedCell;

/// Decides which cells of the field tree can be edited and with which editor, hands the editors the items of
/// their rows, and paints the rows of delayed multi fields in red: these are not kept up to date. The indexes
/// must be those of a `QorNodeModel`. Owned by whoever made it.
class QOR_EXPORT QorNodeItemDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    /// Without \a parent the maker owns it.
    explicit QorNodeItemDelegate(QObject* parent);
    ~QorNodeItemDelegate() override;

    /// Whether fields that are only initialised may be edited too; false unless set.
    bool isInitOnlyEditorEnabled() const { return _initOnlyEditorEnabled; }
    /// Counts from the next editor on.
    void setInitOnlyEditorEnabled(bool enabled) { _initOnlyEditorEnabled = enabled; }

    /// The editor for a cell; null for a cell that cannot be edited.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Lets the editor write to the field; the model is left alone.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

signals:
    /// The user pressed the button of a node.
    void nodeSelected(Orvane::Node* node);

private:
    bool mayEdit(const Orvane::Field* field) const;
    QorFieldEditor* makeEditor(QWidget* parent, QorFieldItem* item) const;

    bool _initOnlyEditorEnabled = false;
    const std::unique_ptr<QorPaintedCell> _paintedCell;
};

} // namespace Orvane::Qt4
