#include "FieldRows.h"
#include "LogCapture.h"
#include "QorDefaultFieldEditor.h"
#include <Orvane/MFVec3f.h>
#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorDefaultFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void stackOfTwoPages();
    void singleValueIsShownAsSelectedText();
    void listRestrictedValueIsShownInTheBox();
    void valueOutsideTheListShowsNothing();
    void wordsAreToldApartByCase();
    void emptyListOfAllowedValuesShowsAnEmptyBox();
    void valueOfAListIsShownAsItsRow();
    void rowThatIsNoValueSetsNothingButTakesTheKeyboard();
    void returnCommitsReleasesAndCloses();
    void choiceCommitsAndClosesAndKeepsTheKeyboard();
    void grabEndsWithTheEditor();
    void writesASingleValueAsOfNow();
    void emptyTextIsHandedOver();
    void textThatDoesNotParseChangesNothing();
    void choiceIsWrittenToASingleField();
    void listIsWrittenAsOneText();
    void onlyTheEditedValueOfAListComesFromTheBox();
    void rowsOtherThanTheEditedOneKeepTheirText();
    void placeholderOfADelayedFieldLeavesOneValue();
    void rowsBuiltAnewUnderTheEditorAreFoundByNumber();
    void rowsFallenBackToThePlaceholderLoseNothing();
    void nullItemAndStrayRowsDoNothing();
    void longTextIsNotCut();
};

namespace {

const std::vector<Tiny::Part> parts = {part("colour", SFCOLOR_DT, "1 0 0"),
                                       part("points", MFVEC3F_DT, "1 2 3, 4 5 6, 7 8 9"),
                                       listed("mode", SFTIME_DT, "two", {"one", "two", "Three"}),
                                       listed("steps", MFDOUBLE_DT, "1, 2, 3", {"1", "2", "3", "40"}),
                                       listed("nothing", SFTIME_DT, "two", {}),
                                       part("doubles", MFDOUBLE_DT, "0.5, 1.5")};

struct Editor : QorDefaultFieldEditor
{
    Editor()
        : QorDefaultFieldEditor(nullptr)
    {
    }
    QStackedWidget* stack() const { return findChild<QStackedWidget*>(); }
    QLineEdit* line() const { return qobject_cast<QLineEdit*>(stack()->widget(0)); }
    QComboBox* box() const { return qobject_cast<QComboBox*>(stack()->widget(1)); }
};

} // namespace

void tst_QorDefaultFieldEditor::cleanup()
{
    QVERIFY(!QWidget::keyboardGrabber());
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_QorDefaultFieldEditor::stackOfTwoPages()
{
    const Editor editor;
    QCOMPARE(editor.stack()->count(), 2);
    QVERIFY(editor.line());
    QVERIFY(editor.box());
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->widget(), editor.stack());
}

void tst_QorDefaultFieldEditor::singleValueIsShownAsSelectedText()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("colour"));
    QCOMPARE(editor.stack()->currentIndex(), 0);
    QCOMPARE(editor.line()->text(), QStringLiteral("1 0 0"));
    QCOMPARE(editor.line()->selectedText(), QStringLiteral("1 0 0"));
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorDefaultFieldEditor::listRestrictedValueIsShownInTheBox()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.box()->addItem(QStringLiteral("left over"));
    editor.setEditorData(rows.item("mode"));
    QCOMPARE(editor.stack()->currentIndex(), 1);
    QCOMPARE(editor.box()->count(), 3);
    QCOMPARE(editor.box()->itemText(2), QStringLiteral("Three"));
    QCOMPARE(editor.box()->currentText(), QStringLiteral("two"));
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorDefaultFieldEditor::valueOutsideTheListShowsNothing()
{
    const FieldRows rows(parts);
    rows.field("mode")->setValueByStr(0.0, "seven");
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    QCOMPARE(editor.box()->currentIndex(), -1);
    QCOMPARE(editor.box()->currentText(), QString());
    connect(&editor, &QorFieldEditor::commitData, this, [&] { editor.setModelData(rows.item("mode")); });
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    editor.box()->showPopup();
    QTest::keyClick(editor.box()->view(), Qt::Key_Down);
    QTest::keyClick(editor.box()->view(), Qt::Key_Return);
    QVERIFY(editor.box()->currentIndex() >= 0);
    QCOMPARE(rows.text("mode"), editor.box()->currentText().toStdString());
    QCOMPARE(closes.size(), 1);
}

void tst_QorDefaultFieldEditor::wordsAreToldApartByCase()
{
    const FieldRows rows(parts);
    rows.field("mode")->setValueByStr(0.0, "three");
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    QCOMPARE(editor.box()->currentIndex(), -1);
    rows.field("mode")->setValueByStr(0.0, "Three");
    editor.setEditorData(rows.item("mode"));
    QCOMPARE(editor.box()->currentIndex(), 2);
}

void tst_QorDefaultFieldEditor::emptyListOfAllowedValuesShowsAnEmptyBox()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("nothing"));
    QCOMPARE(editor.stack()->currentIndex(), 1);
    QCOMPARE(editor.box()->count(), 0);
    QCOMPARE(editor.box()->currentIndex(), -1);
}

void tst_QorDefaultFieldEditor::valueOfAListIsShownAsItsRow()
{
    const FieldRows rows(parts);
    Editor editor;
    rows.field("points")->setValueByStr(0.0, "9 9 9, 9 9 9, 9 9 9");
    editor.setEditorData(rows.item("points", 1));
    QCOMPARE(editor.stack()->currentIndex(), 0);
    QCOMPARE(editor.line()->text(), rows.rowText("points", 1));
    QCOMPARE(editor.line()->text().trimmed(), QStringLiteral("4 5 6"));
    editor.setEditorData(rows.item("steps", 0));
    QCOMPARE(editor.stack()->currentIndex(), 1);
    QCOMPARE(editor.box()->currentText(), QStringLiteral("1"));
}

void tst_QorDefaultFieldEditor::rowThatIsNoValueSetsNothingButTakesTheKeyboard()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.line()->setText(QStringLiteral("before"));
    editor.setEditorData(rows.item("points"));
    QCOMPARE(editor.line()->text(), QStringLiteral("before"));
    QCOMPARE(editor.line()->selectedText(), QStringLiteral("before"));
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
}

void tst_QorDefaultFieldEditor::returnCommitsReleasesAndCloses()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("colour"));
    LogCapture log(osg::LOG_NOTICE);
    QStringList order;
    connect(&editor, &QorFieldEditor::commitData, this, [&] {
        order << QStringLiteral("commit");
        QCOMPARE(QWidget::keyboardGrabber(), editor.line());
    });
    connect(&editor, &QorFieldEditor::closeEditor, this,
            [&](QWidget*, QAbstractItemDelegate::EndEditHint hint) {
                QCOMPARE(hint, QAbstractItemDelegate::NoHint);
                QVERIFY(!QWidget::keyboardGrabber());
                order << QStringLiteral("close");
            });
    QTest::keyClick(editor.line(), Qt::Key_Return);
    QCOMPARE(order, QStringList({QStringLiteral("commit"), QStringLiteral("close")}));
    QCOMPARE(log.take(), QByteArrayList({"0 QorDefaultFieldEditor::commitData:\n",
                                         "3 QorFieldEditor::signalCommitData:\n"}));
}

void tst_QorDefaultFieldEditor::choiceCommitsAndClosesAndKeepsTheKeyboard()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    LogCapture log(osg::LOG_NOTICE);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    editor.box()->showPopup();
    QTest::keyClick(editor.box()->view(), Qt::Key_Down);
    QTest::keyClick(editor.box()->view(), Qt::Key_Return);
    QCOMPARE(commits.size(), 1);
    QCOMPARE(closes.size(), 1);
    QCOMPARE(closes[0][1].value<QAbstractItemDelegate::EndEditHint>(), QAbstractItemDelegate::NoHint);
    QCOMPARE(QWidget::keyboardGrabber(), editor.line());
    QCOMPARE(log.take(), QByteArrayList({"3 QorFieldEditor::signalCommitData:\n"}));
}

void tst_QorDefaultFieldEditor::grabEndsWithTheEditor()
{
    const FieldRows rows(parts);
    {
        Editor editor;
        editor.setEditorData(rows.item("colour"));
        QVERIFY(QWidget::keyboardGrabber());
    }
    QVERIFY(!QWidget::keyboardGrabber());
}

void tst_QorDefaultFieldEditor::writesASingleValueAsOfNow()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.line()->setText(QStringLiteral("0 1 0"));
    LogCapture log(osg::LOG_LOG);
    editor.setModelData(rows.item("colour"));
    QCOMPARE(rows.text("colour"), std::string("0 1 0"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(log.take(), QByteArrayList({"0 QorDefaultFieldEditor::setModelData: field=colour\n"}));
}

void tst_QorDefaultFieldEditor::emptyTextIsHandedOver()
{
    const FieldRows rows(parts);
    Editor editor;
    connect(&editor, &QorFieldEditor::commitData, this, [&] { editor.setModelData(rows.item("colour")); });
    editor.setEditorData(rows.item("colour"));
    QTest::keyClick(editor.line(), Qt::Key_Delete);
    QTest::keyClick(editor.line(), Qt::Key_Return);
    QCOMPARE(rows.text("colour"), std::string());
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
}

void tst_QorDefaultFieldEditor::textThatDoesNotParseChangesNothing()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.line()->setText(QStringLiteral("no number"));
    editor.setModelData(rows.item("doubles", 0));
    QCOMPARE(rows.text("doubles"), std::string("0.5, 1.5"));
    QCOMPARE(rows.rowText("doubles", 0), QStringLiteral("0.5"));
}

void tst_QorDefaultFieldEditor::choiceIsWrittenToASingleField()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("mode"));
    editor.line()->setText(QStringLiteral("from the hidden page"));
    editor.box()->setCurrentIndex(0);
    editor.setModelData(rows.item("mode"));
    QCOMPARE(rows.text("mode"), std::string("one"));
}

void tst_QorDefaultFieldEditor::listIsWrittenAsOneText()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.line()->setText(QStringLiteral("0 0 0"));
    LogCapture log;
    editor.setModelData(rows.item("points", 1));
    QCOMPARE(rows.text("points"), std::string("1 2 3, 0 0 0, 7 8 9"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(rows.rowText("points", 1).trimmed(), QStringLiteral("0 0 0"));
    QVERIFY(log.take().isEmpty());
}

void tst_QorDefaultFieldEditor::onlyTheEditedValueOfAListComesFromTheBox()
{
    const FieldRows rows(parts);
    Editor editor;
    editor.setEditorData(rows.item("steps", 1));
    editor.box()->setCurrentIndex(3);
    editor.setModelData(rows.item("steps", 1));
    QCOMPARE(rows.text("steps"), std::string("1, 40, 3"));
}

void tst_QorDefaultFieldEditor::rowsOtherThanTheEditedOneKeepTheirText()
{
    const FieldRows rows(parts);
    QorFieldItem* other = rows.item("doubles", 0);
    Editor editor;
    // One row that is typed as two values: the rows stay, only the edited one is read again.
    editor.line()->setText(QStringLiteral("7, 8"));
    editor.setModelData(rows.item("doubles", 1));
    QCOMPARE(rows.text("doubles"), std::string("0.5, 7, 8"));
    QCOMPARE(rows.item("doubles", 0), other);
    QCOMPARE(rows.item("doubles")->childCount(), 2);
    QCOMPARE(rows.rowText("doubles", 1).trimmed(), QStringLiteral("7"));
}

void tst_QorDefaultFieldEditor::placeholderOfADelayedFieldLeavesOneValue()
{
    const FieldRows rows({part("big", MFDOUBLE_DT, numbersText(60).c_str())});
    QCOMPARE(rows.item("big")->childCount(), 1);
    Editor editor;
    editor.setEditorData(rows.item("big", 0));
    QCOMPARE(editor.line()->text(), QString());
    editor.line()->setText(QStringLiteral("3.5"));
    editor.setModelData(rows.item("big", 0));
    QCOMPARE(rows.text("big"), std::string("3.5"));
}

void tst_QorDefaultFieldEditor::rowsBuiltAnewUnderTheEditorAreFoundByNumber()
{
    const FieldRows rows(parts);
    QorFieldItem* item = rows.item("points", 2);
    rows.item("points")->toMFieldItem()->updateChildValues(false);
    Editor editor;
    editor.line()->setText(QStringLiteral("0 0 1"));
    editor.setModelData(item);
    QCOMPARE(rows.text("points"), std::string("1 2 3, 4 5 6, 0 0 1"));
}

void tst_QorDefaultFieldEditor::rowsFallenBackToThePlaceholderLoseNothing()
{
    const FieldRows rows(parts);
    QorFieldItem* item = rows.item("points", 2);
    QorMFieldItem::setValueCountThreshold(1);
    rows.item("points")->toMFieldItem()->updateChildValues(false);
    Editor editor;
    editor.line()->setText(QStringLiteral("0 0 1"));
    editor.setModelData(item);
    QCOMPARE(rows.text("points"), std::string("1 2 3, 4 5 6, 7 8 9"));
}

void tst_QorDefaultFieldEditor::nullItemAndStrayRowsDoNothing()
{
    const FieldRows rows(parts);
    QorFieldItem root(nullptr, nullptr);
    QorMFieldValueItem stray(1, rows.field("points"), &root);
    Editor editor;
    LogCapture log;
    editor.setModelData(nullptr);
    editor.setModelData(&root);
    editor.setModelData(&stray);
    editor.setModelData(rows.item("points"));
    editor.setEditorData(&root);
    editor.setEditorData(nullptr);
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorDefaultFieldEditor::longTextIsNotCut()
{
    const FieldRows rows(parts);
    const std::string text(100000, 'x');
    rows.field("colour")->setValueByStr(0.0, text.c_str());
    Editor editor;
    editor.setEditorData(rows.item("colour"));
    editor.setModelData(rows.item("colour"));
    QCOMPARE(rows.text("colour").size(), text.size());
}

QTEST_MAIN(tst_QorDefaultFieldEditor)
#include "tst_QorDefaultFieldEditor.moc"
