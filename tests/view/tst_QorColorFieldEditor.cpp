#include "FieldRows.h"
#include "LogCapture.h"
#include "QorColorFieldEditor.h"
#include <QHBoxLayout>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorColorFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void showsNothingAndChangesNothing();
};

void tst_QorColorFieldEditor::showsNothingAndChangesNothing()
{
    const FieldRows rows({part("color", SFCOLOR_DT, "1 0 0"), part("colors", MFCOLOR_DT, "1 0 0, 0 1 0")});
    LogCapture log;
    QorColorFieldEditor editor(nullptr);
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 0);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QVERIFY(editor.findChildren<QWidget*>().isEmpty());
    for (QorFieldItem* item : {rows.item("color"), rows.item("colors", 1)}) {
        editor.setEditorData(item);
        editor.setModelData(item);
    }
    editor.setEditorData(nullptr);
    editor.setModelData(nullptr);
    QCOMPARE(rows.text("color"), std::string("1 0 0"));
    QCOMPARE(rows.text("colors"), std::string("1 0 0, 0 1 0"));
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(log.take().isEmpty());
}

QTEST_MAIN(tst_QorColorFieldEditor)
#include "tst_QorColorFieldEditor.moc"
