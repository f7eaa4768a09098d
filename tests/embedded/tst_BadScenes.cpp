#include "LoadedText.h"
#include "ScatteredBytes.h"
#include <Orvane/MFInt32.h>
#include <Orvane/System.h>
#include <QTemporaryDir>
#include <QtTest>
#include <sys/stat.h>

using namespace Orvane;

namespace {

/// The same for each encoding.
void addEncodings()
{
    QTest::addColumn<QString>("encoding");
    for (const char* encoding : {"x3d", "x3dv", "wrl"})
        QTest::newRow(encoding) << QString::fromLatin1(encoding);
}

/// A scene of the nodes that are given in XML or as they are in both classic encodings.
std::string sceneOf(const QString& encoding, const std::string& xml, const std::string& classic)
{
    if (encoding == QLatin1String("x3d"))
        return LoadedText::document(xml);
    return (encoding == QLatin1String("wrl") ? "#VRML V2.0 utf8\n" : "#X3D V3.3 utf8\n") + classic + "\n";
}

std::string repeated(const std::string& text, int count)
{
    return QByteArray::fromStdString(text).repeated(count).toStdString();
}

} // namespace

/// Whatever is called a scene, the runtime reads it or says why not, and goes on.
class tst_BadScenes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void whatIsNoSceneIsRefusedWithItsReason_data();
    void whatIsNoSceneIsRefusedWithItsReason();
    void refusedSceneLeavesTheOldOneAlone();
    void folderPipeAndMissingFileAreRefused();
    void cutScenesAreRefused();
    void scatteredBytesNeverCrash();
    void hugeAttributesAndManyNodesLoad();
    void inlinesThatMultiplyComeToAnEnd();
    void nodesThatNestTooDeepAreRefused_data() { addEncodings(); }
    void nodesThatNestTooDeepAreRefused();
    void elementsThatNestTooDeepAreRefused();
    void nameOfTenMegabytesLoads_data() { addEncodings(); }
    void nameOfTenMegabytesLoads();
    void tenMillionValuesLoad_data() { addEncodings(); }
    void tenMillionValuesLoad();

private:
    QByteArray sample() const;

    QTemporaryDir _folder;
};

QByteArray tst_BadScenes::sample() const
{
    return "<?xml version='1.0' encoding='UTF-8'?>\n<X3D version='4.0' profile='Full'><head><meta "
           "name='title' "
           "content='t'/></head><Scene>\n<Transform DEF='T' translation='1 2 3'><Shape><Appearance><Material "
           "diffuseColor='1 0 0'/></Appearance><IndexedFaceSet coordIndex='0 1 2 -1'><Coordinate point='0 0 "
           "0 1 0 0 0 1 "
           "0'/></IndexedFaceSet></Shape></Transform><Script DEF='S'><field name='a' type='SFFloat' "
           "accessType='inputOutput' value='1'/><field name='n' type='MFNode' "
           "accessType='inputOutput'><Group "
           "USE='T'/></field><![CDATA[ecmascript: ]]></Script><TimeSensor DEF='C'/><ROUTE fromNode='C' "
           "fromField='fraction_changed' toNode='S' toField='a'/><ProtoDeclare "
           "name='P'><ProtoBody><Group/></ProtoBody>"
           "</ProtoDeclare><ProtoInstance name='P'><fieldValue name='x' "
           "value='1'/></ProtoInstance><PixelTexture "
           "image='2 1 3 0xff0000 255'/><Text string='\"a\" \"b\"'/><Inline "
           "url='\"none.x3d\"'/></Scene></X3D>";
}

void tst_BadScenes::whatIsNoSceneIsRefusedWithItsReason_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("message");
    const auto row = [](const char* name, const QByteArray& bytes, const char* message) {
        QTest::newRow(name) << bytes << QString::fromLatin1(message);
    };
    row("empty", {}, "expected X3D XML or X3D Classic or VRML97, found an empty file");
    row("binary", QByteArray("\x89PNG\r\n\x1a\n"),
        "expected X3D XML or X3D Classic or VRML97, found \"\x89PNG\"");
    row("zero bytes", QByteArray(1000, '\0'), "1:1: expected text, found a zero byte");
    row("other XML", "<html><body/></html>", "1:1: expected the root element X3D, found \"html\"");
    row("VRML 1.0", "#VRML V1.0 ascii\n", "expected X3D XML or X3D Classic or VRML97, found VRML 1.0");
    row("packed rubbish", QByteArray("\x1f\x8b\x08rubbish that is no stream"),
        "expected a gzip stream, found damaged data");
}

void tst_BadScenes::whatIsNoSceneIsRefusedWithItsReason()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, message);
    const QString path = _folder.filePath(QStringLiteral("bad.x3d"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    LoadedText scene;
    QVERIFY(!scene.loadFile(path.toStdString()));
    QVERIFY(!scene.report().ok);
    QCOMPARE(scene.report().messages.size(), std::size_t(1));
    QCOMPARE(scene.report().messages[0].severity, LoadMessage::ERROR_LM);
    const QString text = QString::fromStdString(scene.report().messages[0].toString());
    QVERIFY2(text.startsWith(path + QLatin1String(": ") + message.section(QLatin1String(" found "), 0, 0)) ||
                 text.startsWith(path + QLatin1Char(':') + message),
             qPrintable(text));
}

void tst_BadScenes::refusedSceneLeavesTheOldOneAlone()
{
    LoadedText scene("<Group DEF='Old'/>");
    Node* old = scene.scene();
    QVERIFY(!scene.load("<X3D><Scene><Group DEF='New'/></X3D>"));
    QCOMPARE(scene.scene(), old);
    QVERIFY(scene.find("Old"));
    QVERIFY(!scene.find("New"));
}

void tst_BadScenes::folderPipeAndMissingFileAreRefused()
{
    LoadedText scene;
    QVERIFY(!scene.loadFile(_folder.path().toStdString()));
    QVERIFY(!scene.loadFile(_folder.filePath(QStringLiteral("none.x3d")).toStdString()));
    QCOMPARE(QString::fromStdString(scene.report().messages.at(0).toString()),
             _folder.filePath(QStringLiteral("none.x3d")) +
                 QLatin1String(": expected a readable file, found: No such file or directory"));
    const std::string pipe = _folder.filePath(QStringLiteral("pipe.x3d")).toStdString();
    QCOMPARE(::mkfifo(pipe.c_str(), 0600), 0);
    QVERIFY(!scene.loadFile(pipe));
    QVERIFY(!scene.loadFile(""));
    QCOMPARE(scene.report().messages.size(), std::size_t(1));
}

void tst_BadScenes::cutScenesAreRefused()
{
    const QByteArray whole = sample();
    LoadedText scene;
    QVERIFY(scene.load(whole.toStdString()));
    for (int length = 0; length < whole.size(); ++length) {
        QVERIFY(!scene.load(whole.left(length).toStdString()));
        QCOMPARE(scene.report().messages.size(), std::size_t(1));
        QVERIFY(scene.report().messages[0].text.find("expected ") == 0);
    }
}

void tst_BadScenes::scatteredBytesNeverCrash()
{
    std::mt19937 random(20);
    const QByteArray whole = sample();
    const QByteArray bytes("<>/'\" =&\0\xFF"
                           "09-.eE[]#!?",
                           21);
    LoadedText scene;
    for (int round = 0; round < 3000; ++round) {
        const QByteArray text = withScatteredBytes(whole, bytes, 4, random);
        const bool ok = scene.load(text.toStdString());
        QCOMPARE(scene.report().ok, ok);
        QVERIFY(ok || !scene.report().messages.empty());
        if (ok && round % 50 == 0)
            scene.context().runFrame();
    }
}

void tst_BadScenes::hugeAttributesAndManyNodesLoad()
{
    LoadedText scene;
    QVERIFY(scene.load(LoadedText::document("<WorldInfo title='" + std::string(20 << 20, 'x') + "'/>")));
    QCOMPARE(scene.messages(), QStringList());
    QVERIFY(
        scene.load(LoadedText::document("<Transform translation='" + std::string(20 << 20, '9') + "'/>")));
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages()[0].size() < 300);
    std::string attributes;
    for (int i = 0; i < 5000; ++i)
        attributes += " a" + std::to_string(i) + "='1'";
    QVERIFY(scene.load(LoadedText::document("<Wobbler" + attributes + "/>")));
    const std::size_t column = std::string("<Wobbler").size() + attributes.find("1' a4097");
    QCOMPARE(
        scene.messages().value(1),
        QStringLiteral("2:%1 Wobbler: expected at most 4096 fields of an author, found \"a4096\" beside them")
            .arg(column + 1));
    std::string nodes;
    for (int i = 0; i < 20000; ++i)
        nodes += "<Group/>";
    QVERIFY(scene.load(LoadedText::document(nodes)));
    QCOMPARE(scene.scene()->childCount(), 20000);
}

void tst_BadScenes::inlinesThatMultiplyComeToAnEnd()
{
    for (int i = 0; i < 20; ++i) {
        QFile file(_folder.filePath(QStringLiteral("n%1.x3d").arg(i)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray inner = "<Inline url='\"n" + QByteArray::number(i + 1) + ".x3d\"'/>";
        file.write("<X3D><Scene>" + (i < 19 ? inner + inner : QByteArray()) + "</Scene></X3D>");
    }
    LoadedText scene;
    QVERIFY(scene.loadFile(_folder.filePath(QStringLiteral("n0.x3d")).toStdString()));
    bool told = false;
    for (const LoadMessage& message : scene.report().messages)
        told = told || message.text.find("expected at most 10000 files in one scene, found more") !=
                           std::string::npos;
    QVERIFY(told);
}

void tst_BadScenes::nodesThatNestTooDeepAreRefused()
{
    constexpr int depth = 100000;
    QFETCH(QString, encoding);
    LoadedText scene;
    QVERIFY(!scene.load(sceneOf(encoding, repeated("<Group>", depth) + repeated("</Group>", depth),
                                repeated("Group { children [ ", depth) + repeated("] }", depth))));
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY2(scene.messages()[0].startsWith(QStringLiteral("2:")) &&
                 scene.messages()[0].contains(QStringLiteral("expected nodes that nest at most 2000 deep")),
             qPrintable(scene.messages()[0]));
}

void tst_BadScenes::elementsThatNestTooDeepAreRefused()
{
    constexpr int depth = 1000000;
    std::string tags;
    for (int i = 0; i < depth; ++i)
        tags += "<a>";
    LoadedText scene;
    QVERIFY(!scene.load(tags));
    QCOMPARE(scene.messages().size(), 1);
    for (int i = 0; i < depth; ++i)
        tags += "</a>";
    QVERIFY(!scene.load(tags));
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(!scene.load(LoadedText::document(tags)));
    QVERIFY(scene.messages().last().contains(QStringLiteral("expected nodes that nest at most 2000 deep")));
}

void tst_BadScenes::nameOfTenMegabytesLoads()
{
    QFETCH(QString, encoding);
    const std::string name(10 << 20, 'n');
    LoadedText scene;
    QVERIFY(scene.load(sceneOf(
        encoding,
        "<Group DEF='" + name + "'><Shape/></Group><Group USE='" + name + "'/><Group USE='" + name + "x'/>",
        "DEF " + name + " Group { children Shape { } } USE " + name + " USE " + name + "x")));
    Node* const group = scene.find(name.c_str());
    QVERIFY(group);
    QVERIFY(group->isShared());
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages()[0].size() < 300);
    QVERIFY(scene.load(sceneOf(encoding, "<" + name + "/>", name + " { }")));
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY(scene.messages()[0].size() < 300);
}

void tst_BadScenes::tenMillionValuesLoad()
{
    constexpr int count = 10000000;
    QFETCH(QString, encoding);
    const std::string values = repeated("3,7 ", count / 2);
    LoadedText scene;
    QVERIFY(scene.load(sceneOf(encoding, "<IndexedLineSet DEF='L' colorIndex='" + values + "'/>",
                               "Shape { geometry DEF L IndexedLineSet { colorIndex [ " + values + "] } }")));
    QCOMPARE(scene.messages(), QStringList());
    const Field* const field = scene.find("L")->findField("colorIndex", Node::EXACT_FSO);
    QCOMPARE(field->size(), static_cast<unsigned int>(count));
    QCOMPARE(static_cast<const MFInt32*>(field)->values().back(), 7);
}

QTEST_APPLESS_MAIN(tst_BadScenes)
#include "tst_BadScenes.moc"
