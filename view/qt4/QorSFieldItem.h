#pragma once

#include "QorFieldItem.h"

namespace Orvane::Qt4 {

/// The row of a field that holds one value. Images show their format and size instead of their pixels.
class QOR_EXPORT QorSFieldItem : public QorFieldItem
{
public:
    /// The field is borrowed; the parent is not told.
    QorSFieldItem(Orvane::Field* field, QorFieldItem* parent);
    QorSFieldItem(const QorSFieldItem&) = default;
    QorSFieldItem& operator=(const QorSFieldItem&) = default;
    ~QorSFieldItem() override;

    QVariant data(int column, int role) override;
};

} // namespace Orvane::Qt4
