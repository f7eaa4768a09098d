#include "core/Blend.h"
#include "core/KeyTable.h"
#include <QtTest>
#include <cmath>

using namespace Orvane;

class tst_Blend : public QObject
{
    Q_OBJECT

private slots:
    void colorGoesTheShorterWayRoundTheCircle();
    void greyTakesTheHueOfTheOther();
    void colorEndsAreExact();
    void rotationTakesTheShorterArc();
    void rotationWithoutAxisIsNone();
    void oppositeRotationsGiveARotation();
    void directionsStayOfUnitLength();
    void keyIsFound_data();
    void keyIsFound();
    void hintDoesNotChangeTheResult();
    void equalKeysJump();
};

void tst_Blend::colorGoesTheShorterWayRoundTheCircle()
{
    // Between red with a touch of blue and red with a touch of green lies red, not cyan.
    const osg::Color3f middle = blend(osg::Color3f(1, 0, 0.2F), osg::Color3f(1, 0.2F, 0), 0.5F);
    QVERIFY(std::abs(middle.red() - 1.0F) < 1e-5F);
    QVERIFY(middle.green() < 1e-5F);
    QVERIFY(middle.blue() < 1e-5F);
    const osg::Color3f yellow = blend(osg::Color3f(1, 0, 0), osg::Color3f(0, 1, 0), 0.5F);
    QVERIFY(std::abs(yellow.red() - 1.0F) < 1e-5F && std::abs(yellow.green() - 1.0F) < 1e-5F);
}

void tst_Blend::greyTakesTheHueOfTheOther()
{
    const osg::Color3f pink = blend(osg::Color3f(1, 1, 1), osg::Color3f(0, 0, 1), 0.5F);
    QVERIFY(std::abs(pink.red() - 0.5F) < 1e-5F && std::abs(pink.green() - 0.5F) < 1e-5F);
    QVERIFY(std::abs(pink.blue() - 1.0F) < 1e-5F);
}

void tst_Blend::colorEndsAreExact()
{
    const osg::Color3f odd(0.123F, 0.456F, 0.789F);
    const osg::Color3f same = blend(odd, osg::Color3f(1, 1, 1), 0.0F);
    QCOMPARE(same.red(), odd.red());
    const osg::Color3f between = blend(odd, odd, 0.3F);
    QVERIFY(std::abs(between.green() - odd.green()) < 1e-6F);
}

void tst_Blend::rotationTakesTheShorterArc()
{
    const Rotation r = blend(Rotation(0, 1, 0, 0.1F), Rotation(0, 1, 0, 6.1F), 0.5F);
    // Half way between 0.1 and 6.1 - 2 pi.
    const float angle = r.y() < 0 ? -r.angle() : r.angle();
    QVERIFY(std::abs(angle - (0.1F + 6.1F - 6.2831853F) / 2) < 1e-4F);
    const Rotation half = blend(Rotation(0, 0, 1, 0), Rotation(0, 0, 2, 1), 0.5F);
    QVERIFY(std::abs(half.angle() - 0.5F) < 1e-5F);
    QVERIFY(std::abs(half.z() - 1.0F) < 1e-5F);
}

void tst_Blend::rotationWithoutAxisIsNone()
{
    const Rotation r = blend(Rotation(0, 0, 0, 3), Rotation(1, 0, 0, 1), 0.5F);
    QVERIFY(std::abs(r.angle() - 0.5F) < 1e-5F);
}

void tst_Blend::oppositeRotationsGiveARotation()
{
    const Rotation r = blend(Rotation(1, 0, 0, 0), Rotation(1, 0, 0, 3.14159265F), 0.5F);
    QVERIFY(std::abs(r.angle() - 1.5707963F) < 1e-4F);
}

void tst_Blend::directionsStayOfUnitLength()
{
    const osg::Vec3f d = blendDirections({1, 0, 0}, {0, 1, 0}, 0.5F);
    QVERIFY(std::abs(d.length() - 1.0F) < 1e-5F);
    QVERIFY(std::abs(d[0] - d[1]) < 1e-5F);
    QCOMPARE(blendDirections({0, 0, 0}, {0, 2, 0}, 0.5F), osg::Vec3f(0, 1, 0));
}

void tst_Blend::keyIsFound_data()
{
    QTest::addColumn<float>("fraction");
    QTest::addColumn<int>("first");
    QTest::addColumn<float>("t");
    QTest::newRow("below") << -1.0F << 0 << 0.0F;
    QTest::newRow("first") << 0.0F << 0 << 0.0F;
    QTest::newRow("inside") << 0.25F << 0 << 0.5F;
    QTest::newRow("on a key") << 0.5F << 1 << 0.0F;
    QTest::newRow("later") << 0.875F << 1 << 0.75F;
    QTest::newRow("last") << 1.0F << 2 << 0.0F;
    QTest::newRow("above") << 9.0F << 2 << 0.0F;
}

void tst_Blend::keyIsFound()
{
    QFETCH(float, fraction);
    QFETCH(int, first);
    QFETCH(float, t);
    const KeyPlace place = findKey({0.0F, 0.5F, 1.0F}, 3, fraction, 0);
    QCOMPARE(static_cast<int>(place.first), first);
    QCOMPARE(place.t, t);
}

void tst_Blend::hintDoesNotChangeTheResult()
{
    const std::vector<float> keys{0.0F, 0.1F, 0.4F, 0.8F, 1.0F};
    for (float fraction = 0.0F; fraction <= 1.0F; fraction += 0.05F) {
        const KeyPlace expected = findKey(keys, 5, fraction, 0);
        for (std::size_t hint = 0; hint < 6; ++hint) {
            QCOMPARE(findKey(keys, 5, fraction, hint).first, expected.first);
            QCOMPARE(findKey(keys, 5, fraction, hint).t, expected.t);
        }
    }
}

void tst_Blend::equalKeysJump()
{
    const std::vector<float> keys{0.0F, 0.5F, 0.5F, 1.0F};
    QCOMPARE(findKey(keys, 4, 0.5F, 0).first, std::size_t(2));
    QCOMPARE(findKey(keys, 4, 0.499999F, 0).first, std::size_t(0));
    QVERIFY(findKey({1.0F, 0.0F, 0.5F}, 3, 0.3F, 7).first < 3); // keys in no order do no harm
}

QTEST_GUILESS_MAIN(tst_Blend)
#include "tst_Blend.moc"
