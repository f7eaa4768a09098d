#include "QorSyntaxHighlighter.h"

#include "QorCodePatterns.h"
#include "QorTools.h"
#include <Orvane/NodeType.h>
#include <QtWidgets/QTextEdit>
#include <algorithm>
#include <vector>

namespace Orvane::Qt4 {

namespace {

// States of a block.
constexpr int OutsideComment = 0;
constexpr int InsideComment = 1;

int indexIn(const QRegExp& expression, const QString& text, int from)
{
    return expression.indexIn(text, from, QRegExp::CaretAtZero);
}

/// Where the control characters at the end of a text begin. The expression of a line's end matches there or
/// behind. It is run from there on: from further in front, each run of control characters on the way would
/// cost the square of its length.
int trailingControls(const QString& text)
{
    int end = text.size();
    while (end > 0 && (text.at(end - 1) == QLatin1Char('\n') || text.at(end - 1) == QLatin1Char('\r') ||
                       text.at(end - 1) == QLatin1Char('\f')))
        --end;
    return end;
}

} // namespace

QorSyntaxHighlighter::QorSyntaxHighlighter(QTextEdit* textEdit, QorCodeWidget::LanguageE language)
    : QSyntaxHighlighter(textEdit)
    , _language(language)
{
    _blockColors[BLOCK_DEFAULT] = QColor(0, 0, 0, 255);
    _blockColors[BLOCK_KEYWORD] = QColor(0, 0, 255, 255);
    _blockColors[BLOCK_BUILTIN_VARIABLE] = QColor(200, 0, 100, 255);
    _blockColors[BLOCK_RESERVED] = QColor(130, 50, 180, 255);
    _blockColors[BLOCK_BUILTIN_FUNCTION] = QColor(100, 155, 0, 255);
    _blockColors[BLOCK_MULTILINE_COMMENT] = QColor(10, 200, 50, 255);
    _blockColors[BLOCK_LINE_COMMENT] = QColor(10, 200, 50, 255);

    QFont font(QStringLiteral("SansSerif"), 8, QFont::Normal, false);
    font.setStyleHint(QFont::TypeWriter, QFont::PreferDefault);
    for (auto color = _blockColors.cbegin(); color != _blockColors.cend(); ++color)
        _blockFonts[color.key()] = font;
    updateFormats();
}

QorSyntaxHighlighter::~QorSyntaxHighlighter() = default;

void QorSyntaxHighlighter::setLanguage(QorCodeWidget::LanguageE language)
{
    _language = language;
    switch (language) {
    case QorCodeWidget::LANGUAGE_ECMA:
        initEcmaRegExpressions();
        break;
    case QorCodeWidget::LANGUAGE_GLSL:
    case QorCodeWidget::LANGUAGE_CG:
        initGlslRegExpressions();
        break;
    case QorCodeWidget::LANGUAGE_X3D:
        initX3DRegExpressions();
        break;
    case QorCodeWidget::LANGUAGE_NONE:
    case QorCodeWidget::LANGUAGE_PLAIN:
    case QorCodeWidget::LANGUAGE_OTHER:
        break;
    }
}

QColor QorSyntaxHighlighter::blockColor(BlockType type) const
{
    return _blockColors.value(type, QColor(0, 0, 0, 255));
}

QFont QorSyntaxHighlighter::blockFont(BlockType type) const
{
    const auto font = _blockFonts.constFind(type);
    return font == _blockFonts.cend() ? _blockFonts.value(BLOCK_DEFAULT) : *font;
}

void QorSyntaxHighlighter::setBlockColor(BlockType type, const QColor& color)
{
    _blockColors[type] = color;
    updateFormats();
}

void QorSyntaxHighlighter::setBlockFont(BlockType type, const QFont& font)
{
    _blockFonts[type] = font;
    updateFormats();
}

void QorSyntaxHighlighter::updateFormats()
{
    for (std::size_t i = 0; i < _formats.size(); ++i) {
        const auto type = static_cast<BlockType>(i);
        _formats[i] = QTextCharFormat();
        _formats[i].setFont(blockFont(type));
        _formats[i].setForeground(blockColor(type));
    }
    _fontFormat = QTextCharFormat();
    _fontFormat.setFont(blockFont(BLOCK_DEFAULT));
}

const QTextCharFormat& QorSyntaxHighlighter::format(BlockType type) const
{
    return _formats[static_cast<std::size_t>(type)];
}

void QorSyntaxHighlighter::initCommentExpressions()
{
    _lineCommentExpr.setPattern(QorCodePatterns::lineComment());
    _lineEndExpr.setPattern(QorCodePatterns::lineEnd());
    _commentStartExpr.setPattern(QorCodePatterns::commentStart());
    _commentEndExpr.setPattern(QorCodePatterns::commentEnd());
}

void QorSyntaxHighlighter::setKeywordPattern(const QString& pattern)
{
    _keywordExpr.setPattern(pattern);
    _keywords = QorWordList::fromPattern(pattern);
}

void QorSyntaxHighlighter::initEcmaRegExpressions()
{
    setKeywordPattern(QorCodePatterns::ecmaKeyword());
    initCommentExpressions();
}

void QorSyntaxHighlighter::initGlslRegExpressions()
{
    _builtinVariableExpr.setPattern(QorCodePatterns::glslVariable());
    _builtinVariables = QorWordList(QorCodePatterns::glslVariableNames());
    _builtinSuffixExpr.setPattern(QorCodePatterns::glslVariableSuffix());
    setKeywordPattern(QorCodePatterns::glslKeyword());
    _builtinFunctionExpr.setPattern(QorCodePatterns::glslFunction());
    _builtinFunctions = QorWordList::fromPattern(_builtinFunctionExpr.pattern());
    _preprocessorExpr.setPattern(QorCodePatterns::glslPreprocessor());
    _preprocessorEndExpr.setPattern(QorCodePatterns::preprocessorEnd());
    initCommentExpressions();
}

void QorSyntaxHighlighter::initX3DRegExpressions()
{
    std::vector<Orvane::NodeType*> types;
    Orvane::NodeType::getTypeVec(types, 1);
    QStringList names;
    for (const Orvane::NodeType* type : types)
        names << fromRuntime(type->name);
    setKeywordPattern(QorCodePatterns::anyOf(names));
}

void QorSyntaxHighlighter::highlightBlock(const QString& text)
{
    switch (_language) {
    case QorCodeWidget::LANGUAGE_ECMA:
        highlightJavaScript(text);
        break;
    case QorCodeWidget::LANGUAGE_GLSL:
        highlightGLSL(text);
        break;
    case QorCodeWidget::LANGUAGE_CG:
        highlightCG(text);
        break;
    case QorCodeWidget::LANGUAGE_X3D:
        highlightX3D(text);
        break;
    case QorCodeWidget::LANGUAGE_NONE:
    case QorCodeWidget::LANGUAGE_PLAIN:
    case QorCodeWidget::LANGUAGE_OTHER:
        break;
    }
}

void QorSyntaxHighlighter::highlightJavaScript(const QString& text)
{
    setFormat(0, text.size(), format(BLOCK_DEFAULT));
    setCurrentBlockState(OutsideComment);
    if (previousBlockState() > OutsideComment) {
        const int i = indexIn(_commentEndExpr, text, 0);
        const int end = i < 0 ? text.size() : i + _commentEndExpr.matchedLength();
        setFormat(0, end, format(BLOCK_MULTILINE_COMMENT));
        setCurrentBlockState(i < 0 ? InsideComment : OutsideComment);
        return;
    }
    formatWords(text, _keywordExpr, _keywords, BLOCK_KEYWORD);
    formatComments(text);
}

void QorSyntaxHighlighter::highlightGLSL(const QString& text)
{
    setFormat(0, text.size(), _fontFormat);
    setCurrentBlockState(OutsideComment);
    if (previousBlockState() > OutsideComment) {
        // The inner lines of a comment keep the colour of the editor.
        const int i = indexIn(_commentEndExpr, text, 0);
        if (i >= 0)
            setFormat(0, i + _commentEndExpr.matchedLength(), format(BLOCK_LINE_COMMENT));
        setCurrentBlockState(i < 0 ? InsideComment : OutsideComment);
        return;
    }
    formatBuiltinVariables(text);
    formatWords(text, _keywordExpr, _keywords, BLOCK_KEYWORD);
    formatWords(text, _builtinFunctionExpr, _builtinFunctions, BLOCK_BUILTIN_FUNCTION);
    formatPreprocessor(text);
    formatComments(text);
}

void QorSyntaxHighlighter::highlightCG(const QString& text)
{
    highlightGLSL(text);
}

void QorSyntaxHighlighter::highlightX3D(const QString& text)
{
    setFormat(0, text.size(), format(BLOCK_DEFAULT));
    setCurrentBlockState(OutsideComment);
    if (previousBlockState() > OutsideComment)
        return;
    formatWords(text, _keywordExpr, _keywords, BLOCK_KEYWORD);
}

void QorSyntaxHighlighter::highlightParticleScript(const QString&)
{
}

void QorSyntaxHighlighter::formatWords(const QString& text, const QRegExp& expression,
                                       const QorWordList& words, BlockType type)
{
    if (!words.isEmpty()) {
        for (auto word = words.find(text, 0); word.index >= 0;
             word = words.find(text, word.index + word.length))
            setFormat(word.index, word.length, format(type));
        return;
    }
    // A node type can have a name that is no word, and the expression can be empty: it then matches nothing
    // again and again.
    int from = 0;
    for (int i = indexIn(expression, text, from); i >= 0; i = indexIn(expression, text, from)) {
        const int length = expression.matchedLength();
        if (length <= 0)
            return;
        setFormat(i, length, format(type));
        from = i + length;
    }
}

void QorSyntaxHighlighter::formatBuiltinVariables(const QString& text)
{
    // The expression has some eighty branches: it is run where a name stands, and matches there.
    const QTextCharFormat& variable = format(BLOCK_BUILTIN_VARIABLE);
    for (auto name = _builtinVariables.find(text, 0); name.index >= 0;) {
        const int i = indexIn(_builtinVariableExpr, text, name.index);
        const int length = _builtinVariableExpr.matchedLength();
        if (i < 0 || length <= 0)
            return;
        setFormat(i, length, variable);
        int from = i + length;
        const int suffix = indexIn(_builtinSuffixExpr, text, from);
        const int suffixLength = _builtinSuffixExpr.matchedLength();
        if (suffix >= 0 && suffixLength > 0) {
            setFormat(suffix, suffixLength - 1, variable);
            from = suffix + suffixLength - 1;
        }
        name = _builtinVariables.find(text, from);
    }
}

void QorSyntaxHighlighter::formatPreprocessor(const QString& text)
{
    if (!text.contains(QLatin1Char('#')))
        return;
    int from = 0;
    for (int i = indexIn(_preprocessorExpr, text, from); i >= 0; i = indexIn(_preprocessorExpr, text, from)) {
        if (_preprocessorExpr.matchedLength() <= 0)
            return;
        int first = trailingControls(text);
        for (const QString& mark : {QStringLiteral("//"), QStringLiteral("/*")}) {
            const int place = text.indexOf(mark, i);
            if (place >= 0)
                first = std::min(first, place);
        }
        const int end = text.indexOf(_preprocessorEndExpr, std::max(i, first));
        if (end < i)
            return;
        setFormat(i, end - i, format(BLOCK_BUILTIN_FUNCTION));
        from = end + 1;
    }
}

void QorSyntaxHighlighter::formatComments(const QString& text)
{
    if (!text.contains(QLatin1Char('/')))
        return;
    formatLineComments(text);
    formatMultilineComments(text);
}

void QorSyntaxHighlighter::formatLineComments(const QString& text)
{
    int from = 0;
    for (int i = indexIn(_lineCommentExpr, text, from); i >= 0; i = indexIn(_lineCommentExpr, text, from)) {
        if (_lineCommentExpr.matchedLength() <= 0)
            return;
        const int end = text.indexOf(_lineEndExpr, std::max(i, trailingControls(text)));
        if (end >= i) {
            setFormat(i, end - i, format(BLOCK_LINE_COMMENT));
            from = end + 1;
        } else {
            from = i + 2;
            setCurrentBlockState(InsideComment);
        }
    }
}

void QorSyntaxHighlighter::formatMultilineComments(const QString& text)
{
    int from = 0;
    for (int i = indexIn(_commentStartExpr, text, from); i >= 0; i = indexIn(_commentStartExpr, text, from)) {
        if (_commentStartExpr.matchedLength() <= 0)
            return;
        const int close = indexIn(_commentEndExpr, text, i);
        const int end = close < 0 ? text.size() : close + _commentEndExpr.matchedLength();
        setFormat(i, end - i, format(BLOCK_MULTILINE_COMMENT));
        if (close < 0)
            setCurrentBlockState(InsideComment);
        from = close < 0 ? end : end + 1;
    }
}

} // namespace Orvane::Qt4
