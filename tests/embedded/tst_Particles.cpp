#include "ParticleScene.h"
#include "core/ViewFollower.h"
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Systems of particles, by where the particles are.
class tst_Particles : public QObject
{
    Q_OBJECT

private slots:
    void particlesComeInTheirTime();
    void particlesEndWithTheirLife();
    void explosionSendsAllAtOnce();
    void forceMovesThem();
    void windMovesWhatHasASurface();
    void coneKeepsItsAngle();
    void polylineIsWhereTheyStart();
    void quadsFaceTheViewer();
    void linesLieAlongTheWay();
    void colorsRunOverTheLife();
    void disabledSystemRests();
    void badNumbersAreHarmless();
};

void tst_Particles::particlesComeInTheirTime()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 50 particleLifetime 5 lifetimeVariation 0 "
        "emitter PointEmitter { position 1 2 3 } }");
    QCOMPARE(scene.get("P", "isActive"), std::string("TRUE"));
    scene.run(20);
    QVERIFY(std::abs(int(scene.positions().size()) - 20) <= 1);
    QCOMPARE(scene.positions()[0], osg::Pnt3f(1, 2, 3)); // without speed they stay
    scene.set("P", "createParticles", "FALSE");
    const std::size_t count = scene.positions().size();
    scene.runTo(2.1);
    QCOMPARE(scene.positions().size(), count);
}

void tst_Particles::particlesEndWithTheirLife()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 10 particleLifetime 1 lifetimeVariation 0 "
        "emitter PointEmitter { } }");
    scene.run(40);
    QVERIFY(scene.positions().size() >= 8 && scene.positions().size() <= 10);
    scene.set("P", "createParticles", "FALSE");
    for (int i = 41; i < 60; ++i)
        scene.runTo(i * 0.1);
    QCOMPARE(scene.positions().size(), std::size_t(0));
}

void tst_Particles::explosionSendsAllAtOnce()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 40 lifetimeVariation 0 emitter "
        "ExplosionEmitter { speed 2 variation 0 } }");
    scene.run(11);
    QCOMPARE(scene.positions().size(), std::size_t(40));
    for (const osg::Pnt3f& p : scene.positions())
        QVERIFY(std::abs(p.dist(osg::Pnt3f()) - 2.0F) < 1e-3F);
    QCOMPARE(scene.get("P", "createParticles"), std::string("FALSE"));
}

void tst_Particles::forceMovesThem()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 1 lifetimeVariation 0 emitter "
        "ExplosionEmitter { "
        "mass 2 variation 0 } physics ForcePhysicsModel { force 0 -4 0 } }");
    scene.run(11);
    QCOMPARE(scene.positions().size(), std::size_t(1));
    // Half of 2 metres a second squared, and what the steps of a tenth add.
    QVERIFY(std::abs(scene.positions()[0][1] + 1.1F) < 1e-3F);
}

void tst_Particles::windMovesWhatHasASurface()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 1 lifetimeVariation 0 emitter "
        "DEF E ExplosionEmitter { "
        "mass 1 surfaceArea 1 variation 0 } physics WindPhysicsModel { direction 1 0 0 speed 2 "
        "gustiness 0 } }");
    scene.run(11);
    QVERIFY(std::abs(scene.positions()[0][0] - 0.64615F * 4.0F * 0.55F) < 1e-2F);
}

void tst_Particles::coneKeepsItsAngle()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 200 particleLifetime 2 emitter ConeEmitter { "
        "direction 0 0 1 angle 0.5 speed 1 variation 0 } }");
    scene.run(10);
    QVERIFY(scene.positions().size() > 50);
    bool isWide = false;
    for (const osg::Pnt3f& p : scene.positions()) {
        const float angle = std::atan2(std::hypot(p[0], p[1]), p[2]);
        QVERIFY(p == osg::Pnt3f() || angle < 0.501F);
        isWide |= angle > 0.3F;
    }
    QVERIFY(isWide);
}

void tst_Particles::polylineIsWhereTheyStart()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType POINT maxParticles 200 particleLifetime 2 emitter "
        "PolylineEmitter { "
        "coordIndex [ 0 1 2 -1 7 0 ] coord Coordinate { point [ 0 0 0, 3 0 0, 3 1 0 ] } } }");
    scene.run(10);
    QVERIFY(scene.positions().size() > 50);
    int onSecond = 0;
    for (const osg::Pnt3f& p : scene.positions()) {
        QVERIFY(p[1] == 0.0F || p[0] == 3.0F);
        onSecond += p[1] > 0.0F;
    }
    QVERIFY(onSecond > 0 && onSecond < int(scene.positions().size()) / 2);
}

void tst_Particles::quadsFaceTheViewer()
{
    ParticleScene scene("Transform { rotation 0 1 0 1 children DEF P ParticleSystem { maxParticles 1 "
                        "particleSize 2 1 emitter "
                        "ExplosionEmitter { } } }");
    scene.run(2);
    DrawnView view;
    view.cameraToWorld.setIdentity();
    scene.proc().state().followView(view);
    QCOMPARE(scene.positions().size(), std::size_t(4));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QVERIFY(std::abs(scene.positions()[0].dist(scene.positions()[1]) - 2.0F) < 1e-5F);
    osg::Matrix toWorld = procAs<ElementProc>(&scene.node("P"))->tree()->getToWorld();
    for (osg::Pnt3f p : scene.positions()) {
        toWorld.multMatrixPnt(p);
        QVERIFY(std::abs(p[2]) < 1e-5F);
    }
}

void tst_Particles::linesLieAlongTheWay()
{
    ParticleScene scene(
        "DEF P ParticleSystem { geometryType LINE maxParticles 1 particleSize 1 4 emitter ExplosionEmitter { "
        "speed 3 variation 0 } }");
    scene.run(3);
    QCOMPARE(scene.positions().size(), std::size_t(2));
    QVERIFY(std::abs(scene.positions()[0].dist(scene.positions()[1]) - 4.0F) < 1e-4F);
}

void tst_Particles::colorsRunOverTheLife()
{
    ParticleScene scene("DEF P ParticleSystem { geometryType POINT maxParticles 1 particleLifetime 2 "
                        "lifetimeVariation 0 emitter "
                        "ExplosionEmitter { } colorKey [ 0 1 ] color Color { color [ 1 0 0, 0 0 1 ] } }");
    scene.run(11);
    const osg::Color4f color = scene.geometry()->getColors()->getField().at(0);
    QVERIFY(std::abs(color.red() - 0.5F) < 0.06F);
    QVERIFY(std::abs(color.blue() - 0.5F) < 0.06F);
}

void tst_Particles::disabledSystemRests()
{
    ParticleScene scene("DEF P ParticleSystem { geometryType POINT enabled FALSE emitter PointEmitter { } }");
    scene.run(5);
    QCOMPARE(scene.positions().size(), std::size_t(0));
    QCOMPARE(scene.get("P", "isActive"), std::string("FALSE"));
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.set("P", "enabled", "TRUE");
    scene.runTo(0.6);
    scene.runTo(0.7);
    QVERIFY(!scene.positions().empty());
}

void tst_Particles::badNumbersAreHarmless()
{
    ParticleScene scene(
        "DEF P ParticleSystem { maxParticles 2147483647 particleLifetime 1e-30 emitter PointEmitter { speed "
        "1e38 "
        "variation 1e38 mass 1e-38 } physics [ WindPhysicsModel { speed 1e38 gustiness 1e38 } "
        "ForcePhysicsModel { "
        "force 1e38 1e38 1e38 } ] colorKey [ 5 1 ] color Color { color [ 1 1 1, 0 0 0, 1 0 0 ] } }");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.run(5);
    scene.set("P", "particleLifetime", "3");
    for (int i = 6; i < 12; ++i)
        scene.runTo(i * 0.1);
    scene.runTo(1e9);
    scene.runTo(0.0);
    QVERIFY(scene.positions().size() <= 40000);
    scene.set("P", "maxParticles", "-5");
    scene.runTo(2.0);
    ParticleScene bare(
        "ParticleSystem { } ParticleSystem { emitter PolylineEmitter { } geometryType GEOMETRY }");
    bare.run(3);
}

QTEST_GUILESS_MAIN(tst_Particles)
#include "tst_Particles.moc"
