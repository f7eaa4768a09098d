#include "../opensg/LogCollector.h"
#include "SceneDrawing.h"
#include "core/ShadingText.h"
#include "core/ShapeProc.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSHLChunk.h>
#include <cmath>
#include <memory>

using namespace Orvane;

/// What programs make of physical materials and of textures of materials.
class tst_Shading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void physicalIsAsBrightAsItsEquations_data();
    void physicalIsAsBrightAsItsEquations();
    void physicalTakesColorsOfVertices();
    void ambientLightReachesNoPhysicalSurface();
    void texturesOfMaterialsCount_data();
    void texturesOfMaterialsCount();
    void normalTextureTiltsTheLight();
    void normalTextureIsTurnedWithItsCoordinates();
    void texturesTakeTheirMappings();
    void transformsMoveTexturesOfMaterials();
    void bothSidesHaveTheirMaterial();
    void fogLiesOverPhysicalSurfaces();
    void planesCutPhysicalSurfaces();
    void alphaOfTheBaseTextureCounts();
    void fieldsAreFollowed();
    void everyPlanCompiles();
    void fixedStepsStandInForAFaultyProgram();
    void windowsHaveProgramsOfTheirOwn();

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

osg::SHLChunkPtr programOf(const CoreScene& scene)
{
    const auto group = osg::MaterialGroupPtr::dcast(scene.procOf<ShapeProc>("S").tree()->getCore());
    const auto material = osg::ChunkMaterialPtr::dcast(group->getMaterial());
    return osg::SHLChunkPtr::dcast(material->findChunk(osg::StateChunk::PROGRAM));
}

/// A grey as a screen shows that much light.
QColor shown(double light)
{
    const int value = qRound(255 * std::pow(light, 1 / 2.2));
    return QColor(value, value, value);
}

/// What comes back of a light in line with normal and eye.
double physical(double base, double metallic, double roughness)
{
    const double straight = 0.04 + (base - 0.04) * metallic;
    const double a = roughness * roughness;
    const double mirrored = straight / (4 * M_PI * a * a);
    return (1 - straight) * base * 0.96 * (1 - metallic) / M_PI + mirrored;
}

} // namespace

void tst_Shading::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_Shading::physicalIsAsBrightAsItsEquations_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QColor>("expected");
    QTest::newRow("chalk") << QByteArray("baseColor 0.8 0.8 0.8 metallic 0 roughness 1")
                           << shown(physical(0.8, 0, 1));
    QTest::newRow("plastic") << QByteArray("baseColor 0.3 0.3 0.3 metallic 0 roughness 0.6")
                             << shown(physical(0.3, 0, 0.6));
    QTest::newRow("iron") << QByteArray("baseColor 0.5 0.5 0.5 metallic 1 roughness 0.8")
                          << shown(physical(0.5, 1, 0.8));
    QTest::newRow("half") << QByteArray("baseColor 0.5 0.5 0.5 metallic 0.5 roughness 0.9")
                          << shown(physical(0.5, 0.5, 0.9));
    QTest::newRow("glow") << QByteArray("baseColor 0 0 0 metallic 0 roughness 1 emissiveColor 0.2 0.2 0.2")
                          << shown(0.2 + physical(0, 0, 1));
    // Images hold what a screen shows.
    const double grey = std::pow(128 / 255.0, 2.2);
    QTest::newRow("base") << QByteArray("baseColor 0.8 0.8 0.8 metallic 0 roughness 1 baseTexture ") +
                                 pixel("808080").c_str()
                          << shown(physical(0.8 * grey, 0, 1));
    QTest::newRow("emission") << QByteArray(
                                     "baseColor 0 0 0 metallic 0 emissiveColor 1 1 1 emissiveTexture ") +
                                     pixel("808080").c_str()
                              << shown(grey + physical(0, 0, 1));
    QTest::newRow("metal and roughness")
        << QByteArray("baseColor 0.5 0.5 0.5 metallic 1 roughness 1 metallicRoughnessTexture ") +
               pixel("00CC80").c_str()
        << shown(physical(0.5, 128 / 255.0, 0.8));
    QTest::newRow("occlusion")
        << QByteArray(
               "baseColor 0.8 0.8 0.8 metallic 0 roughness 1 occlusionStrength 0.5 occlusionTexture ") +
               pixel("800000").c_str()
        << shown(physical(0.8, 0, 1) * (0.5 + 0.5 * 128 / 255));
}

void tst_Shading::physicalIsAsBrightAsItsEquations()
{
    QFETCH(QByteArray, fields);
    QFETCH(QColor, expected);
    CoreScene scene(squareWith("material PhysicalMaterial { " + fields.toStdString() + " }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_Shading::physicalTakesColorsOfVertices()
{
    CoreScene scene(squareWith("material PhysicalMaterial { metallic 0 roughness 1 baseColor 0 0 1 }",
                               "color Color { color [ 0.8 0.8 0.8, 0.8 0.8 0.8, 0.8 0.8 0.8, 0.8 0.8 0.8 ] }")
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), shown(physical(0.8, 0, 1)));
}

void tst_Shading::ambientLightReachesNoPhysicalSurface()
{
    CoreScene scene(("DirectionalLight { intensity 0 ambientIntensity 1 } " +
                     squareWith("material PhysicalMaterial { baseColor 1 1 1 }"))
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
}

void tst_Shading::texturesOfMaterialsCount_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<QColor>("expected");
    const auto row = [](const char* name, const char* fields, const char* texture, const char* color, int r,
                        int g, int b) {
        QTest::newRow(name) << QByteArray(fields) + ' ' + texture + ' ' + pixel(color).c_str()
                            << QColor(r, g, b);
    };
    // A sure texture of occlusion beside the others has all of them drawn by a program.
    row("occlusion", "diffuseColor 1 1 1", "occlusionTexture", "800000", 0x80, 0x80, 0x80);
    row("specular", "diffuseColor 0 0 0 specularColor 1 1 1", "specularTexture", "804020", 0x80, 0x40, 0x20);
    row("diffuse", "diffuseColor 1 1 1 occlusionTexture PixelTexture { image 1 1 3 0xFFFFFF }",
        "diffuseTexture", "804020", 0x80, 0x40, 0x20);
    row("emission",
        "diffuseColor 0 0 0 emissiveColor 1 1 0 occlusionTexture PixelTexture { image 1 1 3 0xFFFFFF }",
        "emissiveTexture", "804020", 0x80, 0x40, 0x00);
    row("plain diffuse", "diffuseColor 1 1 1", "diffuseTexture", "804020", 0x80, 0x40, 0x20);
}

void tst_Shading::texturesOfMaterialsCount()
{
    QFETCH(QByteArray, fields);
    QFETCH(QColor, expected);
    CoreScene scene(squareWith("material Material { " + fields.toStdString() + " }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Shading::normalTextureTiltsTheLight()
{
    // 60 degrees to the right: the light of the eye arrives by a half, one from the right by much.
    const std::string tilted = pixel("EE80BF");
    CoreScene scene(
        ("DEF L DirectionalLight { on FALSE direction -1 0 0 } " +
         squareWith("material DEF M Material { diffuseColor 1 1 1 normalTexture " + tilted + " }"))
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0x80, 0x80, 0x80));
    scene.set("L", "on", "TRUE");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xDC, 0xDC, 0xDC));
    scene.set("M", "normalScale", "0");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
}

void tst_Shading::normalTextureIsTurnedWithItsCoordinates()
{
    // The image is turned to the left, so that what points to its right points up.
    CoreScene scene(
        ("DEF L DirectionalLight { direction 0 -1 0 } " +
         squareWith("material Material { diffuseColor 1 1 1 normalTexture " + pixel("EE80BF") + " }",
                    "texCoord TextureCoordinate { point [ 0 1, 0 0, 1 0, 1 1 ] }"))
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xDC, 0xDC, 0xDC));
    scene.set("L", "direction", "0 1 0");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
}

void tst_Shading::texturesTakeTheirMappings()
{
    CoreScene scene(
        squareWith(
            "material DEF M Material { diffuseColor 1 1 1 diffuseTextureMapping \"a\" diffuseTexture " +
                pixel("FFFFFF") + "specularColor 0 0 0 occlusionTextureMapping \"b\" occlusionTexture " +
                Halves + " }",
            "texCoord MultiTextureCoordinate { texCoord [ TextureCoordinate { mapping \"a\" point [ 0.75 "
            "0, 0.75 0, 0.75 0, 0.75 0 ] } TextureCoordinate { mapping \"b\" point [ 0.25 0, 0.25 0, "
            "0.25 0, 0.25 0 ] } ] }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 255, 255));
    scene.set("M", "occlusionTextureMapping", "\"a\"");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0, 0, 0));
}

void tst_Shading::transformsMoveTexturesOfMaterials()
{
    CoreScene scene(
        squareWith("textureTransform DEF T TextureTransform { } material Material { diffuseColor 1 1 1 "
                   "occlusionTexture " +
                       Halves + " }",
                   "texCoord TextureCoordinate { point [ 0.25 0, 0.25 0, 0.25 0, 0.25 0 ] }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 255, 255));
    scene.set("T", "translation", "0.5 0");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(0, 0, 0));
}

void tst_Shading::bothSidesHaveTheirMaterial()
{
    const std::string appearance = "material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 0 } "
                                   "backMaterial PhysicalMaterial { baseColor 0 0 0 emissiveColor 0 1 0 }";
    CoreScene scene(("DEF T Transform { children " + squareWith(appearance) + " }").c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(255, 0, 0));
    scene.set("T", "rotation", "0 1 0 3.1415927");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 255, 0));
}

void tst_Shading::fogLiesOverPhysicalSurfaces()
{
    CoreScene scene(("DEF F Fog { color 0 0 1 visibilityRange 20 } " +
                     squareWith("material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 0 }"))
                        .c_str());
    scene.proc();
    const QColor linear = _drawing->middleOf(scene, false);
    CoreScene plain(("Fog { color 0 0 1 visibilityRange 20 } " +
                     squareWith("material UnlitMaterial { emissiveColor 1 0 0 }"))
                        .c_str());
    COMPARE_DRAWN(linear, _drawing->middleOf(plain, false));
}

void tst_Shading::planesCutPhysicalSurfaces()
{
    CoreScene scene(("ClipPlane { plane 1 0 0 0 } " +
                     squareWith("material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 0 }"))
                        .c_str());
    COMPARE_DRAWN(_drawing->at(scene, 0.5, 0, false), QColor(255, 0, 0));
    COMPARE_DRAWN(_drawing->at(scene, -0.5, 0, false), QColor(0, 0, 0));
}

void tst_Shading::alphaOfTheBaseTextureCounts()
{
    CoreScene scene(
        (squareWith("alphaMode BLEND material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 "
                    "0 baseTexture PixelTexture { image 1 1 4 0xFFFFFF80 } }") +
         "Background { skyColor 0 0 0 }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0, 0));
}

void tst_Shading::fieldsAreFollowed()
{
    CoreScene scene(
        squareWith("material DEF M PhysicalMaterial { baseColor 0.8 0.8 0.8 metallic 0 roughness 1 "
                   "baseTexture DEF T " +
                   pixel("FFFFFF") + " }")
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene), shown(physical(0.8, 0, 1)));
    scene.set("T", "image", "1 1 3 0x000000");
    COMPARE_DRAWN(_drawing->middleOf(scene), shown(physical(0, 0, 1)));
    scene.set("M", "baseTexture", "NULL");
    scene.set("M", "baseColor", "0.5 0.5 0.5");
    scene.set("M", "metallic", "1");
    scene.set("M", "roughness", "0.8");
    COMPARE_DRAWN(_drawing->middleOf(scene), shown(physical(0.5, 1, 0.8)));
    scene.set("A", "material", "NULL");
    COMPARE_DRAWN(_drawing->middleOf(scene), QColor(255, 255, 255));
}

void tst_Shading::everyPlanCompiles()
{
    GLPicture picture;
    const osg::RefPtr<osg::SHLProgramPtr> program(osg::SHLProgram::create());
    const osg::RefPtr<osg::SHLChunkPtr> chunk(osg::SHLChunk::create());
    chunk->setProgram(program.get());
    CoreScene scene(squareWith("material Material { }").c_str());
    const auto group = osg::MaterialGroupPtr::dcast(scene.procOf<ShapeProc>("S").tree()->getCore());
    const auto material = osg::ChunkMaterialPtr::dcast(group->getMaterial());
    material->addChunk(chunk.get());
    using Shading = SurfaceShading;
    const ShadingPlan::Sampler samplers[] = {ShadingPlan::CUBE, ShadingPlan::FLAT, ShadingPlan::SPACE,
                                             ShadingPlan::FLAT};
    for (const Shading::Model model : {Shading::PHONG, Shading::PHYSICAL}) {
        for (unsigned int set = 0; set < 256; set += 25) {
            ShadingPlan plan;
            plan.model = model;
            plan.hasVertexColors = set % 2 > 0;
            plan.tintsAll = set % 3 > 0;
            for (unsigned int role = Shading::COLOR; role <= Shading::NORMAL; ++role) {
                if ((set >> role & 1) == 0)
                    continue;
                const unsigned int kind = (set + role) % (SurfaceTexture::LOCAL_POSITION + 1);
                plan.textures.push_back(
                    {static_cast<Shading::Role>(role), static_cast<SurfaceTexture::Coordinates>(kind), role,
                     role < Shading::NORMAL ? samplers[(set + role) % 4] : ShadingPlan::FLAT, role % 2 > 0,
                     static_cast<Shading::Sides>(1 + (set + role) % 3)});
            }
            program->setSources(shadingText(plan));
            picture.draw(scene.proc().root());
            const std::string log =
                program->getMessages().empty() ? std::string() : program->getMessages()[0].text;
            QVERIFY2(program->getStatus() == osg::SHLProgram::GOOD, log.c_str());
        }
    }
    chunk->setProgram(osg::NullFC);
}

void tst_Shading::fixedStepsStandInForAFaultyProgram()
{
    CoreScene scene(squareWith("material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 0 }").c_str());
    const osg::SHLProgramPtr program = programOf(scene)->getProgram().get();
    const std::vector<osg::SHLProgram::Source> sources = program->getSources();
    LogCollector log(*osg::osgLogP);
    program->setSources({{osg::SHLProgram::FRAGMENT, "nonsense"}});
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(255, 0, 0));
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(255, 0, 0));
    QCOMPARE(QByteArray::fromStdString(log.take()).count("fixed steps"), 1);
    QCOMPARE(_drawing->error(), 0U);
    program->setSources(sources);
}

void tst_Shading::windowsHaveProgramsOfTheirOwn()
{
    CoreScene scene(squareWith("material PhysicalMaterial { metallic 0 roughness 1 baseColor 0.8 0.8 0.8 "
                               "baseTexture " +
                               pixel("FFFFFF") + " }")
                        .c_str());
    const QColor expected = shown(physical(0.8, 0, 1));
    auto other = std::make_unique<SceneDrawing>();
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    COMPARE_DRAWN(other->middleOf(scene), expected);
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    other.reset();
    COMPARE_DRAWN(_drawing->middleOf(scene), expected);
    QCOMPARE(_drawing->error(), 0U);
}

QTEST_MAIN(tst_Shading)
#include "tst_Shading.moc"
