// All scenes as the workbench draws them: the examples, and those of the folder that ORVANE_SCENES names.
// Meant to be run with the sanitizers: each scene is drawn at several times, from its viewpoints, and while
// it is changed.
#include "FrameGrabber.h"
#include "SceneFiles.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/WindowProc.h>
#include <QDir>
#include <QGLWidget>
#include <QorRenderView.h>
#include <QorViewManager.h>
#include <QtTest>

using Orvane::Qt4::QorRenderView;

class tst_DrawnScenes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aSceneDrawsFrames_data();
    void aSceneDrawsFrames();
    void mostScenesWereDrawn();
    void cleanupTestCase();

private:
    void runTo(double seconds);
    void checkPictures();

    FrameGrabber _grabber;
    std::unique_ptr<WorkbenchWindow> _window;
    double _time = 1000.0;
    int _drawn = 0;
    int _refused = 0;
};

void tst_DrawnScenes::initTestCase()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    _window->resize(700, 600);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
}

void tst_DrawnScenes::cleanupTestCase()
{
    qInfo("%d scenes drawn, %d refused", _drawn, _refused);
    _window.reset();
}

void tst_DrawnScenes::aSceneDrawsFrames_data()
{
    QTest::addColumn<QString>("path");
    QStringList folders{qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples/scenes")};
    if (qEnvironmentVariableIsSet("ORVANE_SCENES"))
        folders << qEnvironmentVariable("ORVANE_SCENES");
    for (const QString& folder : qAsConst(folders)) {
        const QStringList paths = sceneFiles(folder);
        QVERIFY2(!paths.isEmpty(), qPrintable(folder));
        for (const QString& path : paths)
            QTest::newRow(qPrintable(QDir(folder).relativeFilePath(path))) << path;
    }
}

void tst_DrawnScenes::runTo(double seconds)
{
    _window->holdTime(_time + seconds);
    _window->viewManager()->runFrame();
    QCoreApplication::processEvents();
}

/// Whatever a scene looks like: each view has a picture of its size.
void tst_DrawnScenes::checkPictures()
{
    const auto widgets = _window->viewManager()->findChildren<QGLWidget*>();
    QVERIFY(!widgets.isEmpty());
    for (QGLWidget* const widget : widgets) {
        const QImage picture = _grabber.picture(widget);
        QVERIFY(!picture.isNull());
        QCOMPARE(picture.size(), widget->size());
    }
}

void tst_DrawnScenes::aSceneDrawsFrames()
{
    QFETCH(QString, path);
    _time += 100.0;
    _window->holdTime(_time);
    if (!_window->open(path)) {
        QVERIFY(!_window->loadError().isEmpty());
        ++_refused;
        return;
    }
    _window->holdTime(_time);
    for (double seconds : {0.0, 0.1, 0.5, 1.0, 2.5})
        runTo(seconds);

    QorRenderView* const view = _window->viewManager()->findChild<QorRenderView*>();
    QVERIFY(view);
    auto* const gl = view->findChild<QGLWidget*>();
    // The next viewpoint, all of the scene, and a turn.
    double seconds = 3.0;
    for (Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageDown, Qt::Key_Home}) {
        QTest::keyClick(gl, key);
        runTo(seconds += 0.7);
    }
    QTest::mousePress(gl, Qt::LeftButton, {}, gl->rect().center());
    runTo(seconds += 0.1);
    QMouseEvent move(QEvent::MouseMove, gl->rect().center() + QPoint(40, 25), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(gl, &move);
    runTo(seconds += 0.1);
    QTest::mouseRelease(gl, Qt::LeftButton, {}, gl->rect().center() + QPoint(40, 25));

    const auto views = _window->viewManager()->findChildren<QorRenderView*>();
    for (const QorRenderView* const each : views)
        each->windowProc()->render();
    _grabber.setActive(true);
    runTo(seconds += 0.1);
    _grabber.setActive(false);
    checkPictures();
    ++_drawn;
}

void tst_DrawnScenes::mostScenesWereDrawn()
{
    QVERIFY(_drawn > 10 * _refused);
}

QTEST_MAIN(tst_DrawnScenes)
#include "tst_DrawnScenes.moc"
