#pragma once

#include "FindBar.h"
#include <QDockWidget>

class LogColors;
class QTextEdit;

/// The panel of the process log, in which lines are found by text and level. What the log says goes to the
/// terminal too, as it does without the panel.
class LogDock : public QDockWidget
{
    Q_OBJECT

public:
    explicit LogDock(QWidget* parent);

    FindBar* findBar() const { return _findBar; }

    /// Shows the panel with the last line that has this text, else the last line.
    void showLine(const QString& text);

signals:
    /// The user wants to see what a line speaks of: a double click on it, or Enter.
    void lineChosen(const QString& text);
    /// A grave line that nobody sees, as the panel is behind another one or put away.
    void told(const QString& text);

protected:
    /// Another palette asks for other colours of lines.
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void find(FindBar::Step step);
    void tellUnseen(int position, int removed, int added);

    QTextEdit* _pane;
    FindBar* _findBar;
    LogColors* _colors = nullptr; ///< the document of the pane owns it
};
