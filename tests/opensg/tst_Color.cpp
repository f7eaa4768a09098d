#include <OpenSG/OSGColor.h>

#include <QtTest>

#include <sstream>

using namespace osg;

class tst_Color : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsAllZeroAlphaToo();
    void accessors();
    void packedColourHasRedLowest();
    void packedColourOfBytes();
    void everyByteSurvivesTheFloatColour();
    void packingClamps();
    void hsv_data();
    void hsv();
    void comparisonToleratesEps();
    void noConversionBetweenThreeAndFour();
    void writesComponentsWithBlanks();
};

void tst_Color::defaultIsAllZeroAlphaToo()
{
    const Color4f c;
    for (UInt32 i = 0; i < 4; ++i)
        QCOMPARE(c[i], 0.0f);
    Color3f d(1, 1, 1);
    d.clear();
    QCOMPARE(d.blue(), 0.0f);
    QCOMPARE(Color4ub::Null.alpha(), UInt8(0));
}

void tst_Color::accessors()
{
    Color4f c(0.1f, 0.2f, 0.3f, 0.4f);
    QCOMPARE(c.red(), 0.1f);
    QCOMPARE(c.green(), 0.2f);
    QCOMPARE(c.blue(), 0.3f);
    QCOMPARE(c.alpha(), 0.4f);
    QCOMPARE(c.getValuesRGBA()[3], 0.4f);
    c.setValuesRGBA(1, 2, 3, 4);
    QCOMPARE(c[2], 3.0f);
    Color3ub d;
    d.setValuesRGB(1, 2, 3);
    QCOMPARE(d.getValuesRGB()[1], UInt8(2));
}

void tst_Color::packedColourHasRedLowest()
{
    QCOMPARE(Color3f(1, 0, 0).getRGB(), 0x0000ffu);
    QCOMPARE(Color3f(0, 1, 0).getRGB(), 0x00ff00u);
    QCOMPARE(Color3f(0, 0, 1).getRGB(), 0xff0000u);
    QCOMPARE(Color4f(0, 0, 0, 1).getRGBA(), 0xff000000u);
    Color4f c;
    c.setRGBA(0x80ff0033u);
    QCOMPARE(c.red(), 0.2f);
    QCOMPARE(c.green(), 0.0f);
    QCOMPARE(c.blue(), 1.0f);
    QCOMPARE(c.alpha(), 128 / 255.0f);
}

void tst_Color::packedColourOfBytes()
{
    Color4ub c;
    c.setRGBA(0x04030201u);
    QCOMPARE(c[0], UInt8(1));
    QCOMPARE(c[3], UInt8(4));
    QCOMPARE(c.getRGBA(), 0x04030201u);
    Color3ub d(1, 2, 3);
    QCOMPARE(d.getRGB(), 0x030201u);
}

void tst_Color::everyByteSurvivesTheFloatColour()
{
    for (UInt32 byte = 0; byte < 256; ++byte) {
        const UInt32 packed = byte | (255 - byte) << 8 | byte << 16;
        Color3f c;
        c.setRGB(packed);
        QCOMPARE(c.getRGB(), packed);
    }
}

void tst_Color::packingClamps()
{
    QCOMPARE(Color3f(-1, 2, std::numeric_limits<float>::quiet_NaN()).getRGB(), 0x00ff00u);
}

void tst_Color::hsv_data()
{
    QTest::addColumn<float>("hue");
    QTest::addColumn<float>("saturation");
    QTest::addColumn<float>("value");
    QTest::addColumn<unsigned>("packed");
    QTest::newRow("red") << 0.0f << 1.0f << 1.0f << 0x0000ffu;
    QTest::newRow("yellow") << 1 / 6.0f << 1.0f << 1.0f << 0x00ffffu;
    QTest::newRow("green") << 1 / 3.0f << 1.0f << 1.0f << 0x00ff00u;
    QTest::newRow("blue") << 2 / 3.0f << 1.0f << 1.0f << 0xff0000u;
    QTest::newRow("wraps") << 1.0f << 1.0f << 1.0f << 0x0000ffu;
    QTest::newRow("white") << 0.4f << 0.0f << 1.0f << 0xffffffu;
    QTest::newRow("black") << 0.4f << 1.0f << 0.0f << 0x000000u;
    QTest::newRow("dark pale red") << 0.0f << 0.5f << 0.4f << 0x333366u;
}

void tst_Color::hsv()
{
    QFETCH(float, hue);
    QFETCH(float, saturation);
    QFETCH(float, value);
    QFETCH(unsigned, packed);
    Color3f c;
    c.setValuesHSV(hue, saturation, value);
    QCOMPARE(c.getRGB(), packed);
    Color4f d(0, 0, 0, 0.5f);
    d.setValuesHSV(hue, saturation, value);
    QCOMPARE(d.getRGBA() & 0xffffffu, packed);
    QCOMPARE(d.alpha(), 0.5f);
}

void tst_Color::comparisonToleratesEps()
{
    QVERIFY(Color3f(0, 0, 0) == Color3f(9e-7f, 0, 0));
    QVERIFY(Color3f(0, 0, 0) != Color3f(2e-6f, 0, 0));
    QVERIFY(Color4f(1, 1, 1, 0) != Color4f(1, 1, 1, 1));
    QVERIFY(Color3ub(1, 2, 3) != Color3ub(1, 2, 4));
    QVERIFY(Color3f(0, 0, 0).equals(Color3f(0.4f, 0, 0), 0.5f));
}

void tst_Color::noConversionBetweenThreeAndFour()
{
    QVERIFY((!std::is_constructible_v<Color3f, Color4f>));
    QVERIFY((!std::is_constructible_v<Color4f, Color3f>));
}

void tst_Color::writesComponentsWithBlanks()
{
    std::ostringstream out;
    out << Color3f(0.5f, 1, 0) << '|' << Color4ub(65, 2, 3, 4);
    QCOMPARE(out.str(), std::string("0.5 1 0|65 2 3 4"));
}

QTEST_APPLESS_MAIN(tst_Color)
#include "tst_Color.moc"
