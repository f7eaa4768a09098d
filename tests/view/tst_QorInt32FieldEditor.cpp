#include "NumberEditorTests.h"
#include "QorInt32FieldEditor.h"
#include <Orvane/SFInt32.h>
#include <QSpinBox>
#include <limits>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const double Infinite = std::numeric_limits<double>::infinity();
const double NoNumber = std::numeric_limits<double>::quiet_NaN();

struct Kind
{
    using Editor = QorInt32FieldEditor;
    using SpinBox = QSpinBox;
    using SingleField = SFInt32;
    using Number = int;
    static constexpr NodePartDataType single = SFINT32_DT;
    static constexpr NodePartDataType multi = MFINT32_DT;
    static constexpr const char* name = "QorInt32FieldEditor";
    static constexpr int highest = std::numeric_limits<int>::max();
    static constexpr int lowest = -highest;
};

using Tests = NumberEditorTests<Kind>;

QSpinBox* boxOf(const QWidget& editor)
{
    return Tests::boxOf(editor);
}

} // namespace

class tst_QorInt32FieldEditor : public QObject
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
    void rowWithoutFieldIsReported() { Tests::rowWithoutFieldIsReported(); }
    void rowThatIsNoValueDoesNothing() { Tests::rowThatIsNoValueDoesNothing(); }
    void valueThatIsGoneDoesNothing() { Tests::valueThatIsGoneDoesNothing(); }
    void singleFieldOfAnotherClassIsOnlyLogged() { Tests::singleFieldOfAnotherClassIsOnlyLogged(); }
};

void tst_QorInt32FieldEditor::rangeOfASingleField_data()
{
    QTest::addColumn<bool>("isLimited");
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<int>("lowest");
    QTest::addColumn<int>("highest");
    QTest::newRow("none") << false << 2.0 << 3.0 << Kind::lowest << Kind::highest;
    QTest::newRow("both") << true << -4.0 << 8.0 << -4 << 8;
    QTest::newRow("a maximum of 0 is none") << true << 1.0 << 0.0 << 1 << Kind::highest;
    QTest::newRow("truncated") << true << -2.9 << 10.9 << -2 << 10;
    QTest::newRow("infinite") << true << -Infinite << Infinite << Kind::lowest << Kind::highest;
    QTest::newRow("beyond the type") << true << -1e300 << 3e9 << Kind::lowest << Kind::highest;
    QTest::newRow("no numbers") << true << NoNumber << NoNumber << Kind::lowest << Kind::highest;
    // The spin box takes the later of the two.
    QTest::newRow("minimum above maximum") << true << 20.0 << 10.0 << 10 << 10;
}

void tst_QorInt32FieldEditor::keysReachTheSpinBox()
{
    const FieldRows rows(Tests::parts());
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

QTEST_MAIN(tst_QorInt32FieldEditor)
#include "tst_QorInt32FieldEditor.moc"
