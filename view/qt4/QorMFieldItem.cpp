#include "QorMFieldItem.h"

#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include <Orvane/MFString.h>
#include <Orvane/NodePartDesc.h>
#include <QtCore/QObject>

namespace Orvane::Qt4 {

unsigned int QorMFieldItem::_valueCountThreshold = 50;
const QRegExp QorMFieldItem::regExp(QStringLiteral("(?:\\n|\\r|\\t|,)+"));
const QRegExp QorMFieldItem::mfStringRegExp(QStringLiteral("(?:\")+"));

QorMFieldItem::QorMFieldItem(Orvane::Field* field, QorFieldItem* parent)
    : QorFieldItem(field, parent)
{
    QorMFieldItem::updateChildValues(false);
}

QorMFieldItem::~QorMFieldItem() = default;

unsigned int QorMFieldItem::valueCount() const
{
    return _field ? _field->size() : 0;
}

QVariant QorMFieldItem::data(int column, int role)
{
    if (role == Qt::DisplayRole && column == QorNodeModel::FieldValue)
        return QObject::tr("%1 values [%2]")
            .arg(QString::number(_field->size()), fromRuntime(_field->_desc->dataTypeName()));
    if (role == Qt::ToolTipRole && isInitialisationDelayed())
        return QObject::tr("This multi field contains %1  values.<br>Updating them automatically is very<br>"
                           " time consuming and therefore<br>deactivated.")
            .arg(_field->size());
    return QorFieldItem::data(column, role);
}

void QorMFieldItem::updateChildValues(bool force)
{
    removeAllChilds();

    const bool isBig = !force && isInitialisationDelayed();
    if (isBig) {
        // Something to expand; only a placeholder, but it shows the first value once that is known.
        appendChild(new QorMFieldValueItem(0, _field, this));
        return;
    }

    updateCache();
    const int count = static_cast<int>(valueCount());
    _children.reserve(count);
    for (int i = 0; i < count; ++i)
        appendChild(new QorMFieldValueItem(i, _field, this));
    _initialised = true;
}

void QorMFieldItem::updateCache()
{
    _values = valuesToStringList(_field);
}

QString QorMFieldItem::getStringValue(int i)
{
    return _values.value(i);
}

bool QorMFieldItem::isInitialisationDelayed() const
{
    return valueCount() > _valueCountThreshold;
}

void QorMFieldItem::setValueCountThreshold(unsigned int threshold)
{
    _valueCountThreshold = threshold;
}

unsigned int QorMFieldItem::valueCountThreshold()
{
    return _valueCountThreshold;
}

QStringList QorMFieldItem::valuesToStringList(Orvane::Field* field)
{
    QStringList values;
    const int count = field ? static_cast<int>(field->size()) : 0;
    if (count <= 0)
        return values;
    values.reserve(count);

    if (const auto* strings = dynamic_cast<const MFString*>(field)) {
        for (int i = 0; i < count; ++i)
            values.append(fromRuntime((*strings)[i]));
        return values;
    }

    // Values of several parts take an equal share of the text's parts; what is left over belongs to none.
    const QStringList parts = fromRuntime(field->valueToString()).split(regExp, Qt::KeepEmptyParts);
    const int share = parts.size() / count;
    for (int i = 0; i < count; ++i) {
        QString value(QLatin1String(""));
        for (int part = i * share; part < (i + 1) * share; ++part)
            value += parts.at(part);
        values.append(value);
    }
    return values;
}

} // namespace Orvane::Qt4
