#include "GraphCompare.h"
#include "LoadedText.h"
#include "base/NodeClass.h"
#include <Orvane/System.h>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

class tst_XmlWriter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void whatIsWrittenReadsAsTheSameGraph_data();
    void whatIsWrittenReadsAsTheSameGraph();
    void exampleScenesSurvive_data();
    void exampleScenesSurvive();
    void onlyWhatDiffersFromDefaultsIsWritten();
    void defaultsAreWrittenWhenAsked();
    void namesThatNoElementCanBearAreChangedAndTold();
    void sharedAndRoutedNodesGetNames();
    void headIsKept();
    void hostEngineIsNotWritten();
    void rootIsLeftOutWhenAsked();
    void indentsByTabsWhenAsked();
    void abstractTypesAndOutputsStandInComments();
    void packedFileReadsTheSame();
    void inlineContentIsNotWritten();
    void otherSuffixesAreRefused();
    void folderThatIsNotThereIsTold();
    void existingFileIsReplacedWhole();

    void addressesThatLeadNowhereFromTheNewFolderAreTold();

private:
    QString save(LoadedText& scene, const SaveOptions& options = SaveOptions());

    QTemporaryDir _folder;
};

/// The text of the file that the scene was written to.
QString tst_XmlWriter::save(LoadedText& scene, const SaveOptions& options)
{
    const QString path = _folder.filePath(QStringLiteral("scene.x3d"));
    std::string error;
    if (!scene.context().save(path.toStdString(), options, error))
        return QString::fromStdString(error);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("no file");
}

void tst_XmlWriter::whatIsWrittenReadsAsTheSameGraph_data()
{
    QTest::addColumn<QByteArray>("nodes");
    const auto row = [](const char* name, const char* nodes) { QTest::newRow(name) << QByteArray(nodes); };
    row("empty", "");
    row("shapes",
        "<Transform DEF='T' translation='1 2.5 -3e-7' rotation='0 1 0 "
        "1.5707964'><Shape><Appearance><Material "
        "diffuseColor='1 0.5 0.25'/></Appearance><Sphere radius='3' solid='false'/></Shape></Transform>");
    row("use", "<Shape><Appearance DEF='A'><Material DEF='M'/></Appearance><Box/></Shape><Shape><Appearance "
               "USE='A'/><Box/></Shape><Shape><Appearance><Material USE='M'/></Appearance></Shape>");
    row("container fields",
        "<Collision><Shape containerField='proxy'><Box/></Shape><Shape><Box/></Shape></Collision>"
        "<MetadataSet name='a'><MetadataString containerField='value' name='b' value='\"c\"'/>"
        "</MetadataSet><Material/>");
    row("lists", "<Shape><IndexedFaceSet coordIndex='0 1 2 -1'><Coordinate point='0 0 0 1 0 0 0 1 "
                 "0'/></IndexedFaceSet>"
                 "</Shape>");
    row("texts",
        "<Text string='\"a &quot;b\" \"\" \"back\\\\slash \\\"q\\\" &apos; &lt;&amp;>\" "
        "\"two&#10;lines&#9;tab\"'/><WorldInfo title='&quot;quoted&quot; &apos;and&apos; &lt;this&gt;&#10;x' "
        "info='\"gr\xC3\xBC\xC3\x9F\" \"\xE2\x82\xAC\"'/>");
    row("image", "<PixelTexture image='2 1 3 0xff0000 0x00ff00'/>");
    row("script",
        "<Group DEF='G'/><Script DEF='S' url='\"a.js\"' directOutput='true'><field name='v' type='MFVec3f' "
        "accessType='inputOutput' value='1 2 3 4 5 6'/><field name='n' type='SFNode' "
        "accessType='initializeOnly'><Group USE='G'/></field><field name='m' type='MFNode' "
        "accessType='inputOutput'><Box/><Box/></field><field name='i' type='SFTime' "
        "accessType='inputOnly'/><field name='o' type='SFBool' accessType='outputOnly'/><field name='s' "
        "type='MFString' accessType='inputOutput' value='\"x\" \"y\"'/><field name='b' type='SFBool' "
        "accessType='inputOutput' value='true'/><![CDATA[ecmascript:\nfunction f() { return a[b[0]]>c; }]]>"
        "</Script>");
    row("shader",
        "<Shape><Appearance><ComposedShader language='GLSL'><field name='k' type='SFFloat' "
        "accessType='inputOutput' value='0.5'/><ShaderPart type='FRAGMENT'><![CDATA[\nvoid main()\n{\n}\n]]>"
        "</ShaderPart></ComposedShader></Appearance></Shape>");
    row("routes",
        "<TimeSensor DEF='T' loop='true'/><PositionInterpolator DEF='P' key='0 1' keyValue='0 0 0 1 1 1'/>"
        "<Transform DEF='X'/><ROUTE fromNode='T' fromField='fraction_changed' toNode='P' "
        "toField='set_fraction'/><ROUTE fromNode='P' fromField='value_changed' toNode='X' "
        "toField='set_translation'/>");
    row("unknown",
        "<Wobbler DEF='W' speed='3'><Box containerField='shape'/><Group/></Wobbler><TimeSensor DEF='T'/>"
        "<ROUTE fromNode='T' fromField='fraction_changed' toNode='W' toField='phase'/>");
    row("instance",
        "<ProtoInstance name='P' DEF='I'><fieldValue name='a' value='1 &lt; 2'/><fieldValue name='n'><Box/>"
        "</fieldValue></ProtoInstance>");
    row("cycle through a script",
        "<Group DEF='G'><Script><field name='g' type='SFNode' accessType='initializeOnly'>"
        "<Group USE='G'/></field></Script></Group>");
    row("names", "<Group DEF='&lt;odd &amp; \"name\"'/><Group DEF='\xC3\xBC'/>");
    row("engine", "<Engine DEF='E'><Window size='300 200'><Viewarea/></Window></Engine><Group/>");
}

void tst_XmlWriter::whatIsWrittenReadsAsTheSameGraph()
{
    QFETCH(QByteArray, nodes);
    LoadedText scene(nodes.toStdString());
    QVERIFY(scene.ok);
    const QString text = save(scene);
    LoadedText again;
    QVERIFY2(again.load(text.toStdString()), qPrintable(text));
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
    QCOMPARE(graphDifference(scene.root("Engine"), again.root("Engine")), QString());
    QCOMPARE(again.report().routes, scene.report().routes);
    // From now on nothing changes any more.
    QCOMPARE(save(again), text);
}

void tst_XmlWriter::exampleScenesSurvive_data()
{
    QTest::addColumn<QString>("path");
    QDirIterator files(qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples/scenes"),
                       {QStringLiteral("*.x3d")}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(files.fileName())) << path;
    }
}

void tst_XmlWriter::exampleScenesSurvive()
{
    QFETCH(QString, path);
    LoadedText scene;
    QVERIFY(scene.loadFile(path.toStdString()));
    QCOMPARE(scene.messages(), QStringList());
    const QString text = save(scene);
    LoadedText again;
    QVERIFY(again.context().load(path.toStdString(), text.toStdString(), Context::REPLACE_LT, {}));
    QCOMPARE(again.messages(), QStringList());
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
    QCOMPARE(graphDifference(scene.root("Engine"), again.root("Engine")), QString());
    QCOMPARE(again.report().routes, scene.report().routes);
}

void tst_XmlWriter::onlyWhatDiffersFromDefaultsIsWritten()
{
    LoadedText scene(
        "<Transform translation='0 0 0' scale='1 1 2'><Shape><Box size='2 2 2'/></Shape></Transform>");
    QCOMPARE(save(scene), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                         "<X3D profile=\"Full\" version=\"4.0\">\n"
                                         "  <Scene>\n"
                                         "    <Transform scale=\"1 1 2\">\n"
                                         "      <Shape>\n"
                                         "        <Box/>\n"
                                         "      </Shape>\n"
                                         "    </Transform>\n"
                                         "  </Scene>\n"
                                         "</X3D>\n"));
}

void tst_XmlWriter::defaultsAreWrittenWhenAsked()
{
    LoadedText scene("<Shape><Box/></Shape>");
    SaveOptions options;
    options.writeDefaultValues = true;
    const QString text = save(scene, options);
    QVERIFY(text.contains(QLatin1String("size=\"2 2 2\"")));
    QVERIFY(text.contains(QLatin1String("solid=\"true\"")));
    LoadedText again;
    QVERIFY(again.load(text.toStdString()));
    QCOMPARE(again.messages(), QStringList());
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
}

void tst_XmlWriter::namesThatNoElementCanBearAreChangedAndTold()
{
    LoadedText scene;
    QVERIFY(scene.load("#X3D V3.3 utf8\nPROFILE Full\nA@B { c=d 3 }"));
    QVERIFY(save(scene).contains(QLatin1String("<A_B c_d=\"3\"/>")));
    QCOMPARE(scene.context().saveNotes(),
             (std::vector<std::string>{"node type \"A@B\": the encoding has no such name; written as A_B",
                                       "field \"c=d\": the encoding has no such name; written as c_d"}));
}

void tst_XmlWriter::sharedAndRoutedNodesGetNames()
{
    LoadedText scene("<Group DEF='G'><Shape/></Group><Group DEF='H'/><Transform DEF='Shape_1'/>");
    auto* from = dynamic_cast<MFNode*>(scene.find("G")->findField("children", Node::EXACT_FSO));
    auto* to = dynamic_cast<MFNode*>(scene.find("H")->findField("children", Node::EXACT_FSO));
    to->addNode(0.0, from->elem(0).directNode(), Field::EXTERNAL_CT);
    const QString text = save(scene);
    QVERIFY2(text.contains(QLatin1String("<Shape DEF=\"Shape_1_2\"/>")), qPrintable(text));
    QVERIFY(text.contains(QLatin1String("<Shape USE=\"Shape_1_2\"/>")));
    LoadedText again;
    QVERIFY(again.load(text.toStdString()));
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
}

void tst_XmlWriter::headIsKept()
{
    LoadedText scene;
    QVERIFY(scene.load("<X3D profile='Immersive' version='3.3'><head><component name='Text' level='1'/><meta "
                       "name='title' content='A &amp; B'/></head><Scene/></X3D>"));
    const QString text = save(scene);
    QVERIFY(text.contains(QLatin1String("<X3D profile=\"Immersive\" version=\"4.0\">")));
    QVERIFY(text.contains(
        QLatin1String("<head>\n    <component name=\"Text\" level=\"1\"/>\n    <meta name=\"title\" "
                      "content=\"A &amp; B\"/>\n  </head>")));
}

void tst_XmlWriter::hostEngineIsNotWritten()
{
    LoadedText scene("<Group/>");
    QVERIFY(createRoot(&scene.context(), "Engine", nullptr, HOST_NC));
    QVERIFY(!save(scene).contains(QLatin1String("Engine")));
}

void tst_XmlWriter::rootIsLeftOutWhenAsked()
{
    LoadedText scene("<Engine><Window/></Engine><MetadataString name='m'/><Group/>");
    SaveOptions options;
    options.skipRoot = true;
    QCOMPARE(save(scene, options), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                  "<X3D profile=\"Full\" version=\"4.0\">\n"
                                                  "  <Scene>\n"
                                                  "    <Group/>\n"
                                                  "  </Scene>\n"
                                                  "</X3D>\n"));
}

void tst_XmlWriter::indentsByTabsWhenAsked()
{
    LoadedText scene("<Group><Group/></Group>");
    SaveOptions options;
    options.useTabs = true;
    QVERIFY(save(scene, options).contains(QLatin1String("\n\t\t<Group>\n\t\t\t<Group/>\n\t\t</Group>\n")));
}

void tst_XmlWriter::abstractTypesAndOutputsStandInComments()
{
    LoadedText scene("<TimeSensor/><Group/>");
    SaveOptions options;
    options.writeAbstractNodes = true;
    options.writeProcInfo = true;
    const QString text = save(scene, options);
    QVERIFY2(text.contains(QRegularExpression(QStringLiteral("<!-- Group: .*X3DGroupingNode.* -->"))),
             qPrintable(text));
    QVERIFY(text.contains(QLatin1String("<!-- TimeSensor.isActive = FALSE -->")));
    LoadedText again;
    QVERIFY(again.load(text.toStdString()));
    QCOMPARE(again.messages(), QStringList());
}

void tst_XmlWriter::packedFileReadsTheSame()
{
    LoadedText scene("<Transform DEF='T'><Shape><Box/></Shape></Transform>");
    const QString path = _folder.filePath(QStringLiteral("scene.x3dz"));
    std::string error;
    QVERIFY2(scene.context().save(path.toStdString(), SaveOptions(), error), error.c_str());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(2) == QByteArray("\x1f\x8b"));
    LoadedText again;
    QVERIFY(again.loadFile(path.toStdString()));
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
}

void tst_XmlWriter::inlineContentIsNotWritten()
{
    QFile inner(_folder.filePath(QStringLiteral("inner.x3d")));
    QVERIFY(inner.open(QIODevice::WriteOnly));
    inner.write("<X3D><Scene><TimeSensor DEF='Inner'/><EXPORT localDEF='Inner' AS='Clock'/></Scene></X3D>");
    inner.close();
    LoadedText scene;
    const std::string path = _folder.filePath(QStringLiteral("outer.x3d")).toStdString();
    const std::string outer = LoadedText::document(
        "<Inline DEF='I' url='\"inner.x3d\"'/><IMPORT inlineDEF='I' importedDEF='Clock' AS='C'/>"
        "<PositionInterpolator DEF='P'/><ROUTE fromNode='C' fromField='fraction_changed' toNode='P' "
        "toField='set_fraction'/>");
    QVERIFY(scene.context().load(path, outer, Context::REPLACE_LT, {}));
    QCOMPARE(scene.messages(), QStringList());
    const QString text = save(scene);
    QVERIFY2(!text.contains(QLatin1String("TimeSensor")), qPrintable(text));
    QVERIFY(text.contains(QLatin1String("<Inline DEF=\"I\" url='\"inner.x3d\"'/>")));
    QVERIFY(text.contains(QLatin1String("<IMPORT inlineDEF=\"I\" importedDEF=\"Clock\" AS=\"C\"/>")));
    QVERIFY(
        text.contains(QLatin1String("<ROUTE fromNode=\"C\" fromField=\"fraction_changed\" toNode=\"P\"")));
    LoadedText again;
    QVERIFY(again.context().load(path, text.toStdString(), Context::REPLACE_LT, {}));
    QCOMPARE(again.messages(), QStringList());
    QCOMPARE(graphDifference(scene.scene(), again.scene()), QString());
}

void tst_XmlWriter::otherSuffixesAreRefused()
{
    LoadedText scene("<Group/>");
    std::string error;
    for (const char* name : {"scene.obj", "scene", "x3d"}) {
        const QString path = _folder.filePath(QLatin1String(name));
        QVERIFY(!scene.context().save(path.toStdString(), SaveOptions(), error));
        QVERIFY(!QFile::exists(path));
        QVERIFY2(error.find("expected a suffix of an encoding that can be written (.x3d") !=
                     std::string::npos,
                 error.c_str());
    }
}

void tst_XmlWriter::folderThatIsNotThereIsTold()
{
    LoadedText scene("<Group/>");
    std::string error;
    QVERIFY(!scene.context().save("/nowhere/at/all.x3d", SaveOptions(), error));
    QCOMPARE(
        error,
        std::string(
            "/nowhere/at/all.x3d: expected a file that can be written, found: No such file or directory"));
    QVERIFY(!scene.context().save(_folder.path().toStdString() + "/.", SaveOptions(), error));
}

void tst_XmlWriter::existingFileIsReplacedWhole()
{
    const QString path = _folder.filePath(QStringLiteral("old.x3d"));
    QFile old(path);
    QVERIFY(old.open(QIODevice::WriteOnly));
    old.write(QByteArray(100000, ' '));
    old.close();
    QVERIFY(old.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    LoadedText scene("<Group/>");
    std::string error;
    QVERIFY(scene.context().save(path.toStdString(), SaveOptions(), error));
    QVERIFY(QFileInfo(path).size() < 1000);
    QCOMPARE(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    QCOMPARE(QDir(_folder.path()).entryList({QStringLiteral("old*")}).size(), 1);
}

void tst_XmlWriter::addressesThatLeadNowhereFromTheNewFolderAreTold()
{
    QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("other")));
    const auto write = [&folder](const char* name, const std::string& text) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        return file.open(QIODevice::WriteOnly) && file.write(text.c_str()) >= 0;
    };
    QVERIFY(write("part.x3d", LoadedText::document("<Group/>")));
    QVERIFY(
        write("scene.x3d", LoadedText::document("<Inline url='\"part.x3d\" \"http://a/part.x3d\"'/>"
                                                "<Inline url='\"part.x3d\"'/><Inline url='\"none.x3d\"'/>")));
    LoadedText scene;
    QVERIFY(scene.loadFile(folder.filePath(QStringLiteral("scene.x3d")).toStdString()));
    std::string error;
    const auto notes = [&](const char* name) {
        scene.context().save(folder.filePath(QString::fromLatin1(name)).toStdString(), SaveOptions(), error);
        return scene.context().saveNotes();
    };
    QCOMPARE(notes("new.x3d"), std::vector<std::string>());
    const std::vector<std::string> expected = {
        "Inline.url: \"part.x3d\" counts from the folder of the new file, which has no such file"};
    QCOMPARE(notes("other/new.x3d"), expected);
    QCOMPARE(error, std::string());
}

QTEST_APPLESS_MAIN(tst_XmlWriter)
#include "tst_XmlWriter.moc"
