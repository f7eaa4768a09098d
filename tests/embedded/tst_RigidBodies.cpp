#include "RigidScene.h"
#include <Orvane/MFNode.h>

using namespace Orvane;

/// How single bodies move, and what scenes hear of it and write meanwhile.
class tst_RigidBodies : public QObject
{
    Q_OBJECT

private slots:
    void bodyFallsAsTheFormulaSays();
    void frameRateMakesNoDifference_data();
    void frameRateMakesNoDifference();
    void longPauseIsNotMadeUpFor();
    void velocityIsKeptWithoutForces();
    void forcesAndTorquesAct();
    void gravityOfBodyCanBeSwitchedOff();
    void fixedAndDisabledBodiesStay();
    void disabledCollectionStandsStill();
    void dampingSlowsDown();
    void massDensityModelSpreadsMass_data();
    void massDensityModelSpreadsMass();
    void centerOfMassIsWhatTurns();
    void bodyJumpsToWrittenPosition();
    void writtenVelocityCounts();
    void collidablesFollowTheirBody();
    void offsetStandsBesideItsBody();
    void bodyWithoutCollectionPlacesItsCollidables();
    void restingBodySleepsAndWakes();
    void worldThatCannotMoveAsksForNoFrames();
    void bodiesComeAndGo();
    void secondCollectionTakesOver();
    void sameSceneRunsTheSameWay();
    void badNumbersDoNoHarm_data();
    void badNumbersDoNoHarm();
};

void tst_RigidBodies::bodyFallsAsTheFormulaSays()
{
    RigidScene scene("RigidBodyCollection { bodies DEF B RigidBody { position 0 100 0 } }");
    scene.run(2.0);
    // Steps of 1/120 s: the way is g t (t + step) / 2.
    COMPARE_NEAR(scene.position("B")[1], 100.0 - 9.8 * 2.0 * (2.0 + 1.0 / 120.0) / 2.0, 1e-3);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[1], -19.6, 1e-3);
    QCOMPARE(scene.position("B")[0], 0.0F);
}

void tst_RigidBodies::frameRateMakesNoDifference_data()
{
    QTest::addColumn<double>("frame");
    for (const double rate : {240.0, 144.0, 60.0, 25.0, 12.0})
        QTest::addRow("%.0f frames a second", rate) << 1.0 / rate;
}

void tst_RigidBodies::frameRateMakesNoDifference()
{
    QFETCH(double, frame);
    RigidScene scene("RigidBodyCollection { bodies DEF B RigidBody { linearVelocity 3 10 0 } }");
    for (int i = 1; i * frame < 2.0 + 1e-6; ++i)
        scene.runTo(i * frame);
    scene.runTo(2.0);
    COMPARE_NEAR(scene.position("B")[0], 6.0, 0.03);
    COMPARE_NEAR(scene.position("B")[1], 20.0 - 19.6, 0.2);
}

void tst_RigidBodies::longPauseIsNotMadeUpFor()
{
    RigidScene scene("RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { linearVelocity 1 0 0 } }");
    scene.runTo(1000.0);
    COMPARE_NEAR(scene.position("B")[0], 0.1, 1e-5);
}

void tst_RigidBodies::velocityIsKeptWithoutForces()
{
    RigidScene scene("RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { linearVelocity 1 2 3 "
                     "angularVelocity 0 1 0 } }");
    scene.run(1.0);
    COMPARE_NEAR(scene.position("B")[0], 1.0, 1e-4);
    COMPARE_NEAR(scene.position("B")[1], 2.0, 1e-4);
    COMPARE_NEAR(scene.position("B")[2], 3.0, 1e-4);
    COMPARE_NEAR(scene.rotation("B", "orientation").y(), 1.0, 1e-4);
    COMPARE_NEAR(scene.rotation("B", "orientation").angle(), 1.0, 1e-3);
}

void tst_RigidBodies::forcesAndTorquesAct()
{
    RigidScene scene(
        "RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { mass 2 forces [ 3 0 0, 1 0 0 ] "
        "torques [ 0 0 0.5 ] inertia 2 0 0 0 2 0 0 0 2 } }");
    scene.run(1.0);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[0], 2.0, 1e-3);
    COMPARE_NEAR(scene.vector("B", "angularVelocity")[2], 0.25, 1e-3);
    scene.set("B", "forces", "");
    const float speed = scene.vector("B", "linearVelocity")[0];
    scene.run(0.5);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[0], speed, 1e-5);
}

void tst_RigidBodies::gravityOfBodyCanBeSwitchedOff()
{
    RigidScene scene(
        "RigidBodyCollection { gravity 0 0 -1 bodies [ DEF A RigidBody { useGlobalGravity FALSE } "
        "DEF B RigidBody { } ] }");
    scene.run(1.0);
    QCOMPARE(scene.position("A")[2], 0.0F);
    COMPARE_NEAR(scene.position("B")[2], -0.5, 0.01);
    scene.set("A", "useGlobalGravity", "TRUE");
    scene.run(1.0);
    QVERIFY(scene.position("A")[2] < -0.4F);
}

void tst_RigidBodies::fixedAndDisabledBodiesStay()
{
    RigidScene scene("RigidBodyCollection { bodies [ DEF A RigidBody { fixed TRUE linearVelocity 1 0 0 } "
                     "DEF B RigidBody { enabled FALSE } ] }");
    scene.run(0.5);
    QCOMPARE(scene.get("A", "position"), std::string("0 0 0"));
    QCOMPARE(scene.get("B", "position"), std::string("0 0 0"));
    scene.set("A", "fixed", "FALSE");
    scene.set("B", "enabled", "TRUE");
    scene.run(0.5);
    QVERIFY(scene.position("A")[1] < -0.5F);
    QVERIFY(scene.position("B")[1] < -0.5F);
}

void tst_RigidBodies::disabledCollectionStandsStill()
{
    RigidScene scene("DEF C RigidBodyCollection { enabled FALSE bodies DEF B RigidBody { } }");
    scene.run(0.5);
    QCOMPARE(scene.get("B", "position"), std::string("0 0 0"));
    scene.set("C", "enabled", "TRUE");
    scene.run(0.5);
    // The time in which it stood is not made up for.
    COMPARE_NEAR(scene.position("B")[1], -1.225, 0.15);
}

void tst_RigidBodies::dampingSlowsDown()
{
    RigidScene scene(
        "RigidBodyCollection { gravity 0 0 0 bodies [ DEF A RigidBody { linearVelocity 10 0 0 "
        "angularVelocity 0 2 0 autoDamp TRUE linearDampingFactor 0.01 angularDampingFactor 0.02 } "
        "DEF B RigidBody { linearVelocity 10 0 0 linearDampingFactor 0.5 } ] }");
    scene.run(1.0);
    // A share of the speed in each sixtieth second.
    COMPARE_NEAR(scene.vector("A", "linearVelocity")[0], 10.0 * std::pow(0.99, 60.0), 0.02);
    COMPARE_NEAR(scene.vector("A", "angularVelocity")[1], 2.0 * std::pow(0.98, 60.0), 0.01);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[0], 10.0, 1e-4);
}

void tst_RigidBodies::massDensityModelSpreadsMass_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<double>("inertia"); // about y
    QTest::newRow("sphere") << QByteArray("massDensityModel Sphere { radius 2 }") << 0.4 * 3.0 * 4.0;
    QTest::newRow("box") << QByteArray("massDensityModel Box { size 1 2 3 }") << 3.0 * 10.0 / 12.0;
    QTest::newRow("cone") << QByteArray("massDensityModel Cone { bottomRadius 2 height 3 }")
                          << 0.3 * 3.0 * 4.0;
    QTest::newRow("matrix") << QByteArray("inertia 1 0 0 0 4 0 0 0 2") << 4.0;
    QTest::newRow("box without size") << QByteArray("massDensityModel Box { size 0 0 0 }") << 1.0;
    QTest::newRow("matrix of no body") << QByteArray("inertia 1 5 0 5 1 0 0 0 -2") << 1.0;
}

void tst_RigidBodies::massDensityModelSpreadsMass()
{
    QFETCH(QByteArray, fields);
    QFETCH(double, inertia);
    RigidScene scene(
        ("RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { mass 3 torques [ 0 6 0 ] " + fields +
         " } }")
            .constData());
    scene.run(1.0);
    COMPARE_NEAR(scene.vector("B", "angularVelocity")[1], 6.0 / inertia, 0.01 * 6.0 / inertia);
}

void tst_RigidBodies::centerOfMassIsWhatTurns()
{
    RigidScene scene("RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { centerOfMass 1 0 0 "
                     "angularVelocity 0 0 3.14159265 } }");
    scene.run(1.0);
    // Half a turn about the centre, which stands at x = 1.
    COMPARE_NEAR(scene.position("B")[0], 2.0, 1e-2);
    COMPARE_NEAR(scene.position("B")[1], 0.0, 5e-2);
}

void tst_RigidBodies::bodyJumpsToWrittenPosition()
{
    RigidScene scene("RigidBodyCollection { bodies DEF B RigidBody { geometry DEF S CollidableShape { } } }");
    scene.run(0.5);
    const float speed = scene.vector("B", "linearVelocity")[1];
    scene.field("B", "position").setValueByStr(0.0, "5 50 0");
    scene.run(1.0 / 60.0);
    COMPARE_NEAR(scene.position("B")[0], 5.0, 1e-5);
    QVERIFY(scene.position("B")[1] > 49.0F);
    // It goes on as fast as before.
    QVERIFY(scene.vector("B", "linearVelocity")[1] <= speed);
    QVERIFY(scene.vector("S", "translation")[1] > 49.0F);
    scene.set("B", "orientation", "0 1 0 1");
    scene.run(0.1);
    COMPARE_NEAR(scene.rotation("B", "orientation").angle(), 1.0, 1e-4);
}

void tst_RigidBodies::writtenVelocityCounts()
{
    RigidScene scene("RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { } }");
    scene.run(0.5);
    scene.set("B", "linearVelocity", "0 2 0");
    scene.set("B", "angularVelocity", "1 0 0");
    scene.run(1.0);
    COMPARE_NEAR(scene.position("B")[1], 2.0, 0.1);
    COMPARE_NEAR(scene.rotation("B", "orientation").angle(), 1.0, 0.1);
}

void tst_RigidBodies::collidablesFollowTheirBody()
{
    RigidScene scene("DEF S CollidableShape { translation 9 9 9 shape Shape { geometry Box { } } }"
                     "RigidBodyCollection { bodies DEF B RigidBody { position 1 2 3 orientation 0 0 1 0.5 "
                     "geometry USE S } }");
    QCOMPARE(scene.get("S", "translation"), std::string("1 2 3"));
    scene.run(0.5);
    QVERIFY(scene.vector("S", "translation")[1] < 1.0F);
    QCOMPARE(scene.vector("S", "translation"), scene.position("B"));
    COMPARE_NEAR(scene.rotation("S", "rotation").angle(), 0.5, 1e-4);
    // It is drawn where the body is.
    const osg::Matrix shown = scene.procOf<GroupProc>("S").toWorld();
    COMPARE_NEAR(shown[3][1], scene.position("B")[1], 1e-5);
}

void tst_RigidBodies::offsetStandsBesideItsBody()
{
    RigidScene scene(
        "DEF O CollidableOffset { translation 2 0 0 collidable DEF S CollidableShape { shape Shape { "
        "geometry Sphere { } } } }"
        "RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { orientation 0 0 1 1.5707963 "
        "position 0 5 0 geometry USE O } }");
    scene.run(0.1);
    COMPARE_NEAR(scene.vector("S", "translation")[0], 0.0, 1e-5);
    COMPARE_NEAR(scene.vector("S", "translation")[1], 7.0, 1e-5);
    QCOMPARE(scene.get("O", "translation"), std::string("2 0 0"));
    const osg::Matrix shown = scene.procOf<GroupProc>("S").toWorld();
    COMPARE_NEAR(shown[3][1], 7.0, 1e-5);
}

void tst_RigidBodies::bodyWithoutCollectionPlacesItsCollidables()
{
    RigidScene scene("DEF B RigidBody { position 1 2 3 geometry DEF S CollidableShape { } }");
    scene.run(0.1);
    QCOMPARE(scene.get("S", "translation"), std::string("1 2 3"));
    scene.set("B", "position", "4 5 6");
    scene.run(0.1);
    QCOMPARE(scene.get("S", "translation"), std::string("4 5 6"));
}

void tst_RigidBodies::restingBodySleepsAndWakes()
{
    RigidScene scene(
        "RigidBodyCollection { autoDisable TRUE disableLinearSpeed 0.1 disableAngularSpeed 0.1 disableTime "
        "0.2 collider CollisionCollection { collidables [ DEF S CollidableShape { shape Shape { geometry "
        "Box { size 1 1 1 } } } CollidableShape { shape Shape { geometry Box { size 9 1 9 } } } ] } bodies "
        "DEF B RigidBody { position 0 1.1 0 geometry USE S } }");
    scene.run(3.0);
    const osg::Vec3f rest = scene.position("B");
    COMPARE_NEAR(rest[1], 1.0, 0.02);
    QCOMPARE(scene.get("B", "linearVelocity"), std::string("0 0 0"));
    // There is nothing to do any more.
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.run(0.5);
    QCOMPARE(scene.position("B"), rest);
    scene.set("B", "linearVelocity", "2 0 0");
    scene.run(0.5);
    QVERIFY(scene.position("B")[0] > 0.9F);
}

void tst_RigidBodies::worldThatCannotMoveAsksForNoFrames()
{
    RigidScene scene(
        "DEF C RigidBodyCollection { bodies [ RigidBody { fixed TRUE } RigidBody { useGlobalGravity "
        "FALSE } ] }");
    scene.run(0.2);
    // The next frame is one that stands by.
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.set("C", "gravity", "0 -1 0");
    scene.run(0.2);
    QVERIFY(scene.context->runFrame() > 0.05);
}

void tst_RigidBodies::bodiesComeAndGo()
{
    RigidScene scene("DEF C RigidBodyCollection { bodies DEF A RigidBody { } } DEF B RigidBody { }");
    auto& bodies = static_cast<MFNode&>(scene.field("C", "bodies"));
    bodies.addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT);
    scene.run(0.5);
    QVERIFY(scene.position("A")[1] < -0.5F);
    QVERIFY(scene.position("B")[1] < -0.5F);
    bodies.removeNode(0.0, 1, Field::EXTERNAL_CT);
    scene.run(0.1);
    const float left = scene.position("B")[1];
    scene.run(0.5);
    QCOMPARE(scene.position("B")[1], left);
    bodies.removeNode(0.0, 0, Field::EXTERNAL_CT); // dies
    scene.run(0.1);
    QCOMPARE(int(bodies.size()), 0);
}

void tst_RigidBodies::secondCollectionTakesOver()
{
    RigidScene scene("DEF C RigidBodyCollection { gravity 0 -1 0 bodies DEF B RigidBody { } }"
                     "DEF D RigidBodyCollection { gravity 0 1 0 bodies USE B }");
    scene.run(0.5);
    QVERIFY(scene.position("B")[1] < 0.0F);
    static_cast<MFNode&>(scene.field("C", "bodies")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.run(2.0);
    QVERIFY(scene.position("B")[1] > 0.0F);
}

void tst_RigidBodies::sameSceneRunsTheSameWay()
{
    const auto outcome = [](bool withOther) {
        std::string text =
            "DEF C CollisionCollection { collidables [ CollidableShape { shape Shape { geometry Box "
            "{ size 20 1 20 } } }";
        std::string bodies;
        for (int i = 0; i < 12; ++i) {
            const std::string name = "S" + std::to_string(i);
            text += " DEF " + name + " CollidableShape { shape Shape { geometry Box { size 1 1 1 } } }";
            bodies += " DEF B" + std::to_string(i) + " RigidBody { position 0." + std::to_string(i % 5) +
                      " " + std::to_string(2 + i) + " 0 geometry USE " + name + " }";
        }
        text += " ] } RigidBodyCollection { collider USE C bodies [" + bodies + " ] }";
        if (withOther)
            text += "RigidBodyCollection { bodies RigidBody { } }";
        RigidScene scene(text.c_str());
        scene.run(3.0);
        std::string places;
        for (int i = 0; i < 12; ++i)
            places += scene.get(("B" + std::to_string(i)).c_str(), "position") + "; ";
        return places;
    };
    const std::string first = outcome(false);
    QCOMPARE(outcome(false), first);
    QCOMPARE(outcome(true), first);
}

void tst_RigidBodies::badNumbersDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("value");
    const std::vector<std::array<const char*, 3>> rows{
        {"B", "mass", "0"},
        {"B", "mass", "-4"},
        {"B", "mass", "1e38"},
        {"B", "inertia", "0 0 0 0 0 0 0 0 0"},
        {"B", "inertia", "1 2 3 4 5 6 7 8 9"},
        {"B", "position", "1e38 0 -1e38"},
        {"B", "orientation", "0 0 0 1"},
        {"B", "orientation", "1e38 1e38 1e38 1e38"},
        {"B", "linearVelocity", "1e38 -1e38 1e38"},
        {"B", "angularVelocity", "1e38 -1e38 1e38"},
        {"B", "forces", "1e38 1e38 1e38, -1e38 0 0"},
        {"B", "torques", "1e38 1e38 1e38"},
        {"B", "centerOfMass", "1e38 1e38 1e38"},
        {"B", "linearDampingFactor", "-7"},
        {"B", "angularDampingFactor", "1e9"},
        {"B", "finiteRotationAxis", "0 0 0"},
        {"B", "disableTime", "-1"},
        {"C", "gravity", "1e38 1e38 1e38"},
        {"C", "iterations", "-3"},
        {"C", "iterations", "2000000000"},
        {"C", "errorCorrection", "-1"},
        {"C", "errorCorrection", "1e38"},
        {"C", "constantForceMix", "-1"},
        {"C", "contactSurfaceThickness", "-1"},
        {"C", "maxCorrectionSpeed", "1e38"},
    };
    for (const auto& row : rows)
        QTest::addRow("%s of %s: %s", row[1], row[0], row[2])
            << QByteArray(row[0]) << QByteArray(row[1]) << QByteArray(row[2]);
}

void tst_RigidBodies::badNumbersDoNoHarm()
{
    QFETCH(QByteArray, node);
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, value);
    RigidScene scene(
        "DEF C RigidBodyCollection { collider CollisionCollection { collidables [ DEF S "
        "CollidableShape { shape Shape { geometry Box { } } } CollidableShape { shape Shape { geometry "
        "Box { size 9 1 9 } } } ] } bodies DEF B RigidBody { autoDamp TRUE useFiniteRotation TRUE "
        "position 0 1 0 geometry USE S } }");
    scene.run(0.1);
    scene.set(node.constData(), field.constData(), value.constData());
    scene.run(0.5);
    // No number at all, too.
    Field& written = scene.field(node.constData(), field.constData());
    if (written.dataType() == SFFLOAT_DT)
        static_cast<SFFloat&>(written).setValue(0.0, std::nanf(""), Field::EXTERNAL_CT);
    else if (written.dataType() == SFVEC3F_DT)
        static_cast<SFVec3f&>(written).setValue(0.0, osg::Vec3f(std::nanf(""), 0.0F, 0.0F),
                                                Field::EXTERNAL_CT);
    else if (written.dataType() == SFROTATION_DT)
        static_cast<SFRotation&>(written).setValue(0.0, Rotation(std::nanf(""), 0.0F, 0.0F, 1.0F),
                                                   Field::EXTERNAL_CT);
    scene.run(0.5);
    const osg::Vec3f place = scene.position("B");
    for (osg::UInt32 i = 0; i < 3; ++i)
        QVERIFY(std::abs(place[i]) <= 2e7F);
}

QTEST_GUILESS_MAIN(tst_RigidBodies)
#include "tst_RigidBodies.moc"
