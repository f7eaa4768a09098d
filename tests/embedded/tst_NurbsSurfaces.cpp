#include "CoreScene.h"
#include "base/ValueFields.h"
#include "core/GeometryProc.h"
#include <OpenSG/OSGTriangleIterator.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// NURBS surfaces that outlines trim, that curves sweep and swing, their texture coordinates, and
/// interpolators along them; by numbers.
class tst_NurbsSurfaces : public QObject
{
    Q_OBJECT

private slots:
    void outlineLeavesItsInside();
    void holesAreLeftOut();
    void outlinesFollowTheKnots();
    void outlineOfCurves();
    void contoursComeAndGo();
    void trimmedNormalsAreThoseOfTheSurface();
    void noOutlineLeavesAll();
    void texCoordsOfControlPoints();
    void texCoordsOfTheirOwn();
    void sweptTube();
    void swungBall();
    void curvesAreFollowed();
    void setScalesTessellations();
    void positionRunsAlongTheCurve();
    void orientationLooksAlongTheCurve();
    void surfaceInterpolatorGivesPlaceAndNormal();
    void badFieldsAreHarmless_data();
    void badFieldsAreHarmless();

private:
    static osg::GeometryPtr mesh(const CoreScene& scene)
    {
        return scene.procOf<GeometryProc>("G").geometry();
    }
    static const std::vector<osg::Pnt3f>& positions(const CoreScene& scene)
    {
        return mesh(scene)->getPositions()->getField();
    }
    static double area(const CoreScene& scene)
    {
        double sum = 0.0;
        osg::TriangleIterator triangle(mesh(scene));
        for (triangle.setToBegin(); !triangle.isAtEnd(); ++triangle) {
            const osg::Vec3f a = triangle.getPosition(1) - triangle.getPosition(0);
            const osg::Vec3f b = triangle.getPosition(2) - triangle.getPosition(0);
            sum += 0.5 * static_cast<double>(a.cross(b).length());
        }
        return sum;
    }
    static bool isNear(double a, double b, double slack) { return std::abs(a - b) <= slack; }
};

namespace {

const std::string Plane =
    "uDimension 2 vDimension 2 uOrder 2 vOrder 2 uTessellation 5 vTessellation 5 controlPoint "
    "DEF C Coordinate { point [ 0 0 0, 4 0 0, 0 4 0, 4 4 0 ] } ";

std::string trimmed(const std::string& contours, const std::string& more = "")
{
    return "Shape { geometry DEF G NurbsTrimmedSurface { " + Plane + more + " trimmingContour [ " + contours +
           " ] } }";
}

std::string polyline(const std::string& points)
{
    return "Contour2D { children ContourPolyline2D { controlPoint [ " + points + " ] } } ";
}

const std::string Outer = polyline("0.1 0.1, 0.9 0.1, 0.9 0.9, 0.1 0.9, 0.1 0.1");
const std::string Hole = polyline("0.4 0.4, 0.4 0.6, 0.6 0.6, 0.6 0.4, 0.4 0.4");
const std::string Circle =
    "NurbsCurve2D { order 3 tessellation 64 knot [ 0 0 0 1 1 2 2 3 3 4 4 4 ] weight [ 1 "
    "0.70710678 1 0.70710678 1 0.70710678 1 0.70710678 1 ] controlPoint [ 1 0, 1 1, 0 1, "
    "-1 1, -1 0, -1 -1, 0 -1, 1 -1, 1 0 ] } ";

} // namespace

void tst_NurbsSurfaces::outlineLeavesItsInside()
{
    CoreScene scene(trimmed(Outer).c_str());
    QVERIFY(isNear(area(scene), 0.64 * 16, 1e-4));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QVERIFY(low.dist(osg::Pnt3f(0.4F, 0.4F, 0)) < 1e-5F);
    QVERIFY(high.dist(osg::Pnt3f(3.6F, 3.6F, 0)) < 1e-5F);
}

void tst_NurbsSurfaces::holesAreLeftOut()
{
    CoreScene scene(trimmed(Outer + Hole).c_str());
    QVERIFY(isNear(area(scene), 0.60 * 16, 1e-4));
    SceneHit hit;
    QVERIFY(!scene.proc().castRay(osg::Line(osg::Pnt3f(2, 2, 5), osg::Vec3f(0, 0, -1)), hit));
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(1, 2, 5), osg::Vec3f(0, 0, -1)), hit));
    QVERIFY(hit.normal[2] > 0.99F);
}

void tst_NurbsSurfaces::outlinesFollowTheKnots()
{
    CoreScene scene(trimmed(polyline("10 0, 15 0, 15 1, 10 1"), "uKnot [ 10 10 20 20 ]").c_str());
    QVERIFY(isNear(area(scene), 8, 1e-4));
}

void tst_NurbsSurfaces::outlineOfCurves()
{
    const std::string half = "NurbsCurve2D { order 2 controlPoint [ 0.2 0.2, 0.8 0.2 ] } ContourPolyline2D { "
                             "controlPoint [ 0.8 0.2, 0.8 0.8, 0.2 0.8, 0.2 0.2 ] }";
    CoreScene scene(trimmed("Contour2D { children [ " + half + " ] }").c_str());
    QVERIFY(isNear(area(scene), 0.36 * 16, 1e-4));
}

void tst_NurbsSurfaces::contoursComeAndGo()
{
    CoreScene scene((trimmed(Outer + "DEF H " + Hole)).c_str());
    auto& contours = static_cast<MFNode&>(scene.field("G", "trimmingContour"));
    const NodeRef hole(&scene.node("H"));
    auto& remove = static_cast<MFNode&>(*scene.node("G").findField("removeTrimmingContour", Node::EXACT_FSO));
    remove.addNode(0.0, hole.get(), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(contours.size(), 1U);
    QVERIFY(isNear(area(scene), 0.64 * 16, 1e-4));
    auto& add = static_cast<MFNode&>(*scene.node("G").findField("addTrimmingContour", Node::EXACT_FSO));
    add.addNode(0.0, hole.get(), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(isNear(area(scene), 0.60 * 16, 1e-4));
}

void tst_NurbsSurfaces::trimmedNormalsAreThoseOfTheSurface()
{
    CoreScene scene(
        ("Shape { geometry DEF G NurbsTrimmedSurface { uDimension 3 vDimension 2 uOrder 3 vOrder 2 "
         "controlPoint Coordinate { point [ -1 0 1, 0 2 1, 1 0 1, -1 0 -1, 0 2 -1, 1 0 -1 ] } "
         "trimmingContour " +
         Outer + " } }")
            .c_str());
    const std::vector<osg::Vec3f>& normals = mesh(scene)->getNormals()->getField();
    QCOMPARE(normals.size(), positions(scene).size());
    QVERIFY(normals.size() > 100);
    for (std::size_t i = 0; i < normals.size(); ++i) {
        // The arc is y = 1 - x * x.
        osg::Vec3f expected(2.0F * positions(scene)[i][0], 1, 0);
        expected.normalize();
        QVERIFY((normals[i] - expected).length() < 1e-2F);
    }
}

void tst_NurbsSurfaces::noOutlineLeavesAll()
{
    CoreScene scene(trimmed("").c_str());
    QVERIFY(isNear(area(scene), 16, 1e-4));
    CoreScene empty(trimmed("Contour2D { }").c_str());
    QVERIFY(isNear(area(empty), 16, 1e-4));
}

void tst_NurbsSurfaces::texCoordsOfControlPoints()
{
    CoreScene scene(("Shape { geometry DEF G NurbsPatchSurface { " + Plane +
                     "texCoord TextureCoordinate { point [ 5 5, 7 5, 5 6, 7 6 ] } } }")
                        .c_str());
    const std::vector<float>& pairs = mesh(scene)->getTexCoords()->getField();
    QCOMPARE(pairs.size(), 2 * positions(scene).size());
    for (std::size_t i = 0; i < positions(scene).size(); ++i) {
        QVERIFY(isNear(static_cast<double>(pairs[2 * i]),
                       5.0 + static_cast<double>(positions(scene)[i][0]) / 2, 1e-5));
        QVERIFY(isNear(static_cast<double>(pairs[2 * i + 1]),
                       5.0 + static_cast<double>(positions(scene)[i][1]) / 4, 1e-5));
    }
}

void tst_NurbsSurfaces::texCoordsOfTheirOwn()
{
    CoreScene scene(("Shape { geometry DEF G NurbsPatchSurface { " + Plane +
                     "texCoord DEF T NurbsTextureCoordinate { uDimension 2 vDimension 2 uOrder 2 vOrder 2 "
                     "controlPoint [ 0 0, 3 0, 0 3, 3 3 ] } } }")
                        .c_str());
    const auto largest = [&] {
        const std::vector<float>& pairs = mesh(scene)->getTexCoords()->getField();
        return *std::max_element(pairs.begin(), pairs.end());
    };
    QCOMPARE(largest(), 3.0F);
    scene.set("T", "controlPoint", "[ 0 0, 9 0, 0 9, 9 9 ]");
    QCOMPARE(largest(), 9.0F);
}

void tst_NurbsSurfaces::sweptTube()
{
    CoreScene scene(
        ("Shape { geometry DEF G NurbsSweptSurface { crossSectionCurve " + Circle +
         "trajectoryCurve NurbsCurve { order 2 tessellation 4 controlPoint Coordinate { point [ 0 0 0, "
         "0 5 0 ] } } } }")
            .c_str());
    QVERIFY(isNear(area(scene), 2 * M_PI * 5, 0.05));
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(isNear(std::hypot(p[0], p[2]), 1.0, 1e-4));
    // Its normals are smooth across the seam.
    const std::vector<osg::Vec3f>& normals = mesh(scene)->getNormals()->getField();
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const osg::Vec3f out(positions(scene)[i][0], 0, positions(scene)[i][2]);
        QVERIFY(isNear(std::abs(static_cast<double>(normals[i].dot(out))), 1.0, 1e-2));
    }
}

void tst_NurbsSurfaces::swungBall()
{
    CoreScene scene(
        ("Shape { geometry DEF G NurbsSwungSurface { profileCurve NurbsCurve2D { order 3 tessellation "
         "48 knot [ 0 0 0 1 1 2 2 2 ] weight [ 1 0.70710678 1 0.70710678 1 ] controlPoint [ 0 -1, 1 -1, "
         "1 0, 1 1, 0 1 ] } trajectoryCurve " +
         Circle + " } }")
            .c_str());
    QVERIFY(positions(scene).size() > 1000);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(isNear(static_cast<double>(p.dist(osg::Pnt3f())), 1.0, 1e-4));
    QVERIFY(isNear(area(scene), 4 * M_PI, 0.05));
}

void tst_NurbsSurfaces::curvesAreFollowed()
{
    CoreScene scene(
        "Shape { geometry DEF G NurbsSweptSurface { crossSectionCurve DEF S ContourPolyline2D { "
        "controlPoint [ 0 0, 1 0 ] } trajectoryCurve NurbsCurve { order 2 tessellation 1 controlPoint "
        "DEF C Coordinate { point [ 0 0 0, 0 5 0 ] } } } }");
    QVERIFY(isNear(area(scene), 5, 1e-4));
    scene.set("C", "point", "[ 0 0 0, 0 8 0 ]");
    QVERIFY(isNear(area(scene), 8, 1e-4));
    scene.set("S", "controlPoint", "[ 0 0, 2 0 ]");
    QVERIFY(isNear(area(scene), 16, 1e-4));
}

void tst_NurbsSurfaces::setScalesTessellations()
{
    CoreScene scene(
        ("Shape { geometry DEF G NurbsPatchSurface { " + Plane + " } } DEF S NurbsSet { geometry USE G }")
            .c_str());
    scene.context->runFrame();
    QCOMPARE(positions(scene).size(), std::size_t(36));
    scene.set("S", "tessellationScale", "2");
    scene.context->runFrame();
    QCOMPARE(positions(scene).size(), std::size_t(121));
    scene.set("S", "tessellationScale", "0");
    scene.context->runFrame();
    QCOMPARE(positions(scene).size(), std::size_t(36));
    scene.set("S", "tessellationScale", "1e30");
    scene.context->runFrame();
    QCOMPARE(positions(scene).size(), std::size_t(36));
}

void tst_NurbsSurfaces::positionRunsAlongTheCurve()
{
    CoreScene scene(
        "DEF I NurbsPositionInterpolator { order 3 controlPoint DEF C Coordinate { point [ 0 0 0, 1 2 0, "
        "2 0 0 ] } }");
    scene.set("I", "set_fraction", "0.5");
    QCOMPARE(scene.get("I", "value_changed"), std::string("1 1 0"));
    scene.set("I", "set_fraction", "7");
    QCOMPARE(scene.get("I", "value_changed"), std::string("2 0 0"));
    scene.set("C", "point", "[ 0 0 0, 1 6 0, 2 0 0 ]");
    scene.set("I", "set_fraction", "0.5");
    QCOMPARE(scene.get("I", "value_changed"), std::string("1 3 0"));
}

void tst_NurbsSurfaces::orientationLooksAlongTheCurve()
{
    CoreScene scene(
        "DEF I NurbsOrientationInterpolator { order 2 controlPoint Coordinate { point [ 0 0 0, 5 0 0, 5 0 "
        "-5 ] } }");
    scene.set("I", "set_fraction", "0.25");
    const Rotation& turn = static_cast<SFRotation&>(scene.field("I", "value_changed")).value();
    QVERIFY(isNear(static_cast<double>(turn.y()), 1, 1e-5));
    QVERIFY(isNear(static_cast<double>(turn.angle()), M_PI / 2, 1e-3));
    scene.set("I", "set_fraction", "0.75");
    QVERIFY(isNear(static_cast<double>(turn.angle()), M_PI, 1e-3));
}

void tst_NurbsSurfaces::surfaceInterpolatorGivesPlaceAndNormal()
{
    CoreScene scene(
        "DEF I NurbsSurfaceInterpolator { uDimension 2 vDimension 2 uOrder 2 vOrder 2 controlPoint "
        "Coordinate { point [ 0 0 0, 4 0 0, 0 4 0, 4 4 0 ] } }");
    scene.set("I", "set_fraction", "0.25 0.5");
    QCOMPARE(scene.get("I", "position_changed"), std::string("1 2 0"));
    QCOMPARE(scene.get("I", "normal_changed"), std::string("0 0 1"));
}

void tst_NurbsSurfaces::badFieldsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("messages");
    const auto geometry = [](const std::string& text) {
        return QByteArray::fromStdString("Shape { geometry DEF G " + text + " }");
    };
    QTest::newRow("crossing outline")
        << QByteArray::fromStdString(trimmed(polyline("0 0, 1 1, 1 0, 0 1"))) << 0;
    QTest::newRow("outline far outside")
        << QByteArray::fromStdString(trimmed(polyline("-1e30 -1e30, 1e30 -1e30, 0 1e38"))) << 0;
    QTest::newRow("two points") << QByteArray::fromStdString(trimmed(polyline("0 0, 1 1"))) << 0;
    QTest::newRow("order of an outline")
        << QByteArray::fromStdString(
               trimmed("Contour2D { children NurbsCurve2D { order 9 controlPoint [ 0 0, 1 0, 1 1 ] } }"))
        << 1;
    QTest::newRow("contour in itself")
        << QByteArray::fromStdString(trimmed("DEF A Contour2D { children USE A }")) << 0;
    QTest::newRow("swept nothing") << geometry("NurbsSweptSurface { }") << 0;
    QTest::newRow("swept along a point")
        << geometry(
               "NurbsSweptSurface { crossSectionCurve ContourPolyline2D { controlPoint [ 0 0, 1 0 ] } "
               "trajectoryCurve NurbsCurve { order 2 controlPoint Coordinate { point [ 1 1 1, 1 1 1 ] } } }")
        << 0;
    QTest::newRow("swung nothing") << geometry("NurbsSwungSurface { profileCurve ContourPolyline2D { } }")
                                   << 0;
    QTest::newRow("swung too finely") << geometry("NurbsSwungSurface { profileCurve DEF P NurbsCurve2D { "
                                                  "order 2 tessellation 8000 controlPoint [ "
                                                  "0 0, 1 1 ] } trajectoryCurve USE P }")
                                      << 1;
    QTest::newRow("few texture coordinates")
        << geometry("NurbsPatchSurface { " + Plane + "texCoord TextureCoordinate { point [ 1 1 ] } }") << 0;
    QTest::newRow("texture surface without points")
        << geometry("NurbsPatchSurface { " + Plane +
                    "texCoord NurbsTextureCoordinate { uDimension 9 vDimension 9 } }")
        << 0;
}

void tst_NurbsSurfaces::badFieldsAreHarmless()
{
    QFETCH(QByteArray, text);
    QFETCH(int, messages);
    CoreScene scene(text.constData());
    scene.context->runFrame();
    QCOMPARE(int(scene.messageCount()), messages);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]));
    CoreScene bare("DEF I NurbsPositionInterpolator { } DEF J NurbsSurfaceInterpolator { } NurbsSet { }");
    bare.set("I", "set_fraction", "0.5");
    bare.set("J", "set_fraction", "0.5 0.5");
    QCOMPARE(bare.get("I", "value_changed"), std::string("0 0 0"));
}

QTEST_GUILESS_MAIN(tst_NurbsSurfaces)
#include "tst_NurbsSurfaces.moc"
