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
    void whatIsNotSavedIsTold();

private:
    QTreeView* fields() const
    {
        return _author->window.findChild<NodeDock*>()->findChild<QorNodeEditorTreeView*>();
    }
    void goTo(const char* node, const QString& name);
    void goToField(const QString& name);
    bool isEditing() const { return fields()->findChild<QorFieldEditor*>(); }

    std::unique_ptr<Author> _author;
};

void tst_ValuesByKeys::init()
{
    _author = std::make_unique<Author>();
    QVERIFY(_author->open(QStringLiteral("scene.x3d"), R"(<X3D version='4.0'><Scene>
<ProtoDeclare name='Light'><ProtoInterface/><ProtoBody><Transform/></ProtoBody></ProtoDeclare>
<ProtoInstance DEF='Lamp' name='Light'/><Group DEF='Empty'/>
<Shape DEF='Body'><Box DEF='Box' size='2 2 2'/></Shape></Scene></X3D>)"));
}

/// To the first cell of the row of a field, as the keys that go from row to row do.
void tst_ValuesByKeys::goTo(const char* node, const QString& name)
{
    QVERIFY(_author->select(node));
    goToField(name);
}

void tst_ValuesByKeys::goToField(const QString& name)
{
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
    auto* const list = QApplication::activePopupWidget()->findChild<QAbstractItemView*>();
    QTest::keyClick(list, Qt::Key_Up);
    QTest::keyClick(list, Qt::Key_Return);
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

void tst_ValuesByKeys::whatIsNotSavedIsTold()
{
    const auto edit = [this](const QString& text) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // of the last editor
        fields()->setFocus();
        QTest::keyClick(fields(), Qt::Key_F2);
        auto* const line = fields()->findChild<QLineEdit*>();
        QVERIFY(line);
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
        _author->run();
    };
    goTo("Box", QStringLiteral("size"));
    edit(QStringLiteral("1 1 1"));
    QVERIFY2(!_author->told().contains(QStringLiteral("not be saved")), qPrintable(_author->told()));

    _author->select("Lamp");
    std::vector<Orvane::Node*> body;
    _author->find("Lamp")->collectAllChildren(body, 0);
    QVERIFY(!body.empty());
    _author->window.selection()->selectNode(body.front());
    goToField(QStringLiteral("translation"));
    edit(QStringLiteral("1 1 1"));
    QVERIFY2(_author->told().contains(QStringLiteral("not be saved")), qPrintable(_author->told()));
    QVERIFY(!_author->saved().contains("translation 1 1 1"));
}

QTEST_MAIN(tst_ValuesByKeys)
#include "tst_ValuesByKeys.moc"
