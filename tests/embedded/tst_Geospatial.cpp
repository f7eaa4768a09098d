#include "CoreScene.h"
#include "base/ValueFields.h"
#include "core/GeoSystem.h"
#include "core/GeometryProc.h"
#include "core/GroupProc.h"
#include "core/VectorListProc.h"
#include "core/ViewpointProc.h"
#include <Orvane/MFVec3d.h>
#include <QtTest>
#include <cmath>
#include <limits>

using namespace Orvane;

/// Nodes at places of the earth.
class tst_Geospatial : public QObject
{
    Q_OBJECT

private slots:
    void coordinatesBecomeMetres_data();
    void coordinatesBecomeMetres();
    void zonesAgreeWithDegrees();
    void locationStandsUpright();
    void originIsTakenOff();
    void originMayTurnUpwards();
    void originIsFollowed();
    void pointsLieOnTheEarth();
    void viewpointLooksNorth();
    void transformTurnsAboutItsCentre();
    void gridFacesUp();
    void badPlacesAreHarmless();

private:
    static bool isNear(const osg::Vec3d& a, const osg::Vec3d& b, double slack)
    {
        return (a - b).length() < slack;
    }
    /// The place of a group, and one of its axes, in the world.
    static osg::Vec3f column(const osg::Matrix& matrix, osg::UInt32 i)
    {
        return osg::Vec3f(matrix[i][0], matrix[i][1], matrix[i][2]);
    }
};

void tst_Geospatial::coordinatesBecomeMetres_data()
{
    QTest::addColumn<QString>("system");
    QTest::addColumn<QVector<double>>("from");
    QTest::addColumn<QVector<double>>("to");
    const QString degrees = QStringLiteral("\"GD\", \"WE\"");
    QTest::newRow("equator") << degrees << QVector<double>{0, 0, 0} << QVector<double>{6378137, 0, 0};
    QTest::newRow("pole") << degrees << QVector<double>{90, 0, 0} << QVector<double>{0, 0, 6356752.3142};
    QTest::newRow("east") << degrees << QVector<double>{0, 90, 100} << QVector<double>{0, 6378237, 0};
    QTest::newRow("longitude first") << QStringLiteral("\"GD\", \"longitude_first\"")
                                     << QVector<double>{90, 0, 100} << QVector<double>{0, 6378237, 0};
    QTest::newRow("other ellipsoid") << QStringLiteral("\"GD\", \"BR\"") << QVector<double>{0, 0, 0}
                                     << QVector<double>{6377397.155, 0, 0};
    QTest::newRow("geocentric") << QStringLiteral("\"GC\"") << QVector<double>{1, 2, 3}
                                << QVector<double>{1, 2, 3};
    QTest::newRow("middle of a zone")
        << QStringLiteral("\"UTM\", \"Z30\"") << QVector<double>{0, 500000, 0}
        << QVector<double>{6378137 * std::cos(3 * M_PI / 180), -6378137 * std::sin(3 * M_PI / 180), 0};
    QTest::newRow("south") << QStringLiteral("\"UTM\", \"Z30\", \"S\"")
                           << QVector<double>{10000000, 500000, 0}
                           << QVector<double>{6378137 * std::cos(3 * M_PI / 180),
                                              -6378137 * std::sin(3 * M_PI / 180), 0};
}

void tst_Geospatial::coordinatesBecomeMetres()
{
    QFETCH(QString, system);
    QFETCH(QVector<double>, from);
    QFETCH(QVector<double>, to);
    CoreScene scene(QStringLiteral("DEF L GeoLocation { geoSystem [ %1 ] }")
                        .arg(system)
                        .remove(QLatin1Char('"'))
                        .toUtf8()
                        .constData());
    const osg::Vec3d place = GeoSystem(scene.node("L"), nullptr).toGeocentric({from[0], from[1], from[2]});
    QVERIFY2(isNear(place, {to[0], to[1], to[2]}, 1e-3), qPrintable(QStringLiteral("%1 %2 %3")
                                                                        .arg(place[0], 0, 'f', 2)
                                                                        .arg(place[1], 0, 'f', 2)
                                                                        .arg(place[2], 0, 'f', 2)));
}

void tst_Geospatial::zonesAgreeWithDegrees()
{
    // A place near the edge of its zone, in both kinds of coordinates.
    CoreScene scene("DEF U GeoLocation { geoSystem [ UTM Z17 ] } DEF D GeoLocation { }");
    const osg::Vec3d zone = GeoSystem(scene.node("U"), nullptr).toGeocentric({4833438.0, 630084.0, 0});
    const osg::Vec3d degrees = GeoSystem(scene.node("D"), nullptr).toGeocentric({43.642561, -79.387143, 0});
    QVERIFY2(isNear(zone, degrees, 5.0), qPrintable(QString::number((zone - degrees).length())));
}

void tst_Geospatial::locationStandsUpright()
{
    CoreScene scene("DEF L GeoLocation { geoCoords 0 90 0 }");
    const osg::Matrix place = scene.procOf<GroupProc>("L").toWorld();
    QVERIFY((column(place, 0) - osg::Vec3f(-1, 0, 0)).length() < 1e-6F); // east
    QVERIFY((column(place, 1) - osg::Vec3f(0, 1, 0)).length() < 1e-6F);  // up
    QVERIFY((column(place, 2) - osg::Vec3f(0, 0, -1)).length() < 1e-6F); // south
}

void tst_Geospatial::originIsTakenOff()
{
    CoreScene scene(
        "DEF L GeoLocation { geoCoords 48 11 500 geoOrigin DEF O GeoOrigin { geoCoords 48 11 499 } }");
    const osg::Vec3f place = column(scene.procOf<GroupProc>("L").toWorld(), 3);
    QVERIFY(std::abs(place.length() - 1.0F) < 1e-5F);
}

void tst_Geospatial::originMayTurnUpwards()
{
    CoreScene scene("DEF L GeoLocation { geoCoords 48.001 11 500 geoOrigin GeoOrigin { geoCoords 48 11 500 "
                    "rotateYUp TRUE } }");
    const osg::Vec3f place = column(scene.procOf<GroupProc>("L").toWorld(), 3);
    // A thousandth of a degree to the north.
    QVERIFY(std::abs(place[0]) < 1e-3F);
    QVERIFY(std::abs(place[1]) < 0.01F);
    QVERIFY(std::abs(place[2] + 111.2F) < 0.2F);
}

void tst_Geospatial::originIsFollowed()
{
    CoreScene scene("DEF L GeoLocation { geoCoords 0 0 5 geoOrigin DEF O GeoOrigin { geoCoords 0 0 0 } }");
    QCOMPARE(column(scene.procOf<GroupProc>("L").toWorld(), 3), osg::Vec3f(5, 0, 0));
    scene.set("O", "geoCoords", "0 0 3");
    QCOMPARE(column(scene.procOf<GroupProc>("L").toWorld(), 3), osg::Vec3f(2, 0, 0));
    scene.set("L", "geoCoords", "0 0 4");
    QCOMPARE(column(scene.procOf<GroupProc>("L").toWorld(), 3), osg::Vec3f(1, 0, 0));
}

void tst_Geospatial::pointsLieOnTheEarth()
{
    CoreScene scene("Shape { geometry IndexedFaceSet { coordIndex [ 0 1 2 ] coord DEF C GeoCoordinate { "
                    "geoOrigin GeoOrigin { } point [ 0 0 1, 0 0 2, 0 0.001 0 ] } } }");
    const auto* points = scene.procOf<VectorListProc>("C").bent();
    QVERIFY(points && points->size() == 3);
    QCOMPARE((*points)[1], osg::Vec3f(2, 0, 0));
    QVERIFY(std::abs((*points)[2][1] - 111.3F) < 0.1F);
    scene.set("C", "point", "[0 0 7]");
    QCOMPARE(scene.procOf<VectorListProc>("C").bent()->at(0), osg::Vec3f(7, 0, 0));
}

void tst_Geospatial::viewpointLooksNorth()
{
    CoreScene scene("DEF V GeoViewpoint { position 0 0 10 geoOrigin GeoOrigin { } centerOfRotation 0 0 3 }");
    const osg::Matrix camera = scene.proc().view().viewpoint;
    QCOMPARE(column(camera, 3), osg::Vec3f(10, 0, 0));
    QVERIFY((column(camera, 2) - osg::Vec3f(0, 0, -1)).length() < 1e-6F); // back to the south
    QVERIFY((column(camera, 1) - osg::Vec3f(1, 0, 0)).length() < 1e-6F);
    osg::Vec3f pivot;
    QVERIFY(scene.procOf<ViewpointProc>("V").pivot(pivot));
    QCOMPARE(pivot, osg::Vec3f(3, 0, 0));
    scene.set("V", "orientation", "0 1 0 1.5707963");
    QVERIFY((column(scene.proc().view().viewpoint, 2) - osg::Vec3f(0, 1, 0)).length() < 1e-6F); // to the west
}

void tst_Geospatial::transformTurnsAboutItsCentre()
{
    CoreScene scene(
        "DEF T GeoTransform { geoCenter 0 0 0 translation 0 5 0 rotation 0 1 0 3.14159265 geoOrigin DEF O "
        "GeoOrigin { } children DEF L GeoLocation { geoCoords 0 0.001 0 geoOrigin USE O } }");
    const osg::Vec3f place = column(scene.procOf<GroupProc>("L").toWorld(), 3);
    QVERIFY(std::abs(place[0] - 5.0F) < 0.01F);  // up
    QVERIFY(std::abs(place[1] + 111.3F) < 0.1F); // turned to the west
}

void tst_Geospatial::gridFacesUp()
{
    CoreScene scene(
        "Shape { geometry DEF G GeoElevationGrid { xDimension 2 zDimension 2 xSpacing 0.001 zSpacing 0.001 "
        "height [ 1 1 1 1 ] yScale 2 geoOrigin GeoOrigin { rotateYUp TRUE } } }");
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QVERIFY(std::abs(high[0] - 111.3F) < 0.1F);
    QVERIFY(std::abs(low[2] + 110.6F) < 0.1F);
    QVERIFY(std::abs(high[1] - 2.0F) < 0.01F);
    SceneHit hit;
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(50, 100, -50), osg::Vec3f(0, -1, 0)), hit));
    QVERIFY(hit.normal[1] > 0.99F);
    const auto& normals = scene.procOf<GeometryProc>("G").geometry()->getNormals();
    QVERIFY(normals && normals->getField().at(0)[1] > 0.99F);
}

void tst_Geospatial::badPlacesAreHarmless()
{
    CoreScene scene(
        "DEF L GeoLocation { geoSystem [ UTM Z99999999999 XX ] } DEF C GeoCoordinate { } "
        "Shape { geometry GeoElevationGrid { xDimension 2000000000 zDimension 2000000000 height [ 1 2 ] } }");
    for (const double value : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300}) {
        static_cast<SFVec3d&>(scene.field("L", "geoCoords"))
            .setValue(0.0, osg::Vec3d(value, value, value), Field::EXTERNAL_CT);
        scene.context->runFrame();
        const osg::Matrix place = scene.procOf<GroupProc>("L").toWorld();
        for (osg::UInt32 i = 0; i < 3; ++i)
            QVERIFY(std::isfinite(place[3][i]));
    }
}

QTEST_GUILESS_MAIN(tst_Geospatial)
#include "tst_Geospatial.moc"
