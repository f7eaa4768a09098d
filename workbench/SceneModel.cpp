#include "SceneModel.h"

#include <Orvane/Node.h>
#include <QorNodeItem.h>

bool SceneModel::removeRows(int row, int count, const QModelIndex& parent)
{
    auto* const item =
        parent.isValid() ? static_cast<Orvane::Qt4::QorNodeItem*>(parent.internalPointer()) : nullptr;
    if (item && item->isValid() && (row < item->childCount() || count > 1))
        return QorObservingScenegraphModel::removeRows(row, count, parent);
    // The last node takes the sign that the row can be opened with it.
    if (item && item->childCount() == 1 && item->node() && item->node()->childCount() == 1) {
        beginRemoveRows(parent.sibling(parent.row(), 0), 0, 0);
        endRemoveRows();
    }
    return item;
}
