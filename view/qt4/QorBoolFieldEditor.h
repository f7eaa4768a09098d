#pragma once

#include "QorFieldEditor.h"
#include <QtWidgets/QComboBox>

class QHBoxLayout;

namespace Orvane::Qt4 {

/// Edits an `SFBool` or a value of an `MFBool` by a list of two words. Each choice is written and ends the
/// edit. The first value of an `MFBool` cannot be changed.
class QOR_EXPORT QorBoolFieldEditor : public QorFieldEditor
{
    Q_OBJECT

public:
    /// "FALSE" and "TRUE". Escape closes it; all other keys go up to the item view.
    class QOR_EXPORT BoolComboBox : public QComboBox
    {
    public:
        /// Made and owned by the editor.
        explicit BoolComboBox(QWidget* parent);

    protected:
        void keyPressEvent(QKeyEvent* event) override;
    };

    /// Made by the delegate for the time of an edit; \a parent owns it.
    explicit QorBoolFieldEditor(QWidget* parent);

    void setEditorData(QorFieldItem* item) override;
    void setModelData(QorFieldItem* item) override;

protected slots:
    /// A value was chosen: it is committed and the editor closes.
    void onIndexChanged(int index);

private:
    QHBoxLayout* _layout;
    BoolComboBox* _comboBox;
};

} // namespace Orvane::Qt4
