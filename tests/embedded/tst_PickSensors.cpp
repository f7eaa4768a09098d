#include "Numbers.h"
#include "PickScene.h"

using namespace Orvane;
using namespace PickScene;

/// What sensors that pick with geometry tell.
class tst_PickSensors : public QObject
{
    Q_OBJECT

private slots:
    void pointsTellWhatTheyLieIn();
    void boundsAndGeometryDiffer_data();
    void boundsAndGeometryDiffer();
    void lineTellsWhereItMeets();
    void lineMeetsBoxesOfBounds();
    void lineReadsTextureCoordinates();
    void solidsPick_data();
    void solidsPick();
    void volumePicksWhatItMeetsOrHolds_data();
    void volumePicksWhatItMeetsOrHolds();
    void sortOrderChooses_data();
    void sortOrderChooses();
    void followsWhatMoves();
    void sensorAtRestSendsNothing();
    void disabledSensorLetsGo();
    void placesAreTheSensorsOwn();
};

void tst_PickSensors::pointsTellWhatTheyLieIn()
{
    PointerScene scene(all(shape("A", "<Sphere/>") + shape("B", "<Sphere/>", "5 0 0")) +
                       sensor("PointPickSensor", exact("sortOrder='ALL'"), points("0 0 0 0 2 0 5.5 0 0")));
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QCOMPARE(picked(scene), QStringLiteral("A B"));
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {0, 0, 0, 5.5, 0, 0}));
    scene.set("Place.translation", "0 0 40");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QCOMPARE(picked(scene), QString());
    QVERIFY(places(scene, "P.pickedPoint").empty());
}

void tst_PickSensors::boundsAndGeometryDiffer_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("geometry");
    QTest::newRow("points") << QStringLiteral("PointPickSensor")
                            << QString::fromStdString(points("0.9 0.9 0.9"));
    QTest::newRow("lines") << QStringLiteral("LinePickSensor")
                           << QString::fromStdString(line("0.9 0.9 4 0.9 0.9 -4"));
    QTest::newRow("solids") << QStringLiteral("PrimitivePickSensor")
                            << QStringLiteral("<Box size='3 0.2 0.2' containerField='pickingGeometry'/>");
    QTest::newRow("volumes") << QStringLiteral("VolumePickSensor")
                             << QStringLiteral("<Cylinder radius='0.1' height='3' "
                                               "containerField='pickingGeometry'/>");
}

void tst_PickSensors::boundsAndGeometryDiffer()
{
    QFETCH(QString, type);
    QFETCH(QString, geometry);
    // The sensor's geometry passes by the ball and through the box round it.
    const bool isSolid = type[0] == QLatin1Char('P') && type[1] == QLatin1Char('r');
    const char* const place = isSolid ? "0 0.9 0.9" : type[0] == QLatin1Char('V') ? "0.9 0 0.9" : "0 0 0";
    for (const bool isExact : {false, true}) {
        PointerScene scene(all(shape("A", "<Sphere/>")) +
                           sensor(type.toStdString(), isExact ? exact() : std::string(),
                                  geometry.toStdString(), "<Group USE='All' containerField='pickTarget'/>",
                                  place));
        settle(scene);
        QCOMPARE(scene.get("P.isActive"), std::string(isExact ? "FALSE" : "TRUE"));
        scene.set("Place.translation", "0 0 0");
        scene.set("TA.translation", isSolid || type[0] == QLatin1Char('V') ? "0 0 0" : "0.9 0.9 0.5");
        settle(scene);
        QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    }
}

void tst_PickSensors::lineTellsWhereItMeets()
{
    PointerScene scene(
        all(shape("A", unitBox) + shape("B", unitBox, "0 0 -5")) +
        sensor("LinePickSensor", exact("sortOrder='ALL_SORTED'"), line("0.5 0.2 9 0.5 0.2 -9")));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A B"));
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {0.5, 0.2, 1, 0.5, 0.2, -4}));
    QVERIFY(areClose(places(scene, "P.pickedNormal"), {0, 0, 1, 0, 0, 1}));
    QCOMPARE(places(scene, "P.pickedTextureCoordinate").size(), std::size_t(6));
    scene.set("Ends.point", "0.5 0.2 -9 0.5 0.2 9"); // the other way round
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("B A"));
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {0.5, 0.2, -6, 0.5, 0.2, -1}));
    scene.set("Ends.point", "0.5 0.2 9 0.5 0.2 1.5"); // too short
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_PickSensors::lineMeetsBoxesOfBounds()
{
    PointerScene scene(all(shape("A", "<Sphere/>", "0 0 0", "rotation='0 0 1 0.7853982'")) +
                       sensor("LinePickSensor", "", line("4 0 0 -4 0 0")));
    settle(scene);
    // The box of the ball is turned with it.
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {std::sqrt(2.0), 0, 0}));
    scene.set("Ends.point", "0.2 0 0 0.2 0 0.1"); // all inside
    settle(scene);
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {0.2, 0, 0}));
}

void tst_PickSensors::lineReadsTextureCoordinates()
{
    PointerScene scene(all("<Shape DEF='A'><IndexedFaceSet coordIndex='0 1 2 3'><Coordinate point='0 0 0 4 0 "
                           "0 4 2 0 0 2 0'/>"
                           "<TextureCoordinate point='0 0 1 0 1 1 0 1'/></IndexedFaceSet></Shape>") +
                       sensor("LinePickSensor", exact(), line("1 1 3 1 1 -3")));
    settle(scene);
    QVERIFY(areClose(places(scene, "P.pickedTextureCoordinate"), {0.25, 0.5, 0}));
}

void tst_PickSensors::solidsPick_data()
{
    QTest::addColumn<QString>("solid");
    QTest::addColumn<QString>("place");
    QTest::addColumn<bool>("meets");
    const auto row = [](const char* name, const char* solid, const char* place, bool meets) {
        QTest::newRow(name) << QString::fromLatin1(solid) << QString::fromLatin1(place) << meets;
    };
    // What is picked is a ball of radius 1 about the origin.
    row("box before", "Box size='2 2 2'", "1.9 0 0", true);
    row("box beyond", "Box size='2 2 2'", "2.1 0 0", false);
    row("corner of a box", "Box size='2 2 2'", "1.7 1.7 1.7", false);
    row("ball", "Sphere radius='2'", "0 2.9 0", true);
    row("ball beside", "Sphere radius='2'", "2.5 2.5 0", false);
    row("tip of a cone", "Cone bottomRadius='1' height='2'", "0 -1.9 0", true);
    row("beside the tip", "Cone bottomRadius='1' height='2'", "0.9 -1.7 0", false);
    row("cylinder", "Cylinder radius='0.5' height='4'", "1.4 1.5 0", true);
    row("cylinder beside", "Cylinder radius='0.5' height='4'", "1.6 0 0", false);
    row("ball in the ball", "Sphere radius='0.2'", "0.3 0 0", true);
    row("ball around the ball", "Sphere radius='20'", "0.3 0 0", true);
    row("no size", "Box size='0 0 0'", "0.3 0 0", true);
}

void tst_PickSensors::solidsPick()
{
    QFETCH(QString, solid);
    QFETCH(QString, place);
    QFETCH(bool, meets);
    PointerScene scene(all(shape("A", "<Sphere/>")) +
                       sensor("PrimitivePickSensor", exact(),
                              "<" + solid.toStdString() + " containerField='pickingGeometry'/>",
                              "<Group USE='All' containerField='pickTarget'/>", qPrintable(place)));
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string(meets ? "TRUE" : "FALSE"));
}

void tst_PickSensors::volumePicksWhatItMeetsOrHolds_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<double>("size");
    QTest::addColumn<bool>("meets");
    QTest::newRow("crossing") << QStringLiteral("1.5 0 0") << 2.0 << true;
    QTest::newRow("beside") << QStringLiteral("2.2 0 0") << 2.0 << false;
    QTest::newRow("held") << QStringLiteral("0.1 0 0") << 0.2 << true;
    QTest::newRow("holding") << QStringLiteral("0.1 0 0") << 20.0 << true;
    QTest::newRow("far away") << QStringLiteral("100 0 0") << 20.0 << false;
}

void tst_PickSensors::volumePicksWhatItMeetsOrHolds()
{
    QFETCH(QString, place);
    QFETCH(double, size);
    QFETCH(bool, meets);
    const std::string half = textOf(0.5 * size);
    const std::string extrusion = "<Extrusion containerField='pickingGeometry' crossSection='-" + half + " " +
                                  half + " " + half + " " + half + " " + half + " -" + half + " -" + half +
                                  " -" + half + " -" + half + " " + half + "' spine='0 -" + half + " 0 0 " +
                                  half + " 0'/>";
    for (const std::string& fields : {std::string(), exact()}) {
        PointerScene scene(all(shape("A", unitBox)) + sensor("VolumePickSensor", fields, extrusion,
                                                             "<Group USE='All' containerField='pickTarget'/>",
                                                             qPrintable(place)));
        settle(scene);
        QCOMPARE(scene.get("P.isActive"), std::string(meets ? "TRUE" : "FALSE"));
        QVERIFY(messages(scene).empty());
    }
}

void tst_PickSensors::sortOrderChooses_data()
{
    QTest::addColumn<QString>("order");
    QTest::addColumn<QString>("found");
    QTest::newRow("any") << QStringLiteral("ANY") << QStringLiteral("Far");
    QTest::newRow("closest") << QStringLiteral("CLOSEST") << QStringLiteral("Near");
    QTest::newRow("all") << QStringLiteral("ALL") << QStringLiteral("Far Near Middle");
    QTest::newRow("sorted") << QStringLiteral("ALL_SORTED") << QStringLiteral("Near Middle Far");
}

void tst_PickSensors::sortOrderChooses()
{
    QFETCH(QString, order);
    QFETCH(QString, found);
    const std::string content =
        all(shape("Far", unitBox, "0 0 -8") + shape("Near", unitBox) + shape("Middle", unitBox, "0 0 -4"));
    const std::string fields = "sortOrder='" + order.toStdString() + "' ";
    const struct
    {
        const char* type;
        std::string geometry;
        const char* place;
    } sensors[] = {
        {"LinePickSensor", line("0.5 0.2 0 0.5 0.2 -20"), "0 0 9"},
        {"PrimitivePickSensor", "<Sphere radius='12' containerField='pickingGeometry'/>", "0 0 2"},
        {"PrimitivePickSensor", "<Box size='1 1 30' containerField='pickingGeometry'/>", "0 0 2"},
        {"VolumePickSensor", "<Box size='1 1 30' containerField='pickingGeometry'/>", "0 0 2"},
    };
    for (const auto& each : sensors) {
        for (const std::string& type : {std::string(), exact()}) {
            PointerScene scene(content + sensor(each.type, fields + type, each.geometry,
                                                "<Group USE='All' containerField='pickTarget'/>",
                                                each.place));
            settle(scene);
            QCOMPARE(picked(scene), found);
        }
    }
}

void tst_PickSensors::followsWhatMoves()
{
    PointerScene scene(all(shape("A", "<Sphere DEF='S'/>", "5 0 0")) +
                       sensor("PrimitivePickSensor", exact(),
                              "<Sphere DEF='Own' radius='1' containerField='pickingGeometry'/>"));
    scene.watch("P.isActive");
    settle(scene);
    scene.set("TA.translation", "1.5 0 0");
    settle(scene);
    scene.set("TA.translation", "5 0 0");
    settle(scene);
    scene.set("Own.radius", "6");
    settle(scene);
    scene.set("Own.radius", "1");
    settle(scene);
    scene.set("S.radius", "5");
    settle(scene);
    QCOMPARE(scene.take(), (std::vector<std::string>{"P.isActive TRUE", "P.isActive FALSE", "P.isActive TRUE",
                                                     "P.isActive FALSE", "P.isActive TRUE"}));
}

void tst_PickSensors::sensorAtRestSendsNothing()
{
    PointerScene scene(all(shape("A", "<Sphere/>")) + shape("Other", "<Box/>", "9 0 0") +
                       sensor("LinePickSensor", exact(), line("0 0 9 0 0 -9")));
    settle(scene);
    for (const char* field : {"P.isActive", "P.pickedGeometry", "P.pickedPoint", "P.pickedNormal"})
        scene.watch(field);
    settle(scene);
    scene.set("TOther.translation", "9 1 0");
    settle(scene);
    QVERIFY(scene.take().empty());
    scene.set("TA.translation", "0 0 1");
    settle(scene);
    QCOMPARE(scene.take(), (std::vector<std::string>{"P.pickedPoint 0 0 2"}));
}

void tst_PickSensors::disabledSensorLetsGo()
{
    PointerScene scene(all(shape("A", "<Sphere/>")) + sensor("PrimitivePickSensor", "", ball));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.set("P.enabled", "FALSE");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    QCOMPARE(picked(scene), QString());
    scene.set("P.enabled", "TRUE");
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
}

void tst_PickSensors::placesAreTheSensorsOwn()
{
    PointerScene scene(all(shape("A", unitBox, "3 0 0")) +
                       "<Transform translation='3 0 10' rotation='0 1 0 1.5707963' scale='2 2 2'>"
                       "<LinePickSensor DEF='P' intersectionType='GEOMETRY'>" +
                       line("0 0.1 0 9 0.1 0") +
                       "<Group USE='All' containerField='pickTarget'/></LinePickSensor></Transform>");
    settle(scene);
    QVERIFY(areClose(places(scene, "P.pickedPoint"), {4.5, 0.1, 0})); // x looks along -z, in steps of 2
    QVERIFY(areClose(places(scene, "P.pickedNormal"), {-1, 0, 0}));
}

QTEST_GUILESS_MAIN(tst_PickSensors)
#include "tst_PickSensors.moc"
