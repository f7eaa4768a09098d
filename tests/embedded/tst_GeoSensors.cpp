#include "PointerScene.h"
#include "core/GeoSystem.h"
#include "core/GroupProc.h"
#include <OpenSG/OSGNode.h>
#include <Orvane/LoadReport.h>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Geographic nodes that compute, sense, and show finer tiles near by.
class tst_GeoSensors : public QObject
{
    Q_OBJECT

private slots:
    void placesComeBackAsCoordinates_data();
    void placesComeBackAsCoordinates();
    void interpolatorSendsBothKinds();
    void interpolatorSurvivesBadKeys();
    void proximityTellsCoordinates();
    void touchTellsCoordinates();
    void sensorsInAGroupTellThoseOfTheWorld_data();
    void sensorsInAGroupTellThoseOfTheWorld();
    void boxStandsWhereItsCoordinatesLead();
    void tilesComeNearBy();
    void rootMayBeAFile();
    void tileThatHoldsItselfIsTold();
    void missingTilesAreToldOnce();

private:
    static void write(const QTemporaryDir& folder, const char* name, const QByteArray& nodes)
    {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#X3D V4.0 utf8\nPROFILE Full\n" + nodes);
    }
    static std::size_t children(const PointerScene& scene) { return scene.field("L.children").size(); }
    static void settle(PointerScene& scene)
    {
        for (int i = 0; i < 4; ++i)
            scene.frame();
    }
};

void tst_GeoSensors::placesComeBackAsCoordinates_data()
{
    QTest::addColumn<QString>("system");
    QTest::addColumn<QVector<double>>("place");
    QTest::addColumn<double>("slack");
    const QVector<double> munich{48.137, 11.575, 520};
    QTest::newRow("degrees") << QStringLiteral("\"GD\" \"WE\"") << munich << 1e-7;
    QTest::newRow("south and west") << QStringLiteral("\"GD\"") << QVector<double>{-33.9, -70.5, 0} << 1e-7;
    QTest::newRow("pole") << QStringLiteral("\"GD\"") << QVector<double>{89.999, 120, 10} << 1e-6;
    QTest::newRow("longitude first") << QStringLiteral("\"GD\" \"longitude_first\"")
                                     << QVector<double>{11.575, 48.137, 520} << 1e-7;
    QTest::newRow("geocentric") << QStringLiteral("\"GC\"") << QVector<double>{4e6, 1e6, 5e6} << 1e-6;
    QTest::newRow("grid") << QStringLiteral("\"UTM\" \"Z32\"") << QVector<double>{5334000, 690000, 500}
                          << 1e-2;
    QTest::newRow("southern grid") << QStringLiteral("\"UTM\" \"Z19\" \"S\"")
                                   << QVector<double>{6250000, 350000, 500} << 1e-2;
    QTest::newRow("easting first") << QStringLiteral("\"UTM\" \"Z32\" \"easting_first\"")
                                   << QVector<double>{690000, 5334000, 500} << 1e-2;
}

void tst_GeoSensors::placesComeBackAsCoordinates()
{
    QFETCH(QString, system);
    QFETCH(QVector<double>, place);
    QFETCH(double, slack);
    PointerScene scene(QStringLiteral("<GeoLocation DEF='A' geoSystem='%1'><GeoOrigin geoCoords='48 11 0' "
                                      "rotateYUp='true'/></GeoLocation><GeoLocation DEF='B' geoSystem='%1'/>")
                           .arg(system)
                           .toStdString());
    const osg::Vec3d from(place[0], place[1], place[2]);
    for (const char* name : {"A", "B"}) {
        const GeoSystem geo = GeoSystem::of(*scene.find(name));
        const osg::Vec3d back = geo.fromScene(geo.toScene(from));
        QVERIFY2(isClose({back[0], back[1], back[2]}, {from[0], from[1], from[2]}, slack),
                 qPrintable(QStringLiteral("%1 %2 %3").arg(back[0]).arg(back[1]).arg(back[2])));
    }
}

void tst_GeoSensors::interpolatorSendsBothKinds()
{
    PointerScene scene("<GeoPositionInterpolator DEF='I' key='0 1' keyValue='48 11 0 48 11 10'><GeoOrigin "
                       "geoCoords='48 11 0' rotateYUp='true'/></GeoPositionInterpolator>");
    scene.set("I.set_fraction", "0.25");
    scene.frame();
    QVERIFY(isClose(scene.numbers("I.geovalue_changed"), {48, 11, 2.5}, 1e-9));
    QVERIFY(isClose(scene.numbers("I.value_changed"), {0, 2.5, 0}, 1e-4));
}

void tst_GeoSensors::interpolatorSurvivesBadKeys()
{
    PointerScene scene("<GeoPositionInterpolator DEF='I' key='0 0 -1 5' keyValue='1e300 1 0 90 1e300 0'/>"
                       "<GeoPositionInterpolator DEF='J'/>");
    for (const char* fraction : {"0", "0.5", "-1e30", "9"}) {
        scene.set("I.set_fraction", fraction);
        scene.set("J.set_fraction", fraction);
        scene.frame();
        for (const double number : scene.numbers("I.value_changed"))
            QVERIFY(std::isfinite(number));
    }
}

void tst_GeoSensors::proximityTellsCoordinates()
{
    PointerScene scene("<GeoViewpoint DEF='V' position='48 11 100' orientation='1 0 0 -1.57'><GeoOrigin "
                       "DEF='O' geoCoords='48 11 0' rotateYUp='true'/></GeoViewpoint>"
                       "<GeoProximitySensor DEF='P' geoCenter='48 11 0' size='500 500 500'><GeoOrigin "
                       "USE='O'/></GeoProximitySensor>");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("P.position_changed"), {0, 100, 0}, 1e-3));
    QVERIFY(isClose(scene.numbers("P.geoCoord_changed"), {48, 11, 100}, 1e-3));
    scene.set("P.geoCenter", "49 11 0");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
    scene.set("P.geoCenter", "0 0 0");
    scene.set("P.center", "48 11 0"); // the other name
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
}

void tst_GeoSensors::touchTellsCoordinates()
{
    PointerScene scene("<GeoTouchSensor DEF='T'><GeoOrigin geoCoords='48 11 0' rotateYUp='true'/>"
                       "</GeoTouchSensor><Shape><Box size='4 4 2'/></Shape>");
    scene.move(0, 1, 1);
    scene.frame();
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    const std::vector<double> coordinates = scene.numbers("T.hitGeoCoord_changed");
    QVERIFY(std::abs(coordinates.at(0) - (48.0 - 1.0 / 111200.0)) < 1e-7); // a metre to the south
    QVERIFY(std::abs(coordinates.at(1) - 11.0) < 1e-6);
    QVERIFY(std::abs(coordinates.at(2) - 1.0) < 0.05); // and one up
}

void tst_GeoSensors::sensorsInAGroupTellThoseOfTheWorld_data()
{
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("end");
    QTest::newRow("moved") << QStringLiteral(
                                  "<Transform translation='3 1 0' rotation='0 0 1 1' scale='2 1 1'>")
                           << QStringLiteral("</Transform>");
    QTest::newRow("on the earth") << QStringLiteral(
                                         "<GeoLocation geoCoords='48.00001 11 0'><GeoOrigin USE='O'/>")
                                  << QStringLiteral("</GeoLocation>");
}

void tst_GeoSensors::sensorsInAGroupTellThoseOfTheWorld()
{
    QFETCH(QString, group);
    QFETCH(QString, end);
    PointerScene scene(
        QStringLiteral(
            "<GeoLocation geoCoords='0 0 0'><GeoOrigin DEF='O' geoCoords='48 11 0' rotateYUp='true'/>"
            "</GeoLocation>%1<GeoTouchSensor DEF='T'><GeoOrigin USE='O'/></GeoTouchSensor>"
            "<GeoProximitySensor DEF='P' geoCenter='48 11 0' size='500 500 500'><GeoOrigin "
            "USE='O'/></GeoProximitySensor><Shape><Box size='90 90 0.01'/></Shape>%2")
            .arg(group, end)
            .toStdString());
    scene.move(0, 1, 1);
    settle(scene);
    QCOMPARE(scene.get("T.isOver"), std::string("TRUE"));
    // What the pointer meets and the viewer lie above the origin, at other heights.
    const GeoSystem geo = GeoSystem::of(*scene.find("T"));
    const std::vector<double> touched = scene.numbers("T.hitGeoCoord_changed");
    const osg::Vec3d place = geo.toScene(osg::Vec3d(touched.at(0), touched.at(1), touched.at(2)));
    const osg::Vec3d line = osg::Vec3d(0, 1, 1) - osg::Vec3d(0, 0, 10); // that the pointer lies on
    QVERIFY2(std::abs(place[1] * line[2] - (place[2] - 10.0) * line[1]) < 0.3 && std::abs(place[0]) < 0.1,
             qPrintable(QStringLiteral("%1 %2 %3").arg(place[0]).arg(place[1]).arg(place[2])));
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    const std::vector<double> seen = scene.numbers("P.geoCoord_changed");
    const osg::Vec3d eye = geo.toScene(osg::Vec3d(seen.at(0), seen.at(1), seen.at(2)));
    QVERIFY((eye - osg::Vec3d(0, 0, 10)).length() < 1e-3);
}

void tst_GeoSensors::boxStandsWhereItsCoordinatesLead()
{
    // The group stands a kilometre to the side, the box at the viewer.
    PointerScene scene(
        "<Transform translation='1000 0 0'><GeoProximitySensor DEF='P' geoCenter='48 11 0' "
        "size='50 50 50'><GeoOrigin geoCoords='48 11 0' rotateYUp='true'/></GeoProximitySensor>"
        "</Transform>");
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("TRUE"));
    QVERIFY(isClose(scene.numbers("P.position_changed"), {-1000, 0, 10}, 1e-2));
    scene.set("P.geoCenter", "48 11.0134 0"); // at the group
    settle(scene);
    QCOMPARE(scene.get("P.isActive"), std::string("FALSE"));
}

namespace {

constexpr char Tile[] =
    "<Viewpoint DEF='V' position='0 0 50'/><GeoLOD DEF='L' geoSystem='\"GC\"' range='20' ";

} // namespace

void tst_GeoSensors::tilesComeNearBy()
{
    QTemporaryDir folder;
    for (const char* name : {"1.x3dv", "2.x3dv", "3.x3dv", "4.x3dv"})
        write(folder, name, "Shape { geometry Box { } }");
    PointerScene scene(Tile +
                           std::string("child1Url='\"1.x3dv\"' child2Url='\"2.x3dv\"' child3Url='\"3.x3dv\"' "
                                       "child4Url='\"4.x3dv\"'><Shape DEF='R' "
                                       "containerField='rootNode'><Sphere radius='5'/></Shape></GeoLOD>"),
                       folder.filePath(QStringLiteral("tiles.x3d")).toStdString());
    scene.watch("L.level_changed");
    settle(scene);
    QCOMPARE(children(scene), std::size_t(1));
    auto* const group = procAs<GroupProc>(scene.find("L"));
    QCOMPARE(group->tree()->getNChildren(), 1U);
    scene.set("V.position", "0 0 10");
    settle(scene);
    QCOMPARE(scene.take(), (std::vector<std::string>{"L.level_changed 1"}));
    QCOMPARE(children(scene), std::size_t(4));
    QCOMPARE(group->tree()->getNChildren(), 4U);
    osg::Pnt3f low, high;
    group->tree()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(1, 1, 1));
    scene.set("V.position", "0 0 50");
    settle(scene);
    QCOMPARE(scene.take(), (std::vector<std::string>{"L.level_changed 0"}));
    QCOMPARE(children(scene), std::size_t(1));
    group->tree()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(5, 5, 5));
    QVERIFY(scene.context->loadReport().messages.empty());
}

void tst_GeoSensors::rootMayBeAFile()
{
    QTemporaryDir folder;
    write(folder, "root.x3dv", "Shape { geometry Box { size 6 6 6 } }");
    PointerScene scene(Tile + std::string("rootUrl='\"nowhere.x3dv\" \"root.x3dv\"'/>"),
                       folder.filePath(QStringLiteral("tiles.x3d")).toStdString());
    settle(scene);
    osg::Pnt3f low, high;
    procAs<GroupProc>(scene.find("L"))->tree()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(3, 3, 3));
}

void tst_GeoSensors::tileThatHoldsItselfIsTold()
{
    QTemporaryDir folder;
    write(folder, "self.x3dv",
          "GeoLOD { geoSystem \"GC\" range 1000 child1Url \"other.x3dv\" child2Url \"self.x3dv\" }");
    write(folder, "other.x3dv", "GeoLOD { geoSystem \"GC\" range 1000 child1Url \"self.x3dv\" }");
    PointerScene scene("<GeoLOD DEF='L' geoSystem='\"GC\"' range='1000' child1Url='\"self.x3dv\"'/>",
                       folder.filePath(QStringLiteral("tiles.x3d")).toStdString());
    for (int i = 0; i < 20; ++i)
        scene.frame();
    QCOMPARE(children(scene), std::size_t(1));
    QCOMPARE(scene.context->loadReport().messages.size(), std::size_t(2));
    QVERIFY(scene.context->loadReport().messages[0].text.find("hold the tile itself") != std::string::npos);
}

void tst_GeoSensors::missingTilesAreToldOnce()
{
    QTemporaryDir folder;
    PointerScene scene(Tile + std::string("child1Url='\"nowhere.x3dv\"'/>"),
                       folder.filePath(QStringLiteral("tiles.x3d")).toStdString());
    scene.set("V.position", "0 0 10");
    settle(scene);
    QCOMPARE(children(scene), std::size_t(0));
    QCOMPARE(scene.context->loadReport().messages.size(), std::size_t(1));
}

QTEST_GUILESS_MAIN(tst_GeoSensors)
#include "tst_GeoSensors.moc"
