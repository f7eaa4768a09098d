#include "LayerScene.h"
#include <QtTest>

using namespace Orvane;

/// The layers of a scene: which are drawn where, their bound nodes, and the user who moves in one of them.
class tst_Layers : public QObject
{
    Q_OBJECT

private slots:
    void sceneWithoutLayersHasOnePort();
    void layersAreDrawnInTheirOrder();
    void viewportOfTheViewareaIsThatOfTheScene();
    void layerMayBeDrawnTwice();
    void numbersThatAreNoneAreLeftOut();
    void boundaryThatIsNoneCountsAsTheEdge();
    void edgesThatCrossAreTold();
    void onlyTheFirstSetCounts();
    void setBelowAGroupDoesNotCount();
    void layerOutsideOfASetIsNotDrawn();
    void writesAreFollowed();
    void layersComeAndGo();
    void layerOfAPrototypeIsDrawn();
    void portsFollowTheWindow();
    void eachViewareaShowsTheLayers();
    void eachWindowShowsTheLayers();
    void sceneThatIsReplacedTakesItsLayersAlong();
    void eachLayerHasItsOwnStacks();
    void viewpointThatGoesFreesThatOfItsLayer();
    void layerIsSeenThroughItsOwnViewpoint();
    void navigationMovesTheActiveLayer();
    void userStaysWhereHeWasInALayer();
    void commandsStepThroughTheViewpointsOfTheActiveLayer();
    void activeLayerThatIsNoneIsTheScene();
    void sensorsSeeTheViewerOfTheirLayer();
    void infoScreenLiesOverAllLayers();
    void oddScenesAreHarmless_data();
    void oddScenesAreHarmless();
};

namespace {

const std::string box = "<Shape><Box/></Shape>";

std::string layer(const std::string& fields, const std::string& body, const char* boundary = nullptr)
{
    return "<Layer " + fields + ">" +
           (boundary ? "<Viewport DEF='V' clipBoundary='" + std::string(boundary) + "'/>" : std::string()) +
           body + "</Layer>";
}

std::string layerSet(const std::string& fields, const std::string& layers)
{
    return "<LayerSet DEF='S' " + fields + ">" + layers + "</LayerSet>";
}

const Rectangles whole = {"0 0 400 400"};

} // namespace

void tst_Layers::sceneWithoutLayersHasOnePort()
{
    LayerScene scene(box);
    QCOMPARE(scene.rectangles(), whole);
    QCOMPARE(scene.messages(), 0U);
}

void tst_Layers::layersAreDrawnInTheirOrder()
{
    LayerScene scene(box +
                     layerSet("order='0 2 1'", layer("", box, "0 0.5 0 0.25") +
                                                   "<Layer><Viewport clipBoundary='0.5 1 0.5 1'/></Layer>"));
    // The last port carries what lies over all layers.
    QCOMPARE(scene.rectangles(),
             Rectangles({"0 0 400 400", "200 200 200 200", "0 0 200 100", "0 0 400 400"}));
    QVERIFY(scene.ports()[0] == scene.port());
}

void tst_Layers::viewportOfTheViewareaIsThatOfTheScene()
{
    LayerScene scene("<Viewpoint position='0 0 30'/>" +
                     layerSet("order='1 0'", layer("", "<Viewpoint position='0 0 7'/>", "0 0.5 0 1")));
    // Below the lowest layer what it does not cover is filled.
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 200 400", "0 0 400 400", "0 0 400 400"}));
    QVERIFY(scene.ports()[2] == scene.port());
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 30));
    QCOMPARE_NEAR(scene.eyeOf(1), osg::Vec3f(0, 0, 7));

    // It stays in the window when the scene itself is not drawn.
    scene.set("S", "order", "1");
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 400 400", "0 0 200 400", "0 0 400 400"}));
    QVERIFY(scene.ports()[0] == scene.port());
    QCOMPARE(scene.port()->getTravMask(), 0U);
    scene.set("S", "order", "0");
    QCOMPARE(scene.rectangles(), whole);
    QVERIFY(scene.port()->getTravMask() != 0);
}

void tst_Layers::layerMayBeDrawnTwice()
{
    LayerScene scene(layerSet("order='0 1 0 1'", layer("", box, "0 0.5 0 1")));
    QCOMPARE(scene.rectangles(),
             Rectangles({"0 0 400 400", "0 0 200 400", "0 0 400 400", "0 0 200 400", "0 0 400 400"}));
}

void tst_Layers::numbersThatAreNoneAreLeftOut()
{
    LayerScene scene(layerSet("order='0 7 -3 1'", layer("", box)));
    QCOMPARE(scene.ports().size(), std::size_t(3));
    QCOMPARE(scene.messages(), 1U);
}

void tst_Layers::boundaryThatIsNoneCountsAsTheEdge()
{
    LayerScene scene(layerSet("order='0 1'", layer("", box, "0.25 NaN -3")));
    QCOMPARE(scene.rectangles()[1], std::string("100 0 300 400"));
    QCOMPARE(scene.told("clipBoundary"), 1);
    scene.set("V", "clipBoundary", "0.9 0.1 0 1");
    QVERIFY(scene.ports()[1]->getPixelWidth() <= 0);
    scene.set("V", "clipBoundary", "");
    QCOMPARE(scene.rectangles()[1], std::string("0 0 400 400"));
}

void tst_Layers::edgesThatCrossAreTold()
{
    LayerScene scene(layerSet("order='0 1'", layer("", box, "0.5 0.25 0 1")));
    QCOMPARE(scene.told("clipBoundary"), 1);
}

void tst_Layers::onlyTheFirstSetCounts()
{
    LayerScene scene(layerSet("order='0 1'", layer("", box, "0 0.5 0 1")) +
                     "<LayerSet order='0 1'><Layer><Viewport clipBoundary='0.5 1 0 1'/></Layer></LayerSet>");
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 200 400", "0 0 400 400"}));
    QCOMPARE(scene.messages(), 1U);
}

void tst_Layers::setBelowAGroupDoesNotCount()
{
    LayerScene scene("<Group>" + layerSet("order='0 1'", layer("", box)) + "</Group>");
    QCOMPARE(scene.rectangles(), whole);
    QVERIFY(scene.messages() > 0);
}

void tst_Layers::layerOutsideOfASetIsNotDrawn()
{
    LayerScene scene("<Group DEF='G'>" + layer("DEF='L'", box) + "</Group>");
    QCOMPARE(scene.rectangles(), whole);
    SceneHit hit;
    const osg::Line ray(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1));
    QVERIFY(!scene.sceneProc().castRay(ray, hit));
}

void tst_Layers::writesAreFollowed()
{
    LayerScene scene(layerSet("order='0 1 2'", layer("DEF='L'", box, "0 0.5 0 1") + layer("", box)));
    QCOMPARE(scene.ports().size(), std::size_t(4));
    scene.set("L", "visible", "FALSE");
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 400 400", "0 0 400 400"}));
    scene.set("L", "visible", "TRUE");
    scene.set("V", "clipBoundary", "0.25 0.5 0.25 0.75");
    QCOMPARE(scene.rectangles()[1], std::string("100 100 100 200"));
    scene.set("S", "order", "");
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 400 400", "0 0 400 400"}));
    QCOMPARE(scene.port()->getTravMask(), 0U);
}

void tst_Layers::layersComeAndGo()
{
    LayerScene scene(layerSet("order='0 1 2'", layer("", box, "0 0.5 0 1")) + "<Switch>" +
                     "<Group DEF='Spare'/>" + "</Switch>");
    QCOMPARE(scene.ports().size(), std::size_t(3));
    auto& layers = dynamic_cast<MFNode&>(*scene.node("S").findField("layers", Node::DECLARED_FSO));
    const NodeRef added = createNode(*scene.context, *findType("Layer"), HOST_NC);
    layers.addNode(0.0, added.get(), Field::EXTERNAL_CT);
    scene.run();
    QCOMPARE(scene.ports().size(), std::size_t(4));
    layers.removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.run();
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 400 400", "0 0 400 400"}));
    layers.clear();
    scene.run();
    scene.run();
    QCOMPARE(scene.rectangles(), whole);
    // The set itself goes.
    auto& children =
        dynamic_cast<MFNode&>(*scene.sceneProc().node().findField("children", Node::DECLARED_FSO));
    children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.run();
    QCOMPARE(scene.rectangles(), whole);
}

void tst_Layers::layerOfAPrototypeIsDrawn()
{
    LayerScene scene("<ProtoDeclare name='P'><ProtoBody><Layer><Viewport clipBoundary='0 0.5 0 1'/>"
                     "<Viewpoint position='0 0 4'/></Layer></ProtoBody></ProtoDeclare>"
                     "<LayerSet order='0 1'><ProtoInstance name='P' containerField='layers'/></LayerSet>");
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 0 200 400", "0 0 400 400"}));
    QCOMPARE_NEAR(scene.eyeOf(1), osg::Vec3f(0, 0, 4));
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_Layers::portsFollowTheWindow()
{
    LayerScene scene(layerSet("order='0 1'", layer("", box, "0.5 1 0 0.5")));
    scene.window().resize(600, 200);
    scene.run();
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 600 200", "300 0 300 100", "0 0 600 200"}));
    osg::WindowPtr none;
    scene.window().setWinPtr(none, true);
    scene.run();
    osg::WindowPtr other = osg::PassiveWindow::create();
    scene.window().setWinPtr(other, true);
    scene.window().resize(100, 100);
    scene.run();
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 100 100", "50 0 50 50", "0 0 100 100"}));
}

void tst_Layers::eachViewareaShowsTheLayers()
{
    LayerScene scene("<Engine><Window><Viewarea size='0.5 1'/><Viewarea position='0.5 0' size='0.5 1'/>"
                     "</Window></Engine>" +
                     layerSet("order='0 1'", layer("", box, "0 0.5 0.5 1")));
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 200 400", "0 200 100 200", "0 0 200 400", "200 0 200 400",
                                             "200 200 100 200", "200 0 200 400"}));
}

void tst_Layers::eachWindowShowsTheLayers()
{
    LayerScene scene("<Engine><Window><Viewarea/></Window><Window><Viewarea/></Window></Engine>" +
                     layerSet("order='0 1'", layer("", box, "0 0.5 0.5 1")));
    WindowProc& second = *scene.events.windows.at(1);
    osg::WindowPtr pointer = osg::PassiveWindow::create();
    second.setWinPtr(pointer, true);
    second.resize(100, 100);
    scene.run();
    QCOMPARE(LayerScene::rectanglesOf(second), Rectangles({"0 0 100 100", "0 50 50 50", "0 0 100 100"}));
    QCOMPARE(scene.rectangles(), Rectangles({"0 0 400 400", "0 200 200 200", "0 0 400 400"}));
}

void tst_Layers::sceneThatIsReplacedTakesItsLayersAlong()
{
    LayerScene scene(layerSet("order='1 0 1'", layer("", box, "0 0.5 0 1")));
    QCOMPARE(scene.ports().size(), std::size_t(5));
    QVERIFY(scene.load(box));
    scene.run();
    scene.run();
    QCOMPARE(scene.rectangles(), whole);
    QVERIFY(scene.load(layerSet("order='0 1'", layer("", box))));
    scene.run();
    scene.run();
    QCOMPARE(scene.ports().size(), std::size_t(3));
}

void tst_Layers::eachLayerHasItsOwnStacks()
{
    const auto nodes = [](const std::string& n) {
        return "<Viewpoint DEF='View" + n + "'/><NavigationInfo DEF='Info" + n + "'/><Background DEF='Back" +
               n + "'/><Fog DEF='Fog" + n + "'/><Group><Viewpoint DEF='Other" + n + "'/></Group>";
    };
    LayerScene scene(nodes("0") + layerSet("order='0 1'", layer("", nodes("1")) + layer("", nodes("2"))));
    for (const char* const number : {"0", "1", "2"}) {
        for (const char* const kind : {"View", "Info", "Back", "Fog"})
            QCOMPARE(scene.get((std::string(kind) + number).c_str(), "isBound"), std::string("TRUE"));
        QCOMPARE(scene.get((std::string("Other") + number).c_str(), "isBound"), std::string("FALSE"));
    }
    scene.set("Other1", "set_bind", "TRUE");
    QCOMPARE(scene.get("Other1", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("View1", "isBound"), std::string("FALSE"));
    QCOMPARE(scene.get("View0", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("View2", "isBound"), std::string("TRUE"));
}

void tst_Layers::viewpointThatGoesFreesThatOfItsLayer()
{
    LayerScene scene("<Viewpoint DEF='A'/>" +
                     layerSet("order='0 1'", layer("DEF='L'", "<Viewpoint DEF='B'/><Viewpoint DEF='C'/>")));
    scene.set("C", "set_bind", "TRUE");
    auto& children = dynamic_cast<MFNode&>(*scene.node("L").findField("children", Node::DECLARED_FSO));
    children.removeNode(0.0, 1, Field::EXTERNAL_CT);
    scene.run();
    QCOMPARE(scene.get("A", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("B", "isBound"), std::string("TRUE"));
}

void tst_Layers::layerIsSeenThroughItsOwnViewpoint()
{
    LayerScene scene("<Viewpoint position='0 0 12'/>" +
                     layerSet("order='0 1 2'", layer("", "<Transform translation='5 0 0'><Viewpoint DEF='B' "
                                                         "position='0 0 3'/></Transform>") +
                                                   layer("", "")));
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 12));
    QCOMPARE_NEAR(scene.eyeOf(1), osg::Vec3f(5, 0, 3));
    QCOMPARE_NEAR(scene.eyeOf(2), osg::Vec3f(0, 0, 10));
    scene.set("B", "position", "0 1 3");
    QCOMPARE_NEAR(scene.eyeOf(1), osg::Vec3f(5, 1, 3));
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 12));
}

void tst_Layers::navigationMovesTheActiveLayer()
{
    LayerScene scene(box + layerSet("order='0 1' activeLayer='1'", layer("", box)));
    scene.wheel(true);
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 10));
    QVERIFY(scene.eyeOf(1)[2] < 9.0F);
    scene.drag(1, 200, 200, 300, 200);
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 10));
    QVERIFY(scene.eyeOf(1)[0] < -1.0F);
}

void tst_Layers::userStaysWhereHeWasInALayer()
{
    LayerScene scene("<NavigationInfo transitionType='\"TELEPORT\"'/>" + box +
                     layerSet("order='0 1'", layer("", box)));
    scene.wheel(true);
    const osg::Vec3f there = scene.eyeOf(0);
    QVERIFY(there[2] < 9.0F);
    scene.set("S", "activeLayer", "1");
    scene.run();
    QCOMPARE_NEAR(scene.eyeOf(0), there);
    scene.wheel(false);
    QCOMPARE_NEAR(scene.eyeOf(0), there);
    QVERIFY(scene.eyeOf(1)[2] > 10.5F);
    const osg::Vec3f other = scene.eyeOf(1);
    scene.set("S", "activeLayer", "0");
    scene.send("resetViewPosition");
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 10));
    QCOMPARE_NEAR(scene.eyeOf(1), other);
}

void tst_Layers::commandsStepThroughTheViewpointsOfTheActiveLayer()
{
    LayerScene scene("<Viewpoint DEF='A'/><Viewpoint DEF='B'/>" +
                     layerSet("order='0 1' activeLayer='1'",
                              layer("", "<Viewpoint DEF='C'/><Viewpoint DEF='D'/><Viewpoint DEF='E'/>")));
    scene.send("nextView");
    QCOMPARE(scene.get("D", "isBound"), std::string("TRUE"));
    scene.send("lastView");
    QCOMPARE(scene.get("E", "isBound"), std::string("TRUE"));
    scene.send("nextView");
    QCOMPARE(scene.get("C", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.get("A", "isBound"), std::string("TRUE"));
}

void tst_Layers::activeLayerThatIsNoneIsTheScene()
{
    LayerScene scene(box + layerSet("order='0 1' activeLayer='5'", layer("", box)));
    QCOMPARE(scene.messages(), 1U);
    scene.wheel(true);
    QVERIFY(scene.eyeOf(0)[2] < 9.0F);
    QCOMPARE_NEAR(scene.eyeOf(1), osg::Vec3f(0, 0, 10));
}

void tst_Layers::sensorsSeeTheViewerOfTheirLayer()
{
    LayerScene scene(
        "<ProximitySensor DEF='P' size='1000 1000 1000'/>" +
        layerSet("order='0 1'",
                 layer("", "<Viewpoint position='0 0 4'/><ProximitySensor DEF='Q' size='99 99 99'/>"
                           "<VisibilitySensor DEF='W' center='0 0 6' size='1 1 1'/>"
                           "<LOD DEF='D' range='5'><Shape/><Shape/></LOD>")) +
        "<VisibilitySensor DEF='V' center='0 0 6' size='1 1 1'/><LOD DEF='E' "
        "range='5'><Shape/><Shape/></LOD>");
    for (int i = 0; i < 4; ++i)
        scene.run(1.0);
    QCOMPARE(scene.get("P", "position_changed"), std::string("0 0 10"));
    QCOMPARE(scene.get("Q", "position_changed"), std::string("0 0 4"));
    QCOMPARE(scene.get("V", "isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("W", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("D", "level_changed"), std::string("0"));
    QCOMPARE(scene.get("E", "level_changed"), std::string("1"));
}

void tst_Layers::infoScreenLiesOverAllLayers()
{
    LayerScene scene(box + layerSet("order='0 1'", layer("", box, "0 0.1 0 0.1")));
    const std::vector<osg::ViewportPtr> ports = scene.ports();
    QCOMPARE(ports.size(), std::size_t(3));
    QCOMPARE(ports[0]->getForegrounds().size(), std::size_t(1));
    QCOMPARE(ports[1]->getForegrounds().size(), std::size_t(1));
    QCOMPARE(ports[2]->getForegrounds().size(), std::size_t(1));
    QVERIFY(ports[2]->getForegrounds()[0] != ports[0]->getForegrounds()[0]);
    scene.set("S", "order", "0");
    QCOMPARE(scene.port()->getForegrounds().size(), std::size_t(2));
}

void tst_Layers::oddScenesAreHarmless_data()
{
    QTest::addColumn<QString>("body");
    const auto row = [](const char* name, const std::string& body) {
        QTest::newRow(name) << QString::fromStdString(body);
    };
    row("a layer twice",
        "<LayerSet order='0 1 2 1'><Layer DEF='L'>" + box + "</Layer><Layer USE='L'/></LayerSet>");
    row("a layer in a layer", layerSet("order='0 1'", layer("", layer("", box) + box)));
    row("a set in a layer",
        layerSet("order='0 1'", layer("", "<LayerSet order='0 1'>" + layer("", box) + "</LayerSet>")));
    row("a set twice",
        layerSet("order='0 1'", layer("", box)) + "<LayerSet USE='S'/><Group><LayerSet USE='S'/></Group>");
    row("a viewpoint in two layers",
        "<Viewpoint DEF='V' position='0 0 3'/>" +
            layerSet("order='0 1 2'", layer("", "<Viewpoint USE='V'/>") + layer("", "<Viewpoint USE='V'/>")));
    row("a viewport as a group",
        "<Viewport DEF='V' clipBoundary='0 0.5 0 1'>" + box + "</Viewport>" +
            layerSet("order='0 1'", "<Layer><Viewport USE='V'/>" + box + "</Layer>"));
    row("a layout without room",
        "<LayerSet order='0 1'><LayoutLayer><Viewport clipBoundary='0.5 0.5 1 0'/><Layout "
        "sizeUnits='\"FRACTION\"'/><ScreenGroup>" +
            box +
            "</ScreenGroup><Shape><Text string='\"a\"'><ScreenFontStyle "
            "pointSize='-1'/></Text></Shape></LayoutLayer></LayerSet>");
    row("a light of the world in two layers",
        "<Group DEF='W'><PointLight global='true'/>" + box + "</Group>" +
            layerSet("order='0 1'", layer("", "<Switch whichChoice='0'><Group USE='W'/></Switch>")));
    row("navigation in a layout", "<LayerSet order='0 1' activeLayer='1'><LayoutLayer><NavigationInfo "
                                  "type='\"WALK\"'/><Viewpoint/><Viewpoint/>" +
                                      box + "</LayoutLayer></LayerSet>");
}

void tst_Layers::oddScenesAreHarmless()
{
    QFETCH(QString, body);
    LayerScene scene(body.toStdString());
    for (const char* const message : {"nextView", "showAll", "walkNav", "toggleHeadlight", "nextInfoScreen",
                                      "toggleDrawVolume", "nextDrawMode", "resetViewPosition"})
        scene.send(message);
    scene.wheel(true);
    scene.drag(1, 200, 200, 250, 180);
    scene.hold('w', 0.2);
    scene.tap('r');
    QVERIFY(scene.isFinite());
    QVERIFY(scene.load(box));
    scene.run();
    scene.run();
    QCOMPARE(scene.rectangles(), whole);
}

QTEST_GUILESS_MAIN(tst_Layers)
#include "tst_Layers.moc"
