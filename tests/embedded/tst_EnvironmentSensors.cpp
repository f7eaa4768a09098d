#include "PointerScene.h"
#include "core/SceneProc.h"
#include <QtTest>

using namespace Orvane;

namespace {

/// Lets a value reach what is drawn, and what is drawn reach the sensors.
void settle(PointerScene& scene)
{
    for (int i = 0; i < 3; ++i)
        scene.frame();
}

} // namespace

class tst_EnvironmentSensors : public QObject
{
    Q_OBJECT

private slots:
    void proximityIsToldWhenTheViewerComesAndGoes();
    void proximityTellsWhereTheViewerIs();
    void proximityStandsInTheSystemOfItsGroup();
    void proximityOfAUsedGroupCoversBothPlaces();
    void proximitySendsOnlyWhatChanges();
    void proximityTellsTheCenterOfRotation();
    void proximityWithoutSizeIsOff();
    void disablingEndsProximity();
    void visibilityFollowsTheView();
    void visibilityCountsTheWholeBox();
    void transformSensorFollowsItsTarget();
    void transformSensorWithoutTargetIsOff();
    void oddValuesAreSurvived();
    void groupsInARingAreSurvived();
    void collisionTellsOfTheViewer();
    void proxyStandsInTheWayUnseen();
    void disabledCollisionIsNotInTheWay();
};

void tst_EnvironmentSensors::proximityIsToldWhenTheViewerComesAndGoes()
{
    PointerScene scene("<Viewpoint DEF='V' position='0 0 10'/><ProximitySensor DEF='P' size='4 4 4'/>");
    for (const char* field : {"P.isActive", "P.enterTime", "P.exitTime"})
        scene.watch(field);
    settle(scene);
    QCOMPARE(scene.take(), Events());
    scene.set("V.position", "1 1 1.9");
    settle(scene);
    Events events = scene.take();
    QCOMPARE(events.size(), std::size_t(2));
    QCOMPARE(events[0], std::string("P.isActive TRUE"));
    QCOMPARE(events[1].substr(0, 12), std::string("P.enterTime "));
    scene.set("V.position", "1 1 2.1");
    settle(scene);
    events = scene.take();
    QCOMPARE(events.size(), std::size_t(2));
    QCOMPARE(events[0], std::string("P.isActive FALSE"));
    QVERIFY(scene.numbers("P.exitTime")[0] > scene.numbers("P.enterTime")[0]);
}

void tst_EnvironmentSensors::proximityTellsWhereTheViewerIs()
{
    PointerScene scene("<Viewpoint DEF='V' position='1 2 3' orientation='0 1 0 0.5'/>"
                       "<ProximitySensor DEF='P' size='20 20 20' center='1 0 0'/>");
    settle(scene);
    QVERIFY(isClose(scene.numbers("P.position_changed"), {1, 2, 3}, 1e-4));
    QVERIFY(isClose(scene.numbers("P.orientation_changed"), {0, 1, 0, 0.5}, 1e-4));
}

void tst_EnvironmentSensors::proximityStandsInTheSystemOfItsGroup()
{
    PointerScene scene(
        "<Viewpoint position='6 0 0'/><Transform translation='5 0 0' rotation='0 0 1 1.5707963' "
        "scale='0.5 0.5 0.5'><ProximitySensor DEF='P' size='1 5 1'/></Transform>");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("P.position_changed"), {0, -2, 0}, 1e-4));
    const std::vector<double> turn = scene.numbers("P.orientation_changed");
    QVERIFY(std::abs(std::abs(turn[3]) - 1.5707963) < 1e-3);
}

void tst_EnvironmentSensors::proximityOfAUsedGroupCoversBothPlaces()
{
    PointerScene scene("<Viewpoint DEF='V' position='-5 0 0'/><Transform translation='-5 0 0'><Group DEF='G'>"
                       "<ProximitySensor DEF='P' size='2 2 2'/></Group></Transform>"
                       "<Transform translation='5 0 0'><Group USE='G'/></Transform>");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    scene.set("V.position", "0 0 0");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    scene.set("V.position", "5.5 0 0");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("P.position_changed"), {0.5, 0, 0}, 1e-4));
}

void tst_EnvironmentSensors::proximitySendsOnlyWhatChanges()
{
    PointerScene scene("<Viewpoint DEF='V' position='0 0 1'/><ProximitySensor DEF='P' size='9 9 9'/>");
    settle(scene);
    scene.watch("P.position_changed");
    scene.watch("P.orientation_changed");
    settle(scene);
    QCOMPARE(scene.take(), Events());
    scene.set("V.position", "0 0 2");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"P.position_changed 0 0 2"}));
}

void tst_EnvironmentSensors::proximityTellsTheCenterOfRotation()
{
    PointerScene scene(
        "<Transform translation='0 1 0'><Viewpoint DEF='V' centerOfRotation='0 2 0'/></Transform>"
        "<Transform translation='0 0 4'><ProximitySensor DEF='P' size='99 99 99'/></Transform>");
    settle(scene);
    QVERIFY(isClose(scene.numbers("P.centerOfRotation_changed"), {0, 3, -4}, 1e-4));
}

void tst_EnvironmentSensors::proximityWithoutSizeIsOff()
{
    PointerScene scene("<Viewpoint position='0 0 0'/><ProximitySensor DEF='P'/>"
                       "<ProximitySensor DEF='Q' size='-1 2 2'/>");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("Q.isActive"), std::string("FALSE"));
    scene.set("P.size", "1 1 1");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
}

void tst_EnvironmentSensors::disablingEndsProximity()
{
    PointerScene scene("<Viewpoint position='0 0 0'/><ProximitySensor DEF='P' size='1 1 1'/>");
    settle(scene);
    scene.set("P.enabled", "FALSE");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_EnvironmentSensors::visibilityFollowsTheView()
{
    PointerScene scene("<Viewpoint DEF='V' position='0 0 10'/><VisibilitySensor DEF='P' size='1 1 1'/>"
                       "<Shape><Box/></Shape>");
    scene.watch("P.isActive");
    settle(scene);
    scene.set("V.position", "0 0 -10");
    settle(scene);
    scene.set("V.orientation", "0 1 0 3.1415926");
    settle(scene);
    scene.set("V.position", "20 0 -10");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"P.isActive FALSE", "P.isActive TRUE", "P.isActive FALSE"}));
}

void tst_EnvironmentSensors::visibilityCountsTheWholeBox()
{
    PointerScene scene(
        "<Viewpoint position='0 0 10'/><VisibilitySensor DEF='Wide' center='10 0 0' size='13 1 1'/>"
        "<VisibilitySensor DEF='Narrow' center='10 0 0' size='9 1 1'/>"
        "<VisibilitySensor DEF='Around' size='100 100 100'/>"
        "<VisibilitySensor DEF='Behind' center='0 0 20' size='5 5 5'/>");
    settle(scene);
    QCOMPARE(scene.get("Wide.isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("Narrow.isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("Around.isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("Behind.isActive"), std::string("FALSE"));
    // A wider window shows more.
    scene.window().resize(400, 200);
    settle(scene);
    QCOMPARE(scene.get("Narrow.isActive"), std::string("TRUE"));
}

void tst_EnvironmentSensors::transformSensorFollowsItsTarget()
{
    PointerScene scene(
        "<Transform DEF='Target' translation='9 0 0'><Shape><Box/></Shape></Transform>"
        "<Transform translation='0 1 0'><TransformSensor DEF='S' size='4 4 4'>"
        "<Transform USE='Target' containerField='targetObject'/></TransformSensor></Transform>");
    scene.watch("S.isActive");
    settle(scene);
    QCOMPARE(scene.take(), Events());
    scene.set("Target.translation", "2.5 0 0");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"S.isActive TRUE"}));
    QVERIFY(isClose(scene.numbers("S.position_changed"), {2.5, -1, 0}, 1e-4));
    scene.set("Target.rotation", "0 1 0 1");
    settle(scene);
    QVERIFY(isClose(scene.numbers("S.orientation_changed"), {0, 1, 0, 1}, 1e-4));
    scene.set("Target.translation", "3.6 0 0");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"S.isActive FALSE"}));
}

void tst_EnvironmentSensors::transformSensorWithoutTargetIsOff()
{
    PointerScene scene("<TransformSensor DEF='S' size='4 4 4'/>"
                       "<TransformSensor DEF='E' size='4 4 4'><Group containerField='targetObject'/>"
                       "</TransformSensor>");
    settle(scene);
    QCOMPARE(scene.get("S.isActive"), std::string("FALSE"));
    // An empty group counts by its origin.
    QCOMPARE(scene.get("E.isActive"), std::string("TRUE"));
}

void tst_EnvironmentSensors::oddValuesAreSurvived()
{
    PointerScene scene(
        "<Viewpoint DEF='V' position='NaN 0 Infinity'/>"
        "<Transform scale='0 0 0'><ProximitySensor DEF='P' size='NaN 1 1'/>"
        "<ProximitySensor DEF='Q' size='1e30 1e30 1e30' center='Infinity 0 0'/>"
        "<VisibilitySensor DEF='R' size='Infinity 1 NaN'/>"
        "<ProximitySensor DEF='S' size='1 1 1'/></Transform>"
        "<TransformSensor size='5 5 5'><Transform scale='NaN 0 1' containerField='targetObject'/>"
        "</TransformSensor>");
    settle(scene);
    for (const char* sensor : {"P", "Q", "R"})
        QCOMPARE(scene.get(std::string(sensor) + ".isActive"), std::string("FALSE"));
    for (const double value : scene.numbers("S.position_changed"))
        QVERIFY(std::isfinite(value));
}

void tst_EnvironmentSensors::groupsInARingAreSurvived()
{
    PointerScene scene("<Viewpoint position='0 0 0'/><Group DEF='A'><Group DEF='B'>"
                       "<ProximitySensor DEF='P' size='1 1 1'/></Group></Group>");
    auto& children = dynamic_cast<MFNode&>(scene.field("B.children"));
    children.addNode(0.0, scene.find("A"), Field::EXTERNAL_CT);
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
}

void tst_EnvironmentSensors::collisionTellsOfTheViewer()
{
    PointerScene scene("<Collision DEF='C'><Shape><Box/></Shape></Collision>");
    auto& proc = *procAs<SceneProc>(scene.context->findRoot(Scene::_type));
    scene.watch("C.isActive");
    SceneHit hit;
    QVERIFY(proc.castRay(osg::Line(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1)), hit, ObstacleTarget));
    SceneProc::collide(hit, scene.time() + 0.1); // as a navigator in the next frame
    scene.frame();
    scene.frame();
    QCOMPARE(scene.take(), (Events{"C.isActive TRUE", "C.isActive FALSE"}));
    QVERIFY(scene.numbers("C.collideTime")[0] > 999.0);
}

void tst_EnvironmentSensors::proxyStandsInTheWayUnseen()
{
    PointerScene scene(
        "<Collision DEF='C'><Shape><Box/></Shape><Transform DEF='P' containerField='proxy' "
        "translation='0 0 3'><Shape DEF='S'><Box size='1 1 1'/></Shape></Transform></Collision>");
    auto& proc = *procAs<SceneProc>(scene.context->findRoot(Scene::_type));
    const osg::Line ray(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1));
    SceneHit hit;
    QVERIFY(proc.castRay(ray, hit));
    QCOMPARE(hit.distance, 9.0F);
    QVERIFY(proc.castRay(ray, hit, ObstacleTarget));
    QCOMPARE(hit.distance, 6.5F);
    // The way to what was hit leads through the proxy.
    QCOMPARE(hit.nodes,
             (std::vector<Node*>{&proc.node(), scene.find("C"), scene.find("P"), scene.find("S")}));
    const osg::Line beside(osg::Pnt3f(0.8F, 0, 10), osg::Vec3f(0, 0, -1));
    QVERIFY(proc.castRay(beside, hit));
    QVERIFY(!proc.castRay(beside, hit, ObstacleTarget));
    scene.set("C.proxy", "NULL");
    scene.frame();
    QVERIFY(proc.castRay(beside, hit, ObstacleTarget));
}

void tst_EnvironmentSensors::disabledCollisionIsNotInTheWay()
{
    PointerScene scene("<Collision DEF='C' enabled='false'><Shape><Box/></Shape></Collision>"
                       "<Transform translation='0 0 -5'><Shape><Box/></Shape></Transform>");
    auto& proc = *procAs<SceneProc>(scene.context->findRoot(Scene::_type));
    const osg::Line ray(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1));
    SceneHit hit;
    QVERIFY(proc.castRay(ray, hit, ObstacleTarget));
    QCOMPARE(hit.distance, 14.0F);
    QVERIFY(proc.castRay(ray, hit));
    QCOMPARE(hit.distance, 9.0F);
    scene.set("C.enabled", "TRUE");
    scene.frame();
    QVERIFY(proc.castRay(ray, hit, ObstacleTarget));
    QCOMPARE(hit.distance, 9.0F);
}

QTEST_GUILESS_MAIN(tst_EnvironmentSensors)
#include "tst_EnvironmentSensors.moc"
