#include "LogCapture.h"
#include "OSCQGLWidget.h"
#include "TestWindow.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <QtGui/QTouchEvent>
#include <QtTest>
#include <QtWidgets/QAbstractButton>

using namespace Orvane::Qt4;
using Orvane::WindowProc;

namespace {

/// A view that lets the test at its hooks.
class TestView : public QorRenderView
{
public:
    TestView(Orvane::WindowProc* proc, QWidget* parent)
        : QorRenderView(proc, parent)
    {
        last = this;
    }

    explicit TestView(TestView& other)
        : QorRenderView(other)
    {
    }

    using QorRenderView::execRayTest;
    using QorRenderView::paintGL;
    using QorRenderView::resizeGL;

    static TestView* last;
};

TestView* TestView::last = nullptr;

/// What the log lines print of a node's address.
QByteArray cut(const void* pointer)
{
    return QByteArray::number(static_cast<int>(reinterpret_cast<std::intptr_t>(pointer)));
}

const QByteArray NoView = "1 Invalid viewList entry for SHOW_OT \n";

/// The message of a display text that tells no screen; the platforms of the tests have one or two.
QByteArray badPipe()
{
    return "1 Invalid value for Window.pipe and " + QByteArray::number(QGuiApplication::screens().size()) +
           " screens!\n";
}

} // namespace

class tst_WindowObserver : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anythingButAWindowIsRefused();
    void aTypeOutsideTheRangeIsRefused_data();
    void aTypeOutsideTheRangeIsRefused();
    void copiesTakeTheType();
    void everySubjectReachesItsObserverOnce();
    void aNewWindowGetsAView();
    void aNewWindowGetsTheViewOfTheCallback();
    void aCallbackWithoutAViewLeavesTheListAsItWas();
    void aWindowAnnouncedTwiceGetsASecondView();
    void aViewThatIsGivenTwiceLeavesTheListWhole();
    void theParentOfNewViewsMayDie();
    void anEndedWindowLosesItsView();
    void anEndedWindowCallsTheCallbackWithItsView();
    void anEndedWindowWithoutAViewCallsTheCallbackWithNull();
    void aViewThatOutlivesItsWindowCallsNothing();
    void connectingAParentClearsBothCallbacks();
    void connectingCallbacksClearsTheParent();
    void aViewDeletedBeforeItsWindowIsForgotten();
    void theFirstOfTwoViewsOfAWindowCounts();
    void frameEndsWithoutAViewAreLogged();
    void framesWithAViewLogNothing();
    void showNeedsAView();
    void showNeedsAWindowNode();
    void showSetsSizeAndPosition_data();
    void showSetsSizeAndPosition();
    void showHidesTheCursorOnRequest();
    void showIsLoggedFirst();
    void fullScreenIsToggledAtEachShow();
    void fullScreenReportsABadPipe_data();
    void fullScreenReportsABadPipe();
    void hideHides();
    void hideNeedsAView();
    void resizeReshapes();
    void resizeToThePresentSizeIsReported();
    void resizeToAnUnsetSizeIsReported_data();
    void resizeToAnUnsetSizeIsReported();
    void resizeOfAFullScreenWindowIsIgnored();
    void resizeWithoutANodeOnlyLogs();
    void repositionMovesAtAnyLogLevel();
    void repositionToAnUnsetPlaceDoesNothing_data();
    void repositionToAnUnsetPlaceDoesNothing();
    void fullScreenToggles();
    void cursorFollowsTheSensorOnTheView();
    void cursorNeedsAViewarea();
    void valuesThatNoPixelCanHoldCountAsUnset();
    void subjectsForAWindowWithoutAViewAreHarmless();

private:
    TestView* view() const { return TestView::last; }
};

void tst_WindowObserver::init()
{
    Tiny::reset();
    TestView::last = nullptr;
    // Views without a parent, so that place and state are their own.
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* { return new TestView(proc, nullptr); }, nullptr);
}

void tst_WindowObserver::cleanup()
{
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

void tst_WindowObserver::anythingButAWindowIsRefused()
{
    LogCapture log;
    QorRenderView::WindowObserver observer(QorRenderView::NEW_OT);
    Tiny::TinyViewareaProc viewarea;
    observer.notify(0.0, nullptr, nullptr, nullptr);
    observer.notify(0.0, &viewarea, &viewarea, &viewarea);
    const QByteArray message = "1 Invalid WindowObserver::notify() call, (no window)\n";
    QCOMPARE(log.take(), (QByteArrayList{message, message}));
}

void tst_WindowObserver::aTypeOutsideTheRangeIsRefused_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("none") << int(QorRenderView::NONE_OT);
    QTest::newRow("above") << 11;
    QTest::newRow("below") << -1;
}

void tst_WindowObserver::aTypeOutsideTheRangeIsRefused()
{
    QFETCH(int, type);
    TestWindow window;
    LogCapture log;
    QorRenderView::WindowObserver observer(static_cast<QorRenderView::ObserverType>(type));
    observer.notify(0.0, &window.proc, nullptr, nullptr);
    QCOMPARE(log.take(), QByteArrayList{"1 Invalid WindowObserver::_type\n"});
}

void tst_WindowObserver::copiesTakeTheType()
{
    TestWindow window;
    QorRenderView::WindowObserver hide(QorRenderView::HIDE_OT);
    QorRenderView::WindowObserver copy(hide);
    QorRenderView::WindowObserver assigned(QorRenderView::NEW_OT);
    assigned = hide;
    LogCapture log(osg::LOG_FATAL);
    copy.notify(0.0, &window.proc, nullptr, nullptr);
    assigned.notify(0.0, &window.proc, nullptr, nullptr);
    const QByteArray message = "1 Invalid viewList entry for HIDE_OT \n";
    QCOMPARE(log.take(), (QByteArrayList{message, message}));
    QCOMPARE(hide.observerName(), std::string());
}

void tst_WindowObserver::everySubjectReachesItsObserverOnce()
{
    // Attached by each manager and host anew.
    QorRenderView::connectObserver(nullptr);
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* { return new TestView(proc, nullptr); }, nullptr);
    TestWindow window;
    Tiny::TinyViewareaProc viewarea;
    window.node.sizeValue = osg::Vec2f(120, 80);
    LogCapture log;
    window.announce();
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() NEW call\n"});
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() SHOW call\n"});
    window.fire(WindowProc::_beginFrameWidget);
    window.fire(WindowProc::_endFrameWidget);
    QCOMPARE(log.take(), QByteArrayList());
    window.node.sizeValue = osg::Vec2f(140, 90);
    window.fire(WindowProc::_resizeWidget);
    QCOMPARE(log.take(),
             (QByteArrayList{"3 WindowObserver::notify() RESIZE call (" + cut(&window.node) + ")\n",
                             "3 Reshape window: 140/90\n"}));
    window.fire(WindowProc::_repositionWidget);
    QCOMPARE(log.take(),
             QByteArrayList{"4 WindowObserver::notify() REPOSITION call (" + cut(&window.node) + ")\n"});
    window.fire(WindowProc::_cursorWidget, &viewarea);
    QCOMPARE(log.take(), QByteArrayList{"4 WindowObserver::notify() CURSOR call\n"});
    window.fire(WindowProc::_fullScreenWidget);
    QCOMPARE(log.take(), QByteArrayList{"4 WindowObserver::notify() FULLSCREEN_OT call\n"});
    window.fire(WindowProc::_hideWidget);
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() HIDE call\n"});
    window.end();
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() DELETE call\n"});
}

void tst_WindowObserver::aNewWindowGetsAView()
{
    QWidget host;
    QorRenderView::connectObserver(&host);
    TestWindow window;
    LogCapture log;
    window.announce();
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() NEW call\n"});
    auto* view = host.findChild<QorRenderView*>();
    QVERIFY(view);
    QCOMPARE(view->windowProc(), &window.proc);
    QVERIFY(window.proc.winPtr());
    QVERIFY(window.proc.winPtr() == view->winPtr());
}

void tst_WindowObserver::aNewWindowGetsTheViewOfTheCallback()
{
    TestWindow window;
    window.announce();
    QVERIFY(view());
    QCOMPARE(view()->windowProc(), &window.proc);
}

void tst_WindowObserver::aCallbackWithoutAViewLeavesTheListAsItWas()
{
    QorRenderView::connectObserver([](Orvane::WindowProc*) -> QorRenderView* { return nullptr; }, nullptr);
    TestWindow window;
    window.announce();
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), QByteArrayList{NoView});
}

void tst_WindowObserver::aWindowAnnouncedTwiceGetsASecondView()
{
    TestWindow window;
    window.announce();
    TestView* first = view();
    LogCapture log;
    window.announce();
    TestView* second = view();
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() NEW call\n",
                                         "1 NEW_OT: windowProc->winPtr() already set\n"}));
    QVERIFY(first != second);
    QVERIFY(window.proc.winPtr() == second->winPtr());
    // The window is found at the second view now.
    window.fire(WindowProc::_showWidget);
    QVERIFY(second->isVisible());
    QVERIFY(!first->isVisible());
    delete first;
    QVERIFY(window.proc.winPtr() == second->winPtr());
}

void tst_WindowObserver::aViewThatIsGivenTwiceLeavesTheListWhole()
{
    static QorRenderView* only = nullptr;
    only = nullptr;
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* {
            if (!only)
                only = new TestView(proc, nullptr);
            return only;
        },
        nullptr);
    TestWindow window;
    window.announce();
    window.announce();
    delete only;
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), QByteArrayList{NoView});
}

void tst_WindowObserver::theParentOfNewViewsMayDie()
{
    auto host = std::make_unique<QWidget>();
    QorRenderView::connectObserver(host.get());
    host.reset();
    TestWindow window;
    window.announce();
    QCOMPARE(QApplication::topLevelWidgets().size(), 1);
    QVERIFY(qobject_cast<QorRenderView*>(QApplication::topLevelWidgets().first()));
}

void tst_WindowObserver::anEndedWindowLosesItsView()
{
    TestWindow window;
    window.announce();
    const QPointer<QorRenderView> gone(view());
    LogCapture log;
    window.end();
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() DELETE call\n"});
    QVERIFY(!gone);
    QVERIFY(!window.proc.winPtr());
    // The list no longer holds it.
    window.fire(WindowProc::_beginFrameWidget);
    QCOMPARE(log.take(), QByteArrayList{NoView});
}

void tst_WindowObserver::anEndedWindowCallsTheCallbackWithItsView()
{
    static QorRenderView* told = nullptr;
    static bool wasWhole = false;
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* { return new TestView(proc, nullptr); },
        [](QorRenderView* view) {
            told = view;
            wasWhole = view->windowProc() && view->windowProc()->winPtr() == view->winPtr();
        });
    TestWindow window;
    window.announce();
    const std::unique_ptr<TestView> kept(view());
    window.end();
    QCOMPARE(told, kept.get());
    QVERIFY(wasWhole);
    QVERIFY(!window.proc.winPtr());
    QVERIFY(!kept->windowProc());
    // It is no view of the process any more, not even when the window gets its OpenSG window again.
    osg::WindowPtr again = kept->winPtr();
    window.proc.setWinPtr(again, true);
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_endFrameWidget);
    QCOMPARE(log.take(), QByteArrayList{NoView});
}

void tst_WindowObserver::anEndedWindowWithoutAViewCallsTheCallbackWithNull()
{
    static int calls = 0;
    static QorRenderView* told = nullptr;
    told = reinterpret_cast<QorRenderView*>(&calls);
    QorRenderView::connectObserver(nullptr, [](QorRenderView* view) {
        ++calls;
        told = view;
    });
    TestWindow window;
    window.fire(WindowProc::_deleteWidget);
    QCOMPARE(calls, 1);
    QCOMPARE(told, nullptr);
    QCOMPARE(window.proc.setWinPtrCount, 1);
    QVERIFY(!window.proc.winPtr());
}

void tst_WindowObserver::aViewThatOutlivesItsWindowCallsNothing()
{
    Tiny::switches().messages = {{"walkNav", "Walk"}};
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* { return new TestView(proc, nullptr); },
        [](QorRenderView*) {});
    auto window = std::make_unique<TestWindow>();
    window->announce();
    const std::unique_ptr<TestView> kept(view());
    auto* gl = kept->findChild<OSCQGLWidget*>();
    auto* button = kept->findChild<QAbstractButton*>(QStringLiteral("walkNav"));
    QVERIFY(gl && button);

    const auto handle = [](QWidget* widget, QEvent&& event) {
        return QCoreApplication::sendEvent(widget, &event);
    };
    const auto useEverything = [&] {
        const QPointF place(5, 5);
        for (QWidget* widget : {static_cast<QWidget*>(kept.get()), static_cast<QWidget*>(gl)}) {
            for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ControlModifier}) {
                handle(widget, QMouseEvent(QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton,
                                           modifier));
            }
            handle(widget, QMouseEvent(QEvent::MouseMove, place, Qt::NoButton, Qt::LeftButton, {}));
            handle(widget, QMouseEvent(QEvent::MouseButtonRelease, place, Qt::LeftButton, Qt::NoButton, {}));
            handle(widget, QWheelEvent(place, place, QPoint(), QPoint(0, 120), Qt::NoButton, {},
                                       Qt::NoScrollPhase, false));
            for (const Qt::Key key : {Qt::Key_A, Qt::Key_F1}) {
                handle(widget, QKeyEvent(QEvent::KeyPress, key, {}, QStringLiteral("a")));
                handle(widget, QKeyEvent(QEvent::KeyRelease, key, {}, QStringLiteral("a")));
            }
            for (const QEvent::Type type : {QEvent::TouchBegin, QEvent::TouchUpdate, QEvent::TouchEnd})
                handle(widget, QTouchEvent(type, nullptr, {}, {}, {QTouchEvent::TouchPoint(1)}));
        }
        kept->paintGL();
        kept->resizeGL(30, 40);
        kept->updateGL();
        QMouseEvent press(QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton, {});
        kept->execRayTest(&press);
        button->click();
    };
    window->proc.takeCalls();
    useEverything();
    QVERIFY(window->proc.takeCalls().size() > 10);
    window->end();
    useEverything();
    QCOMPARE(window->proc.takeCalls(), std::vector<std::string>());
    window.reset();
    useEverything();
    // The GL widget has become an ordinary one: it swallows nothing.
    QVERIFY(!handle(gl, QEvent(QEvent::None)));
}

void tst_WindowObserver::connectingAParentClearsBothCallbacks()
{
    static int calls = 0;
    calls = 0;
    QorRenderView::connectObserver(
        [](Orvane::WindowProc*) -> QorRenderView* {
            ++calls;
            return nullptr;
        },
        [](QorRenderView*) { ++calls; });
    QorRenderView::connectObserver(nullptr);
    TestWindow window;
    window.announce();
    const QPointer<QWidget> made(QApplication::topLevelWidgets().value(0));
    QVERIFY(qobject_cast<QorRenderView*>(made));
    QVERIFY(!(made->windowFlags() & Qt::FramelessWindowHint));
    window.end();
    QVERIFY(!made);
    QCOMPARE(calls, 0);
}

void tst_WindowObserver::connectingCallbacksClearsTheParent()
{
    QWidget host;
    QorRenderView::connectObserver(&host);
    QorRenderView::connectObserver(nullptr, nullptr);
    TestWindow window;
    window.announce();
    QVERIFY(!host.findChild<QorRenderView*>());
    window.end();
}

void tst_WindowObserver::aViewDeletedBeforeItsWindowIsForgotten()
{
    TestWindow window;
    window.announce();
    delete view();
    QVERIFY(!window.proc.winPtr());
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), QByteArrayList{NoView});
    window.end();
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_WindowObserver::theFirstOfTwoViewsOfAWindowCounts()
{
    // Empty frames all have the OpenSG window of a window that has none.
    static QList<TestView*> frames;
    frames.clear();
    TestWindow elsewhere;
    TestView original(&elsewhere.proc, nullptr);
    frames << new TestView(original) << new TestView(original);
    static int given = 0;
    given = 0;
    QorRenderView::connectObserver([](Orvane::WindowProc*) -> QorRenderView* { return frames[given++]; },
                                   nullptr);
    TestWindow window;
    window.announce();
    window.announce();
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    QVERIFY(frames[0]->isVisible());
    QVERIFY(!frames[1]->isVisible());
    // They have no GL widget to make current.
    window.fire(WindowProc::_beginFrameWidget);
    window.fire(WindowProc::_endFrameWidget);
    QCOMPARE(log.take(), QByteArrayList());

    const QPointer<QWidget> first = frames[0];
    window.end();
    QVERIFY(!first);
    window.fire(WindowProc::_showWidget);
    QVERIFY(frames[1]->isVisible());
    delete frames[1];
}

void tst_WindowObserver::frameEndsWithoutAViewAreLogged()
{
    TestWindow window;
    LogCapture log;
    window.fire(WindowProc::_beginFrameWidget);
    window.fire(WindowProc::_endFrameWidget);
    QCOMPARE(log.take(), (QByteArrayList{NoView, NoView}));
}

void tst_WindowObserver::framesWithAViewLogNothing()
{
    TestWindow window;
    window.announce();
    LogCapture log;
    window.fire(WindowProc::_beginFrameWidget);
    window.fire(WindowProc::_endFrameWidget);
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_WindowObserver::showNeedsAView()
{
    TestWindow window;
    LogCapture log;
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() SHOW call\n", NoView}));
}

void tst_WindowObserver::showNeedsAWindowNode()
{
    Tiny::TinyWindowProc proc(nullptr);
    WindowProc::_newWidget.fire(0.0, &proc);
    LogCapture log;
    WindowProc::_showWidget.fire(0.0, &proc);
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() SHOW call\n", "1 Invalid window\n"}));
    QVERIFY(!view()->isVisible());
    WindowProc::_deleteWidget.fire(0.0, &proc);
}

void tst_WindowObserver::showSetsSizeAndPosition_data()
{
    QTest::addColumn<QPointF>("size");
    QTest::addColumn<QPointF>("position");
    QTest::addColumn<bool>("fullScreen");
    QTest::addColumn<bool>("resized");
    QTest::addColumn<bool>("moved");
    const QPointF unset(-1, -1);
    QTest::newRow("size and place") << QPointF(321.9, 234.9) << QPointF(12.9, 23.9) << false << true << true;
    QTest::newRow("size only") << QPointF(321, 234) << unset << false << true << false;
    QTest::newRow("place only") << unset << QPointF(12, 23) << false << false << true;
    QTest::newRow("no width") << QPointF(-1, 234) << unset << false << false << false;
    QTest::newRow("no height") << QPointF(321, -1) << unset << false << false << false;
    QTest::newRow("x only") << QPointF(321, 234) << QPointF(12, -1) << false << true << false;
    QTest::newRow("y only") << QPointF(321, 234) << QPointF(-1, 23) << false << true << false;
    QTest::newRow("corner") << QPointF(321, 234) << QPointF(0, 0) << false << true << true;
    QTest::newRow("just below zero") << QPointF(321, 234) << QPointF(-0.5, -0.5) << false << true << true;
    QTest::newRow("full screen without a place") << QPointF(321, 234) << unset << true << false << false;
    QTest::newRow("full screen with a place") << QPointF(321, 234) << QPointF(12, 23) << true << true << true;
    QTest::newRow("full screen with half a place")
        << QPointF(321, 234) << QPointF(12, -1) << true << true << false;
}

void tst_WindowObserver::showSetsSizeAndPosition()
{
    QFETCH(QPointF, size);
    QFETCH(QPointF, position);
    QFETCH(bool, fullScreen);
    QFETCH(bool, resized);
    QFETCH(bool, moved);
    TestWindow window;
    window.announce();
    window.node.sizeValue = osg::Vec2f(size.x(), size.y());
    window.node.positionValue = osg::Vec2f(position.x(), position.y());
    window.node.fullScreenValue = fullScreen;
    view()->resize(77, 66);
    view()->move(5, 6);

    // What was asked for before the window went full screen is what it comes back to.
    class Recorder : public QObject
    {
    public:
        QSize size;
        QPoint place;
        bool toggledBeforeShown = false;

    protected:
        bool eventFilter(QObject* object, QEvent* event) override
        {
            if (event->type() == QEvent::WindowStateChange || event->type() == QEvent::Show) {
                if (event->type() == QEvent::WindowStateChange)
                    toggledBeforeShown = static_cast<QWidget*>(object)->isHidden();
                if (size.isEmpty()) {
                    size = static_cast<QWidget*>(object)->size();
                    place = static_cast<QWidget*>(object)->pos();
                }
            }
            return false;
        }
    } recorder;
    view()->installEventFilter(&recorder);
    window.fire(WindowProc::_showWidget);
    QVERIFY(view()->isVisible());
    QCOMPARE(view()->isFullScreen(), fullScreen);
    QCOMPARE(recorder.toggledBeforeShown, fullScreen);
    QCOMPARE(recorder.size, resized ? QSize(321, 234) : QSize(77, 66));
    const QPoint place = position == QPointF(12.9, 23.9) ? QPoint(12, 23) : position.toPoint();
    QCOMPARE(recorder.place, moved ? place : QPoint(5, 6));
}

void tst_WindowObserver::showHidesTheCursorOnRequest()
{
    TestWindow window;
    window.announce();
    window.fire(WindowProc::_showWidget);
    QCOMPARE(view()->cursor().shape(), Qt::ArrowCursor);
    window.node.cursorVisibleValue = false;
    window.fire(WindowProc::_showWidget);
    QCOMPARE(view()->cursor().shape(), Qt::BlankCursor);

    // It is hidden by the time the view appears.
    class Recorder : public QObject
    {
    public:
        Qt::CursorShape shape = Qt::WaitCursor;

    protected:
        bool eventFilter(QObject* object, QEvent* event) override
        {
            if (event->type() == QEvent::Show)
                shape = static_cast<QWidget*>(object)->cursor().shape();
            return false;
        }
    } recorder;
    view()->hide();
    view()->unsetCursor();
    view()->installEventFilter(&recorder);
    window.fire(WindowProc::_showWidget);
    QCOMPARE(recorder.shape, Qt::BlankCursor);
}

void tst_WindowObserver::showIsLoggedFirst()
{
    TestWindow window;
    window.announce();
    window.node.fullScreenValue = true;
    LogCapture log;
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() SHOW call\n", badPipe()}));
}

void tst_WindowObserver::fullScreenIsToggledAtEachShow()
{
    TestWindow window;
    window.announce();
    window.node.fullScreenValue = true;
    window.node.pipeValue = "#0";
    window.fire(WindowProc::_showWidget);
    QVERIFY(view()->windowState() & Qt::WindowFullScreen);
    window.fire(WindowProc::_showWidget);
    QVERIFY(!(view()->windowState() & Qt::WindowFullScreen));
}

void tst_WindowObserver::fullScreenReportsABadPipe_data()
{
    QTest::addColumn<QByteArray>("pipe");
    QTest::addColumn<bool>("good");
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("screen 0") << QByteArray("#0") << true;
    QTest::newRow("everything") << QByteArray("1024x768:32@60#0") << true;
    QTest::newRow("no screen told") << QByteArray("1024x768") << true;
    QTest::newRow("no such screen") << QByteArray("#64") << false;
    QTest::newRow("negative screen") << QByteArray("#-1") << false;
    QTest::newRow("too many digits") << QByteArray("#99999999999999999999") << false;
    QTest::newRow("colon too late") << QByteArray("#0:32") << false;
    QTest::newRow("no x") << QByteArray("1024") << false;
    QTest::newRow("nonsense") << QByteArray("left") << false;
}

void tst_WindowObserver::fullScreenReportsABadPipe()
{
    QFETCH(QByteArray, pipe);
    QFETCH(bool, good);
    TestWindow window;
    window.announce();
    window.node.fullScreenValue = true;
    window.node.pipeValue = pipe.toStdString();
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    QCOMPARE(log.take(), good ? QByteArrayList() : QByteArrayList{badPipe()});
    QVERIFY(view()->isFullScreen());
    QVERIFY(view()->isVisible());
}

void tst_WindowObserver::hideHides()
{
    TestWindow window;
    window.announce();
    window.fire(WindowProc::_showWidget);
    QVERIFY(view()->isVisible());
    LogCapture log;
    window.fire(WindowProc::_hideWidget);
    QCOMPARE(log.take(), QByteArrayList{"3 WindowObserver::notify() HIDE call\n"});
    QVERIFY(!view()->isVisible());
}

void tst_WindowObserver::hideNeedsAView()
{
    TestWindow window;
    LogCapture log;
    window.fire(WindowProc::_hideWidget);
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() HIDE call\n",
                                         "1 Invalid viewList entry for HIDE_OT \n"}));
}

void tst_WindowObserver::resizeReshapes()
{
    TestWindow window;
    window.announce();
    view()->resize(100, 100);
    for (const QSize size : {QSize(120, 100), QSize(120, 90), QSize(50, 60)}) {
        window.node.sizeValue = osg::Vec2f(float(size.width()) + 0.75F, float(size.height()) + 0.25F);
        LogCapture log;
        window.fire(WindowProc::_resizeWidget);
        QCOMPARE(view()->size(), size);
        QCOMPARE(log.take(),
                 (QByteArrayList{"3 WindowObserver::notify() RESIZE call (" + cut(&window.node) + ")\n",
                                 "3 Reshape window: " + QByteArray::number(size.width()) + "/" +
                                     QByteArray::number(size.height()) + "\n"}));
    }
}

void tst_WindowObserver::resizeToThePresentSizeIsReported()
{
    TestWindow window;
    window.node.sizeValue = osg::Vec2f(150, 130);
    window.announce();
    window.fire(WindowProc::_showWidget);
    QCoreApplication::processEvents();
    QCOMPARE(view()->size(), QSize(150, 130));
    // Qt sets the attribute at every call of `resize`.
    view()->setAttribute(Qt::WA_Resized, false);
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_resizeWidget);
    QCOMPARE(log.take(), QByteArrayList{"1 Invalid window reshape: 150/130\n"});
    QVERIFY(!view()->testAttribute(Qt::WA_Resized));
}

void tst_WindowObserver::resizeToAnUnsetSizeIsReported_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("both") << -1 << -1;
    QTest::newRow("width") << -2 << 50;
    QTest::newRow("height") << 50 << -3;
}

void tst_WindowObserver::resizeToAnUnsetSizeIsReported()
{
    QFETCH(int, width);
    QFETCH(int, height);
    TestWindow window;
    window.announce();
    view()->resize(100, 100);
    window.node.sizeValue = osg::Vec2f(width, height);
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_resizeWidget);
    QCOMPARE(log.take(), QByteArrayList{"1 Invalid window reshape: " + QByteArray::number(width) + "/" +
                                        QByteArray::number(height) + "\n"});
    QCOMPARE(view()->size(), QSize(100, 100));
}

void tst_WindowObserver::resizeOfAFullScreenWindowIsIgnored()
{
    TestWindow window;
    window.announce();
    view()->resize(100, 100);
    window.node.fullScreenValue = true;
    window.node.sizeValue = osg::Vec2f(50, 50);
    LogCapture log;
    window.fire(WindowProc::_resizeWidget);
    QCOMPARE(log.take(),
             (QByteArrayList{"3 WindowObserver::notify() RESIZE call (" + cut(&window.node) + ")\n",
                             "4 Ignore window resize; window is fullscreen\n"}));
    QCOMPARE(view()->size(), QSize(100, 100));
}

void tst_WindowObserver::resizeWithoutANodeOnlyLogs()
{
    Tiny::TinyWindowProc proc(nullptr);
    WindowProc::_newWidget.fire(0.0, &proc);
    LogCapture log;
    WindowProc::_resizeWidget.fire(0.0, &proc);
    WindowProc::_repositionWidget.fire(0.0, &proc);
    QCOMPARE(log.take(), (QByteArrayList{"3 WindowObserver::notify() RESIZE call (0)\n",
                                         "4 WindowObserver::notify() REPOSITION call (0)\n"}));
    WindowProc::_deleteWidget.fire(0.0, &proc);
}

void tst_WindowObserver::repositionMovesAtAnyLogLevel()
{
    TestWindow window;
    window.announce();
    window.node.positionValue = osg::Vec2f(31.5F, 41.5F);
    {
        LogCapture log(osg::LOG_LOG);
        window.fire(WindowProc::_repositionWidget);
        QCOMPARE(log.take(), QByteArrayList{"0 Reposition window: 31/41\n"});
    }
    QCOMPARE(view()->pos(), QPoint(31, 41));
    LogCapture log;
    window.fire(WindowProc::_repositionWidget);
    QCOMPARE(log.take(),
             (QByteArrayList{"4 WindowObserver::notify() REPOSITION call (" + cut(&window.node) + ")\n",
                             "0 Reposition window: 31/41\n"}));
}

void tst_WindowObserver::repositionToAnUnsetPlaceDoesNothing_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::newRow("both") << -1 << -1;
    QTest::newRow("x") << -1 << 50;
    QTest::newRow("y") << 50 << -1;
}

void tst_WindowObserver::repositionToAnUnsetPlaceDoesNothing()
{
    QFETCH(int, x);
    QFETCH(int, y);
    TestWindow window;
    window.announce();
    view()->move(5, 6);
    window.node.positionValue = osg::Vec2f(x, y);
    LogCapture log(osg::LOG_NOTICE);
    window.fire(WindowProc::_repositionWidget);
    QCOMPARE(log.take(), QByteArrayList());
    QCOMPARE(view()->pos(), QPoint(5, 6));
}

void tst_WindowObserver::fullScreenToggles()
{
    TestWindow window;
    window.announce();
    LogCapture log;
    window.fire(WindowProc::_fullScreenWidget);
    QVERIFY(view()->windowState() & Qt::WindowFullScreen);
    window.fire(WindowProc::_fullScreenWidget);
    QVERIFY(!(view()->windowState() & Qt::WindowFullScreen));
    const QByteArray message = "4 WindowObserver::notify() FULLSCREEN_OT call\n";
    QCOMPARE(log.take(), (QByteArrayList{message, message}));
    QVERIFY(!view()->isVisible());
}

void tst_WindowObserver::cursorFollowsTheSensorOnTheView()
{
    TestWindow window;
    window.announce();
    Tiny::TinyViewareaProc viewarea;
    viewarea.setOverSensor(true);
    window.fire(WindowProc::_cursorWidget, &viewarea);
    QCOMPARE(view()->cursor().shape(), Qt::PointingHandCursor);
    QVERIFY(!view()->findChild<OSCQGLWidget*>()->testAttribute(Qt::WA_SetCursor));
    viewarea.setOverSensor(false);
    window.fire(WindowProc::_cursorWidget, &viewarea);
    QCOMPARE(view()->cursor().shape(), Qt::ArrowCursor);
}

void tst_WindowObserver::cursorNeedsAViewarea()
{
    TestWindow window;
    window.announce();
    view()->setCursor(Qt::WaitCursor);
    LogCapture log;
    window.fire(WindowProc::_cursorWidget);
    window.fire(WindowProc::_cursorWidget, &window.proc);
    QCOMPARE(log.take(),
             (QByteArrayList{"4 WindowObserver::notify() CURSOR call\n", "1 Invalid Viewarea\n",
                             "4 WindowObserver::notify() CURSOR call\n", "1 Invalid Viewarea\n"}));
    QCOMPARE(view()->cursor().shape(), Qt::WaitCursor);
}

void tst_WindowObserver::valuesThatNoPixelCanHoldCountAsUnset()
{
    TestWindow window;
    window.announce();
    view()->resize(100, 100);
    view()->move(5, 6);
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(), 3e9F})
    {
        window.node.sizeValue = osg::Vec2f(value, 50);
        window.node.positionValue = osg::Vec2f(50, value);
        LogCapture log(osg::LOG_FATAL);
        window.fire(WindowProc::_resizeWidget);
        window.fire(WindowProc::_repositionWidget);
        QCOMPARE(log.take(), QByteArrayList{"1 Invalid window reshape: -1/50\n"});
    }
    QCOMPARE(view()->pos(), QPoint(5, 6));
    QCOMPARE(view()->size(), QSize(100, 100));
}

void tst_WindowObserver::subjectsForAWindowWithoutAViewAreHarmless()
{
    TestWindow window;
    Tiny::TinyViewareaProc viewarea;
    window.node.sizeValue = osg::Vec2f(50, 50);
    window.node.positionValue = osg::Vec2f(50, 50);
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_resizeWidget);
    window.fire(WindowProc::_repositionWidget);
    window.fire(WindowProc::_fullScreenWidget);
    window.fire(WindowProc::_cursorWidget, &viewarea);
    QCOMPARE(log.take(), QByteArrayList());
}

QTEST_MAIN(tst_WindowObserver)
#include "tst_WindowObserver.moc"
