// The panels of the workbench at work on one scene, by mouse and by a running graph.
#include "CodeDock.h"
#include "NodeDock.h"
#include "RouteCanvas.h"
#include "SceneDock.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "Steps.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <Orvane/Scene.h>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDrag>
#include <QDropEvent>
#include <QGLWidget>
#include <QLineEdit>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QorCodeWidget.h>
#include <QorNodeItem.h>
#include <QorNodePathMimeData.h>
#include <QorObservingNodeEditor.h>
#include <QorObservingScenegraphModel.h>
#include <QorViewManager.h>
#include <QtTest>
#include <base/Graph.h>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_WorkbenchWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theTreeShowsTheScene();
    void aClickSelectsEverywhere();
    void aDoubleClickOpensARow();
    void theStarEndsInAGraphThatContainsItself();
    void aPickedNodeIsFoundAndShown();
    void aPickedPlaceOfASharedNodeIsShown();
    void aNamedNodeIsShown();
    void aNodeButtonSelectsEverywhere();
    void theTreeFollowsTheRunningScene();
    void typesAreHidden();
    void typesAloneAreShown();
    void aFilteredTreeFollowsTheScene();
    void bodiesOfPrototypesAreShown();
    void aHiddenPlaceIsShownByItsLastRow();
    void anotherSceneHasAnotherTree();
    void aDeadNodeIsNoLongerSelected();
    void nodesAreDraggedOutOfTheTree();
    void aDroppedNodeIsSelected();
    void aSelectedScriptOpensItsCode();
    void aRouteCanBeTakenBackUntilAnotherSceneIsOpened();

private:
    void open(const char* text);
    SceneTreeView* tree() const { return _window->findChild<SceneTreeView*>(); }
    QAbstractItemModel* model() const { return tree()->model(); }
    QModelIndex root() const { return model()->index(0, 0); }
    QModelIndex rowOf(const QString& name) const;
    Node* nodeCalled(const char* name) const;
    Node* edited() const { return _window->findChild<QorObservingNodeEditor*>()->node(); }
    QStringList shown() const;
    void click(const QModelIndex& row);
    void filter(int mode, const QString& types);
    Node& add(Node& parent, const char* type);

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
    int _count = 0;
};

static Node* nodeAt(const QModelIndex& index)
{
    return index.isValid() ? static_cast<QorNodeItem*>(index.internalPointer())->node() : nullptr;
}

static const char twoShapes[] =
    "<X3D version='4.0'><Scene><Viewpoint DEF='V'/><Group DEF='G'><Transform DEF='T'><Shape DEF='S'>"
    "<Appearance DEF='A'/><Box DEF='B' size='4 4 4'/></Shape></Transform></Group>"
    "<Group DEF='H'><Shape USE='S'/></Group></Scene></X3D>";

void tst_WorkbenchWindow::init()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    // Rows that go are told at every level of the log.
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    _window->resize(1000, 700);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
    open(twoShapes);
}

void tst_WorkbenchWindow::cleanup()
{
    _window.reset();
}

void tst_WorkbenchWindow::open(const char* text)
{
    const QString name = _folder.filePath(QStringLiteral("scene%1.x3d").arg(++_count));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    QVERIFY(_window->open(name));
    for (int i = 0; i < 3; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
}

QModelIndex tst_WorkbenchWindow::rowOf(const QString& name) const
{
    for (QModelIndex index = root(); index.isValid(); index = tree()->indexBelow(index)) {
        if (index.sibling(index.row(), 1).data().toString() == name)
            return index;
    }
    return QModelIndex();
}

Node* tst_WorkbenchWindow::nodeCalled(const char* name) const
{
    _window->showNode(QString::fromLatin1(name));
    return _window->selection()->node();
}

QStringList tst_WorkbenchWindow::shown() const
{
    QStringList names;
    for (QModelIndex index = root(); index.isValid(); index = tree()->indexBelow(index))
        names << index.sibling(index.row(), 1).data().toString();
    return names;
}

void tst_WorkbenchWindow::click(const QModelIndex& row)
{
    tree()->scrollTo(row);
    QTest::mouseClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, tree()->visualRect(row).center());
}

void tst_WorkbenchWindow::filter(int mode, const QString& types)
{
    auto* edit = _window->findChild<QLineEdit*>(QStringLiteral("types"));
    edit->setText(types);
    _window->findChild<SceneDock*>()->findChild<QComboBox*>()->setCurrentIndex(mode);
    edit->setFocus();
    emit edit->editingFinished();
    QCoreApplication::processEvents();
}

Node& tst_WorkbenchWindow::add(Node& parent, const char* type)
{
    const NodeRef node = createNode(*parent.context(), *findType(type), HOST_NC);
    static_cast<MFNode&>(*parent.findField("children", Node::EXACT_FSO))
        .addNode(0.0, node.get(), Field::EXTERNAL_CT);
    return *node;
}

void tst_WorkbenchWindow::theTreeShowsTheScene()
{
    QVERIFY(qobject_cast<QorObservingScenegraphModel*>(model()));
    QCOMPARE(root().data().toString(), QStringLiteral("Scene"));
    QVERIFY(tree()->isExpanded(root()));
    QVERIFY(rowOf(QStringLiteral("G")).isValid());
    QVERIFY(rowOf(QStringLiteral("H")).isValid());
    QVERIFY(!rowOf(QStringLiteral("T")).isValid());
    QVERIFY(!edited());
}

void tst_WorkbenchWindow::aClickSelectsEverywhere()
{
    const QModelIndex row = rowOf(QStringLiteral("G"));
    click(row);
    QVERIFY(nodeAt(row));
    QCOMPARE(_window->selection()->node(), nodeAt(row));
    QCOMPARE(edited(), nodeAt(row));
    click(rowOf(QStringLiteral("H")));
    QCOMPARE(edited(), nodeAt(rowOf(QStringLiteral("H"))));
    QCOMPARE(tree()->currentIndex(), rowOf(QStringLiteral("H")));
}

void tst_WorkbenchWindow::aDoubleClickOpensARow()
{
    const QModelIndex row = rowOf(QStringLiteral("G"));
    click(row);
    QTest::mouseDClick(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, tree()->visualRect(row).center());
    QVERIFY(tree()->isExpanded(row));
    QVERIFY(rowOf(QStringLiteral("T")).isValid());
}

void tst_WorkbenchWindow::theStarEndsInAGraphThatContainsItself()
{
    Node* group = nodeCalled("G");
    static_cast<MFNode&>(*group->findField("children", Node::EXACT_FSO))
        .addNode(0.0, group, Field::EXTERNAL_CT);
    tree()->setCurrentIndex(rowOf(QStringLiteral("G")));
    QTest::keyClick(tree(), Qt::Key_Asterisk);
    QVERIFY(rowOf(QStringLiteral("B")).isValid());
    QVERIFY(shown().count(QStringLiteral("G")) > 3);
}

void tst_WorkbenchWindow::aPickedNodeIsFoundAndShown()
{
    auto* gl = _window->findChild<QGLWidget*>();
    QVERIFY(gl && gl->isValid());
    const auto actions = _window->findChildren<QAction*>();
    for (QAction* action : actions) {
        if (action->text() == QLatin1String("&Pick nodes"))
            action->setChecked(true);
    }
    QTest::mouseClick(gl, Qt::LeftButton, Qt::NoModifier, gl->rect().center());
    Node* picked = _window->selection()->node();
    QVERIFY(picked);
    QCOMPARE(edited(), picked);
    // Everything above it was opened.
    QCOMPARE(nodeAt(tree()->currentIndex()), picked);
    QVERIFY(tree()->currentIndex().parent().parent().isValid());
    QVERIFY(tree()->viewport()->rect().contains(tree()->visualRect(tree()->currentIndex())));
    QVERIFY(tree()->selectionModel()->isSelected(tree()->currentIndex()));
}

void tst_WorkbenchWindow::aPickedPlaceOfASharedNodeIsShown()
{
    Node* shape = nodeCalled("S");
    Node* second = nodeCalled("H");
    QVERIFY(shape->isShared());
    _window->selection()->selectChain({nodeAt(root()), second, shape});
    QCOMPARE(nodeAt(tree()->currentIndex()), shape);
    QCOMPARE(nodeAt(tree()->currentIndex().parent()), second);
    Node* group = nodeCalled("G");
    Node* transform = nodeCalled("T");
    _window->selection()->selectChain({nodeAt(root()), group, transform, shape});
    QCOMPARE(nodeAt(tree()->currentIndex().parent()), transform);
    // The node itself says nothing of a place: the present one stays.
    _window->selection()->selectNode(shape);
    QCOMPARE(nodeAt(tree()->currentIndex().parent()), transform);
    // A chain with a gap still leads to its last node.
    _window->selection()->selectNode(nullptr);
    _window->selection()->selectChain({nodeAt(root()), shape});
    QCOMPARE(_window->selection()->node(), shape);
    _window->selection()->selectChain({});
    QCOMPARE(_window->selection()->node(), shape);
}

void tst_WorkbenchWindow::aNamedNodeIsShown()
{
    QVERIFY(_window->showNode(QStringLiteral("B")));
    QCOMPARE(tree()->currentIndex().sibling(tree()->currentIndex().row(), 1).data().toString(),
             QStringLiteral("B"));
    QCOMPARE(edited(), _window->selection()->node());
    QVERIFY(!_window->showNode(QStringLiteral("Nobody")));
    QCOMPARE(edited(), _window->selection()->node());
}

void tst_WorkbenchWindow::aNodeButtonSelectsEverywhere()
{
    Node* box = nodeCalled("B");
    nodeCalled("S");
    auto* editor = _window->findChild<QorObservingNodeEditor*>();
    emit editor->nodeSelected(box);
    QCOMPARE(_window->selection()->node(), box);
    QCOMPARE(nodeAt(tree()->currentIndex()), box);
}

void tst_WorkbenchWindow::theTreeFollowsTheRunningScene()
{
    Node* group = nodeCalled("G");
    tree()->expand(rowOf(QStringLiteral("G")));
    QVERIFY(rowOf(QStringLiteral("T")).isValid());
    Node& added = add(*group, "Switch");
    QCoreApplication::processEvents();
    QVERIFY(rowOf(QString::fromStdString(added.getIDStr())).isValid());
    const QString id = QString::fromStdString(added.getIDStr());
    static_cast<MFNode&>(*group->findField("children", Node::EXACT_FSO))
        .removeNode(0.0, 1, Field::EXTERNAL_CT);
    QCoreApplication::processEvents();
    QVERIFY(!rowOf(id).isValid());
    QVERIFY(tree()->isExpanded(rowOf(QStringLiteral("G"))));
}

void tst_WorkbenchWindow::typesAreHidden()
{
    nodeCalled("B");
    filter(2, QStringLiteral("Viewpoint, Appearance"));
    QVERIFY(!rowOf(QStringLiteral("V")).isValid());
    QVERIFY(rowOf(QStringLiteral("G")).isValid());
    // What was selected is opened again.
    QCOMPARE(nodeAt(tree()->currentIndex()), _window->selection()->node());
    QVERIFY(!rowOf(QStringLiteral("A")).isValid());
    filter(0, QStringLiteral("Viewpoint, Appearance"));
    QVERIFY(rowOf(QStringLiteral("V")).isValid());
    QVERIFY(rowOf(QStringLiteral("A")).isValid());
}

void tst_WorkbenchWindow::typesAloneAreShown()
{
    filter(1, QStringLiteral("Group Transform"));
    QCOMPARE(shown().mid(1), QStringList({QStringLiteral("G"), QStringLiteral("H")}));
    filter(1, QString());
    QVERIFY(rowOf(QStringLiteral("V")).isValid());
}

void tst_WorkbenchWindow::aFilteredTreeFollowsTheScene()
{
    Node* scene = nodeAt(root());
    filter(2, QStringLiteral("Viewpoint Group"));
    QCOMPARE(shown().size(), 1);
    Node& added = add(*scene, "Transform");
    add(*scene, "Group");
    QTRY_COMPARE(shown().mid(1), QStringList{QString::fromStdString(added.getIDStr())});
    auto& children = static_cast<MFNode&>(*scene->findField("children", Node::EXACT_FSO));
    children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    QTRY_COMPARE(shown().mid(1), QStringList{QString::fromStdString(added.getIDStr())});
}

void tst_WorkbenchWindow::bodiesOfPrototypesAreShown()
{
    open("<X3D version='4.0'><Scene><ProtoDeclare name='Lamp'><ProtoBody><Group DEF='Inner'/></ProtoBody>"
         "</ProtoDeclare><ProtoInstance name='Lamp' DEF='L'/></Scene></X3D>");
    const QModelIndex lamp = rowOf(QStringLiteral("L"));
    QVERIFY(lamp.isValid());
    QCOMPARE(model()->rowCount(lamp), 0);
    auto* bodies = _window->findChild<SceneDock*>()->findChild<QCheckBox*>();
    bodies->setChecked(true);
    tree()->expand(rowOf(QStringLiteral("L")));
    QVERIFY(rowOf(QStringLiteral("Inner")).isValid());
    bodies->setChecked(false);
    QVERIFY(!rowOf(QStringLiteral("Inner")).isValid());
    QCOMPARE(model()->rowCount(rowOf(QStringLiteral("L"))), 0);
}

void tst_WorkbenchWindow::aHiddenPlaceIsShownByItsLastRow()
{
    filter(2, QStringLiteral("Shape"));
    _window->showNode(QStringLiteral("B"));
    QCOMPARE(_window->selection()->node()->type()->name, std::string("Box"));
    QCOMPARE(tree()->currentIndex(), rowOf(QStringLiteral("T")));
}

void tst_WorkbenchWindow::anotherSceneHasAnotherTree()
{
    click(rowOf(QStringLiteral("G")));
    const QPointer<QAbstractItemModel> before(model());
    open("<X3D version='4.0'><Scene><Transform DEF='Other'/></Scene></X3D>");
    QVERIFY(!before);
    QVERIFY(!_window->selection()->node());
    QVERIFY(rowOf(QStringLiteral("Other")).isValid());
    QVERIFY(!rowOf(QStringLiteral("G")).isValid());
    click(rowOf(QStringLiteral("Other")));
    QCOMPARE(edited(), nodeAt(rowOf(QStringLiteral("Other"))));
    // The same scene again keeps its tree.
    const QPointer<QAbstractItemModel> now(model());
    _window->updateStatus();
    QVERIFY(now);
}

void tst_WorkbenchWindow::aDeadNodeIsNoLongerSelected()
{
    Node* transform = nodeCalled("T");
    QVERIFY(transform);
    Node* group = nodeAt(tree()->currentIndex().parent());
    static_cast<MFNode&>(*group->findField("children", Node::EXACT_FSO))
        .removeNode(0.0, 0, Field::EXTERNAL_CT);
    _window->viewManager()->runFrame();
    QCoreApplication::processEvents();
    QVERIFY(!_window->selection()->node());
    QVERIFY(!edited());
    QVERIFY(!rowOf(QStringLiteral("T")).isValid());
}

void tst_WorkbenchWindow::nodesAreDraggedOutOfTheTree()
{
    const QModelIndex row = rowOf(QStringLiteral("G"));
    Node* group = nodeAt(row);
    Node* carried = nullptr;
    bool isDragged = false;
    QTimer::singleShot(200, this, [&] {
        if (auto* drag = tree()->findChild<QDrag*>()) {
            isDragged = true;
            if (auto* data = qobject_cast<QorNodePathMimeData*>(drag->mimeData()))
                carried = data->nodePath().node();
        }
        QDrag::cancel();
    });
    const QPoint start = tree()->visualRect(row).center();
    QTest::mousePress(tree()->viewport(), Qt::LeftButton, Qt::NoModifier, start);
    const auto move = [&](int distance) {
        QMouseEvent event(QEvent::MouseMove, start + QPoint(0, distance),
                          tree()->viewport()->mapToGlobal(start + QPoint(0, distance)), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree()->viewport(), &event);
    };
    move(1);
    QVERIFY(!tree()->findChild<QDrag*>());
    move(40);
    QTRY_VERIFY(isDragged);
    QCOMPARE(carried, group);
    QVERIFY(!SceneTreeView::dragData(NodePath()));
}

void tst_WorkbenchWindow::aDroppedNodeIsSelected()
{
    Node* box = nodeCalled("B");
    _window->selection()->selectNode(nullptr);
    QVERIFY(!edited());
    auto* dock = _window->findChild<NodeDock*>();
    const auto drop = [dock](const QMimeData& data) {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.setAccepted(false);
        QCoreApplication::sendEvent(dock, &enter);
        QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(dock, &event);
        return enter.isAccepted();
    };
    QVERIFY(drop(QorNodePathMimeData((NodePath(box)))));
    QCOMPARE(_window->selection()->node(), box);
    QCOMPARE(edited(), box);
    QMimeData other;
    other.setText(QStringLiteral("text"));
    QVERIFY(!drop(other));
    QVERIFY(drop(QorNodePathMimeData(NodePath())));
    QCOMPARE(_window->selection()->node(), box);
}

void tst_WorkbenchWindow::aSelectedScriptOpensItsCode()
{
    auto* code = _window->findChild<CodeDock*>();
    click(rowOf(QStringLiteral("G")));
    QVERIFY(!code->isVisible());
    open("<X3D version='4.0'><Scene><Script DEF='Mover' url='\"javascript: 1\"'><field name='speed' "
         "type='SFFloat' accessType='inputOutput'/></Script></Scene></X3D>");
    click(rowOf(QStringLiteral("Mover")));
    QVERIFY(code->isVisible());
    Node* script = nodeCalled("Mover");
    QCOMPARE(code->codeWidget()->codeNode(), script);
    QCOMPARE(edited(), script);

    const auto rows = [&] { return _window->findChild<QorObservingNodeEditor*>()->model()->rowCount(); };
    const int count = rows();
    emit code->codeWidget()->wantsDeleteField(script, QStringLiteral("speed"));
    QCOMPARE(rows(), count - 1);
    emit code->codeWidget()->wantsDeleteField(script, QStringLiteral("url"));
    QCOMPARE(rows(), count - 1);
    QVERIFY(_window->statusBar()->currentMessage().contains(QStringLiteral("url")));

    open(twoShapes);
    QVERIFY(!code->codeWidget()->codeNode());
    QVERIFY(!code->codeWidget()->isEnabled());
}

void tst_WorkbenchWindow::aRouteCanBeTakenBackUntilAnotherSceneIsOpened()
{
    const Node* from = nodeCalled("G");
    const Node* to = nodeCalled("H");
    Field* field = to->findField("visible", Node::EXACT_FSO);
    QVERIFY(field);
    auto* canvas = _window->findChild<RouteCanvas*>();
    const auto partOf = [](const Node* node) {
        return static_cast<unsigned int>(node->findEventOutSlotID("visible_changed"));
    };
    emit canvas->wantsCreateRoute(from->ID(), partOf(from), to->ID(), partOf(to));
    QCOMPARE(field->inRouteCount(true, false), 1U);
    QAction* undo = nullptr;
    for (QAction* action : _window->findChildren<QAction*>()) {
        if (action->shortcut() == QKeySequence(QKeySequence::Undo))
            undo = action;
    }
    QVERIFY(undo && undo->isEnabled());
    undo->trigger();
    QCOMPARE(field->inRouteCount(true, false), 0U);
    QVERIFY(_window->steps()->canRedo());
    open(twoShapes);
    QCOMPARE(_window->steps()->count(), 0);
}

QTEST_MAIN(tst_WorkbenchWindow)
#include "tst_WorkbenchWindow.moc"
