#include "CoreScene.h"
#include "base/ValueFields.h"
#include "core/HAnimMotionProc.h"
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Recorded motions of humanoids.
class tst_HAnimMotion : public QObject
{
    Q_OBJECT

private slots:
    void jointsTakeThePosesOfFrames();
    void turnsFollowTheOrderOfChannels();
    void runEndsWithTheLastFrame();
    void loopBeginsAnew();
    void partOfTheFramesMayRun();
    void runMayGoBackwards();
    void framesMayBeStepped();
    void frameMayBeChosen();
    void disabledChannelsAreLeftOut();
    void disabledMotionLeavesTheJoints();
    void badFieldsAreHarmless_data();
    void badFieldsAreHarmless();

private:
    static std::string humanoid(const std::string& motion, const std::string& more = "")
    {
        return "DEF H HAnimHumanoid { skeleton DEF R HAnimJoint { name \"root\" children DEF A HAnimJoint { "
               "name \"arm\" } } motions DEF M HAnimMotion { joints \"root, arm\" " +
               motion + " } " + more + " }";
    }
    static void run(const CoreScene& scene, double seconds)
    {
        scene.runTo(seconds);
        scene.context->runFrame();
    }
    static float x(const CoreScene& scene)
    {
        return static_cast<SFVec3f&>(scene.field("R", "translation")).value()[0];
    }
};

namespace {

/// Four frames in which the root walks along x.
const std::string Walk =
    "channels \"1 Xposition 1 Zrotation\" values [ 0 0, 1 10, 2 20, 3 30 ] frameDuration 0.5 ";

} // namespace

void tst_HAnimMotion::jointsTakeThePosesOfFrames()
{
    CoreScene scene(humanoid(Walk).c_str());
    QCOMPARE(scene.get("M", "frameCount"), std::string("4"));
    run(scene, 0.25);
    QCOMPARE(x(scene), 0.0F);
    run(scene, 0.5);
    QCOMPARE(scene.get("M", "frameIndex"), std::string("1"));
    QCOMPARE(x(scene), 1.0F);
    run(scene, 1.1);
    QCOMPARE(x(scene), 2.0F);
    const Rotation& turn = static_cast<SFRotation&>(scene.field("A", "rotation")).value();
    QVERIFY(std::abs(turn.z() - 1.0F) < 1e-5F);
    QVERIFY(std::abs(turn.angle() - 20.0F * 0.017453293F) < 1e-5F);
}

void tst_HAnimMotion::turnsFollowTheOrderOfChannels()
{
    CoreScene scene(humanoid("channels \"3 Zrotation Xrotation Yrotation\" values [ 90 90 0 ]").c_str());
    const std::vector<HAnimMotionProc::Pose> poses = scene.procOf<HAnimMotionProc>("M").poses();
    QCOMPARE(poses.size(), std::size_t(2));
    QCOMPARE(poses[0].joint, std::string("root"));
    QVERIFY(!poses[1].turn);
    // About x first, as the innermost one: y turns to z, which the turn about z leaves.
    osg::Vec3f turned;
    poses[0].turn->multVec(osg::Vec3f(0, 1, 0), turned);
    QVERIFY((turned - osg::Vec3f(0, 0, 1)).length() < 1e-5F);
}

void tst_HAnimMotion::runEndsWithTheLastFrame()
{
    CoreScene scene(humanoid(Walk).c_str());
    run(scene, 60);
    QCOMPARE(x(scene), 3.0F);
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.set("M", "enabled", "FALSE");
    scene.set("M", "enabled", "TRUE");
    run(scene, 60.1);
    QCOMPARE(x(scene), 0.0F);
}

void tst_HAnimMotion::loopBeginsAnew()
{
    CoreScene scene(humanoid(Walk + "loop TRUE").c_str());
    run(scene, 1.5);
    QCOMPARE(x(scene), 3.0F);
    run(scene, 2.0);
    QCOMPARE(x(scene), 0.0F);
    QCOMPARE(scene.get("M", "cycleTime"), std::string("1002"));
    run(scene, 1e6 + 0.5);
    QCOMPARE(x(scene), 1.0F);
}

void tst_HAnimMotion::partOfTheFramesMayRun()
{
    CoreScene scene(humanoid(Walk + "startFrame 1 endFrame 2 loop TRUE").c_str());
    run(scene, 0.25);
    QCOMPARE(x(scene), 1.0F);
    run(scene, 0.5);
    QCOMPARE(x(scene), 2.0F);
    run(scene, 1.0);
    QCOMPARE(x(scene), 1.0F);
}

void tst_HAnimMotion::runMayGoBackwards()
{
    CoreScene scene(humanoid(Walk + "frameIncrement -2").c_str());
    run(scene, 0.25);
    QCOMPARE(x(scene), 3.0F);
    run(scene, 0.5);
    QCOMPARE(x(scene), 1.0F);
    run(scene, 1.0);
    QCOMPARE(x(scene), 0.0F); // no farther than the end
}

void tst_HAnimMotion::framesMayBeStepped()
{
    CoreScene scene(humanoid(Walk + "frameIncrement 0").c_str());
    scene.set("M", "next", "TRUE");
    run(scene, 0.1);
    QCOMPARE(x(scene), 1.0F);
    scene.set("M", "previous", "TRUE");
    scene.set("M", "previous", "TRUE");
    run(scene, 0.2);
    QCOMPARE(x(scene), 3.0F);
    scene.set("M", "next", "FALSE");
    run(scene, 9);
    QCOMPARE(x(scene), 3.0F);
}

void tst_HAnimMotion::frameMayBeChosen()
{
    CoreScene scene(humanoid(Walk + "frameIncrement 0").c_str());
    scene.set("M", "frameIndex", "2");
    run(scene, 0.1);
    QCOMPARE(x(scene), 2.0F);
    scene.set("M", "frameIndex", "2147483647");
    run(scene, 0.2);
    QCOMPARE(x(scene), 3.0F);
}

void tst_HAnimMotion::disabledChannelsAreLeftOut()
{
    CoreScene scene(humanoid(Walk + "channelsEnabled [ FALSE TRUE ]").c_str());
    run(scene, 1.5);
    QCOMPARE(x(scene), 0.0F);
    QVERIFY(static_cast<SFRotation&>(scene.field("A", "rotation")).value().angle() > 0.5F);
}

void tst_HAnimMotion::disabledMotionLeavesTheJoints()
{
    CoreScene scene(humanoid(Walk, "motionsEnabled FALSE").c_str());
    run(scene, 1.5);
    QCOMPARE(x(scene), 0.0F);
    CoreScene off(humanoid(Walk + "enabled FALSE").c_str());
    run(off, 1.5);
    QCOMPARE(x(off), 0.0F);
}

void tst_HAnimMotion::badFieldsAreHarmless_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<int>("messages");
    QTest::newRow("nothing") << QString() << 0;
    QTest::newRow("no values") << QStringLiteral("channels \"1 Xposition\"") << 0;
    QTest::newRow("no counts") << QStringLiteral("channels \"Xposition\" values 5") << 1;
    QTest::newRow("more joints than names")
        << QStringLiteral("channels \"1 Xposition 1 Xposition 9 Xposition\" values [ 1 2 3 ]") << 0;
    QTest::newRow("huge count") << QStringLiteral(
                                       "channels \"99999999999999999999 Xposition\" values [ 1 2 3 ]")
                                << 0;
    QTest::newRow("unknown channels") << QStringLiteral("channels \"2 Wobble Xscale\" values [ 1 2 3 ]") << 0;
    QTest::newRow("frames out of range")
        << QStringLiteral(
               "channels \"1 Xposition\" values [ 1 2 3 ] startFrame 2147483647 endFrame 2147483647 "
               "frameIndex 77 frameIncrement -2147483648 loop TRUE")
        << 0;
    QTest::newRow("no duration") << QStringLiteral(
                                        "channels \"1 Xposition\" values [ 1 2 3 ] frameDuration 0")
                                 << 0;
    QTest::newRow("short duration")
        << QStringLiteral("channels \"1 Xposition\" values [ 1 2 3 ] frameDuration 1e-300 loop TRUE") << 0;
    QTest::newRow("huge values") << QStringLiteral("channels \"1 Xrotation\" values [ 1e38 -1e38 ] loop TRUE")
                                 << 0;
}

void tst_HAnimMotion::badFieldsAreHarmless()
{
    QFETCH(QString, fields);
    QFETCH(int, messages);
    CoreScene scene(humanoid(fields.toStdString()).c_str());
    for (int i = 1; i < 6; ++i)
        run(scene, i * 0.3);
    run(scene, 1e9);
    QCOMPARE(int(scene.messageCount()), messages);
    QVERIFY(std::isfinite(x(scene)));
}

QTEST_GUILESS_MAIN(tst_HAnimMotion)
#include "tst_HAnimMotion.moc"
