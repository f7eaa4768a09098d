#include "LogCapture.h"
#include "QorImgCanvasView.h"
#include <QtCore/QRandomGenerator>
#include <QtGui/QPainter>
#include <QtTest>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <cmath>
#include <map>

using namespace Orvane::Qt4;

namespace {

using Point = QorImgCanvasView::Point2f;
using Curve = std::vector<Point>;

enum Channel : unsigned int { RED = 1, GREEN = 2, BLUE = 4, ALPHA = 8 };

/// A canvas of 201 by 101 pixels: a hundredth of the table is two columns, a hundredth of a value one row.
class Canvas : public QorImgCanvasView
{
public:
    explicit Canvas(unsigned int channels = 0)
        : QorImgCanvasView(nullptr)
    {
        resize(201, 101);
        show();
        setRed(channels & RED);
        setGreen(channels & GREEN);
        setBlue(channels & BLUE);
        setAlpha(channels & ALPHA);
    }
    ~Canvas() override
    {
        osg::ImagePtr image = getImage();
        if (ownsImage)
            osg::subRefCP(image);
    }

    using QorImgCanvasView::drag;
    using QorImgCanvasView::drawGrid;
    using QorImgCanvasView::findPoint;
    using QorImgCanvasView::insertPoint;
    using QorImgCanvasView::readTable;
    using QorImgCanvasView::updateTable;

    void press(int x, int y, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {})
    {
        QMouseEvent event(QEvent::MouseButtonPress, QPointF(x, y), button, button, keys);
        mousePressEvent(&event);
    }
    void move(int x, int y)
    {
        QMouseEvent event(QEvent::MouseMove, QPointF(x, y), Qt::NoButton, Qt::LeftButton, {});
        mouseMoveEvent(&event);
    }
    void release(int x, int y, Qt::MouseButton button = Qt::LeftButton)
    {
        QMouseEvent event(QEvent::MouseButtonRelease, QPointF(x, y), button, Qt::NoButton, {});
        mouseReleaseEvent(&event);
    }
    void click(int x, int y)
    {
        press(x, y);
        release(x, y);
    }

    /// The byte of an entry of the table.
    int entry(int i, int channel) { return getImage()->getData(0, 0, 0)[4 * i + channel]; }
    /// All bytes of a channel.
    std::vector<int> entries(int channel)
    {
        std::vector<int> bytes;
        for (int i = 0; i < getImage()->getWidth(); ++i)
            bytes.push_back(entry(i, channel));
        return bytes;
    }
    /// The picture of the widget without its frame.
    QImage picture() { return grab().toImage().convertToFormat(QImage::Format_RGB32); }
    QRgb colorAt(int x, int y) { return picture().pixel(x, y) & 0xffffff; }

    bool ownsImage = true;
};

osg::ImagePtr makeImage(int width, int height = 1, osg::UInt32 format = osg::Image::OSG_RGBA_PF)
{
    osg::ImagePtr image = osg::Image::create();
    image->set(format, width, height);
    return image;
}

/// The arithmetic of a table, written down once more: one channel of one curve.
std::vector<int> sampled(const Curve& curve, int size)
{
    std::vector<int> table(static_cast<std::size_t>(size), 0);
    const float n = static_cast<float>(size - 1);
    const float step = 1.0F / n;
    for (std::size_t k = 1; k < curve.size(); ++k) {
        const float x0 = curve[k - 1].x;
        const float y0 = curve[k - 1].y;
        const float slope = (curve[k].y - y0) / (curve[k].x - x0);
        float x = x0;
        for (int i = static_cast<int>(n * x0); i <= static_cast<int>(n * curve[k].x); ++i) {
            const float value = ((x - x0) * slope + y0) * 255.0F;
            table[static_cast<std::size_t>(i)] =
                std::isfinite(value) ? static_cast<unsigned char>(static_cast<int>(value)) : 0;
            x += step;
        }
    }
    return table;
}

/// Closes the next file dialog with a name typed into it.
void answerDialog(const QString& name)
{
    QTimer::singleShot(200, [name] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        auto* line = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        line->setText(name);
        QMetaObject::invokeMethod(dialog, "accept");
    });
}

} // namespace

class tst_QorImgCanvasView : public QObject
{
    Q_OBJECT

private slots:
    void frameCursorAndName();
    void newTableHas256Entries();
    void noChannelIsEditedAtFirst();
    void channelsAreSwitchedOnAndOff();

    void findPointOfAnEmptyCurve();
    void findPointGivesIndexOrPlace();
    void findPointToleranceGrowsWithX();
    void findPointInARange();
    void insertPointKeepsTheOrder();

    void straightCurvesGiveARamp();
    void tableFollowsTheArithmetic_data();
    void tableFollowsTheArithmetic();
    void paintedCurveFollowsTheArithmetic();
    void everyChannelIsSampled();
    void verticalStepIsTakenAsItIs();
    void sizeOfOneEntry();
    void absurdSizesAreHarmless();
    void setSizeMakesATableAndTells();

    void clickMakesAPoint();
    void clickOverwritesAPoint();
    void strokeOverwritesWhatItCrosses();
    void strokeFromRightToLeftDoesTheSame();
    void strokeThatTurnsRound();
    void edgesAreReachedExactly();
    void strokeOutsideOfTheWidgetIsHeldInside();
    void strokeWritesEveryChannelThatIsOn();
    void pressWithoutAChannelChangesNothing();
    void pressTellsTwice();
    void shiftKeepsTheHeight();
    void altLetsTheCurveOnlyFall();
    void controlLetsTheCurveOnlyRise();
    void twoModifiersAreNone();
    void moveWithoutAPressIsIgnored();
    void strokeIsLogged();

    void rightButtonPreviewsAndPlacesOnePoint();
    void middleButtonPlacesNothing();
    void previewStaysUntilTheRelease();
    void previewOfACurveWithoutPoints();
    void previewBehindTheLastPoint();
    void curveReplacedDuringAStroke();
    void resizedDuringAStroke();

    void clearMakesChosenCurvesStraight();
    void clearWithoutAChannelOnlyRepaints();
    void setImageReadsTheTable();
    void tableWiderThanTheWidget();
    void imagesOfAnotherFormAreIgnored();
    void nullAndEmptyImagesAreIgnored();
    void tableOfOneEntryIsRead();
    void narrowWidgets();
    void imageChangedByItsOwnerIsNotOverrun();

    void resizeSnapsToPixelColumns();
    void resizeLeavesTwoPointsAlone();

    void curvesAreDrawnInOrder();
    void gridHasItsLines();
    void gridOfSizeZeroHasNoLines();
    void denseGridIsBounded();

    void savesAndOpens_data();
    void savesAndOpens();
    void openIgnoresOtherNames();
    void openOfABrokenFileKeepsTheTable();
    void openOfACutOrHostileFile_data();
    void openOfACutOrHostileFile();
    void openOfAnImageOfAnotherFormKeepsTheTable();
};

void tst_QorImgCanvasView::frameCursorAndName()
{
    Canvas canvas;
    QCOMPARE(canvas.frameStyle(), 18);
    QCOMPARE(canvas.cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(canvas.objectName(), QString());
    QorImgCanvasView named(nullptr, "painter");
    QCOMPARE(named.objectName(), QStringLiteral("painter"));
    osg::subRefCP(named.getImage());
}

void tst_QorImgCanvasView::newTableHas256Entries()
{
    Canvas canvas;
    QCOMPARE(canvas.getImage()->getWidth(), 256);
    QCOMPARE(canvas.getImage()->getHeight(), 1);
    QCOMPARE(canvas.getImage()->getDepth(), 1);
    QCOMPARE(canvas.getImage()->getPixelFormat(), 6408U);
    QCOMPARE(canvas.getImage()->getDataType(), 5121);
}

void tst_QorImgCanvasView::noChannelIsEditedAtFirst()
{
    Canvas canvas;
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    canvas.click(100, 0);
    QCOMPARE(changed.count(), 0);
}

void tst_QorImgCanvasView::channelsAreSwitchedOnAndOff()
{
    Canvas canvas(RED | GREEN | BLUE | ALPHA);
    canvas.setGreen(false);
    canvas.click(100, 0);
    canvas.setRed(false);
    canvas.setGreen(true);
    canvas.setBlue(false);
    canvas.setAlpha(false);
    canvas.click(100, 100);
    QCOMPARE(canvas.entry(127, 0), canvas.entry(127, 2));
    QVERIFY(canvas.entry(127, 0) > 250);
    QVERIFY(canvas.entry(127, 1) < 5);
    QVERIFY(canvas.entry(127, 3) > 250);
}

void tst_QorImgCanvasView::findPointOfAnEmptyCurve()
{
    Canvas canvas;
    Curve curve;
    QCOMPARE(canvas.findPoint(&curve, 0.5F), -1);
}

void tst_QorImgCanvasView::findPointGivesIndexOrPlace()
{
    Canvas canvas;
    Curve curve = {{0.0F, 0.0F}, {0.25F, 0.0F}, {0.5F, 0.0F}, {1.0F, 0.0F}};
    QCOMPARE(canvas.findPoint(&curve, 0.0F), 0);
    QCOMPARE(canvas.findPoint(&curve, 0.25F), 1);
    QCOMPARE(canvas.findPoint(&curve, 0.5F), 2);
    QCOMPARE(canvas.findPoint(&curve, 1.0F), 3);
    QCOMPARE(canvas.findPoint(&curve, -0.1F), -1);
    QCOMPARE(canvas.findPoint(&curve, 0.1F), -2);
    QCOMPARE(canvas.findPoint(&curve, 0.3F), -3);
    QCOMPARE(canvas.findPoint(&curve, 0.75F), -4);
    QCOMPARE(canvas.findPoint(&curve, 1.5F), -5);
}

void tst_QorImgCanvasView::findPointToleranceGrowsWithX()
{
    Canvas canvas;
    Curve curve = {{0.0F, 0.0F}, {0.5F, 0.0F}};
    QCOMPARE(canvas.findPoint(&curve, 0.5F + 0.5e-6F), 1);
    QCOMPARE(canvas.findPoint(&curve, 0.5F + 3e-6F), -3);
    QCOMPARE(canvas.findPoint(&curve, 1e-9F), -2); // at 0 only 0 itself matches
}

void tst_QorImgCanvasView::findPointInARange()
{
    Canvas canvas;
    Curve curve = {{0.0F, 0.0F}, {0.25F, 0.0F}, {0.5F, 0.0F}, {1.0F, 0.0F}};
    QCOMPARE(canvas.findPoint(&curve, 0.0F, 1, 2), -2);
    QCOMPARE(canvas.findPoint(&curve, 0.5F, 2, 3), 2);
    QCOMPARE(canvas.findPoint(&curve, 0.5F, 3, 2), -4);
}

void tst_QorImgCanvasView::insertPointKeepsTheOrder()
{
    Canvas canvas;
    Curve curve = {{0.0F, 0.1F}, {1.0F, 0.9F}};
    float oldY = 5.0F;
    QCOMPARE(canvas.insertPoint(&curve, {0.5F, 0.7F}, oldY), 1);
    QCOMPARE(oldY, -1.0F);
    QCOMPARE(canvas.insertPoint(&curve, {0.5F, 0.2F}, oldY), 1);
    QCOMPARE(oldY, 0.7F);
    QCOMPARE(static_cast<int>(curve.size()), 3);
    QCOMPARE(curve[1].y, 0.2F);
    QCOMPARE(canvas.insertPoint(&curve, {2.0F, 0.0F}, oldY), 3);
}

void tst_QorImgCanvasView::straightCurvesGiveARamp()
{
    Canvas canvas;
    canvas.setSize(256);
    for (int channel = 0; channel < 4; ++channel)
        QCOMPARE(canvas.entries(channel), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
    QCOMPARE(canvas.entry(0, 0), 0);
    QVERIFY(canvas.entry(255, 0) >= 254);
}

void tst_QorImgCanvasView::tableFollowsTheArithmetic_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {2, 3, 16, 200, 256, 1000, 4096, 65536})
        QTest::addRow("%d entries", size) << size;
}

void tst_QorImgCanvasView::tableFollowsTheArithmetic()
{
    QFETCH(int, size);
    Canvas canvas(GREEN);
    Curve curve = {{0.0F, 0.0F}, {1.0F, 1.0F}};
    const QPoint clicks[] = {{20, 90}, {50, 10}, {51, 80}, {133, 33}, {0, 60}, {200, 5}};
    for (const QPoint& at : clicks) {
        canvas.click(at.x(), at.y());
        float oldY = 0.0F;
        canvas.insertPoint(
            &curve, {static_cast<float>(at.x()) / 200.0F, static_cast<float>(101 - at.y() - 1) / 100.0F},
            oldY);
    }
    canvas.setSize(size);
    QCOMPARE(canvas.getImage()->getWidth(), size);
    QCOMPARE(canvas.entries(1), sampled(curve, size));
}

void tst_QorImgCanvasView::paintedCurveFollowsTheArithmetic()
{
    // The points by their place, without any search for indices: a stroke takes away what lies between its
    // last place and the next one.
    std::map<float, float> painted[4];
    for (auto& curve : painted)
        curve = {{0.0F, 0.0F}, {1.0F, 1.0F}};
    const auto x = [](int column) { return static_cast<float>(column) / 200.0F; };
    const auto y = [](int line) { return static_cast<float>(100 - line) / 100.0F; };

    Canvas canvas;
    QRandomGenerator random(20); // always the same strokes
    for (int stroke = 0; stroke < 60; ++stroke) {
        const unsigned int channels = 1 + random.bounded(15U);
        canvas.setRed(channels & RED);
        canvas.setGreen(channels & GREEN);
        canvas.setBlue(channels & BLUE);
        canvas.setAlpha(channels & ALPHA);
        int column = random.bounded(201);
        int line = random.bounded(101);
        canvas.press(column, line);
        for (auto& curve : painted)
            if (channels & (1U << (&curve - painted)))
                curve[x(column)] = y(line);
        for (int step = random.bounded(12); step > 0; --step) {
            const int last = column;
            column = qBound(0, column + random.bounded(-40, 41), 200);
            line = random.bounded(101);
            canvas.move(column, line);
            const float low = x(std::min(last, column));
            const float high = x(std::max(last, column));
            for (auto& curve : painted) {
                if (!(channels & (1U << (&curve - painted))))
                    continue;
                if (low < high)
                    curve.erase(curve.upper_bound(low), curve.lower_bound(high));
                curve[x(column)] = y(line);
            }
        }
        canvas.release(column, line);
        if (stroke % 20 == 7)
            canvas.setSize(2 + static_cast<int>(random.bounded(500U)));
        for (int channel = 0; channel < 4; ++channel) {
            Curve curve;
            for (const auto& [place, value] : painted[channel])
                curve.push_back({place, value});
            QCOMPARE(canvas.entries(channel), sampled(curve, canvas.getImage()->getWidth()));
        }
    }
}

void tst_QorImgCanvasView::everyChannelIsSampled()
{
    Canvas canvas(RED);
    osg::ImagePtr image = canvas.getImage();
    std::fill_n(image->getData(0, 0, 0), image->getSize(), osg::UInt8(77));
    canvas.click(100, 0);
    QCOMPARE(canvas.entries(3), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::verticalStepIsTakenAsItIs()
{
    Canvas canvas;
    osg::ImagePtr image = makeImage(1000);
    for (int i = 0; i < 1000; ++i)
        image->getData(0, 0, 0)[4 * i] = i < 500 ? 0 : 255;
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    // Points that share a column of pixels make vertical steps, and segments without a length.
    canvas.updateTable();
    Curve curve;
    for (int i = 0; i < 1000; ++i)
        curve.push_back({static_cast<float>(static_cast<int>(static_cast<float>(200 * i) / 999.0F)) / 200.0F,
                         i < 500 ? 0.0F : 1.0F});
    std::vector<int> expected = sampled(curve, 1000);
    const std::vector<int> written = canvas.entries(0);
    for (std::size_t i = 0; i < written.size(); ++i)
        if (expected[i] != 0 || written[i] != 255) // what no segment wrote keeps its value
            QCOMPARE(written[i], expected[i]);
}

void tst_QorImgCanvasView::sizeOfOneEntry()
{
    Canvas canvas(RED);
    canvas.setSize(1);
    QCOMPARE(canvas.getImage()->getWidth(), 1);
    canvas.click(100, 0);
    canvas.click(0, 50);
    QCOMPARE(canvas.getImage()->getWidth(), 1);
    QVERIFY(!canvas.grab().isNull());
}

void tst_QorImgCanvasView::absurdSizesAreHarmless()
{
    Canvas canvas(RED);
    canvas.setSize(0);
    canvas.click(100, 0);
    canvas.setSize(-1000);
    canvas.click(50, 0);
    canvas.setSize(std::numeric_limits<int>::max());
    canvas.click(60, 0);
    canvas.setSize(16);
    QCOMPARE(static_cast<int>(canvas.entries(0).size()), 16);
}

void tst_QorImgCanvasView::setSizeMakesATableAndTells()
{
    Canvas canvas;
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    osg::ImagePtr image = canvas.getImage();
    canvas.setSize(10);
    QCOMPARE(changed.count(), 1);
    QVERIFY(canvas.getImage() == image);
    QCOMPARE(image->getWidth(), 10);
}

void tst_QorImgCanvasView::clickMakesAPoint()
{
    Canvas canvas(RED);
    canvas.click(100, 0);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
    canvas.click(50, 100);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.25F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::clickOverwritesAPoint()
{
    Canvas canvas(RED);
    canvas.click(100, 0);
    canvas.click(100, 100);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.5F, 0.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::strokeOverwritesWhatItCrosses()
{
    Canvas canvas(RED);
    for (const int x : {40, 60, 80})
        canvas.click(x, 0);
    canvas.press(20, 50);
    canvas.move(100, 50);
    canvas.release(100, 50);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.1F, 0.5F}, {0.5F, 0.5F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::strokeFromRightToLeftDoesTheSame()
{
    Canvas canvas(RED);
    for (const int x : {40, 60, 80})
        canvas.click(x, 0);
    canvas.press(100, 50);
    canvas.move(20, 50);
    canvas.release(20, 50);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.1F, 0.5F}, {0.5F, 0.5F}, {1.0F, 1.0F}}, 256));

    // Onto a point that exists.
    for (const int x : {40, 60, 80})
        canvas.click(x, 0);
    canvas.press(100, 50);
    canvas.move(40, 25);
    canvas.release(40, 25);
    QCOMPARE(canvas.entries(0),
             sampled({{0.0F, 0.0F}, {0.1F, 0.5F}, {0.2F, 0.75F}, {0.5F, 0.5F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::strokeThatTurnsRound()
{
    Canvas canvas(RED);
    canvas.press(20, 0);
    canvas.move(100, 0);
    canvas.move(60, 100);
    canvas.release(60, 100);
    QCOMPARE(canvas.entries(0),
             sampled({{0.0F, 0.0F}, {0.1F, 1.0F}, {0.3F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::edgesAreReachedExactly()
{
    Canvas canvas(RED);
    canvas.press(0, 50);
    canvas.move(200, 50);
    canvas.release(200, 50);
    // Both end points were overwritten, and nothing was added.
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.5F}, {1.0F, 0.5F}}, 256));
}

void tst_QorImgCanvasView::strokeOutsideOfTheWidgetIsHeldInside()
{
    Canvas canvas(RED);
    canvas.press(-300, -40);
    canvas.move(5000, 4000);
    canvas.release(5000, 4000);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 1.0F}, {1.0F, 0.0F}}, 256));
}

void tst_QorImgCanvasView::strokeWritesEveryChannelThatIsOn()
{
    Canvas canvas(RED | GREEN);
    canvas.press(20, 90);
    canvas.move(70, 20);
    canvas.release(70, 20);
    QCOMPARE(canvas.entries(0), canvas.entries(1));
    QCOMPARE(canvas.entries(2), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
    QVERIFY(canvas.entries(0) != canvas.entries(2));
}

void tst_QorImgCanvasView::pressWithoutAChannelChangesNothing()
{
    Canvas canvas;
    canvas.setSize(256);
    const std::vector<int> before = canvas.entries(0);
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    LogCapture log;
    canvas.press(100, 0);
    canvas.move(120, 0);
    canvas.release(120, 0);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(canvas.entries(0), before);
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorImgCanvasView::pressTellsTwice()
{
    Canvas canvas(RED);
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    canvas.press(100, 0);
    QCOMPARE(changed.count(), 2);
    canvas.move(110, 0);
    QCOMPARE(changed.count(), 3);
    canvas.release(110, 0);
    QCOMPARE(changed.count(), 4);
}

void tst_QorImgCanvasView::shiftKeepsTheHeight()
{
    Canvas canvas(RED);
    canvas.press(0, 50, Qt::LeftButton, Qt::ShiftModifier);
    canvas.move(100, 10);
    canvas.move(200, 90);
    canvas.release(200, 90);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.5F}, {0.5F, 0.5F}, {1.0F, 0.5F}}, 256));
    // The next stroke is free again.
    canvas.click(100, 0);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.5F}, {0.5F, 1.0F}, {1.0F, 0.5F}}, 256));
}

void tst_QorImgCanvasView::altLetsTheCurveOnlyFall()
{
    Canvas canvas(RED);
    canvas.press(0, 25, Qt::LeftButton, Qt::AltModifier);
    canvas.move(100, 75);
    canvas.move(200, 10);
    canvas.release(200, 10);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.75F}, {0.5F, 0.25F}, {1.0F, 0.25F}}, 256));
}

void tst_QorImgCanvasView::controlLetsTheCurveOnlyRise()
{
    Canvas canvas(RED);
    canvas.press(50, 50, Qt::LeftButton, Qt::ControlModifier);
    canvas.move(100, 75); // lower, to the right: stays
    canvas.move(200, 25); // higher, to the right: follows
    canvas.move(150, 0);  // higher, to the left: stays
    canvas.release(150, 0);
    QCOMPARE(canvas.entries(0),
             sampled({{0.0F, 0.0F}, {0.25F, 0.5F}, {0.5F, 0.5F}, {0.75F, 0.75F}, {1.0F, 0.75F}}, 256));
}

void tst_QorImgCanvasView::twoModifiersAreNone()
{
    Canvas canvas(RED);
    canvas.press(0, 50, Qt::LeftButton, Qt::ShiftModifier | Qt::ControlModifier);
    canvas.move(200, 0);
    canvas.release(200, 0);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.5F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::moveWithoutAPressIsIgnored()
{
    Canvas canvas(RED);
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    canvas.move(100, 0);
    QCOMPARE(changed.count(), 0);
}

void tst_QorImgCanvasView::strokeIsLogged()
{
    Canvas canvas(RED);
    LogCapture log;
    canvas.press(50, 25);
    QCOMPARE(log.take(), QByteArrayList{"4 (0.250000, 0.750000)\n"});
}

void tst_QorImgCanvasView::rightButtonPreviewsAndPlacesOnePoint()
{
    Canvas canvas(RED);
    canvas.press(20, 10, Qt::RightButton);
    canvas.move(60, 10);
    canvas.move(90, 10);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
    canvas.release(100, 0, Qt::RightButton);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::middleButtonPlacesNothing()
{
    Canvas canvas(RED);
    canvas.press(20, 10, Qt::MiddleButton);
    canvas.move(60, 10);
    canvas.release(100, 0, Qt::MiddleButton);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
    // The left button draws again.
    canvas.click(100, 0);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::previewStaysUntilTheRelease()
{
    Canvas canvas(RED);
    canvas.setGrid(0);
    const QImage before = canvas.picture();
    canvas.press(60, 10, Qt::MiddleButton);
    const QImage first = canvas.picture();
    QVERIFY(first != before);
    // From the left end of the curve to the point and on to its right end.
    QCOMPARE(first.pixel(60, 10) & 0xffffff, 0xff0000U);
    QCOMPARE(first.pixel(30, 55) & 0xffffff, 0xff0000U);
    canvas.move(140, 90);
    const QImage second = canvas.picture();
    QCOMPARE(second.pixel(60, 10) & 0xffffff, 0xff0000U);
    QCOMPARE(second.pixel(140, 90) & 0xffffff, 0xff0000U);
    canvas.update();
    QCOMPARE(canvas.picture(), second);
    canvas.release(140, 90, Qt::MiddleButton);
    QCOMPARE(canvas.picture(), before);
}

void tst_QorImgCanvasView::previewOfACurveWithoutPoints()
{
    Canvas canvas(RED);
    QPixmap pixmap(201, 101);
    pixmap.fill(Qt::white);
    const QImage white = pixmap.toImage();
    {
        QPainter painter(&pixmap);
        Curve none;
        Curve one = {{0.0F, 0.0F}};
        canvas.press(20, 20, Qt::MiddleButton);
        canvas.drag(&painter, &none, 0.5F, 0.5F, 0);
        canvas.drag(&painter, &one, 0.0F, 0.5F, 0);
    }
    QCOMPARE(pixmap.toImage(), white);
}

void tst_QorImgCanvasView::previewBehindTheLastPoint()
{
    Canvas canvas;
    QPixmap pixmap(201, 101);
    pixmap.fill(Qt::white);
    const QImage white = pixmap.toImage();
    {
        QPainter painter(&pixmap);
        Curve curve = {{0.0F, 0.0F}, {0.5F, 0.5F}};
        canvas.press(20, 20, Qt::MiddleButton);
        canvas.drag(&painter, &curve, 0.75F, 0.5F, 0);
    }
    QCOMPARE(pixmap.toImage(), white);
}

void tst_QorImgCanvasView::curveReplacedDuringAStroke()
{
    Canvas canvas(RED);
    for (int x = 2; x < 200; x += 2)
        canvas.click(x, x / 2);
    canvas.press(199, 10);
    canvas.clear();
    canvas.move(10, 40);
    canvas.release(10, 40);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.05F, 0.6F}, {1.0F, 1.0F}}, 256));

    for (int x = 2; x < 200; x += 2)
        canvas.click(x, x / 2);
    canvas.press(199, 10, Qt::RightButton);
    canvas.clear();
    canvas.move(10, 40);
    canvas.move(150, 40);
    canvas.release(150, 40, Qt::MiddleButton);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::resizedDuringAStroke()
{
    Canvas canvas(RED);
    for (int x = 2; x < 200; ++x)
        canvas.click(x, x / 2);
    canvas.press(199, 10);
    canvas.resize(20, 20);
    canvas.move(3, 4);
    canvas.release(3, 4);
    canvas.press(15, 10, Qt::MiddleButton);
    canvas.move(18, 3);
    canvas.resize(4, 4);
    canvas.move(1, 1);
    canvas.release(1, 1, Qt::MiddleButton);
    QVERIFY(!canvas.grab().isNull());
}

void tst_QorImgCanvasView::clearMakesChosenCurvesStraight()
{
    Canvas canvas(RED | GREEN);
    canvas.click(100, 0);
    canvas.setGreen(false);
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    canvas.clear();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {1.0F, 1.0F}}, 256));
    QCOMPARE(canvas.entries(1), sampled({{0.0F, 0.0F}, {0.5F, 1.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::clearWithoutAChannelOnlyRepaints()
{
    Canvas canvas(RED);
    canvas.click(100, 0);
    canvas.setRed(false);
    const std::vector<int> before = canvas.entries(0);
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    canvas.clear();
    QCOMPARE(changed.count(), 0);
    canvas.setSize(256);
    QCOMPARE(canvas.entries(0), before);
}

void tst_QorImgCanvasView::setImageReadsTheTable()
{
    Canvas canvas;
    osg::ImagePtr image = makeImage(5);
    const unsigned char bytes[] = {0,   0, 255, 9, 50,  0, 200, 9, 100, 0,
                                   150, 9, 150, 0, 100, 9, 200, 0, 50,  9};
    std::copy_n(bytes, sizeof bytes, image->getData(0, 0, 0));
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    QVERIFY(canvas.getImage() == image);
    QCOMPARE(changed.count(), 1);
    // Reading does not write: the table is as it was.
    QVERIFY(std::equal(std::begin(bytes), std::end(bytes), image->getData(0, 0, 0)));
    // The curves have the five points of the table.
    canvas.setSize(9);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F},
                                         {0.25F, 50 / 255.0F},
                                         {0.5F, 100 / 255.0F},
                                         {0.75F, 150 / 255.0F},
                                         {1.0F, 200 / 255.0F}},
                                        9));
}

void tst_QorImgCanvasView::tableWiderThanTheWidget()
{
    Canvas canvas(RED);
    osg::ImagePtr image = makeImage(256);
    for (int i = 0; i < 256; ++i)
        image->getData(0, 0, 0)[4 * i] = static_cast<osg::UInt8>(i);
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    // Several points share a column; a click on it changes the one that the search meets.
    canvas.click(100, 0);
    QVERIFY(canvas.entry(127, 0) > 200 || canvas.entry(128, 0) > 200);
    QVERIFY(!canvas.grab().isNull());
}

void tst_QorImgCanvasView::imagesOfAnotherFormAreIgnored()
{
    Canvas canvas;
    const osg::ImagePtr before = canvas.getImage();
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    osg::ImagePtr others[] = {makeImage(8, 2), makeImage(8, 1, osg::Image::OSG_RGB_PF), osg::Image::create()};
    others[2]->set(osg::Image::OSG_RGBA_PF, 8, 1, 2);
    for (osg::ImagePtr& other : others) {
        canvas.setImage(other);
        osg::subRefCP(other);
    }
    QCOMPARE(changed.count(), 0);
    QVERIFY(canvas.getImage() == before);
}

void tst_QorImgCanvasView::nullAndEmptyImagesAreIgnored()
{
    Canvas canvas;
    const osg::ImagePtr before = canvas.getImage();
    canvas.setImage(osg::NullFC);
    osg::ImagePtr empty = osg::Image::create();
    canvas.setImage(empty);
    osg::subRefCP(empty);
    QVERIFY(canvas.getImage() == before);
}

void tst_QorImgCanvasView::tableOfOneEntryIsRead()
{
    Canvas canvas(RED);
    osg::ImagePtr image = makeImage(1);
    image->getData(0, 0, 0)[0] = 128;
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    canvas.updateTable();
    QCOMPARE(canvas.entry(0, 0), 128); // one point is no curve
    canvas.click(200, 0);
    QVERIFY(!canvas.grab().isNull());
}

void tst_QorImgCanvasView::narrowWidgets()
{
    Canvas canvas(RED);
    for (int x = 2; x < 200; x += 2)
        canvas.click(x, x / 2);
    for (const int width : {1, 0, 2, 1, 3}) {
        canvas.resize(width, width);
        canvas.readTable();
        canvas.click(0, 0);
        canvas.click(1, 1);
        canvas.press(0, 0, Qt::RightButton);
        canvas.release(0, 0, Qt::RightButton);
    }
    QCOMPARE(static_cast<int>(canvas.entries(0).size()), 256);
}

void tst_QorImgCanvasView::imageChangedByItsOwnerIsNotOverrun()
{
    Canvas canvas(RED);
    osg::ImagePtr image = makeImage(256);
    osg::subRefCP(canvas.getImage());
    canvas.setImage(image);
    image->set(osg::Image::OSG_RGBA_PF, 2, 1);
    canvas.click(100, 0);
    QCOMPARE(image->getWidth(), 2);
    image->clearData();
    canvas.click(120, 0);
    canvas.readTable();
}

void tst_QorImgCanvasView::resizeSnapsToPixelColumns()
{
    Canvas canvas(RED);
    canvas.click(33, 0);
    canvas.click(34, 100);
    canvas.resize(11, 101); // columns of a tenth
    canvas.setSize(256);
    // 33 / 200 and 34 / 200 fall onto one column; the second one is measured against 0.165 and stays.
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.0F}, {0.1F, 1.0F}, {0.1F, 0.0F}, {1.0F, 1.0F}}, 256));
}

void tst_QorImgCanvasView::resizeLeavesTwoPointsAlone()
{
    Canvas canvas(RED);
    canvas.press(0, 30);
    canvas.move(200, 70);
    canvas.release(200, 70);
    canvas.resize(7, 9);
    canvas.setSize(100);
    QCOMPARE(canvas.entries(0), sampled({{0.0F, 0.7F}, {1.0F, 0.3F}}, 100));
}

void tst_QorImgCanvasView::curvesAreDrawnInOrder()
{
    Canvas canvas(RED);
    canvas.setGrid(0);
    // All four lie upon each other: the alpha curve is on top.
    QCOMPARE(canvas.colorAt(100, 50), QColor(Qt::lightGray).rgb() & 0xffffff);
    canvas.click(100, 25);
    QCOMPARE(canvas.colorAt(100, 25), 0xff0000U);
    canvas.setRed(false);
    canvas.setGreen(true);
    canvas.click(50, 25);
    QCOMPARE(canvas.colorAt(50, 25), QColor(Qt::green).rgb() & 0xffffff);
    canvas.setGreen(false);
    canvas.setBlue(true);
    canvas.click(150, 75);
    QCOMPARE(canvas.colorAt(150, 75), QColor(Qt::blue).rgb() & 0xffffff);
}

void tst_QorImgCanvasView::gridHasItsLines()
{
    Canvas canvas;
    const QRgb middle = QColor(Qt::gray).rgb() & 0xffffff;
    const QRgb dotted = QColor(Qt::darkGray).rgb() & 0xffffff;
    const QImage picture = canvas.picture();
    // Four by four cells of 201 x 101 pixels: lines at 50, 100 and 150, and at 25, 50 and 75.
    QCOMPARE(picture.pixel(100, 10) & 0xffffff, middle);
    QCOMPARE(picture.pixel(100, 11) & 0xffffff, middle);
    QCOMPARE(picture.pixel(10, 50) & 0xffffff, middle);
    int dots = 0;
    for (int y = 2; y < 60; ++y)
        dots += (picture.pixel(50, y) & 0xffffff) == dotted ? 1 : 0;
    QVERIFY(dots > 10 && dots < 58);
    for (int y = 2; y < 20; ++y)
        QVERIFY((picture.pixel(49, y) & 0xffffff) != dotted);
}

void tst_QorImgCanvasView::gridOfSizeZeroHasNoLines()
{
    for (const int size : {0, -1, -1000}) {
        Canvas canvas;
        canvas.setGrid(size);
        const QImage picture = canvas.picture();
        const QRgb background = picture.pixel(10, 10);
        QCOMPARE(picture.pixel(100, 10), background);
        QCOMPARE(picture.pixel(50, 10), background);
    }
}

void tst_QorImgCanvasView::denseGridIsBounded()
{
    Canvas canvas;
    canvas.setGrid(1000);
    QVERIFY(!canvas.grab().isNull());
}

void tst_QorImgCanvasView::savesAndOpens_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("png") << QStringLiteral("table.png");
    QTest::newRow("tif") << QStringLiteral("table.tif");
    QTest::newRow("mtd") << QStringLiteral("table.mtd");
    QTest::newRow("capitals") << QStringLiteral("TABLE.PNG");
    QTest::newRow("letters beyond ASCII") << QString::fromUtf8("t\xc3\xa4"
                                                               "belle.png");
}

void tst_QorImgCanvasView::savesAndOpens()
{
    QFETCH(QString, name);
    QTemporaryDir folder;
    const QString path = folder.filePath(name);
    Canvas canvas(GREEN | ALPHA);
    canvas.click(100, 0);
    canvas.click(60, 70);
    answerDialog(path);
    canvas.save();
    QVERIFY(QFileInfo::exists(path));

    Canvas other;
    osg::ImagePtr before = other.getImage();
    QSignalSpy changed(&other, &QorImgCanvasView::imageChanged);
    answerDialog(path);
    other.open();
    QCOMPARE(changed.count(), 1);
    QVERIFY(other.getImage() != before);
    osg::subRefCP(before);
    for (int channel = 0; channel < 4; ++channel)
        QCOMPARE(other.entries(channel), canvas.entries(channel));
}

void tst_QorImgCanvasView::openIgnoresOtherNames()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("table.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("no table");
    file.close();
    Canvas canvas;
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    answerDialog(path);
    canvas.open();
    QCOMPARE(changed.count(), 0);
}

void tst_QorImgCanvasView::openOfABrokenFileKeepsTheTable()
{
    QTemporaryDir folder;
    Canvas canvas(RED);
    canvas.click(100, 0);
    const std::vector<int> before = canvas.entries(0);
    for (const char* name : {"broken.png", "broken.tif", "broken.mtd", "a.png.txt"}) {
        const QString path = folder.filePath(QString::fromLatin1(name));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("\x89PNG\r\n\x1a\n\0\0\0", 11));
        file.close();
        QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
        answerDialog(path);
        canvas.open();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(canvas.entries(0), before);
    }
}

void tst_QorImgCanvasView::openOfACutOrHostileFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kept"); // bytes of the file
    QTest::addColumn<int>("from"); // first byte that becomes 0xff
    QTest::addColumn<int>("count");
    for (const char* name : {"table.png", "table.tif", "table.mtd"}) {
        for (const int kept : {0, 1, 9, 20, 60})
            QTest::addRow("%s cut to %d", name, kept) << QString::fromLatin1(name) << kept << 0 << 0;
        // The sizes stand in the first bytes of each of these formats.
        for (const int from : {4, 8, 16, 20})
            QTest::addRow("%s broken at %d", name, from) << QString::fromLatin1(name) << -1 << from << 4;
    }
}

void tst_QorImgCanvasView::openOfACutOrHostileFile()
{
    QFETCH(QString, name);
    QFETCH(int, kept);
    QFETCH(int, from);
    QFETCH(int, count);
    QTemporaryDir folder;
    const QString path = folder.filePath(name);
    Canvas canvas(RED);
    canvas.click(100, 0);
    QVERIFY(canvas.getImage()->write(QFile::encodeName(path).constData()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    QVERIFY(bytes.size() > 60);
    if (kept >= 0)
        bytes.truncate(kept);
    for (int i = from; i < from + count; ++i)
        bytes[i] = '\xff';
    QVERIFY(file.resize(0) && file.seek(0));
    file.write(bytes);
    file.close();

    osg::ImagePtr before = canvas.getImage();
    QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
    answerDialog(path);
    canvas.open();
    // Either there is a table in spite of it, or nothing has happened.
    if (changed.isEmpty())
        QVERIFY(canvas.getImage() == before);
    else
        osg::subRefCP(before);
    QVERIFY(canvas.getImage()->getSize() < 1000000);
    if (kept >= 0)
        QCOMPARE(changed.count(), 0);
    canvas.click(50, 50);
    QCOMPARE(static_cast<int>(canvas.entries(0).size()), canvas.getImage()->getWidth());
}

void tst_QorImgCanvasView::openOfAnImageOfAnotherFormKeepsTheTable()
{
    QTemporaryDir folder;
    Canvas canvas(RED);
    canvas.click(100, 0);
    const osg::ImagePtr before = canvas.getImage();
    const std::vector<int> entries = canvas.entries(0);
    osg::ImagePtr others[] = {makeImage(16, 2), makeImage(16, 1, osg::Image::OSG_RGB_PF),
                              makeImage(16, 1, osg::Image::OSG_L_PF)};
    int number = 0;
    for (osg::ImagePtr& other : others) {
        const QString path = folder.filePath(QStringLiteral("other%1.png").arg(++number));
        QVERIFY(other->write(QFile::encodeName(path).constData()));
        osg::subRefCP(other);
        QSignalSpy changed(&canvas, &QorImgCanvasView::imageChanged);
        answerDialog(path);
        canvas.open();
        QCOMPARE(changed.count(), 0);
        QVERIFY(canvas.getImage() == before);
        QCOMPARE(canvas.entries(0), entries);
    }
}

QTEST_MAIN(tst_QorImgCanvasView)
#include "tst_QorImgCanvasView.moc"
