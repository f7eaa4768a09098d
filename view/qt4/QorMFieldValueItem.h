#pragma once

#include "QorFieldItem.h"

namespace Orvane::Qt4 {

/// The row of one value of a field of many values: its number and its text. The text is that of the parent's
/// cache when the row was made.
class QOR_EXPORT QorMFieldValueItem : public QorFieldItem
{
public:
    /// \a parent is the `QorMFieldItem` of the field.
    QorMFieldValueItem(int index, Orvane::Field* field, QorFieldItem* parent);
    QorMFieldValueItem(const QorMFieldValueItem&) = default;
    QorMFieldValueItem& operator=(const QorMFieldValueItem&) = default;
    ~QorMFieldValueItem() override;

    /// Number and text of the value; no tool tip.
    QVariant data(int column, int role) override;

    /// Position of the value in the field.
    int index() const { return _index; }
    /// Takes the text from the parent's cache; keeps the old one when the parent is no `QorMFieldItem`.
    void updateCache();

private:
    int _index;
    QString _value;
};

} // namespace Orvane::Qt4
