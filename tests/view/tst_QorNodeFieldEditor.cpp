#include "FieldRows.h"
#include "LogCapture.h"
#include "QorNodeFieldEditor.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFNode.h>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodeFieldEditor : public QObject
{
    Q_OBJECT

private slots:
    void buttonIsAllThereIs();
    void namedNodeShowsItsName();
    void unnamedNodeShowsItsId();
    void valueOfAListShowsItsNode();
    void onlySingleFieldsAreFollowedBehindAReference();
    void emptyFieldDisablesTheButton();
    void emptyFieldLeavesTextAndNode();
    void pressLeadsToTheNode();
    void pressAfterTheNodeDiedDoesNothing();
    void writesNothing();
    void rowWithoutFieldIsReported();
    void rowThatIsNoValueDoesNothing();
    void namesAreShownAsTheyStand();
};

namespace {

struct NodeEditor : QorNodeFieldEditor
{
    NodeEditor()
        : QorNodeFieldEditor(nullptr)
    {
    }
    using QorNodeFieldEditor::toString;
    QPushButton* button() const { return findChild<QPushButton*>(); }
};

struct LinkedRows : FieldRows
{
    LinkedRows()
        : FieldRows({part("one", SFNODE_DT), part("none", SFNODE_DT), part("many", MFNODE_DT),
                     part("number", SFINT32_DT)})
        , named(Tiny::makeNode(Tiny::makeType("Leaf"), "Oak"))
        , unnamed(Tiny::makeNode(Tiny::makeType("Leaf")))
    {
        Tiny::link(node.get(), "one", named.get());
        Tiny::link(node.get(), "many", unnamed.get());
        Tiny::link(node.get(), "many", named.get());
        rows = std::make_unique<QorNodeModel>(node.get(), nullptr);
    }
    QorFieldItem* item(const char* name) const { return itemOf(rows->index(field(name))); }
    QorFieldItem* item(const char* name, int value) const { return item(name)->child(value); }

    std::unique_ptr<Node> named;
    std::unique_ptr<Node> unnamed;
    std::unique_ptr<QorNodeModel> rows; ///< made when the links are there
};

} // namespace

void tst_QorNodeFieldEditor::buttonIsAllThereIs()
{
    const NodeEditor editor;
    auto* layout = qobject_cast<QHBoxLayout*>(editor.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->widget(), editor.button());
}

void tst_QorNodeFieldEditor::namedNodeShowsItsName()
{
    const LinkedRows rows;
    NodeEditor editor;
    editor.setEditorData(rows.item("one"));
    QVERIFY(editor.button()->isEnabled());
    QCOMPARE(editor.button()->text(), QStringLiteral("Oak"));
    QCOMPARE(editor.toString(), QStringLiteral("Oak"));
}

void tst_QorNodeFieldEditor::unnamedNodeShowsItsId()
{
    const LinkedRows rows;
    NodeEditor editor;
    editor.setEditorData(rows.item("many", 0));
    QCOMPARE(editor.button()->text(), QString::fromStdString(rows.unnamed->getIDStr()));
}

void tst_QorNodeFieldEditor::valueOfAListShowsItsNode()
{
    const LinkedRows rows;
    NodeEditor editor;
    editor.setEditorData(rows.item("many", 1));
    QCOMPARE(editor.button()->text(), QStringLiteral("Oak"));
    QCOMPARE(rows.field<MFNode>("many")->size(), 2U);
}

void tst_QorNodeFieldEditor::onlySingleFieldsAreFollowedBehindAReference()
{
    const LinkedRows rows;
    const std::unique_ptr<Node> target(Tiny::makeNode(Tiny::makeType("Leaf"), "Elm"));
    Tiny::refer(rows.named.get(), target.get());
    NodeEditor editor;
    QSignalSpy selected(&editor, &QorNodeFieldEditor::nodeSelected);
    editor.setEditorData(rows.item("one"));
    QCOMPARE(editor.button()->text(), QStringLiteral("Elm"));
    QTest::mouseClick(editor.button(), Qt::LeftButton);
    editor.setEditorData(rows.item("many", 1));
    QCOMPARE(editor.button()->text(), QStringLiteral("Oak"));
    QTest::mouseClick(editor.button(), Qt::LeftButton);
    QCOMPARE(selected.size(), 2);
    QCOMPARE(selected[0][0].value<Node*>(), target.get());
    QCOMPARE(selected[1][0].value<Node*>(), rows.named.get());
}

void tst_QorNodeFieldEditor::emptyFieldDisablesTheButton()
{
    const LinkedRows rows;
    NodeEditor editor;
    QSignalSpy selected(&editor, &QorNodeFieldEditor::nodeSelected);
    editor.setEditorData(rows.item("none"));
    QVERIFY(!editor.button()->isEnabled());
    QVERIFY(editor.toString().isNull());
    QTest::mouseClick(editor.button(), Qt::LeftButton);
    QCOMPARE(selected.size(), 0);
}

void tst_QorNodeFieldEditor::emptyFieldLeavesTextAndNode()
{
    const LinkedRows rows;
    NodeEditor editor;
    editor.setEditorData(rows.item("one"));
    editor.setEditorData(rows.item("none"));
    QVERIFY(!editor.button()->isEnabled());
    QCOMPARE(editor.button()->text(), QStringLiteral("Oak"));
    QCOMPARE(editor.toString(), QStringLiteral("Oak"));
    editor.setEditorData(rows.item("many", 0));
    QVERIFY(editor.button()->isEnabled());
}

void tst_QorNodeFieldEditor::pressLeadsToTheNode()
{
    const LinkedRows rows;
    NodeEditor editor;
    QSignalSpy selected(&editor, &QorNodeFieldEditor::nodeSelected);
    QSignalSpy commits(&editor, &QorFieldEditor::commitData);
    QSignalSpy closes(&editor, &QorFieldEditor::closeEditor);
    editor.setEditorData(rows.item("one"));
    QTest::mouseClick(editor.button(), Qt::LeftButton);
    QCOMPARE(selected.size(), 1);
    QCOMPARE(selected[0][0].value<Node*>(), rows.named.get());
    QCOMPARE(commits.size() + closes.size(), 0);
}

void tst_QorNodeFieldEditor::pressAfterTheNodeDiedDoesNothing()
{
    LinkedRows rows;
    NodeEditor editor;
    editor.setEditorData(rows.item("one"));
    QSignalSpy selected(&editor, &QorNodeFieldEditor::nodeSelected);
    rows.named.reset();
    QTest::mouseClick(editor.button(), Qt::LeftButton);
    QCOMPARE(selected.size(), 0);
}

void tst_QorNodeFieldEditor::writesNothing()
{
    const LinkedRows rows;
    Tiny::reset();
    NodeEditor editor;
    editor.setEditorData(rows.item("one"));
    editor.setModelData(rows.item("none"));
    editor.setModelData(nullptr);
    QVERIFY(Tiny::fieldWrites().empty());
    QVERIFY(!rows.field<SFNode>("none")->link().node());
}

void tst_QorNodeFieldEditor::rowWithoutFieldIsReported()
{
    QorFieldItem root(nullptr, nullptr);
    NodeEditor editor;
    LogCapture log;
    editor.setEditorData(&root);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorNodeFieldEditor::setEditorData: invalid field. Can't update editor."}));
    editor.setModelData(&root);
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeFieldEditor::rowThatIsNoValueDoesNothing()
{
    const LinkedRows rows;
    LogCapture log;
    NodeEditor editor;
    for (QorFieldItem* item : {rows.item("many"), rows.item("number")}) {
        editor.setEditorData(item);
        QVERIFY(editor.button()->isEnabled());
        QVERIFY(editor.toString().isNull());
    }
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeFieldEditor::namesAreShownAsTheyStand()
{
    const LinkedRows rows;
    Tiny::setName(rows.named.get(), "salt&pepper");
    NodeEditor editor;
    editor.setEditorData(rows.item("one"));
    QCOMPARE(editor.toString(), QStringLiteral("salt&pepper"));
    // A button takes a single "&" for a mnemonic.
    QCOMPARE(editor.button()->text(), QStringLiteral("salt&&pepper"));
    Tiny::setName(rows.named.get(), "Gr\xf6\xdf\x65");
    editor.setEditorData(rows.item("one"));
    QCOMPARE(editor.button()->text(), QStringLiteral("Größe"));
}

QTEST_MAIN(tst_QorNodeFieldEditor)
#include "tst_QorNodeFieldEditor.moc"
