#include "QorNodeModel.h"

#include "QorLog.h"
#include "QorMFieldEdit.h"
#include "QorMFieldItem.h"
#include "QorSFieldItem.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <QtCore/QCoreApplication>
#include <QtCore/QSet>
#include <QtCore/QTime>

namespace Orvane::Qt4 {

namespace {

const int ColumnCount = 10;
const int MultiField = 1;

/// Translates in the context of the class alone: that of its own `tr` has the namespaces in front.
struct Header
{
    Q_DECLARE_TR_FUNCTIONS(QorNodeModel)
};

/// The last of \a count rows from \a row on; wraps round instead of overflowing.
int lastRow(int row, int count)
{
    return static_cast<int>(static_cast<unsigned int>(row) + static_cast<unsigned int>(count) - 1U);
}

void warnOfFieldType(const Orvane::Field& field)
{
    QOR_WARNING("QorNodeModel::insertRows: inserting rows not supported for field type %s.\n",
                field.fieldTypeName().c_str());
}

} // namespace

QorNodeModel::QorNodeModel(Orvane::Node* node, QObject* parent)
    : QAbstractItemModel(parent)
    , _node(node)
{
    setNode(node);
}

QorNodeModel::QorNodeModel(QObject* parent)
    : QAbstractItemModel(parent)
{
}

QorNodeModel::~QorNodeModel() = default;

void QorNodeModel::setNode(Orvane::Node* node)
{
    _rows.clear();
    _rootItem = std::make_unique<QorFieldItem>(nullptr, nullptr);
    setupModelData(node, _rootItem.get());
}

QString QorNodeModel::fieldColumnName(const FieldColumn& column)
{
    switch (column) {
    case FieldName:
        return Header::tr("Fieldname");
    case FieldValue:
        return Header::tr("Fieldvalue");
    case DataType:
        return Header::tr("Datatype");
    case FieldType:
        return Header::tr("Fieldtype");
    case ID:
        return Header::tr("ID");
    case ValueRestriction:
        return Header::tr("Value restriction");
    case ValueType:
        return Header::tr("Valuetype");
    case DefaultValue:
        return Header::tr("Default value");
    case AutoProcess:
        return Header::tr("Auto process");
    case Extension:
        return Header::tr("Extension");
    }
    return Header::tr("Unknown");
}

QModelIndex QorNodeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (parent.isValid() && (row >= rowCount(parent) || column >= columnCount(parent))) {
        QOR_FATAL("QorNodeModel::index: row=%d, column=%d out of bounds.\n", row, column);
        return QModelIndex();
    }
    QorFieldItem* item = itemOf(parent);
    QorFieldItem* child = item ? item->child(row) : nullptr;
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex QorNodeModel::index(Orvane::Field* field) const
{
    // Asked once for each event of an observed node, so that no row is looked through.
    const auto row = _rows.constFind(field);
    return row == _rows.constEnd() ? QModelIndex() : index(*row, FieldValue);
}

QModelIndex QorNodeModel::parent(const QModelIndex& index) const
{
    if (!index.isValid())
        return QModelIndex();
    QorFieldItem* parentItem = itemOf(index)->parent();
    if (parentItem == _rootItem.get())
        return QModelIndex();
    return createIndex(parentItem->row(), FieldName, parentItem);
}

int QorNodeModel::rowCount(const QModelIndex& parent) const
{
    const QorFieldItem* item = itemOf(parent);
    return item ? item->childCount() : 0;
}

int QorNodeModel::columnCount(const QModelIndex& parent) const
{
    const QorFieldItem* item = itemOf(parent);
    return item ? item->columnCount() : ColumnCount;
}

QVariant QorNodeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return QVariant();
    return itemOf(index)->data(index.column(), role);
}

bool QorNodeModel::setData(const QModelIndex& index, const QVariant& value, int)
{
    const QString text = value.toString();
    if (text.isNull()) {
        QOR_FATAL("QorNodeModel::setData: QVariant is not a valid QString.\n");
        return false;
    }
    if (!index.isValid()) {
        QOR_FATAL("QorNodeModel::setData: index is invalid.\n");
        return false;
    }
    const QorFieldItem* item = itemOf(index);
    if (!item || !item->field()) {
        QOR_FATAL("QorNodeModel::setData: could not get item of index.\n");
        return false;
    }
    item->field()->setValueByStr(0.0, toRuntime(text).c_str());
    return true;
}

QVariant QorNodeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return fieldColumnName(static_cast<FieldColumn>(section));
}

Qt::ItemFlags QorNodeModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::ItemIsEnabled;
    return Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
}

bool QorNodeModel::canInsertRows(const QModelIndex& index) const
{
    if (!index.isValid()) {
        QOR_FATAL("QorNodeModel::canInsertRows: invalid index.\n");
        return false;
    }
    const QorFieldItem* item = itemOf(index);
    return item && isEditableList(item->field());
}

bool QorNodeModel::canRemoveRows(const QModelIndex& index) const
{
    if (!index.isValid()) {
        QOR_FATAL("QorNodeModel::canRemoveRows: invalid index.\n");
        return false;
    }
    const QorFieldItem* item = itemOf(index);
    return item && isEditableList(item->field());
}

bool QorNodeModel::insertRows(int row, int count, const QModelIndex& parent)
{
    if (!parent.isValid()) {
        QOR_FATAL("QorNodeModel::insertRows: invalid index.\n");
        return false;
    }
    QorFieldItem* item = itemOf(parent);
    Orvane::Field* field = item ? item->field() : nullptr;
    if (field && field->cardinality() != MultiField) {
        QOR_WARNING("QorNodeModel::insertRows: inserting rows into an SF field item is not possible.\n");
        return false;
    }
    QorMFieldItem* fieldItem = field ? item->toMFieldItem() : nullptr;
    if (!fieldItem) {
        QOR_FATAL("QorNodeModel::insertRows: invalid mfield item.\n");
        return true;
    }

    renewIndexes();
    QOR_NOTICE("QorNodeModel::insertRows: MFString, beginInsertRows(from=%d, to=%d)\n", row,
               lastRow(row, count));
    beginInsertRows(parent, row, lastRow(row, count));
    const unsigned int size = field->size();
    if (row == 0 || static_cast<unsigned int>(row) < size) {
        if (!insertValues(*field, row, count)) {
            for (int i = 0; i < count; ++i)
                warnOfFieldType(*field);
        }
    } else if (static_cast<unsigned int>(row) == size) {
        appendValues(*field, count);
    }
    QOR_NOTICE("QorNodeModel::insertRows: updating child values. mfieldItem=%p\n",
               static_cast<const void*>(fieldItem));
    fieldItem->updateChildValues(false);
    endInsertRows();
    return true;
}

bool QorNodeModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (!parent.isValid()) {
        QOR_FATAL("QorNodeModel::removeRows: invalid index.\n");
        return false;
    }
    QorFieldItem* item = itemOf(parent);
    Orvane::Field* field = item ? item->field() : nullptr;
    QorMFieldItem* fieldItem = field && field->cardinality() == MultiField ? item->toMFieldItem() : nullptr;
    if (!fieldItem)
        return false;
    if (static_cast<unsigned int>(row) >= field->size()) {
        QOR_FATAL("QorNodeModel::insertRows: invalid row index %d (size=%d).\n", row,
                  static_cast<int>(field->size()));
        return false;
    }

    renewIndexes();
    QOR_NOTICE("QorNodeModel::removeRows: MFString, beginRemoveRows(from=%d, to=%d)\n", row,
               lastRow(row, count));
    beginRemoveRows(parent, row, lastRow(row, count));
    if (!removeValue(*field, row))
        warnOfFieldType(*field);
    fieldItem->updateChildValues(false);
    endRemoveRows();
    return true;
}

void QorNodeModel::renewIndexes()
{
    // An index of a dropped row and one of the row in its place would be moved to one and the same, and Qt
    // loses sight of one of two equal ones. So each place is held once, and what comes too late is let go. An
    // index whose place is gone stays with its old item, which is never deleted.
    const QModelIndexList indexes = persistentIndexList();
    QSet<QModelIndex> held;
    QModelIndexList old;
    for (const QModelIndex& index : indexes) {
        QorFieldItem* parentItem = itemOf(index)->parent();
        if (parentItem != _rootItem.get() && parentItem->child(index.row()) != itemOf(index))
            old << index;
        else
            held << index;
    }
    QModelIndexList renewed;
    for (const QModelIndex& index : qAsConst(old)) {
        QorFieldItem* child = itemOf(index)->parent()->child(index.row());
        const QModelIndex today = child ? createIndex(index.row(), index.column(), child) : index;
        renewed << (held.contains(today) ? QModelIndex() : today);
        held << today;
    }
    changePersistentIndexList(old, renewed);
}

void QorNodeModel::setupModelData(Orvane::Node* node, QorFieldItem* parent)
{
    const QTime start = QTime::currentTime();
    // The last part of the node stands in the first row.
    for (unsigned int part = node ? node->partDescCount() : 0; part-- > 0;) {
        Orvane::Field* field = node->findField(part);
        if (field->_desc->privateAccess())
            continue;
        _rows.insert(field, parent->childCount());
        if (field->cardinality() == MultiField)
            parent->appendChild(new QorMFieldItem(field, parent));
        else
            parent->appendChild(new QorSFieldItem(field, parent));
    }
    QOR_NOTICE("QorNodeModel::setupModelData: took %dms\n", start.msecsTo(QTime::currentTime()));
}

QorFieldItem* QorNodeModel::itemOf(const QModelIndex& index) const
{
    return index.isValid() ? static_cast<QorFieldItem*>(index.internalPointer()) : _rootItem.get();
}

} // namespace Orvane::Qt4
