#include "CoreScene.h"
#include "Numbers.h"
#include <Orvane/SFFloat.h>
#include <QtTest>
#include <cmath>

class tst_Followers : public QObject
{
    Q_OBJECT

private slots:
    void damperApproachesItsDestination();
    void damperOrders_data();
    void damperOrders();
    void damperWithoutDelayJumps_data();
    void damperWithoutDelayJumps();
    void damperStopsWithinItsTolerance();
    void chaserArrivesAfterItsDuration();
    void chaserFollowsEveryDestination();
    void chaserGoesFromWhereItIsSet();
    void initialDestinationIsApproachedFromTheStart();
    void restingFollowersSendNothing();
    void everyTypeArrives_data();
    void everyTypeArrives();
    void rotationsTakeTheShorterArc();
    void listsOfAnotherLengthJump();
    void destinationThatIsNoNumberIsNotChased();
    void timeThatStandsOrRunsBackDoesNoHarm();
};

namespace {

float number(const CoreScene& scene, const char* field = "value_changed")
{
    return static_cast<float>(numbersIn(scene.get("F", field)).at(0));
}

bool isActive(const CoreScene& scene)
{
    return scene.get("F", "isActive") == "TRUE";
}

bool isNear(float a, float b)
{
    return std::abs(a - b) < 1e-3F;
}

} // namespace

void tst_Followers::damperApproachesItsDestination()
{
    CoreScene scene("DEF F ScalarDamper { tau 1 order 1 tolerance 0.01 }");
    scene.set("F", "set_destination", "10");
    QVERIFY(isActive(scene));
    scene.runTo(1.0);
    QVERIFY2(isNear(number(scene), 10.0F * (1.0F - std::exp(-1.0F))),
             scene.get("F", "value_changed").c_str());
    scene.runTo(2.0);
    QVERIFY(isNear(number(scene), 10.0F * (1.0F - std::exp(-2.0F))));
    scene.runTo(60.0);
    scene.runTo(61.0);
    QCOMPARE(number(scene), 10.0F);
    QVERIFY(!isActive(scene));
}

void tst_Followers::damperOrders_data()
{
    QTest::addColumn<int>("order");
    for (int order = 1; order <= 5; ++order)
        QTest::addRow("%d", order) << order;
}

void tst_Followers::damperOrders()
{
    QFETCH(int, order);
    CoreScene scene(("DEF F ScalarDamper { tau 1 order " + std::to_string(order) + " }").c_str());
    scene.set("F", "set_destination", "1");
    scene.runTo(1.0);
    // Each filter follows the one before it by the same share.
    QVERIFY(isNear(number(scene), std::pow(1.0F - std::exp(-1.0F), static_cast<float>(order))));
}

void tst_Followers::damperWithoutDelayJumps_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("order 0") << QByteArray("order 0");
    QTest::newRow("tau 0") << QByteArray("tau 0");
    QTest::newRow("negative tau") << QByteArray("tau -1");
}

void tst_Followers::damperWithoutDelayJumps()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(("DEF F ScalarDamper { " + fields + " }").constData());
    scene.set("F", "set_destination", "4");
    QCOMPARE(number(scene), 4.0F);
    QVERIFY(!isActive(scene));
}

void tst_Followers::damperStopsWithinItsTolerance()
{
    CoreScene scene("DEF F ScalarDamper { tau 1 order 1 tolerance 5 }");
    scene.set("F", "set_destination", "10");
    scene.runTo(0.5);
    QVERIFY(isActive(scene));
    scene.runTo(1.0);
    QVERIFY(!isActive(scene));
    QCOMPARE(number(scene), 10.0F);
}

void tst_Followers::chaserArrivesAfterItsDuration()
{
    CoreScene scene("DEF F ScalarChaser { duration 2 }");
    scene.set("F", "set_destination", "8");
    QVERIFY(isActive(scene));
    scene.runTo(0.5);
    QVERIFY(isNear(number(scene), 4.0F - 4.0F * std::cos(0.78539816F)));
    scene.runTo(1.0);
    QVERIFY(isNear(number(scene), 4.0F));
    scene.runTo(2.0);
    QCOMPARE(number(scene), 8.0F);
    QVERIFY(!isActive(scene));
}

void tst_Followers::chaserFollowsEveryDestination()
{
    CoreScene scene("DEF F ScalarChaser { duration 2 }");
    scene.set("F", "set_destination", "8");
    scene.runTo(1.0);
    scene.set("F", "set_destination", "0");
    scene.runTo(2.0);
    // The first transition is over, the second one half done.
    QVERIFY(isNear(number(scene), 4.0F));
    QVERIFY(isActive(scene));
    scene.runTo(3.0);
    QCOMPARE(number(scene), 0.0F);
    QVERIFY(!isActive(scene));
}

void tst_Followers::chaserGoesFromWhereItIsSet()
{
    CoreScene scene("DEF F ScalarChaser { duration 2 }");
    scene.set("F", "set_value", "6");
    QCOMPARE(number(scene), 6.0F);
    QVERIFY(isActive(scene));
    scene.runTo(1.0);
    QVERIFY(isNear(number(scene), 3.0F));
    scene.runTo(2.0);
    QCOMPARE(number(scene), 0.0F);
}

void tst_Followers::initialDestinationIsApproachedFromTheStart()
{
    CoreScene scene("DEF F PositionChaser { duration 2 initialDestination 4 0 0 }");
    QVERIFY(isActive(scene));
    scene.runTo(1.0);
    QCOMPARE(scene.get("F", "value_changed"), std::string("2 0 0"));
}

void tst_Followers::restingFollowersSendNothing()
{
    CoreScene scene("DEF F ScalarDamper { initialValue 3 initialDestination 3 }");
    QVERIFY(!isActive(scene));
    QCOMPARE(number(scene), 0.0F);
    scene.runTo(1.0);
    QCOMPARE(number(scene), 0.0F);
}

void tst_Followers::everyTypeArrives_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("destination");
    const std::vector<std::pair<const char*, const char*>> types{
        {"Color", "0.5 0.25 1"}, {"Coordinate", "1 2 3"}, {"Orientation", "1 0 0 1.5"}, {"Position", "1 2 3"},
        {"Position*2D", "1 2"},  {"Scalar", "5"},         {"TexCoord*2D", "1 2"},
    };
    for (const auto& [type, destination] : types) {
        for (const char* kind : {"Damper", "Chaser"}) {
            QByteArray name(type);
            if (name.contains('*'))
                name.replace("*", kind);
            else
                name += kind;
            QTest::newRow(name.constData()) << name << QByteArray(destination);
        }
    }
}

void tst_Followers::everyTypeArrives()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, destination);
    CoreScene scene(("DEF F " + type + " {}").constData());
    scene.set("F", "set_destination", destination.constData());
    for (int i = 1; i < 400; ++i)
        scene.runTo(i * 0.05);
    QVERIFY(!isActive(scene));
    QCOMPARE(QByteArray::fromStdString(scene.get("F", "value_changed")), destination);
}

void tst_Followers::rotationsTakeTheShorterArc()
{
    CoreScene scene(
        "DEF F OrientationChaser { duration 2 initialValue 0 1 0 0.5 initialDestination 0 1 0 0.5 }");
    scene.set("F", "set_destination", "0 1 0 6.2831853");
    scene.runTo(1.0);
    QCOMPARE(scene.get("F", "value_changed").substr(0, 10), std::string("0 1 0 0.25"));
}

void tst_Followers::listsOfAnotherLengthJump()
{
    CoreScene scene("DEF F CoordinateDamper { initialValue [ 0 0 0 ] initialDestination [ 0 0 0 ] }");
    scene.set("F", "set_destination", "1 1 1, 2 2 2");
    scene.runTo(0.01);
    scene.runTo(0.02);
    QCOMPARE(scene.get("F", "value_changed"), scene.get("F", "set_destination"));
}

void tst_Followers::destinationThatIsNoNumberIsNotChased()
{
    CoreScene scene("DEF F ScalarChaser { duration 1 }");
    static_cast<Orvane::SFFloat&>(scene.field("F", "set_destination"))
        .setValue(0.0, std::nanf(""), Orvane::Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(!isActive(scene));
    scene.set("F", "set_destination", "3");
    scene.runTo(3.0);
    QCOMPARE(number(scene), 3.0F);
    QVERIFY(!isActive(scene));
}

void tst_Followers::timeThatStandsOrRunsBackDoesNoHarm()
{
    CoreScene scene("DEF F ScalarDamper { tau 1 order 2 }");
    scene.runTo(5.0);
    scene.set("F", "set_destination", "1");
    scene.runTo(5.0);
    QVERIFY(number(scene) >= 0.0F && number(scene) < 1.0F);
    scene.runTo(4.0);
    QVERIFY(number(scene) >= 0.0F && number(scene) < 1.0F);
}

QTEST_GUILESS_MAIN(tst_Followers)
#include "tst_Followers.moc"
