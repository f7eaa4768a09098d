#include "OSCQGLWidget.h"
#include "QorRenderView.h"
#include "QorViewManager.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QTest>
#include <string>

using namespace Orvane::Qt4;

namespace {

/// A manager on the screen, with a scene that is driven by real mouse and keys.
class ShownScene
{
public:
    explicit ShownScene(const char* body)
        : manager(nullptr, QorViewManager::ManualTrigger)
    {
        manager.loadContextByString(
            QStringLiteral("sensors.x3d"),
            QStringLiteral("<X3D version='4.0' profile='Full'><Scene>%1</Scene></X3D>")
                .arg(QString::fromLatin1(body)));
        manager.setWindowFlags(manager.windowFlags() | Qt::FramelessWindowHint);
        manager.setGeometry(QRect(40, 40, 300, 300));
        manager.show();
        isShown = QTest::qWaitForWindowExposed(&manager);
        runFrames(4);
        view = manager.findChild<QorRenderView*>();
    }

    void runFrames(int count = 2)
    {
        for (int i = 0; i < count; ++i) {
            manager.runFrame();
            QTest::qWait(5);
        }
    }

    /// Where a place on the plane z = 0 is seen by the standard viewer.
    QPoint place(double x, double y) const
    {
        const double scale = view->height() / 2.0 / 4.142;
        return {qRound(view->width() / 2.0 + x * scale), qRound(view->height() / 2.0 - y * scale)};
    }

    QString get(const char* node, const char* field) const
    {
        Orvane::NodeNameSpace* const names = Orvane::NodeNameSpace::findNameSpace(
            nullptr, "scene", view->windowProc()->window()->context(), false);
        Orvane::Node* const found = Orvane::NodeNameSpace::findNode(names, node);
        return found ? QString::fromStdString(
                           found->findField(field, Orvane::Node::DECLARED_FSO)->valueToString())
                     : QStringLiteral("no node");
    }

    QorViewManager manager;
    QorRenderView* view = nullptr;
    bool isShown = false;
};

const char* const box = "<Shape><Box/></Shape>";

} // namespace

/// Real mouse, keys and fingers on a render view, heard by the scene's sensors.
class tst_SensorsInView : public QObject
{
    Q_OBJECT

private slots:
    void clickReachesTheTouchSensor();
    void dragReachesThePlaneSensorAndMovesTheShape();
    void cursorChangesOverASensor();
    void keysReachTheKeySensor();
    void textReachesTheStringSensor();
    void fingerReachesTheTouchSensor();
    void pickModeKeepsTheMouseFromTheScene();
    void controlClickOpensNothingBesideAnAnchor();
};

void tst_SensorsInView::clickReachesTheTouchSensor()
{
    ShownScene scene((std::string("<TouchSensor DEF='T'/>") + box).c_str());
    QVERIFY(scene.isShown && scene.view);
    QTest::mouseMove(scene.view, scene.place(0.2, 0));
    QTest::mousePress(scene.view, Qt::LeftButton, Qt::NoModifier, scene.place(0.2, 0));
    scene.runFrames();
    QCOMPARE(scene.get("T", "isActive"), QStringLiteral("TRUE"));
    QTest::mouseRelease(scene.view, Qt::LeftButton, Qt::NoModifier, scene.place(0.2, 0));
    scene.runFrames();
    QCOMPARE(scene.get("T", "isActive"), QStringLiteral("FALSE"));
    QVERIFY(scene.get("T", "touchTime").toDouble() > 0.0);
    const QStringList point = scene.get("T", "hitPoint_changed").split(QLatin1Char(' '));
    QVERIFY(qAbs(point.at(0).toDouble() - 0.18) < 0.06);
    QCOMPARE(point.at(2), QStringLiteral("1"));
}

void tst_SensorsInView::dragReachesThePlaneSensorAndMovesTheShape()
{
    ShownScene scene((std::string("<PlaneSensor DEF='P'/><Transform DEF='Place'>") + box +
                      "</Transform><ROUTE fromNode='P' fromField='translation_changed' toNode='Place' "
                      "toField='translation'/>")
                         .c_str());
    QVERIFY(scene.isShown && scene.view);
    QTest::mousePress(scene.view, Qt::LeftButton, Qt::NoModifier, scene.place(0, 0));
    scene.runFrames();
    for (const double x : {0.5, 1.0, 2.0}) {
        QTest::mouseMove(scene.view, scene.place(x, 0));
        scene.runFrames();
    }
    QTest::mouseRelease(scene.view, Qt::LeftButton, Qt::NoModifier, scene.place(2, 0));
    scene.runFrames();
    const double moved = scene.get("Place", "translation").split(QLatin1Char(' ')).at(0).toDouble();
    QVERIFY2(qAbs(moved - 1.8) < 0.1, qPrintable(QString::number(moved)));
    QCOMPARE(scene.get("P", "offset"), scene.get("Place", "translation"));
}

void tst_SensorsInView::cursorChangesOverASensor()
{
    ShownScene scene((std::string("<TouchSensor/>") + box).c_str());
    QVERIFY(scene.isShown && scene.view);
    QTest::mouseMove(scene.view, scene.place(3, 3));
    scene.runFrames();
    QTest::mouseMove(scene.view, scene.place(0, 0));
    scene.runFrames();
    QCOMPARE(scene.view->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseMove(scene.view, scene.place(3, 3));
    scene.runFrames();
    QCOMPARE(scene.view->cursor().shape(), Qt::ArrowCursor);
}

void tst_SensorsInView::keysReachTheKeySensor()
{
    ShownScene scene("<KeySensor DEF='K'/>");
    QVERIFY(scene.isShown && scene.view);
    QTest::keyPress(scene.view, Qt::Key_Left);
    scene.runFrames();
    QCOMPARE(scene.get("K", "actionKeyPress"), QStringLiteral("19"));
    QCOMPARE(scene.get("K", "isActive"), QStringLiteral("TRUE"));
    QTest::keyRelease(scene.view, Qt::Key_Left);
    QTest::keyClick(scene.view, 'q');
    scene.runFrames();
    QCOMPARE(scene.get("K", "actionKeyRelease"), QStringLiteral("19"));
    QCOMPARE(scene.get("K", "keyPress"), QStringLiteral("q"));
    QCOMPARE(scene.get("K", "isActive"), QStringLiteral("FALSE"));
}

void tst_SensorsInView::textReachesTheStringSensor()
{
    ShownScene scene("<StringSensor DEF='S'/>");
    QVERIFY(scene.isShown && scene.view);
    QTest::keyClicks(scene.view, QStringLiteral("Hello wor"));
    QTest::keyClick(scene.view, Qt::Key_Backspace);
    scene.runFrames();
    QCOMPARE(scene.get("S", "enteredText"), QStringLiteral("Hello wo"));
    QTest::keyClick(scene.view, Qt::Key_Return);
    scene.runFrames();
    QCOMPARE(scene.get("S", "finalText"), QStringLiteral("Hello wo"));
}

void tst_SensorsInView::fingerReachesTheTouchSensor()
{
    ShownScene scene((std::string("<TouchSensor DEF='T'/>") + box).c_str());
    QVERIFY(scene.isShown && scene.view);
    // Qt keeps it until the program ends.
    QTouchDevice* const device = QTest::createTouchDevice();
    auto* const widget = scene.view->findChild<OSCQGLWidget*>();
    QVERIFY(widget);
    QTest::touchEvent(widget, device).press(1, scene.place(0, 0), widget);
    scene.runFrames();
    QCOMPARE(scene.get("T", "isActive"), QStringLiteral("TRUE"));
    QTest::touchEvent(widget, device).release(1, scene.place(0, 0), widget);
    scene.runFrames();
    QVERIFY(scene.get("T", "touchTime").toDouble() > 0.0);
    QCOMPARE(scene.get("T", "isOver"), QStringLiteral("FALSE"));
}

void tst_SensorsInView::pickModeKeepsTheMouseFromTheScene()
{
    ShownScene scene((std::string("<TouchSensor DEF='T'/>") + box).c_str());
    QVERIFY(scene.isShown && scene.view);
    scene.view->setMouseMode(QorRenderView::PickMode);
    std::vector<Orvane::Node*> picked;
    osg::Pnt3f point;
    QObject::connect(scene.view, &QorRenderView::nodePickedHierachy,
                     [&](const std::vector<Orvane::Node*>& nodes) { picked = nodes; });
    QObject::connect(scene.view, &QorRenderView::nodePickedHitData,
                     [&](const osg::Pnt3f& hit, const osg::Vec3f&) { point = hit; });
    QTest::mouseClick(scene.view, Qt::LeftButton, Qt::NoModifier, scene.place(0, 0));
    scene.runFrames();
    QCOMPARE(picked.size(), std::size_t(2));
    QVERIFY(qAbs(point[2] - 1.0F) < 1e-3F);
    QCOMPARE(scene.get("T", "touchTime"), QStringLiteral("-1"));
}

void tst_SensorsInView::controlClickOpensNothingBesideAnAnchor()
{
    ShownScene scene((std::string("<Viewpoint DEF='A'/><Viewpoint DEF='B' position='0 0 30'/>"
                                  "<Anchor url='\"#B\"'>") +
                      box + "</Anchor>")
                         .c_str());
    QVERIFY(scene.isShown && scene.view);
    QTest::mouseClick(scene.view, Qt::LeftButton, Qt::ControlModifier, scene.place(3, 3));
    scene.runFrames();
    QCOMPARE(scene.get("B", "isBound"), QStringLiteral("FALSE"));
    QTest::mouseClick(scene.view, Qt::LeftButton, Qt::ControlModifier, scene.place(0, 0));
    scene.runFrames();
    QCOMPARE(scene.get("B", "isBound"), QStringLiteral("TRUE"));
}

QTEST_MAIN(tst_SensorsInView)
#include "tst_SensorsInView.moc"
