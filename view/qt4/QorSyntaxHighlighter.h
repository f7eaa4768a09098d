#pragma once

#include "QorCodeWidget.h"
#include "QorExport.h"
#include "QorWordList.h"
#include <QtCore/QMap>
#include <QtCore/QRegExp>
#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QSyntaxHighlighter>
#include <array>

class QTextEdit;

namespace Orvane::Qt4 {

/// Colours the code in a text edit, which owns it. Each language has rules that run over a block of text in a
/// fixed order; where two of them colour the same characters the later one wins. The X3D language knows the
/// node types that the runtime knew when it was set.
class QOR_EXPORT QorSyntaxHighlighter : public QSyntaxHighlighter
{
    Q_OBJECT

public:
    /// Kinds of text, each with a font and a colour.
    enum BlockType : int {
        BLOCK_DEFAULT = 0,
        BLOCK_KEYWORD = 1,
        BLOCK_BUILTIN_VARIABLE = 2,
        BLOCK_RESERVED = 3,
        BLOCK_BUILTIN_FUNCTION = 4,
        BLOCK_MULTILINE_COMMENT = 5,
        BLOCK_LINE_COMMENT = 6
    };

    /// The rules of \a language find nothing until `setLanguage` is called.
    QorSyntaxHighlighter(QTextEdit* textEdit, QorCodeWidget::LanguageE language);
    ~QorSyntaxHighlighter() override;

    /// The language of the rules.
    QorCodeWidget::LanguageE language() const { return _language; }
    /// Prepares the rules of a language. The text keeps its colours until it is highlighted anew, as it does
    /// with the two setters below.
    void setLanguage(QorCodeWidget::LanguageE language);

    /// How a kind of text looks.
    QColor blockColor(BlockType type) const;
    QFont blockFont(BlockType type) const;
    void setBlockColor(BlockType type, const QColor& color);
    void setBlockFont(BlockType type, const QFont& font);

protected:
    void highlightBlock(const QString& text) override;

    void highlightJavaScript(const QString& text);
    void highlightGLSL(const QString& text);
    /// Cg is highlighted as GLSL.
    void highlightCG(const QString& text);
    void highlightX3D(const QString& text);
    /// Does nothing; no language is highlighted by it.
    void highlightParticleScript(const QString& text);

    void initEcmaRegExpressions();
    void initGlslRegExpressions();
    void initX3DRegExpressions();

private:
    void initCommentExpressions();
    void setKeywordPattern(const QString& pattern);
    void updateFormats();
    const QTextCharFormat& format(BlockType type) const;
    void formatWords(const QString& text, const QRegExp& expression, const QorWordList& words,
                     BlockType type);
    void formatBuiltinVariables(const QString& text);
    void formatPreprocessor(const QString& text);
    void formatComments(const QString& text);
    void formatLineComments(const QString& text);
    void formatMultilineComments(const QString& text);

    QorCodeWidget::LanguageE _language;
    QRegExp _builtinVariableExpr;
    QRegExp _builtinSuffixExpr;
    QRegExp _keywordExpr;
    QRegExp _builtinFunctionExpr;
    QRegExp _preprocessorExpr;
    QRegExp _preprocessorEndExpr;
    QRegExp _commentStartExpr;
    QRegExp _commentEndExpr;
    QRegExp _lineCommentExpr;
    QRegExp _lineEndExpr;
    QMap<BlockType, QFont> _blockFonts;
    QMap<BlockType, QColor> _blockColors;

    // What makes the rules quick: the words of expressions that are lists of words, and the ready formats.
    QorWordList _keywords;
    QorWordList _builtinFunctions;
    QorWordList _builtinVariables;
    std::array<QTextCharFormat, BLOCK_LINE_COMMENT + 1> _formats;
    QTextCharFormat _fontFormat; ///< the font of `BLOCK_DEFAULT` without its colour
};

} // namespace Orvane::Qt4
