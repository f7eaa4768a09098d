#include "QorBoolFieldEditor.h"

#include "QorEditedValue.h"
#include "QorFieldItem.h"
#include "QorLog.h"
#include <Orvane/MFBool.h>
#include <Orvane/SFBool.h>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>

namespace Orvane::Qt4 {

QorBoolFieldEditor::BoolComboBox::BoolComboBox(QWidget* parent)
    : QComboBox(parent)
{
    addItem(QStringLiteral("FALSE"));
    addItem(QStringLiteral("TRUE"));
}

void QorBoolFieldEditor::BoolComboBox::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
        event->accept();
    } else {
        event->ignore();
    }
}

QorBoolFieldEditor::QorBoolFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _layout(new QHBoxLayout(this))
    , _comboBox(new BoolComboBox(this))
{
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
    _layout->addWidget(_comboBox, 0);
    connect(_comboBox, QOverload<int>::of(&QComboBox::activated), this, &QorBoolFieldEditor::onIndexChanged);
}

void QorBoolFieldEditor::setEditorData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorBoolFieldEditor::setEditorData: invalid field. Can't update editor.");
        return;
    }
    if (field->cardinality() == 0) {
        if (const auto* single = dynamic_cast<Orvane::SFBool*>(field))
            _comboBox->setCurrentIndex(single->value() ? 1 : 0);
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFBool*>(field);
    const int index = editedValueIndex(item, field);
    if (multi && index >= 0)
        _comboBox->setCurrentIndex(multi->elem(index) ? 1 : 0);
}

void QorBoolFieldEditor::setModelData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorBoolFieldEditor::setModelData: invalid field. Can't update model.");
        return;
    }
    const bool value = _comboBox->currentIndex() != 0;
    if (field->cardinality() == 0) {
        if (auto* single = dynamic_cast<Orvane::SFBool*>(field))
            single->setValue(0.0, value, Orvane::Field::EXTERNAL_CT);
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFBool*>(field);
    const int index = editedValueIndex(item, field);
    // The first value is never written, and the row keeps its text: hosts rely on both.
    if (multi && index > 0)
        multi->setElem(index, value);
}

void QorBoolFieldEditor::onIndexChanged(int)
{
    signalCommitData();
    emit closeEditor(this, QAbstractItemDelegate::NoHint);
}

} // namespace Orvane::Qt4
