#include "NameEdit.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

NameEdit::NameEdit(const QString& name, Check check, QWidget* parent)
    : QWidget(parent)
    , _check(std::move(check))
    , _line(new QLineEdit(name, this))
    , _fault(new QLabel(this))
{
    _line->setObjectName(QStringLiteral("name"));
    _line->setPlaceholderText(tr("none"));
    _line->selectAll();
    _fault->setObjectName(QStringLiteral("fault"));
    _fault->setTextFormat(Qt::PlainText);
    _fault->setWordWrap(true);
    // Room that is there from the start, so that nothing moves.
    _fault->setMinimumHeight(2 * fontMetrics().lineSpacing());
    _fault->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    setFocusProxy(_line);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_line);
    layout->addWidget(_fault);
    connect(_line, &QLineEdit::textChanged, _fault, &QLabel::clear);
}

QString NameEdit::name() const
{
    return _line->text().trimmed();
}

bool NameEdit::accepts()
{
    const QString fault = _check(name());
    _fault->setText(fault);
    if (!fault.isEmpty())
        _line->setFocus();
    return fault.isEmpty();
}

bool NameEdit::ask(QString& name, const Check& check, QWidget* parent)
{
    QDialog dialog(parent);
    dialog.setWindowTitle(tr("Rename node"));
    auto* const edit = new NameEdit(name, check, &dialog);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    auto* const form = new QFormLayout;
    form->addRow(tr("&Name; empty for none"), edit);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->addLayout(form);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, &dialog, [&dialog, edit] {
        if (edit->accepts())
            dialog.accept();
    });
    connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    dialog.resize(dialog.fontMetrics().averageCharWidth() * 60, dialog.sizeHint().height());
    edit->setFocus();
    if (dialog.exec() != QDialog::Accepted)
        return false;
    name = edit->name();
    return true;
}
