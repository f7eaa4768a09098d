#include "QorDefaultFieldEditor.h"

#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <QtCore/QStringList>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>

namespace Orvane::Qt4 {

QorDefaultFieldEditor::QorDefaultFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _input(makeTextInput(this))
{
    connect(_input.lineEdit, &QLineEdit::returnPressed, this, &QorDefaultFieldEditor::onReturnPressed);
    connect(_input.comboBox, &QComboBox::textActivated, this, &QorDefaultFieldEditor::onValueTypeChanged);
}

void QorDefaultFieldEditor::setEditorData(QorFieldItem* item)
{
    showInTextInput(_input, item);
}

void QorDefaultFieldEditor::setModelData(QorFieldItem* item)
{
    Orvane::Field* field = item ? item->field() : nullptr;
    if (!field)
        return;
    if (field->cardinality() != 1) {
        QOR_LOG("QorDefaultFieldEditor::setModelData: field=%s\n", field->name());
        field->setValueByStr(0.0, toRuntime(enteredText(_input, field)).c_str());
        return;
    }

    QorMFieldValueItem* valueItem = item->toMFieldValueItem();
    auto* parent = valueItem ? dynamic_cast<QorMFieldItem*>(valueItem->parent()) : nullptr;
    if (!parent)
        return;
    // Rows, not values, make the text: a delayed field ends up with the one value of its placeholder. The row
    // is told by its number, since the rows may have been built anew under the open editor.
    QStringList texts;
    bool found = false;
    for (int row = 0; row < parent->childCount(); ++row) {
        QorFieldItem* child = parent->child(row);
        const QorMFieldValueItem* childValue = child->toMFieldValueItem();
        const bool edited = childValue && childValue->index() == valueItem->index();
        found = found || edited;
        texts << (edited ? enteredText(_input, field)
                         : child->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString());
    }
    if (!found)
        return;
    field->setValueByStr(0.0, toRuntime(texts.join(QStringLiteral(", "))).c_str());
    parent->updateCache();
    valueItem->updateCache();
}

void QorDefaultFieldEditor::onReturnPressed()
{
    QOR_LOG("QorDefaultFieldEditor::commitData:\n");
    signalCommitData();
    _input.lineEdit->releaseKeyboard();
    emit closeEditor(this, QAbstractItemDelegate::NoHint);
}

void QorDefaultFieldEditor::onValueTypeChanged(const QString&)
{
    signalCommitData();
    emit closeEditor(this, QAbstractItemDelegate::NoHint);
}

} // namespace Orvane::Qt4
