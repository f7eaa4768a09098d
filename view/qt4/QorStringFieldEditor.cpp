#include "QorStringFieldEditor.h"

#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include <Orvane/MFString.h>
#include <Orvane/SFString.h>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <chrono>
#include <vector>

namespace Orvane::Qt4 {

namespace {

/// Seconds in whole milliseconds of a clock that never goes back.
double secondsNow()
{
    using namespace std::chrono;
    const auto now = steady_clock::now().time_since_epoch();
    return static_cast<double>(duration_cast<milliseconds>(now).count()) / 1000.0;
}

/// True when the one row of the field is the placeholder, which stands for no value of its own.
bool hasPlaceholderOnly(const QorMFieldItem* item)
{
    return item->isInitialisationDelayed() && item->childCount() == 1;
}

} // namespace

QorStringFieldEditor::QorStringFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _input(makeTextInput(this))
{
    connect(_input.lineEdit, &QLineEdit::returnPressed, this, &QorStringFieldEditor::onReturnPressed);
    connect(_input.comboBox, &QComboBox::textActivated, this, &QorStringFieldEditor::onValueTypeChanged);
}

void QorStringFieldEditor::setEditorData(QorFieldItem* item)
{
    showInTextInput(_input, item);
}

void QorStringFieldEditor::setModelData(QorFieldItem* item)
{
    if (!item)
        return;
    Orvane::Field* field = item->field();
    if (auto* single = dynamic_cast<Orvane::SFString*>(field)) {
        QOR_LOG("QorStringFieldEditor::setModelData: field=%s\n", single->name());
        single->setValueByStr(0.0, toRuntime(enteredText(_input, single)).c_str());
        return;
    }
    QorMFieldValueItem* valueItem = item->toMFieldValueItem();
    auto* multi = dynamic_cast<Orvane::MFString*>(field);
    if (!valueItem || !multi)
        return;

    auto* parent = dynamic_cast<QorMFieldItem*>(valueItem->parent());
    const int count = static_cast<int>(multi->size());
    std::vector<std::string> values;
    values.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        values.push_back(multi->elem(i));
    const bool delayed = parent && hasPlaceholderOnly(parent);
    multi->clear();
    if (!parent) {
        QOR_FATAL("QorStringFieldEditor::setModelData: Unable to find mfItem for field %s\n.", multi->name());
        return;
    }

    for (int i = 0; i < count; ++i) {
        QOR_LOG("QorStringFieldEditor::setModelData: multi field entry #%d\n", i);
        if (i == valueItem->index())
            multi->addValue(toRuntime(enteredText(_input, multi)));
        else if (!delayed && i < parent->childCount())
            multi->addValue(
                toRuntime(parent->child(i)->data(QorNodeModel::FieldValue, Qt::DisplayRole).toString()));
        else
            multi->addValue(values[static_cast<std::size_t>(i)]);
    }
    // The values were changed behind the runtime's back, which is why this one write bears a real time.
    multi->processValueChange(secondsNow(), Orvane::Field::EXTERNAL_CT);
    parent->updateCache();
    valueItem->updateCache();
}

void QorStringFieldEditor::onReturnPressed()
{
    QOR_LOG("QorStringFieldEditor::commitData:\n");
    signalCommitData();
    _input.lineEdit->releaseKeyboard();
    emit closeEditor(this, QAbstractItemDelegate::NoHint);
}

void QorStringFieldEditor::onValueTypeChanged(const QString&)
{
    signalCommitData();
    emit closeEditor(this, QAbstractItemDelegate::NoHint);
}

} // namespace Orvane::Qt4
