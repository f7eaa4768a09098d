#include "GraphOnScreen.h"
#include <QtWidgets/QLabel>
#include <algorithm>
#include <climits>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorGraphViewInput : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void magnitudeIsTheDistanceOfPoints();
    void distanceOfAPointFromALine_data();
    void distanceOfAPointFromALine();
    void pointBeyondAnEndIsNoHit();
    void lineWithoutLengthIsNoHit();
    void footIsTruncatedTowardZero();
    void farPointsDoNotOverflow();
    void hitDistanceBelongsToAllCanvases();
    void lineIsHitUpToFivePixels();
    void hitDistanceOfZeroLeavesTheLineItself();

    void topmostBoxTakesTheHit();
    void leftPressTogglesALine();
    void otherPressOnALineDoesNothing();
    void pressTakesTheFirstOfCrossingLines();
    void pressPrefersTheLineAndHoverTheBox();
    void menuOfALineDeletesTheSelectedOnes();
    void menuOfALineIsGoneAfterwards();

    void pressOnABodySelectsAndMoves();
    void controlAddsToTheSelection();
    void pressOnASelectedBoxKeepsTheGroup();
    void groupMovesTogether();
    void moveNeedsTheLeftButton();
    void boxRemovedWhileItMovesIsMovedOn();
    void pressAndReleaseReachTheBox();
    void newRouteEndsADrag();

    void bandSelectsWhatItTouches();
    void bandIsWhiteWhileItIsDrawn();
    void bandRunsUnseenOnAnEmptyCanvas();
    void bandDeselectsOnPress();

    void middleButtonPans_data();
    void middleButtonPans();
    void panNeedsTheMiddleButton();
    void rightPressOnABoxOpensItsMenu();
    void rightPressBesidesOpensTheCanvasMenu();
    void canvasMenuWorks();
    void otherButtonsDoNothing();
    void pressesInOtherModesDoNothing();
    void pressesAreAccepted();

    void hoverGoesFromBoxToBox();
    void hoverTakesTheTopmostBox();
    void labelNamesTheLine();
    void labelKeepsItsSizeWhileItShows();
    void labelLeavesWithTheLine();
    void labelOfAFieldThatIsGoneIsShort();
    void labelTakesPercentSignsAsTheyAre();
    void labelShowsMarkupAsItIs();

    void wheelZoomsByTenths();
    void wheelZoomsAboutTheOrigin();
    void wheelTakesTheStrongerDirection();
    void wheelStopsAtATenth();

    void keysAreTraced();
    void allKeysButDeleteAreIgnored_data();
    void allKeysButDeleteAreIgnored();
    void keyAAddsFromTheLowestBoxOn();
    void deleteKeyDeletesSelectedLines();
    void deleteKeyWithoutLinesIsIgnored();
    void deleteKeyAsksTheHost();

    void selectTellsOnce();
    void deselectAllKeepsLines();
    void typesAreToggledOneByOne();
    void typesOfAnEmptyCanvasCanBeSet();

    void routeIsDrawnByTwoMenus();
    void routeEndsAnywhereOnABox();
    void routeIsAbandonedOnEmptyCanvas();
    void dismissedMenuKeepsTheRouteUntilTheRelease();
    void routeIsAskedForByTwoMenus();
    void controlKeepsTheSelectionWhenARouteStarts();
    void inputMenuAloneMakesNoRoute();
    void fieldMenuCanBeRead();
    void boxMayLeaveWhileItsMenuIsOpen();
    void nodeMayDieWhileItsMenuIsOpen();
    void canvasMayDieWhileAMenuIsOpen_data();
    void canvasMayDieWhileAMenuIsOpen();
    void canvasMayDieWhenANodeIsSelected();
    void canvasMayDieInTheSignalsOfABox_data();
    void canvasMayDieInTheSignalsOfABox();
};

namespace {

/// A point in the body, the input strip and the output strip of the pair's boxes, and on its line.
const QPoint bodyA(90, 54);
const QPoint bodyB(240, 104);
const QPoint inputB(202, 115);
const QPoint outputA(128, 55);
const QPoint onLine(165, 85);
const QPoint nowhere(30, 220);

QLabel* labelOf(const TestGraph& canvas)
{
    return canvas.findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
}

/// Sends a turn of the wheel, in eighths of a degree, and tells whether it was accepted.
bool turnWheel(QWidget& widget, QPoint angle, QPoint at = nowhere)
{
    QWheelEvent event(at, widget.mapToGlobal(at), QPoint(), angle, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    event.ignore();
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

bool sendKey(QWidget& widget, int key)
{
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

/// Notes that a widget was painted by itself.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget& watched)
    {
        QTest::qWait(30);
        watched.installEventFilter(this);
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        _painted = _painted || event->type() == QEvent::Paint;
        return false;
    }
    bool isPainted()
    {
        QTest::qWait(30);
        return std::exchange(_painted, false);
    }

private:
    bool _painted = false;
};

} // namespace

void tst_QorGraphViewInput::cleanup()
{
    QorGraphView::setRouteHitDistance(5.0F);
}

void tst_QorGraphViewInput::magnitudeIsTheDistanceOfPoints()
{
    QCOMPARE(QorGraphView::magnitude(QPoint(1, 2), QPoint(4, 6)), 5.0F);
    QCOMPARE(QorGraphView::magnitude(QPoint(4, 6), QPoint(1, 2)), 5.0F);
    QCOMPARE(QorGraphView::magnitude(QPoint(7, 7), QPoint(7, 7)), 0.0F);
    QCOMPARE(QorGraphView::magnitude(QPoint(0, 0), QPoint(1, 1)), std::sqrt(2.0F));
}

void tst_QorGraphViewInput::distanceOfAPointFromALine_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("end");
    QTest::addColumn<float>("expected");
    QTest::newRow("above") << QPoint(50, -5) << QPoint(100, 0) << 5.0F;
    QTest::newRow("on it") << QPoint(50, 0) << QPoint(100, 0) << 0.0F;
    QTest::newRow("at the start") << QPoint(0, 3) << QPoint(100, 0) << 3.0F;
    QTest::newRow("at the end") << QPoint(100, 4) << QPoint(100, 0) << 4.0F;
    QTest::newRow("upright") << QPoint(7, 30) << QPoint(0, 90) << 7.0F;
    // The foot of (10, 0) on the diagonal is (5, 5); that of (9, 0) is (4.5, 4.5), taken as (4, 4).
    QTest::newRow("slanted") << QPoint(10, 0) << QPoint(100, 100) << std::sqrt(50.0F);
    QTest::newRow("truncated") << QPoint(9, 0) << QPoint(100, 100) << std::sqrt(41.0F);
}

void tst_QorGraphViewInput::distanceOfAPointFromALine()
{
    QFETCH(QPoint, point);
    QFETCH(QPoint, end);
    QFETCH(float, expected);
    float distance = -1.0F;
    QVERIFY(QorGraphView::distancePointLine(point, QPoint(0, 0), end, distance));
    QCOMPARE(distance, expected);
}

void tst_QorGraphViewInput::pointBeyondAnEndIsNoHit()
{
    float distance = -1.0F;
    QVERIFY(!QorGraphView::distancePointLine(QPoint(101, 0), QPoint(0, 0), QPoint(100, 0), distance));
    QVERIFY(!QorGraphView::distancePointLine(QPoint(-1, 0), QPoint(0, 0), QPoint(100, 0), distance));
    QCOMPARE(distance, -1.0F);
}

void tst_QorGraphViewInput::lineWithoutLengthIsNoHit()
{
    float distance = -1.0F;
    QVERIFY(!QorGraphView::distancePointLine(QPoint(3, 3), QPoint(3, 3), QPoint(3, 3), distance));
    QCOMPARE(distance, -1.0F);
}

void tst_QorGraphViewInput::footIsTruncatedTowardZero()
{
    float distance = -1.0F;
    // The foot (-4.5, -4.5) is taken as (-4, -4), nearer to zero and further from (-9, 0) than (-5, -5).
    QVERIFY(QorGraphView::distancePointLine(QPoint(-9, 0), QPoint(0, 0), QPoint(-100, -100), distance));
    QCOMPARE(distance, std::sqrt(41.0F));
    QVERIFY(QorGraphView::distancePointLine(QPoint(0, -9), QPoint(-100, -100), QPoint(0, 0), distance));
    QCOMPARE(distance, std::sqrt(41.0F));
}

void tst_QorGraphViewInput::farPointsDoNotOverflow()
{
    float distance = -1.0F;
    QVERIFY(QorGraphView::distancePointLine(QPoint(0, 100), QPoint(-2000000000, 0), QPoint(2000000000, 0),
                                            distance));
    QVERIFY(distance >= 100.0F);
    QVERIFY(QorGraphView::distancePointLine(QPoint(INT_MAX, 0), QPoint(INT_MIN, INT_MIN),
                                            QPoint(INT_MAX, INT_MAX), distance));
    QVERIFY(distance > 1e9F);
}

void tst_QorGraphViewInput::hitDistanceBelongsToAllCanvases()
{
    QCOMPARE(QorGraphView::routeHitDistance(), 5.0F);
    QorGraphView::setRouteHitDistance(-7.5F);
    QCOMPARE(QorGraphView::routeHitDistance(), -7.5F);
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* line = shown.canvas.lines().first();
    shown.click(onLine);
    QVERIFY(!line->isSelected());
}

void tst_QorGraphViewInput::lineIsHitUpToFivePixels()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(QPointF(200, 50)); // the line lies at y = 60, from 130 to 200
    const QorGraphEdge* line = shown.canvas.lines().first();
    shown.click(QPoint(165, 66));
    QVERIFY(!line->isSelected());
    shown.click(QPoint(165, 65));
    QVERIFY(line->isSelected());
    shown.click(QPoint(165, 55));
    QVERIFY(!line->isSelected());
    shown.click(QPoint(165, 54));
    QVERIFY(!line->isSelected());
    // Its ends belong to it, and nothing beyond them.
    shown.click(QPoint(200, 63));
    QVERIFY(line->isSelected());
    shown.click(QPoint(130, 57));
    QVERIFY(!line->isSelected());
    shown.boxA->resize(70, 4); // now the line begins at (120, 52), and there is room below the box
    shown.click(QPoint(119, 56));
    QVERIFY(!line->isSelected());
    shown.click(QPoint(120, 56));
    QVERIFY(line->isSelected());
}

void tst_QorGraphViewInput::hitDistanceOfZeroLeavesTheLineItself()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(QPointF(200, 50));
    const QorGraphEdge* line = shown.canvas.lines().first();
    QorGraphView::setRouteHitDistance(0.0F);
    shown.click(QPoint(165, 61));
    QVERIFY(!line->isSelected());
    shown.click(QPoint(165, 60));
    QVERIFY(line->isSelected());
}

void tst_QorGraphViewInput::topmostBoxTakesTheHit()
{
    GraphOnScreen shown;
    auto* lower = shown.canvas.add(shown.a.get(), QPoint(50, 50));
    auto* upper = shown.canvas.add(shown.b.get(), QPoint(60, 55));
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(80, 60)), upper);
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(52, 52)), lower);
    QCOMPARE(shown.canvas.nodeViewAt(QPoint(50, 70)), lower); // edges count
    QVERIFY(!shown.canvas.nodeViewAt(QPoint(49, 52)));
    shown.click(QPoint(80, 60));
    QCOMPARE(shown.selectedNames(), QByteArrayList{"b"});
}

void tst_QorGraphViewInput::leftPressTogglesALine()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.a.get());
    const QorGraphEdge* line = shown.canvas.lines().first();
    shown.move(onLine);
    PaintWatch watch(shown.canvas);
    shown.press(onLine);
    QVERIFY(line->isSelected());
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    // The picture waits for the next move; the selection of boxes is another matter.
    QVERIFY(!watch.isPainted());
    QCOMPARE(shown.selectedNames(), QByteArrayList{"a"});
    shown.release(onLine);
    shown.move(onLine + QPoint(1, 1));
    QVERIFY(watch.isPainted());
    QCOMPARE(shown.canvas.pixel(165, 85), QColor(230, 10, 10));
    shown.click(onLine);
    QVERIFY(!line->isSelected());
    LogCapture log;
    shown.canvas.deleteSelectedRoutesEvent();
    QCOMPARE(log.take().first(), QByteArray("3 QorGraphView::deleteSelectedRoutes: #=0\n"));
}

void tst_QorGraphViewInput::otherPressOnALineDoesNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* line = shown.canvas.lines().first();
    for (auto button : {Qt::MiddleButton, Qt::BackButton}) {
        shown.press(onLine, button);
        QVERIFY(!line->isSelected());
        QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
        QVERIFY(!openMenu());
        shown.release(onLine, button);
    }
}

void tst_QorGraphViewInput::pressTakesTheFirstOfCrossingLines()
{
    GraphOnScreen shown;
    shown.addPair();
    // A second route between the same boxes lies over the first.
    connectParts(*shown.a, 0, *shown.b, 0);
    const QList<QorGraphEdge*> lines = shown.canvas.lines();
    QCOMPARE(lines.size(), 2);
    shown.click(onLine);
    QVERIFY(lines.at(0)->isSelected());
    QVERIFY(!lines.at(1)->isSelected());
}

void tst_QorGraphViewInput::pressPrefersTheLineAndHoverTheBox()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(QPointF(300, 50));
    shown.canvas.add(shown.c.get(), QPoint(180, 50));
    const QorGraphEdge* line = shown.canvas.lines().first();
    const QPoint crossing(220, 60);
    shown.move(crossing);
    QVERIFY(labelOf(shown.canvas)->isHidden());
    QCOMPARE(shown.canvas.pixel(220, 53), QColor(QColor(120, 120, 120).lighter(130).rgb()));
    shown.click(crossing);
    QVERIFY(line->isSelected());
    QCOMPARE(shown.selectedNames(), QByteArrayList());
}

void tst_QorGraphViewInput::menuOfALineDeletesTheSelectedOnes()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(200, 200));
    Route* under = connectParts(*shown.a, 0, *shown.c, 0);
    shown.click(onLine);
    const QPoint onOther(165, 135);
    shown.press(onOther, Qt::RightButton);
    QMenu* menu = openMenu();
    QVERIFY(menu);
    QCOMPARE(entriesOf(menu), QStringList{QStringLiteral("Delete route")});
    QVERIFY((menu->pos() - shown.canvas.mapToGlobal(onOther)).manhattanLength() <= 4);
    GraphOnScreen::chooseByMouse("Delete route");
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 0U);
    QCOMPARE(*shown.c->findField(0U)->_inSlot->begin(), under);
    QCOMPARE(shown.canvas.lines().size(), 1);
}

void tst_QorGraphViewInput::menuOfALineIsGoneAfterwards()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* line = shown.canvas.lines().first();
    const int before = shown.canvas.findChildren<QMenu*>().size();
    for (int i = 0; i < 5; ++i) {
        shown.press(onLine, Qt::RightButton);
        QVERIFY(openMenu());
        openMenu()->close();
        shown.release(onLine, Qt::RightButton);
    }
    QTRY_COMPARE(shown.canvas.findChildren<QMenu*>().size(), before);
    QVERIFY(!line->isSelected());
}

void tst_QorGraphViewInput::pressOnABodySelectsAndMoves()
{
    GraphOnScreen shown;
    shown.addPair();
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    LogCapture log;
    shown.press(bodyA);
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorGraphNodeView::mousePressEvent: a, e->pos()=40,4\n",
                             "3 QorGraphNodeView::mousePressEvent: body hit.\n", "3 selected a\n"}));
    QCOMPARE(shown.canvas.mode(), QorGraphView::MOVENODE_M);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<Orvane::Node*>(), shown.a.get());
    shown.move(bodyA + QPoint(10, -7));
    QCOMPARE(shown.boxA->pos(), QPointF(60, 43));
    shown.move(bodyA + QPoint(15, 30));
    QCOMPARE(shown.boxA->pos(), QPointF(65, 80));
    QCOMPARE(shown.boxB->pos(), QPointF(200, 100));
    shown.release(bodyA + QPoint(15, 30));
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    shown.move(nowhere);
    QCOMPARE(shown.boxA->pos(), QPointF(65, 80));
    QCOMPARE(shown.canvas.pixel(105, 82), QColor(147, 147, 0));
}

void tst_QorGraphViewInput::controlAddsToTheSelection()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.click(bodyA);
    shown.click(bodyB, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b"}));
    // It never takes away.
    shown.click(bodyB, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b"}));
    shown.canvas.add(shown.c.get(), QPoint(50, 200));
    shown.click(QPoint(90, 205));
    QCOMPARE(shown.selectedNames(), QByteArrayList{"c"});
}

void tst_QorGraphViewInput::pressOnASelectedBoxKeepsTheGroup()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.selectAll();
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    shown.click(bodyA);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b"}));
    QCOMPARE(selected.count(), 0);
}

void tst_QorGraphViewInput::groupMovesTogether()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(50, 200));
    shown.canvas.select(shown.a.get());
    shown.canvas.select(shown.b.get());
    shown.press(bodyA);
    shown.move(bodyA + QPoint(11, 5));
    shown.move(bodyA + QPoint(12, 6));
    shown.release(bodyA + QPoint(12, 6));
    QCOMPARE(shown.boxA->pos(), QPointF(62, 56));
    QCOMPARE(shown.boxB->pos(), QPointF(212, 106));
    QCOMPARE(shown.canvas.viewOf(shown.c.get())->pos(), QPointF(50, 200));
}

void tst_QorGraphViewInput::moveNeedsTheLeftButton()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.a.get());
    shown.canvas.setMode(QorGraphView::MOVENODE_M);
    shown.move(bodyA);
    shown.move(bodyA + QPoint(20, 20));
    QCOMPARE(shown.boxA->pos(), QPointF(50, 50));
    // And the release of another button does not end the mode.
    shown.click(nowhere, Qt::RightButton);
    QCOMPARE(shown.canvas.mode(), QorGraphView::MOVENODE_M);
}

void tst_QorGraphViewInput::boxRemovedWhileItMovesIsMovedOn()
{
    GraphOnScreen shown;
    shown.addPair();
    delete shown.route; // or the rebuild would end the drag
    shown.press(bodyA);
    shown.canvas.remove(shown.a.get());
    shown.move(bodyA + QPoint(3, 4));
    QCOMPARE(shown.boxA->pos(), QPointF(53, 54));
    shown.a.reset();
    shown.move(bodyA + QPoint(5, 4));
    shown.release(bodyA + QPoint(5, 4));
    QCOMPARE(shown.boxA->pos(), QPointF(55, 54));
}

void tst_QorGraphViewInput::pressAndReleaseReachTheBox()
{
    GraphOnScreen shown;
    shown.addPair();
    QSignalSpy pressed(shown.boxA, &QorGraphNodeView::pressed);
    QSignalSpy released(shown.boxA, &QorGraphNodeView::released);
    QSignalSpy inputReleased(shown.boxA, &QorGraphNodeView::inputAreaReleased);
    QSignalSpy outputReleased(shown.boxB, &QorGraphNodeView::outputAreaReleased);
    shown.press(bodyA);
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(released.count(), 0);
    shown.release(bodyA);
    QCOMPARE(released.count(), 1);
    // A release belongs to the box that lies under it, whatever was pressed.
    shown.press(nowhere, Qt::BackButton);
    shown.release(QPoint(52, 55), Qt::BackButton);
    QCOMPARE(inputReleased.count(), 1);
    shown.press(nowhere, Qt::BackButton);
    shown.release(QPoint(278, 105), Qt::BackButton);
    QCOMPARE(outputReleased.count(), 1);
    // But not at the end of a band.
    shown.press(nowhere);
    shown.release(bodyA);
    QCOMPARE(released.count(), 1);
}

void tst_QorGraphViewInput::newRouteEndsADrag()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.press(bodyA);
    shown.move(bodyA + QPoint(4, 4));
    connectParts(*shown.a, 0, *shown.b, 0);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    shown.move(bodyA + QPoint(30, 30));
    QCOMPARE(shown.boxA->pos(), QPointF(54, 54));
    shown.release(bodyA + QPoint(30, 30));
}

void tst_QorGraphViewInput::bandSelectsWhatItTouches()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(50, 200));
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    shown.press(QPoint(10, 10));
    QCOMPARE(shown.canvas.mode(), QorGraphView::RECTSELECT_M);
    shown.move(QPoint(49, 49));
    QCOMPARE(shown.selectedNames(), QByteArrayList());
    shown.move(QPoint(50, 50));
    QCOMPARE(shown.selectedNames(), QByteArrayList{"a"});
    shown.move(QPoint(220, 240));
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b", "c"}));
    shown.move(QPoint(60, 240));
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "c"}));
    shown.release(QPoint(60, 240));
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "c"}));
    QCOMPARE(selected.count(), 0);
    // The other way round it takes nothing that a rectangle does not meet.
    shown.press(QPoint(395, 250));
    shown.move(QPoint(270, 105));
    QCOMPARE(shown.selectedNames(), QByteArrayList{"b"});
    shown.release(QPoint(270, 105));
}

void tst_QorGraphViewInput::bandIsWhiteWhileItIsDrawn()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.press(QPoint(20, 130));
    shown.move(QPoint(120, 230));
    QImage image = shown.canvas.grab().toImage();
    // A frame of one pixel around the points, between which antialiasing spreads it.
    const auto lightest = [&image](int x, int y) {
        return std::max(image.pixelColor(x, y).red(), image.pixelColor(x - 1, y).red());
    };
    QVERIFY(lightest(20, 180) >= 120);
    QCOMPARE(image.pixelColor(60, 180), QColor(Qt::black));
    QVERIFY(std::max(image.pixelColor(60, 130).red(), image.pixelColor(60, 129).red()) >= 120);
    shown.release(QPoint(120, 230));
    image = shown.canvas.grab().toImage();
    QCOMPARE(lightest(20, 180), 0);
}

void tst_QorGraphViewInput::bandRunsUnseenOnAnEmptyCanvas()
{
    GraphOnScreen shown;
    const QImage before = shown.canvas.grab().toImage();
    shown.press(QPoint(20, 130));
    shown.move(QPoint(120, 230));
    QCOMPARE(shown.canvas.mode(), QorGraphView::RECTSELECT_M);
    QCOMPARE(shown.canvas.grab().toImage(), before);
    shown.release(QPoint(120, 230));
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
}

void tst_QorGraphViewInput::bandDeselectsOnPress()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.selectAll();
    shown.press(nowhere, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shown.selectedNames(), QByteArrayList());
    shown.release(nowhere);
}

void tst_QorGraphViewInput::middleButtonPans_data()
{
    QTest::addColumn<QPoint>("at");
    QTest::newRow("empty canvas") << nowhere;
    QTest::newRow("body") << bodyA;
    QTest::newRow("strip") << QPoint(52, 55);
}

void tst_QorGraphViewInput::middleButtonPans()
{
    QFETCH(QPoint, at);
    GraphOnScreen shown;
    shown.addPair();
    shown.move(at);
    LogCapture log(osg::LOG_LOG);
    shown.press(at, Qt::MiddleButton);
    QCOMPARE(log.take(), QByteArrayList{"0 QorGraphView::processDefaultPressEvent: PANNING canvas.\n"});
    QCOMPARE(shown.canvas.mode(), QorGraphView::PANCANVAS_M);
    shown.move(at + QPoint(10, -20));
    shown.move(at + QPoint(30, -5));
    QCOMPARE(shown.canvas.translation(), QPointF(230, 145));
    QCOMPARE(shown.boxA->pos(), QPointF(80, 45));
    shown.release(at + QPoint(30, -5), Qt::MiddleButton);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.selectedNames(), QByteArrayList());
}

void tst_QorGraphViewInput::panNeedsTheMiddleButton()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setMode(QorGraphView::PANCANVAS_M);
    shown.move(nowhere);
    shown.move(nowhere + QPoint(20, 20));
    QCOMPARE(shown.canvas.translation(), QPointF(200, 150));
    shown.click(nowhere + QPoint(20, 20));
    QCOMPARE(shown.canvas.mode(), QorGraphView::PANCANVAS_M);
}

void tst_QorGraphViewInput::rightPressOnABoxOpensItsMenu()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.b.get());
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    shown.press(bodyA, Qt::RightButton);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b"}));
    QCOMPARE(selected.count(), 1);
    QVERIFY(openMenu());
    QCOMPARE(entriesOf(openMenu()).first(), QStringLiteral("Import connected"));
    QVERIFY((openMenu()->pos() - shown.canvas.mapToGlobal(bodyA)).manhattanLength() <= 4);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
}

void tst_QorGraphViewInput::rightPressBesidesOpensTheCanvasMenu()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.b.get());
    shown.press(nowhere, Qt::RightButton);
    QVERIFY(openMenu());
    QCOMPARE(entriesOf(openMenu()).first(), QStringLiteral("Remove all views"));
    QVERIFY((openMenu()->pos() - shown.canvas.mapToGlobal(nowhere)).manhattanLength() <= 4);
    QCOMPARE(shown.selectedNames(), QByteArrayList{"b"});
}

void tst_QorGraphViewInput::canvasMenuWorks()
{
    GraphOnScreen shown;
    shown.addPair();
    const auto chooseOn = [&](const char* entry) {
        shown.press(nowhere, Qt::RightButton);
        GraphOnScreen::chooseByMouse(entry);
        shown.release(nowhere, Qt::RightButton);
    };
    chooseOn("Show node type");
    QVERIFY(shown.boxA->isNodeTypeVisible());
    QVERIFY(shown.boxB->isNodeTypeVisible());
    chooseOn("Show node type");
    QVERIFY(!shown.boxA->isNodeTypeVisible());
    shown.canvas.takeAddCalls();
    chooseOn("Update edges");
    QCOMPARE(shown.canvas.takeAddCalls(), 1);
    chooseOn("Remove all views");
    QVERIFY(!shown.canvas.viewOf(shown.a.get()));
    QVERIFY(!shown.canvas.viewOf(shown.b.get()));
}

void tst_QorGraphViewInput::otherButtonsDoNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.b.get());
    for (const QPoint& at : {bodyA, nowhere}) {
        shown.press(at, Qt::BackButton);
        QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
        QVERIFY(!openMenu());
        shown.release(at, Qt::BackButton);
    }
    QCOMPARE(shown.selectedNames(), QByteArrayList{"b"});
}

void tst_QorGraphViewInput::pressesInOtherModesDoNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* line = shown.canvas.lines().first();
    for (auto mode : {QorGraphView::MOVENODE_M, QorGraphView::RECTSELECT_M, QorGraphView::PANCANVAS_M}) {
        shown.canvas.setMode(mode);
        for (auto button : {Qt::RightButton, Qt::BackButton}) {
            for (const QPoint& at : {bodyA, onLine, nowhere, inputB}) {
                shown.press(at, button);
                QVERIFY(!openMenu());
                QCOMPARE(shown.canvas.mode(), mode);
                shown.release(at, button);
            }
        }
        QCOMPARE(shown.canvas.mode(), mode);
        shown.canvas.setMode(QorGraphView::DEFAULT_M);
    }
    QVERIFY(!line->isSelected());
    QCOMPARE(shown.selectedNames(), QByteArrayList());
}

void tst_QorGraphViewInput::pressesAreAccepted()
{
    GraphOnScreen shown;
    shown.addPair();
    for (const QPoint& at : {bodyA, onLine, nowhere}) {
        for (auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, shown.canvas.mapToGlobal(at), Qt::BackButton, Qt::BackButton, {});
            event.ignore();
            QCoreApplication::sendEvent(&shown.canvas, &event);
            QVERIFY(event.isAccepted());
        }
    }
}

void tst_QorGraphViewInput::hoverGoesFromBoxToBox()
{
    GraphOnScreen shown;
    shown.addPair();
    const QColor plain(120, 120, 120);
    const QColor lit(plain.lighter(130).rgb());
    const auto colors = [&] {
        const QImage image = shown.canvas.grab().toImage();
        return QList<QColor>{image.pixelColor(90, 52), image.pixelColor(240, 102)};
    };
    shown.move(bodyA);
    QCOMPARE(colors(), QList<QColor>({lit, plain}));
    shown.move(bodyB);
    QCOMPARE(colors(), QList<QColor>({plain, lit}));
    shown.move(nowhere);
    QCOMPARE(colors(), QList<QColor>({plain, plain}));
    // A box that leaves the canvas keeps what it was, and comes back as new.
    shown.move(bodyA);
    shown.canvas.remove(shown.a.get());
    shown.move(nowhere);
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    QCOMPARE(colors(), QList<QColor>({plain, plain}));
    shown.move(bodyB);
    QCOMPARE(colors(), QList<QColor>({plain, lit}));
}

void tst_QorGraphViewInput::hoverTakesTheTopmostBox()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(60, 55));
    const QColor plain(120, 120, 120);
    const QColor lit(plain.lighter(130).rgb());
    shown.move(QPoint(80, 60));
    QCOMPARE(shown.canvas.pixel(70, 52), plain);
    QCOMPARE(shown.canvas.pixel(70, 57), lit);
    shown.move(QPoint(80, 52));
    QCOMPARE(shown.canvas.pixel(70, 52), lit);
    QCOMPARE(shown.canvas.pixel(70, 57), plain);
}

void tst_QorGraphViewInput::labelNamesTheLine()
{
    GraphOnScreen shown;
    shown.addPair();
    const QLabel* label = labelOf(shown.canvas);
    QFont large = shown.canvas.font();
    large.setPointSize(20);
    shown.canvas.setFont(large); // the place follows the widget's font
    shown.move(onLine);
    QVERIFY(label->isVisible());
    QCOMPARE(label->text(), QStringLiteral("a.gone  -  b.go"));
    const QFontMetrics metrics(shown.canvas.font());
    QCOMPARE(label->pos(), QPoint(165 - metrics.horizontalAdvance(label->text()) / 2,
                                  85 + static_cast<int>(metrics.height() * -1.2)));
    shown.move(onLine + QPoint(2, 1));
    QCOMPARE(label->pos(), QPoint(167 - metrics.horizontalAdvance(label->text()) / 2,
                                  86 + static_cast<int>(metrics.height() * -1.2)));
}

void tst_QorGraphViewInput::labelKeepsItsSizeWhileItShows()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(200, 200));
    connectParts(*shown.a, 0, *shown.c, 0);
    const QLabel* label = labelOf(shown.canvas);
    shown.move(onLine);
    const QSize size = label->size();
    QCOMPARE(size, label->sizeHint());
    Tiny::setName(shown.c.get(), "a much longer name than before");
    shown.move(QPoint(165, 135));
    QVERIFY(label->text().contains(QStringLiteral("longer")));
    QCOMPARE(label->size(), size);
    QVERIFY(label->sizeHint() != size);
    shown.move(nowhere);
    shown.move(QPoint(165, 135));
    QCOMPARE(label->size(), label->sizeHint());
}

void tst_QorGraphViewInput::labelLeavesWithTheLine()
{
    GraphOnScreen shown;
    shown.addPair();
    const QLabel* label = labelOf(shown.canvas);
    shown.move(onLine);
    QVERIFY(label->isVisible());
    shown.move(bodyA);
    QVERIFY(!label->isVisible());
    shown.move(onLine);
    QVERIFY(label->isVisible());
    shown.move(nowhere);
    QVERIFY(!label->isVisible());
}

void tst_QorGraphViewInput::labelOfAFieldThatIsGoneIsShort()
{
    GraphOnScreen shown;
    shown.addPair();
    delete shown.route;
    // No number leads to a field without a description.
    Field* odd = Tiny::addField(shown.a.get(), part("odd", SFFLOAT_DT));
    connectParts(*shown.a, 7, *shown.b, 1);
    odd->_desc = nullptr;
    QCOMPARE(shown.canvas.lines().first()->outSlotId(), UINT_MAX);
    shown.move(onLine);
    QCOMPARE(labelOf(shown.canvas)->text(), QStringLiteral("a.  -  b.go"));
}

void tst_QorGraphViewInput::labelTakesPercentSignsAsTheyAre()
{
    GraphOnScreen shown;
    shown.addPair();
    Tiny::setName(shown.a.get(), "%2%3");
    shown.move(onLine);
    QCOMPARE(labelOf(shown.canvas)->text(), QStringLiteral("%2%3.gone  -  b.go"));
}

void tst_QorGraphViewInput::labelShowsMarkupAsItIs()
{
    GraphOnScreen shown;
    shown.addPair();
    Tiny::setName(shown.a.get(), "<b>a</b>");
    shown.move(onLine);
    const QLabel* label = labelOf(shown.canvas);
    QVERIFY(label->isVisible());
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QVERIFY(label->width() > label->fontMetrics().horizontalAdvance(label->text()));
}

void tst_QorGraphViewInput::wheelZoomsByTenths()
{
    GraphOnScreen shown;
    shown.addPair();
    QVERIFY(turnWheel(shown.canvas, QPoint(0, 120)));
    QCOMPARE(shown.canvas.scale(), 1.1);
    QVERIFY(turnWheel(shown.canvas, QPoint(0, -240)));
    QCOMPARE(shown.canvas.scale(), 0.9);
    QVERIFY(turnWheel(shown.canvas, QPoint(0, 30)));
    QCOMPARE(shown.canvas.scale(), 0.925);
    QVERIFY(turnWheel(shown.canvas, QPoint(0, 0)));
    QCOMPARE(shown.canvas.scale(), 0.925);
}

void tst_QorGraphViewInput::wheelZoomsAboutTheOrigin()
{
    GraphOnScreen shown;
    shown.addPair();
    for (int i = 0; i < 10; ++i)
        turnWheel(shown.canvas, QPoint(0, 120), bodyA);
    QVERIFY(qAbs(shown.canvas.scale() - 2.0) < 1e-9);
    QCOMPARE(shown.canvas.translation(), QPointF(200, 150));
    QVERIFY(QLineF(shown.boxA->pos(), QPointF(-100, -50)).length() < 1e-9);
}

void tst_QorGraphViewInput::wheelTakesTheStrongerDirection()
{
    GraphOnScreen shown;
    turnWheel(shown.canvas, QPoint(120, 0));
    QCOMPARE(shown.canvas.scale(), 1.1);
    turnWheel(shown.canvas, QPoint(-240, 120));
    QCOMPARE(shown.canvas.scale(), 0.9);
    turnWheel(shown.canvas, QPoint(-120, 240));
    QCOMPARE(shown.canvas.scale(), 1.1);
}

void tst_QorGraphViewInput::wheelStopsAtATenth()
{
    GraphOnScreen shown;
    shown.addPair();
    QVERIFY(turnWheel(shown.canvas, QPoint(0, -1200)));
    QCOMPARE(shown.canvas.scale(), 0.1);
    const QRectF rect = shown.boxA->rect();
    PaintWatch watch(shown.canvas);
    QVERIFY(turnWheel(shown.canvas, QPoint(0, -120)));
    QCOMPARE(shown.canvas.scale(), 0.1);
    QCOMPARE(shown.boxA->rect(), rect);
    QVERIFY(watch.isPainted());
}

void tst_QorGraphViewInput::keysAreTraced()
{
    GraphOnScreen shown;
    LogCapture log;
    QTest::keyClick(&shown.canvas, Qt::Key_F5);
    QCOMPARE(log.take(),
             QByteArrayList{"3 QorGraphView::keyPressEvent: key=" + QByteArray::number(Qt::Key_F5) + ".\n"});
}

void tst_QorGraphViewInput::allKeysButDeleteAreIgnored_data()
{
    QTest::addColumn<int>("key");
    for (int key :
         {Qt::Key_A, Qt::Key_Space, Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_Left, Qt::Key_Backspace})
        QTest::addRow("%x", key) << key;
}

void tst_QorGraphViewInput::allKeysButDeleteAreIgnored()
{
    QFETCH(int, key);
    GraphOnScreen shown;
    shown.addPair();
    const QPointF pos = shown.boxA->pos();
    QVERIFY(!sendKey(shown.canvas, key));
    QCOMPARE(shown.boxA->pos(), pos);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.selectedNames().size(), key == Qt::Key_A ? 2 : 0);
}

void tst_QorGraphViewInput::keyAAddsFromTheLowestBoxOn()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(50, 200));
    shown.canvas.select(shown.b.get());
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    PaintWatch watch(shown.canvas);
    QTest::keyClick(&shown.canvas, Qt::Key_A, Qt::ShiftModifier);
    QVERIFY(watch.isPainted());
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b", "c"}));
    QCOMPARE(selected.count(), 0);
    // The order of the selection is that in which its nodes are imported: b, then a, then c.
    const auto below = [](Node& parent, const char* name) {
        Node* child = Tiny::makeNode(routedType(), name);
        Tiny::link(&parent, "children", child);
        return child;
    };
    below(*shown.a, "below a");
    below(*shown.b, "below b");
    below(*shown.c, "below c");
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "onImportChildrenActivated"));
    QByteArrayList order;
    for (int i = 0; i < 3; ++i) {
        const Node* top = shown.canvas.nodeViewAt(QPoint(0, 0))->node();
        order << top->getIDStr().c_str();
        shown.canvas.remove(top);
    }
    QCOMPARE(order, QByteArrayList({"below c", "below a", "below b"}));
}

void tst_QorGraphViewInput::deleteKeyDeletesSelectedLines()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(200, 200));
    connectParts(*shown.a, 0, *shown.c, 0);
    connectParts(*shown.b, 0, *shown.a, 0);
    shown.click(onLine);
    shown.click(QPoint(165, 135));
    QVERIFY(sendKey(shown.canvas, Qt::Key_Delete));
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 0U);
    QCOMPARE(shown.c->findField(0U)->inRouteCount(true, false), 0U);
    QCOMPARE(shown.canvas.lines().size(), 1);
    // What is left is not selected.
    QVERIFY(!sendKey(shown.canvas, Qt::Key_Delete));
    QCOMPARE(shown.a->findField(0U)->inRouteCount(true, false), 1U);
}

void tst_QorGraphViewInput::deleteKeyWithoutLinesIsIgnored()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.selectAll();
    QVERIFY(!sendKey(shown.canvas, Qt::Key_Delete));
    QVERIFY(shown.canvas.viewOf(shown.a.get()));
    QVERIFY(shown.canvas.viewOf(shown.b.get()));
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 1U);
}

void tst_QorGraphViewInput::deleteKeyAsksTheHost()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    connect(&shown.canvas, &QorGraphView::wantsDeleteRoute, this, [](Orvane::Route* route) { delete route; });
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsDeleteRoute);
    shown.click(onLine);
    QTest::keyClick(&shown.canvas, Qt::Key_Delete);
    QCOMPARE(wants.count(), 1);
    QCOMPARE(shown.canvas.lines().size(), 0);
}

void tst_QorGraphViewInput::selectTellsOnce()
{
    GraphOnScreen shown;
    shown.addPair();
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    PaintWatch watch(shown.canvas);
    shown.canvas.select(shown.a.get());
    shown.canvas.select(shown.a.get());
    shown.canvas.select(shown.c.get());
    shown.canvas.select(nullptr);
    QCOMPARE(selected.count(), 1);
    QVERIFY(shown.boxA->isSelected());
    QVERIFY(!watch.isPainted());
}

void tst_QorGraphViewInput::deselectAllKeepsLines()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.selectAll();
    const QorGraphEdge* line = shown.canvas.lines().first();
    shown.click(onLine);
    PaintWatch watch(shown.canvas);
    shown.canvas.deselectAll();
    QVERIFY(watch.isPainted());
    QCOMPARE(shown.selectedNames(), QByteArrayList());
    QVERIFY(line->isSelected());
}

void tst_QorGraphViewInput::typesAreToggledOneByOne()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxA->setNodeTypeVisible(true);
    PaintWatch watch(shown.canvas);
    shown.canvas.toggleNodeTypeVisible();
    QVERIFY(watch.isPainted());
    QVERIFY(!shown.boxA->isNodeTypeVisible());
    QVERIFY(shown.boxB->isNodeTypeVisible());
}

void tst_QorGraphViewInput::typesOfAnEmptyCanvasCanBeSet()
{
    GraphOnScreen shown;
    PaintWatch watch(shown.canvas);
    shown.canvas.setNodeTypeVisible(true);
    QVERIFY(watch.isPainted());
    shown.addPair();
    QVERIFY(!shown.boxA->isNodeTypeVisible());
}

void tst_QorGraphViewInput::routeIsDrawnByTwoMenus()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.b.get());
    QSignalSpy pressed(shown.boxA, &QorGraphNodeView::outputAreaPressed);
    shown.chooseField(outputA, "value");
    QCOMPARE(pressed.count(), 1);
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    QCOMPARE(shown.selectedNames(), QByteArrayList{"a"});
    // The menu has taken the release; moves need no button.
    shown.move(QPoint(150, 250));
    const QImage image = shown.canvas.grab().toImage();
    QVERIFY(image.pixelColor(140, 155).red() > 200); // the line from (130, 60)
    QCOMPARE(image.pixelColor(240, 102).red() < 100, true);
    shown.chooseField(inputB, "value");
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.b->findField(0U)->inRouteCount(true, false), 1U);
    const Route* made = *shown.b->findField(0U)->_inSlot->begin();
    QCOMPARE(made->outSlot()->field(), shown.a->findField(0U));
    QCOMPARE(made->type(), Route::SCENE_RT);
    QCOMPARE(shown.canvas.lines().size(), 2);
}

void tst_QorGraphViewInput::routeEndsAnywhereOnABox()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.chooseField(outputA, "value");
    // In the body, with another button.
    whenMenuOpens(&shown.canvas, [] { GraphOnScreen::chooseByMouse("value"); });
    shown.press(bodyB, Qt::RightButton);
    QCOMPARE(shown.b->findField(0U)->inRouteCount(true, false), 1U);
}

void tst_QorGraphViewInput::routeIsAbandonedOnEmptyCanvas()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.chooseField(outputA, "value");
    shown.press(nowhere);
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    shown.release(nowhere);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.b->findField(0U)->inRouteCount(true, false), 0U);
    QCOMPARE(shown.canvas.lines().size(), 1);
}

void tst_QorGraphViewInput::dismissedMenuKeepsTheRouteUntilTheRelease()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.chooseField(outputA, "value");
    whenMenuOpens(&shown.canvas, [] { openMenu()->close(); });
    shown.press(bodyB);
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    shown.release(bodyB);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.b->findField(0U)->inRouteCount(true, false), 0U);
}

void tst_QorGraphViewInput::routeIsAskedForByTwoMenus()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setManageRoutes(false);
    QSignalSpy wants(&shown.canvas, &QorGraphView::wantsCreateRoute);
    shown.chooseField(outputA, "value");
    shown.chooseField(inputB, "go");
    QCOMPARE(wants.count(), 1);
    QCOMPARE(wants.first().at(0).value<UInt64>(), shown.a->ID());
    QCOMPARE(wants.first().at(1).toUInt(), 0U);
    QCOMPARE(wants.first().at(2).value<UInt64>(), shown.b->ID());
    QCOMPARE(wants.first().at(3).toUInt(), 1U);
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    QCOMPARE(shown.b->findField(1)->inRouteCount(true, false), 1U);
    // A host that makes the route at once ends the mode by it.
    connect(&shown.canvas, &QorGraphView::wantsCreateRoute, this,
            [](UInt64 from, unsigned int out, UInt64 to, unsigned int in) {
                Route::create(*Node::findNode(from)->findField(out)->_outSlot,
                              *Node::findNode(to)->findField(in)->_inSlot, Route::SCENE_RT);
            });
    shown.chooseField(inputB, "value");
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.canvas.lines().size(), 2);
}

void tst_QorGraphViewInput::controlKeepsTheSelectionWhenARouteStarts()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.select(shown.b.get());
    whenMenuOpens(&shown.canvas, [] { GraphOnScreen::chooseByMouse("value"); });
    shown.press(outputA, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(shown.selectedNames(), QByteArrayList({"a", "b"}));
}

void tst_QorGraphViewInput::inputMenuAloneMakesNoRoute()
{
    GraphOnScreen shown;
    shown.addPair();
    LogCapture log(osg::LOG_WARNING);
    shown.chooseField(inputB, "value");
    QCOMPARE(log.take(), QByteArrayList{"2 QorGraphView::onInputSlotClicked: sender is 0.\n"});
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(shown.selectedNames(), QByteArrayList{"b"});
}

void tst_QorGraphViewInput::fieldMenuCanBeRead()
{
    GraphOnScreen shown;
    shown.addPair();
    QImage image;
    whenMenuOpens(&shown.canvas, [&] {
        image = openMenu()->grab().toImage();
        openMenu()->close();
    });
    shown.press(outputA);
    // A light text on a dark ground.
    QMap<QRgb, int> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++colors[image.pixel(x, y)];
    }
    const auto most = std::max_element(colors.cbegin(), colors.cend());
    QVERIFY2(qGray(most.key()) < 140, qPrintable(QColor(most.key()).name()));
    QVERIFY(colors.contains(qRgb(240, 240, 240)));
}

void tst_QorGraphViewInput::boxMayLeaveWhileItsMenuIsOpen()
{
    GraphOnScreen shown;
    shown.addPair();
    QSignalSpy selected(&shown.canvas, &QorGraphView::nodeSelected);
    whenMenuOpens(&shown.canvas, [&] {
        shown.canvas.remove(shown.a.get());
        openMenu()->close();
    });
    shown.press(outputA);
    QVERIFY(!shown.boxA->isSelected());
    QCOMPARE(selected.count(), 0);
}

void tst_QorGraphViewInput::nodeMayDieWhileItsMenuIsOpen()
{
    GraphOnScreen shown;
    shown.addPair();
    whenMenuOpens(&shown.canvas, [&] {
        shown.a.reset();
        GraphOnScreen::chooseByMouse("value");
    });
    shown.press(outputA);
    QCOMPARE(shown.canvas.mode(), QorGraphView::DEFAULT_M);
    QVERIFY(!shown.boxA->node());
    // The same at the other end of a route.
    shown.canvas.add(shown.c.get(), QPoint(50, 200));
    shown.chooseField(QPoint(128, 210), "value");
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    whenMenuOpens(&shown.canvas, [&] {
        shown.b.reset();
        GraphOnScreen::chooseByMouse("value");
    });
    shown.press(inputB);
    QCOMPARE(shown.c->findField(0U)->outRouteCount(true, false), 0U);
}

void tst_QorGraphViewInput::canvasMayDieWhileAMenuIsOpen_data()
{
    QTest::addColumn<bool>("isDrawing");
    QTest::newRow("output menu") << false;
    QTest::newRow("input menu of a route under way") << true;
}

void tst_QorGraphViewInput::canvasMayDieWhileAMenuIsOpen()
{
    QFETCH(bool, isDrawing);
    const auto a = routedNode("a");
    QWidget host;
    host.resize(400, 300);
    auto* canvas = new TestGraph(&host);
    canvas->resize(400, 300);
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    canvas->add(a.get(), QPoint(50, 50));
    if (isDrawing)
        emit canvas->viewOf(a.get())->outputSlotClicked(QStringLiteral("value"));
    const QPointer<TestGraph> living(canvas);
    whenMenuOpens(&host, [canvas] { delete canvas; });
    QMouseEvent press(QEvent::MouseButtonPress, outputA, canvas->mapToGlobal(outputA), Qt::LeftButton,
                      Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &press);
    QVERIFY(!living);
}

void tst_QorGraphViewInput::canvasMayDieWhenANodeIsSelected()
{
    const auto a = routedNode("a");
    QWidget host;
    for (auto button : {Qt::LeftButton, Qt::RightButton}) {
        auto* canvas = new TestGraph(&host);
        canvas->resize(400, 300);
        canvas->add(a.get(), QPoint(50, 50));
        const QPointer<TestGraph> living(canvas);
        connect(canvas, &QorGraphView::nodeSelected, this, [canvas] { delete canvas; });
        QMouseEvent press(QEvent::MouseButtonPress, bodyA, canvas->mapToGlobal(bodyA), button, button, {});
        QCoreApplication::sendEvent(canvas, &press);
        QVERIFY(!living);
    }
}

void tst_QorGraphViewInput::canvasMayDieInTheSignalsOfABox_data()
{
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<bool>("onPress");
    QTest::newRow("body") << bodyA << true;
    QTest::newRow("input strip") << QPoint(52, 55) << true;
    QTest::newRow("output strip") << outputA << true;
    QTest::newRow("release") << bodyA << false;
}

void tst_QorGraphViewInput::canvasMayDieInTheSignalsOfABox()
{
    QFETCH(QPoint, at);
    QFETCH(bool, onPress);
    const auto a = routedNode("a");
    QWidget host;
    auto* canvas = new TestGraph(&host);
    canvas->resize(400, 300);
    const QorGraphNodeView* box = canvas->add(a.get(), QPoint(50, 50));
    const QPointer<TestGraph> living(canvas);
    const auto end = [canvas] { delete canvas; };
    if (onPress) {
        connect(box, &QorGraphNodeView::pressed, this, end);
        connect(box, &QorGraphNodeView::inputAreaPressed, this, end);
        connect(box, &QorGraphNodeView::outputAreaPressed, this, end);
    } else {
        connect(box, &QorGraphNodeView::released, this, end);
    }
    const auto type = onPress ? QEvent::MouseButtonPress : QEvent::MouseButtonRelease;
    QMouseEvent event(type, at, canvas->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas, &event);
    QVERIFY(!living);
}

QTEST_MAIN(tst_QorGraphViewInput)
#include "tst_QorGraphViewInput.moc"
