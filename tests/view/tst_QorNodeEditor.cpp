#include "LogCapture.h"
#include "QorNodeEditor.h"
#include "TinyNodeEditor.h"
#include <Orvane/NodeType.h>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorNodeEditor : public QObject
{
    Q_OBJECT

private slots:
    void elementsStandBelowEachOther();
    void emptyAtFirst();
    void nodeFillsHeadLineAndTree();
    void unnamedNodeShowsItsId();
    void sameNodeKeepsTheTree();
    void otherNodeGetsATreeOfItsOwn();
    void nullEmptiesAgainAndAgain();
    void missingDelegateIsMadeAndTold();
    void delegateOfTheHostIsTakenAtTheNextNode();
    void replacedDelegateIsLetGo();
    void deletedDelegateIsReplaced();
    void nodeButtonTellsTheHostAndMovesTheEditor();
    void renamedNodeShowsItsNewName();
    void deathOfTheNodeEmptiesTheEditor();
    void deathOfTheNodeUnderAnOpenEditor_data();
    void deathOfTheNodeUnderAnOpenEditor();
    void deathReachesASubclass();
    void editorsOfOneNodeAreIndependent();
    void columnsShowAndHide();
    void descriptionIsShownOnDemand();
    void guiElementsFollowTheFilter_data();
    void guiElementsFollowTheFilter();
    void fieldTypeFilterIsOnlyKept();
    void textsOfTheSceneAreNoMarkup();
    void longNamesLeaveTheEditorNarrow();
    void destroyedEditorIsOutOfTheSubjects();
};

namespace {

const std::vector<Tiny::Part> parts = {part("number", SFINT32_DT, "5"), part("list", MFFLOAT_DT, "1, 2"),
                                       part("child", SFNODE_DT), part("title", SFSTRING_DT, "x")};

using Shown = TinyNodeEditor<QorNodeEditor>;

/// The labels of an editor in order of their making: name, type, description.
QLabel* nameLabel(const QWidget& editor)
{
    return qobject_cast<QLabel*>(editor.layout()->itemAt(0)->layout()->itemAt(1)->widget());
}
QLabel* typeLabel(const QWidget& editor)
{
    return qobject_cast<QLabel*>(editor.layout()->itemAt(0)->layout()->itemAt(0)->widget());
}
QLabel* descriptionLabel(const QWidget& editor)
{
    return qobject_cast<QLabel*>(editor.layout()->itemAt(1)->widget());
}

} // namespace

void tst_QorNodeEditor::elementsStandBelowEachOther()
{
    struct Editor : QorNodeEditor
    {
        using QorNodeEditor::sizeHint;
    };
    const Editor editor;
    QCOMPARE(editor.sizeHint(), QSize(280, 300));
    auto* column = qobject_cast<QVBoxLayout*>(editor.layout());
    QVERIFY(column);
    QCOMPARE(column->contentsMargins(), QMargins());
    QCOMPARE(column->spacing(), 0);
    QCOMPARE(column->count(), 3);
    auto* head = qobject_cast<QHBoxLayout*>(column->itemAt(0)->layout());
    QVERIFY(head);
    QCOMPARE(head->contentsMargins(), QMargins(2, 2, 2, 2));
    QCOMPARE(head->spacing(), 2);
    QCOMPARE(head->count(), 2);
    QCOMPARE(head->itemAt(0)->alignment(), Qt::Alignment());
    QCOMPARE(head->itemAt(1)->alignment(), Qt::Alignment(Qt::AlignRight));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(column->stretch(i), 0);
    QCOMPARE(head->stretch(0) + head->stretch(1), 0);
    QCOMPARE(column->itemAt(2)->widget(), editor.treeView());
    QCOMPARE(typeLabel(editor)->font().weight(), int(QFont::Bold));
    QVERIFY(nameLabel(editor)->font().weight() < QFont::Bold);
    QCOMPARE(typeLabel(editor)->font().family(), nameLabel(editor)->font().family());
    QVERIFY(descriptionLabel(editor)->wordWrap());
    QVERIFY(descriptionLabel(editor)->isHidden());
}

void tst_QorNodeEditor::emptyAtFirst()
{
    const QorNodeEditor editor;
    QVERIFY(!editor.node());
    QVERIFY(!editor.model());
    QVERIFY(!editor.itemDelegate());
    QCOMPARE(int(editor.fieldTypeFilter()), 15);
    QCOMPARE(int(editor.guiElementFilter()), 15);
    QVERIFY(!nameLabel(editor)->isHidden());
    QVERIFY(!typeLabel(editor)->isHidden());
}

void tst_QorNodeEditor::nodeFillsHeadLineAndTree()
{
    Shown shown(parts);
    Tiny::setName(shown.node.get(), "Lamp");
    shown.editor.setNode(nullptr);
    shown.node->type()->description = "A thing that can be had";
    shown.editor.setNode(shown.node.get());
    QCOMPARE(shown.editor.node(), shown.node.get());
    QVERIFY(shown.model());
    QCOMPARE(shown.model()->node(), shown.node.get());
    QVERIFY(!shown.model()->QObject::parent());
    QCOMPARE(shown.view()->model(), static_cast<QAbstractItemModel*>(shown.model()));
    QCOMPARE(shown.view()->itemDelegate(), static_cast<QAbstractItemDelegate*>(&shown.delegate));
    QCOMPARE(shown.model()->rowCount(), 4);
    QCOMPARE(nameLabel(shown.editor)->text(), QStringLiteral("Lamp"));
    QCOMPARE(typeLabel(shown.editor)->text(), QStringLiteral("Thing"));
    QCOMPARE(descriptionLabel(shown.editor)->text(), QStringLiteral("A thing that can be had"));
    QVERIFY(typeLabel(shown.editor)->x() < nameLabel(shown.editor)->x());
}

void tst_QorNodeEditor::unnamedNodeShowsItsId()
{
    const Shown shown(parts);
    QCOMPARE(nameLabel(shown.editor)->text(), QString::fromStdString(shown.node->getIDStr()));
}

void tst_QorNodeEditor::sameNodeKeepsTheTree()
{
    Shown shown(parts);
    const QorNodeModel* model = shown.model();
    shown.view()->expand(shown.row("list"));
    shown.editor.setNode(shown.node.get());
    QCOMPARE(shown.model(), model);
    QVERIFY(shown.view()->isExpanded(shown.row("list")));
}

void tst_QorNodeEditor::otherNodeGetsATreeOfItsOwn()
{
    Shown shown(parts);
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other", parts), "B"));
    shown.view()->expand(shown.row("list"));
    const QPointer<QorNodeModel> old(shown.model());
    shown.editor.setNode(other.get());
    QVERIFY(!old);
    QCOMPARE(shown.model()->node(), other.get());
    QCOMPARE(nameLabel(shown.editor)->text(), QStringLiteral("B"));
    QCOMPARE(typeLabel(shown.editor)->text(), QStringLiteral("Other"));
    const QModelIndex list = shown.model()->index(other->findField("list", Node::EXACT_FSO));
    QVERIFY(!shown.view()->isExpanded(list.sibling(list.row(), 0)));
    shown.editor.setNode(nullptr);
}

void tst_QorNodeEditor::nullEmptiesAgainAndAgain()
{
    Shown shown(parts);
    for (int i = 0; i < 2; ++i) {
        const QPointer<QorNodeModel> old(shown.model());
        nameLabel(shown.editor)->setText(QStringLiteral("left over"));
        shown.editor.setNode(nullptr);
        QVERIFY(!old);
        QVERIFY(!shown.editor.node());
        QVERIFY(!shown.model());
        QVERIFY(!shown.view()->model());
        QVERIFY(nameLabel(shown.editor)->text().isEmpty());
        QVERIFY(typeLabel(shown.editor)->text().isEmpty());
        QVERIFY(descriptionLabel(shown.editor)->text().isEmpty());
    }
}

void tst_QorNodeEditor::missingDelegateIsMadeAndTold()
{
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    QorNodeEditor editor;
    LogCapture log(osg::LOG_NOTICE);
    const QByteArray line =
        "3 QorNodeEditor::setNode: no item delegate set! Creating a default QorNodeItemDelegate\n";
    editor.setNode(node.get());
    QCOMPARE(log.take().count(line), 1);
    const std::unique_ptr<QorNodeItemDelegate> made(editor.itemDelegate());
    QVERIFY(made);
    QVERIFY(!made->parent());
    QVERIFY(!made->isInitOnlyEditorEnabled());
    editor.setNode(nullptr);
    editor.setNode(node.get());
    QCOMPARE(log.take().count(line), 0);
    QCOMPARE(editor.itemDelegate(), made.get());
    editor.setNode(nullptr);
}

void tst_QorNodeEditor::delegateOfTheHostIsTakenAtTheNextNode()
{
    Shown shown(parts);
    QorNodeItemDelegate second(nullptr);
    shown.editor.setItemDelegate(&second);
    QCOMPARE(shown.editor.itemDelegate(), &second);
    QCOMPARE(shown.view()->itemDelegate(), static_cast<QAbstractItemDelegate*>(&shown.delegate));
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    QCOMPARE(shown.view()->itemDelegate(), static_cast<QAbstractItemDelegate*>(&second));
    shown.editor.setNode(nullptr);
}

void tst_QorNodeEditor::replacedDelegateIsLetGo()
{
    Shown shown(parts);
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other")));
    QSignalSpy selected(&shown.editor, &QorNodeEditor::nodeSelected);
    QorNodeItemDelegate second(nullptr);
    shown.editor.setItemDelegate(&second);
    emit shown.delegate.nodeSelected(other.get());
    QCOMPARE(selected.size(), 0);
    QCOMPARE(shown.editor.node(), shown.node.get());
    shown.editor.setItemDelegate(&second);
    emit second.nodeSelected(other.get());
    QCOMPARE(selected.size(), 1);
    QCOMPARE(shown.editor.node(), other.get());
    shown.editor.setItemDelegate(nullptr);
    emit second.nodeSelected(shown.node.get());
    QCOMPARE(selected.size(), 1);
    shown.editor.setNode(nullptr);
}

void tst_QorNodeEditor::deletedDelegateIsReplaced()
{
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    QorNodeEditor editor;
    auto hosts = std::make_unique<QorNodeItemDelegate>(nullptr);
    editor.setItemDelegate(hosts.get());
    editor.setNode(node.get());
    hosts.reset();
    QVERIFY(!editor.itemDelegate());
    QVERIFY(!editor.grab().isNull());
    editor.setNode(nullptr);
    editor.setNode(node.get());
    const std::unique_ptr<QorNodeItemDelegate> made(editor.itemDelegate());
    QVERIFY(made);
    editor.setNode(nullptr);
}

void tst_QorNodeEditor::nodeButtonTellsTheHostAndMovesTheEditor()
{
    Shown shown(parts);
    const std::unique_ptr<Node> child(Tiny::makeNode(Tiny::makeType("Leaf"), "Oak"));
    Tiny::link(shown.node.get(), "child", child.get());
    Node* shownAtSignal = nullptr;
    Node* told = nullptr;
    connect(&shown.editor, &QorNodeEditor::nodeSelected, this, [&](Node* node) {
        told = node;
        shownAtSignal = shown.editor.node();
    });
    QWidget* editor = shown.open(shown.cell("child"));
    QVERIFY(editor);
    auto* button = editor->findChild<QPushButton*>();
    QCOMPARE(button->text(), QStringLiteral("Oak"));
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(told, child.get());
    QCOMPARE(shownAtSignal, shown.node.get());
    QCOMPARE(shown.editor.node(), child.get());
    QCOMPARE(nameLabel(shown.editor)->text(), QStringLiteral("Oak"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    shown.editor.setNode(nullptr);
}

void tst_QorNodeEditor::renamedNodeShowsItsNewName()
{
    const Shown shown(parts);
    const std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other")));
    const QString before = nameLabel(shown.editor)->text();
    Tiny::setName(other.get(), "Elsewhere");
    QCOMPARE(nameLabel(shown.editor)->text(), before);
    Tiny::setName(shown.node.get(), "Gr\xf6\xdf\x65");
    QCOMPARE(nameLabel(shown.editor)->text(), QStringLiteral("Größe"));
    Tiny::setName(shown.node.get(), nullptr);
    QCOMPARE(nameLabel(shown.editor)->text(), before);
}

void tst_QorNodeEditor::deathOfTheNodeEmptiesTheEditor()
{
    Shown shown(parts);
    std::unique_ptr<Node> other(Tiny::makeNode(Tiny::makeType("Other")));
    const QorNodeModel* model = shown.model();
    other.reset();
    QCOMPARE(shown.model(), model);
    QCOMPARE(shown.editor.node(), shown.node.get());
    shown.view()->expand(shown.row("list"));
    shown.node.reset();
    QVERIFY(!shown.editor.node());
    QVERIFY(!shown.model());
    QVERIFY(nameLabel(shown.editor)->text().isEmpty());
    QVERIFY(typeLabel(shown.editor)->text().isEmpty());
    QVERIFY(!shown.editor.grab().isNull());
}

void tst_QorNodeEditor::deathOfTheNodeUnderAnOpenEditor_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<int>("value");
    QTest::newRow("number") << QByteArray("number") << -1;
    QTest::newRow("text") << QByteArray("title") << -1;
    QTest::newRow("value of a list") << QByteArray("list") << 1;
}

void tst_QorNodeEditor::deathOfTheNodeUnderAnOpenEditor()
{
    QFETCH(QByteArray, field);
    QFETCH(int, value);
    Shown shown(parts);
    shown.view()->expandAll();
    QPointer<QWidget> editor(shown.open(value < 0 ? shown.cell(field) : shown.cell(field, value)));
    QVERIFY(editor);
    shown.type("2");
    shown.node.reset();
    QVERIFY(!shown.model());
    // The editor is about to go; keys that still reach it find nothing to write.
    shown.type("3");
    shown.type(Qt::Key_Return);
    QTest::qWait(10);
    QVERIFY(!editor);
    QVERIFY(!QWidget::keyboardGrabber());
    QVERIFY(!shown.editor.grab().isNull());
}

void tst_QorNodeEditor::deathReachesASubclass()
{
    struct Editor : QorNodeEditor
    {
        void setNode(Node* node) override
        {
            QorNodeEditor::setNode(node);
            calls << node;
        }
        QList<Node*> calls;
    };
    QorNodeItemDelegate delegate(nullptr);
    std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    Editor editor;
    editor.setItemDelegate(&delegate);
    editor.setNode(node.get());
    Node* shown = node.get();
    node.reset();
    QCOMPARE(editor.calls, QList<Node*>({shown, nullptr}));
}

void tst_QorNodeEditor::editorsOfOneNodeAreIndependent()
{
    Shown shown(parts);
    {
        QorNodeItemDelegate delegate(nullptr);
        QorNodeEditor second;
        second.setItemDelegate(&delegate);
        second.setNode(shown.node.get());
        QVERIFY(second.model() != shown.model());
        shown.node.reset();
        QVERIFY(!second.node());
    }
    QVERIFY(!shown.editor.node());
}

void tst_QorNodeEditor::columnsShowAndHide()
{
    Shown shown(parts);
    shown.editor.hideColumn(QorNodeModel::ID);
    QVERIFY(shown.view()->isColumnHidden(4));
    shown.editor.showColumn(QorNodeModel::ID);
    QVERIFY(!shown.view()->isColumnHidden(4));
    shown.editor.hideColumn(QorNodeModel::FieldValue);
    QVERIFY(shown.view()->isColumnHidden(1));
}

void tst_QorNodeEditor::descriptionIsShownOnDemand()
{
    Shown shown(parts);
    QVERIFY(!descriptionLabel(shown.editor)->isVisible());
    shown.editor.setDescriptionVisible(true);
    QVERIFY(descriptionLabel(shown.editor)->isVisible());
    QTest::qWait(1);
    QVERIFY(descriptionLabel(shown.editor)->y() > typeLabel(shown.editor)->y());
    QVERIFY(descriptionLabel(shown.editor)->y() < shown.view()->y());
    shown.editor.setDescriptionVisible(false);
    QVERIFY(!descriptionLabel(shown.editor)->isVisible());
}

void tst_QorNodeEditor::guiElementsFollowTheFilter_data()
{
    QTest::addColumn<int>("filter");
    for (int filter = 0; filter < 16; ++filter)
        QTest::addRow("%d", filter) << filter;
}

void tst_QorNodeEditor::guiElementsFollowTheFilter()
{
    QFETCH(int, filter);
    Shown shown(parts);
    shown.editor.setGuiElementFilter(QorNodeEditor::GuiElementFilter(filter));
    QCOMPARE(int(shown.editor.guiElementFilter()), filter);
    QCOMPARE(nameLabel(shown.editor)->isVisible(), (filter & 1) != 0);
    QCOMPARE(typeLabel(shown.editor)->isVisible(), (filter & 8) != 0);
    QVERIFY(shown.view()->isVisible());
}

void tst_QorNodeEditor::fieldTypeFilterIsOnlyKept()
{
    Shown shown(parts);
    shown.editor.setFieldTypeFilter(QorNodeEditor::NONE_FT);
    QCOMPARE(shown.editor.fieldTypeFilter(), QorNodeEditor::NONE_FT);
    shown.editor.setNode(nullptr);
    shown.editor.setNode(shown.node.get());
    QCOMPARE(shown.model()->rowCount(), 4);
}

void tst_QorNodeEditor::textsOfTheSceneAreNoMarkup()
{
    const Shown shown(parts);
    for (const QLabel* label : shown.editor.findChildren<QLabel*>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
}

void tst_QorNodeEditor::longNamesLeaveTheEditorNarrow()
{
    Shown shown(parts, QSize(280, 300));
    Tiny::setName(shown.node.get(), std::string(100000, 'n').c_str());
    QTest::qWait(1);
    QCOMPARE(shown.editor.size(), QSize(280, 300));
    QVERIFY(!shown.editor.grab().isNull());
}

void tst_QorNodeEditor::destroyedEditorIsOutOfTheSubjects()
{
    std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Thing", parts)));
    QorNodeItemDelegate delegate(nullptr);
    std::unique_ptr<QorNodeModel> left;
    {
        QorNodeEditor editor;
        editor.setItemDelegate(&delegate);
        editor.setNode(node.get());
        left.reset(editor.model());
    }
    QCOMPARE(left->rowCount(), 4);
    left.reset();
    Tiny::setName(node.get(), "renamed");
    node.reset();
}

QTEST_MAIN(tst_QorNodeEditor)
#include "tst_QorNodeEditor.moc"
