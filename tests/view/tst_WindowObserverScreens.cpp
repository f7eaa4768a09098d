#include "LogCapture.h"
#include "TestWindow.h"
#include <QtGui/QScreen>
#include <QtTest>

using namespace Orvane::Qt4;
using Orvane::WindowProc;

namespace {

/// A view that writes down where it is sent before it goes full screen.
class MovedView : public QorRenderView
{
public:
    explicit MovedView(Orvane::WindowProc* proc)
        : QorRenderView(proc, nullptr)
    {
        last = this;
        move(3, 4);
        resize(100, 90);
        installEventFilter(this);
    }

    static MovedView* last;
    QPoint placeAtToggle;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::WindowStateChange && placeAtToggle.isNull())
            placeAtToggle = pos();
        return false;
    }
};

MovedView* MovedView::last = nullptr;

} // namespace

/// Full-screen windows on a display of several screens; see on-two-and-three-screens.
class tst_WindowObserverScreens : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void theScreenOfThePipeDecides_data();
    void theScreenOfThePipeDecides();
};

void tst_WindowObserverScreens::initTestCase()
{
    const int count = qEnvironmentVariableIntValue("SCREEN_COUNT");
    if (count == 0)
        QSKIP("needs a display of several screens");
    QCOMPARE(QGuiApplication::screens().size(), count);
    QorRenderView::connectObserver(
        [](Orvane::WindowProc* proc) -> QorRenderView* { return new MovedView(proc); }, nullptr);
}

void tst_WindowObserverScreens::theScreenOfThePipeDecides_data()
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    const QPoint unmoved(3, 4);
    const QPoint second(screens.first()->geometry().width(), 0);
    QTest::addColumn<QByteArray>("pipe");
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<bool>("reported");
    const QPoint unset(-1, -1);
    QTest::newRow("everything told") << QByteArray("1024x768:32@60#1") << unset << second << false;
    QTest::newRow("a place of its own") << QByteArray("#1") << QPoint(10, 20) << QPoint(10, 20) << false;
    QTest::newRow("half a place") << QByteArray("#1") << QPoint(10, -1) << second << false;
    int x = 0;
    for (int i = 0; i < screens.size(); x += screens[i++]->geometry().width()) {
        QTest::addRow("screen %d", i)
            << "#" + QByteArray::number(i) << unset << (i == 0 ? unmoved : QPoint(x, 0)) << false;
    }
    QTest::newRow("no such screen") << "#" + QByteArray::number(screens.size()) << unset << unmoved << true;
    QTest::newRow("colon too late") << QByteArray("#1:32") << unset << unmoved << true;
    QTest::newRow("no x") << QByteArray("1024") << unset << unmoved << true;
    QTest::newRow("empty") << QByteArray("") << unset << unmoved << true;
}

void tst_WindowObserverScreens::theScreenOfThePipeDecides()
{
    QFETCH(QByteArray, pipe);
    QFETCH(QPoint, position);
    QFETCH(QPoint, place);
    QFETCH(bool, reported);
    TestWindow window;
    window.node.fullScreenValue = true;
    window.node.pipeValue = pipe.toStdString();
    window.node.positionValue = osg::Vec2f(position.x(), position.y());
    window.announce();
    LogCapture log(osg::LOG_FATAL);
    window.fire(WindowProc::_showWidget);
    const QByteArray message = "1 Invalid value for Window.pipe and " +
                               QByteArray::number(QGuiApplication::screens().size()) + " screens!\n";
    QCOMPARE(log.take(), reported ? QByteArrayList{message} : QByteArrayList());
    QCOMPARE(MovedView::last->placeAtToggle, place);
    QVERIFY(MovedView::last->isFullScreen());
    QVERIFY(MovedView::last->isVisible());
}

QTEST_MAIN(tst_WindowObserverScreens)
#include "tst_WindowObserverScreens.moc"
