#include "PointerScene.h"
#include <OpenSG/OSGQuaternion.h>
#include <QtTest>
#include <array>

using namespace Orvane;

namespace {

const std::string box = "<Shape><Box/></Shape>";
const std::string ball = "<Shape><Sphere/></Shape>";

using Place = std::array<double, 3>;

/// Presses at one place and goes to another, each in a frame of its own.
void drag(PointerScene& scene, const Place& from, const Place& to)
{
    scene.press(from[0], from[1], from[2]);
    scene.frame();
    scene.move(to[0], to[1], to[2]);
    scene.frame();
}

bool areFinite(const std::vector<double>& values)
{
    return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

/// Where a rotation takes a vector.
osg::Vec3f turned(const std::vector<double>& rotation, const osg::Vec3f& vector)
{
    osg::Quaternion turn;
    turn.setValueAsAxisRad(float(rotation[0]), float(rotation[1]), float(rotation[2]), float(rotation[3]));
    osg::Vec3f result;
    turn.multVec(vector, result);
    return result;
}

} // namespace

class tst_DragSensors : public QObject
{
    Q_OBJECT

private slots:
    void planeFollowsThePointer();
    void planeSendsNothingBeforeTheFirstMove();
    void planeGoesOnFromItsOffset();
    void planeStartsAnewWithoutAutoOffset();
    void planeKeepsToItsLimits();
    void limitsInWrongOrderDoNotCount();
    void planeStandsInTheSystemOfItsGroup();
    void planeIsTurnedByItsAxisRotation();
    void planeThatIsSeenFromItsEdgeSendsNothing();
    void groupThatIsMovedByItsSensorDoesNotRunAway();
    void sphereTurnsWithThePointer();
    void sphereGoesOnFromItsOffset();
    void sphereRollsOnBesideTheBall();
    void cylinderTurnsAboutItsAxis();
    void cylinderRollsOnBesideItsEdge();
    void diskIsTurnedFromAbove();
    void diskGoesRoundMoreThanOnce();
    void cylinderKeepsToItsAngles();
    void cylinderIsTurnedByItsAxisRotation();
    void enabledIsHeardWhileDragging();
    void offsetIsKeptWhenTheWindowTakesThePointerAway();
    void oddFieldsGiveNoOddValues_data();
    void oddFieldsGiveNoOddValues();
    void squeezedGroupsAreSurvived();
};

void tst_DragSensors::planeFollowsThePointer()
{
    PointerScene scene("<PlaneSensor DEF='P'/>" + box);
    scene.watch("P.isActive");
    drag(scene, {0.5, 0, 1}, {1.5, 0.7, 1});
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {1, 0.7, 0}));
    QVERIFY(isClose(scene.numbers("P.trackPoint_changed"), {1.5, 0.7, 1}));
    scene.release(2, 1, 1);
    scene.frame();
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {1.5, 1, 0}));
    QCOMPARE(scene.take(), (Events{"P.isActive TRUE", "P.isActive FALSE"}));
}

void tst_DragSensors::planeSendsNothingBeforeTheFirstMove()
{
    PointerScene scene("<PlaneSensor DEF='P' offset='7 7 7'/>" + box);
    scene.watch("P.translation_changed");
    scene.watch("P.offset");
    scene.press(0, 0, 1);
    scene.frame();
    scene.release(0, 0, 1);
    scene.frame();
    QCOMPARE(scene.take(), Events());
    QVERIFY(isClose(scene.numbers("P.offset"), {7, 7, 7}));
}

void tst_DragSensors::planeGoesOnFromItsOffset()
{
    PointerScene scene("<PlaneSensor DEF='P' offset='0 5 1'/>" + box);
    scene.watch("P.offset");
    for (int i = 1; i < 3; ++i) {
        drag(scene, {0, 0, 1}, {1, 0, 1});
        QVERIFY(isClose(scene.numbers("P.translation_changed"), {1.0 * i, 5, 1}));
        QVERIFY(scene.take().empty());
        scene.release(1, 0, 1);
        scene.frame();
        QVERIFY(isClose(scene.numbers("P.offset"), {1.0 * i, 5, 1}));
        QCOMPARE(scene.take().size(), std::size_t(1));
    }
}

void tst_DragSensors::planeStartsAnewWithoutAutoOffset()
{
    PointerScene scene("<PlaneSensor DEF='P' autoOffset='false'/>" + box);
    for (int i = 0; i < 2; ++i) {
        drag(scene, {0, 0, 1}, {1, 0, 1});
        QVERIFY(isClose(scene.numbers("P.translation_changed"), {1, 0, 0}));
        scene.release(1, 0, 1);
        scene.frame();
        QVERIFY(isClose(scene.numbers("P.offset"), {0, 0, 0}));
    }
}

void tst_DragSensors::planeKeepsToItsLimits()
{
    PointerScene scene("<PlaneSensor DEF='P' minPosition='0 0' maxPosition='1 0'/>" + box);
    drag(scene, {0, 0, 1}, {3, 2, 1});
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {1, 0, 0}, 1e-6));
    QVERIFY(isClose(scene.numbers("P.trackPoint_changed"), {3, 2, 1}));
    scene.move(-3, 2, 1);
    scene.frame();
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {0, 0, 0}, 1e-6));
}

void tst_DragSensors::limitsInWrongOrderDoNotCount()
{
    PointerScene scene("<PlaneSensor DEF='P' minPosition='1 0' maxPosition='-1 0.5'/>" + box);
    drag(scene, {0, 0, 1}, {3, 2, 1});
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {3, 0.5, 0}));
}

void tst_DragSensors::planeStandsInTheSystemOfItsGroup()
{
    PointerScene scene("<Transform translation='1 0 0' rotation='0 0 1 1.5707963' scale='2 2 2'>"
                       "<PlaneSensor DEF='P'/>" +
                       box + "</Transform>");
    drag(scene, {1, 0, 2}, {2, 0, 2});
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {0, -0.5, 0}));
}

void tst_DragSensors::planeIsTurnedByItsAxisRotation()
{
    // The plane lies flat and the group is looked at aslant; what is sent stands in the group's system.
    PointerScene scene(
        "<Transform rotation='1 0 0 0.7853982'>"
        "<PlaneSensor DEF='P' axisRotation='1 0 0 -1.5707963'/><Shape><Box size='4 1 4'/></Shape>"
        "</Transform>");
    drag(scene, {0, 0.5, 0}, {1, 1, 0});
    const std::vector<double> way = scene.numbers("P.translation_changed");
    QVERIFY(way[0] > 0.7);
    QVERIFY(std::abs(way[1]) < 1e-4);
    QVERIFY(way[2] < -0.4);
    const std::vector<double> place = scene.numbers("P.trackPoint_changed");
    QVERIFY(std::abs(place[1] - 0.5) < 1e-3);
}

void tst_DragSensors::planeThatIsSeenFromItsEdgeSendsNothing()
{
    PointerScene scene("<Transform rotation='1 0 0 1.5707963'><PlaneSensor DEF='P'/>" + box + "</Transform>");
    scene.watch("P.translation_changed");
    drag(scene, {0, 0, 1}, {0, 0.001, 1});
    QVERIFY(areFinite(scene.numbers("P.translation_changed")));
    scene.release(0, 0, 1);
    scene.frame();
    QVERIFY(areFinite(scene.numbers("P.offset")));
}

void tst_DragSensors::groupThatIsMovedByItsSensorDoesNotRunAway()
{
    PointerScene scene("<Transform DEF='Place'><PlaneSensor DEF='P'/>" + box +
                       "</Transform><ROUTE fromNode='P' fromField='translation_changed' toNode='Place' "
                       "toField='translation'/>");
    scene.press(0, 0, 1);
    scene.frame();
    for (int i = 0; i < 5; ++i) {
        scene.move(1 + 0.1 * (i % 2), 0, 1);
        scene.frame();
    }
    QVERIFY(isClose(scene.numbers("Place.translation"), {1, 0, 0}));
}

void tst_DragSensors::sphereTurnsWithThePointer()
{
    PointerScene scene("<SphereSensor DEF='S'/>" + ball);
    drag(scene, {0, 0, 1}, {0.7, 0, 0.7});
    const std::vector<double> turn = scene.numbers("S.rotation_changed");
    QVERIFY(turned(turn, osg::Vec3f(0, 0, 1)).equals(osg::Vec3f(0.71F, 0, 0.71F), 0.06F));
    const std::vector<double> track = scene.numbers("S.trackPoint_changed");
    QVERIFY(std::abs(std::hypot(track[0], track[1], track[2]) - 1.0) < 0.01);
}

void tst_DragSensors::sphereGoesOnFromItsOffset()
{
    PointerScene scene("<SphereSensor DEF='S' offset='0 0 1 1.5707963'/>" + ball);
    drag(scene, {0, 0, 1}, {0.7, 0, 0.7});
    // The offset turns first.
    const std::vector<double> turn = scene.numbers("S.rotation_changed");
    QVERIFY(turned(turn, osg::Vec3f(0, 0, 1)).equals(osg::Vec3f(0.71F, 0, 0.71F), 0.06F));
    QVERIFY(turned(turn, osg::Vec3f(1, 0, 0)).equals(osg::Vec3f(0, 1, 0), 0.06F));
    scene.release(0.7, 0, 0.7);
    scene.frame();
    QCOMPARE(scene.get("S.offset"), scene.get("S.rotation_changed"));
}

void tst_DragSensors::sphereRollsOnBesideTheBall()
{
    PointerScene scene("<SphereSensor DEF='S'/>" + ball);
    scene.press(0, 0, 1);
    scene.frame();
    double last = 0.0;
    for (const double x : {0.5, 0.9, 1.2, 2.0, 3.0}) {
        scene.move(x, 0);
        scene.frame();
        const double angle = scene.numbers("S.rotation_changed")[3];
        QVERIFY(angle > last + 0.1);
        last = angle;
    }
    QVERIFY(last > 1.7);
}

void tst_DragSensors::cylinderTurnsAboutItsAxis()
{
    PointerScene scene("<CylinderSensor DEF='C'/><Shape><Cylinder/></Shape>");
    drag(scene, {0, 0, 1}, {0.7, 0.4, 0.7});
    const std::vector<double> turn = scene.numbers("C.rotation_changed");
    QVERIFY(isClose({turn[0], turn[1], turn[2]}, {0, 1, 0}, 1e-5));
    QVERIFY(std::abs(turn[3] - 0.785) < 0.08);
    scene.release(0.7, 0.4, 0.7);
    scene.frame();
    QVERIFY(isClose(scene.numbers("C.offset"), {0.785}, 0.08));
}

void tst_DragSensors::cylinderRollsOnBesideItsEdge()
{
    PointerScene scene("<CylinderSensor DEF='C'/><Shape><Cylinder/></Shape>");
    scene.press(0, 0, 1);
    scene.frame();
    double last = 0.0;
    for (const double x : {-0.5, -0.9, -1.2, -2.0, -3.0}) {
        scene.move(x, 0);
        scene.frame();
        const double angle = scene.numbers("C.rotation_changed")[3];
        QVERIFY(angle < last - 0.1);
        last = angle;
    }
}

void tst_DragSensors::diskIsTurnedFromAbove()
{
    // The axis points at the viewer.
    PointerScene scene("<Transform rotation='1 0 0 1.5707963'><CylinderSensor DEF='C' diskAngle='0.5'/>"
                       "<Shape><Cylinder radius='2'/></Shape></Transform>");
    drag(scene, {1, 0, 1}, {0, 1, 1});
    QVERIFY(std::abs(scene.numbers("C.rotation_changed")[3] - 1.5708) < 0.06);
    // A cylinder would be turned by the move along the radius too.
    scene.move(0, 1.8, 1);
    scene.frame();
    QVERIFY(std::abs(scene.numbers("C.rotation_changed")[3] - 1.5708) < 0.06);
}

void tst_DragSensors::diskGoesRoundMoreThanOnce()
{
    PointerScene scene("<Transform rotation='1 0 0 1.5707963'><CylinderSensor DEF='C' diskAngle='0.5'/>"
                       "<Shape><Cylinder radius='2'/></Shape></Transform>");
    scene.press(1, 0, 1);
    scene.frame();
    for (int i = 1; i <= 10; ++i) {
        const double angle = i * 3.14159265 / 4;
        scene.move(std::cos(angle), std::sin(angle), 1);
        scene.frame();
    }
    QVERIFY(std::abs(scene.numbers("C.rotation_changed")[3] - 10 * 3.14159265 / 4) < 0.08);
}

void tst_DragSensors::cylinderKeepsToItsAngles()
{
    PointerScene scene("<CylinderSensor DEF='C' minAngle='-0.2' maxAngle='0.3'/><Shape><Cylinder/></Shape>");
    drag(scene, {0, 0, 1}, {0.9, 0, 0.4});
    QVERIFY(isClose(scene.numbers("C.rotation_changed"), {0, 1, 0, 0.3}, 1e-5));
    scene.move(-0.9, 0, 0.4);
    scene.frame();
    QVERIFY(isClose(scene.numbers("C.rotation_changed"), {0, 1, 0, -0.2}, 1e-5));
}

void tst_DragSensors::cylinderIsTurnedByItsAxisRotation()
{
    PointerScene scene("<CylinderSensor DEF='C' axisRotation='0 0 1 -1.5707963'/><Shape><Sphere/></Shape>");
    drag(scene, {0, 0, 1}, {0.3, 0.7, 0.7});
    const std::vector<double> turn = scene.numbers("C.rotation_changed");
    QVERIFY(isClose({turn[0], turn[1], turn[2]}, {1, 0, 0}, 1e-5));
    QVERIFY(std::abs(turn[3] + 0.785) < 0.08);
}

void tst_DragSensors::enabledIsHeardWhileDragging()
{
    PointerScene scene("<PlaneSensor DEF='P'/>" + box);
    drag(scene, {0, 0, 1}, {1, 0, 1});
    scene.set("P.enabled", "FALSE");
    scene.frame();
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QVERIFY(isClose(scene.numbers("P.offset"), {1, 0, 0}));
    scene.watch("P.translation_changed");
    scene.move(2, 0, 1);
    scene.frame();
    scene.set("P.enabled", "TRUE");
    scene.frame();
    scene.move(1.5, 0, 1);
    scene.frame();
    QCOMPARE(scene.take(), Events());
}

void tst_DragSensors::offsetIsKeptWhenTheWindowTakesThePointerAway()
{
    PointerScene scene("<PlaneSensor DEF='P'/>" + box);
    scene.press(0, 0, 1);
    scene.move(1, 0, 1);
    scene.frame();
    osg::WindowPtr none;
    scene.window().setWinPtr(none, true);
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QVERIFY(isClose(scene.numbers("P.offset"), {1, 0, 0}));
}

void tst_DragSensors::oddFieldsGiveNoOddValues_data()
{
    QTest::addColumn<QString>("sensor");
    QTest::addColumn<QString>("output");
    const auto row = [](const char* sensor, const char* output) {
        QTest::newRow(sensor) << QString::fromLatin1(sensor) << QString::fromLatin1(output);
    };
    row("PlaneSensor DEF='S' offset='NaN Infinity 0'", "translation_changed");
    row("PlaneSensor DEF='S' axisRotation='0 0 0 1'", "translation_changed");
    row("PlaneSensor DEF='S' axisRotation='NaN 0 0 Infinity'", "translation_changed");
    row("PlaneSensor DEF='S' minPosition='NaN NaN' maxPosition='NaN 1'", "translation_changed");
    row("SphereSensor DEF='S' offset='0 0 0 1'", "rotation_changed");
    row("SphereSensor DEF='S' offset='NaN NaN NaN NaN'", "rotation_changed");
    row("CylinderSensor DEF='S' offset='NaN'", "rotation_changed");
    row("CylinderSensor DEF='S' diskAngle='NaN' minAngle='NaN' maxAngle='2'", "rotation_changed");
    row("CylinderSensor DEF='S' axisRotation='Infinity 0 0 1'", "rotation_changed");
}

void tst_DragSensors::oddFieldsGiveNoOddValues()
{
    QFETCH(QString, sensor);
    QFETCH(QString, output);
    PointerScene scene("<" + sensor.toStdString() + "/>" + ball);
    drag(scene, {0.2, 0, 1}, {0.5, 0.5, 1});
    scene.move(3, 3, 1);
    scene.frame();
    QVERIFY(areFinite(scene.numbers("S." + output.toStdString())));
    scene.release(3, 3, 1);
    scene.frame();
    QVERIFY(areFinite(scene.numbers("S." + output.toStdString())));
}

void tst_DragSensors::squeezedGroupsAreSurvived()
{
    for (const char* scale : {"0 0 0", "1 1 0", "1e-30 1 1", "NaN 1 1", "1e30 1e30 1e30"}) {
        PointerScene scene("<Transform scale='" + std::string(scale) +
                           "'><PlaneSensor DEF='P'/><SphereSensor DEF='S'/><CylinderSensor DEF='C'/>"
                           "<TouchSensor DEF='T'/><Shape><Box size='4 4 4'/></Shape></Transform>");
        scene.press(0, 0);
        scene.frame();
        for (const double x : {0.1, 1.0, 3.0}) {
            scene.move(x, x);
            scene.frame();
        }
        scene.release(0, 0);
        scene.frame();
        for (const char* path : {"P.translation_changed", "S.rotation_changed", "C.rotation_changed",
                                 "T.hitPoint_changed", "T.hitNormal_changed", "P.offset"})
            QVERIFY2(areFinite(scene.numbers(path)), path);
    }
}

QTEST_GUILESS_MAIN(tst_DragSensors)
#include "tst_DragSensors.moc"
