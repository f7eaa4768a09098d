#include "ScriptWorld.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Orvane;

/// When the functions of scripts are called, with what, and what comes of what they write.
class tst_ScriptEvents : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void initializeIsCalledOnceBeforeEvents();
    void functionOfTheEventGetsValueAndTime();
    void outputTravelsInTheSameFrameWithTheSameTime();
    void lastOfManyOutputsGoesOut();
    void eventsProcessedComesOnceAfterAllEvents();
    void eventsProcessedMayStillWrite();
    void prepareEventsIsCalledInEachFrame();
    void withoutPrepareEventsTheSceneRests();
    void inputOutputCallsTheSetterOrTheName();
    void loopsOfScriptsEnd();
    void shutdownIsCalledAtTheEnd_data();
    void shutdownIsCalledAtTheEnd();
    void urlMayBeginWith_data();
    void urlMayBeginWith();
    void firstUsableValueOfTheUrlCounts();
    void fileIsReadBesideTheScene_data();
    void fileIsReadBesideTheScene();
    void writingTheUrlRunsTheNewCode();
    void writingTheUrlReadsTheFileAgain();
    void loadFalseStopsAScript();
    void addedFieldsTakePartAtOnce();
    void removedFieldsAreNoVariables();
    void instancesOfAPrototypeHaveScriptsOfTheirOwn();
    void scriptsDoNotSeeEachOther();
    void scriptOfAReplacedWorldEnds();
    void hostMayDeleteTheNode();
};

void tst_ScriptEvents::initializeIsCalledOnceBeforeEvents()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFBool go", "print('code'); function initialize() { "
                                                                 "print('initialize'); } function go(v) { "
                                                                 "print('go ' + v); }"));
    world.set("S", "go", "TRUE");
    world.frame();
    QCOMPARE(world.log(), Lines({"code", "initialize", "go true"}));
}

void tst_ScriptEvents::functionOfTheEventGetsValueAndTime()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFVec3f place", "function place(v, time) { print(v.y, time); }"));
    world.log();
    world.field("S", "place").setValueByStr(0.0, "1 2 3");
    world.frameAt(5.0);
    QCOMPARE(world.log(), Lines({"2 1005"}));
}

void tst_ScriptEvents::outputTravelsInTheSameFrameWithTheSameTime()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFFloat go outputOnly SFVec3f moved",
                            "function go(v) { moved = new SFVec3f(v, 0, 0); }") +
        "DEF T Transform {} DEF E Script { inputOnly SFVec3f seen url \"ecmascript:function seen(v, t) "
        "{ print(v, t); }\" }"
        "ROUTE S.moved TO T.translation ROUTE S.moved TO E.seen");
    QVERIFY(world.ok());
    world.log();
    world.field("S", "go").setValueByStr(0.0, "4");
    world.frameAt(7.0);
    QCOMPARE(world.get("T", "translation"), QByteArray("4 0 0"));
    QCOMPARE(world.log(), Lines({"4 0 0 1007"}));
}

void tst_ScriptEvents::lastOfManyOutputsGoesOut()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFBool go outputOnly SFInt32 count",
                                          "function go() { for (var i = 0; i < 10; ++i) count = i; }") +
                      ScriptWorld::script("inputOnly SFInt32 take", "function take(v) { print('got ' + v); }")
                          .replace(4, 1, "R") +
                      "ROUTE S.count TO R.take");
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"got 9"}));
}

void tst_ScriptEvents::eventsProcessedComesOnceAfterAllEvents()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFBool a inputOnly SFBool b",
                                          "function a() { print('a'); } function b() { print('b'); } "
                                          "function eventsProcessed() { print('done'); }"));
    world.log();
    world.field("S", "a").setValueByStr(0.0, "TRUE");
    world.set("S", "b", "TRUE");
    QCOMPARE(world.log(), Lines({"a", "b", "done"}));
    world.frame();
    QVERIFY(world.log().isEmpty());
}

void tst_ScriptEvents::eventsProcessedMayStillWrite()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFFloat a inputOnly SFFloat b outputOnly SFFloat sum",
                            "var x = 0, y = 0; function a(v) { x = v; } function b(v) { y = v; } "
                            "function eventsProcessed() { sum = x + y; }") +
        "DEF M PointLight {} ROUTE S.sum TO M.intensity");
    world.field("S", "a").setValueByStr(0.0, "0.25");
    world.set("S", "b", "0.5");
    QCOMPARE(world.get("M", "intensity"), QByteArray("0.75"));
}

void tst_ScriptEvents::prepareEventsIsCalledInEachFrame()
{
    ScriptWorld world(ScriptWorld::script("outputOnly SFInt32 frames",
                                          "function prepareEvents() { frames = frames + 1; }"));
    const int before = world.get("S", "frames").toInt();
    for (int i = 0; i < 5; ++i)
        world.frame();
    QCOMPARE(world.get("S", "frames").toInt(), before + 5);
}

void tst_ScriptEvents::withoutPrepareEventsTheSceneRests()
{
    ScriptWorld world(ScriptWorld::script("", "function initialize() {}"));
    QVERIFY(world.context().runFrame() > 0.05);
    ScriptWorld busy(ScriptWorld::script("", "function prepareEvents() {}"));
    QVERIFY(busy.context().runFrame() < 0.05);
}

void tst_ScriptEvents::inputOutputCallsTheSetterOrTheName()
{
    ScriptWorld world(ScriptWorld::script("inputOutput SFFloat size 1 inputOutput SFFloat depth 1",
                                          "function set_size(v) { print('size', v, size); } "
                                          "function depth(v) { print('depth', v); }"));
    world.log();
    world.set("S", "size", "3");
    world.set("S", "depth", "4");
    QCOMPARE(world.log(), Lines({"size 3 3", "depth 4"}));
}

void tst_ScriptEvents::loopsOfScriptsEnd()
{
    const std::string code = "var n = 0; function go(v) { n = n + 1; out = v + 1; } "
                             "function eventsProcessed() { print('n', n); n = 0; }";
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFInt32 go outputOnly SFInt32 out", code) +
        ScriptWorld::script("inputOnly SFInt32 go outputOnly SFInt32 out", code).replace(4, 1, "R") +
        "ROUTE S.out TO R.go ROUTE R.out TO S.go");
    world.log();
    world.set("S", "go", "1");
    world.frame();
    // Out and back again, where the second route to fire the first one again ends it.
    QCOMPARE(world.get("S", "out"), QByteArray("4"));
    QCOMPARE(world.get("R", "out"), QByteArray("3"));
}

void tst_ScriptEvents::shutdownIsCalledAtTheEnd_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("url written") << 0;
    QTest::newRow("world replaced") << 1;
    QTest::newRow("node removed") << 2;
    QTest::newRow("load FALSE") << 3;
}

void tst_ScriptEvents::shutdownIsCalledAtTheEnd()
{
    QFETCH(int, how);
    ScriptWorld world(ScriptWorld::script("", "function initialize() { print('up'); } function shutdown() { "
                                              "print('down'); }"));
    QCOMPARE(world.log(), Lines({"up"}));
    switch (how) {
    case 0:
        world.set("S", "url", "\"ecmascript: print('new')\"");
        QCOMPARE(world.log(), Lines({"down", "new"}));
        return;
    case 1:
        QVERIFY(world.context().load("b.x3dv", "#X3D V3.3 utf8\nGroup {}", Context::REPLACE_LT, {}));
        break;
    case 2:
        world.root()->findField("children", Node::EXACT_FSO)->setValueByStr(0.0, "");
        break;
    default:
        world.set("S", "load", "FALSE");
    }
    world.frame();
    QCOMPARE(world.log(), Lines({"down"}));
}

void tst_ScriptEvents::urlMayBeginWith_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("ecmascript") << QByteArray("ecmascript: print('here')");
    QTest::newRow("javascript") << QByteArray("javascript:print('here')");
    QTest::newRow("vrmlscript") << QByteArray("vrmlscript:\nprint('here')");
    QTest::newRow("capitals and blanks") << QByteArray("  \n JavaScript: print('here')");
    QTest::newRow("data") << QByteArray("data:application/javascript,print('here')");
    QTest::newRow("data with escapes") << QByteArray("data:text/ecmascript,print(%27here%27)");
    QTest::newRow("lines of code alone") << QByteArray("var a = 1;\nprint('here')");
    QTest::newRow("ended line of code alone") << QByteArray("print('here')\n");
}

void tst_ScriptEvents::urlMayBeginWith()
{
    QFETCH(QByteArray, url);
    ScriptWorld world("DEF S Script { url \"" + url.toStdString() + "\" }");
    QCOMPARE(world.log(), Lines({"here"}));
}

void tst_ScriptEvents::firstUsableValueOfTheUrlCounts()
{
    ScriptWorld world("DEF S Script { url [ \"no such file.js\", \"ecmascript: print('second')\", "
                      "\"ecmascript: print('third')\" ] }");
    QCOMPARE(world.log(), Lines({"second"}));

    ScriptWorld none("DEF S Script { url [ \"no such file.js\" ] }");
    none.log();
    none.set("S", "url", "\"other.js\"");
    const Lines log = none.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains("other.js"), log[0].constData());
    QVERIFY2(log[0].contains("Script \"S\""), log[0].constData());
    // With its line ended it is no code either.
    none.set("S", "url", "\"third.js\n\"");
    const Lines ended = none.log();
    QCOMPARE(ended.size(), 1);
    QVERIFY2(ended[0].contains("\"third.js\" is no readable local file"), ended[0].constData());
}

void tst_ScriptEvents::fileIsReadBesideTheScene_data()
{
    QTest::addColumn<QByteArray>("url");
    QTest::newRow("name") << QByteArray("code äé.js");
    QTest::newRow("name with its line ended") << QByteArray("code äé.js\n");
    QTest::newRow("scheme") << QByteArray("file:code äé.js");
    QTest::newRow("scheme and folder") << QByteArray("file:./none/../code%20äé.js");
}

void tst_ScriptEvents::fileIsReadBesideTheScene()
{
    QFETCH(QByteArray, url);
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("code äé.js")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("\xEF\xBB\xBF// code\r\nfunction initialize() {\r\n print('from a file');\r\n}\r\n");
    file.close();
    ScriptWorld world("DEF S Script { url \"" + url.toStdString() + "\" }",
                      folder.filePath(QStringLiteral("scene.x3dv")).toStdString());
    QCOMPARE(world.log(), Lines({"from a file"}));
}

void tst_ScriptEvents::writingTheUrlRunsTheNewCode()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFBool go outputOnly SFInt32 count",
                                          "var left = 1; function go() { count = 1; }"));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("S", "count"), QByteArray("1"));
    world.set("S", "url", "\"ecmascript: function go() { count = typeof left == 'undefined' ? 2 : 3; }\"");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("S", "count"), QByteArray("2"));
    world.set("S", "url", "\"ecmascript: function other() {}\"");
    world.set("S", "count", "7");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("S", "count"), QByteArray("7"));
}

void tst_ScriptEvents::writingTheUrlReadsTheFileAgain()
{
    QTemporaryDir folder;
    const auto write = [&folder](const char* code) {
        QFile file(folder.filePath(QStringLiteral("code.js")));
        return file.open(QFile::WriteOnly) && file.write(code) > 0;
    };
    QVERIFY(write("print('first');"));
    ScriptWorld world("DEF S Script { url \"code.js\" }",
                      folder.filePath(QStringLiteral("scene.x3dv")).toStdString());
    QCOMPARE(world.log(), Lines({"first"}));
    QVERIFY(write("print('second');"));
    world.field("S", "url").processValueChange(0.0, Field::EXTERNAL_CT);
    world.frame();
    QCOMPARE(world.log(), Lines({"second"}));
}

void tst_ScriptEvents::loadFalseStopsAScript()
{
    ScriptWorld world(
        ScriptWorld::script("load FALSE inputOnly SFBool go", "function go() { print('gone on'); }"));
    world.set("S", "go", "TRUE");
    QVERIFY(world.log().isEmpty());
    world.set("S", "load", "TRUE");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"gone on"}));
}

void tst_ScriptEvents::addedFieldsTakePartAtOnce()
{
    ScriptWorld world(ScriptWorld::script("", "function later(v) { print('later', v); result = v * 2; }"));
    QVERIFY(addField(*world.find("S"), "later", SFFLOAT_DT, EVENTINP));
    QVERIFY(addField(*world.find("S"), "result", SFFLOAT_DT, EVENTOUTP));
    world.set("S", "later", "1.5");
    QCOMPARE(world.log(), Lines({"later 1.5"}));
    QCOMPARE(world.get("S", "result"), QByteArray("3"));
}

void tst_ScriptEvents::removedFieldsAreNoVariables()
{
    ScriptWorld world(
        ScriptWorld::script("inputOnly SFBool go initializeOnly SFFloat a 1 initializeOnly SFFloat b 2",
                            "function go() { print(typeof a, typeof b, b); b = b + 1; }"));
    world.log();
    QVERIFY(removeField(*world.find("S"), world.field("S", "a")));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"undefined number 2"}));
    QCOMPARE(world.get("S", "b"), QByteArray("3"));
    // A new one of the same name is another one.
    QVERIFY(addField(*world.find("S"), "a", SFSTRING_DT, FIELDP));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"string number 3"}));
}

void tst_ScriptEvents::instancesOfAPrototypeHaveScriptsOfTheirOwn()
{
    ScriptWorld world(
        "PROTO Counter [ inputOnly SFBool go outputOnly SFInt32 count initializeOnly SFInt32 step 1 ] {"
        " Script { inputOnly SFBool go IS go outputOnly SFInt32 count IS count"
        " initializeOnly SFInt32 step IS step url \"ecmascript:var n = 0; function go() { n += step; "
        "count = n; }\" } }"
        "DEF A Counter {} DEF B Counter { step 10 }");
    QVERIFY(world.ok());
    world.set("A", "go", "TRUE");
    world.set("A", "go", "TRUE");
    world.set("B", "go", "TRUE");
    QCOMPARE(world.get("A", "count"), QByteArray("2"));
    QCOMPARE(world.get("B", "count"), QByteArray("10"));
}

void tst_ScriptEvents::scriptsDoNotSeeEachOther()
{
    ScriptWorld world(ScriptWorld::script("", "var mine = 1; function secret() {} other = 2;") +
                      ScriptWorld::script("", "print(typeof mine, typeof secret, typeof other, typeof Math);")
                          .replace(4, 1, "R"));
    QCOMPARE(world.log(), Lines({"undefined undefined undefined object"}));
}

void tst_ScriptEvents::scriptOfAReplacedWorldEnds()
{
    // It holds the group in which it stands, and so itself.
    ScriptWorld world(
        "DEF G Group { children [ DEF S Script { directOutput TRUE initializeOnly SFNode group NULL "
        "url \"ecmascript: var held; function initialize() { held = Browser.currentScene.getNamedNode("
        "'G'); } function prepareEvents() { print('alive'); } function shutdown() { print('down'); }\" } ] "
        "}");
    QVERIFY(world.log().contains("alive"));
    const UInt64 id = world.find("G")->ID();
    QVERIFY(world.context().load("b.x3dv", "#X3D V3.3 utf8\nGroup {}", Context::REPLACE_LT, {}));
    QCOMPARE(world.log(), Lines({"down"}));
    world.frame();
    QVERIFY(world.log().isEmpty());
    QVERIFY(!Node::findNode(id));
}

void tst_ScriptEvents::hostMayDeleteTheNode()
{
    ScriptWorld world(ScriptWorld::script("", "function shutdown() { print('down'); }"));
    delete world.find("S");
    QCOMPARE(world.log(), Lines({"down"}));
    world.frame();
}

QTEST_GUILESS_MAIN(tst_ScriptEvents)
#include "tst_ScriptEvents.moc"
