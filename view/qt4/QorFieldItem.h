#pragma once

#include "QorExport.h"
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

class QorMFieldItem;
class QorMFieldValueItem;
class QorSFieldItem;

/// A row of the field tree of one node; by itself the invisible root of such a tree. It renders its field for
/// the columns of `QorNodeModel` and knows nothing of views. An item owns its children; the field is borrowed
/// and must outlive it. A copy claims the same children, so that only one of the two may keep them.
class QOR_EXPORT QorFieldItem
{
public:
    /// The root has neither field nor parent.
    QorFieldItem(Orvane::Field* field, QorFieldItem* parent);
    QorFieldItem(const QorFieldItem&) = default;
    QorFieldItem& operator=(const QorFieldItem&) = default;
    virtual ~QorFieldItem();

    /// The child at \a row, null when there is none.
    virtual QorFieldItem* child(int row);
    virtual int childCount() const;
    /// Always 10.
    virtual int columnCount() const;
    /// The text of a column (`Qt::DisplayRole`) or the tool tip of the row (`Qt::ToolTipRole`); invalid for
    /// any other column or role.
    virtual QVariant data(int column, int role);
    /// Always 0: a model index is told apart by its item, not by the row of its parent.
    virtual int row() const;
    virtual QorFieldItem* parent() const;

    /// Null for the root.
    Orvane::Field* field() const { return _field; }

    /// Appends a child and takes it over.
    void appendChild(QorFieldItem* child);
    /// Takes a child out of the list, as often as it stands there, and deletes it; null is only taken out.
    void removeChild(QorFieldItem* child);
    /// Empties the list. The children stay alive, since a model index or an open editor may still hold one.
    void removeAllChilds();

    /// Nothing here; items that keep texts renew them from the field.
    void updateCache() {}

    /// This item as one of another class; null when it is none.
    QorSFieldItem* toSFieldItem();
    QorMFieldItem* toMFieldItem();
    QorMFieldValueItem* toMFieldValueItem();

    /// The word for an OpenGL data type of image components, such as "UCHAR8".
    static QString dataTypeToString(unsigned int dataType);
    /// The word for an OpenGL pixel format, such as "RGBA".
    static QString pixelFormatToString(unsigned int pixelFormat);

protected:
    QList<QorFieldItem*> _children; ///< in order of rows, owned
    Orvane::Field* _field;          ///< borrowed, null for the root
    QorFieldItem* _parent;          ///< borrowed, null for the root
};

} // namespace Orvane::Qt4
