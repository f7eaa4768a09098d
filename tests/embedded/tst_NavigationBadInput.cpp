#include "NavigationScene.h"
#include "base/Graph.h"
#include <limits>

namespace {

const std::string box = "<Shape><Box size='2 2 2'/></Shape>";
const char* const viewMessages[] = {
    "firstView",         "prevView",        "nextView",         "lastView",     "showAll",
    "resetViewPosition", "toggleHeadlight", "toggleDrawVolume", "nextDrawMode", "nextInfoScreen"};
const char* const modeMessages[] = {"examineNav", "walkNav", "flyNav", "lookAtNav"};

/// Does all that a user can do, in each mode. False as soon as the camera is nowhere.
bool useAll(NavigationScene& scene)
{
    for (const char* mode : modeMessages) {
        scene.send(mode);
        for (const int button : {1, 2, 4}) {
            scene.drag(button, 200, 200, 260, 140);
            scene.window().buttonPress(button, 200, 200);
            scene.window().mouseMove(120, 290);
            scene.runFor(0.1);
            scene.window().buttonRelease(button, 120, 290);
            scene.run();
            if (!scene.isFinite())
                return false;
        }
        // A click.
        scene.window().buttonPress(1, 200, 200);
        scene.window().buttonRelease(1, 200, 200);
        scene.run(0.4);
        scene.wheel(true);
        scene.wheel(false, 3, 3);
        for (const int key : {273, 274, 275, 276, int('w'), int('d'), int('e'), int('+'), int('-')})
            scene.hold(key, 0.05);
        scene.touch({NavigationScene::finger(0, 0, 180, 200)});
        scene.touch({NavigationScene::finger(0, 2, 190, 230), NavigationScene::finger(1, 2, 220, 200)});
        scene.touch({NavigationScene::finger(0, 2, 100, 230), NavigationScene::finger(1, 2, 290, 200)});
        scene.touch({NavigationScene::finger(0, 1, 100, 230), NavigationScene::finger(1, 1, 290, 200)});
        if (!scene.isFinite())
            return false;
        for (const char* message : viewMessages) {
            scene.send(message);
            scene.run(0.3);
            if (!scene.isFinite())
                return false;
        }
        scene.run(1.0);
    }
    return scene.isFinite();
}

} // namespace

/// What scenes, hosts and users should not do, and do.
class tst_NavigationBadInput : public QObject
{
    Q_OBJECT

private slots:
    void badScenesKeepTheCamera_data();
    void badScenesKeepTheCamera();
    void windowsWithoutPixels_data();
    void windowsWithoutPixels();
    void pointerFarOutside();
    void touchesThatAreNoNumbers();
    void touchesWithoutPoints();
    void codesThatNobodyKnows();
    void releaseWithoutPress();
    void viewareaGoesInADrag();
    void windowPointerGoesInADrag();
    void sceneGoesInADrag();
    void engineGoesInADrag();
    void viewpointsComeAndGoInATransition();
    void clockThatJumps();
    void lastFrameWithoutAWindow();
};

void tst_NavigationBadInput::badScenesKeepTheCamera_data()
{
    QTest::addColumn<QString>("body");
    const auto row = [](const char* name, const std::string& body) {
        QTest::newRow(name) << QString::fromStdString(body);
    };
    row("nothing", "");
    row("no size", "<Shape><Box size='0 0 0'/></Shape>");
    row("a point", "<Shape><PointSet><Coordinate point='1 2 3'/></PointSet></Shape>");
    row("a flat box", "<Shape><Box size='2 0 2'/></Shape>");
    row("degenerate triangles", "<Shape><IndexedFaceSet coordIndex='0 1 2 -1 0 0 0 -1'>"
                                "<Coordinate point='0 0 0, 1 1 1, 2 2 2'/></IndexedFaceSet></Shape>");
    row("no numbers", "<Shape><IndexedFaceSet coordIndex='0 1 2'>"
                      "<Coordinate point='nan 0 0, 1 nan 0, 0 1 nan'/></IndexedFaceSet></Shape>");
    row("infinite", "<Shape><IndexedFaceSet coordIndex='0 1 2'>"
                    "<Coordinate point='inf 0 0, 1 -inf 0, 0 1 0'/></IndexedFaceSet></Shape>");
    row("huge", "<Shape><IndexedFaceSet coordIndex='0 1 2'>"
                "<Coordinate point='-3e38 0 0, 3e38 0 0, 0 3e38 0'/></IndexedFaceSet></Shape>");
    row("very large", "<Transform scale='1e12 1e12 1e12'>" + box + "</Transform>");
    row("very small", "<Transform scale='1e-12 1e-12 1e-12'>" + box + "</Transform>");
    row("scale of zero", "<Transform scale='0 0 0'>" + box + "<Viewpoint/></Transform>" + box);
    row("negative scale", "<Transform scale='-1 1 1'>" + box + "<Viewpoint/></Transform>");
    row("transform of no numbers",
        "<Transform translation='nan inf 0' rotation='nan 0 0 inf'><Viewpoint/>" + box + "</Transform>");
    row("viewpoint of no numbers", "<Viewpoint position='nan inf -inf' orientation='nan nan nan nan' "
                                   "fieldOfView='nan' centerOfRotation='nan 1 inf'/>" +
                                       box);
    row("viewpoint far away", "<Viewpoint position='3e38 3e38 3e38'/>" + box);
    row("field of view 0", "<Viewpoint fieldOfView='0'/>" + box);
    row("field of view of half a turn", "<Viewpoint fieldOfView='3.1416'/>" + box);
    row("parallel without a window", "<OrthoViewpoint fieldOfView='0 0 0 0'/>" + box);
    row("parallel turned over", "<OrthoViewpoint fieldOfView='1 1 -1 -1'/>" + box);
    row("parallel of no numbers", "<OrthoViewpoint fieldOfView='nan -inf inf 1'/>" + box);
    row("parallel with few sides", "<OrthoViewpoint fieldOfView='1'/>" + box);
    row("viewpoint inside", "<Viewpoint position='0 0 0'/>" + box);
    row("viewpoint inside a small box", "<NavigationInfo type='\"WALK\"'/><Viewpoint position='0 0 "
                                        "0'/><Shape><Box size='0.1 0.1 0.1'/></Shape>");
    row("viewpoint on the surface", "<Viewpoint position='0 0 1'/>" + box);
    row("pivot at the eye", "<Viewpoint position='0 0 5' centerOfRotation='0 0 5'/>" + box);
    row("navigation of no numbers",
        "<NavigationInfo speed='nan' avatarSize='nan inf -1' visibilityLimit='nan' transitionTime='nan'/>" +
            box);
    row("navigation of infinite numbers",
        "<NavigationInfo speed='inf' avatarSize='inf' visibilityLimit='inf' "
        "transitionTime='inf'/><Viewpoint/><Viewpoint position='4 0 4'/>" +
            box);
    row("navigation without values", "<NavigationInfo avatarSize='' type='' transitionType=''/>" + box);
    row("unknown types", "<NavigationInfo type='\"SWIM\" \"\"' transitionType='\"SWOOP\"'/>" + box);
    row("negative values", "<NavigationInfo speed='-3' avatarSize='-1 -1 -1' visibilityLimit='-5' "
                           "transitionTime='-1'/>" +
                               box);
    row("long transition",
        "<NavigationInfo transitionTime='1e300'/><Viewpoint/><Viewpoint position='4 0 4'/>" + box);
}

void tst_NavigationBadInput::badScenesKeepTheCamera()
{
    QFETCH(QString, body);
    NavigationScene scene(body.toStdString());
    QVERIFY(scene.isFinite());
    QVERIFY(useAll(scene));
}

void tst_NavigationBadInput::windowsWithoutPixels_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("no width") << 0 << 100;
    QTest::newRow("no height") << 100 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("negative") << -5 << -5;
}

void tst_NavigationBadInput::windowsWithoutPixels()
{
    QFETCH(int, width);
    QFETCH(int, height);
    NavigationScene scene(box);
    scene.window().buttonPress(1, 200, 200);
    scene.window().mouseMove(220, 200);
    scene.run();
    scene.window().resize(width, height);
    scene.run();
    QVERIFY(useAll(scene));
    scene.window().resize(400, 400);
    scene.run();
    QVERIFY(useAll(scene));
}

void tst_NavigationBadInput::pointerFarOutside()
{
    NavigationScene scene(box);
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    for (const char* mode : modeMessages) {
        scene.send(mode);
        for (const int button : {1, 2, 4}) {
            scene.drag(button, 200, 200, 999999, -999999);
            scene.drag(button, 200, 200, most, least);
            scene.drag(button, most, most, 200, 200);
            scene.drag(button, least, most, least, least);
            QVERIFY(scene.isFinite());
        }
        scene.wheel(true, most, least);
        scene.wheel(false, least, most);
        QVERIFY(scene.isFinite());
    }
}

void tst_NavigationBadInput::touchesThatAreNoNumbers()
{
    NavigationScene scene(box);
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    constexpr float endless = std::numeric_limits<float>::infinity();
    for (const float value : {none, endless, -endless, 3e38F}) {
        scene.touch({NavigationScene::finger(0, 0, 200, 200)});
        scene.touch({NavigationScene::finger(0, 2, value, 200)});
        scene.touch({NavigationScene::finger(0, 2, 200, 200), NavigationScene::finger(1, 2, value, value)});
        scene.touch({NavigationScene::finger(0, 2, 200, value), NavigationScene::finger(1, 2, 210, 210)});
        scene.touch({NavigationScene::finger(0, 1, value, value)});
        QVERIFY(scene.isFinite());
    }
    // Two fingers at one place.
    scene.touch({NavigationScene::finger(0, 0, 200, 200), NavigationScene::finger(1, 0, 200, 200)});
    scene.touch({NavigationScene::finger(0, 2, 200, 200), NavigationScene::finger(1, 2, 300, 300)});
    scene.touch({NavigationScene::finger(0, 2, 200, 200), NavigationScene::finger(1, 2, 200, 200)});
    QVERIFY(scene.isFinite());
}

void tst_NavigationBadInput::touchesWithoutPoints()
{
    NavigationScene scene(box);
    const osg::Matrix still = scene.camera();
    scene.touch({});
    scene.touch({NavigationScene::finger(0, 0, 200, 200)});
    scene.touch({});
    scene.touch({NavigationScene::finger(0, 2, 300, 200)});
    QVERIFY(scene.camera() == still);
}

void tst_NavigationBadInput::codesThatNobodyKnows()
{
    NavigationScene scene(box);
    const osg::Matrix still = scene.camera();
    for (const int code : {0, -1, -128, 3, 5, 32, 64, 1 << 30, std::numeric_limits<int>::min()}) {
        scene.drag(code, 200, 200, 200, 200);
        scene.tap(code);
    }
    QVERIFY(scene.camera() == still);
}

void tst_NavigationBadInput::releaseWithoutPress()
{
    NavigationScene scene(box);
    const osg::Matrix still = scene.camera();
    scene.window().buttonRelease(1, 200, 200);
    scene.window().buttonRelease(2, 200, 200);
    scene.window().keyRelease(273);
    scene.window().mouseMove(210, 200);
    scene.run();
    QVERIFY(scene.camera() == still);
    // What was never released does not stick to the next button.
    scene.window().buttonPress(1, 200, 200);
    scene.run();
    scene.window().buttonRelease(1, 200, 200);
    scene.window().mouseMove(290, 200);
    scene.run();
    QVERIFY(scene.camera() == still);
}

void tst_NavigationBadInput::viewareaGoesInADrag()
{
    NavigationScene scene(box);
    scene.window().buttonPress(1, 200, 200);
    scene.window().keyPress('w');
    scene.window().mouseMove(250, 200);
    scene.run();
    QVERIFY(scene.window().window()->viewareas()->removeNode(0.0, 0, Orvane::Field::EXTERNAL_CT));
    scene.window().mouseMove(290, 200);
    scene.run();
    scene.window().buttonRelease(1, 290, 200);
    scene.send("showAll");
    scene.runFor(0.2);
    const Orvane::NodeRef fresh =
        Orvane::createNode(*scene.context, *Orvane::findType("Viewarea"), Orvane::HOST_NC);
    QVERIFY(scene.window().window()->viewareas()->addNode(0.0, fresh.get(), Orvane::Field::EXTERNAL_CT));
    scene.run();
    scene.run();
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
    QVERIFY(useAll(scene));
}

void tst_NavigationBadInput::windowPointerGoesInADrag()
{
    NavigationScene scene(box);
    scene.window().buttonPress(1, 200, 200);
    scene.window().mouseMove(250, 200);
    scene.run();
    osg::WindowPtr none;
    scene.window().setWinPtr(none, true);
    scene.window().mouseMove(290, 200);
    scene.send("showAll");
    osg::WindowPtr pointer = osg::PassiveWindow::create();
    scene.window().setWinPtr(pointer, true);
    scene.window().resize(400, 400);
    scene.run();
    const osg::Matrix still = scene.camera();
    scene.window().mouseMove(300, 200);
    scene.run();
    QVERIFY(scene.camera() == still);
    QVERIFY(useAll(scene));
}

void tst_NavigationBadInput::sceneGoesInADrag()
{
    NavigationScene scene(box);
    for (const char* mode : modeMessages) {
        scene.send(mode);
        scene.window().buttonPress(1, 200, 200);
        scene.window().mouseMove(250, 150);
        scene.window().keyPress(273);
        scene.run();
        QVERIFY(scene.context->removeRoot(Orvane::Scene::_type));
        scene.window().mouseMove(290, 100);
        scene.run();
        for (const char* message : viewMessages)
            scene.send(message);
        scene.window().buttonRelease(1, 290, 100);
        scene.runFor(0.1);
        QVERIFY(scene.load(box));
        scene.context->setRootState(0.0, Orvane::RUNNING_NS);
        scene.run();
        QVERIFY(scene.isFinite());
    }
}

void tst_NavigationBadInput::engineGoesInADrag()
{
    NavigationScene scene(box);
    scene.window().buttonPress(1, 200, 200);
    scene.window().mouseMove(250, 150);
    scene.run();
    scene.send("nextInfoScreen");
    QVERIFY(scene.context->removeRoot(Orvane::Engine::_type));
    scene.run();
    QVERIFY(scene.events.windows.empty());
}

void tst_NavigationBadInput::viewpointsComeAndGoInATransition()
{
    NavigationScene scene(
        "<Viewpoint DEF='A'/><Group DEF='G'><Viewpoint DEF='B' position='8 0 10'/></Group>" + box);
    scene.send("nextView");
    scene.run(0.3);
    auto& children =
        dynamic_cast<Orvane::MFNode&>(*scene.node("G").findField("children", Orvane::Node::DECLARED_FSO));
    QVERIFY(children.removeNode(0.0, 0, Orvane::Field::EXTERNAL_CT));
    scene.run();
    QVERIFY(scene.isFinite());
    scene.run(0.3);
    QVERIFY(scene.isFinite());
    scene.run(2.0);
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationBadInput::clockThatJumps()
{
    NavigationScene scene("<NavigationInfo type='\"FLY\"'/><Viewpoint position='0 5 10'/>" + box);
    scene.window().keyPress('w');
    scene.run(0.1);
    const osg::Vec3f before = scene.eye();
    scene.run(1e6);
    // One late frame goes no further than a short one.
    QVERIFY((scene.eye() - before).length() < 0.2F);
    scene.run(0.0);
    QVERIFY(scene.isFinite());
}

void tst_NavigationBadInput::lastFrameWithoutAWindow()
{
    NavigationScene scene(box);
    osg::WindowPtr none;
    scene.window().setWinPtr(none, true);
    scene.drag(1, 200, 200, 300, 300);
    scene.hold(273, 0.2);
    for (const char* message : viewMessages)
        scene.send(message);
    QVERIFY(scene.port() == osg::NullFC);
}

QTEST_GUILESS_MAIN(tst_NavigationBadInput)
#include "tst_NavigationBadInput.moc"
