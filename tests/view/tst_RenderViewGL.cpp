#include "OSCQGLWidget.h"
#include "QorViewManager.h"
#include "QorWindowToolbar.h"
#include "TestWindow.h"
#include <QtGui/QOpenGLContext>
#include <QtGui/QOpenGLFunctions>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtTest>

using namespace Orvane::Qt4;
using Orvane::WindowProc;

namespace {

/// Clears the area of the window with a colour, as a runtime's frame does.
void drawFrame(TestWindow& window, const QColor& colour)
{
    window.fire(WindowProc::_beginFrameWidget);
    if (QOpenGLContext* context = QOpenGLContext::currentContext()) {
        QOpenGLFunctions* gl = context->functions();
        gl->glClearColor(float(colour.redF()), float(colour.greenF()), float(colour.blueF()), 1.0F);
        gl->glClear(GL_COLOR_BUFFER_BIT);
    }
    window.fire(WindowProc::_endFrameWidget);
}

/// The first frame after a show or resize may still be of the size before.
void drawTwice(TestWindow& window, const QColor& colour)
{
    drawFrame(window, colour);
    QTest::qWait(50);
    drawFrame(window, colour);
    QTest::qWait(50);
}

/// What the screen shows in the middle of a widget.
QColor shown(const QWidget* widget)
{
    const QPoint place = widget->mapToGlobal(widget->rect().center());
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), 1, 1)
        .toImage()
        .pixelColor(0, 0);
}

} // namespace

/// What needs a display with GL.
class tst_RenderViewGL : public QObject
{
    Q_OBJECT

private slots:
    void init() { Tiny::reset(); }

    void theFormatHasAlphaAndStencil();
    void samplesGiveMultisampling();
    void theContextIsCurrentFromBeginToEndOfAFrame();
    void aFrameShowsAndStays();
    void twoViewsOfAManagerShowTheirOwnPictures();
    void qtResizesGoToTheRuntimeWithTheContextCurrent();
    void aSizeFromOutsideGivesWayToThatOfTheView();
    void theViewsResizeHookRunsWhileAResizeIsPending();
    void theRefreshTimerUpdatesTheGlWidget();
    void theToolbarShowsOverThePicture();
};

void tst_RenderViewGL::theFormatHasAlphaAndStencil()
{
    TestWindow window;
    const QorRenderView view(&window.proc, nullptr);
    const auto* gl = view.findChild<OSCQGLWidget*>();
    QVERIFY(gl->isValid());
    QVERIFY(gl->format().alpha());
    QVERIFY(gl->format().stencil());
    QVERIFY(!gl->format().sampleBuffers());
}

void tst_RenderViewGL::samplesGiveMultisampling()
{
    TestWindow window;
    window.node.samplesValue = 4;
    const QorRenderView view(&window.proc, nullptr);
    const auto* gl = view.findChild<OSCQGLWidget*>();
    QVERIFY(gl->isValid());
    QVERIFY(gl->format().sampleBuffers());
    QCOMPARE(gl->format().samples(), 4);
}

void tst_RenderViewGL::theContextIsCurrentFromBeginToEndOfAFrame()
{
    QWidget host;
    QorRenderView::connectObserver(&host);
    TestWindow window;
    window.announce();
    host.show();
    const auto* gl = host.findChild<OSCQGLWidget*>();
    QVERIFY(gl->isValid());
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    window.fire(WindowProc::_beginFrameWidget);
    QCOMPARE(QGLContext::currentContext(), gl->context());
    window.fire(WindowProc::_endFrameWidget);
    QVERIFY(!QGLContext::currentContext());
    QVERIFY(!QOpenGLContext::currentContext());
}

void tst_RenderViewGL::aFrameShowsAndStays()
{
    QorRenderView::connectObserver(nullptr);
    TestWindow window;
    window.node.sizeValue = osg::Vec2f(200, 150);
    window.node.positionValue = osg::Vec2f(100, 100);
    window.announce();
    window.fire(WindowProc::_showWidget);
    auto* view = qobject_cast<QorRenderView*>(QApplication::topLevelWidgets().value(0));
    QVERIFY(view);
    QVERIFY(QTest::qWaitForWindowExposed(view));
    QVERIFY(view->findChild<OSCQGLWidget*>()->isValid());
    drawTwice(window, QColor(204, 51, 102));
    QCOMPARE(shown(view), QColor(204, 51, 102));
    // The refresh timer, repaints and updates leave the picture alone.
    view->update();
    view->updateGL();
    view->findChild<OSCQGLWidget*>()->update();
    QTest::qWait(60);
    QCOMPARE(shown(view), QColor(204, 51, 102));

    window.node.sizeValue = osg::Vec2f(260, 200);
    window.fire(WindowProc::_resizeWidget);
    QTest::qWait(50);
    drawTwice(window, QColor(0, 153, 51));
    QCOMPARE(shown(view), QColor(0, 153, 51));
}

void tst_RenderViewGL::twoViewsOfAManagerShowTheirOwnPictures()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.setGeometry(50, 50, 402, 200);
    TestWindow left(Tiny::lastContext());
    TestWindow right(Tiny::lastContext());
    for (TestWindow* window : {&left, &right}) {
        window->announce();
        window->fire(WindowProc::_showWidget);
    }
    QVERIFY(QTest::qWaitForWindowExposed(&manager));
    const QList<QorRenderView*> views = manager.findChildren<QorRenderView*>();
    QCOMPARE(views.size(), 2);
    Tiny::switches().onFrame = [&](Orvane::Context*) {
        drawFrame(left, QColor(255, 0, 0));
        drawFrame(right, QColor(0, 0, 255));
    };
    for (int i = 0; i < 3; ++i) {
        manager.runFrame();
        QTest::qWait(50);
    }
    for (const QorRenderView* view : views)
        QCOMPARE(shown(view), view->windowProc() == &left.proc ? QColor(255, 0, 0) : QColor(0, 0, 255));
}

void tst_RenderViewGL::qtResizesGoToTheRuntimeWithTheContextCurrent()
{
    QWidget host;
    QorRenderView::connectObserver(&host);
    TestWindow window;
    window.announce();
    auto* view = host.findChild<QorRenderView*>();
    view->setTimerEnabled(false);
    view->resize(320, 240);
    host.resize(400, 300);
    window.proc.takeCalls();
    host.show();
    QVERIFY(QTest::qWaitForWindowExposed(&host));
    const std::vector<std::string> calls = window.proc.takeCalls();
    QVERIFY(std::find(calls.begin(), calls.end(), "resize 320 240") != calls.end());
    view->resize(200, 100);
    QTest::qWait(100);
    QCOMPARE(window.proc.takeCalls(), (std::vector<std::string>{"resize 200 100"}));
}

/// A window manager under load gives the native window its first size when the view has another.
void tst_RenderViewGL::aSizeFromOutsideGivesWayToThatOfTheView()
{
    QorRenderView::connectObserver(nullptr);
    TestWindow window;
    window.node.sizeValue = osg::Vec2f(300, 200);
    window.node.positionValue = osg::Vec2f(100, 100);
    window.announce();
    window.fire(WindowProc::_showWidget);
    auto* view = qobject_cast<QorRenderView*>(QApplication::topLevelWidgets().value(0));
    QVERIFY(view);
    QVERIFY(QTest::qWaitForWindowExposed(view));
    auto* gl = view->findChild<OSCQGLWidget*>();
    QSignalSpy widths(gl->windowHandle(), &QWindow::widthChanged);
    gl->windowHandle()->resize(100, 30);
    QTRY_VERIFY(!widths.isEmpty());
    QTRY_COMPARE(gl->size(), QSize(300, 200));
    QTRY_COMPARE(gl->windowHandle()->size(), QSize(300, 200));
    drawTwice(window, Qt::green);
    QCOMPARE(shown(view), QColor(Qt::green));
}

void tst_RenderViewGL::theViewsResizeHookRunsWhileAResizeIsPending()
{
    class View : public QorRenderView
    {
    public:
        using QorRenderView::QorRenderView;
        using QorRenderView::resizeGL;
    };
    TestWindow window;
    View view(&window.proc, nullptr);
    auto* gl = view.findChild<OSCQGLWidget*>();
    QVERIFY(gl->isValid());
    gl->makeCurrent();
    view.winPtr()->setResizePending(true);
    window.proc.takeCalls();
    view.resizeGL(50, 40);
    QVERIFY(!view.winPtr()->isResizePending());
    QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());
    gl->doneCurrent();
}

void tst_RenderViewGL::theRefreshTimerUpdatesTheGlWidget()
{
    TestWindow window;
    QorRenderView view(&window.proc, nullptr);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    auto* gl = view.findChild<OSCQGLWidget*>();
    QVERIFY(gl->isValid());
    // An update leaves the context current.
    gl->doneCurrent();
    QTRY_COMPARE(QGLContext::currentContext(), gl->context());

    view.setTimerEnabled(false);
    gl->doneCurrent();
    QTimerEvent late(1);
    QCoreApplication::sendEvent(&view, &late);
    QTest::qWait(60);
    QVERIFY(!QGLContext::currentContext());
    // Nor does a repaint of Qt, which is none.
    gl->repaint();
    QVERIFY(!QGLContext::currentContext());
    view.updateGL();
    QCOMPARE(QGLContext::currentContext(), gl->context());
    gl->doneCurrent();
}

void tst_RenderViewGL::theToolbarShowsOverThePicture()
{
    Tiny::switches().messages = {{"walkNav", "Walk"}, {"flyNav", "Fly"}};
    QorRenderView::connectObserver(nullptr);
    TestWindow window;
    window.node.sizeValue = osg::Vec2f(200, 150);
    window.node.positionValue = osg::Vec2f(100, 100);
    window.announce();
    window.fire(WindowProc::_showWidget);
    auto* view = qobject_cast<QorRenderView*>(QApplication::topLevelWidgets().value(0));
    QVERIFY(view);
    QVERIFY(QTest::qWaitForWindowExposed(view));
    drawTwice(window, QColor(204, 51, 102));
    const auto* bar = view->findChild<QorWindowToolbar*>();
    QVERIFY(shown(bar) != QColor(204, 51, 102));
    window.proc.takeCalls();
    QTest::mouseClick(view->findChild<QWidget*>(QStringLiteral("flyNav")), Qt::LeftButton);
    QCOMPARE(window.proc.takeCalls(), (std::vector<std::string>{"message flyNav"}));
    view->setToolbar(false);
    drawTwice(window, QColor(204, 51, 102));
    QCOMPARE(shown(bar), QColor(204, 51, 102));
}

QTEST_MAIN(tst_RenderViewGL)
#include "tst_RenderViewGL.moc"
