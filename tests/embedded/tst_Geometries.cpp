#include "ShapeGeometry.h"
#include "core/GeometryProc.h"
#include <Orvane/LoadReport.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

namespace {

const osg::Vec3f Up(0, 1, 0);
const osg::Vec3f Front(0, 0, 1);

bool isNear(float a, float b)
{
    return std::abs(a - b) < 1e-3F;
}

/// A shape S whose geometry has the name F.
QByteArray shape(const QByteArray& type, const QByteArray& fields)
{
    return "DEF S Shape { geometry DEF F " + type + " { " + fields + " } }";
}

} // namespace

class tst_Geometries : public QObject
{
    Q_OBJECT

private slots:
    void setsFillTheSquare_data();
    void setsFillTheSquare();
    void setsWithFaultsShowTheRest_data();
    void setsWithFaultsShowTheRest();
    void normalsPerVertexJoinSmoothly();
    void colorsOfSetsGoByPointOrByFace();
    void indexedSetsTakeANewIndex();
    void lineSetCutsItsPoints();
    void gridHasItsHeights();
    void gridFieldsMoveIt();
    void gridWithTooFewHeightsShowsFullRows();
    void absurdGridsShowNothing_data();
    void absurdGridsShowNothing();
    void gridHasTexCoordsOverItsSides();
    void extrusionOfASquareIsABox();
    void extrusionIsClosedAndLooksOutwards_data();
    void extrusionIsClosedAndLooksOutwards();
    void extrusionCapsComeAndGo();
    void extrusionScaleAndTurn();
    void extrusionTakesEvents();
    void roundSectionIsSmoothAtItsSeam();
    void absurdExtrusionsAreHarmless_data();
    void absurdExtrusionsAreHarmless();
    void flatFiguresHaveTheirArea_data();
    void flatFiguresHaveTheirArea();
    void flatLinesHaveTheirLength_data();
    void flatLinesHaveTheirLength();
    void flatFiguresTakeAnySize_data();
    void flatFiguresTakeAnySize();
};

void tst_Geometries::setsFillTheSquare_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray square = "coord Coordinate { point [ 0 0 0, 2 0 0, 2 2 0, 0 2 0 ] } ";
    QTest::newRow("triangles") << shape("TriangleSet",
                                        "coord Coordinate { point [ 0 0 0, 2 0 0, 2 2 0, 0 0 0, "
                                        "2 2 0, 0 2 0 ] }");
    QTest::newRow("quads") << shape("QuadSet", square);
    QTest::newRow("indexed triangles") << shape("IndexedTriangleSet", square + "index [ 0 1 2 0 2 3 ]");
    QTest::newRow("indexed quads") << shape("IndexedQuadSet", square + "index [ 0 1 2 3 ]");
    QTest::newRow("fan") << shape("TriangleFanSet", square + "fanCount 4");
    QTest::newRow("indexed fan") << shape("IndexedTriangleFanSet", square + "index [ 0 1 2 3 -1 ]");
    QTest::newRow("strip") << shape("TriangleStripSet",
                                    "coord Coordinate { point [ 0 0 0, 2 0 0, 0 2 0, 2 2 0 ] } stripCount 4");
    QTest::newRow("indexed strips") << shape("IndexedTriangleStripSet", square + "index [ 0 1 3 2 ]");
    QTest::newRow("two indexed fans")
        << shape("IndexedTriangleFanSet", square + "index [ 0 1 2 -1 0 2 3 -1 ]");
    QTest::newRow("clockwise") << shape("IndexedQuadSet", square + "ccw FALSE index [ 3 2 1 0 ]");
}

void tst_Geometries::setsFillTheSquare()
{
    QFETCH(QByteArray, text);
    CoreScene scene(text.constData());
    const auto triangles = trianglesOf(scene);
    QCOMPARE(triangles.size(), std::size_t(2));
    QVERIFY(isNear(areaTowards(triangles, Front), 4.0F));
    for (const DrawnTriangle& triangle : triangles)
        QCOMPARE(triangle.normals[0], Front);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Geometries::setsWithFaultsShowTheRest_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("count");
    const QByteArray points = "coord Coordinate { point [ 0 0 0, 2 0 0, 2 2 0, 0 2 0 ] } ";
    QTest::newRow("no such point") << shape("IndexedTriangleSet", points + "index [ 0 1 9 0 2 3 ]") << 1;
    QTest::newRow("end marks") << shape("IndexedTriangleSet", points + "index [ 0 1 -1 0 2 3 ]") << 1;
    QTest::newRow("short strip") << shape("IndexedTriangleStripSet", points + "index [ 0 1 -1 0 1 2 ]") << 1;
    QTest::newRow("more counted than there") << shape("TriangleFanSet", points + "fanCount 2000000000") << 2;
    QTest::newRow("negative count") << shape("TriangleStripSet", points + "stripCount [ -4 3 ]") << 1;
    QTest::newRow("short count") << shape("TriangleStripSet", points + "stripCount [ 2 2 ]") << 0;
    QTest::newRow("huge coordinate") << shape("TriangleSet",
                                              "coord Coordinate { point [ 0 0 0, 1e30 0 0, 0 1 0 ] }")
                                     << 0;
}

void tst_Geometries::setsWithFaultsShowTheRest()
{
    QFETCH(QByteArray, text);
    QFETCH(int, count);
    CoreScene scene(text.constData());
    QCOMPARE(static_cast<int>(trianglesOf(scene).size()), count);
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Geometries::normalsPerVertexJoinSmoothly()
{
    const QByteArray roof = "coord Coordinate { point [ 0 0 0, 0 0 1, 1 1 0, 1 1 1, 2 0 0, 2 0 1 ] } "
                            "index [ 0 1 3 2, 2 3 5 4 ] ";
    CoreScene smooth(shape("IndexedQuadSet", roof).constData());
    CoreScene flat(shape("IndexedQuadSet", roof + "normalPerVertex FALSE").constData());
    const auto ridgeNormals = [](const CoreScene& scene) {
        std::vector<osg::Vec3f> normals;
        for (const DrawnTriangle& triangle : trianglesOf(scene)) {
            for (int i = 0; i < 3; ++i) {
                if (triangle.corners[i][1] == 1.0F)
                    normals.push_back(triangle.normals[i]);
            }
        }
        return normals;
    };
    const auto smoothNormals = ridgeNormals(smooth);
    QCOMPARE(smoothNormals.size(), std::size_t(6));
    for (const osg::Vec3f& normal : smoothNormals)
        QVERIFY((normal - Up).length() < 1e-4F);
    for (const osg::Vec3f& normal : ridgeNormals(flat))
        QVERIFY(isNear(normal[1], std::sqrt(0.5F)));
}

void tst_Geometries::colorsOfSetsGoByPointOrByFace()
{
    const QByteArray fields = "coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } index [ 0 1 2 ] "
                              "color Color { color [ 1 0 0, 0 1 0, 0 0 1 ] } ";
    CoreScene byPoint(shape("IndexedTriangleSet", fields).constData());
    CoreScene byFace(shape("IndexedTriangleSet", fields + "colorPerVertex FALSE").constData());
    const auto colorAt = [](const CoreScene& scene, int corner) {
        osg::TriangleIterator i = geometryOf(scene)->beginTriangles();
        return i.getColor(corner);
    };
    QCOMPARE(colorAt(byPoint, 2), osg::Color3f(0, 0, 1));
    QCOMPARE(colorAt(byFace, 2), osg::Color3f(1, 0, 0));
}

void tst_Geometries::indexedSetsTakeANewIndex()
{
    CoreScene scene(shape("IndexedTriangleSet",
                          "coord Coordinate { point [ 0 0 0, 2 0 0, 2 2 0, 0 2 0 ] } index [ 0 1 2 ]")
                        .constData());
    scene.set("F", "set_index", "0 1 2 0 2 3");
    QCOMPARE(trianglesOf(scene).size(), std::size_t(2));
}

void tst_Geometries::lineSetCutsItsPoints()
{
    CoreScene scene(shape("LineSet", "coord Coordinate { point [ 0 0 0, 1 0 0, 2 0 0, 0 1 0, 1 1 0 ] } "
                                     "color Color { color [ 1 0 0, 0 1 0, 0 0 1, 1 1 1, 0 0 0 ] } "
                                     "vertexCount [ 3 2 ]")
                        .constData());
    QCOMPARE(geometryOf(scene)->getTypes()->getValue(0), osg::UInt8(osg::Geometry::LINES));
    QCOMPARE(geometryOf(scene)->getLengths()->getValue(0), 6U);
    QCOMPARE(geometryOf(scene)->getColors()->getSize(), 5U);
    scene.set("F", "vertexCount", "2");
    QCOMPARE(geometryOf(scene)->getLengths()->getValue(0), 2U);
    scene.set("F", "vertexCount", "2000000000");
    QCOMPARE(geometryOf(scene)->getLengths()->getValue(0), 8U);
    scene.set("F", "vertexCount", "-1 2");
    QCOMPARE(geometryOf(scene)->getLengths()->getValue(0), 2U);
}

void tst_Geometries::gridHasItsHeights()
{
    CoreScene scene(shape("ElevationGrid", "xDimension 3 zDimension 2 xSpacing 2 zSpacing 3 "
                                           "height [ 0 1 0 0 1 0 ]")
                        .constData());
    const auto triangles = trianglesOf(scene);
    QCOMPARE(triangles.size(), std::size_t(4));
    QVERIFY(isNear(areaTowards(triangles, Up), 4.0F * 3.0F));
    QCOMPARE(geometryOf(scene)->getBox().getMax(), osg::Pnt3f(4, 1, 3));
    for (const DrawnTriangle& triangle : triangles)
        QVERIFY(triangle.normals[0][1] > 0.5F);
}

void tst_Geometries::gridFieldsMoveIt()
{
    CoreScene scene(shape("ElevationGrid", "xDimension 2 zDimension 2 height [ 0 0 0 0 ]").constData());
    scene.set("F", "set_height", "5 5 5 5");
    QCOMPARE(geometryOf(scene)->getBox().getMin(), osg::Pnt3f(0, 5, 0));
    scene.set("F", "set_height", "5 5");
    QCOMPARE(trianglesOf(scene).size(), std::size_t(0));
}

void tst_Geometries::gridWithTooFewHeightsShowsFullRows()
{
    CoreScene scene(shape("ElevationGrid", "xDimension 2 zDimension 4 height [ 0 0 0 0 0 ]").constData());
    QCOMPARE(trianglesOf(scene).size(), std::size_t(2));
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QVERIFY(scene.context->loadReport().messages[0].text.find("expected 2 x 4 heights, found 5") !=
            std::string::npos);
}

void tst_Geometries::absurdGridsShowNothing_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("no dimensions") << QByteArray("height [ 1 2 3 ]");
    QTest::newRow("negative") << QByteArray("xDimension -2 zDimension 2 height [ 0 0 0 0 ]");
    QTest::newRow("huge") << QByteArray("xDimension 2000000000 zDimension 2000000000 height [ 0 0 0 0 ]");
    QTest::newRow("one row") << QByteArray("xDimension 4 zDimension 1 height [ 0 0 0 0 ]");
}

void tst_Geometries::absurdGridsShowNothing()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(shape("ElevationGrid", fields).constData());
    QCOMPARE(trianglesOf(scene).size(), std::size_t(0));
}

void tst_Geometries::gridHasTexCoordsOverItsSides()
{
    CoreScene scene(
        shape("ElevationGrid", "xDimension 3 zDimension 3 height [ 0 0 0 0 0 0 0 0 0 ]").constData());
    for (const DrawnTriangle& triangle : trianglesOf(scene)) {
        for (int i = 0; i < 3; ++i)
            QCOMPARE(triangle.texCoords[i],
                     osg::Vec2f(triangle.corners[i][0] * 0.5F, triangle.corners[i][2] * 0.5F));
    }
}

void tst_Geometries::extrusionOfASquareIsABox()
{
    CoreScene scene(shape("Extrusion", "spine [ 0 0 0, 0 3 0 ]").constData());
    const auto triangles = trianglesOf(scene);
    QCOMPARE(triangles.size(), std::size_t(12));
    QVERIFY(isNear(volumeOf(triangles), 12.0F));
    QCOMPARE(geometryOf(scene)->getBox().getMin(), osg::Pnt3f(-1, 0, -1));
    QCOMPARE(geometryOf(scene)->getBox().getMax(), osg::Pnt3f(1, 3, 1));
    for (const DrawnTriangle& triangle : triangles)
        QVERIFY(triangle.facing().dot(triangle.normals[1]) > 0.0F);
}

void tst_Geometries::extrusionIsClosedAndLooksOutwards_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<float>("volume");
    QTest::newRow("along X") << QByteArray("spine [ 0 0 0, 3 0 0 ]") << 12.0F;
    QTest::newRow("downwards") << QByteArray("spine [ 0 0 0, 0 -3 0 ]") << 12.0F;
    QTest::newRow("towards the viewer") << QByteArray("spine [ 0 0 0, 0 0 3 ]") << 12.0F;
    QTest::newRow("in many joints") << QByteArray("spine [ 0 0 0, 0 1 0, 0 1 0, 0 2 0, 0 3 0 ]") << 12.0F;
    QTest::newRow("round a corner") << QByteArray(
                                           "crossSection [ 0.1 0.1, 0.1 -0.1, -0.1 -0.1, -0.1 0.1, 0.1 0.1 ] "
                                           "spine [ 0 0 0, 4 0 0, 4 4 0 ]")
                                    << 0.04F * 8.0F * 0.853F;
    QTest::newRow("cone") << QByteArray("spine [ 0 0 0, 0 3 0 ] scale [ 1 1, 0 0 ]") << 4.0F;
    QTest::newRow("concave section")
        << QByteArray("convex FALSE crossSection [ 1 1, 1 -1, 0 0, -1 -1, -1 1, 1 1 ] spine [ 0 0 0, 0 1 0 ]")
        << 3.0F;
    QTest::newRow("open section") << QByteArray("crossSection [ 1 1, 1 -1, -1 -1 ] spine [ 0 0 0, 0 1 0 ]")
                                  << 0.0F;
}

void tst_Geometries::extrusionIsClosedAndLooksOutwards()
{
    QFETCH(QByteArray, fields);
    QFETCH(float, volume);
    CoreScene scene(shape("Extrusion", fields).constData());
    const auto triangles = trianglesOf(scene);
    QVERIFY(!triangles.empty());
    if (volume > 0.0F)
        QVERIFY2(std::abs(volumeOf(triangles) - volume) < 0.1F * volume,
                 QByteArray::number(double(volumeOf(triangles))).constData());
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Geometries::extrusionCapsComeAndGo()
{
    CoreScene scene(shape("Extrusion", "beginCap FALSE spine [ 0 0 0, 0 3 0 ]").constData());
    QVERIFY(isNear(areaTowards(trianglesOf(scene), Up), 4.0F));
    CoreScene other(shape("Extrusion", "endCap FALSE spine [ 0 0 0, 0 3 0 ]").constData());
    QVERIFY(isNear(areaTowards(trianglesOf(other), Up), -4.0F));
    CoreScene none(shape("Extrusion", "beginCap FALSE endCap FALSE spine [ 0 0 0, 0 3 0 ]").constData());
    QCOMPARE(trianglesOf(none).size(), std::size_t(8));
}

void tst_Geometries::extrusionScaleAndTurn()
{
    CoreScene scene(
        shape("Extrusion", "spine [ 0 0 0, 0 1 0 ] scale [ 3 2 ] orientation [ 0 1 0 0, 0 1 0 1.5707963 ]")
            .constData());
    const osg::Pnt3f max = geometryOf(scene)->getBox().getMax();
    QVERIFY(isNear(max[0], 3.0F) && isNear(max[2], 3.0F));
    for (const DrawnTriangle& triangle : trianglesOf(scene)) {
        for (const osg::Pnt3f& corner : triangle.corners)
            QVERIFY(isNear(std::abs(corner[0]), corner[1] > 0.5F ? 2.0F : 3.0F));
    }
}

void tst_Geometries::extrusionTakesEvents()
{
    CoreScene scene(shape("Extrusion", "spine [ 0 0 0, 0 1 0 ]").constData());
    scene.set("F", "set_spine", "0 0 0, 0 5 0");
    scene.set("F", "set_crossSection", "2 2, 2 -2, -2 -2, -2 2, 2 2");
    scene.set("F", "set_scale", "0.5 0.5");
    QCOMPARE(geometryOf(scene)->getBox().getMax(), osg::Pnt3f(1, 5, 1));
}

void tst_Geometries::roundSectionIsSmoothAtItsSeam()
{
    QByteArray section;
    for (int i = 0; i <= 16; ++i) {
        const double angle = -6.28318530717958647692 * (i % 16) / 16.0;
        section += QByteArray::number(std::cos(angle)) + ' ' + QByteArray::number(std::sin(angle)) + ", ";
    }
    CoreScene scene(shape("Extrusion", "creaseAngle 1 beginCap FALSE endCap FALSE spine [ 0 0 0, 0 1 0 ] "
                                       "crossSection [ " +
                                           section + " ]")
                        .constData());
    const auto triangles = trianglesOf(scene);
    QCOMPARE(triangles.size(), std::size_t(32));
    for (const DrawnTriangle& triangle : triangles) {
        for (int i = 0; i < 3; ++i) {
            const osg::Vec3f outwards(triangle.corners[i][0], 0.0F, triangle.corners[i][2]);
            QVERIFY((triangle.normals[i] - outwards).length() < 0.02F);
        }
    }
}

void tst_Geometries::absurdExtrusionsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("no spine") << QByteArray("spine [ ]");
    QTest::newRow("one joint") << QByteArray("spine [ 1 2 3 ]");
    QTest::newRow("no way") << QByteArray("spine [ 1 2 3, 1 2 3, 1 2 3 ]");
    QTest::newRow("no section") << QByteArray("crossSection [ ]");
    QTest::newRow("section of one point") << QByteArray("crossSection [ 1 1 ]");
    QTest::newRow("no scale") << QByteArray("scale [ ] orientation [ ]");
    QTest::newRow("there and back") << QByteArray("spine [ 0 0 0, 0 1 0, 0 0 0 ]");
    QTest::newRow("huge numbers") << QByteArray("spine [ 0 0 0, 1e38 1e38 0, -1e38 0 1e38 ]");
    QTest::newRow("rotation without axis") << QByteArray("orientation [ 0 0 0 3 ]");
}

void tst_Geometries::absurdExtrusionsAreHarmless()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(shape("Extrusion", fields).constData());
    for (const DrawnTriangle& triangle : trianglesOf(scene)) {
        for (int i = 0; i < 3; ++i)
            QVERIFY(isDrawable(triangle.corners[i]) && std::isfinite(triangle.normals[i].length()));
    }
}

void tst_Geometries::flatFiguresHaveTheirArea_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<float>("area");
    QTest::newRow("rectangle") << shape("Rectangle2D", "size 2 3") << 6.0F;
    QTest::newRow("disk") << shape("Disk2D", "outerRadius 2") << 12.566F;
    QTest::newRow("ring") << shape("Disk2D", "outerRadius 2 innerRadius 1") << 9.425F;
    QTest::newRow("ring inside out") << shape("Disk2D", "outerRadius 1 innerRadius 2") << 9.425F;
    QTest::newRow("pie") << shape("ArcClose2D", "radius 2") << 3.1416F;
    QTest::newRow("chord") << shape("ArcClose2D", "closureType CHORD radius 2") << 3.1416F - 2.0F;
    QTest::newRow("full pie") << shape("ArcClose2D", "startAngle 1 endAngle 1") << 3.1416F;
    QTest::newRow("pie over the start")
        << shape("ArcClose2D", "radius 2 startAngle 1.570796 endAngle 0") << 9.425F;
    QTest::newRow("triangles") << shape("TriangleSet2D", "vertices [ 0 0, 2 0, 0 2, 0 0, 0 2, 2 0, 5 5 ]")
                               << 4.0F;
}

void tst_Geometries::flatFiguresHaveTheirArea()
{
    QFETCH(QByteArray, text);
    QFETCH(float, area);
    CoreScene scene(text.constData());
    const float found = areaTowards(trianglesOf(scene), Front);
    QVERIFY2(std::abs(found - area) < 0.005F * area, QByteArray::number(double(found)).constData());
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QVERIFY(!scene.procOf<GeometryProc>("F").isSolid());
}

void tst_Geometries::flatLinesHaveTheirLength_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<float>("length");
    QTest::newRow("circle") << shape("Circle2D", "radius 2") << 12.566F;
    QTest::newRow("quarter") << shape("Arc2D", "radius 2") << 3.1416F;
    QTest::newRow("three quarters") << shape("Arc2D", "radius 2 startAngle 1.570796 endAngle 6.2831853")
                                    << 9.425F;
    QTest::newRow("equal angles") << shape("Arc2D", "startAngle 2 endAngle 2") << 6.2832F;
    QTest::newRow("polyline") << shape("Polyline2D", "lineSegments [ 0 0, 3 0, 3 4 ]") << 7.0F;
    QTest::newRow("disk without width") << shape("Disk2D", "innerRadius 1") << 6.2832F;
}

void tst_Geometries::flatLinesHaveTheirLength()
{
    QFETCH(QByteArray, text);
    QFETCH(float, length);
    CoreScene scene(text.constData());
    const osg::GeometryPtr geometry = geometryOf(scene);
    QCOMPARE(geometry->getTypes()->getValue(0), osg::UInt8(osg::Geometry::LINES));
    float sum = 0.0F;
    const auto& points = geometry->getPositions()->getField();
    for (std::size_t i = 0; i + 1 < points.size(); i += 2)
        sum += (points[i + 1] - points[i]).length();
    QVERIFY2(std::abs(sum - length) < 0.005F * length, QByteArray::number(double(sum)).constData());
}

void tst_Geometries::flatFiguresTakeAnySize_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("messages");
    QTest::newRow("negative radius") << shape("Circle2D", "radius -1") << 1;
    QTest::newRow("negative size") << shape("Rectangle2D", "size -1 2") << 1;
    QTest::newRow("no size") << shape("Rectangle2D", "size 0 0") << 0;
    QTest::newRow("unknown closure") << shape("ArcClose2D", "closureType ROUND") << 1;
    QTest::newRow("empty line") << shape("Polyline2D", "") << 0;
    QTest::newRow("one point") << shape("Polyline2D", "lineSegments [ 1 1 ]") << 0;
    QTest::newRow("huge points") << shape("Polypoint2D", "point [ 1e30 0, 0 0 ]") << 1;
    QTest::newRow("no points") << shape("Polypoint2D", "") << 0;
    QTest::newRow("huge triangle") << shape("TriangleSet2D", "vertices [ 0 0, 1e30 0, 0 1 ]") << 1;
    QTest::newRow("disk of no size") << shape("Disk2D", "outerRadius 0") << 0;
}

void tst_Geometries::flatFiguresTakeAnySize()
{
    QFETCH(QByteArray, text);
    QFETCH(int, messages);
    CoreScene scene(text.constData());
    QCOMPARE(static_cast<int>(scene.messageCount()), messages);
    for (const osg::Pnt3f& p : geometryOf(scene)->getPositions()->getField())
        QVERIFY(isDrawable(p));
}

QTEST_GUILESS_MAIN(tst_Geometries)
#include "tst_Geometries.moc"
