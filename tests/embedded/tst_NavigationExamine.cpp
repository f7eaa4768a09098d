#include "NavigationScene.h"

namespace {

const std::string box = "<Shape><Box size='2 2 2'/></Shape>";
const std::string farBox =
    "<Viewpoint position='1000000 0 20'/><Transform translation='1000000 0 0'>" + box + "</Transform>";
const std::string teleport = "<NavigationInfo type='\"LOOKAT\" \"ANY\"' transitionType='\"TELEPORT\"'/>";
const osg::Vec3f middle(0, 0, 0);

float distanceTo(const NavigationScene& scene, const osg::Vec3f& point)
{
    return (scene.eye() - point).length();
}

} // namespace

class tst_NavigationExamine : public QObject
{
    Q_OBJECT

private slots:
    void sceneStartsAtItsViewpoint();
    void leftDragTurnsRoundThePointUnderThePointer();
    void dragBackUndoesItself();
    void dragToTheRightTurnsTheSceneToTheRight();
    void dragPastThePoleKeepsTurning();
    void upwardAxisOfTheViewpointIsTheTurntable();
    void authoredCenterOfRotationIsThePivot();
    void dragBesideTheSceneTurnsRoundItsMiddle();
    void emptySceneTurnsRoundAPointAhead();
    void middleDragKeepsThePointUnderThePointer();
    void rightDragChangesTheDistance();
    void wheelGoesToThePointUnderThePointer();
    void authoredCenterOfRotationIsForTurningAlone();
    void wheelThereAndBackComesBack();
    void wheelNeverPassesTheSurface();
    void arrowKeysTurn();
    void repeatedKeyTurnsAsOneThatIsHeld();
    void shortTapTurnsALittle();
    void plusAndMinusZoom();
    void oneFingerTurns();
    void twoFingersPinchAndPan();
    void fingerThatLeavesBreaksNothing();
    void farAwayModelTurnsInPlace();
    void farAwayModelDoesNotCreep();
    void lookAtGoesToTheObject();
    void lookAtDragTurnsRoundTheObject();
    void clickBesideEverythingStays();
    void parallelWheelChangesTheWindow();
    void parallelWheelKeepsThePointUnderThePointer();
    void noneTakesNoInput();
    void nothingIsDrawnAtRest();
    void releaseEndsTheDrag();
    void secondButtonDoesNotDisturbTheDrag();
};

void tst_NavigationExamine::sceneStartsAtItsViewpoint()
{
    const NavigationScene scene("<Viewpoint position='1 2 12'/>" + box);
    QVERIFY(scene.loaded);
    QCOMPARE(scene.eye(), osg::Vec3f(1, 2, 12));
    QCOMPARE(scene.forward(), osg::Vec3f(0, 0, -1));
}

void tst_NavigationExamine::leftDragTurnsRoundThePointUnderThePointer()
{
    NavigationScene scene(box);
    const osg::Vec3f pivot(0, 0, 1); // the middle of the front
    scene.drag(1, 200, 200, 260, 230);
    QVERIFY(!isNear(scene.eye(), osg::Vec3f(0, 0, 10)));
    QVERIFY(qAbs(distanceTo(scene, pivot) - 9.0F) < 0.05F);
    const osg::Vec2f seen = scene.seenAt(pivot);
    QVERIFY(qAbs(seen[0] - 200) < 1.5F && qAbs(seen[1] - 200) < 1.5F);
}

void tst_NavigationExamine::dragBackUndoesItself()
{
    NavigationScene scene(box);
    const osg::Matrix before = scene.camera();
    scene.window().buttonPress(1, 200, 200);
    scene.window().mouseMove(310, 90);
    scene.run();
    QVERIFY(!(scene.camera() == before));
    scene.window().mouseMove(20, 390);
    scene.run();
    scene.window().mouseMove(200, 200);
    scene.run();
    QVERIFY(scene.camera().equals(before, 1e-5F));
}

void tst_NavigationExamine::dragToTheRightTurnsTheSceneToTheRight()
{
    NavigationScene scene(box);
    // A quarter of the picture is a quarter of half a turn.
    scene.drag(1, 200, 200, 300, 200);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(-9 * std::sqrt(0.5F), 0, 1 + 9 * std::sqrt(0.5F)), 1e-2F);
    QCOMPARE_NEAR(scene.up(), osg::Vec3f(0, 1, 0));
    NavigationScene other(box);
    other.drag(1, 200, 200, 200, 300);
    QCOMPARE_NEAR(other.eye(), osg::Vec3f(0, 9 * std::sqrt(0.5F), 1 + 9 * std::sqrt(0.5F)), 1e-2F);
}

void tst_NavigationExamine::dragPastThePoleKeepsTurning()
{
    NavigationScene scene(box);
    scene.drag(1, 200, 200, 200, 399);
    scene.drag(1, 200, 200, 200, 300);
    QVERIFY(scene.up()[1] < 0.0F);
    const osg::Vec3f before = scene.right();
    scene.drag(1, 200, 200, 240, 200);
    QVERIFY(scene.isFinite());
    QVERIFY(!isNear(scene.right(), before));
}

void tst_NavigationExamine::upwardAxisOfTheViewpointIsTheTurntable()
{
    // z is up.
    NavigationScene scene("<Viewpoint position='0 -10 0' orientation='1 0 0 1.5707963'/>" + box);
    QCOMPARE_NEAR(scene.up(), osg::Vec3f(0, 0, 1));
    scene.drag(1, 200, 200, 290, 200);
    QCOMPARE_NEAR(scene.up(), osg::Vec3f(0, 0, 1));
    QVERIFY(qAbs(scene.eye()[2]) < 1e-3F);
}

void tst_NavigationExamine::authoredCenterOfRotationIsThePivot()
{
    NavigationScene scene("<Transform translation='1 0 0'><Viewpoint centerOfRotation='2 0 0'/></Transform>" +
                          box);
    const osg::Vec3f pivot(3, 0, 0);
    const float distance = distanceTo(scene, pivot);
    scene.drag(1, 200, 200, 300, 250);
    QVERIFY(qAbs(distanceTo(scene, pivot) - distance) < 1e-3F);
    QVERIFY(qAbs(distanceTo(scene, middle) - 10.0F) > 0.1F);
}

void tst_NavigationExamine::dragBesideTheSceneTurnsRoundItsMiddle()
{
    NavigationScene scene("<Viewpoint position='5 0 20'/><Transform translation='5 0 0'>" + box +
                          "</Transform>");
    scene.drag(1, 20, 20, 120, 60);
    QVERIFY(qAbs(distanceTo(scene, osg::Vec3f(5, 0, 0)) - 20.0F) < 1e-2F);
    QVERIFY(!isNear(scene.eye(), osg::Vec3f(5, 0, 20)));
}

void tst_NavigationExamine::emptySceneTurnsRoundAPointAhead()
{
    NavigationScene scene("");
    scene.drag(1, 200, 200, 300, 200);
    QVERIFY(qAbs(distanceTo(scene, middle) - 10.0F) < 1e-3F);
    QVERIFY(!isNear(scene.eye(), osg::Vec3f(0, 0, 10)));
}

void tst_NavigationExamine::middleDragKeepsThePointUnderThePointer()
{
    NavigationScene scene(box);
    const osg::Vec3f point(0, 0, 1);
    scene.drag(4, 200, 200, 260, 150);
    const osg::Vec2f seen = scene.seenAt(point);
    QVERIFY(qAbs(seen[0] - 260) < 1.5F && qAbs(seen[1] - 150) < 1.5F);
    QCOMPARE_NEAR(scene.forward(), osg::Vec3f(0, 0, -1));
}

void tst_NavigationExamine::rightDragChangesTheDistance()
{
    NavigationScene scene(box);
    scene.drag(2, 200, 200, 200, 150);
    QVERIFY(scene.eye()[2] < 9.0F && scene.eye()[2] > 1.0F);
    scene.drag(2, 200, 200, 200, 300);
    QVERIFY(scene.eye()[2] > 10.0F);
}

void tst_NavigationExamine::wheelGoesToThePointUnderThePointer()
{
    NavigationScene scene(box);
    const osg::Vec2f before = scene.seenAt(osg::Vec3f(0.9F, 0.9F, 1));
    scene.wheel(true, qRound(before[0]), qRound(before[1]));
    scene.wheel(true, qRound(before[0]), qRound(before[1]));
    const osg::Vec2f after = scene.seenAt(osg::Vec3f(0.9F, 0.9F, 1));
    QVERIFY((after - before).length() < 2.0F);
    QVERIFY(scene.eye()[2] < 8.0F);
}

void tst_NavigationExamine::authoredCenterOfRotationIsForTurningAlone()
{
    NavigationScene scene("<Viewpoint centerOfRotation='50 0 -100'/>" + box);
    const osg::Vec3f corner(0.9F, 0.9F, 1);
    osg::Vec2f before = scene.seenAt(corner);
    scene.wheel(true, qRound(before[0]), qRound(before[1]));
    QVERIFY((scene.seenAt(corner) - before).length() < 2.0F);
    before = scene.seenAt(corner);
    scene.drag(4, qRound(before[0]), qRound(before[1]), qRound(before[0]) + 40, qRound(before[1]) + 20);
    QVERIFY((scene.seenAt(corner) - before - osg::Vec2f(40, 20)).length() < 2.0F);
}

void tst_NavigationExamine::wheelThereAndBackComesBack()
{
    NavigationScene scene(box);
    scene.wheel(true);
    scene.wheel(false);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationExamine::wheelNeverPassesTheSurface()
{
    NavigationScene scene(box);
    for (int i = 0; i < 100; ++i)
        scene.wheel(true);
    QVERIFY(scene.eye()[2] >= 1.0F);
    QVERIFY(scene.eye()[2] < 1.2F);
}

void tst_NavigationExamine::arrowKeysTurn()
{
    NavigationScene scene(box);
    scene.hold(276, 0.5);
    QVERIFY(scene.eye()[0] > 3.0F);
    QVERIFY(qAbs(distanceTo(scene, middle) - 10.0F) < 1e-2F);
    const osg::Matrix still = scene.camera();
    scene.runFor(0.2);
    QVERIFY(scene.camera() == still);
    scene.hold(273, 0.5);
    QVERIFY(scene.eye()[1] > 3.0F);
}

void tst_NavigationExamine::repeatedKeyTurnsAsOneThatIsHeld()
{
    NavigationScene held(box);
    held.hold(275, 0.5);
    NavigationScene repeated(box);
    repeated.window().keyPress(275);
    for (int i = 0; i < 30; ++i) {
        repeated.run(1.0 / 60.0);
        repeated.window().keyRelease(275);
        repeated.window().keyPress(275);
    }
    QVERIFY(held.camera().equals(repeated.camera(), 0.05F));
}

void tst_NavigationExamine::shortTapTurnsALittle()
{
    NavigationScene scene(box);
    scene.tap(275);
    QVERIFY(scene.eye()[0] < 0.0F);
    QVERIFY(scene.eye()[0] > -1.0F);
}

void tst_NavigationExamine::plusAndMinusZoom()
{
    NavigationScene scene(box);
    scene.hold('+', 0.5);
    QVERIFY(scene.eye()[2] < 7.0F);
    scene.hold('-', 0.5);
    QVERIFY(qAbs(scene.eye()[2] - 10.0F) < 0.3F);
}

void tst_NavigationExamine::oneFingerTurns()
{
    NavigationScene touched(box);
    touched.touch({NavigationScene::finger(0, 0, 200, 200)});
    touched.touch({NavigationScene::finger(0, 2, 230, 200)});
    touched.touch({NavigationScene::finger(0, 2, 300, 200)});
    touched.touch({NavigationScene::finger(0, 1, 300, 200)});
    NavigationScene dragged(box);
    dragged.drag(1, 200, 200, 300, 200);
    QVERIFY(touched.camera().equals(dragged.camera(), 1e-4F));
    const osg::Matrix still = touched.camera();
    touched.touch({NavigationScene::finger(3, 0, 10, 10)});
    QVERIFY(touched.camera() == still);
}

void tst_NavigationExamine::twoFingersPinchAndPan()
{
    NavigationScene scene(box);
    scene.touch({NavigationScene::finger(0, 0, 180, 200)});
    scene.touch({NavigationScene::finger(0, 2, 180, 200), NavigationScene::finger(1, 2, 220, 200)});
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 10));
    // Twice as far apart: half as far away.
    scene.touch({NavigationScene::finger(0, 2, 160, 200), NavigationScene::finger(1, 2, 240, 200)});
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 5.5F), 0.05F);
    // Both to the right: what is between them goes along.
    scene.touch({NavigationScene::finger(0, 2, 210, 200), NavigationScene::finger(1, 2, 290, 200)});
    QVERIFY(qAbs(scene.seenAt(osg::Vec3f(0, 0, 1))[0] - 250) < 2.0F);
}

void tst_NavigationExamine::fingerThatLeavesBreaksNothing()
{
    NavigationScene scene(box);
    scene.touch({NavigationScene::finger(0, 0, 180, 200)});
    scene.touch({NavigationScene::finger(0, 2, 180, 200), NavigationScene::finger(1, 2, 220, 200)});
    const osg::Matrix still = scene.camera();
    scene.touch({NavigationScene::finger(1, 2, 220, 200)});
    QVERIFY(scene.camera() == still);
    scene.touch({NavigationScene::finger(1, 2, 260, 200)});
    QVERIFY(!(scene.camera() == still));
}

void tst_NavigationExamine::farAwayModelTurnsInPlace()
{
    NavigationScene scene(farBox);
    const osg::Vec3f pivot(1000000, 0, 1);
    QCOMPARE(scene.eye()[0], 1000000.0F);
    scene.drag(1, 200, 200, 300, 230);
    QVERIFY(qAbs(distanceTo(scene, pivot) - 19.0F) < 0.3F);
    const osg::Vec3f toPivot = pivot - scene.eye();
    QVERIFY(toPivot.dot(scene.forward()) > 18.5F);
}

void tst_NavigationExamine::farAwayModelDoesNotCreep()
{
    NavigationScene scene(farBox);
    const osg::Vec3f start = scene.eye();
    for (int i = 0; i < 50; ++i) {
        scene.drag(1, 200, 200, 203 + i, 180 - i);
        scene.drag(1, 203 + i, 180 - i, 200, 200);
    }
    for (int i = 0; i < 100; ++i)
        scene.run(0.1);
    // Each drag has a pivot of its own, but none of them leads away from the model.
    QVERIFY((scene.eye() - start).length() < 8.0F);
    const osg::Matrix still = scene.camera();
    for (int i = 0; i < 100; ++i)
        scene.run(0.1);
    QVERIFY(scene.camera() == still);
}

void tst_NavigationExamine::lookAtGoesToTheObject()
{
    NavigationScene scene(teleport + box +
                          "<Transform translation='3 0 0'><Shape><Sphere/></Shape></Transform>");
    const osg::Vec2f place = scene.seenAt(osg::Vec3f(3, 0, 0));
    scene.window().buttonPress(1, qRound(place[0]), qRound(place[1]));
    scene.window().buttonRelease(1, qRound(place[0]), qRound(place[1]));
    scene.run();
    const osg::Vec2f seen = scene.seenAt(osg::Vec3f(3, 0, 0));
    QVERIFY(qAbs(seen[0] - 200) < 1.5F && qAbs(seen[1] - 200) < 1.5F);
    QVERIFY(distanceTo(scene, osg::Vec3f(3, 0, 0)) < 6.0F);
    QVERIFY(distanceTo(scene, osg::Vec3f(3, 0, 0)) > 2.0F);
}

void tst_NavigationExamine::lookAtDragTurnsRoundTheObject()
{
    NavigationScene scene(teleport + "<Transform translation='3 0 0'><Shape><Sphere/></Shape></Transform>");
    const osg::Vec2f place = scene.seenAt(osg::Vec3f(3, 0, 0));
    scene.window().buttonPress(1, qRound(place[0]), qRound(place[1]));
    scene.window().buttonRelease(1, qRound(place[0]), qRound(place[1]));
    scene.run();
    const float distance = distanceTo(scene, osg::Vec3f(3, 0, 0));
    scene.drag(1, 20, 20, 120, 40);
    QVERIFY(qAbs(distanceTo(scene, osg::Vec3f(3, 0, 0)) - distance) < 1e-2F);
}

void tst_NavigationExamine::clickBesideEverythingStays()
{
    NavigationScene scene(teleport + box);
    const osg::Matrix still = scene.camera();
    scene.window().buttonPress(1, 5, 5);
    scene.window().buttonRelease(1, 5, 5);
    scene.run();
    QVERIFY(scene.camera() == still);
}

void tst_NavigationExamine::parallelWheelChangesTheWindow()
{
    NavigationScene scene("<OrthoViewpoint fieldOfView='-4 -4 4 4'/>" + box);
    const osg::Vec2f before = scene.seenAt(osg::Vec3f(1, 0, 0));
    QVERIFY(qAbs(before[0] - 250) < 1.0F);
    scene.wheel(true);
    QVERIFY(scene.seenAt(osg::Vec3f(1, 0, 0))[0] > 255.0F);
    QCOMPARE(scene.eye()[2], 10.0F);
    scene.wheel(false);
    QVERIFY(qAbs(scene.seenAt(osg::Vec3f(1, 0, 0))[0] - before[0]) < 0.5F);
    scene.drag(2, 200, 200, 200, 250);
    QVERIFY(scene.seenAt(osg::Vec3f(1, 0, 0))[0] < 240.0F);
    QCOMPARE(scene.eye()[2], 10.0F);
}

void tst_NavigationExamine::parallelWheelKeepsThePointUnderThePointer()
{
    NavigationScene scene("<OrthoViewpoint fieldOfView='-4 -4 4 4'/>" + box);
    const osg::Vec3f point(0.5F, 0.5F, 1);
    const osg::Vec2f before = scene.seenAt(point);
    scene.wheel(true, qRound(before[0]), qRound(before[1]));
    scene.wheel(true, qRound(before[0]), qRound(before[1]));
    QVERIFY((scene.seenAt(point) - before).length() < 2.0F);
}

void tst_NavigationExamine::noneTakesNoInput()
{
    NavigationScene scene("<NavigationInfo type='\"NONE\"'/><Viewpoint/><Viewpoint position='5 0 5'/>" + box);
    const osg::Matrix still = scene.camera();
    scene.drag(1, 200, 200, 300, 300);
    scene.wheel(true);
    scene.hold(275, 0.2);
    scene.tap(272);
    scene.runFor(1.5);
    scene.touch({NavigationScene::finger(0, 0, 180, 200)});
    scene.touch({NavigationScene::finger(0, 2, 280, 200)});
    QVERIFY(scene.camera() == still);
}

void tst_NavigationExamine::nothingIsDrawnAtRest()
{
    NavigationScene scene(box);
    QTest::qSleep(600); // a window that has just come is drawn for a while
    scene.run();
    scene.events.take();
    scene.window().mouseMove(100, 100);
    scene.run(0.1);
    scene.run(0.1);
    QCOMPARE(scene.events.take(), std::vector<std::string>());
    scene.window().buttonPress(1, 200, 200);
    scene.run(0.1);
    QCOMPARE(scene.events.take(), std::vector<std::string>());
    scene.window().mouseMove(230, 200);
    scene.run(0.1);
    QCOMPARE(scene.events.take(), (std::vector<std::string>{"begin", "end"}));
    scene.run(0.1);
    QCOMPARE(scene.events.take(), std::vector<std::string>());
}

void tst_NavigationExamine::releaseEndsTheDrag()
{
    NavigationScene scene(box);
    scene.drag(1, 200, 200, 250, 200);
    const osg::Matrix still = scene.camera();
    scene.window().mouseMove(10, 10);
    scene.run();
    QVERIFY(scene.camera() == still);
}

void tst_NavigationExamine::secondButtonDoesNotDisturbTheDrag()
{
    NavigationScene scene(box);
    scene.window().buttonPress(1, 200, 200);
    scene.window().buttonPress(2, 210, 200);
    scene.window().mouseMove(250, 200);
    scene.run();
    scene.window().buttonRelease(2, 250, 200);
    scene.run();
    NavigationScene plain(box);
    plain.window().buttonPress(1, 200, 200);
    plain.window().mouseMove(250, 200);
    plain.run();
    QVERIFY(scene.camera().equals(plain.camera(), 1e-5F));
}

QTEST_GUILESS_MAIN(tst_NavigationExamine)
#include "tst_NavigationExamine.moc"
