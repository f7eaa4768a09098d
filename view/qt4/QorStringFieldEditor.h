#pragma once

#include "QorFieldEditor.h"
#include "QorTextEditing.h"

namespace Orvane::Qt4 {

/// Edits an `SFString` or a value of an `MFString`, which is written value by value, since a string may hold
/// what separates values elsewhere. Return, or a choice among the allowed values, writes and ends the edit.
class QOR_EXPORT QorStringFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorStringFieldEditor(QWidget* parent);

    void setEditorData(QorFieldItem* item) override;
    void setModelData(QorFieldItem* item) override;

protected slots:
    void onReturnPressed();
    /// A choice in the list of allowed values.
    void onValueTypeChanged(const QString& text);

private:
    const QorTextInput _input;
};

} // namespace Orvane::Qt4
