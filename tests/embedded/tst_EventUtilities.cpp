#include "CoreScene.h"
#include <QtTest>

class tst_EventUtilities : public QObject
{
    Q_OBJECT

private slots:
    void filterSendsTrueAndFalseTheirWays();
    void toggleTurnsOverAtTrueOnly();
    void triggersAnswerTrueAndFalse();
    void timeMakesTrue();
    void sequencerFollowsTheFraction_data();
    void sequencerFollowsTheFraction();
    void sequencerStepsRoundTheRing();
    void emptySequencersSendNothing();
};

namespace {

constexpr char Filter[] = "DEF F BooleanFilter {} DEF T BooleanToggle {} DEF U BooleanToggle {}"
                          "DEF V BooleanToggle {} DEF N BooleanFilter {}"
                          "ROUTE F.inputTrue TO T.set_boolean ROUTE F.inputFalse TO N.set_boolean "
                          "ROUTE N.inputNegate TO U.set_boolean ROUTE F.inputNegate TO V.set_boolean";

} // namespace

void tst_EventUtilities::filterSendsTrueAndFalseTheirWays()
{
    CoreScene scene(Filter);
    scene.set("F", "set_boolean", "true");
    QCOMPARE(scene.get("T", "toggle"), std::string("TRUE"));
    QCOMPARE(scene.get("U", "toggle"), std::string("FALSE"));
    QCOMPARE(scene.get("V", "toggle"), std::string("FALSE"));
    scene.set("F", "set_boolean", "false");
    QCOMPARE(scene.get("T", "toggle"), std::string("TRUE"));
    QCOMPARE(scene.get("F", "inputFalse"), std::string("FALSE"));
    QCOMPARE(scene.get("U", "toggle"), std::string("TRUE"));
    QCOMPARE(scene.get("V", "toggle"), std::string("TRUE"));
}

void tst_EventUtilities::toggleTurnsOverAtTrueOnly()
{
    CoreScene scene("DEF T BooleanToggle { toggle TRUE }");
    scene.set("T", "set_boolean", "false");
    QCOMPARE(scene.get("T", "toggle"), std::string("TRUE"));
    scene.set("T", "set_boolean", "true");
    QCOMPARE(scene.get("T", "toggle"), std::string("FALSE"));
    scene.set("T", "set_boolean", "true");
    QCOMPARE(scene.get("T", "toggle"), std::string("TRUE"));
}

void tst_EventUtilities::triggersAnswerTrueAndFalse()
{
    CoreScene scene("DEF I IntegerTrigger { integerKey 7 } DEF T TimeTrigger {}");
    scene.set("I", "set_boolean", "false");
    QCOMPARE(scene.get("I", "triggerValue"), std::string("7"));
    scene.set("I", "integerKey", "9");
    QCOMPARE(scene.get("I", "triggerValue"), std::string("7"));
    scene.set("I", "set_boolean", "true");
    QCOMPARE(scene.get("I", "triggerValue"), std::string("9"));
    scene.runTo(5.0);
    scene.set("T", "set_boolean", "false");
    QCOMPARE(scene.get("T", "triggerTime"), std::string("1005"));
}

void tst_EventUtilities::timeMakesTrue()
{
    CoreScene scene("DEF B BooleanTrigger {}");
    QCOMPARE(scene.get("B", "triggerTrue"), std::string("FALSE"));
    scene.set("B", "set_triggerTime", "3");
    QCOMPARE(scene.get("B", "triggerTrue"), std::string("TRUE"));
}

void tst_EventUtilities::sequencerFollowsTheFraction_data()
{
    QTest::addColumn<QByteArray>("fraction");
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QByteArray>("truth");
    QTest::newRow("below the first key") << QByteArray("-1") << QByteArray("5") << QByteArray("TRUE");
    QTest::newRow("at a key") << QByteArray("0.5") << QByteArray("6") << QByteArray("FALSE");
    QTest::newRow("just before a key") << QByteArray("0.49") << QByteArray("5") << QByteArray("TRUE");
    QTest::newRow("after the last key") << QByteArray("3") << QByteArray("7") << QByteArray("TRUE");
}

void tst_EventUtilities::sequencerFollowsTheFraction()
{
    QFETCH(QByteArray, fraction);
    QFETCH(QByteArray, number);
    QFETCH(QByteArray, truth);
    CoreScene scene("DEF I IntegerSequencer { key [ 0 0.5 0.75 0.9 ] keyValue [ 5 6 7 ] }"
                    "DEF B BooleanSequencer { key [ 0 0.5 0.75 ] keyValue [ TRUE FALSE TRUE FALSE ] }");
    scene.set("I", "set_fraction", fraction.constData());
    scene.set("B", "set_fraction", fraction.constData());
    QCOMPARE(QByteArray::fromStdString(scene.get("I", "value_changed")), number);
    QCOMPARE(QByteArray::fromStdString(scene.get("B", "value_changed")), truth);
}

void tst_EventUtilities::sequencerStepsRoundTheRing()
{
    CoreScene scene("DEF I IntegerSequencer { key [ 0 0.5 1 ] keyValue [ 5 6 7 ] }");
    scene.set("I", "previous", "true");
    QCOMPARE(scene.get("I", "value_changed"), std::string("7"));
    scene.set("I", "next", "true");
    QCOMPARE(scene.get("I", "value_changed"), std::string("5"));
    scene.set("I", "next", "false");
    QCOMPARE(scene.get("I", "value_changed"), std::string("5"));
    scene.set("I", "next", "true");
    QCOMPARE(scene.get("I", "value_changed"), std::string("6"));
    scene.set("I", "keyValue", "8");
    scene.set("I", "next", "true");
    QCOMPARE(scene.get("I", "value_changed"), std::string("8"));
}

void tst_EventUtilities::emptySequencersSendNothing()
{
    CoreScene scene("DEF I IntegerSequencer { key [ 0 ] } DEF J IntegerSequencer { keyValue [ 4 ] }");
    for (const char* field : {"next", "previous"})
        scene.set("I", field, "true");
    scene.set("I", "set_fraction", "0");
    scene.set("J", "set_fraction", "0");
    QCOMPARE(scene.get("I", "value_changed"), std::string("0"));
    QCOMPARE(scene.get("J", "value_changed"), std::string("0"));
}

QTEST_GUILESS_MAIN(tst_EventUtilities)
#include "tst_EventUtilities.moc"
