#pragma once

#include "HighlightPatterns.h"
#include "QorSyntaxHighlighter.h"
#include <QtCore/QRegExp>
#include <QtWidgets/QTextEdit>

/// What the highlighter is to do, rule by rule and straight from its expressions, at whatever it costs.
class PlainHighlighter : public QSyntaxHighlighter
{
public:
    using Kind = Orvane::Qt4::QorSyntaxHighlighter::BlockType;
    using Source = Orvane::Qt4::QorSyntaxHighlighter;
    using Language = Orvane::Qt4::QorCodeWidget::LanguageE;

    /// Fonts and colours are those of \a source; \a typeNames are the words of X3D.
    PlainHighlighter(QTextEdit* edit, Source& source, Language language, const QStringList& typeNames = {})
        : QSyntaxHighlighter(edit)
        , _source(source)
        , _language(language)
        , _typeName(QStringLiteral("\\b(") + typeNames.join(QLatin1Char('|')) + QStringLiteral(")\\b"))
    {
    }

protected:
    void highlightBlock(const QString& text) override
    {
        if (_language == Orvane::Qt4::QorCodeWidget::LANGUAGE_ECMA)
            paintEcma(text);
        else if (_language == Orvane::Qt4::QorCodeWidget::LANGUAGE_GLSL)
            paintGlsl(text);
        else
            paintX3D(text);
    }

private:
    QTextCharFormat format(int type) const
    {
        QTextCharFormat result;
        result.setFont(_source.blockFont(Kind(type)));
        result.setForeground(QBrush(_source.blockColor(Kind(type))));
        return result;
    }

    static int find(const QRegExp& expression, const QString& text, int from)
    {
        return expression.indexIn(text, from, QRegExp::CaretAtZero);
    }

    void paintEcma(const QString& text)
    {
        setFormat(0, text.length(), format(0));
        setCurrentBlockState(0);
        if (previousBlockState() > 0) {
            const int i = find(_commentEnd, text, 0);
            if (i >= 0) {
                setFormat(0, i + _commentEnd.matchedLength(), format(5));
            } else {
                setFormat(0, text.length(), format(5));
                setCurrentBlockState(1);
            }
            return;
        }
        paintWords(text, _ecmaKeyword, 1);
        paintLineComments(text);
        paintMultilineComments(text);
    }

    void paintGlsl(const QString& text)
    {
        setFormat(0, text.length(), _source.blockFont(Kind(0)));
        setCurrentBlockState(0);
        if (previousBlockState() > 0) {
            const int i = find(_commentEnd, text, 0);
            if (i >= 0) {
                setFormat(0, i + _commentEnd.matchedLength(), format(6));
            } else {
                setFormat(i, text.length() - i, format(6));
                setCurrentBlockState(1);
            }
            return;
        }
        int from = 0;
        for (int i = find(_variable, text, from); i >= 0; i = find(_variable, text, from)) {
            const int n = _variable.matchedLength();
            setFormat(i, n, format(2));
            from = i + n;
            const int s = find(_suffix, text, from);
            const int length = _suffix.matchedLength();
            if (s >= 0 && length > 0) {
                setFormat(s, length - 1, format(2));
                from = s + length - 1;
            }
        }
        paintWords(text, _glslKeyword, 1);
        paintWords(text, _function, 4);
        from = 0;
        for (int i = find(_preprocessor, text, from); i >= 0; i = find(_preprocessor, text, from)) {
            const int end = text.indexOf(_preprocessorEnd, i);
            if (end >= i)
                setFormat(i, end - i, format(4));
            from = end + 1;
        }
        paintLineComments(text);
        paintMultilineComments(text);
    }

    void paintX3D(const QString& text)
    {
        setFormat(0, text.length(), format(0));
        setCurrentBlockState(0);
        if (previousBlockState() <= 0)
            paintWords(text, _typeName, 1);
    }

    void paintWords(const QString& text, const QRegExp& expression, int type)
    {
        int from = 0;
        for (int i = find(expression, text, from); i >= 0; i = find(expression, text, from)) {
            const int n = expression.matchedLength();
            if (n <= 0)
                return;
            setFormat(i, n, format(type));
            from = i + n;
        }
    }

    void paintLineComments(const QString& text)
    {
        int from = 0;
        for (int i = find(_lineComment, text, from); i >= 0; i = find(_lineComment, text, from)) {
            const int end = text.indexOf(_lineEnd, i);
            if (end >= i) {
                setFormat(i, end - i, format(6));
                from = end + 1;
            } else {
                from = i + 2;
                setCurrentBlockState(1);
            }
        }
    }

    void paintMultilineComments(const QString& text)
    {
        int from = 0;
        for (int i = find(_commentStart, text, from); i >= 0; i = find(_commentStart, text, from)) {
            const int e = find(_commentEnd, text, i);
            if (e >= 0) {
                const int n = _commentEnd.matchedLength();
                setFormat(i, e + n - i, format(5));
                from = e + n + 1;
            } else {
                setFormat(i, text.length() - i, format(5));
                setCurrentBlockState(1);
                from = text.length();
            }
        }
    }

    static QRegExp expression(const char* pattern) { return QRegExp(QLatin1String(pattern)); }

    Source& _source;
    Language _language;
    QRegExp _typeName;
    QRegExp _ecmaKeyword = expression(HighlightPatterns::EcmaKeyword);
    QRegExp _glslKeyword = expression(HighlightPatterns::GlslKeyword);
    QRegExp _variable = expression(HighlightPatterns::GlslVariable);
    QRegExp _suffix = expression(HighlightPatterns::GlslSuffix);
    QRegExp _function = expression(HighlightPatterns::GlslFunction);
    QRegExp _preprocessor = expression(HighlightPatterns::Preprocessor);
    QRegExp _preprocessorEnd = expression(HighlightPatterns::PreprocessorEnd);
    QRegExp _lineComment = expression(HighlightPatterns::LineComment);
    QRegExp _lineEnd = expression(HighlightPatterns::LineEnd);
    QRegExp _commentStart = expression(HighlightPatterns::CommentStart);
    QRegExp _commentEnd = expression(HighlightPatterns::CommentEnd);
};
