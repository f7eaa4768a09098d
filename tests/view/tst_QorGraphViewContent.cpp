#include "GraphOnScreen.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorGraphViewContent : public QObject
{
    Q_OBJECT

private slots:
    void addMakesABoxOnTop();
    void addOfNullDoesNothing();
    void addTwiceIsRefused();
    void viewOfKnowsEveryBoxOfToday();
    void removedBoxLivesOnOffTheCanvas();
    void removeOfAStrangerDoesNothing();
    void clearTakesEverythingOff();
    void edgeNeedsBothBoxes();
    void missingBoxIsReported();
    void onlyTwoTypesOfRouteHaveEdges();
    void hiddenCanvasReadsRoutesWhenItShows();
    void updateIsTraced();
    void edgesFollowBoxesAndFields();
    void routeThatIsAboutToGoHasNoEdge();
    void newRouteBringsAnEdgeAndEndsTheMode();
    void edgeObjectsAreBounded();
    void selectedEdgeIsNotTakenBack();
    void childrenAreImported();
    void secondImportAddsNothing();
    void recursiveImportPutsChildrenOnTop();
    void recursiveImportReportsSharedNodes();
    void recursiveImportEndsOnACycle();
    void recursiveImportGoesDeep();
    void neighboursAreImported();
    void neighbourWithTwoRoutesIsReportedOnce();
    void importsOfNullDoNothing();
    void nodeMenuWorksOnTheSelection();
    void routeIsMadeByTheCanvas();
    void routeIsAskedFor();
    void unknownEndsAreSilent();
    void refusedRouteIsReported();
    void slotsAreMadeInBothWays();
    void sourceWithoutDescriptionIsFieldZero();
    void inputWithoutARouteUnderWayIsReported();
    void slotsWithoutASenderAreReported();
    void deletedRoutesAreThoseOfTheSelection();
    void deletionIsAskedFor();
    void routeIsDeletedOnceInOneCall();
    void routeMadeAgainIsDeletedToo();
    void dyingNodeLeavesTheCanvas();
    void boxesOfADeadNodeForgetIt();
    void renamedNodeIsPaintedAnew();
    void destroyedCanvasIsOutOfTheSubjects();
    void canvasMayDieInItsSignal();
    void signalsHaveTheirTypes();
};

namespace {

QByteArrayList only(const QByteArrayList& lines, const char* text)
{
    QByteArrayList result;
    for (const QByteArray& line : lines) {
        if (line.contains(text))
            result << line;
    }
    return result;
}

QByteArray refused(const char* id)
{
    return QByteArray("3 QorGraphView::add: graph canvas already contains view for node [") + id + "].\n";
}

/// Presses the line of the pair, which is then selected or no longer.
void pressLine(GraphOnScreen& shown)
{
    shown.click(QPoint(165, 85));
}

} // namespace

void tst_QorGraphViewContent::addMakesABoxOnTop()
{
    GraphOnScreen shown;
    QorGraphNodeView* first = shown.canvas.add(shown.a.get(), QPoint(50, 60));
    QCOMPARE(first->node(), shown.a.get());
    QCOMPARE(first->graphView(), &shown.canvas);
    QCOMPARE(first->rect(), QRectF(50, 60, 80, 20));
    QCOMPARE(first->palette().color(QPalette::Window), QColor(120, 120, 120));
    QCOMPARE(first->palette().color(QPalette::Button), QColor(120, 120, 120));
    QCOMPARE(first->palette().color(QPalette::Highlight), QColor(147, 147, 0));
    QCOMPARE(first->palette().color(QPalette::WindowText), QColor(240, 240, 240));
    QCOMPARE(first->palette().color(QPalette::Text), QColor(240, 240, 240));
    QVERIFY(!first->isSelected());
    QorGraphNodeView* second = shown.canvas.add(shown.b.get(), QPoint(50, 60));
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(60, 70)), second);
}

void tst_QorGraphViewContent::addOfNullDoesNothing()
{
    GraphOnScreen shown;
    LogCapture log;
    QVERIFY(!shown.canvas.add(nullptr, QPoint(1, 2)));
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorGraphViewContent::addTwiceIsRefused()
{
    GraphOnScreen shown;
    QorGraphNodeView* box = shown.canvas.add(shown.a.get(), QPoint(50, 60));
    LogCapture log;
    QVERIFY(!shown.canvas.add(shown.a.get(), QPoint(0, 0)));
    QCOMPARE(log.take(), QByteArrayList{refused("a")});
    QCOMPARE(box->pos(), QPointF(50, 60));
}

void tst_QorGraphViewContent::viewOfKnowsEveryBoxOfToday()
{
    GraphOnScreen shown;
    QVERIFY(!shown.canvas.viewOf(shown.a.get()));
    shown.addPair();
    QCOMPARE(shown.canvas.viewOf(shown.a.get()), shown.boxA);
    QCOMPARE(shown.canvas.viewOf(shown.b.get()), shown.boxB);
    QVERIFY(!shown.canvas.viewOf(shown.c.get()));
    QVERIFY(!shown.canvas.viewOf(nullptr));
}

void tst_QorGraphViewContent::removedBoxLivesOnOffTheCanvas()
{
    GraphOnScreen shown;
    shown.addPair();
    const QPointer<QorGraphNodeView> box(shown.boxA);
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, [&] { shown.canvas.remove(shown.a.get()); }));
    QVERIFY(box);
    QVERIFY(!shown.canvas.viewOf(shown.a.get()));
    QVERIFY(!shown.canvas.nodeViewAt(QPoint(60, 60)));
    QVERIFY(shown.canvas.lines().isEmpty());
    QCOMPARE(shown.canvas.pixel(90, 52), QColor(Qt::black));
    // The node may come again, in a box of its own.
    QVERIFY(shown.canvas.add(shown.a.get(), QPoint(10, 10)) != box);
    QCOMPARE(shown.canvas.lines().size(), 1);
}

void tst_QorGraphViewContent::removeOfAStrangerDoesNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    LogCapture log;
    shown.canvas.remove(shown.c.get());
    shown.canvas.remove(nullptr);
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorGraphViewContent::clearTakesEverythingOff()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.selectAll();
    pressLine(shown);
    shown.canvas.clear();
    QVERIFY(!shown.canvas.viewOf(shown.a.get()));
    QVERIFY(!shown.canvas.viewOf(shown.b.get()));
    LogCapture log;
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::deleteSelectedRoutes: #=0\n"));
    // The route itself is as it was.
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 1U);
}

void tst_QorGraphViewContent::edgeNeedsBothBoxes()
{
    GraphOnScreen shown;
    shown.route = connectParts(*shown.a, 2, *shown.b, 1);
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    QCOMPARE(shown.canvas.lines().size(), 0);
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    QCOMPARE(shown.canvas.lines().size(), 1);
    shown.canvas.remove(shown.a.get());
    QCOMPARE(shown.canvas.lines().size(), 0);
}

void tst_QorGraphViewContent::missingBoxIsReported()
{
    GraphOnScreen shown;
    connectParts(*shown.a, 2, *shown.b, 1);
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    const QByteArray omitted(
        "3 QorGraphView::addRoute: no view found for source  or destination node. Omitting "
        "route (needs both)!\n");
    LogCapture log;
    shown.canvas.setMode(QorGraphView::MOVENODE_M);
    shown.canvas.updateEdges();
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorGraphView::updateEdges:\n",
                             "3 QorGraphView::updateEdges(): found 1 routes. isVisible=1\n", omitted}));
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    // A route is met at its destination only.
    shown.canvas.remove(shown.b.get());
    shown.canvas.add(shown.a.get(), QPoint(0, 0));
    log.take();
    shown.canvas.updateEdges();
    QCOMPARE(log.take().last(), QByteArray("3 QorGraphView::updateEdges(): found 0 routes. isVisible=1\n"));
}

void tst_QorGraphViewContent::onlyTwoTypesOfRouteHaveEdges()
{
    GraphOnScreen shown;
    shown.addPair();
    connectParts(*shown.a, 0, *shown.b, 0, Route::IS_RT);
    connectParts(*shown.b, 0, *shown.a, 0, Route::SCRIPT_RT);
    LogCapture log;
    shown.canvas.takeAddCalls();
    const QList<QorGraphEdge*> lines = shown.canvas.lines();
    QCOMPARE(log.take().last(), QByteArray("3 QorGraphView::updateEdges(): found 3 routes. isVisible=1\n"));
    QCOMPARE(shown.canvas.takeAddCalls(), 2);
    QCOMPARE(lines.size(), 2);
}

void tst_QorGraphViewContent::hiddenCanvasReadsRoutesWhenItShows()
{
    GraphOnScreen shown;
    shown.canvas.hide();
    LogCapture log;
    shown.addPair();
    shown.canvas.updateEdges();
    QCOMPARE(only(log.take(), "updateEdges"), QByteArrayList());
    shown.canvas.takeAddCalls();
    shown.canvas.show();
    QCOMPARE(shown.canvas.takeAddCalls(), 1);
    QVERIFY(QTest::qWaitForWindowExposed(&shown.canvas));
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(20, 180, 20));
    // What goes while the canvas is hidden is kept until then, too.
    shown.canvas.hide();
    delete shown.route;
    QCOMPARE(shown.canvas.takeAddCalls(), 0);
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(20, 180, 20));
    shown.canvas.show();
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(Qt::black));
}

void tst_QorGraphViewContent::updateIsTraced()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    LogCapture log;
    shown.route = connectParts(*shown.a, 2, *shown.b, 1);
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorGraphView::RouteObserver::notify: mode=0, deletedRoute=(nil)\n",
                             "3 QorGraphView::updateEdges:\n",
                             "3 QorGraphView::updateEdges(): found 1 routes. isVisible=1\n"}));
    char expected[100];
    qsnprintf(expected, sizeof(expected), "3 QorGraphView::RouteObserver::notify: mode=1, deletedRoute=%p\n",
              static_cast<const void*>(shown.route));
    delete shown.route;
    QCOMPARE(log.take(), QByteArrayList({expected, "3 QorGraphView::updateEdges:\n",
                                         "3 QorGraphView::updateEdges(): found 0 routes. isVisible=1\n"}));
}

void tst_QorGraphViewContent::edgesFollowBoxesAndFields()
{
    GraphOnScreen shown;
    shown.addPair();
    connectParts(*shown.a, 0, *shown.b, 0);
    connectParts(*shown.b, 2, *shown.a, 1);
    QStringList order;
    for (const QorGraphEdge* line : shown.canvas.lines())
        order << QStringLiteral("%1 %2 %3")
                     .arg(line->destNode() == shown.boxA ? QStringLiteral("a") : QStringLiteral("b"))
                     .arg(line->outSlotId())
                     .arg(line->inSlotId());
    // The box added last comes first.
    QCOMPARE(order, QStringList({QStringLiteral("b 0 0"), QStringLiteral("b 2 1"), QStringLiteral("a 2 1")}));
}

void tst_QorGraphViewContent::routeThatIsAboutToGoHasNoEdge()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.takeAddCalls();
    shown.canvas.updateEdges(shown.route);
    QCOMPARE(shown.canvas.takeAddCalls(), 0);
    shown.canvas.updateEdges(nullptr);
    QCOMPARE(shown.canvas.takeAddCalls(), 1);
    delete shown.route;
    QCOMPARE(shown.canvas.takeAddCalls(), 0);
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(Qt::black));
}

void tst_QorGraphViewContent::newRouteBringsAnEdgeAndEndsTheMode()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    shown.canvas.setMode(QorGraphView::RECTSELECT_M);
    connectParts(*shown.a, 2, *shown.b, 1);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(20, 180, 20));
}

void tst_QorGraphViewContent::edgeObjectsAreBounded()
{
    GraphOnScreen shown;
    shown.addPair();
    for (int i = 0; i < 50; ++i) {
        shown.canvas.updateEdges();
        delete shown.route;
        shown.route = connectParts(*shown.a, 2, *shown.b, 1);
    }
    QCOMPARE(shown.canvas.findChildren<QorGraphEdge*>().size(), 1);
    // One that comes back is as new.
    QorGraphEdge* line = shown.canvas.lines().first();
    line->select();
    line->setPalette(QPalette(Qt::blue));
    QCOMPARE(shown.canvas.lines(), QList<QorGraphEdge*>{line});
    QVERIFY(!line->isSelected());
    QCOMPARE(line->palette().color(QPalette::Button), QColor(20, 180, 20));
}

void tst_QorGraphViewContent::selectedEdgeIsNotTakenBack()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* before = shown.canvas.lines().first();
    pressLine(shown);
    QVERIFY(before->isSelected());
    const QList<QorGraphEdge*> after = shown.canvas.lines();
    QCOMPARE(after.size(), 1);
    QVERIFY(after.first() != before);
    QVERIFY(!after.first()->isSelected());
    QVERIFY(before->isSelected());
}

void tst_QorGraphViewContent::childrenAreImported()
{
    GraphOnScreen shown;
    const auto parent = routedNode("parent");
    Tiny::link(parent.get(), "single", shown.c.release());
    Tiny::link(parent.get(), "children", shown.a.release());
    Node* below = Tiny::makeNode(routedType(), "below");
    Node* child = Tiny::makeNode(routedType(), "child");
    Tiny::link(child, "children", below);
    Tiny::link(parent.get(), "children", child);
    shown.canvas.importChildrenOf(parent.get());
    QVERIFY(!shown.canvas.viewOf(parent.get()));
    QVERIFY(!shown.canvas.viewOf(below));
    // Part 5 is "children", part 6 "single", so that the last one is on top.
    const QorGraphNodeView* top = shown.canvas.nodeViewAt(QPoint(0, 0));
    QCOMPARE(top->node()->getIDStr(), std::string("c"));
    QCOMPARE(top->pos(), QPointF(0, 0));
    shown.canvas.remove(top->node());
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(0, 0))->node(), child);
    shown.canvas.remove(child);
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(0, 0))->node()->getIDStr(), std::string("a"));
}

void tst_QorGraphViewContent::secondImportAddsNothing()
{
    GraphOnScreen shown;
    const auto parent = routedNode("parent");
    Tiny::link(parent.get(), "single", shown.c.release());
    Tiny::link(parent.get(), "children", shown.a.release());
    shown.canvas.importChildrenOf(parent.get());
    LogCapture log;
    shown.canvas.importChildrenOf(parent.get());
    QCOMPARE(log.take(), QByteArrayList({refused("a"), refused("c")}));
}

void tst_QorGraphViewContent::recursiveImportPutsChildrenOnTop()
{
    GraphOnScreen shown;
    const auto parent = routedNode("parent");
    for (const char* name : {"p", "q"}) {
        Node* child = Tiny::makeNode(routedType(), name);
        Node* deep = Tiny::makeNode(routedType(), (std::string(name) + "1").c_str());
        Tiny::link(deep, "single", Tiny::makeNode(routedType(), (std::string(name) + "2").c_str()));
        Tiny::link(child, "children", deep);
        Tiny::link(parent.get(), "children", child);
    }
    shown.canvas.importChildrenRecursive(parent.get());
    QByteArrayList order;
    while (const QorGraphNodeView* top = shown.canvas.nodeViewAt(QPoint(0, 0))) {
        order << top->node()->getIDStr().c_str();
        shown.canvas.remove(top->node());
    }
    QCOMPARE(order, QByteArrayList({"q", "q1", "q2", "p", "p1", "p2"}));
}

void tst_QorGraphViewContent::recursiveImportReportsSharedNodes()
{
    GraphOnScreen shown;
    const auto parent = routedNode("parent");
    Node* left = Tiny::makeNode(routedType(), "left");
    Node* right = Tiny::makeNode(routedType(), "right");
    Node* shared = Tiny::makeNode(routedType(), "shared");
    Tiny::link(shared, "single", Tiny::makeNode(routedType(), "below"));
    Tiny::link(left, "single", shared);
    Tiny::link(right, "single", shared);
    Tiny::link(parent.get(), "children", left);
    Tiny::link(parent.get(), "children", right);
    LogCapture log;
    shown.canvas.importChildrenRecursive(parent.get());
    // The shared node is walked again before it is refused.
    QCOMPARE(only(log.take(), "::add:"), QByteArrayList({refused("below"), refused("shared")}));
}

void tst_QorGraphViewContent::recursiveImportEndsOnACycle()
{
    GraphOnScreen shown;
    // A third node holds both, so that taking the cycle apart kills neither.
    const auto holder = routedNode("holder");
    Node* a = shown.a.release();
    Node* b = shown.b.release();
    Tiny::link(holder.get(), "children", a);
    Tiny::link(holder.get(), "children", b);
    Tiny::link(a, "children", b);
    Tiny::link(b, "children", a);
    LogCapture log;
    shown.canvas.importChildrenRecursive(a);
    // The node comes again below itself, and is put on the canvas there, but not walked once more.
    QVERIFY(shown.canvas.viewOf(a));
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(0, 0))->node(), b);
    QCOMPARE(only(log.take(), "::add:"), QByteArrayList());
    shown.canvas.importChildrenRecursive(a);
    QCOMPARE(only(log.take(), "::add:"), QByteArrayList({refused("a"), refused("b")}));
    shown.canvas.clear();
    b->findField(5)->clear();
    a->findField(5)->clear();
}

void tst_QorGraphViewContent::recursiveImportGoesDeep()
{
    GraphOnScreen shown;
    shown.canvas.hide();
    const auto parent = routedNode("parent");
    Node* last = parent.get();
    constexpr int depth = 5000;
    std::vector<Node*> chain;
    for (int i = 0; i < depth; ++i) {
        Node* next = Tiny::makeNode(routedType());
        Tiny::link(last, "children", next);
        chain.push_back(next);
        last = next;
    }
    shown.canvas.importChildrenRecursive(parent.get());
    for (const Node* node : chain)
        QVERIFY(shown.canvas.viewOf(node));
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(0, 0))->node(), chain.front());
    shown.canvas.clear();
    // From below, since the nodes of this runtime take their children along one inside the other.
    chain.pop_back();
    for (auto node = chain.rbegin(); node != chain.rend(); ++node)
        (*node)->findField(5)->clear();
}

void tst_QorGraphViewContent::neighboursAreImported()
{
    GraphOnScreen shown;
    const auto d = routedNode("d");
    connectParts(*shown.a, 2, *shown.b, 1);
    connectParts(*shown.b, 2, *shown.c, 1, Route::SCRIPT_RT);
    connectParts(*shown.b, 0, *d, 0, Route::IS_RT);
    LogCapture log;
    shown.canvas.importDirectNeighboursOf(shown.b.get());
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::importDirectNeighboursOf:\n"));
    QVERIFY(shown.canvas.viewOf(shown.a.get()));
    QVERIFY(shown.canvas.viewOf(shown.c.get()));
    QVERIFY(!shown.canvas.viewOf(shown.b.get()));
    QVERIFY(!shown.canvas.viewOf(d.get()));
    // In order of fields: part 1 receives, part 2 sends.
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(0, 0))->node(), shown.c.get());
    QCOMPARE(shown.canvas.viewOf(shown.a.get())->pos(), QPointF(0, 0));
}

void tst_QorGraphViewContent::neighbourWithTwoRoutesIsReportedOnce()
{
    GraphOnScreen shown;
    connectParts(*shown.a, 2, *shown.b, 1);
    connectParts(*shown.a, 0, *shown.b, 0);
    LogCapture log;
    shown.canvas.importDirectNeighboursOf(shown.b.get());
    QCOMPARE(only(log.take(), "::add:"), QByteArrayList{refused("a")});
}

void tst_QorGraphViewContent::importsOfNullDoNothing()
{
    GraphOnScreen shown;
    LogCapture log;
    shown.canvas.importChildrenOf(nullptr);
    shown.canvas.importChildrenRecursive(nullptr);
    QCOMPARE(log.take(), QByteArrayList());
    shown.canvas.importDirectNeighboursOf(nullptr);
    QCOMPARE(log.take(), QByteArrayList{"3 QorGraphView::importDirectNeighboursOf:\n"});
}

void tst_QorGraphViewContent::nodeMenuWorksOnTheSelection()
{
    GraphOnScreen shown;
    shown.addPair();
    const auto d = routedNode("d");
    connectParts(*d, 2, *shown.a, 1);
    Tiny::link(shown.a.get(), "children", shown.c.get());
    Node* deep = Tiny::makeNode(routedType(), "deep");
    Tiny::link(shown.c.get(), "single", deep);
    const auto chooseOn = [&](const char* entry) {
        shown.press(QPoint(90, 60), Qt::RightButton);
        QVERIFY(openMenu());
        GraphOnScreen::chooseByMouse(entry);
        shown.release(QPoint(90, 60), Qt::RightButton);
        QVERIFY(!openMenu());
    };
    shown.canvas.select(shown.b.get());
    chooseOn("Import connected");
    QVERIFY(shown.canvas.viewOf(d.get()));
    QVERIFY(!shown.canvas.viewOf(shown.c.get()));
    chooseOn("Import children");
    QVERIFY(shown.canvas.viewOf(shown.c.get()));
    QVERIFY(!shown.canvas.viewOf(deep));
    chooseOn("Import children recursively");
    QVERIFY(shown.canvas.viewOf(deep));
    chooseOn("Remove");
    QVERIFY(!shown.canvas.viewOf(shown.a.get()));
    QVERIFY(!shown.canvas.viewOf(shown.b.get()));
    QVERIFY(shown.canvas.viewOf(shown.c.get()));
    // Boxes that were removed stay selected, and their nodes are asked again.
    LogCapture log;
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "onImportConnectedActivated"));
    QCOMPARE(only(log.take(), "importDirect").size(), 2);
    shown.canvas.clear();
    shown.c.release(); // its last link takes it along
}

void tst_QorGraphViewContent::routeIsMadeByTheCanvas()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsCreateRoute);
    LogCapture log;
    shown.canvas.createRouteEvent(shown.a->ID(), 2, shown.b->ID(), 1);
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::createRouteEvent:\n"));
    const Route* route = *shown.b->findField(1)->_inSlot->begin();
    QCOMPARE(route->outSlot()->field(), shown.a->findField(2));
    QCOMPARE(route->type(), Route::SCENE_RT);
    QCOMPARE(wants.count(), 0);
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(20, 180, 20));
}

void tst_QorGraphViewContent::routeIsAskedFor()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    QVERIFY(!shown.canvas.isManagingRoutes());
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsCreateRoute);
    emit shown.boxA->outputSlotClicked(QStringLiteral("value"));
    emit shown.boxB->inputSlotClicked(QStringLiteral("go"));
    QCOMPARE(wants.count(), 1);
    const QList<QVariant> arguments = wants.first();
    QCOMPARE(arguments.at(0).value<UInt64>(), shown.a->ID());
    QCOMPARE(arguments.at(1).toUInt(), 0U);
    QCOMPARE(arguments.at(2).value<UInt64>(), shown.b->ID());
    QCOMPARE(arguments.at(3).toUInt(), 1U);
    QCOMPARE(shown.a->findField(0U)->outRouteCount(true, false), 0U);
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    shown.click(QPoint(20, 200));
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
}

void tst_QorGraphViewContent::unknownEndsAreSilent()
{
    GraphOnScreen shown;
    const UInt64 a = shown.a->ID();
    const UInt64 b = shown.b->ID();
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsCreateRoute);
    LogCapture log;
    for (bool manage : {true, false}) {
        shown.canvas.setManageRoutes(manage);
        shown.canvas.createRouteEvent(0, 2, b, 1);
        shown.canvas.createRouteEvent(a, 2, 0, 1);
        shown.canvas.createRouteEvent(a, 99, b, 1);
        shown.canvas.createRouteEvent(a, 2, b, 99);
    }
    QCOMPARE(log.take().size(), 8); // the tracing alone
    QCOMPARE(wants.count(), 0);
    QVERIFY(!shown.a->findField(2)->_outSlot);
}

void tst_QorGraphViewContent::refusedRouteIsReported()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(200, 100));
    Tiny::switches().refuseRoutes = true;
    emit shown.canvas.viewOf(shown.a.get())->outputSlotClicked(QStringLiteral("gone"));
    LogCapture log(osg::LOG_FATAL);
    emit shown.canvas.viewOf(shown.b.get())->inputSlotClicked(QStringLiteral("go"));
    Tiny::reset();
    QCOMPARE(log.take(),
             QByteArrayList{"1 QorGraphView::createRouteEvent: failed to create route a.gone->b.go\n"});
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
}

void tst_QorGraphViewContent::slotsAreMadeInBothWays()
{
    GraphOnScreen shown;
    shown.canvas.setManageRoutes(false);
    shown.canvas.createRouteEvent(shown.a->ID(), 2, shown.b->ID(), 1);
    QVERIFY(shown.a->findField(2)->_outSlot);
    QVERIFY(shown.b->findField(1)->_inSlot);
    QVERIFY(shown.b->findField(1)->_inSlot->begin() == shown.b->findField(1)->_inSlot->end());
}

void tst_QorGraphViewContent::sourceWithoutDescriptionIsFieldZero()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsCreateRoute);
    shown.a->findField(2)->_desc = nullptr;
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    emit shown.boxB->inputSlotClicked(QStringLiteral("nonsense"));
    QCOMPARE(wants.count(), 1);
    QCOMPARE(wants.first().at(1).toUInt(), 0U);
    QCOMPARE(wants.first().at(3).toUInt(), 0U);
}

void tst_QorGraphViewContent::inputWithoutARouteUnderWayIsReported()
{
    GraphOnScreen shown;
    shown.addPair();
    LogCapture log;
    emit shown.boxB->inputSlotClicked(QStringLiteral("value"));
    QCOMPARE(log.take(), QByteArrayList{"2 QorGraphView::onInputSlotClicked: sender is 0.\n"});
    // A route that has a mode but no source.
    shown.canvas.setMode(QorGraphView::CREATEROUTE_M);
    emit shown.boxB->inputSlotClicked(QStringLiteral("value"));
    QCOMPARE(log.take(), QByteArrayList{"2 QorGraphView::onInputSlotClicked: sender is 0.\n"});
}

void tst_QorGraphViewContent::slotsWithoutASenderAreReported()
{
    GraphOnScreen shown;
    LogCapture log;
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "onOutputSlotClicked", Q_ARG(QString, QString())));
    QCOMPARE(log.take(), QByteArrayList{"2 QorGraphView::onOutputSlotClicked: sender is 0.\n"});
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    shown.canvas.setMode(QorGraphView::CREATEROUTE_M);
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "onInputSlotClicked", Q_ARG(QString, QString())));
    QCOMPARE(log.take(), QByteArrayList{"2 QorGraphView::onInputSlotClicked: sender is 0.\n"});
}

void tst_QorGraphViewContent::deletedRoutesAreThoseOfTheSelection()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(200, 200));
    connectParts(*shown.a, 0, *shown.c, 0);
    Route* kept = connectParts(*shown.b, 0, *shown.a, 0);
    shown.click(QPoint(165, 85));
    shown.click(QPoint(165, 135));
    LogCapture log;
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::deleteSelectedRoutes: #=2\n"));
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 0U);
    QCOMPARE(shown.c->findField(0U)->inRouteCount(true, false), 0U);
    QCOMPARE(shown.canvas.lines().size(), 1);
    QVERIFY(shown.canvas.lines().first()->isViewForRoute(kept));
    // The selection is walked again next time, and finds nothing.
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(log.take().contains("3 QorGraphView::deleteSelectedRoutes: #=2\n"), true);
    QCOMPARE(shown.canvas.lines().size(), 1);
}

void tst_QorGraphViewContent::deletionIsAskedFor()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsDeleteRoute);
    pressLine(shown);
    shown.canvas.takeAddCalls();
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(wants.count(), 1);
    QCOMPARE(wants.first().first().value<Orvane::Route*>(), shown.route);
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 1U);
    QCOMPARE(shown.canvas.takeAddCalls(), 1);
}

void tst_QorGraphViewContent::routeIsDeletedOnceInOneCall()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsDeleteRoute);
    // Two lines for one route: the first was dropped by a rebuild while it was selected.
    pressLine(shown);
    shown.canvas.updateEdges();
    pressLine(shown);
    LogCapture log;
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::deleteSelectedRoutes: #=2\n"));
    QCOMPARE(wants.count(), 1);
}

void tst_QorGraphViewContent::routeMadeAgainIsDeletedToo()
{
    GraphOnScreen shown;
    shown.addPair();
    pressLine(shown);
    shown.canvas.deleteSelectedRoutesEvent();
    connectParts(*shown.a, 2, *shown.b, 1);
    QCOMPARE(shown.canvas.lines().size(), 1);
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(shown.canvas.lines().size(), 0);
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 0U);
}

void tst_QorGraphViewContent::dyingNodeLeavesTheCanvas()
{
    GraphOnScreen shown;
    shown.addPair();
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(20, 180, 20));
    const Node* gone = shown.a.get();
    shown.a.reset();
    QVERIFY(!shown.canvas.viewOf(gone));
    const QImage image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(165, 85), QColor(Qt::black));
    QCOMPARE(image.pixelColor(90, 52), QColor(Qt::black));
    QCOMPARE(image.pixelColor(240, 102), QColor(120, 120, 120));
    QVERIFY(shown.canvas.lines().isEmpty());
}

void tst_QorGraphViewContent::boxesOfADeadNodeForgetIt()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphNodeView* removed = shown.boxA;
    shown.canvas.selectAll();
    shown.canvas.remove(shown.a.get());
    const QorGraphNodeView* again = shown.canvas.add(shown.a.get(), QPoint(50, 50));
    pressLine(shown);
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    QVERIFY(removed->node());
    shown.a.reset();
    QVERIFY(!removed->node());
    QVERIFY(!again->node());
    // Whatever still holds the box gets over it: menus, the route under way, the selection of lines.
    LogCapture log;
    for (const char* slot :
         {"onImportConnectedActivated", "onImportChildrenActivated", "onImportChildrenRecursivelyActivated"})
        QVERIFY(QMetaObject::invokeMethod(&shown.canvas, slot));
    QCOMPARE(only(log.take(), "importDirect").size(), 1); // for b
    shown.canvas.setMode(QorGraphView::CREATEROUTE_M);
    log.take();
    emit shown.boxB->inputSlotClicked(QStringLiteral("go"));
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    emit shown.boxA->inputSlotClicked(QStringLiteral("go"));
    QCOMPARE(log.take(), QByteArrayList());
    shown.canvas.deleteSelectedRoutesEvent();
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "onRemoveActivated"));
    QVERIFY(!shown.canvas.viewOf(shown.b.get()));
}

void tst_QorGraphViewContent::renamedNodeIsPaintedAnew()
{
    GraphOnScreen shown;
    shown.addPair();
    const QImage before = shown.canvas.grab(QRect(60, 50, 60, 20)).toImage();
    QTest::qWait(50);
    struct Watch : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            painted = painted || event->type() == QEvent::Paint;
            return false;
        }
        bool painted = false;
    } watch;
    shown.canvas.installEventFilter(&watch);
    Tiny::setName(shown.a.get(), "other");
    QTRY_VERIFY(watch.painted);
    QVERIFY(shown.canvas.grab(QRect(60, 50, 60, 20)).toImage() != before);
}

void tst_QorGraphViewContent::destroyedCanvasIsOutOfTheSubjects()
{
    {
        QorGraphView canvas;
        QVERIFY(!Route::_newObject.isUntouched());
        QVERIFY(!Route::_deleteObject.isUntouched());
        QVERIFY(!Node::_deleteObject.isUntouched());
        QVERIFY(!Node::_nameSpaceChanged.isUntouched());
    }
    QVERIFY(Route::_newObject.isUntouched());
    QVERIFY(Route::_deleteObject.isUntouched());
    QVERIFY(Node::_deleteObject.isUntouched());
    QVERIFY(Node::_nameSpaceChanged.isUntouched());
}

void tst_QorGraphViewContent::canvasMayDieInItsSignal()
{
    const auto a = routedNode("a");
    const auto b = routedNode("b");
    connectParts(*a, 2, *b, 1);
    auto* canvas = new TestGraph;
    canvas->resize(400, 300);
    canvas->show();
    QVERIFY(QTest::qWaitForWindowExposed(canvas));
    canvas->add(a.get(), QPoint(50, 50));
    canvas->add(b.get(), QPoint(200, 100));
    canvas->setManageRoutes(false);
    QTest::mouseClick(canvas, Qt::LeftButton, {}, QPoint(165, 85));
    const QPointer<TestGraph> living(canvas);
    connect(canvas, &QorGraphView::wantsDeleteRoute, this, [canvas] { delete canvas; });
    canvas->deleteSelectedRoutesEvent();
    QVERIFY(!living);
}

void tst_QorGraphViewContent::signalsHaveTheirTypes()
{
    const QMetaObject& meta = QorGraphView::staticMetaObject;
    QVERIFY(meta.indexOfSignal("nodeSelected(Orvane::Node*)") >= 0);
    QVERIFY(meta.indexOfSignal("wantsCreateRoute(UInt64,uint,UInt64,uint)") >= 0);
    QVERIFY(meta.indexOfSignal("wantsDeleteRoute(Orvane::Route*)") >= 0);
    QVERIFY(meta.indexOfSlot("createRouteEvent(UInt64,uint,UInt64,uint)") >= 0);
    QVERIFY(QMetaType::type("UInt64") != QMetaType::UnknownType);
}

QTEST_MAIN(tst_QorGraphViewContent)
#include "tst_QorGraphViewContent.moc"
