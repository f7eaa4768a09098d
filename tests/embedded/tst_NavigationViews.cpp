#include "NavigationScene.h"
#include "base/Proc.h"
#include "core/SceneProc.h"
#include <OpenSG/OSGImageForeground.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGVolumeForeground.h>
#include <Orvane/NavigatorProc.h>

namespace {

const std::string box = "<Shape><Box size='2 2 2'/></Shape>";
const std::string teleport = "<NavigationInfo DEF='I' transitionType='\"TELEPORT\"'/>";
const std::string three = "<Viewpoint DEF='A' position='0 0 10'/><Viewpoint DEF='B' position='5 0 10'/>"
                          "<Viewpoint DEF='C' position='9 0 10'/>";

bool headlightIsOn(const NavigationScene& scene)
{
    return osg::LightPtr::dcast(scene.port()->getRoot()->getCore())->getOn();
}

} // namespace

class tst_NavigationViews : public QObject
{
    Q_OBJECT

private slots:
    void messagesComeInTheOrderOfTheStrip();
    void eachMessageHasADescription();
    void unknownMessageDoesNothing();
    void viewpointsAreStepped();
    void keysStepViewpoints();
    void stepWithoutViewpointsDoesNothing();
    void stepFromNoViewpointGoesToTheEnds();
    void hiddenGroupOfViewpointsIsPassedOver();
    void groupOfViewpointsIsOfferedInItsBox();
    void groupOfViewpointsRetainsOffsets();
    void groupOfViewpointsThatHoldsItself();
    void viewpointSetsTheDepthRange_data();
    void viewpointSetsTheDepthRange();
    void resetGoesBackToTheViewpoint();
    void showAllShowsAll();
    void showAllInAFlatPicture();
    void showAllOfAParallelView();
    void viewAllOfAViewpoint();
    void headlightIsToggled();
    void boundNavigationInfoSaysAnew();
    void drawModeCycles();
    void volumesAreToggled();
    void infoScreenCycles();
    void loadBeginsAnew();
    void viewpointThatGoesGivesWay();
    void viewareaHasItsOwnViewpoint();
    void userMovesOnlyInOneViewarea();
    void sceneIsToldWhereTheUserIs();
};

void tst_NavigationViews::messagesComeInTheOrderOfTheStrip()
{
    std::vector<std::string> names;
    for (unsigned int i = 0; i < Orvane::NavigatorProc::getMessageCount(); ++i)
        names.push_back(Orvane::NavigatorProc::getMessage(i)->name);
    const std::vector<std::string> expected = {
        "examineNav",      "walkNav",          "flyNav",       "lookAtNav",     "firstView",
        "prevView",        "nextView",         "lastView",     "showAll",       "resetViewPosition",
        "toggleHeadlight", "toggleDrawVolume", "nextDrawMode", "nextInfoScreen"};
    QCOMPARE(names, expected);
    QVERIFY(!Orvane::NavigatorProc::getMessage(static_cast<unsigned int>(names.size())));
}

void tst_NavigationViews::eachMessageHasADescription()
{
    for (unsigned int i = 0; i < Orvane::NavigatorProc::getMessageCount(); ++i)
        QVERIFY(Orvane::NavigatorProc::getMessage(i)->description.size() > 10);
}

void tst_NavigationViews::unknownMessageDoesNothing()
{
    NavigationScene scene(three + box);
    const osg::Matrix still = scene.camera();
    scene.send("zoom");
    scene.send("");
    scene.send("NEXTVIEW");
    scene.runFor(1.2);
    QVERIFY(scene.camera() == still);
}

void tst_NavigationViews::viewpointsAreStepped()
{
    NavigationScene scene(teleport + three + box);
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
    scene.send("prevView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    scene.send("firstView");
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
    scene.send("lastView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    // One that is bound already takes the user back.
    scene.drag(4, 200, 200, 300, 200);
    QVERIFY(!isNear(scene.eye(), osg::Vec3f(9, 0, 10)));
    scene.send("lastView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
}

void tst_NavigationViews::keysStepViewpoints()
{
    NavigationScene scene(teleport + three + box);
    scene.tap(272);
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
    scene.tap(271);
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
    scene.tap(270);
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    scene.tap(269);
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationViews::stepWithoutViewpointsDoesNothing()
{
    NavigationScene scene(box);
    for (const char* message : {"nextView", "prevView", "firstView", "lastView"})
        scene.send(message);
    scene.runFor(1.2);
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationViews::stepFromNoViewpointGoesToTheEnds()
{
    NavigationScene scene(teleport + three + box);
    const auto unbindAll = [&] {
        for (const char* name : {"A", "B", "C"})
            scene.set(name, "set_bind", "FALSE");
    };
    unbindAll();
    scene.send("nextView");
    QCOMPARE(scene.get("A", "isBound"), std::string("TRUE"));
    unbindAll();
    scene.send("prevView");
    QCOMPARE(scene.get("C", "isBound"), std::string("TRUE"));
}

void tst_NavigationViews::hiddenGroupOfViewpointsIsPassedOver()
{
    NavigationScene scene(teleport +
                          "<Viewpoint DEF='A'/><ViewpointGroup DEF='G' displayed='false'>"
                          "<ViewpointGroup><Viewpoint DEF='B' position='5 0 10'/></ViewpointGroup>"
                          "</ViewpointGroup><Viewpoint DEF='C' position='9 0 10'/>" +
                          box);
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    // An event binds it all the same, and one can step away from it.
    scene.set("B", "set_bind", "TRUE");
    scene.run();
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
    scene.send("prevView");
    QCOMPARE(scene.eye(), osg::Vec3f(9, 0, 10));
    scene.send("firstView");
    scene.set("G", "displayed", "TRUE");
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
}

void tst_NavigationViews::groupOfViewpointsIsOfferedInItsBox()
{
    NavigationScene scene(teleport +
                          "<Viewpoint DEF='A'/><Transform translation='20 0 0'><ViewpointGroup "
                          "center='1 0 10' size='2 2 2'><Viewpoint DEF='B'/></ViewpointGroup>"
                          "</Transform><Viewpoint DEF='C' position='22 0.5 10.5'/>" +
                          box);
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(22, 0.5F, 10.5F));
    scene.send("prevView");
    QCOMPARE(scene.eye(), osg::Vec3f(20, 0, 10));
    scene.send("firstView");
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(22, 0.5F, 10.5F));
}

void tst_NavigationViews::groupOfViewpointsRetainsOffsets()
{
    NavigationScene scene(teleport +
                          "<ViewpointGroup retainUserOffsets='true'><Viewpoint DEF='A'/></ViewpointGroup>"
                          "<Viewpoint DEF='B' position='5 0 10'/>" +
                          box);
    scene.drag(4, 200, 200, 250, 200);
    const osg::Vec3f moved = scene.eye();
    scene.send("nextView");
    scene.send("nextView");
    QCOMPARE_NEAR(scene.eye(), moved);
}

void tst_NavigationViews::groupOfViewpointsThatHoldsItself()
{
    NavigationScene scene(
        teleport + "<ViewpointGroup DEF='G'><Viewpoint/><Viewpoint position='5 0 10'/></ViewpointGroup>" +
        box);
    auto& children =
        dynamic_cast<Orvane::MFNode&>(*scene.node("G").findField("children", Orvane::Node::DECLARED_FSO));
    children.addNode(0.0, &scene.node("G"), Orvane::Field::EXTERNAL_CT);
    scene.run();
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
}

void tst_NavigationViews::viewpointSetsTheDepthRange_data()
{
    QTest::addColumn<QString>("viewpoint");
    QTest::addColumn<QString>("info");
    QTest::addColumn<float>("nearest");
    QTest::addColumn<float>("farthest");
    const QString plain = QStringLiteral("nearDistance='%1' farDistance='%2'");
    const QString limit = QStringLiteral("visibilityLimit='30'");
    constexpr float own = 0; // what the scene asks for
    QTest::newRow("both") << plain.arg(2).arg(50) << QString() << 2.0F << 50.0F;
    QTest::newRow("close together") << plain.arg(2).arg(2.5) << QString() << 2.0F << 2.5F;
    QTest::newRow("far goes before the limit") << plain.arg(-1).arg(50) << limit << own << 50.0F;
    QTest::newRow("limit") << plain.arg(-1).arg(-1) << limit << own << 30.0F;
    QTest::newRow("near") << plain.arg(3).arg(-1) << limit << 3.0F << 30.0F;
    QTest::newRow("near behind far") << plain.arg(9).arg(5) << QString() << 9.0F << own;
    QTest::newRow("no numbers") << QStringLiteral("nearDistance='nan' farDistance='inf'") << limit << own
                                << 30.0F;
    QTest::newRow("zero") << plain.arg(0).arg(0) << limit << own << 30.0F;
}

void tst_NavigationViews::viewpointSetsTheDepthRange()
{
    QFETCH(QString, viewpoint);
    QFETCH(QString, info);
    QFETCH(float, nearest);
    QFETCH(float, farthest);
    for (const char* type : {"Viewpoint", "OrthoViewpoint"}) {
        NavigationScene scene("<NavigationInfo " + info.toStdString() + "/><" + type + " " +
                              viewpoint.toStdString() + "/><Shape><Box size='100 100 1'/></Shape>");
        const osg::CameraPtr camera = scene.port()->getCamera();
        if (nearest > 0)
            QCOMPARE(camera->getNear(), nearest);
        if (farthest > 0)
            QCOMPARE(camera->getFar(), farthest);
        QVERIFY(camera->getNear() > 0);
        QVERIFY(camera->getFar() > camera->getNear());
    }
}

void tst_NavigationViews::resetGoesBackToTheViewpoint()
{
    NavigationScene scene("<Viewpoint position='1 2 10'/>" + box);
    const osg::Matrix start = scene.camera();
    scene.drag(1, 200, 200, 300, 250);
    scene.wheel(true);
    scene.send("resetViewPosition");
    scene.runFor(0.5);
    QVERIFY(!scene.camera().equals(start, 1e-3F));
    scene.runFor(0.6);
    QVERIFY(scene.camera() == start);
}

void tst_NavigationViews::showAllShowsAll()
{
    NavigationScene scene(teleport + "<Viewpoint position='0 0 1.5'/><Transform translation='7 2 -4'>" + box +
                          "</Transform><Transform translation='-7 0 0'>" + box + "</Transform>");
    scene.send("showAll");
    float lowest = 400.0F;
    float highest = 0.0F;
    for (const osg::Vec3f& corner : {osg::Vec3f(8, 3, -5), osg::Vec3f(8, 1, -3), osg::Vec3f(-8, 1, 1),
                                     osg::Vec3f(-8, -1, -1), osg::Vec3f(-8, -1, 1)})
    {
        const osg::Vec2f seen = scene.seenAt(corner);
        lowest = std::min(lowest, seen[0]);
        highest = std::max(highest, seen[0]);
        QVERIFY(seen[1] > 0.0F && seen[1] < 400.0F);
    }
    QVERIFY(lowest > 0.0F && lowest < 60.0F);
    QVERIFY(highest < 400.0F && highest > 300.0F);
    QCOMPARE_NEAR(scene.forward(), osg::Vec3f(0, 0, -1));
}

void tst_NavigationViews::showAllInAFlatPicture()
{
    NavigationScene scene(teleport + "<Transform scale='1 8 1'>" + box + "</Transform>", 400, 100);
    scene.send("showAll");
    QVERIFY(scene.seenAt(osg::Vec3f(0, 8, 1))[1] > 0.0F);
    QVERIFY(scene.seenAt(osg::Vec3f(0, 8, 1))[1] < 10.0F);
}

void tst_NavigationViews::showAllOfAParallelView()
{
    NavigationScene scene(teleport + "<OrthoViewpoint/><Transform translation='9 0 0'>" + box +
                          "</Transform>");
    scene.send("showAll");
    const osg::Vec2f left = scene.seenAt(osg::Vec3f(8, 0, 1));
    const osg::Vec2f right = scene.seenAt(osg::Vec3f(10, 0, 1));
    QVERIFY(left[0] > 0.0F && left[0] < 30.0F);
    QVERIFY(right[0] < 400.0F && right[0] > 370.0F);
    scene.send("resetViewPosition");
    QVERIFY(scene.seenAt(osg::Vec3f(1, 0, 0))[0] > 399.0F);
}

void tst_NavigationViews::viewAllOfAViewpoint()
{
    NavigationScene scene("<Viewpoint viewAll='true'/><Transform translation='50 0 0'>" + box +
                          "</Transform>");
    const osg::Vec2f seen = scene.seenAt(osg::Vec3f(50, 0, 0));
    QVERIFY(qAbs(seen[0] - 200.0F) < 1.0F);
    QVERIFY(scene.eye()[2] < 10.0F);
}

void tst_NavigationViews::headlightIsToggled()
{
    NavigationScene scene(box);
    QVERIFY(headlightIsOn(scene));
    scene.send("toggleHeadlight");
    QVERIFY(!headlightIsOn(scene));
    scene.send("toggleHeadlight");
    QVERIFY(headlightIsOn(scene));
    NavigationScene dark("<NavigationInfo headlight='false'/>" + box);
    QVERIFY(!headlightIsOn(dark));
    dark.tap('h');
    QVERIFY(headlightIsOn(dark));
}

void tst_NavigationViews::boundNavigationInfoSaysAnew()
{
    NavigationScene scene("<NavigationInfo/><NavigationInfo DEF='B' headlight='false'/>" + box);
    scene.send("toggleHeadlight");
    QVERIFY(!headlightIsOn(scene));
    scene.set("B", "set_bind", "TRUE");
    QVERIFY(!headlightIsOn(scene));
    scene.set("B", "headlight", "TRUE");
    QVERIFY(headlightIsOn(scene));
}

void tst_NavigationViews::drawModeCycles()
{
    NavigationScene scene(box);
    QCOMPARE(scene.port()->getPolygonMode(), 0x1B02U);
    scene.send("nextDrawMode");
    QCOMPARE(scene.port()->getPolygonMode(), 0x1B01U);
    scene.send("nextDrawMode");
    QCOMPARE(scene.port()->getPolygonMode(), 0x1B00U);
    scene.send("nextDrawMode");
    QCOMPARE(scene.port()->getPolygonMode(), 0x1B02U);
}

void tst_NavigationViews::volumesAreToggled()
{
    NavigationScene scene(box);
    const auto isOn = [&scene] {
        for (const osg::ForegroundPtr& foreground : scene.port()->getForegrounds()) {
            if (const auto* const volumes = dynamic_cast<osg::VolumeForeground*>(foreground.getCPtr()))
                return volumes->getActive();
        }
        return false;
    };
    QVERIFY(!isOn());
    scene.send("toggleDrawVolume");
    QVERIFY(isOn());
    scene.send("toggleDrawVolume");
    QVERIFY(!isOn());
}

void tst_NavigationViews::infoScreenCycles()
{
    NavigationScene scene(box);
    QTest::qSleep(600);
    scene.run();
    scene.events.take();
    // Each step draws anew.
    for (int i = 0; i < 3; ++i) {
        scene.send("nextInfoScreen");
        QCOMPARE(scene.events.take(), (std::vector<std::string>{"begin", "end"}));
    }
    scene.run();
    QCOMPARE(scene.events.take(), std::vector<std::string>());
}

void tst_NavigationViews::loadBeginsAnew()
{
    NavigationScene scene(box);
    scene.drag(1, 200, 200, 300, 300);
    scene.send("walkNav");
    QVERIFY(scene.load("<Viewpoint position='4 0 20'/>" + box));
    scene.context->setRootState(0.0, Orvane::RUNNING_NS);
    scene.run();
    QCOMPARE(scene.eye(), osg::Vec3f(4, 0, 20));
}

void tst_NavigationViews::viewpointThatGoesGivesWay()
{
    NavigationScene scene(teleport +
                          "<Group DEF='G'><Viewpoint DEF='A' position='0 0 20'/></Group>"
                          "<Viewpoint DEF='B' position='0 0 30'/>" +
                          box);
    scene.drag(4, 200, 200, 250, 200);
    auto& children =
        dynamic_cast<Orvane::MFNode&>(*scene.node("G").findField("children", Orvane::Node::DECLARED_FSO));
    QVERIFY(children.removeNode(0.0, 0, Orvane::Field::EXTERNAL_CT));
    scene.run();
    scene.run();
    // Nothing else has been bound: the user stands where all do without a viewpoint.
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationViews::viewareaHasItsOwnViewpoint()
{
    NavigationScene scene(
        "<Engine><Window><Viewarea size='0.5 1'/>"
        "<Viewarea position='0.5 0' size='0.5 1'>"
        "<Viewpoint containerField='viewpoint' position='0 0 33'/></Viewarea></Window></Engine>" +
        teleport + three + box);
    QVERIFY(scene.loaded);
    QCOMPARE(scene.eye(0), osg::Vec3f(0, 0, 10));
    QCOMPARE(scene.eye(1), osg::Vec3f(0, 0, 33));
    scene.wheel(true, 300, 200);
    QCOMPARE(scene.eye(0), osg::Vec3f(0, 0, 10));
    QVERIFY(scene.eye(1)[2] < 30.0F);
    // Steps in that viewarea leave the bound viewpoint alone.
    scene.window().mouseMove(300, 200);
    scene.send("lastView");
    QCOMPARE(scene.eye(0), osg::Vec3f(0, 0, 10));
    QCOMPARE(scene.eye(1), osg::Vec3f(9, 0, 10));
    QCOMPARE(scene.get("A", "isBound"), std::string("TRUE"));
}

void tst_NavigationViews::userMovesOnlyInOneViewarea()
{
    NavigationScene scene("<Engine><Window><Viewarea size='0.5 1'/>"
                          "<Viewarea position='0.5 0' size='0.5 1'/></Window></Engine>" +
                          box);
    scene.drag(1, 100, 200, 350, 200);
    QVERIFY(!isNear(scene.eye(0), osg::Vec3f(0, 0, 10)));
    QCOMPARE(scene.eye(1), osg::Vec3f(0, 0, 10));
}

void tst_NavigationViews::sceneIsToldWhereTheUserIs()
{
    NavigationScene scene(box);
    auto* const proc = Orvane::procAs<Orvane::SceneProc>(scene.context->findRoot(Orvane::Scene::_type));
    QVERIFY(proc->state().viewerToWorld().equals(scene.camera(), 1e-5F));
    scene.drag(1, 200, 200, 300, 250);
    QVERIFY(proc->state().viewerToWorld().equals(scene.camera(), 1e-4F));
    QVERIFY((proc->state().viewer() - osg::Pnt3f(0, 0, 10)).length() > 1.0F);
}

QTEST_GUILESS_MAIN(tst_NavigationViews)
#include "tst_NavigationViews.moc"
