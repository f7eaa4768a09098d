#pragma once

#include "QorExport.h"
#include <QtCore/QAbstractItemModel>
#include <QtCore/QHash>
#include <memory>

namespace Orvane {
class Field;
class Node;
} // namespace Orvane

namespace Orvane::Qt4 {

class QorFieldItem;

/// The fields of one node as a tree: a row per public field, below a field of many values a row per value.
/// The internal pointer of an index is the `QorFieldItem` of its row, and only that tells rows apart. The
/// model watches nothing: whoever made it deletes it before the node dies, and views read afresh when they
/// paint.
class QOR_EXPORT QorNodeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    /// The columns.
    enum FieldColumn : int {
        FieldName = 0,
        FieldValue = 1,
        DataType = 2,
        FieldType = 3,
        ID = 4,
        ValueRestriction = 5,
        ValueType = 6,
        DefaultValue = 7,
        AutoProcess = 8,
        Extension = 9
    };

    /// \a node is borrowed; null gives no rows.
    QorNodeModel(Orvane::Node* node, QObject* parent);
    /// A model without rows until `setNode`.
    explicit QorNodeModel(QObject* parent);
    ~QorNodeModel() override;

    using QObject::parent;

    /// Builds the rows anew for \a node. Indexes into the old rows are void and views are not told, so that
    /// this is for models that no view shows. `node()` stays what it was.
    void setNode(Orvane::Node* node);
    /// The node that the constructor was given.
    Orvane::Node* node() const { return _node; }

    /// The header text of a column, "Unknown" for a number that is none.
    static QString fieldColumnName(const FieldColumn& column);

    QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
    /// The value cell of a field; invalid when the field has no row.
    QModelIndex index(Orvane::Field* field) const;
    /// The row of the field for a row of a value, always with row number 0.
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;

    /// Texts and tool tips.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// Hands a text to the field of the row, as of now; whether it could be read is not told. False, with a
    /// log line, without text or row. Emits nothing.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// Every cell counts as editable: the delegate decides.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// True for the row of a field whose list of values the model can change, and for the rows of its values.
    bool canInsertRows(const QModelIndex& index) const;
    bool canRemoveRows(const QModelIndex& index) const;
    /// Puts \a count new values in front of the value at \a row; \a parent is the row of the field. A row
    /// beyond the end adds nothing. False for an invalid index and for a field of one value, with a log line;
    /// true, with a log line, for any other row that is not the field's own.
    bool insertRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    /// Removes the one value at \a row; \a parent is the row of the field, and \a count goes to views only.
    /// False when there is no such value.
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;

    /// Brings what views hold of rows of values (selection, current row, open editors) back to the rows of
    /// today; for whoever has had them built anew.
    void renewIndexes();

private:
    void setupModelData(Orvane::Node* node, QorFieldItem* parent);
    QorFieldItem* itemOf(const QModelIndex& index) const;

    Orvane::Node* _node = nullptr;
    std::unique_ptr<QorFieldItem> _rootItem;
    QHash<const Orvane::Field*, int> _rows; ///< the row of each field that has one
};

} // namespace Orvane::Qt4
