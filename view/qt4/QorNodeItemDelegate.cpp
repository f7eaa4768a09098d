#include "QorNodeItemDelegate.h"

#include "QorBoolFieldEditor.h"
#include "QorDefaultFieldEditor.h"
#include "QorFloatFieldEditor.h"
#include "QorInt32FieldEditor.h"
#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeFieldEditor.h"
#include "QorNodeModel.h"
#include "QorPaintedCell.h"
#include "QorStringFieldEditor.h"
#include <Orvane/Field.h>

namespace Orvane::Qt4 {

namespace {

QorFieldItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorFieldItem*>(index.internalPointer());
}

/// True for the row of a delayed multi field and for the rows below it.
bool isDelayed(QorFieldItem* item)
{
    if (!item)
        return false;
    const QorMFieldItem* fieldItem = item->toMFieldItem();
    if (!fieldItem && item->toMFieldValueItem() && item->parent())
        fieldItem = item->parent()->toMFieldItem();
    return fieldItem && fieldItem->isInitialisationDelayed();
}

} // namespace

QorNodeItemDelegate::QorNodeItemDelegate(QObject* parent)
    : QItemDelegate(parent)
    , _paintedCell(std::make_unique<QorPaintedCell>())
{
}

QorNodeItemDelegate::~QorNodeItemDelegate() = default;

bool QorNodeItemDelegate::mayEdit(const Orvane::Field* field) const
{
    switch (field->partType()) {
    case Orvane::NO_PART:
    case Orvane::EVENTOUTP:
        return false;
    case Orvane::FIELDP:
        return _initOnlyEditorEnabled;
    default:
        return true;
    }
}

QorFieldEditor* QorNodeItemDelegate::makeEditor(QWidget* parent, QorFieldItem* item) const
{
    const bool isValue = item->toMFieldValueItem() != nullptr;
    // A multi field is edited value by value; its own row is a summary.
    if (item->field()->cardinality() == 1 && item->toMFieldItem())
        return nullptr;

    switch (item->field()->dataType()) {
    case Orvane::SFIMAGE_DT:
        return nullptr;
    case Orvane::SFBOOL_DT:
        return new QorBoolFieldEditor(parent);
    case Orvane::SFFLOAT_DT:
        return new QorFloatFieldEditor(parent);
    case Orvane::SFINT32_DT:
        return new QorInt32FieldEditor(parent);
    case Orvane::SFNODE_DT:
        return new QorNodeFieldEditor(parent);
    case Orvane::SFSTRING_DT:
        return new QorStringFieldEditor(parent);
    default:
        break;
    }
    if (isValue) {
        switch (item->field()->dataType()) {
        case Orvane::MFBOOL_DT:
            return new QorBoolFieldEditor(parent);
        case Orvane::MFFLOAT_DT:
            return new QorFloatFieldEditor(parent);
        case Orvane::MFINT32_DT:
            return new QorInt32FieldEditor(parent);
        case Orvane::MFNODE_DT:
            return new QorNodeFieldEditor(parent);
        case Orvane::MFSTRING_DT:
            return new QorStringFieldEditor(parent);
        default:
            break;
        }
    }
    return new QorDefaultFieldEditor(parent);
}

QWidget* QorNodeItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                           const QModelIndex& index) const
{
    QorFieldItem* item = itemOf(index);
    if (index.column() != QorNodeModel::FieldValue || !item || !item->field() || !mayEdit(item->field()))
        return nullptr;
    QorFieldEditor* editor = makeEditor(parent, item);
    if (!editor)
        return nullptr;

    if (const auto* nodeEditor = qobject_cast<QorNodeFieldEditor*>(editor))
        connect(nodeEditor, &QorNodeFieldEditor::nodeSelected, this, &QorNodeItemDelegate::nodeSelected);
    connect(editor, &QorFieldEditor::commitData, this, &QorNodeItemDelegate::commitData);
    connect(editor, &QorFieldEditor::closeEditor, this, &QorNodeItemDelegate::closeEditor);
    editor->installEventFilter(const_cast<QorNodeItemDelegate*>(this));
    return editor;
}

void QorNodeItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    auto* fieldEditor = qobject_cast<QorFieldEditor*>(editor);
    QorFieldItem* item = itemOf(index);
    if (fieldEditor && item)
        fieldEditor->setEditorData(item);
}

void QorNodeItemDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                       const QModelIndex& index) const
{
    QorFieldItem* item = itemOf(index);
    if (!item) {
        QOR_FATAL("QorNodeItemDelegate::setModelData: Invalid QorFieldItem! editor=%p, model=%p, "
                  "index.row=%d, index.col=%d\n",
                  static_cast<const void*>(editor), static_cast<const void*>(model), index.row(),
                  index.column());
        return;
    }
    if (auto* fieldEditor = qobject_cast<QorFieldEditor*>(editor))
        fieldEditor->setModelData(item);
}

void QorNodeItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const
{
    QStyleOptionViewItem colouredOption(option);
    if (isDelayed(itemOf(index)))
        colouredOption.palette.setBrush(QPalette::Text, QBrush(QColor(200, 0, 0, 255), Qt::SolidPattern));
    QItemDelegate::paint(painter, colouredOption,
                         _paintedCell->standIn(index, option.rect.size(), option.fontMetrics.lineSpacing()));
}

} // namespace Orvane::Qt4
