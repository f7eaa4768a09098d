#include "CoreScene.h"
#include "base/ValueFields.h"
#include <Orvane/EventOutSlot.h>
#include <Orvane/Observer.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <QtTest>

using namespace Orvane;

namespace {

using Values = std::vector<std::string>;

/// Collects the values that a field sends.
class Listener : public Observer
{
public:
    explicit Listener(Field& field)
        : Observer("Listener")
        , _field(field)
    {
        field.createOutSlot(false);
        field._outSlot->processEventSubject().attach(*this);
    }

    void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override
    {
        values.push_back(_field.valueToString());
    }

    Values values;

private:
    Field& _field;
};

} // namespace

class tst_TimeSensor : public QObject
{
    Q_OBJECT

private slots:
    void runsFromStartForOneCycle();
    void loopsAndCounts();
    void defaultSensorNeverRuns();
    void startInThePastIsInTheMiddle();
    void stopTimeEndsTheRun();
    void stopTimeBeforeStartIsIgnored();
    void loopOffLetsTheCycleEnd();
    void disablingEndsTheRun();
    void startTimeIsIgnoredWhileActive();
    void cycleIntervalIsIgnoredWhileActive();
    void longerCycleDoesNotReviveARun();
    void restartsAtItsEnd();
    void pauseHoldsTheFraction();
    void oldPauseDoesNotCount();
    void stopsWhilePaused();
    void sleepsWhenThereIsNothingToDo();
    void badFieldsNeverRun_data();
    void badFieldsNeverRun();
    void drivesARoute();
};

void tst_TimeSensor::runsFromStartForOneCycle()
{
    CoreScene scene("DEF T TimeSensor { startTime 1001 cycleInterval 4 }");
    Listener active(scene.field("T", "isActive"));
    Listener cycle(scene.field("T", "cycleTime"));
    scene.runTo(0.5);
    QVERIFY(active.values.empty());
    scene.runTo(1);
    QCOMPARE(active.values, (Values{"TRUE"}));
    QCOMPARE(cycle.values, (Values{"1001"}));
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0"));
    scene.runTo(2);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.25"));
    QCOMPARE(scene.get("T", "elapsedTime"), std::string("1"));
    QCOMPARE(scene.get("T", "time"), std::string("1002"));
    scene.runTo(6);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("1"));
    QCOMPARE(active.values, (Values{"TRUE", "FALSE"}));
    scene.runTo(7);
    QCOMPARE(scene.get("T", "time"), std::string("1006"));
}

void tst_TimeSensor::loopsAndCounts()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 2 loop TRUE }");
    Listener cycle(scene.field("T", "cycleTime"));
    scene.runTo(1);
    scene.runTo(2); // the end of a cycle is its fraction 1
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("1"));
    scene.runTo(2.5);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.25"));
    scene.runTo(9);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.5"));
    QCOMPARE(cycle.values, (Values{"1002", "1009"}));
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
}

void tst_TimeSensor::defaultSensorNeverRuns()
{
    CoreScene scene("DEF T TimeSensor { }");
    scene.runTo(1);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("T", "time"), std::string("-1"));
}

void tst_TimeSensor::startInThePastIsInTheMiddle()
{
    CoreScene scene("DEF T TimeSensor { loop TRUE cycleInterval 300 }");
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    QVERIFY(std::abs(static_cast<SFFloat&>(scene.field("T", "fraction_changed")).value() - 1.0F / 3.0F) <
            1e-5F);
    QCOMPARE(scene.get("T", "elapsedTime"), std::string("0"));
    scene.runTo(3);
    QCOMPARE(scene.get("T", "elapsedTime"), std::string("3"));
}

void tst_TimeSensor::stopTimeEndsTheRun()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 stopTime 1003 loop TRUE cycleInterval 2 }");
    scene.runTo(2.5);
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.runTo(5);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.5")); // as of the stop
    scene.runTo(6);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::stopTimeBeforeStartIsIgnored()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 stopTime 999 loop TRUE }");
    scene.runTo(0.5);
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.set("T", "stopTime", "1000");
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.set("T", "stopTime", "1000.25");
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::loopOffLetsTheCycleEnd()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 loop TRUE cycleInterval 2 }");
    scene.runTo(3);
    scene.set("T", "loop", "FALSE");
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.runTo(3.5);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.75"));
    scene.runTo(4.5);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("1"));
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::disablingEndsTheRun()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 loop TRUE }");
    scene.runTo(0.5);
    scene.set("T", "enabled", "FALSE");
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
    scene.set("T", "enabled", "TRUE");
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
}

void tst_TimeSensor::startTimeIsIgnoredWhileActive()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 4 }");
    scene.runTo(1);
    scene.set("T", "startTime", "1000.5");
    scene.runTo(2);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.5"));
}

void tst_TimeSensor::cycleIntervalIsIgnoredWhileActive()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 4 }");
    scene.set("T", "cycleInterval", "1");
    scene.runTo(2);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.5"));
}

void tst_TimeSensor::longerCycleDoesNotReviveARun()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 1 }");
    scene.set("T", "cycleInterval", "9");
    scene.runTo(1.5);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::restartsAtItsEnd()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 1 }");
    scene.runTo(2);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
    scene.set("T", "startTime", "1002");
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.runTo(2.5);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.5"));
}

void tst_TimeSensor::pauseHoldsTheFraction()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 10 }");
    scene.runTo(2);
    scene.set("T", "pauseTime", "1002");
    QCOMPARE(scene.get("T", "isPaused"), std::string("TRUE"));
    scene.runTo(5);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.2"));
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.set("T", "resumeTime", "1005");
    QCOMPARE(scene.get("T", "isPaused"), std::string("FALSE"));
    scene.runTo(6);
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.3"));
    QCOMPARE(scene.get("T", "elapsedTime"), std::string("3"));
    scene.runTo(12.9);
    QCOMPARE(scene.get("T", "isActive"), std::string("TRUE"));
    scene.runTo(13);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::oldPauseDoesNotCount()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 pauseTime 900 cycleInterval 10 }");
    scene.runTo(1);
    QCOMPARE(scene.get("T", "isPaused"), std::string("FALSE"));
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.1"));
}

void tst_TimeSensor::stopsWhilePaused()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 10 }");
    scene.runTo(1);
    scene.set("T", "pauseTime", "1001");
    scene.runTo(3);
    scene.set("T", "stopTime", "1003");
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("T", "isPaused"), std::string("FALSE"));
    QCOMPARE(scene.get("T", "fraction_changed"), std::string("0.1"));
}

void tst_TimeSensor::sleepsWhenThereIsNothingToDo()
{
    CoreScene idle("DEF T TimeSensor { }");
    idle.runTo(1);
    QVERIFY(idle.context->runFrame() > 0.05);
    CoreScene busy("DEF T TimeSensor { loop TRUE }");
    busy.runTo(1);
    QVERIFY(busy.context->runFrame() < 0.02);
    CoreScene later("DEF T TimeSensor { startTime 1001.06 }");
    later.runTo(1);
    const double wait = later.context->runFrame();
    QVERIFY(wait > 0.02 && wait < 0.07); // no sooner than it must
}

void tst_TimeSensor::badFieldsNeverRun_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::newRow("no interval") << QByteArray("cycleInterval 0");
    QTest::newRow("interval below 0") << QByteArray("cycleInterval -1");
}

void tst_TimeSensor::badFieldsNeverRun()
{
    QFETCH(QByteArray, fields);
    CoreScene scene(("DEF T TimeSensor { loop TRUE " + fields + " }").constData());
    scene.runTo(1);
    QCOMPARE(scene.get("T", "isActive"), std::string("FALSE"));
}

void tst_TimeSensor::drivesARoute()
{
    CoreScene scene("DEF T TimeSensor { startTime 1000 cycleInterval 4 }"
                    "DEF P PositionInterpolator { key [ 0 1 ] keyValue [ 0 0 0, 8 0 0 ] }"
                    "DEF M Transform { }"
                    "ROUTE T.fraction_changed TO P.set_fraction ROUTE P.value_changed TO M.set_translation");
    scene.runTo(1);
    QCOMPARE(scene.get("M", "translation"), std::string("2 0 0"));
}

QTEST_GUILESS_MAIN(tst_TimeSensor)
#include "tst_TimeSensor.moc"
