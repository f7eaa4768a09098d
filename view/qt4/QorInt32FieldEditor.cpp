#include "QorInt32FieldEditor.h"

#include "QorEditedValue.h"
#include "QorFieldItem.h"
#include "QorLog.h"
#include "QorMFieldItem.h"
#include "QorSpinBoxKeys.h"
#include <Orvane/MFInt32.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFInt32.h>
#include <QtCore/QSignalBlocker>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QSpinBox>
#include <cmath>
#include <limits>

namespace Orvane::Qt4 {

namespace {

const int Highest = std::numeric_limits<int>::max();
/// One above the lowest number of the type, so that the range is symmetric.
const int Lowest = -Highest;

/// A limit of a description as a number of the spin box; one that is no number stands for \a none.
int toLimit(double limit, int none)
{
    if (std::isnan(limit))
        return none;
    return static_cast<int>(qBound(double(Lowest), limit, double(Highest)));
}

} // namespace

QorInt32FieldEditor::QorInt32FieldEditor(QWidget* parent)
    : QorFieldEditor(parent)
    , _layout(new QHBoxLayout(this))
    , _spinBox(new QSpinBox(this))
{
    _layout->setContentsMargins(0, 0, 0, 0);
    _layout->setSpacing(0);
    _layout->addWidget(_spinBox, 3);
    keepPlainNumbers(_spinBox);
    connect(_spinBox, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &QorInt32FieldEditor::onValueChanged);
}

void QorInt32FieldEditor::setEditorData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorInt32FieldEditor::setEditorData: invalid field. Can't update editor.");
        return;
    }
    if (field->cardinality() == 0) {
        const auto* single = dynamic_cast<Orvane::SFInt32*>(field);
        if (!single)
            return;
        const QSignalBlocker blocker(_spinBox);
        const Orvane::NodePartDesc* desc = field->_desc;
        if (desc->valueRestriction == Orvane::NodePartDesc::MIN_MAX_VR) {
            QOR_LOG("QorInt32FieldEditor::setEditorData: minValue=%f, maxVal=%f\n", desc->minValue,
                    desc->maxValue);
            _spinBox->setMinimum(toLimit(desc->minValue, Lowest));
            _spinBox->setMaximum(desc->maxValue == 0.0 ? Highest : toLimit(desc->maxValue, Highest));
        } else {
            QOR_LOG("QorInt32FieldEditor::setEditorData: no restriction. minDouble=%f\n", double(Lowest));
            _spinBox->setRange(Lowest, Highest);
        }
        _spinBox->setValue(single->value());
        _spinBox->selectAll();
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFInt32*>(field);
    const int index = editedValueIndex(item, field);
    if (!multi || index < 0)
        return;
    // Signals stay on: a value that the spin box does not yet show is committed while the editor opens.
    _spinBox->setRange(Lowest, Highest);
    _spinBox->setValue(multi->elem(index));
    _spinBox->selectAll();
}

void QorInt32FieldEditor::setModelData(QorFieldItem* item)
{
    Orvane::Field* field = item->field();
    if (!field) {
        QOR_FATAL("QorInt32FieldEditor::setModelData: invalid field. Can't update model.");
        return;
    }
    if (field->cardinality() == 0) {
        QOR_LOG("QorInt32FieldEditor::setModelData: setting single field %s to %f\n", field->name(),
                double(_spinBox->value()));
        if (auto* single = dynamic_cast<Orvane::SFInt32*>(field))
            single->setValue(0.0, _spinBox->value(), Orvane::Field::EXTERNAL_CT);
        return;
    }
    auto* multi = dynamic_cast<Orvane::MFInt32*>(field);
    const int index = editedValueIndex(item, field);
    if (!multi || index < 0)
        return;
    multi->setElem(index, _spinBox->value());
    if (auto* parent = dynamic_cast<QorMFieldItem*>(item->parent()))
        parent->updateChildValues(false);
    else
        QOR_FATAL("QorInt32FieldEditor::setModelData: parent of value is not an MF* field.\n");
}

bool QorInt32FieldEditor::event(QEvent* event)
{
    return passKeyToSpinBox(event, _spinBox) || QorFieldEditor::event(event);
}

void QorInt32FieldEditor::onValueChanged(int)
{
    signalCommitData();
}

} // namespace Orvane::Qt4
