#include "QorRenderView.h"
#include "QorViewManager.h"
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/System.h>
#include <Orvane/WindowProc.h>
#include <QGLWidget>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>
#include <memory>

using namespace Orvane::Qt4;

namespace {

const QColor sky(51, 102, 204);
const QString redBox = QStringLiteral(
    "<X3D version='4.0'><Scene><Background skyColor='0.2 0.4 0.8'/><Transform DEF='Place'><Shape><Appearance>"
    "<Material diffuseColor='0 0 0' emissiveColor='1 0 0'/></Appearance><Box size='3 3 "
    "3'/></Shape></Transform>"
    "</Scene></X3D>");

/// What stands on the screen where a widget is.
QImage onScreen(const QWidget& widget)
{
    const QPoint place = widget.mapToGlobal(QPoint(0, 0));
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), widget.width(), widget.height())
        .toImage();
}

bool isClose(const QColor& a, const QColor& b)
{
    return qAbs(a.red() - b.red()) < 4 && qAbs(a.green() - b.green()) < 4 && qAbs(a.blue() - b.blue()) < 4;
}

/// The box in the middle before the sky.
bool showsBox(const QImage& image)
{
    return !image.isNull() &&
           isClose(image.pixelColor(image.width() / 2, image.height() / 2), QColor(255, 0, 0)) &&
           isClose(image.pixelColor(4, 4), sky) &&
           isClose(image.pixelColor(image.width() - 5, image.height() - 5), sky);
}

void runFrames(QorViewManager& manager, int count = 4)
{
    for (int i = 0; i < count; ++i) {
        const auto views = manager.findChildren<QorRenderView*>();
        for (QorRenderView* view : views)
            view->windowProc()->render();
        manager.runFrame();
        QTest::qWait(20);
    }
}

/// Runs frames until the picture on the screen is as \a isRight wants it, for a few seconds at the most.
template <class Test>
bool comesTrue(QorViewManager& manager, Test isRight)
{
    for (int i = 0; i < 100; ++i) {
        runFrames(manager, 3);
        if (isRight())
            return true;
    }
    return false;
}

bool show(QWidget& widget, const QRect& place)
{
    widget.setWindowFlags(widget.windowFlags() | Qt::FramelessWindowHint);
    widget.setGeometry(place);
    widget.show();
    return QTest::qWaitForWindowExposed(&widget);
}

} // namespace

/// The library and the embedded runtime together, looked at on the screen.
class tst_SceneInView : public QObject
{
    Q_OBJECT

private slots:
    void sceneAppearsInTheManager();
    void timerDrivenManagerShowsTheSceneByItself();
    void pictureFollowsTheSize();
    void pictureStaysWhenUncovered();
    void pictureStaysBesideASecondView();
    void hiddenAndShownViewComesBack();
    void writtenValueMovesTheScene();
    void failedLoadKeepsThePicture();
    void emptyTextClearsTheScene();
    void twoManagersShowTwoScenes();
    void hostWithoutManagerGetsItsView();
    void windowsOfAnEngineStandInTheGrid();
};

void tst_SceneInView::sceneAppearsInTheManager()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    const auto views = manager.findChildren<QorRenderView*>();
    QCOMPARE(views.size(), 1);
    QVERIFY(views.first()->findChild<QGLWidget*>()->isValid());
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
    QCOMPARE(views.first()->size(), manager.size());
}

void tst_SceneInView::timerDrivenManagerShowsTheSceneByItself()
{
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    QTRY_VERIFY_WITH_TIMEOUT(showsBox(onScreen(manager)), 10000);
}

void tst_SceneInView::pictureFollowsTheSize()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 200, 150)));
    runFrames(manager);
    manager.resize(500, 400);
    QTest::qWait(50);
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
    const QImage image = onScreen(manager);
    QCOMPARE(image.size(), QSize(500, 400));
    // The field of view belongs to the smaller side, so the box keeps its share of the height.
    int top = 0;
    while (top < 200 && isClose(image.pixelColor(250, top), sky))
        ++top;
    manager.resize(800, 400);
    QTest::qWait(50);
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
    const QImage wide = onScreen(manager);
    int wideTop = 0;
    while (wideTop < 200 && isClose(wide.pixelColor(400, wideTop), sky))
        ++wideTop;
    QVERIFY(top > 20);
    QVERIFY(qAbs(top - wideTop) <= 1);
}

void tst_SceneInView::pictureStaysWhenUncovered()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
    {
        QWidget cover;
        cover.setStyleSheet(QStringLiteral("background: #ff00ff"));
        QVERIFY(show(cover, QRect(10, 10, 400, 300)));
        cover.raise();
        QTRY_VERIFY(isClose(onScreen(manager).pixelColor(160, 120), QColor(255, 0, 255)));
    }
    QTest::qWait(100);
    // No frame has been run since.
    QTRY_VERIFY(showsBox(onScreen(manager)));
}

void tst_SceneInView::pictureStaysBesideASecondView()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QString text = redBox;
    text.replace(
        QStringLiteral("<Scene>"),
        QStringLiteral("<Scene><Engine><Window><Viewarea/></Window><Window><Viewarea/></Window></Engine>"));
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), text));
    QVERIFY(show(manager, QRect(20, 20, 602, 240)));
    runFrames(manager);
    const auto views = manager.findChildren<QorRenderView*>();
    QCOMPARE(views.size(), 2);
    QCOMPARE(views.at(0)->geometry(), QRect(0, 0, 300, 240));
    QCOMPARE(views.at(1)->geometry(), QRect(302, 0, 300, 240));
    QVERIFY(comesTrue(manager,
                      [&] { return showsBox(onScreen(*views.at(0))) && showsBox(onScreen(*views.at(1))); }));
}

void tst_SceneInView::hiddenAndShownViewComesBack()
{
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    QTRY_VERIFY_WITH_TIMEOUT(showsBox(onScreen(manager)), 10000);
    manager.hide();
    QTest::qWait(200);
    QVERIFY(!showsBox(onScreen(manager)));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    QTRY_VERIFY_WITH_TIMEOUT(showsBox(onScreen(manager)), 10000);
}

void tst_SceneInView::writtenValueMovesTheScene()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
    QVERIFY(
        manager.setValue(QStringLiteral("Place"), QStringLiteral("translation"), QStringLiteral("100 0 0")));
    QVERIFY(comesTrue(manager, [&] { return isClose(onScreen(manager).pixelColor(160, 120), sky); }));
    QCOMPARE(manager.getValue(QStringLiteral("Place"), QStringLiteral("translation")),
             QStringLiteral("100 0 0"));
}

void tst_SceneInView::failedLoadKeepsThePicture()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    runFrames(manager);
    QVERIFY(!manager.loadContextByString(QStringLiteral("broken.x3d"), QStringLiteral("<X3D><Scene>")));
    QVERIFY(!manager.loadContextByURL(QStringLiteral("/no/such/file.x3d")));
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(manager)); }));
}

void tst_SceneInView::emptyTextClearsTheScene()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(show(manager, QRect(20, 20, 320, 240)));
    runFrames(manager);
    QVERIFY(manager.loadContextByString(QString(), QString()));
    QVERIFY(
        comesTrue(manager, [&] { return isClose(onScreen(manager).pixelColor(160, 120), QColor(0, 0, 0)); }));
    QCOMPARE(manager.findChildren<QorRenderView*>().size(), 1);
}

void tst_SceneInView::twoManagersShowTwoScenes()
{
    auto first = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    QorViewManager second(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(first->loadContextByString(QStringLiteral("box.x3d"), redBox));
    QString green = redBox;
    green.replace(QStringLiteral("'1 0 0'"), QStringLiteral("'0 1 0'"));
    QVERIFY(second.loadContextByString(QStringLiteral("box.x3d"), green));
    QVERIFY(show(*first, QRect(20, 20, 300, 240)));
    QVERIFY(show(second, QRect(340, 20, 300, 240)));
    QVERIFY(comesTrue(*first, [&] {
        runFrames(second, 1);
        return showsBox(onScreen(*first)) &&
               isClose(onScreen(second).pixelColor(150, 120), QColor(0, 255, 0));
    }));
    first.reset();
    QVERIFY(Orvane::System::the().isInitialised());
    QVERIFY(
        second.setValue(QStringLiteral("Place"), QStringLiteral("translation"), QStringLiteral("100 0 0")));
    QVERIFY(comesTrue(second, [&] { return isClose(onScreen(second).pixelColor(150, 120), sky); }));
}

void tst_SceneInView::hostWithoutManagerGetsItsView()
{
    QWidget host;
    QVERIFY(show(host, QRect(20, 20, 500, 400)));
    Orvane::System::the().init(0, nullptr, 382);
    QorRenderView::connectObserver(&host);
    Orvane::Context* context = Orvane::Context::create();
    QVERIFY(context->load("box.x3d", redBox.toStdString(), Orvane::Context::REPLACE_LT, {}));
    Orvane::ContextSetup::create(context, nullptr, Orvane::HOST_NC);
    Orvane::Engine::create(context, nullptr, Orvane::HOST_NC);
    context->setRootState(0.0, Orvane::RUNNING_NS);
    auto* view = host.findChild<QorRenderView*>();
    QVERIFY(view);
    QVERIFY(view->isVisible());
    QCOMPARE(view->size(), QSize(800, 600));
    view->resize(400, 300);
    for (int i = 0; i < 4; ++i) {
        view->windowProc()->render();
        context->runFrame();
        QTest::qWait(20);
    }
    const QImage image = onScreen(*view);
    QVERIFY(isClose(image.pixelColor(200, 150), QColor(255, 0, 0)));
    QVERIFY(isClose(image.pixelColor(5, 290), sky));
    context->subRef();
    QVERIFY(!host.findChild<QorRenderView*>());
    Orvane::System::the().exit();
}

void tst_SceneInView::windowsOfAnEngineStandInTheGrid()
{
    QString text = redBox;
    text.replace(QStringLiteral("<Scene>"),
                 QStringLiteral("<Scene><Engine><Window><Viewarea/></Window><Window><Viewarea size='0.5 1'/>"
                                "<Viewarea position='0.5 0' size='0.5 1'/></Window>"
                                "<Window fullScreen='true'><Viewarea/></Window></Engine>"));
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByString(QStringLiteral("windows.x3d"), text));
    QVERIFY(show(manager, QRect(20, 20, 602, 402)));
    const auto views = manager.findChildren<QorRenderView*>();
    QCOMPARE(views.size(), 3);
    QCOMPARE(views[0]->geometry(), QRect(0, 0, 300, 200));
    QCOMPARE(views[1]->geometry(), QRect(302, 0, 300, 200));
    QCOMPARE(views[2]->geometry(), QRect(0, 202, 300, 200));
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(*views[0])); }));
    QVERIFY(comesTrue(manager, [&] { return showsBox(onScreen(*views[2])); }));
    const auto showsTwo = [&] {
        const QImage image = onScreen(*views[1]);
        return showsBox(image.copy(0, 0, 150, 200)) && showsBox(image.copy(150, 0, 150, 200));
    };
    QVERIFY(comesTrue(manager, showsTwo));

    // A scene without an engine leaves the windows open.
    QVERIFY(manager.loadContextByString(QStringLiteral("box.x3d"), redBox));
    QVERIFY(comesTrue(manager, showsTwo));
    QCOMPARE(manager.findChildren<QorRenderView*>(), views);
}

QTEST_MAIN(tst_SceneInView)
#include "tst_SceneInView.moc"
