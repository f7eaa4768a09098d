#include "NavigationScene.h"

namespace {

const std::string walk = "<NavigationInfo type='\"WALK\" \"ANY\"' speed='2'/>";
const std::string fly = "<NavigationInfo type='\"FLY\" \"ANY\"' speed='2'/>";
const std::string viewpoint = "<Viewpoint position='0 1.6 10'/>";

/// A floor at y = 0 of 40 x 40 metres.
const std::string ground =
    "<Shape><IndexedFaceSet solid='false' coordIndex='0 1 2 3'>"
    "<Coordinate point='-20 0 20, 20 0 20, 20 0 -20, -20 0 -20'/></IndexedFaceSet></Shape>";

std::string boxAt(const char* place, const char* size)
{
    return std::string("<Transform translation='") + place + "'><Shape><Box size='" + size +
           "'/></Shape></Transform>";
}

} // namespace

class tst_NavigationTravel : public QObject
{
    Q_OBJECT

private slots:
    void dragUpWalksAheadAtTheSpeed();
    void dragToTheRightTurnsToTheRight();
    void rightDragGoesAside();
    void middleDragLooksRound();
    void releaseStops();
    void keysWalk();
    void plusAndMinusChangeTheSpeed();
    void wheelTakesAStep();
    void walkingStaysLevel();
    void wallStops();
    void wallIsPassedAlongside();
    void collisionThatIsOffIsNoWall();
    void collisionIsTold();
    void collisionWithAProxyIsTold_data();
    void collisionWithAProxyIsTold();
    void stepIsClimbed();
    void tableIsNoStep();
    void edgeLetsFall();
    void noFloorMeansNoFall();
    void sceneDoesNotBeginWithAFall();
    void standingStillDoesNotTremble();
    void gravityFollowsTheSystemOfTheViewpoint();
    void flyingHasNoGravity();
    void flyingGoesWhereItLooks();
    void flyingStopsAtWalls();
    void speedZeroOnlyTurns();
    void speedFitsTheScene();
    void boundNavigationInfoChangesTheMode();
    void typesThatAreNotListedAreRefused();
    void changedTypeCounts();
};

void tst_NavigationTravel::dragUpWalksAheadAtTheSpeed()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.window().buttonPress(1, 200, 300);
    scene.window().mouseMove(200, 300 - 3 - 80); // behind the slack: the full speed
    scene.run();
    scene.runFor(1.0);
    QVERIFY(qAbs(scene.eye()[2] - 8.0F) < 0.1F);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 0.01F);
}

void tst_NavigationTravel::dragToTheRightTurnsToTheRight()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.window().buttonPress(1, 200, 200);
    scene.window().mouseMove(283, 200);
    scene.run();
    scene.runFor(0.5);
    QVERIFY(scene.forward()[0] > 0.4F);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 1.6F, 10), 0.01F);
    QCOMPARE_NEAR(scene.up(), osg::Vec3f(0, 1, 0));
}

void tst_NavigationTravel::rightDragGoesAside()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.window().buttonPress(2, 200, 200);
    scene.window().mouseMove(283, 200);
    scene.run();
    scene.runFor(0.5);
    QVERIFY(qAbs(scene.eye()[0] - 1.0F) < 0.1F);
    QVERIFY(qAbs(scene.eye()[2] - 10.0F) < 0.01F);
}

void tst_NavigationTravel::middleDragLooksRound()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.window().buttonPress(4, 200, 200);
    scene.window().mouseMove(200, 117);
    scene.run();
    scene.runFor(0.5);
    QVERIFY(scene.forward()[1] > 0.4F);
    scene.runFor(10.0);
    // Nobody looks over his back.
    QVERIFY(scene.up()[1] > 0.0F);
    QVERIFY(scene.forward()[1] > 0.99F);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 1.6F, 10), 0.01F);
}

void tst_NavigationTravel::releaseStops()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.window().buttonPress(1, 200, 300);
    scene.window().mouseMove(200, 200);
    scene.run();
    scene.runFor(0.2);
    scene.window().buttonRelease(1, 200, 200);
    scene.run();
    const osg::Matrix still = scene.camera();
    scene.runFor(1.0);
    QVERIFY(scene.camera().equals(still, 1e-5F));
}

void tst_NavigationTravel::keysWalk()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.hold(273, 1.0);
    QVERIFY(qAbs(scene.eye()[2] - 8.0F) < 0.1F);
    scene.hold(274, 1.0);
    QVERIFY(qAbs(scene.eye()[2] - 10.0F) < 0.15F);
    scene.hold('d', 0.5);
    QVERIFY(qAbs(scene.eye()[0] - 1.0F) < 0.1F);
    scene.hold('a', 0.5);
    QVERIFY(qAbs(scene.eye()[0]) < 0.1F);
    scene.hold(275, 0.5);
    QVERIFY(scene.forward()[0] < -0.3F);
    // Two at a time.
    scene.window().keyPress('w');
    scene.window().keyPress('s');
    const osg::Vec3f before = scene.eye();
    scene.runFor(0.5);
    QCOMPARE_NEAR(scene.eye(), before, 0.01F);
}

void tst_NavigationTravel::plusAndMinusChangeTheSpeed()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.tap('+');
    scene.hold('w', 1.0);
    QVERIFY(qAbs(scene.eye()[2] - 6.0F) < 0.15F);
    scene.tap('-');
    scene.tap('-');
    scene.hold('s', 1.0);
    QVERIFY(qAbs(scene.eye()[2] - 7.0F) < 0.2F);
}

void tst_NavigationTravel::wheelTakesAStep()
{
    NavigationScene scene(walk + viewpoint + ground);
    scene.wheel(true);
    QVERIFY(qAbs(scene.eye()[2] - 9.5F) < 0.01F);
    scene.wheel(false);
    QVERIFY(qAbs(scene.eye()[2] - 10.0F) < 0.01F);
}

void tst_NavigationTravel::walkingStaysLevel()
{
    NavigationScene scene(walk + "<Viewpoint position='0 1.6 10' orientation='1 0 0 -0.5'/>" + ground);
    scene.hold('w', 1.0);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 0.01F);
    QVERIFY(qAbs(scene.eye()[2] - 8.0F) < 0.1F);
    // Looking straight down there still is an ahead.
    NavigationScene down(walk + "<Viewpoint position='0 1.6 10' orientation='1 0 0 -1.5707963'/>" + ground);
    down.hold('w', 1.0);
    QVERIFY(qAbs(down.eye()[2] - 8.0F) < 0.1F);
}

void tst_NavigationTravel::wallStops()
{
    NavigationScene scene(walk + viewpoint + ground + boxAt("0 1.5 5", "10 3 0.2"));
    scene.hold('w', 5.0);
    QVERIFY(qAbs(scene.eye()[2] - (5.1F + 0.25F)) < 0.05F);
    const osg::Matrix still = scene.camera();
    scene.hold('w', 1.0);
    QVERIFY(scene.camera().equals(still, 1e-3F));
    // A wall below the eye stops the legs.
    NavigationScene low(walk + viewpoint + ground + boxAt("0 0.6 5", "10 1.2 0.2"));
    low.hold('w', 5.0);
    QVERIFY(qAbs(low.eye()[2] - (5.1F + 0.25F)) < 0.05F);
}

void tst_NavigationTravel::wallIsPassedAlongside()
{
    NavigationScene scene(walk + "<Viewpoint position='0 1.6 10' orientation='0 1 0 -0.7'/>" + ground +
                          boxAt("0 1.5 5", "30 3 0.2"));
    scene.hold('w', 6.0);
    QVERIFY(scene.eye()[2] > 5.1F);
    QVERIFY(scene.eye()[0] > 5.0F);
}

void tst_NavigationTravel::collisionThatIsOffIsNoWall()
{
    NavigationScene off(walk + viewpoint + ground + "<Collision enabled='false'>" +
                        boxAt("0 1.5 5", "10 3 0.2") + "</Collision>");
    off.hold('w', 4.0);
    QVERIFY(off.eye()[2] < 3.0F);
    NavigationScene on(walk + viewpoint + ground + "<Collision>" + boxAt("0 1.5 5", "10 3 0.2") +
                       "</Collision>");
    on.hold('w', 4.0);
    QVERIFY(on.eye()[2] > 5.0F);
    NavigationScene proxy(walk + viewpoint + ground + "<Collision><Group containerField='proxy'>" +
                          boxAt("0 1.5 7", "10 3 0.2") + "</Group>" + boxAt("0 1.5 5", "10 3 0.2") +
                          "</Collision>");
    proxy.hold('w', 4.0);
    QVERIFY(qAbs(proxy.eye()[2] - (7.1F + 0.25F)) < 0.05F);
}

void tst_NavigationTravel::collisionIsTold()
{
    NavigationScene scene(walk + viewpoint + ground + "<Collision DEF='C'>" + boxAt("0 1.5 9", "10 3 0.2") +
                          "</Collision>");
    QCOMPARE(scene.get("C", "isActive"), std::string("FALSE"));
    scene.window().keyPress('w');
    scene.runFor(1.0);
    QCOMPARE(scene.get("C", "isActive"), std::string("TRUE"));
    QVERIFY(scene.get("C", "collideTime") != "-1" && scene.get("C", "collideTime") != "0");
    scene.window().keyRelease('w');
    scene.runFor(0.1);
    QCOMPARE(scene.get("C", "isActive"), std::string("FALSE"));
}

void tst_NavigationTravel::collisionWithAProxyIsTold_data()
{
    const std::string wall = "'0 1.5 9'><Shape><Box size='10 3 0.2'/></Shape></Transform>";
    QTest::addColumn<QByteArray>("collision");
    QTest::newRow("group") << QByteArray::fromStdString(
        "<Collision DEF='C'><Transform containerField='proxy' translation=" + wall + "</Collision>");
    QTest::newRow("shape") << QByteArray("<Transform translation='0 1.5 9'><Collision DEF='C'>"
                                         "<Shape containerField='proxy'><Box size='10 3 0.2'/></Shape>"
                                         "</Collision></Transform>");
    QTest::newRow("collision in a proxy")
        << QByteArray::fromStdString("<Collision><Collision DEF='C' containerField='proxy'>"
                                     "<Transform translation=" +
                                     wall + "</Collision></Collision>");
}

void tst_NavigationTravel::collisionWithAProxyIsTold()
{
    QFETCH(QByteArray, collision);
    NavigationScene scene(walk + viewpoint + ground + collision.toStdString());
    scene.window().keyPress('w');
    scene.runFor(1.0);
    QVERIFY(scene.eye()[2] > 9.0F);
    QCOMPARE(scene.get("C", "isActive"), std::string("TRUE"));
    scene.window().keyRelease('w');
    scene.runFor(0.1);
    QCOMPARE(scene.get("C", "isActive"), std::string("FALSE"));
}

void tst_NavigationTravel::stepIsClimbed()
{
    NavigationScene scene(walk + viewpoint + ground + boxAt("0 0.25 0", "10 0.5 10"));
    scene.hold('w', 4.0);
    scene.runFor(1.0);
    QVERIFY(scene.eye()[2] < 4.0F);
    QVERIFY(qAbs(scene.eye()[1] - 2.1F) < 0.01F);
}

void tst_NavigationTravel::tableIsNoStep()
{
    NavigationScene scene(walk + viewpoint + ground + boxAt("0 0.5 0", "10 1 10"));
    scene.hold('w', 4.0);
    QVERIFY(scene.eye()[2] > 5.0F);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 0.01F);
}

void tst_NavigationTravel::edgeLetsFall()
{
    NavigationScene scene(walk + "<Viewpoint position='0 6.6 10'/>" + ground + boxAt("0 4.5 10", "4 1 4"));
    scene.hold('w', 1.5);
    QVERIFY(scene.eye()[1] > 1.7F);
    scene.runFor(2.0);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 0.01F);
}

void tst_NavigationTravel::noFloorMeansNoFall()
{
    NavigationScene scene(walk + viewpoint + boxAt("0 1.6 -20", "1 1 1"));
    scene.hold('w', 0.5);
    scene.runFor(1.0);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 1e-4F);
}

void tst_NavigationTravel::sceneDoesNotBeginWithAFall()
{
    NavigationScene scene(walk + "<Viewpoint position='0 8 10'/>" + ground);
    scene.runFor(1.0);
    QCOMPARE(scene.eye(), osg::Vec3f(0, 8, 10));
    scene.tap('w');
    scene.runFor(2.0);
    QVERIFY(qAbs(scene.eye()[1] - 1.6F) < 0.01F);
}

void tst_NavigationTravel::standingStillDoesNotTremble()
{
    NavigationScene scene(walk + "<Transform translation='100000 0 0'>" + viewpoint + ground +
                          "</Transform>");
    scene.hold('w', 0.5);
    scene.runFor(1.0);
    const osg::Matrix still = scene.camera();
    for (int i = 0; i < 100; ++i) {
        scene.run(0.1);
        QVERIFY(scene.camera() == still);
    }
}

void tst_NavigationTravel::gravityFollowsTheSystemOfTheViewpoint()
{
    // The whole world lies on its side: down is +x.
    NavigationScene scene(walk + "<Transform rotation='0 0 1 1.5707963'><Viewpoint position='0 4 10'/>" +
                          ground + "</Transform>");
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(-4, 0, 10));
    scene.tap('w');
    scene.runFor(2.0);
    QVERIFY(qAbs(scene.eye()[0] + 1.6F) < 0.01F);
}

void tst_NavigationTravel::flyingHasNoGravity()
{
    NavigationScene scene(fly + "<Viewpoint position='0 5 10'/>" + ground);
    scene.hold('w', 1.0);
    scene.runFor(1.0);
    QVERIFY(qAbs(scene.eye()[1] - 5.0F) < 1e-4F);
    scene.hold('e', 1.0);
    QVERIFY(qAbs(scene.eye()[1] - 7.0F) < 0.1F);
}

void tst_NavigationTravel::flyingGoesWhereItLooks()
{
    NavigationScene scene(fly + "<Viewpoint position='0 5 10' orientation='1 0 0 0.5'/>" + ground);
    scene.hold('w', 1.0);
    QVERIFY(qAbs(scene.eye()[1] - (5.0F + 2.0F * std::sin(0.5F))) < 0.1F);
}

void tst_NavigationTravel::flyingStopsAtWalls()
{
    NavigationScene scene(fly + "<Viewpoint position='0 5 10' orientation='1 0 0 -1.5707963'/>" + ground);
    scene.hold('w', 5.0);
    QVERIFY(qAbs(scene.eye()[1] - 0.25F) < 0.05F);
}

void tst_NavigationTravel::speedZeroOnlyTurns()
{
    NavigationScene scene("<NavigationInfo type='\"FLY\"' speed='0'/>" + viewpoint + ground);
    scene.hold('w', 0.5);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 1.6F, 10));
    scene.hold(275, 0.5);
    QVERIFY(scene.forward()[0] < -0.3F);
}

void tst_NavigationTravel::speedFitsTheScene()
{
    // Twelve kilometres, at 1 m/s: nobody would wait for that.
    NavigationScene large("<NavigationInfo type='\"FLY\"'/><Viewpoint position='0 0 20000'/>" +
                          boxAt("0 0 0", "12000 1 1"));
    large.hold('w', 1.0);
    QVERIFY(20000.0F - large.eye()[2] > 80.0F);
    // A few millimetres: one step would be past it.
    NavigationScene small("<NavigationInfo type='\"FLY\"'/><Viewpoint position='0 0 0.1'/>" +
                          boxAt("0 0 0", "0.001 0.001 0.001"));
    small.tap('w');
    QVERIFY(small.eye()[2] > 0.09F);
    QVERIFY(small.eye()[2] < 0.1F);
}

void tst_NavigationTravel::boundNavigationInfoChangesTheMode()
{
    NavigationScene scene("<NavigationInfo DEF='E' type='\"EXAMINE\"'/>"
                          "<NavigationInfo DEF='F' type='\"FLY\"' speed='2'/>" +
                          viewpoint + ground);
    scene.set("F", "set_bind", "TRUE");
    scene.hold(273, 0.5);
    QVERIFY(qAbs(scene.eye()[2] - 9.0F) < 0.1F);
    scene.set("F", "set_bind", "FALSE");
    const osg::Vec3f before = scene.eye();
    scene.hold(273, 0.2);
    // In EXAMINE the arrow turns.
    QVERIFY(scene.forward()[1] < -0.05F);
    QVERIFY(!isNear(scene.eye(), before));
}

void tst_NavigationTravel::typesThatAreNotListedAreRefused()
{
    NavigationScene scene("<NavigationInfo type='\"EXAMINE\" \"WALK\"' speed='2'/>" + viewpoint + ground);
    scene.send("flyNav");
    scene.hold(273, 0.3);
    QVERIFY(scene.forward()[1] < -0.1F);
    scene.send("walkNav");
    scene.send("resetViewPosition");
    scene.runFor(1.2);
    scene.hold(273, 0.5);
    QVERIFY(qAbs(scene.forward()[1]) < 1e-3F);
    QVERIFY(qAbs(scene.eye()[2] - 9.0F) < 0.1F);
}

void tst_NavigationTravel::changedTypeCounts()
{
    NavigationScene scene("<NavigationInfo DEF='I' type='\"EXAMINE\"' speed='2'/>" + viewpoint + ground);
    scene.set("I", "type", "\"FLY\"");
    scene.hold(273, 0.5);
    QVERIFY(qAbs(scene.eye()[2] - 9.0F) < 0.1F);
    QVERIFY(qAbs(scene.forward()[1]) < 1e-3F);
    // What the user has chosen stays while nobody asks for another.
    scene.set("I", "type", "\"FLY\" \"ANY\"");
    scene.send("examineNav");
    scene.set("I", "speed", "3");
    scene.hold(273, 0.2);
    QVERIFY(scene.forward()[1] < -0.05F);
}

QTEST_GUILESS_MAIN(tst_NavigationTravel)
#include "tst_NavigationTravel.moc"
