#include "LoadedText.h"
#include "base/Prototype.h"
#include "base/ValueOrigin.h"
#include <Orvane/NodePartDesc.h>
#include <Orvane/SFNode.h>
#include <Orvane/System.h>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

namespace {

const char paint[] =
    "<ProtoDeclare name='Paint'><ProtoInterface><field name='color' type='SFColor' "
    "accessType='inputOutput' value='0 1 0'/><field name='shine' type='SFFloat' "
    "accessType='inputOutput' value='0.75'/></ProtoInterface><ProtoBody><Material><IS><connect "
    "nodeField='diffuseColor' protoField='color'/><connect nodeField='shininess' "
    "protoField='shine'/></IS></Material></ProtoBody></ProtoDeclare>";

std::string declare(const std::string& name, const std::string& url, const std::string& fields = {})
{
    return "<ExternProtoDeclare name='" + name + "' url='" + url + "'>" + fields + "</ExternProtoDeclare>";
}

const char color[] = "<field name='color' type='SFColor' accessType='inputOutput'/>";

Node* inBody(Node* instance)
{
    if (!instance || !instance->type()->isProto())
        return nullptr;
    const MFNode& body = protoBody(static_cast<const Node&>(*instance));
    return body.size() > 0 ? body.elem(0).directNode() : nullptr;
}

} // namespace

class tst_ExternProto : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }
    void init() { _folder = std::make_unique<QTemporaryDir>(); }

    void bodyComesFromTheFile();
    void firstPrototypeWithoutName();
    void addressesAreTriedInOrder();
    void addressesCountFromTheirOwnFile();
    void missingFileIsToldOnce();
    void missingPrototypeIsTold();
    void brokenFileIsTold();
    void networkIsNotAsked();
    void unusedPrototypeAsksForNoFile();
    void fileIsReadOnce();
    void libraryIsNoPartOfTheScene();
    void libraryMayUseItself();
    void chainsOfFilesLeadToTheBody();
    void fileThatLeadsBackIsTold();
    void fileThatHoldsItsOwnInstanceIsTold();
    void prototypeOfAFileBeingReadIsTold();
    void fieldsThatDoNotFitAreTold();
    void instanceWithoutBodyKeepsItsFields();
    void declarationIsKept();
    void inlinesOfBodiesAreRead();
    void valuesOfInstancesCountFromTheScene();
    void inlinedFilesHaveTheirOwnPrototypes();
    void endsOfLibrariesLeaveInstances();

private:
    void write(const char* name, const std::string& nodes);
    std::string path(const char* name) const { return _folder->filePath(QLatin1String(name)).toStdString(); }
    /// The messages as "file:line:column text", the file without its folder.
    QStringList told(const LoadedText& scene) const;

    std::unique_ptr<QTemporaryDir> _folder;
};

void tst_ExternProto::write(const char* name, const std::string& nodes)
{
    QDir().mkpath(QFileInfo(QString::fromStdString(path(name))).path());
    QFile file(QString::fromStdString(path(name)));
    const QByteArray text = QByteArray::fromStdString(LoadedText::document(nodes));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("the temporary folder takes no file");
}

QStringList tst_ExternProto::told(const LoadedText& scene) const
{
    QStringList list;
    for (const LoadMessage& message : scene.report().messages)
        list << QString::fromStdString(message.toString()).remove(_folder->path() + QLatin1Char('/'));
    return list;
}

void tst_ExternProto::bodyComesFromTheFile()
{
    write("lib.x3d",
          std::string("<ProtoDeclare name='Other'><ProtoBody><Box/></ProtoBody></ProtoDeclare>") + paint);
    write("scene.x3d", declare("Tint", "\"lib.x3d#Paint\"", color) +
                           "<Shape><Appearance><ProtoInstance name='Tint' DEF='A'/></Appearance></Shape>"
                           "<Shape><Appearance><ProtoInstance name='Tint' DEF='B'><fieldValue name='color' "
                           "value='0 0 1'/></ProtoInstance></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(scene.find("A")->type()->name, std::string("Tint"));
    QCOMPARE(scene.value("A", "color"), QStringLiteral("0 1 0"));
    QCOMPARE(scene.value("A", "shine"), QStringLiteral("no field"));
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "diffuseColor"), QStringLiteral("0 1 0"));
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "shininess"), QStringLiteral("0.75"));
    QCOMPARE(LoadedText::value(inBody(scene.find("B")), "diffuseColor"), QStringLiteral("0 0 1"));
    QCOMPARE(scene.report().protos, std::size_t(1));
}

void tst_ExternProto::firstPrototypeWithoutName()
{
    write("lib.x3d",
          std::string(paint) + "<ProtoDeclare name='B'><ProtoBody><Box/></ProtoBody></ProtoDeclare>");
    write("scene.x3d", declare("B", "\"lib.x3d\"") + "<ProtoInstance name='B' DEF='A'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QVERIFY(inBody(scene.find("A")));
    QCOMPARE(inBody(scene.find("A"))->type()->name, std::string("Material"));
}

void tst_ExternProto::addressesAreTriedInOrder()
{
    write("empty.x3d", "<Group/>");
    write("lib.x3d", paint);
    write("scene.x3d",
          declare("P",
                  "\"urn:x:y\" \"none.x3d#Paint\" \"empty.x3d#Paint\" \"lib.x3d#Paint\" \"lib.x3d#None\"") +
              "<Shape><Appearance><ProtoInstance name='P' DEF='A'/></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QVERIFY(inBody(scene.find("A")));
}

void tst_ExternProto::addressesCountFromTheirOwnFile()
{
    write("sub/deep/lib.x3d", paint);
    write("sub/middle.x3d", declare("Middle", "\"deep/lib.x3d#Paint\""));
    write("scene.x3d", declare("P", "\"sub/middle.x3d#Middle\"") +
                           "<Shape><Appearance><ProtoInstance name='P' DEF='A'/></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QVERIFY(inBody(scene.find("A")));
    QVERIFY(QString::fromStdString(inBody(scene.find("A"))->nameSpace()->baseURL().localFile())
                .endsWith(QStringLiteral("sub/deep/lib.x3d")));
}

void tst_ExternProto::missingFileIsToldOnce()
{
    write("scene.x3d", declare("P", "\"none.x3d#P\" \"nope.x3d\"") +
                           "\n<ProtoInstance name='P'/><ProtoInstance name='P'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("scene.x3d:2:1: EXTERNPROTO P: expected a readable local file, found "
                                        "\"none.x3d#P\", \"nope.x3d\"")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(P P)"));
}

void tst_ExternProto::missingPrototypeIsTold()
{
    write("lib.x3d", paint);
    write("scene.x3d", declare("P", "\"lib.x3d#Print\"") + "<ProtoInstance name='P'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList(QStringLiteral(
                              "scene.x3d:2:1: EXTERNPROTO P: expected a file that declares the prototype "
                              "\"Print\", found \"lib.x3d#Print\"")));
}

void tst_ExternProto::brokenFileIsTold()
{
    write("lib.x3d", std::string(paint) + "<Group");
    write("scene.x3d", declare("P", "\"lib.x3d#Paint\"") + declare("Q", "\"lib.x3d#Paint\"") +
                           "<ProtoInstance name='P'/><ProtoInstance name='Q'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene).size(), 3);
    QVERIFY(told(scene)[0].startsWith(QStringLiteral("lib.x3d:")));
    QVERIFY(told(scene)[1].contains(
        QStringLiteral("EXTERNPROTO P: expected a file whose prototypes can be read")));
    QVERIFY(told(scene)[2].contains(
        QStringLiteral("EXTERNPROTO Q: expected a file whose prototypes can be read")));
}

void tst_ExternProto::networkIsNotAsked()
{
    write("scene.x3d", declare("P", "\"https://example.org/lib.x3d#P\"") + "<ProtoInstance name='P'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene).size(), 1);
}

void tst_ExternProto::unusedPrototypeAsksForNoFile()
{
    write("scene.x3d", declare("P", "\"none.x3d#P\"") + "<Group/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
}

void tst_ExternProto::fileIsReadOnce()
{
    write("lib.x3d",
          std::string(paint) + "<ProtoDeclare name='B'><ProtoBody><Box/></ProtoBody></ProtoDeclare>");
    write("scene.x3d", declare("P", "\"lib.x3d#Paint\"") + declare("Q", "\"./lib.x3d#B\"") +
                           "<Shape><ProtoInstance name='Q'/><Appearance><ProtoInstance "
                           "name='P'/></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    const qint64 size = QFileInfo(_folder->filePath(QStringLiteral("lib.x3d"))).size() +
                        QFileInfo(_folder->filePath(QStringLiteral("scene.x3d"))).size();
    QCOMPARE(scene.report().bytes, static_cast<std::size_t>(size));
}

void tst_ExternProto::libraryIsNoPartOfTheScene()
{
    write("lib.x3d",
          std::string("<Group DEF='G'><Wobbler/><Inline url='\"none.x3d\"'/></Group><ROUTE fromNode='X' "
                      "fromField='a' toNode='Y' toField='b'/><Shape USE='Z'/>") +
              paint + "<ProtoInstance name='Paint'/><ProtoInstance name='None'/>");
    write("scene.x3d", declare("P", "\"lib.x3d#Paint\"") +
                           "<Shape><Appearance><ProtoInstance name='P'/></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QVERIFY(!scene.find("G"));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Shape(Appearance(P(Material))))"));
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "library", &scene.context(), true));
    QCOMPARE(scene.report().nodes, std::size_t(3));
}

void tst_ExternProto::libraryMayUseItself()
{
    write("lib.x3d", paint + declare("Again", "\"lib.x3d#Paint\"") +
                         "<ProtoDeclare name='Thing'><ProtoBody><Shape><Appearance><ProtoInstance "
                         "name='Again'/></Appearance></Shape></ProtoBody></ProtoDeclare>");
    write("scene.x3d", declare("T", "\"lib.x3d#Thing\"") + "<ProtoInstance name='T' DEF='A'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("T(Shape(Appearance(Again(Material))))"));
}

void tst_ExternProto::chainsOfFilesLeadToTheBody()
{
    write("f0.x3d", paint);
    for (int i = 1; i < 20; ++i)
        write(("f" + std::to_string(i) + ".x3d").c_str(),
              declare(i == 19 ? "Last" : "Paint", "\"f" + std::to_string(i - 1) + ".x3d#Paint\"", color));
    write("scene.x3d", declare("P", "\"f19.x3d\"", color) +
                           "<Shape><Appearance><ProtoInstance name='P' DEF='A'/></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "diffuseColor"), QStringLiteral("0 1 0"));
}

void tst_ExternProto::fileThatLeadsBackIsTold()
{
    write("a.x3d", declare("PA", "b.x3d#PB") + "<ProtoInstance name='PA'/>");
    write("b.x3d", declare("PB", "a.x3d#PA") + "<ProtoInstance name='PB'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("a.x3d")));
    QCOMPARE(told(scene),
             QStringList(
                 {QStringLiteral("b.x3d:2:1: EXTERNPROTO PB: expected a prototype that does not lead back to "
                                 "this one, found \"a.x3d#PA\""),
                  QStringLiteral("a.x3d:2:1: EXTERNPROTO PA: expected a prototype with a body, found "
                                 "\"b.x3d#PB\"")}));
}

void tst_ExternProto::fileThatHoldsItsOwnInstanceIsTold()
{
    write("a.x3d",
          "<ProtoDeclare name='PA'><ProtoBody><Group>" + declare("PB", "\"b.x3d#PB\"") +
              "<ProtoInstance name='PB' containerField='children'/></Group></ProtoBody></ProtoDeclare>"
              "<ProtoInstance name='PA' DEF='A'/>");
    write("b.x3d",
          "<ProtoDeclare name='PB'><ProtoBody><Group>" + declare("PA", "\"a.x3d#PA\"") +
              "<ProtoInstance name='PA' containerField='children'/></Group></ProtoBody></ProtoDeclare>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("a.x3d")));
    QCOMPARE(told(scene).size(), 1);
    QVERIFY(told(scene)[0].startsWith(QStringLiteral("b.x3d:2:")));
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("PA(Group(PB(Group(PA))))"));
}

void tst_ExternProto::prototypeOfAFileBeingReadIsTold()
{
    write("a.x3d", declare("PB", "\"b.x3d#PB\"") + "<ProtoInstance name='PB'/>\n" + paint);
    write("b.x3d", declare("PA", "\"a.x3d#Paint\"") +
                       "<ProtoDeclare name='PB'><ProtoBody><Shape><Appearance><ProtoInstance name='PA'/>"
                       "</Appearance></Shape></ProtoBody></ProtoDeclare>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("a.x3d")));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("b.x3d:2:1: EXTERNPROTO PA: expected a file that has declared the "
                                        "prototype \"Paint\" by now, found \"a.x3d#Paint\"")));
}

void tst_ExternProto::fieldsThatDoNotFitAreTold()
{
    write("lib.x3d", paint);
    write("scene.x3d",
          declare("P", "\"lib.x3d#Paint\"",
                  "<field name='colour' type='SFColor' accessType='inputOutput'/><field name='shine' "
                  "type='SFFloat' accessType='initializeOnly'/>") +
              "<Shape><Appearance><ProtoInstance name='P' DEF='A'><fieldValue name='shine' "
              "value='0.5'/></ProtoInstance></Appearance></Shape>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene).size(), 2);
    QVERIFY(told(scene)[0].endsWith(QStringLiteral("lib.x3d has them, found \"colour\"")));
    QVERIFY(told(scene)[1].endsWith(QStringLiteral("lib.x3d has them, found \"shine\"")));
    QCOMPARE(scene.value("A", "shine"), QStringLiteral("0.5"));
    QCOMPARE(LoadedText::value(inBody(scene.find("A")), "shininess"), QStringLiteral("0.75"));
}

void tst_ExternProto::instanceWithoutBodyKeepsItsFields()
{
    write("scene.x3d",
          declare("P", "\"none.x3d\"",
                  "<field name='size' type='SFFloat' accessType='inputOutput'/><field name='parts' "
                  "type='MFNode' accessType='inputOutput'/>") +
              "<ProtoInstance name='P' DEF='A'><fieldValue name='size' value='2'/><fieldValue "
              "name='parts'><Group/></fieldValue></ProtoInstance><ScalarInterpolator DEF='I'/>"
              "<ROUTE fromNode='I' fromField='value_changed' toNode='A' toField='size'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene).size(), 1);
    QCOMPARE(scene.value("A", "size"), QStringLiteral("2"));
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Group)"));
    QCOMPARE(scene.report().routes, std::size_t(1));
}

void tst_ExternProto::declarationIsKept()
{
    write("lib.x3d", paint);
    write("scene.x3d", declare("P", "\"none.x3d\" \"lib.x3d#Paint\"", color));
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    const auto& declared = declaredPrototypes(*scene.scene());
    QCOMPARE(declared.size(), std::size_t(1));
    const ProtoDeclaration& declaration = *protoDeclaration(*declared[0]);
    QVERIFY(declaration.isExtern);
    QCOMPARE(declaration.urls, (std::vector<std::string>{"none.x3d", "lib.x3d#Paint"}));
    QVERIFY(!declaration.model);
}

void tst_ExternProto::inlinesOfBodiesAreRead()
{
    write("sub/part.x3d", "<Shape><Box/></Shape>");
    write("part.x3d", "<Shape><Sphere/></Shape>");
    write("sub/lib.x3d",
          "<ProtoDeclare name='P'><ProtoBody><Inline url='\"part.x3d\"'/></ProtoBody></ProtoDeclare>");
    write("scene.x3d", declare("P", "\"sub/lib.x3d\"") + "<ProtoInstance name='P' DEF='A'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Inline(Shape(Box)))"));
    const NodeRef made = createNode(scene.context(), *scene.find("A")->type(), HOST_NC);
    QCOMPARE(LoadedText::outline(made.get()), QStringLiteral("P(Inline(Shape(Box)))"));
}

void tst_ExternProto::valuesOfInstancesCountFromTheScene()
{
    write("sub/part.x3d", "<Shape><Box/></Shape>");
    write("part.x3d", "<Shape><Sphere/></Shape>");
    write("other.x3d", "<Shape><Cone/></Shape>");
    write(
        "sub/lib.x3d",
        "<ProtoDeclare name='P'><ProtoInterface><field name='file' type='MFString' accessType='inputOutput' "
        "value='\"part.x3d\"'/></ProtoInterface><ProtoBody><Inline><IS><connect nodeField='url' "
        "protoField='file'/></IS></Inline></ProtoBody></ProtoDeclare>");
    write("scene.x3d",
          declare("P", "\"sub/lib.x3d\"", "<field name='file' type='MFString' accessType='inputOutput'/>") +
              "<ProtoInstance name='P' DEF='A'/><ProtoInstance name='P' DEF='B'><fieldValue "
              "name='file' value='\"other.x3d\"'/></ProtoInstance>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.find("A")), QStringLiteral("P(Inline(Shape(Box)))"));
    QCOMPARE(LoadedText::outline(scene.find("B")), QStringLiteral("P(Inline(Shape(Cone)))"));
    Node* inner = inBody(scene.find("B"));
    QCOMPARE(&valueOrigin(*inner->findField("url", Node::EXACT_FSO)), scene.find("B"));
    QCOMPARE(&valueOrigin(*inner->findField("load", Node::EXACT_FSO)), inner);
}

void tst_ExternProto::inlinedFilesHaveTheirOwnPrototypes()
{
    write("inner.x3d", paint + std::string("<Shape><Appearance><ProtoInstance name='Paint' "
                                           "DEF='A'/></Appearance></Shape><ProtoInstance name='Outer'/>"));
    write("scene.x3d",
          "<ProtoDeclare name='Outer'><ProtoBody><Group/></ProtoBody></ProtoDeclare><Inline DEF='I' "
          "url='\"inner.x3d\"'/><ProtoInstance name='Paint'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene).size(), 2);
    QVERIFY(told(scene)[0].contains(QStringLiteral("an instance of the prototype \"Paint\"")));
    QVERIFY(told(scene)[1].contains(QStringLiteral("an instance of the prototype \"Outer\"")));
    QCOMPARE(declaredPrototypes(*scene.find("I")).size(), std::size_t(1));
    QCOMPARE(declaredPrototypes(*scene.scene()).size(), std::size_t(1));
    QVERIFY(LoadedText::outline(scene.find("I")).contains(QStringLiteral("Appearance(Paint(Material))")));
}

void tst_ExternProto::endsOfLibrariesLeaveInstances()
{
    write("lib.x3d", std::string(paint) +
                         "<ProtoDeclare name='T'><ProtoBody><Shape><Appearance><ProtoInstance "
                         "name='Paint'/></Appearance></Shape></ProtoBody></ProtoDeclare>");
    write("scene.x3d", declare("T", "\"lib.x3d#T\"") + "<ProtoInstance name='T' DEF='A'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    const NodeRef made = createNode(scene.context(), *scene.find("A")->type(), HOST_NC);
    QCOMPARE(LoadedText::outline(made.get()), QStringLiteral("T(Shape(Appearance(Paint(Material))))"));
    QVERIFY(scene.loadFile(path("lib.x3d")));
    QCOMPARE(LoadedText::outline(made.get()), QStringLiteral("T(Shape(Appearance(Paint(Material))))"));
}

QTEST_APPLESS_MAIN(tst_ExternProto)
#include "tst_ExternProto.moc"
