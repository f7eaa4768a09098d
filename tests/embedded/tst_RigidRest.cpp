#include "Numbers.h"
#include "RigidScene.h"
#include <QtTest>
#include <string>

using namespace Orvane;

/// Many bodies that come to rest, and fall asleep when the scene asks for it.
class tst_RigidRest : public QObject
{
    Q_OBJECT

private slots:
    void manyRestingBoxesSleep();
    void heapSleeps();
    void bodiesDecideForThemselves();
    void withoutAutoDisableNothingSleeps();
    void limitsOfZeroKeepBodiesAwake();
    void fasterBodyStaysAwake();
    void disableTimeIsWaitedFor();
    void thrownBodyDoesNotSleepAtItsHighestPoint();
    void sleeperWakesWhenItIsHit();

private:
    /// Boxes over a floor, in layers of \a side by \a side, \a spread metres apart.
    static std::string boxes(int side, int layers, double spread, const std::string& collection,
                             const std::string& body = {})
    {
        std::string shapes = "DEF Floor CollidableShape { translation 0 -0.5 0 shape Shape { geometry Box { "
                             "size 200 1 200 } } } ";
        std::string collidables = "USE Floor ";
        std::string bodies;
        for (int i = 0; i < side * side * layers; ++i) {
            const std::string name = "S" + std::to_string(i);
            shapes += "DEF " + name + " CollidableShape { shape Shape { geometry Box { size 1 1 1 } } } ";
            collidables += "USE " + name + " ";
            const int place = i % (side * side);
            bodies += "DEF B" + std::to_string(i) + " RigidBody { position " +
                      textOf((place % side) * spread) + " " + textOf(0.5 + 1.01 * (i / (side * side))) + " " +
                      textOf((place / side) * spread) + " geometry USE " + name +
                      " massDensityModel Box { size 1 1 1 } " + body + " } ";
        }
        return shapes + "DEF C RigidBodyCollection { " + collection +
               " collider CollisionCollection { frictionCoefficients 0.5 0.5 collidables [ " + collidables +
               "] } bodies [ " + bodies + "] }";
    }
    static constexpr const char* Asked =
        "autoDisable TRUE disableLinearSpeed 0.05 disableAngularSpeed 0.05 disableTime 0.1";
    /// True when the collection asks for no frames any more.
    static bool isAsleep(const RigidScene& scene) { return scene.context->runFrame() > 0.05; }
};

void tst_RigidRest::manyRestingBoxesSleep()
{
    RigidScene scene(boxes(16, 1, 1.5, Asked).c_str());
    scene.run(3.0);
    QVERIFY(isAsleep(scene));
    COMPARE_NEAR(scene.position("B17")[1], 0.5, 0.02);
}

void tst_RigidRest::heapSleeps()
{
    RigidScene scene(boxes(3, 4, 1.1, Asked).c_str());
    scene.run(5.0);
    QVERIFY(isAsleep(scene));
    COMPARE_NEAR(scene.position("B35")[1], 3.5, 0.1);
}

void tst_RigidRest::bodiesDecideForThemselves()
{
    RigidScene scene(boxes(8, 1, 1.5, "", Asked).c_str());
    scene.run(3.0);
    QVERIFY(isAsleep(scene));
}

void tst_RigidRest::withoutAutoDisableNothingSleeps()
{
    RigidScene scene(boxes(8, 1, 1.5, "disableLinearSpeed 9 disableAngularSpeed 9 disableTime 0").c_str());
    scene.run(1.0);
    QVERIFY(!isAsleep(scene));
}

namespace {

/// A box that glides over a floor without friction.
std::string glider(const char* speed, const char* collection)
{
    return "DEF Floor CollidableShape { translation 0 -0.5 0 shape Shape { geometry Box { size 99 1 99 } } } "
           "DEF S CollidableShape { shape Shape { geometry Box { size 1 1 1 } } } RigidBodyCollection { "
           "autoDisable TRUE " +
           std::string(collection) +
           " collider CollisionCollection { collidables [ USE Floor USE S ] } bodies DEF B RigidBody { "
           "position 0 "
           "0.5 0 geometry USE S linearVelocity " +
           speed + " 0 0 } }";
}

} // namespace

void tst_RigidRest::limitsOfZeroKeepBodiesAwake()
{
    RigidScene scene(glider("0.01", "").c_str());
    scene.run(2.0);
    QVERIFY(!isAsleep(scene));
    COMPARE_NEAR(scene.position("B")[0], 0.02, 0.005);
}

void tst_RigidRest::disableTimeIsWaitedFor()
{
    RigidScene scene(glider("0.1", "disableLinearSpeed 0.5 disableAngularSpeed 0.5 disableTime 1").c_str());
    scene.run(0.9);
    QVERIFY(!isAsleep(scene));
    scene.run(0.6);
    QVERIFY(isAsleep(scene));
    COMPARE_NEAR(scene.position("B")[0], 0.105, 0.02);
}

void tst_RigidRest::fasterBodyStaysAwake()
{
    RigidScene scene(glider("0.1", "disableLinearSpeed 0.05 disableAngularSpeed 9").c_str());
    scene.run(2.0);
    QVERIFY(!isAsleep(scene));
    COMPARE_NEAR(scene.position("B")[0], 0.2, 0.02);
}

void tst_RigidRest::thrownBodyDoesNotSleepAtItsHighestPoint()
{
    RigidScene scene("RigidBodyCollection { autoDisable TRUE disableLinearSpeed 0.3 disableAngularSpeed 0.3 "
                     "bodies DEF B RigidBody { linearVelocity 0 3 0 } }");
    scene.run(2.0);
    QVERIFY(scene.position("B")[1] < -5.0F);
}

void tst_RigidRest::sleeperWakesWhenItIsHit()
{
    RigidScene scene(boxes(6, 1, 1.5, Asked).c_str());
    scene.run(3.0);
    QVERIFY(isAsleep(scene));
    scene.set("B0", "linearVelocity", "4 0 0");
    scene.run(1.0);
    QVERIFY(scene.position("B1")[0] > 1.6F);
}

QTEST_GUILESS_MAIN(tst_RigidRest)
#include "tst_RigidRest.moc"
