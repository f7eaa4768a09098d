#include "QorFloatFieldEditor.h"

#include "QorEditedValue.h"
#include "QorFieldItem.h"
#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorSpinBoxKeys.h"
#include <Orvane/MFFloat.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFFloat.h>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QHBoxLayout>
#include <cmath>
#include <limits>

namespace Orvane::Qt4 {

namespace {

const double Highest = std::numeric_limits<double>::max();

/// A limit of a description as a number of the spin box, which takes finite ones only.
double toLimit(double limit, double none)
{
    return std::isnan(limit) ? none : qBound(-Highest, limit, Highest);
}

} // namespace

QorFloatFieldEditor::QorFloatFieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _layout(new QHBoxLayout(this))
    , _spinBox(new QDoubleSpinBox(this))
{
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
    _layout->addWidget(_spinBox, 3);
    keepPlainNumbers(_spinBox);
    connect(_spinBox, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &QorFloatFieldEditor::onValueChanged);
}

void QorFloatFieldEditor::setEditorData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorFloatFieldEditor::setEditorData: invalid field. Can't update editor.");
        return;
    }
    if (field->cardinality() == 0) {
        const auto* single = dynamic_cast<Orvane::SFFloat*>(field);
        if (!single)
            return;
        const QSignalBlocker blocker(_spinBox);
        const Orvane::NodePartDesc* desc = field->_desc;
        if (desc->valueRestriction == Orvane::NodePartDesc::MIN_MAX_VR) {
            QOR_LOG("QorFloatFieldEditor::setEditorData: minValue=%f, maxVal=%f\n", desc->minValue,
                    desc->maxValue);
            _spinBox->setMinimum(toLimit(desc->minValue, -Highest));
            _spinBox->setMaximum(toLimit(desc->maxValue, Highest));
        } else {
            QOR_LOG("QorFloatFieldEditor::setEditorData: no restriction. minDouble=%f\n", -Highest);
            _spinBox->setRange(-Highest, Highest);
        }
        _spinBox->setValue(double(single->value()));
        _spinBox->selectAll();
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFFloat*>(field);
    const int index = editedValueIndex(item, field);
    if (!multi || index < 0)
        return;
    // Signals stay on: a value that the spin box does not yet show is committed while the editor opens.
    _spinBox->setRange(-Highest, Highest);
    _spinBox->setValue(double(multi->elem(index)));
    _spinBox->selectAll();
}

void QorFloatFieldEditor::setModelData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorFloatFieldEditor::setModelData: invalid field. Can't update model.");
        return;
    }
    const auto value = static_cast<float>(_spinBox->value());
    if (field->cardinality() == 0) {
        QOR_LOG("QorFloatFieldEditor::setModelData: setting single field %s to %f\n", field->name(),
                _spinBox->value());
        if (auto* single = dynamic_cast<Orvane::SFFloat*>(field))
            single->setValue(0.0, value, Orvane::Field::EXTERNAL_CT);
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFFloat*>(field);
    const int index = editedValueIndex(item, field);
    if (!multi || index < 0)
        return;
    multi->setElem(index, value);
    if (auto* parent = dynamic_cast<QorMFieldItem*>(item->parent()))
        parent->updateChildValues(false);
    else
        QOR_FATAL("QorFloatFieldEditor::setModelData: parent of value is not an MF* field.\n");
}

bool QorFloatFieldEditor::event(QEvent* event)
{
    return passKeyToSpinBox(event, _spinBox) || QorFieldEditor::event(event);
}

void QorFloatFieldEditor::onValueChanged(double)
{
    signalCommitData();
}

} // namespace Orvane::Qt4
