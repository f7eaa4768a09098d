#include "CoreScene.h"
#include <Orvane/MFVec3f.h>
#include <QtTest>

class tst_Interpolators : public QObject
{
    Q_OBJECT

private slots:
    void sendsWhatLiesBetween_data();
    void sendsWhatLiesBetween();
    void listsAreBlendedValueByValue();
    void normalsKeepTheirLength();
    void badKeysSendNothingWrong_data();
    void badKeysSendNothingWrong();
    void newKeyValuesCountAtTheNextFraction();
};

void tst_Interpolators::sendsWhatLiesBetween_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("fraction");
    QTest::addColumn<QByteArray>("value");
    const QByteArray position = "PositionInterpolator { key [ 0 0.5 1 ] keyValue [ 0 0 0, 4 2 0, 4 2 8 ] }";
    QTest::newRow("position at a key") << position << QByteArray("0.5") << QByteArray("4 2 0");
    QTest::newRow("position between") << position << QByteArray("0.25") << QByteArray("2 1 0");
    QTest::newRow("position below") << position << QByteArray("-3") << QByteArray("0 0 0");
    QTest::newRow("position above") << position << QByteArray("3") << QByteArray("4 2 8");
    QTest::newRow("number") << QByteArray("ScalarInterpolator { key [ 0 2 ] keyValue [ 1 3 ] }")
                            << QByteArray("0.5") << QByteArray("1.5");
    QTest::newRow("colour") << QByteArray("ColorInterpolator { key [ 0 1 ] keyValue [ 1 0 0, 0 1 0 ] }")
                            << QByteArray("0.5") << QByteArray("1 1 0");
    QTest::newRow("position in the plane")
        << QByteArray("PositionInterpolator2D { key [ 0 1 ] keyValue [ 0 0, 2 4 ] }") << QByteArray("0.5")
        << QByteArray("1 2");
    QTest::newRow("orientation")
        << QByteArray("OrientationInterpolator { key [ 0 1 ] keyValue [ 0 1 0 0, 0 1 0 2 ] }")
        << QByteArray("0.5") << QByteArray("0 1 0 1");
    QTest::newRow("one key") << QByteArray("ScalarInterpolator { key [ 0.5 ] keyValue [ 7 ] }")
                             << QByteArray("0.1") << QByteArray("7");
}

void tst_Interpolators::sendsWhatLiesBetween()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, fraction);
    QFETCH(QByteArray, value);
    CoreScene scene(("DEF I " + text).constData());
    scene.set("I", "set_fraction", fraction.constData());
    QCOMPARE(QByteArray::fromStdString(scene.get("I", "value_changed")), value);
}

void tst_Interpolators::listsAreBlendedValueByValue()
{
    CoreScene scene("DEF I CoordinateInterpolator { key [ 0 1 ] keyValue [ 0 0 0, 1 1 1, 2 0 0, 3 1 1 ] }"
                    "DEF J CoordinateInterpolator2D { key [ 0 1 ] keyValue [ 0 0, 1 1, 2 0, 3 1 ] }");
    scene.set("I", "set_fraction", "0.5");
    const auto& values = static_cast<Orvane::MFVec3f&>(scene.field("I", "value_changed")).values();
    QCOMPARE(values, (std::vector<osg::Vec3f>{{1, 0, 0}, {2, 1, 1}}));
    scene.set("J", "set_fraction", "1");
    QCOMPARE(scene.field("J", "value_changed").size(), 2U);
}

void tst_Interpolators::normalsKeepTheirLength()
{
    CoreScene scene("DEF I NormalInterpolator { key [ 0 1 ] keyValue [ 1 0 0, 0 1 0 ] }");
    scene.set("I", "set_fraction", "0.5");
    const auto& values = static_cast<Orvane::MFVec3f&>(scene.field("I", "value_changed")).values();
    QCOMPARE(values.size(), std::size_t(1));
    QVERIFY(std::abs(values[0].length() - 1.0F) < 1e-5F);
}

void tst_Interpolators::badKeysSendNothingWrong_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("no keys") << QByteArray("ScalarInterpolator { keyValue [ 1 2 ] }") << QByteArray("0");
    QTest::newRow("no values") << QByteArray("ScalarInterpolator { key [ 0 1 ] }") << QByteArray("0");
    QTest::newRow("too few values") << QByteArray("ScalarInterpolator { key [ 0 0.25 1 ] keyValue [ 1 2 ] }")
                                    << QByteArray("2");
    QTest::newRow("too many values") << QByteArray("ScalarInterpolator { key [ 0 1 ] keyValue [ 1 2 9 ] }")
                                     << QByteArray("1.5");
    QTest::newRow("keys in no order")
        << QByteArray("ScalarInterpolator { key [ 1 0 1 ] keyValue [ 4 4 4 ] }") << QByteArray("4");
}

void tst_Interpolators::badKeysSendNothingWrong()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, value);
    CoreScene scene(("DEF I " + text).constData());
    scene.set("I", "set_fraction", "0.5");
    QCOMPARE(QByteArray::fromStdString(scene.get("I", "value_changed")), value);
}

void tst_Interpolators::newKeyValuesCountAtTheNextFraction()
{
    CoreScene scene("DEF I ScalarInterpolator { key [ 0 1 ] keyValue [ 0 1 ] }");
    scene.set("I", "set_fraction", "1");
    scene.set("I", "keyValue", "0 5");
    QCOMPARE(scene.get("I", "value_changed"), std::string("1"));
    scene.set("I", "set_fraction", "1");
    QCOMPARE(scene.get("I", "value_changed"), std::string("5"));
}

QTEST_GUILESS_MAIN(tst_Interpolators)
#include "tst_Interpolators.moc"
