#pragma once

#include "QorFieldEditor.h"

class QDoubleSpinBox;
class QHBoxLayout;

namespace Orvane::Qt4 {

/// Edits an `SFFloat` or a value of an `MFFloat` in a spin box, within the limits of a single field. Each
/// change goes to the field at once; the editor stays open until the delegate or the view closes it.
class QOR_EXPORT QorFloatFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorFloatFieldEditor(QWidget* parent);

    void setEditorData(QorFieldItem* item) override;
    void setModelData(QorFieldItem* item) override;

protected:
    bool event(QEvent* event) override;

protected slots:
    void onValueChanged(double value);

private:
    QHBoxLayout* _layout;
    QDoubleSpinBox* _spinBox;
};

} // namespace Orvane::Qt4
