#include "LogCapture.h"
#include "OSCQGLWidget.h"
#include "QorRenderView.h"
#include "QorWindowToolbar.h"
#include "TestWindow.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <QtTest>
#include <QtWidgets/QVBoxLayout>

using namespace Orvane::Qt4;

namespace {

/// A view that lets the test at its hooks.
class View : public QorRenderView
{
public:
    explicit View(Orvane::WindowProc* proc, QWidget* parent = nullptr,
                  Qt::WindowFlags flags = Qt::WindowFlags())
        : QorRenderView(proc, parent, flags)
    {
    }
    explicit View(View& other)
        : QorRenderView(other)
    {
    }

    using QorRenderView::initializeGL;
    using QorRenderView::paintGL;
    using QorRenderView::resizeGL;

    OSCQGLWidget* gl() const { return findChild<OSCQGLWidget*>(); }
    int timerInterval() const
    {
        const auto timers = QAbstractEventDispatcher::instance()->registeredTimers(const_cast<View*>(this));
        return timers.isEmpty() ? -1 : timers.first().interval;
    }
    int timerCount() const
    {
        return QAbstractEventDispatcher::instance()->registeredTimers(const_cast<View*>(this)).size();
    }

    int updates = 0;
    void updateGL() override
    {
        ++updates;
        QorRenderView::updateGL();
    }
};

/// An OpenSG window that counts the runs of its resize hook.
class CountingWindow : public osg::PassiveWindow
{
public:
    static osg::WindowPtr create() { return osg::WindowPtr(new CountingWindow); }
    void resizeGL() override { ++hooks; }
    int hooks = 0;
};

} // namespace

class tst_QorRenderView : public QObject
{
    Q_OBJECT

private slots:
    void init() { Tiny::reset(); }

    void constructionBuildsTheView();
    void theViewGivesTheRuntimeItsOpenSGWindow();
    void samplesAskForMultisampling_data();
    void samplesAskForMultisampling();
    void aWindowWithoutANodeIsShownPlainly();
    void onlyATopLevelViewBearsTheTitle();
    void flagsGoToTheWidget();
    void aNewViewRefreshesEverySixteenMilliseconds();
    void setDesiredFpsStoresTheInterval();
    void enablingATimerThatWasOffStartsNothing();
    void enablingATimerThatIsOnTurnsTheWord();
    void enablingWithAWordOfZeroChangesNothing();
    void aDisabledTimerTakesAnInterval();
    void timersAreKilledWithoutWarning();
    void sizeHintIsFourHundredSquare();
    void mouseModeIsStored();
    void paintRendersAnEnabledView();
    void resizeTellsTheRuntimeUnlessOneIsPending();
    void resizeOfTheGlWidgetGoesByTheRuntimesWindow();
    void destructionTakesTheWindowBack();
    void destructionLeavesAnotherViewsWindowAlone();
    void theViewsReferenceKeepsTheWindowAlive();
    void aCopyIsAnEmptyFrame();
    void updateGLIsAVirtualSlot();
    void glPaintPathIsEmpty();
    void signalsAreDeclaredAsTold();
};

void tst_QorRenderView::constructionBuildsTheView()
{
    TestWindow window;
    QWidget host;
    View view(&window.proc, &host);
    QCOMPARE(view.objectName(), QStringLiteral("QorRenderView"));
    QCOMPARE(view.windowProc(), &window.proc);
    QCOMPARE(view.mouseMode(), QorRenderView::NavigationMode);
    QCOMPARE(view.focusPolicy(), Qt::StrongFocus);
    QVERIFY(view.hasMouseTracking());

    auto* layout = qobject_cast<QVBoxLayout*>(view.layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 1);
    QCOMPARE(layout->itemAt(0)->widget(), view.gl());
    QCOMPARE(layout->stretch(0), 0);

    QVERIFY(view.gl()->hasMouseTracking());
    struct Open : OSCQGLWidget
    {
        using OSCQGLWidget::autoBufferSwap;
    };
    QVERIFY(!(view.gl()->*(&Open::autoBufferSwap))());
    QVERIFY(view.gl()->testAttribute(Qt::WA_AcceptTouchEvents));
    QVERIFY(!view.gl()->isTouchActive());

    auto* toolbar = view.findChild<QorWindowToolbar*>();
    QVERIFY(toolbar);
    QVERIFY(!toolbar->isHidden());
}

void tst_QorRenderView::theViewGivesTheRuntimeItsOpenSGWindow()
{
    TestWindow window;
    const View view(&window.proc);
    QVERIFY(view.winPtr());
    QVERIFY(osg::PassiveWindowPtr::dcast(view.winPtr()));
    QVERIFY(window.proc.winPtr() == view.winPtr());
    QCOMPARE(window.proc.setWinPtrCount, 1);
    // One for the view, one for the runtime.
    QCOMPARE(view.winPtr().getRefCount(), 2);
}

void tst_QorRenderView::samplesAskForMultisampling_data()
{
    QTest::addColumn<int>("samples");
    QTest::addColumn<bool>("asked");
    QTest::newRow("negative") << -1 << false;
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one") << 1 << false;
    QTest::newRow("two") << 2 << true;
    QTest::newRow("four") << 4 << true;
}

void tst_QorRenderView::samplesAskForMultisampling()
{
    QFETCH(int, samples);
    QFETCH(bool, asked);
    TestWindow window;
    window.node.samplesValue = samples;
    const View view(&window.proc);
    // What was asked for, whatever the display gives.
    const QGLFormat format = view.gl()->context()->requestedFormat();
    QCOMPARE(format.sampleBuffers(), asked);
    if (asked)
        QCOMPARE(format.samples(), samples);
    QVERIFY(format.alpha());
    QVERIFY(format.stencil());
}

void tst_QorRenderView::aWindowWithoutANodeIsShownPlainly()
{
    Tiny::TinyWindowProc proc(nullptr);
    const View view(&proc);
    QVERIFY(!view.gl()->context()->requestedFormat().sampleBuffers());
    QVERIFY(view.windowTitle().isEmpty());
}

void tst_QorRenderView::onlyATopLevelViewBearsTheTitle()
{
    TestWindow window;
    window.node.titleValue = "B\xfchne";
    const View topLevel(&window.proc);
    QCOMPARE(topLevel.windowTitle(), QStringLiteral("Bühne"));
    QWidget host;
    const View child(&window.proc, &host);
    QVERIFY(child.windowTitle().isEmpty());
}

void tst_QorRenderView::flagsGoToTheWidget()
{
    TestWindow window;
    const View view(&window.proc, nullptr, Qt::FramelessWindowHint);
    QVERIFY(view.windowFlags() & Qt::FramelessWindowHint);
}

void tst_QorRenderView::aNewViewRefreshesEverySixteenMilliseconds()
{
    TestWindow window;
    const View view(&window.proc);
    QVERIFY(view.isTimerEnabled());
    QCOMPARE(view.desiredFps(), 16);
    QCOMPARE(view.timerInterval(), 16);
    QCOMPARE(view.timerCount(), 1);
}

void tst_QorRenderView::setDesiredFpsStoresTheInterval()
{
    TestWindow window;
    View view(&window.proc);
    view.setDesiredFps(60);
    QCOMPARE(view.desiredFps(), 16);
    QCOMPARE(view.timerInterval(), 16);
    view.setDesiredFps(25);
    QCOMPARE(view.desiredFps(), 40);
    QCOMPARE(view.timerInterval(), 40);
    QCOMPARE(view.timerCount(), 1);
    view.setDesiredFps(3);
    QCOMPARE(view.desiredFps(), 333);
}

void tst_QorRenderView::enablingATimerThatWasOffStartsNothing()
{
    TestWindow window;
    View view(&window.proc);
    view.setTimerEnabled(false);
    QVERIFY(!view.isTimerEnabled());
    QCOMPARE(view.timerCount(), 0);
    QCOMPARE(view.desiredFps(), 16);
    view.setTimerEnabled(true);
    QVERIFY(view.isTimerEnabled());
    QCOMPARE(view.timerCount(), 0);
    QCOMPARE(view.desiredFps(), 62);
    view.setDesiredFps(50);
    QCOMPARE(view.timerInterval(), 20);
}

void tst_QorRenderView::enablingATimerThatIsOnTurnsTheWord()
{
    TestWindow window;
    View view(&window.proc);
    view.setTimerEnabled(true);
    QCOMPARE(view.desiredFps(), 62);
    QCOMPARE(view.timerInterval(), 62);
    view.setTimerEnabled(true);
    QCOMPARE(view.desiredFps(), 16);
    QCOMPARE(view.timerInterval(), 16);
    QCOMPARE(view.timerCount(), 1);
}

void tst_QorRenderView::enablingWithAWordOfZeroChangesNothing()
{
    TestWindow window;
    View view(&window.proc);
    view.setDesiredFps(1001);
    QCOMPARE(view.desiredFps(), 0);
    QCOMPARE(view.timerInterval(), 0);
    view.setTimerEnabled(true);
    QCOMPARE(view.desiredFps(), 0);
    QCOMPARE(view.timerCount(), 1);
    view.setTimerEnabled(false);
    view.setTimerEnabled(true);
    QVERIFY(view.isTimerEnabled());
    QCOMPARE(view.timerCount(), 0);
}

void tst_QorRenderView::aDisabledTimerTakesAnInterval()
{
    TestWindow window;
    View view(&window.proc);
    view.setTimerEnabled(false);
    view.setDesiredFps(100);
    QCOMPARE(view.desiredFps(), 10);
    QCOMPARE(view.timerCount(), 0);
}

void tst_QorRenderView::timersAreKilledWithoutWarning()
{
    static int warnings = 0;
    warnings = 0;
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            warnings += text.contains(QStringLiteral("killTimer")) ? 1 : 0;
        });
    TestWindow window;
    View view(&window.proc);
    view.setTimerEnabled(false);
    view.setTimerEnabled(false);
    view.setTimerEnabled(true);
    view.setDesiredFps(10);
    qInstallMessageHandler(before);
    QCOMPARE(warnings, 0);
}

void tst_QorRenderView::sizeHintIsFourHundredSquare()
{
    TestWindow window;
    const View view(&window.proc);
    const QWidget& widget = view;
    QCOMPARE(widget.sizeHint(), QSize(400, 400));
}

void tst_QorRenderView::mouseModeIsStored()
{
    TestWindow window;
    View view(&window.proc);
    view.setMouseMode(QorRenderView::PickMode);
    QCOMPARE(view.mouseMode(), QorRenderView::PickMode);
}

void tst_QorRenderView::paintRendersAnEnabledView()
{
    TestWindow window;
    View view(&window.proc);
    window.proc.takeCalls();
    view.paintGL();
    QCOMPARE(window.proc.takeCalls(), (std::vector<std::string>{"render"}));
    view.setEnabled(false);
    view.paintGL();
    view.initializeGL();
    QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());
}

void tst_QorRenderView::resizeTellsTheRuntimeUnlessOneIsPending()
{
    TestWindow window;
    View view(&window.proc);
    window.proc.takeCalls();
    QVERIFY(!view.winPtr()->isResizePending());
    view.resizeGL(30, 20);
    QCOMPARE(window.proc.takeCalls(), (std::vector<std::string>{"resize 30 20"}));
    view.winPtr()->setResizePending(true);
    view.resizeGL(50, 40);
    QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());
}

void tst_QorRenderView::resizeOfTheGlWidgetGoesByTheRuntimesWindow()
{
    class GlWidget : public OSCQGLWidget
    {
    public:
        using OSCQGLWidget::OSCQGLWidget;
        using OSCQGLWidget::resizeGL;
    };
    TestWindow window;
    osg::WindowPtr osgWindow = CountingWindow::create();
    osg::addRefCP(osgWindow);
    auto* counting = static_cast<CountingWindow*>(osgWindow.getCPtr());
    {
        GlWidget gl(&window.proc, QGLFormat(), false, nullptr);
        GlWidget withoutProc(nullptr, QGLFormat(), false, nullptr);
        withoutProc.resizeGL(30, 20);
        // No OpenSG window yet.
        gl.resizeGL(30, 20);
        QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());

        window.proc.setWinPtr(osgWindow, true);
        gl.resizeGL(30, 20);
        QCOMPARE(window.proc.takeCalls(), (std::vector<std::string>{"resize 30 20"}));
        QCOMPARE(counting->hooks, 1);

        // While a resize is pending only the hook runs.
        osgWindow->setResizePending(true);
        gl.resizeGL(50, 40);
        QCOMPARE(window.proc.takeCalls(), std::vector<std::string>());
        QCOMPARE(counting->hooks, 2);

        osg::WindowPtr none;
        window.proc.setWinPtr(none, true);
    }
    osg::subRefCP(osgWindow);
}

void tst_QorRenderView::destructionTakesTheWindowBack()
{
    TestWindow window;
    osg::WindowPtr osgWindow;
    {
        const View view(&window.proc);
        osgWindow = view.winPtr();
        osg::addRefCP(osgWindow);
    }
    QVERIFY(!window.proc.winPtr());
    QCOMPARE(osgWindow.getRefCount(), 1);
    osg::subRefCP(osgWindow);
}

void tst_QorRenderView::destructionLeavesAnotherViewsWindowAlone()
{
    TestWindow window;
    auto first = std::make_unique<View>(&window.proc);
    const View second(&window.proc);
    first.reset();
    QVERIFY(window.proc.winPtr() == second.winPtr());
}

void tst_QorRenderView::theViewsReferenceKeepsTheWindowAlive()
{
    TestWindow window;
    const View view(&window.proc);
    osg::WindowPtr none;
    window.proc.setWinPtr(none, true);
    QCOMPARE(view.winPtr().getRefCount(), 1);
}

void tst_QorRenderView::aCopyIsAnEmptyFrame()
{
    TestWindow window;
    QWidget host;
    View view(&window.proc, &host);
    view.setMouseMode(QorRenderView::PickMode);
    View copy(view);
    QVERIFY(!copy.parent());
    QVERIFY(!copy.winPtr());
    QVERIFY(!copy.windowProc());
    QVERIFY(!copy.gl());
    QCOMPARE(copy.mouseMode(), QorRenderView::NavigationMode);
    QCOMPARE(copy.desiredFps(), 16);
    QVERIFY(copy.isTimerEnabled());
    QCOMPARE(copy.timerCount(), 0);
    // Nothing of it reaches into the void.
    copy.updateGL();
    copy.paintGL();
    copy.resizeGL(3, 3);
    copy.setToolbar(true);
    copy.setDesiredFps(500);
    copy.show();
    QTest::mouseClick(&copy, Qt::LeftButton);
    QTest::keyClick(&copy, Qt::Key_A);
    QTest::qWait(5);
    QVERIFY(window.proc.winPtr() == view.winPtr());
}

void tst_QorRenderView::updateGLIsAVirtualSlot()
{
    TestWindow window;
    View view(&window.proc);
    QVERIFY(QMetaObject::invokeMethod(&view, "updateGL"));
    QCOMPARE(view.updates, 1);
}

void tst_QorRenderView::glPaintPathIsEmpty()
{
    TestWindow window;
    View view(&window.proc);
    view.resize(100, 100);
    view.show();
    QTest::qWait(50);
    for (const std::string& call : window.proc.takeCalls())
        QVERIFY2(call != "render", call.c_str());
}

void tst_QorRenderView::signalsAreDeclaredAsTold()
{
    const QMetaObject& meta = QorRenderView::staticMetaObject;
    QVERIFY(meta.indexOfSignal("nodePickedHierachy(std::vector<Orvane::Node*>)") >= 0);
    QVERIFY(meta.indexOfSignal("nodePickedHitData(osg::Pnt3f,osg::Vec3f)") >= 0);
    QVERIFY(meta.indexOfSlot("updateGL()") >= 0);
}

QTEST_MAIN(tst_QorRenderView)
#include "tst_QorRenderView.moc"
