#include "Numbers.h"
#include "RigidScene.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFNode.h>

using namespace Orvane;

/// What collides with what, how surfaces meet, and what sensors tell.
class tst_RigidCollisions : public QObject
{
    Q_OBJECT

private slots:
    void everySolidRestsOnTheFloor_data();
    void everySolidRestsOnTheFloor();
    void floorsOfAllKindsHold_data();
    void floorsOfAllKindsHold();
    void stackComesToRest();
    void bounceReturnsItsShare();
    void frictionHolds();
    void slopeWithoutFrictionSlides();
    void surfaceSpeedCarries();
    void onlyCollidablesOfTheColliderMeet();
    void switchedOffCollidablesLetPass();
    void spacesHoldTheirCollidables();
    void spaceWithoutGeometryTakesBoxesForMeshes();
    void jointedBodiesDoNotMeet();
    void bodyOfSeveralShapesFallsAsOne();
    void floorThatMovesAwayWakesSleepers();
    void sensorTellsOneContact();
    void sensorTellsTheEnd();
    void sensorWithoutBodiesFeelsWhatTheSceneMoves();
    void contactsByRouteHold();
    void userMayChangeContacts();
    void changedGeometryCounts();
};

namespace {

std::string shape(const std::string& name, const std::string& geometry, const std::string& fields = {})
{
    return "DEF " + name + " CollidableShape { " + fields + " shape Shape { geometry " + geometry + " } } ";
}

const std::string Floor = shape("FLOOR", "Box { size 20 1 20 }", "translation 0 -0.5 0");

/// A body B with a shape S over what stands in the collider.
std::string dropped(const std::string& geometry, const std::string& bodyFields,
                    const std::string& floor = Floor, const std::string& colliderFields = {})
{
    return "RigidBodyCollection { collider DEF C CollisionCollection { " + colliderFields +
           " collidables [ " + shape("S", geometry) + floor +
           " ] } bodies DEF B RigidBody { geometry USE S " + bodyFields + " } }";
}

const char* const Tetrahedron = "IndexedFaceSet { coord Coordinate { point [ -0.5 -0.5 -0.5, 0.5 -0.5 -0.5, "
                                "0 -0.5 0.5, 0 0.5 0 ] } coordIndex [ 0 "
                                "1 2 -1 0 3 1 -1 1 3 2 -1 2 3 0 ] }";

} // namespace

void tst_RigidCollisions::everySolidRestsOnTheFloor_data()
{
    QTest::addColumn<QByteArray>("geometry");
    QTest::newRow("box") << QByteArray("Box { size 1 1 1 }");
    QTest::newRow("sphere") << QByteArray("Sphere { radius 0.5 }");
    QTest::newRow("cylinder") << QByteArray("Cylinder { radius 0.5 height 1 }");
    QTest::newRow("cone") << QByteArray("Cone { bottomRadius 0.5 height 1 }");
    QTest::newRow("mesh") << QByteArray(Tetrahedron);
    QTest::newRow("extrusion") << QByteArray(
        "Extrusion { spine [ 0 -0.5 0, 0 0.5 0 ] crossSection [ 0.5 0.5, 0.5 -0.5, "
        "-0.5 -0.5, -0.5 0.5, 0.5 0.5 ] }");
}

void tst_RigidCollisions::everySolidRestsOnTheFloor()
{
    QFETCH(QByteArray, geometry);
    RigidScene scene(dropped(geometry.toStdString(), "position 0 1 0", Floor,
                             "appliedParameters [ \"FRICTION_COEFFICIENT-2\" ] frictionCoefficients 0.5 0.5")
                         .c_str());
    scene.run(0.2);
    COMPARE_NEAR(scene.position("B")[1], 1.0 - 4.9 * 0.04, 0.02);
    scene.run(4.0);
    COMPARE_NEAR(scene.position("B")[1], 0.5, 0.03);
    COMPARE_NEAR(scene.vector("B", "linearVelocity").length(), 0.0, 0.05);
}

void tst_RigidCollisions::floorsOfAllKindsHold_data()
{
    QTest::addColumn<QByteArray>("floor");
    const char* const floors[] = {
        "Box { size 20 0 20 }",
        "Cylinder { radius 10 height 2 }",
        "IndexedFaceSet { coord Coordinate { point [ -9 0 9, 9 0 9, 9 0 -9, -9 0 -9 ] } coordIndex [ 0 1 2 3 "
        "] }",
        "TriangleSet { coord Coordinate { point [ -9 0 9, 9 0 9, 0 0 -9 ] } }",
        "ElevationGrid { xDimension 3 zDimension 3 xSpacing 10 zSpacing 10 height [ 0 0 0 0 0 0 0 0 0 ] }",
    };
    const std::pair<const char*, const char*> bodies[] = {{"box", "Box { size 1 1 1 }"},
                                                          {"sphere", "Sphere { radius 0.5 }"},
                                                          {"cylinder", "Cylinder { radius 0.5 height 1 }"},
                                                          {"cone", "Cone { bottomRadius 0.5 height 1 }"},
                                                          {"mesh", Tetrahedron}};
    QTest::addColumn<QByteArray>("geometry");
    for (const char* floor : floors) {
        for (const auto& [name, geometry] : bodies)
            QTest::addRow("%s on %.12s", name, floor) << QByteArray(floor) << QByteArray(geometry);
    }
}

void tst_RigidCollisions::floorsOfAllKindsHold()
{
    QFETCH(QByteArray, floor);
    QFETCH(QByteArray, geometry);
    // The corner of the elevation grid is its origin.
    const std::string place = floor.startsWith("Elev")  ? "translation -10 0 -10"
                              : floor.startsWith("Cyl") ? "translation 0 -1 0"
                                                        : "";
    RigidScene scene(dropped(geometry.toStdString(), "position 0.3 0.8 0.2",
                             shape("FLOOR", floor.toStdString(), place), "frictionCoefficients 0.5 0.5")
                         .c_str());
    scene.run(3.0);
    // What stands on a tip may have fallen over.
    COMPARE_NEAR(scene.position("B")[1], 0.5, 0.15);
}

void tst_RigidCollisions::stackComesToRest()
{
    std::string shapes = Floor;
    std::string bodies;
    for (int i = 0; i < 5; ++i) {
        const std::string number = std::to_string(i);
        shapes += shape("S" + number, "Box { size 1 1 1 }");
        bodies += "DEF B" + number + " RigidBody { position 0 " + textOf(0.55 + 1.05 * i) +
                  " 0 massDensityModel Box { size 1 1 1 } geometry USE S" + number + " } ";
    }
    RigidScene scene(
        ("RigidBodyCollection { autoDisable TRUE disableLinearSpeed 0.05 disableAngularSpeed 0.05 "
         "disableTime 0.5 iterations 20 collider CollisionCollection { appliedParameters [ "
         "\"FRICTION_COEFFICIENT-2\" ] frictionCoefficients 0.6 0.6 collidables [ " +
         shapes + " ] } bodies [ " + bodies + " ] }")
            .c_str());
    scene.run(6.0);
    for (int i = 0; i < 5; ++i) {
        const std::string name = "B" + std::to_string(i);
        COMPARE_NEAR(scene.position(name.c_str())[1], 0.5 + i, 0.03);
        COMPARE_NEAR(scene.position(name.c_str())[0], 0.0, 0.05);
        QCOMPARE(scene.get(name.c_str(), "linearVelocity"), std::string("0 0 0"));
    }
    QVERIFY(scene.context->runFrame() > 0.05);
}

void tst_RigidCollisions::bounceReturnsItsShare()
{
    const auto speedAfter = [](const char* parameters) {
        RigidScene scene(dropped("Sphere { radius 0.5 }", "position 0 3 0", Floor, parameters).c_str());
        float fastest = 0.0F;
        for (int i = 0; i < 90; ++i) {
            scene.run(1.0 / 60.0);
            fastest = std::max(fastest, scene.vector("B", "linearVelocity")[1]);
        }
        return fastest;
    };
    // It comes at 7 m/s.
    COMPARE_NEAR(speedAfter("bounce 0.5"), 3.5, 0.2);
    COMPARE_NEAR(speedAfter("bounce 0.9"), 6.3, 0.3);
    QVERIFY(speedAfter("bounce 0") < 1.4F);
    QVERIFY(speedAfter("bounce 0.5 appliedParameters [ ]") < 1.4F);
    QVERIFY(speedAfter("bounce 0.5 minBounceSpeed 100") < 1.4F);
}

void tst_RigidCollisions::frictionHolds()
{
    const auto way = [](const char* parameters) {
        RigidScene scene(dropped("Box { size 1 1 1 }",
                                 "position 0 0.5 0 linearVelocity 3 0 0 massDensityModel Box { size "
                                 "1 1 1 }",
                                 Floor, parameters)
                             .c_str());
        scene.run(1.5);
        return scene.position("B")[0];
    };
    COMPARE_NEAR(way("frictionCoefficients 0 0"), 4.5, 0.05);
    // v^2 / (2 mu g)
    COMPARE_NEAR(way("frictionCoefficients 0.5 0.5"), 9.0 / (2.0 * 0.5 * 9.8), 0.15);
}

void tst_RigidCollisions::slopeWithoutFrictionSlides()
{
    const std::string slope = shape("FLOOR", "Box { size 40 1 40 }", "rotation 0 0 1 -0.3");
    RigidScene scene(
        dropped("Box { size 1 1 1 }", "position 0.29552 0.955336 0 orientation 0 0 1 -0.3", slope).c_str());
    scene.run(1.0);
    // g sin(slope) t^2 / 2 along the slope.
    COMPARE_NEAR(scene.position("B")[0] - 0.29552, 4.9 * std::sin(0.3) * std::cos(0.3), 0.1);
}

void tst_RigidCollisions::surfaceSpeedCarries()
{
    RigidScene scene(dropped("Box { size 1 1 1 }", "position 0 0.5 0", Floor,
                             "frictionCoefficients 1 1 surfaceSpeed 1 0 appliedParameters [ \"SPEED-1\" ]")
                         .c_str());
    scene.run(2.0);
    const osg::Vec3f speed = scene.vector("B", "linearVelocity");
    COMPARE_NEAR(std::hypot(speed[0], speed[2]), 1.0, 0.1);
}

void tst_RigidCollisions::onlyCollidablesOfTheColliderMeet()
{
    RigidScene scene(("RigidBodyCollection { collider CollisionCollection { collidables [ " + Floor +
                      " ] } bodies DEF B RigidBody { position 0 1 0 geometry " + shape("S", "Box { }") +
                      " } }")
                         .c_str());
    scene.run(1.0);
    QVERIFY(scene.position("B")[1] < -3.0F);
}

void tst_RigidCollisions::switchedOffCollidablesLetPass()
{
    for (const char* node : {"FLOOR", "S", "C"}) {
        RigidScene scene(dropped("Box { size 1 1 1 }", "position 0 0.5 0").c_str());
        scene.run(0.5);
        COMPARE_NEAR(scene.position("B")[1], 0.5, 0.02);
        scene.set(node, "enabled", "FALSE");
        scene.run(0.5);
        QVERIFY(scene.position("B")[1] < -0.5F);
    }
}

void tst_RigidCollisions::spacesHoldTheirCollidables()
{
    RigidScene scene(
        dropped("Box { size 1 1 1 }", "position 0 0.5 0",
                "DEF P CollisionSpace { useGeometry TRUE collidables CollisionSpace { useGeometry TRUE "
                "collidables [ CollidableOffset { translation 0 -0.5 0 collidable " +
                    shape("FLOOR", "Box { size 20 1 20 }") + " } ] } }")
            .c_str());
    scene.run(0.5);
    COMPARE_NEAR(scene.position("B")[1], 0.5, 0.02);
    scene.set("P", "enabled", "FALSE");
    scene.run(0.5);
    QVERIFY(scene.position("B")[1] < -0.5F);
}

void tst_RigidCollisions::spaceWithoutGeometryTakesBoxesForMeshes()
{
    // A valley, 2 m deep.
    const std::string valley =
        shape("FLOOR", "IndexedFaceSet { solid FALSE coord Coordinate { point [ -9 0 9, 0 -2 9, 0 "
                       "-2 -9, -9 0 -9, 9 0 9, 9 0 -9 ] } coordIndex [ 0 1 2 3 -1 1 4 5 2 ] }");
    for (const bool exact : {true, false}) {
        RigidScene scene(dropped("Sphere { radius 0.5 }", "position 0 1 0",
                                 std::string("CollisionSpace { useGeometry ") + (exact ? "TRUE" : "FALSE") +
                                     " collidables " + valley + " }")
                             .c_str());
        scene.run(3.0);
        COMPARE_NEAR(scene.position("B")[1], exact ? -1.49 : 0.5, 0.05);
    }
}

void tst_RigidCollisions::jointedBodiesDoNotMeet()
{
    RigidScene scene(
        ("RigidBodyCollection { gravity 0 0 0 collider CollisionCollection { collidables [ " +
         shape("S", "Box { }") + shape("T", "Box { }") +
         " ] } bodies [ DEF A RigidBody { geometry USE S } DEF B RigidBody { position 1 0 0 geometry USE T } "
         "] joints BallJoint { anchorPoint 0.5 0 0 body1 USE A body2 USE B } }")
            .c_str());
    scene.run(1.0);
    COMPARE_NEAR(scene.position("A")[0], 0.0, 0.001);
    COMPARE_NEAR(scene.position("B")[0], 1.0, 0.001);
}

void tst_RigidCollisions::bodyOfSeveralShapesFallsAsOne()
{
    RigidScene scene(
        ("Group { children [ DEF A CollidableOffset { translation 1 0 0 collidable " +
         shape("S", "Sphere { radius 0.5 }") + " } DEF B CollidableOffset { translation -1 0 0 collidable " +
         shape("T", "Sphere { radius 0.5 }") +
         " } ] } RigidBodyCollection { collider CollisionCollection { collidables [ USE A USE B " + Floor +
         " ] } bodies DEF D RigidBody { position 0 1 0 geometry [ USE A USE B ] } }")
            .c_str());
    scene.run(2.0);
    COMPARE_NEAR(scene.position("D")[1], 0.5, 0.02);
    COMPARE_NEAR(scene.vector("S", "translation")[0], 1.0, 0.02);
    COMPARE_NEAR(scene.vector("T", "translation")[0], -1.0, 0.02);
}

void tst_RigidCollisions::floorThatMovesAwayWakesSleepers()
{
    RigidScene scene(
        dropped("Box { size 1 1 1 }",
                "position 0 0.5 0 autoDisable TRUE disableLinearSpeed 0.1 disableAngularSpeed 0.1")
            .c_str());
    scene.run(2.0);
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.set("FLOOR", "translation", "0 -10 0");
    scene.run(0.5);
    QVERIFY(scene.position("B")[1] < -0.2F);
}

void tst_RigidCollisions::sensorTellsOneContact()
{
    RigidScene scene(
        (dropped("Sphere { radius 0.5 }", "position 0 0.6 0") + "DEF X CollisionSensor { collider USE C }")
            .c_str());
    scene.run(0.05);
    QVERIFY(!scene.flag("X", "isActive"));
    scene.run(1.0);
    QVERIFY(scene.flag("X", "isActive"));
    const auto& contacts = static_cast<MFNode&>(scene.field("X", "contacts"));
    QCOMPARE(int(contacts.size()), 1);
    Node& contact = *contacts.elem(0).directNode();
    const auto vector = [&contact](const char* name) {
        return static_cast<SFVec3f*>(contact.findField(name, Node::DECLARED_FSO))->value();
    };
    COMPARE_NEAR(vector("position")[1], 0.0, 0.02);
    COMPARE_NEAR(std::abs(vector("contactNormal")[1]), 1.0, 1e-4);
    const auto node = [&contact](const char* name) {
        return static_cast<SFNode*>(contact.findField(name, Node::DECLARED_FSO))->link().directNode();
    };
    QVERIFY((node("body1") == &scene.node("B")) != (node("body2") == &scene.node("B")));
    QVERIFY(node("geometry1") != node("geometry2"));
    const auto& intersections = static_cast<MFNode&>(scene.field("X", "intersections"));
    QCOMPARE(int(intersections.size()), 2);
}

void tst_RigidCollisions::sensorTellsTheEnd()
{
    RigidScene scene(
        (dropped("Sphere { radius 0.5 }", "position 0 0.5 0") + "DEF X CollisionSensor { collider USE C }")
            .c_str());
    scene.run(0.5);
    QVERIFY(scene.flag("X", "isActive"));
    scene.set("B", "position", "0 9 0");
    scene.run(0.1);
    QVERIFY(!scene.flag("X", "isActive"));
    QCOMPARE(int(static_cast<MFNode&>(scene.field("X", "intersections")).size()), 0);
    QCOMPARE(int(static_cast<MFNode&>(scene.field("X", "contacts")).size()), 0);
    scene.run(3.0);
    QVERIFY(scene.flag("X", "isActive"));
    scene.set("X", "enabled", "FALSE");
    QVERIFY(!scene.flag("X", "isActive"));
}

void tst_RigidCollisions::sensorWithoutBodiesFeelsWhatTheSceneMoves()
{
    RigidScene scene(("DEF C CollisionCollection { collidables [ " + shape("S", "Box { }") +
                      shape("T", "Box { }", "translation 5 0 0") +
                      " ] } DEF X CollisionSensor { collider USE C }")
                         .c_str());
    scene.run(0.1);
    QVERIFY(!scene.flag("X", "isActive"));
    scene.set("T", "translation", "1 0 0");
    scene.run(0.05);
    QVERIFY(scene.flag("X", "isActive"));
    // Nothing moves: no frames are asked for.
    scene.run(0.1);
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.set("T", "translation", "9 0 0");
    scene.run(0.05);
    QVERIFY(!scene.flag("X", "isActive"));
}

void tst_RigidCollisions::contactsByRouteHold()
{
    RigidScene scene(
        ("DEF C CollisionCollection { collidables [ " + Floor + shape("S", "Sphere { radius 0.5 }") +
         " ] } DEF X CollisionSensor { collider USE C } DEF R RigidBodyCollection { bodies DEF B RigidBody { "
         "position 0 1 0 geometry USE S } }")
            .c_str());
    Field& contacts = scene.field("R", "set_contacts");
    contacts.createInSlot(false);
    Route::create(*scene.field("X", "contacts").getOutSlot(true, false), *contacts._inSlot, Route::SCENE_RT);
    scene.run(3.0);
    QVERIFY(scene.flag("X", "isActive"));
    COMPARE_NEAR(scene.position("B")[1], 0.5, 0.05);
}

void tst_RigidCollisions::userMayChangeContacts()
{
    RigidScene scene(
        "DEF R RigidBodyCollection { gravity 0 0 0 bodies DEF B RigidBody { linearVelocity 0 -1 0 } } DEF K "
        "Contact { body1 USE B contactNormal 0 1 0 bounce 1 depth 0.001 }");
    scene.run(0.1);
    auto& contacts = static_cast<MFNode&>(scene.field("R", "set_contacts"));
    contacts.addNode(0.0, &scene.node("K"), Field::EXTERNAL_CT);
    scene.run(0.1);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[1], 1.0, 0.05);
    QCOMPARE(int(contacts.size()), 0);
}

void tst_RigidCollisions::changedGeometryCounts()
{
    RigidScene scene(dropped("DEF G Box { size 1 1 1 }", "position 0 0.5 0").c_str());
    scene.run(0.5);
    scene.set("G", "size", "1 1.1 1");
    scene.run(2.0);
    COMPARE_NEAR(scene.position("B")[1], 0.55, 0.01);
}

QTEST_GUILESS_MAIN(tst_RigidCollisions)
#include "tst_RigidCollisions.moc"
