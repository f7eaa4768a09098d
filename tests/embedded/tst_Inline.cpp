#include "LoadedText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>
#include <Orvane/System.h>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <fstream>

using namespace Orvane;

class tst_Inline : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }
    void init();

    void contentIsAmongTheChildren();
    void namesOfTheFileAreItsOwn();
    void addressesCountFromTheirOwnFile();
    void firstReadableAddressCounts();
    void namesInBothCodingsAreFound();
    void missingFileIsTold();
    void networkIsNotAsked();
    void fileThatInlinesItselfIsTold();
    void unreadableFileIsToldAndTheRestLoads();
    void inlineThatIsNotToLoadStaysEmpty();
    void rootsOfInlinedFilesAreNotTaken();
    void importedNodesCanBeRouted();
    void importsThatCannotBeAreTold();
    void importsOfOneNameAreTold();
    void exportsThatCannotBeAreTold();
    void routesWaitForTheirInline();
    void routesFollowTheAddress();
    void routesOfTwoInlinesWaitForBoth();
    void routesToImportsAreWritten_data();
    void routesToImportsAreWritten();
    void nestingCountsOverAllFiles();
    void bytesOfAllFilesCount();
    void sharedInlineIsReadOnce();
    void newAddressBringsNewContent();
    void contentGoesAndComesWithLoad();

private:
    void write(const char* name, const std::string& nodes);
    std::string path(const char* name) const;
    /// The messages as "file:line:column text", the file without its folder.
    QStringList told(const LoadedText& scene) const;

    std::unique_ptr<QTemporaryDir> _folder;
};

void tst_Inline::init()
{
    _folder = std::make_unique<QTemporaryDir>();
}

std::string tst_Inline::path(const char* name) const
{
    return _folder->filePath(QLatin1String(name)).toStdString();
}

void tst_Inline::write(const char* name, const std::string& nodes)
{
    QDir().mkpath(QFileInfo(QString::fromStdString(path(name))).path());
    QFile file(QString::fromStdString(path(name)));
    const QByteArray text = QByteArray::fromStdString(LoadedText::document(nodes));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("the temporary folder takes no file");
}

QStringList tst_Inline::told(const LoadedText& scene) const
{
    QStringList list;
    for (const LoadMessage& message : scene.report().messages)
        list << QString::fromStdString(message.toString()).remove(_folder->path() + QLatin1Char('/'));
    return list;
}

void tst_Inline::contentIsAmongTheChildren()
{
    write("inner.x3d", "<Group><Shape/></Group><Viewpoint/>");
    write("scene.x3d", "<Inline url='\"inner.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline(Group(Shape) Viewpoint))"));
    std::vector<Node*> children;
    scene.scene()->collectAllChildren(children, 0);
    Field* last = children[0]->findField(children[0]->partDescCount() - 1);
    QVERIFY(last->_desc->privateAccess());
}

void tst_Inline::namesOfTheFileAreItsOwn()
{
    write("inner.x3d", "<Group DEF='A'/><Group DEF='Only'/>");
    write("scene.x3d", "<Transform DEF='A'/><Inline DEF='I' url='\"inner.x3d\"'/><Group USE='Only'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(scene.find("A")->type()->name, std::string("Transform"));
    QVERIFY(!scene.find("Only"));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("scene.x3d:2:56: USE: expected the name of a node, found \"Only\"")));
    NodeNameSpace* inner = NodeNameSpace::findNameSpace(scene.scene()->nameSpace(), "I", nullptr, false);
    QVERIFY(inner);
    QCOMPARE(inner->rootNode(), scene.find("I"));
    Node* group = NodeNameSpace::findNode(inner, "A");
    QVERIFY(group);
    QCOMPARE(group->type()->name, std::string("Group"));
}

void tst_Inline::addressesCountFromTheirOwnFile()
{
    write("parts/more/deep.x3d", "<Box/>");
    write("parts/inner.x3d", "<Inline url='\"more/deep.x3d\"'/>");
    write("scene.x3d", "<Inline url='\"parts/inner.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline(Inline(Box)))"));
}

void tst_Inline::firstReadableAddressCounts()
{
    write("inner.x3d", "<Box/>");
    write("other.x3d", "<Sphere/>");
    write("scene.x3d",
          "<Inline url='\"http://example.org/x.x3d\" \"none.x3d\" \"inner.x3d\" \"other.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline(Box))"));
}

void tst_Inline::namesInBothCodingsAreFound()
{
    // Folder and names beyond ASCII; the graph and most callers have them as Latin-1, the files are UTF-8.
    const std::string folder = QFile::encodeName(_folder->path()).toStdString();
    std::filesystem::create_directories(folder + "/s\xC3\xA9/t\xC3\xA9");
    const auto writeBytes = [&folder](const char* name, const char* nodes) {
        std::ofstream(folder + name) << LoadedText::document(nodes);
    };
    writeBytes("/s\xC3\xA9/start.x3d", "<Inline url='\"t\xC3\xA9/inner.x3d\"'/>");
    writeBytes("/s\xC3\xA9/t\xC3\xA9/inner.x3d", "<Inline url='\"\xC3\xBC.x3d\"'/>");
    writeBytes("/s\xC3\xA9/t\xC3\xA9/\xC3\xBC.x3d", "<Group/>");
    for (const char* name :
         {"/s\xC3\xA9/start.x3d", "/s\xE9/start.x3d", "/s%C3%A9/start.x3d", "/s%E9/start.x3d"}) {
        for (const char* scheme : {"", "file://"}) {
            LoadedText scene;
            QVERIFY(scene.loadFile(scheme + folder + name));
            QCOMPARE(told(scene), QStringList());
            QCOMPARE(scene.report().nodes, std::size_t(3));
        }
    }
}

void tst_Inline::missingFileIsTold()
{
    // What leans on the file is not told of again.
    write("scene.x3d",
          "<Group/>\n  <Inline DEF='I' url='\"none.x3d\" \"nor this.x3d\"'/><IMPORT inlineDEF='I' "
          "importedDEF='A'/><Transform DEF='T'/><ROUTE fromNode='A' fromField='position' toNode='T' "
          "toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("scene.x3d:3:3: Inline.url: expected a readable local file, found "
                                        "\"none.x3d\", \"nor this.x3d\"")));
}

void tst_Inline::networkIsNotAsked()
{
    write("scene.x3d", "<Inline url='\"http://127.0.0.1:1/a.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("scene.x3d:2:1: Inline.url: expected a readable local file, found "
                                        "\"http://127.0.0.1:1/a.x3d\"")));
    LoadedText remote;
    QVERIFY(!remote.loadFile("http://127.0.0.1:1/a.x3d"));
    QCOMPARE(told(remote),
             QStringList(QStringLiteral("http://127.0.0.1:1/a.x3d: expected a local file, found an "
                                        "address of a network")));
}

void tst_Inline::fileThatInlinesItselfIsTold()
{
    write("a.x3d", "<Box/><Inline url='\"b.x3d\"'/>");
    write("b.x3d", "<Sphere/><Inline url='\"../" + QFileInfo(_folder->path()).fileName().toStdString() +
                       "/a.x3d\"'/><Cone/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("a.x3d")));
    QCOMPARE(told(scene).size(), 1);
    QVERIFY(told(scene)[0].startsWith(
        QLatin1String("b.x3d:2:10: Inline.url: expected a file that does not inline itself, found")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Box Inline(Sphere Inline Cone))"));
}

void tst_Inline::unreadableFileIsToldAndTheRestLoads()
{
    QFile bad(QString::fromStdString(path("bad.x3d")));
    QVERIFY(bad.open(QIODevice::WriteOnly));
    bad.write("<X3D><Scene><Box></Scene></X3D>");
    bad.close();
    write("good.x3d", "<Cone/>");
    write("scene.x3d", "<Inline url='\"bad.x3d\"'/><Inline url='\"bad.x3d\" \"good.x3d\"'/><Box/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline Inline(Cone) Box)"));
    QVERIFY(told(scene)[0].startsWith(QLatin1String("bad.x3d:1:")));
    QCOMPARE(
        told(scene)[1],
        QStringLiteral("scene.x3d:2:1: Inline.url: expected a scene that can be read, found \"bad.x3d\""));
}

void tst_Inline::inlineThatIsNotToLoadStaysEmpty()
{
    write("scene.x3d", "<Inline load='false' url='\"none.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline)"));
}

void tst_Inline::rootsOfInlinedFilesAreNotTaken()
{
    write("inner.x3d", "<Engine><Window/></Engine><Box/>");
    write("scene.x3d", "<Inline url='\"inner.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene),
             QStringList(QStringLiteral("inner.x3d:2:1: expected no root node here, found Engine")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline(Box))"));
}

void tst_Inline::importedNodesCanBeRouted()
{
    write("inner.x3d", "<TimeSensor DEF='T'/><EXPORT localDEF='T' AS='Clock'/>");
    write("scene.x3d", "<IMPORT inlineDEF='I' importedDEF='Clock' AS='C'/><ROUTE fromNode='C' "
                       "fromField='fraction_changed' toNode='P' toField='set_fraction'/><Inline DEF='I' "
                       "url='\"inner.x3d\"'/><PositionInterpolator DEF='P'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(scene.report().routes, std::size_t(1));
}

void tst_Inline::importsThatCannotBeAreTold()
{
    write("inner.x3d", "<TimeSensor DEF='T'/>");
    write("scene.x3d", "<Group DEF='G'/><Inline DEF='I' url='\"inner.x3d\"'/>\n"
                       "<IMPORT inlineDEF='G' importedDEF='T'/>\n<IMPORT inlineDEF='I' importedDEF='T'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(
        told(scene),
        QStringList(
            {QStringLiteral("scene.x3d:3:1: IMPORT: expected the name of an Inline, found \"G\""),
             QStringLiteral("scene.x3d:4:1: IMPORT: expected a name that inner.x3d exports, found \"T\"")}));
}

void tst_Inline::importsOfOneNameAreTold()
{
    write("a.x3d", "<Group DEF='N'/><EXPORT localDEF='N'/>");
    write("b.x3d", "<Transform DEF='N'/><EXPORT localDEF='N'/>");
    write("scene.x3d",
          "<Inline DEF='A' url='\"a.x3d\"'/><Inline DEF='B' url='\"b.x3d\"'/><Switch DEF='N'/>\n"
          "<IMPORT inlineDEF='A' importedDEF='N'/>\n<IMPORT inlineDEF='A' importedDEF='N' AS='M'/>\n"
          "<IMPORT inlineDEF='B' importedDEF='N' AS='M'/><PositionInterpolator DEF='P'/>"
          "<ROUTE fromNode='P' fromField='value_changed' toNode='M' toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(
        told(scene),
        QStringList({QStringLiteral("scene.x3d:3:1: IMPORT: expected a name of its own, found \"N\", which "
                                    "the node at 2:63 bears"),
                     QStringLiteral("scene.x3d:5:1: IMPORT: expected a name of its own, found \"M\", which "
                                    "another import bears")}));
    // The last one counts: a group has no translation.
    QCOMPARE(scene.report().routes, std::size_t(1));
    QCOMPARE(scene.find("N")->type()->name, std::string("Switch"));
}

void tst_Inline::exportsThatCannotBeAreTold()
{
    write("inner.x3d", "<Group DEF='G'/><Transform DEF='T'/>\n<EXPORT localDEF='None' AS='N'/>\n"
                       "<EXPORT localDEF='G' AS='X'/>\n<EXPORT localDEF='T' AS='X'/>");
    write("scene.x3d", "<Inline DEF='I' url='\"inner.x3d\"'/><IMPORT inlineDEF='I' importedDEF='X'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(
        told(scene),
        QStringList({QStringLiteral("inner.x3d:5:1: EXPORT: expected a name of its own, found \"X\", under "
                                    "which another node is exported"),
                     QStringLiteral("inner.x3d:3:1: EXPORT: expected the name of a node, found \"None\"")}));
}

namespace {

/// How many routes lead from a field of a node.
unsigned int routesFrom(const LoadedText& scene, const char* node, const char* field)
{
    return scene.find(node)->findField(field, Node::EXACT_FSO)->outRouteCount(true, false);
}

void set(const LoadedText& scene, const char* node, const char* field, const char* text)
{
    scene.find(node)->findField(field, Node::EXACT_FSO)->setValueByStr(0.0, text);
    scene.context().runFrame();
}

} // namespace

void tst_Inline::routesWaitForTheirInline()
{
    write("inner.x3d", "<Transform DEF='T'/><EXPORT localDEF='T' AS='Box'/>");
    write("scene.x3d", "<Inline DEF='I' load='false' url='\"inner.x3d\"'/><PositionInterpolator DEF='P'/>"
                       "<IMPORT inlineDEF='I' importedDEF='Box' AS='B'/>"
                       "<ROUTE fromNode='P' fromField='value_changed' toNode='B' toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    QCOMPARE(routesFrom(scene, "P", "value_changed"), 0U);
    for (int time = 0; time < 2; ++time) {
        set(scene, "I", "load", "TRUE");
        QCOMPARE(routesFrom(scene, "P", "value_changed"), 1U);
        set(scene, "I", "load", "FALSE");
        QCOMPARE(routesFrom(scene, "P", "value_changed"), 0U);
    }
    QCOMPARE(told(scene), QStringList());
}

void tst_Inline::routesFollowTheAddress()
{
    write("first.x3d", "<Transform DEF='T'/><Transform DEF='U'/><EXPORT localDEF='T' AS='Box'/>");
    write("second.x3d", "<Transform DEF='T'/><Transform DEF='U'/><EXPORT localDEF='U' AS='Box'/>");
    write("scene.x3d", "<Inline DEF='I' url='\"first.x3d\"'/><PositionInterpolator DEF='P'/>"
                       "<IMPORT inlineDEF='I' importedDEF='Box'/>"
                       "<ROUTE fromNode='P' fromField='value_changed' toNode='Box' toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    const auto target = [&] {
        const Field& field = *scene.find("P")->findField("value_changed", Node::EXACT_FSO);
        return *(*field._outSlot->begin())->inSlot()->field()->node()->name();
    };
    QCOMPARE(routesFrom(scene, "P", "value_changed"), 1U);
    QCOMPARE(target(), std::string("T"));
    set(scene, "I", "url", "\"second.x3d\"");
    QCOMPARE(routesFrom(scene, "P", "value_changed"), 1U);
    QCOMPARE(target(), std::string("U"));
    set(scene, "I", "url", "\"none.x3d\"");
    QCOMPARE(routesFrom(scene, "P", "value_changed"), 0U);
    set(scene, "I", "url", "\"first.x3d\"");
    QCOMPARE(routesFrom(scene, "P", "value_changed"), 1U);
    QCOMPARE(target(), std::string("T"));
}

void tst_Inline::routesOfTwoInlinesWaitForBoth()
{
    write("a.x3d", "<PositionInterpolator DEF='P'/><EXPORT localDEF='P'/>");
    write("b.x3d", "<Transform DEF='T'/><EXPORT localDEF='T'/>");
    write("scene.x3d", "<Inline DEF='A' load='false' url='\"a.x3d\"'/><Inline DEF='B' load='false' "
                       "url='\"b.x3d\"'/><IMPORT inlineDEF='A' importedDEF='P'/><IMPORT inlineDEF='B' "
                       "importedDEF='T'/><ROUTE fromNode='P' fromField='value_changed' toNode='T' "
                       "toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    set(scene, "A", "load", "TRUE");
    set(scene, "B", "load", "TRUE");
    NodeNameSpace* names = NodeNameSpace::findNameSpace(scene.scene()->nameSpace(), "A", nullptr, false);
    Node* interpolator = NodeNameSpace::findNode(names, "P");
    QVERIFY(interpolator);
    QCOMPARE(interpolator->findField("value_changed", Node::EXACT_FSO)->outRouteCount(true, false), 1U);
    std::string error;
    QVERIFY(scene.context().save(path("saved.x3d"), {}, error));
    LoadedText again;
    QVERIFY(again.loadFile(path("saved.x3d")));
    QCOMPARE(again.report().routes, std::size_t(1));
}

void tst_Inline::routesToImportsAreWritten_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("XML") << QByteArray("saved.x3d");
    QTest::newRow("classic") << QByteArray("saved.x3dv");
}

void tst_Inline::routesToImportsAreWritten()
{
    QFETCH(QByteArray, file);
    write("inner.x3d", "<Transform DEF='T'/><EXPORT localDEF='T'/>");
    write("middle.x3d", "<Inline DEF='I' url='\"inner.x3d\"'/><IMPORT inlineDEF='I' importedDEF='T' AS='M'/>"
                        "<EXPORT localDEF='M' AS='Deep'/>");
    write("scene.x3d", "<PositionInterpolator DEF='P'/><Inline DEF='I' url='\"middle.x3d\"'/>"
                       "<Inline DEF='Off' load='false' url='\"inner.x3d\"'/>"
                       "<IMPORT inlineDEF='I' importedDEF='Deep' AS='D'/>"
                       "<IMPORT inlineDEF='Off' importedDEF='T'/>"
                       "<ROUTE fromNode='P' fromField='value_changed' toNode='D' toField='translation'/>"
                       "<ROUTE fromNode='P' fromField='value_changed' toNode='T' toField='translation'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(told(scene), QStringList());
    std::string error;
    QVERIFY(scene.context().save(path(file.constData()), {}, error));
    LoadedText again;
    QVERIFY(again.loadFile(path(file.constData())));
    QCOMPARE(told(again), QStringList());
    again.context().setRootState(0.0, RUNNING_NS);
    again.context().runFrame();
    QCOMPARE(routesFrom(again, "P", "value_changed"), 1U);
    set(again, "Off", "load", "TRUE");
    QCOMPARE(routesFrom(again, "P", "value_changed"), 2U);
}

void tst_Inline::nestingCountsOverAllFiles()
{
    const auto nested = [](int depth, const std::string& inside) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += "<Group>";
        text += inside;
        for (int i = 0; i < depth; ++i)
            text += "</Group>";
        return text;
    };
    write("inner.x3d", nested(1200, ""));
    write("scene.x3d", nested(1000, "<Inline DEF='I' url='\"inner.x3d\"'/>"));
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QVERIFY(told(scene)[0].contains(
        QLatin1String("expected nodes that nest at most 2000 deep, found deeper ones")));
    QCOMPARE(scene.find("I")->childCount(), 0);
}

void tst_Inline::bytesOfAllFilesCount()
{
    write("inner.x3d", "<Box/>");
    write("scene.x3d", "<Inline url='\"inner.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    const qint64 bytes = QFileInfo(QString::fromStdString(path("inner.x3d"))).size() +
                         QFileInfo(QString::fromStdString(path("scene.x3d"))).size();
    QCOMPARE(scene.report().bytes, static_cast<std::size_t>(bytes));
}

void tst_Inline::sharedInlineIsReadOnce()
{
    write("inner.x3d", "<Box/>");
    write("scene.x3d", "<Inline DEF='I' url='\"inner.x3d\"'/><Group><Inline USE='I'/></Group>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Inline(Box) Group(Inline(Box)))"));
    QCOMPARE(scene.find("I")->childCount(), 1);
}

void tst_Inline::newAddressBringsNewContent()
{
    write("first.x3d", "<Group DEF='A'/>");
    write("second.x3d", "<Transform DEF='A'/><TimeSensor/>");
    write("scene.x3d", "<Group><Inline DEF='I' url='\"first.x3d\"'/></Group>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    scene.find("I")->findField("url", Node::EXACT_FSO)->setValueByStr(0.0, "\"second.x3d\"");
    scene.context().runFrame();
    QCOMPARE(told(scene), QStringList());
    QCOMPARE(LoadedText::outline(scene.scene()),
             QStringLiteral("Scene(Group(Inline(Transform TimeSensor)))"));
    NodeNameSpace* inner = NodeNameSpace::findNameSpace(scene.scene()->nameSpace(), "I", nullptr, false);
    QVERIFY(inner);
    Node* transform = NodeNameSpace::findNode(inner, "A");
    QVERIFY(transform);
    QCOMPARE(transform->type()->name, std::string("Transform"));
    QCOMPARE(transform->state(), RUNNING_NS);

    scene.find("I")->findField("url", Node::EXACT_FSO)->setValueByStr(0.0, "\"none.x3d\"");
    scene.context().runFrame();
    QCOMPARE(told(scene),
             QStringList(QStringLiteral(
                 "scene.x3d:2:8: Inline.url: expected a readable local file, found \"none.x3d\"")));
    QCOMPARE(LoadedText::outline(scene.scene()), QStringLiteral("Scene(Group(Inline))"));
}

void tst_Inline::contentGoesAndComesWithLoad()
{
    write("inner.x3d", "<Box/>");
    write("scene.x3d", "<Inline DEF='I' load='false' url='\"inner.x3d\"'/>");
    LoadedText scene;
    QVERIFY(scene.loadFile(path("scene.x3d")));
    scene.context().setRootState(0.0, RUNNING_NS);
    scene.context().runFrame();
    QCOMPARE(scene.find("I")->childCount(), 0);
    Field* load = scene.find("I")->findField("load", Node::EXACT_FSO);
    for (const bool wanted : {true, false, true}) {
        load->setValueByStr(0.0, wanted ? "TRUE" : "FALSE");
        scene.context().runFrame();
        QCOMPARE(scene.find("I")->childCount(), wanted ? 1 : 0);
    }
}

QTEST_APPLESS_MAIN(tst_Inline)
#include "tst_Inline.moc"
