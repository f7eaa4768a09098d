#include "FieldRows.h"
#include "LogCapture.h"
#include "QorFloatFieldEditor.h"
#include <Orvane/MFFloat.h>
#include <Orvane/SFFloat.h>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QtTest>
#include <limits>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorFloatFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void spinBoxFillsTheEditor();
    void rangeOfASingleField_data();
    void rangeOfASingleField();
    void linesOfOpeningASingleFieldGoOutAtAnyLevel();
    void limitsOfAListAreNotApplied();
    void openingASingleFieldCommitsNothing();
    void openingAValueOfAListCommitsOnce();
    void everyStepIsCommittedAndTheEditorStaysOpen();
    void keysReachTheSpinBox();
    void keyThatTheSpinBoxIgnoresGoesUpOnce();
    void writesASingleValueAsOfNow();
    void writesAValueOfAListAndBuildsItsRowsAnew();
    void valueWithoutMultiFieldAboveIsReported();
    void valuesShowAndComeBackAtTwoDecimals();
    void valuesThatAreNoNumbersAreShown_data();
    void valuesThatAreNoNumbersAreShown();
    void rowWithoutFieldIsReported();
    void rowThatIsNoValueDoesNothing();
    void valueThatIsGoneDoesNothing();
    void singleFieldOfAnotherClassIsOnlyLogged();
};

namespace {

const double Highest = std::numeric_limits<double>::max();
const double Infinite = std::numeric_limits<double>::infinity();
const double NoNumber = std::numeric_limits<double>::quiet_NaN();

const std::vector<Tiny::Part> parts = {
    part("number", SFFLOAT_DT, "5"), limited("small", SFFLOAT_DT, "3", 1.0, 8.0),
    part("list", MFFLOAT_DT, "0, 20, -7"), limited("limitedList", MFFLOAT_DT, "0, 200", 0.0, 10.0),
    part("truth", SFBOOL_DT, "TRUE")};

QDoubleSpinBox* boxOf(const QWidget& editor)
{
    return editor.findChild<QDoubleSpinBox*>();
}

} // namespace

void tst_QorFloatFieldEditor::spinBoxFillsTheEditor()
{
    QorFloatFieldEditor editor(nullptr);
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->stretch(0), 3);
    QCOMPARE(layout->itemAt(0)->widget(), boxOf(editor));
    QVERIFY(!editor.focusProxy());
}

void tst_QorFloatFieldEditor::rangeOfASingleField_data()
{
    QTest::addColumn<bool>("isLimited");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");
    QTest::newRow("none") << false << 2.0 << 3.0 << -Highest << Highest;
    QTest::newRow("both") << true << -4.0 << 8.0 << -4.0 << 8.0;
    QTest::newRow("a maximum of 0 is one") << true << -1.0 << 0.0 << -1.0 << 0.0;
    QTest::newRow("two decimals") << true << 0.25 << 10.75 << 0.25 << 10.75;
    QTest::newRow("infinite") << true << -Infinite << Infinite << -Highest << Highest;
    QTest::newRow("no numbers") << true << NoNumber << NoNumber << -Highest << Highest;
    // The spin box takes the later of the two.
    QTest::newRow("minimum above maximum") << true << 20.0 << 10.0 << 10.0 << 10.0;
}

void tst_QorFloatFieldEditor::rangeOfASingleField()
{
    QFETCH(bool, isLimited);
    QFETCH(double, min);
    QFETCH(double, max);
    Tiny::Part number = limited("number", SFFLOAT_DT, "6", min, max);
    if (!isLimited)
        number.restriction = NodePartDesc::NONE_VR;
    const FieldRows rows({number});
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("number"));
    QTEST(boxOf(editor)->minimum(), "lowest");
    QTEST(boxOf(editor)->maximum(), "highest");
    QCOMPARE(boxOf(editor)->value(), qBound(boxOf(editor)->minimum(), 6.0, boxOf(editor)->maximum()));
    QCOMPARE(rows.text("number"), std::string("6"));
}

void tst_QorFloatFieldEditor::linesOfOpeningASingleFieldGoOutAtAnyLevel()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    LogCapture log(osg::LOG_LOG);
    editor.setEditorData(rows.item("small"));
    QCOMPARE(log.take(),
             QByteArrayList({"0 QorFloatFieldEditor::setEditorData: minValue=1.000000, maxVal=8.000000\n"}));
    editor.setEditorData(rows.item("number"));
    QCOMPARE(log.take(),
             QByteArrayList({QByteArray("0 QorFloatFieldEditor::setEditorData: no restriction. ") +
                             "minDouble=" + QByteArray::number(-Highest, 'f', 6) + "\n"}));
    editor.setEditorData(rows.item("list", 1));
    QVERIFY(log.take().isEmpty());
}

void tst_QorFloatFieldEditor::limitsOfAListAreNotApplied()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("small"));
    editor.setEditorData(rows.item("limitedList", 1));
    QCOMPARE(boxOf(editor)->value(), 200.0);
    QCOMPARE(boxOf(editor)->minimum(), -Highest);
    QCOMPARE(boxOf(editor)->maximum(), Highest);
}

void tst_QorFloatFieldEditor::openingASingleFieldCommitsNothing()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    LogCapture log(osg::LOG_NOTICE);
    editor.setEditorData(rows.item("number"));
    editor.setEditorData(rows.item("small"));
    QCOMPARE(commits.size(), 0);
    QCOMPARE(countOf(log.take(), "3 QorFieldEditor::signalCommitData:\n"), 0);
    QVERIFY(!boxOf(editor)->signalsBlocked());
}

void tst_QorFloatFieldEditor::openingAValueOfAListCommitsOnce()
{
    const FieldRows rows(parts);
    LogCapture log(osg::LOG_NOTICE);
    QorFloatFieldEditor zero(nullptr);
    zero.setEditorData(rows.item("list", 0));
    QVERIFY(log.take().isEmpty());
    QorFloatFieldEditor editor(nullptr);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    editor.setEditorData(rows.item("list", 1));
    QCOMPARE(commits.size(), 1);
    QCOMPARE(log.take(), QByteArrayList({"3 QorFieldEditor::signalCommitData:\n"}));
}

void tst_QorFloatFieldEditor::everyStepIsCommittedAndTheEditorStaysOpen()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("small"));
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    connect(&editor, &QorFieldEditor::commitData, this, [&] { editor.setModelData(rows.item("small")); });
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(boxOf(editor), Qt::Key_Up);
    QCOMPARE(rows.text("small"), std::string("6"));
    QTest::keyClick(boxOf(editor), Qt::Key_PageUp);
    QTest::keyClick(boxOf(editor), Qt::Key_Up);
    QCOMPARE(rows.text("small"), std::string("8"));
    QCOMPARE(commits.size(), 4);
    QCOMPARE(closes.size(), 0);
}

void tst_QorFloatFieldEditor::keysReachTheSpinBox()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("number"));
    QTest::keyClick(&editor, Qt::Key_Up);
    QCOMPARE(boxOf(editor)->value(), 6.0);
    editor.setEditorData(rows.item("number"));
    // What is typed replaces what was there.
    QTest::keyClicks(&editor, QStringLiteral("-4.25"));
    QCOMPARE(boxOf(editor)->value(), -4.25);
    QTest::keyClick(&editor, Qt::Key_Backspace);
    QCOMPARE(boxOf(editor)->value(), -4.2);
}

void tst_QorFloatFieldEditor::keyThatTheSpinBoxIgnoresGoesUpOnce()
{
    struct Parent : QWidget
    {
        void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
        QList<int> keys;
    };
    Parent parent;
    auto* editor = new QorFloatFieldEditor(&parent);
    auto* spinBox = boxOf(*editor);
    QSignalSpy finished(spinBox, &QDoubleSpinBox::editingFinished);
    QTest::keyClick(editor, Qt::Key_Escape);
    QTest::keyClick(editor, Qt::Key_Return);
    QCOMPARE(parent.keys, QList<int>({Qt::Key_Escape, Qt::Key_Return}));
    QCOMPARE(finished.size(), 1);

    parent.show();
    parent.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&parent));
    spinBox->setFocus();
    QVERIFY(spinBox->hasFocus());
    finished.clear();
    QTest::keyClick(spinBox, Qt::Key_Return);
    QCOMPARE(parent.keys.size(), 3);
    QCOMPARE(finished.size(), 1);
}

void tst_QorFloatFieldEditor::writesASingleValueAsOfNow()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    boxOf(editor)->setValue(77);
    LogCapture log(osg::LOG_LOG);
    editor.setModelData(rows.item("number"));
    QCOMPARE(rows.field<SFFloat>("number")->value(), 77.0F);
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(Tiny::fieldWrites()[0].caller, Field::EXTERNAL_CT);
    QCOMPARE(log.take(),
             QByteArrayList({"0 QorFloatFieldEditor::setModelData: setting single field number to "
                             "77.000000\n"}));
}

void tst_QorFloatFieldEditor::writesAValueOfAListAndBuildsItsRowsAnew()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    boxOf(editor)->setValue(9);
    QorFieldItem* item = rows.item("list", 1);
    LogCapture log;
    editor.setModelData(item);
    QCOMPARE(rows.text("list"), std::string("0, 9, -7"));
    QVERIFY(rows.item("list", 1) != item);
    QCOMPARE(rows.rowText("list", 1).trimmed(), QStringLiteral("9"));
    QVERIFY(log.take().isEmpty());
    // The old item lives on, and can be edited again.
    boxOf(editor)->setValue(10);
    editor.setModelData(item);
    QCOMPARE(rows.text("list"), std::string("0, 10, -7"));
}

void tst_QorFloatFieldEditor::valueWithoutMultiFieldAboveIsReported()
{
    const FieldRows rows(parts);
    QorFieldItem root(nullptr, nullptr);
    QorMFieldValueItem stray(2, rows.field("list"), &root);
    QorFloatFieldEditor editor(nullptr);
    boxOf(editor)->setValue(9);
    LogCapture log;
    editor.setModelData(&stray);
    QCOMPARE(log.take(), QByteArrayList({"1 QorFloatFieldEditor::setModelData: parent of value is not an MF* "
                                         "field.\n"}));
    QCOMPARE(rows.text("list"), std::string("0, 20, 9"));
    QCOMPARE(rows.rowText("list", 2).trimmed(), QStringLiteral("-7"));
}

void tst_QorFloatFieldEditor::valuesShowAndComeBackAtTwoDecimals()
{
    const FieldRows rows({part("number", SFFLOAT_DT, "0.12345"), part("list", MFFLOAT_DT, "0, 0.12345")});
    QorFloatFieldEditor editor(nullptr);
    QCOMPARE(boxOf(editor)->decimals(), 2);
    QCOMPARE(boxOf(editor)->singleStep(), 1.0);
    connect(&editor, &QorFieldEditor::commitData, this, [&] { editor.setModelData(rows.item("number")); });
    editor.setEditorData(rows.item("number"));
    QCOMPARE(boxOf(editor)->value(), 0.12);
    QCOMPARE(rows.text("number"), std::string("0.12345"));
    QTest::keyClick(boxOf(editor), Qt::Key_Up);
    QCOMPARE(rows.text("number"), std::string("1.12"));
    QorFloatFieldEditor valueEditor(nullptr);
    valueEditor.setEditorData(rows.item("list", 1));
    QCOMPARE(boxOf(valueEditor)->value(), 0.12);
}

void tst_QorFloatFieldEditor::valuesThatAreNoNumbersAreShown_data()
{
    QTest::addColumn<float>("value");
    QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
    QTest::newRow("negative infinite") << -std::numeric_limits<float>::infinity();
    QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN();
    QTest::newRow("largest") << std::numeric_limits<float>::max();
    QTest::newRow("smallest") << std::numeric_limits<float>::denorm_min();
}

void tst_QorFloatFieldEditor::valuesThatAreNoNumbersAreShown()
{
    QFETCH(float, value);
    const FieldRows rows({part("number", SFFLOAT_DT)});
    rows.field<SFFloat>("number")->setValue(0.0, value, Field::EXTERNAL_CT);
    Tiny::reset();
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("number"));
    editor.resize(200, 20);
    QVERIFY(!editor.grab().isNull());
    QVERIFY(Tiny::fieldWrites().empty());
}

void tst_QorFloatFieldEditor::rowWithoutFieldIsReported()
{
    QorFieldItem root(nullptr, nullptr);
    QorFloatFieldEditor editor(nullptr);
    boxOf(editor)->setValue(9);
    LogCapture log;
    editor.setEditorData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorFloatFieldEditor::setEditorData: invalid field. Can't update editor."}));
    QCOMPARE(boxOf(editor)->value(), 9.0);
    editor.setModelData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorFloatFieldEditor::setModelData: invalid field. Can't update model."}));
}

void tst_QorFloatFieldEditor::rowThatIsNoValueDoesNothing()
{
    const FieldRows rows(parts);
    LogCapture log;
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("list"));
    editor.setModelData(rows.item("list"));
    QCOMPARE(rows.text("list"), std::string("0, 20, -7"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorFloatFieldEditor::valueThatIsGoneDoesNothing()
{
    const FieldRows rows(parts);
    QorFieldItem* last = rows.item("list", 2);
    rows.field("list")->setValueByStr(0.0, "1");
    Tiny::reset();
    LogCapture log;
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(last);
    editor.setModelData(last);
    QCOMPARE(rows.text("list"), std::string("1"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorFloatFieldEditor::singleFieldOfAnotherClassIsOnlyLogged()
{
    const FieldRows rows(parts);
    QorFloatFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("truth"));
    QCOMPARE(boxOf(editor)->value(), 0.0);
    LogCapture log;
    editor.setModelData(rows.item("truth"));
    QCOMPARE(log.take(), QByteArrayList({"0 QorFloatFieldEditor::setModelData: setting single field truth to "
                                         "0.000000\n"}));
    QCOMPARE(rows.text("truth"), std::string("TRUE"));
}

QTEST_MAIN(tst_QorFloatFieldEditor)
#include "tst_QorFloatFieldEditor.moc"
