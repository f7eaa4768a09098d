#include "PointerScene.h"
#include "core/KeyDeviceProc.h"
#include <QtTest>

using namespace Orvane;

using Events = std::vector<std::string>;

class tst_KeySensors : public QObject
{
    Q_OBJECT

private slots:
    void characterIsToldWhenItGoesDownAndUp();
    void keysOfOneFrameAreAllHeard();
    void repeatedKeyStaysActive();
    void activeUntilTheLastKeyIsUp();
    void actionKeysHaveNumbers_data();
    void actionKeysHaveNumbers();
    void keysWithCharactersOfTheirOwn_data();
    void keysWithCharactersOfTheirOwn();
    void modifiersHaveFieldsOfTheirOwn();
    void disabledSensorHearsNothing();
    void disablingLetsGoOfHeldKeys();
    void shiftedReleaseIsThatOfTheSameKey();
    void stringIsCollectedUpToItsEnd();
    void deletionTakesTheLastCharacter();
    void deletionMayBeForbidden();
    void disablingDropsTheText();
    void emptyLineIsAFinalTextToo();
    void sensorsAreHeardWhereverTheyStand();
    void sensorThatGoesHearsNoMore();
};

void tst_KeySensors::characterIsToldWhenItGoesDownAndUp()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    for (const char* field : {"K.keyPress", "K.keyRelease", "K.isActive"})
        scene.watch(field);
    scene.window().keyPress('a');
    scene.frame();
    QCOMPARE(scene.take(), (Events{"K.keyPress a", "K.isActive TRUE"}));
    scene.window().keyRelease('a');
    scene.frame();
    QCOMPARE(scene.take(), (Events{"K.keyRelease a", "K.isActive FALSE"}));
}

void tst_KeySensors::keysOfOneFrameAreAllHeard()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.watch("K.keyPress");
    for (const char key : {'a', 'b', 'a'}) {
        scene.window().keyPress(key);
        scene.window().keyRelease(key);
    }
    scene.frame();
    QCOMPARE(scene.take(), (Events{"K.keyPress a", "K.keyPress b", "K.keyPress a"}));
}

void tst_KeySensors::repeatedKeyStaysActive()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.watch("K.keyPress");
    scene.watch("K.isActive");
    scene.window().keyPress('a');
    scene.window().keyPress('a');
    scene.frame();
    QCOMPARE(scene.take(), (Events{"K.keyPress a", "K.isActive TRUE", "K.keyPress a"}));
}

void tst_KeySensors::activeUntilTheLastKeyIsUp()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.window().keyPress('a');
    scene.window().keyPress('b');
    scene.window().keyRelease('a');
    scene.frame();
    QCOMPARE(scene.get("K.isActive"), std::string("TRUE"));
    scene.window().keyRelease('b');
    scene.frame();
    QCOMPARE(scene.get("K.isActive"), std::string("FALSE"));
}

void tst_KeySensors::actionKeysHaveNumbers_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("number");
    const std::pair<int, int> keys[] = {{257, 1},  {258, 2},  {268, 12}, {269, 13}, {270, 14}, {271, 15},
                                        {272, 16}, {273, 17}, {274, 18}, {275, 19}, {276, 20}};
    for (const auto& [code, number] : keys)
        QTest::addRow("%d", code) << code << number;
}

void tst_KeySensors::actionKeysHaveNumbers()
{
    QFETCH(int, code);
    QFETCH(int, number);
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.watch("K.keyPress");
    scene.window().keyPress(code);
    scene.frame();
    QCOMPARE(scene.get("K.actionKeyPress"), std::to_string(number));
    QCOMPARE(scene.get("K.actionKeyRelease"), std::string("0"));
    scene.window().keyRelease(code);
    scene.frame();
    QCOMPARE(scene.get("K.actionKeyRelease"), std::to_string(number));
    QCOMPARE(scene.take(), Events());
}

void tst_KeySensors::keysWithCharactersOfTheirOwn_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<int>("character");
    QTest::newRow("delete") << 278 << 0x7F;
    QTest::newRow("escape") << 279 << 0x1B;
    QTest::newRow("enter") << 280 << int('\n');
    QTest::newRow("return") << 13 << int('\n');
    QTest::newRow("tab") << 281 << int('\t');
    QTest::newRow("backspace") << 282 << int('\b');
    QTest::newRow("space") << 288 << int(' ');
    QTest::newRow("signed byte") << -28 << 0xE4;
    QTest::newRow("insert") << 277 << 0;
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("far off") << 100000 << 0;
    QTest::newRow("far below") << -100000 << 0;
}

void tst_KeySensors::keysWithCharactersOfTheirOwn()
{
    QFETCH(int, code);
    QFETCH(int, character);
    QCOMPARE(characterOf(code), character);
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.watch("K.keyPress");
    scene.window().keyPress(code);
    scene.frame();
    QCOMPARE(scene.take().size(), std::size_t(character ? 1 : 0));
    QCOMPARE(scene.get("K.isActive"), std::string(character ? "TRUE" : "FALSE"));
}

void tst_KeySensors::modifiersHaveFieldsOfTheirOwn()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.watch("K.keyPress");
    const std::pair<int, const char*> modifiers[] = {
        {SHIFT_KC, "K.shiftKey"}, {CONTROL_KC, "K.controlKey"}, {ALT_KC, "K.altKey"}};
    for (const auto& [code, field] : modifiers) {
        scene.window().keyPress(code);
        scene.frame();
        QCOMPARE(scene.get(field), std::string("TRUE"));
        scene.window().keyRelease(code);
        scene.frame();
        QCOMPARE(scene.get(field), std::string("FALSE"));
    }
    QCOMPARE(scene.take(), Events());
}

void tst_KeySensors::disabledSensorHearsNothing()
{
    PointerScene scene("<KeySensor DEF='K' enabled='false'/><StringSensor DEF='S' enabled='false'/>");
    scene.watch("K.keyPress");
    scene.watch("S.enteredText");
    scene.window().keyPress('a');
    scene.frame();
    scene.set("K.enabled", "TRUE");
    scene.frame();
    // Its press was not heard.
    scene.watch("K.keyRelease");
    scene.window().keyRelease('a');
    scene.frame();
    QCOMPARE(scene.take(), Events());
}

void tst_KeySensors::disablingLetsGoOfHeldKeys()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.window().keyPress(SHIFT_KC);
    scene.window().keyPress('a');
    scene.frame();
    scene.set("K.enabled", "FALSE");
    scene.frame();
    QCOMPARE(scene.get("K.isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("K.shiftKey"), std::string("FALSE"));
}

void tst_KeySensors::shiftedReleaseIsThatOfTheSameKey()
{
    PointerScene scene("<KeySensor DEF='K'/>");
    scene.window().keyPress('a');
    scene.window().keyRelease('A');
    scene.frame();
    QCOMPARE(scene.get("K.isActive"), std::string("FALSE"));
}

void tst_KeySensors::stringIsCollectedUpToItsEnd()
{
    PointerScene scene("<StringSensor DEF='S'/>");
    for (const char* field : {"S.enteredText", "S.finalText", "S.isActive"})
        scene.watch(field);
    for (const int key : {int('H'), int('i'), 288})
        scene.window().keyPress(key);
    scene.frame();
    QCOMPARE(scene.take(),
             (Events{"S.isActive TRUE", "S.enteredText H", "S.enteredText Hi", "S.enteredText Hi "}));
    scene.window().keyPress(13);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"S.finalText Hi ", "S.enteredText ", "S.isActive FALSE"}));
}

void tst_KeySensors::deletionTakesTheLastCharacter()
{
    PointerScene scene("<StringSensor DEF='S'/>");
    for (const int key : {282, int('a'), int('b'), 282, 8})
        scene.window().keyPress(key);
    scene.frame();
    QCOMPARE(scene.get("S.enteredText"), std::string(""));
    scene.window().keyPress('c');
    scene.window().keyPress(280);
    scene.frame();
    QCOMPARE(scene.get("S.finalText"), std::string("c"));
}

void tst_KeySensors::deletionMayBeForbidden()
{
    PointerScene scene("<StringSensor DEF='S' deletionAllowed='false'/>");
    for (const int key : {int('a'), 282})
        scene.window().keyPress(key);
    scene.frame();
    QCOMPARE(scene.get("S.enteredText"), std::string("a"));
}

void tst_KeySensors::disablingDropsTheText()
{
    PointerScene scene("<StringSensor DEF='S'/>");
    scene.window().keyPress('a');
    scene.frame();
    scene.set("S.enabled", "FALSE");
    scene.frame();
    QCOMPARE(scene.get("S.isActive"), std::string("FALSE"));
    scene.set("S.enabled", "TRUE");
    scene.frame();
    scene.window().keyPress('b');
    scene.frame();
    QCOMPARE(scene.get("S.enteredText"), std::string("b"));
}

void tst_KeySensors::emptyLineIsAFinalTextToo()
{
    PointerScene scene("<StringSensor DEF='S'/>");
    scene.watch("S.finalText");
    scene.window().keyPress(13);
    scene.frame();
    QCOMPARE(scene.take(), (Events{"S.finalText "}));
}

void tst_KeySensors::sensorsAreHeardWhereverTheyStand()
{
    PointerScene scene("<Switch><Group><KeySensor DEF='K'/></Group></Switch><StringSensor DEF='S'/>");
    scene.window().keyPress('a');
    scene.frame();
    QCOMPARE(scene.get("K.keyPress"), std::string("a"));
    QCOMPARE(scene.get("S.enteredText"), std::string("a"));
}

void tst_KeySensors::sensorThatGoesHearsNoMore()
{
    PointerScene scene("<Group DEF='G'><KeySensor DEF='K'/></Group>");
    scene.window().keyPress('a');
    scene.frame();
    scene.set("G.children", "");
    scene.frame();
    scene.window().keyRelease('a');
    scene.window().keyPress('b');
    scene.frame();
    QVERIFY(!scene.find("K"));
}

QTEST_GUILESS_MAIN(tst_KeySensors)
#include "tst_KeySensors.moc"
