#include "GraphCompare.h"
#include "LoadedText.h"
#include <Orvane/System.h>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

/// Scenes in one encoding are written in a second and a third one: the graph stays the same, whichever three
/// these are.
class tst_RoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void writtenScenesSurviveAllPairsOfEncodings_data();
    void writtenScenesSurviveAllPairsOfEncodings();
    void whatTheRootBearsSurvives();
    void filesSurviveAllPairsOfEncodings_data();
    void filesSurviveAllPairsOfEncodings();

private:
    /// A scene with what its way here could not say.
    struct Stage
    {
        LoadedText scene;
        QString notes;
    };
    QString pass(LoadedText& from, const std::string& base, const char* suffix, Stage& to,
                 const SaveOptions& options = SaveOptions());
    QString differenceOfPairs(LoadedText& scene, const std::string& base);
    QString differenceWithOptions(LoadedText& scene, const std::string& base);
    static QString difference(LoadedText& first, LoadedText& second, const QString& notes);

    QTemporaryDir _folder;
};

namespace {

constexpr const char* suffixes[] = {".x3d", ".x3dv", ".wrl"};

} // namespace

/// Writes a scene and reads it again; the error when that fails.
QString tst_RoundTrip::pass(LoadedText& from, const std::string& base, const char* suffix, Stage& to,
                            const SaveOptions& options)
{
    const QString path = _folder.filePath(QStringLiteral("scene") + QLatin1String(suffix));
    std::string error;
    if (!from.context().save(path.toStdString(), options, error))
        return QString::fromStdString(error);
    for (const std::string& note : from.context().saveNotes())
        to.notes += QString::fromStdString(note) + QLatin1Char('\n');
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    // What the scene inlines lies beside the file that it came from.
    if (!to.scene.context().load(base, file.readAll().toStdString(), Context::REPLACE_LT, {}))
        return to.scene.messages().join(QLatin1Char('\n'));
    return QString();
}

/// Where the scenes differ, apart from what the notes tell of.
QString tst_RoundTrip::difference(LoadedText& first, LoadedText& second, const QString& notes)
{
    GraphLeniency ignored;
    ignored.names = notes.contains(QLatin1String("DEF "));
    ignored.routes = notes.contains(QLatin1String("IMPORT: "));
    for (const char* root : {"Scene", "Engine", "ContextSetup"}) {
        const QString found = graphDifference(first.root(root), second.root(root), ignored);
        if (!found.isEmpty())
            return found;
    }
    if (!ignored.routes && first.report().routes != second.report().routes)
        return QStringLiteral("%1 and %2 routes").arg(first.report().routes).arg(second.report().routes);
    return QString();
}

/// Nothing but the root may be missing from what the other options write.
QString tst_RoundTrip::differenceWithOptions(LoadedText& scene, const std::string& base)
{
    SaveOptions options;
    options.useTabs = true;
    options.writeProcInfo = true;
    options.writeAbstractNodes = true;
    options.writeDefaultValues = true;
    for (const char* suffix : suffixes) {
        Stage end;
        QString fault = pass(scene, base, suffix, end, options);
        if (fault.isEmpty())
            fault = difference(scene, end.scene, end.notes);
        if (!fault.isEmpty())
            return QStringLiteral("with all options as %1: %2").arg(QLatin1String(suffix), fault);
        SaveOptions plain;
        plain.skipRoot = true;
        plain.resolveProtos = true;
        Stage resolved;
        fault = pass(scene, base, suffix, resolved, plain);
        if (!fault.isEmpty())
            return QStringLiteral("resolved as %1: %2").arg(QLatin1String(suffix), fault);
    }
    return QString();
}

QString tst_RoundTrip::differenceOfPairs(LoadedText& scene, const std::string& base)
{
    for (const char* first : suffixes) {
        Stage middle;
        QString fault = pass(scene, base, first, middle);
        if (fault.isEmpty())
            fault = difference(scene, middle.scene, middle.notes);
        if (!fault.isEmpty())
            return QStringLiteral("as %1: %2").arg(QLatin1String(first), fault);
        for (const char* second : suffixes) {
            Stage end;
            fault = pass(middle.scene, base, second, end);
            if (fault.isEmpty())
                fault = difference(scene, end.scene, middle.notes + end.notes);
            if (!fault.isEmpty())
                return QStringLiteral("as %1, then as %2: %3")
                    .arg(QLatin1String(first), QLatin1String(second), fault);
        }
    }
    return QString();
}

void tst_RoundTrip::writtenScenesSurviveAllPairsOfEncodings_data()
{
    QTest::addColumn<QByteArray>("nodes");
    const auto row = [](const char* name, const char* nodes) { QTest::newRow(name) << QByteArray(nodes); };
    row("empty", "");
    row("numbers", "<Transform translation='1 2.5 -3e-7' rotation='0 1 0 1.5707964' scale='1e30 -0 3.4e38'/>"
                   "<GeoLOD center='0.1 123456789.123456789 1e-300'/><TimeSensor cycleInterval='0.1'/>"
                   "<LOD range='-1 1e-45 16777216 16777217'/><Switch whichChoice='-2147483648'/>");
    row("endless numbers", "<Transform translation='inf -inf nan'/><LOD range='inf nan'/>");
    row("use", "<Shape><Appearance DEF='A'><Material DEF='M'/></Appearance><Box/></Shape><Shape><Appearance "
               "USE='A'/><Box/></Shape><Shape><Appearance><Material USE='M'/></Appearance></Shape>");
    row("container fields",
        "<Collision enabled='false'><Shape containerField='proxy'><Box/></Shape><Shape><Box/></Shape>"
        "</Collision><MetadataSet name='a'><MetadataString containerField='value' name='b' value='\"c\"'/>"
        "</MetadataSet><Material/>");
    row("names that VRML97 has others for",
        "<Switch DEF='S' whichChoice='1'><Group/><Group/></Switch><LOD range='1 2'><Group/></LOD>"
        "<Collision DEF='C' enabled='false'/><TouchSensor DEF='T'/><ROUTE fromNode='T' fromField='isActive' "
        "toNode='C' toField='enabled'/>");
    row("defaults that VRML97 has others for",
        "<NavigationInfo/><NavigationInfo type='\"WALK\" \"ANY\"'/><SpotLight/><SpotLight "
        "beamWidth='1.570796' cutOffAngle='0.785398'/><SpotLight beamWidth='0.3'/>");
    row("texts", "<Text string='\"a &quot;b\" \"\" \"back\\\\slash \\\"q\\\" &apos; &lt;&amp;>\" "
                 "\"two&#10;lines&#9;tab\" \"# { [ no comment ] }\" \" blanks \"'/><WorldInfo "
                 "title='&quot;quoted&quot; &apos;and&apos; &lt;this&gt;&#10;x' info='\"gr\xC3\xBC\xC3\x9F\" "
                 "\"\xE2\x82\xAC\" \"\xC3\x83\xC2\xBC\"'/>");
    row("images", "<PixelTexture image='2 1 3 0xff0000 0x00ff00'/><PixelTexture image='0 0 0'/>");
    row("script",
        "<Group DEF='G'/><Script DEF='S' url='\"a.js\"' directOutput='true'><field name='v' type='MFVec3f' "
        "accessType='inputOutput' value='1 2 3 4 5 6'/><field name='n' type='SFNode' "
        "accessType='initializeOnly'><Group USE='G'/></field><field name='m' type='MFNode' "
        "accessType='inputOutput'><Box/><Box/></field><field name='i' type='SFTime' "
        "accessType='inputOnly'/><field name='o' type='SFBool' accessType='outputOnly'/><field name='s' "
        "type='MFString' accessType='inputOutput' value='\"x\" \"y\"'/><field name='b' type='SFBool' "
        "accessType='inputOutput' value='true'/><field name='w' type='SFString' accessType='initializeOnly' "
        "value='a \"b\"'/><field name='e' type='MFFloat' accessType='initializeOnly'/><field name='x' "
        "type='SFNode' accessType='inputOutput'/><field name='q' type='MFMatrix3f' "
        "accessType='initializeOnly' value='1 0 0 0 1 0 0 0 1 2 0 0 0 2 0 0 0 2'/><field name='k' "
        "type='MFColorRGBA' accessType='inputOutput' value='1 0 0 1'/><![CDATA[ecmascript:\nfunction f() { "
        "return a[b[0]]>c ? \"}\" : '#\\\\'; }]]></Script>");
    row("blanks round a source",
        "<Script url='\"&#10; ecmascript:&#10;f();&#10;   &#10;\"'/><Script url='\"a.js\" "
        "\" &#10; \"'/><Script url='\"a&#10;b\"'/>");
    row("end of a section", "<Script><![CDATA[ecmascript:\nx = \"]]]]><![CDATA[>\";\n]]></Script>");
    row("all data types", "<Script><field name='a' type='SFVec2d' accessType='inputOutput' value='1 2'/>"
                          "<field name='b' type='MFVec4d' accessType='inputOutput' value='1 2 3 4 5 6 7 8'/>"
                          "<field name='c' type='SFMatrix4d' accessType='inputOutput'/><field name='d' "
                          "type='MFBool' accessType='inputOutput' value='true false'/><field name='e' "
                          "type='MFImage' accessType='inputOutput' value='1 1 1 7 0 0 0'/><field name='f' "
                          "type='MFTime' accessType='inputOutput' value='-1 0.5'/></Script>");
    row("shader",
        "<Shape><Appearance><ComposedShader language='GLSL'><field name='k' type='SFFloat' "
        "accessType='inputOutput' value='0.5'/><ShaderPart type='FRAGMENT'><![CDATA[\nvoid main()\n{\n}\n]]>"
        "</ShaderPart></ComposedShader></Appearance></Shape>");
    row("routes",
        "<TimeSensor DEF='T' loop='true'/><PositionInterpolator DEF='P' key='0 1' keyValue='0 0 0 1 1 1'/>"
        "<Transform DEF='X'/><ROUTE fromNode='T' fromField='fraction_changed' toNode='P' "
        "toField='set_fraction'/><ROUTE fromNode='P' fromField='value_changed' toNode='X' "
        "toField='set_translation'/>");
    row("unknown", "<Wobbler DEF='W' speed='3' way='1 2 -3.5' on='TRUE' text='abc' list='\"a, \" \"b\"' "
                   "one='\"a\"' odd='3 apples' empty=''><Box containerField='shape'/><Group/></Wobbler>"
                   "<TimeSensor DEF='T'/><ROUTE fromNode='T' fromField='fraction_changed' toNode='W' "
                   "toField='phase'/>");
    row("cycle through a script",
        "<Group DEF='G'><Script><field name='g' type='SFNode' accessType='initializeOnly'>"
        "<Group USE='G'/></field></Script></Group>");
    row("names", "<Group DEF='a b'/><Group DEF='a_b'/><Group DEF='3.x'/><Group DEF='DEF'/>"
                 "<Group DEF='\xC3\xBC-1'/>");
    row("one name for several",
        "<Group DEF='A' bboxSize='1 1 1'/><Group USE='A'/><Group DEF='A' bboxSize='2 2 2'/><Group DEF='A' "
        "bboxSize='3 3 3'/><Group USE='A'/><TimeSensor DEF='T'/><ROUTE fromNode='T' fromField='isActive' "
        "toNode='A' toField='bboxDisplay'/>");
    row("engine", "<Engine DEF='E'><Window size='300 200'><Viewarea/></Window></Engine><Group/>");
    row("metadata of instances",
        "<ProtoDeclare name='P'><ProtoInterface><field name='v' type='SFFloat' accessType='inputOutput' "
        "value='1'/></ProtoInterface><ProtoBody><Group/></ProtoBody></ProtoDeclare><ProtoDeclare name='Q'>"
        "<ProtoBody><ProtoInstance name='P'><MetadataString name='inner'/></ProtoInstance></ProtoBody>"
        "</ProtoDeclare><ProtoInstance name='P' DEF='A'><fieldValue name='v' value='2'/><MetadataString "
        "DEF='M' name='m' value='\"x\"'/></ProtoInstance><ProtoInstance name='P'><MetadataString "
        "USE='M'/></ProtoInstance><ProtoInstance name='Q'/>");
    row("metadata of the scene", "<MetadataString name='m' value='\"x\"'/><Group/>");
    row("long lists", "<Shape><PointSet><Coordinate point='0 0 0 1 1 1 2 2 2 3 3 3 4 4 4 5 5 5 6 6 6 7 7 7 8 "
                      "8 8 9 9 9 10 10 10 11 11 11 12 12 12 13 13 13 14 14 14 15 15 15'/></PointSet></Shape>"
                      "<PixelTexture image='8 8 1 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 1 2 3 4 5 "
                      "6 7 8 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8 1 2 3 4 5 6 7 8'/>");
}

void tst_RoundTrip::writtenScenesSurviveAllPairsOfEncodings()
{
    QFETCH(QByteArray, nodes);
    LoadedText scene(nodes.toStdString());
    QVERIFY(scene.ok);
    QCOMPARE(differenceOfPairs(scene, "scene.x3d"), QString());
    QCOMPARE(differenceWithOptions(scene, "scene.x3d"), QString());
}

void tst_RoundTrip::whatTheRootBearsSurvives()
{
    LoadedText scene;
    QVERIFY(
        scene.load("<X3D><head><meta name='a' content='b'/></head><Scene DEF='R' visible='false'><TimeSensor "
                   "DEF='T'/><ROUTE fromNode='T' fromField='isActive' toNode='R' toField='visible'/>"
                   "</Scene></X3D>"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.find("R"), scene.scene());
    QCOMPARE(scene.report().routes, std::size_t(1));
    QCOMPARE(LoadedText::value(scene.scene(), "visible"), QStringLiteral("FALSE"));
    QCOMPARE(differenceOfPairs(scene, "scene.x3d"), QString());
    Stage again;
    QCOMPARE(pass(scene, "scene.x3d", ".wrl", again), QString());
    QCOMPARE(again.scene.find("R"), again.scene.scene());
}

void tst_RoundTrip::filesSurviveAllPairsOfEncodings_data()
{
    QTest::addColumn<QString>("path");
    const QString source = qEnvironmentVariable("ORVANE_SOURCE_DIR");
    for (const QString& folder :
         {source + QStringLiteral("/examples/scenes"), source + QStringLiteral("/tests/fuzz/seeds"),
          qEnvironmentVariable("ORVANE_SCENES")})
    {
        if (folder.isEmpty())
            continue;
        QDirIterator files(folder,
                           {QStringLiteral("*.x3d"), QStringLiteral("*.x3dv"), QStringLiteral("*.wrl"),
                            QStringLiteral("*.x3dz"), QStringLiteral("*.x3dvz"), QStringLiteral("*.wrz")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QTest::newRow(qPrintable(QDir(folder).relativeFilePath(path))) << path;
        }
    }
}

void tst_RoundTrip::filesSurviveAllPairsOfEncodings()
{
    QFETCH(QString, path);
    LoadedText scene;
    if (!scene.loadFile(path.toStdString()))
        QSKIP("no scene");
    QCOMPARE(differenceOfPairs(scene, path.toStdString()), QString());
    QCOMPARE(differenceWithOptions(scene, path.toStdString()), QString());
}

QTEST_APPLESS_MAIN(tst_RoundTrip)
#include "tst_RoundTrip.moc"
