#include "PointerScene.h"
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

namespace {

const std::string box = "<Shape><Box/></Shape>";

} // namespace

class tst_PointingSensors : public QObject
{
    Q_OBJECT

private slots:
    void pointerComesOverTheSiblingsAndLeavesThem();
    void hitIsToldInTheSystemOfTheSensor();
    void normalIsSmoothOnASphere();
    void clickGivesTheTouchTime();
    void pressAndReleaseOfOneFrameAreBothHeard();
    void releaseBesideTheGeometryIsNoClick();
    void pressBesideTheGeometryIsNoClick();
    void otherButtonsAreNotHeard();
    void lowestSensorHidesThoseAbove();
    void disabledSensorLetsThoseAboveThrough();
    void sensorsOfOneGroupHearTogether();
    void usedShapeIsSensedByThePlaceItIsIn();
    void sensorOfAUsedGroupIsSensedInBothPlaces();
    void sensorOfAPrototypeIsHeardThroughItsInterface();
    void sensorInsideAnInlineSensesItsContent();
    void hiddenShapesAreNotSensed();
    void nearerShapeHidesTheSensedOne();
    void activeSensorKeepsThePointer();
    void disablingEndsWhatIsActive();
    void shapeThatMovesUnderThePointerIsSensed();
    void nothingIsToldWhileNothingMoves();
    void sensorThatGoesWhileActiveIsForgotten();
    void sceneThatIsReplacedWhileActiveIsForgotten();
    void anchorOpensItsAddressOnAClick();
    void anchorBindsAViewpointOfItsScene();
    void anchorWithoutAddressLetsClicksThrough();
    void cursorFollowsTheSensor();
    void sensorTellsItsDescription();
    void primaryTouchIsThePointer();
    void secondFingerIsNot();
    void eventsGoToTheViewareaUnderThePointer();
    void dragStaysWithItsViewarea();
    void windowsOfOneEngineHearTheirOwnInput();
    void windowWithoutSizeHearsNothing();
    void viewareaThatGoesEndsTheDrag();
};

void tst_PointingSensors::pointerComesOverTheSiblingsAndLeavesThem()
{
    PointerScene scene("<Group><TouchSensor DEF='T'/>" + box + "</Group>");
    scene.watch("T.isOver");
    scene.move(0.5, 0.5);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isOver TRUE"}));
    scene.move(0.4, 0.5);
    scene.frame();
    QCOMPARE(scene.take(), Events());
    scene.move(3, 3);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isOver FALSE"}));
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
}

void tst_PointingSensors::hitIsToldInTheSystemOfTheSensor()
{
    PointerScene scene("<Transform translation='1 0 0' rotation='0 0 1 1.5707963'><TouchSensor DEF='T'/>"
                       "<Transform translation='0 0 -1'>" +
                       box + "</Transform></Transform>");
    scene.move(1.5, 0.25);
    scene.frame();
    // x of the world is -y of the sensor.
    QVERIFY(isClose(scene.numbers("T.hitPoint_changed"), {0.25, -0.5, 0}));
    QVERIFY(isClose(scene.numbers("T.hitNormal_changed"), {0, 0, 1}, 1e-5));
    QVERIFY(isClose(scene.numbers("T.hitTexCoord_changed"), {0.625, 0.25}));
}

void tst_PointingSensors::normalIsSmoothOnASphere()
{
    PointerScene scene("<TouchSensor DEF='T'/><Shape><Sphere radius='2'/></Shape>");
    scene.move(0.7, 0.9, 1.6);
    scene.frame();
    const std::vector<double> point = scene.numbers("T.hitPoint_changed");
    QVERIFY(isClose(scene.numbers("T.hitNormal_changed"), {point[0] / 2, point[1] / 2, point[2] / 2}, 0.02));
}

void tst_PointingSensors::clickGivesTheTouchTime()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.watch("T.isActive");
    scene.watch("T.touchTime");
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isActive TRUE"}));
    scene.release(0.1, 0);
    scene.frame();
    const Events events = scene.take();
    QCOMPARE(events.size(), std::size_t(2));
    QCOMPARE(events[0], std::string("T.isActive FALSE"));
    QVERIFY(isClose(scene.numbers("T.touchTime"), {scene.time()}, 1e-3));
}

void tst_PointingSensors::pressAndReleaseOfOneFrameAreBothHeard()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.watch("T.isActive");
    scene.press(0, 0);
    scene.release(0, 0);
    scene.press(0, 0);
    scene.release(0, 0);
    scene.frame();
    QCOMPARE(scene.take(),
             (Events{"T.isActive TRUE", "T.isActive FALSE", "T.isActive TRUE", "T.isActive FALSE"}));
}

void tst_PointingSensors::releaseBesideTheGeometryIsNoClick()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.press(0, 0);
    scene.frame();
    scene.move(3, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("T.isActive"), std::string("TRUE"));
    scene.release(3, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("T.touchTime"), std::string("-1"));
}

void tst_PointingSensors::pressBesideTheGeometryIsNoClick()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.watch("T.isActive");
    scene.press(3, 0);
    scene.frame();
    scene.move(0, 0);
    scene.release(0, 0);
    scene.frame();
    QCOMPARE(scene.take(), Events());
    QCOMPARE(scene.get("T.touchTime"), std::string("-1"));
}

void tst_PointingSensors::otherButtonsAreNotHeard()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.watch("T.isActive");
    for (const int button : {2, 4, 8, 16}) {
        scene.window().buttonPress(button, 100, 100);
        scene.window().buttonRelease(button, 100, 100);
    }
    scene.frame();
    QCOMPARE(scene.take(), Events());
}

void tst_PointingSensors::lowestSensorHidesThoseAbove()
{
    PointerScene scene("<TouchSensor DEF='Top'/><Group><TouchSensor DEF='Low'/>" + box +
                       "</Group><Transform translation='3 0 0'>" + box + "</Transform>");
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("Low.isOver"), std::string("TRUE"));
    QCOMPARE(scene.get("Top.isOver"), std::string("FALSE"));
    scene.move(3, 0);
    scene.frame();
    QCOMPARE(scene.get("Low.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("Top.isOver"), std::string("TRUE"));
}

void tst_PointingSensors::disabledSensorLetsThoseAboveThrough()
{
    PointerScene scene("<TouchSensor DEF='Top'/><Group><TouchSensor DEF='Low' enabled='false'/>" + box +
                       "</Group>");
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("Top.isOver"), std::string("TRUE"));
    // The pointer rests, and the sensors below it change.
    scene.set("Low.enabled", "TRUE");
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("Top.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("Low.isOver"), std::string("TRUE"));
}

void tst_PointingSensors::sensorsOfOneGroupHearTogether()
{
    PointerScene scene("<Group><TouchSensor DEF='A'/>" + box + "<TouchSensor DEF='B'/></Group>");
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("A.isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("B.isActive"), std::string("TRUE"));
}

void tst_PointingSensors::usedShapeIsSensedByThePlaceItIsIn()
{
    PointerScene scene(
        "<Transform translation='-2 0 0'><TouchSensor DEF='Left'/><Shape DEF='S'><Box/></Shape>"
        "</Transform><Transform translation='2 0 0'><TouchSensor DEF='Right'/><Shape USE='S'/>"
        "</Transform>");
    scene.move(2, 0.5);
    scene.frame();
    QCOMPARE(scene.get("Left.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("Right.isOver"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("Right.hitPoint_changed"), {-0.2, 0.45, 1}));
}

void tst_PointingSensors::sensorOfAUsedGroupIsSensedInBothPlaces()
{
    PointerScene scene("<Transform translation='-2 0 0'><Group DEF='G'><TouchSensor DEF='T'/>" + box +
                       "</Group></Transform><Transform translation='2 0 0'><Group USE='G'/></Transform>");
    scene.move(-2, 0.5, 1);
    scene.frame();
    QVERIFY(isClose(scene.numbers("T.hitPoint_changed"), {0, 0.5, 1}));
    scene.move(2, -0.5, 1);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("T.hitPoint_changed"), {0, -0.5, 1}));
}

void tst_PointingSensors::sensorOfAPrototypeIsHeardThroughItsInterface()
{
    PointerScene scene("<ProtoDeclare name='Button'><ProtoInterface><field name='pressed' type='SFBool' "
                       "accessType='outputOnly'/></ProtoInterface><ProtoBody><Group><TouchSensor><IS>"
                       "<connect nodeField='isActive' protoField='pressed'/></IS></TouchSensor>" +
                       box +
                       "</Group></ProtoBody></ProtoDeclare>"
                       "<TouchSensor DEF='Above'/><ProtoInstance name='Button' DEF='B'/>");
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("B.pressed"), std::string("TRUE"));
    QCOMPARE(scene.get("Above.isOver"), std::string("FALSE"));
}

void tst_PointingSensors::sensorInsideAnInlineSensesItsContent()
{
    const QTemporaryDir folder;
    QFile part(folder.filePath(QStringLiteral("part.x3d")));
    QVERIFY(part.open(QIODevice::WriteOnly));
    part.write(
        ("<X3D version='4.0'><Scene><TouchSensor DEF='T'/>" + box + "<EXPORT localDEF='T'/></Scene></X3D>")
            .c_str());
    part.close();
    PointerScene scene("<TouchSensor DEF='Above'/><Inline DEF='I' url='part.x3d'/>",
                       folder.filePath(QStringLiteral("main.x3d")).toStdString());
    scene.move(0, 0);
    scene.frame();
    // The sensor of the inlined scene is the lower one.
    QCOMPARE(scene.get("Above.isOver"), std::string("FALSE"));
    QVERIFY(scene.viewarea().overSensor());
}

void tst_PointingSensors::hiddenShapesAreNotSensed()
{
    PointerScene scene(
        "<TouchSensor DEF='T'/><Switch DEF='W' whichChoice='-1'>" + box +
        "</Switch>"
        "<Transform translation='2.5 0 0'><Shape DEF='S' visible='false'><Box/></Shape></Transform>"
        "<Transform translation='-2.5 0 0'><LOD DEF='L' "
        "range='5'><Shape><Box/></Shape><Group/></LOD></Transform>"
        "<Transform translation='0 2.5 0'><Collision><Shape containerField='proxy'><Box/></Shape></Collision>"
        "</Transform>");
    for (const auto& [x, y] : {std::pair{0.0, 0.0}, {2.5, 0.0}, {-2.5, 0.0}, {0.0, 2.5}}) {
        scene.move(x, y);
        scene.frame();
        QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    }
    scene.set("W.whichChoice", "0");
    scene.set("S.visible", "TRUE");
    scene.frame();
    for (const double x : {0.0, 2.5}) {
        scene.move(x, 0);
        scene.frame();
        QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    }
}

void tst_PointingSensors::nearerShapeHidesTheSensedOne()
{
    PointerScene scene(
        "<Group><TouchSensor DEF='T'/>" + box +
        "</Group><Transform translation='0 0 3'><Shape><Box size='1 1 1'/></Shape></Transform>");
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
}

void tst_PointingSensors::activeSensorKeepsThePointer()
{
    PointerScene scene("<Group><TouchSensor DEF='A'/>" + box +
                       "</Group><Transform translation='3 0 0'><TouchSensor DEF='B'/>" + box +
                       "</Transform>");
    scene.watch("B.isOver");
    scene.press(0, 0);
    scene.frame();
    scene.move(3, 0);
    scene.frame();
    QCOMPARE(scene.take(), Events());
    QVERIFY(scene.viewarea().overSensor());
    scene.release(3, 0);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"B.isOver TRUE"}));
}

void tst_PointingSensors::disablingEndsWhatIsActive()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.press(0, 0);
    scene.frame();
    scene.watch("T.isActive");
    scene.watch("T.isOver");
    scene.set("T.enabled", "FALSE");
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isActive FALSE", "T.isOver FALSE"}));
    scene.set("T.enabled", "TRUE");
    scene.frame();
    scene.move(0.2, 0);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isOver TRUE"}));
    scene.release(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.touchTime"), std::string("-1"));
    QCOMPARE(scene.take(), Events());
}

void tst_PointingSensors::shapeThatMovesUnderThePointerIsSensed()
{
    PointerScene scene("<Transform DEF='Place' translation='3 0 0'><TouchSensor DEF='T'/>" + box +
                       "</Transform>");
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    scene.set("Place.translation", "0 0 0");
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
}

void tst_PointingSensors::nothingIsToldWhileNothingMoves()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.move(0, 0);
    scene.frame();
    scene.frame();
    scene.watch("T.hitPoint_changed");
    scene.frame();
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.take(), Events());
    scene.move(0.5, 0);
    scene.frame();
    QCOMPARE(scene.take().size(), std::size_t(1));
}

void tst_PointingSensors::sensorThatGoesWhileActiveIsForgotten()
{
    PointerScene scene("<Group DEF='G'><PlaneSensor DEF='P'/><TouchSensor DEF='T'/>" + box + "</Group>");
    scene.press(0, 0);
    scene.frame();
    scene.set("G.children", "");
    scene.frame();
    QVERIFY(!scene.find("P"));
    scene.move(1, 0);
    scene.frame();
    QVERIFY(!scene.viewarea().overSensor());
    scene.release(1, 0);
    scene.frame();
}

void tst_PointingSensors::sceneThatIsReplacedWhileActiveIsForgotten()
{
    PointerScene scene("<PlaneSensor/>" + box);
    scene.press(0, 0);
    scene.move(0.5, 0);
    scene.frame();
    QVERIFY(scene.load("<TouchSensor DEF='New'/>" + box));
    scene.move(0.2, 0);
    scene.frame();
    scene.release(0, 0);
    scene.frame();
    QCOMPARE(scene.get("New.isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("New.touchTime"), std::string("-1"));
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("New.isActive"), std::string("TRUE"));
}

void tst_PointingSensors::anchorOpensItsAddressOnAClick()
{
    const QTemporaryDir folder;
    QFile target(folder.filePath(QStringLiteral("target.x3d")));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("<X3D version='4.0'><Scene><Viewpoint DEF='First'/><Viewpoint DEF='Second'/><Group "
                 "DEF='Arrived'/></Scene></X3D>");
    target.close();
    PointerScene scene("<Anchor url='\"absent.x3d\" \"target.x3d#Second\"'>" + box + "</Anchor>",
                       folder.filePath(QStringLiteral("start.x3d")).toStdString());
    scene.move(0, 0);
    scene.frame();
    QVERIFY(scene.viewarea().overSensor());
    scene.press(0, 0);
    scene.frame();
    QVERIFY(!scene.find("Arrived"));
    scene.release(3, 0);
    scene.frame();
    QVERIFY(!scene.find("Arrived"));
    scene.press(0, 0);
    scene.release(0, 0);
    scene.frame();
    QVERIFY(scene.find("Arrived"));
    scene.frame();
    QCOMPARE(scene.get("Second.isBound"), std::string("TRUE"));
    QVERIFY(!scene.viewarea().overSensor());
}

void tst_PointingSensors::anchorBindsAViewpointOfItsScene()
{
    PointerScene scene("<Viewpoint DEF='First'/><Viewpoint DEF='Second' position='0 0 20'/>"
                       "<Anchor url='\"#Absent\" \"#Second\"'>" +
                       box + "</Anchor>");
    scene.press(0, 0);
    scene.release(0, 0);
    scene.frame();
    QCOMPARE(scene.get("Second.isBound"), std::string("TRUE"));
}

void tst_PointingSensors::anchorWithoutAddressLetsClicksThrough()
{
    PointerScene scene("<TouchSensor DEF='T'/><Anchor>" + box + "</Anchor>");
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("TRUE"));
}

void tst_PointingSensors::cursorFollowsTheSensor()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    const auto cursorEvents = [&] {
        const std::vector<std::string> names = scene.windows.take();
        return std::count(names.begin(), names.end(), "cursor");
    };
    QCOMPARE(cursorEvents(), 0);
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(cursorEvents(), 1);
    QVERIFY(scene.viewarea().overSensor());
    scene.move(0.5, 0);
    scene.frame();
    QCOMPARE(cursorEvents(), 0);
    scene.move(3, 0);
    scene.frame();
    QCOMPARE(cursorEvents(), 1);
    QVERIFY(!scene.viewarea().overSensor());
}

void tst_PointingSensors::sensorTellsItsDescription()
{
    PointerScene scene("<Transform translation='-2 0 0'><PlaneSensor/><TouchSensor DEF='T' description='Open "
                       "me'/><Shape><Box/></Shape></Transform><Transform translation='2 0 0'><Anchor "
                       "description='Elsewhere' url='\"#V\"'><Shape><Box/></Shape></Anchor></Transform>");
    const auto place = [](double x) { return 100 + qRound(x * 100.0 / 4.142); };
    const auto moveTo = [&](double x) {
        scene.window().mouseMove(place(x), 100);
        scene.frame();
        return scene.viewarea().sensorDescription();
    };
    QCOMPARE(moveTo(0), std::string());
    QCOMPARE(moveTo(-2), std::string("Open me"));
    scene.set("T.description", "Close me");
    scene.frame();
    QCOMPARE(scene.viewarea().sensorDescription(), std::string("Close me"));
    QCOMPARE(moveTo(2), std::string("Elsewhere"));
    QCOMPARE(moveTo(0), std::string());
}

void tst_PointingSensors::primaryTouchIsThePointer()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.watch("T.isActive");
    const auto touch = [&](int state, float x) {
        std::vector<TouchPointRecord> points{{7, state, true, x, 100, 1}};
        scene.window().touchEvent(points);
        scene.frame();
    };
    touch(0, 100);
    QCOMPARE(scene.take(), (Events{"T.isActive TRUE"}));
    touch(2, 110);
    QVERIFY(scene.numbers("T.hitPoint_changed")[0] > 0.2);
    touch(1, 110);
    QCOMPARE(scene.take(), (Events{"T.isActive FALSE"}));
    QVERIFY(isClose(scene.numbers("T.touchTime"), {scene.time()}, 1e-3));
    // A lifted finger is over nothing.
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QVERIFY(!scene.viewarea().overSensor());
}

void tst_PointingSensors::secondFingerIsNot()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    std::vector<TouchPointRecord> points{{1, 0, true, 5, 5, 1}, {2, 0, false, 100, 100, 1}};
    scene.window().touchEvent(points);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
    std::vector<TouchPointRecord> none;
    scene.window().touchEvent(none);
    std::vector<TouchPointRecord> odd{{1, 1, true, NAN, INFINITY, 1}};
    scene.window().touchEvent(odd);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
}

void tst_PointingSensors::eventsGoToTheViewareaUnderThePointer()
{
    PointerScene scene("<Engine><Window><Viewarea size='0.5 1'/><Viewarea position='0.5 0' size='0.5 1'/>"
                       "</Window></Engine><TouchSensor DEF='T'/>" +
                       box);
    scene.window().mouseMove(50, 100);
    scene.frame();
    QVERIFY(scene.viewarea(0).overSensor());
    QVERIFY(!scene.viewarea(1).overSensor());
    scene.window().mouseMove(150, 100);
    scene.frame();
    QVERIFY(!scene.viewarea(0).overSensor());
    QVERIFY(scene.viewarea(1).overSensor());
    scene.window().mouseMove(100, 5);
    scene.frame();
    QVERIFY(!scene.viewarea(1).overSensor());
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
}

void tst_PointingSensors::dragStaysWithItsViewarea()
{
    PointerScene scene("<Engine><Window><Viewarea size='0.5 1'/><Viewarea position='0.5 0' size='0.5 1'/>"
                       "</Window></Engine><PlaneSensor DEF='P'/>" +
                       box);
    scene.window().buttonPress(1, 50, 100);
    scene.frame();
    scene.window().mouseMove(150, 100);
    scene.frame();
    const double across = scene.numbers("P.translation_changed")[0];
    QVERIFY(across > 3.0);
    QVERIFY(scene.viewarea(0).overSensor());
    QVERIFY(!scene.viewarea(1).overSensor());
    scene.window().buttonRelease(1, 150, 100);
    scene.frame();
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_PointingSensors::windowsOfOneEngineHearTheirOwnInput()
{
    PointerScene scene("<Engine><Window><Viewarea/></Window><Window fullScreen='true'><Viewarea/></Window>"
                       "</Engine><TouchSensor DEF='T'/>" +
                       box);
    QCOMPARE(scene.windows.windows.size(), std::size_t(2));
    scene.window(1).buttonPress(1, 100, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("TRUE"));
    QVERIFY(!scene.viewarea(0).overSensor());
    // The other window's release is none of this one's.
    scene.window(0).buttonRelease(1, 100, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("TRUE"));
    scene.window(1).buttonRelease(1, 100, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
}

void tst_PointingSensors::windowWithoutSizeHearsNothing()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    for (const int size : {0, -5}) {
        scene.window().resize(size, size);
        scene.window().mouseMove(0, 0);
        scene.press(0, 0);
        scene.release(0, 0);
        scene.window().browsePickedNode(0, 0);
        scene.frame();
        QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    }
    scene.window().resize(200, 200);
    scene.frame();
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("TRUE"));
    // The window shrinks to nothing under the drag.
    scene.window().resize(0, 0);
    scene.frame();
    scene.move(1, 1);
    scene.release(1, 1);
    scene.frame();
    QCOMPARE(scene.get("T.isActive"), std::string("FALSE"));
}

void tst_PointingSensors::viewareaThatGoesEndsTheDrag()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box);
    scene.press(0, 0);
    scene.frame();
    scene.watch("T.isActive");
    osg::WindowPtr none;
    scene.window().setWinPtr(none, true);
    scene.frame();
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isActive FALSE"}));
    QCOMPARE(scene.get("T.touchTime"), std::string("-1"));
}

QTEST_GUILESS_MAIN(tst_PointingSensors)
#include "tst_PointingSensors.moc"
