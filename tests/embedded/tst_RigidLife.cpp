#include "Numbers.h"
#include "RigidScene.h"
#include <Orvane/MFNode.h>
#include <Orvane/SFNode.h>
#include <random>

using namespace Orvane;

/// Nodes of a running simulation that come and go in any order, shapes that are none, and scenes as authors
/// write them.
class tst_RigidLife : public QObject
{
    Q_OBJECT

private slots:
    void anyNodeMayDie_data();
    void anyNodeMayDie();
    void nodesDieInAnyOrder();
    void sceneIsReplaced();
    void shapesWithoutSizeMeetNothing_data();
    void shapesWithoutSizeMeetNothing();
    void ringsOfCollidablesEnd();
    void manySpacesInsideEachOtherEnd();
    void scenesOfAuthorsRun_data();
    void scenesOfAuthorsRun();
    void prototypesMayHoldBodies();
    void randomScenesStaySound();
    void towerOfTheExamplesFalls();
};

namespace {

const char* const Machine =
    "Group { children [ DEF SA CollidableShape { shape DEF SHA Shape { geometry DEF GA Box { size 1 1 1 } } "
    "} DEF O "
    "CollidableOffset { collidable DEF SB CollidableShape { shape Shape { geometry DEF GB Sphere { radius "
    "0.5 } } } } DEF "
    "FLOOR CollidableShape { translation 0 -1 0 shape Shape { geometry DEF GF Box { size 9 1 9 } } } ] }"
    "DEF C CollisionCollection { collidables [ USE SA USE O DEF P CollisionSpace { collidables USE FLOOR } ] "
    "}"
    "DEF X CollisionSensor { collider USE C }"
    "DEF R RigidBodyCollection { collider USE C bodies [ DEF A RigidBody { geometry USE SA massDensityModel "
    "DEF M Box { } } "
    "DEF B RigidBody { position 1.5 0.5 0 geometry USE O } ] joints [ DEF J SingleAxisHingeJoint { body1 USE "
    "A body2 USE B "
    "forceOutput \"ALL\" } DEF K MotorJoint { body1 USE B axis1Torque 1 forceOutput \"ALL\" } ] }";

const char* const Names[] = {"SA", "SHA", "GA", "O", "SB", "GB", "FLOOR", "GF", "C",
                             "P",  "X",   "R",  "A", "M",  "B",  "J",     "K"};

/// Takes a node out of all fields that hold it, so that it dies.
void unlink(const RigidScene& scene, const char* name)
{
    Node* const node = NodeNameSpace::findNode(scene.root()->nameSpace(), name);
    if (!node)
        return;
    const UInt64 id = node->ID();
    for (const char* holder : Names) {
        Node* const other = NodeNameSpace::findNode(scene.root()->nameSpace(), holder);
        for (unsigned int i = 0; other && i < other->partDescCount(); ++i) {
            Field* const field = other->findField(i);
            if (field->dataType() == SFNODE_DT && static_cast<SFNode*>(field)->link().directNode() == node) {
                static_cast<SFNode*>(field)->setNode(0.0, nullptr, Field::EXTERNAL_CT);
            } else if (field->dataType() == MFNODE_DT) {
                auto* const list = static_cast<MFNode*>(field);
                for (int k = static_cast<int>(list->size()); k-- > 0;) {
                    if (list->elem(k).directNode() == node)
                        list->removeNode(0.0, k, Field::EXTERNAL_CT);
                }
            }
        }
    }
    if (Node::findNode(id) == node)
        delete node;
}

} // namespace

void tst_RigidLife::anyNodeMayDie_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<bool>("hard");
    for (const char* name : Names) {
        QTest::addRow("%s unlinked", name) << QByteArray(name) << false;
        QTest::addRow("%s deleted", name) << QByteArray(name) << true;
    }
}

void tst_RigidLife::anyNodeMayDie()
{
    QFETCH(QByteArray, name);
    QFETCH(bool, hard);
    RigidScene scene(Machine);
    scene.run(0.2);
    if (hard)
        delete &scene.node(name.constData());
    else
        unlink(scene, name.constData());
    scene.run(0.5);
    QVERIFY(!NodeNameSpace::findNode(scene.root()->nameSpace(), name.constData()));
}

void tst_RigidLife::nodesDieInAnyOrder()
{
    std::mt19937 chance(7);
    for (int round = 0; round < 60; ++round) {
        RigidScene scene(Machine);
        scene.run(0.1);
        std::vector<const char*> names(std::begin(Names), std::end(Names));
        std::shuffle(names.begin(), names.end(), chance);
        for (const char* name : names) {
            if (chance() % 2 == 0)
                unlink(scene, name);
            else if (Node* const node = NodeNameSpace::findNode(scene.root()->nameSpace(), name))
                delete node;
            if (chance() % 2 == 0)
                scene.run(1.0 / 60.0);
        }
        scene.run(0.1);
    }
}

void tst_RigidLife::sceneIsReplaced()
{
    RigidScene scene(Machine);
    scene.run(0.2);
    const std::string text = std::string("#X3D V4.0 utf8\nPROFILE Immersive\n") + Machine;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(scene.context->load("machine.x3dv", text, Context::REPLACE_LT, std::string()));
        scene.run(0.2);
    }
    QVERIFY(!(scene.position("B") == osg::Vec3f(1.5F, 0.5F, 0.0F)));
}

void tst_RigidLife::shapesWithoutSizeMeetNothing_data()
{
    QTest::addColumn<QByteArray>("geometry");
    for (const char* geometry :
         {"Box { size 0 0 0 }",
          "Box { size -1 -1 -1 }",
          "Box { size 1e38 1e38 1e38 }",
          "Sphere { radius 0 }",
          "Sphere { radius -2 }",
          "Sphere { radius 1e38 }",
          "Cylinder { radius 0 height 0 }",
          "Cone { bottomRadius 0 }",
          "Cone { bottomRadius 1e38 height 1e38 }",
          "Cone { bottomRadius 0.0001 height 100000 }",
          "IndexedFaceSet { }",
          "IndexedFaceSet { coord Coordinate { point [ 0 0 0, 0 0 0, 0 0 0 ] } coordIndex [ 0 1 2 ] }",
          "IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0, 2 0 0 ] } coordIndex [ 0 1 2 ] }",
          "IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1e38 0 0, 0 0 1e38 ] } coordIndex [ 0 1 2 ] }",
          "IndexedFaceSet { coord Coordinate { point [ 0 0 0, 1 0 0 ] } coordIndex [ 0 7 -9 2 -1 1 ] }",
          "TriangleSet { coord Coordinate { point [ 0 0 0, 1 0 0, 0 0 1, 0 0 0, 1 0 0, 0 0 1, 0 0 0, 0 0 1, "
          "1 0 0 ] } }",
          "ElevationGrid { xDimension 2 zDimension 2 height [ 0 0 0 0 ] xSpacing 0 zSpacing 0 }",
          "IndexedLineSet { coord Coordinate { point [ 0 0 0, 1 0 0 ] } coordIndex [ 0 1 ] }",
          "PointSet { coord Coordinate { point [ 0 0 0 ] } }",
          "Text { string \"falls\" }",
          "Rectangle2D { }"})
        QTest::addRow("%.60s", geometry) << QByteArray(geometry);
}

void tst_RigidLife::shapesWithoutSizeMeetNothing()
{
    QFETCH(QByteArray, geometry);
    RigidScene scene(
        ("DEF X CollisionSensor { collider DEF C CollisionCollection { collidables [ DEF S CollidableShape { "
         "shape Shape { geometry " +
         geometry +
         " } } DEF T CollidableShape { translation 0.1 0.1 0 shape Shape { geometry Box { } } } DEF U "
         "CollidableShape { translation 0 -0.2 0 shape Shape { geometry IndexedFaceSet { coord Coordinate { "
         "point [ -9 0 9, 9 0 9, 9 0 -9 ] } coordIndex [ 0 1 2 ] } } } DEF V CollidableShape { shape Shape { "
         "geometry Cylinder { } } } DEF W CollidableShape { shape Shape { geometry Cone { } } } ] } } "
         "RigidBodyCollection { collider USE C bodies [ DEF B RigidBody { geometry USE S } RigidBody { "
         "geometry USE T } RigidBody { geometry USE V } RigidBody { geometry USE W } ] }")
            .constData());
    scene.run(0.5);
    for (osg::UInt32 i = 0; i < 3; ++i)
        QVERIFY(std::abs(scene.position("B")[i]) <= 2e7F);
}

void tst_RigidLife::ringsOfCollidablesEnd()
{
    RigidScene scene(
        "DEF P CollisionSpace { collidables DEF Q CollisionSpace { } } DEF C CollisionCollection { "
        "collidables [ USE P DEF O CollidableOffset { collidable DEF N CollidableOffset { } } ] } "
        "RigidBodyCollection { collider USE C bodies DEF B RigidBody { geometry USE O } }");
    static_cast<MFNode&>(scene.field("Q", "collidables")).addNode(0.0, &scene.node("P"), Field::EXTERNAL_CT);
    static_cast<SFNode&>(scene.field("N", "collidable")).setNode(0.0, &scene.node("O"), Field::EXTERNAL_CT);
    scene.run(0.3);
    QVERIFY(scene.position("B")[1] < -0.1F);
    static_cast<MFNode&>(scene.field("Q", "collidables")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    static_cast<SFNode&>(scene.field("N", "collidable")).setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.run(0.1);
}

void tst_RigidLife::manySpacesInsideEachOtherEnd()
{
    // Each space holds the next one twice: without memory, 2^40 ways.
    std::string text = "DEF C CollisionCollection { collidables DEF P0 CollisionSpace { } }";
    for (int i = 1; i <= 40; ++i)
        text += "DEF P" + std::to_string(i) + " CollisionSpace { }";
    RigidScene scene((text + "CollisionSensor { collider USE C }").c_str());
    for (int i = 0; i < 40; ++i) {
        auto& list = static_cast<MFNode&>(scene.field(("P" + std::to_string(i)).c_str(), "collidables"));
        for (int k = 0; k < 2; ++k)
            list.addNode(0.0, &scene.node(("P" + std::to_string(i + 1)).c_str()), Field::EXTERNAL_CT);
    }
    scene.run(0.1);
}

void tst_RigidLife::scenesOfAuthorsRun_data()
{
    QTest::addColumn<QByteArray>("scene");
    QTest::addColumn<double>("height"); // of B after 3 s
    const QByteArray materials = "<Appearance><Material diffuseColor='1 0 0'/></Appearance>";
    const QByteArray box = "<Shape containerField='shape'>" + materials + "<Box size='1 1 1'/></Shape>";
    const QByteArray floor = "<Shape containerField='shape'><Box size='10 1 10'/></Shape>";
    QTest::newRow("all inside of the collections")
        << QByteArray("<RigidBodyCollection><RigidBody DEF='B' containerField='bodies' position='0 3 "
                      "0'><CollidableShape DEF='S' "
                      "containerField='geometry'>" +
                      box +
                      "</CollidableShape></RigidBody><CollisionCollection "
                      "containerField='collider'><CollidableShape USE='S' "
                      "containerField='collidables'/><CollidableShape containerField='collidables'>" +
                      floor + "</CollidableShape></CollisionCollection></RigidBodyCollection>")
        << 1.0;
    QTest::newRow("shapes in transforms, collections at the root")
        << QByteArray(
               "<Transform translation='0 0 0'><CollidableShape DEF='S'>" + box +
               "</CollidableShape></Transform><Group><CollidableShape DEF='F' translation='0 -2 0'>" + floor +
               "</CollidableShape></Group><CollisionCollection DEF='C'><CollidableShape USE='S' "
               "containerField='collidables'/><CollidableShape USE='F' containerField='collidables'/>"
               "</CollisionCollection><RigidBodyCollection><CollisionCollection USE='C' "
               "containerField='collider'/>"
               "<RigidBody DEF='B' containerField='bodies'><CollidableShape USE='S' "
               "containerField='geometry'/>"
               "<Box containerField='massDensityModel' size='1 1 1'/></RigidBody></RigidBodyCollection>")
        << -1.0;
    QTest::newRow("routes to transforms")
        << QByteArray(
               "<Transform DEF='T'><Shape>" + materials +
               "<Sphere radius='0.5'/></Shape></Transform><Transform DEF='N'/><RigidBodyCollection DEF='R' "
               "gravity='0 -1 0'><RigidBody DEF='B' containerField='bodies' mass='2' position='0 9 0'/>"
               "</RigidBodyCollection><ROUTE fromNode='B' fromField='position_changed' toNode='T' "
               "toField='set_translation'/><ROUTE fromNode='B' fromField='orientation' toNode='T' "
               "toField='rotation'/>"
               "<ROUTE fromNode='B' fromField='position' toNode='N' toField='scale'/>")
        << 4.5;
    QTest::newRow("fixed floor, collider before bodies, default container fields")
        << QByteArray(
               "<RigidBodyCollection><CollisionCollection containerField='collider' bounce='0.2' "
               "frictionCoefficients='0.3 0.3' appliedParameters='\"BOUNCE\" "
               "\"FRICTION_COEFFICIENT-2\"'><CollidableShape "
               "DEF='S' containerField='collidables'>" +
               box + "</CollidableShape><CollidableShape DEF='F' containerField='collidables'>" + floor +
               "</CollidableShape></CollisionCollection><RigidBody fixed='true' position='0 1 "
               "0'><CollidableShape USE='F' "
               "containerField='geometry'/></RigidBody><RigidBody DEF='B' position='0 4 0'><CollidableShape "
               "USE='S' "
               "containerField='geometry'/></RigidBody></RigidBodyCollection>")
        << 2.0;
    QTest::newRow("hinge to a fixed body")
        << QByteArray(
               "<RigidBodyCollection><RigidBody DEF='A' fixed='true'/><RigidBody DEF='B' position='0 -1 0'/>"
               "<SingleAxisHingeJoint containerField='joints' axis='0 0 1' forceOutput='\"ALL\"'><RigidBody "
               "USE='A' "
               "containerField='body1'/><RigidBody USE='B' containerField='body2'/></SingleAxisHingeJoint>"
               "</RigidBodyCollection>")
        << -1.0;
}

void tst_RigidLife::scenesOfAuthorsRun()
{
    QFETCH(QByteArray, scene);
    QFETCH(double, height);
    RigidScene world("");
    const std::string text =
        "<X3D profile='Immersive' version='4.0'><head><component name='RigidBodyPhysics' "
        "level='5'/></head><Scene>" +
        scene.toStdString() + "</Scene></X3D>";
    QVERIFY(world.context->load("authors.x3d", text, Context::REPLACE_LT, std::string()));
    world.context->runFrame();
    world.run(3.0);
    for (const LoadMessage& message : world.context->loadReport().messages)
        qWarning("%s", message.text.c_str());
    QCOMPARE(int(world.messageCount()), 0);
    COMPARE_NEAR(world.position("B")[1], height, 0.1);
}

void tst_RigidLife::prototypesMayHoldBodies()
{
    RigidScene world("");
    const std::string text =
        "#X3D V4.0 utf8\nPROFILE Immersive\n"
        "PROTO Ball [ inputOutput SFVec3f at 0 0 0 ] { DEF IN RigidBody { position IS at } }\n"
        "PROTO Solid [ ] { CollidableShape { shape Shape { geometry Sphere { radius 0.5 } } } }\n"
        "DEF S Solid { }\n"
        "DEF R RigidBodyCollection { bodies DEF B Ball { at 0 5 0 } collider CollisionCollection { "
        "collidables [ USE S ] } "
        "}\n";
    QVERIFY(world.context->load("proto.x3dv", text, Context::REPLACE_LT, std::string()));
    world.context->runFrame();
    world.run(0.5);
    QVERIFY(world.vector("B", "at")[1] < 4.5F);
}

void tst_RigidLife::randomScenesStaySound()
{
    const char* const geometries[] = {
        "Box { size 1 1 1 }",
        "Sphere { radius 0.6 }",
        "Cylinder { radius 0.4 height 1 }",
        "Cone { bottomRadius 0.5 height 1 }",
        "Box { size 3 0 2 }",
        "IndexedFaceSet { coord Coordinate { point [ -0.5 -0.5 -0.5, 0.5 -0.5 -0.5, 0 -0.5 "
        "0.5, 0 0.5 0 ] } coordIndex [ 0 1 2 -1 0 3 1 -1 1 3 2 -1 2 3 0 ] }",
        "Extrusion { spine [ 0 -0.5 0, 0.2 0 0, 0 0.5 0 ] }"};
    std::mt19937 chance(11);
    for (int round = 0; round < 12; ++round) {
        std::string shapes =
            "CollidableShape { translation 0 -1 0 shape Shape { geometry Box { size 30 1 30 } } }";
        std::string bodies;
        const auto place = [&chance] { return textOf(static_cast<int>(chance() % 300) / 100.0 - 1.5); };
        for (int i = 0; i < 24; ++i) {
            const std::string number = std::to_string(i);
            shapes += " DEF S" + number + " CollidableShape { shape Shape { geometry " +
                      geometries[chance() % 7] + " } }";
            bodies += " DEF B" + number + " RigidBody { position " + place() + " " + place() + " " + place() +
                      " geometry USE S" + number + " }";
        }
        RigidScene scene(("RigidBodyCollection { preferAccuracy TRUE collider CollisionCollection { "
                          "frictionCoefficients 1 "
                          "1 collidables [ " +
                          shapes + " ] } bodies [ " + bodies + " ] }")
                             .c_str());
        scene.run(2.0);
        for (int i = 0; i < 24; ++i) {
            const osg::Vec3f at = scene.position(("B" + std::to_string(i)).c_str());
            for (osg::UInt32 k = 0; k < 3; ++k)
                QVERIFY2(std::abs(at[k]) < 1000.0F, qPrintable(QString::number(at[k])));
        }
        QCOMPARE(int(scene.messageCount()), 0);
    }
}

void tst_RigidLife::towerOfTheExamplesFalls()
{
    RigidScene scene("");
    const std::string file = qgetenv("ORVANE_SOURCE_DIR").toStdString() + "/examples/scenes/tower.x3d";
    QVERIFY(scene.context->load(file, Context::REPLACE_LT, std::string()));
    scene.context->runFrame();
    const osg::Vec3f top = scene.position("Brick51");
    scene.run(0.3);
    // The tower stands by itself.
    QVERIFY((scene.position("Brick51") - top).length() < 0.05F);
    scene.run(3.0);
    QVERIFY((scene.position("Brick51") - top).length() > 0.5F);
    scene.run(20.0);
    for (int i = 0; i < 3; ++i)
        QVERIFY(scene.position(("Brick5" + std::to_string(i)).c_str())[1] > 0.1F);
}

QTEST_GUILESS_MAIN(tst_RigidLife)
#include "tst_RigidLife.moc"
