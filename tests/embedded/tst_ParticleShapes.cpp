#include "ParticleScene.h"
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
    ParticleScene scene(
        (Points + std::string("DEF E SurfaceEmitter { surface Box { } speed 1 variation 0 } }")).c_str());
    scene.run(10);
    QVERIFY(scene.positions().size() > 100);
    bool sides[6] = {};
    for (const osg::Pnt3f& p : scene.positions()) {
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
    ParticleScene scene(
        (Points + std::string("SurfaceEmitter { surface Rectangle2D { solid TRUE } speed 1 variation 0 } }"))
            .c_str());
    scene.run(10);
    int front = 0;
    int back = 0;
    for (const osg::Pnt3f& p : scene.positions()) {
        front += p[2] > 0.01F;
        back += p[2] < -0.01F;
    }
    QVERIFY(front > 20);
    QCOMPARE(back, 0); // it is solid
    ParticleScene open((Points + std::string("SurfaceEmitter { surface Rectangle2D { solid FALSE } speed 1 "
                                             "variation 0 } }"))
                           .c_str());
    open.run(10);
    for (const osg::Pnt3f& p : open.positions())
        back += p[2] < -0.01F;
    QVERIFY(back > 20);
}

void tst_ParticleShapes::surfaceFollowsItsGeometry()
{
    ParticleScene scene(
        (Points + std::string("SurfaceEmitter { surface DEF G IndexedFaceSet { coordIndex [ 0 1 2 "
                              "] coord DEF C Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } } } }"))
            .c_str());
    scene.run(5);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(p[2] == 0.0F && p[0] + p[1] < 1.001F);
    scene.set("C", "point", "[ 0 0 5, 1 0 5, 0 1 5 ]");
    for (int i = 6; i <= 30; ++i)
        scene.runTo(i * 0.1);
    QVERIFY(!scene.positions().empty());
    for (const osg::Pnt3f& p : scene.positions())
        QCOMPARE(p[2], 5.0F);
}

void tst_ParticleShapes::volumeFillsItsInside()
{
    ParticleScene scene((Points + std::string("VolumeEmitter { ") + Cube + " } }").c_str());
    scene.run(10);
    QVERIFY(scene.positions().size() > 100);
    int inner = 0;
    for (const osg::Pnt3f& p : scene.positions()) {
        QVERIFY(largest(p) <= 1.0F);
        inner += largest(p) < 0.8F;
    }
    // The inner cube has half of the volume.
    const double share = double(inner) / double(scene.positions().size());
    QVERIFY(share > 0.35 && share < 0.65);
}

void tst_ParticleShapes::volumeMaySendFromItsFaces()
{
    ParticleScene scene((Points + std::string("VolumeEmitter { internal FALSE ") + Cube + " } }").c_str());
    scene.run(10);
    QVERIFY(scene.positions().size() > 100);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(std::abs(largest(p) - 1.0F) < 1e-5F);
}

void tst_ParticleShapes::volumeMayBeOfTriangles()
{
    ParticleScene scene(
        (Points + std::string("VolumeEmitter { coordIndex [ 0 2 1 -1 0 1 3 -1 1 2 3 -1 2 0 3 ] coord "
                              "Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 1 ] } } }"))
            .c_str());
    scene.run(10);
    QVERIFY(scene.positions().size() > 100);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(p[0] >= 0.0F && p[1] >= 0.0F && p[2] >= 0.0F && p[0] + p[1] + p[2] <= 1.0001F);
}

void tst_ParticleShapes::concaveVolumeKeepsItsNotch()
{
    // A bar of the form of an L, two long and one thick.
    ParticleScene scene(
        (Points +
         std::string("VolumeEmitter { coordIndex [ 0 1 2 3 4 5 -1 11 10 9 8 7 6 -1 0 6 7 1 -1 1 7 8 2 "
                     "-1 2 8 9 3 -1 3 9 10 4 -1 4 10 11 5 -1 5 11 6 0 -1 ] coord Coordinate { point [ "
                     "0 0 0, 2 0 0, 2 1 0, 1 1 0, 1 2 0, 0 2 0, 0 0 -1, 2 0 -1, 2 1 -1, 1 1 -1, 1 2 "
                     "-1, 0 2 -1 ] } } }"))
            .c_str());
    scene.run(10);
    QVERIFY(scene.positions().size() > 100);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(p[0] <= 1.0F || p[1] <= 1.0F);
}

void tst_ParticleShapes::boundsThrowBack()
{
    ParticleScene scene((Points + std::string("PointEmitter { direction 0 0 0 speed 3 } physics "
                                              "BoundedPhysicsModel { geometry Sphere { radius 2 } } }"))
                            .c_str());
    scene.run(20);
    QVERIFY(scene.positions().size() > 200);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(p.dist(osg::Pnt3f()) < 2.0F);
    ParticleScene floor(
        "DEF P ParticleSystem { geometryType POINT maxParticles 1 emitter ExplosionEmitter { "
        "position 0 1 0 mass 1 variation 0 } lifetimeVariation 0 particleLifetime 60 physics [ "
        "ForcePhysicsModel { } "
        "BoundedPhysicsModel { geometry IndexedFaceSet { solid FALSE coordIndex [ 0 1 2 3 ] coord "
        "Coordinate { point [ -9 0 9, 9 0 9, 9 0 -9, -9 0 -9 ] } } } ] }");
    for (int i = 1; i < 100; ++i) {
        floor.runTo(i * 0.05);
        if (!floor.positions().empty())
            QVERIFY(floor.positions()[0][1] >= 0.0F);
    }
}

void tst_ParticleShapes::disabledBoundsLetThrough()
{
    ParticleScene scene(
        (Points + std::string("PointEmitter { speed 3 variation 0 } physics BoundedPhysicsModel "
                              "{ enabled FALSE geometry Sphere { } } }"))
            .c_str());
    scene.run(15);
    QVERIFY(std::any_of(scene.positions().begin(), scene.positions().end(),
                        [](const osg::Pnt3f& p) { return p[1] > 2.0F; }));
}

void tst_ParticleShapes::trianglesHaveThreeCorners()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType TRIANGLE maxParticles 5 emitter ExplosionEmitter { } }");
    scene.run(1);
    QCOMPARE(scene.positions().size(), std::size_t(15));
    QCOMPARE(scene.geometry()->getIndices()->getField().size(), std::size_t(15));
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
    ParticleScene scene(copies("geometry DEF G Box { size 2 2 2 }").c_str());
    QCOMPARE(scene.messageCount(), std::size_t(0));
    scene.run(1);
    QCOMPARE(scene.positions().size(), std::size_t(72));
    QCOMPARE(scene.geometry()->getNormals()->getField().size(), std::size_t(72));
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
    ParticleScene scene(
        copies("geometry Box { } colorKey 0 color ColorRGBA { color [ 1 0 0 0.5 ] }").c_str());
    scene.run(1);
    QCOMPARE(scene.geometry()->getColors()->getField().size(), std::size_t(72));
    QCOMPARE(scene.geometry()->getColors()->getField()[71].alpha(), 0.5F);
}

void tst_ParticleShapes::copiesMayBeLines()
{
    ParticleScene scene(
        copies("geometry IndexedLineSet { coordIndex [ 0 1 2 ] coord Coordinate { point [ 0 0 0, 1 "
               "0 0, 1 1 0 ] } }")
            .c_str());
    scene.run(1);
    QCOMPARE(scene.geometry()->getTypes()->getField()[0], osg::UInt8(osg::Geometry::LINES));
}

void tst_ParticleShapes::geometryMayGo()
{
    ParticleScene scene(copies("geometry Box { }").c_str());
    scene.run(1);
    QVERIFY(!scene.positions().empty());
    static_cast<SFNode&>(scene.field("P", "geometry")).setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.runTo(0.2);
    scene.runTo(0.3);
    QVERIFY(scene.positions().empty());
}

void tst_ParticleShapes::texCoordsChangeOverTheLife()
{
    ParticleScene scene(
        "DEF P ParticleSystem { maxParticles 1 particleLifetime 2 lifetimeVariation 0 emitter "
        "ExplosionEmitter { } texCoordKey [ 0 0.5 ] texCoord TextureCoordinate { point [ 0 0, 0.5 "
        "0, 0.5 1, 0 1, 0.5 0, 1 0, 1 1, 0.5 1 ] } }");
    scene.run(2);
    QCOMPARE(scene.geometry()->getTexCoords()->getField(),
             (std::vector<float>{0, 0, 0.5F, 0, 0.5F, 1, 0, 1}));
    for (int i = 3; i < 15; ++i)
        scene.runTo(i * 0.1);
    QCOMPARE(scene.geometry()->getTexCoords()->getField(),
             (std::vector<float>{0.5F, 0, 1, 0, 1, 1, 0.5F, 1}));
}

void tst_ParticleShapes::verticesAreLimited()
{
    const QByteArray heights = QByteArray("0 ").repeated(2 * 2000);
    ParticleScene scene(
        copies("maxParticles 10000 geometry ElevationGrid { xDimension 2 zDimension 2000 height [ " +
               heights.toStdString() + " ] }")
            .c_str());
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.run(1);
    QVERIFY(scene.positions().size() > 100000 && scene.positions().size() <= 1000000);
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
    ParticleScene scene(("DEF P ParticleSystem { particleLifetime 1 " + fields + " }").constData());
    scene.run(5);
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]));
}

QTEST_GUILESS_MAIN(tst_ParticleShapes)
#include "tst_ParticleShapes.moc"
