#pragma once

#include <QWidget>

class QComboBox;
class QLabel;
class QLineEdit;

/// The strip in which a panel is searched: a text, on demand a choice of what is compared with it, and how
/// many were found. It stands in its panel, hidden until it is opened, and asks the panel to go to a match.
/// Enter and Shift+Enter go on and back, Esc closes.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    enum Step : int { Here, Next, Previous };
    Q_ENUM(Step)

    /// \a searched gets the focus back when the bar closes. Without \a choices there is nothing to choose.
    FindBar(QWidget* searched, const QStringList& choices, QWidget* parent);

    QString text() const;
    void setText(const QString& text);
    /// Index of the choice; 0 without choices.
    int choice() const;
    void setChoice(int choice);
    /// True when a text contains what is searched for, in capitals or not.
    bool matches(const QString& text) const { return text.contains(this->text(), Qt::CaseInsensitive); }

    /// The one of \a count matches that a step leads to, behind the last comes the first; -1 for none.
    /// \a before of them stand before the present place, which with \a isMatch is one itself. Shows the
    /// outcome.
    int choose(Step step, int count, int before, bool isMatch);
    /// What was found: "2 of 7".
    QString outcome() const;

    /// Shows the bar with its panel, ready for a text.
    void open();
    /// Hides the bar.
    void dismiss();

signals:
    /// The panel is to go to a match. With the step `Here` the present place will do.
    void wanted(FindBar::Step step);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* _searched;
    QLineEdit* _text;
    QComboBox* _choice;
    QLabel* _outcome;
};
