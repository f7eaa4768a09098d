#include "SceneDrawing.h"
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

using namespace Orvane;

/// Textures with depth: what they show, and where.
class tst_SpaceTextures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(_drawing.isValid()); }
    void coordinatesLeadIntoTheDepth_data();
    void coordinatesLeadIntoTheDepth();
    void imageFillsTheBoxOfItsShape();
    void transformMovesWithinTheBox();
    void physicalMaterialShowsIt();
    void fileIsShown();
    void missingFileIsReported();
    void slicesAreStacked();
    void slicesOfSeveralSizesAreReported();
    void pixelsFollowTheirField();
    void badPixelsAreReported_data();
    void badPixelsAreReported();
    void endsRepeatWhenTheyShall();

private:
    SceneDrawing _drawing;
};

namespace {

/// Each pixel for itself.
const std::string Sharp = "textureProperties TextureProperties { magnificationFilter NEAREST_PIXEL "
                          "minificationFilter NEAREST_PIXEL boundaryModeR CLAMP_TO_EDGE } ";

/// Red in front of green.
const std::string Pixels = "PixelTexture3D { image [ 3 1 1 2 0xFF0000 0x00FF00 ] " + Sharp + "} ";

std::string unlit(const std::string& texture)
{
    return "material UnlitMaterial { emissiveColor 1 1 1 emissiveTexture " + texture + " } ";
}

/// The same place for all corners.
std::string everywhere(const std::string& place)
{
    return "texCoord TextureCoordinate3D { point [ " + place + ", " + place + ", " + place + ", " + place +
           " ] } ";
}

/// A box seen from its right side, whose front is to the left in the picture.
std::string turnedBox(const std::string& appearance)
{
    return "Transform { rotation 0 1 0 -1.5708 children Shape { appearance Appearance { " + appearance +
           " } geometry Box { size 4 4 4 } } }";
}

} // namespace

void tst_SpaceTextures::coordinatesLeadIntoTheDepth_data()
{
    QTest::addColumn<QByteArray>("place");
    QTest::addColumn<QColor>("color");
    QTest::newRow("front") << QByteArray("0.5 0.5 0.2") << QColor(Qt::red);
    QTest::newRow("back") << QByteArray("0.5 0.5 0.8") << QColor(Qt::green);
}

void tst_SpaceTextures::coordinatesLeadIntoTheDepth()
{
    QFETCH(QByteArray, place);
    QFETCH(QColor, color);
    const CoreScene scene(squareWith(unlit(Pixels), everywhere(place.toStdString())).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), color);
    const CoreScene lit(squareWith("material Material { diffuseColor 1 1 1 } texture " + Pixels,
                                   everywhere(place.toStdString()))
                            .c_str());
    COMPARE_DRAWN(_drawing.middleOf(lit), color);
    QCOMPARE(_drawing.error(), 0U);
}

void tst_SpaceTextures::imageFillsTheBoxOfItsShape()
{
    const CoreScene scene(turnedBox(unlit(Pixels)).c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::green));
}

void tst_SpaceTextures::transformMovesWithinTheBox()
{
    const CoreScene scene(
        turnedBox(unlit(Pixels) + "textureTransform TextureTransform3D { translation 0 0 0.5 }").c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::green));
}

void tst_SpaceTextures::physicalMaterialShowsIt()
{
    const CoreScene scene(turnedBox("material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 1 1 "
                                    "emissiveTexture " +
                                    Pixels + " }")
                              .c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0, false), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0, false), QColor(Qt::green));
    QCOMPARE(_drawing.error(), 0U);
}

void tst_SpaceTextures::fileIsShown()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("volume.nrrd")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("NRRD0004\ntype: uchar\ndimension: 4\nsizes: 3 1 1 2\nencoding: raw\n\n");
    file.write(QByteArray::fromHex("0000FFFFFF00"));
    file.close();
    const CoreScene scene(
        turnedBox(unlit("ImageTexture3D { url \"" + file.fileName().toStdString() + "\" " + Sharp + "}"))
            .c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::blue));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::yellow));
    QVERIFY(scene.messageCount() == 0);
}

void tst_SpaceTextures::missingFileIsReported()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("broken.nrrd")));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("NRRD0004\ntype: uchar\nsizes: 9 9 9\nencoding: raw\n\n");
    file.close();
    const CoreScene scene(
        turnedBox(unlit("ImageTexture3D { url \"" + file.fileName().toStdString() + "\" }")).c_str());
    COMPARE_DRAWN(_drawing.at(scene, 0, 0), QColor(Qt::white));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_SpaceTextures::slicesAreStacked()
{
    // Grey joins colours, and alpha those without.
    CoreScene scene(
        turnedBox(unlit("ComposedTexture3D { texture [ DEF P PixelTexture { image 1 1 3 0x0000FF } "
                        "PixelTexture { image 1 1 1 0x80 } ] " +
                        Sharp + "}"))
            .c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::blue));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(128, 128, 128));
    scene.set("P", "image", "1 1 3 0xFF0000");
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
}

void tst_SpaceTextures::slicesOfSeveralSizesAreReported()
{
    const CoreScene scene(
        turnedBox(unlit("ComposedTexture3D { texture [ PixelTexture { image 1 1 3 0x0000FF } "
                        "PixelTexture { image 2 1 3 0xFF0000 0xFF0000 } ] " +
                        Sharp + "}"))
            .c_str());
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::red));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_SpaceTextures::pixelsFollowTheirField()
{
    CoreScene scene(turnedBox(unlit("DEF P " + Pixels)).c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
    scene.set("P", "image", "1 1 1 2 0 255");
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::black));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::white));
    scene.set("P", "image", "0 0 0 0");
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::white));
    QVERIFY(scene.messageCount() == 0);
}

void tst_SpaceTextures::badPixelsAreReported_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::newRow("components") << QByteArray("5 1 1 1 0");
    QTest::newRow("below nothing") << QByteArray("1 -1 -1 1 0");
    QTest::newRow("missing pixels") << QByteArray("1 2 2 2 0 0 0");
    QTest::newRow("beyond all bounds") << QByteArray("4 2147483647 2147483647 2147483647 0");
}

void tst_SpaceTextures::badPixelsAreReported()
{
    QFETCH(QByteArray, image);
    const CoreScene scene(
        turnedBox(unlit("PixelTexture3D { image [ " + image.toStdString() + " ] }")).c_str());
    COMPARE_DRAWN(_drawing.at(scene, 0, 0), QColor(Qt::white));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_SpaceTextures::endsRepeatWhenTheyShall()
{
    const std::string image = "PixelTexture3D { image [ 3 1 1 2 0xFF0000 0x00FF00 ] ";
    const CoreScene ends(squareWith(unlit(image + "} "), everywhere("0.5 0.5 1.25")).c_str());
    COMPARE_DRAWN(_drawing.middleOf(ends), QColor(Qt::green));
    const CoreScene repeats(squareWith(unlit(image + "repeatR TRUE } "), everywhere("0.5 0.5 1.25")).c_str());
    COMPARE_DRAWN(_drawing.middleOf(repeats), QColor(Qt::red));
}

QTEST_MAIN(tst_SpaceTextures)
#include "tst_SpaceTextures.moc"
