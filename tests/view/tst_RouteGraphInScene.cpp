// Routes of a running scene, drawn and deleted with the mouse on the canvas, by the canvas itself and
// through the steps of the workbench.
#include "GraphDock.h"
#include "MouseOnGraph.h"
#include "QorNodePathMimeData.h"
#include "RouteCanvas.h"
#include "Selection.h"
#include "Steps.h"
#include "base/Graph.h"
#include "base/ValueFields.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Route.h>
#include <QSignalSpy>
#include <QToolBar>
#include <QtGui/QDropEvent>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// A clock that drives a path; nothing follows the path yet.
const char* const scene = R"(<X3D version='4.0'><Scene>
    <TimeSensor DEF='Clock' cycleInterval='10' loop='true'/>
    <PositionInterpolator DEF='Path' key='0 1' keyValue='0 0 0, 100 0 0'/>
    <Transform DEF='Mover'><Shape><Box/></Shape></Transform>
    <Transform DEF='Alone'/>
    <ROUTE fromNode='Clock' fromField='fraction_changed' toNode='Path' toField='set_fraction'/>
    </Scene></X3D>)";

class World
{
public:
    World()
        : _context(Context::create())
    {
        if (!_context->load("routes.x3d", scene, Context::REPLACE_LT, std::string()))
            qFatal("the scene cannot be read");
        _context->setRootState(0.0, RUNNING_NS);
        root = _context->findRoot(*findType("Scene"));
        clock = named("Clock");
        path = named("Path");
        mover = named("Mover");
        run(3);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World() { _context->subRef(); }

    void run(int frames)
    {
        for (int i = 0; i < frames; ++i) {
            _context->runFrame();
            QTest::qWait(5);
        }
    }
    Node* named(const char* name) const { return NodeNameSpace::findNode(root->nameSpace(), name); }
    float place() const
    {
        return static_cast<const SFVec3f*>(mover->findField("translation", Node::EXACT_FSO))->value()[0];
    }
    /// True when the mover goes on in the next frames.
    bool moves()
    {
        const float before = place();
        run(5);
        return place() != before;
    }
    bool hasRoute() const
    {
        return mover->findField("translation", Node::EXACT_FSO)->inRouteCount(true, false);
    }
    /// Puts what a route is drawn between on a canvas.
    void addRouteEnds(QorGraphView& canvas) const
    {
        canvas.add(path, QPoint(200, 100));
        canvas.add(mover, QPoint(380, 200));
    }
    Context* operator->() const { return _context; }

private:
    Context* _context;

public:
    Node* root;
    Node* clock;
    Node* path;
    Node* mover;
};

/// A widget with a canvas, on the screen, where menus have room.
void showAt(QWidget& widget)
{
    widget.setGeometry(150, 60, 600, 400);
    widget.show();
    widget.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&widget));
}

/// Has the path move the mover.
void drawRoute(MouseOnGraph& mouse, const World& world)
{
    mouse.chooseField(mouse.outputOf(world.path), "value_changed");
    mouse.chooseField(mouse.inputOf(world.mover), "translation");
}

} // namespace

class tst_RouteGraphInScene : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void drawnRouteMovesTheScene();
    void deletedRouteStopsTheScene();
    void unfitFieldsMakeNoRoute();
    void drawnRouteIsAStep();
    void deletedRoutesAreOneStep();
    void stepsOutliveNothingThatIsGone();
    void refusedRouteIsNoStep();
    void droppedNodeGetsABoxAndIsSelected();
    void foreignDropsAreRefused();
    void selectionIsShared();
    void allRoutesAreShownInLayers();
    void selectedNodeComesWithItsNeighbours();
    void replacedSceneEmptiesTheCanvas();
    void fieldTakenOutTakesItsLineAlong();
};

void tst_RouteGraphInScene::cleanup()
{
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    QTestPrivate::qtestMouseButtons = Qt::NoButton;
}

void tst_RouteGraphInScene::drawnRouteMovesTheScene()
{
    World world;
    QorGraphView canvas;
    showAt(canvas);
    world.addRouteEnds(canvas);
    QVERIFY(!world.moves());

    MouseOnGraph mouse(canvas);
    mouse.chooseField(mouse.outputOf(world.path), "value_changed");
    QCOMPARE(canvas.mode(), QorGraphView::CREATEROUTE_M);
    mouse.move(QPoint(350, 180));
    mouse.chooseField(mouse.inputOf(world.mover), "translation");
    QCOMPARE(canvas.mode(), QorGraphView::DEFAULT_M);
    QVERIFY(world.hasRoute());
    QTRY_VERIFY(world.moves());
    QVERIFY(world.place() > 0.0F);
}

void tst_RouteGraphInScene::deletedRouteStopsTheScene()
{
    World world;
    QorGraphView canvas;
    showAt(canvas);
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    drawRoute(mouse, world);
    QTRY_VERIFY(world.moves());

    mouse.click(mouse.between(world.path, world.mover));
    QTest::keyClick(canvas.windowHandle(), Qt::Key_Delete);
    QVERIFY(!world.hasRoute());
    world.run(2);
    QVERIFY(!world.moves());
}

void tst_RouteGraphInScene::unfitFieldsMakeNoRoute()
{
    World world;
    QorGraphView canvas;
    showAt(canvas);
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    mouse.chooseField(mouse.outputOf(world.path), "value_changed");
    mouse.chooseField(mouse.inputOf(world.mover), "rotation");
    QCOMPARE(world.mover->findField("rotation", Node::EXACT_FSO)->inRouteCount(true, false), 0U);
    QCOMPARE(canvas.mode(), QorGraphView::CREATEROUTE_M);
    mouse.click(QPoint(20, 300));
    QCOMPARE(canvas.mode(), QorGraphView::DEFAULT_M);
}

void tst_RouteGraphInScene::drawnRouteIsAStep()
{
    World world;
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    showAt(canvas);
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    drawRoute(mouse, world);
    QCOMPARE(canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(steps.count(), 1);
    QCOMPARE(steps.undoText(), QStringLiteral("route value_changed to translation"));
    QTRY_VERIFY(world.moves());
    steps.undo();
    QVERIFY(!world.hasRoute());
    world.run(2);
    QVERIFY(!world.moves());
    steps.redo();
    QVERIFY(world.hasRoute());
    QTRY_VERIFY(world.moves());
}

void tst_RouteGraphInScene::deletedRoutesAreOneStep()
{
    World world;
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    showAt(canvas);
    canvas.add(world.clock, QPoint(40, 40));
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    drawRoute(mouse, world);
    mouse.click(mouse.between(world.path, world.mover));
    mouse.click(mouse.between(world.clock, world.path));
    QTest::keyClick(canvas.windowHandle(), Qt::Key_Delete);
    QVERIFY(!world.hasRoute());
    QCOMPARE(world.path->findField("set_fraction", Node::DECLARED_FSO)->inRouteCount(true, false), 0U);
    QCOMPARE(steps.count(), 2);
    steps.undo();
    QVERIFY(world.hasRoute());
    QTRY_VERIFY(world.moves());
    // One alone is named.
    mouse.click(mouse.between(world.path, world.mover));
    QTest::keyClick(canvas.windowHandle(), Qt::Key_Delete);
    QCOMPARE(steps.undoText(), QStringLiteral("delete route value_changed to translation"));
}

void tst_RouteGraphInScene::stepsOutliveNothingThatIsGone()
{
    World world;
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    showAt(canvas);
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    drawRoute(mouse, world);
    auto& children = static_cast<MFNode&>(*world.root->findField("children", Node::EXACT_FSO));
    children.clear();
    world.run(2);
    QVERIFY(!canvas.viewOf(world.mover));
    steps.undo();
    QCOMPARE(steps.count(), 0);
}

void tst_RouteGraphInScene::refusedRouteIsNoStep()
{
    World world;
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    showAt(canvas);
    QSignalSpy told(&canvas, &RouteCanvas::told);
    world.addRouteEnds(canvas);
    MouseOnGraph mouse(canvas);
    mouse.chooseField(mouse.outputOf(world.path), "value_changed");
    mouse.chooseField(mouse.inputOf(world.mover), "rotation");
    QCOMPARE(steps.count(), 0);
    QCOMPARE(told.count(), 1);
}

void tst_RouteGraphInScene::droppedNodeGetsABoxAndIsSelected()
{
    World world;
    Selection selection(nullptr);
    Steps steps(nullptr);
    GraphDock dock(&selection, &steps, nullptr);
    showAt(dock);
    RouteCanvas* canvas = dock.canvas();
    QorNodePathMimeData data{NodePath(world.mover)};
    QDragEnterEvent enter(QPoint(100, 60), Qt::CopyAction, &data, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(canvas, &enter);
    QVERIFY(enter.isAccepted());
    QDragMoveEvent move(QPoint(120, 80), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &move);
    QVERIFY(move.isAccepted());
    QDropEvent drop(QPoint(120, 80), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &drop);
    QVERIFY(drop.isAccepted());
    const QorGraphNodeView* box = canvas->viewOf(world.mover);
    QVERIFY(box);
    QCOMPARE(box->rect().center(), QPointF(120, 80));
    QCOMPARE(selection.node(), world.mover);
    QVERIFY(box->isSelected());
    // A second drop of the same node leaves its box where it is.
    QDropEvent again(QPoint(300, 100), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &again);
    QCOMPARE(canvas->viewOf(world.mover), box);
    QCOMPARE(box->rect().center(), QPointF(120, 80));
}

void tst_RouteGraphInScene::foreignDropsAreRefused()
{
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    QMimeData text;
    text.setText(QStringLiteral("a node?"));
    QorNodePathMimeData nothing{NodePath()};
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &text, Qt::LeftButton, {});
    enter.ignore();
    QCoreApplication::sendEvent(&canvas, &enter);
    QVERIFY(!enter.isAccepted());
    for (QMimeData* data : std::initializer_list<QMimeData*>{&text, &nothing}) {
        QDropEvent drop(QPoint(10, 10), Qt::CopyAction, data, Qt::LeftButton, {});
        drop.ignore();
        QCoreApplication::sendEvent(&canvas, &drop);
        QVERIFY(canvas.boxes().empty());
    }
}

void tst_RouteGraphInScene::selectionIsShared()
{
    World world;
    Selection selection(nullptr);
    Steps steps(nullptr);
    GraphDock dock(&selection, &steps, nullptr);
    showAt(dock);
    RouteCanvas* canvas = dock.canvas();
    const QorGraphNodeView* path = canvas->add(world.path, QPoint(100, 60));
    const QorGraphNodeView* mover = canvas->add(world.mover, QPoint(100, 120));
    MouseOnGraph mouse(*canvas);
    mouse.click(QPoint(140, 64));
    QCOMPARE(selection.node(), world.path);
    selection.selectNode(world.mover);
    QVERIFY(mover->isSelected());
    QVERIFY(!path->isSelected());
    // A group that the user selects here stays one.
    QTest::mouseClick(canvas, Qt::LeftButton, Qt::ControlModifier, QPoint(140, 64));
    QCOMPARE(selection.node(), world.path);
    QVERIFY(mover->isSelected());
    QVERIFY(path->isSelected());
    selection.selectNode(world.clock); // which has no box
    QVERIFY(!mover->isSelected());
    QVERIFY(!path->isSelected());
}

void tst_RouteGraphInScene::allRoutesAreShownInLayers()
{
    World world;
    Selection selection(nullptr);
    Steps steps(nullptr);
    GraphDock dock(&selection, &steps, nullptr);
    dock.setRootNode(world.root);
    showAt(dock);
    MouseOnGraph mouse(*dock.canvas());
    dock.canvas()->add(world.mover, QPoint(0, 0));
    for (QAction* action : dock.findChild<QToolBar*>()->actions()) {
        if (action->iconText() == QStringLiteral("All routes"))
            action->trigger();
    }
    const RouteCanvas& canvas = *dock.canvas();
    QCOMPARE(canvas.boxes().size(), 3U); // "Alone" has none
    const auto* clock = canvas.viewOf(world.clock);
    const auto* path = canvas.viewOf(world.path);
    QVERIFY(clock && path);
    QVERIFY(clock->rect().right() < path->rect().left());
    QCOMPARE(clock->rect().center().y(), path->rect().center().y());
    for (const auto* box : canvas.boxes())
        QVERIFY(QRectF(canvas.rect()).contains(box->rect()));
    const auto* mover = canvas.viewOf(world.mover);
    QVERIFY(!mover->rect().intersects(clock->rect()) && !mover->rect().intersects(path->rect()));
}

void tst_RouteGraphInScene::selectedNodeComesWithItsNeighbours()
{
    World world;
    Selection selection(nullptr);
    Steps steps(nullptr);
    GraphDock dock(&selection, &steps, nullptr);
    showAt(dock);
    dock.addSelected();
    QVERIFY(dock.canvas()->boxes().empty());
    selection.selectNode(world.path);
    dock.addSelected();
    QCOMPARE(dock.canvas()->boxes().size(), 2U);
    QVERIFY(dock.canvas()->viewOf(world.clock));
    QVERIFY(dock.canvas()->viewOf(world.path)->isSelected());
    dock.addSelected();
    QCOMPARE(dock.canvas()->boxes().size(), 2U);
}

void tst_RouteGraphInScene::replacedSceneEmptiesTheCanvas()
{
    World world;
    Steps steps(nullptr);
    RouteCanvas canvas(&steps);
    showAt(canvas);
    canvas.showRoutesBelow(world.root);
    QCOMPARE(canvas.boxes().size(), 2U);
    QVERIFY(world->load("other.x3d", "<X3D version='4.0'><Scene><Group/></Scene></X3D>", Context::REPLACE_LT,
                        std::string()));
    world.run(2);
    QVERIFY(canvas.boxes().empty());
    QCOMPARE(canvas.grab().toImage().pixelColor(2, 2), QColor(Qt::black));
}

void tst_RouteGraphInScene::fieldTakenOutTakesItsLineAlong()
{
    World world;
    QorGraphView canvas;
    showAt(canvas);
    const NodeRef made = createNode(*world.mover->context(), *findType("Script"), HOST_NC);
    Field* first = made->addField("first", SFVEC3F_DT, EVENTOUTP);
    Field* second = made->addField("second", SFVEC3F_DT, EVENTOUTP);
    canvas.add(made.get(), QPoint(100, 100));
    canvas.add(world.mover, QPoint(300, 200));
    MouseOnGraph mouse(canvas);
    mouse.chooseField(mouse.outputOf(made.get()), "second");
    mouse.chooseField(mouse.inputOf(world.mover), "translation");
    QVERIFY(second->outRouteCount(true, false) == 1U);
    // The fields behind it are numbered anew, and the line goes on to mean the same route.
    QVERIFY(made->removeField(*first));
    mouse.click(mouse.between(made.get(), world.mover));
    QTest::keyClick(canvas.windowHandle(), Qt::Key_Delete);
    QVERIFY(!world.hasRoute());
    mouse.chooseField(mouse.outputOf(made.get()), "second");
    mouse.chooseField(mouse.inputOf(world.mover), "translation");
    QVERIFY(world.hasRoute());
    QVERIFY(made->removeField(*second));
    QVERIFY(!world.hasRoute());
    QCOMPARE(canvas.grab().toImage().pixelColor(mouse.between(made.get(), world.mover)), QColor(Qt::black));
}

QTEST_MAIN(tst_RouteGraphInScene)
#include "tst_RouteGraphInScene.moc"
