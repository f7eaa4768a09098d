#include "TextColors.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTextCursor>
#include <QTextDocument>
#include <QorCodeWidget.h>
#include <QorLogView.h>
#include <QorSyntaxHighlighter.h>
#include <array>

using Orvane::Qt4::QorLogView;
using Orvane::Qt4::QorSyntaxHighlighter;

namespace {

struct CodeColor
{
    QorSyntaxHighlighter::BlockType type;
    QRgb onLight;
    QRgb onDark;
};

const std::array<CodeColor, 7> codeColors = {{
    {QorSyntaxHighlighter::BLOCK_DEFAULT, 0xff000000, 0xffdee0e4},
    {QorSyntaxHighlighter::BLOCK_KEYWORD, 0xff0000d0, 0xff7fb4ff},
    {QorSyntaxHighlighter::BLOCK_BUILTIN_VARIABLE, 0xffb00058, 0xffff8fc0},
    {QorSyntaxHighlighter::BLOCK_RESERVED, 0xff8232b4, 0xffd0a0ff},
    {QorSyntaxHighlighter::BLOCK_BUILTIN_FUNCTION, 0xff4a7300, 0xffb5d86a},
    {QorSyntaxHighlighter::BLOCK_MULTILINE_COMMENT, 0xff007a28, 0xff6fcf8a},
    {QorSyntaxHighlighter::BLOCK_LINE_COMMENT, 0xff007a28, 0xff6fcf8a},
}};

/// By level: Log, Fatal, Warning, Notice, Info, Debug.
const std::array<QRgb, 6> logColorsOnDark = {0xff7fd48c, 0xffff7a70, 0xfff0b070,
                                             0xffdee0e4, 0xff8fb8ff, 0xffd0cc70};

/// Colours a whole text anew. `rehighlight` lays the text out again for every line, which takes minutes for a
/// long log; a change of nothing in all of it does so once. Steps that can be taken back are left alone.
void colorAnew(QSyntaxHighlighter& highlighter)
{
    QTextDocument* const text = highlighter.document();
    if (!text || text->isUndoAvailable() || text->isRedoAvailable()) {
        highlighter.rehighlight();
        return;
    }
    const bool keepsSteps = text->isUndoRedoEnabled();
    const bool isModified = text->isModified();
    text->setUndoRedoEnabled(false);
    QTextCursor all(text);
    all.select(QTextCursor::Document);
    all.mergeBlockFormat(QTextBlockFormat());
    text->setModified(isModified);
    text->setUndoRedoEnabled(keepsSteps);
}

} // namespace

bool isDark()
{
    return QGuiApplication::palette().color(QPalette::Base).lightness() < 128;
}

void colorCode(Orvane::Qt4::QorCodeWidget& widget)
{
    auto* const highlighter = widget.findChild<QorSyntaxHighlighter*>();
    const bool dark = isDark();
    if (!highlighter || highlighter->blockColor(QorSyntaxHighlighter::BLOCK_KEYWORD) ==
                            QColor(dark ? codeColors[1].onDark : codeColors[1].onLight))
        return;
    for (const CodeColor& each : codeColors)
        highlighter->setBlockColor(each.type, QColor(dark ? each.onDark : each.onLight));
    colorAnew(*highlighter);
}

int LogColors::levelOf(const QString& line)
{
    const QString word = line.left(line.indexOf(QLatin1Char(':')));
    const int level = QorLogView::logLevelIndex(word);
    return QorLogView::logLevelName(level) == word ? level : -1;
}

void LogColors::setDark(bool dark)
{
    if (_isDark == dark)
        return;
    _isDark = dark;
    colorAnew(*this);
}

void LogColors::highlightBlock(const QString& text)
{
    if (!_isDark)
        return;
    const int own = levelOf(text);
    const int level = own >= 0 ? own : qBound(0, previousBlockState(), 5);
    setCurrentBlockState(level);
    setFormat(0, text.size(), QColor(logColorsOnDark.at(static_cast<std::size_t>(level))));
}
