#include "LoadedText.h"
#include "SceneDrawing.h"
#include <Orvane/Authoring.h>
#include <QTemporaryDir>
#include <memory>

using namespace Orvane;

/// What the version of X3D that a file is written in makes of the texture of an appearance.
class tst_TextureVersions : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void colorsJoinByTheVersion_data();
    void colorsJoinByTheVersion();
    void alphaJoinsByTheVersion_data();
    void alphaJoinsByTheVersion();
    void glowStaysClearOfTheTexture();
    void headersTellTheVersion_data();
    void headersTellTheVersion();
    void filesOfASceneKeepTheirVersions();
    void pastedNodesFollowTheScene();
    void loadedSceneLooksAsItsVersionSays();
    void saveTellsOfAnotherVersion_data();
    void saveTellsOfAnotherVersion();

private:
    std::string write(const char* name, const QByteArray& text) const;

    std::unique_ptr<SceneDrawing> _drawing;
    QTemporaryDir _folder;
};

namespace {

constexpr unsigned int Old = 33;
constexpr unsigned int New = 40;

const char Nodes[] = "DEF A Appearance { material Material { diffuseColor 1 0 0 } texture PixelTexture { "
                     "image 1 1 3 0xFFFFFF } }";

unsigned int versionOf(const Node* node)
{
    return node ? fileVersion(node->nameSpace()) : 0;
}

} // namespace

void tst_TextureVersions::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

std::string tst_TextureVersions::write(const char* name, const QByteArray& text) const
{
    QFile file(_folder.filePath(QLatin1String(name)));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("the temporary folder takes no file");
    return file.fileName().toStdString();
}

void tst_TextureVersions::colorsJoinByTheVersion_data()
{
    QTest::addColumn<QByteArray>("material");
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<QByteArray>("colors");
    QTest::addColumn<QColor>("old");
    QTest::addColumn<QColor>("now");
    const QByteArray lit = "material Material { diffuseColor 1 0.5 0 }";
    const QByteArray unlit = "material UnlitMaterial { emissiveColor 1 0.5 0 }";
    const QByteArray rgb = "1 1 3 0x80FF40";
    const QByteArray grey = "1 1 1 0x80";
    const QByteArray blue = "color Color { color [ 0 0.5 1, 0 0.5 1, 0 0.5 1, 0 0.5 1 ] }";
    QTest::newRow("lit, colours") << lit << rgb << QByteArray() << QColor(0x80, 0xFF, 0x40)
                                  << QColor(0x80, 0x80, 0);
    QTest::newRow("lit, grey") << lit << grey << QByteArray() << QColor(0x80, 0x40, 0)
                               << QColor(0x80, 0x40, 0);
    QTest::newRow("vertices, colours")
        << lit << rgb << blue << QColor(0x80, 0xFF, 0x40) << QColor(0, 0x80, 0x40);
    QTest::newRow("vertices, grey") << lit << grey << blue << QColor(0, 0x40, 0x80) << QColor(0, 0x40, 0x80);
    QTest::newRow("unlit") << unlit << rgb << QByteArray() << QColor(0x80, 0x80, 0) << QColor(0x80, 0x80, 0);
    QTest::newRow("no material") << QByteArray() << rgb << QByteArray() << QColor(0x80, 0xFF, 0x40)
                                 << QColor(0x80, 0xFF, 0x40);
    QTest::newRow("no material, vertices")
        << QByteArray() << rgb << blue << QColor(0x80, 0xFF, 0x40) << QColor(0, 0x80, 0x40);
}

void tst_TextureVersions::colorsJoinByTheVersion()
{
    QFETCH(QByteArray, material);
    QFETCH(QByteArray, image);
    QFETCH(QByteArray, colors);
    QFETCH(QColor, old);
    QFETCH(QColor, now);
    const std::string text = squareWith(
        (material + " texture PixelTexture { image " + image + " }").toStdString(), colors.toStdString());
    CoreScene before(text.c_str(), Old);
    COMPARE_DRAWN(_drawing->middleOf(before), old);
    CoreScene newest(text.c_str(), New);
    COMPARE_DRAWN(_drawing->middleOf(newest), now);
}

void tst_TextureVersions::alphaJoinsByTheVersion_data()
{
    QTest::addColumn<unsigned int>("version");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("in its place") << Old << QColor(0x80, 0x80, 0x80);
    QTest::newRow("multiplied") << New << QColor(0x40, 0x40, 0x40);
}

void tst_TextureVersions::alphaJoinsByTheVersion()
{
    QFETCH(unsigned int, version);
    QFETCH(QColor, expected);
    CoreScene scene(squareWith("alphaMode BLEND material Material { diffuseColor 1 1 1 transparency 0.5 } "
                               "texture PixelTexture { image 1 1 2 0xFF80 }")
                        .c_str(),
                    version);
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
}

void tst_TextureVersions::glowStaysClearOfTheTexture()
{
    CoreScene scene(squareWith("material DEF M Material { diffuseColor 1 1 1 emissiveColor 0 0 0.5 } texture "
                               "PixelTexture { image 1 1 3 0xFF8000 }")
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x80, 0x80));
    scene.set("M", "emissiveColor", "0 0 0");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x80, 0));
    scene.set("M", "emissiveColor", "nan 0 -1");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x80, 0));
}

void tst_TextureVersions::headersTellTheVersion_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<unsigned int>("version");
    const QByteArray nodes = QByteArray("\nShape { appearance ") + Nodes + " }\n";
    const auto xml = [](const char* version) {
        return QByteArray("<X3D ") + version +
               "><Scene><Shape><Appearance DEF='A'></Appearance></Shape></Scene></X3D>";
    };
    QTest::newRow("classic 3.0") << "a.x3dv"
                                 << "#X3D V3.0 utf8" + nodes << 30U;
    QTest::newRow("classic 4.0") << "b.x3dv"
                                 << "#X3D V4.0 utf8" + nodes << 40U;
    QTest::newRow("classic without") << "c.x3dv" << nodes << 40U;
    QTest::newRow("classic of no number") << "d.x3dv"
                                          << "#X3D V utf8" + nodes << 40U;
    QTest::newRow("vrml") << "e.wrl"
                          << "#VRML V2.0 utf8" + nodes << 20U;
    QTest::newRow("vrml without") << "f.wrl" << nodes << 20U;
    QTest::newRow("xml 3.3") << "g.x3d" << xml("version='3.3'") << 33U;
    QTest::newRow("xml 4.1") << "h.x3d" << xml("version='4.1'") << 41U;
    QTest::newRow("xml without") << "i.x3d" << xml("") << 40U;
    QTest::newRow("xml of no number") << "j.x3d" << xml("version='x'") << 40U;
    QTest::newRow("xml of a huge number") << "k.x3d" << xml("version='99999999999999'") << 40U;
}

void tst_TextureVersions::headersTellTheVersion()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    QFETCH(unsigned int, version);
    LoadedText scene;
    QVERIFY(scene.loadFile(write(name.toUtf8().constData(), text)));
    QCOMPARE(versionOf(scene.find("A")), version);
}

void tst_TextureVersions::filesOfASceneKeepTheirVersions()
{
    write("inner.x3dv", QByteArray("#X3D V4.0 utf8\nShape { appearance ") + Nodes + " }\n");
    write("looks.wrl", QByteArray("#VRML V2.0 utf8\nPROTO Look [ ] { ") + Nodes + " }\n");
    LoadedText scene;
    QVERIFY(scene.loadFile(
        write("outer.x3dv",
              QByteArray("#X3D V3.2 utf8\nPROFILE Immersive\nEXTERNPROTO Look [ ] \"looks.wrl#Look\"\n"
                         "PROTO Own [ ] { Group { children PROTO_Shape { } } }\n")
                      .replace("PROTO_Shape { }", "Shape { appearance DEF Deep Appearance { } }") +
                  "DEF I Inline { url \"inner.x3dv\" }\nDEF O Own { }\n"
                  "Shape { appearance DEF L Look { } }\nShape { appearance DEF A Appearance { } }\n")));
    QCOMPARE(versionOf(scene.find("A")), 32U);
    const auto inside = [&](const char* holder, const char* name) {
        NodeNameSpace* const names =
            NodeNameSpace::findNameSpace(scene.scene()->nameSpace(), holder, nullptr, false);
        return versionOf(NodeNameSpace::findNode(names, name));
    };
    QCOMPARE(inside("I", "A"), 40U);
    QCOMPARE(inside("O", "Deep"), 32U);
    QCOMPARE(inside("L", "A"), 20U);
}

void tst_TextureVersions::pastedNodesFollowTheScene()
{
    LoadedText scene;
    QVERIFY(scene.loadFile(write("old.x3dv", "#X3D V3.3 utf8\nPROFILE Full\nGroup { }\n")));
    const std::string text =
        std::string("#X3D V4.0 utf8\nPROFILE Full\nShape { appearance ") + Nodes + " }\n";
    std::vector<HeldNode> pasted;
    std::string error;
    QVERIFY(Authoring::read(*scene.scene(), text, pasted, error));
    QCOMPARE(pasted.size(), std::size_t(1));
    QCOMPARE(versionOf(pasted[0].node()), 33U);
}

void tst_TextureVersions::loadedSceneLooksAsItsVersionSays()
{
    const QByteArray nodes = QByteArray::fromStdString(
        squareWith("material Material { diffuseColor 1 0 0 } texture PixelTexture { image 1 1 3 0xFFFFFF }"));
    const auto middle = [this](LoadedText& scene) {
        scene.context().setRootState(0.0, RUNNING_NS);
        scene.context().runFrame();
        return _drawing->draw(*procAs<SceneProc>(scene.scene()), true).pixelColor(100, 100);
    };
    LoadedText before;
    QVERIFY(before.loadFile(write("before.wrl", "#VRML V2.0 utf8\n" + nodes)));
    COMPARE_DRAWN(middle(before), QColor(0xFF, 0xFF, 0xFF));
    LoadedText newest;
    QVERIFY(newest.loadFile(write("newest.x3dv", "#X3D V4.0 utf8\nPROFILE Full\n" + nodes)));
    COMPARE_DRAWN(middle(newest), QColor(0xFF, 0, 0));
}

void tst_TextureVersions::saveTellsOfAnotherVersion_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("color");
    QTest::addColumn<QString>("written");
    QTest::addColumn<int>("notes");
    const QByteArray old = "#X3D V3.3 utf8\nPROFILE Full\n";
    const QByteArray now = "#X3D V4.0 utf8\nPROFILE Full\n";
    QTest::newRow("old as new") << old << QByteArray("1 0 0") << "a.x3d" << 1;
    QTest::newRow("old as old") << old << QByteArray("1 0 0") << "a.wrl" << 0;
    QTest::newRow("new as new") << now << QByteArray("1 0 0") << "b.x3dv" << 0;
    QTest::newRow("new as old") << now << QByteArray("1 0 0") << "b.wrl" << 1;
    QTest::newRow("white") << old << QByteArray("1 1 1") << "c.x3d" << 0;
}

void tst_TextureVersions::saveTellsOfAnotherVersion()
{
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, color);
    QFETCH(QString, written);
    QFETCH(int, notes);
    LoadedText scene;
    const QByteArray shape = "Shape { appearance Appearance { material Material { diffuseColor " + color +
                             " } texture PixelTexture { image 1 1 3 0xFFFFFF } } }\n";
    QVERIFY(scene.loadFile(write("saved.x3dv", header + shape + shape)));
    std::string error;
    QVERIFY(scene.context().save(_folder.filePath(written).toStdString(), {}, error));
    int told = 0;
    for (const std::string& note : scene.context().saveNotes())
        told += note.compare(0, 18, "Appearance.texture") == 0 ? 1 : 0;
    QCOMPARE(told, notes);
}

QTEST_MAIN(tst_TextureVersions)
#include "tst_TextureVersions.moc"
