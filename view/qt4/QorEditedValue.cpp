#include "QorEditedValue.h"

#include "QorMFieldValueItem.h"
#include <Orvane/Field.h>

namespace Orvane::Qt4 {

int editedValueIndex(QorFieldItem* item, const Orvane::Field* field)
{
    const QorMFieldValueItem* valueItem = item->toMFieldValueItem();
    if (!valueItem || valueItem->index() < 0 ||
        static_cast<unsigned int>(valueItem->index()) >= field->size())
        return -1;
    return valueItem->index();
}

} // namespace Orvane::Qt4
