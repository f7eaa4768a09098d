#include "Numbers.h"
#include "RigidScene.h"
#include <Orvane/MFNode.h>

using namespace Orvane;

/// What joints allow, and what they tell.
class tst_RigidJoints : public QObject
{
    Q_OBJECT

private slots:
    void pendulumSwingsInItsPeriod();
    void ballHoldsTheAnchor();
    void hingeTurnsAboutItsAxis();
    void hingeStopsAtItsLimit();
    void hingeBetweenTwoBodies();
    void sliderMovesAlongItsAxisBetweenStops();
    void sliderForcePushes();
    void universalTurnsAboutTwoAxes();
    void wheelIsDriven();
    void motorTorqueTurns();
    void motorCalculatesAngles();
    void onlyWantedValuesAreTold();
    void jointComesAndGoes();
    void everyJointStandsBadInput_data();
    void everyJointStandsBadInput();
};

namespace {

/// Collections without gravity, joints that tell all.
std::string joined(const char* joint, const char* bodies, const char* gravity = "0 0 0")
{
    return std::string("RigidBodyCollection { gravity ") + gravity + " errorCorrection 0.8 bodies [ " +
           bodies + " ] joints [ " + joint + " ] }";
}

} // namespace

void tst_RigidJoints::pendulumSwingsInItsPeriod()
{
    // A point mass on a hinge, 1 m below it, let go at a small angle.
    const double angle = 0.1;
    const std::string place = textOf(std::sin(angle)) + " " + textOf(-std::cos(angle)) + " 0";
    RigidScene scene(
        joined("DEF J SingleAxisHingeJoint { axis 0 0 1 body1 USE B forceOutput \"ALL\" }",
               ("DEF B RigidBody { inertia 0.001 0 0 0 0.001 0 0 0 0.001 position " + place + " }").c_str(),
               "0 -9.8 0")
            .c_str());
    // Counts the times at which it passes the middle.
    std::vector<double> passes;
    double before = scene.position("B")[0];
    for (int i = 1; i <= 60 * 10; ++i) {
        scene.run(1.0 / 60.0);
        const double now = scene.position("B")[0];
        if (before > 0.0 && now <= 0.0)
            passes.push_back((i - 1 + before / (before - now)) / 60.0);
        before = now;
    }
    QVERIFY(passes.size() >= 4);
    const double period = (passes.back() - passes.front()) / static_cast<double>(passes.size() - 1);
    COMPARE_NEAR(period, 2.0 * M_PI * std::sqrt(1.0 / 9.8), 0.02);
}

void tst_RigidJoints::ballHoldsTheAnchor()
{
    RigidScene scene(
        joined("DEF J BallJoint { anchorPoint 0 1 0 body1 USE B forceOutput [ \"body1AnchorPoint\", "
               "\"body2AnchorPoint\" ] }",
               "DEF B RigidBody { position 1 1 0 linearVelocity 0 0 1 }", "0 -9.8 0")
            .c_str());
    for (int i = 0; i < 20; ++i) {
        scene.run(0.1);
        const osg::Vec3f arm = scene.position("B") - osg::Vec3f(0.0F, 1.0F, 0.0F);
        COMPARE_NEAR(arm.length(), 1.0, 0.02);
        // In the system of each body: where it was tied, and what never moves.
        COMPARE_NEAR(scene.vector("J", "body1AnchorPoint")[0], -1.0, 0.02);
        COMPARE_NEAR(scene.vector("J", "body2AnchorPoint")[1], 1.0, 0.02);
    }
}

void tst_RigidJoints::hingeTurnsAboutItsAxis()
{
    RigidScene scene(joined("DEF J SingleAxisHingeJoint { axis 0 2 0 body1 USE B forceOutput \"ALL\" }",
                            "DEF B RigidBody { angularVelocity 1 1 1 }")
                         .c_str());
    scene.run(1.0);
    COMPARE_NEAR(scene.number("J", "angle"), 1.0, 0.02);
    COMPARE_NEAR(scene.number("J", "angleRate"), 1.0, 0.02);
    COMPARE_NEAR(scene.vector("B", "angularVelocity")[0], 0.0, 0.02);
    COMPARE_NEAR(std::abs(scene.rotation("B", "orientation").y()), 1.0, 0.001);
}

void tst_RigidJoints::hingeStopsAtItsLimit()
{
    RigidScene scene(joined("DEF J SingleAxisHingeJoint { axis 0 0 1 body1 USE B minAngle -0.5 maxAngle 0.5 "
                            "forceOutput \"angle\" }",
                            "DEF B RigidBody { torques [ 0 0 1 ] }")
                         .c_str());
    scene.run(3.0);
    COMPARE_NEAR(scene.number("J", "angle"), 0.5, 0.02);
    scene.set("B", "torques", "0 0 -1");
    scene.run(3.0);
    COMPARE_NEAR(scene.number("J", "angle"), -0.5, 0.02);
    scene.set("J", "minAngle", "-1");
    scene.run(3.0);
    COMPARE_NEAR(scene.number("J", "angle"), -1.0, 0.02);
}

void tst_RigidJoints::hingeBetweenTwoBodies()
{
    RigidScene scene(
        joined("DEF J SingleAxisHingeJoint { axis 0 0 1 anchorPoint 1 0 0 body1 USE A body2 USE B "
               "forceOutput \"ALL\" }",
               "DEF A RigidBody { torques [ 0 0 0.5 ] } DEF B RigidBody { position 2 0 0 torques [ 0 0 "
               "-0.5 ] }")
            .c_str());
    scene.run(0.5);
    const osg::Vec3f a = scene.vector("J", "body1AnchorPoint");
    const osg::Vec3f b = scene.vector("J", "body2AnchorPoint");
    COMPARE_NEAR(a[0], 1.0, 0.01);
    COMPARE_NEAR(b[0], -1.0, 0.01);
    COMPARE_NEAR(scene.number("J", "angle"), 0.125, 0.01);
    // What they do to each other leaves their common centre where it was.
    COMPARE_NEAR(scene.position("A")[0] + scene.position("B")[0], 2.0, 0.01);
}

void tst_RigidJoints::sliderMovesAlongItsAxisBetweenStops()
{
    RigidScene scene(joined("DEF J SliderJoint { axis 1 0 0 body1 USE B minSeparation -0.5 maxSeparation 2 "
                            "forceOutput \"ALL\" }",
                            "DEF B RigidBody { forces [ 3 5 0 ] torques [ 1 1 1 ] }")
                         .c_str());
    scene.run(3.0);
    COMPARE_NEAR(scene.position("B")[0], 2.0, 0.03);
    COMPARE_NEAR(scene.position("B")[1], 0.0, 0.03);
    COMPARE_NEAR(scene.number("J", "separation"), 2.0, 0.03);
    COMPARE_NEAR(scene.rotation("B", "orientation").angle(), 0.0, 0.03);
    scene.set("B", "forces", "-3 0 0");
    scene.run(3.0);
    COMPARE_NEAR(scene.position("B")[0], -0.5, 0.03);
}

void tst_RigidJoints::sliderForcePushes()
{
    RigidScene scene(
        joined("DEF J SliderJoint { axis 0 0 1 body1 USE A body2 USE B sliderForce 2 maxSeparation 100 "
               "forceOutput \"separationRate\" }",
               "DEF A RigidBody { } DEF B RigidBody { position 0 0 -1 }")
            .c_str());
    scene.run(1.0);
    // In equal and opposite directions.
    COMPARE_NEAR(scene.vector("A", "linearVelocity")[2], 2.0, 0.05);
    COMPARE_NEAR(scene.vector("B", "linearVelocity")[2], -2.0, 0.05);
    COMPARE_NEAR(scene.number("J", "separationRate"), 4.0, 0.1);
}

void tst_RigidJoints::universalTurnsAboutTwoAxes()
{
    RigidScene scene(
        joined("DEF J UniversalJoint { axis1 1 0 0 axis2 0 1 0 body1 USE B forceOutput \"ALL\" }",
               "DEF B RigidBody { torques [ 0 0 2 ] }")
            .c_str());
    scene.run(1.0);
    // Not about the third one.
    COMPARE_NEAR(scene.rotation("B", "orientation").angle(), 0.0, 0.02);
    COMPARE_NEAR(scene.vector("J", "body1Axis")[0], 1.0, 0.01);
    COMPARE_NEAR(scene.vector("J", "body2Axis")[1], 1.0, 0.01);
    scene.set("B", "torques", "2 0 0");
    scene.run(0.5);
    QVERIFY(scene.rotation("B", "orientation").angle() > 0.1F);
}

void tst_RigidJoints::wheelIsDriven()
{
    RigidScene scene(
        joined("DEF J DoubleAxisHingeJoint { axis1 0 1 0 axis2 0 0 1 anchorPoint 1 0 0 body1 USE CAR "
               "body2 USE WHEEL desiredAngularVelocity2 3 maxTorque2 50 minAngle1 0 maxAngle1 0 "
               "forceOutput \"ALL\" }",
               "DEF CAR RigidBody { fixed TRUE } DEF WHEEL RigidBody { position 1 0 0 }")
            .c_str());
    scene.run(1.0);
    COMPARE_NEAR(std::abs(scene.vector("WHEEL", "angularVelocity")[2]), 3.0, 0.1);
    COMPARE_NEAR(std::abs(scene.number("J", "hinge2AngleRate")), 3.0, 0.1);
    COMPARE_NEAR(scene.number("J", "hinge1Angle"), 0.0, 0.02);
    COMPARE_NEAR(scene.position("WHEEL")[0], 1.0, 0.02);
    scene.set("J", "desiredAngularVelocity2", "0");
    scene.run(1.0);
    COMPARE_NEAR(scene.vector("WHEEL", "angularVelocity")[2], 0.0, 0.1);
}

void tst_RigidJoints::motorTorqueTurns()
{
    RigidScene scene(
        joined("DEF J MotorJoint { enabledAxes 1 motor1Axis 0 1 0 axis1Torque 2 body1 USE B forceOutput "
               "[ \"motor1AngleRate\" ] }",
               "DEF B RigidBody { }")
            .c_str());
    scene.run(1.0);
    COMPARE_NEAR(scene.vector("B", "angularVelocity")[1], 2.0, 0.05);
    COMPARE_NEAR(scene.number("J", "motor1AngleRate"), 2.0, 0.05);
}

void tst_RigidJoints::motorCalculatesAngles()
{
    RigidScene scene(joined("DEF J MotorJoint { autoCalc TRUE body1 USE B motor1Axis 0 1 0 motor3Axis 0 0 1 "
                            "forceOutput \"ALL\" }",
                            "DEF B RigidBody { angularVelocity 0 0.5 0 }")
                         .c_str());
    scene.run(1.0);
    COMPARE_NEAR(std::abs(scene.number("J", "motor1Angle")), 0.5, 0.02);
    COMPARE_NEAR(scene.number("J", "motor2Angle"), 0.0, 0.02);
}

void tst_RigidJoints::onlyWantedValuesAreTold()
{
    RigidScene scene(joined("DEF J SingleAxisHingeJoint { body1 USE B forceOutput \"angleRate\" }",
                            "DEF B RigidBody { angularVelocity 0 1 0 }")
                         .c_str());
    scene.run(0.5);
    QCOMPARE(scene.number("J", "angle"), 0.0F);
    COMPARE_NEAR(scene.number("J", "angleRate"), 1.0, 0.01);
    scene.set("J", "forceOutput", "\"NONE\"");
    scene.set("B", "angularVelocity", "0 2 0");
    scene.run(0.5);
    COMPARE_NEAR(scene.number("J", "angleRate"), 1.0, 0.01);
    scene.set("J", "forceOutput", "\"ALL\"");
    scene.run(0.5);
    COMPARE_NEAR(scene.number("J", "angleRate"), 2.0, 0.01);
    QVERIFY(scene.number("J", "angle") > 1.0F);
}

void tst_RigidJoints::jointComesAndGoes()
{
    RigidScene scene("DEF J BallJoint { anchorPoint 0 0 0 body1 DEF B RigidBody { position 1 0 0 } }"
                     "DEF C RigidBodyCollection { bodies USE B }");
    auto& joints = static_cast<MFNode&>(scene.field("C", "joints"));
    joints.addNode(0.0, &scene.node("J"), Field::EXTERNAL_CT);
    scene.run(1.0);
    COMPARE_NEAR(scene.position("B").length(), 1.0, 0.02);
    joints.removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.run(1.0);
    QVERIFY(scene.position("B").length() > 2.0F);
}

void tst_RigidJoints::everyJointStandsBadInput_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("fields");
    for (const char* type : {"BallJoint", "DoubleAxisHingeJoint", "MotorJoint", "SingleAxisHingeJoint",
                             "SliderJoint", "UniversalJoint"})
    {
        for (const char* fields :
             {"", "body1 USE A", "body2 USE A", "body1 USE A body2 USE A", "body1 USE A body2 USE B",
              "body1 RigidBody { } body2 USE B", "body1 USE F body2 USE F2"})
            QTest::addRow("%s %s", type, fields) << QByteArray(type) << QByteArray(fields);
    }
}

void tst_RigidJoints::everyJointStandsBadInput()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, fields);
    RigidScene scene(
        joined(("DEF J " + type + " { forceOutput \"ALL\" " + fields + " }").constData(),
               "DEF A RigidBody { } DEF B RigidBody { position 1 0 0 } DEF F RigidBody { fixed TRUE } DEF "
               "F2 RigidBody { fixed TRUE }",
               "0 -9.8 0")
            .c_str());
    scene.run(0.1);
    Node& joint = scene.node("J");
    for (unsigned int i = 0; i < joint.partDescCount(); ++i) {
        Field& field = *joint.findField(i);
        if (field.partType() != EXPOSEDFIELDP)
            continue;
        if (field.dataType() == SFVEC3F_DT) {
            for (const osg::Vec3f& v : {osg::Vec3f(0.0F, 0.0F, 0.0F), osg::Vec3f(1e30F, 0.0F, 0.0F),
                                        osg::Vec3f(std::nanf(""), 1.0F, 0.0F)})
            {
                static_cast<SFVec3f&>(field).setValue(0.0, v, Field::EXTERNAL_CT);
                scene.run(0.05);
            }
        } else if (field.dataType() == SFFLOAT_DT) {
            for (const float v : {0.0F, -1e38F, 1e38F, std::nanf("")}) {
                static_cast<SFFloat&>(field).setValue(0.0, v, Field::EXTERNAL_CT);
                scene.run(0.05);
            }
        } else if (field.dataType() == SFINT32_DT) {
            for (const char* v : {"-5", "0", "3", "2000000000"}) {
                field.setValueByStr(0.0, v);
                scene.run(0.05);
            }
        } else if (field.dataType() == SFBOOL_DT) {
            field.setValueByStr(0.0, "TRUE");
            scene.run(0.05);
        }
    }
    for (const char* body : {"A", "B"}) {
        for (osg::UInt32 i = 0; i < 3; ++i)
            QVERIFY(std::abs(scene.position(body)[i]) <= 2e7F);
    }
}

QTEST_GUILESS_MAIN(tst_RigidJoints)
#include "tst_RigidJoints.moc"
