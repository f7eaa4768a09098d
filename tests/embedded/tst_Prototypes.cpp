#include "LoadedText.h"
#include "base/Prototype.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>
#include <Orvane/System.h>
#include <QtTest>

using namespace Orvane;

namespace {

std::string field(const std::string& name, const std::string& type, const std::string& access,
                  const std::string& rest = "/>")
{
    return "<field name='" + name + "' type='" + type + "' accessType='" + access + "'" + rest;
}

std::string is(const std::string& nodeField, const std::string& protoField)
{
    return "<IS><connect nodeField='" + nodeField + "' protoField='" + protoField + "'/></IS>";
}

std::string proto(const std::string& name, const std::string& interface, const std::string& body)
{
    return "<ProtoDeclare name='" + name + "'><ProtoInterface>" + interface + "</ProtoInterface><ProtoBody>" +
           body + "</ProtoBody></ProtoDeclare>";
}

std::string instance(const std::string& proto, const std::string& name, const std::string& content = {})
{
    return "<ProtoInstance name='" + proto + "' DEF='" + name + "'>" + content + "</ProtoInstance>";
}

std::string value(const std::string& name, const std::string& text)
{
    return "<fieldValue name='" + name + "' value='" + text + "'/>";
}

/// A coloured material whose colour, default and all, is that of the interface.
std::string paint(const std::string& defaultColor = " value='0 1 0'/>")
{
    return proto("Paint", field("color", "SFColor", "inputOutput", defaultColor),
                 "<Material>" + is("diffuseColor", "color") + "</Material>");
}

/// A node of the body of an instance.
Node* inBody(Node* instance, int index = 0)
{
    if (!instance || !instance->type()->isProto())
        return nullptr;
    const MFNode& body = protoBody(static_cast<const Node&>(*instance));
    return index < static_cast<int>(body.size()) ? body.elem(index).directNode() : nullptr;
}

Node* nodeIn(Node* node, const char* field)
{
    Field* found = node ? node->findField(field, Node::EXACT_FSO) : nullptr;
    if (!found)
        return nullptr;
    if (found->dataType() == SFNODE_DT)
        return static_cast<SFNode*>(found)->link().directNode();
    return found->size() > 0 ? static_cast<MFNode*>(found)->elem(0).directNode() : nullptr;
}

Field& fieldOf(Node* node, const char* name)
{
    Field* found = node ? node->findField(name, Node::DECLARED_FSO) : nullptr;
    if (!found)
        qFatal("no field %s", name);
    return *found;
}

/// Counts the events of a field.
class Events : public Observer
{
public:
    explicit Events(Field& field)
        : Observer("events")
    {
        field.createOutSlot(false);
        field._outSlot->processEventSubject().attach(*this);
    }
    void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override { ++count; }

    int count = 0;
};

} // namespace

class tst_Prototypes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void instanceHasItsBodyAmongItsChildren();
    void defaultsAndValuesOfInstances();
    void onlyTheInterfaceIsSeen();
    void accessOfBothEndsMustFit_data();
    void accessOfBothEndsMustFit();
    void connectionsThatCannotBeAreTold_data();
    void connectionsThatCannotBeAreTold();
    void oneFieldCanFillSeveral();
    void scriptFieldsCanBeConnected();
    void connectionsMayStandBeforeTheFields();
    void missingFilesThatAreHandedOnAreTold();
    void nodesAreHandedIntoTheBody();
    void instancesBearMetadata_data();
    void instancesBearMetadata();
    void defaultNodesAreCopiedForEachInstance();
    void emptyNodeValueReplacesTheDefault();
    void nestedInstancesPassOn();
    void nestedInstancesPassOnNodes();
    void nestedPrototypesAreSeenInTheBodyOnly();
    void namesOfBodiesAreTheirOwn();
    void routesOfTheBodyAreMadeInEachInstance();
    void routesReachInterfaces();
    void recursionIsTold();
    void useBeforeTheStatementIsTold();
    void sameNameTwiceIsTold();
    void prototypesWithoutBodyAreTold();
    void interfacesTakeNoNodes();
    void bodyDecidesThePlace();
    void prototypeMayBearTheNameOfItsType();
    void bodyCannotBeWritten();
    void valuesTravelWhileRunning();
    void valuesTravelThroughNestedInstances();
    void firstEventsOfBothEndsAreOne();
    void nodesTravelWhileRunning();
    void instancesCanBeMadeAtRunTime();
    void instancesDieWithTheirBodies();
    void typeLivesWithItsInstances();
    void modelIsNoPartOfTheScene();
    void countingComesBeforeCopying();
    void tooManyNodesAreTold();
    void depthOfInstancesCounts();
    void unfinishedPrototypesLeaveNothing();
    void declarationsAreKept();
    void restrictionsComeFromTheBody();
    void shapesOfInstancesRun();
    void allEncodingsSayTheSame_data();
    void allEncodingsSayTheSame();
};

void tst_Prototypes::instanceHasItsBodyAmongItsChildren()
{
    const LoadedText scene(proto("Two", "", "<Shape><Box/></Shape><TimeSensor/>") + instance("Two", "A") +
                           instance("Two", "B"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()),
             QStringLiteral("Scene(Two(Shape(Box) TimeSensor) Two(Shape(Box) TimeSensor))"));
    Node* a = scene.find("A");
    QVERIFY(a->type()->isProto());
    QCOMPARE(a->type(), scene.find("B")->type());
    QVERIFY(inBody(a) != inBody(scene.find("B")));
    QCOMPARE(inBody(a)->contextRoot(), scene.scene());
    QCOMPARE(scene.report().protos, std::size_t(1));
    QCOMPARE(scene.report().nodes, std::size_t(5));
}

void tst_Prototypes::defaultsAndValuesOfInstances()
{
    const LoadedText scene(paint() + "<Shape><Appearance>" + instance("Paint", "A") +
                           "</Appearance></Shape><Shape><Appearance>" +
                           instance("Paint", "B", value("color", "0 0 1")) + "</Appearance></Shape>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.value("A", "color"), QStringLiteral("0 1 0"));
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "diffuseColor"), QStringLiteral("0 1 0"));
    QCOMPARE(scene.value("B", "color"), QStringLiteral("0 0 1"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "diffuseColor"), QStringLiteral("0 0 1"));
}

void tst_Prototypes::onlyTheInterfaceIsSeen()
{
    const LoadedText scene(paint() + "<Shape><Appearance>" +
                           instance("Paint", "A", value("colour", "0 0 1")) + "</Appearance></Shape>");
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(
        scene.messages()[0].endsWith(QStringLiteral("Paint: expected one of its fields, found \"colour\"")));
    Node* a = scene.find("A");
    QCOMPARE(a->partDescCount(), 2U);
    QVERIFY(!a->findField(0U)->_desc->privateAccess());
    QVERIFY(a->findField(1U)->_desc->privateAccess());
}

void tst_Prototypes::accessOfBothEndsMustFit_data()
{
    QTest::addColumn<QString>("outer");
    QTest::addColumn<QString>("inner");
    QTest::addColumn<bool>("fits");
    const QStringList all = {QStringLiteral("initializeOnly"), QStringLiteral("inputOnly"),
                             QStringLiteral("outputOnly"), QStringLiteral("inputOutput")};
    for (const QString& outer : all)
        for (const QString& inner : all)
            QTest::newRow(qPrintable(outer + QLatin1Char(' ') + inner))
                << outer << inner << (outer == inner || inner == all.last());
}

void tst_Prototypes::accessOfBothEndsMustFit()
{
    QFETCH(QString, outer);
    QFETCH(QString, inner);
    QFETCH(bool, fits);
    const LoadedText scene(
        proto("P", field("p", "SFFloat", outer.toStdString()),
              "<Script>" + field("s", "SFFloat", inner.toStdString()) + is("s", "p") + "</Script>") +
        instance("P", "I"));
    QCOMPARE(scene.messages().isEmpty(), fits);
    const Field& p = fieldOf(scene.find("I"), "p");
    const Field& s = fieldOf(inBody(scene.find("I")), "s");
    const bool in = fits && outer != QLatin1String("outputOnly");
    const bool out = fits && (outer == QLatin1String("outputOnly") || outer == QLatin1String("inputOutput"));
    QCOMPARE(p.outRouteCount(false, true), in ? 1U : 0U);
    QCOMPARE(s.inRouteCount(false, true), in ? 1U : 0U);
    QCOMPARE(s.outRouteCount(false, true), out ? 1U : 0U);
    QCOMPARE(p.inRouteCount(false, true), out ? 1U : 0U);
    QCOMPARE(p.outRouteCount(true, false), 0U);
    if (in)
        QCOMPARE((*p._outSlot->begin())->type(), Route::IS_RT);
    if (!fits) {
        QCOMPARE(scene.messages().size(), 1);
        QVERIFY(
            scene.messages()[0].contains(QStringLiteral("IS: expected Script.s to take the place of \"p\"")));
    }
}

void tst_Prototypes::connectionsThatCannotBeAreTold_data()
{
    QTest::addColumn<QString>("scene");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const std::string& scene, const char* message) {
        QTest::newRow(name) << QString::fromStdString(scene) << QString::fromLatin1(message);
    };
    const std::string color = field("color", "SFColor", "inputOutput", " value='1 0 0'/>");
    row("data type", proto("P", color, "<Transform>" + is("translation", "color") + "</Transform>"),
        "IS: expected Transform.translation to take the place of \"color\", an ExposedField of type SFColor, "
        "found an ExposedField of type SFVec3f");
    row("no such field of the node", proto("P", color, "<Material>" + is("colour", "color") + "</Material>"),
        "Material: expected one of its fields, found \"colour\"");
    row("no such field of the prototype",
        proto("P", color, "<Material>" + is("diffuseColor", "c") + "</Material>"),
        "IS: expected a field of the prototype P, found \"c\"");
    row("the body itself", proto("P", color, "<Group>" + is("children", "protoBody") + "</Group>"),
        "IS: expected a field of the prototype P, found \"protoBody\"");
    row("outside", "<Material>" + is("diffuseColor", "color") + "</Material>",
        "IS: expected to stand inside a prototype, found a connection of \"diffuseColor\" outside");
    row("straight in the body", proto("P", color, is("diffuseColor", "color") + "<Material/>"),
        "IS: expected to stand inside a prototype, found a connection of \"diffuseColor\" outside");
}

void tst_Prototypes::connectionsThatCannotBeAreTold()
{
    QFETCH(QString, scene);
    QFETCH(QString, message);
    const LoadedText loaded(scene.toStdString());
    QVERIFY(loaded.ok);
    QVERIFY2(!loaded.messages().isEmpty(), "no message");
    QVERIFY2(loaded.messages()[0].endsWith(message), qPrintable(loaded.messages()[0]));
    QVERIFY(loaded.messages()[0].startsWith(QStringLiteral("2:")));
}

void tst_Prototypes::oneFieldCanFillSeveral()
{
    const LoadedText scene(proto("P", field("c", "SFColor", "inputOutput", " value='1 0 0'/>"),
                                 "<Group><PointLight>" + is("color", "c") + "</PointLight><SpotLight>" +
                                     is("color", "c") + "</SpotLight></Group>") +
                           instance("P", "A", value("c", "0 0 1")));
    QCOMPARE(scene.messages(), QStringList());
    std::vector<Node*> lights;
    inBody(scene.find("A"))->collectAllChildren(lights, 0);
    QCOMPARE(lights.size(), std::size_t(2));
    QCOMPARE(LoadedText::value(lights[0], "color"), QStringLiteral("0 0 1"));
    QCOMPARE(LoadedText::value(lights[1], "color"), QStringLiteral("0 0 1"));
}

void tst_Prototypes::scriptFieldsCanBeConnected()
{
    const LoadedText scene(
        proto(
            "P",
            field("speed", "SFFloat", "initializeOnly", " value='2'/>") + field("go", "SFBool", "inputOnly"),
            "<Script url='\"ecmascript: \"'>" + field("speed", "SFFloat", "initializeOnly") +
                field("go", "SFBool", "inputOnly") + field("own", "SFString", "inputOutput", " value='x'/>") +
                "<IS><connect nodeField='speed' protoField='speed'/><connect nodeField='go' "
                "protoField='go'/></IS></Script>") +
        instance("P", "A") + instance("P", "B", value("speed", "3")));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "speed"), QStringLiteral("2"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "speed"), QStringLiteral("3"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "own"), QStringLiteral("x"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "url"), QStringLiteral("\"ecmascript: \""));
    QVERIFY(fieldOf(inBody(scene.find("B")), "own")._desc->objExt());
    QCOMPARE(fieldOf(inBody(scene.find("B")), "go").inRouteCount(false, true), 1U);
}

void tst_Prototypes::connectionsMayStandBeforeTheFields()
{
    const LoadedText scene(proto("P", field("speed", "SFFloat", "inputOutput", " value='2'/>"),
                                 "<Script>" + is("pace", "speed") + "<MetadataString name='m'/>" +
                                     field("pace", "SFFloat", "inputOutput") + "</Script>") +
                           instance("P", "A"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "pace"), QStringLiteral("2"));
}

void tst_Prototypes::instancesBearMetadata_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    const std::string group = proto("P", "", "<Group/>");
    const auto xml = [](const std::string& nodes) {
        return QString::fromStdString(LoadedText::document(nodes));
    };
    QTest::newRow("XML") << "scene.x3d"
                         << xml(group + instance("P", "A", "<MetadataString DEF='M' name='m'/>"));
    QTest::newRow("XML, named field")
        << "scene.x3d"
        << xml(group + instance("P", "A", "<MetadataString DEF='M' containerField='metadata' name='m'/>"));
    QTest::newRow("XML, value") << "scene.x3d"
                                << xml(group + instance("P", "A",
                                                        "<fieldValue name='metadata'><MetadataString DEF='M' "
                                                        "name='m'/></fieldValue>"));
    QTest::newRow("classic") << "scene.x3dv"
                             << "#X3D V3.3 utf8\nPROFILE Full\nPROTO P [ ] { Group { } }\n"
                                "DEF A P { metadata DEF M MetadataString { name \"m\" } }";
}

void tst_Prototypes::instancesBearMetadata()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const LoadedText scene;
    QVERIFY(scene.context().load(name.toStdString(), text.toStdString(), Context::REPLACE_LT, {}));
    QCOMPARE(scene.messages(), QStringList());
    QVERIFY(scene.find("M"));
    QCOMPARE(nodeIn(scene.find("A"), "metadata"), scene.find("M"));
    QCOMPARE(LoadedText::outline(inBody(scene.find("A"))), QStringLiteral("Group"));
}

void tst_Prototypes::missingFilesThatAreHandedOnAreTold()
{
    const std::string body =
        "<Appearance><ImageTexture>" + is("url", "pictures") + "</ImageTexture></Appearance>";
    const LoadedText scene(
        proto("P", field("pictures", "MFString", "inputOutput"), body) + "\n" +
        proto("Q", field("pictures", "MFString", "inputOutput", " value='\"q.png\"'/>"), body) + "\n" +
        instance("P", "A", value("pictures", "\"none.png\"")) + instance("P", "B") +
        instance("P", "C", value("pictures", "\"data:image/png;base64,\"")) + "\n" + instance("Q", "D") +
        instance("Q", "E"));
    const QStringList messages = scene.messages();
    QCOMPARE(messages.size(), 2);
    QCOMPARE(messages[0],
             QStringLiteral("4:1 ImageTexture.url: expected a readable local file, found \"none.png\""));
    QVERIFY(messages[1].startsWith(QStringLiteral("3:")));
    QVERIFY(messages[1].endsWith(
        QStringLiteral(" ImageTexture.url: expected a readable local file, found \"q.png\"")));
}

void tst_Prototypes::nodesAreHandedIntoTheBody()
{
    const LoadedText scene(
        proto("P", field("parts", "MFNode", "inputOutput") + field("look", "SFNode", "initializeOnly"),
              "<Transform translation='1 0 0'>" + is("children", "parts") + "</Transform><Shape>" +
                  is("appearance", "look") + "</Shape>") +
        instance("P", "A",
                 "<fieldValue name='parts'><Group DEF='G'/><Shape/></fieldValue><fieldValue "
                 "name='look'><Appearance/></fieldValue>"));
    QCOMPARE(scene.messages(), QStringList());
    Node* a = scene.find("A");
    QCOMPARE(fieldOf(inBody(a), "children").size(), 2U);
    QCOMPARE(nodeIn(inBody(a), "children"), scene.find("G"));
    QCOMPARE(nodeIn(a, "parts"), scene.find("G"));
    QVERIFY(nodeIn(inBody(a, 1), "appearance"));
    QCOMPARE(nodeIn(inBody(a, 1), "appearance"), nodeIn(a, "look"));
}

void tst_Prototypes::defaultNodesAreCopiedForEachInstance()
{
    const LoadedText scene(
        proto("P",
              field("parts", "MFNode", "inputOutput", "><Shape><Box DEF='B' size='1 2 3'/></Shape></field>"),
              "<Group>" + is("children", "parts") + "</Group><Shape><Box USE='B'/></Shape>") +
        instance("P", "A") + instance("P", "B") +
        instance("P", "C", "<fieldValue name='parts'><Anchor/></fieldValue>"));
    QCOMPARE(scene.messages(), QStringList());
    Node* a = nodeIn(scene.find("A"), "parts");
    Node* b = nodeIn(scene.find("B"), "parts");
    QVERIFY(a && b && a != b);
    QCOMPARE(nodeIn(inBody(scene.find("A")), "children"), a);
    QCOMPARE(LoadedText::value(nodeIn(a, "geometry"), "size"), QStringLiteral("1 2 3"));
    QCOMPARE(nodeIn(inBody(scene.find("A"), 1), "geometry"), nodeIn(a, "geometry"));
    // A node of the body that stands in the default too is there without the default.
    Node* c = scene.find("C");
    QCOMPARE(nodeIn(c, "parts")->type()->name, std::string("Anchor"));
    QCOMPARE(fieldOf(inBody(c), "children").size(), 1U);
    QCOMPARE(LoadedText::value(nodeIn(inBody(c, 1), "geometry"), "size"), QStringLiteral("1 2 3"));
}

void tst_Prototypes::emptyNodeValueReplacesTheDefault()
{
    const LoadedText scene(proto("P", field("look", "SFNode", "inputOutput", "><Appearance/></field>"),
                                 "<Shape>" + is("appearance", "look") + "</Shape>") +
                           instance("P", "A", value("look", "NULL")));
    QCOMPARE(scene.messages(), QStringList());
    QVERIFY(!nodeIn(scene.find("A"), "look"));
    QVERIFY(!nodeIn(inBody(scene.find("A")), "appearance"));
}

void tst_Prototypes::nestedInstancesPassOn()
{
    const LoadedText scene(paint() +
                           proto("Thing", field("tint", "SFColor", "inputOutput", " value='1 1 0'/>"),
                                 "<Shape><Appearance><ProtoInstance name='Paint'>" + is("color", "tint") +
                                     "</ProtoInstance></Appearance></Shape>") +
                           instance("Thing", "A") + instance("Thing", "B", value("tint", "0 0 1")));
    QCOMPARE(scene.messages(), QStringList());
    for (const auto& [name, color] : {std::pair("A", "1 1 0"), std::pair("B", "0 0 1")}) {
        Node* inner = nodeIn(nodeIn(inBody(scene.find(name)), "appearance"), "material");
        QCOMPARE(LoadedText::value(inner, "color"), QString::fromLatin1(color));
        QCOMPARE(LoadedText::value(inBody(inner), "diffuseColor"), QString::fromLatin1(color));
    }
}

void tst_Prototypes::nestedInstancesPassOnNodes()
{
    const LoadedText scene(
        proto("Inner", field("parts", "MFNode", "inputOutput", "><Anchor/></field>"),
              "<Group>" + is("children", "parts") + "</Group>") +
        proto("Outer", field("content", "MFNode", "inputOutput", "><Billboard/></field>"),
              "<ProtoInstance name='Inner'>" + is("parts", "content") + "</ProtoInstance>") +
        instance("Outer", "A") + instance("Outer", "B", "<fieldValue name='content'><Switch/></fieldValue>"));
    QCOMPARE(scene.messages(), QStringList());
    for (const auto& [name, type] : {std::pair("A", "Billboard"), std::pair("B", "Switch")}) {
        Node* inner = inBody(scene.find(name));
        QCOMPARE(fieldOf(inner, "parts").size(), 1U);
        QCOMPARE(fieldOf(inBody(inner), "children").size(), 1U);
        QCOMPARE(nodeIn(inBody(inner), "children")->type()->name, std::string(type));
        QCOMPARE(nodeIn(inBody(inner), "children"), nodeIn(scene.find(name), "content"));
    }
}

void tst_Prototypes::nestedPrototypesAreSeenInTheBodyOnly()
{
    const LoadedText scene(
        paint() + "\n" +
        proto("Outer", "",
              proto("Inner", "", "<ProtoInstance name='Paint'/>") +
                  "<Shape><Appearance><ProtoInstance name='Inner'/></Appearance></Shape>") +
        "\n" + instance("Outer", "A") + "\n" + instance("Inner", "B"));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("5:1 expected a node type, found an instance of the "
                                        "prototype \"Inner\"; it is kept without behaviour")));
    Node* inner = nodeIn(nodeIn(inBody(scene.find("A")), "appearance"), "material");
    QCOMPARE(LoadedText::outline(inner), QStringLiteral("Inner(Paint(Material))"));
    QCOMPARE(LoadedText::value(inBody(inBody(inner)), "diffuseColor"), QStringLiteral("0 1 0"));
}

void tst_Prototypes::namesOfBodiesAreTheirOwn()
{
    const LoadedText scene(
        "<Shape DEF='S'/>" +
        proto("P", "", "<Group DEF='S'/><Anchor><Group USE='S'/></Anchor>\n<Shape USE='T'/>") +
        "<Shape DEF='T'/>" + instance("P", "A") + "\n<Group DEF='G'><Shape USE='S'/></Group>");
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("3:1 USE: expected the name of a node, found \"T\"")));
    QCOMPARE(scene.find("S")->type()->name, std::string("Shape"));
    QCOMPARE(nodeIn(scene.find("G"), "children"), scene.find("S"));
    Node* a = scene.find("A");
    QCOMPARE(nodeIn(inBody(a, 1), "children"), inBody(a));
    NodeNameSpace* names = NodeNameSpace::findNameSpace(scene.scene()->nameSpace(), "A", nullptr, false);
    QVERIFY(names);
    QCOMPARE(names, rootNames(*a));
    QCOMPARE(names->rootNode(), a);
    QCOMPARE(NodeNameSpace::findNode(names, "S"), inBody(a));
    QCOMPARE(inBody(a)->nameSpace(), names);
    QCOMPARE(a->nameSpace(), scene.scene()->nameSpace());
}

void tst_Prototypes::routesOfTheBodyAreMadeInEachInstance()
{
    const LoadedText scene(
        proto("P", "",
              "<Transform DEF='T'><Group DEF='G'/></Transform><TimeSensor DEF='C'/><PositionInterpolator "
              "DEF='I'/>"
              "<ROUTE fromNode='C' fromField='fraction_changed' toNode='I' toField='set_fraction'/>"
              "<ROUTE fromNode='I' fromField='value_changed' toNode='T' toField='translation'/>"
              "\n<ROUTE fromNode='I' fromField='value_changed' toNode='X' toField='translation'/>") +
        instance("P", "A") + instance("P", "B"));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("3:1 ROUTE: expected the name of a node, found \"X\"")));
    QCOMPARE(scene.report().routes, std::size_t(2));
    for (const char* name : {"A", "B"}) {
        const Field& value = fieldOf(inBody(scene.find(name), 2), "value_changed");
        QCOMPARE(value.outRouteCount(true, false), 1U);
        const Route* route = *value._outSlot->begin();
        QCOMPARE(route->type(), Route::SCENE_RT);
        QCOMPARE(route->inSlot()->field()->node(), inBody(scene.find(name)));
    }
}

void tst_Prototypes::routesReachInterfaces()
{
    const LoadedText scene(paint() + "<Shape><Appearance>" + instance("Paint", "A") +
                           "</Appearance></Shape><ColorInterpolator DEF='C'/><PointLight DEF='L'/>"
                           "<ROUTE fromNode='C' fromField='value_changed' toNode='A' toField='set_color'/>"
                           "<ROUTE fromNode='A' fromField='color_changed' toNode='L' toField='color'/>");
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.report().routes, std::size_t(2));
}

void tst_Prototypes::recursionIsTold()
{
    const LoadedText scene(
        proto("P", "",
              "<Group>\n<ProtoInstance name='P' containerField='children'/>" +
                  proto("Q", "", "<Group>\n<ProtoInstance name='P' containerField='children'/></Group>") +
                  "</Group>") +
        instance("P", "A"));
    const QString text = QStringLiteral(
        "%1 PROTO P: expected a body without an instance of itself, found one; it is kept without behaviour");
    QCOMPARE(scene.messages(),
             QStringList({text.arg(QStringLiteral("3:1")), text.arg(QStringLiteral("4:1"))}));
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Group(P))"));
    QVERIFY(!nodeIn(inBody(scene.find("A")), "children")->type()->isProto());
}

void tst_Prototypes::useBeforeTheStatementIsTold()
{
    const LoadedText scene(instance("Paint", "A") + "\n" + paint());
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("2:1 expected a node type, found an instance of the "
                                        "prototype \"Paint\"; it is kept without behaviour")));
}

void tst_Prototypes::sameNameTwiceIsTold()
{
    const LoadedText scene(proto("P", "", "<Group/>") + "\n" + proto("P", "", "<Shape/>") +
                           instance("P", "A"));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral(
                 "3:1 PROTO: expected a name of its own, found \"P\", which the prototype at 2:1 bears")));
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Shape)"));
}

void tst_Prototypes::prototypesWithoutBodyAreTold()
{
    const LoadedText scene("<ProtoDeclare name='P'><ProtoInterface>" + field("a", "SFFloat", "inputOutput") +
                           "</ProtoInterface></ProtoDeclare>\n" + proto("Q", "", "") +
                           instance("P", "A", value("a", "2")) + instance("Q", "B"));
    QCOMPARE(scene.messages(),
             QStringList({QStringLiteral("2:1 PROTO P: expected a node in its body, found none"),
                          QStringLiteral("3:1 PROTO Q: expected a node in its body, found none")}));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(P Q)"));
    QCOMPARE(scene.value("A", "a"), QStringLiteral("2"));
}

void tst_Prototypes::interfacesTakeNoNodes()
{
    const LoadedText scene(
        proto("P",
              "<Group><Shape/></Group>" + proto("Q", "", "<Group/>") + field("a", "SFFloat", "inputOutput"),
              "<Group/>") +
        instance("P", "A", value("a", "2")));
    QCOMPARE(scene.messages().size(), 2);
    QVERIFY(scene.messages()[0].endsWith(
        QStringLiteral("PROTO: expected declarations of fields in the interface, found \"Group\"")));
    QVERIFY(scene.messages()[1].endsWith(QStringLiteral(
        "PROTO: expected declarations of fields in the interface, found the prototype \"Q\"")));
    QCOMPARE(scene.value("A", "a"), QStringLiteral("2"));
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Group)"));
}

void tst_Prototypes::bodyDecidesThePlace()
{
    const LoadedText scene(paint() + proto("Round", "", "<Sphere/>") +
                           proto("Ball", "", "<ProtoInstance name='Round'/>") + "<Shape DEF='S'>" +
                           instance("Ball", "A") + "<Appearance DEF='L'>" + instance("Paint", "B") +
                           "</Appearance></Shape>\n<Appearance DEF='M'><ProtoInstance name='Round' "
                           "containerField='material'/></Appearance>");
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages().filter(QStringLiteral("Appearance.material: expected")).size() == 1);
    QCOMPARE(nodeIn(scene.find("S"), "geometry"), scene.find("A"));
    QCOMPARE(nodeIn(scene.find("L"), "material"), scene.find("B"));
    QCOMPARE(protoStandIn(*scene.find("A"))->type()->name, std::string("Sphere"));
}

void tst_Prototypes::prototypeMayBearTheNameOfItsType()
{
    const LoadedText scene(proto("Box", "", "<Shape><Box size='1 1 1'/></Shape>") + instance("Box", "A"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("Box(Shape(Box))"));
    QVERIFY(!nodeIn(inBody(scene.find("A")), "geometry")->type()->isProto());
}

void tst_Prototypes::bodyCannotBeWritten()
{
    const LoadedText scene(
        proto("P", "", "<Group/>") +
        instance("P", "A",
                 "<fieldValue name='protoBody'><Shape/></fieldValue><Shape containerField='protoBody'/>"));
    QVERIFY(!scene.messages().isEmpty());
    QCOMPARE(protoBody(static_cast<const Node&>(*scene.find("A"))).size(), 1U);
}

void tst_Prototypes::valuesTravelWhileRunning()
{
    const LoadedText scene(
        proto("P",
              field("both", "SFVec3f", "inputOutput", " value='1 1 1'/>") +
                  field("in", "SFVec3f", "inputOnly") + field("out", "SFVec3f", "outputOnly") +
                  field("start", "SFVec3f", "initializeOnly"),
              "<Transform>" + is("scale", "both") + "</Transform><Transform>" +
                  "<IS><connect nodeField='translation' protoField='in'/><connect nodeField='translation' "
                  "protoField='out'/></IS></Transform><Transform>" +
                  is("center", "start") + "</Transform>") +
        instance("P", "A"));
    QCOMPARE(scene.messages(), QStringList());
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    Node* a = scene.find("A");

    fieldOf(a, "both").setValueByStr(0.0, "2 2 2");
    fieldOf(a, "in").setValueByStr(0.0, "3 3 3");
    fieldOf(a, "start").setValueByStr(0.0, "5 5 5");
    scene.context().runFrame();
    QCOMPARE(LoadedText::value(inBody(a), "scale"), QStringLiteral("2 2 2"));
    QCOMPARE(LoadedText::value(inBody(a, 1), "translation"), QStringLiteral("3 3 3"));
    QCOMPARE(LoadedText::value(a, "out"), QStringLiteral("3 3 3"));
    QCOMPARE(LoadedText::value(inBody(a, 2), "center"), QStringLiteral("5 5 5"));

    fieldOf(inBody(a), "scale").setValueByStr(0.0, "4 4 4");
    scene.context().runFrame();
    QCOMPARE(LoadedText::value(a, "both"), QStringLiteral("4 4 4"));
}

void tst_Prototypes::valuesTravelThroughNestedInstances()
{
    const LoadedText scene(paint() +
                           proto("Thing", field("tint", "SFColor", "inputOutput", " value='1 1 0'/>"),
                                 "<ProtoInstance name='Paint'>" + is("color", "tint") + "</ProtoInstance>") +
                           "<Shape><Appearance>" + instance("Thing", "A") + "</Appearance></Shape>");
    QCOMPARE(scene.messages(), QStringList());
    scene.context().setRootState(0.0, RUNNING_NS);
    Node* a = scene.find("A");
    Node* material = inBody(inBody(a));
    fieldOf(a, "tint").setValueByStr(0.0, "0 0 1");
    scene.context().runFrame();
    QCOMPARE(LoadedText::value(material, "diffuseColor"), QStringLiteral("0 0 1"));
    fieldOf(material, "diffuseColor").setValueByStr(0.0, "1 0 0");
    scene.context().runFrame();
    QCOMPARE(LoadedText::value(a, "tint"), QStringLiteral("1 0 0"));
}

void tst_Prototypes::firstEventsOfBothEndsAreOne()
{
    const LoadedText scene(paint() + "<Shape><Appearance>" + instance("Paint", "A") +
                           "</Appearance></Shape>");
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    Node* a = scene.find("A");
    Events outer(fieldOf(a, "color"));
    Events inner(fieldOf(inBody(a), "diffuseColor"));
    fieldOf(a, "color").setValueByStr(0.0, "0 0 1");
    scene.context().runFrame();
    scene.context().runFrame();
    QCOMPARE(outer.count, 1);
    QCOMPARE(inner.count, 1);
    fieldOf(inBody(a), "diffuseColor").setValueByStr(0.0, "0 1 1");
    scene.context().runFrame();
    scene.context().runFrame();
    QCOMPARE(outer.count, 2);
    QCOMPARE(inner.count, 2);
}

void tst_Prototypes::nodesTravelWhileRunning()
{
    const LoadedText scene(proto("P", field("parts", "MFNode", "inputOutput", "><Anchor/></field>"),
                                 "<Group>" + is("children", "parts") + "</Group>") +
                           instance("P", "A") + "<Shape DEF='S'/>");
    scene.context().setRootState(0.0, RUNNING_NS);
    Node* a = scene.find("A");
    static_cast<MFNode&>(fieldOf(a, "parts")).addNode(0.0, scene.find("S"), Field::EXTERNAL_CT);
    scene.context().runFrame();
    QCOMPARE(fieldOf(inBody(a), "children").size(), 2U);
    static_cast<MFNode&>(fieldOf(a, "parts")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context().runFrame();
    QCOMPARE(LoadedText::outline(inBody(a)), QStringLiteral("Group(Shape)"));
}

void tst_Prototypes::instancesCanBeMadeAtRunTime()
{
    const LoadedText scene(proto("P", field("parts", "MFNode", "inputOutput", "><Anchor/></field>"),
                                 "<Group DEF='G'>" + is("children", "parts") + "</Group><TimeSensor/>"));
    scene.context().setRootState(0.0, RUNNING_NS);
    const auto& declared = declaredPrototypes(*scene.scene());
    QCOMPARE(declared.size(), std::size_t(1));
    const NodeRef made = createNode(scene.context(), *declared[0], HOST_NC);
    QCOMPARE(LoadedText::outline(made.get()), QStringLiteral("P(Anchor Group(Anchor) TimeSensor)"));
    QCOMPARE(inBody(made.get())->state(), CREATED_NS);
    static_cast<MFNode&>(fieldOf(scene.scene(), "children")).addNode(0.0, made.get(), Field::EXTERNAL_CT);
    QCOMPARE(made->state(), RUNNING_NS);
    QCOMPARE(inBody(made.get(), 1)->state(), RUNNING_NS);
    QCOMPARE(inBody(made.get())->nameSpace(), rootNames(*made));
    QCOMPARE(NodeNameSpace::findNode(rootNames(*made), "G"), inBody(made.get()));
}

void tst_Prototypes::instancesDieWithTheirBodies()
{
    const LoadedText scene(proto("P", field("c", "SFColor", "inputOutput"),
                                 "<Group DEF='G'><PointLight>" + is("color", "c") + "</PointLight></Group>") +
                           instance("P", "A") + instance("P", "B"));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    const UInt64 instance = scene.find("A")->ID();
    const UInt64 light = nodeIn(inBody(scene.find("A")), "children")->ID();
    QVERIFY(Node::findNode(light));
    static_cast<MFNode&>(fieldOf(scene.scene(), "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context().runFrame();
    QVERIFY(!Node::findNode(instance));
    QVERIFY(!Node::findNode(light));
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "A", &scene.context(), true));
    QVERIFY(NodeNameSpace::findNameSpace(nullptr, "B", &scene.context(), true));
}

void tst_Prototypes::typeLivesWithItsInstances()
{
    const LoadedText scene(paint() + "<Shape DEF='S'><Appearance>" + instance("Paint", "A") +
                           "</Appearance></Shape>");
    const UInt64 model = protoDeclaration(*scene.find("A")->type())->model->ID();
    NodeRef kept(scene.find("A"));
    LoadedText other;
    QVERIFY(scene.context().load("other.x3d", LoadedText::document("<Group/>"), Context::REPLACE_LT, {}));
    QVERIFY(!scene.find("A"));
    QCOMPARE(kept->type()->name, std::string("Paint"));
    QVERIFY(Node::findNode(model));
    QCOMPARE(LoadedText::value(inBody(kept.get()), "diffuseColor"), QStringLiteral("0 1 0"));
    const NodeRef further = createNode(scene.context(), *kept->type(), HOST_NC);
    QCOMPARE(LoadedText::outline(further.get()), QStringLiteral("Paint(Material)"));
    kept = NodeRef();
    QVERIFY(Node::findNode(model));
    const_cast<NodeRef&>(further) = NodeRef();
    QVERIFY(!Node::findNode(model));
}

void tst_Prototypes::modelIsNoPartOfTheScene()
{
    const LoadedText scene(proto("P", "",
                                 proto("Q", "", "<Shape DEF='X'/>") +
                                     "<Group><ProtoInstance name='Q' DEF='N' "
                                     "containerField='children'/></Group>"));
    QCOMPARE(scene.messages(), QStringList());
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    Node* model = protoDeclaration(*declaredPrototypes(*scene.scene())[0])->model.get();
    QVERIFY(model);
    QVERIFY(!model->contextRoot());
    QVERIFY(inBody(model)->state() < SETUP_NS);
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "P", &scene.context(), true));
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "N", &scene.context(), true));
}

void tst_Prototypes::countingComesBeforeCopying()
{
    std::string text = proto("P0", "", "<Group/>");
    for (int i = 1; i < 60; ++i) {
        const std::string inner = "<ProtoInstance name='P" + std::to_string(i - 1) + "'/>";
        text += proto("P" + std::to_string(i), "", "<Group>" + inner + inner + "</Group>");
    }
    const LoadedText scene(text + instance("P3", "A"));
    QCOMPARE(scene.messages(), QStringList());
    const auto type = [&scene](std::size_t i) { return declaredPrototypes(*scene.scene()).at(i); };
    QCOMPARE(protoSize(*type(3)).nodes, std::size_t(29));
    QCOMPARE(protoSize(*type(3)).depth, 7U);
    QCOMPARE(waitingNodes(*type(3)), std::size_t(0));
    // Nobody has asked for the others.
    QCOMPARE(protoSize(*type(4)).nodes, std::size_t(61));
    QVERIFY(waitingNodes(*type(59)) > maxModelNodes);
    const Node* const model = protoDeclaration(*type(20))->model.get();
    std::vector<Node*> inner;
    inBody(const_cast<Node*>(model))->collectAllChildren(inner, 0);
    QCOMPARE(inner.size(), std::size_t(2));
    QVERIFY(!inBody(inner[0]));
    QVERIFY(!inBody(createNode(scene.context(), *type(59), HOST_NC).get()));
    QVERIFY(inBody(createNode(scene.context(), *type(5), HOST_NC).get()));
}

void tst_Prototypes::tooManyNodesAreTold()
{
    std::string text = proto("P0", "", "<Group/>");
    for (int i = 1; i < 60; ++i) {
        std::string body = "<Group>";
        for (int k = 0; k < 10; ++k)
            body += "<ProtoInstance name='P" + std::to_string(i - 1) + "' containerField='children'/>";
        text += proto("P" + std::to_string(i), "", body + "</Group>");
    }
    // As many as that would be beyond all measure; the small ones are there.
    const LoadedText scene(text + instance("P59", "A") + instance("P2", "B"));
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages()[0].contains(
        QStringLiteral("expected instances of prototypes that bring at most 8000000 nodes, found more with "
                       "this P59")));
    QVERIFY(!inBody(scene.find("A")));
    std::vector<Node*> inner;
    inBody(scene.find("B"))->collectAllChildren(inner, 0);
    QCOMPARE(inner.size(), std::size_t(10));
}

void tst_Prototypes::depthOfInstancesCounts()
{
    std::string body;
    for (int i = 0; i < 900; ++i)
        body += "<Group>";
    const std::string end = [] {
        std::string text;
        for (int i = 0; i < 900; ++i)
            text += "</Group>";
        return text;
    }();
    const LoadedText scene(
        proto("P", "", body + end) +
        proto("Q", "", body + "<ProtoInstance name='P' containerField='children'/>" + end) +
        instance("Q", "A") + body + body.substr(0, 210) + instance("Q", "B") + end.substr(0, 240) + end);
    QVERIFY(scene.ok);
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages()[0].contains(QStringLiteral("expected nodes that nest at most")));
    QVERIFY(inBody(scene.find("A")));
    QVERIFY(!inBody(scene.find("B")));
}

void tst_Prototypes::unfinishedPrototypesLeaveNothing()
{
    LoadedText scene("<Group/>");
    QVERIFY(!scene.load("<X3D version='4.0' profile='Full'><Scene>" +
                        proto("P", field("a", "SFNode", "inputOutput", "><Shape DEF='S'/></field>"),
                              "<Group DEF='G'><Shape DEF='H'>")));
    QVERIFY(!scene.ok || scene.scene());
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "P", &scene.context(), true));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group)"));
}

void tst_Prototypes::declarationsAreKept()
{
    const LoadedText scene(
        "<Group/>" + paint() + "\n" +
        proto("Outer", field("n", "SFNode", "inputOutput", "><Appearance/></field>"),
              proto("Inner", "", "<Sphere/>") + "<Shape>" + is("appearance", "n") + "</Shape>"));
    const auto& declared = declaredPrototypes(*scene.scene());
    QCOMPARE(declared.size(), std::size_t(2));
    QCOMPARE(declared[0]->name, std::string("Paint"));
    const ProtoDeclaration& outer = *protoDeclaration(*declared[1]);
    QVERIFY(!outer.isExtern);
    QCOMPARE(outer.line, 3U);
    QCOMPARE(outer.column, 1U);
    QCOMPARE(outer.inner.size(), std::size_t(1));
    QCOMPARE(outer.inner[0]->name, std::string("Inner"));
    Node& model = *outer.model;
    QCOMPARE(LoadedText::outline(&model), QStringLiteral("Outer(Appearance Shape(Appearance))"));
    const Route* connection = *fieldOf(&model, "n")._outSlot->begin();
    QCOMPARE(connection->type(), Route::IS_RT);
    QCOMPARE(connection->inSlot()->field(), &fieldOf(inBody(&model), "appearance"));
    QVERIFY(!protoDeclaration(*findType("Group")));
}

void tst_Prototypes::restrictionsComeFromTheBody()
{
    const LoadedText scene(proto("P", field("t", "SFFloat", "inputOutput"),
                                 "<Material>" + is("transparency", "t") + "</Material>") +
                           "<Shape><Appearance>" + instance("P", "A") + "</Appearance></Shape>");
    const NodePartDesc& desc = *fieldOf(scene.find("A"), "t")._desc;
    QCOMPARE(desc.valueRestriction, static_cast<unsigned int>(NodePartDesc::MIN_MAX_VR));
    QCOMPARE(desc.maxValue, 1.0);
}

void tst_Prototypes::shapesOfInstancesRun()
{
    const LoadedText scene(
        proto("P", "", "<Shape><Box/></Shape><TimeSensor loop='true'/><Viewpoint description='v'/>") +
        instance("P", "A"));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    Node* a = scene.find("A");
    QCOMPARE(LoadedText::value(inBody(a, 1), "isActive"), QStringLiteral("TRUE"));
    QCOMPARE(LoadedText::value(inBody(a, 2), "isBound"), QStringLiteral("TRUE"));
}

void tst_Prototypes::allEncodingsSayTheSame_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("xml") << QStringLiteral("scene.x3d")
                         << QString::fromStdString(LoadedText::document(
                                paint() +
                                proto("Thing",
                                      field("parts", "MFNode", "inputOutput", "><Anchor/></field>") +
                                          field("place", "SFVec3f", "initializeOnly", " value='1 2 3'/>"),
                                      "<Transform DEF='T'><IS><connect nodeField='children' "
                                      "protoField='parts'/><connect nodeField='translation' "
                                      "protoField='place'/></IS></Transform><TimeSensor DEF='C'/>"
                                      "<PositionInterpolator DEF='I'/><ROUTE fromNode='C' "
                                      "fromField='fraction_changed' toNode='I' toField='set_fraction'/>") +
                                instance("Thing", "A") +
                                instance("Thing", "B",
                                         value("place", "4 5 6") +
                                             "<fieldValue name='parts'><Shape><Appearance><ProtoInstance "
                                             "name='Paint' containerField='material'/></Appearance></Shape>"
                                             "</fieldValue>")));
    const QString classic = QStringLiteral(
        "PROTO Paint [ %1 SFColor color 0 1 0 ] { Material { diffuseColor IS color } }\n"
        "PROTO Thing [ %1 MFNode parts Anchor {} %2 SFVec3f place 1 2 3 ] {\n"
        "  DEF T Transform { children IS parts translation IS place }\n"
        "  DEF C TimeSensor {} DEF I PositionInterpolator {}\n"
        "  ROUTE C.fraction_changed TO I.set_fraction }\n"
        "DEF A Thing {}\n"
        "DEF B Thing { place 4 5 6 parts [ Shape { appearance Appearance { material Paint {} } } ] }\n");
    QTest::newRow("classic") << QStringLiteral("scene.x3dv")
                             << QStringLiteral("#X3D V3.3 utf8\nPROFILE Full\n") +
                                    classic.arg(QStringLiteral("inputOutput"),
                                                QStringLiteral("initializeOnly"));
    QTest::newRow("VRML97") << QStringLiteral("scene.wrl")
                            << QStringLiteral("#VRML V2.0 utf8\n") +
                                   classic.arg(QStringLiteral("exposedField"), QStringLiteral("field"));
}

void tst_Prototypes::allEncodingsSayTheSame()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    const LoadedText scene;
    QVERIFY(scene.context().load(name.toStdString(), text.toStdString(), Context::REPLACE_LT, {}));
    QCOMPARE(scene.messages(), QStringList());
    const QString shape = QStringLiteral("Shape(Appearance(Paint(Material)))");
    QCOMPARE(LoadedText::outline(scene.scene()),
             QStringLiteral("Scene(Thing(Anchor Transform(Anchor) TimeSensor PositionInterpolator) "
                            "Thing(%1 Transform(%1) TimeSensor PositionInterpolator))")
                 .arg(shape));
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "translation"), QStringLiteral("1 2 3"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "translation"), QStringLiteral("4 5 6"));
    QCOMPARE(fieldOf(inBody(scene.find("B"), 1), "fraction_changed").outRouteCount(true, false), 1U);
    QCOMPARE(scene.report().routes, std::size_t(1));
    QCOMPARE(scene.report().protos, std::size_t(2));
}

QTEST_APPLESS_MAIN(tst_Prototypes)
#include "tst_Prototypes.moc"
