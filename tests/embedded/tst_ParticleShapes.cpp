#include "CoreScene.h"
#include "core/ElementProc.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Particles that start at shapes, bounce off shapes, or are shapes.
class tst_ParticleShapes : public QObject
{
    Q_OBJECT

private slots:
    void surfaceSendsAlongItsNormals();
    void openSurfaceHasTwoSides();
    void surfaceFollowsItsGeometry();
    void volumeFillsItsInside();
    void volumeMaySendFromItsFaces();
    void volumeMayBeOfTriangles();
    void concaveVolumeKeepsItsNotch();
    void boundsThrowBack();
    void disabledBoundsLetThrough();
    void trianglesHaveThreeCorners();
    void copiesOfAGeometryStandAtTheParticles();
    void copiesTakeTheColorsOfTheRamp();
    void copiesMayBeLines();
    void geometryMayGo();
    void texCoordsChangeOverTheLife();
    void verticesAreLimited();
    void badFieldsAreHarmless_data();
    void badFieldsAreHarmless();

private:
    static osg::GeometryPtr geometry(const CoreScene& scene)
    {
        return osg::GeometryPtr::dcast(procAs<ElementProc>(&scene.node("P"))->tree()->getChild(0)->getCore());
    }
    static const std::vector<osg::Pnt3f>& positions(const CoreScene& scene)
    {
        return geometry(scene)->getPositions()->getField();
    }
    /// Runs the clock on in steps of a tenth of a second.
    static void run(const CoreScene& scene, int tenths)
    {
        for (int i = 1; i <= tenths; ++i)
            scene.runTo(i * 0.1);
    }
    static float largest(const osg::Pnt3f& p)
    {
        return std::max({std::abs(p[0]), std::abs(p[1]), std::abs(p[2])});
    }
};

namespace {

constexpr char Points[] = "DEF P ParticleSystem { geometryType POINT maxParticles 400 particleLifetime 2 "
                          "lifetimeVariation 0 emitter ";
constexpr char Cube[] =
    "coordIndex [ 0 3 2 1 -1 4 5 6 7 -1 0 1 5 4 -1 2 3 7 6 -1 1 2 6 5 -1 0 4 7 3 -1 ] coord DEF C Coordinate "
    "{ point [ -1 -1 -1, 1 -1 -1, 1 1 -1, -1 1 -1, -1 -1 1, 1 -1 1, 1 1 1, -1 1 1 ] }";

} // namespace

void tst_ParticleShapes::surfaceSendsAlongItsNormals()
{
    CoreScene scene(
        (Points + std::string("DEF E SurfaceEmitter { surface Box { } speed 1 variation 0 } }")).c_str());
    run(scene, 10);
    QVERIFY(positions(scene).size() > 100);
    bool sides[6] = {};
    for (const osg::Pnt3f& p : positions(scene)) {
        int out = 0;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            // Born on a face, and straight away from it since.
            if (std::abs(p[axis]) > 1.0001F) {
                ++out;
                sides[2 * axis + (p[axis] > 0.0F)] = true;
            }
        }
        QVERIFY(out <= 1);
        QVERIFY(largest(p) > 0.999F);
    }
    for (const bool side : sides)
        QVERIFY(side);
}

void tst_ParticleShapes::openSurfaceHasTwoSides()
{
    CoreScene scene(
        (Points + std::string("SurfaceEmitter { surface Rectangle2D { solid TRUE } speed 1 variation 0 } }"))
            .c_str());
    run(scene, 10);
    int front = 0;
    int back = 0;
    for (const osg::Pnt3f& p : positions(scene)) {
        front += p[2] > 0.01F;
        back += p[2] < -0.01F;
    }
    QVERIFY(front > 20);
    QCOMPARE(back, 0); // it is solid
    CoreScene open((Points + std::string("SurfaceEmitter { surface Rectangle2D { solid FALSE } speed 1 "
                                         "variation 0 } }"))
                       .c_str());
    run(open, 10);
    for (const osg::Pnt3f& p : positions(open))
        back += p[2] < -0.01F;
    QVERIFY(back > 20);
}

void tst_ParticleShapes::surfaceFollowsItsGeometry()
{
    CoreScene scene(
        (Points + std::string("SurfaceEmitter { surface DEF G IndexedFaceSet { coordIndex [ 0 1 2 "
                              "] coord DEF C Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } } } }"))
            .c_str());
    run(scene, 5);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(p[2] == 0.0F && p[0] + p[1] < 1.001F);
    scene.set("C", "point", "[ 0 0 5, 1 0 5, 0 1 5 ]");
    for (int i = 6; i <= 30; ++i)
        scene.runTo(i * 0.1);
    QVERIFY(!positions(scene).empty());
    for (const osg::Pnt3f& p : positions(scene))
        QCOMPARE(p[2], 5.0F);
}

void tst_ParticleShapes::volumeFillsItsInside()
{
    CoreScene scene((Points + std::string("VolumeEmitter { ") + Cube + " } }").c_str());
    run(scene, 10);
    QVERIFY(positions(scene).size() > 100);
    int inner = 0;
    for (const osg::Pnt3f& p : positions(scene)) {
        QVERIFY(largest(p) <= 1.0F);
        inner += largest(p) < 0.8F;
    }
    // The inner cube has half of the volume.
    const double share = double(inner) / double(positions(scene).size());
    QVERIFY(share > 0.35 && share < 0.65);
}

void tst_ParticleShapes::volumeMaySendFromItsFaces()
{
    CoreScene scene((Points + std::string("VolumeEmitter { internal FALSE ") + Cube + " } }").c_str());
    run(scene, 10);
    QVERIFY(positions(scene).size() > 100);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(std::abs(largest(p) - 1.0F) < 1e-5F);
}

void tst_ParticleShapes::volumeMayBeOfTriangles()
{
    CoreScene scene(
        (Points + std::string("VolumeEmitter { coordIndex [ 0 2 1 -1 0 1 3 -1 1 2 3 -1 2 0 3 ] coord "
                              "Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 1 ] } } }"))
            .c_str());
    run(scene, 10);
    QVERIFY(positions(scene).size() > 100);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(p[0] >= 0.0F && p[1] >= 0.0F && p[2] >= 0.0F && p[0] + p[1] + p[2] <= 1.0001F);
}

void tst_ParticleShapes::concaveVolumeKeepsItsNotch()
{
    // A bar of the form of an L, two long and one thick.
    CoreScene scene(
        (Points +
         std::string("VolumeEmitter { coordIndex [ 0 1 2 3 4 5 -1 11 10 9 8 7 6 -1 0 6 7 1 -1 1 7 8 2 "
                     "-1 2 8 9 3 -1 3 9 10 4 -1 4 10 11 5 -1 5 11 6 0 -1 ] coord Coordinate { point [ "
                     "0 0 0, 2 0 0, 2 1 0, 1 1 0, 1 2 0, 0 2 0, 0 0 -1, 2 0 -1, 2 1 -1, 1 1 -1, 1 2 "
                     "-1, 0 2 -1 ] } } }"))
            .c_str());
    run(scene, 10);
    QVERIFY(positions(scene).size() > 100);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(p[0] <= 1.0F || p[1] <= 1.0F);
}

void tst_ParticleShapes::boundsThrowBack()
{
    CoreScene scene((Points + std::string("PointEmitter { direction 0 0 0 speed 3 } physics "
                                          "BoundedPhysicsModel { geometry Sphere { radius 2 } } }"))
                        .c_str());
    run(scene, 20);
    QVERIFY(positions(scene).size() > 200);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(p.dist(osg::Pnt3f()) < 2.0F);
    CoreScene floor(
        "DEF P ParticleSystem { geometryType POINT maxParticles 1 emitter ExplosionEmitter { "
        "position 0 1 0 mass 1 variation 0 } lifetimeVariation 0 particleLifetime 60 physics [ "
        "ForcePhysicsModel { } "
        "BoundedPhysicsModel { geometry IndexedFaceSet { solid FALSE coordIndex [ 0 1 2 3 ] coord "
        "Coordinate { point [ -9 0 9, 9 0 9, 9 0 -9, -9 0 -9 ] } } } ] }");
    for (int i = 1; i < 100; ++i) {
        floor.runTo(i * 0.05);
        if (!positions(floor).empty())
            QVERIFY(positions(floor)[0][1] >= 0.0F);
    }
}

void tst_ParticleShapes::disabledBoundsLetThrough()
{
    CoreScene scene((Points + std::string("PointEmitter { speed 3 variation 0 } physics BoundedPhysicsModel "
                                          "{ enabled FALSE geometry Sphere { } } }"))
                        .c_str());
    run(scene, 15);
    QVERIFY(std::any_of(positions(scene).begin(), positions(scene).end(),
                        [](const osg::Pnt3f& p) { return p[1] > 2.0F; }));
}

void tst_ParticleShapes::trianglesHaveThreeCorners()
{
    CoreScene scene(
        "DEF P ParticleSystem { geometryType TRIANGLE maxParticles 5 emitter ExplosionEmitter { } }");
    run(scene, 1);
    QCOMPARE(positions(scene).size(), std::size_t(15));
    QCOMPARE(geometry(scene)->getIndices()->getField().size(), std::size_t(15));
}

namespace {

std::string copies(const std::string& fields)
{
    return "DEF P ParticleSystem { geometryType GEOMETRY lifetimeVariation 0 emitter "
           "ExplosionEmitter { position 5 0 0 } " +
           fields + (fields.find("maxParticles") == std::string::npos ? " maxParticles 3 }" : " }");
}

} // namespace

void tst_ParticleShapes::copiesOfAGeometryStandAtTheParticles()
{
    CoreScene scene(copies("geometry DEF G Box { size 2 2 2 }").c_str());
    QCOMPARE(scene.messageCount(), std::size_t(0));
    run(scene, 1);
    QCOMPARE(positions(scene).size(), std::size_t(72));
    QCOMPARE(geometry(scene)->getNormals()->getField().size(), std::size_t(72));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(low, osg::Pnt3f(4, -1, -1));
    QCOMPARE(high, osg::Pnt3f(6, 1, 1));
    SceneHit hit;
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(5, 5, 0), osg::Vec3f(0, -1, 0)), hit));
    QCOMPARE(hit.point, osg::Pnt3f(5, 1, 0));
    scene.set("G", "size", "4 2 2");
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(low, osg::Pnt3f(3, -1, -1));
}

void tst_ParticleShapes::copiesTakeTheColorsOfTheRamp()
{
    CoreScene scene(copies("geometry Box { } colorKey 0 color ColorRGBA { color [ 1 0 0 0.5 ] }").c_str());
    run(scene, 1);
    QCOMPARE(geometry(scene)->getColors()->getField().size(), std::size_t(72));
    QCOMPARE(geometry(scene)->getColors()->getField()[71].alpha(), 0.5F);
}

void tst_ParticleShapes::copiesMayBeLines()
{
    CoreScene scene(
        copies("geometry IndexedLineSet { coordIndex [ 0 1 2 ] coord Coordinate { point [ 0 0 0, 1 "
               "0 0, 1 1 0 ] } }")
            .c_str());
    run(scene, 1);
    QCOMPARE(geometry(scene)->getTypes()->getField()[0], osg::UInt8(osg::Geometry::LINES));
}

void tst_ParticleShapes::geometryMayGo()
{
    CoreScene scene(copies("geometry Box { }").c_str());
    run(scene, 1);
    QVERIFY(!positions(scene).empty());
    static_cast<SFNode&>(scene.field("P", "geometry")).setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.runTo(0.2);
    scene.runTo(0.3);
    QVERIFY(positions(scene).empty());
}

void tst_ParticleShapes::texCoordsChangeOverTheLife()
{
    CoreScene scene(
        "DEF P ParticleSystem { maxParticles 1 particleLifetime 2 lifetimeVariation 0 emitter "
        "ExplosionEmitter { } texCoordKey [ 0 0.5 ] texCoord TextureCoordinate { point [ 0 0, 0.5 "
        "0, 0.5 1, 0 1, 0.5 0, 1 0, 1 1, 0.5 1 ] } }");
    run(scene, 2);
    QCOMPARE(geometry(scene)->getTexCoords()->getField(), (std::vector<float>{0, 0, 0.5F, 0, 0.5F, 1, 0, 1}));
    for (int i = 3; i < 15; ++i)
        scene.runTo(i * 0.1);
    QCOMPARE(geometry(scene)->getTexCoords()->getField(), (std::vector<float>{0.5F, 0, 1, 0, 1, 1, 0.5F, 1}));
}

void tst_ParticleShapes::verticesAreLimited()
{
    const QByteArray heights = QByteArray("0 ").repeated(2 * 2000);
    CoreScene scene(
        copies("maxParticles 10000 geometry ElevationGrid { xDimension 2 zDimension 2000 height [ " +
               heights.toStdString() + " ] }")
            .c_str());
    QCOMPARE(scene.messageCount(), std::size_t(1));
    run(scene, 1);
    QVERIFY(positions(scene).size() > 100000 && positions(scene).size() <= 1000000);
}

void tst_ParticleShapes::badFieldsAreHarmless_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("surface of nothing") << QByteArray("emitter SurfaceEmitter { }");
    QTest::newRow("surface of lines") << QByteArray("emitter SurfaceEmitter { surface IndexedLineSet { } }");
    QTest::newRow("flat surface") << QByteArray(
        "emitter SurfaceEmitter { surface TriangleSet { coord Coordinate { point [ 0 0 0, 1 0 0, "
        "2 0 0 ] } } }");
    QTest::newRow("huge surface") << QByteArray(
        "emitter SurfaceEmitter { surface TriangleSet { coord Coordinate { point [ 0 0 0, 1e38 0 "
        "0, 2 1e38 0 ] } } }");
    QTest::newRow("volume of nothing") << QByteArray("emitter VolumeEmitter { coordIndex [ 0 1 2 ] }");
    QTest::newRow("open volume") << QByteArray("emitter VolumeEmitter { coordIndex [ 0 1 2 9 -7 ] coord "
                                               "Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } }");
    QTest::newRow("bounds of nothing")
        << QByteArray("emitter PointEmitter { } physics [ BoundedPhysicsModel { } ]");
    QTest::newRow("fast through bounds") << QByteArray(
        "emitter PointEmitter { speed 1e30 } physics BoundedPhysicsModel { geometry Sphere { } }");
    QTest::newRow("no geometry") << QByteArray("emitter PointEmitter { } geometryType GEOMETRY");
    QTest::newRow("short ramps") << QByteArray(
        "emitter PointEmitter { } texCoordKey [ 3 1 2 ] texCoord TextureCoordinate { point [ 0 0, 1 1 ] }");
}

void tst_ParticleShapes::badFieldsAreHarmless()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(("DEF P ParticleSystem { particleLifetime 1 " + fields + " }").constData());
    run(scene, 5);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]));
}

QTEST_GUILESS_MAIN(tst_ParticleShapes)
#include "tst_ParticleShapes.moc"
