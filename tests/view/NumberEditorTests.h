#pragma once

#include "FieldRows.h"
#include "LogCapture.h"
#include "QorFieldEditor.h"
#include <QHBoxLayout>
#include <QSignalSpy>
#include <QtTest>

/// What the editors of numbers have in common, each function a test. \a Kind tells the types of one of them
/// (`Editor`, `SpinBox`, `SingleField`, `Number` of the box), its data types (`single`, `multi`), its class
/// name (`name`) and the widest range of its spin box (`lowest`, `highest`).
template <class Kind>
class NumberEditorTests
{
    using Editor = typename Kind::Editor;
    using SpinBox = typename Kind::SpinBox;
    using Number = typename Kind::Number;
    using FieldEditor = Orvane::Qt4::QorFieldEditor;

public:
    static SpinBox* boxOf(const QWidget& editor) { return editor.findChild<SpinBox*>(); }

    static std::vector<Tiny::Part> parts()
    {
        return {part("number", Kind::single, "5"), limited("small", Kind::single, "3", 1.0, 8.0),
                part("list", Kind::multi, "0, 20, -7"),
                limited("limitedList", Kind::multi, "0, 200", 0.0, 10.0),
                part("truth", Orvane::SFBOOL_DT, "TRUE")};
    }

    /// A line of the editor's, at a level, with its class name in front.
    static QByteArray line(const char* level, const QByteArray& text)
    {
        return QByteArray(level) + ' ' + Kind::name + "::" + text;
    }

    static void spinBoxFillsTheEditor()
    {
        Editor editor(nullptr);
        auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
        QVERIFY(layout);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->stretch(0), 3);
        QCOMPARE(layout->itemAt(0)->widget(), boxOf(editor));
        QVERIFY(!editor.focusProxy());
    }

    /// One row of a table of ranges: "isLimited", "min" and "max" of the field, "lowest" and "highest" of the
    /// box.
    static void rangeOfASingleField()
    {
        QFETCH(bool, isLimited);
        QFETCH(double, min);
        QFETCH(double, max);
        Tiny::Part number = limited("number", Kind::single, "6", min, max);
        if (!isLimited)
            number.restriction = Orvane::NodePartDesc::NONE_VR;
        const FieldRows rows({number});
        Editor editor(nullptr);
        editor.setEditorData(rows.item("number"));
        const SpinBox* box = boxOf(editor);
        QTEST(box->minimum(), "lowest");
        QTEST(box->maximum(), "highest");
        QCOMPARE(box->value(), qBound(box->minimum(), Number(6), box->maximum()));
        QCOMPARE(rows.text("number"), std::string("6"));
    }

    static void linesOfOpeningASingleFieldGoOutAtAnyLevel()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        LogCapture log(osg::LOG_LOG);
        editor.setEditorData(rows.item("small"));
        QCOMPARE(log.take(),
                 QByteArrayList({line("0", "setEditorData: minValue=1.000000, maxVal=8.000000\n")}));
        editor.setEditorData(rows.item("number"));
        const QByteArray lowest = QByteArray::number(double(Kind::lowest), 'f', 6);
        QCOMPARE(log.take(),
                 QByteArrayList({line("0", "setEditorData: no restriction. minDouble=") + lowest + '\n'}));
        editor.setEditorData(rows.item("list", 1));
        QVERIFY(log.take().isEmpty());
    }

    static void limitsOfAListAreNotApplied()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        editor.setEditorData(rows.item("small"));
        editor.setEditorData(rows.item("limitedList", 1));
        QCOMPARE(boxOf(editor)->value(), Number(200));
        QCOMPARE(boxOf(editor)->minimum(), Kind::lowest);
        QCOMPARE(boxOf(editor)->maximum(), Kind::highest);
    }

    static void openingASingleFieldCommitsNothing()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        QSignalSpy commits(&editor, &FieldEditor::commitData);
        LogCapture log(osg::LOG_NOTICE);
        editor.setEditorData(rows.item("number"));
        editor.setEditorData(rows.item("small"));
        QCOMPARE(commits.size(), 0);
        QCOMPARE(log.take().count("3 QorFieldEditor::signalCommitData:\n"), 0);
        QVERIFY(!boxOf(editor)->signalsBlocked());
    }

    static void openingAValueOfAListCommitsOnce()
    {
        const FieldRows rows(parts());
        LogCapture log(osg::LOG_NOTICE);
        Editor zero(nullptr);
        zero.setEditorData(rows.item("list", 0));
        QVERIFY(log.take().isEmpty());
        Editor editor(nullptr);
        QSignalSpy commits(&editor, &FieldEditor::commitData);
        editor.setEditorData(rows.item("list", 1));
        QCOMPARE(commits.size(), 1);
        QCOMPARE(log.take(), QByteArrayList({"3 QorFieldEditor::signalCommitData:\n"}));
    }

    static void everyStepIsCommittedAndTheEditorStaysOpen()
    {
        qRegisterMetaType<QAbstractItemDelegate::EndEditHint>();
        const FieldRows rows(parts());
        Editor editor(nullptr);
        editor.setEditorData(rows.item("small"));
        QSignalSpy commits(&editor, &FieldEditor::commitData);
        QSignalSpy closes(&editor, &FieldEditor::closeEditor);
        QObject::connect(&editor, &FieldEditor::commitData, &editor,
                         [&] { editor.setModelData(rows.item("small")); });
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

    static void keyThatTheSpinBoxIgnoresGoesUpOnce()
    {
        struct Parent : QWidget
        {
            void keyPressEvent(QKeyEvent* event) override { keys << event->key(); }
            QList<int> keys;
        };
        Parent parent;
        auto* editor = new Editor(&parent);
        auto* spinBox = boxOf(*editor);
        QSignalSpy finished(spinBox, &QAbstractSpinBox::editingFinished);
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

    static void writesASingleValueAsOfNow()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        boxOf(editor)->setValue(77);
        LogCapture log(osg::LOG_LOG);
        editor.setModelData(rows.item("number"));
        QCOMPARE(double(rows.template field<typename Kind::SingleField>("number")->value()), 77.0);
        QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
        QCOMPARE(Tiny::fieldWrites()[0].time, 0.0);
        QCOMPARE(Tiny::fieldWrites()[0].caller, Orvane::Field::EXTERNAL_CT);
        QCOMPARE(log.take(), QByteArrayList({line("0", "setModelData: setting single field number to "
                                                       "77.000000\n")}));
    }

    static void writesAValueOfAListAndBuildsItsRowsAnew()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        boxOf(editor)->setValue(9);
        Orvane::Qt4::QorFieldItem* item = rows.item("list", 1);
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

    static void valueWithoutMultiFieldAboveIsReported()
    {
        const FieldRows rows(parts());
        Orvane::Qt4::QorFieldItem root(nullptr, nullptr);
        Orvane::Qt4::QorMFieldValueItem stray(2, rows.field("list"), &root);
        Editor editor(nullptr);
        boxOf(editor)->setValue(9);
        LogCapture log;
        editor.setModelData(&stray);
        QCOMPARE(log.take(),
                 QByteArrayList({line("1", "setModelData: parent of value is not an MF* field.\n")}));
        QCOMPARE(rows.text("list"), std::string("0, 20, 9"));
        QCOMPARE(rows.rowText("list", 2).trimmed(), QStringLiteral("-7"));
    }

    static void rowWithoutFieldIsReported()
    {
        Orvane::Qt4::QorFieldItem root(nullptr, nullptr);
        Editor editor(nullptr);
        boxOf(editor)->setValue(9);
        LogCapture log;
        editor.setEditorData(&root);
        QCOMPARE(log.take(),
                 QByteArrayList({line("1", "setEditorData: invalid field. Can't update editor.")}));
        QCOMPARE(boxOf(editor)->value(), Number(9));
        editor.setModelData(&root);
        QCOMPARE(log.take(), QByteArrayList({line("1", "setModelData: invalid field. Can't update model.")}));
    }

    static void rowThatIsNoValueDoesNothing()
    {
        const FieldRows rows(parts());
        LogCapture log;
        Editor editor(nullptr);
        editor.setEditorData(rows.item("list"));
        editor.setModelData(rows.item("list"));
        QCOMPARE(rows.text("list"), std::string("0, 20, -7"));
        QVERIFY(Tiny::fieldWrites().empty());
        QVERIFY(log.take().isEmpty());
    }

    static void valueThatIsGoneDoesNothing()
    {
        const FieldRows rows(parts());
        Orvane::Qt4::QorFieldItem* last = rows.item("list", 2);
        rows.field("list")->setValueByStr(0.0, "1");
        Tiny::reset();
        LogCapture log;
        Editor editor(nullptr);
        editor.setEditorData(last);
        editor.setModelData(last);
        QCOMPARE(rows.text("list"), std::string("1"));
        QVERIFY(Tiny::fieldWrites().empty());
        QVERIFY(log.take().isEmpty());
    }

    static void singleFieldOfAnotherClassIsOnlyLogged()
    {
        const FieldRows rows(parts());
        Editor editor(nullptr);
        editor.setEditorData(rows.item("truth"));
        QCOMPARE(boxOf(editor)->value(), Number(0));
        LogCapture log;
        editor.setModelData(rows.item("truth"));
        QCOMPARE(log.take(),
                 QByteArrayList({line("0", "setModelData: setting single field truth to 0.000000\n")}));
        QCOMPARE(rows.text("truth"), std::string("TRUE"));
    }
};
