#include "NumberEditorTests.h"
#include "QorFloatFieldEditor.h"
#include <Orvane/SFFloat.h>
#include <QDoubleSpinBox>
#include <limits>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const double Infinite = std::numeric_limits<double>::infinity();
const double NoNumber = std::numeric_limits<double>::quiet_NaN();

struct Kind
{
    using Editor = QorFloatFieldEditor;
    using SpinBox = QDoubleSpinBox;
    using SingleField = SFFloat;
    using Number = double;
    static constexpr NodePartDataType single = SFFLOAT_DT;
    static constexpr NodePartDataType multi = MFFLOAT_DT;
    static constexpr const char* name = "QorFloatFieldEditor";
    static constexpr double highest = std::numeric_limits<double>::max();
    static constexpr double lowest = -highest;
};

using Tests = NumberEditorTests<Kind>;

QDoubleSpinBox* boxOf(const QWidget& editor)
{
    return Tests::boxOf(editor);
}

} // namespace

class tst_QorFloatFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void spinBoxFillsTheEditor() { Tests::spinBoxFillsTheEditor(); }
    void rangeOfASingleField_data();
    void rangeOfASingleField() { Tests::rangeOfASingleField(); }
    void linesOfOpeningASingleFieldGoOutAtAnyLevel() { Tests::linesOfOpeningASingleFieldGoOutAtAnyLevel(); }
    void limitsOfAListAreNotApplied() { Tests::limitsOfAListAreNotApplied(); }
    void openingASingleFieldCommitsNothing() { Tests::openingASingleFieldCommitsNothing(); }
    void openingAValueOfAListCommitsOnce() { Tests::openingAValueOfAListCommitsOnce(); }
    void everyStepIsCommittedAndTheEditorStaysOpen() { Tests::everyStepIsCommittedAndTheEditorStaysOpen(); }
    void keysReachTheSpinBox();
    void keyThatTheSpinBoxIgnoresGoesUpOnce() { Tests::keyThatTheSpinBoxIgnoresGoesUpOnce(); }
    void writesASingleValueAsOfNow() { Tests::writesASingleValueAsOfNow(); }
    void writesAValueOfAListAndBuildsItsRowsAnew() { Tests::writesAValueOfAListAndBuildsItsRowsAnew(); }
    void valueWithoutMultiFieldAboveIsReported() { Tests::valueWithoutMultiFieldAboveIsReported(); }
    void valuesShowAndComeBackAtTwoDecimals();
    void valuesThatAreNoNumbersAreShown_data();
    void valuesThatAreNoNumbersAreShown();
    void rowWithoutFieldIsReported() { Tests::rowWithoutFieldIsReported(); }
    void rowThatIsNoValueDoesNothing() { Tests::rowThatIsNoValueDoesNothing(); }
    void valueThatIsGoneDoesNothing() { Tests::valueThatIsGoneDoesNothing(); }
    void singleFieldOfAnotherClassIsOnlyLogged() { Tests::singleFieldOfAnotherClassIsOnlyLogged(); }
};

void tst_QorFloatFieldEditor::rangeOfASingleField_data()
{
    QTest::addColumn<bool>("isLimited");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("lowest");
    QTest::addColumn<double>("highest");
    QTest::newRow("none") << false << 2.0 << 3.0 << Kind::lowest << Kind::highest;
    QTest::newRow("both") << true << -4.0 << 8.0 << -4.0 << 8.0;
    QTest::newRow("a maximum of 0 is one") << true << -1.0 << 0.0 << -1.0 << 0.0;
    QTest::newRow("two decimals") << true << 0.25 << 10.75 << 0.25 << 10.75;
    QTest::newRow("infinite") << true << -Infinite << Infinite << Kind::lowest << Kind::highest;
    QTest::newRow("no numbers") << true << NoNumber << NoNumber << Kind::lowest << Kind::highest;
    // The spin box takes the later of the two.
    QTest::newRow("minimum above maximum") << true << 20.0 << 10.0 << 10.0 << 10.0;
}

void tst_QorFloatFieldEditor::keysReachTheSpinBox()
{
    const FieldRows rows(Tests::parts());
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

QTEST_MAIN(tst_QorFloatFieldEditor)
#include "tst_QorFloatFieldEditor.moc"
