#pragma once

#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;

/// A line for the name of a node, and room below it for the reason why a name cannot be. What is typed stays
/// until it is right.
class NameEdit : public QWidget
{
    Q_OBJECT

public:
    /// Says why a name cannot be; empty for one that can.
    using Check = std::function<QString(const QString& name)>;

    NameEdit(const QString& name, Check check, QWidget* parent);

    /// The name without blanks around it; may be empty.
    QString name() const;
    /// True for a name that can be; else the reason is shown and the line has the focus.
    bool accepts();

    /// Asks for the name of a node, until it can be or the user gives up; false then.
    static bool ask(QString& name, const Check& check, QWidget* parent);

private:
    Check _check;
    QLineEdit* _line;
    QLabel* _fault;
};
