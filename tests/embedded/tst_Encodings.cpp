#include "GraphCompare.h"
#include "LoadedText.h"
#include "ScatteredBytes.h"
#include <Orvane/MFInt32.h>
#include <Orvane/System.h>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <zlib.h>

using namespace Orvane;

/// One scene in all encodings is one graph, and each encoding stands what is done to its files.
class tst_Encodings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void sameSceneIsTheSameGraph_data();
    void sameSceneIsTheSameGraph();
    void packedFilesAreRead_data() { files(); }
    void packedFilesAreRead();
    void cutFilesComeToAnEnd_data() { files(); }
    void cutFilesComeToAnEnd();
    void scatteredBytesNeverCrash_data() { files(); }
    void scatteredBytesNeverCrash();
    void encodingIsToldByTheText();
    void fileWithoutHeaderIsReadByItsSuffix();
    void refusedTextLeavesTheOldSceneAlone();
    void latin1IsRead();
    void nestingHasALimit();
    void valuesMayBeHuge();
    void faultsAreToldWithTheirPlace();
    void unknownFieldsGiveOneMessageEach();
    void shadersTakeFieldsOfTheirAuthors();
    void secondNodeOfANameIsTheOneUsed();

private:
    static QString folder();
    static QByteArray contentOf(const QString& name);
    void files();
    std::string inFolder(const char* name) const
    {
        return _folder.filePath(QLatin1String(name)).toStdString();
    }
    void write(const char* name, const QByteArray& content) const;

    QTemporaryDir _folder;
};

QString tst_Encodings::folder()
{
    return qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/tests/embedded/encodings/");
}

QByteArray tst_Encodings::contentOf(const QString& name)
{
    QFile file(folder() + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void tst_Encodings::write(const char* name, const QByteArray& content) const
{
    QFile file(_folder.filePath(QLatin1String(name)));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

void tst_Encodings::files()
{
    QTest::addColumn<QString>("file");
    for (const char* const scene : {"shapes", "script", "prototypes"})
        for (const char* const suffix : {"x3dv", "wrl"}) {
            const QString name = QLatin1String(scene) + QLatin1Char('.') + QLatin1String(suffix);
            QTest::newRow(qPrintable(name)) << name;
        }
}

/// Messages that a scene of the test data is meant to give.
static bool isMeant(const QString& message)
{
    return message.contains(QLatin1String("\"Wobbler\""));
}

void tst_Encodings::sameSceneIsTheSameGraph_data()
{
    files();
}

void tst_Encodings::sameSceneIsTheSameGraph()
{
    QFETCH(QString, file);
    LoadedText scene;
    QVERIFY(scene.loadFile((folder() + file).toStdString()));
    for (const QString& message : scene.messages())
        QVERIFY2(isMeant(message), qPrintable(message));
    LoadedText inXml;
    QVERIFY(inXml.loadFile(
        (folder() + file.section(QLatin1Char('.'), 0, 0) + QLatin1String(".x3d")).toStdString()));
    QCOMPARE(graphDifference(inXml.scene(), scene.scene()), QString());
    QCOMPARE(scene.report().nodes, inXml.report().nodes);
    QCOMPARE(scene.report().namedNodes, inXml.report().namedNodes);
    QCOMPARE(scene.report().uses, inXml.report().uses);
    QCOMPARE(scene.report().routes, inXml.report().routes);
}

void tst_Encodings::packedFilesAreRead()
{
    QFETCH(QString, file);
    const QByteArray content = contentOf(file);
    const std::string path = inFolder("packed.any");
    gzFile packed = gzopen(path.c_str(), "wb");
    QVERIFY(gzwrite(packed, content.constData(), static_cast<unsigned int>(content.size())) > 0);
    gzclose(packed);
    LoadedText plain;
    QVERIFY(plain.loadFile((folder() + file).toStdString()));
    LoadedText unpacked;
    QVERIFY(unpacked.loadFile(path));
    QCOMPARE(unpacked.messages(), plain.messages());
    QCOMPARE(graphDifference(plain.scene(), unpacked.scene()), QString());
}

void tst_Encodings::cutFilesComeToAnEnd()
{
    QFETCH(QString, file);
    const QByteArray whole = contentOf(file);
    QVERIFY(whole.size() > 500);
    LoadedText scene;
    for (int length = 0; length < whole.size(); ++length) {
        const bool ok = scene.load(whole.left(length).toStdString());
        QCOMPARE(scene.report().ok, ok);
        QVERIFY(ok || !scene.report().messages.empty());
        for (const LoadMessage& message : scene.report().messages)
            QVERIFY2(message.text.find("expected ") != std::string::npos, message.text.c_str());
    }
}

void tst_Encodings::scatteredBytesNeverCrash()
{
    QFETCH(QString, file);
    std::mt19937 random(7);
    const QByteArray whole = contentOf(file);
    const QByteArray bytes("{}[]\"#\\ ,.\n\xFF"
                           "09-.eTUA'",
                           21);
    LoadedText scene;
    for (int round = 0; round < 400; ++round) {
        const QByteArray text = withScatteredBytes(whole, bytes, 6, random);
        const bool ok = scene.load(text.toStdString());
        QCOMPARE(scene.report().ok, ok);
        QVERIFY(ok || !scene.report().messages.empty());
        if (ok && round % 20 == 0)
            scene.context().runFrame();
    }
}

void tst_Encodings::encodingIsToldByTheText()
{
    LoadedText scene;
    QVERIFY(scene.load("#VRML V2.0 utf8\nDEF A Group {}"));
    QVERIFY(scene.find("A"));
    QVERIFY(scene.load("#X3D V3.0 utf8\nDEF B Group {}"));
    QVERIFY(scene.find("B"));
    QVERIFY(!scene.find("A"));
}

void tst_Encodings::fileWithoutHeaderIsReadByItsSuffix()
{
    LoadedText scene;
    write("bare.wrl", "DEF A Group {}");
    QVERIFY(scene.loadFile(inFolder("bare.wrl")));
    QVERIFY(scene.find("A"));
    QCOMPARE(scene.messages(), QStringList(QStringLiteral(
                                   "1:1 expected the header \"#VRML V2.0 utf8\", found \"DEF A Group {}\"")));
    write("bare.x3dv", "DEF B Group {}");
    QVERIFY(scene.loadFile(inFolder("bare.x3dv")));
    QVERIFY(scene.find("B"));
    write("bare.x3d", "DEF C Group {}");
    QVERIFY(!scene.loadFile(inFolder("bare.x3d")));
    write("old.wrl", "#VRML V1.0 ascii\nSeparator {}");
    QVERIFY(!scene.loadFile(inFolder("old.wrl")));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("0:0 expected X3D XML or X3D Classic or VRML97, found VRML 1.0")));
}

void tst_Encodings::refusedTextLeavesTheOldSceneAlone()
{
    LoadedText scene("<Group DEF='Old'/>");
    Node* old = scene.scene();
    QVERIFY(!scene.load("#VRML V2.0 utf8\nthis is no scene"));
    QCOMPARE(scene.scene(), old);
    QVERIFY(scene.find("Old"));
}

void tst_Encodings::latin1IsRead()
{
    LoadedText scene;
    QVERIFY(scene.load("#VRML V2.0 utf8\nDEF W WorldInfo { title \"h\xF6her\" info \"h\xF6her\" }"));
    QCOMPARE(scene.find("W")->findField("title", Node::EXACT_FSO)->valueToString(), std::string("h\xF6her"));
    QVERIFY(scene.load("#VRML V2.0 utf8\nDEF W WorldInfo { title \"h\xC3\xB6her\" info \"h\xC3\xB6her\" }"));
    QCOMPARE(scene.find("W")->findField("title", Node::EXACT_FSO)->valueToString(), std::string("h\xF6her"));
    QCOMPARE(scene.find("W")->findField("info", Node::EXACT_FSO)->valueToString(),
             std::string("\"h\xF6her\""));
}

void tst_Encodings::nestingHasALimit()
{
    const auto nested = [](int depth) {
        std::string text = "#VRML V2.0 utf8\n";
        for (int i = 0; i < depth; ++i)
            text += "Group { children [ ";
        for (int i = 0; i < depth; ++i)
            text += "] }";
        return text;
    };
    LoadedText scene;
    QVERIFY(scene.load(nested(1900)));
    QCOMPARE(scene.messages(), QStringList());
    QVERIFY(!scene.load(nested(100000)));
    QCOMPARE(scene.messages().size(), 1);
    QVERIFY2(scene.messages()[0].contains(
                 QLatin1String("expected nodes that nest at most 2000 deep, found deeper ones")),
             qPrintable(scene.messages()[0]));
}

void tst_Encodings::valuesMayBeHuge()
{
    LoadedText scene;
    const std::string name(10 << 20, 'n');
    QVERIFY(scene.load("#VRML V2.0 utf8\nDEF " + name + " Group {} Group { children USE " + name + " }"));
    QCOMPARE(scene.messages(), QStringList());
    std::string numbers;
    for (int i = 0; i < 1000000; ++i)
        numbers += "1 2 3 0 0 0 0 4 5 -1 ";
    QVERIFY(scene.load("#X3D V3.3 utf8\nShape { geometry DEF I IndexedLineSet { coordIndex [ " + numbers +
                       "] } }"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(static_cast<MFInt32*>(scene.find("I")->findField("coordIndex", Node::EXACT_FSO))->size(),
             10000000U);
}

void tst_Encodings::faultsAreToldWithTheirPlace()
{
    LoadedText scene;
    QVERIFY(scene.load(
        "#VRML V2.0 utf8\nDEF T Transform {\n  translation 1 2 center 0 0 0\n  rotatio 0 0 1 0\n  children "
        "[\n"
        "    Shape { geometry Box { size 1 x 1 } }\n    Wibble {}\n    USE Nobody\n  ]\n  scale 2 2 2\n}\n"
        "ROUTE T.a TO T.b\nDEF N Group {}"));
    const QStringList expected = {
        QStringLiteral("3:15 Transform.translation: expected a number, found the end"),
        QStringLiteral("4:3 Transform: expected one of its fields, found \"rotatio\""),
        QStringLiteral("6:35 Box.size: expected a value of type SFVec3f, found \"x\""),
        QStringLiteral("7:5 expected a node type, found \"Wibble\"; it is kept without behaviour"),
        QStringLiteral("8:5 USE: expected the name of a node, found \"Nobody\""),
    };
    QCOMPARE(scene.messages().mid(0, 5), expected);
    QCOMPARE(scene.messages().size(), 6);
    QVERIFY(scene.messages()[5].startsWith(QLatin1String("12:1 ROUTE")));
    QCOMPARE(scene.value("T", "scale"), QStringLiteral("2 2 2"));
    QVERIFY(scene.find("N"));
}

void tst_Encodings::unknownFieldsGiveOneMessageEach()
{
    LoadedText scene;
    QVERIFY(scene.load(
        "#X3D V3.3 utf8\nDEF T Transform {\n  a [ Shape { geometry Box { size 1 2 3 } } Wibble {} ]\n"
        "  b \"text\" c 1 2 3 d [ \"x\" \"y\" ] e TRUE\n  f Shape { b 1 } g NULL h USE T\n  scale 2 2 2\n}"));
    QStringList expected;
    for (const char* const place :
         {"3:3 a", "4:3 b", "4:12 c", "4:20 d", "4:34 e", "5:3 f", "5:19 g", "5:26 h"}) {
        const QString text = QLatin1String(place);
        expected
            << text.section(QLatin1Char(' '), 0, 0) +
                   QStringLiteral(" Transform: expected one of its fields, found \"%1\"").arg(text.right(1));
    }
    QCOMPARE(scene.messages(), expected);
    QCOMPARE(scene.value("T", "scale"), QStringLiteral("2 2 2"));
    QCOMPARE(LoadedText::outline(scene.find("T")), QStringLiteral("Transform"));
}

void tst_Encodings::shadersTakeFieldsOfTheirAuthors()
{
    LoadedText scene;
    QVERIFY(scene.load(
        "#X3D V3.3 utf8\nShape { appearance Appearance { shaders [\n"
        "DEF C ComposedShader { inputOutput SFFloat x 1 language \"GLSL\" parts ShaderPart {} }\n"
        "DEF P PackagedShader { initializeOnly MFVec3f v [ 1 2 3 ] }\n"
        "ProgramShader { programs DEF S ShaderProgram { inputOutput SFColor c 1 0 0 type \"VERTEX\" } }\n"
        "] } }"));
    QCOMPARE(scene.messages(), QStringList());
    QCOMPARE(scene.value("C", "x"), QStringLiteral("1"));
    QCOMPARE(scene.value("P", "v"), QStringLiteral("1 2 3"));
    QCOMPARE(scene.value("S", "c"), QStringLiteral("1 0 0"));
}

void tst_Encodings::secondNodeOfANameIsTheOneUsed()
{
    LoadedText scene;
    QVERIFY(scene.load("#VRML V2.0 utf8\nDEF A Group {} DEF A Shape {} DEF B Group { children USE A }"));
    QCOMPARE(scene.messages(),
             QStringList(QStringLiteral("2:16 DEF: expected a name of its own, found \"A\", "
                                        "which the node at 2:1 bears")));
    QCOMPARE(LoadedText::outline(scene.find("B")), QStringLiteral("Group(Shape)"));
}

QTEST_APPLESS_MAIN(tst_Encodings)
#include "tst_Encodings.moc"
