#include "QorMFieldValueItem.h"

#include "QorMFieldItem.h"
#include "QorNodeModel.h"

namespace Orvane::Qt4 {

QorMFieldValueItem::QorMFieldValueItem(int index, Orvane::Field* field, QorFieldItem* parent)
    : QorFieldItem(field, parent)
    , _index(index)
{
    updateCache();
}

QorMFieldValueItem::~QorMFieldValueItem() = default;

QVariant QorMFieldValueItem::data(int column, int role)
{
    if (role == Qt::DisplayRole && column == QorNodeModel::FieldName)
        return QString::number(_index);
    if (role == Qt::DisplayRole && column == QorNodeModel::FieldValue)
        return _value;
    return QVariant();
}

void QorMFieldValueItem::updateCache()
{
    if (auto* parentItem = dynamic_cast<QorMFieldItem*>(parent()))
        _value = parentItem->getStringValue(_index);
}

} // namespace Orvane::Qt4
