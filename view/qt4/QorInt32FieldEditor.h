#pragma once

#include "QorFieldEditor.h"

class QSpinBox;
class QHBoxLayout;

namespace Orvane::Qt4 {

/// Edits an `SFInt32` or a value of an `MFInt32` in a spin box, within the limits of a single field. Each
/// change goes to the field at once; the editor stays open until the delegate or the view closes it.
class QOR_EXPORT QorInt32FieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorInt32FieldEditor(QWidget* parent);

    void setEditorData(QorFieldItem* item) override;
    void setModelData(QorFieldItem* item) override;

protected:
    bool event(QEvent* event) override;

protected slots:
    void onValueChanged(int value);

private:
    QHBoxLayout* _layout;
    QSpinBox* _spinBox;
};

} // namespace Orvane::Qt4
