// Values in the node panel of the workbench, edited without the mouse.
#include "Author.h"
#include "NodeDock.h"
#include <QLineEdit>
#include <QorFieldEditor.h>
#include <QorNodeEditorTreeView.h>
#include <QorNodeModel.h>

using namespace Orvane::Qt4;

class tst_ValuesByKeys : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _author.reset(); }

    void theEditKeyMeansTheValueOfTheRow();
    void aTruthIsChosenFromItsList();
    void whatIsReadOnceIsEditedToo();
    void aFieldWithoutANodeHasNoEditor();

private:
    QTreeView* fields() const
    {
        return _author->window.findChild<NodeDock*>()->findChild<QorNodeEditorTreeView*>();
    }
    void goTo(const char* node, const QString& name);
    bool isEditing() const { return fields()->findChild<QorFieldEditor*>(); }

    std::unique_ptr<Author> _author;
};

void tst_ValuesByKeys::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), R"(<X3D version='4.0'><Scene><Group DEF='Empty'/>
<Shape DEF='Body'><Box DEF='Box' size='2 2 2'/></Shape></Scene></X3D>)"));
}

/// To the first cell of the row of a field, as the keys that go from row to row do.
void tst_ValuesByKeys::goTo(const char* node, const QString& name)
{
    _author->select(node);
    fields()->setFocus();
    const QModelIndexList rows =
        fields()->model()->match(fields()->model()->index(0, 0), Qt::DisplayRole, name);
    QCOMPARE(rows.size(), 1);
    fields()->setCurrentIndex(rows.first());
}

void tst_ValuesByKeys::theEditKeyMeansTheValueOfTheRow()
{
    goTo("Body", QStringLiteral("bboxSize"));
    QTest::keyClick(fields(), Qt::Key_F2);
    QVERIFY(isEditing());
    QCOMPARE(fields()->currentIndex().column(), int(QorNodeModel::FieldValue));
}

void tst_ValuesByKeys::aTruthIsChosenFromItsList()
{
    goTo("Body", QStringLiteral("visible"));
    QTest::keyClick(fields(), Qt::Key_F2);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget()->findChild<QAbstractItemView*>(), Qt::Key_Up);
    QTest::keyClick(QApplication::activePopupWidget()->findChild<QAbstractItemView*>(), Qt::Key_Return);
    _author->run();
    QCOMPARE(_author->value("Body", "visible"), std::string("FALSE"));
    _author->steps().undo();
    QCOMPARE(_author->value("Body", "visible"), std::string("TRUE"));
}

void tst_ValuesByKeys::whatIsReadOnceIsEditedToo()
{
    QCOMPARE(_author->field("Box", "size")->partType(), Orvane::FIELDP);
    goTo("Box", QStringLiteral("size"));
    QTest::keyClick(fields(), Qt::Key_F2);
    QVERIFY(isEditing());
    auto* const line = fields()->findChild<QLineEdit*>();
    line->selectAll();
    QTest::keyClicks(line, QStringLiteral("1 2 3"));
    QTest::keyClick(line, Qt::Key_Return);
    _author->run();
    QCOMPARE(_author->value("Box", "size"), std::string("1 2 3"));
    QVERIFY(_author->saved().contains("size 1 2 3"));
    _author->steps().undo();
    QCOMPARE(_author->value("Box", "size"), std::string("2 2 2"));
}

void tst_ValuesByKeys::aFieldWithoutANodeHasNoEditor()
{
    goTo("Empty", QStringLiteral("metadata"));
    QTest::keyClick(fields(), Qt::Key_F2);
    QVERIFY(!isEditing());
    goTo("Body", QStringLiteral("geometry"));
    QTest::keyClick(fields(), Qt::Key_F2);
    QVERIFY(isEditing());
}

QTEST_MAIN(tst_ValuesByKeys)
#include "tst_ValuesByKeys.moc"
