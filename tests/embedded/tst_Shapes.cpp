#include "CoreScene.h"
#include "core/ShapeProc.h"
#include "core/Surface.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

namespace {

osg::ChunkMaterialPtr materialOf(CoreScene& scene, const char* shape)
{
    const auto group = osg::MaterialGroupPtr::dcast(scene.procOf<ShapeProc>(shape).tree()->getCore());
    return osg::ChunkMaterialPtr::dcast(group->getMaterial());
}

osg::MaterialChunkPtr colorsOf(CoreScene& scene, const char* shape)
{
    return osg::MaterialChunkPtr::dcast(materialOf(scene, shape)->findChunk(osg::StateChunk::MATERIAL));
}

osg::TextureChunkPtr textureOf(CoreScene& scene, const char* shape)
{
    return osg::TextureChunkPtr::dcast(materialOf(scene, shape)->findChunk(osg::StateChunk::TEXTURE));
}

osg::GeometryPtr geometryOf(CoreScene& scene, const char* shape)
{
    const osg::NodePtr tree = scene.procOf<ShapeProc>(shape).tree();
    return tree->getNChildren() > 0 ? osg::GeometryPtr::dcast(tree->getChild(0)->getCore())
                                    : osg::GeometryPtr();
}

QByteArray pixels(const char* channels)
{
    return QByteArray("Shape { geometry Box { } appearance Appearance { material DEF M Material { "
                      "diffuseColor 0.5 0.25 0 transparency 0.5 } texture PixelTexture { image 1 1 ") +
           channels + " } } }";
}

} // namespace

class tst_Shapes : public QObject
{
    Q_OBJECT

private slots:
    void withoutMaterialIsUnlitWhite_data();
    void withoutMaterialIsUnlitWhite();
    void materialColorsAreThoseOfX3D();
    void materialEditReachesTheSurface();
    void badMaterialIsHarmless();
    void unlitMaterialShowsItsEmission();
    void solidFacesAreCulled();
    void equalSolidsShareTheirGeometry();
    void equalMaterialsShareTheirState();
    void editOfOneLeavesTheOtherAlone();
    void solidWithoutAcceptableSizeIsReported();
    void solidEditIsShown();
    void shapeWithoutGeometryShowsNothing();
    void geometryCanBeExchanged();
    void channelsOfATexture_data();
    void channelsOfATexture();
    void repeatFlagsReachTheTexture();
    void textureTransformFollowsItsFormula();
    void missingImageIsReportedOnce();
    void imageBesideTheSceneIsRead();
    void fileThatIsNoImageIsReported();
    void secondAddressIsTried();
    void imageInADataAddress();
    void vertexColorsStandForTheDiffuseColor();
    void linesShowTheEmission();
};

void tst_Shapes::withoutMaterialIsUnlitWhite_data()
{
    QTest::addColumn<QByteArray>("appearance");
    QTest::newRow("no appearance") << QByteArray();
    QTest::newRow("empty appearance") << QByteArray("appearance Appearance { }");
}

void tst_Shapes::withoutMaterialIsUnlitWhite()
{
    QFETCH(QByteArray, appearance);
    CoreScene scene(("DEF S Shape { " + appearance + " geometry Box { } }").constData());
    QVERIFY(!colorsOf(scene, "S")->getLit());
    QCOMPARE(colorsOf(scene, "S")->getDiffuse(), osg::Color4f(1, 1, 1, 1));
}

void tst_Shapes::materialColorsAreThoseOfX3D()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { material Material { "
                    "diffuseColor 1 0.5 0 ambientIntensity 0.5 specularColor 0 1 0 emissiveColor 0 0 1 "
                    "shininess 0.5 transparency 0.25 } } }");
    const osg::MaterialChunkPtr colors = colorsOf(scene, "S");
    QVERIFY(colors->getLit());
    QCOMPARE(colors->getDiffuse(), osg::Color4f(1, 0.5F, 0, 0.75F));
    QCOMPARE(colors->getAmbient(), osg::Color4f(0.5F, 0.25F, 0, 0.75F));
    QCOMPARE(colors->getSpecular().green(), 1.0F);
    QCOMPARE(colors->getEmission().blue(), 1.0F);
    QCOMPARE(colors->getShininess(), 64.0F);
    QVERIFY(materialOf(scene, "S")->isTransparent());
}

void tst_Shapes::materialEditReachesTheSurface()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { material DEF M Material { } } }");
    scene.set("M", "diffuseColor", "1 0 0");
    QCOMPARE(colorsOf(scene, "S")->getDiffuse(), osg::Color4f(1, 0, 0, 1));
    QVERIFY(!materialOf(scene, "S")->isTransparent());
    scene.set("M", "transparency", "0.5");
    QVERIFY(materialOf(scene, "S")->isTransparent());
}

void tst_Shapes::badMaterialIsHarmless()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { material Material { "
                    "transparency 7 shininess -1 ambientIntensity 1e38 } } }");
    QCOMPARE(colorsOf(scene, "S")->getDiffuse().alpha(), 0.0F);
    QCOMPARE(colorsOf(scene, "S")->getShininess(), 0.0F);
}

void tst_Shapes::unlitMaterialShowsItsEmission()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { material UnlitMaterial { "
                    "emissiveColor 0 1 0 } } }");
    QVERIFY(!colorsOf(scene, "S")->getLit());
    QCOMPARE(colorsOf(scene, "S")->getDiffuse(), osg::Color4f(0, 1, 0, 1));
}

void tst_Shapes::solidFacesAreCulled()
{
    CoreScene scene("DEF S Shape { geometry Box { } } DEF T Shape { geometry Box { solid FALSE } }");
    const auto chunk =
        osg::PolygonChunkPtr::dcast(materialOf(scene, "S")->findChunk(osg::StateChunk::POLYGON));
    QCOMPARE(chunk->getCullFace(), osg::UInt32(osg::PolygonChunk::CULL_BACK));
    QVERIFY(materialOf(scene, "T")->findChunk(osg::StateChunk::POLYGON) == osg::NullFC);
}

void tst_Shapes::equalSolidsShareTheirGeometry()
{
    CoreScene scene("DEF A Shape { geometry Box { } } DEF B Shape { geometry Box { solid FALSE } }"
                    "DEF C Shape { geometry Box { size 1 2 3 } } DEF D Shape { geometry Sphere { } }");
    QVERIFY(geometryOf(scene, "A") == geometryOf(scene, "B"));
    QVERIFY(geometryOf(scene, "A") != geometryOf(scene, "C"));
    QVERIFY(geometryOf(scene, "A") != geometryOf(scene, "D"));
}

void tst_Shapes::equalMaterialsShareTheirState()
{
    const std::size_t before = surfaceCount();
    {
        CoreScene scene(
            "DEF A Shape { geometry Box { } appearance Appearance { material Material { } } }"
            "DEF B Shape { geometry Sphere { } appearance Appearance { material Material { } } }"
            "Shape { geometry Box { } appearance Appearance { material Material { shininess 1 } } }");
        QVERIFY(materialOf(scene, "A") == materialOf(scene, "B"));
        QCOMPARE(surfaceCount() - before, std::size_t(2));
    }
    QCOMPARE(surfaceCount(), before);
}

void tst_Shapes::editOfOneLeavesTheOtherAlone()
{
    CoreScene scene("DEF A Shape { geometry Box { } appearance Appearance { material DEF M Material { } } }"
                    "DEF B Shape { geometry DEF G Box { } appearance Appearance { material Material { } } }");
    scene.set("M", "diffuseColor", "1 0 0");
    QCOMPARE(colorsOf(scene, "B")->getDiffuse(), osg::Color4f(0.8F, 0.8F, 0.8F, 1));
    scene.set("G", "size", "4 4 4");
    QCOMPARE(geometryOf(scene, "A")->getBox().getMax(), osg::Pnt3f(1, 1, 1));
    QCOMPARE(geometryOf(scene, "B")->getBox().getMax(), osg::Pnt3f(2, 2, 2));
}

void tst_Shapes::solidWithoutAcceptableSizeIsReported()
{
    CoreScene scene("DEF A Shape { geometry Sphere { radius -1 } }");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(geometryOf(scene, "A")->getBox().getMax(), osg::Pnt3f(0, 0, 0));
}

void tst_Shapes::solidEditIsShown()
{
    CoreScene scene("DEF A Shape { geometry DEF C Cylinder { } }");
    scene.set("C", "radius", "3");
    QCOMPARE(geometryOf(scene, "A")->getBox().getMax(), osg::Pnt3f(3, 1, 3));
    scene.set("C", "side", "FALSE");
    scene.set("C", "top", "FALSE");
    QCOMPARE(geometryOf(scene, "A")->getBox().getMax(), osg::Pnt3f(3, -1, 3));
}

void tst_Shapes::shapeWithoutGeometryShowsNothing()
{
    CoreScene scene("DEF S Shape { } DEF T Shape { geometry IndexedFaceSet { } }");
    QVERIFY(!geometryOf(scene, "S"));
    QVERIFY(scene.proc().root()->getVolume(true).isEmpty());
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Shapes::geometryCanBeExchanged()
{
    CoreScene scene(
        "DEF S Shape { geometry Box { } } Switch { children Shape { geometry DEF N Sphere { } } }");
    auto& geometry = static_cast<SFNode&>(scene.field("S", "geometry"));
    geometry.setNode(0.0, &scene.node("N"), Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(geometryOf(scene, "S")->getPositions()->getSize() > 100);
    geometry.setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(!geometryOf(scene, "S"));
}

void tst_Shapes::channelsOfATexture_data()
{
    QTest::addColumn<QByteArray>("image");
    QTest::addColumn<float>("red");
    QTest::addColumn<float>("alpha");
    QTest::newRow("grey takes part") << QByteArray("1 0x80") << 0.5F << 0.5F;
    QTest::newRow("grey and alpha") << QByteArray("2 0x8040") << 0.5F << 1.0F;
    QTest::newRow("colour is the colour") << QByteArray("3 0xFF0000") << 1.0F << 0.5F;
    QTest::newRow("colour and alpha") << QByteArray("4 0xFF000040") << 1.0F << 1.0F;
}

void tst_Shapes::channelsOfATexture()
{
    QFETCH(QByteArray, image);
    QFETCH(float, red);
    QFETCH(float, alpha);
    constexpr unsigned int BeforeX3D4 = 33;
    CoreScene scene(("DEF S " + pixels(image.constData())).constData(), BeforeX3D4);
    QVERIFY(textureOf(scene, "S") != osg::NullFC);
    QCOMPARE(colorsOf(scene, "S")->getDiffuse().red(), red);
    QCOMPARE(colorsOf(scene, "S")->getDiffuse().alpha(), alpha);
}

void tst_Shapes::repeatFlagsReachTheTexture()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { texture PixelTexture { "
                    "image 1 1 3 0xFF0000 repeatS FALSE } } }");
    QCOMPARE(textureOf(scene, "S")->getWrapS(), osg::UInt32(osg::TextureChunk::CLAMP_TO_EDGE));
    QCOMPARE(textureOf(scene, "S")->getWrapT(), osg::UInt32(osg::TextureChunk::REPEAT));
}

void tst_Shapes::textureTransformFollowsItsFormula()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { texture PixelTexture { "
                    "image 1 1 1 0 } textureTransform DEF T TextureTransform { translation 1 0 scale 2 3 "
                    "center 0.5 0.5 rotation 1.5707963 } } }");
    const auto chunk = osg::TextureTransformChunkPtr::dcast(
        materialOf(scene, "S")->findChunk(osg::StateChunk::TEXTURE_TRANSFORM));
    // (0, 0) moves to (1, 0), from the centre to (1.5, 0.5), turns to (-0.5, 1.5), grows to (-1, 4.5), and
    // goes back by the centre.
    osg::Pnt3f result;
    chunk->getMatrix().multMatrixPnt(osg::Pnt3f(0, 0, 0), result);
    QVERIFY(result.dist(osg::Pnt3f(-1.5F, 4, 0)) < 1e-5F);
}

void tst_Shapes::missingImageIsReportedOnce()
{
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { texture DEF T ImageTexture { "
                    "url [ \"none-a.png\" \"none-b.png\" ] } } } DEF G Group { }");
    QVERIFY(textureOf(scene, "S") == osg::NullFC);
    QCOMPARE(scene.messageCount(), std::size_t(0)); // that is the loader's
    scene.set("T", "url", "\"none-c.png\"");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("T", "url", "\"none-d.png\"");
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Shapes::imageBesideTheSceneIsRead()
{
    QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("r\u00e9d.png")).toStdString();
    const osg::ImagePtr image = osg::Image::create();
    const osg::UInt8 red[] = {255, 0, 0};
    image->set(osg::Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0.0, red);
    QVERIFY(image->write(path.c_str()));
    osg::subRefCP(image);

    CoreScene scene(
        "DEF A Shape { geometry Box { } appearance Appearance { texture DEF S ImageTexture { } } }"
        "DEF B Shape { geometry Sphere { } appearance Appearance { texture DEF R ImageTexture { } } }");
    NodeNameSpace* const names = createNameSpace(
        *scene.context, scene.root()->nameSpace(), "other file", &scene.node("A"),
        Relayne::URL::fromLocalFile(folder.filePath(QStringLiteral("scene.x3dv")).toStdString()));
    Field& first = scene.field("S", "url");
    Field& second = scene.field("R", "url");
    setName(*first.node(), names, "S");
    setName(*second.node(), names, "R");
    first.setValueByStr(0.0, "\"r\xE9"
                             "d.png\"");
    second.setValueByStr(0.0, "\"./r\xE9"
                              "d.png\"");
    scene.context->runFrame();
    QVERIFY(textureOf(scene, "A") != osg::NullFC);
    QCOMPARE(textureOf(scene, "A")->getImage()->getData()[0], osg::UInt8(255));
    QVERIFY(textureOf(scene, "A") == textureOf(scene, "B")); // one file, one texture
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Shapes::fileThatIsNoImageIsReported()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("not.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("nothing of the kind");
    file.close();
    CoreScene scene(("DEF S Shape { geometry Box { } appearance Appearance { texture ImageTexture { url \"" +
                     file.fileName().toStdString() + "\" } } }")
                        .c_str());
    QVERIFY(textureOf(scene, "S") == osg::NullFC);
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Shapes::secondAddressIsTried()
{
    QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("blue.png")).toStdString();
    const osg::ImagePtr image = osg::Image::create();
    const osg::UInt8 blue[] = {0, 0, 255};
    image->set(osg::Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0.0, blue);
    QVERIFY(image->write(path.c_str()));
    osg::subRefCP(image);
    CoreScene scene(("DEF S Shape { geometry Box { } appearance Appearance { texture ImageTexture { url [ "
                     "\"no such file.png\" \"http://nowhere.example/a.png\" \"" +
                     path + "\" ] } } }")
                        .c_str());
    QVERIFY(textureOf(scene, "S") != osg::NullFC);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Shapes::imageInADataAddress()
{
    // A PNG of one grey pixel.
    CoreScene scene("DEF S Shape { geometry Box { } appearance Appearance { texture ImageTexture { url "
                    "\"data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAAAAAA6fptVAAAACklEQVR4nGNgAAAA"
                    "AgABSK+kcQAAAABJRU5ErkJggg==\" } } }"
                    "DEF T Shape { geometry Box { } appearance Appearance { texture ImageTexture { url "
                    "\"data:image/png;base64,not really\" } } }");
    QVERIFY(textureOf(scene, "S") != osg::NullFC);
    QCOMPARE(textureOf(scene, "S")->getImage()->getWidth(), 1);
    QVERIFY(textureOf(scene, "T") == osg::NullFC);
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Shapes::vertexColorsStandForTheDiffuseColor()
{
    CoreScene scene("DEF S Shape { appearance Appearance { material Material { } } geometry IndexedFaceSet { "
                    "coordIndex [ 0 1 2 ] coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0 ] } "
                    "color Color { color [ 1 0 0, 0 1 0, 0 0 1 ] } } } DEF B Shape { geometry Box { } }");
    QCOMPARE(colorsOf(scene, "S")->getColorMaterial(), osg::UInt32(osg::MaterialChunk::DIFFUSE_COLOR));
    QCOMPARE(geometryOf(scene, "S")->getColors()->getSize(), 3U);
    QCOMPARE(colorsOf(scene, "B")->getColorMaterial(), osg::UInt32(osg::MaterialChunk::NO_COLOR_MATERIAL));
}

void tst_Shapes::linesShowTheEmission()
{
    CoreScene scene(
        "DEF S Shape { appearance Appearance { material Material { emissiveColor 1 0 0 } } "
        "geometry IndexedLineSet { coordIndex [ 0 1 ] coord Coordinate { point [ 0 0 0, 1 0 0 ] } } }"
        "DEF P Shape { geometry PointSet { coord Coordinate { point [ 0 0 0, 1 0 0 ] } } }");
    QVERIFY(!colorsOf(scene, "S")->getLit());
    QCOMPARE(colorsOf(scene, "S")->getDiffuse(), osg::Color4f(1, 0, 0, 1));
    QCOMPARE(geometryOf(scene, "S")->getTypes()->getValue(0), osg::UInt8(osg::Geometry::LINES));
    QCOMPARE(geometryOf(scene, "P")->getTypes()->getValue(0), osg::UInt8(osg::Geometry::POINTS));
    QCOMPARE(geometryOf(scene, "P")->getPositions()->getSize(), 2U);
}

QTEST_GUILESS_MAIN(tst_Shapes)
#include "tst_Shapes.moc"
