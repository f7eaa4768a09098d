// Scenes edited in the workbench by mouse and keys, and every edit taken back.
#include "AddNodeDialog.h"
#include "DocumentFile.h"
#include "SceneEditing.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "WorkbenchWindow.h"
#include <Orvane/Context.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QorNodeEditorTreeView.h>
#include <QorNodeModel.h>
#include <QorNodePathMimeData.h>
#include <QorObservingNodeEditor.h>
#include <QorScenegraphModel.h>
#include <QorViewManager.h>
#include <QtTest>
#include <SAI/SAIBrowserRef.h>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_SceneEditing : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anEditedValueIsTakenBack();
    void aValueThatIsBeingTypedIsSaved();
    void theStepsOfOneEditorAreOne();
    void undoInAnEditorOfTextStaysThere();
    void animationIsNoStep();
    void insertedAndRemovedValuesAreTakenBack();
    void aDeletedNodeComesBackWithNameAndRoutes();
    void aDeletedPlaceOfASharedNodeLeavesTheOthers();
    void routesComeBackInTheirOrder();
    void aDeletedNodeIsNotShown();
    void aNodeIsAddedFromTheDialog();
    void theDialogFindsByWords();
    void anAddedNodeTakesTheOnlyPlace();
    void aNodeThatFitsNowhereIsTold();
    void aDuplicateStandsBehind();
    void namesThatCannotBeAreRefused_data();
    void namesThatCannotBeAreRefused();
    void nodesMoveByKeys();
    void nodesMoveByDragging();
    void aNodeIsNotMovedIntoItself();
    void nodesGoToAnotherSceneByTheClipboard();
    void prototypesComeAlong();
    void aMaterialIsPastedIntoAnAppearance();
    void textThatIsNoSceneIsTold();
    void aPasteWithoutAPlaceIsNoStep();
    void bodiesAreNotEdited();
    void manyStepsGoBackAndForth();
    void anotherSceneForgetsTheSteps();

private:
    void open(const char* text);
    void run(int frames = 2);
    QByteArray saved() const;
    Context* context() const;
    Node* find(const char* name) const;
    Node* select(const char* name);
    SceneTreeView* tree() const { return _window->findChild<SceneTreeView*>(); }
    QTreeView* fields() const { return _window->findChild<QorObservingNodeEditor*>()->treeView(); }
    QModelIndex fieldCell(const char* name) const;
    QWidget* openEditor(const char* field);
    void type(QWidget* editor, const QString& text);
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    Steps* steps() const { return _window->steps(); }
    QString told() const { return _window->statusBar()->currentMessage(); }

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
    int _count = 0;
};

static const char scene[] =
    "<X3D version='4.0' profile='Full'><head><meta name='title' content='kept'/></head><Scene>"
    "<TimeSensor DEF='Clock' cycleInterval='2' loop='true'/>"
    "<PositionInterpolator DEF='Way' key='0 1' keyValue='0 0 0 1 0 0'/>"
    "<Group DEF='G'><Transform DEF='T' translation='1 2 3'><Shape DEF='S'><Appearance DEF='A'>"
    "<Material DEF='M' transparency='0.25'/></Appearance><Box DEF='B'/></Shape></Transform></Group>"
    "<Group DEF='H'><Shape USE='S'/><Transform DEF='U'/></Group>"
    "<Gadget DEF='Odd' colour='red'/>"
    "<ROUTE fromNode='Clock' fromField='fraction_changed' toNode='Way' toField='set_fraction'/>"
    "<ROUTE fromNode='Way' fromField='value_changed' toNode='T' toField='translation'/>"
    "<ROUTE fromNode='Way' fromField='value_changed' toNode='U' toField='translation'/>"
    "<ROUTE fromNode='Way' fromField='value_changed' toNode='U' toField='scale'/></Scene></X3D>";

void tst_SceneEditing::init()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1000, 800);
    _window->show();
    _window->activateWindow();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
    QVERIFY(context());
    context()->holdTime(5.0);
    open(scene);
}

void tst_SceneEditing::cleanup()
{
    _window.reset();
}

void tst_SceneEditing::open(const char* text)
{
    const QString name = _folder.filePath(QStringLiteral("scene%1.x3d").arg(++_count));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    QVERIFY2(_window->open(name), qPrintable(_window->loadError()));
    run(3);
}

void tst_SceneEditing::run(int frames)
{
    for (int i = 0; i < frames; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
}

Context* tst_SceneEditing::context() const
{
    const std::unique_ptr<__SAI_SAIBrowserRef> browser(_window->viewManager()->getSAI());
    return browser->getExecutionContext();
}

/// The whole scene as a text; events of the frame have run.
QByteArray tst_SceneEditing::saved() const
{
    const QString name = _folder.filePath(QStringLiteral("saved.x3dv"));
    std::string error;
    if (!context()->save(name.toStdString(), {}, error))
        return QByteArray::fromStdString(error);
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Node* tst_SceneEditing::find(const char* name) const
{
    const auto* root = tree()->scenegraphModel()->nodePath(tree()->model()->index(0, 0)).node();
    return NodeNameSpace::findNode(root->nameSpace(), name);
}

Node* tst_SceneEditing::select(const char* name)
{
    if (!_window->showNode(QString::fromLatin1(name)))
        return nullptr;
    tree()->setFocus();
    return _window->selection()->node();
}

QModelIndex tst_SceneEditing::fieldCell(const char* name) const
{
    const auto* model = _window->findChild<QorObservingNodeEditor*>()->model();
    return model->index(_window->selection()->node()->findField(name, Node::EXACT_FSO));
}

QWidget* tst_SceneEditing::openEditor(const char* field)
{
    const QModelIndex cell = fieldCell(field);
    fields()->scrollTo(cell);
    QTest::mouseClick(fields()->viewport(), Qt::LeftButton, {}, fields()->visualRect(cell).center());
    QTest::mouseDClick(fields()->viewport(), Qt::LeftButton, {}, fields()->visualRect(cell).center());
    return fields()->indexWidget(cell);
}

void tst_SceneEditing::type(QWidget* editor, const QString& text)
{
    auto* const line =
        qobject_cast<QLineEdit*>(editor) ? static_cast<QLineEdit*>(editor) : editor->findChild<QLineEdit*>();
    QVERIFY(line);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
    QTest::keyClick(line, Qt::Key_Return);
    run();
}

void tst_SceneEditing::key(int key, Qt::KeyboardModifiers modifiers)
{
    QVERIFY(QApplication::focusWidget());
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    run();
}

void tst_SceneEditing::anEditedValueIsTakenBack()
{
    const QByteArray before = saved();
    const Field& value = *select("U")->findField("center", Node::EXACT_FSO);
    type(openEditor("center"), QStringLiteral("4 5 6"));
    QCOMPARE(value.valueToString(), std::string("4 5 6"));
    QCOMPARE(steps()->count(), 1);
    const QByteArray after = saved();
    QVERIFY(after != before);
    tree()->setFocus();
    key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(value.valueToString(), std::string("0 0 0"));
    QCOMPARE(saved(), before);
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(saved(), after);
}

void tst_SceneEditing::aValueThatIsBeingTypedIsSaved()
{
    QApplication::setActiveWindow(_window.get());
    const auto beginTyping = [this](const QString& text) {
        QWidget* const editor = openEditor("center");
        auto* const line = qobject_cast<QLineEdit*>(editor) ? static_cast<QLineEdit*>(editor)
                                                            : editor->findChild<QLineEdit*>();
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
    };
    select("U");
    beginTyping(QStringLiteral("4 5 6"));
    QVERIFY(!_window->isWindowModified());
    key(Qt::Key_S, Qt::ControlModifier);
    QFile file(_window->document()->file());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    QVERIFY2(written.contains("4 5 6"), written.constData());
    QVERIFY(!_window->isWindowModified());

    // Who closes the window is asked about it.
    beginTyping(QStringLiteral("7 8 9"));
    QTimer::singleShot(0, this, [] {
        if (auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            box->button(QMessageBox::Cancel)->click();
    });
    QVERIFY(!_window->close());
    QCOMPARE(find("U")->findField("center", Node::EXACT_FSO)->valueToString(), std::string("7 8 9"));
}

void tst_SceneEditing::theStepsOfOneEditorAreOne()
{
    const Field& value = *select("M")->findField("transparency", Node::EXACT_FSO);
    QWidget* const editor = openEditor("transparency");
    QVERIFY(editor);
    auto* const line = editor->findChild<QLineEdit*>();
    QVERIFY(line);
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(line, Qt::Key_Up);
        run(1);
    }
    QVERIFY(value.valueToString() != "0.25");
    QTest::keyClick(line, Qt::Key_Return);
    run();
    QCOMPARE(steps()->count(), 1);
    steps()->undo();
    QCOMPARE(value.valueToString(), std::string("0.25"));
    // The next edit of the same field is one of its own.
    type(openEditor("transparency"), QStringLiteral("0.5"));
    type(openEditor("transparency"), QStringLiteral("0.75"));
    QCOMPARE(steps()->count(), 2);
    steps()->undo();
    QCOMPARE(value.valueToString(), std::string("0.5"));
}

void tst_SceneEditing::undoInAnEditorOfTextStaysThere()
{
    select("U");
    type(openEditor("center"), QStringLiteral("4 5 6"));
    QWidget* const editor = openEditor("scale");
    auto* const line =
        qobject_cast<QLineEdit*>(editor) ? static_cast<QLineEdit*>(editor) : editor->findChild<QLineEdit*>();
    QVERIFY(line);
    line->setFocus();
    const QString text = line->text();
    QTest::keyClicks(line, QStringLiteral("7"));
    QVERIFY(line->text() != text);
    QTest::keyClick(line, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(line->text(), text);
    QCOMPARE(steps()->index(), 1);
}

void tst_SceneEditing::animationIsNoStep()
{
    select("T");
    context()->holdTime(5.7);
    run(5);
    QVERIFY(find("T")->findField("translation", Node::EXACT_FSO)->valueToString() != "1 2 3");
    QCOMPARE(steps()->count(), 0);
}

void tst_SceneEditing::insertedAndRemovedValuesAreTakenBack()
{
    const Field& keys = *select("Way")->findField("key", Node::EXACT_FSO);
    const QByteArray before = saved();
    auto* const model = _window->findChild<QorObservingNodeEditor*>()->model();
    const QModelIndex row = fieldCell("key").sibling(fieldCell("key").row(), 0);
    fields()->expand(row);
    QVERIFY(model->insertRows(1, 1, row));
    QCOMPARE(keys.size(), 3U);
    QVERIFY(model->removeRows(0, 1, row));
    QCOMPARE(keys.size(), 2U);
    QCOMPARE(steps()->count(), 2);
    steps()->undo();
    QCOMPARE(keys.size(), 3U);
    // The rows follow, and stay open.
    const QModelIndex today = fieldCell("key").sibling(fieldCell("key").row(), 0);
    QVERIFY(fields()->isExpanded(today));
    QCOMPARE(fields()->model()->rowCount(today), 3);
    steps()->undo();
    run();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aDeletedNodeComesBackWithNameAndRoutes()
{
    const QByteArray before = saved();
    QVERIFY(select("H"));
    key(Qt::Key_Delete);
    QVERIFY(!find("H"));
    QVERIFY(!find("U"));
    QVERIFY(find("S"));
    const QByteArray after = saved();
    QVERIFY(!after.contains("TO U."));
    QVERIFY(after.contains("TO T."));
    tree()->setFocus();
    key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(saved(), before);
    QVERIFY(find("U"));
    QCOMPARE(_window->selection()->node(), find("H"));
    steps()->redo();
    run();
    QCOMPARE(saved(), after);
    steps()->undo();
    run();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aDeletedPlaceOfASharedNodeLeavesTheOthers()
{
    const QByteArray before = saved();
    Node* const shape = find("S");
    NodePath path(find("H"));
    path.addNode(shape);
    _window->selection()->selectPath(path);
    tree()->setFocus();
    key(Qt::Key_Delete);
    QCOMPARE(find("S"), shape);
    QVERIFY(!shape->isShared());
    steps()->undo();
    run();
    QVERIFY(shape->isShared());
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::routesComeBackInTheirOrder()
{
    const QByteArray before = saved();
    // The first of three routes of one field.
    select("T");
    key(Qt::Key_Delete);
    steps()->undo();
    run();
    QCOMPARE(saved(), before);
    // The source of them all.
    select("Way");
    key(Qt::Key_Delete);
    QVERIFY(!saved().contains("ROUTE"));
    steps()->undo();
    run();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aDeletedNodeIsNotShown()
{
    Node* const transform = select("T");
    QCOMPARE(_window->findChild<QorObservingNodeEditor*>()->node(), transform);
    key(Qt::Key_Delete);
    QCOMPARE(_window->selection()->node(), find("G"));
    QCOMPARE(_window->findChild<QorObservingNodeEditor*>()->node(), find("G"));
}

/// Uses a modal dialog as soon as it is there.
template <class Dialog, class Use>
static void inDialog(Use use)
{
    QTimer::singleShot(50, qApp, [use] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        use(dialog);
    });
}

void tst_SceneEditing::aNodeIsAddedFromTheDialog()
{
    const QByteArray before = saved();
    select("G");
    inDialog<AddNodeDialog>([](AddNodeDialog* dialog) {
        auto* const search = dialog->findChild<QLineEdit*>(QStringLiteral("search"));
        QTest::keyClicks(search, QStringLiteral("transfo"));
        QCOMPARE(dialog->typeName(), QStringLiteral("Transform"));
        QTest::keyClicks(dialog->findChild<QLineEdit*>(QStringLiteral("name")), QStringLiteral("New"));
        QTest::keyClick(search, Qt::Key_Return);
    });
    key(Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    Node* const added = find("New");
    QVERIFY(added);
    QCOMPARE(added->type()->name, std::string("Transform"));
    QCOMPARE(_window->selection()->node(), added);
    QCOMPARE(added->state(), RUNNING_NS);
    const QByteArray after = saved();
    steps()->undo();
    QVERIFY(!find("New"));
    QCOMPARE(saved(), before);
    steps()->redo();
    QCOMPARE(saved(), after);
}

void tst_SceneEditing::theDialogFindsByWords()
{
    Node* const root = tree()->scenegraphModel()->nodePath(tree()->model()->index(0, 0)).node();
    AddNodeDialog dialog(
        {root, find("T"), find("S")}, [](const QString&) { return QString(); }, nullptr);
    auto* const search = dialog.findChild<QLineEdit*>(QStringLiteral("search"));
    auto* const fitting = dialog.findChild<QCheckBox*>(QStringLiteral("fittingOnly"));
    auto* const list = dialog.findChild<QListView*>(QStringLiteral("types"));
    QVERIFY(fitting->isChecked());
    search->setText(QStringLiteral("Transform"));
    QVERIFY(dialog.typeName() != QLatin1String("Transform"));
    fitting->setChecked(false);
    QCOMPARE(dialog.typeName(), QStringLiteral("Transform"));
    const int all = list->model()->rowCount();
    search->setText(QStringLiteral("no such word"));
    QCOMPARE(dialog.typeName(), QString());
    search->clear();
    QVERIFY(list->model()->rowCount() > all);
    // The list is gone through from the line.
    const QString first = dialog.typeName();
    QTest::keyClick(search, Qt::Key_Down);
    QVERIFY(dialog.typeName() != first);
    QTest::keyClick(search, Qt::Key_Up);
    QCOMPARE(dialog.typeName(), first);
}

void tst_SceneEditing::anAddedNodeTakesTheOnlyPlace()
{
    const QByteArray before = saved();
    select("S");
    QVERIFY(_window->editing()->addNode(QStringLiteral("Sphere"), QStringLiteral("Ball")));
    QVERIFY(find("Ball"));
    QVERIFY(!find("B"));
    QCOMPARE(steps()->count(), 1);
    steps()->undo();
    QVERIFY(find("B"));
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aNodeThatFitsNowhereIsTold()
{
    const QByteArray before = saved();
    select("G");
    QVERIFY(!_window->editing()->addNode(QStringLiteral("Coordinate"), QString()));
    QVERIFY(told().contains(QStringLiteral("Coordinate")));
    // What has no place below the selected node may have one above.
    select("B");
    QVERIFY(_window->editing()->addNode(QStringLiteral("PointLight"), QStringLiteral("P")));
    steps()->undo();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aDuplicateStandsBehind()
{
    const QByteArray before = saved();
    select("T");
    key(Qt::Key_D, Qt::ControlModifier);
    const auto& children = static_cast<MFNode&>(*find("G")->findField("children", Node::EXACT_FSO));
    QCOMPARE(children.size(), 2U);
    Node* const copy = find("T_2");
    QVERIFY(copy);
    QCOMPARE(children[1].parent(), find("G"));
    QCOMPARE(_window->selection()->node(), copy);
    QVERIFY(find("B_2"));
    QCOMPARE(find("B_2")->type(), find("B")->type());
    steps()->undo();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::namesThatCannotBeAreRefused_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"two words", "1st", "a.b", "\"", "A", "{", "-x"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_SceneEditing::namesThatCannotBeAreRefused()
{
    QFETCH(QString, name);
    Node* const node = select("T");
    QVERIFY(!_window->editing()->rename(name));
    QCOMPARE(find("T"), node);
    QCOMPARE(steps()->count(), 0);
    QVERIFY(!told().isEmpty());
}

void tst_SceneEditing::nodesMoveByKeys()
{
    const QByteArray before = saved();
    Node* const group = select("H");
    key(Qt::Key_Up, Qt::AltModifier);
    const auto& children =
        static_cast<MFNode&>(*NodePath(group).node()->contextRoot()->findField("children", Node::EXACT_FSO));
    QCOMPARE(children.elem(2).node(), group);
    QCOMPARE(_window->selection()->node(), group);
    key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(children.elem(3).node(), group);
    QCOMPARE(saved(), before);
    key(Qt::Key_Down, Qt::AltModifier);
    key(Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(children.elem(4).node(), group);
    QCOMPARE(steps()->count(), 3);
    while (steps()->canUndo())
        steps()->undo();
    QCOMPARE(saved(), before);
}

/// Drops a node at a place of the tree as a drag would.
static void drop(SceneTreeView* tree, const NodePath& moved, const QPoint& place)
{
    const QorNodePathMimeData data(moved);
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree->viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree->viewport(), &move);
    QVERIFY(move.isAccepted());
    QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree->viewport(), &event);
}

void tst_SceneEditing::nodesMoveByDragging()
{
    const QByteArray before = saved();
    Node* const moved = select("T");
    select("H");
    const QRect row = tree()->visualRect(tree()->currentIndex());
    drop(tree(), NodePath(moved), row.center());
    run();
    QCOMPARE(find("G")->childCount(), 0);
    QCOMPARE(find("H")->childCount(), 3);
    QCOMPARE(_window->selection()->node(), moved);
    QVERIFY(saved().contains("TO T."));
    steps()->undo();
    QCOMPARE(saved(), before);
    // On the edge of a row it comes beside it.
    select("H");
    drop(tree(), NodePath(find("T")), tree()->visualRect(tree()->currentIndex()).topLeft() + QPoint(20, 1));
    run();
    QCOMPARE(find("T")->contextRoot()->childCount(), 6);
    steps()->undo();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::aNodeIsNotMovedIntoItself()
{
    const QByteArray before = saved();
    Node* const group = find("G");
    select("T");
    drop(tree(), NodePath(group), tree()->visualRect(tree()->currentIndex()).center());
    QCOMPARE(steps()->count(), 0);
    QVERIFY(!told().isEmpty());
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::nodesGoToAnotherSceneByTheClipboard()
{
    select("G");
    key(Qt::Key_C, Qt::ControlModifier);
    const QString text = QApplication::clipboard()->text();
    QVERIFY2(text.startsWith(QStringLiteral("#X3D V")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("transparency 0.25")));
    QVERIFY(!text.contains(QStringLiteral("ROUTE")));
    key(Qt::Key_X, Qt::ControlModifier);
    QVERIFY(!find("G"));
    open("<X3D version='4.0'><Scene><Group DEF='G'/></Scene></X3D>");
    const QByteArray before = saved();
    _window->selection()->selectPath(NodePath());
    tree()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(find("G_2"));
    QVERIFY(find("M"));
    QCOMPARE(find("M")->findField("transparency", Node::EXACT_FSO)->valueToString(), std::string("0.25"));
    QCOMPARE(steps()->count(), 1);
    steps()->undo();
    QCOMPARE(saved(), before);
}

static const char lamp[] = "<X3D version='4.0'><Scene><ProtoDeclare name='Lamp'><ProtoInterface>"
                           "<field name='on' type='SFBool' accessType='inputOutput' value='true'/>"
                           "</ProtoInterface><ProtoBody><PointLight DEF='Inner'><IS><connect nodeField='on' "
                           "protoField='on'/></IS></PointLight></ProtoBody></ProtoDeclare>"
                           "<ProtoInstance name='Lamp' DEF='L'/></Scene></X3D>";

void tst_SceneEditing::prototypesComeAlong()
{
    open(lamp);
    select("L");
    key(Qt::Key_C, Qt::ControlModifier);
    // In its own scene the prototype is the same.
    const QByteArray before = saved();
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(find("L_2"));
    QCOMPARE(find("L_2")->type(), find("L")->type());
    QCOMPARE(saved().count("PROTO Lamp"), 1);
    steps()->undo();
    QCOMPARE(saved(), before);
    // In another one it comes along, once.
    open("<X3D version='4.0'><Scene/></X3D>");
    const QByteArray empty = saved();
    tree()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(find("L_2"));
    QCOMPARE(find("L_2")->type(), find("L")->type());
    QCOMPARE(saved().count("PROTO Lamp"), 1);
    steps()->undo();
    steps()->undo();
    QCOMPARE(saved(), empty);
    // One of the same name that is another gets a name of its own.
    open("<X3D version='4.0'><Scene><ProtoDeclare name='Lamp'><ProtoBody><Group/></ProtoBody></ProtoDeclare>"
         "<ProtoInstance name='Lamp' DEF='Other'/></Scene></X3D>");
    tree()->setFocus();
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(find("L"));
    QVERIFY(find("L")->type() != find("Other")->type());
    QVERIFY(saved().contains("PROTO Lamp_2"));
}

void tst_SceneEditing::aMaterialIsPastedIntoAnAppearance()
{
    select("M");
    key(Qt::Key_C, Qt::ControlModifier);
    const QByteArray before = saved();
    select("A");
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY2(find("M_2"), qPrintable(told()));
    // A second material is that of the back.
    QCOMPARE(find("A")->childCount(), 2);
    steps()->undo();
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::textThatIsNoSceneIsTold()
{
    QApplication::clipboard()->setText(QStringLiteral("just a word"));
    select("G");
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY(!told().isEmpty());
    QCOMPARE(steps()->count(), 0);
}

void tst_SceneEditing::aPasteWithoutAPlaceIsNoStep()
{
    const QByteArray before = saved();
    QApplication::clipboard()->setText(
        QStringLiteral("<X3D version='4.0' profile='Full'><Scene><Coordinate/></Scene></X3D>"));
    select("T");
    key(Qt::Key_V, Qt::ControlModifier);
    QVERIFY2(told().contains(QStringLiteral("Coordinate")), qPrintable(told()));
    QCOMPARE(steps()->count(), 0);
    QVERIFY(!_window->isWindowModified());
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::bodiesAreNotEdited()
{
    open(lamp);
    Node* const instance = find("L");
    std::vector<Node*> body;
    instance->collectAllChildren(body, 0);
    QCOMPARE(body.size(), std::size_t(1));
    const QByteArray before = saved();
    _window->selection()->selectPath(NodePath(body.front()));
    tree()->setFocus();
    key(Qt::Key_Delete);
    QVERIFY(!_window->editing()->rename(QStringLiteral("X")));
    QVERIFY(!told().isEmpty());
    QCOMPARE(steps()->count(), 0);
    QCOMPARE(saved(), before);
}

void tst_SceneEditing::manyStepsGoBackAndForth()
{
    std::vector<QByteArray> states{saved()};
    const auto done = [&] {
        run();
        states.push_back(saved());
    };
    select("U");
    type(openEditor("center"), QStringLiteral("4 5 6"));
    done();
    select("G");
    _window->editing()->addNode(QStringLiteral("Transform"), QStringLiteral("N"));
    done();
    _window->editing()->rename(QStringLiteral("N1"));
    done();
    type(openEditor("scale"), QStringLiteral("2 2 2"));
    done();
    key(Qt::Key_D, Qt::ControlModifier);
    done();
    select("G");
    key(Qt::Key_Up, Qt::AltModifier);
    done();
    key(Qt::Key_Delete);
    done();
    select("Way");
    key(Qt::Key_Delete);
    done();
    QCOMPARE(static_cast<int>(states.size()), steps()->count() + 1);
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = states.size() - 1; i-- > 0;) {
            steps()->undo();
            run(1);
            QCOMPARE(saved(), states[i]);
        }
        for (std::size_t i = 1; i < states.size(); ++i) {
            steps()->redo();
            run(1);
            QCOMPARE(saved(), states[i]);
        }
    }
}

void tst_SceneEditing::anotherSceneForgetsTheSteps()
{
    select("G");
    key(Qt::Key_Delete);
    open(lamp);
    QVERIFY(!steps()->canUndo());
    QVERIFY(steps()->isClean());
}

QTEST_MAIN(tst_SceneEditing)
#include "tst_SceneEditing.moc"
