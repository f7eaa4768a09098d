#include "QorScenegraphItemDelegate.h"

#include "QorNodeItem.h"
#include "QorScenegraphModel.h"
#include <Orvane/Node.h>

namespace Orvane::Qt4 {

QorScenegraphItemDelegate::QorScenegraphItemDelegate(QObject* parent)
    : QItemDelegate(parent)
{
}

void QorScenegraphItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const
{
    // Another model points at things of its own.
    const bool isOurs = qobject_cast<const QorScenegraphModel*>(index.model());
    const auto* item = isOurs ? static_cast<const QorNodeItem*>(index.internalPointer()) : nullptr;
    Orvane::Node* const node = item ? item->nodePath().node() : nullptr;
    if (!node || node->state() != Orvane::RUNNING_NS)
        return;
    if (!node->isShared()) {
        QItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem italic(option);
    italic.font.setStyle(QFont::StyleItalic);
    QItemDelegate::paint(painter, italic, index);
}

QWidget* QorScenegraphItemDelegate::createEditor(QWidget*, const QStyleOptionViewItem&,
                                                 const QModelIndex&) const
{
    return nullptr;
}

void QorScenegraphItemDelegate::setEditorData(QWidget*, const QModelIndex&) const
{
}

void QorScenegraphItemDelegate::setModelData(QWidget*, QAbstractItemModel*, const QModelIndex&) const
{
}

} // namespace Orvane::Qt4
