#include "CoreScene.h"
#include "Numbers.h"
#include <QtTest>

class tst_SplineInterpolators : public QObject
{
    Q_OBJECT

private slots:
    void sendsWhatLiesBetween_data();
    void sendsWhatLiesBetween();
    void wayHasNoJoltAtAKey();
    void rotationsPassThroughTheirKeys();
    void rotationsTurnEvenlyRoundOneAxis();
    void easeStartsAndEndsSoftly_data();
    void easeStartsAndEndsSoftly();
};

namespace {

void compareNumbers(const std::string& actual, const char* expected)
{
    const std::vector<double> a = numbersIn(actual);
    const std::vector<double> e = numbersIn(expected);
    QCOMPARE(a.size(), e.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        QVERIFY2(std::abs(a[i] - e[i]) < 1e-4F, actual.c_str());
}

} // namespace

void tst_SplineInterpolators::sendsWhatLiesBetween_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("fraction");
    QTest::addColumn<QByteArray>("value");
    // Without velocities the ends are at rest, so that the half way is at the half time.
    QTest::newRow("at rest at both ends")
        << QByteArray("SplineScalarInterpolator { key [ 0 1 ] keyValue [ 0 4 ] }") << QByteArray("0.5")
        << QByteArray("2");
    QTest::newRow("at rest, a quarter")
        << QByteArray("SplineScalarInterpolator { key [ 0 1 ] keyValue [ 0 4 ] }") << QByteArray("0.25")
        << QByteArray("0.625");
    QTest::newRow("velocities at both ends")
        << QByteArray("SplineScalarInterpolator { key [ 0 1 ] keyValue [ 0 4 ] keyVelocity [ 4 4 ] }")
        << QByteArray("0.25") << QByteArray("1");
    // The middle key has half the way from 0 to 8 as its velocity.
    QTest::newRow("three keys") << QByteArray("SplineScalarInterpolator { key [ 0 1 2 ] keyValue [ 0 2 8 ] }")
                                << QByteArray("0.5") << QByteArray("0.5");
    QTest::newRow("velocities at all keys")
        << QByteArray("SplineScalarInterpolator { key [ 0 1 2 ] keyValue [ 0 2 8 ] keyVelocity [ 2 0 6 ] }")
        << QByteArray("0.5") << QByteArray("1.25");
    QTest::newRow("wrong number of velocities counts as unmoved")
        << QByteArray("SplineScalarInterpolator { key [ 0 1 ] keyValue [ 0 4 ] keyVelocity [ 1 2 3 ] }")
        << QByteArray("0.5") << QByteArray("2");
    QTest::newRow("position") << QByteArray(
                                     "SplinePositionInterpolator { key [ 0 1 ] keyValue [ 0 0 0, 4 2 0 ] }")
                              << QByteArray("0.5") << QByteArray("2 1 0");
    QTest::newRow("ring")
        << QByteArray("SplinePositionInterpolator2D { closed TRUE key [ 0 1 2 3 4 ] keyValue [ 0 0, "
                      "1 1, 2 0, 1 -1, 0 0 ] }")
        << QByteArray("0.5") << QByteArray("0.375 0.625");
    // The ends do not meet: no ring.
    QTest::newRow("no ring") << QByteArray(
                                    "SplineScalarInterpolator { closed TRUE key [ 0 1 ] keyValue [ 0 4 ] }")
                             << QByteArray("0.25") << QByteArray("0.625");
    QTest::newRow("normalized velocities")
        << QByteArray("SplineScalarInterpolator { normalizeVelocity TRUE key [ 0 1 ] keyValue [ 0 4 ] "
                      "keyVelocity [ 1 9 ] }")
        << QByteArray("0.25") << QByteArray("1");
    QTest::newRow("one key") << QByteArray("SplineScalarInterpolator { key [ 0.5 ] keyValue [ 7 ] }")
                             << QByteArray("0.1") << QByteArray("7");
}

void tst_SplineInterpolators::sendsWhatLiesBetween()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, fraction);
    QFETCH(QByteArray, value);
    CoreScene scene(("DEF I " + text).constData());
    scene.set("I", "set_fraction", fraction.constData());
    compareNumbers(scene.get("I", "value_changed"), value.constData());
}

void tst_SplineInterpolators::wayHasNoJoltAtAKey()
{
    // Intervals of 1 and 3: the pace just before and just after the key between them is the same.
    CoreScene scene("DEF I SplineScalarInterpolator { key [ 0 1 4 ] keyValue [ 0 2 8 ] }");
    const auto valueAt = [&scene](const char* fraction) {
        scene.set("I", "set_fraction", fraction);
        return static_cast<float>(numbersIn(scene.get("I", "value_changed")).at(0));
    };
    const float before = (valueAt("1") - valueAt("0.99")) / 0.01F;
    const float after = (valueAt("1.01") - valueAt("1")) / 0.01F;
    QVERIFY2(std::abs(before - after) < 0.1F, qPrintable(QStringLiteral("%1 %2").arg(before).arg(after)));
    QVERIFY(before > 0.5F);
}

void tst_SplineInterpolators::rotationsPassThroughTheirKeys()
{
    CoreScene scene(
        "DEF I SquadOrientationInterpolator { key [ 0 1 2 ] keyValue [ 0 1 0 0, 1 0 0 1, 0 0 1 2 ] }");
    scene.set("I", "set_fraction", "1");
    compareNumbers(scene.get("I", "value_changed"), "1 0 0 1");
    scene.set("I", "set_fraction", "0.999999");
    const std::vector<double> near = numbersIn(scene.get("I", "value_changed"));
    QCOMPARE(near.size(), std::size_t(4));
    QVERIFY(std::abs(near[0] - 1.0) < 1e-3 && std::abs(near[3] - 1.0) < 1e-3);
}

void tst_SplineInterpolators::rotationsTurnEvenlyRoundOneAxis()
{
    // Along one axis at one pace there is nothing to smooth.
    CoreScene scene(
        "DEF I SquadOrientationInterpolator { key [ 0 1 2 3 ] keyValue [ 0 1 0 0, 0 1 0 0.5, 0 1 0 1, "
        "0 1 0 1.5 ] }");
    scene.set("I", "set_fraction", "1.5");
    compareNumbers(scene.get("I", "value_changed"), "0 1 0 0.75");
    // A rotation that stands on the other side of the sphere is the same one.
    scene.set("I", "keyValue", "0 1 0 0, 0 1 0 0.5, 0 -1 0 5.283185307, 0 1 0 1.5");
    scene.set("I", "set_fraction", "1.5");
    compareNumbers(scene.get("I", "value_changed"), "0 1 0 0.75");
}

void tst_SplineInterpolators::easeStartsAndEndsSoftly_data()
{
    QTest::addColumn<QByteArray>("eases");
    QTest::addColumn<QByteArray>("fraction");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no ease") << QByteArray("0 0, 0 0") << QByteArray("0.25") << QByteArray("0.25");
    QTest::newRow("speeding up") << QByteArray("0 0.5, 0.5 0") << QByteArray("0.25") << QByteArray("0.125");
    QTest::newRow("slowing down") << QByteArray("0 0.5, 0.5 0") << QByteArray("0.75") << QByteArray("0.875");
    QTest::newRow("even in the middle")
        << QByteArray("0 0.25, 0.25 0") << QByteArray("0.5") << QByteArray("0.5");
    QTest::newRow("more than all") << QByteArray("0 2, 2 0") << QByteArray("0.25") << QByteArray("0.125");
    QTest::newRow("absurd") << QByteArray("0 -1, 3 0") << QByteArray("0.25") << QByteArray("0.25");
    QTest::newRow("start") << QByteArray("0 0.5, 0.5 0") << QByteArray("0") << QByteArray("0");
    QTest::newRow("end") << QByteArray("0 0.5, 0.5 0") << QByteArray("1") << QByteArray("1");
}

void tst_SplineInterpolators::easeStartsAndEndsSoftly()
{
    QFETCH(QByteArray, eases);
    QFETCH(QByteArray, fraction);
    QFETCH(QByteArray, value);
    CoreScene scene(("DEF E EaseInEaseOut { key [ 0 1 ] easeInEaseOut [ " + eases + " ] }").constData());
    scene.set("E", "set_fraction", fraction.constData());
    compareNumbers(scene.get("E", "modifiedFraction_changed"), value.constData());
}

QTEST_GUILESS_MAIN(tst_SplineInterpolators)
#include "tst_SplineInterpolators.moc"
