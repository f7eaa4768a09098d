#include "GraphOnScreen.h"
#include <QtGui/QPainter>
#include <QtWidgets/QLabel>
#include <cmath>
#include <limits>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorGraphView : public QObject
{
    Q_OBJECT

private slots:
    void canvasBeginsAsTold();
    void menusAreThere();
    void edgeLabelIsThere();
    void modesHaveNames();
    void modesLeadFromDefaultAndBack_data();
    void modesLeadFromDefaultAndBack();
    void refusedModeIsReported();
    void scaleHasALowerLimitOnly();
    void equalScaleDoesNothing();
    void scaleThatIsNoNumberIsIgnored();
    void translationThatIsNoNumberIsIgnored();
    void anyScaleCanBePainted();
    void scaleMovesAndScalesBoxes();
    void scaleThereAndBackKeepsBoxes();
    void translationMovesBoxes();
    void resizePutsTheOriginInTheMiddle();
    void linesLeaveRightAndArriveLeft();
    void lineArrivesAtHalfTheHeightOfItsSource();
    void emptyCanvasInvites();
    void firstAddedBoxIsPaintedFirst();
    void linesLieOverBoxes();
    void lineEndsOnePixelFurther();
    void backgroundColorCanBeSet();
    void nodeColorIsThatOfTheStatusLine();
    void statusLineTellsAll();
    void statusLineKeepsItsFontWithoutASeenBox();
    void arrowsOfAFlatBoxReachIntoTheCanvas();
    void routeBeingDrawnIsRed();
    void everythingElseStepsBackWhileARouteIsDrawn();
    void tagHasTheNameOfTheField();
    void routeFromADeadNodeHasAnEmptyTag();
    void routeWithoutASourceHasNoTag();
    void startOfTheNewRouteFollowsAResize();
    void fontOfBoxesDoesNotScale();
    void layoutDoesNothing();
};

namespace {

/// What a black widget of the canvas's size looks like after \a paint: text differs with the device.
QImage painted(const std::function<void(QPainter&)>& paint)
{
    struct Sheet : QWidget
    {
        void paintEvent(QPaintEvent*) override
        {
            QPainter painter(this);
            painter.fillRect(rect(), Qt::black);
            _paint(painter);
        }
        std::function<void(QPainter&)> _paint;
    } sheet;
    sheet.resize(400, 300);
    sheet._paint = paint;
    return sheet.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

} // namespace

void tst_QorGraphView::canvasBeginsAsTold()
{
    QWidget parent;
    auto* canvas = new QorGraphView(&parent);
    QCOMPARE(canvas->parentWidget(), &parent);
    QCOMPARE(canvas->objectName(), QStringLiteral("QorGraphView"));
    QVERIFY(canvas->autoFillBackground());
    QCOMPARE(canvas->backgroundColor(), QColor(0, 0, 0));
    QVERIFY(canvas->hasMouseTracking());
    QCOMPARE(canvas->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(canvas->mode(), QorGraphView::DEFAULT_M);
    QCOMPARE(canvas->scale(), 1.0);
    QCOMPARE(canvas->translation(), QPointF(0, 0));
    QCOMPARE(canvas->nodeColor(), QColor(180, 180, 180, 255));
    QVERIFY(canvas->isManagingRoutes());
    QCOMPARE(QorGraphView::routeHitDistance(), 5.0F);
    QVERIFY(!canvas->viewOf(nullptr));
    QVERIFY(!canvas->nodeViewAt(QPoint(0, 0)));
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        QCOMPARE(canvas->palette().color(group, QPalette::Window), QColor(0, 0, 0));
    const int values[] = {QorGraphView::INVALID_M,    QorGraphView::DEFAULT_M,     QorGraphView::MOVENODE_M,
                          QorGraphView::RECTSELECT_M, QorGraphView::CREATEROUTE_M, QorGraphView::PANCANVAS_M};
    for (int i = 0; i < 6; ++i)
        QCOMPARE(values[i], i);
}

void tst_QorGraphView::menusAreThere()
{
    const QorGraphView canvas(nullptr);
    const auto menus = canvas.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(menus.size(), 2);
    QCOMPARE(entriesOf(menus.at(0)),
             QStringList({QStringLiteral("Remove all views"), QStringLiteral("Show node type"),
                          QStringLiteral("Update edges")}));
    QVERIFY(!menus.at(0)->actions().at(0)->isCheckable());
    QVERIFY(menus.at(0)->actions().at(1)->isCheckable());
    QVERIFY(!menus.at(0)->actions().at(2)->isCheckable());
    QCOMPARE(entriesOf(menus.at(1)),
             QStringList({QStringLiteral("Import connected"), QStringLiteral("Import children"),
                          QStringLiteral("Import children recursively"), QStringLiteral("Remove")}));
    QVERIFY(menus.at(1)->isHidden());
}

void tst_QorGraphView::edgeLabelIsThere()
{
    const QorGraphView canvas(nullptr);
    const auto* label = canvas.findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(label);
    QCOMPARE(label->frameStyle(), 17);
    QVERIFY(label->autoFillBackground());
    QVERIFY(label->isHidden());
    QColor yellow(Qt::darkYellow);
    yellow.setAlpha(180);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QCOMPARE(label->palette().color(group, label->backgroundRole()), yellow);
        QCOMPARE(label->palette().color(group, label->foregroundRole()), QColor(Qt::white));
    }
}

void tst_QorGraphView::modesHaveNames()
{
    const QorGraphView canvas(nullptr);
    const char* const names[] = {"INVALID_M",     "DEFAULT_M",   "MOVENODE_M", "RECTSELECT_M",
                                 "CREATEROUTE_M", "PANCANVAS_M", "INVALID_M"};
    for (int i = 0; i < 7; ++i)
        QCOMPARE(canvas.modeToString(static_cast<QorGraphView::Mode>(i)), QLatin1String(names[i]));
    QCOMPARE(canvas.modeToString(static_cast<QorGraphView::Mode>(-1)), QStringLiteral("INVALID_M"));
}

void tst_QorGraphView::modesLeadFromDefaultAndBack_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("allowed");
    for (int from = 1; from <= 5; ++from) {
        for (int to = -1; to <= 6; ++to)
            QTest::addRow("%d to %d", from, to)
                << from << to << (from == to || (from == 1 && to > 1 && to < 6) || (from > 1 && to == 1));
    }
}

void tst_QorGraphView::modesLeadFromDefaultAndBack()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, allowed);
    QorGraphView canvas;
    canvas.setMode(static_cast<QorGraphView::Mode>(from));
    const LogCapture quiet;
    canvas.setMode(static_cast<QorGraphView::Mode>(to));
    QCOMPARE(static_cast<int>(canvas.mode()), allowed ? to : from);
}

void tst_QorGraphView::refusedModeIsReported()
{
    QorGraphView canvas;
    canvas.setMode(QorGraphView::MOVENODE_M);
    LogCapture log(osg::LOG_WARNING);
    canvas.setMode(QorGraphView::RECTSELECT_M);
    QCOMPARE(canvas.mode(), QorGraphView::MOVENODE_M);
    QCOMPARE(log.take(),
             QByteArrayList{"2 QorGraphView::setMode: invalid transition MOVENODE_M->RECTSELECT_M\n"});
    canvas.setMode(static_cast<QorGraphView::Mode>(99));
    QCOMPARE(log.take(),
             QByteArrayList{"2 QorGraphView::setMode: invalid transition MOVENODE_M->INVALID_M\n"});
    canvas.setMode(QorGraphView::MOVENODE_M);
    canvas.setMode(QorGraphView::DEFAULT_M);
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorGraphView::scaleHasALowerLimitOnly()
{
    QorGraphView canvas;
    canvas.setScale(0.05);
    QCOMPARE(canvas.scale(), 0.1);
    canvas.setScale(-3);
    QCOMPARE(canvas.scale(), 0.1);
    canvas.setScale(1000);
    QCOMPARE(canvas.scale(), 1000.0);
}

void tst_QorGraphView::equalScaleDoesNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setScale(0.1);
    // What is moved by hand since then would be moved again by a new matrix of another kind only.
    const QPointF pos = shown.boxA->pos();
    const QSizeF size = shown.boxA->size();
    shown.canvas.setScale(0.1);
    QCOMPARE(shown.canvas.scale(), 0.1);
    QCOMPARE(shown.boxA->pos(), pos);
    QCOMPARE(shown.boxA->size(), size);
}

void tst_QorGraphView::scaleThatIsNoNumberIsIgnored()
{
    GraphOnScreen shown;
    shown.addPair();
    for (double bad : {std::nan(""), std::numeric_limits<double>::infinity(),
                       -std::numeric_limits<double>::infinity(), 1e300})
    {
        shown.canvas.setScale(bad);
        QCOMPARE(shown.canvas.scale(), 1.0);
        QCOMPARE(shown.boxA->rect(), QRectF(50, 50, 80, 20));
    }
}

void tst_QorGraphView::translationThatIsNoNumberIsIgnored()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setTranslation(QPointF(std::nan(""), 0));
    shown.canvas.setTranslation(QPointF(0, std::numeric_limits<double>::infinity()));
    QCOMPARE(shown.canvas.translation(), QPointF(200, 150));
    QCOMPARE(shown.boxA->pos(), QPointF(50, 50));
}

void tst_QorGraphView::anyScaleCanBePainted()
{
    GraphOnScreen shown;
    shown.addPair();
    // One box lies over the origin, so that it covers the canvas in the end.
    shown.boxA->move(QPointF(170, 140));
    for (double scale : {0.1, 50.0, 1e4, 1e7, 1e10, 1e100, 1e150}) {
        shown.canvas.setScale(scale);
        shown.canvas.grab();
        shown.move(QPoint(100, 100));
        shown.move(QPoint(101, 100));
        shown.click(QPoint(110, 110), Qt::BackButton);
    }
    QCOMPARE(shown.canvas.scale(), 1e150);
    shown.canvas.setScale(1.0);
    QVERIFY(std::isfinite(shown.boxA->pos().x()));
}

void tst_QorGraphView::scaleMovesAndScalesBoxes()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setScale(2.0);
    // About the origin of the canvas at (200, 150).
    QCOMPARE(shown.boxA->rect(), QRectF(-100, -50, 160, 40));
    // A box that comes now is as large, at the very pixel that is asked for.
    const QorGraphNodeView* box = shown.canvas.add(shown.c.get(), QPoint(10, 20));
    QCOMPARE(box->rect(), QRectF(10, 20, 160, 40));
}

void tst_QorGraphView::scaleThereAndBackKeepsBoxes()
{
    GraphOnScreen shown;
    shown.addPair();
    for (double scale : {3.7, 0.1, 12.5, 0.3, 1.0})
        shown.canvas.setScale(scale);
    QVERIFY(QLineF(shown.boxA->pos(), QPointF(50, 50)).length() < 1e-9);
    QVERIFY(qAbs(shown.boxA->size().width() - 80) < 1e-9);
    QVERIFY(qAbs(shown.boxA->size().height() - 20) < 1e-9);
}

void tst_QorGraphView::translationMovesBoxes()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setTranslation(QPointF(210, 145));
    QCOMPARE(shown.canvas.translation(), QPointF(210, 145));
    QCOMPARE(shown.boxA->rect(), QRectF(60, 45, 80, 20));
    QCOMPARE(shown.boxB->rect(), QRectF(210, 95, 80, 20));
}

void tst_QorGraphView::resizePutsTheOriginInTheMiddle()
{
    GraphOnScreen shown;
    QCOMPARE(shown.canvas.translation(), QPointF(200, 150));
    shown.addPair();
    shown.canvas.setTranslation(QPointF(0, 0));
    shown.canvas.resize(501, 401);
    QTRY_COMPARE(shown.canvas.translation(), QPointF(250.5, 200.5));
    QCOMPARE(shown.boxA->pos(), QPointF(50 - 200 + 250.5, 50 - 150 + 200.5));
}

void tst_QorGraphView::linesLeaveRightAndArriveLeft()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge* line = shown.canvas.lines().first();
    QCOMPARE(shown.canvas.startPoint(line), QPoint(130, 60));
    QCOMPARE(shown.canvas.endPoint(line), QPoint(200, 110));
    QCOMPARE(shown.canvas.outSlotPos(shown.boxB, QStringLiteral("any")), QPoint(280, 110));
    shown.boxA->move(QPointF(50.3, 50.4));
    QCOMPARE(shown.canvas.startPoint(line), QPoint(130, 60));
    shown.boxA->move(QPointF(50.6, 50.5));
    QCOMPARE(shown.canvas.startPoint(line), QPoint(131, 61));
}

void tst_QorGraphView::lineArrivesAtHalfTheHeightOfItsSource()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->resize(80, 100);
    QCOMPARE(shown.canvas.endPoint(shown.canvas.lines().first()), QPoint(200, 110));
    shown.boxA->resize(80, 50);
    QCOMPARE(shown.canvas.endPoint(shown.canvas.lines().first()), QPoint(200, 125));
}

void tst_QorGraphView::emptyCanvasInvites()
{
    GraphOnScreen shown;
    const QImage expected = painted([&](QPainter& painter) {
        painter.setPen(Qt::white);
        const QString text = QStringLiteral("Drop some nodes here!");
        const QRect bounds = QFontMetrics(shown.canvas.font()).boundingRect(text);
        painter.drawText(200 - bounds.width() / 2, 150 - bounds.height() / 2, text);
    });
    QCOMPARE(shown.canvas.grab().toImage().convertToFormat(QImage::Format_RGB32), expected);
}

void tst_QorGraphView::firstAddedBoxIsPaintedFirst()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(60, 55));
    shown.canvas.viewOf(shown.a.get())->select();
    const QColor lower(147, 147, 0);
    const QColor upper(120, 120, 120);
    QCOMPARE(shown.canvas.pixel(70, 52), lower);
    QCOMPARE(shown.canvas.pixel(70, 56), upper);
}

void tst_QorGraphView::linesLieOverBoxes()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(300, 50);
    shown.canvas.add(shown.c.get(), QPoint(180, 50));
    // The line from (130, 60) to (300, 60) crosses the third box.
    QCOMPARE(shown.canvas.pixel(200, 60), QColor(20, 180, 20));
    QCOMPARE(shown.canvas.pixel(200, 55), QColor(120, 120, 120));
}

void tst_QorGraphView::lineEndsOnePixelFurther()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(130, 150);
    const QorGraphEdge* line = shown.canvas.lines().first();
    shown.canvas.grab();
    // From (130, 60) to (130, 160), and one further each way.
    QCOMPARE(line->pos(), QPointF(130, 60));
    QCOMPARE(line->size(), QSizeF(1, 101));
    shown.boxB->move(30, 20);
    shown.canvas.grab();
    QCOMPARE(line->size(), QSizeF(-99, -29));
}

void tst_QorGraphView::backgroundColorCanBeSet()
{
    GraphOnScreen shown;
    shown.addPair();
    QVERIFY(QMetaObject::invokeMethod(&shown.canvas, "setBackgroundColor", Q_ARG(QColor, QColor(1, 2, 90))));
    QCOMPARE(shown.canvas.backgroundColor(), QColor(1, 2, 90));
    QCOMPARE(shown.canvas.pixel(10, 10), QColor(1, 2, 90));
    QCOMPARE(shown.canvas.palette().color(QPalette::Disabled, QPalette::Window), QColor(1, 2, 90));
}

void tst_QorGraphView::nodeColorIsThatOfTheStatusLine()
{
    GraphOnScreen shown;
    shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.setNodeColor(QColor(250, 0, 250));
    QCOMPARE(shown.canvas.nodeColor(), QColor(250, 0, 250));
    const QImage image = shown.canvas.grab().toImage();
    bool found = false;
    for (int y = 270; y < 300; ++y) {
        for (int x = 0; x < 200; ++x)
            found = found || image.pixelColor(x, y) == QColor(250, 0, 250);
    }
    QVERIFY(found);
    QCOMPARE(image.pixelColor(90, 52), QColor(120, 120, 120));
}

void tst_QorGraphView::statusLineTellsAll()
{
    GraphOnScreen shown;
    const QorGraphNodeView* box = shown.canvas.add(shown.a.get(), QPoint(50, 50));
    shown.canvas.add(shown.b.get(), QPoint(50, 100));
    shown.move(QPoint(37, 201));
    shown.canvas.setScale(1.5);
    const QRect line(0, 268, 400, 32);
    const QImage expected =
        painted([&](QPainter& painter) {
            painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
            painter.setFont(box->font()); // boxes leave their font
            painter.setPen(QColor(180, 180, 180));
            painter.drawText(QPointF(8.0, 288.0),
                             QStringLiteral("zoom: 1.5, nodes: 2, fps: inf, mouse: 37, 201 DEFAULT_M"));
        }).copy(line);
    // Painting two boxes may well end in the next millisecond.
    bool same = false;
    for (int i = 0; i < 100 && !same; ++i)
        same = shown.canvas.grab().toImage().convertToFormat(QImage::Format_RGB32).copy(line) == expected;
    QVERIFY(same);
}

void tst_QorGraphView::statusLineKeepsItsFontWithoutASeenBox()
{
    GraphOnScreen shown;
    QorGraphNodeView* box = shown.canvas.add(shown.a.get(), QPoint(50, 50));
    const QRect words(0, 268, 130, 32); // before the figure that differs with the time
    const QImage seen = shown.canvas.grab().toImage().copy(words);
    box->move(5000, 5000);
    QCOMPARE(shown.canvas.grab().toImage().copy(words), seen);
    // The topmost box is the last one that is painted, and leaves its font.
    box->setFont(QFont(QStringLiteral("Courier"), 20));
    QVERIFY(shown.canvas.grab().toImage().copy(words) != seen);
}

void tst_QorGraphView::arrowsOfAFlatBoxReachIntoTheCanvas()
{
    GraphOnScreen shown;
    QorGraphNodeView* box = shown.canvas.add(shown.a.get(), QPoint(50, -30));
    box->resize(1000, 10);
    // The arrow is 80 high about y = -25, its left side at x = 51.
    const QColor arrow(QColor(120, 120, 120).lighter(150).rgb());
    QCOMPARE(shown.canvas.pixel(52, 8), arrow);
    QCOMPARE(shown.canvas.pixel(52, 18), QColor(Qt::black));
}

void tst_QorGraphView::routeBeingDrawnIsRed()
{
    GraphOnScreen shown;
    shown.addPair();
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    QCOMPARE(shown.canvas.mode(), QorGraphView::CREATEROUTE_M);
    shown.move(QPoint(130, 260));
    const QImage image = shown.canvas.grab().toImage();
    for (int y : {70, 160, 259}) {
        QCOMPARE(image.pixelColor(128, y), QColor(Qt::black));
        QCOMPARE(image.pixelColor(129, y), QColor(Qt::red));
        QCOMPARE(image.pixelColor(130, y), QColor(Qt::red));
        QCOMPARE(image.pixelColor(131, y), QColor(Qt::black));
    }
}

void tst_QorGraphView::everythingElseStepsBackWhileARouteIsDrawn()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.boxB->move(300, 50);
    QCOMPARE(shown.canvas.pixel(200, 60), QColor(20, 180, 20));
    emit shown.boxB->outputSlotClicked(QStringLiteral("gone"));
    const QImage image = shown.canvas.grab().toImage();
    QVERIFY(qAbs(image.pixelColor(90, 52).red() - 60) <= 1);
    QVERIFY(qAbs(image.pixelColor(200, 60).green() - 90) <= 1);
    QCOMPARE(shown.boxA->alpha(), 127);
    shown.click(QPoint(20, 200));
    QCOMPARE(shown.canvas.pixel(90, 52), QColor(120, 120, 120));
    QCOMPARE(shown.boxA->alpha(), 255);
}

void tst_QorGraphView::tagHasTheNameOfTheField()
{
    GraphOnScreen shown;
    shown.addPair();
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    const QRect tag = QFontMetrics(shown.canvas.font(), &shown.canvas)
                          .boundingRect(QStringLiteral("gone"))
                          .adjusted(-2, -2, 2, 2)
                          .translated(130, 60);
    const QImage image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(tag.topLeft()), QColor(Qt::red));
    QCOMPARE(image.pixelColor(tag.topRight()), QColor(Qt::red));
    QVERIFY(image.pixelColor(tag.topLeft() - QPoint(0, 1)) != QColor(Qt::red));
    QVERIFY(image.pixelColor(tag.topRight() + QPoint(1, 0)) != QColor(Qt::red));
    int white = 0;
    for (int y = tag.top(); y <= tag.bottom(); ++y) {
        for (int x = tag.left(); x <= tag.right(); ++x)
            white += image.pixelColor(x, y).blue() > 128 ? 1 : 0;
    }
    QVERIFY(white > 10);
    emit shown.boxA->outputSlotClicked(QStringLiteral("value"));
    QVERIFY(shown.canvas.grab().toImage() != image);
}

void tst_QorGraphView::routeFromADeadNodeHasAnEmptyTag()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.add(shown.c.get(), QPoint(10, 200));
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    delete shown.route;
    shown.a.reset();
    shown.canvas.setMode(QorGraphView::CREATEROUTE_M);
    const QImage image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(129, 59), QColor(Qt::red));
    QCOMPARE(image.pixelColor(125, 56), QColor(Qt::black));
}

void tst_QorGraphView::routeWithoutASourceHasNoTag()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.setMode(QorGraphView::CREATEROUTE_M);
    shown.move(QPoint(40, 200));
    const QImage image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(20, 100), QColor(Qt::red));
}

void tst_QorGraphView::startOfTheNewRouteFollowsAResize()
{
    GraphOnScreen shown;
    shown.addPair();
    emit shown.boxA->outputSlotClicked(QStringLiteral("gone"));
    shown.move(QPoint(130, 260));
    shown.canvas.resize(500, 400);
    QTRY_COMPARE(shown.boxA->pos(), QPointF(100, 100));
    // From (180, 110) to (130, 260).
    QImage image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(154, 186), QColor(Qt::red));
    shown.move(QPoint(180, 300));
    image = shown.canvas.grab().toImage();
    QCOMPARE(image.pixelColor(180, 250), QColor(Qt::red));
}

void tst_QorGraphView::fontOfBoxesDoesNotScale()
{
    GraphOnScreen shown;
    shown.addPair();
    const QFont font = shown.boxA->font();
    QCOMPARE(font.family(), QStringLiteral("Arial"));
    QCOMPARE(font.weight(), 75);
    shown.canvas.setScale(3.0);
    QCOMPARE(shown.boxA->font(), font);
}

void tst_QorGraphView::layoutDoesNothing()
{
    GraphOnScreen shown;
    shown.addPair();
    shown.canvas.layout(1U);
    QCOMPARE(shown.boxA->pos(), QPointF(50, 50));
    QVERIFY(!shown.canvas.layout());
}

QTEST_MAIN(tst_QorGraphView)
#include "tst_QorGraphView.moc"
