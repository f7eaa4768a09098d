// Colours of long texts when the ground changes.
#include "TextColors.h"
#include <QTextEdit>
#include <QTextLayout>
#include <QorCodeWidget.h>
#include <QorSyntaxHighlighter.h>
#include <QtTest>

using namespace Orvane::Qt4;

class tst_TextColors : public QObject
{
    Q_OBJECT

private slots:
    void aLongLogChangesItsColours();
    void longCodeChangesItsColours();
    void stepsOfAnEditorAreKept();
};

namespace {

constexpr int lineCount = 50000;

QColor firstColour(const QTextBlock& block)
{
    const QVector<QTextLayout::FormatRange> formats = block.layout()->formats();
    return formats.isEmpty() ? QColor() : formats.first().format.foreground().color();
}

void setBase(const QColor& color)
{
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Base, color);
    QGuiApplication::setPalette(palette);
}

} // namespace

/// Line by line it would take longer than a test may.
void tst_TextColors::aLongLogChangesItsColours()
{
    QTextEdit pane;
    pane.setUndoRedoEnabled(false);
    pane.setPlainText(QStringLiteral("FATAL: something\n").repeated(lineCount));
    LogColors colors(pane.document());
    pane.show();
    QVERIFY(QTest::qWaitForWindowExposed(&pane));
    const QTextBlock last = pane.document()->findBlockByNumber(lineCount - 1);
    QVERIFY(!firstColour(last).isValid());
    colors.setDark(true);
    QVERIFY(firstColour(pane.document()->firstBlock()).lightness() > 128);
    QVERIFY(firstColour(last).lightness() > 128);
    colors.setDark(false);
    QVERIFY(!firstColour(last).isValid());
}

void tst_TextColors::longCodeChangesItsColours()
{
    const QPalette before = QGuiApplication::palette();
    setBase(Qt::white);
    QorCodeWidget widget(nullptr);
    widget.setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    widget.setCode(QStringLiteral("var x = 1;\n").repeated(lineCount), false);
    widget.show();
    QVERIFY(QTest::qWaitForWindowExposed(&widget));
    auto* const highlighter = widget.findChild<QorSyntaxHighlighter*>();
    const QTextDocument* const text = highlighter->document();
    colorCode(widget);
    const QColor onLight = firstColour(text->findBlockByNumber(lineCount - 1));
    QVERIFY(onLight.isValid());
    setBase(Qt::black);
    colorCode(widget);
    const QColor onDark = firstColour(text->findBlockByNumber(lineCount - 1));
    QVERIFY(onDark.isValid());
    QVERIFY(onDark.lightness() > onLight.lightness());
    QVERIFY(!widget.isModified());
    QVERIFY(text->isUndoRedoEnabled());
    QGuiApplication::setPalette(before);
}

void tst_TextColors::stepsOfAnEditorAreKept()
{
    const QPalette before = QGuiApplication::palette();
    setBase(Qt::white);
    QorCodeWidget widget(nullptr);
    widget.setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    widget.setCode(QStringLiteral("var x = 1;\n"), false);
    colorCode(widget);
    QTextDocument* const text = widget.findChild<QorSyntaxHighlighter*>()->document();
    QTextCursor(text).insertText(QStringLiteral("// y\n"));
    setBase(Qt::black);
    colorCode(widget);
    QVERIFY(text->isUndoAvailable());
    text->undo();
    QCOMPARE(text->toPlainText(), QStringLiteral("var x = 1;\n"));
    QVERIFY(firstColour(text->firstBlock()).isValid());
    QGuiApplication::setPalette(before);
}

QTEST_MAIN(tst_TextColors)
#include "tst_TextColors.moc"
