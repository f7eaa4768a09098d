#pragma once

#include <QColor>
#include <QSyntaxHighlighter>

namespace Orvane::Qt4 {
class QorCodeWidget;
}

/// True while the program shows light writing on a dark ground.
bool isDark();

/// Gives the code of a widget colours that can be read on the ground of today.
void colorCode(Orvane::Qt4::QorCodeWidget& widget);

/// Colours the lines of the log by their levels on a dark ground, on which the colours of the log view cannot
/// be read. On a light one it leaves the text alone.
class LogColors : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    using QSyntaxHighlighter::QSyntaxHighlighter;

    /// Colours all lines anew when the ground has become another one.
    void setDark(bool dark);

    /// The level that a line begins with; -1 for a line that goes on with the one before.
    static int levelOf(const QString& line);

protected:
    void highlightBlock(const QString& text) override;

private:
    bool _isDark = false;
};
