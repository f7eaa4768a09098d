#pragma once

#include <QtCore/QString>

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QStackedWidget;
class QWidget;

namespace Orvane {
class Field;
}

namespace Orvane::Qt4 {

class QorFieldItem;

/// The widgets of a text editor: a stack of a line edit for any text, and a combo box for a field whose
/// values are restricted to a list. All belong to the editor.
struct QorTextInput
{
    /// The stack and its pages.
    QStackedWidget* stack;
    QLineEdit* lineEdit;
    QHBoxLayout* layout;
    QComboBox* comboBox;
};

/// Makes the widgets below \a editor.
QorTextInput makeTextInput(QWidget* editor);

/// Shows the value of a row, selects all of the line edit and gives it the keyboard.
void showInTextInput(const QorTextInput& input, QorFieldItem* item);

/// What the user has entered for \a field: the choice in the list, or the text.
QString enteredText(const QorTextInput& input, const Orvane::Field* field);

} // namespace Orvane::Qt4
