#include "LoadedText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFString.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>
#include <Orvane/System.h>
#include <QtTest>

using namespace Orvane;

/// What becomes of the statements of a scene, whatever its encoding; told in XML.
class tst_SceneBuilder : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void nodesGoWhereTheirTypeAsks();
    void containerFieldWins();
    void childWithoutItsDefaultFieldGoesWhereItsTypeIsTaken();
    void childGoesBesideAFullField();
    void childThatFitsNowhereIsTold();
    void secondNodeOfASingleFieldIsTold();
    void useSharesTheNode();
    void useOfAnUnknownNameIsTold();
    void useBeforeItsNodeIsTold();
    void useOfAnotherTypeIsTold();
    void nodeInsideItselfIsRefused();
    void scriptMayHoldTheGroupAroundIt();
    void secondNodeOfANameIsTold();
    void badValuesKeepTheDefault_data();
    void badValuesKeepTheDefault();
    void unknownFieldsAreTold();
    void eventsTakeNoValue();
    void unquotedTextIsOneString();
    void textsAreKeptInTheFormOfTheGraph();
    void unknownNodesKeepWhatTheySay();
    void unknownTypeIsToldOnce();
    void instancesWithoutPrototypeAreKept();
    void scriptFieldsComeFromTheScene();
    void onlyScriptsAndShadersTakeFields();
    void sourceBecomesAnAddress();
    void strayTextIsTold();
    void routesMayStandBeforeTheirNodes();
    void routesOfEverySpellingAreOne();
    void routesThatCannotBeAreTold_data();
    void routesThatCannotBeAreTold();
    void routeToAnUnknownNodeTakesTheTypeOfTheOtherEnd();
    void routeGivesATextOfAnUnknownNodeTheTypeOfTheOtherEnd();
    void rootNodesBecomeRoots();
    void windowAtTheTopMakesTheEngine();
    void viewareaFindsTheWindowAmongOtherNodes();
    void instancesNamedLikeNodesAreNone();
    void secondRootIsTold();
    void nestingTooDeepRefusesTheScene();
    void missingFilesAreTold();
    void anglesComeInTheUnitOfTheFile();
    void otherUnitsAreTold();
    void generalAttributesThatAreFieldsCount();
    void reportCounts();
    void messagesHaveALimit();
};

void tst_SceneBuilder::nodesGoWhereTheirTypeAsks()
{
    const LoadedText scene(
        "<Transform DEF='T'><Shape DEF='S'><Appearance><Material/></Appearance><Box/></Shape>"
        "<Collision DEF='C'/></Transform>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()),
             QStringLiteral("Scene(Transform(Shape(Appearance(Material) Box) Collision))"));
    Node* shape = scene.find("S");
    QVERIFY(shape);
    auto* geometry = dynamic_cast<SFNode*>(shape->findField("geometry", Node::EXACT_FSO));
    QVERIFY(geometry && geometry->link().directNode());
    QCOMPARE(geometry->link().directNode()->type()->name, std::string("Box"));
}

void tst_SceneBuilder::containerFieldWins()
{
    const LoadedText scene("<Collision DEF='C'><Shape containerField='proxy'/><Shape/></Collision>");
    QCOMPARE(scene.messages(), QStringList());
    auto* proxy = dynamic_cast<SFNode*>(scene.find("C")->findField("proxy", Node::EXACT_FSO));
    QVERIFY(proxy && proxy->link().directNode());
    auto* children = dynamic_cast<MFNode*>(scene.find("C")->findField("children", Node::EXACT_FSO));
    QCOMPARE(children->size(), 1U);

    const LoadedText wrong("<Transform DEF='T'>\n<Shape containerField='nowhere'/></Transform>");
    QCOMPARE(wrong.messages(),
             QStringList(QStringLiteral(
                 "3:1 Transform: expected a field that holds nodes, found containerField \"nowhere\"")));
    QCOMPARE(LoadedText::outline(wrong.scene()), QStringLiteral("Scene(Transform(Shape))"));
}

void tst_SceneBuilder::childWithoutItsDefaultFieldGoesWhereItsTypeIsTaken()
{
    // A viewpoint's default is "children"; a view area has none, but a field for viewpoints.
    const LoadedText scene("<Engine><Window><Viewarea><Viewpoint/></Viewarea></Window></Engine>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::outline(scene.root("Engine")),
             QStringLiteral("Engine(Window(Viewarea(Viewpoint)))"));
}

void tst_SceneBuilder::childGoesBesideAFullField()
{
    const char* const set = "<MetadataString/><MetadataFloat/>";
    const LoadedText scene("<MetadataSet DEF='A'>" + std::string(set) +
                           "</MetadataSet><Group><MetadataSet DEF='B'>" + set + "</MetadataSet></Group>");
    QCOMPARE(scene.messages(), QStringList());
    for (const char* name : {"A", "B"}) {
        auto* metadata = dynamic_cast<SFNode*>(scene.find(name)->findField("metadata", Node::EXACT_FSO));
        auto* value = dynamic_cast<MFNode*>(scene.find(name)->findField("value", Node::EXACT_FSO));
        QCOMPARE(metadata->link().directNode()->type()->name, std::string("MetadataString"));
        QCOMPARE(value->size(), 1U);
    }
}

void tst_SceneBuilder::childThatFitsNowhereIsTold()
{
    const LoadedText scene("<Shape><Box>\n<Group/></Box></Shape><Group DEF='After'/>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(), QStringList(QStringLiteral(
                                   "3:1 Box: expected nodes that one of its fields takes, found Group")));
    QVERIFY(scene.find("After"));
}

void tst_SceneBuilder::secondNodeOfASingleFieldIsTold()
{
    const LoadedText scene("<Shape>\n<Box/>\n<Sphere/></Shape>");
    QCOMPARE(scene.messages(), QStringList(QStringLiteral(
                                   "4:1 Shape.geometry: expected one node, found a second one, Sphere")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Shape(Box))"));
}

void tst_SceneBuilder::useSharesTheNode()
{
    const LoadedText scene("<Group><Shape DEF='S'><Box/></Shape></Group><Group><Shape USE='S'/></Group>");
    QCOMPARE(scene.messages(), QStringList());
    QVERIFY(scene.find("S")->isShared());
    QCOMPARE(LoadedText::outline(scene.scene()),
             QStringLiteral("Scene(Group(Shape(Box)) Group(Shape(Box)))"));
}

void tst_SceneBuilder::useOfAnUnknownNameIsTold()
{
    const LoadedText scene("<Group>\n  <Shape USE='S'/></Group>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("3:3 USE: expected the name of a node, found \"S\"")));
}

void tst_SceneBuilder::useBeforeItsNodeIsTold()
{
    const LoadedText scene("<Shape USE='S'/><Shape DEF='S'/>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "2:1 USE: expected a node that stands before, found \"S\", which comes after")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Shape)"));
}

void tst_SceneBuilder::useOfAnotherTypeIsTold()
{
    const LoadedText scene("<Group DEF='G'/>\n<Transform USE='G'/>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("3:1 USE: expected a Transform, found \"G\", which is a Group")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group Group)"));
}

void tst_SceneBuilder::nodeInsideItselfIsRefused()
{
    const LoadedText scene("<Group DEF='G'>\n<Transform><Group USE='G'/></Transform></Group>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "3:12 Transform.children: expected a node that does not contain this place, found \"G\"")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group(Transform))"));
}

void tst_SceneBuilder::scriptMayHoldTheGroupAroundIt()
{
    const LoadedText scene("<Group DEF='G'><Script DEF='S'><field name='group' type='SFNode' "
                           "accessType='initializeOnly'><Group USE='G'/></field></Script></Group>");
    QCOMPARE(scene.messages(), QStringList());
    auto* group = dynamic_cast<SFNode*>(scene.find("S")->findField("group", Node::EXACT_FSO));
    QVERIFY(group);
    QCOMPARE(group->link().directNode(), scene.find("G"));
}

void tst_SceneBuilder::secondNodeOfANameIsTold()
{
    const LoadedText scene("<Group DEF='A'/>\n<Transform DEF='A'/><Transform USE='A'/>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "3:1 DEF: expected a name of its own, found \"A\", which the node at 2:1 bears")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group Transform Transform)"));
}

void tst_SceneBuilder::badValuesKeepTheDefault_data()
{
    QTest::addColumn<QByteArray>("node");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("good");
    const auto row = [](const char* node, const char* field, const char* text, bool good) {
        QTest::newRow(QByteArray(node) + "." + field + "=" + text)
            << QByteArray(node) << QByteArray(field) << QByteArray(text) << good;
    };
    row("Transform", "translation", "1 2 3", true);
    row("Transform", "translation", " 1,2 , 3 ", true);
    row("Transform", "translation", "+1 -.5 1e3", true);
    row("Transform", "translation", "1 2", false);
    row("Transform", "translation", "1 2 3 4", false);
    row("Transform", "translation", "one two three", false);
    row("Transform", "translation", "", false);
    row("Sphere", "radius", "2", true);
    row("Sphere", "radius", "2 3", false);
    row("Sphere", "solid", "false", true);
    row("Sphere", "solid", "FALSE", true);
    row("Sphere", "solid", "0", false);
    row("Switch", "whichChoice", "0x10", true);
    row("Switch", "whichChoice", "99999999999", false);
    row("Switch", "whichChoice", "1.5", false);
    row("IndexedFaceSet", "coordIndex", "0 1 2 -1", true);
    row("IndexedFaceSet", "coordIndex", "0, 1, 2, -1,", true);
    row("IndexedFaceSet", "coordIndex", "", true);
    row("IndexedFaceSet", "coordIndex", "0 1 x", false);
    row("Coordinate", "point", "0 0 0, 1 1 1", true);
    row("Coordinate", "point", "0 0 0 1 1", false);
    row("PixelTexture", "image", "1 1 3 0xff0000", true);
    row("PixelTexture", "image", "2 2 3 0xff0000", false);
    row("PixelTexture", "image", "2000000000 2000000000 4", false);
    row("Text", "string", "\"a\" \"b\\\"c\"", true);
    row("Text", "string", "\"a", false);
}

void tst_SceneBuilder::badValuesKeepTheDefault()
{
    QFETCH(QByteArray, node);
    QFETCH(QByteArray, field);
    QFETCH(QByteArray, text);
    QFETCH(bool, good);
    const std::string type = node.toStdString();
    const LoadedText plain("<" + type + " DEF='N'/>");
    const LoadedText scene("<" + type + " DEF='N' " + field.toStdString() + "='" + text.toStdString() +
                           "'/>");
    QVERIFY(scene.ok);
    const QString value = scene.value("N", field);
    QVERIFY(value != QLatin1String("no field"));
    if (good) {
        QCOMPARE(scene.messages(), QStringList());
        return;
    }
    QCOMPARE(value, plain.value("N", field));
    QCOMPARE(scene.messages().size(), 1);
    const QString message = scene.messages().first();
    const QString place = QStringLiteral("2:%1 ").arg(1 + 1 + node.size() + 9 + field.size() + 2);
    QVERIFY2(message.startsWith(place + QString::fromLatin1(node + "." + field + ": expected ")),
             qPrintable(message));
    QVERIFY2(message.contains(QLatin1String(", found ")), qPrintable(message));
}

void tst_SceneBuilder::unknownFieldsAreTold()
{
    const LoadedText scene("<Group\n  colour='red' bboxSize='1 1 1' DEF='G'/>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("3:11 Group: expected one of its fields, found \"colour\"")));
    QCOMPARE(scene.value("G", "bboxSize"), QStringLiteral("1 1 1"));
}

void tst_SceneBuilder::eventsTakeNoValue()
{
    const LoadedText scene("<TimeSensor isActive='true'/>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "2:23 TimeSensor.isActive: expected a field that has a value, found an event")));
}

void tst_SceneBuilder::unquotedTextIsOneString()
{
    const LoadedText scene("<Text DEF='T' string='two words'/><Anchor DEF='A' url='a.x3d'/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.value("T", "string"), QStringLiteral("\"two words\""));
    QCOMPARE(scene.value("A", "url"), QStringLiteral("\"a.x3d\""));
}

void tst_SceneBuilder::textsAreKeptInTheFormOfTheGraph()
{
    const LoadedText scene("<Text DEF='T\xC3\xBC' string='\"gr\xC3\xBC\xC3\x9F\" \"\xE2\x82\xAC\"'/>"
                           "<WorldInfo DEF='W' title='\xC3\xBC'/>");
    Node* text = scene.find("T\xFC");
    QVERIFY(text);
    auto* strings = dynamic_cast<MFString*>(text->findField("string", Node::EXACT_FSO));
    QCOMPARE((*strings)[0], std::string("gr\xFC\xDF"));
    QCOMPARE((*strings)[1], std::string("\xE2\x82\xAC"));
    QCOMPARE(scene.find("W")->findField("title", Node::EXACT_FSO)->valueToString(), std::string("\xFC"));
}

void tst_SceneBuilder::unknownNodesKeepWhatTheySay()
{
    const LoadedText scene("<Group><Wobbler DEF='W' speed='3' note='a b'><Box containerField='shape'/>"
                           "<Sphere/></Wobbler></Group>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "2:8 expected a node type, found \"Wobbler\"; it is kept without behaviour")));
    QCOMPARE(scene.value("W", "speed"), QStringLiteral("3"));
    QCOMPARE(scene.value("W", "note"), QStringLiteral("a b"));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group(Wobbler(Box Sphere)))"));
    QVERIFY(scene.find("W")->findField("shape", Node::EXACT_FSO));
}

void tst_SceneBuilder::unknownTypeIsToldOnce()
{
    const LoadedText scene("<Wobbler/><Wobbler/>\n<Wibbler/><Shape><Wibbler/></Shape>");
    QCOMPARE(
        scene.messages(),
        QStringList(
            {QStringLiteral("2:1 expected a node type, found \"Wobbler\"; it is kept without behaviour"),
             QStringLiteral("3:1 expected a node type, found \"Wibbler\"; it is kept without behaviour")}));
}

void tst_SceneBuilder::instancesWithoutPrototypeAreKept()
{
    const LoadedText scene(
        "<ProtoInstance name='Red' DEF='R'><fieldValue name='shine' value='0.5'/><fieldValue "
        "name='parts'><Group/><Group/></fieldValue></ProtoInstance>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("2:1 expected a node type, found an instance of the prototype "
                                        "\"Red\"; it is kept without behaviour")));
    QCOMPARE(scene.value("R", "shine"), QStringLiteral("0.5"));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Red(Group Group))"));
}

void tst_SceneBuilder::scriptFieldsComeFromTheScene()
{
    const LoadedText scene(
        "<Script DEF='S'><field name='size' type='SFFloat' accessType='inputOutput' value='2.5'/>"
        "<field name='go' type='SFBool' accessType='inputOnly'/></Script>");
    QCOMPARE(scene.messages(), QStringList());
    Field* size = scene.find("S")->findField("size", Node::EXACT_FSO);
    QVERIFY(size);
    QCOMPARE(size->dataType(), SFFLOAT_DT);
    QCOMPARE(size->partType(), EXPOSEDFIELDP);
    QVERIFY(size->_desc->objExt());
    QCOMPARE(size->valueToString(), std::string("2.5"));
    QVERIFY(scene.find("S")->findEventInSlotID("go") >= 0);

    const LoadedText bad(
        "<Script>\n<field name='a' type='SFFlote' accessType='inputOutput'/>\n<field name='b' "
        "type='SFFloat' accessType='public'/>\n<field name='url' type='SFFloat' "
        "accessType='inputOutput'/>\n<field name='c' type='SFFloat' accessType='inputOutput' "
        "value='x'/></Script>");
    QCOMPARE(bad.messages().size(), 4);
    QCOMPARE(bad.messages()[0], QStringLiteral("3:23 field: expected a data type, found \"SFFlote\""));
    QVERIFY(bad.messages()[1].startsWith(QLatin1String("4:44 field: expected initializeOnly")));
    QCOMPARE(bad.messages()[2],
             QStringLiteral("5:1 Script: expected a new name, found \"url\", which is one of its fields"));
    QVERIFY(bad.messages()[3].startsWith(QLatin1String("6:64 Script.c: expected ")));
}

void tst_SceneBuilder::onlyScriptsAndShadersTakeFields()
{
    const LoadedText shader("<ComposedShader DEF='C' language='GLSL'><field name='a' type='SFFloat' "
                            "accessType='inputOutput' value='1'/></ComposedShader>");
    QCOMPARE(shader.value("C", "a"), QStringLiteral("1"));
    const LoadedText group("<Group>\n<field name='a' type='SFFloat' accessType='inputOutput'/></Group>");
    QCOMPARE(group.messages(),
             QStringList(QStringLiteral("3:1 Group: expected no field of an author, found \"a\"")));
}

void tst_SceneBuilder::sourceBecomesAnAddress()
{
    const LoadedText scene("<Script DEF='S'><![CDATA[\n  ecmascript: a < b;\n]]></Script>");
    QCOMPARE(scene.messages(), QStringList());
    auto* url = dynamic_cast<MFString*>(scene.find("S")->findField("url", Node::EXACT_FSO));
    QCOMPARE(url->size(), 1U);
    QCOMPARE((*url)[0], std::string("ecmascript: a < b;"));
}

void tst_SceneBuilder::strayTextIsTold()
{
    const LoadedText scene("<Group>\n stray</Group>");
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(
        scene.messages()[0].endsWith(QLatin1String("Group: expected elements, found the text \"stray\"")));
}

void tst_SceneBuilder::routesMayStandBeforeTheirNodes()
{
    const LoadedText scene(
        "<ROUTE fromNode='T' fromField='fraction_changed' toNode='I' toField='set_fraction'/>"
        "<TimeSensor DEF='T'/><PositionInterpolator DEF='I'/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.report().routes, std::size_t(1));
    EventOutSlot* out = scene.find("T")->findField("fraction_changed", Node::EXACT_FSO)->_outSlot;
    QVERIFY(out);
    const Route* route = *out->begin();
    QCOMPARE(route->inSlot()->field()->node(), scene.find("I"));
    QCOMPARE(route->type(), Route::SCENE_RT);
}

void tst_SceneBuilder::routesOfEverySpellingAreOne()
{
    const LoadedText scene(
        "<Transform DEF='A'/><Transform DEF='B'/>"
        "<ROUTE fromNode='A' fromField='translation' toNode='B' toField='translation'/>"
        "<ROUTE fromNode='A' fromField='translation_changed' toNode='B' toField='set_translation'/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.report().routes, std::size_t(1));
}

void tst_SceneBuilder::routesThatCannotBeAreTold_data()
{
    QTest::addColumn<QByteArray>("route");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown node") << QByteArray("fromNode='X' fromField='a' toNode='A' toField='b'")
                                  << QStringLiteral("3:1 ROUTE: expected the name of a node, found \"X\"");
    QTest::newRow("unknown output")
        << QByteArray("fromNode='A' fromField='a' toNode='A' toField='translation'")
        << QStringLiteral("3:1 ROUTE: expected an output of Transform \"A\", found \"a\"");
    QTest::newRow("unknown input")
        << QByteArray("fromNode='A' fromField='translation' toNode='A' toField='a'")
        << QStringLiteral("3:1 ROUTE: expected an input of Transform \"A\", found \"a\"");
    QTest::newRow("input as output")
        << QByteArray("fromNode='A' fromField='addChildren' toNode='A' toField='children'")
        << QStringLiteral("3:1 ROUTE: expected an output of Transform \"A\", found \"addChildren\"");
    QTest::newRow("types") << QByteArray("fromNode='A' fromField='translation' toNode='A' toField='rotation'")
                           << QStringLiteral(
                                  "3:1 ROUTE: expected two fields of one type, found translation (SFVec3f) "
                                  "and rotation (SFRotation)");
}

void tst_SceneBuilder::routesThatCannotBeAreTold()
{
    QFETCH(QByteArray, route);
    QFETCH(QString, message);
    const LoadedText scene("<Transform DEF='A'/>\n<ROUTE " + route.toStdString() + "/>");
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages(), QStringList(message));
    QCOMPARE(scene.report().routes, std::size_t(0));
}

void tst_SceneBuilder::routeToAnUnknownNodeTakesTheTypeOfTheOtherEnd()
{
    const LoadedText scene(
        "<TimeSensor DEF='T'/><Wobbler DEF='W'/>"
        "<ROUTE fromNode='T' fromField='fraction_changed' toNode='W' toField='set_speed'/>");
    QCOMPARE(scene.messages().size(), 1); // about the type alone
    QCOMPARE(scene.report().routes, std::size_t(1));
    QCOMPARE(scene.find("W")->findField("set_speed", Node::EXACT_FSO)->dataType(), SFFLOAT_DT);
}

void tst_SceneBuilder::routeGivesATextOfAnUnknownNodeTheTypeOfTheOtherEnd()
{
    const LoadedText scene(
        "<TimeSensor DEF='T'/><Wobbler DEF='W' speed='2.50' name='abc'/>"
        "<ROUTE fromNode='T' fromField='fraction_changed' toNode='W' toField='set_speed'/>\n"
        "<ROUTE fromNode='T' fromField='fraction_changed' toNode='W' toField='name'/>");
    QCOMPARE(scene.messages().size(), 2); // one about the type
    QCOMPARE(scene.messages()[1], QStringLiteral("3:1 ROUTE: expected two fields of one type, found "
                                                 "fraction_changed (SFFloat) and name (SFString)"));
    QCOMPARE(scene.report().routes, std::size_t(1));
    QCOMPARE(scene.find("W")->findField("speed", Node::EXACT_FSO)->dataType(), SFFLOAT_DT);
    QCOMPARE(scene.value("W", "speed"), QStringLiteral("2.5"));
    QCOMPARE(scene.value("W", "name"), QStringLiteral("abc"));
}

void tst_SceneBuilder::rootNodesBecomeRoots()
{
    const LoadedText scene(
        "<Engine DEF='E'><Window DEF='W' size='300 200'><Viewarea/></Window></Engine><Group/>");
    QCOMPARE(scene.messages(), QStringList());
    Node* engine = scene.root("Engine");
    QVERIFY(engine);
    QCOMPARE(LoadedText::outline(engine), QStringLiteral("Engine(Window(Viewarea))"));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group)"));
    QCOMPARE(scene.value("W", "size"), QStringLiteral("300 200"));
}

void tst_SceneBuilder::windowAtTheTopMakesTheEngine()
{
    const LoadedText scene("<Window/><Viewarea/><Window/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::outline(scene.root("Engine")), QStringLiteral("Engine(Window(Viewarea) Window)"));
}

void tst_SceneBuilder::viewareaFindsTheWindowAmongOtherNodes()
{
    const LoadedText scene("<Engine><TimeSensor containerField='windows'/></Engine><Viewarea/>");
    QVERIFY(scene.ok);
    QCOMPARE(LoadedText::outline(scene.root("Engine")),
             QStringLiteral("Engine(TimeSensor Window(Viewarea))"));
}

void tst_SceneBuilder::instancesNamedLikeNodesAreNone()
{
    const LoadedText scene("<ProtoInstance name='Window'/><ProtoInstance name='Viewarea'/>"
                           "<ProtoInstance name='Inline'/><ProtoInstance name='Engine'/>");
    QVERIFY(scene.ok);
    QVERIFY(!scene.root("Engine"));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Window Viewarea Inline Engine)"));
}

void tst_SceneBuilder::secondRootIsTold()
{
    const LoadedText scene("<Engine/>\n<Engine><Window/></Engine><Group><Engine/><Scene/></Group>");
    QCOMPARE(scene.messages(), QStringList({QStringLiteral("3:1 expected one Engine, found a second one"),
                                            QStringLiteral("3:34 expected no root node here, found Engine"),
                                            QStringLiteral("3:43 expected no root node here, found Scene")}));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group)"));
}

void tst_SceneBuilder::nestingTooDeepRefusesTheScene()
{
    const auto nested = [](int depth) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += "<Group>";
        for (int i = 0; i < depth; ++i)
            text += "</Group>";
        return text;
    };
    const LoadedText deepest(nested(2000));
    QVERIFY(deepest.ok);
    QCOMPARE(deepest.report().nodes, std::size_t(2000));
    const LoadedText deeper(nested(20000));
    QVERIFY(!deeper.ok);
    QVERIFY(!deeper.scene());
    QCOMPARE(
        deeper.messages(),
        QStringList(QStringLiteral("2:14001 expected nodes that nest at most 2000 deep, found deeper ones")));
}

void tst_SceneBuilder::missingFilesAreTold()
{
    const LoadedText scene(
        "<Shape><Appearance>\n<ImageTexture url='\"none.png\" \"http://example.org/a.png\"'/>"
        "</Appearance></Shape>\n<Script url='\"none.js\"'/>\n<Background backUrl='\"b.png\"'/>"
        "<Anchor url='\"elsewhere.x3d\"'/><ImageTexture url='\"data:image/png;base64,AAAA\"'/>"
        "<Script url='\"javascript: f\"'/><ImageTexture/>");
    QCOMPARE(
        scene.messages(),
        QStringList(
            {QStringLiteral("3:1 ImageTexture.url: expected a readable local file, found \"none.png\", "
                            "\"http://example.org/a.png\""),
             QStringLiteral("4:1 Script.url: expected a readable local file, found \"none.js\""),
             QStringLiteral("5:1 Background.backUrl: expected a readable local file, found \"b.png\"")}));
}

void tst_SceneBuilder::anglesComeInTheUnitOfTheFile()
{
    LoadedText scene;
    QVERIFY(
        scene.load("<X3D><head><unit category='angle' name='half' conversionFactor='0.5'/></head><Scene>"
                   "<Transform DEF='T' rotation='0 1 0 2' translation='4 4 4'/><SpotLight DEF='S' "
                   "cutOffAngle='1'/><Background DEF='B' skyAngle='1 2'/><OrientationInterpolator DEF='O' "
                   "key='0 1' keyValue='0 1 0 1 0 1 0 2'/></Scene></X3D>"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.value("T", "rotation"), QStringLiteral("0 1 0 1"));
    QCOMPARE(scene.value("T", "translation"), QStringLiteral("4 4 4"));
    QCOMPARE(scene.value("S", "cutOffAngle"), QStringLiteral("0.5"));
    QCOMPARE(scene.value("B", "skyAngle"), QStringLiteral("0.5, 1"));
    QCOMPARE(scene.value("O", "keyValue"), QStringLiteral("0 1 0 0.5, 0 1 0 1"));
}

void tst_SceneBuilder::otherUnitsAreTold()
{
    LoadedText scene;
    QVERIFY(scene.load("<X3D><head><unit category='length' name='inch' conversionFactor='0.0254'/><unit "
                       "category='mass' name='kilogram' conversionFactor='1'/></head><Scene/></X3D>"));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("1:12 unit: expected the base unit of \"length\", found "
                                        "\"inch\", whose values are taken as they are")));
}

void tst_SceneBuilder::generalAttributesThatAreFieldsCount()
{
    const LoadedText scene("<FontStyle DEF='F' style='BOLD' class='x'/><Group style='color: red'/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.find("F")->findField("style", Node::EXACT_FSO)->valueToString(), std::string("BOLD"));
}

void tst_SceneBuilder::reportCounts()
{
    const std::string text =
        LoadedText::document("<Group DEF='G'/><Group USE='G'/><Group USE='G'/><Script DEF='S' "
                             "url='\"javascript:\"'/><Shape/>");
    LoadedText scene;
    QVERIFY(scene.load(text));
    const LoadReport& report = scene.report();
    QVERIFY(report.ok);
    QCOMPARE(report.nodes, std::size_t(3));
    QCOMPARE(report.namedNodes, std::size_t(2));
    QCOMPARE(report.uses, std::size_t(2));
    QCOMPARE(report.scripts, std::size_t(1));
    QCOMPARE(report.bytes, text.size());
    QVERIFY(report.milliseconds > 0.0);
}

void tst_SceneBuilder::messagesHaveALimit()
{
    std::string nodes;
    for (int i = 0; i < 5000; ++i)
        nodes += "<Group a='b'/>";
    const LoadedText scene(nodes);
    QCOMPARE(scene.messages().size(), 1001);
    QCOMPARE(scene.messages().last(), QStringLiteral("0:0 4000 further messages are left out"));
}

QTEST_APPLESS_MAIN(tst_SceneBuilder)
#include "tst_SceneBuilder.moc"
