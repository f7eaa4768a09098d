#include "FieldRows.h"
#include "LogCapture.h"
#include "QorStringFieldEditor.h"
#include <Orvane/MFString.h>
#include <Orvane/SFString.h>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QtTest>
#include <chrono>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorStringFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void singleValueIsShownAsSelectedText();
    void listRestrictedValuesAreShownInTheBox();
    void valueOfAListIsShownAsItsRow();
    void returnCommitsReleasesAndCloses();
    void choiceCommitsAndClosesAndKeepsTheKeyboard();
    void writesASingleValueAsOfNow();
    void choiceIsWrittenToASingleField();
    void listIsWrittenValueByValueWithARealTime();
    void neighboursMayHoldWhatSeparatesValues();
    void onlyTheEditedValueOfAListComesFromTheBox();
    void placeholderOfADelayedFieldKeepsAllOtherValues();
    void rowsFallenBackToThePlaceholderKeepAllOtherValues();
    void valuesWithoutARowAreKept();
    void rowsBuiltAnewUnderTheEditorAreFoundByNumber();
    void valueWithoutMultiFieldAboveEmptiesTheFieldAndIsReported();
    void rowsThatAreNoStringsDoNothing();
    void textsOfAnyKindSurvive_data();
    void textsOfAnyKindSurvive();
};

namespace {

const std::vector<Tiny::Part> parts = {part("title", SFSTRING_DT, "A house"),
                                       part("words", MFSTRING_DT),
                                       listed("mode", SFSTRING_DT, "two", {"one", "two"}),
                                       listed("modes", MFSTRING_DT, "", {"one", "two"}),
                                       part("number", SFINT32_DT, "5"),
                                       part("numbers", MFINT32_DT, "5, 6")};

struct Editor : QorStringFieldEditor
{
    Editor()
        : QorStringFieldEditor(nullptr)
    {
    }
    QStackedWidget* stack() const { return findChild<QStackedWidget*>(); }
    QLineEdit* line() const { return qobject_cast<QLineEdit*>(stack()->widget(0)); }
    QComboBox* box() const { return qobject_cast<QComboBox*>(stack()->widget(1)); }
};

struct WordRows : FieldRows
{
    explicit WordRows(const std::vector<std::string>& words, const char* name = "words")
        : FieldRows(parts)
    {
        for (const std::string& word : words)
            field<MFString>(name)->addValue(word);
        item(name)->toMFieldItem()->updateChildValues(false);
        Tiny::reset();
    }
    std::vector<std::string> words(const char* name = "words") const
    {
        std::vector<std::string> result;
        for (unsigned int i = 0; i < field(name)->size(); ++i)
            result.push_back((*field<MFString>(name))[static_cast<int>(i)]);
        return result;
    }
};

} // namespace

void tst_QorStringFieldEditor::cleanup()
{
    QVERIFY(!QWidget::keyboardGrabber());
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorStringFieldEditor::singleValueIsShownAsSelectedText()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("title"));
    QCOMPARE(editor.stack()->currentIndex(), 0);
    QCOMPARE(editor.line()->text(), QStringLiteral("A house"));
    QCOMPARE(editor.line()->selectedText(), QStringLiteral("A house"));
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorStringFieldEditor::listRestrictedValuesAreShownInTheBox()
{
    const WordRows rows({"two", "Two"}, "modes");
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    QCOMPARE(editor.stack()->currentIndex(), 1);
    QCOMPARE(editor.box()->count(), 2);
    QCOMPARE(editor.box()->currentText(), QStringLiteral("two"));
    editor.setEditorData(rows.item("modes", 1));
    QCOMPARE(editor.box()->currentIndex(), -1);
    editor.setEditorData(rows.item("modes", 0));
    QCOMPARE(editor.box()->currentIndex(), 1);
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorStringFieldEditor::valueOfAListIsShownAsItsRow()
{
    const WordRows rows({"a", "b, c"});
    Editor editor;
    editor.setEditorData(rows.item("words", 1));
    QCOMPARE(editor.line()->text(), QStringLiteral("b, c"));
    editor.setEditorData(rows.item("words"));
    QCOMPARE(editor.line()->text(), QStringLiteral("b, c"));
}

void tst_QorStringFieldEditor::returnCommitsReleasesAndCloses()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("title"));
    LogCapture log(osg::LOG_NOTICE);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    QTest::keyClick(editor.line(), Qt::Key_Return);
    QCOMPARE(commits.size(), 1);
    QCOMPARE(closes.size(), 1);
    QCOMPARE(closes[0][1].value<QAbstractItemDelegate::EndEditHint>(), QAbstractItemDelegate::NoHint);
    QVERIFY(!QWidget::keyboardGrabber());
    QCOMPARE(log.take(), QByteArrayList({"0 QorStringFieldEditor::commitData:\n",
                                         "3 QorFieldEditor::signalCommitData:\n"}));
}

void tst_QorStringFieldEditor::choiceCommitsAndClosesAndKeepsTheKeyboard()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    editor.box()->showPopup();
    QTest::keyClick(editor.box()->view(), Qt::Key_Return);
    QCOMPARE(commits.size(), 1);
    QCOMPARE(closes.size(), 1);
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorStringFieldEditor::writesASingleValueAsOfNow()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.line()->setText(QStringLiteral("A, hut"));
    LogCapture log(osg::LOG_LOG);
    editor.setModelData(rows.item("title"));
    QCOMPARE(rows.text("title"), std::string("A, hut"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(log.take(), QByteArrayList({"0 QorStringFieldEditor::setModelData: field=title\n"}));
}

void tst_QorStringFieldEditor::choiceIsWrittenToASingleField()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    editor.line()->setText(QStringLiteral("from the hidden page"));
    editor.box()->setCurrentIndex(0);
    editor.setModelData(rows.item("mode"));
    QCOMPARE(rows.text("mode"), std::string("one"));
}

void tst_QorStringFieldEditor::listIsWrittenValueByValueWithARealTime()
{
    const WordRows rows({"a", "b", "c"});
    Editor editor;
    editor.line()->setText(QStringLiteral("new"));
    LogCapture log(osg::LOG_LOG);
    using namespace std::chrono;
    const double before = duration<double>(steady_clock::now().time_since_epoch()).count();
    editor.setModelData(rows.item("words", 1));
    const double after = duration<double>(steady_clock::now().time_since_epoch()).count();
    QCOMPARE(rows.words(), std::vector<std::string>({"a", "new", "c"}));
    QCOMPARE(log.take(), QByteArrayList({"0 QorStringFieldEditor::setModelData: multi field entry #0\n",
                                         "0 QorStringFieldEditor::setModelData: multi field entry #1\n",
                                         "0 QorStringFieldEditor::setModelData: multi field entry #2\n"}));
    const Tiny::FieldWrite last = Tiny::fieldWrites().back();
    QCOMPARE(last.field, rows.field("words"));
    QCOMPARE(last.caller, Field::EXTERNAL_CT);
    QVERIFY(last.time > before - 0.002 && last.time <= after);
    QCOMPARE(rows.rowText("words", 1), QStringLiteral("new"));
}

void tst_QorStringFieldEditor::neighboursMayHoldWhatSeparatesValues()
{
    const WordRows rows({"one, two\tthree", "b", "say \"x\"\n"});
    Editor editor;
    editor.line()->setText(QStringLiteral("B, \"B\""));
    editor.setModelData(rows.item("words", 1));
    QCOMPARE(rows.words(), std::vector<std::string>({"one, two\tthree", "B, \"B\"", "say \"x\"\n"}));
}

void tst_QorStringFieldEditor::onlyTheEditedValueOfAListComesFromTheBox()
{
    const WordRows rows({"two", "seven", "two"}, "modes");
    Editor editor;
    editor.setEditorData(rows.item("modes", 2));
    editor.box()->setCurrentIndex(0);
    editor.setModelData(rows.item("modes", 2));
    QCOMPARE(rows.words("modes"), std::vector<std::string>({"two", "seven", "one"}));
}

void tst_QorStringFieldEditor::placeholderOfADelayedFieldKeepsAllOtherValues()
{
    std::vector<std::string> words;
    for (int i = 0; i < 60; ++i)
        words.push_back("word, " + std::to_string(i));
    const WordRows rows(words);
    QCOMPARE(rows.item("words")->childCount(), 1);
    Editor editor;
    editor.line()->setText(QStringLiteral("first"));
    editor.setModelData(rows.item("words", 0));
    words[0] = "first";
    QCOMPARE(rows.words(), words);
}

void tst_QorStringFieldEditor::rowsFallenBackToThePlaceholderKeepAllOtherValues()
{
    const WordRows rows({"a", "b", "c"});
    QorFieldItem* item = rows.item("words", 2);
    QorMFieldItem::setValueCountThreshold(1);
    rows.field<MFString>("words")->setElem(0, "changed behind the rows");
    rows.item("words")->toMFieldItem()->updateChildValues(false);
    Editor editor;
    editor.line()->setText(QStringLiteral("C"));
    editor.setModelData(item);
    QCOMPARE(rows.words(), std::vector<std::string>({"changed behind the rows", "b", "C"}));
}

void tst_QorStringFieldEditor::valuesWithoutARowAreKept()
{
    const WordRows rows({"a", "b"});
    rows.field<MFString>("words")->addValue("appended");
    Editor editor;
    editor.line()->setText(QStringLiteral("A"));
    editor.setModelData(rows.item("words", 0));
    QCOMPARE(rows.words(), std::vector<std::string>({"A", "b", "appended"}));
    // Fewer values than rows: no value comes back from the dead.
    rows.field<MFString>("words")->removeValueByIndex(2);
    rows.field<MFString>("words")->removeValueByIndex(1);
    editor.setModelData(rows.item("words", 1));
    QCOMPARE(rows.words(), std::vector<std::string>({"A"}));
}

void tst_QorStringFieldEditor::rowsBuiltAnewUnderTheEditorAreFoundByNumber()
{
    const WordRows rows({"a", "b"});
    QorFieldItem* item = rows.item("words", 1);
    rows.item("words")->toMFieldItem()->updateChildValues(false);
    Editor editor;
    editor.line()->setText(QStringLiteral("B"));
    editor.setModelData(item);
    QCOMPARE(rows.words(), std::vector<std::string>({"a", "B"}));
}

void tst_QorStringFieldEditor::valueWithoutMultiFieldAboveEmptiesTheFieldAndIsReported()
{
    const WordRows rows({"a", "b"});
    QorFieldItem root(nullptr, nullptr);
    QorMFieldValueItem stray(1, rows.field("words"), &root);
    Editor editor;
    LogCapture log;
    editor.setModelData(&stray);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorStringFieldEditor::setModelData: Unable to find mfItem for field "
                             "words\n."}));
    QVERIFY(rows.words().empty());
    QVERIFY(Tiny::fieldWrites().empty());
}

void tst_QorStringFieldEditor::rowsThatAreNoStringsDoNothing()
{
    const WordRows rows({"a", "b"});
    QorFieldItem root(nullptr, nullptr);
    Editor editor;
    LogCapture log;
    editor.setModelData(nullptr);
    editor.setModelData(&root);
    editor.setModelData(rows.item("words"));
    editor.setModelData(rows.item("number"));
    editor.setModelData(rows.item("numbers", 1));
    QCOMPARE(rows.words(), std::vector<std::string>({"a", "b"}));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorStringFieldEditor::textsOfAnyKindSurvive_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("latin1") << QByteArray("Gr\xf6\xdf\x65");
    QTest::newRow("beyond latin1") << QByteArray("5 \xe2\x82\xac");
    QTest::newRow("very long") << QByteArray(100000, 'x');
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("several lines") << QByteArray("a\nb\r\nc\t");
}

void tst_QorStringFieldEditor::textsOfAnyKindSurvive()
{
    QFETCH(QByteArray, bytes);
    const WordRows rows({bytes.toStdString(), "b"});
    rows.field("title")->setValueByStr(0.0, bytes.constData());
    Editor editor;
    editor.setEditorData(rows.item("title"));
    editor.setModelData(rows.item("title"));
    QCOMPARE(QByteArray::fromStdString(rows.text("title")), bytes);
    editor.setEditorData(rows.item("words", 0));
    editor.setModelData(rows.item("words", 0));
    QCOMPARE(QByteArray::fromStdString(rows.words()[0]), bytes);
}

QTEST_MAIN(tst_QorStringFieldEditor)
#include "tst_QorStringFieldEditor.moc"
