#include "MediaFiles.h"
#include "SceneDrawing.h"
#include "core/CubeImage.h"
#include "core/ShapeProc.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGTextureChunk.h>
#include <QtTest>
#include <memory>

using namespace Orvane;

/// What several textures, made coordinates, cube maps and other looks of surfaces show.
class tst_TexturePicture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void modesJoinTwoTextures_data();
    void modesJoinTwoTextures();
    void unknownModeIsReported();
    void factorAndFunctionCount();
    void stageThatIsOffIsLeftOut();
    void tooManyTexturesAreReported();
    void texturesTakeTheirSets();
    void setsAreFoundByTheirNames();
    void transformsMoveTheirTextures();
    void coordinatesAreMade_data();
    void coordinatesAreMade();
    void coordinatesOfTheMeshAreMade();
    void unknownGeneratorIsReported();
    void setsFollowTheirNodes();
    void shortSetsAreHarmless();
    void cubeShowsWhatANormalLeadsTo();
    void cubeFollowsItsSides();
    void sidesStandAsOpenGLWantsThem();
    void propertiesReachTheTexture();
    void badPropertiesAreHarmless();
    void colorsThatAreNoneAreHarmless();
    void movieShowsItsPictures();
    void emissionTextureShines();
    void maskCutsHoles();
    void opaqueHasNoHoles();
    void hatchLiesOverTheFace();
    void facesThatAreNotFilledAreNotSeen();
    void backHasItsColor_data();
    void backHasItsColor();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

std::string pixel(const std::string& color)
{
    return "PixelTexture { image 1 1 3 0x" + color + " } ";
}

/// Red to the left, green to the right; each pixel for itself.
const std::string Halves =
    "PixelTexture { image 2 1 3 0xFF0000 0x00FF00 textureProperties TextureProperties { "
    "magnificationFilter NEAREST_PIXEL minificationFilter NEAREST_PIXEL } } ";

/// The same coordinates for all corners.
std::string everywhere(const std::string& place)
{
    return "TextureCoordinate { point [ " + place + ", " + place + ", " + place + ", " + place + " ] } ";
}

std::string normals(const std::string& normal)
{
    return "normal Normal { vector [ " + normal + ", " + normal + ", " + normal + ", " + normal + " ] } ";
}

osg::ChunkMaterialPtr materialOf(const CoreScene& scene)
{
    const auto group = osg::MaterialGroupPtr::dcast(scene.procOf<ShapeProc>("S").tree()->getCore());
    return osg::ChunkMaterialPtr::dcast(group->getMaterial());
}

osg::TextureChunkPtr textureOf(const CoreScene& scene)
{
    return osg::TextureChunkPtr::dcast(materialOf(scene)->findChunk(osg::StateChunk::TEXTURE));
}

osg::GeometryPtr geometryOf(const CoreScene& scene)
{
    return osg::GeometryPtr::dcast(scene.procOf<ShapeProc>("S").tree()->getChild(0)->getCore());
}

} // namespace

void tst_TexturePicture::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_TexturePicture::modesJoinTwoTextures_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QColor>("expected");
    // 80 40 20 below, 60 80 C0 above.
    const auto row = [](const char* mode, int r, int g, int b) {
        QTest::newRow(mode) << QByteArray(mode) << QColor(r, g, b);
    };
    row("MODULATE", 0x30, 0x20, 0x18);
    row("MODULATE2X", 0x60, 0x40, 0x30);
    row("MODULATE4X", 0xC0, 0x80, 0x60);
    row("REPLACE", 0x60, 0x80, 0xC0);
    row("SELECTARG1", 0x60, 0x80, 0xC0);
    row("SELECTARG2", 0x80, 0x40, 0x20);
    row("ADD", 0xE0, 0xC0, 0xE0);
    row("ADDSIGNED", 0x60, 0x40, 0x60);
    row("ADDSIGNED2X", 0xC0, 0x80, 0xC0);
    row("SUBTRACT", 0x00, 0x40, 0xA0);
    row("ADDSMOOTH", 0xB0, 0xA0, 0xC8);
    row("BLENDTEXTUREALPHA", 0x60, 0x80, 0xC0);
    row("BLENDFACTORALPHA", 0x78, 0x50, 0x48);
    row("MODULATEALPHA_ADDCOLOR", 0xE0, 0xC0, 0xE0);
    row("MODULATEINVALPHA_ADDCOLOR", 0x60, 0x80, 0xC0);
    row("MODULATE / REPLACE", 0x30, 0x20, 0x18);
    row("", 0x30, 0x20, 0x18);
}

void tst_TexturePicture::modesJoinTwoTextures()
{
    QFETCH(QByteArray, mode);
    QFETCH(QColor, expected);
    CoreScene scene(squareWith("texture DEF M MultiTexture { alpha 0.25 texture [ " + pixel("804020") +
                               pixel("6080C0") + " ] }")
                        .c_str());
    scene.set("M", "mode", QByteArray("\"REPLACE\" \"" + mode + "\"").constData());
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_TexturePicture::unknownModeIsReported()
{
    CoreScene scene(squareWith("texture DEF M MultiTexture { texture [ " + pixel("804020") + " ] }").c_str());
    scene.set("M", "mode", "\"SHINE\"");
    scene.set("M", "source", "\"NOWHERE\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x80, 0x40, 0x20));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_TexturePicture::factorAndFunctionCount()
{
    CoreScene scene(
        squareWith("texture DEF M MultiTexture { color 1 0.5 0 texture [ " + pixel("FF8040") + " ] }")
            .c_str());
    scene.set("M", "source", "\"FACTOR\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x40, 0x00));
    scene.set("M", "function", "\"COMPLEMENT\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xBF, 0xFF));
    scene.set("M", "function", "\"ALPHAREPLICATE\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0xFF, 0xFF));
    scene.set("M", "color", "0 1 0");
    scene.set("M", "function", "\"\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0x80, 0x00));
}

void tst_TexturePicture::stageThatIsOffIsLeftOut()
{
    CoreScene scene(squareWith("texture DEF M MultiTexture { texture [ " + pixel("FF0000") + pixel("00FF00") +
                               pixel("0000FF") + " ] }")
                        .c_str());
    scene.set("M", "mode", "\"REPLACE\" \"OFF\" \"ADD\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0xFF));
}

void tst_TexturePicture::tooManyTexturesAreReported()
{
    std::string list;
    for (int i = 0; i < 20; ++i)
        list += pixel("FFFFFF");
    CoreScene scene(squareWith("texture MultiTexture { texture [ " + list + " ] }").c_str());
    QCOMPARE(scene.messageCount(), std::size_t(1));
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0xFF, 0xFF));
}

void tst_TexturePicture::texturesTakeTheirSets()
{
    CoreScene scene(squareWith("texture DEF M MultiTexture { texture [ " + Halves + Halves + " ] }",
                               "texCoord MultiTextureCoordinate { texCoord [ " + everywhere("0.25 0.5") +
                                   everywhere("0.75 0.5") + " ] }")
                        .c_str());
    scene.set("M", "mode", "\"REPLACE\" \"ADD\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0xFF, 0x00));
}

void tst_TexturePicture::setsAreFoundByTheirNames()
{
    const auto named = [](const char* place, const char* name) {
        return "TextureCoordinate { mapping " + std::string(name) + " point [ " + place + ", " + place +
               ", " + place + ", " + place + " ] } ";
    };
    CoreScene scene(
        squareWith("material DEF M UnlitMaterial { emissiveTextureMapping right emissiveTexture " + Halves +
                       " }",
                   "texCoord MultiTextureCoordinate { texCoord [ " + named("0.25 0.5", "left") +
                       named("0.75 0.5", "right") + " ] }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0x00));
    scene.set("M", "emissiveTextureMapping", "left");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
    scene.set("M", "emissiveTextureMapping", "nowhere");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
}

void tst_TexturePicture::transformsMoveTheirTextures()
{
    CoreScene scene(squareWith("texture DEF M MultiTexture { texture [ " + Halves + Halves +
                                   " ] } textureTransform MultiTextureTransform { textureTransform [ "
                                   "TextureTransform { } DEF T TextureTransform { translation 0.5 0 } ] }",
                               "texCoord " + everywhere("0.25 0.5"))
                        .c_str());
    scene.set("M", "mode", "\"REPLACE\" \"ADD\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0xFF, 0x00));
    scene.set("T", "translation", "0 0");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
}

void tst_TexturePicture::coordinatesAreMade_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QByteArray>("normal");
    QTest::addColumn<QColor>("expected");
    const QColor left(0xFF, 0x00, 0x00);
    const QColor right(0x00, 0xFF, 0x00);
    QTest::newRow("sphere, left") << QByteArray("SPHERE") << QByteArray("-0.6 0 0.8") << left;
    QTest::newRow("sphere, right") << QByteArray("SPHERE") << QByteArray("0.6 0 0.8") << right;
    QTest::newRow("sphere of the shape, left")
        << QByteArray("SPHERE-LOCAL") << QByteArray("-0.6 0 0.8") << left;
    QTest::newRow("sphere of the shape, right")
        << QByteArray("SPHERE-LOCAL") << QByteArray("0.6 0 0.8") << right;
    // Below 0.5 in each whole number, which repeats.
    QTest::newRow("normal") << QByteArray("CAMERASPACENORMAL") << QByteArray("0.6 0 0.8") << right;
    QTest::newRow("reflection") << QByteArray("CAMERASPACEREFLECTIONVECTOR") << QByteArray("0.1 0 0.99499")
                                << left;
    QTest::newRow("mirroring sphere") << QByteArray("SPHERE-REFLECT") << QByteArray("0.6 0 0.8") << right;
}

void tst_TexturePicture::coordinatesAreMade()
{
    QFETCH(QByteArray, mode);
    QFETCH(QByteArray, normal);
    QFETCH(QColor, expected);
    CoreScene scene(squareWith("texture " + Halves,
                               "texCoord DEF T TextureCoordinateGenerator { } " + normals(normal.constData()))
                        .c_str());
    scene.set("T", "mode", mode.constData());
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_TexturePicture::coordinatesOfTheMeshAreMade()
{
    CoreScene scene(
        ("DEF P Transform { children " +
         squareWith("texture " + Halves, "texCoord DEF T TextureCoordinateGenerator { mode COORD }") + " }")
            .c_str());
    QImage image = _drawing->draw(scene);
    COMPARE_DRAWN(SceneDrawing::at(image, 0.25, 0), QColor(0xFF, 0x00, 0x00));
    COMPARE_DRAWN(SceneDrawing::at(image, 0.75, 0), QColor(0x00, 0xFF, 0x00));
    // The place in the shape counts, not that in the picture, unless the camera is asked for.
    scene.set("P", "translation", "0.5 0 0");
    COMPARE_DRAWN(_drawing->at(scene, 0.75, 0), QColor(0xFF, 0x00, 0x00));
    scene.set("T", "mode", "CAMERASPACEPOSITION");
    COMPARE_DRAWN(_drawing->at(scene, 0.75, 0), QColor(0x00, 0xFF, 0x00));
}

void tst_TexturePicture::unknownGeneratorIsReported()
{
    CoreScene scene(
        squareWith("texture " + Halves,
                   "texCoord DEF T TextureCoordinateGenerator { mode NOISE } " + normals("0.6 0 0.8"))
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0x00));
    scene.set("T", "mode", "MAGIC");
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_TexturePicture::setsFollowTheirNodes()
{
    CoreScene scene(
        squareWith("texture " + Halves, "texCoord DEF C MultiTextureCoordinate { texCoord [ DEF T " +
                                            everywhere("0.25 0.5") + " ] }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
    scene.set("T", "point", "0.75 0.5, 0.75 0.5, 0.75 0.5, 0.75 0.5");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0x00));
    scene.set("C", "texCoord", "");
    QVERIFY(!_drawing->draw(scene).isNull());
}

void tst_TexturePicture::shortSetsAreHarmless()
{
    CoreScene scene(
        squareWith("texture MultiTexture { texture [ " + Halves + Halves + " ] }",
                   "texCoord MultiTextureCoordinate { texCoord [ TextureCoordinate { point [ 0 0 ] } "
                   "TextureCoordinate { } TextureCoordinate3D { point [ 1 2 3, 4 5 6, 7 8 9, 0 0 0, "
                   "1 1 1 ] } TextureCoordinate4D { point [ 1 2 3 4, 1 2 3 4 ] } ] }")
            .c_str());
    const osg::GeometryPtr geometry = geometryOf(scene);
    const osg::UInt32 count = geometry->getPositions()->getSize();
    QCOMPARE(geometry->getTexCoords(0)->getSize(), count);
    QVERIFY(!geometry->getTexCoords(1));
    QCOMPARE(geometry->getTexCoords(2)->getDimension(), 3U);
    QCOMPARE(geometry->getTexCoords(2)->getSize(), count);
    QVERIFY(geometry->getTexCoords(2)->getValue4(1) == osg::Vec4f(4, 5, 6, 1));
    QVERIFY(geometry->getTexCoords(3)->getValue4(0) == osg::Vec4f(1, 2, 3, 4));
    QVERIFY(geometry->getTexCoords(3)->getValue4(3) == osg::Vec4f(0, 0, 0, 0));
    QVERIFY(!_drawing->draw(scene).isNull());
}

void tst_TexturePicture::cubeShowsWhatANormalLeadsTo()
{
    const struct
    {
        const char* normal;
        QColor color;
    } cases[] = {{"1 0 0.1", QColor(0xFF, 0x00, 0x00)},
                 {"-1 0 0.1", QColor(0x00, 0xFF, 0x00)},
                 {"0 1 0.1", QColor(0x00, 0x00, 0xFF)},
                 {"0 -1 0.1", QColor(0xFF, 0xFF, 0x00)},
                 {"0 0 1", QColor(0x00, 0xFF, 0xFF)}};
    for (const auto& side : cases) {
        CoreScene scene(squareWith("texture ComposedCubeMapTexture { rightTexture " + pixel("FF0000") +
                                       "leftTexture " + pixel("00FF00") + "topTexture " + pixel("0000FF") +
                                       "bottomTexture " + pixel("FFFF00") + "backTexture " + pixel("00FFFF") +
                                       "frontTexture " + pixel("FF00FF") + "}",
                                   "texCoord TextureCoordinateGenerator { mode CAMERASPACENORMAL } " +
                                       normals(side.normal))
                            .c_str());
        COMPARE_DRAWN(_drawing->middleOf(scene), side.color);
        QCOMPARE(scene.messageCount(), std::size_t(0));
    }
}

void tst_TexturePicture::cubeFollowsItsSides()
{
    CoreScene scene(
        squareWith("texture DEF C ComposedCubeMapTexture { backTexture DEF B " + pixel("00FFFF") + "}",
                   "texCoord TextureCoordinateGenerator { mode CAMERASPACENORMAL }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0xFF));
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("B", "image", "1 1 3 0x804020");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x80, 0x40, 0x20));
    scene.set("C", "backTexture", "NULL");
    QVERIFY(!textureOf(scene));
}

void tst_TexturePicture::sidesStandAsOpenGLWantsThem()
{
    const auto image = [] {
        const osg::UInt8 pixels[] = {1, 2, 3, 4};
        const osg::ImagePtr made = osg::Image::create();
        made->set(osg::Image::OSG_L_PF, 2, 2, 1, 1, 1, 0, pixels);
        return made;
    };
    CubeSides sides;
    sides[0] = image();
    sides[2] = image();
    const osg::RefPtr<osg::ImagePtr> cube(cubeImage(sides));
    QCOMPARE(cube->getSideCount(), 6);
    const auto value = [&cube](osg::UInt32 side, int i) { return int(cube->getData(0, 0, side)[3 * i]); };
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(value(0, i), 4 - i);
        QCOMPARE(value(1, i), 0);
        QCOMPARE(value(2, i), i + 1);
    }
}

void tst_TexturePicture::propertiesReachTheTexture()
{
    CoreScene scene(squareWith("texture DEF T PixelTexture { image 1 1 3 0xFFFFFF textureProperties DEF P "
                               "TextureProperties { boundaryModeS CLAMP boundaryModeT MIRRORED_REPEAT "
                               "anisotropicDegree 4 borderColor 1 0.5 0 1 magnificationFilter AVG_PIXEL "
                               "minificationFilter AVG_PIXEL_AVG_MIPMAP generateMipMaps TRUE } }")
                        .c_str());
    QCOMPARE(textureOf(scene)->getWrapS(), osg::UInt32(osg::TextureChunk::CLAMP));
    QCOMPARE(textureOf(scene)->getWrapT(), osg::UInt32(osg::TextureChunk::MIRRORED_REPEAT));
    QCOMPARE(textureOf(scene)->getAnisotropy(), 4.0F);
    QCOMPARE(textureOf(scene)->getBorderColor(), osg::Color4f(1, 0.5F, 0, 1));
    QCOMPARE(textureOf(scene)->getMagFilter(), osg::UInt32(osg::TextureChunk::LINEAR));
    QCOMPARE(textureOf(scene)->getMinFilter(), osg::UInt32(osg::TextureChunk::LINEAR_MIPMAP_LINEAR));
    scene.set("P", "minificationFilter", "NEAREST_PIXEL");
    QCOMPARE(textureOf(scene)->getMinFilter(), osg::UInt32(osg::TextureChunk::NEAREST));
    scene.set("P", "boundaryModeT", "CLAMP_TO_EDGE");
    QCOMPARE(textureOf(scene)->getWrapT(), osg::UInt32(osg::TextureChunk::CLAMP_TO_EDGE));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_TexturePicture::badPropertiesAreHarmless()
{
    CoreScene scene(squareWith("texture PixelTexture { image 1 1 3 0xFFFFFF textureProperties DEF P "
                               "TextureProperties { boundaryModeS ROUND minificationFilter BEST } }")
                        .c_str());
    scene.set("P", "anisotropicDegree", "nan");
    scene.set("P", "borderColor", "nan 7 -3 inf");
    QCOMPARE(textureOf(scene)->getAnisotropy(), 1.0F);
    QCOMPARE(textureOf(scene)->getBorderColor(), osg::Color4f(0, 1, 0, 0));
    QCOMPARE(textureOf(scene)->getWrapS(), osg::UInt32(osg::TextureChunk::REPEAT));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_TexturePicture::colorsThatAreNoneAreHarmless()
{
    const std::size_t before = surfaceCount();
    {
        const std::string appearance =
            "material Material { } fillProperties DEF F FillProperties { hatchColor 0 1 0 } texture "
            "DEF M MultiTexture { mode BLENDFACTORALPHA texture PixelTexture { image 1 1 3 0xFFFFFF } }";
        CoreScene scene((squareWith(appearance) + " Shape { appearance USE A geometry USE G }").c_str());
        // A number that is none equals not even itself: shapes of one look would no longer share it.
        const std::size_t shared = surfaceCount();
        scene.set("F", "hatchColor", "nan 1 inf");
        QCOMPARE(surfaceCount(), shared);
        scene.set("M", "color", "nan nan nan");
        QCOMPARE(surfaceCount(), shared);
        scene.set("M", "alpha", "nan");
        QCOMPARE(surfaceCount(), shared);
        _drawing->draw(scene);
        scene.set("M", "color", "inf 0 1");
        QCOMPARE(surfaceCount(), shared);
        _drawing->draw(scene);
    }
    QCOMPARE(surfaceCount(), before);
}

void tst_TexturePicture::movieShowsItsPictures()
{
    CoreScene scene(
        squareWith("texture MovieTexture { url \"data:image/x-portable-pixmap,P3 1 1 255 255 128 0 \" }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x80, 0x00));
    const QByteArray film = mediafiles::dataAddress(mediafiles::gif(2, 50));
    CoreScene moving(
        squareWith("texture MovieTexture { startTime 1000 url \"" + film.toStdString() + "\" }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(moving), QColor(0xFF, 0x00, 0x00));
    moving.runTo(0.75);
    COMPARE_DRAWN(_drawing->middleOf(moving), QColor(0x00, 0xFF, 0x00));
}

void tst_TexturePicture::emissionTextureShines()
{
    CoreScene scene(
        squareWith("material DEF M Material { diffuseColor 0 0 0 ambientIntensity 0 emissiveColor 1 0.5 0 "
                   "emissiveTexture " +
                   pixel("80FFFF") + " }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0x80, 0x00));
    scene.set("M", "diffuseColor", "0 0 1");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x80, 0x80, 0xFF));
}

void tst_TexturePicture::maskCutsHoles()
{
    CoreScene scene(squareWith("alphaMode MASK alphaCutoff 0.4 texture PixelTexture { image 2 1 4 0xFF000080 "
                               "0x00FF0040 }",
                               "texCoord DEF T " + everywhere("0.25 0.5"))
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
    scene.set("T", "point", "0.75 0.5, 0.75 0.5, 0.75 0.5, 0.75 0.5");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0x00, 0x00));
    scene.set("A", "alphaCutoff", "0.1");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0x00));
}

void tst_TexturePicture::opaqueHasNoHoles()
{
    CoreScene scene(squareWith("alphaMode OPAQUE texture PixelTexture { image 1 1 4 0xFF000000 }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
    scene.set("A", "alphaMode", "AUTO");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0x00, 0x00));
}

void tst_TexturePicture::hatchLiesOverTheFace()
{
    CoreScene scene(
        squareWith("material UnlitMaterial { emissiveColor 0 0 1 } fillProperties DEF F FillProperties { "
                   "hatchStyle 2 hatchColor 1 1 0 }")
            .c_str());
    const auto count = [this, &scene](const QColor& color) {
        const QImage image = _drawing->draw(scene);
        int result = 0;
        for (int x = 84; x < 116; ++x)
            result += SceneDrawing::isNear(image.pixelColor(x, 100), color) ? 1 : 0;
        return result;
    };
    QCOMPARE(count(QColor(0xFF, 0xFF, 0x00)), 4);
    QCOMPARE(count(QColor(0x00, 0x00, 0xFF)), 28);
    scene.set("F", "filled", "FALSE");
    QCOMPARE(count(QColor(0xFF, 0xFF, 0x00)), 4);
    QCOMPARE(count(QColor(0x00, 0x00, 0x00)), 28);
    scene.set("F", "hatched", "FALSE");
    QCOMPARE(count(QColor(0x00, 0x00, 0x00)), 32);
}

void tst_TexturePicture::facesThatAreNotFilledAreNotSeen()
{
    CoreScene scene(squareWith("fillProperties DEF F FillProperties { filled FALSE hatched FALSE }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0x00, 0x00));
    scene.set("F", "filled", "TRUE");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0xFF, 0xFF));
}

void tst_TexturePicture::backHasItsColor_data()
{
    QTest::addColumn<QByteArray>("materials");
    QTest::newRow("lit") << QByteArray("material Material { diffuseColor 1 0 0 } "
                                       "backMaterial Material { diffuseColor 0 1 0 }");
    QTest::newRow("unlit") << QByteArray("material UnlitMaterial { emissiveColor 1 0 0 } "
                                         "backMaterial UnlitMaterial { emissiveColor 0 1 0 }");
}

void tst_TexturePicture::backHasItsColor()
{
    QFETCH(QByteArray, materials);
    CoreScene scene(("DEF P Transform { children " + squareWith(materials.toStdString()) + " }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0xFF, 0x00, 0x00));
    scene.set("P", "rotation", "0 1 0 3.14159265");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x00, 0xFF, 0x00));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

QTEST_MAIN(tst_TexturePicture)
#include "tst_TexturePicture.moc"
