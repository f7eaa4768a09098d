#pragma once

#include "FieldNode.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include <QtWidgets/QAbstractItemDelegate>

Q_DECLARE_METATYPE(QAbstractItemDelegate::EndEditHint)

/// A node of the tiny runtime, and the rows of its fields.
struct FieldRows : FieldNode
{
    explicit FieldRows(const std::vector<Tiny::Part>& parts)
        : FieldNode(parts)
        , model(node.get(), nullptr)
    {
        Tiny::reset();
    }

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

    Orvane::Qt4::QorNodeModel model;
};
