#include "PickScene.h"

using namespace Orvane;
using namespace PickScene;

/// Which shapes pick sensors look at, and what becomes of bad scenes with them.
class tst_PickTargets : public QObject
{
    Q_OBJECT

private slots:
    void labelsDecide_data();
    void labelsDecide();
    void groupsInsideEachOtherAllHaveToSuit();
    void groupThatIsNotPickableIsPassedOver();
    void layerIsPickable();
    void onlyTargetsThatAreDrawnCount();
    void usedInSeveralPlaces();
    void removedShapeIsLetGo();
    void badWordsAreTold();
    void wrongGeometryIsTold_data();
    void wrongGeometryIsTold();
    void badScenesAreHarmless_data();
    void badScenesAreHarmless();
    void groupsInARingEnd();
};

void tst_PickTargets::labelsDecide_data()
{
    QTest::addColumn<QString>("sensorLabels");
    QTest::addColumn<QString>("groupLabels");
    QTest::addColumn<QString>("criterion");
    QTest::addColumn<bool>("meets");
    const auto row = [](const char* own, const char* group, const char* criterion, bool meets) {
        QTest::addRow("%s %s %s", own, group, criterion)
            << QString::fromLatin1(own) << QString::fromLatin1(group) << QString::fromLatin1(criterion)
            << meets;
    };
    row("\"ALL\"", "\"ALL\"", "MATCH_ANY", true);
    row("\"ALL\"", "\"Water\"", "MATCH_EVERY", true);
    row("\"Water\"", "\"ALL\"", "MATCH_ONLY_ONE", true);
    row("\"ALL\"", "\"NONE\"", "MATCH_ANY", false);
    row("\"NONE\"", "\"ALL\"", "MATCH_ANY", false);
    row("\"Water\"", "\"Land\"", "MATCH_ANY", false);
    row("\"Water\" \"Land\"", "\"Land\" \"Air\"", "MATCH_ANY", true);
    row("\"Water\" \"Land\"", "\"Land\" \"Air\"", "MATCH_EVERY", false);
    row("\"Water\" \"Land\"", "\"Land\" \"Water\"", "MATCH_EVERY", true);
    row("\"Land\"", "\"Land\" \"Air\"", "MATCH_EVERY", false);
    row("\"Water\" \"Land\"", "\"Land\" \"Air\"", "MATCH_ONLY_ONE", true);
    row("\"Water\" \"Land\"", "\"Land\" \"Water\"", "MATCH_ONLY_ONE", false);
    row("", "\"ALL\"", "MATCH_ANY", false);
    row("\"Land\"", "", "MATCH_ANY", false);
}

void tst_PickTargets::labelsDecide()
{
    QFETCH(QString, sensorLabels);
    QFETCH(QString, groupLabels);
    QFETCH(QString, criterion);
    QFETCH(bool, meets);
    PointerScene scene(all("<PickableGroup DEF='G' objectType='" + groupLabels.toStdString() + "'>" +
                           shape("A", "<Sphere/>") + "</PickableGroup>") +
                       sensor("PrimitivePickSensor",
                              "matchCriterion='" + criterion.toStdString() + "' objectType='" +
                                  sensorLabels.toStdString() + "'",
                              ball));
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string(meets ? "TRUE" : "FALSE"));
    scene.set("P.objectType", "\"Gold\"");
    scene.set("G.objectType", "\"Gold\"");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QVERIFY(messages(scene).empty());
}

void tst_PickTargets::groupsInsideEachOtherAllHaveToSuit()
{
    // One of them stands above what the sensor names.
    PointerScene scene("<PickableGroup DEF='Outer' objectType='\"Land\"'><Group DEF='All'>"
                       "<PickableGroup DEF='Inner' objectType='\"Land\" \"House\"'>" +
                       shape("A", "<Sphere/>") + "</PickableGroup></Group></PickableGroup>" +
                       sensor("PrimitivePickSensor", "objectType='\"House\"'", ball));
    settle(scene);
    QCOMPARE(picked(scene), QString());
    scene.set("P.objectType", "\"House\" \"Land\"");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.set("Outer.objectType", "\"Sea\"");
    settle(scene);
    QCOMPARE(picked(scene), QString());
}

void tst_PickTargets::groupThatIsNotPickableIsPassedOver()
{
    PointerScene scene(all("<PickableGroup DEF='G' pickable='false'>" + shape("A", "<Sphere/>") +
                           "</PickableGroup>" + shape("B", "<Sphere/>")) +
                       sensor("PrimitivePickSensor", "sortOrder='ALL'", ball));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("B"));
    scene.set("G.pickable", "TRUE");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A B"));
}

void tst_PickTargets::layerIsPickable()
{
    PointerScene scene("<LayerSet order='1'><Layer DEF='L'>" + all(shape("A", "<Sphere/>")) +
                       sensor("PrimitivePickSensor", "objectType='\"Land\"'", ball) + "</Layer></LayerSet>");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.set("L.objectType", "\"Sea\"");
    settle(scene);
    QCOMPARE(picked(scene), QString());
    scene.set("L.objectType", "\"Land\"");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
}

void tst_PickTargets::onlyTargetsThatAreDrawnCount()
{
    PointerScene scene(all("<Switch DEF='W' whichChoice='1'>" + shape("A", "<Sphere/>") +
                           shape("B", "<Sphere/>") + "</Switch>") +
                       shape("C", "<Sphere/>") +
                       sensor("PrimitivePickSensor", "sortOrder='ALL'", ball,
                              "<Group USE='All' containerField='pickTarget'/>"));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("B"));
    scene.set("W.whichChoice", "0");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.set("A.visible", "FALSE");
    settle(scene);
    QCOMPARE(picked(scene), QString());
}

void tst_PickTargets::usedInSeveralPlaces()
{
    PointerScene scene("<Transform translation='50 0 0'><Group DEF='Both'>" +
                       sensor("PrimitivePickSensor", "", ball, "") + "</Group></Transform>" +
                       "<Transform DEF='Second' translation='-50 0 0'><Group USE='Both'/></Transform>" +
                       "<Group DEF='All'><Transform translation='5 0 0'><Shape "
                       "DEF='A'><Sphere/></Shape></Transform>"
                       "<Transform DEF='Again' translation='9 0 0'><Shape USE='A'/></Transform></Group>");
    auto& targets = static_cast<MFNode&>(scene.field("P.pickTarget"));
    targets.addNode(0.0, scene.find("All"), Field::EVENT_CT);
    settle(scene);
    QCOMPARE(picked(scene), QString());
    scene.set("Second.translation", "5 0 0");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.set("Second.translation", "-50 0 0");
    scene.set("Again.translation", "-50 0 0");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
}

void tst_PickTargets::removedShapeIsLetGo()
{
    PointerScene scene(all(shape("A", "<Sphere/>")) + sensor("PrimitivePickSensor", "", ball));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.field("TA.children").clear();
    settle(scene);
    QCOMPARE(picked(scene), QString());
    QVERIFY(!scene.find("A"));
}

void tst_PickTargets::badWordsAreTold()
{
    PointerScene scene(all(shape("A", "<Sphere/>")) +
                       sensor("PrimitivePickSensor", "sortOrder='NEAREST'", ball));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    QCOMPARE(messages(scene).size(), std::size_t(1));
    QCOMPARE(
        messages(scene)[0].text,
        std::string("PrimitivePickSensor.sortOrder of P: expected ANY, CLOSEST, ALL or ALL_SORTED, found "
                    "\"NEAREST\"; it counts as CLOSEST"));
}

void tst_PickTargets::wrongGeometryIsTold_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("geometry");
    QTest::addColumn<QString>("expected");
    QTest::newRow("points") << QStringLiteral("PointPickSensor") << QStringLiteral("Box")
                            << QStringLiteral("a PointSet");
    QTest::newRow("lines") << QStringLiteral("LinePickSensor") << QStringLiteral("Sphere")
                           << QStringLiteral("a LineSet");
    QTest::newRow("solid") << QStringLiteral("PrimitivePickSensor") << QStringLiteral("ElevationGrid")
                           << QStringLiteral("a Box, Cone");
    QTest::newRow("volume") << QStringLiteral("VolumePickSensor") << QStringLiteral("PointSet")
                            << QStringLiteral("a geometry with faces");
}

void tst_PickTargets::wrongGeometryIsTold()
{
    QFETCH(QString, type);
    QFETCH(QString, geometry);
    QFETCH(QString, expected);
    PointerScene scene(
        all(shape("A", "<Sphere/>")) +
        sensor(type.toStdString(), "", "<" + geometry.toStdString() + " containerField='pickingGeometry'/>"));
    settle(scene);
    scene.set("TA.translation", "0 0 1");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QCOMPARE(messages(scene).size(), std::size_t(1));
    QVERIFY(messages(scene)[0].text.find(expected.toStdString()) != std::string::npos);
}

void tst_PickTargets::badScenesAreHarmless_data()
{
    QTest::addColumn<QString>("body");
    const auto row = [](const char* name, const std::string& body) {
        QTest::newRow(name) << QString::fromStdString(body);
    };
    const std::string target = all(shape("A", "<Sphere/>", "50 0 0"));
    row("nothing at all",
        "<PointPickSensor DEF='P'/><LinePickSensor/><PrimitivePickSensor/><VolumePickSensor/>");
    row("no target", sensor("PrimitivePickSensor", exact(), ball, ""));
    row("target outside of the scene",
        sensor("PrimitivePickSensor", exact(), ball, "<Shape containerField='pickTarget'><Box/></Shape>"));
    row("points that are none",
        target + sensor("PointPickSensor", exact(), points("nan nan nan 1e38 1e38 1e38")));
    row("lines that are none",
        target + sensor("LinePickSensor", exact(), line("nan 0 0 inf 0 0 0 0 0 0 0 0")));
    row("sizes that are none", target + sensor("PrimitivePickSensor", exact(),
                                               "<Box size='nan -1 1e38' containerField='pickingGeometry'/>"));
    row("empty volume",
        target + sensor("VolumePickSensor", exact(), "<IndexedFaceSet containerField='pickingGeometry'/>"));
    row("flat sensor",
        target + "<Transform scale='0 0 0'>" + sensor("PrimitivePickSensor", exact(), ball) + "</Transform>");
    row("flat target",
        "<Transform scale='1 0 1'>" + target + "</Transform>" + sensor("PrimitivePickSensor", exact(), ball));
    row("target that is nowhere", "<Transform translation='nan 0 0' scale='1e38 1e38 1e38'>" + target +
                                      "</Transform>" +
                                      sensor("VolumePickSensor", exact(),
                                             "<Sphere "
                                             "containerField='pickingGeometry'/>"));
    row("lines and points as targets",
        all("<Shape><PointSet><Coordinate point='0 0 0'/></PointSet></Shape><Shape><LineSet "
            "vertexCount='2'><Coordinate point='0 0 0 1 1 1'/></LineSet></Shape>") +
            sensor("PrimitivePickSensor", exact("sortOrder='ALL'"), ball));
}

void tst_PickTargets::badScenesAreHarmless()
{
    QFETCH(QString, body);
    PointerScene scene(body.toStdString());
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_PickTargets::groupsInARingEnd()
{
    PointerScene scene(all(shape("A", "<Sphere/>") + "<Group DEF='Ring'/>") +
                       sensor("PrimitivePickSensor", "sortOrder='ALL'", ball));
    auto& children = static_cast<MFNode&>(scene.field("Ring.children"));
    children.addNode(0.0, scene.find("All"), Field::EVENT_CT);
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
}

QTEST_GUILESS_MAIN(tst_PickTargets)
#include "tst_PickTargets.moc"
