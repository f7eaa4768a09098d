#include "GraphOnScreen.h"
#include <QtGui/QPainter>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorGraphEdge : public QObject
{
    Q_OBJECT

private slots:
    void drawableBeginsEmpty();
    void drawableKeepsWhatItIsGiven();
    void drawableIsSelectedBySlots();
    void drawableBelongsToItsCanvas();
    void drawableIgnoresMouse();
    void edgeTellsItsEnds();
    void lineIsTwoPixelsWide();
    void lineAlongAnAxisIsAsAnyOther_data();
    void lineAlongAnAxisIsAsAnyOther();
    void selectedLineHasTheHighlightColor();
    void alphaGoesIntoTheColor();
    void alphaAboveTheRangeIsOpaque();
    void negativeSizeIsAnOffset();
    void edgeIsViewForItsRoute();
    void edgeIsViewForARouteMadeAgain();
    void edgeIsNoViewForOthers();
    void edgeIsNoViewOnceANodeHasDied();
};

namespace {

/// An edge that a test paints itself.
class PaintedEdge : public QorGraphEdge
{
public:
    using QorGraphEdge::enterEvent;
    using QorGraphEdge::leaveEvent;
    using QorGraphEdge::mouseMoveEvent;
    using QorGraphEdge::mousePressEvent;
    using QorGraphEdge::mouseReleaseEvent;
    using QorGraphEdge::QorGraphEdge;

    QImage picture()
    {
        QImage image(100, 100, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(&painter);
        return image;
    }
};

/// An edge without boxes, in the colours of a canvas's lines.
struct Painted
{
    Painted()
        : edge(&canvas, nullptr, nullptr, 0, 0)
    {
        QPalette colors;
        colors.setBrush(QPalette::All, QPalette::Button, QColor(20, 180, 20));
        colors.setBrush(QPalette::All, QPalette::Highlight, QColor(230, 10, 10));
        edge.setPalette(colors);
        edge.move(10, 50);
        edge.resize(60, 0);
    }
    QorGraphView canvas;
    PaintedEdge edge;
};

} // namespace

void tst_QorGraphEdge::drawableBeginsEmpty()
{
    QorGraphView canvas;
    const QorGraphEdge edge(&canvas, nullptr, nullptr, 3, 4);
    QCOMPARE(edge.graphView(), &canvas);
    QCOMPARE(edge.pos(), QPointF(0, 0));
    QCOMPARE(edge.size(), QSizeF(-1, -1));
    QCOMPARE(edge.rect(), QRectF(0, 0, -1, -1));
    QCOMPARE(edge.alpha(), 255);
    QCOMPARE(edge.font(), QFont());
    QCOMPARE(edge.palette(), QPalette());
    QVERIFY(!edge.isSelected());
    QCOMPARE(edge.objectName(), QStringLiteral("QorGraphDrawable"));
}

void tst_QorGraphEdge::drawableKeepsWhatItIsGiven()
{
    QorGraphView canvas;
    QorGraphEdge edge(&canvas, nullptr, nullptr, 0, 0);
    edge.move(QPointF(1.5, 2.25));
    QCOMPARE(edge.pos(), QPointF(1.5, 2.25));
    edge.move(-3, 4);
    QCOMPARE(edge.pos(), QPointF(-3, 4));
    edge.resize(QSizeF(5.5, 6.5));
    QCOMPARE(edge.size(), QSizeF(5.5, 6.5));
    edge.resize(7, -8);
    QCOMPARE(edge.size(), QSizeF(7, -8));
    QCOMPARE(edge.rect(), QRectF(-3, 4, 7, -8));
    for (int alpha : {0, 127, 300, -5}) {
        edge.setAlpha(alpha);
        QCOMPARE(edge.alpha(), alpha);
    }
    const QFont font(QStringLiteral("Sans"), 33);
    edge.setFont(font);
    QCOMPARE(edge.font(), font);
    const QPalette palette(Qt::red);
    edge.setPalette(palette);
    QCOMPARE(edge.palette(), palette);
}

void tst_QorGraphEdge::drawableIsSelectedBySlots()
{
    QorGraphView canvas;
    QorGraphEdge edge(&canvas, nullptr, nullptr, 0, 0);
    for (const char* slot :
         {"select", "select", "toggleSelection", "toggleSelection", "deselect", "deselect"})
        QVERIFY(QMetaObject::invokeMethod(&edge, slot));
    QVERIFY(!edge.isSelected());
    edge.select();
    QVERIFY(edge.isSelected());
    edge.toggleSelection();
    QVERIFY(!edge.isSelected());
    edge.toggleSelection();
    edge.deselect();
    QVERIFY(!edge.isSelected());
    // The canvas has no line, so that nothing of its own has changed.
    QCOMPARE(QorGraphDrawable::staticMetaObject.methodCount(), QObject::staticMetaObject.methodCount() + 3);
}

void tst_QorGraphEdge::drawableBelongsToItsCanvas()
{
    QPointer<QorGraphEdge> edge;
    {
        QorGraphView canvas;
        edge = new QorGraphEdge(&canvas, nullptr, nullptr, 0, 0);
        QCOMPARE(edge->parent(), &canvas);
    }
    QVERIFY(!edge);
}

void tst_QorGraphEdge::drawableIgnoresMouse()
{
    Painted painted;
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton, {});
    QEvent enter(QEvent::Enter);
    const QImage before = painted.edge.picture();
    painted.edge.mousePressEvent(&press);
    painted.edge.mouseMoveEvent(&press);
    painted.edge.mouseReleaseEvent(&press);
    painted.edge.enterEvent(&enter);
    painted.edge.leaveEvent(&enter);
    QVERIFY(!painted.edge.isSelected());
    QCOMPARE(painted.edge.picture(), before);
}

void tst_QorGraphEdge::edgeTellsItsEnds()
{
    GraphOnScreen shown;
    shown.addPair();
    QorGraphEdge edge(&shown.canvas, shown.boxA, shown.boxB, 2, 1);
    QCOMPARE(edge.srcNode(), shown.boxA);
    QCOMPARE(edge.destNode(), shown.boxB);
    QCOMPARE(qAsConst(edge).srcNode(), shown.boxA);
    QCOMPARE(qAsConst(edge).destNode(), shown.boxB);
    QCOMPARE(edge.outSlotId(), 2U);
    QCOMPARE(edge.inSlotId(), 1U);
}

void tst_QorGraphEdge::lineIsTwoPixelsWide()
{
    Painted painted;
    const QImage image = painted.edge.picture();
    for (int x : {10, 40, 69}) {
        QCOMPARE(image.pixelColor(x, 48), QColor(Qt::black));
        QCOMPARE(image.pixelColor(x, 49), QColor(20, 180, 20));
        QCOMPARE(image.pixelColor(x, 50), QColor(20, 180, 20));
        QCOMPARE(image.pixelColor(x, 51), QColor(Qt::black));
    }
    // A square cap goes on for half the width.
    QCOMPARE(image.pixelColor(9, 50), QColor(20, 180, 20));
    QCOMPARE(image.pixelColor(8, 50), QColor(Qt::black));
    QCOMPARE(image.pixelColor(70, 50), QColor(20, 180, 20));
    QCOMPARE(image.pixelColor(71, 50), QColor(Qt::black));
}

void tst_QorGraphEdge::lineAlongAnAxisIsAsAnyOther_data()
{
    QTest::addColumn<QPointF>("start");
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("right") << QPointF(10, 50) << QSizeF(30, 0);
    QTest::newRow("left") << QPointF(60, 50) << QSizeF(-30, 0);
    QTest::newRow("down") << QPointF(40, 20) << QSizeF(0, 1);
    QTest::newRow("up") << QPointF(40, 90) << QSizeF(0, -60);
    QTest::newRow("between pixels") << QPointF(10, 50.5) << QSizeF(30, 0);
    QTest::newRow("between columns") << QPointF(10.25, 50) << QSizeF(30.5, 0);
    QTest::newRow("point") << QPointF(10, 50) << QSizeF(0, 0);
    QTest::newRow("out of sight") << QPointF(-1e12, 50) << QSizeF(2e12, 0);
}

void tst_QorGraphEdge::lineAlongAnAxisIsAsAnyOther()
{
    QFETCH(QPointF, start);
    QFETCH(QSizeF, size);
    Painted painted;
    painted.edge.setAlpha(127);
    painted.edge.move(start);
    painted.edge.resize(size);
    QImage expected(100, 100, QImage::Format_RGB32);
    expected.fill(Qt::black);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(20, 180, 20, 127), 2.0, Qt::SolidLine, Qt::SquareCap));
    painter.drawLine(QLineF(start, start + QPointF(size.width(), size.height())));
    painter.end();
    QCOMPARE(painted.edge.picture(), expected);
}

void tst_QorGraphEdge::selectedLineHasTheHighlightColor()
{
    Painted painted;
    painted.edge.select();
    QCOMPARE(painted.edge.picture().pixelColor(40, 50), QColor(230, 10, 10));
}

void tst_QorGraphEdge::alphaGoesIntoTheColor()
{
    Painted painted;
    painted.edge.setAlpha(127);
    const QColor half = painted.edge.picture().pixelColor(40, 50);
    QVERIFY2(qAbs(half.green() - 90) <= 1, qPrintable(half.name()));
    painted.edge.select();
    const QColor selected = painted.edge.picture().pixelColor(40, 50);
    QVERIFY2(qAbs(selected.red() - 115) <= 1, qPrintable(selected.name()));
}

void tst_QorGraphEdge::alphaAboveTheRangeIsOpaque()
{
    Painted painted;
    painted.edge.setAlpha(300);
    QTest::ignoreMessage(QtWarningMsg, "\"QColor::setAlpha\": invalid value 300");
    QCOMPARE(painted.edge.picture().pixelColor(40, 50), QColor(20, 180, 20));
}

void tst_QorGraphEdge::negativeSizeIsAnOffset()
{
    Painted painted;
    painted.edge.move(70, 80);
    painted.edge.resize(0, -60);
    const QImage image = painted.edge.picture();
    for (int y : {21, 50, 79}) {
        QCOMPARE(image.pixelColor(68, y), QColor(Qt::black));
        QCOMPARE(image.pixelColor(69, y), QColor(20, 180, 20));
        QCOMPARE(image.pixelColor(70, y), QColor(20, 180, 20));
        QCOMPARE(image.pixelColor(71, y), QColor(Qt::black));
    }
    QCOMPARE(image.pixelColor(70, 18), QColor(Qt::black));
}

void tst_QorGraphEdge::edgeIsViewForItsRoute()
{
    GraphOnScreen shown;
    shown.addPair();
    const QList<QorGraphEdge*> lines = shown.canvas.lines();
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first()->outSlotId(), 2U);
    QCOMPARE(lines.first()->inSlotId(), 1U);
    QVERIFY(lines.first()->isViewForRoute(shown.route));
}

void tst_QorGraphEdge::edgeIsViewForARouteMadeAgain()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge edge(&shown.canvas, shown.boxA, shown.boxB, 2, 1);
    delete shown.route;
    Route* const again = connectParts(*shown.a, 2, *shown.b, 1, Route::SCRIPT_RT);
    QVERIFY(edge.isViewForRoute(again));
}

void tst_QorGraphEdge::edgeIsNoViewForOthers()
{
    GraphOnScreen shown;
    shown.addPair();
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxB, shown.boxA, 2, 1).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxA, shown.boxA, 2, 1).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxA, shown.boxB, 0, 1).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxA, shown.boxB, 2, 0).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, nullptr, shown.boxB, 2, 1).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxA, nullptr, 2, 1).isViewForRoute(shown.route));
    QVERIFY(!QorGraphEdge(&shown.canvas, shown.boxA, shown.boxB, 2, 1).isViewForRoute(nullptr));
}

void tst_QorGraphEdge::edgeIsNoViewOnceANodeHasDied()
{
    GraphOnScreen shown;
    shown.addPair();
    const QorGraphEdge edge(&shown.canvas, shown.boxA, shown.boxB, 2, 1);
    Route* const other = connectParts(*shown.c, 2, *shown.b, 1);
    shown.a.reset();
    QVERIFY(!edge.isViewForRoute(other));
}

QTEST_MAIN(tst_QorGraphEdge)
#include "tst_QorGraphEdge.moc"
