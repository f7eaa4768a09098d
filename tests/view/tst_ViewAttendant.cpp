// What the workbench does about its render views, with a scene on the screen.
#include "QorRenderView.h"
#include "QorViewManager.h"
#include "QorWindowToolbar.h"
#include "ViewAttendant.h"
#include <Orvane/MFNode.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QAction>
#include <QCursor>
#include <QGLWidget>
#include <QHelpEvent>
#include <QTest>
#include <QToolTip>

using namespace Orvane::Qt4;

namespace {

const QString scene =
    QStringLiteral("<X3D version='4.0' profile='Full'><Scene>%1<TouchSensor "
                   "description='Press me'/><Shape><Box size='9 9 1'/></Shape></Scene></X3D>");

} // namespace

class tst_ViewAttendant : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void buttonsAreShownAtFirst();
    void buttonsFollowTheAction();
    void buttonsOfALaterViewFollowTheAction();
    void pointerThatLeavesIsOverNoSensor();
    void stripOfButtonsIsOutsideToo();
    void tipSaysWhatTheSensorSays();

private:
    void runFrames()
    {
        for (int i = 0; i < 4; ++i) {
            _manager->runFrame();
            QTest::qWait(10);
        }
    }
    QWidget* gl() const { return _manager->findChild<QGLWidget*>(); }
    QorWindowToolbar* strip() const { return _manager->findChild<QorWindowToolbar*>(); }
    bool isOverSensor() const
    {
        const Orvane::WindowProc* proc = _manager->findChild<QorRenderView*>()->windowProc();
        auto* area = dynamic_cast<Orvane::Viewarea*>(proc->window()->viewareas()->elem(0).node());
        return area->getViewareaProc()->overSensor();
    }
    void pointTo(const QPoint& onScreen)
    {
        QCursor::setPos(onScreen);
        QTest::qWait(20);
        runFrames();
    }

    QorViewManager* _manager = nullptr;
    ViewAttendant* _attendant = nullptr;
};

void tst_ViewAttendant::init()
{
    QCursor::setPos(900, 900);
    _manager = new QorViewManager(nullptr, QorViewManager::ManualTrigger);
    _attendant = new ViewAttendant(_manager, _manager);
    QVERIFY(_manager->loadContextByString(QStringLiteral("sensor.x3d"), scene.arg(QString())));
    _manager->setWindowFlags(_manager->windowFlags() | Qt::FramelessWindowHint);
    _manager->setGeometry(20, 20, 320, 240);
    _manager->show();
    QVERIFY(QTest::qWaitForWindowExposed(_manager));
    runFrames();
}

void tst_ViewAttendant::cleanup()
{
    delete _manager;
}

void tst_ViewAttendant::buttonsAreShownAtFirst()
{
    QVERIFY(_attendant->buttonsAction()->isChecked());
    QVERIFY(strip()->isVisible());
}

void tst_ViewAttendant::buttonsFollowTheAction()
{
    _attendant->buttonsAction()->trigger();
    QVERIFY(!strip()->isVisible());
    _attendant->buttonsAction()->trigger();
    QVERIFY(strip()->isVisible());
}

void tst_ViewAttendant::buttonsOfALaterViewFollowTheAction()
{
    _attendant->buttonsAction()->trigger();
    const QString engine =
        QStringLiteral("<Engine><Window><Viewarea/></Window><Window><Viewarea/></Window></Engine>");
    QVERIFY(_manager->loadContextByString(QStringLiteral("two.x3d"), scene.arg(engine)));
    runFrames();
    const auto strips = _manager->findChildren<QorWindowToolbar*>();
    QCOMPARE(strips.size(), 2);
    for (const QorWindowToolbar* each : strips)
        QVERIFY(!each->isVisible());
}

void tst_ViewAttendant::pointerThatLeavesIsOverNoSensor()
{
    pointTo(gl()->mapToGlobal(gl()->rect().center()));
    QVERIFY(isOverSensor());
    pointTo(QPoint(900, 900));
    QVERIFY(!isOverSensor());
    pointTo(gl()->mapToGlobal(gl()->rect().center()));
    QVERIFY(isOverSensor());
}

void tst_ViewAttendant::stripOfButtonsIsOutsideToo()
{
    pointTo(gl()->mapToGlobal(gl()->rect().center()));
    QVERIFY(isOverSensor());
    pointTo(strip()->mapToGlobal(strip()->rect().center()));
    QVERIFY(!isOverSensor());
}

void tst_ViewAttendant::tipSaysWhatTheSensorSays()
{
    const auto askForTip = [this] {
        QHelpEvent event(QEvent::ToolTip, gl()->rect().center(), QCursor::pos());
        QCoreApplication::sendEvent(gl(), &event);
    };
    pointTo(gl()->mapToGlobal(gl()->rect().center()));
    askForTip();
    QCOMPARE(QToolTip::text(), QStringLiteral("Press me"));
    pointTo(QPoint(900, 900));
    askForTip();
    QTRY_VERIFY(!QToolTip::isVisible());
}

QTEST_MAIN(tst_ViewAttendant)
#include "tst_ViewAttendant.moc"
