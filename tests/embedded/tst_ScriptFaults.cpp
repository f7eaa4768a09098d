#include "ScriptWorld.h"
#include "script/ScriptLimits.h"
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Orvane;

/// What scripts do wrong, and what is told of it. None of it ends the program, or another script.
class tst_ScriptFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        System::the().init(0, nullptr, 382);
        scriptLimits().seconds = 0.2;
        scriptLimits().bytes = std::size_t(8) << 20;
    }
    void cleanupTestCase() { System::the().exit(); }

    void faultNamesNodePlaceAndLine();
    void faultInAFileNamesTheFile();
    void syntaxErrorsHaveALine_data();
    void syntaxErrorsHaveALine();
    void sameFaultOfEachFrameIsToldOnce();
    void thrownValuesAreTold_data();
    void thrownValuesAreTold();
    void faultyScriptGoesOn();
    void endlessCodeIsStopped_data();
    void endlessCodeIsStopped();
    void stoppedScriptRunsAgainWithNewCode();
    void memoryIsLimited_data();
    void memoryIsLimited();
    void recursionIsLimited_data();
    void recursionIsLimited();
    void wrongTypesAreRefused_data();
    void wrongTypesAreRefused();
    void nodeThatHasGoneIsAnError_data();
    void nodeThatHasGoneIsAnError();
    void accessOfFieldsIsKept_data();
    void accessOfFieldsIsKept();
    void guardedCodeMeansTheSame_data();
    void guardedCodeMeansTheSame();
    void listThatShrinksWhileItIsWritten();
    void anyBytesAreHarmless_data();
    void anyBytesAreHarmless();
};

void tst_ScriptFaults::faultNamesNodePlaceAndLine()
{
    ScriptWorld world("Group {}\n  DEF Mover Script { url \"ecmascript:\nfunction initialize()\n{\n  "
                      "nothing.here();\n}\" }");
    QCOMPARE(world.log(),
             Lines({"ERROR: scene.x3dv:3:3: Script \"Mover\", line 4 of its code: ReferenceError: "
                    "identifier 'nothing' undefined"}));
    const auto& messages = world.context().loadReport().messages;
    QCOMPARE(messages.size(), std::size_t(1));
    QCOMPARE(messages[0].severity, LoadMessage::ERROR_LM);
    QCOMPARE(messages[0].line, 3);
}

void tst_ScriptFaults::faultInAFileNamesTheFile()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("code.js")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("function initialize() {\n  helper();\n}\nfunction helper() {\n  null.x;\n}\n");
    file.close();
    ScriptWorld world("DEF S Script { url \"code.js\" }",
                      folder.filePath(QStringLiteral("s.x3dv")).toStdString());
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    const QByteArray begin = "ERROR: " + file.fileName().toUtf8() + ":5: Script \"S\": TypeError: ";
    QVERIFY2(log[0].startsWith(begin), log[0].constData());
}

void tst_ScriptFaults::syntaxErrorsHaveALine_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("brace") << QByteArray("function a() {\n if (\n}") << QByteArray("line 3 of its code");
    QTest::newRow("word") << QByteArray("\n\nvar var;") << QByteArray("line 3 of its code");
    QTest::newRow("text without end") << QByteArray("\nvar a = 'b\n;") << QByteArray("line 2 of its code");
    QTest::newRow("thrown while loading")
        << QByteArray("\n\n\nthrow new Error('no');") << QByteArray("line 4 of its code: Error: no");
}

void tst_ScriptFaults::syntaxErrorsHaveALine()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, line);
    ScriptWorld world(ScriptWorld::script("", code.toStdString()));
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains(line), log[0].constData());
}

void tst_ScriptFaults::sameFaultOfEachFrameIsToldOnce()
{
    ScriptWorld world(ScriptWorld::script(
        "", "var n = 0; function prepareEvents() { if (++n == 8) throw 'other'; throw 'again'; }"));
    for (int i = 0; i < 6; ++i)
        world.frame();
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY(log[0].endsWith("again"));
    for (int i = 0; i < 3; ++i)
        world.frame();
    const Lines more = world.log();
    QVERIFY2(more.size() >= 2, more.join('\n').constData());
    QVERIFY2(more[0].endsWith("the last fault came 6 more times"), more[0].constData());
    QVERIFY2(more[1].endsWith("other"), more[1].constData());
}

void tst_ScriptFaults::thrownValuesAreTold_data()
{
    QTest::addColumn<QByteArray>("thrown");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("text") << QByteArray("'a text'") << QByteArray(": a text");
    QTest::newRow("number") << QByteArray("42") << QByteArray(": 42");
    QTest::newRow("undefined") << QByteArray("undefined") << QByteArray(": undefined");
    QTest::newRow("empty") << QByteArray("''") << QByteArray("an error without a text");
    QTest::newRow("object") << QByteArray("{toString: function() { return 'mine'; }}")
                            << QByteArray(": mine");
    QTest::newRow("no text of its own")
        << QByteArray("{toString: function() { throw 1; }}") << QByteArray("Script \\\"S\\\"");
    QTest::newRow("node") << QByteArray("new SFNode('Box {}')") << QByteArray(": Box");
}

void tst_ScriptFaults::thrownValuesAreTold()
{
    QFETCH(QByteArray, thrown);
    QFETCH(QByteArray, told);
    ScriptWorld world(
        ScriptWorld::script("", "function initialize() { throw " + thrown.toStdString() + "; }"));
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains(told.replace("\\\"", "\"")), log[0].constData());
}

void tst_ScriptFaults::faultyScriptGoesOn()
{
    ScriptWorld world(ScriptWorld::script(
        "inputOnly SFBool go outputOnly SFInt32 n",
        "function initialize() { oops(); } function go(v) { if (v) n = n + 1; else oops(); }"));
    world.set("S", "go", "FALSE");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("S", "n"), QByteArray("1"));
}

void tst_ScriptFaults::endlessCodeIsStopped_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("while") << QByteArray("while (true);");
    QTest::newRow("while of a line") << QByteArray("while (1) { continue }");
    QTest::newRow("do") << QByteArray("do { } while (true)");
    QTest::newRow("for") << QByteArray("for (;;) {}");
    QTest::newRow("for with parts") << QByteArray("for (var i = 0; i < 10; i = i % 5) {}");
    QTest::newRow("for with comment") << QByteArray("for (var i = 0; i < 10 // ten\n ; i = 0) {}");
    QTest::newRow("regular expression before")
        << QByteArray("var r = /while (x) [(/]/; var q = 4 / 2 / 1; while (r) {}");
    QTest::newRow("caught") << QByteArray("while (true) try { while (true); } catch (e) {}");
    QTest::newRow("finally") << QByteArray("function f() { try { for (;;); } finally { for (;;); } } f();");
    QTest::newRow("calls") << QByteArray("function f(n) { return n ? f(n - 1) + f(n - 1) : 0; } f(100);");
    QTest::newRow("getter") << QByteArray(
        "var o = {get x() { return this.y + this.y }, get y() { return 1 }}; while (o.x);");
    QTest::newRow("empty places") << QByteArray("var a = []; a.length = 4294967295; a.forEach(print);");
    QTest::newRow("eval") << QByteArray("eval('while (true);');");
    QTest::newRow("eval by another name") << QByteArray("var e = eval; e('for (;;);');");
    QTest::newRow("Function") << QByteArray("new Function('while (true);')();");
    QTest::newRow("constructor of functions") << QByteArray("(function () {}).constructor('for (;;);')();");
    QTest::newRow("expression that never matches")
        << QByteArray("while (true) /(a+)+b/.test('aaaaaaaaaaaaaaaaaaaaaaaaaaa');");
    QTest::newRow("list that grows") << QByteArray(
        "var m = new MFFloat(); for (var i = 0; ; ++i) m[i % 9] = i;");
    QTest::newRow("sorts") << QByteArray("while (true) [3, 2, 1].sort(function (a, b) { return a - b; });");
}

void tst_ScriptFaults::endlessCodeIsStopped()
{
    QFETCH(QByteArray, code);
    code.replace('\\', "\\\\").replace('"', "\\\"");
    ScriptWorld world(
        ScriptWorld::script("", "function initialize() {" + code.toStdString() + "}") +
        ScriptWorld::script("inputOnly SFBool go", "function go() { print('alive'); }").replace(4, 1, "R"));
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains("stopped"), log[0].constData());
    world.set("R", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"alive"}));
}

void tst_ScriptFaults::stoppedScriptRunsAgainWithNewCode()
{
    ScriptWorld world(ScriptWorld::script("inputOnly SFBool go", "function go() { while (true); }"));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log().size(), 1);
    world.set("S", "go", "TRUE");
    QVERIFY(world.log().isEmpty());
    world.set("S", "url", "\"ecmascript: function go() { print('again'); }\"");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"again"}));
}

void tst_ScriptFaults::memoryIsLimited_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("text") << QByteArray("var s = 'x'; for (;;) s += s;");
    QTest::newRow("array") << QByteArray("var a = []; for (;;) a.push(a.length, {});");
    QTest::newRow("objects") << QByteArray(
        "var o = null; for (;;) o = {next: o, more: 'x' + Math.random()};");
    QTest::newRow("buffers") << QByteArray("var a = []; for (;;) a.push(new ArrayBuffer(1000000));");
    QTest::newRow("lists") << QByteArray(
        "var a = []; for (;;) { var m = new MFVec3d(); m.length = 100000; a.push(m); }");
    QTest::newRow("one list") << QByteArray("var m = new MFInt32(); for (var i = 0; ; ++i) m[i * 1000] = 1;");
    QTest::newRow("length") << QByteArray("new MFInt32().length = 4000000000;");
    QTest::newRow("index") << QByteArray("new MFString()[4000000000] = 'a';");
    QTest::newRow("negative length") << QByteArray("new MFString().length = -1;");
    QTest::newRow("texts of lists") << QByteArray(
        "var a = []; for (;;) a.push(String(new MFFloat([1, 2, 3])) + a.length);");
    QTest::newRow("joined") << QByteArray("new Array(100000000).join('xxxxxxxxxx');");
    QTest::newRow("image") << QByteArray("new MFImage(new SFImage(65000, 65000, 4, []));");
}

void tst_ScriptFaults::memoryIsLimited()
{
    QFETCH(QByteArray, code);
    scriptLimits().seconds = 30.0;
    ScriptWorld world(
        ScriptWorld::script("", "function initialize() {" + code.toStdString() + "}") +
        ScriptWorld::script("inputOnly SFBool go", "function go() { print('alive'); }").replace(4, 1, "R"));
    scriptLimits().seconds = 0.2;
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains("Script \"S\""), log[0].constData());
    world.set("R", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"alive"}));
}

void tst_ScriptFaults::recursionIsLimited_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("function") << QByteArray("function f() { return f() + 1; } f();");
    QTest::newRow("through the runtime")
        << QByteArray("var o = {toString: function () { return '' + o; }}; print(o);");
    QTest::newRow("through lists") << QByteArray("function f() { [1].map(f); } f();");
    QTest::newRow("deep expression") << QByteArray("eval(new Array(20000).join('(') + '1');");
    QTest::newRow("deep brackets") << QByteArray("eval(new Array(200000).join('[') );");
    QTest::newRow("JSON") << QByteArray(
        "var o = {}; for (var i = 0; i < 20000; ++i) o = {o: o}; JSON.stringify(o);");
}

void tst_ScriptFaults::recursionIsLimited()
{
    QFETCH(QByteArray, code);
    scriptLimits().seconds = 30.0;
    ScriptWorld world(ScriptWorld::script("", "function initialize() {" + code.toStdString() + "}"));
    scriptLimits().seconds = 0.2;
    QCOMPARE(world.log().size(), 1);
}

void tst_ScriptFaults::wrongTypesAreRefused_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("vector from number")
        << QByteArray("v = 5;") << QByteArray("expected SFVec3f, found a number");
    QTest::newRow("vector from null")
        << QByteArray("v = null;") << QByteArray("expected SFVec3f, found null");
    QTest::newRow("vector from colour")
        << QByteArray("v = new SFColor(1, 0, 0);") << QByteArray("expected SFVec3f");
    QTest::newRow("vector from short array")
        << QByteArray("v = [1, 2];") << QByteArray("expected SFVec3f, found an array");
    QTest::newRow("number from text")
        << QByteArray("f = 'abc';") << QByteArray("expected SFFloat, found a text");
    QTest::newRow("number from undefined")
        << QByteArray("f = undefined;") << QByteArray("expected SFFloat, found undefined");
    QTest::newRow("number from object")
        << QByteArray("f = {};") << QByteArray("expected SFFloat, found an object");
    QTest::newRow("text from null") << QByteArray("s = null;") << QByteArray("expected SFString, found null");
    QTest::newRow("node from text") << QByteArray("n = 'Box';")
                                    << QByteArray("expected SFNode, found a text");
    QTest::newRow("node from scene") << QByteArray("n = Browser.currentScene;")
                                     << QByteArray("expected SFNode");
    QTest::newRow("list from wrong elements")
        << QByteArray("m = [1, new SFVec3f()];") << QByteArray("expected SFVec3f, found a number");
    QTest::newRow("element") << QByteArray("m[0] = 3;") << QByteArray("expected SFVec3f, found a number");
    QTest::newRow("part") << QByteArray("v.x = 'abc';") << QByteArray("found a text");
    QTest::newRow("unknown field") << QByteArray("node.nothing = 1;")
                                   << QByteArray("expected a field of Transform, found \"nothing\"");
    QTest::newRow("image without pixels")
        << QByteArray("i = new SFImage(2, 2, 1, [1]);") << QByteArray("expected 4 pixels, found 1");
    QTest::newRow("image of a wrong kind") << QByteArray("i = 7;") << QByteArray("expected SFImage");
    QTest::newRow("route of other types")
        << QByteArray("Browser.addRoute(node, 'translation', node, 'rotation');")
        << QByteArray("expected fields of one type");
    QTest::newRow("route from nowhere") << QByteArray("Browser.addRoute(node, 'nothing', node, 'rotation');")
                                        << QByteArray("expected a field that sends events");
    QTest::newRow("route without node")
        << QByteArray("Browser.addRoute(null, 'a', node, 'rotation');") << QByteArray("expected a node");
    QTest::newRow("text that is no scene") << QByteArray("Browser.createX3DFromString('<X3D><Scene>');")
                                           << QByteArray("expected the text of a scene");
    QTest::newRow("name of no node") << QByteArray("Browser.currentScene.getNamedNode('Q');")
                                     << QByteArray("expected the name of a node, found");
    QTest::newRow("type of no node") << QByteArray("Browser.currentScene.createNode('X3DChildNode');")
                                     << QByteArray("expected the name of a node type");
    QTest::newRow("file that is not there") << QByteArray("Browser.createX3DFromURL('nothing.x3d');")
                                            << QByteArray("expected the address of a scene file");
    QTest::newRow("matrix without inverse")
        << QByteArray("new SFMatrix3f(0,0,0, 0,0,0, 0,0,0).inverse();") << QByteArray("no inverse");
}

void tst_ScriptFaults::wrongTypesAreRefused()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, told);
    ScriptWorld world(
        "DEF T Transform {}" +
        ScriptWorld::script(
            "outputOnly SFVec3f v outputOnly SFFloat f outputOnly SFString s outputOnly SFNode n "
            "outputOnly MFVec3f m outputOnly SFImage i initializeOnly SFNode node USE T",
            "function initialize() {" + code.replace('"', "\\\"").toStdString() + "}"));
    QVERIFY(world.ok());
    const Lines log = world.log();
    QVERIFY(!log.isEmpty());
    QVERIFY2(log.last().contains(told), log.join('\n').constData());
    QCOMPARE(world.get("S", "v"), QByteArray("0 0 0"));
}

void tst_ScriptFaults::nodeThatHasGoneIsAnError_data()
{
    QTest::addColumn<QByteArray>("use");
    QTest::newRow("read") << QByteArray("print(t.translation);");
    QTest::newRow("write") << QByteArray("t.translation = new SFVec3f();");
    QTest::newRow("read a part") << QByteArray("print(place.x);");
    QTest::newRow("write a part") << QByteArray("place.x = 1;");
    QTest::newRow("length of a list") << QByteArray("print(list.length);");
    QTest::newRow("write into a list") << QByteArray("list[0] = null;");
    QTest::newRow("route") << QByteArray("Browser.addRoute(t, 'translation', t, 'scale');");
    QTest::newRow("value") << QByteArray("n = t;");
}

void tst_ScriptFaults::nodeThatHasGoneIsAnError()
{
    QFETCH(QByteArray, use);
    ScriptWorld world(
        "DEF T Transform { translation 1 2 3 }" +
        ScriptWorld::script("inputOnly SFBool go outputOnly SFNode n",
                            "var t = Browser.currentScene.getNamedNode('T'), place = t.translation, "
                            "list = t.children; function go() { print(t); " +
                                use.toStdString() + " }"));
    QVERIFY(world.log().isEmpty());
    delete world.find("T");
    world.set("S", "go", "TRUE");
    const Lines log = world.log();
    QCOMPARE(log.size(), 2);
    QCOMPARE(log[0], QByteArray("[a node that has gone]"));
    QVERIFY2(log[1].contains("ReferenceError") && log[1].contains("has gone"), log[1].constData());
}

void tst_ScriptFaults::accessOfFieldsIsKept_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("write outputOnly") << QByteArray("touch.isOver = true;") << QByteArray("outputOnly");
    QTest::newRow("write part of outputOnly")
        << QByteArray("touch.hitPoint_changed.x = 1;") << QByteArray("outputOnly");
    QTest::newRow("read inputOnly") << QByteArray("print(group.addChildren);") << QByteArray("inputOnly");
    QTest::newRow("write initializeOnly")
        << QByteArray("group.bboxSize = new SFVec3f(1, 1, 1);") << QByteArray("initializeOnly");
}

void tst_ScriptFaults::accessOfFieldsIsKept()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, told);
    ScriptWorld world(
        "DEF T TouchSensor {} DEF G Group {}" +
        ScriptWorld::script("initializeOnly SFNode touch USE T initializeOnly SFNode group USE G",
                            "function initialize() {" + code.toStdString() + "}"));
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains(told), log[0].constData());
}

void tst_ScriptFaults::guardedCodeMeansTheSame_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("for with comma")
        << QByteArray("var a = 0; for (var i = 0, j = 5; i < 3, j > 0; ++i, --j) ++a; print(a);")
        << QByteArray("5");
    QTest::newRow("for without condition")
        << QByteArray("for (var i = 0;; ++i) if (i > 4) break; print(i);") << QByteArray("5");
    QTest::newRow("for in") << QByteArray("var k = ''; for (var i in {a: 1, b: 2}) k += i; print(k);")
                            << QByteArray("ab");
    QTest::newRow("nested") << QByteArray("var n = 0; for (var i = 0; i < (function () { for (var q = 0; q < "
                                          "3; ++q); return q; })(); ++i) ++n; print(n);")
                            << QByteArray("3");
    QTest::newRow("do while") << QByteArray("var n = 0; do ++n; while (n < 7) print(n);") << QByteArray("7");
    QTest::newRow("division") << QByteArray(
                                     "var a = 8, g = 2; print(a / g / g, (a) / g, [a][0] / g, a++ / g);")
                              << QByteArray("2 4 4 4");
    QTest::newRow("regular expressions")
        << QByteArray("print('a)b'.replace(/[)/]/g, '-'), /\\/x/.test('/x'), typeof /a/);")
        << QByteArray("a-b true object");
    QTest::newRow("texts") << QByteArray("print('while (true) {', 'for (;;)' + 'function () {');")
                           << QByteArray("while (true) { for (;;)function () {");
    QTest::newRow("members")
        << QByteArray(
               "var o = {while: 1, for: 2, if: function (x) { return x; }}; print(o.while, o.for, o.if(3));")
        << QByteArray("1 2 3");
    QTest::newRow("strict") << QByteArray(
                                   "function f() { 'use strict'; return this === undefined; } print(f());")
                            << QByteArray("true");
    QTest::newRow("strict alone") << QByteArray("function f() { 'use strict' } print(f());")
                                  << QByteArray("undefined");
    QTest::newRow("text first") << QByteArray("function f() { 'abc'.length; return 1; } print(f());")
                                << QByteArray("1");
    QTest::newRow("switch") << QByteArray("switch (2) { case 1: print(1); break; case 2: print(2); }")
                            << QByteArray("2");
    QTest::newRow("getters") << QByteArray(
                                    "var o = {get a() { return 5; }, set a(v) { print(v); }}; o.a = o.a;")
                             << QByteArray("5");
    QTest::newRow("let") << QByteArray("let a = 1; for (let i = 0; i < 3; ++i) a += i; print(a);")
                         << QByteArray("4");
    QTest::newRow("const") << QByteArray("const a = 1; print(a);") << QByteArray("1");
    QTest::newRow("labels") << QByteArray("outer: while (true) { for (;;) break outer; } print('out');")
                            << QByteArray("out");
    QTest::newRow("comments") << QByteArray("/* while ( */ // for (;;\nprint('on'); // end")
                              << QByteArray("on");
    QTest::newRow("condition with comment")
        << QByteArray("var n = 3; while (n > 0 // down\n) --n; print(n);") << QByteArray("0");
    QTest::newRow("own name") << QByteArray("print((function f(n) { return n ? n * f(n - 1) : 1; })(5));")
                              << QByteArray("120");
    QTest::newRow("Function")
        << QByteArray("print(new Function('a', 'b', 'return a + b')(1, 2), Function('return 7')());")
        << QByteArray("3 7");
    QTest::newRow("eval") << QByteArray("print(eval('1 + 1'), eval(5));") << QByteArray("2 5");
}

void tst_ScriptFaults::guardedCodeMeansTheSame()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, value);
    code.replace('\\', "\\\\").replace('"', "\\\"");
    ScriptWorld world(ScriptWorld::script("", code.toStdString()));
    QCOMPARE(world.log(), Lines({value}));
}

void tst_ScriptFaults::listThatShrinksWhileItIsWritten()
{
    ScriptWorld world(
        ScriptWorld::script("outputOnly MFString texts outputOnly MFFloat numbers",
                            "function evil(list) { return {valueOf: function () { list.length = 0; return 7; "
                            "}, toString: function () "
                            "{ list.length = 0; return 'seven'; }}; } texts[3000] = ''; texts[2999] = "
                            "evil(texts); numbers[3000] = 0; "
                            "numbers[2999] = evil(numbers); var own = new MFInt32(1, 2, 3); own[2000] = "
                            "evil(own); print(texts.length, "
                            "texts[2999], numbers.length, numbers[2999], own.length, own[2000]);"));
    QCOMPARE(world.log(), Lines({"3000 seven 3000 7 2001 7"}));
}

void tst_ScriptFaults::anyBytesAreHarmless_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("brackets") << QByteArray("}}}))])))");
    QTest::newRow("open") << QByteArray("((({{{[[[");
    QTest::newRow("open comment") << QByteArray("/* never ends");
    QTest::newRow("open expression") << QByteArray("var a = /abc");
    QTest::newRow("bytes") << QByteArray("\xff\xfe\x80 \xc3\x28 var a;");
    QTest::newRow("for of marks") << QByteArray("for(;;;;;)(;;");
    QTest::newRow("while") << QByteArray("while");
    QTest::newRow("long line") << QByteArray("var a = '") + QByteArray(1 << 20, 'x') + "';";
    QTest::newRow("one line of statements") << QByteArray("a=1;").repeated(50000);
    QTest::newRow("many brackets") << QByteArray(300000, '(');
}

void tst_ScriptFaults::anyBytesAreHarmless()
{
    QFETCH(QByteArray, code);
    ScriptWorld world(
        ScriptWorld::script("", "") +
        ScriptWorld::script("inputOnly SFBool go", "function go() { print('alive'); }").replace(4, 1, "R"));
    const QByteArray url = "\"ecmascript:" + code + "\"";
    world.set("S", "url", url.constData());
    world.log();
    world.set("R", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"alive"}));
}

QTEST_GUILESS_MAIN(tst_ScriptFaults)
#include "tst_ScriptFaults.moc"
