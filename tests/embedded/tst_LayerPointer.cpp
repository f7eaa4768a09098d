#include "PointerScene.h"
#include <QtTest>

using namespace Orvane;

/// The pointer over layers, in a window of 200 x 200 pixels: which layer it hits, and what its sensors tell.
class tst_LayerPointer : public QObject
{
    Q_OBJECT

private slots:
    void topmostLayerThatIsHitCounts();
    void shapeWithoutSensorsHidesLowerLayers();
    void pointerLooksThroughWhatIsNotPickable_data();
    void pointerLooksThroughWhatIsNotPickable();
    void layerThatIsHiddenIsNotHit();
    void layerIsNotHitOutsideOfItsViewport();
    void groupIsNotHitOutsideOfItsViewport();
    void hitIsToldInTheSystemOfTheLayer();
    void hitInALayoutIsToldInItsUnits();
    void dragGoesOnOutsideOfTheLayer();
    void layerThatComesOverTheSensorTakesThePointer();
    void layerThatGoesEndsTheDrag();
    void sensorOfASharedWorldIsHeardInBothLayers();
    void anchorInALayerOpensItsAddress();
    void orderSaysWhichLayerIsTopmost();
    void keysReachTheSensorsOfAllLayers();
    void dragBesideSensorsNavigates();
};

namespace {

const std::string box = "<Shape><Box size='2 2 2'/></Shape>";

std::string layer(const std::string& fields, const std::string& body)
{
    return "<Layer " + fields + ">" + body + "</Layer>";
}

/// The scene has a sensor T over a box, its layer a sensor U over another one.
std::string twoBoxes(const std::string& fields, const std::string& more = std::string(),
                     const std::string& setFields = "order='0 1'")
{
    return "<Group><TouchSensor DEF='T'/>" + box + "</Group><LayerSet DEF='S' " + setFields + ">" +
           layer("DEF='L' " + fields, more + "<Group><TouchSensor DEF='U'/>" + box + "</Group>") +
           "</LayerSet>";
}

} // namespace

void tst_LayerPointer::topmostLayerThatIsHitCounts()
{
    PointerScene scene(twoBoxes("", "<Viewpoint position='2 0 10'/>"));
    scene.watch("T.isOver");
    scene.watch("U.isOver");
    scene.move(0, 0); // beside the box of the layer, which is seen at -2
    scene.frame();
    QCOMPARE(scene.take(), Events{"T.isOver TRUE"});
    scene.move(-1, 0, 1); // over both
    scene.frame();
    QCOMPARE(scene.take(), (Events{"T.isOver FALSE", "U.isOver TRUE"}));
    scene.move(-2, 0);
    scene.frame();
    QCOMPARE(scene.take(), Events{});
    scene.move(4, 4);
    scene.frame();
    QCOMPARE(scene.take(), Events{"U.isOver FALSE"});
}

void tst_LayerPointer::shapeWithoutSensorsHidesLowerLayers()
{
    PointerScene scene("<TouchSensor DEF='T'/>" + box + "<LayerSet order='0 1'>" + layer("", box) +
                       "</LayerSet>");
    scene.move(0, 0);
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QVERIFY(!scene.viewarea().overSensor());
}

void tst_LayerPointer::pointerLooksThroughWhatIsNotPickable_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("value");
    QTest::newRow("pickable") << "L.pickable"
                              << "FALSE";
    QTest::newRow("objectType") << "L.objectType"
                                << "\"NONE\"";
}

void tst_LayerPointer::pointerLooksThroughWhatIsNotPickable()
{
    QFETCH(QString, field);
    QFETCH(QString, value);
    PointerScene scene(twoBoxes(""));
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("U.isOver"), std::string("TRUE"));
    scene.set(field.toStdString(), value.toLatin1().constData());
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("U.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::layerThatIsHiddenIsNotHit()
{
    PointerScene scene(twoBoxes("visible='false'"));
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("U.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::layerIsNotHitOutsideOfItsViewport()
{
    PointerScene scene(twoBoxes("", "<Viewport clipBoundary='0.5 1 0 1'/><Viewpoint position='0 0 3'/>"));
    scene.window().mouseMove(95, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    QCOMPARE(scene.get("U.isOver"), std::string("FALSE"));
    scene.window().mouseMove(150, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("U.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::groupIsNotHitOutsideOfItsViewport()
{
    PointerScene scene("<Viewport clipBoundary='0.5 1 0 1'><TouchSensor DEF='T'/>" + box + "</Viewport>");
    scene.window().mouseMove(95, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    scene.window().mouseMove(105, 100);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::hitIsToldInTheSystemOfTheLayer()
{
    PointerScene scene("<LayerSet order='0 1'>" +
                       layer("", "<Viewport clipBoundary='0.5 1 0.5 1'/><Viewpoint position='5 0 11'/>"
                                 "<Transform translation='5 0 0'><TouchSensor DEF='U'/>" +
                                     box + "</Transform>") +
                       "</LayerSet>");
    // The middle of the layer's viewport, and a quarter of its height above.
    scene.window().mouseMove(150, 51);
    scene.frame();
    QVERIFY(isClose(scene.numbers("U.hitPoint_changed"), {0, 0, 1}));
    scene.window().mouseMove(150, 51 - 10);
    scene.frame();
    // At the front face 10 units away 50 pixels are 4.142 units.
    QVERIFY(isClose(scene.numbers("U.hitPoint_changed"), {0, 0.828, 1}));
    QVERIFY(isClose(scene.numbers("U.hitNormal_changed"), {0, 0, 1}));
}

void tst_LayerPointer::hitInALayoutIsToldInItsUnits()
{
    PointerScene scene("<LayerSet order='0 1'><LayoutLayer><LayoutGroup><Layout align='\"LEFT\" \"TOP\"' "
                       "size='100 50' sizeUnits='\"PIXEL\"' scaleMode='\"PIXEL\"'/><TouchSensor DEF='U'/>"
                       "<Shape><Rectangle2D size='100 50'/></Shape></LayoutGroup></LayoutLayer></LayerSet>");
    scene.window().mouseMove(10, 21);
    scene.frame();
    QVERIFY(isClose(scene.numbers("U.hitPoint_changed"), {-40, 5, 0}, 0.6));
    scene.window().mouseMove(110, 21);
    scene.frame();
    QCOMPARE(scene.get("U.isOver"), std::string("FALSE"));
}

void tst_LayerPointer::dragGoesOnOutsideOfTheLayer()
{
    PointerScene scene("<LayerSet order='0 1'>" +
                       layer("", "<Viewport clipBoundary='0 0.5 0.5 1'/><PlaneSensor DEF='P'/>" + box) +
                       "</LayerSet>");
    scene.window().mouseMove(50, 51);
    scene.window().buttonPress(1, 50, 51);
    scene.frame();
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    scene.window().mouseMove(150, 51);
    scene.frame();
    // 100 pixels where 50 are 4.142 units at a distance of 10; the front of the box is at 9.
    QVERIFY(isClose(scene.numbers("P.translation_changed"), {2 * 4.142 * 0.9, 0, 0}));
    scene.window().buttonRelease(1, 150, 51);
    scene.frame();
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_LayerPointer::layerThatComesOverTheSensorTakesThePointer()
{
    PointerScene scene(twoBoxes("", "", "order='0'"));
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    scene.set("S.order", "0 1");
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("FALSE"));
    QCOMPARE(scene.get("U.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::layerThatGoesEndsTheDrag()
{
    PointerScene scene(twoBoxes(""));
    scene.press(0, 0);
    scene.frame();
    QCOMPARE(scene.get("U.isActive"), std::string("TRUE"));
    static_cast<MFNode&>(scene.field("S.layers")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.frame();
    scene.move(0.1, 0);
    scene.frame();
    scene.release(0.1, 0);
    scene.frame();
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
}

void tst_LayerPointer::sensorOfASharedWorldIsHeardInBothLayers()
{
    PointerScene scene("<Group DEF='World'><TouchSensor DEF='T'/>" + box + "</Group><LayerSet order='0 1'>" +
                       layer("", "<Viewport clipBoundary='0.5 1 0.5 1'/><Viewpoint position='0 20 0' "
                                 "orientation='1 0 0 -1.5708'/><Group USE='World'/>") +
                       "</LayerSet>");
    scene.window().mouseMove(90, 110);
    scene.frame();
    QVERIFY(std::abs(scene.numbers("T.hitPoint_changed").at(2) - 1.0) < 0.01);
    scene.window().mouseMove(150, 51);
    scene.frame();
    QVERIFY(std::abs(scene.numbers("T.hitPoint_changed").at(1) - 1.0) < 0.01);
}

void tst_LayerPointer::anchorInALayerOpensItsAddress()
{
    PointerScene scene("<Viewpoint/><Viewpoint DEF='Side' position='9 0 0'/><LayerSet order='0 1'>" +
                       layer("", "<Anchor url='\"#Side\"'>" + box + "</Anchor>") + "</LayerSet>");
    scene.press(0, 0);
    scene.release(0, 0);
    scene.frame();
    scene.frame();
    QCOMPARE(scene.get("Side.isBound"), std::string("TRUE"));
}

void tst_LayerPointer::orderSaysWhichLayerIsTopmost()
{
    PointerScene scene(twoBoxes("", "", "order='1 0'"));
    scene.move(0, 0);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    QCOMPARE(scene.get("U.isOver"), std::string("FALSE"));
}

void tst_LayerPointer::keysReachTheSensorsOfAllLayers()
{
    PointerScene scene("<KeySensor DEF='K'/><LayerSet order='0 1'>" + layer("", "<StringSensor DEF='C'/>") +
                       "</LayerSet>");
    scene.window().keyPress('a');
    scene.frame();
    QCOMPARE(scene.get("K.isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("C.enteredText"), std::string("a"));
}

void tst_LayerPointer::dragBesideSensorsNavigates()
{
    PointerScene scene(
        twoBoxes("", "<ProximitySensor DEF='P' size='99 99 99'/>", "order='0 1' activeLayer='1'"));
    scene.move(3, 3);
    scene.press(3, 3);
    scene.frame();
    scene.move(1, 3);
    scene.frame();
    scene.release(1, 3);
    scene.frame();
    scene.frame();
    QVERIFY(std::abs(scene.numbers("P.position_changed").at(0)) > 0.5);
}

QTEST_GUILESS_MAIN(tst_LayerPointer)
#include "tst_LayerPointer.moc"
