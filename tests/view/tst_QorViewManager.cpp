#include "LogCapture.h"
#include "QorTools.h"
#include "QorViewManager.h"
#include "TestWindow.h"
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <QtCore/QAbstractEventDispatcher>
#include <QtTest>
#include <limits>

using namespace Orvane::Qt4;

class tst_QorViewManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theFirstManagerStartsTheSystemAndTheLastEndsIt();
    void aLaterManagerStartsTheSystemAnew();
    void theTablesReferenceAloneKeepsTheContextAlive();
    void constructionRunsOneFrameInTimerMode();
    void constructionRunsNoFrameInManualMode();
    void theFirstFrameMayOpenAWindow();
    void theMessageOfTheLastManagerComesBetweenContextAndExit();
    void theEntryIsGoneWhenTheContextEnds();
    void runFrameGivesTheWait();
    void theWaitIsTruncatedToMilliseconds_data();
    void theWaitIsTruncatedToMilliseconds();
    void theChainGoesOnUntilTheModeChanges();
    void leavingTimerModeEndsTheChainAtItsNextLink();
    void timerModeAfterManualModeRunsOneFrameAtOnce();
    void timerModeTwiceStartsNoSecondChain();
    void timerModeAfterAnotherModeStartsNothing();
    void switchingToAndFroKeepsOnePendingLink();
    void everyModeChangeIsLogged();
    void aManagerDeletedInItsOwnFrameIsSafe();
    void loadByUrlMakesTheRootsAndSetsThemRunning();
    void aSecondLoadKeepsTheRoots();
    void loadByUrlOfAnEmptyAddressDoesNothing();
    void aFailedLoadActivatesNothing();
    void loadByStringPassesAddressThenText();
    void loadByStringWithoutTextNeedsAScene();
    void loadByStringWithoutTextPutsAnEmptySceneInPlace();
    void textsGoOutAsLatin1();
    void getValueReadsAField();
    void getValueOfUnknownNamesIsEmptyAndNotNull();
    void getValueWithoutASceneIsEmptyAndNotNull();
    void setValueWritesAtTheContextsTime();
    void setValueOfAnEmptyTextDoesNothing();
    void setValueOfUnknownNamesIsFalse();
    void setValueOfATextThatDoesNotParseIsTrue();
    void setValueWithoutASceneIsLogged();
    void setValueEndsAtItsFirstNullCharacter();
    void saiBelongsToTheCaller();
    void aDeadManagerFallsBack();
    void aDeadManagerCountsForNothing();
    void saiOfADeadManagerHasNoContext();

private:
    static QObjectList singleShotTimers();
    static QList<QAbstractEventDispatcher::TimerInfo> pendingTimers();
    static Orvane::Node* addLamp(Orvane::Context* context);
};

namespace {

using Trace = std::vector<std::string>;

const Trace Activation = {"Context::findRoot ContextSetup", "ContextSetup::create null 1",
                          "Context::findRoot Engine",       "Engine::create null 1",
                          "Context::findRoot Scene",        "Scene::create null 1",
                          "Context::setRootState 0 3"};

Trace withoutLookups(Trace trace)
{
    trace.erase(std::remove_if(trace.begin(), trace.end(),
                               [](const std::string& line) { return line.find("findRoot") != line.npos; }),
                trace.end());
    return trace;
}

Trace takeTrace()
{
    return std::exchange(Tiny::trace(), {});
}

} // namespace

/// The single-shot timers that are under way.
QObjectList tst_QorViewManager::singleShotTimers()
{
    QObjectList timers;
    for (QObject* child : QAbstractEventDispatcher::instance()->findChildren<QObject*>()) {
        if (QByteArray(child->metaObject()->className()) == "QSingleShotTimer")
            timers.append(child);
    }
    return timers;
}

QList<QAbstractEventDispatcher::TimerInfo> tst_QorViewManager::pendingTimers()
{
    QList<QAbstractEventDispatcher::TimerInfo> infos;
    for (QObject* timer : singleShotTimers())
        infos += QAbstractEventDispatcher::instance()->registeredTimers(timer);
    return infos;
}

/// A named node of the scene with a number and a text.
Orvane::Node* tst_QorViewManager::addLamp(Orvane::Context* context)
{
    static Orvane::NodeType* type = [] {
        Tiny::Part watts;
        watts.name = "watts";
        watts.dataType = Orvane::SFINT32_DT;
        watts.value = "60";
        Tiny::Part label;
        label.name = "label";
        label.dataType = Orvane::SFSTRING_DT;
        return Tiny::makeType("Lamp", {watts, label});
    }();
    return Tiny::makeNode(type, "desk", context);
}

void tst_QorViewManager::init()
{
    Tiny::reset();
}

void tst_QorViewManager::cleanup()
{
    QCOMPARE(Tiny::livingContexts(), 0);
    // The last link of a chain outlives its manager, and runs into nothing.
    for (QObject* timer : singleShotTimers())
        delete timer;
}

void tst_QorViewManager::theFirstManagerStartsTheSystemAndTheLastEndsIt()
{
    auto first = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    QCOMPARE(takeTrace(), (Trace{"System::init 0 null 382", "Context::create"}));
    auto second = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    QCOMPARE(takeTrace(), (Trace{"Context::create"}));
    first.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context"}));
    second.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context", "System::exit"}));
}

void tst_QorViewManager::aLaterManagerStartsTheSystemAnew()
{
    for (int i = 0; i < 2; ++i) {
        auto manager = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
        QCOMPARE(takeTrace().front(), std::string("System::init 0 null 382"));
        manager.reset();
        QCOMPARE(takeTrace().back(), std::string("System::exit"));
    }
}

void tst_QorViewManager::theTablesReferenceAloneKeepsTheContextAlive()
{
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::lastContext()->_refCount, 1);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    manager.getValue(QStringLiteral("a"), QStringLiteral("b"));
    manager.setValue(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"));
    manager.runFrame();
    QCOMPARE(Tiny::lastContext()->_refCount, 1);
    manager.setTriggerMode(QorViewManager::ManualTrigger);
}

void tst_QorViewManager::constructionRunsOneFrameInTimerMode()
{
    Tiny::switches().waits = {0.25};
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QCOMPARE(takeTrace(), (Trace{"System::init 0 null 382", "Context::create", "Context::runFrame"}));
    QCOMPARE(pendingTimers().size(), 1);
    QCOMPARE(pendingTimers().first().interval, 250);
}

void tst_QorViewManager::constructionRunsNoFrameInManualMode()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 0);
    QVERIFY(pendingTimers().isEmpty());
}

void tst_QorViewManager::theFirstFrameMayOpenAWindow()
{
    std::unique_ptr<TestWindow> window;
    Tiny::switches().onFrame = [&](Orvane::Context* context) {
        if (!window) {
            window = std::make_unique<TestWindow>(context);
            window->announce();
        }
    };
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QCOMPARE(manager.findChildren<QorRenderView*>().size(), 1);
    window.reset();
}

void tst_QorViewManager::theMessageOfTheLastManagerComesBetweenContextAndExit()
{
    auto first = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    auto second = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    LogCapture log(osg::LOG_NOTICE, &Tiny::trace());
    first.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context"}));
    second.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context", "3 ~QorViewManager::exit Orvane system\n", "System::exit"}));
}

void tst_QorViewManager::theEntryIsGoneWhenTheContextEnds()
{
    auto first = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    std::unique_ptr<QorViewManager> second;
    int ends = 0;
    Tiny::switches().onEnd = [&](Orvane::Context*) {
        if (++ends == 1)
            second = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    };
    takeTrace();
    first.reset();
    // The second one saw an empty table, and the first one no longer did.
    QCOMPARE(takeTrace(), (Trace{"System::init 0 null 382", "Context::create", "~Context"}));
    second.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context", "System::exit"}));
}

void tst_QorViewManager::runFrameGivesTheWait()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    Tiny::switches().waits = {0.125, 0.0};
    QCOMPARE(manager.runFrame(), 0.125);
    QCOMPARE(manager.runFrame(), 0.0);
    QVERIFY(pendingTimers().isEmpty());

    double result = -1.0;
    Tiny::switches().waits = {2.5};
    QVERIFY(
        QMetaObject::invokeMethod(&manager, "runFrame", Qt::DirectConnection, Q_RETURN_ARG(double, result)));
    QCOMPARE(result, 2.5);
}

void tst_QorViewManager::theWaitIsTruncatedToMilliseconds_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("zero") << 0.0 << 1;
    QTest::newRow("less than a millisecond") << 0.0009 << 1;
    QTest::newRow("one and a half") << 0.0015 << 1;
    QTest::newRow("truncated") << 0.0169 << 16;
    QTest::newRow("long") << 100.0 << 100000;
    QTest::newRow("negative") << -1.0 << 1;
    QTest::newRow("more than a timer holds") << 1e12 << std::numeric_limits<int>::max();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << std::numeric_limits<int>::max();
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 1;
}

void tst_QorViewManager::theWaitIsTruncatedToMilliseconds()
{
    QFETCH(double, seconds);
    QFETCH(int, milliseconds);
    Tiny::switches().waits = {seconds};
    {
        QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
        QCOMPARE(pendingTimers().size(), 1);
        QCOMPARE(pendingTimers().first().interval, milliseconds);
    }
}

void tst_QorViewManager::theChainGoesOnUntilTheModeChanges()
{
    Tiny::switches().waits = {0.001, 0.0, 0.002};
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QTRY_COMPARE(Tiny::framesOf(Tiny::lastContext()), 4);
    QCOMPARE(pendingTimers().size(), 1);
    QCOMPARE(pendingTimers().first().interval, 1000000);
}

void tst_QorViewManager::leavingTimerModeEndsTheChainAtItsNextLink()
{
    Tiny::switches().waits = {0.001};
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    manager.setTriggerMode(QorViewManager::ManualTrigger);
    QCOMPARE(pendingTimers().size(), 1);
    QTRY_VERIFY(pendingTimers().isEmpty());
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 1);
}

void tst_QorViewManager::timerModeAfterManualModeRunsOneFrameAtOnce()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    Tiny::switches().waits = {0.5};
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 1);
    QCOMPARE(pendingTimers().size(), 1);
    QCOMPARE(pendingTimers().first().interval, 500);
}

void tst_QorViewManager::timerModeTwiceStartsNoSecondChain()
{
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 1);
    QCOMPARE(pendingTimers().size(), 1);
}

void tst_QorViewManager::timerModeAfterAnotherModeStartsNothing()
{
    QorViewManager manager(nullptr, static_cast<QorViewManager::TriggerMode>(2));
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 0);
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 0);
    QVERIFY(pendingTimers().isEmpty());
    // The mode is stored all the same.
    manager.setTriggerMode(QorViewManager::ManualTrigger);
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 1);
}

void tst_QorViewManager::switchingToAndFroKeepsOnePendingLink()
{
    Tiny::switches().waits = {0.01, 0.001};
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    manager.setTriggerMode(QorViewManager::ManualTrigger);
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 2);
    // The link of the second chain runs, that of the first one does not.
    QTRY_COMPARE(pendingTimers().size(), 1);
    QCOMPARE(Tiny::framesOf(Tiny::lastContext()), 3);
}

void tst_QorViewManager::everyModeChangeIsLogged()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    LogCapture log(osg::LOG_NOTICE);
    manager.setTriggerMode(QorViewManager::ManualTrigger);
    manager.setTriggerMode(static_cast<QorViewManager::TriggerMode>(7));
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QCOMPARE(log.take(), (QByteArrayList{"3 QorViewManager::setTriggerMode::TriggerMode = 1\n",
                                         "3 QorViewManager::setTriggerMode::TriggerMode = 7\n",
                                         "3 QorViewManager::setTriggerMode::TriggerMode = 0\n"}));
}

void tst_QorViewManager::aManagerDeletedInItsOwnFrameIsSafe()
{
    auto* manager = new QorViewManager(nullptr, QorViewManager::ManualTrigger);
    Tiny::switches().onFrame = [&](Orvane::Context*) { delete std::exchange(manager, nullptr); };
    manager->setTriggerMode(QorViewManager::TimerTrigger);
    QVERIFY(!manager);
    QVERIFY(pendingTimers().isEmpty());
}

void tst_QorViewManager::loadByUrlMakesTheRootsAndSetsThemRunning()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    QVERIFY(manager.loadContextByURL(QStringLiteral("a.x3d")));
    Trace expected = {"Context::load a.x3d 0 ''"};
    expected.insert(expected.end(), Activation.begin(), Activation.end());
    QCOMPARE(takeTrace(), expected);
    QCOMPARE(Tiny::stateOf(Tiny::lastContext()), Orvane::RUNNING_NS);
}

void tst_QorViewManager::aSecondLoadKeepsTheRoots()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByURL(QStringLiteral("a.x3d")));
    takeTrace();
    QVERIFY(manager.loadContextByURL(QStringLiteral("b.x3d")));
    QCOMPARE(withoutLookups(takeTrace()), (Trace{"Context::load b.x3d 0 ''", "Context::setRootState 0 3"}));
}

void tst_QorViewManager::loadByUrlOfAnEmptyAddressDoesNothing()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    QVERIFY(!manager.loadContextByURL(QString()));
    QVERIFY(!manager.loadContextByURL(QStringLiteral("")));
    QCOMPARE(takeTrace(), Trace());
}

void tst_QorViewManager::aFailedLoadActivatesNothing()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    Tiny::switches().refuseLoad = true;
    QVERIFY(!manager.loadContextByURL(QStringLiteral("a.x3d")));
    QVERIFY(!manager.loadContextByString(QStringLiteral("a.x3d"), QStringLiteral("text")));
    QCOMPARE(takeTrace(), (Trace{"Context::load a.x3d 0 ''", "Context::load a.x3d [text] 0 ''"}));
}

void tst_QorViewManager::loadByStringPassesAddressThenText()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    QVERIFY(manager.loadContextByString(QStringLiteral("base/"), QStringLiteral("scene")));
    Trace expected = {"Context::load base/ [scene] 0 ''"};
    expected.insert(expected.end(), Activation.begin(), Activation.end());
    QCOMPARE(takeTrace(), expected);
    // The address may be empty.
    QVERIFY(manager.loadContextByString(QString(), QStringLiteral("scene")));
    QCOMPARE(takeTrace().front(), std::string("Context::load  [scene] 0 ''"));
}

void tst_QorViewManager::loadByStringWithoutTextNeedsAScene()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    QVERIFY(!manager.loadContextByString(QStringLiteral("base/"), QString()));
    QCOMPARE(takeTrace(), (Trace{"Context::findRoot Scene"}));
}

void tst_QorViewManager::loadByStringWithoutTextPutsAnEmptySceneInPlace()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    QVERIFY(manager.loadContextByURL(QStringLiteral("a.x3d")));
    const unsigned long long before = Tiny::lastContext()->findRoot(Orvane::Scene::_type)->ID();
    takeTrace();
    QVERIFY(manager.loadContextByString(QStringLiteral("ignored"), QStringLiteral("")));
    QCOMPARE(withoutLookups(takeTrace()),
             (Trace{"Context::removeRoot Scene", "Scene::create null 1", "Context::setRootState 0 3"}));
    QVERIFY(Tiny::lastContext()->findRoot(Orvane::Scene::_type)->ID() != before);
}

void tst_QorViewManager::textsGoOutAsLatin1()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    takeTrace();
    manager.loadContextByString(QStringLiteral("ä"), QStringLiteral("ö"));
    QCOMPARE(takeTrace().front(), std::string("Context::load \xe4 [\xf6] 0 ''"));
    addLamp(Tiny::lastContext());
    QVERIFY(manager.setValue(QStringLiteral("desk"), QStringLiteral("label"), QStringLiteral("Glühlampe")));
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("label")), QStringLiteral("Glühlampe"));
}

void tst_QorViewManager::getValueReadsAField()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("watts")), QStringLiteral("60"));
    // The other forms of the name of an exposed field are found too.
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("watts_changed")), QStringLiteral("60"));
}

void tst_QorViewManager::getValueOfUnknownNamesIsEmptyAndNotNull()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    LogCapture log;
    for (const QString& text : {manager.getValue(QStringLiteral("none"), QStringLiteral("watts")),
                                manager.getValue(QStringLiteral("desk"), QStringLiteral("none"))})
    {
        QVERIFY(text.isEmpty());
        QVERIFY(!text.isNull());
    }
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorViewManager::getValueWithoutASceneIsEmptyAndNotNull()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    LogCapture log;
    const QString text = manager.getValue(QStringLiteral("desk"), QStringLiteral("watts"));
    QVERIFY(text.isEmpty());
    QVERIFY(!text.isNull());
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorViewManager::setValueWritesAtTheContextsTime()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    Orvane::Node* lamp = addLamp(Tiny::lastContext());
    Tiny::setTime(Tiny::lastContext(), 12.5);
    QVERIFY(manager.setValue(QStringLiteral("desk"), QStringLiteral("watts"), QStringLiteral("40")));
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("watts")), QStringLiteral("40"));
    QCOMPARE(Tiny::fieldWrites().size(), std::size_t(1));
    QCOMPARE(Tiny::fieldWrites().front().field, lamp->findField(0));
    QCOMPARE(Tiny::fieldWrites().front().time, 12.5);
}

void tst_QorViewManager::setValueOfAnEmptyTextDoesNothing()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    manager.setValue(QStringLiteral("desk"), QStringLiteral("label"), QStringLiteral("reading"));
    LogCapture log;
    QVERIFY(!manager.setValue(QStringLiteral("desk"), QStringLiteral("label"), QStringLiteral("")));
    QVERIFY(!manager.setValue(QStringLiteral("desk"), QStringLiteral("label"), QString()));
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("label")), QStringLiteral("reading"));
    QCOMPARE(log.take(), QByteArrayList());
}

void tst_QorViewManager::setValueOfUnknownNamesIsFalse()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    LogCapture log;
    QVERIFY(!manager.setValue(QStringLiteral("none"), QStringLiteral("watts"), QStringLiteral("1")));
    QVERIFY(!manager.setValue(QStringLiteral("desk"), QStringLiteral("none"), QStringLiteral("1")));
    QCOMPARE(log.take(), QByteArrayList());
    QVERIFY(Tiny::fieldWrites().empty());
}

void tst_QorViewManager::setValueOfATextThatDoesNotParseIsTrue()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    QVERIFY(manager.setValue(QStringLiteral("desk"), QStringLiteral("watts"), QStringLiteral("many")));
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("watts")), QStringLiteral("60"));
}

void tst_QorViewManager::setValueWithoutASceneIsLogged()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    LogCapture log(osg::LOG_FATAL);
    QVERIFY(!manager.setValue(QStringLiteral("desk"), QStringLiteral("watts"), QStringLiteral("1")));
    QCOMPARE(log.take(), QByteArrayList{"1 QorViewManager::setValue: could not get scene\n"});
}

void tst_QorViewManager::setValueEndsAtItsFirstNullCharacter()
{
    QorViewManager manager(nullptr, QorViewManager::ManualTrigger);
    manager.loadContextByURL(QStringLiteral("a.x3d"));
    addLamp(Tiny::lastContext());
    const QString text = QStringLiteral("ab") + QChar(0) + QStringLiteral("cd");
    QVERIFY(manager.setValue(QStringLiteral("desk"), QStringLiteral("label"), text));
    QCOMPARE(manager.getValue(QStringLiteral("desk"), QStringLiteral("label")), QStringLiteral("ab"));
}

void tst_QorViewManager::saiBelongsToTheCaller()
{
    auto manager = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    const std::unique_ptr<__SAI_SAIBrowserRef> first(manager->getSAI());
    const std::unique_ptr<__SAI_SAIBrowserRef> second(manager->getSAI());
    QVERIFY(first && second && first != second);
    QCOMPARE(first->getExecutionContext(), Tiny::lastContext());
    QCOMPARE(Tiny::lastContext()->_refCount, 1);
    first->dispose();
    QVERIFY(!first->getExecutionContext());
    manager.reset();
    QVERIFY(!second->getExecutionContext());
}

void tst_QorViewManager::aDeadManagerFallsBack()
{
    Tiny::switches().refuseContext = true;
    LogCapture log;
    QorViewManager manager(nullptr, QorViewManager::TimerTrigger);
    QCOMPARE(takeTrace(), (Trace{"System::init 0 null 382", "Context::create"}));
    QVERIFY(pendingTimers().isEmpty());
    QCOMPARE(log.take(), QByteArrayList());

    QCOMPARE(manager.runFrame(), 0.0);
    QVERIFY(!manager.loadContextByURL(QStringLiteral("a.x3d")));
    QVERIFY(!manager.loadContextByString(QStringLiteral("a.x3d"), QStringLiteral("text")));
    QVERIFY(!manager.loadContextByString(QStringLiteral("a.x3d"), QString()));
    QVERIFY(manager.getValue(QStringLiteral("a"), QStringLiteral("b")).isNull());
    QVERIFY(!manager.setValue(QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")));
    QCOMPARE(log.take(), QByteArrayList());
    manager.setTriggerMode(QorViewManager::ManualTrigger);
    manager.setTriggerMode(QorViewManager::TimerTrigger);
    QVERIFY(pendingTimers().isEmpty());
    QCOMPARE(takeTrace(), Trace());
}

void tst_QorViewManager::aDeadManagerCountsForNothing()
{
    Tiny::switches().refuseContext = true;
    auto dead = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    Tiny::switches().refuseContext = false;
    takeTrace();
    // The table is still empty, so the next one starts the system again.
    auto living = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    QCOMPARE(takeTrace(), (Trace{"System::init 0 null 382", "Context::create"}));
    dead.reset();
    QCOMPARE(takeTrace(), Trace());
    living.reset();
    QCOMPARE(takeTrace(), (Trace{"~Context", "System::exit"}));
}

void tst_QorViewManager::saiOfADeadManagerHasNoContext()
{
    Tiny::switches().refuseContext = true;
    auto dead = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    Tiny::switches().refuseContext = false;
    const std::unique_ptr<__SAI_SAIBrowserRef> browser(dead->getSAI());
    QVERIFY(browser);
    QVERIFY(!browser->getExecutionContext());
    takeTrace();
    // The lookup left an entry, which goes with the manager.
    dead.reset();
    QCOMPARE(takeTrace(), (Trace{"System::exit"}));
}

QTEST_MAIN(tst_QorViewManager)
#include "tst_QorViewManager.moc"
