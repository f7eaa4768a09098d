#include "PointerScene.h"
#include <Orvane/LoadReport.h>
#include <Orvane/MFVec3f.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

/// A sensor at a place, with the words of its fields.
std::string sensor(const std::string& type, const std::string& fields, const std::string& geometry,
                   const std::string& targets = "<Group USE='All' containerField='pickTarget'/>",
                   const char* place = "0 0 0")
{
    return std::string("<Transform DEF='Place' translation='") + place + "'><" + type + " DEF='P' " + fields +
           ">" + geometry + targets + "</" + type + "></Transform>";
}

std::string exact(const std::string& fields = {})
{
    return "intersectionType='GEOMETRY' " + fields;
}

std::string shape(const std::string& name, const std::string& geometry, const char* place = "0 0 0",
                  const char* more = "")
{
    return "<Transform DEF='T" + name + "' translation='" + place + "' " + more + "><Shape DEF='" + name +
           "'>" + geometry + "</Shape></Transform>";
}

std::string all(const std::string& content)
{
    return "<Group DEF='All'>" + content + "</Group>";
}

std::string points(const std::string& places)
{
    return "<PointSet containerField='pickingGeometry'><Coordinate point='" + places + "'/></PointSet>";
}

std::string line(const std::string& places)
{
    return "<LineSet containerField='pickingGeometry' vertexCount='2'><Coordinate DEF='Ends' point='" +
           places + "'/></LineSet>";
}

const std::string ball = "<Sphere containerField='pickingGeometry' radius='1'/>";
const std::string unitBox = "<Box size='2 2 2'/>";

} // namespace

/// Sensors that pick with geometry.
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
    void labelsDecide_data();
    void labelsDecide();
    void groupsInsideEachOtherAllHaveToSuit();
    void groupThatIsNotPickableIsPassedOver();
    void layerIsPickable();
    void followsWhatMoves();
    void sensorAtRestSendsNothing();
    void disabledSensorLetsGo();
    void onlyTargetsThatAreDrawnCount();
    void placesAreTheSensorsOwn();
    void usedInSeveralPlaces();
    void removedShapeIsLetGo();
    void badWordsAreTold();
    void wrongGeometryIsTold_data();
    void wrongGeometryIsTold();
    void badScenesAreHarmless_data();
    void badScenesAreHarmless();
    void groupsInARingEnd();

private:
    static void settle(PointerScene& scene)
    {
        for (int i = 0; i < 3; ++i)
            scene.frame();
    }
    /// The DEF names of what is picked, in order.
    static QString picked(const PointerScene& scene)
    {
        QStringList names;
        auto& field = static_cast<MFNode&>(scene.field("P.pickedGeometry"));
        for (NodeLink& link : field)
            names << (link.node()->name() ? QString::fromStdString(*link.node()->name()) : QString());
        return names.join(QLatin1Char(' '));
    }
    static bool isClose(const std::vector<double>& a, const std::vector<double>& b)
    {
        bool close = a.size() == b.size();
        for (std::size_t i = 0; close && i < a.size(); ++i)
            close = std::abs(a[i] - b[i]) < 1e-4;
        return close;
    }
    /// The numbers of a list of places.
    static std::vector<double> places(const PointerScene& scene, const char* path)
    {
        std::vector<double> numbers;
        for (const osg::Vec3f& place : static_cast<MFVec3f&>(scene.field(path)).values()) {
            for (osg::UInt32 i = 0; i < 3; ++i)
                numbers.push_back(static_cast<double>(place[i]));
        }
        return numbers;
    }
    static const std::vector<LoadMessage>& messages(const PointerScene& scene)
    {
        return scene.context->loadReport().messages;
    }
};

void tst_PickSensors::pointsTellWhatTheyLieIn()
{
    PointerScene scene(all(shape("A", "<Sphere/>") + shape("B", "<Sphere/>", "5 0 0")) +
                       sensor("PointPickSensor", exact("sortOrder='ALL'"), points("0 0 0 0 2 0 5.5 0 0")));
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QCOMPARE(picked(scene), QStringLiteral("A B"));
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {0, 0, 0, 5.5, 0, 0}));
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
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {0.5, 0.2, 1, 0.5, 0.2, -4}));
    QVERIFY(isClose(places(scene, "P.pickedNormal"), {0, 0, 1, 0, 0, 1}));
    QCOMPARE(places(scene, "P.pickedTextureCoordinate").size(), std::size_t(6));
    scene.set("Ends.point", "0.5 0.2 -9 0.5 0.2 9"); // the other way round
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("B A"));
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {0.5, 0.2, -6, 0.5, 0.2, -1}));
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
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {std::sqrt(2.0), 0, 0}));
    scene.set("Ends.point", "0.2 0 0 0.2 0 0.1"); // all inside
    settle(scene);
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {0.2, 0, 0}));
}

void tst_PickSensors::lineReadsTextureCoordinates()
{
    PointerScene scene(all("<Shape DEF='A'><IndexedFaceSet coordIndex='0 1 2 3'><Coordinate point='0 0 0 4 0 "
                           "0 4 2 0 0 2 0'/>"
                           "<TextureCoordinate point='0 0 1 0 1 1 0 1'/></IndexedFaceSet></Shape>") +
                       sensor("LinePickSensor", exact(), line("1 1 3 1 1 -3")));
    settle(scene);
    QVERIFY(isClose(places(scene, "P.pickedTextureCoordinate"), {0.25, 0.5, 0}));
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
    const std::string half = std::to_string(0.5 * size);
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

void tst_PickSensors::labelsDecide_data()
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

void tst_PickSensors::labelsDecide()
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

void tst_PickSensors::groupsInsideEachOtherAllHaveToSuit()
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

void tst_PickSensors::groupThatIsNotPickableIsPassedOver()
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

void tst_PickSensors::layerIsPickable()
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

void tst_PickSensors::onlyTargetsThatAreDrawnCount()
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

void tst_PickSensors::placesAreTheSensorsOwn()
{
    PointerScene scene(all(shape("A", unitBox, "3 0 0")) +
                       "<Transform translation='3 0 10' rotation='0 1 0 1.5707963' scale='2 2 2'>"
                       "<LinePickSensor DEF='P' intersectionType='GEOMETRY'>" +
                       line("0 0.1 0 9 0.1 0") +
                       "<Group USE='All' containerField='pickTarget'/></LinePickSensor></Transform>");
    settle(scene);
    QVERIFY(isClose(places(scene, "P.pickedPoint"), {4.5, 0.1, 0})); // x looks along -z, in steps of 2
    QVERIFY(isClose(places(scene, "P.pickedNormal"), {-1, 0, 0}));
}

void tst_PickSensors::usedInSeveralPlaces()
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

void tst_PickSensors::removedShapeIsLetGo()
{
    PointerScene scene(all(shape("A", "<Sphere/>")) + sensor("PrimitivePickSensor", "", ball));
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
    scene.field("TA.children").clear();
    settle(scene);
    QCOMPARE(picked(scene), QString());
    QVERIFY(!scene.find("A"));
}

void tst_PickSensors::badWordsAreTold()
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

void tst_PickSensors::wrongGeometryIsTold_data()
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

void tst_PickSensors::wrongGeometryIsTold()
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

void tst_PickSensors::badScenesAreHarmless_data()
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

void tst_PickSensors::badScenesAreHarmless()
{
    QFETCH(QString, body);
    PointerScene scene(body.toStdString());
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

void tst_PickSensors::groupsInARingEnd()
{
    PointerScene scene(all(shape("A", "<Sphere/>") + "<Group DEF='Ring'/>") +
                       sensor("PrimitivePickSensor", "sortOrder='ALL'", ball));
    auto& children = static_cast<MFNode&>(scene.field("Ring.children"));
    children.addNode(0.0, scene.find("All"), Field::EVENT_CT);
    settle(scene);
    QCOMPARE(picked(scene), QStringLiteral("A"));
}

QTEST_GUILESS_MAIN(tst_PickSensors)
#include "tst_PickSensors.moc"
