#include "FieldRows.h"
#include "LogCapture.h"
#include "QorBoolFieldEditor.h"
#include <Orvane/MFBool.h>
#include <Orvane/SFBool.h>
#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorBoolFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void boxHoldsTwoPlainWordsWithoutMargin();
    void showsASingleValue();
    void showsAValueOfAList();
    void choiceIsCommittedAndClosesEvenWhenItIsTheSame();
    void writesASingleValueAsOfNow();
    void firstValueOfAListIsNeverWritten();
    void otherValuesAreWrittenAndTheRowKeepsItsText();
    void escapeClosesTheBoxAndIsAccepted();
    void otherKeysGoUp();
    void rowWithoutFieldIsReported();
    void rowThatIsNoValueDoesNothing();
    void valueThatIsGoneDoesNothing();
    void fieldOfAnotherClassDoesNothing();
};

namespace {

const std::vector<Tiny::Part> parts = {part("on", SFBOOL_DT, "TRUE"), part("off", SFBOOL_DT, "FALSE"),
                                       part("list", MFBOOL_DT, "TRUE, FALSE, TRUE"),
                                       part("number", SFINT32_DT, "5"), part("numbers", MFINT32_DT, "5, 6")};

QComboBox* boxOf(const QWidget& editor)
{
    return editor.findChild<QComboBox*>();
}

} // namespace

void tst_QorBoolFieldEditor::boxHoldsTwoPlainWordsWithoutMargin()
{
    QorBoolFieldEditor editor(nullptr);
    QComboBox* box = boxOf(editor);
    QVERIFY(dynamic_cast<QorBoolFieldEditor::BoolComboBox*>(box));
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QStringLiteral("FALSE"));
    QCOMPARE(box->itemText(1), QStringLiteral("TRUE"));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(box->itemIcon(i).isNull());
        QVERIFY(!box->itemData(i).isValid());
    }
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->stretch(0), 0);
}

void tst_QorBoolFieldEditor::showsASingleValue()
{
    const FieldRows rows(parts);
    QorBoolFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("on"));
    QCOMPARE(boxOf(editor)->currentIndex(), 1);
    editor.setEditorData(rows.item("off"));
    QCOMPARE(boxOf(editor)->currentIndex(), 0);
}

void tst_QorBoolFieldEditor::showsAValueOfAList()
{
    const FieldRows rows(parts);
    QorBoolFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("list", 2));
    QCOMPARE(boxOf(editor)->currentIndex(), 1);
    editor.setEditorData(rows.item("list", 1));
    QCOMPARE(boxOf(editor)->currentIndex(), 0);
}

void tst_QorBoolFieldEditor::choiceIsCommittedAndClosesEvenWhenItIsTheSame()
{
    qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
    const FieldRows rows(parts);
    QorBoolFieldEditor editor(nullptr);
    editor.setEditorData(rows.item("on"));
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QStringList order;
    connect(&editor, &QorFieldEditor::commitData, this, [&](QWidget* who) {
        QCOMPARE(who, &editor);
        order << QStringLiteral("commit");
    });
    connect(&editor, &QorFieldEditor::closeEditor, this,
            [&](QWidget* who, QAbstractItemDelegate::EndEditHint hint) {
                QCOMPARE(who, &editor);
                QCOMPARE(hint, QAbstractItemDelegate::NoHint);
                order << QStringLiteral("close");
            });
    LogCapture log;
    boxOf(editor)->showPopup();
    QTest::keyClick(boxOf(editor)->view(), Qt::Key_Return);
    QCOMPARE(order, QStringList({QStringLiteral("commit"), QStringLiteral("close")}));
    QCOMPARE(log.take(), QByteArrayList({"3 QorFieldEditor::signalCommitData:\n"}));

    boxOf(editor)->showPopup();
    QTest::keyClick(boxOf(editor)->view(), Qt::Key_Up);
    QTest::keyClick(boxOf(editor)->view(), Qt::Key_Return);
    QCOMPARE(order.size(), 4);
    QCOMPARE(boxOf(editor)->currentIndex(), 0);
}

void tst_QorBoolFieldEditor::writesASingleValueAsOfNow()
{
    const FieldRows rows(parts);
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(1);
    editor.setModelData(rows.item("off"));
    QCOMPARE(rows.field<SFBool>("off")->value(), true);
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
    QCOMPARE(Tiny::fieldWrites()[0].caller, Field::EXTERNAL_CT);
    boxOf(editor)->setCurrentIndex(0);
    editor.setModelData(rows.item("off"));
    QCOMPARE(rows.field<SFBool>("off")->value(), false);
}

void tst_QorBoolFieldEditor::firstValueOfAListIsNeverWritten()
{
    const FieldRows rows(parts);
    LogCapture log;
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(0);
    editor.setModelData(rows.item("list", 0));
    QCOMPARE(rows.text("list"), std::string("TRUE, FALSE, TRUE"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorBoolFieldEditor::otherValuesAreWrittenAndTheRowKeepsItsText()
{
    const FieldRows rows(parts);
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(1);
    QorFieldItem* item = rows.item("list", 1);
    editor.setModelData(item);
    QCOMPARE(rows.text("list"), std::string("TRUE, TRUE, TRUE"));
    QCOMPARE(rows.item("list", 1), item);
    QCOMPARE(rows.rowText("list", 1).trimmed(), QStringLiteral("FALSE"));
}

void tst_QorBoolFieldEditor::escapeClosesTheBoxAndIsAccepted()
{
    QorBoolFieldEditor editor(nullptr);
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    QVERIFY(boxOf(editor)->isVisible());
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    escape.ignore();
    QApplication::sendEvent(boxOf(editor), &escape);
    QVERIFY(escape.isAccepted());
    QVERIFY(!boxOf(editor)->isVisible());
    QVERIFY(editor.isVisible());
}

void tst_QorBoolFieldEditor::otherKeysGoUp()
{
    struct Parent : QWidget
    {
        void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
        QList<int> keys;
    };
    Parent parent;
    QorBoolFieldEditor editor(&parent);
    boxOf(editor)->setCurrentIndex(0);
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return, Qt::Key_T, Qt::Key_F4})
        QTest::keyClick(boxOf(editor), key);
    QCOMPARE(parent.keys, QList<int>({Qt::Key_Down, Qt::Key_Return, Qt::Key_T, Qt::Key_F4}));
    QCOMPARE(boxOf(editor)->currentIndex(), 0);
}

void tst_QorBoolFieldEditor::rowWithoutFieldIsReported()
{
    QorFieldItem root(nullptr, nullptr);
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(1);
    LogCapture log;
    editor.setEditorData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorBoolFieldEditor::setEditorData: invalid field. Can't update editor."}));
    QCOMPARE(boxOf(editor)->currentIndex(), 1);
    editor.setModelData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorBoolFieldEditor::setModelData: invalid field. Can't update model."}));
}

void tst_QorBoolFieldEditor::rowThatIsNoValueDoesNothing()
{
    const FieldRows rows(parts);
    LogCapture log;
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(0);
    editor.setEditorData(rows.item("list"));
    QCOMPARE(boxOf(editor)->currentIndex(), 0);
    editor.setModelData(rows.item("list"));
    QCOMPARE(rows.text("list"), std::string("TRUE, FALSE, TRUE"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

void tst_QorBoolFieldEditor::valueThatIsGoneDoesNothing()
{
    const FieldRows rows(parts);
    QorFieldItem* last = rows.item("list", 2);
    rows.field("list")->setValueByStr(0.0, "FALSE");
    Tiny::reset();
    QorBoolFieldEditor editor(nullptr);
    boxOf(editor)->setCurrentIndex(1);
    editor.setEditorData(last);
    QCOMPARE(boxOf(editor)->currentIndex(), 1);
    editor.setModelData(last);
    QCOMPARE(rows.text("list"), std::string("FALSE"));
    QVERIFY(Tiny::fieldWrites().empty());
}

void tst_QorBoolFieldEditor::fieldOfAnotherClassDoesNothing()
{
    const FieldRows rows(parts);
    LogCapture log;
    QorBoolFieldEditor editor(nullptr);
    for (QorFieldItem* item : {rows.item("number"), rows.item("numbers", 1)}) {
        editor.setEditorData(item);
        editor.setModelData(item);
    }
    QCOMPARE(rows.text("number"), std::string("5"));
    QCOMPARE(rows.text("numbers"), std::string("5, 6"));
    QVERIFY(log.take().isEmpty());
}

QTEST_MAIN(tst_QorBoolFieldEditor)
#include "tst_QorBoolFieldEditor.moc"
