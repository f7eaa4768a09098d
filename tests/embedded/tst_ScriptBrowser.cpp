#include "ScriptWorld.h"
#include <Orvane/EventOutSlot.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Orvane;

/// What scripts ask of the browser, of scenes and of nodes, in the words of both standards.
class tst_ScriptBrowser : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void answersQuestions_data();
    void answersQuestions();
    void fieldsOfNodesAreReadAndWritten();
    void writesReachOtherScripts();
    void nodeIsTheSameObjectEverywhere();
    void nodesFromTextComeIntoTheScene();
    void childrenAreAddedAndRemovedByEvents();
    void nodeThatWasTakenOutCanComeBack();
    void sceneFromText();
    void nodesFromFiles();
    void routesComeAndGo();
    void routesOfASceneComeAndGo();
    void namesAreGivenAndTaken();
    void prototypesOfTheSceneAreMade();
    void importedNodesAreFound();
    void constantsAreTheAnswersOfDefinitions();
    void rootNodesAreAList();
    void worldIsReplacedByNodes();
    void worldIsReplacedByAScene();
    void worldIsLoaded();
    void loadURLToAViewpointStays();
    void descriptionIsKept();
    void consoleHasLevels();
    void thisIsTheScript();
    void scriptInAnInlineSeesItsOwnScene();
};

void tst_ScriptBrowser::answersQuestions_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char* code, const char* value) {
        QTest::newRow(code) << QByteArray(code) << QByteArray(value);
    };
    row("Browser.getName()", "Orvane");
    row("Browser.name", "Orvane");
    row("Browser.getVersion() == Browser.version", "true");
    row("Browser.getCurrentSpeed()", "2.5");
    row("Browser.currentSpeed", "2.5");
    row("Browser.getCurrentFrameRate()", "0");
    row("Browser.currentFrameRate", "0");
    row("Browser.getWorldURL()", "/where/scene.x3dv");
    row("Browser.currentScene.worldURL", "/where/scene.x3dv");
    row("Browser.currentScene.getNamedNode('T')", "Transform T");
    row("Browser.getExecutionContext().getNamedNode('T').getNodeName()", "T");
    row("t.getNodeTypeName()", "Transform");
    row("t.translation", "1 2 3");
    row("t.translation_changed", "1 2 3");
    row("t.children.length", "1");
    row("t.children[0].children[0].geometry.size", "2 2 2");
    row("t.nothing", "undefined");
    row("'scale' in t", "true");
    row("'nothing' in t", "false");
    row("t.getFieldDefinitions().filter(function (d) { return d.name == 'scale'; })[0].accessType",
        "inputOutput");
    row("typeof t", "object");
    row("t instanceof SFNode", "true");
    row("t.metadata", "null");
    row("(function () { var names = []; for (var name in t) names.push(name); return names.indexOf('scale') "
        ">= 0; })()",
        "true");
}

void tst_ScriptBrowser::answersQuestions()
{
    QFETCH(QByteArray, code);
    QFETCH(QByteArray, value);
    ScriptWorld world(
        "NavigationInfo { speed 2.5 } DEF T Transform { translation 1 2 3 children Group { children Shape { "
        "geometry Box {} } } }" +
            ScriptWorld::script("initializeOnly SFNode t USE T inputOnly SFBool go",
                                "function go() { print(" + code.toStdString() + "); }"),
        "/where/scene.x3dv");
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({value}));
}

void tst_ScriptBrowser::fieldsOfNodesAreReadAndWritten()
{
    ScriptWorld world(
        "DEF T Transform {} DEF U Transform {}" +
        ScriptWorld::script(
            "initializeOnly SFNode t USE T initializeOnly SFNode u USE U inputOnly SFBool go",
            "function go() { t.translation = new SFVec3f(1, 2, 3); t.set_scale = new SFVec3f(2, 2, 2); "
            "u.translation = t.translation; u.rotation.angle = 2; }") +
        "DEF V Transform {} ROUTE T.translation TO V.translation");
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("T", "translation"), QByteArray("1 2 3"));
    QCOMPARE(world.get("T", "scale"), QByteArray("2 2 2"));
    QCOMPARE(world.get("U", "translation"), QByteArray("1 2 3"));
    QCOMPARE(world.get("U", "rotation"), QByteArray("0 0 1 2"));
    QCOMPARE(world.get("V", "translation"), QByteArray("1 2 3"));
    QVERIFY(world.log().isEmpty());
}

void tst_ScriptBrowser::writesReachOtherScripts()
{
    ScriptWorld world(
        "DEF R Script { inputOnly SFInt32 take url \"ecmascript:function take(v, t) { print(v, t); }\" }" +
        ScriptWorld::script("initializeOnly SFNode r USE R inputOnly SFInt32 go",
                            "function go(v) { r.take = v + 1; }"));
    world.log();
    world.set("S", "go", "4");
    QCOMPARE(world.log(), Lines({"5 1000"}));
}

void tst_ScriptBrowser::nodeIsTheSameObjectEverywhere()
{
    ScriptWorld world(
        "DEF T Transform {} DEF G Group { children USE T }" +
        ScriptWorld::script("initializeOnly SFNode t USE T initializeOnly SFNode g USE G",
                            "print(t === g.children[0], t === Browser.currentScene.getNamedNode('T'), "
                            "t == t, g === t);")
            .replace(4, 1, "R"));
    QVERIFY(world.log().contains("true true true false"));
}

void tst_ScriptBrowser::nodesFromTextComeIntoTheScene()
{
    ScriptWorld world("DEF G Group {}" +
                      ScriptWorld::script("initializeOnly SFNode g USE G inputOnly SFString go",
                                          "function go(text) { g.children = "
                                          "Browser.createVrmlFromString(text); print(g.children.length); }"));
    world.log();
    world.set("S", "go",
              "DEF A Transform { translation 1 0 0 } Group {} DEF B Transform {} DEF P TouchSensor {}");
    QCOMPARE(world.log(), Lines({"4"}));
    QCOMPARE(world.field("G", "children").size(), 4U);
    world.set("S", "go", "#VRML V2.0 utf8\nGroup {}");
    QCOMPARE(world.log(), Lines({"1"}));
}

void tst_ScriptBrowser::childrenAreAddedAndRemovedByEvents()
{
    ScriptWorld world("DEF G Group { children DEF A Group {} }" +
                      ScriptWorld::script("initializeOnly SFNode g USE G inputOnly SFBool go",
                                          "var made = new SFNode('Transform { translation 4 5 6 }'); "
                                          "function go(v) { if (v) g.addChildren = new MFNode(made); "
                                          "else g.removeChildren = made; }"));
    world.set("S", "go", "TRUE");
    QCOMPARE(world.field("G", "children").size(), 2U);
    world.set("S", "go", "FALSE");
    QCOMPARE(world.field("G", "children").size(), 1U);
    world.set("S", "go", "TRUE");
    QCOMPARE(world.field("G", "children").size(), 2U);
    QVERIFY(world.log().isEmpty());
}

void tst_ScriptBrowser::nodeThatWasTakenOutCanComeBack()
{
    ScriptWorld world("DEF G Group { children DEF A Transform { translation 1 2 3 } }" +
                      ScriptWorld::script("initializeOnly SFNode g USE G inputOnly SFBool go",
                                          "var kept = g.children[0]; function go(v) { if (v) g.children = "
                                          "[kept]; else g.children.length = 0; }"));
    world.set("S", "go", "FALSE");
    QCOMPARE(world.field("G", "children").size(), 0U);
    for (int i = 0; i < 3; ++i)
        world.frame();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.field("G", "children").size(), 1U);
    QCOMPARE(world.get("A", "translation"), QByteArray("1 2 3"));
}

void tst_ScriptBrowser::sceneFromText()
{
    ScriptWorld world(
        "DEF G Group {}" +
        ScriptWorld::script("initializeOnly SFNode g USE G inputOnly SFString go",
                            "function go(text) { var scene = Browser.createX3DFromString(text); var t = "
                            "scene.getNamedNode('T'); "
                            "t.translation.x = 7; print(scene.rootNodes.length, t); g.children = "
                            "scene.rootNodes; print(g.children[1].translation); }"));
    world.log();
    world.set("S", "go", "Group {} DEF T Transform {}");
    QCOMPARE(world.log(), Lines({"2 Transform T", "7 0 0"}));
    world.set("S", "go",
              "<X3D version='3.3' profile='Full'><Scene><Group/><Transform DEF='T' translation='1 2 "
              "3'/></Scene></X3D>");
    QCOMPARE(world.log(), Lines({"2 Transform T", "7 2 3"}));
}

void tst_ScriptBrowser::nodesFromFiles()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("part.x3dv")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("#X3D V3.3 utf8\nDEF P Transform { translation 3 2 1 }\n");
    file.close();
    ScriptWorld world(
        "DEF G Group {} DEF H Group {}" +
            ScriptWorld::script(
                "initializeOnly SFNode g USE G initializeOnly SFNode h USE H inputOnly SFBool go",
                "function go() { Browser.createVrmlFromURL(new MFString('no.wrl', 'part.x3dv'), g, "
                "'children'); "
                "print(Browser.createX3DFromURL('part.x3dv').getNamedNode('P').translation); "
                "Browser.createX3DFromURL(['part.x3dv'], h, 'addChildren'); }"),
        folder.filePath(QStringLiteral("s.x3dv")).toStdString());
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"3 2 1"}));
    QCOMPARE(world.field("G", "children").size(), 1U);
    QCOMPARE(world.field("H", "children").size(), 1U);
}

void tst_ScriptBrowser::routesComeAndGo()
{
    ScriptWorld world(
        "DEF T Transform {} DEF U Transform {}" +
        ScriptWorld::script(
            "initializeOnly SFNode t USE T initializeOnly SFNode u USE U inputOnly SFBool go",
            "function go(v) { if (v) Browser.addRoute(t, 'translation_changed', u, 'set_translation'); "
            "else Browser.deleteRoute(t, 'translation', u, 'translation'); }"));
    world.set("S", "go", "TRUE");
    world.set("S", "go", "TRUE"); // a second time changes nothing
    EventOutSlot* const slot = world.field("T", "translation")._outSlot;
    QVERIFY(slot && slot->end() - slot->begin() == 1);
    QCOMPARE((*slot->begin())->type(), Route::SCRIPT_RT);
    world.set("T", "translation", "1 2 3");
    QCOMPARE(world.get("U", "translation"), QByteArray("1 2 3"));
    world.set("S", "go", "FALSE");
    world.set("S", "go", "FALSE");
    world.set("T", "translation", "4 5 6");
    QCOMPARE(world.get("U", "translation"), QByteArray("1 2 3"));
    QVERIFY(world.log().isEmpty());
}

void tst_ScriptBrowser::routesOfASceneComeAndGo()
{
    ScriptWorld world(
        "DEF T Transform {} DEF U Transform {}" +
        ScriptWorld::script(
            "initializeOnly SFNode t USE T initializeOnly SFNode u USE U inputOnly SFBool go",
            "var route; function go(v) { if (v) route = Browser.currentScene.addRoute(t, 'scale', u, "
            "'scale'); "
            "else { print(route.fromField, route.toNode); Browser.currentScene.deleteRoute(route); } }"));
    world.set("S", "go", "TRUE");
    world.set("T", "scale", "2 2 2");
    QCOMPARE(world.get("U", "scale"), QByteArray("2 2 2"));
    world.set("S", "go", "FALSE");
    world.set("T", "scale", "3 3 3");
    QCOMPARE(world.get("U", "scale"), QByteArray("2 2 2"));
    QCOMPARE(world.log(), Lines({"scale Transform U"}));
}

void tst_ScriptBrowser::namesAreGivenAndTaken()
{
    ScriptWorld world("DEF G Group {}" +
                      ScriptWorld::script("inputOnly SFBool go",
                                          "var scene = Browser.currentScene; function go(v) { if (v) "
                                          "scene.updateNamedNode('New', scene.getNamedNode('G')); "
                                          "else scene.removeNamedNode('New'); }"));
    world.set("S", "go", "TRUE");
    QVERIFY(world.find("New"));
    QCOMPARE(*world.find("New")->name(), std::string("New"));
    world.set("S", "go", "FALSE");
    QVERIFY(!world.find("New"));
}

void tst_ScriptBrowser::prototypesOfTheSceneAreMade()
{
    ScriptWorld world(
        "PROTO Lamp [ inputOutput SFFloat power 3 ] { PointLight { intensity IS power } } DEF G Group {}" +
        ScriptWorld::script("initializeOnly SFNode g USE G inputOnly SFBool go",
                            "function go() { var lamp = Browser.currentScene.createProto('Lamp'); lamp.power "
                            "= 0.5; g.children.push(lamp); "
                            "g.children.push(Browser.currentScene.createNode('Transform')); "
                            "print(lamp.getNodeTypeName(), lamp.power); }"));
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"Lamp 0.5"}));
    QCOMPARE(world.field("G", "children").size(), 2U);
}

void tst_ScriptBrowser::importedNodesAreFound()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("inner.x3dv")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("#X3D V3.3 utf8\nPROFILE Immersive\nDEF T Transform { scale 3 2 1 }\nEXPORT T AS Size\n");
    file.close();
    ScriptWorld world("DEF I Inline { url \"inner.x3dv\" } IMPORT I.Size AS Inner " +
                          ScriptWorld::script("inputOnly SFString find",
                                              "function find(name) { "
                                              "print(Browser.currentScene.getImportedNode(name).scale); }"),
                      folder.filePath(QStringLiteral("scene.x3dv")).toStdString());
    world.log();
    world.set("S", "find", "Inner");
    QCOMPARE(world.log(), Lines({"3 2 1"}));
    world.set("S", "find", "Size");
    const Lines log = world.log();
    QCOMPARE(log.size(), 1);
    QVERIFY2(log[0].contains("expected the name of an imported node, found \"Size\""), log[0].constData());
}

void tst_ScriptBrowser::constantsAreTheAnswersOfDefinitions()
{
    ScriptWorld world(
        "DEF T Transform {}" +
        ScriptWorld::script("initializeOnly SFNode t USE T inputOnly SFBool go",
                            "function go() { t.getFieldDefinitions().forEach(function (d) { if (d.name == "
                            "'children') print(d.dataType == X3DConstants.MFNode, d.accessType == "
                            "X3DConstants.inputOutput, d.accessType == X3DConstants.inputOnly); }); }"));
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"true true false"}));
}

void tst_ScriptBrowser::rootNodesAreAList()
{
    ScriptWorld world(
        "DEF G Group {}" +
        ScriptWorld::script("inputOnly SFInt32 go",
                            "var scene = Browser.currentScene, made = new SFNode('Transform {}'); function "
                            "go(n) { if (n == 1) scene.addRootNode(made); "
                            "if (n == 2) scene.removeRootNode(made); print(scene.rootNodes.length); }"));
    world.log();
    for (const char* step : {"0", "1", "2"})
        world.set("S", "go", step);
    QCOMPARE(world.log(), Lines({"2", "3", "2"}));
}

void tst_ScriptBrowser::worldIsReplacedByNodes()
{
    ScriptWorld world(ScriptWorld::script(
        "inputOnly SFBool go", "function go() { Browser.replaceWorld(Browser.createVrmlFromString('Group {} "
                               "Transform {} Group {}')); print('to the end'); } "
                               "function shutdown() { print('down'); }"));
    world.log();
    world.set("S", "go", "TRUE");
    world.frame();
    QCOMPARE(world.log(), Lines({"to the end", "down"}));
    QCOMPARE(world.root()->findField("children", Node::EXACT_FSO)->size(), 3U);
}

void tst_ScriptBrowser::worldIsReplacedByAScene()
{
    ScriptWorld world(ScriptWorld::script(
        "inputOnly SFBool go", "function go() { Browser.replaceWorld(Browser.createX3DFromString('DEF N "
                               "Transform { translation 1 0 0 }')); } "
                               "function shutdown() { print('down'); }"));
    world.log();
    world.set("S", "go", "TRUE");
    world.frame();
    QCOMPARE(world.log(), Lines({"down"}));
    QVERIFY(world.find("N"));
    QCOMPARE(world.find("N")->state(), RUNNING_NS);
}

void tst_ScriptBrowser::worldIsLoaded()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("next.x3dv")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(
        "#X3D V3.3 utf8\nDEF N Script { url \"ecmascript:function initialize() { print('next'); }\" }\n");
    file.close();
    ScriptWorld world(
        ScriptWorld::script(
            "inputOnly SFBool go",
            "function go() { print(Browser.loadURL(new MFString('no.x3d', 'next.x3dv'), new MFString())); } "
            "function shutdown() { print('down'); }"),
        folder.filePath(QStringLiteral("s.x3dv")).toStdString());
    world.log();
    world.set("S", "go", "TRUE");
    world.frame();
    Lines log = world.log();
    log.removeAll(QByteArray());
    QVERIFY2(log.contains("true") && log.contains("down") && log.last() == "next",
             log.join('\n').constData());
}

void tst_ScriptBrowser::loadURLToAViewpointStays()
{
    ScriptWorld world(
        "DEF A Viewpoint {} DEF B Viewpoint {}" +
        ScriptWorld::script("inputOnly SFBool go", "function go() { print(Browser.loadURL(['#B'])); }"));
    world.log();
    world.set("S", "go", "TRUE");
    QCOMPARE(world.get("B", "isBound"), QByteArray("TRUE"));
    QCOMPARE(world.log(), Lines({"true"}));
}

void tst_ScriptBrowser::descriptionIsKept()
{
    ScriptWorld world(ScriptWorld::script("", "Browser.setDescription('first'); print(Browser.description); "
                                              "Browser.description = 'second'; print(Browser.description);"));
    QCOMPARE(world.log(), Lines({"first", "second"}));
}

void tst_ScriptBrowser::consoleHasLevels()
{
    ScriptWorld world(ScriptWorld::script(
        "inputOnly SFBool go", "function go() { print('a', 1); println('b'); Browser.print('c'); "
                               "Browser.println('d', new SFVec3f(1, 2, 3)); "
                               "console.log('e', null, undefined); console.info('f'); console.warn('g'); "
                               "console.error('h'); console.debug('i'); print(); }"));
    world.log();
    osg::osgLogP->setLogLevel(osg::LOG_WARNING, true);
    world.set("S", "go", "TRUE");
    QCOMPARE(world.log(), Lines({"a 1", "b", "c", "d 1 2 3", "e null undefined", "f", "g", "h"}));
    osg::osgLogP->setLogLevel(osg::LOG_FATAL, true);
    world.set("S", "go", "TRUE");
    QVERIFY(!world.log().contains("g"));
    osg::osgLogP->setLogLevel(osg::LOG_LOG, true);
    world.set("S", "go", "TRUE");
    QVERIFY(!world.log().contains("h"));
}

void tst_ScriptBrowser::thisIsTheScript()
{
    ScriptWorld world("DEF T Transform {}" +
                      ScriptWorld::script("initializeOnly SFNode t USE T inputOnly SFVec3f moved",
                                          "function initialize() { Browser.addRoute(t, 'translation', this, "
                                          "'moved'); } function moved(v) { print(v, this); }"));
    world.log();
    world.set("T", "translation", "1 2 3");
    QCOMPARE(world.log(), Lines({"1 2 3 Script S"}));
}

void tst_ScriptBrowser::scriptInAnInlineSeesItsOwnScene()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("inner.x3dv")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("#X3D V3.3 utf8\nDEF T Transform { translation 9 9 9 } Script { url \"ecmascript:function "
               "initialize() { "
               "print(Browser.currentScene.getNamedNode('T').translation, "
               "Browser.currentScene.rootNodes.length); }\" }\n");
    file.close();
    ScriptWorld world("DEF T Transform {} Inline { url \"inner.x3dv\" }",
                      folder.filePath(QStringLiteral("s.x3dv")).toStdString());
    QCOMPARE(world.log(), Lines({"9 9 9 2"}));
}

QTEST_GUILESS_MAIN(tst_ScriptBrowser)
#include "tst_ScriptBrowser.moc"
