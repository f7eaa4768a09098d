#pragma once

#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "tinyruntime/Tiny.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QtCore/QByteArrayList>
#include <QtWidgets/QAbstractItemDelegate>
#include <memory>
#include <string>
#include <vector>

Q_DECLARE_METATYPE(QAbstractItemDelegate::EndEditHint)

/// A part of a data type with a default, for tests that need nothing else.
inline Tiny::Part part(const char* name, Orvane::NodePartDataType dataType, const char* value = "",
                       Orvane::NodePartType access = Orvane::EXPOSEDFIELDP)
{
    Tiny::Part result;
    result.name = name;
    result.dataType = dataType;
    result.value = value;
    result.access = access;
    return result;
}

/// A part whose numbers have limits.
inline Tiny::Part limited(const char* name, Orvane::NodePartDataType dataType, const char* value, double min,
                          double max)
{
    Tiny::Part result = part(name, dataType, value);
    result.restriction = Orvane::NodePartDesc::MIN_MAX_VR;
    result.minValue = min;
    result.maxValue = max;
    return result;
}

/// A part with a list of allowed values.
inline Tiny::Part listed(const char* name, Orvane::NodePartDataType dataType, const char* value,
                         const std::vector<std::string>& values)
{
    Tiny::Part result = part(name, dataType, value);
    result.restriction = Orvane::NodePartDesc::LIST_VR;
    result.valueList = values;
    return result;
}

/// The text of so many values, from 0 on: "0, 1, 2".
inline std::string numbersText(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += (i ? ", " : "") + std::to_string(i);
    return text;
}

/// A node of the tiny runtime, and the rows of its fields.
struct FieldRows
{
    explicit FieldRows(const std::vector<Tiny::Part>& parts)
        : node(Tiny::makeNode(Tiny::makeType("Thing", parts)))
        , model(node.get(), nullptr)
    {
        Tiny::reset();
    }

    Orvane::Field* field(const char* name) const { return node->findField(name, Orvane::Node::EXACT_FSO); }
    template <class T>
    T* field(const char* name) const
    {
        return dynamic_cast<T*>(field(name));
    }
    std::string text(const char* name) const { return field(name)->valueToString(); }

    /// The value cell of a field.
    QModelIndex cell(const char* name) const { return model.index(field(name)); }
    /// The value cell of a value of a field.
    QModelIndex cell(const char* name, int value) const
    {
        const QModelIndex row = model.index(cell(name).row(), 0);
        return model.index(value, 1, row);
    }
    Orvane::Qt4::QorFieldItem* item(const char* name) const { return itemOf(cell(name)); }
    Orvane::Qt4::QorFieldItem* item(const char* name, int value) const { return itemOf(cell(name, value)); }
    QString rowText(const char* name, int value) const { return cell(name, value).data().toString(); }

    static Orvane::Qt4::QorFieldItem* itemOf(const QModelIndex& index)
    {
        return static_cast<Orvane::Qt4::QorFieldItem*>(index.internalPointer());
    }

    std::unique_ptr<Orvane::Node> node;
    Orvane::Qt4::QorNodeModel model;
};

/// How often a line stands among others.
inline int countOf(const QByteArrayList& lines, const QByteArray& line)
{
    return lines.count(line);
}
