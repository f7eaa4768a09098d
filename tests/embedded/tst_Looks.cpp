#include "CoreScene.h"
#include "core/HatchPattern.h"
#include "core/ShapeProc.h"
#include "core/Surface.h"
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPointChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>
#include <QtTest>

using namespace Orvane;

namespace {

osg::ChunkMaterialPtr materialOf(const osg::NodePtr& node)
{
    return osg::ChunkMaterialPtr::dcast(osg::MaterialGroupPtr::dcast(node->getCore())->getMaterial());
}

template <class Chunk>
typename Chunk::Ptr chunkOf(CoreScene& scene, osg::StateChunk::ChunkClass kind, osg::UInt32 slot = 0)
{
    return Chunk::Ptr::dcast(materialOf(scene.procOf<ShapeProc>("S").tree())->findChunk(kind, slot));
}

osg::MaterialChunkPtr colorsOf(CoreScene& scene)
{
    return chunkOf<osg::MaterialChunk>(scene, osg::StateChunk::MATERIAL);
}

/// A box with an appearance, as shape S.
QByteArray box(const QByteArray& appearance)
{
    return "DEF S Shape { geometry Box { } appearance DEF A Appearance { " + appearance + " } }";
}

const char Pixel[] = "PixelTexture { image 1 1 3 0xFFFFFF }";

} // namespace

/// What materials and properties of lines, points and faces come to.
class tst_Looks : public QObject
{
    Q_OBJECT

private slots:
    void physicalMaterialBecomesLightAndHighlight();
    void physicalMaterialFollowsItsFields();
    void badPhysicalMaterialIsHarmless();
    void twoSidedMaterialHasABack();
    void backMaterialIsThatOfTheBack();
    void backMaterialOfAnotherKindIsReported();
    void alphaMode_data();
    void alphaMode();
    void unknownAlphaModeIsReported();
    void colorTextureIsMultiplied();
    void emissionTextureAddsLight();
    void editOfAMaterialsTextureIsFollowed();
    void transformsFindTheirTextures();
    void linePropertiesReachTheLines();
    void pointPropertiesReachThePoints();
    void hatchIsDrawnOverTheFaces();
    void facesThatAreNotFilledAreNotDrawn();
    void hatchPatternsHaveTheirLines();
};

void tst_Looks::physicalMaterialBecomesLightAndHighlight()
{
    CoreScene scene(box("material DEF M PhysicalMaterial { baseColor 1 0.5 0 metallic 0 roughness 1 }"));
    QVERIFY(colorsOf(scene)->getLit());
    constexpr float Share = 0.31831F; // of the light that a matt surface throws to one side
    QVERIFY(qAbs(colorsOf(scene)->getDiffuse().red() - Share) < 1e-4F);
    QVERIFY(qAbs(colorsOf(scene)->getDiffuse().green() - 0.5F * Share) < 1e-4F);
    QCOMPARE(colorsOf(scene)->getDiffuse().blue(), 0.0F);
    QCOMPARE(colorsOf(scene)->getSpecular(), osg::Color4f(0, 0, 0, 1));
    QCOMPARE(colorsOf(scene)->getShininess(), 0.0F);
    // A polished metal has the highlight in its own colour, and little of other light.
    scene.set("M", "metallic", "1");
    scene.set("M", "roughness", "0.1");
    QCOMPARE(colorsOf(scene)->getShininess(), 128.0F);
    QCOMPARE(colorsOf(scene)->getSpecular(), osg::Color4f(1, 0.5F, 0, 1));
    QVERIFY(colorsOf(scene)->getDiffuse().red() < 0.5F * Share);
}

void tst_Looks::physicalMaterialFollowsItsFields()
{
    CoreScene scene(box("material DEF M PhysicalMaterial { }"));
    scene.set("M", "emissiveColor", "0 0 1");
    scene.set("M", "transparency", "0.5");
    QCOMPARE(colorsOf(scene)->getEmission(), osg::Color4f(0, 0, 1, 0.5F));
}

void tst_Looks::badPhysicalMaterialIsHarmless()
{
    CoreScene scene(box("material DEF M PhysicalMaterial { }"));
    scene.set("M", "baseColor", "nan inf -1");
    scene.set("M", "roughness", "nan");
    scene.set("M", "metallic", "1e30");
    const osg::MaterialChunkPtr colors = colorsOf(scene);
    for (osg::UInt32 i = 0; i < 4; ++i) {
        QVERIFY(std::isfinite(colors->getDiffuse()[i]));
        QVERIFY(std::isfinite(colors->getSpecular()[i]));
    }
    QVERIFY(std::isfinite(colors->getShininess()));
}

void tst_Looks::twoSidedMaterialHasABack()
{
    CoreScene scene(box("material DEF M TwoSidedMaterial { diffuseColor 1 0 0 backDiffuseColor 0 1 0 "
                        "backTransparency 0.5 }"));
    QVERIFY(!colorsOf(scene)->getBack());
    scene.set("M", "separateBackColor", "TRUE");
    QVERIFY(colorsOf(scene)->getBack());
    QCOMPARE(colorsOf(scene)->getDiffuse(), osg::Color4f(1, 0, 0, 1));
    QCOMPARE(colorsOf(scene)->getBack()->diffuse, osg::Color4f(0, 1, 0, 0.5F));
    QVERIFY(materialOf(scene.procOf<ShapeProc>("S").tree())->isTransparent());
}

void tst_Looks::backMaterialIsThatOfTheBack()
{
    CoreScene scene(box("material Material { } backMaterial DEF B Material { diffuseColor 0 1 0 }"));
    QCOMPARE(colorsOf(scene)->getBack()->diffuse, osg::Color4f(0, 1, 0, 1));
    scene.set("B", "diffuseColor", "0 0 1");
    QCOMPARE(colorsOf(scene)->getBack()->diffuse, osg::Color4f(0, 0, 1, 1));
    scene.set("A", "backMaterial", "NULL");
    QVERIFY(!colorsOf(scene)->getBack());
}

void tst_Looks::backMaterialOfAnotherKindIsReported()
{
    CoreScene scene(box("material Material { } backMaterial UnlitMaterial { }"));
    QVERIFY(!colorsOf(scene)->getBack());
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Looks::alphaMode_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<bool>("transparent");
    QTest::addColumn<unsigned int>("test");
    QTest::newRow("auto") << QByteArray("AUTO") << true << 0U;
    QTest::newRow("opaque") << QByteArray("OPAQUE") << false << 0x0207U;
    QTest::newRow("mask") << QByteArray("MASK") << false << 0x0206U;
    QTest::newRow("blend") << QByteArray("BLEND") << true << 0U;
}

void tst_Looks::alphaMode()
{
    QFETCH(QByteArray, mode);
    QFETCH(bool, transparent);
    QFETCH(unsigned int, test);
    CoreScene scene(box("material Material { transparency 0.25 } alphaCutoff 0.75 alphaMode " + mode));
    QCOMPARE(materialOf(scene.procOf<ShapeProc>("S").tree())->isTransparent(), transparent);
    const osg::BlendChunkPtr blend = chunkOf<osg::BlendChunk>(scene, osg::StateChunk::BLEND);
    QCOMPARE(blend ? blend->getAlphaFunc() : 0U, test);
    if (mode == "MASK")
        QCOMPARE(blend->getAlphaValue(), 0.75F);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Looks::unknownAlphaModeIsReported()
{
    CoreScene scene(box("alphaMode GLASS"));
    scene.set("A", "alphaMode", "WOOD");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QVERIFY(!materialOf(scene.procOf<ShapeProc>("S").tree())->isTransparent());
}

void tst_Looks::colorTextureIsMultiplied()
{
    for (const char* material : {"Material { diffuseColor 1 0 0 diffuseTexture ",
                                 "PhysicalMaterial { baseColor 1 0 0 roughness 1 baseTexture ",
                                 "UnlitMaterial { emissiveColor 1 0 0 emissiveTexture "})
    {
        CoreScene scene(box("material " + QByteArray(material) + Pixel + " }"));
        QVERIFY(chunkOf<osg::TextureChunk>(scene, osg::StateChunk::TEXTURE));
        QCOMPARE(chunkOf<osg::TextureChunk>(scene, osg::StateChunk::TEXTURE)->getEnvMode(),
                 osg::UInt32(osg::TextureChunk::ENV_MODULATE));
        QVERIFY(colorsOf(scene)->getDiffuse().red() > 0.3F);
        QCOMPARE(colorsOf(scene)->getDiffuse().green(), 0.0F);
    }
}

void tst_Looks::emissionTextureAddsLight()
{
    CoreScene scene(box("material DEF M Material { emissiveColor 1 0.5 0 diffuseTexture " +
                        QByteArray(Pixel) + " emissiveTexture " + Pixel + " }"));
    QCOMPARE(colorsOf(scene)->getEmission(), osg::Color4f(0, 0, 0, 1));
    const auto light = chunkOf<osg::TextureChunk>(scene, osg::StateChunk::TEXTURE, 1);
    QCOMPARE(light->getEnvMode(), osg::UInt32(osg::TextureChunk::ENV_COMBINE));
    QCOMPARE(light->getEnvCombine().rgb, osg::TextureChunk::COMBINE_MODULATE_ADD);
    QCOMPARE(light->getEnvColor(), osg::Color4f(1, 0.5F, 0, 1));
    QCOMPARE(light->getCoordSet(1), osg::UInt32(0));
}

void tst_Looks::editOfAMaterialsTextureIsFollowed()
{
    CoreScene scene(box("material DEF M UnlitMaterial { emissiveTexture DEF T " + QByteArray(Pixel) + " }"));
    scene.set("T", "image", "2 1 3 0xFF0000 0x00FF00");
    QCOMPARE(chunkOf<osg::TextureChunk>(scene, osg::StateChunk::TEXTURE)->getImage()->getWidth(), 2);
    scene.set("M", "emissiveTexture", "NULL");
    QVERIFY(!chunkOf<osg::TextureChunk>(scene, osg::StateChunk::TEXTURE));
}

void tst_Looks::transformsFindTheirTextures()
{
    CoreScene scene(box("material Material { diffuseTexture " + QByteArray(Pixel) +
                        " diffuseTextureMapping d " + "emissiveTexture " + Pixel +
                        " emissiveTextureMapping e } " +
                        "textureTransform MultiTextureTransform { textureTransform [ "
                        "TextureTransform { mapping e translation 1 2 } "
                        "DEF D TextureTransform3D { mapping d translation 3 4 5 } ] }"));
    const auto at = [&scene](osg::UInt32 unit) {
        const auto chunk =
            chunkOf<osg::TextureTransformChunk>(scene, osg::StateChunk::TEXTURE_TRANSFORM, unit);
        return osg::Vec3f(chunk->getMatrix()[3][0], chunk->getMatrix()[3][1], chunk->getMatrix()[3][2]);
    };
    QVERIFY(at(0) == osg::Vec3f(3, 4, 5));
    QVERIFY(at(1) == osg::Vec3f(1, 2, 0));
    scene.set("D", "translation", "6 7 8");
    QVERIFY(at(0) == osg::Vec3f(6, 7, 8));
}

void tst_Looks::linePropertiesReachTheLines()
{
    CoreScene scene("DEF S Shape { geometry Polyline2D { lineSegments [ 0 0, 1 1 ] } appearance Appearance { "
                    "lineProperties DEF L LineProperties { linewidthScaleFactor 3 linetype 2 } } }");
    const auto line = [&scene] { return chunkOf<osg::LineChunk>(scene, osg::StateChunk::LINE); };
    QCOMPARE(line()->getWidth(), 3.0F);
    QCOMPARE(line()->getStipplePattern(), osg::UInt16(0x0FFF));
    scene.set("L", "linetype", "99");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(line()->getStipplePattern(), osg::UInt16(0xFFFF));
    scene.set("L", "linewidthScaleFactor", "nan");
    QVERIFY(!line());
    scene.set("L", "linewidthScaleFactor", "1e9");
    QCOMPARE(line()->getWidth(), 1024.0F);
    scene.set("L", "applied", "FALSE");
    QVERIFY(!line());
}

void tst_Looks::pointPropertiesReachThePoints()
{
    CoreScene scene("DEF S Shape { geometry PointSet { coord Coordinate { point [ 0 0 0 ] } } appearance "
                    "Appearance { pointProperties DEF P PointProperties { pointSizeScaleFactor 5 } } }");
    const auto point = [&scene] { return chunkOf<osg::PointChunk>(scene, osg::StateChunk::POINT); };
    QCOMPARE(point()->getSize(), 5.0F);
    QVERIFY(point()->getMaxSize() < 0.0F);
    scene.set("P", "pointSizeMinValue", "2");
    scene.set("P", "pointSizeMaxValue", "20");
    scene.set("P", "attenuation", "0 1 0");
    QCOMPARE(point()->getMinSize(), 2.0F);
    QCOMPARE(point()->getMaxSize(), 20.0F);
    QVERIFY(point()->getAttenuation() == osg::Vec3f(0, 1, 0));
    scene.set("P", "attenuation", "0 0 0");
    QVERIFY(point()->getAttenuation() == osg::Vec3f(1, 0, 0));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_Looks::hatchIsDrawnOverTheFaces()
{
    CoreScene scene(box("fillProperties DEF F FillProperties { hatchColor 1 0 0 hatchStyle 4 }"));
    const osg::NodePtr tree = scene.procOf<ShapeProc>("S").tree();
    QCOMPARE(tree->getNChildren(), 2U);
    QCOMPARE(tree->getChild(0)->getChild(0)->getCore(), tree->getChild(1)->getChild(0)->getCore());
    const osg::ChunkMaterialPtr hatch = materialOf(tree->getChild(1));
    const auto polygon = osg::PolygonChunkPtr::dcast(hatch->findChunk(osg::StateChunk::POLYGON));
    QCOMPARE(polygon->getStipple(), hatchPattern(4));
    QVERIFY(polygon->getOffsetFactor() < 0.0F);
    scene.set("F", "hatched", "FALSE");
    QCOMPARE(tree->getNChildren(), 1U);
    QVERIFY(osg::GeometryPtr::dcast(tree->getChild(0)->getCore()));
    scene.set("F", "hatched", "TRUE");
    scene.set("F", "hatchStyle", "-7");
    QCOMPARE(tree->getNChildren(), 2U);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("S", "geometry", "NULL");
    QCOMPARE(tree->getNChildren(), 0U);
}

void tst_Looks::facesThatAreNotFilledAreNotDrawn()
{
    CoreScene scene(box("fillProperties FillProperties { filled FALSE hatched FALSE }"));
    QCOMPARE(chunkOf<osg::PolygonChunk>(scene, osg::StateChunk::POLYGON)->getCullFace(),
             osg::UInt32(osg::PolygonChunk::CULL_BOTH));
}

void tst_Looks::hatchPatternsHaveTheirLines()
{
    QCOMPARE(hatchPattern(1)[0], 0xFFFFFFFFU);
    QCOMPARE(hatchPattern(1)[1], 0U);
    QCOMPARE(hatchPattern(2)[5], 0x80808080U);
    // Rows run upwards, pixels to the right.
    QCOMPARE(hatchPattern(3)[1], 0x40404040U);
    QCOMPARE(hatchPattern(4)[1], 0x01010101U);
    QCOMPARE(hatchPattern(5)[1], 0x80808080U);
    QCOMPARE(hatchPattern(6)[1], 0x41414141U);
    QCOMPARE(hatchPattern(1000), hatchPattern(1));
}

QTEST_GUILESS_MAIN(tst_Looks)
#include "tst_Looks.moc"
