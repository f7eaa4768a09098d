#include "FindBar.h"

#include "Icons.h"
#include <QComboBox>
#include <QDockWidget>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

FindBar::FindBar(QWidget* searched, const QStringList& choices, QWidget* parent)
    : QWidget(parent)
    , _searched(searched)
    , _text(new QLineEdit(this))
    , _choice(new QComboBox(this))
    , _outcome(new QLabel(this))
{
    setObjectName(QStringLiteral("findBar"));
    _text->setPlaceholderText(tr("Find"));
    _text->setClearButtonEnabled(true);
    _text->setAccessibleName(tr("Text to find"));
    _choice->addItems(choices);
    _choice->setVisible(!choices.isEmpty());
    // The text has the room, in narrow panels too.
    _choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    _choice->setMinimumContentsLength(7);
    _text->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
    _choice->setAccessibleName(tr("Where to look"));
    // Long enough for most, so that the buttons keep their places.
    _outcome->setMinimumWidth(fontMetrics().horizontalAdvance(tr("%1 of %2").arg(88).arg(88)));

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_text, 1);
    layout->addWidget(_choice);
    layout->addWidget(_outcome);
    const auto addButton = [&](Drawing icon, const QString& name, auto action) {
        auto* button = new QToolButton(this);
        button->setAutoRaise(true);
        button->setIcon(drawnIcon(icon));
        button->setToolTip(name);
        button->setAccessibleName(name);
        connect(button, &QToolButton::clicked, this, action);
        layout->addWidget(button);
    };
    addButton(Drawing::Up, tr("Previous match"), [this] { emit wanted(Previous); });
    addButton(Drawing::Down, tr("Next match"), [this] { emit wanted(Next); });
    addButton(Drawing::Close, tr("Close"), [this] { dismiss(); });

    connect(_text, &QLineEdit::textChanged, this, [this] { emit wanted(Here); });
    connect(_choice, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { emit wanted(Here); });
    setFocusProxy(_text);
    hide();
}

QString FindBar::text() const
{
    return _text->text();
}

void FindBar::setText(const QString& text)
{
    _text->setText(text);
}

int FindBar::choice() const
{
    return qMax(0, _choice->currentIndex());
}

void FindBar::setChoice(int choice)
{
    _choice->setCurrentIndex(choice);
}

QString FindBar::outcome() const
{
    return _outcome->text();
}

int FindBar::choose(Step step, int count, int before, bool isMatch)
{
    if (count <= 0) {
        _outcome->setText(text().isEmpty() && choice() == 0 ? QString() : tr("None"));
        return -1;
    }
    int match = before;
    if (step == Next && isMatch)
        ++match;
    else if (step == Previous)
        match += count - 1;
    match %= count;
    _outcome->setText(tr("%1 of %2").arg(match + 1).arg(count));
    return match;
}

void FindBar::open()
{
    for (QWidget* panel = parentWidget(); panel; panel = panel->parentWidget()) {
        if (auto* dock = qobject_cast<QDockWidget*>(panel)) {
            dock->show();
            dock->raise();
            break;
        }
    }
    show();
    _text->setFocus(Qt::ShortcutFocusReason);
    _text->selectAll();
}

void FindBar::dismiss()
{
    hide();
    _searched->setFocus(Qt::OtherFocusReason);
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        emit wanted(event->modifiers() & Qt::ShiftModifier ? Previous : Next);
    else
        QWidget::keyPressEvent(event);
}
