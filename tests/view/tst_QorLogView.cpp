#include "LogText.h"
#include "QorLogView.h"
#include <OpenSG/OSGLock.h>
#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QTimerEvent>
#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QTextBlock>
#include <QtTest>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTextEdit>
#include <thread>

using namespace Orvane::Qt4;

namespace {

/// A view that writes when the test says so.
class View : public QorLogView
{
public:
    View()
        : _timer(QAbstractEventDispatcher::instance()->registeredTimers(this).first().timerId)
    {
    }

    using QorLogView::destroy;
    using QorLogView::printLine;

    void print()
    {
        QTimerEvent event(_timer);
        QorLogView::timerEvent(&event);
    }
    void give(const QByteArray& text) { addLogData(text.constData(), text.size()); }
    /// Gives entries and writes them as one batch.
    void batch(const QByteArrayList& entries)
    {
        for (const QByteArray& entry : entries)
            give(entry);
        print();
    }
    void otherTimer()
    {
        QTimerEvent event(_timer + 1000);
        QorLogView::timerEvent(&event);
    }

    int interval() const
    {
        return QAbstractEventDispatcher::instance()
            ->registeredTimers(const_cast<View*>(this))
            .first()
            .interval;
    }

    template <class Widget>
    Widget* child(const char* name) const
    {
        return findChild<Widget*>(QString::fromLatin1(name));
    }
    QTextEdit* pane() const { return child<QTextEdit>("textView"); }
    QString text() const { return pane()->toPlainText(); }
    /// Colour of the text at a place of the pane; invalid when it has none of its own.
    QColor colorAt(int position) const
    {
        QTextCursor cursor(pane()->document());
        cursor.setPosition(position + 1);
        const QBrush brush = cursor.charFormat().foreground();
        return brush.style() == Qt::NoBrush ? QColor() : brush.color();
    }

protected:
    void timerEvent(QTimerEvent*) override {}

private:
    int _timer;
};

} // namespace

class tst_QorLogView : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void formHasItsWidgetsInOrder();
    void paneIsPlainReadOnlyAndUnwrapped();
    void levelsHaveTheirTexts();

    void viewTakesTheLogOver();
    void chunksKeptBeforeComeFirst();
    void controlsShowTheStateOfTheLog();
    void boxesSwitchElementsOfTheHeader_data();
    void boxesSwitchElementsOfTheHeader();
    void lineBreakElementsHaveNoBox();
    void comboBoxSetsTheLevelOfTheProcess();
    void levelIsSetByNameAndNumber();
    void levelOutsideTheRangeIsMovedIntoIt();
    void namesAndNumbersOfLevels();
    void logStaysABufferLogAfterTheView();
    void lastOfTwoViewsIsGivenTheLines();
    void viewMakesALogWhenThereIsNone();
    void controlsWorkAfterTheLogHasGone();

    void entriesWaitForTheTimer();
    void timerWritesFiveTimesASecond();
    void anotherTimerWritesNothing();
    void emptyEntriesAreDropped();
    void oneCallIsOneEntry();
    void firstLetterGivesTheColour_data();
    void firstLetterGivesTheColour();

    void repeatsInOneBatchAreFolded();
    void repeatsBeforeAnotherLineAreCountedThen();
    void counterGoesOnInTheNextBatch();
    void repeatsAreWrittenWithoutTheFilter();
    void counterOfAFilterThatWasTakenOffIsWritten();
    void entryOfSeveralLinesIsFoldedAsOne();
    void entryWithoutLineEndIsFolded();
    void countStandsBeforeAnyLineEnd();
    void foldedLineKeepsItsColour();
    void printLineWithACountTakesThePlaceOfTheLastEntry();
    void printLineDropsAnEmptyLine();

    void clearForgetsTheLastLine();
    void clearButtonClears();
    void clearKeepsWhatWaits();
    void saveButtonDoesNothing();
    void fontSizeOfThePane();
    void userAtTheEndStaysThere();
    void userWhoScrolledUpStays();
    void largeBatchEndsAtItsEnd();

    void textIsReadAsUtf8OrLatin1();
    void nullsAndBrokenUtf8AreKept();
    void hugeEntryIsShownWhole();
    void undoIsOff();
};

void tst_QorLogView::init()
{
    osg::doInitLog();
    osg::osgLogP->setLogType(osg::LOG_NONE, true);
    osg::osgLogP->setLogLevel(osg::LOG_NOTICE, true);
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER, true);
    osg::osgLogP->getLogBuf().clearChunkBag();
    osg::osgLogP->getLogBuf().setEnabled(true);
}

void tst_QorLogView::formHasItsWidgetsInOrder()
{
    View view;
    QCOMPARE(view.windowTitle(), QStringLiteral("LogView"));
    QCOMPARE(view.size(), QSize(684, 130));
    QVERIFY(!view.acceptDrops());
    QCOMPARE(view.sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred));
    auto* column = qobject_cast<QVBoxLayout*>(view.layout());
    QVERIFY(column);
    QCOMPARE(column->objectName(), QStringLiteral("vboxLayout"));
    QCOMPARE(column->spacing(), 4);
    QCOMPARE(column->contentsMargins(), QMargins(2, 2, 2, 2));
    QCOMPARE(column->itemAt(0)->widget()->objectName(), QStringLiteral("textView"));
    auto* row = qobject_cast<QHBoxLayout*>(column->itemAt(1)->layout());
    QVERIFY(row);
    QCOMPARE(row->spacing(), 6);
    QCOMPARE(row->contentsMargins(), QMargins(0, 0, 0, 0));

    QStringList names;
    QStringList texts;
    for (int i = 0; i < row->count(); ++i) {
        QWidget* widget = row->itemAt(i)->widget();
        names += widget ? widget->objectName() : QStringLiteral("-");
        if (auto* button = qobject_cast<QAbstractButton*>(widget))
            texts += button->text();
        else if (auto* label = qobject_cast<QLabel*>(widget))
            texts += label->text();
    }
    const QStringList expectedNames = {
        QStringLiteral("levelCheck"),  QStringLiteral("timeStampCheck"), QStringLiteral("moduleCheck"),
        QStringLiteral("fileCheck"),   QStringLiteral("lineCheck"),      QStringLiteral("line1"),
        QStringLiteral("textLabel1"),  QStringLiteral("levelComboBox"),  QStringLiteral("-"),
        QStringLiteral("clearButton"), QStringLiteral("pushButton2")};
    QCOMPARE(names, expectedNames);
    const QStringList expectedTexts = {QStringLiteral("Level"),  QStringLiteral("TimeStamp"),
                                       QStringLiteral("Module"), QStringLiteral("File"),
                                       QStringLiteral("Line"),   QStringLiteral("Level:"),
                                       QStringLiteral("Clear"),  QStringLiteral("Save")};
    QCOMPARE(texts, expectedTexts);
    const QSpacerItem* spacer = row->itemAt(8)->spacerItem();
    QCOMPARE(spacer->sizeHint(), QSize(21, 16));
    QCOMPARE(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));
    auto* line = view.child<QFrame>("line1");
    QCOMPARE(line->frameShape(), QFrame::VLine);
    QCOMPARE(line->frameShadow(), QFrame::Sunken);
}

void tst_QorLogView::paneIsPlainReadOnlyAndUnwrapped()
{
    View view;
    QVERIFY(view.pane()->isReadOnly());
    QVERIFY(!view.pane()->acceptRichText());
    QCOMPARE(view.pane()->lineWrapMode(), QTextEdit::NoWrap);
    QCOMPARE(view.pane()->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred));
}

void tst_QorLogView::levelsHaveTheirTexts()
{
    View view;
    auto* box = view.child<QComboBox>("levelComboBox");
    QStringList texts;
    for (int i = 0; i < box->count(); ++i)
        texts += box->itemText(i);
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("Log Fatal Warning Notice Info Debug"));
}

void tst_QorLogView::viewTakesTheLogOver()
{
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER | osg::LOG_COLOR_HEADER, true);
    View view;
    QCOMPARE(osg::osgLogP->getLogType(), osg::LOG_BUFFER);
    QVERIFY(!osg::osgLogP->hasHeaderElem(osg::LOG_COLOR_HEADER));
    QVERIFY(!osg::osgLogP->getLogBuf().getEnabled());
    logText(osg::LOG_WARNING, "from the log\n");
    view.print();
    QCOMPARE(view.text(), QStringLiteral("WARNING:  from the log\n"));
}

void tst_QorLogView::chunksKeptBeforeComeFirst()
{
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    logText(osg::LOG_WARNING, "early\n");
    {
        View view;
        logText(osg::LOG_WARNING, "late\n");
        view.print();
        QCOMPARE(view.text(), QStringLiteral("WARNING:  early\nWARNING:  late\n"));
    }
    View second;
    second.print();
    QCOMPARE(second.text(), QString());
}

void tst_QorLogView::controlsShowTheStateOfTheLog()
{
    osg::osgLogP->setHeaderElem(osg::LOG_TYPE_HEADER | osg::LOG_MODULE_HEADER | osg::LOG_LINE_HEADER, true);
    osg::osgLogP->setLogLevel(osg::LOG_INFO, true);
    View view;
    QVERIFY(view.child<QCheckBox>("levelCheck")->isChecked());
    QVERIFY(!view.child<QCheckBox>("timeStampCheck")->isChecked());
    QVERIFY(view.child<QCheckBox>("moduleCheck")->isChecked());
    QVERIFY(!view.child<QCheckBox>("fileCheck")->isChecked());
    QVERIFY(view.child<QCheckBox>("lineCheck")->isChecked());
    QCOMPARE(view.child<QComboBox>("levelComboBox")->currentIndex(), 4);
}

void tst_QorLogView::boxesSwitchElementsOfTheHeader_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::addColumn<int>("element");
    QTest::addColumn<QByteArray>("slot");
    QTest::newRow("level") << QByteArray("levelCheck") << 2 << QByteArray("enableTypeElement");
    QTest::newRow("time stamp") << QByteArray("timeStampCheck") << 4 << QByteArray("enableTimeStampElement");
    QTest::newRow("module") << QByteArray("moduleCheck") << 8 << QByteArray("enableModuleElement");
    QTest::newRow("file") << QByteArray("fileCheck") << 16 << QByteArray("enableFileElement");
    QTest::newRow("line") << QByteArray("lineCheck") << 32 << QByteArray("enableLineElement");
}

void tst_QorLogView::boxesSwitchElementsOfTheHeader()
{
    QFETCH(QByteArray, box);
    QFETCH(int, element);
    QFETCH(QByteArray, slot);
    osg::osgLogP->setHeaderElem(0, true);
    View view;
    auto* check = view.child<QCheckBox>(box.constData());
    const auto bit = static_cast<osg::LogHeaderElem>(element);
    QVERIFY(!check->isChecked());
    check->click();
    QVERIFY(osg::osgLogP->hasHeaderElem(bit));
    check->click();
    QVERIFY(!osg::osgLogP->hasHeaderElem(bit));
    QVERIFY(QMetaObject::invokeMethod(&view, slot.constData(), Q_ARG(bool, true)));
    QVERIFY(check->isChecked());
    QVERIFY(osg::osgLogP->hasHeaderElem(bit));
    QVERIFY(QMetaObject::invokeMethod(&view, slot.constData(), Q_ARG(bool, false)));
    QVERIFY(!check->isChecked());
    QVERIFY(!osg::osgLogP->hasHeaderElem(bit));
}

void tst_QorLogView::lineBreakElementsHaveNoBox()
{
    View view;
    view.beginNewLineElem(true);
    QVERIFY(osg::osgLogP->hasHeaderElem(osg::LOG_BEGIN_NEWLINE_HEADER));
    view.beginNewLineElem(false);
    QVERIFY(!osg::osgLogP->hasHeaderElem(osg::LOG_BEGIN_NEWLINE_HEADER));
    view.endNewLineElem(true);
    QVERIFY(osg::osgLogP->hasHeaderElem(osg::LOG_END_NEWLINE_HEADER));
    view.endNewLineElem(false);
    QVERIFY(!osg::osgLogP->hasHeaderElem(osg::LOG_END_NEWLINE_HEADER));
}

void tst_QorLogView::comboBoxSetsTheLevelOfTheProcess()
{
    View view;
    view.show();
    auto* box = view.child<QComboBox>("levelComboBox");
    QCOMPARE(box->currentIndex(), 3);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_INFO);
}

void tst_QorLogView::levelIsSetByNameAndNumber()
{
    View view;
    view.setLevel(5);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_DEBUG);
    QCOMPARE(view.child<QComboBox>("levelComboBox")->currentIndex(), 5);
    view.setLevel(QStringLiteral("WARNING"));
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_WARNING);
    QCOMPARE(view.child<QComboBox>("levelComboBox")->currentIndex(), 2);
    view.setLevel(QStringLiteral("no level"));
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_LOG);
    QCOMPARE(view.child<QComboBox>("levelComboBox")->currentIndex(), 0);
}

void tst_QorLogView::levelOutsideTheRangeIsMovedIntoIt()
{
    View view;
    view.setLevel(99);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_DEBUG);
    view.setLevel(-7);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_LOG);
    QCOMPARE(view.child<QComboBox>("levelComboBox")->currentIndex(), -1);
}

void tst_QorLogView::namesAndNumbersOfLevels()
{
    const QStringList names = {QStringLiteral("LOG"),    QStringLiteral("FATAL"), QStringLiteral("WARNING"),
                               QStringLiteral("NOTICE"), QStringLiteral("INFO"),  QStringLiteral("DEBUG")};
    for (int i = 0; i < names.size(); ++i) {
        QCOMPARE(QorLogView::logLevelName(i), names.at(i));
        QCOMPARE(QorLogView::logLevelIndex(names.at(i)), i);
    }
    QCOMPARE(QorLogView::logLevelName(99), QStringLiteral("DEBUG"));
    QCOMPARE(QorLogView::logLevelName(-1), QStringLiteral("DEBUG"));
    QCOMPARE(QorLogView::logLevelIndex(QStringLiteral("Fatal")), 0);
    QCOMPARE(QorLogView::logLevelIndex(QString()), 0);
}

void tst_QorLogView::logStaysABufferLogAfterTheView()
{
    {
        View view;
    }
    QCOMPARE(osg::osgLogP->getLogType(), osg::LOG_BUFFER);
    QVERIFY(osg::osgLogP->getLogBuf().getEnabled());
    logText(osg::LOG_WARNING, "in between\n");
    View next;
    next.print();
    QCOMPARE(next.text(), QStringLiteral("WARNING:  in between\n"));
}

void tst_QorLogView::lastOfTwoViewsIsGivenTheLines()
{
    View first;
    auto second = std::make_unique<View>();
    logText(osg::LOG_WARNING, "one\n");
    first.print();
    second->print();
    QCOMPARE(first.text(), QString());
    QCOMPARE(second->text(), QStringLiteral("WARNING:  one\n"));
    second.reset();
    logText(osg::LOG_WARNING, "two\n");
    first.print();
    QCOMPARE(first.text(), QString());
}

void tst_QorLogView::viewMakesALogWhenThereIsNone()
{
    osg::doExitLog();
    QVERIFY(!osg::osgLogP);
    View view;
    QVERIFY(osg::osgLogP);
    QCOMPARE(osg::osgLogP->getLogType(), osg::LOG_BUFFER);
}

void tst_QorLogView::controlsWorkAfterTheLogHasGone()
{
    View view;
    osg::doExitLog();
    view.setLevel(4);
    QCOMPARE(osg::osgLogP->getLogLevel(), osg::LOG_INFO);
    osg::doExitLog();
    view.enableLineElement(true);
    QVERIFY(osg::osgLogP->hasHeaderElem(osg::LOG_LINE_HEADER));
    osg::doExitLog();
    view.give("still taken\n");
    view.print();
    QCOMPARE(view.text(), QStringLiteral("still taken\n"));
}

void tst_QorLogView::entriesWaitForTheTimer()
{
    View view;
    view.give("A\n");
    QCOMPARE(view.text(), QString());
    view.print();
    QCOMPARE(view.text(), QStringLiteral("A\n"));
}

void tst_QorLogView::timerWritesFiveTimesASecond()
{
    QCOMPARE(View().interval(), 200);
    QorLogView view(nullptr);
    view.addLogData("A\n", 2);
    auto* pane = view.findChild<QTextEdit*>();
    QTRY_COMPARE_WITH_TIMEOUT(pane->toPlainText(), QStringLiteral("A\n"), 5000);
}

void tst_QorLogView::anotherTimerWritesNothing()
{
    View view;
    view.give("A\n");
    view.otherTimer();
    QCOMPARE(view.text(), QString());
}

void tst_QorLogView::emptyEntriesAreDropped()
{
    View view;
    view.addLogData(nullptr, 5);
    view.addLogData("text", 0);
    view.addLogData("text", -3);
    view.print();
    QCOMPARE(view.text(), QString());
}

void tst_QorLogView::oneCallIsOneEntry()
{
    View view;
    view.batch({"NOTICE: a\nWARNING: b\n"});
    QCOMPARE(view.text(), QStringLiteral("NOTICE: a\nWARNING: b\n"));
    // The second line is of the first one's colour.
    QCOMPARE(view.colorAt(12), view.noticeColor());
    view.batch({"ab", "cd"});
    QCOMPARE(view.text(), QStringLiteral("NOTICE: a\nWARNING: b\nabcd"));
}

void tst_QorLogView::firstLetterGivesTheColour_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QColor>("color");
    QTest::newRow("log") << QByteArray("LOG: x\n") << QColor(0, 128, 0);
    QTest::newRow("fatal") << QByteArray("FATAL: x\n") << QColor(255, 0, 0);
    QTest::newRow("warning") << QByteArray("WARNING: x\n") << QColor(128, 0, 0);
    QTest::newRow("notice") << QByteArray("NOTICE: x\n") << QColor(0, 0, 0);
    QTest::newRow("info") << QByteArray("INFO: x\n") << QColor(0, 0, 128);
    QTest::newRow("debug") << QByteArray("DEBUG: x\n") << QColor(128, 128, 0);
    QTest::newRow("any word") << QByteArray("Did it\n") << QColor(128, 128, 0);
    QTest::newRow("other") << QByteArray("Quite another\n") << QColor();
    QTest::newRow("small letter") << QByteArray("warning\n") << QColor();
}

void tst_QorLogView::firstLetterGivesTheColour()
{
    QFETCH(QByteArray, line);
    QFETCH(QColor, color);
    View view;
    // Behind a line of another colour, which must not go on.
    view.batch({"FATAL: before\n", line});
    QCOMPARE(view.colorAt(14), color);
    QCOMPARE(view.colorAt(0), QColor(255, 0, 0));
    if (color.isValid())
        QCOMPARE(color.alpha(), 255);
}

void tst_QorLogView::repeatsInOneBatchAreFolded()
{
    View view;
    view.batch({"A\n", "A\n", "A\n"});
    QCOMPARE(view.text(), QStringLiteral("A [2]\n"));
}

void tst_QorLogView::repeatsBeforeAnotherLineAreCountedThen()
{
    View view;
    view.batch({"A\n", "A\n", "B\n"});
    QCOMPARE(view.text(), QStringLiteral("A [1]\nB\n"));
    view.batch({"B\n", "B\n", "A\n", "A\n"});
    QCOMPARE(view.text(), QStringLiteral("A [1]\nB [2]\nA [1]\n"));
}

void tst_QorLogView::counterGoesOnInTheNextBatch()
{
    View view;
    view.batch({"A\n", "A\n"});
    view.batch({"A\n"});
    QCOMPARE(view.text(), QStringLiteral("A [2]\n"));
    view.batch({"A\n", "A\n", "A\n"});
    QCOMPARE(view.text(), QStringLiteral("A [5]\n"));
    view.batch({"B\n"});
    // The line that ends a run writes the run's count once more.
    QCOMPARE(view.text(), QStringLiteral("A [5]\nB\n"));
}

void tst_QorLogView::repeatsAreWrittenWithoutTheFilter()
{
    View view;
    QVERIFY(view.filterDuplicateEntries());
    view.setFilterDuplicateEntries(false);
    QVERIFY(!view.filterDuplicateEntries());
    view.batch({"A\n", "A\n", "A\n"});
    QCOMPARE(view.text(), QStringLiteral("A\nA\nA\n"));
    view.setFilterDuplicateEntries(true);
    view.batch({"A\n"});
    QCOMPARE(view.text(), QStringLiteral("A\nA\nA [1]\n"));
}

void tst_QorLogView::counterOfAFilterThatWasTakenOffIsWritten()
{
    View view;
    view.batch({"A\n", "A\n"});
    view.setFilterDuplicateEntries(false);
    view.batch({"A\n", "A\n"});
    QCOMPARE(view.text(), QStringLiteral("A [1]\nA\nA\n"));
}

void tst_QorLogView::entryOfSeveralLinesIsFoldedAsOne()
{
    View view;
    view.batch({"before\n", "one\ntwo\n", "one\ntwo\n"});
    QCOMPARE(view.text(), QStringLiteral("before\none\ntwo [1]\n"));
}

void tst_QorLogView::entryWithoutLineEndIsFolded()
{
    View view;
    view.batch({"before\n", "A", "A"});
    QCOMPARE(view.text(), QStringLiteral("before\nA [1]"));
    view.batch({"A"});
    QCOMPARE(view.text(), QStringLiteral("before\nA [2]"));
}

void tst_QorLogView::countStandsBeforeAnyLineEnd()
{
    View view;
    view.batch({"A\r\n", "A\r\n"});
    QCOMPARE(view.text(), QStringLiteral("A [1]\n"));
    view.batch({"\n", "\n"});
    QCOMPARE(view.text(), QStringLiteral("A [1]\n [1]\n"));
}

void tst_QorLogView::foldedLineKeepsItsColour()
{
    View view;
    view.batch({"FATAL: before\n", "INFO: x\n", "INFO: x\n"});
    QCOMPARE(view.text(), QStringLiteral("FATAL: before\nINFO: x [1]\n"));
    QCOMPARE(view.colorAt(14), view.infoColor());
    QCOMPARE(view.colorAt(24), view.infoColor());
    QCOMPARE(view.colorAt(12), view.fatalColor());
}

void tst_QorLogView::printLineWithACountTakesThePlaceOfTheLastEntry()
{
    View view;
    view.printLine(QStringLiteral("A\n"), 0);
    view.printLine(QStringLiteral("B\n"), 7);
    QCOMPARE(view.text(), QStringLiteral("B [7]\n"));
    view.clear();
    view.printLine(QStringLiteral("C\n"), 3);
    QCOMPARE(view.text(), QStringLiteral("C [3]\n"));
}

void tst_QorLogView::printLineDropsAnEmptyLine()
{
    View view;
    view.printLine(QStringLiteral("A\n"), 0);
    view.printLine(QString(), 4);
    view.batch({"A\n"}); // is still the last line
    QCOMPARE(view.text(), QStringLiteral("A [1]\n"));
}

void tst_QorLogView::clearForgetsTheLastLine()
{
    View view;
    view.batch({"A\n", "A\n"});
    view.clear();
    QCOMPARE(view.text(), QString());
    view.batch({"A\n"});
    QCOMPARE(view.text(), QStringLiteral("A\n"));
}

void tst_QorLogView::clearButtonClears()
{
    View view;
    view.show();
    view.batch({"A\n"});
    QTest::mouseClick(view.child<QPushButton>("clearButton"), Qt::LeftButton);
    QCOMPARE(view.text(), QString());
}

void tst_QorLogView::clearKeepsWhatWaits()
{
    View view;
    view.give("A\n");
    view.clear();
    view.print();
    QCOMPARE(view.text(), QStringLiteral("A\n"));
}

void tst_QorLogView::saveButtonDoesNothing()
{
    View view;
    view.show();
    view.batch({"A\n"});
    auto* save = view.child<QPushButton>("pushButton2");
    QVERIFY(save->isEnabled());
    QTest::mouseClick(save, Qt::LeftButton);
    QCOMPARE(view.text(), QStringLiteral("A\n"));
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_QorLogView::fontSizeOfThePane()
{
    View view;
    view.setLogTextFontSize(17);
    QCOMPARE(view.pane()->font().pointSize(), 17);
    view.setLogTextFontSize(0);
    view.setLogTextFontSize(-2);
    QCOMPARE(view.pane()->font().pointSize(), 17);
}

namespace {

QByteArrayList lines(int count)
{
    QByteArrayList result;
    for (int i = 0; i < count; ++i)
        result += "NOTICE: line " + QByteArray::number(i) + "\n";
    return result;
}

} // namespace

void tst_QorLogView::userAtTheEndStaysThere()
{
    View view;
    view.show();
    QScrollBar* bar = view.pane()->verticalScrollBar();
    view.batch(lines(100));
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());
    const int before = bar->maximum();
    view.printLine(QStringLiteral("one more\n"), 0);
    QVERIFY(bar->maximum() > before);
    QCOMPARE(bar->value(), bar->maximum());
}

void tst_QorLogView::userWhoScrolledUpStays()
{
    View view;
    view.show();
    QScrollBar* bar = view.pane()->verticalScrollBar();
    view.batch(lines(100));
    bar->setValue(17);
    view.batch(lines(100));
    QCOMPARE(bar->value(), 17);
    view.printLine(QStringLiteral("one more\n"), 0);
    QCOMPARE(bar->value(), 17);
}

void tst_QorLogView::largeBatchEndsAtItsEnd()
{
    View view;
    view.show();
    view.batch(lines(10000));
    QCOMPARE(view.pane()->document()->blockCount(), 10001);
    QTest::qWait(100); // Qt may still be laying out
    QScrollBar* bar = view.pane()->verticalScrollBar();
    QCOMPARE(bar->value(), bar->maximum());
    const QTextBlock last = view.pane()->document()->lastBlock();
    const QRectF end = view.pane()->document()->documentLayout()->blockBoundingRect(last);
    QVERIFY(end.bottom() - bar->value() <= view.pane()->viewport()->height() + 10);
}

void tst_QorLogView::textIsReadAsUtf8OrLatin1()
{
    View view;
    view.batch({"gr\xc3\xbc\xc3\x9f dich\n", "gr\xfc\xdf dich\n"});
    const QString word = QString::fromUtf8("gr\xc3\xbc\xc3\x9f dich");
    // Both are the same text, so the second one counts.
    QCOMPARE(view.text(), word + QStringLiteral(" [1]\n"));
}

void tst_QorLogView::nullsAndBrokenUtf8AreKept()
{
    View view;
    view.give(QByteArray("a\0b\n", 4));
    view.give("x\xc3\x28\xf0\x9f\n");
    view.print();
    const QString text = view.text();
    QVERIFY(text.startsWith(QLatin1Char('a')));
    QCOMPARE(text.at(2), QLatin1Char('b'));
    QVERIFY(text.contains(QString::fromLatin1("x\xc3\x28\xf0\x9f\n")));
}

void tst_QorLogView::hugeEntryIsShownWhole()
{
    View view;
    view.show();
    const int size = 10 * 1000 * 1000;
    view.give("WARNING: " + QByteArray(size, 'x'));
    view.give("\nNOTICE: behind it\n");
    view.print();
    const QString text = view.text();
    QVERIFY(!view.grab().isNull());
    QCOMPARE(text.count(QLatin1Char('x')), size);
    QVERIFY(text.endsWith(QStringLiteral("behind it\n")));
}

void tst_QorLogView::undoIsOff()
{
    View view;
    view.batch({"A\n"});
    QVERIFY(!view.pane()->document()->isUndoRedoEnabled());
}

QTEST_MAIN(tst_QorLogView)
#include "tst_QorLogView.moc"
