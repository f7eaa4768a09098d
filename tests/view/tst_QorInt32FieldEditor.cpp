#include "FieldRows.h"
#include "LogCapture.h"
#include "QorInt32FieldEditor.h"
#include <Orvane/MFInt32.h>
#include <Orvane/SFInt32.h>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>
#include <limits>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorInt32FieldEditor : public QObject
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
    void rowWithoutFieldIsReported();
    void rowThatIsNoValueDoesNothing();
    void valueThatIsGoneDoesNothing();
    void singleFieldOfAnotherClassIsOnlyLogged();
};

namespace {

const int Highest = std::numeric_limits<int>::max();
const double Infinite = std::numeric_limits<double>::infinity();
const double NoNumber = std::numeric_limits<double>::quiet_NaN();

const std::vector<Tiny::Part> parts = {
    part("number", SFINT32_DT, "5"), limited("small", SFINT32_DT, "3", 1.0, 8.0),
    part("list", MFINT32_DT, "0, 20, -7"), limited("limitedList", MFINT32_DT, "0, 200", 0.0, 10.0),
    part("truth", SFBOOL_DT, "TRUE")};

QSpinBox* boxOf(const QWidget& editor)
{
    return editor.findChild<QSpinBox*>();
}

} // namespace

void tst_QorInt32FieldEditor::spinBoxFillsTheEditor()
{
    QorInt32FieldEditor editor(nullptr);
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->stretch(0), 3);
    QCOMPARE(layout->itemAt(0)->widget(), boxOf(editor));
    QVERIFY(!editor.focusProxy());
}

void tst_QorInt32FieldEditor::rangeOfASingleField_data()
{
    QTest::addColumn<bool>("isLimited");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::newRow("none") << false << 2.0 << 3.0 << -Highest << Highest;
    QTest::newRow("both") << true << -4.0 << 8.0 << -4 << 8;
    QTest::newRow("a maximum of 0 is none") << true << 1.0 << 0.0 << 1 << Highest;
    QTest::newRow("truncated") << true << -2.9 << 10.9 << -2 << 10;
    QTest::newRow("infinite") << true << -Infinite << Infinite << -Highest << Highest;
    QTest::newRow("beyond the type") << true << -1e300 << 3e9 << -Highest << Highest;
    QTest::newRow("no numbers") << true << NoNumber << NoNumber << -Highest << Highest;
    // The spin box takes the later of the two.
    QTest::newRow("minimum above maximum") << true << 20.0 << 10.0 << 10 << 10;
}

void tst_QorInt32FieldEditor::rangeOfASingleField()
{
    QFETCH(bool, isLimited);
    QFETCH(double, min);
    QFETCH(double, max);
    Tiny::Part number = limited("number", SFINT32_DT, "6", min, max);
    if (!isLimited)
        number.restriction = NodePartDesc::NONE_VR;
    const FieldRows rows({number});
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(rows.item("number"));
    QTEST(boxOf(editor)->minimum(), "lowest");
    QTEST(boxOf(editor)->maximum(), "highest");
    QCOMPARE(boxOf(editor)->value(), qBound(boxOf(editor)->minimum(), 6, boxOf(editor)->maximum()));
    QCOMPARE(rows.text("number"), std::string("6"));
}

void tst_QorInt32FieldEditor::linesOfOpeningASingleFieldGoOutAtAnyLevel()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    LogCapture log(osg::LOG_LOG);
    editor.setEditorData(rows.item("small"));
    QCOMPARE(log.take(),
             QByteArrayList({"0 QorInt32FieldEditor::setEditorData: minValue=1.000000, maxVal=8.000000\n"}));
    editor.setEditorData(rows.item("number"));
    QCOMPARE(log.take(), QByteArrayList({"0 QorInt32FieldEditor::setEditorData: no restriction. "
                                         "minDouble=-2147483647.000000\n"}));
    editor.setEditorData(rows.item("list", 1));
    QVERIFY(log.take().isEmpty());
}

void tst_QorInt32FieldEditor::limitsOfAListAreNotApplied()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(rows.item("small"));
    editor.setEditorData(rows.item("limitedList", 1));
    QCOMPARE(boxOf(editor)->value(), 200);
    QCOMPARE(boxOf(editor)->minimum(), -Highest);
    QCOMPARE(boxOf(editor)->maximum(), Highest);
}

void tst_QorInt32FieldEditor::openingASingleFieldCommitsNothing()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    LogCapture log(osg::LOG_NOTICE);
    editor.setEditorData(rows.item("number"));
    editor.setEditorData(rows.item("small"));
    QCOMPARE(commits.size(), 0);
    QCOMPARE(countOf(log.take(), "3 QorFieldEditor::signalCommitData:\n"), 0);
    QVERIFY(!boxOf(editor)->signalsBlocked());
}

void tst_QorInt32FieldEditor::openingAValueOfAListCommitsOnce()
{
    const FieldRows rows(parts);
    LogCapture log(osg::LOG_NOTICE);
    QorInt32FieldEditor zero(nullptr);
    zero.setEditorData(rows.item("list", 0));
    QVERIFY(log.take().isEmpty());
    QorInt32FieldEditor editor(nullptr);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    editor.setEditorData(rows.item("list", 1));
    QCOMPARE(commits.size(), 1);
    QCOMPARE(log.take(), QByteArrayList({"3 QorFieldEditor::signalCommitData:\n"}));
}

void tst_QorInt32FieldEditor::everyStepIsCommittedAndTheEditorStaysOpen()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
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

void tst_QorInt32FieldEditor::keysReachTheSpinBox()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(rows.item("number"));
    QTest::keyClick(&editor, Qt::Key_Up);
    QCOMPARE(boxOf(editor)->value(), 6);
    editor.setEditorData(rows.item("number"));
    // What is typed replaces what was there.
    QTest::keyClicks(&editor, QStringLiteral("-42"));
    QCOMPARE(boxOf(editor)->value(), -42);
    QTest::keyClick(&editor, Qt::Key_Backspace);
    QCOMPARE(boxOf(editor)->value(), -4);
}

void tst_QorInt32FieldEditor::keyThatTheSpinBoxIgnoresGoesUpOnce()
{
    struct Parent : QWidget
    {
        void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
        QList<int> keys;
    };
    Parent parent;
    auto* editor = new QorInt32FieldEditor(&parent);
    auto* spinBox = boxOf(*editor);
    QSignalSpy finished(spinBox, &QSpinBox::editingFinished);
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

void tst_QorInt32FieldEditor::writesASingleValueAsOfNow()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    boxOf(editor)->setValue(77);
    LogCapture log(osg::LOG_LOG);
    editor.setModelData(rows.item("number"));
    QCOMPARE(rows.field<SFInt32>("number")->value(), 77);
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(Tiny::fieldWrites()[0].caller, Field::EXTERNAL_CT);
    QCOMPARE(log.take(),
             QByteArrayList({"0 QorInt32FieldEditor::setModelData: setting single field number to "
                             "77.000000\n"}));
}

void tst_QorInt32FieldEditor::writesAValueOfAListAndBuildsItsRowsAnew()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
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

void tst_QorInt32FieldEditor::valueWithoutMultiFieldAboveIsReported()
{
    const FieldRows rows(parts);
    QorFieldItem root(nullptr, nullptr);
    QorMFieldValueItem stray(2, rows.field("list"), &root);
    QorInt32FieldEditor editor(nullptr);
    boxOf(editor)->setValue(9);
    LogCapture log;
    editor.setModelData(&stray);
    QCOMPARE(log.take(), QByteArrayList({"1 QorInt32FieldEditor::setModelData: parent of value is not an MF* "
                                         "field.\n"}));
    QCOMPARE(rows.text("list"), std::string("0, 20, 9"));
    QCOMPARE(rows.rowText("list", 2).trimmed(), QStringLiteral("-7"));
}

void tst_QorInt32FieldEditor::rowWithoutFieldIsReported()
{
    QorFieldItem root(nullptr, nullptr);
    QorInt32FieldEditor editor(nullptr);
    boxOf(editor)->setValue(9);
    LogCapture log;
    editor.setEditorData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorInt32FieldEditor::setEditorData: invalid field. Can't update editor."}));
    QCOMPARE(boxOf(editor)->value(), 9);
    editor.setModelData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorInt32FieldEditor::setModelData: invalid field. Can't update model."}));
}

void tst_QorInt32FieldEditor::rowThatIsNoValueDoesNothing()
{
    const FieldRows rows(parts);
    LogCapture log;
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(rows.item("list"));
    editor.setModelData(rows.item("list"));
    QCOMPARE(rows.text("list"), std::string("0, 20, -7"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorInt32FieldEditor::valueThatIsGoneDoesNothing()
{
    const FieldRows rows(parts);
    QorFieldItem* last = rows.item("list", 2);
    rows.field("list")->setValueByStr(0.0, "1");
    Tiny::reset();
    LogCapture log;
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(last);
    editor.setModelData(last);
    QCOMPARE(rows.text("list"), std::string("1"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorInt32FieldEditor::singleFieldOfAnotherClassIsOnlyLogged()
{
    const FieldRows rows(parts);
    QorInt32FieldEditor editor(nullptr);
    editor.setEditorData(rows.item("truth"));
    QCOMPARE(boxOf(editor)->value(), 0);
    LogCapture log;
    editor.setModelData(rows.item("truth"));
    QCOMPARE(log.take(), QByteArrayList({"0 QorInt32FieldEditor::setModelData: setting single field truth to "
                                         "0.000000\n"}));
    QCOMPARE(rows.text("truth"), std::string("TRUE"));
}

QTEST_MAIN(tst_QorInt32FieldEditor)
#include "tst_QorInt32FieldEditor.moc"
