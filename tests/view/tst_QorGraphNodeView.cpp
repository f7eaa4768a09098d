#include "GraphOnScreen.h"
#include "QorIconFactory.h"
#include <QtGui/QPainter>
#include <QtWidgets/QLayout>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_QorGraphNodeView : public QObject
{
    Q_OBJECT

private slots:
    void boxBeginsAsTold();
    void stripsAreEightPercentWide();
    void stripsScaleWithTheBox();
    void pressIsToldByZone_data();
    void pressIsToldByZone();
    void releaseIsToldByZone_data();
    void releaseIsToldByZone();
    void pressIsTraced();
    void boxIsPaintedToThePixel_data();
    void boxIsPaintedToThePixel();
    void boxIsPaintedInItsColors();
    void selectedBoxHasTheHighlightColor();
    void hoveredBoxIsLighter();
    void alphaGoesIntoTheBox();
    void bothArrowsPointToTheRight();
    void arrowsDependOnTheWidthAlone();
    void arrowMayPointToTheLeft();
    void arrowKeepsThePen();
    void labelIsTheIdInTheMiddle();
    void labelHasTheTypeAboveTheId();
    void labelIsWhatAPainterDraws_data();
    void labelIsWhatAPainterDraws();
    void labelFollowsNameAndFont();
    void labelOfADeadNodeIsEmpty();
    void inputMenuHoldsWhatReceives();
    void outputMenuHoldsWhatSends();
    void routedFieldsAreCheckedAndBoldInTheirMenuOnly();
    void entriesHaveIconAndNoShortcut();
    void fieldWithoutDescriptionIsLeftOut();
    void bothMenusAreOne();
    void menuWithoutFieldsIsEmpty();
    void inputMenuHangsUnderTheLeftEdge();
    void outputMenuHangsUnderItsStrip();
    void menuOffsetStaysWhenTheBoxIsScaled();
    void choiceIsToldByName();
    void ampersandInANameIsKept();
    void foreignSenderIsIgnored();
    void menuCanBeHidden();
    void arrowKeysNudge();
    void otherKeysAreIgnored();
};

namespace {

/// A box whose inner operations a test calls itself.
class TestBox : public QorGraphNodeView
{
public:
    using QorGraphNodeView::_fieldAreaWidth;
    using QorGraphNodeView::ArrowDirection;
    using QorGraphNodeView::ArrowLeft;
    using QorGraphNodeView::ArrowRight;
    using QorGraphNodeView::calculateMenuPosition;
    using QorGraphNodeView::enterEvent;
    using QorGraphNodeView::hideFields;
    using QorGraphNodeView::inputAreaContains;
    using QorGraphNodeView::InputMenu;
    using QorGraphNodeView::leaveEvent;
    using QorGraphNodeView::MenuType;
    using QorGraphNodeView::mousePressEvent;
    using QorGraphNodeView::mouseReleaseEvent;
    using QorGraphNodeView::onInputSlotClicked;
    using QorGraphNodeView::onOutputSlotClicked;
    using QorGraphNodeView::outputAreaContains;
    using QorGraphNodeView::OutputMenu;
    using QorGraphNodeView::paint;
    using QorGraphNodeView::paintArrow;
    using QorGraphNodeView::QorGraphNodeView;
    using QorGraphNodeView::showFields;

    QImage picture()
    {
        QImage image(200, 150, QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(&painter);
        return image;
    }
};

/// A box at (50, 50) in the colours of a canvas, with an empty label unless there is a node.
struct Box
{
    explicit Box(Node* node = nullptr)
        : box(&canvas, node)
    {
        QPalette colors;
        colors.setBrush(QPalette::All, QPalette::Button, QColor(120, 120, 120));
        colors.setBrush(QPalette::All, QPalette::Highlight, QColor(147, 147, 0));
        colors.setBrush(QPalette::All, QPalette::WindowText, QColor(240, 240, 240));
        box.setPalette(colors);
        box.move(50, 50);
    }
    QorGraphView canvas;
    TestBox box;
};

/// A box of a canvas on the screen, with its signals written down.
struct SpiedBox
{
    explicit SpiedBox(Node* node, const QSizeF& size = QSizeF(80, 20))
        : box(&shown.canvas, node)
    {
        box.move(100, 60);
        box.resize(size);
        const auto note = [this](void (QorGraphNodeView::*signal)(), const char* name) {
            QObject::connect(&box, signal, &box, [this, name] { calls << name; });
        };
        note(&QorGraphNodeView::inputAreaPressed, "inputAreaPressed");
        note(&QorGraphNodeView::inputAreaReleased, "inputAreaReleased");
        note(&QorGraphNodeView::outputAreaPressed, "outputAreaPressed");
        note(&QorGraphNodeView::outputAreaReleased, "outputAreaReleased");
        note(&QorGraphNodeView::pressed, "pressed");
        note(&QorGraphNodeView::released, "released");
        QObject::connect(&box, &QorGraphNodeView::inputSlotClicked, &box,
                         [this](const QString& name) { calls << "in " + name.toUtf8(); });
        QObject::connect(&box, &QorGraphNodeView::outputSlotClicked, &box,
                         [this](const QString& name) { calls << "out " + name.toUtf8(); });
    }

    /// Opens a menu, calls \a then while it is open, and closes it.
    void open(TestBox::MenuType type, const std::function<void(QMenu*)>& then)
    {
        whenMenuOpens(&shown.canvas, [then] {
            QMenu* menu = openMenu();
            then(menu);
            menu->close();
        });
        box.showFields(type);
    }
    QStringList entries(TestBox::MenuType type)
    {
        QStringList texts;
        open(type, [&](QMenu* menu) { texts = entriesOf(menu); });
        return texts;
    }

    GraphOnScreen shown;
    TestBox box;
    QByteArrayList calls;
};

/// A colour as a picture holds it, with eight bits a component.
QColor painted(const QColor& color)
{
    return QColor(color.rgb());
}

QMouseEvent mouse(QEvent::Type type, QPoint at)
{
    return QMouseEvent(type, at, Qt::LeftButton, Qt::LeftButton, {});
}

QStringList list(std::initializer_list<const char*> texts)
{
    QStringList result;
    for (const char* text : texts)
        result << QString::fromUtf8(text);
    return result;
}

} // namespace

void tst_QorGraphNodeView::boxBeginsAsTold()
{
    const auto node = routedNode();
    QorGraphView canvas;
    QorGraphNodeView box(&canvas, node.get());
    QCOMPARE(box.node(), node.get());
    QCOMPARE(box.size(), QSizeF(80, 20));
    QCOMPARE(box.pos(), QPointF(0, 0));
    QCOMPARE(box.parentWidget(), &canvas);
    QCOMPARE(box.objectName(), QStringLiteral("QorGraphDrawable"));
    QVERIFY(!box.isNodeTypeVisible());
    box.setNodeTypeVisible(true);
    QVERIFY(box.isNodeTypeVisible());
    QVERIFY(!QorGraphNodeView(&canvas, nullptr).node());
    QCOMPARE(TestBox::_fieldAreaWidth, 8.0);
}

void tst_QorGraphNodeView::stripsAreEightPercentWide()
{
    const Box shown;
    QCOMPARE(shown.box.inputAreaRect(), QRectF(0, 0, 6.4, 20));
    QCOMPARE(shown.box.outputAreaRect(), QRectF(73.6, 0, 6.4, 20));
    QVERIFY(shown.box.inputAreaContains(QPoint(6, 0)));
    QVERIFY(!shown.box.inputAreaContains(QPoint(7, 0)));
    QVERIFY(!shown.box.outputAreaContains(QPoint(73, 0)));
    QVERIFY(shown.box.outputAreaContains(QPoint(74, 19)));
}

void tst_QorGraphNodeView::stripsScaleWithTheBox()
{
    Box shown;
    shown.box.resize(160, 40);
    QCOMPARE(shown.box.inputAreaRect(), QRectF(0, 0, 12.8, 40));
    QCOMPARE(shown.box.outputAreaRect(), QRectF(147.2, 0, 12.8, 40));
}

void tst_QorGraphNodeView::pressIsToldByZone_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<bool>("hasMenu");
    QTest::newRow("left end") << 0 << QByteArray("inputAreaPressed") << true;
    QTest::newRow("input strip") << 6 << QByteArray("inputAreaPressed") << true;
    QTest::newRow("body left") << 7 << QByteArray("pressed") << false;
    QTest::newRow("body right") << 73 << QByteArray("pressed") << false;
    QTest::newRow("output strip") << 74 << QByteArray("outputAreaPressed") << true;
    QTest::newRow("right end") << 80 << QByteArray("outputAreaPressed") << true;
}

void tst_QorGraphNodeView::pressIsToldByZone()
{
    QFETCH(int, x);
    QFETCH(QByteArray, signal);
    QFETCH(bool, hasMenu);
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    bool signalWasFirst = false;
    if (hasMenu)
        whenMenuOpens(&spied.shown.canvas, [&] {
            signalWasFirst = spied.calls == QByteArrayList{signal};
            openMenu()->close();
        });
    QMouseEvent press = mouse(QEvent::MouseButtonPress, QPoint(x, 10));
    press.ignore();
    spied.box.mousePressEvent(&press);
    QCOMPARE(spied.calls, QByteArrayList{signal});
    QCOMPARE(signalWasFirst, hasMenu);
    QVERIFY(press.isAccepted());
}

void tst_QorGraphNodeView::releaseIsToldByZone_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<QByteArray>("signal");
    QTest::newRow("input strip") << 6 << QByteArray("inputAreaReleased");
    QTest::newRow("body left") << 7 << QByteArray("released");
    QTest::newRow("body right") << 73 << QByteArray("released");
    QTest::newRow("output strip") << 74 << QByteArray("outputAreaReleased");
}

void tst_QorGraphNodeView::releaseIsToldByZone()
{
    QFETCH(int, x);
    QFETCH(QByteArray, signal);
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    QMouseEvent release = mouse(QEvent::MouseButtonRelease, QPoint(x, 10));
    release.ignore();
    spied.box.mouseReleaseEvent(&release);
    QCOMPARE(spied.calls, QByteArrayList{signal});
    QVERIFY(release.isAccepted());
    QVERIFY(!openMenu());
}

void tst_QorGraphNodeView::pressIsTraced()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    LogCapture log;
    QMouseEvent press = mouse(QEvent::MouseButtonPress, QPoint(40, 10));
    spied.box.mousePressEvent(&press);
    QCOMPARE(log.take(), QByteArrayList({"3 QorGraphNodeView::mousePressEvent: n, e->pos()=40,10\n",
                                         "3 QorGraphNodeView::mousePressEvent: body hit.\n"}));
    whenMenuOpens(&spied.shown.canvas, [] { openMenu()->close(); });
    QMouseEvent strip = mouse(QEvent::MouseButtonPress, QPoint(2, 10));
    spied.box.mousePressEvent(&strip);
    QCOMPARE(log.take(), QByteArrayList({"3 QorGraphNodeView::mousePressEvent: n, e->pos()=2,10\n",
                                         "3 QorGraphNodeView::showFields:\n"}));
}

void tst_QorGraphNodeView::boxIsPaintedToThePixel_data()
{
    QTest::addColumn<QRectF>("place");
    QTest::addColumn<QRectF>("input");
    QTest::addColumn<QRectF>("output");
    QTest::addColumn<QRect>("leftArrow");
    QTest::addColumn<QRect>("rightArrow");
    // The arrow boxes before rounding: (51, 56.8, 4.4, 6.4) and (124.6, 56.8, 4.4, 6.4).
    QTest::newRow("usual") << QRectF(50, 50, 80, 20) << QRectF(50, 50, 6.4, 20) << QRectF(123.6, 50, 6.4, 20)
                           << QRect(51, 57, 4, 6) << QRect(125, 57, 4, 6);
    // (21.25, 34.1, 10.8, 12.8) and (168.45, 34.1, 10.8, 12.8)
    QTest::newRow("twice as large, between pixels")
        << QRectF(20.25, 20.5, 160, 40) << QRectF(20.25, 20.5, 12.8, 40) << QRectF(167.45, 20.5, 12.8, 40)
        << QRect(21, 34, 11, 13) << QRect(168, 34, 11, 13);
    // (51, 50.68, -1.36, 0.64) and (58.36, 50.68, -1.36, 0.64)
    QTest::newRow("a tenth") << QRectF(50, 50, 8, 2) << QRectF(50, 50, 0.64, 2) << QRectF(57.36, 50, 0.64, 2)
                             << QRect(51, 51, -1, 0) << QRect(58, 51, -1, 0);
}

void tst_QorGraphNodeView::boxIsPaintedToThePixel()
{
    QFETCH(QRectF, place);
    QFETCH(QRectF, input);
    QFETCH(QRectF, output);
    QFETCH(QRect, leftArrow);
    QFETCH(QRect, rightArrow);
    Box shown;
    shown.box.move(place.topLeft());
    shown.box.resize(place.size());
    shown.box.setAlpha(200);

    QImage expected(200, 150, QImage::Format_RGB32);
    expected.fill(Qt::black);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor base(120, 120, 120, 200);
    painter.fillRect(place, base);
    painter.fillRect(input, base.darker(130));
    painter.fillRect(output, base.darker(130));
    painter.setPen(base.lighter(150));
    painter.setBrush(base.lighter(150));
    for (const QRect& box : {leftArrow, rightArrow}) {
        const QPointF corners[] = {QPointF(box.x() + box.width(), box.y() + box.height() / 2.0),
                                   QPointF(box.topLeft()), QPointF(box.x(), box.y() + box.height())};
        painter.drawPolygon(corners, 3);
    }
    QCOMPARE(shown.box.picture(), expected);
}

void tst_QorGraphNodeView::boxIsPaintedInItsColors()
{
    Box shown;
    const QImage image = shown.box.picture();
    const QColor base(120, 120, 120);
    const QColor strip = painted(base.darker(130));
    // The body to its very corners, between the strips.
    QCOMPARE(image.pixelColor(90, 50), base);
    QCOMPARE(image.pixelColor(90, 69), base);
    QCOMPARE(image.pixelColor(90, 49), QColor(Qt::black));
    QCOMPARE(image.pixelColor(90, 70), QColor(Qt::black));
    QCOMPARE(image.pixelColor(49, 52), QColor(Qt::black));
    QCOMPARE(image.pixelColor(130, 52), QColor(Qt::black));
    for (int x : {50, 55, 124, 129})
        QCOMPARE(image.pixelColor(x, 52), strip);
    QCOMPARE(image.pixelColor(57, 52), base);
    QCOMPARE(image.pixelColor(122, 52), base);
}

void tst_QorGraphNodeView::selectedBoxHasTheHighlightColor()
{
    Box shown;
    shown.box.select();
    const QImage image = shown.box.picture();
    QCOMPARE(image.pixelColor(90, 52), QColor(147, 147, 0));
    QCOMPARE(image.pixelColor(52, 52), painted(QColor(147, 147, 0).darker(130)));
}

void tst_QorGraphNodeView::hoveredBoxIsLighter()
{
    Box shown;
    const QColor base(120, 120, 120);
    QEvent event(QEvent::Enter);
    shown.box.enterEvent(&event);
    QCOMPARE(shown.box.picture().pixelColor(90, 52), painted(base.lighter(130)));
    QCOMPARE(shown.box.picture().pixelColor(52, 52), painted(base.lighter(130).darker(130)));
    shown.box.leaveEvent(&event);
    QCOMPARE(shown.box.picture().pixelColor(90, 52), base);
}

void tst_QorGraphNodeView::alphaGoesIntoTheBox()
{
    Box shown;
    shown.box.setAlpha(127);
    const QColor half = shown.box.picture().pixelColor(90, 52);
    QVERIFY2(qAbs(half.red() - 60) <= 1, qPrintable(half.name()));
    // The strip lies on the body, so that it is less transparent.
    const QColor strip = shown.box.picture().pixelColor(52, 52);
    QVERIFY2(qAbs(strip.red() - (46 + 30)) <= 2, qPrintable(strip.name()));
}

void tst_QorGraphNodeView::bothArrowsPointToTheRight()
{
    Box shown;
    const QImage image = shown.box.picture();
    const QColor arrow = painted(QColor(120, 120, 120).lighter(150));
    // The left arrow box is (51, 57) to (55, 63), the right one 73.6 further on: (125, 57) to (129, 63).
    for (int x : {51, 125}) {
        QCOMPARE(image.pixelColor(x, 60), arrow);
        QCOMPARE(image.pixelColor(x + 1, 60), arrow);
        QCOMPARE(image.pixelColor(x, 58), arrow);
        QVERIFY(image.pixelColor(x + 3, 57) != arrow);
        QVERIFY(image.pixelColor(x + 3, 62) != arrow);
    }
    QCOMPARE(image.pixelColor(52, 54), painted(QColor(120, 120, 120).darker(130)));
}

void tst_QorGraphNodeView::arrowsDependOnTheWidthAlone()
{
    Box shown;
    shown.box.resize(80, 60);
    const QImage image = shown.box.picture();
    const QColor arrow = painted(QColor(120, 120, 120).lighter(150));
    QCOMPARE(image.pixelColor(52, 80), arrow);
    QCOMPARE(image.pixelColor(52, 74), painted(QColor(120, 120, 120).darker(130)));
    QCOMPARE(image.pixelColor(52, 86), painted(QColor(120, 120, 120).darker(130)));
}

void tst_QorGraphNodeView::arrowMayPointToTheLeft()
{
    Box shown;
    QImage image(60, 60, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    shown.box.paintArrow(&painter, QRect(10, 10, 20, 40), TestBox::ArrowLeft, Qt::red);
    QCOMPARE(image.pixelColor(10, 30), QColor(Qt::red));
    QCOMPARE(image.pixelColor(29, 12), QColor(Qt::red));
    QCOMPARE(image.pixelColor(29, 47), QColor(Qt::red));
    QCOMPARE(image.pixelColor(12, 14), QColor(Qt::black));
    image.fill(Qt::black);
    shown.box.paintArrow(&painter, QRect(10, 10, 20, 40), TestBox::ArrowRight, Qt::red);
    QCOMPARE(image.pixelColor(30, 30), QColor(Qt::red));
    QCOMPARE(image.pixelColor(11, 14), QColor(Qt::red));
    QCOMPARE(image.pixelColor(11, 47), QColor(Qt::red));
    QCOMPARE(image.pixelColor(28, 14), QColor(Qt::black));
}

void tst_QorGraphNodeView::arrowKeepsThePen()
{
    Box shown;
    QImage image(60, 60, QImage::Format_RGB32);
    QPainter painter(&image);
    const QPen pen(Qt::green, 3.0);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    shown.box.paintArrow(&painter, QRect(10, 10, 20, 40), TestBox::ArrowLeft, Qt::red);
    QCOMPARE(painter.pen(), pen);
    QCOMPARE(painter.brush(), QBrush(Qt::red));
}

void tst_QorGraphNodeView::labelIsTheIdInTheMiddle()
{
    const auto node = routedNode("MM");
    Box shown(node.get());
    const QImage image = shown.box.picture();
    QRect inked;
    for (int y = 50; y < 70; ++y) {
        for (int x = 58; x < 122; ++x) {
            if (image.pixelColor(x, y) == QColor(240, 240, 240))
                inked |= QRect(x, y, 1, 1);
        }
    }
    QVERIFY(!inked.isEmpty());
    QVERIFY2(qAbs(inked.center().x() - 90) <= 1, qPrintable(QString::number(inked.center().x())));
    QVERIFY(qAbs(inked.center().y() - 60) <= 3);
    // The name again, from the naming of the runtime.
    const auto unnamed = routedNode();
    Box other(unnamed.get());
    QVERIFY(other.box.picture() != image);
    QVERIFY(QString::fromStdString(unnamed->getIDStr()).startsWith(QStringLiteral("Routed#")));
}

void tst_QorGraphNodeView::labelHasTheTypeAboveTheId()
{
    const auto node = routedNode("iii");
    Box shown(node.get());
    shown.box.resize(80, 60);
    shown.box.setNodeTypeVisible(true);
    const QImage image = shown.box.picture();
    const auto inkedIn = [&](int from, int to) {
        int left = 200;
        int right = 0;
        for (int y = from; y < to; ++y) {
            for (int x = 58; x < 122; ++x) {
                if (image.pixelColor(x, y).red() > 200) {
                    left = std::min(left, x);
                    right = std::max(right, x);
                }
            }
        }
        return right - left;
    };
    // "Routed" is wider than "iii", and each line lies on its side of the middle.
    QVERIFY(inkedIn(50, 80) > inkedIn(82, 110));
    QVERIFY(inkedIn(82, 110) > 0);
}

void tst_QorGraphNodeView::labelIsWhatAPainterDraws_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QRectF>("place");
    QTest::addColumn<bool>("hasType");
    const QRectF usual(50, 50, 80, 20);
    QTest::newRow("short") << QStringLiteral("Clock") << usual << false;
    QTest::newRow("one letter") << QStringLiteral("i") << usual << false;
    QTest::newRow("cut off") << QStringLiteral("A name that is wider than its box") << usual << false;
    QTest::newRow("between pixels") << QStringLiteral("Clock") << QRectF(50.3, 50.7, 81.6, 21.2) << false;
    QTest::newRow("low") << QStringLiteral("Clock") << QRectF(50, 50, 36, 9) << false;
    QTest::newRow("large") << QStringLiteral("Clock") << QRectF(10, 10, 160, 41) << false;
    QTest::newRow("two lines") << QStringLiteral("Clock") << QRectF(20, 20, 120, 70) << true;
    QTest::newRow("two lines cut off") << QStringLiteral("Clock") << usual << true;
    QTest::newRow("two lines almost cut off") << QStringLiteral("Clock") << QRectF(50, 50, 80, 31) << true;
    QTest::newRow("blanks") << QStringLiteral("  a  b ") << usual << false;
    QTest::newRow("tabulators and returns") << QStringLiteral("a\tb\rc") << QRectF(20, 20, 120, 70) << false;
    QTest::newRow("several lines") << QStringLiteral("a\nbcd\n\ne") << QRectF(20, 20, 120, 110) << false;
    QTest::newRow("other letters") << QString::fromUtf8("Zähler µ £") << usual << false;
}

void tst_QorGraphNodeView::labelIsWhatAPainterDraws()
{
    QFETCH(QString, name);
    QFETCH(QRectF, place);
    QFETCH(bool, hasType);
    const auto node = routedNode(name.toLatin1().constData());
    Box shown(node.get());
    QFont font(QStringLiteral("Arial"));
    font.setWeight(75);
    shown.box.setFont(font);
    shown.box.move(place.topLeft());
    shown.box.resize(place.size());
    shown.box.setNodeTypeVisible(hasType);
    const QImage image = shown.box.picture();

    Box plain;
    plain.box.setFont(font);
    plain.box.move(place.topLeft());
    plain.box.resize(place.size());
    QImage expected = plain.box.picture();
    {
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QColor(240, 240, 240));
        painter.setFont(font);
        const QString text = (hasType ? QStringLiteral("Routed\n") : QString()) + name;
        painter.drawText(place.toRect(), Qt::AlignHCenter | Qt::AlignVCenter, text);
    }
    QCOMPARE(image, expected);
    QCOMPARE(shown.box.picture(), expected); // from what was laid out before
}

void tst_QorGraphNodeView::labelFollowsNameAndFont()
{
    const auto node = routedNode("first");
    Box shown(node.get());
    const QImage first = shown.box.picture();
    Tiny::setName(node.get(), "other");
    const QImage other = shown.box.picture();
    QVERIFY(other != first);
    QFont large = shown.box.font();
    large.setPointSize(large.pointSize() + 4);
    shown.box.setFont(large);
    QVERIFY(shown.box.picture() != other);
}

void tst_QorGraphNodeView::labelOfADeadNodeIsEmpty()
{
    Box empty;
    empty.box.setNodeTypeVisible(true);
    const QImage image = empty.box.picture();
    for (int y = 50; y < 70; ++y) {
        for (int x = 58; x < 122; ++x)
            QCOMPARE(image.pixelColor(x, y), QColor(120, 120, 120));
    }
}

void tst_QorGraphNodeView::inputMenuHoldsWhatReceives()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    QCOMPARE(spied.entries(TestBox::InputMenu), list({"value", "go", "title", "children", "single"}));
}

void tst_QorGraphNodeView::outputMenuHoldsWhatSends()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    QCOMPARE(spied.entries(TestBox::OutputMenu), list({"value", "gone", "title", "children", "single"}));
}

void tst_QorGraphNodeView::routedFieldsAreCheckedAndBoldInTheirMenuOnly()
{
    const auto from = routedNode("from");
    const auto to = routedNode("to");
    connectParts(*from, 0, *to, 0);
    const auto marked = [](const Node* node, TestBox::MenuType type) {
        SpiedBox spied(const_cast<Node*>(node));
        QStringList names;
        spied.open(type, [&](QMenu* menu) {
            for (const QAction* action : menu->actions()) {
                QVERIFY(action->isCheckable());
                QCOMPARE(action->font().weight() == 75, action->isChecked());
                if (action->isChecked())
                    names << action->text();
            }
        });
        return names;
    };
    QCOMPARE(marked(from.get(), TestBox::OutputMenu), list({"value"}));
    QCOMPARE(marked(from.get(), TestBox::InputMenu), QStringList());
    QCOMPARE(marked(to.get(), TestBox::OutputMenu), QStringList());
    QCOMPARE(marked(to.get(), TestBox::InputMenu), list({"value"}));
}

void tst_QorGraphNodeView::entriesHaveIconAndNoShortcut()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    spied.open(TestBox::InputMenu, [](QMenu* menu) {
        const NodePartDataType types[] = {SFFLOAT_DT, SFFLOAT_DT, SFSTRING_DT, MFNODE_DT, SFNODE_DT};
        for (int i = 0; i < menu->actions().size(); ++i) {
            const QAction* action = menu->actions().at(i);
            const QPixmap icon = QorIconFactory::the()->fieldIcon(types[i]);
            QCOMPARE(action->icon().pixmap(icon.size()).toImage(), icon.toImage());
            QVERIFY(action->shortcut().isEmpty());
        }
        if (menu->layout())
            QCOMPARE(menu->layout()->spacing(), 2);
    });
}

void tst_QorGraphNodeView::fieldWithoutDescriptionIsLeftOut()
{
    const auto node = routedNode("n");
    Tiny::addFieldWithoutDescription(node.get());
    SpiedBox spied(node.get());
    QCOMPARE(spied.entries(TestBox::OutputMenu), list({"value", "gone", "title", "children", "single"}));
}

void tst_QorGraphNodeView::bothMenusAreOne()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    QMenu* first = nullptr;
    QMenu* second = nullptr;
    spied.open(TestBox::InputMenu, [&](QMenu* menu) { first = menu; });
    spied.open(TestBox::OutputMenu, [&](QMenu* menu) {
        second = menu;
        QCOMPARE(menu->actions().size(), 5);
    });
    QCOMPARE(first, second);
    QCOMPARE(first->parent(), &spied.shown.canvas);
    QCOMPARE(first->palette().color(QPalette::Button), spied.box.palette().color(QPalette::Button));
}

void tst_QorGraphNodeView::menuWithoutFieldsIsEmpty()
{
    const std::unique_ptr<Node> node(Tiny::makeNode(Tiny::makeType("Bare"), "bare"));
    SpiedBox spied(node.get());
    QCOMPARE(spied.entries(TestBox::InputMenu), QStringList());
    SpiedBox dead(nullptr);
    QCOMPARE(dead.entries(TestBox::OutputMenu), QStringList());
    QVERIFY(dead.calls.isEmpty());
}

void tst_QorGraphNodeView::inputMenuHangsUnderTheLeftEdge()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    spied.open(TestBox::InputMenu, [&](QMenu* menu) {
        const QPoint corner = spied.shown.canvas.mapToGlobal(QPoint(108, 80));
        QCOMPARE(spied.box.calculateMenuPosition(TestBox::InputMenu),
                 QPointF(corner - QPoint(menu->width(), 0)));
        // The platform may set popups off by a frame that it thinks of.
        const QPoint off = menu->pos() - (corner - QPoint(menu->width(), 0));
        QVERIFY(off.manhattanLength() <= 4);
    });
}

void tst_QorGraphNodeView::outputMenuHangsUnderItsStrip()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    spied.open(TestBox::OutputMenu, [&](QMenu* menu) {
        // 100 + 73.6 and 60 + 20.
        const QPoint corner = spied.shown.canvas.mapToGlobal(QPoint(174, 80));
        QCOMPARE(spied.box.calculateMenuPosition(TestBox::OutputMenu), QPointF(corner));
        QVERIFY((menu->pos() - corner).manhattanLength() <= 4);
        QCOMPARE(spied.box.calculateMenuPosition(static_cast<TestBox::MenuType>(2)), QPointF(0, 0));
    });
}

void tst_QorGraphNodeView::menuOffsetStaysWhenTheBoxIsScaled()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get(), QSizeF(160, 40));
    spied.open(TestBox::InputMenu, [&](QMenu* menu) {
        QCOMPARE(spied.box.calculateMenuPosition(TestBox::InputMenu),
                 QPointF(spied.shown.canvas.mapToGlobal(QPoint(108, 100)) - QPoint(menu->width(), 0)));
    });
}

void tst_QorGraphNodeView::choiceIsToldByName()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    whenMenuOpens(&spied.shown.canvas, [] { GraphOnScreen::chooseByMouse("go"); });
    spied.box.showFields(TestBox::InputMenu);
    QCOMPARE(spied.calls, QByteArrayList{"in go"});
    whenMenuOpens(&spied.shown.canvas, [] { GraphOnScreen::chooseByMouse("gone"); });
    spied.box.showFields(TestBox::OutputMenu);
    QCOMPARE(spied.calls, QByteArrayList({"in go", "out gone"}));
}

void tst_QorGraphNodeView::ampersandInANameIsKept()
{
    const std::unique_ptr<Node> node(
        Tiny::makeNode(Tiny::makeType("Odd", {part("a&b", SFFLOAT_DT), part("plain", SFFLOAT_DT)}), "odd"));
    SpiedBox spied(node.get());
    spied.open(TestBox::OutputMenu, [](QMenu* menu) { menu->actions().first()->trigger(); });
    QCOMPARE(spied.calls, QByteArrayList{"out a&b"});
    // As a desktop does that marks a letter of each entry.
    spied.open(TestBox::OutputMenu, [](QMenu* menu) {
        menu->actions().last()->setText(QStringLiteral("&plain"));
        menu->actions().last()->trigger();
    });
    QCOMPARE(spied.calls.last(), QByteArray("out plain"));
}

void tst_QorGraphNodeView::foreignSenderIsIgnored()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    spied.box.onInputSlotClicked();
    spied.box.onOutputSlotClicked();
    QObject sender;
    connect(&sender, &QObject::objectNameChanged, &spied.box, &TestBox::onInputSlotClicked);
    connect(&sender, &QObject::objectNameChanged, &spied.box, &TestBox::onOutputSlotClicked);
    sender.setObjectName(QStringLiteral("x"));
    QVERIFY(spied.calls.isEmpty());
}

void tst_QorGraphNodeView::menuCanBeHidden()
{
    const auto node = routedNode("n");
    SpiedBox spied(node.get());
    spied.box.hideFields(TestBox::InputMenu); // none yet
    spied.open(TestBox::InputMenu, [&](QMenu* menu) {
        spied.box.hideFields(TestBox::OutputMenu);
        QVERIFY(!menu->isVisible());
    });
}

void tst_QorGraphNodeView::arrowKeysNudge()
{
    Box shown;
    const auto press = [&](Qt::Key key) {
        QKeyEvent event(QEvent::KeyPress, key, {});
        shown.box.move(QPointF(10.75, 20.5));
        shown.box.keyPressEvent(&event);
        return event.isAccepted();
    };
    QVERIFY(press(Qt::Key_Left));
    QCOMPARE(shown.box.pos(), QPointF(8, 20));
    QVERIFY(press(Qt::Key_Up));
    QCOMPARE(shown.box.pos(), QPointF(10, 18));
    QVERIFY(press(Qt::Key_Right));
    QCOMPARE(shown.box.pos(), QPointF(12, 20));
    QVERIFY(press(Qt::Key_Down));
    QCOMPARE(shown.box.pos(), QPointF(10, 22));
}

void tst_QorGraphNodeView::otherKeysAreIgnored()
{
    Box shown;
    QKeyEvent event(QEvent::KeyPress, Qt::Key_Space, {});
    event.accept();
    shown.box.keyPressEvent(&event);
    QVERIFY(!event.isAccepted());
    QCOMPARE(shown.box.pos(), QPointF(50, 50));
}

QTEST_MAIN(tst_QorGraphNodeView)
#include "tst_QorGraphNodeView.moc"
