#include "QorTextEditing.h"

#include "QorFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QStackedWidget>
#include <limits>

namespace Orvane::Qt4 {

namespace {

bool isListRestricted(const Orvane::Field* field)
{
    return field->_desc->valueRestriction == Orvane::NodePartDesc::LIST_VR;
}

void showText(const QorTextInput& input, const Orvane::Field* field, const QString& text)
{
    if (!isListRestricted(field)) {
        input.lineEdit->setText(text);
        input.stack->setCurrentIndex(0);
        return;
    }
    input.comboBox->clear();
    for (const std::string& value : field->_desc->valueList())
        input.comboBox->addItem(fromRuntime(value));
    input.comboBox->setCurrentIndex(
        input.comboBox->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
    input.stack->setCurrentIndex(1);
}

} // namespace

QorTextInput makeTextInput(QWidget* editor)
{
    QorTextInput input{};
    input.stack = new QStackedWidget(editor);
    input.lineEdit = new QLineEdit(input.stack);
    // Longer values would come back cut off.
    input.lineEdit->setMaxLength(std::numeric_limits<int>::max());
    input.comboBox = new QComboBox(input.stack);
    input.stack->addWidget(input.lineEdit);
    input.stack->addWidget(input.comboBox);
    input.layout = new QHBoxLayout(editor);
    input.layout->setContentsMargins(0, 0, 0, 0);
    input.layout->setSpacing(0);
    input.layout->addWidget(input.stack, 0);
    return input;
}

void showInTextInput(const QorTextInput& input, QorFieldItem* item)
{
    const Orvane::Field* field = item ? item->field() : nullptr;
    if (field) {
        if (field->cardinality() != 1)
            showText(input, field, fromRuntime(field->valueToString()));
        else if (item->toMFieldValueItem())
            showText(input, field, item->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString());
    }
    // The line edit has the keyboard behind the combo box too, from the moment the editor opens.
    input.lineEdit->selectAll();
    input.lineEdit->grabKeyboard();
}

QString enteredText(const QorTextInput& input, const Orvane::Field* field)
{
    return isListRestricted(field) ? input.comboBox->currentText() : input.lineEdit->text();
}

} // namespace Orvane::Qt4
