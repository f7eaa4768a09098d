#include "QorLogLayout.h"
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtTest>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextEdit>
#include <functional>

using namespace Orvane::Qt4;

namespace {

/// A pane like the log's, with lines in several colours.
class Pane : public QTextEdit
{
public:
    explicit Pane(bool shapes = false)
    {
        setLineWrapMode(NoWrap);
        setUndoRedoEnabled(false);
        QFont font = this->font();
        font.setStyleStrategy(shapes ? QFont::PreferDefault : QFont::PreferNoShaping);
        setFont(font);
        QTextOption option = document()->defaultTextOption();
        option.setTextDirection(Qt::LeftToRight);
        document()->setDefaultTextOption(option);
        resize(300, 200);
    }
    void write(const QString& text)
    {
        QTextCursor end(document());
        end.movePosition(QTextCursor::End);
        QTextCharFormat format;
        format.setForeground(text.size() % 2 ? Qt::red : Qt::blue);
        end.insertText(text, format);
    }
    int positionAt(double x, double y) const
    {
        return document()->documentLayout()->hitTest(QPointF(x, y), Qt::FuzzyHit);
    }
    QImage picture() { return viewport()->grab().toImage(); }
    /// Lays out and paints what has changed, as an event loop does.
    void settle()
    {
        show();
        QCoreApplication::processEvents();
    }
};

/// One pane with the layout, beside one with that of Qt, which gets the same.
class PanePair
{
public:
    explicit PanePair(bool shapes = false)
        : ours(shapes)
        , theirs(shapes)
    {
        auto* layout = new QorLogLayout(ours.document());
        layout->setPaintDevice(ours.viewport());
        ours.document()->setDocumentLayout(layout);
        settle();
    }
    void each(const std::function<void(Pane&)>& change)
    {
        change(ours);
        change(theirs);
        settle();
    }
    void write(const QString& text)
    {
        each([&](Pane& pane) { pane.write(text); });
    }
    void settle()
    {
        ours.settle();
        theirs.settle();
    }

    /// In what the panes are not alike.
    QStringList differences()
    {
        QStringList list;
        const auto compare = [&list](const char* what, const auto& found, const auto& wanted, auto slack) {
            if (!(qAbs(found - wanted) <= slack))
                list << QStringLiteral("%1: %2 for %3").arg(QLatin1String(what)).arg(found).arg(wanted);
        };
        const QSizeF size = ours.document()->size();
        const QSizeF wantedSize = theirs.document()->size();
        compare("height", size.height(), wantedSize.height(), 0.01);
        compare("width", size.width(), wantedSize.width(), 0.5);
        const auto compareBars = [&compare](const QScrollBar& bar, const QScrollBar& wanted) {
            compare("end of the scroll bar", bar.maximum(), wanted.maximum(), 1);
            compare("scroll bar", bar.value(), wanted.value(), 0);
        };
        compareBars(*ours.verticalScrollBar(), *theirs.verticalScrollBar());
        compareBars(*ours.horizontalScrollBar(), *theirs.horizontalScrollBar());
        compare("x of the cursor", ours.cursorRect().x(), theirs.cursorRect().x(), 0);
        compare("y of the cursor", ours.cursorRect().y(), theirs.cursorRect().y(), 0);
        // Lines begin at whole pixels; Qt gives such a place to the line above.
        const int scrolled = ours.verticalScrollBar()->value();
        for (double y = scrolled - 9.5; y < scrolled + 220.0; y += 7.0) {
            for (double x = -10.0; x < 320.0; x += 23.0)
                compare(qPrintable(QStringLiteral("at %1, %2").arg(x).arg(y)), ours.positionAt(x, y),
                        theirs.positionAt(x, y), 0);
        }
        if (ours.picture() != theirs.picture())
            list << QStringLiteral("pictures");
        return list;
    }

    Pane ours;
    Pane theirs;
};

#define COMPARE_PANES(panes)                                                                                 \
    do {                                                                                                     \
        const QStringList differences = (panes).differences();                                               \
        QVERIFY2(differences.isEmpty(), qPrintable(differences.join(QLatin1String("; "))));                  \
    } while (false)

QString manyLines(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QStringLiteral("NOTICE: line %1%2\n").arg(i).arg(QString(i % 40, QLatin1Char('W')));
    return text;
}

} // namespace

/// The layout of the log, beside that of Qt for texts of the same font that are not wrapped.
class tst_QorLogLayout : public QObject
{
    Q_OBJECT

private slots:
    void emptyDocumentHasOneLine();
    void linesStandWhereQtPutsThem();
    void uncommonLettersAreMeasured_data();
    void uncommonLettersAreMeasured();
    void scrolledLinesArePainted();
    void linesThatGoTakeTheirWidthAlong();
    void changesInTheMiddleMoveWhatFollows();
    void selectionsAndCursorArePainted();
    void cursorMovesThroughLinesNeverSeen();
    void fontOfTheDocumentCounts();
    void lettersThatPullTogetherAreMeasured();
    void onlyWhatIsSeenIsLaidOut();
    void exactHitsLieOnText();
};

void tst_QorLogLayout::emptyDocumentHasOneLine()
{
    PanePair panes;
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::linesStandWhereQtPutsThem()
{
    PanePair panes;
    panes.write(QStringLiteral("FATAL: first\n"));
    COMPARE_PANES(panes);
    panes.write(QStringLiteral("WARNING: second, without an end"));
    panes.write(QStringLiteral(" and more of it\n\nNOTICE: fourth\r\nfifth"));
    QCOMPARE(panes.ours.document()->blockCount(), 5);
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::uncommonLettersAreMeasured_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("tabulators") << QStringLiteral("a\tb\t\tc");
    QTest::newRow("accents") << QStringLiteral("Gr\u00f6\u00dfe, e\u0301 and \u03c0");
    QTest::newRow("ideographs") << QStringLiteral("\u4e16\u754c \u4e16\u754c");
    QTest::newRow("right to left") << QStringLiteral("\u05e9\u05dc\u05d5\u05dd, then left");
    QTest::newRow("lines of a block") << QStringLiteral("above\u2028below, which is wider");
    QTest::newRow("control characters") << QStringLiteral("a\u0001b\u007fc\u00a0d");
    QTest::newRow("outside of the basic plane") << QString::fromUtf8("\xF0\x9F\x98\x80 end");
}

void tst_QorLogLayout::uncommonLettersAreMeasured()
{
    QFETCH(QString, text);
    PanePair panes;
    panes.write(QStringLiteral("before\n"));
    panes.write(text + QStringLiteral("\n"));
    panes.write(QStringLiteral("after"));
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::scrolledLinesArePainted()
{
    PanePair panes;
    panes.write(manyLines(300));
    for (const int y : {1, 150, 2000, 100000}) {
        panes.each([y](Pane& pane) {
            pane.verticalScrollBar()->setValue(y);
            pane.horizontalScrollBar()->setValue(y / 10);
        });
        COMPARE_PANES(panes);
    }
}

void tst_QorLogLayout::linesThatGoTakeTheirWidthAlong()
{
    PanePair panes;
    panes.write(QStringLiteral("short\n") + QString(200, QLatin1Char('W')));
    QVERIFY(panes.ours.horizontalScrollBar()->maximum() > 0);
    COMPARE_PANES(panes);
    // The last line is replaced, as one that is repeated is.
    panes.each([](Pane& pane) {
        QTextCursor cursor(pane.document());
        cursor.setPosition(6);
        cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
        cursor.insertText(QStringLiteral("narrow [1]"));
    });
    QCOMPARE(panes.ours.horizontalScrollBar()->maximum(), 0);
    COMPARE_PANES(panes);
    panes.write(manyLines(100));
    panes.each([](Pane& pane) { pane.clear(); });
    QCOMPARE(panes.ours.verticalScrollBar()->maximum(), 0);
    COMPARE_PANES(panes);
    panes.write(QStringLiteral("again\n"));
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::changesInTheMiddleMoveWhatFollows()
{
    PanePair panes;
    panes.write(manyLines(8));
    const auto change = [&panes](int from, int to, const QString& text) {
        panes.each([&](Pane& pane) {
            QTextCursor cursor(pane.document());
            cursor.setPosition(pane.document()->findBlockByNumber(from).position() + 3);
            cursor.setPosition(pane.document()->findBlockByNumber(to).position() + 3,
                               QTextCursor::KeepAnchor);
            cursor.insertText(text);
        });
    };
    change(2, 2, QStringLiteral("one\ntwo\nthree\n"));
    QCOMPARE(panes.ours.document()->blockCount(), 12);
    COMPARE_PANES(panes);
    change(1, 6, QStringLiteral("\u4e16\u2028"));
    QCOMPARE(panes.ours.document()->blockCount(), 7);
    COMPARE_PANES(panes);
    // Two places in one step, of which the later one is changed first.
    panes.each([](Pane& pane) {
        QTextCursor cursor(pane.document());
        cursor.beginEditBlock();
        cursor.movePosition(QTextCursor::End);
        cursor.insertText(QStringLiteral("end\nof all\n"));
        cursor.movePosition(QTextCursor::Start);
        cursor.insertText(QStringLiteral("head\n"));
        cursor.endEditBlock();
    });
    COMPARE_PANES(panes);
    panes.each([](Pane& pane) {
        pane.selectAll();
        pane.textCursor().removeSelectedText();
    });
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::selectionsAndCursorArePainted()
{
    PanePair panes;
    panes.write(manyLines(6));
    panes.each([](Pane& pane) {
        QTextCursor cursor(pane.document());
        cursor.setPosition(8);
        cursor.setPosition(60, QTextCursor::KeepAnchor);
        pane.setTextCursor(cursor);
    });
    const QImage selected = panes.ours.picture();
    COMPARE_PANES(panes);
    panes.each([](Pane& pane) { pane.moveCursor(QTextCursor::Start); });
    QVERIFY(panes.ours.picture() != selected);
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::cursorMovesThroughLinesNeverSeen()
{
    PanePair panes;
    panes.write(manyLines(200));
    for (const auto move : {QTextCursor::Start, QTextCursor::Down, QTextCursor::EndOfLine, QTextCursor::Down,
                            QTextCursor::End, QTextCursor::Up, QTextCursor::Up, QTextCursor::StartOfLine})
    {
        panes.each([move](Pane& pane) { pane.moveCursor(move); });
        QCOMPARE(panes.ours.textCursor().position(), panes.theirs.textCursor().position());
        COMPARE_PANES(panes);
    }
}

void tst_QorLogLayout::fontOfTheDocumentCounts()
{
    PanePair panes;
    panes.write(manyLines(30));
    const QSizeF before = panes.ours.document()->size();
    panes.each([](Pane& pane) {
        QFont font = pane.font();
        font.setPointSize(2 * font.pointSize());
        pane.setFont(font);
    });
    QVERIFY(panes.ours.document()->size().height() > 1.5 * before.height());
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::lettersThatPullTogetherAreMeasured()
{
    PanePair panes(true);
    panes.write(QStringLiteral("AVAVAVAVAVAVAVAVAVAVAVAVAVA fi ffl To Ty\n"));
    COMPARE_PANES(panes);
}

void tst_QorLogLayout::onlyWhatIsSeenIsLaidOut()
{
    PanePair panes;
    panes.write(manyLines(500));
    const QTextDocument& document = *panes.ours.document();
    QVERIFY(document.findBlockByNumber(0).layout()->lineCount() == 1);
    QCOMPARE(document.findBlockByNumber(400).layout()->lineCount(), 0);
    QVERIFY(document.documentLayout()->blockBoundingRect(document.findBlockByNumber(400)).isValid());
    QCOMPARE(document.findBlockByNumber(400).layout()->lineCount(), 1);
    QVERIFY(document.documentLayout()->blockBoundingRect(QTextBlock()).isNull());
}

void tst_QorLogLayout::exactHitsLieOnText()
{
    PanePair panes;
    panes.write(QStringLiteral("some text"));
    const QAbstractTextDocumentLayout& layout = *panes.ours.document()->documentLayout();
    QCOMPARE(layout.pageCount(), 1);
    QCOMPARE(layout.hitTest(QPointF(1000, 10), Qt::ExactHit), -1);
    QCOMPARE(layout.hitTest(QPointF(1000, 10), Qt::FuzzyHit), 9);
    QCOMPARE(layout.hitTest(QPointF(-5, 1000), Qt::FuzzyHit), 9);
    QCOMPARE(layout.hitTest(QPointF(1000, -5), Qt::FuzzyHit), 0);
    const QPointF onText = layout.blockBoundingRect(panes.ours.document()->begin()).center();
    const int hit = layout.hitTest(onText, Qt::ExactHit);
    QVERIFY(hit > 0 && hit < 9);
    QCOMPARE(layout.frameBoundingRect(nullptr).size(), panes.ours.document()->size());
}

QTEST_MAIN(tst_QorLogLayout)
#include "tst_QorLogLayout.moc"
