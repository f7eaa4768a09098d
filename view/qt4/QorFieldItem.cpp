#include "QorFieldItem.h"

#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorSFieldItem.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>

namespace Orvane::Qt4 {

namespace {

const int ColumnCount = 10;
const int ToolTipWidth = 28;

/// A number of OpenGL and the word for it.
struct Word
{
    unsigned int number;
    const char* text;
};

const Word PixelFormats[] = {
    {0x1907, "RGB"},       {0x1908, "RGBA"},      {0x1909, "LUMINANCE"}, {0x190A, "LUMINANCE_ALPHA"},
    {0x8049, "INTENSITY"}, {0x80E0, "BGR"},       {0x80E1, "BGRA"},      {0x83F0, "RGB_DXT1"},
    {0x83F1, "RGBA_DXT1"}, {0x83F2, "RGBA_DXT3"}, {0x83F3, "RGBA_DXT5"},
};

const Word ImageDataTypes[] = {
    {0x1401, "UCHAR8"}, {0x1403, "UCHAR16"}, {0x1405, "UCHAR32"}, {0x1406, "FLOAT32"}, {0x140B, "FLOAT16"},
};

const Word ValueRestrictions[] = {
    {NodePartDesc::NONE_VR, "NONE_VR"},           {NodePartDesc::CDATA_VR, "CDATA_VR"},
    {NodePartDesc::NODE_TYPE_VR, "NODE_TYPE_VR"}, {NodePartDesc::MIN_MAX_VR, "MIN_MAX_VR"},
    {NodePartDesc::LIST_VR, "LIST_VR"},
};

template <std::size_t Count>
QString wordOf(const Word (&words)[Count], unsigned int number, const char* unknown)
{
    for (const Word& word : words) {
        if (word.number == number)
            return QString::fromLatin1(word.text);
    }
    return QString::fromLatin1(unknown);
}

QString truthText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// Breaks a text behind blanks, never inside a word. The start of a line counts on by exactly the width at
/// each break, the newlines put in so far included, so that later lines drift shorter.
QString wordWrapped(const QString& text, int width)
{
    if (text.size() <= width)
        return text;

    QString result;
    int lineStart = 0;
    int breaks = 0;
    for (int from = 0; from < text.size();) {
        int to = from;
        while (to + breaks - lineStart < width) {
            const int blank = text.indexOf(QLatin1Char(' '), to);
            if (blank < 0)
                return result + text.midRef(from);
            to = blank + 1;
        }
        result += text.midRef(from, to - from);
        result += QLatin1Char('\n');
        from = to;
        ++breaks;
        lineStart += width;
    }
    return result;
}

QVariant displayText(const Field& field, int column)
{
    const NodePartDesc* desc = field._desc;
    switch (column) {
    case QorNodeModel::FieldName:
        return fromRuntime(desc->name);
    case QorNodeModel::FieldValue:
        return fromRuntime(field.valueToString());
    case QorNodeModel::DataType:
        return fromRuntime(field.dataTypeName());
    case QorNodeModel::FieldType:
        return fromRuntime(desc->partTypeName());
    case QorNodeModel::ID:
        return QString::number(desc ? desc->id : 0);
    case QorNodeModel::ValueRestriction:
        return wordOf(ValueRestrictions, desc->valueRestriction, "UNKNOWN_VR");
    case QorNodeModel::ValueType:
        return fromRuntime(desc->valueType);
    case QorNodeModel::DefaultValue:
        return fromRuntime(desc->defaultValue);
    case QorNodeModel::AutoProcess:
        return truthText(desc->autoProcess());
    case QorNodeModel::Extension:
        return truthText(desc->objExt());
    }
    return QVariant();
}

QString toolTip(const Field& field)
{
    return QStringLiteral("<b>%1</b> <i>[%2]</i><br />")
               .arg(fromRuntime(field.name()), fromRuntime(field.dataTypeName())) +
           wordWrapped(fromRuntime(field._desc->description), ToolTipWidth);
}

} // namespace

QorFieldItem::QorFieldItem(Orvane::Field* field, QorFieldItem* parent)
    : _field(field)
    , _parent(parent)
{
}

QorFieldItem::~QorFieldItem()
{
    qDeleteAll(_children);
}

QorFieldItem* QorFieldItem::child(int row)
{
    return _children.value(row);
}

int QorFieldItem::childCount() const
{
    return _children.size();
}

int QorFieldItem::columnCount() const
{
    return ColumnCount;
}

QVariant QorFieldItem::data(int column, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return displayText(*_field, column);
    case Qt::ToolTipRole:
        return toolTip(*_field);
    }
    return QVariant();
}

int QorFieldItem::row() const
{
    return 0;
}

QorFieldItem* QorFieldItem::parent() const
{
    return _parent;
}

void QorFieldItem::appendChild(QorFieldItem* child)
{
    _children.append(child);
}

void QorFieldItem::removeChild(QorFieldItem* child)
{
    _children.removeAll(child);
    delete child;
}

void QorFieldItem::removeAllChilds()
{
    _children.clear();
}

QorSFieldItem* QorFieldItem::toSFieldItem()
{
    return dynamic_cast<QorSFieldItem*>(this);
}

QorMFieldItem* QorFieldItem::toMFieldItem()
{
    return dynamic_cast<QorMFieldItem*>(this);
}

QorMFieldValueItem* QorFieldItem::toMFieldValueItem()
{
    return dynamic_cast<QorMFieldValueItem*>(this);
}

QString QorFieldItem::dataTypeToString(unsigned int dataType)
{
    return wordOf(ImageDataTypes, dataType, "UNKNOWN_IMAGEDATA_TYPE");
}

QString QorFieldItem::pixelFormatToString(unsigned int pixelFormat)
{
    return wordOf(PixelFormats, pixelFormat, "UNKNOWN_PIXEL_FORMAT");
}

} // namespace Orvane::Qt4
