#include "QorRenderView.h"
#include "QorViewManager.h"
#include "QorWindowToolbar.h"
#include <Orvane/WindowProc.h>
#include <QElapsedTimer>
#include <QGLWidget>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>

using namespace Orvane::Qt4;

namespace {

const QColor sky(51, 102, 204);
/// A red front, a green right side and a blue top, which shine by themselves.
const char* const faces =
    "<X3D version='4.0'><Scene><Background skyColor='0.2 0.4 0.8'/>"
    "<NavigationInfo transitionType='\"TELEPORT\"'/>"
    "<Viewpoint description='Front'/><Viewpoint description='Right' position='10 0 0' orientation='0 1 0 "
    "1.5707963'/>"
    "<Shape><IndexedFaceSet solid='false' colorPerVertex='false' coordIndex='0 1 2 3 -1 1 4 5 2 -1 3 2 5 6'>"
    "<Coordinate point='-1 -1 1, 1 -1 1, 1 1 1, -1 1 1, 1 -1 -1, 1 1 -1, -1 1 -1'/>"
    "<Color color='1 0 0, 0 1 0, 0 0 1'/></IndexedFaceSet></Shape></Scene></X3D>";
/// A lit wall that fills the middle of the picture.
const char* const wall = "<X3D version='4.0'><Scene><Background skyColor='0.2 0.4 0.8'/>"
                         "<Shape><Appearance><Material diffuseColor='1 1 1'/></Appearance><Box size='4 4 1'/>"
                         "</Shape></Scene></X3D>";

bool isClose(const QColor& a, const QColor& b, int slack = 12)
{
    return qAbs(a.red() - b.red()) <= slack && qAbs(a.green() - b.green()) <= slack &&
           qAbs(a.blue() - b.blue()) <= slack;
}

int countOf(const QImage& image, const QColor& color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += isClose(image.pixelColor(x, y), color) ? 1 : 0;
    }
    return count;
}

} // namespace

/// A user before a real view: mouse, wheel, keys, touches and buttons, and what the screen shows then.
class tst_NavigationInView : public QObject
{
    Q_OBJECT

private slots:
    void dragTurnsTheScene();
    void wheelComesCloser();
    void arrowKeyTurns();
    void plusKeyComesCloser();
    void touchTurnsTheScene();
    void viewStaysAtRest();
    void buttonsGoToViewpoints();
    void headlightButtonSwitchesTheLight();
    void drawModeButtonDrawsWireAndPoints();
    void volumeButtonDrawsBoxes();
    void infoButtonWritesFigures();
    void walkButtonLetsTheUserWalk();
    void showAllAndResetButtons();
    void viewThatGoesInADrag();

private:
    /// A manager with a view of 320 x 240 on the screen.
    class Stage
    {
    public:
        explicit Stage(const char* scene)
            : manager(nullptr, QorViewManager::ManualTrigger)
        {
            manager.loadContextByString(QStringLiteral("navigation.x3d"), QString::fromLatin1(scene));
            manager.setWindowFlags(manager.windowFlags() | Qt::FramelessWindowHint);
            manager.setGeometry(QRect(20, 20, 320, 240));
            manager.show();
            if (QTest::qWaitForWindowExposed(&manager))
                view = manager.findChild<QorRenderView*>();
            if (!view)
                return;
            view->setToolbar(true);
            widget = view->findChild<QGLWidget*>();
            runFor(700);
        }

        void runFor(int milliseconds)
        {
            QElapsedTimer timer;
            timer.start();
            do {
                manager.runFrame();
                QTest::qWait(10);
            } while (timer.elapsed() < milliseconds);
        }
        void runFrames()
        {
            for (int i = 0; i < 4; ++i) {
                manager.runFrame();
                QTest::qWait(10);
            }
        }
        QImage picture()
        {
            runFrames();
            const QPoint place = manager.mapToGlobal(QPoint(0, 0));
            return QGuiApplication::primaryScreen()
                ->grabWindow(0, place.x(), place.y(), manager.width(), manager.height())
                .toImage();
        }
        /// The middle of the picture, away from the strip of buttons.
        QImage middle() { return picture().copy(20, 30, 280, 200); }

        void drag(Qt::MouseButton button, const QPoint& from, const QPoint& to)
        {
            QTest::mousePress(widget, button, Qt::NoModifier, from);
            runFrames();
            sendMove((from + to) / 2, button);
            sendMove(to, button);
            QTest::mouseRelease(widget, button, Qt::NoModifier, to);
            runFrames();
        }
        void sendMove(const QPoint& to, Qt::MouseButton button)
        {
            QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, button,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(widget, &move);
            runFrames();
        }
        void wheel(int delta)
        {
            const QPointF place(160.0, 120.0);
            QWheelEvent event(place, widget->mapToGlobal(place.toPoint()), QPoint(), QPoint(0, delta),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            // Only what comes from the window system is handed up to the view.
            QSpontaneKeyEvent::setSpontaneous(&event);
            qApp->notify(widget, &event);
            runFrames();
        }
        void click(const char* name)
        {
            auto* const button = view->findChild<QPushButton*>(QString::fromLatin1(name));
            QVERIFY2(button, name);
            QTest::mouseClick(button, Qt::LeftButton);
            runFrames();
        }

        QorViewManager manager;
        QorRenderView* view = nullptr;
        QGLWidget* widget = nullptr;
    };

    static QColor center(const QImage& image)
    {
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }
};

void tst_NavigationInView::dragTurnsTheScene()
{
    Stage stage(faces);
    QVERIFY(stage.widget);
    const QImage before = stage.middle();
    QVERIFY(isClose(center(before), Qt::red));
    QCOMPARE(countOf(before, Qt::green), 0);
    // To the left: the right side comes into view; down: the top does.
    stage.drag(Qt::LeftButton, QPoint(160, 120), QPoint(110, 120));
    QVERIFY(countOf(stage.middle(), Qt::green) > 200);
    stage.drag(Qt::LeftButton, QPoint(160, 120), QPoint(160, 170));
    QVERIFY(countOf(stage.middle(), Qt::blue) > 200);
}

void tst_NavigationInView::wheelComesCloser()
{
    Stage stage(faces);
    const int before = countOf(stage.middle(), Qt::red);
    stage.wheel(120);
    const int closer = countOf(stage.middle(), Qt::red);
    QVERIFY(closer > before * 5 / 4);
    stage.wheel(-120);
    QVERIFY(qAbs(countOf(stage.middle(), Qt::red) - before) < before / 20);
}

void tst_NavigationInView::arrowKeyTurns()
{
    Stage stage(faces);
    QTest::keyPress(stage.view, Qt::Key_Right);
    stage.runFor(400);
    QTest::keyRelease(stage.view, Qt::Key_Right);
    const QImage turned = stage.middle();
    QVERIFY(countOf(turned, Qt::green) > 200);
    stage.runFor(200);
    QCOMPARE(stage.middle(), turned);
}

void tst_NavigationInView::plusKeyComesCloser()
{
    Stage stage(faces);
    const int before = countOf(stage.middle(), Qt::red);
    QTest::keyPress(stage.view, '+');
    stage.runFor(300);
    QTest::keyRelease(stage.view, '+');
    QVERIFY(countOf(stage.middle(), Qt::red) > before * 5 / 4);
}

void tst_NavigationInView::touchTurnsTheScene()
{
    Stage stage(faces);
    QTouchDevice* const device = QTest::createTouchDevice();
    QTest::touchEvent(stage.widget, device).press(0, QPoint(160, 120), stage.widget);
    stage.runFrames();
    QTest::touchEvent(stage.widget, device).move(0, QPoint(130, 120), stage.widget);
    stage.runFrames();
    QTest::touchEvent(stage.widget, device).move(0, QPoint(110, 120), stage.widget);
    stage.runFrames();
    QTest::touchEvent(stage.widget, device).release(0, QPoint(110, 120), stage.widget);
    stage.runFrames();
    QVERIFY(countOf(stage.middle(), Qt::green) > 200);
}

void tst_NavigationInView::viewStaysAtRest()
{
    Stage stage(faces);
    stage.drag(Qt::LeftButton, QPoint(160, 120), QPoint(117, 141));
    const QImage before = stage.middle();
    stage.runFor(1500);
    QCOMPARE(stage.middle(), before);
}

void tst_NavigationInView::buttonsGoToViewpoints()
{
    Stage stage(faces);
    stage.click("nextView");
    QVERIFY(isClose(center(stage.middle()), Qt::green));
    stage.click("prevView");
    QVERIFY(isClose(center(stage.middle()), Qt::red));
    stage.click("lastView");
    QVERIFY(isClose(center(stage.middle()), Qt::green));
    stage.click("firstView");
    QVERIFY(isClose(center(stage.middle()), Qt::red));
}

void tst_NavigationInView::headlightButtonSwitchesTheLight()
{
    Stage stage(wall);
    QVERIFY(center(stage.middle()).lightness() > 200);
    stage.click("toggleHeadlight");
    QVERIFY(center(stage.middle()).lightness() < 10);
    stage.click("toggleHeadlight");
    QVERIFY(center(stage.middle()).lightness() > 200);
}

void tst_NavigationInView::drawModeButtonDrawsWireAndPoints()
{
    Stage stage(faces);
    const int solid = countOf(stage.middle(), Qt::red);
    stage.click("nextDrawMode");
    const int wire = countOf(stage.middle(), Qt::red);
    QVERIFY(wire > 20 && wire < solid / 4);
    stage.click("nextDrawMode");
    const int points = countOf(stage.middle(), Qt::red);
    QVERIFY(points > 0 && points < wire / 2);
    stage.click("nextDrawMode");
    QCOMPARE(countOf(stage.middle(), Qt::red), solid);
}

void tst_NavigationInView::volumeButtonDrawsBoxes()
{
    Stage stage(faces);
    stage.drag(Qt::LeftButton, QPoint(160, 120), QPoint(120, 150));
    const QImage before = stage.middle();
    QCOMPARE(countOf(before, Qt::yellow), 0);
    stage.click("toggleDrawVolume");
    QVERIFY(countOf(stage.middle(), Qt::yellow) > 50);
    stage.click("toggleDrawVolume");
    QCOMPARE(stage.middle(), before);
}

void tst_NavigationInView::infoButtonWritesFigures()
{
    Stage stage(faces);
    const QImage before = stage.picture();
    const auto letters = [](const QImage& image) { return countOf(image.copy(0, 120, 320, 120), Qt::white); };
    QCOMPARE(letters(before), 0);
    stage.click("nextInfoScreen");
    const int first = letters(stage.picture());
    QVERIFY(first > 300);
    stage.click("nextInfoScreen");
    QVERIFY(letters(stage.picture()) > 300);
    stage.click("nextInfoScreen");
    QCOMPARE(letters(stage.picture()), 0);
}

void tst_NavigationInView::walkButtonLetsTheUserWalk()
{
    Stage stage(faces);
    const int before = countOf(stage.middle(), Qt::red);
    stage.click("walkNav");
    QTest::mousePress(stage.widget, Qt::LeftButton, Qt::NoModifier, QPoint(160, 200));
    stage.sendMove(QPoint(160, 60), Qt::LeftButton);
    stage.runFor(600);
    QTest::mouseRelease(stage.widget, Qt::LeftButton, Qt::NoModifier, QPoint(160, 60));
    const int after = countOf(stage.middle(), Qt::red);
    QVERIFY(after > before * 11 / 10);
    stage.click("examineNav");
    stage.drag(Qt::LeftButton, QPoint(160, 120), QPoint(110, 120));
    QVERIFY(countOf(stage.middle(), Qt::green) > 200);
}

void tst_NavigationInView::showAllAndResetButtons()
{
    Stage stage(faces);
    const QImage before = stage.middle();
    stage.click("showAll");
    QVERIFY(countOf(stage.middle(), Qt::red) > countOf(before, Qt::red) * 2);
    stage.click("resetViewPosition");
    QCOMPARE(stage.middle(), before);
}

void tst_NavigationInView::viewThatGoesInADrag()
{
    Stage stage(faces);
    QTest::mousePress(stage.widget, Qt::LeftButton, Qt::NoModifier, QPoint(160, 120));
    stage.sendMove(QPoint(150, 120), Qt::LeftButton);
    delete stage.view;
    stage.manager.runFrame();
    stage.manager.runFrame();
    QVERIFY(!stage.manager.findChild<QorRenderView*>());
}

QTEST_MAIN(tst_NavigationInView)
#include "tst_NavigationInView.moc"
