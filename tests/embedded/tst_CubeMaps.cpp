#include "SceneDrawing.h"
#include "core/GroupProc.h"
#include "core/InnerPicture.h"
#include "core/RayTarget.h"
#include "core/SceneState.h"
#include "core/ShapeProc.h"
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <QFile>
#include <QTemporaryDir>
#include <memory>

using namespace Orvane;

/// Cube maps of files, and those that show what is seen from their shape.
class tst_CubeMaps : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileOfSixSidesIsShown();
    void flatFileIsReported();
    void mapShowsWhatStandsAround_data();
    void mapShowsWhatStandsAround();
    void mapLeavesItsOwnShapeOut();
    void mapIsDrawnOnceOrAlways();
    void mapStandsStillWhenTheCameraTurns();
    void faultySizeAndModeAreReported();

private:
    /// A picture of the scene with what its mirrors show.
    QColor mirrored(const CoreScene& scene);

    std::unique_ptr<GLPicture> _picture;
};

namespace {

/// A cube of 1 by 1 pixel: red, cyan, green, magenta, blue and yellow to +x, -x, +y, -y, +z and -z.
QByteArray cubeFile(bool isCube)
{
    QByteArray file("DDS ");
    const auto put = [&file](unsigned int number) {
        for (unsigned int shift = 0; shift < 32; shift += 8)
            file.append(static_cast<char>(number >> shift & 0xff));
    };
    for (unsigned int number : {124U, 0x1007U, 1U, 1U, 0U, 0U, 0U})
        put(number);
    for (int i = 0; i < 11; ++i)
        put(0);
    for (unsigned int number : {32U, 0x40U, 0U, 24U, 0xffU, 0xff00U, 0xff0000U, 0U})
        put(number);
    for (unsigned int number : {0x1008U, isCube ? 0xfe00U : 0U, 0U, 0U, 0U})
        put(number);
    for (const char* color : {"FF0000", "00FFFF", "00FF00", "FF00FF", "0000FF", "FFFF00"})
        file += QByteArray::fromHex(color);
    return file;
}

/// A square that shows the side of a map in one direction.
std::string towards(const std::string& texture, const std::string& direction)
{
    std::string points;
    for (int i = 0; i < 4; ++i)
        points += direction + ", ";
    return squareWith("material UnlitMaterial { emissiveColor 1 1 1 emissiveTexture " + texture + " }",
                      "texCoord TextureCoordinate3D { point [ " + points + " ] }");
}

/// Boxes of six colours round the origin, with the light of their own.
std::string boxes()
{
    std::string result;
    const auto box = [&result](const char* place, const char* color) {
        result += std::string("Transform { translation ") + place +
                  " children Shape { appearance Appearance { material UnlitMaterial { emissiveColor " +
                  color + " } } geometry Box { size 3 3 3 } } } ";
    };
    box("20 0 0", "1 0 0");
    box("-20 0 0", "0 1 1");
    box("0 20 0", "0 1 0");
    box("0 -20 0", "1 0 1");
    box("0 0 20", "0 0 1");
    box("0 0 -20", "1 1 0");
    return result;
}

const std::string Map = "DEF C GeneratedCubeMapTexture { size 32 update NEXT_FRAME_ONLY }";

} // namespace

void tst_CubeMaps::initTestCase()
{
    _picture = std::make_unique<GLPicture>();
    QVERIFY(_picture->context.isValid());
}

QColor tst_CubeMaps::mirrored(const CoreScene& scene)
{
    _picture->context.makeCurrent();
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(scene.proc().root());
    const osg::RefPtr<osg::NodePtr> root(osg::makeNodeFor(osg::NodeCorePtr(reference)));
    _picture->action->setTravMask(PictureTarget);
    for (InnerPicture* const picture : scene.proc().state().innerPictures())
        picture->draw({_picture->window.get(), *_picture->action, root.get(), scene.proc().root(),
                       osg::BackgroundPtr(_picture->background.get()), 1000.0});
    return _picture->draw(root.get()).pixelColor(100, 100);
}

void tst_CubeMaps::fileOfSixSidesIsShown()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("cube.dds")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(cubeFile(true));
    file.close();
    const std::string texture = "DEF C ImageCubeMapTexture { url \"" + file.fileName().toStdString() + "\" }";
    CoreScene scene(towards(texture, "0 -1 0").c_str());
    COMPARE_DRAWN(mirrored(scene), QColor(255, 0, 255));
    CoreScene other(towards(texture, "0 0 -1").c_str());
    COMPARE_DRAWN(mirrored(other), QColor(255, 255, 0));
    QCOMPARE(other.messageCount(), std::size_t(0));
    other.set("C", "load", "FALSE");
    COMPARE_DRAWN(mirrored(other), QColor(255, 255, 255));
}

void tst_CubeMaps::flatFileIsReported()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("flat.dds")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(cubeFile(false));
    file.close();
    CoreScene scene(
        towards("ImageCubeMapTexture { url \"" + file.fileName().toStdString() + "\" }", "0 -1 0").c_str());
    COMPARE_DRAWN(mirrored(scene), QColor(255, 255, 255));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_CubeMaps::mapShowsWhatStandsAround_data()
{
    QTest::addColumn<QByteArray>("direction");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("right") << QByteArray("1 0 0") << QColor(255, 0, 0);
    QTest::newRow("left") << QByteArray("-1 0 0") << QColor(0, 255, 255);
    QTest::newRow("up") << QByteArray("0 1 0") << QColor(0, 255, 0);
    QTest::newRow("down") << QByteArray("0 -1 0") << QColor(255, 0, 255);
    QTest::newRow("back") << QByteArray("0 0 1") << QColor(0, 0, 255);
    QTest::newRow("front") << QByteArray("0 0 -1") << QColor(255, 255, 0);
    QTest::newRow("beside the boxes") << QByteArray("0.2 0 -1") << QColor(0, 0, 0);
    QTest::newRow("near the middle of a box") << QByteArray("0.03 -1 0") << QColor(255, 0, 255);
}

void tst_CubeMaps::mapShowsWhatStandsAround()
{
    QFETCH(QByteArray, direction);
    QFETCH(QColor, expected);
    CoreScene scene((towards(Map, direction.toStdString()) + boxes()).c_str());
    COMPARE_DRAWN(mirrored(scene), expected);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_CubeMaps::mapLeavesItsOwnShapeOut()
{
    // The square would be seen from within its plane's box: another one stands in front of the yellow box.
    const std::string screen =
        "Transform { translation 0 0 -2 children Shape { appearance USE A geometry USE G } }";
    CoreScene scene(("DEF T Transform { children " + towards(Map, "0 0 -1") + " } " + boxes()).c_str());
    COMPARE_DRAWN(mirrored(scene), QColor(255, 255, 0));
    QVERIFY((scene.procOf<ShapeProc>("S").tree()->getTravMask() & PictureTarget) != 0);
    // What shares the appearance is left out as well.
    CoreScene shared((towards(Map, "0 0 -1") + screen + boxes()).c_str());
    COMPARE_DRAWN(mirrored(shared), QColor(255, 255, 0));
}

void tst_CubeMaps::mapIsDrawnOnceOrAlways()
{
    CoreScene scene(
        (towards(Map, "0 0 -1") +
         "Transform { translation 0 0 -20 children Shape { appearance Appearance { material DEF M "
         "UnlitMaterial { emissiveColor 1 0 0 } } geometry Box { size 3 3 3 } } }")
            .c_str());
    COMPARE_DRAWN(mirrored(scene), QColor(255, 0, 0));
    QCOMPARE(scene.get("C", "update"), std::string("NONE"));
    scene.set("M", "emissiveColor", "0 1 0");
    COMPARE_DRAWN(mirrored(scene), QColor(255, 0, 0));
    scene.set("C", "update", "ALWAYS");
    COMPARE_DRAWN(mirrored(scene), QColor(0, 255, 0));
    scene.set("M", "emissiveColor", "0 0 1");
    COMPARE_DRAWN(mirrored(scene), QColor(0, 0, 255));
    scene.set("C", "size", "64");
    COMPARE_DRAWN(mirrored(scene), QColor(0, 0, 255));
    QCOMPARE(scene.get("C", "update"), std::string("ALWAYS"));
}

void tst_CubeMaps::mapStandsStillWhenTheCameraTurns()
{
    // The normal of the square leads to +z of the world from wherever one looks, fixed and by a program.
    for (const char* material : {"UnlitMaterial { emissiveColor 1 1 1 emissiveTexture ",
                                 "PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 1 1 emissiveTexture "})
    {
        CoreScene scene((squareWith("material " + (material + Map) + " }",
                                    "texCoord TextureCoordinateGenerator { mode CAMERASPACENORMAL }") +
                         boxes())
                            .c_str());
        COMPARE_DRAWN(mirrored(scene), QColor(0, 0, 255));
        auto& place = static_cast<osg::Transform&>(*_picture->eye->getCore());
        const osg::Matrix before = place.getMatrix();
        osg::Matrix turned;
        turned.setRotate(osg::Quaternion(osg::Vec3f(0, 1, 0), 1.2F));
        turned.mult(before);
        place.setMatrix(turned);
        const QColor seen = mirrored(scene);
        place.setMatrix(before);
        COMPARE_DRAWN(seen, QColor(0, 0, 255));
    }
}

void tst_CubeMaps::faultySizeAndModeAreReported()
{
    CoreScene scene((towards(Map, "0 0 -1") + boxes()).c_str());
    scene.set("C", "size", "2000000000");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("C", "size", "-5");
    scene.set("C", "update", "\"SOMETIMES\"");
    COMPARE_DRAWN(mirrored(scene), QColor(0, 0, 0));
}

QTEST_MAIN(tst_CubeMaps)
#include "tst_CubeMaps.moc"
