#pragma once

#include "QorFieldEditor.h"
#include "QorTextEditing.h"

namespace Orvane::Qt4 {

/// Edits a field of any type that has no editor of its own, and the values of such a list, as text in the
/// form of the runtime. A list is written as one text of all its rows. Return, or a choice among the allowed
/// values, writes and ends the edit.
class QOR_EXPORT QorDefaultFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorDefaultFieldEditor(QWidget* parent);

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
