#include "GLPicture.h"
#include "GeometryBuilder.h"

#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGPointChunk.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGSimpleMaterial.h>
#include <OpenSG/OSGSpotLight.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTexGenChunk.h>
#include <OpenSG/OSGTextureChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>
#include <OpenSG/OSGVisitSubTree.h>

#include <QOpenGLFunctions>
#include <QtTest>

#include <cmath>
#include <functional>

using namespace osg;
using NodeRefPtr = RefPtr<NodePtr>;

namespace {

const QColor red(255, 0, 0);
const QColor green(0, 255, 0);
const QColor blue(0, 0, 255);
const QColor black(0, 0, 0);

SimpleMaterialPtr flat(float r, float g, float b, float transparency = 0)
{
    const SimpleMaterialPtr material = SimpleMaterial::create();
    material->setLit(false);
    material->setDiffuse(Color3f(r, g, b));
    material->setTransparency(transparency);
    return material;
}

SimpleMaterialPtr lit(float r, float g, float b)
{
    const SimpleMaterialPtr material = SimpleMaterial::create();
    material->setDiffuse(Color3f(r, g, b));
    material->setAmbient(Color3f(0, 0, 0));
    return material;
}

NodePtr shape(const GeometryPtr& geometry, const MaterialPtr& material)
{
    geometry->setMaterial(material);
    return makeNodeFor(geometry);
}

NodePtr at(float x, float y, float z, const NodePtr& child)
{
    Matrix matrix;
    matrix.setTranslate(x, y, z);
    const TransformPtr transform = Transform::create();
    transform->setMatrix(matrix);
    const NodePtr node = makeNodeFor(transform);
    node->addChild(child);
    return node;
}

NodePtr group(std::initializer_list<NodePtr> children)
{
    const NodePtr node = makeNodeFor(Group::create());
    for (const NodePtr& child : children)
        node->addChild(child);
    return node;
}

NodePtr litBy(const LightPtr& light, std::initializer_list<NodePtr> children)
{
    const NodePtr node = makeNodeFor(light);
    for (const NodePtr& child : children)
        node->addChild(child);
    return node;
}

// The colour at a place of the plane z = 0.
QColor colorAt(const QImage& picture, float x, float y)
{
    const float scale = picture.height() / 10.F;
    return picture.pixelColor(static_cast<int>(std::lround(picture.width() / 2.F + x * scale - 0.5F)),
                              static_cast<int>(std::lround(picture.height() / 2.F - y * scale - 0.5F)));
}

bool isNear(const QColor& a, const QColor& b, int tolerance = 3)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}

QString difference(const QColor& actual, const QColor& expected)
{
    return actual.name() + QStringLiteral(" instead of ") + expected.name();
}

// Two by two pixels: red and green below, blue and white above.
ImagePtr quarters()
{
    const UInt8 pixels[] = {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255};
    const ImagePtr image = Image::create();
    image->set(Image::OSG_RGB_PF, 2, 2, 1, 1, 1, 0, pixels);
    return image;
}

TextureChunkPtr texture(const ImagePtr& image)
{
    const TextureChunkPtr chunk = TextureChunk::create();
    chunk->setImage(image);
    chunk->setMinFilter(TextureChunk::NEAREST);
    chunk->setMagFilter(TextureChunk::NEAREST);
    return chunk;
}

} // namespace

#define COMPARE_COLOR(actual, expected)                                                                      \
    do {                                                                                                     \
        const QColor color = (actual);                                                                       \
        QVERIFY2(isNear(color, expected), qPrintable(difference(color, expected)));                          \
    } while (false)

class tst_RenderAction : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        GLContext context;
        QVERIFY(context.isValid());
    }

    void litBoxStandsInTheMiddleOfTheBackground()
    {
        GLPicture picture;
        picture.background->setColor(Color3f(0, 0, 1));
        const NodeRefPtr root =
            litBy(DirectionalLight::create(), {shape(GeometryBuilder::box(), lit(1, 0, 0))});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, 0, 0), red);
        COMPARE_COLOR(colorAt(image, 1, 1), red);
        COMPARE_COLOR(colorAt(image, 1.2F, 0), blue);
        COMPARE_COLOR(colorAt(image, 0, -1.2F), blue);
        const RenderStatistics& statistics = picture.action->getStatistics();
        QCOMPARE(statistics.shapes, UInt64(1));
        QCOMPARE(statistics.triangles, UInt64(12));
        QCOMPARE(statistics.drawCalls, UInt64(1));
    }

    void surfaceIsAsBrightAsItFacesTheLight()
    {
        GLPicture picture;
        const DirectionalLightPtr light = DirectionalLight::create();
        light->setDirection(Vec3f(std::sqrt(3.F), 0, 1));
        const NodeRefPtr root = litBy(light, {shape(GeometryBuilder::square(), lit(1, 1, 1))});
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(128, 128, 128));
    }

    void unlitShapesShowTheirColor()
    {
        GLPicture picture;
        const NodeRefPtr root = shape(GeometryBuilder::square(), flat(0.2F, 0.4F, 0.6F));
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(51, 102, 153));
    }

    void withoutLightThereIsOnlyEmission()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = lit(1, 1, 1);
        material->setEmission(Color3f(0, 0.2F, 0));
        const NodeRefPtr root = shape(GeometryBuilder::square(), material);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(0, 51, 0));
    }

    void nearerShapesHideFartherOnes()
    {
        GLPicture picture;
        const NodeRefPtr root = group({shape(GeometryBuilder::square(1, 1), flat(1, 0, 0)),
                                       shape(GeometryBuilder::square(2, 0), flat(0, 1, 0))});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, 0, 0), red);
        COMPARE_COLOR(colorAt(image, 1.5F, 0), green);
    }

    void bottomRowOfATextureIsAtTheBottom()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = flat(1, 1, 1);
        material->addChunk(texture(quarters()));
        const NodeRefPtr root = shape(GeometryBuilder::square(), material);
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -0.5F, -0.5F), red);
        COMPARE_COLOR(colorAt(image, 0.5F, -0.5F), green);
        COMPARE_COLOR(colorAt(image, -0.5F, 0.5F), blue);
        COMPARE_COLOR(colorAt(image, 0.5F, 0.5F), QColor(255, 255, 255));
    }

    void highlightsLieOverTextures()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = lit(1, 1, 1);
        material->setSpecular(Color3f(0, 0, 1));
        material->setShininess(1);
        const UInt8 pixel[] = {0, 255, 0};
        const ImagePtr image = Image::create();
        image->set(Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0, pixel);
        material->addChunk(texture(image));
        const NodeRefPtr root =
            litBy(DirectionalLight::create(), {shape(GeometryBuilder::square(), material)});
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(0, 255, 255));
    }

    void textureIsTransformed()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = flat(1, 1, 1);
        material->addChunk(texture(quarters()));
        const TextureTransformChunkPtr transform = TextureTransformChunk::create();
        Matrix matrix;
        matrix.setTranslate(0.5F, 0, 0);
        transform->setMatrix(matrix);
        material->addChunk(transform);
        const NodeRefPtr root = shape(GeometryBuilder::square(), material);
        COMPARE_COLOR(colorAt(picture.draw(root), -0.5F, -0.5F), green);
    }

    void texturesOfAnySizeAreShownWithMipmaps()
    {
        GLPicture picture;
        const int width = 37;
        const int height = 11;
        std::vector<UInt8> pixels(width * height * 3, 0);
        for (std::size_t i = 0; i < pixels.size(); i += 3)
            pixels[i] = 200;
        const ImagePtr image = Image::create();
        image->set(Image::OSG_RGB_PF, width, height, 1, 1, 1, 0, pixels.data());
        const TextureChunkPtr chunk = texture(image);
        chunk->setMinFilter(TextureChunk::LINEAR_MIPMAP_LINEAR);
        const SimpleMaterialPtr material = flat(1, 1, 1);
        material->addChunk(chunk);
        const NodeRefPtr root = shape(GeometryBuilder::square(0.2F), material);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(200, 0, 0));
    }

    void changedImageIsSeen()
    {
        GLPicture picture;
        const RefPtr<ImagePtr> image = quarters();
        const SimpleMaterialPtr material = flat(1, 1, 1);
        material->addChunk(texture(image.get()));
        const NodeRefPtr root = shape(GeometryBuilder::square(), material);
        COMPARE_COLOR(colorAt(picture.draw(root), -0.5F, -0.5F), red);
        beginEditCP(image.get());
        image->getData()[0] = 0;
        image->getData()[2] = 255;
        endEditCP(image.get());
        COMPARE_COLOR(colorAt(picture.draw(root), -0.5F, -0.5F), blue);
        const UInt8 one[] = {0, 255, 0, 255};
        beginEditCP(image.get());
        image->set(Image::OSG_RGBA_PF, 1, 1, 1, 1, 1, 0, one);
        endEditCP(image.get());
        COMPARE_COLOR(colorAt(picture.draw(root), -0.5F, -0.5F), green);
        beginEditCP(image.get());
        image->clearData();
        endEditCP(image.get());
        COMPARE_COLOR(colorAt(picture.draw(root), -0.5F, -0.5F), QColor(255, 255, 255));
    }

    void binaryAlphaIsCutOutAndStaysOpaque()
    {
        GLPicture picture;
        const UInt8 pixels[] = {255, 0, 0, 255, 0, 255, 0, 0};
        const ImagePtr image = Image::create();
        image->set(Image::OSG_RGBA_PF, 2, 1, 1, 1, 1, 0, pixels);
        const SimpleMaterialPtr material = flat(1, 1, 1);
        material->addChunk(texture(image));
        QVERIFY(!material->isTransparent());
        const NodeRefPtr root = shape(GeometryBuilder::square(), material);
        picture.background->setColor(Color3f(0, 0, 1));
        const QImage drawn = picture.draw(root);
        COMPARE_COLOR(colorAt(drawn, -0.5F, 0), red);
        COMPARE_COLOR(colorAt(drawn, 0.5F, 0), blue);
    }

    void holesStayBesideOtherAlphaTests()
    {
        GLPicture picture;
        picture.background->setColor(Color3f(0, 0, 1));
        const UInt8 pixels[] = {255, 0, 0, 255, 0, 255, 0, 0};
        const ImagePtr image = Image::create();
        image->set(Image::OSG_RGBA_PF, 2, 1, 1, 1, 1, 0, pixels);
        const TextureChunkPtr shared = texture(image);
        const auto textured = [&shared](bool always) {
            const SimpleMaterialPtr material = flat(1, 1, 1);
            material->addChunk(shared);
            if (always) {
                const BlendChunkPtr blend = BlendChunk::create();
                blend->setSrcFactor(BlendChunk::ONE);
                blend->setDestFactor(BlendChunk::ZERO);
                blend->setAlphaFunc(0x0207);
                material->addChunk(blend);
            }
            return shape(GeometryBuilder::square(), material);
        };
        const NodeRefPtr root =
            group({at(-3, 0, 0, textured(false)), at(0, 0, 0, textured(true)), at(3, 0, 0, textured(false))});
        for (int i = 0; i < 2; ++i) {
            const QImage drawn = picture.draw(root);
            COMPARE_COLOR(colorAt(drawn, -2.5F, 0), blue);
            COMPARE_COLOR(colorAt(drawn, 0.5F, 0), green);
            COMPARE_COLOR(colorAt(drawn, 3.5F, 0), blue);
        }
    }

    void texturesTakeTheCoordinatesTheyName()
    {
        GLPicture picture;
        const RefPtr<GeometryPtr> geometry = GeometryBuilder::square();
        const auto everywhere = [](float s, float t) {
            const GeoTexCoordsPtr coordinates = GeoTexCoords::create();
            for (int i = 0; i < 4; ++i)
                coordinates->addValue(Vec2f(s, t));
            return coordinates;
        };
        geometry->setTexCoords(everywhere(0.25F, 0.25F), 0);
        geometry->setTexCoords(everywhere(0.75F, 0.25F), 1);
        const auto colorOf = [&](const TextureChunkPtr& chunk, Int32 unit) {
            const SimpleMaterialPtr material = flat(1, 1, 1);
            material->addChunk(chunk, unit);
            const NodeRefPtr root = shape(geometry.get(), material);
            return colorAt(picture.draw(root), 0, 0);
        };
        COMPARE_COLOR(colorOf(texture(quarters()), 0), red);
        COMPARE_COLOR(colorOf(texture(quarters()), 1), green);
        const RefPtr<TextureChunkPtr> chunk = texture(quarters());
        chunk->setCoordSet(1);
        COMPARE_COLOR(colorOf(chunk.get(), 0), green);
        chunk->setCoordSet(0);
        COMPARE_COLOR(colorOf(chunk.get(), 1), red);
        // Sets that do not exist: the last one serves.
        chunk->setCoordSet(7);
        COMPARE_COLOR(colorOf(chunk.get(), 0), green);
        geometry->setTexCoords(NullFC, 1);
        COMPARE_COLOR(colorOf(texture(quarters()), 3), red);
    }

    void coordinatesAreMadeFromPlaces()
    {
        GLPicture picture;
        const TexGenChunkPtr gen = TexGenChunk::create();
        gen->setGenFuncS(TexGenChunk::EYE_LINEAR);
        gen->setGenFuncSPlane(Vec4f(0.5F, 0, 0, 0.5F));
        gen->setGenFuncT(TexGenChunk::OBJECT_LINEAR);
        gen->setGenFuncTPlane(Vec4f(0, 0, 0, 0.25F));
        const RefPtr<SimpleMaterialPtr> material = flat(1, 1, 1);
        material->addChunk(texture(quarters()));
        material->addChunk(gen);
        const NodeRefPtr root = shape(GeometryBuilder::square(), material.get());
        const QImage drawn = picture.draw(root);
        COMPARE_COLOR(colorAt(drawn, -0.5F, 0.5F), red);
        COMPARE_COLOR(colorAt(drawn, 0.5F, 0.5F), green);
        // Of the eye: the system of the shape does not count.
        const NodeRefPtr moved = at(1, 0, 0, shape(GeometryBuilder::square(), material.get()));
        COMPARE_COLOR(colorAt(picture.draw(moved), 0.5F, 0.5F), green);
    }

    void stippleLeavesPixelsOut()
    {
        GLPicture picture;
        const PolygonChunkPtr polygon = PolygonChunk::create();
        polygon->setStipple(std::vector<UInt32>(32, 0x80000000U));
        const SimpleMaterialPtr material = flat(1, 0, 0);
        material->addChunk(polygon);
        const NodeRefPtr root = group({shape(GeometryBuilder::square(4), material)});
        const QImage drawn = picture.draw(root);
        for (int x = 32; x < 160; ++x)
            COMPARE_COLOR(drawn.pixelColor(x, 100), x % 32 == 0 ? red : black);
    }

    void highlightsLieWhereTheEyeIs()
    {
        GLPicture picture;
        const auto shining = [] {
            const SimpleMaterialPtr material = lit(0, 0, 0);
            material->setSpecular(Color3f(1, 0, 0));
            material->setShininess(128);
            return shape(GeometryBuilder::square(), material);
        };
        const DirectionalLightPtr light = DirectionalLight::create();
        light->setSpecular(Color4f(1, 1, 1, 1));
        const NodeRefPtr root = litBy(light, {at(-3, 0, 0, shining()), at(3, 3, 0, shining())});
        // Light along the look: a face beside the middle throws it back past the eye.
        const QImage drawn = picture.draw(root);
        QVERIFY(colorAt(drawn, -3, 0).red() < 100);
        QVERIFY(colorAt(drawn, 3, 3).red() < colorAt(drawn, -3, 0).red());
    }

    void transparentShapesMixFromBackToFront()
    {
        GLPicture picture;
        const NodePtr nearer = shape(GeometryBuilder::square(1, 1), flat(1, 0, 0, 0.5F));
        const NodePtr farther = shape(GeometryBuilder::square(1, 0), flat(0, 1, 0, 0.5F));
        const NodePtr wall = shape(GeometryBuilder::square(1, -1), flat(0, 0, 1));
        // (blue, half green over it, half red over that)
        const QColor expected(128, 64, 64);
        const NodeRefPtr one = group({nearer, farther, wall});
        COMPARE_COLOR(colorAt(picture.draw(one), 0, 0), expected);
        const NodeRefPtr other = group({wall, farther, nearer});
        COMPARE_COLOR(colorAt(picture.draw(other), 0, 0), expected);
    }

    void vertexColorsStandForTheDiffuseColor()
    {
        GLPicture picture;
        const auto colored = [](const MaterialPtr& material) {
            const GeometryPtr geometry = GeometryBuilder::square();
            const GeoColorsPtr colors = GeoColors::create();
            for (int i = 0; i < 4; ++i)
                colors->addValue(Color3f(0, 1, 0));
            geometry->setColors(colors);
            return shape(geometry, material);
        };
        const SimpleMaterialPtr half = flat(1, 0, 0, 0.5F);
        const NodeRefPtr root =
            litBy(DirectionalLight::create(),
                  {at(-3, 0, 0, colored(lit(1, 0, 0))), at(0, 0, 0, colored(flat(1, 0, 0))),
                   at(3, 0, 0, colored(half)), at(0, 3, 0, shape(GeometryBuilder::square(), lit(1, 0, 0)))});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -3, 0), green);
        COMPARE_COLOR(colorAt(image, 0, 0), green);
        COMPARE_COLOR(colorAt(image, 3, 0), QColor(0, 128, 0));
        COMPARE_COLOR(colorAt(image, 0, 3), red);
        half->setTransparency(0.25F);
        COMPARE_COLOR(colorAt(picture.draw(root), 3, 0), QColor(0, 191, 0));
    }

    void separateIndicesAreBroughtTogether()
    {
        GLPicture picture;
        const GeometryPtr geometry = Geometry::create();
        geometry->setPositions(GeometryBuilder::positions(
            {{-1, -1, 0}, {0, -1, 0}, {0, 1, 0}, {-1, 1, 0}, {1, -1, 0}, {1, 1, 0}}));
        const GeoColorsPtr colors = GeoColors::create();
        colors->addValue(Color3f(1, 0, 0));
        colors->addValue(Color3f(0, 0, 1));
        geometry->setColors(colors);
        geometry->setIndexMapping({Geometry::MapPosition, Geometry::MapColor});
        // A red and a blue square that share an edge; the last primitive has positions that do not exist.
        geometry->setIndices(
            GeometryBuilder::indices({0, 0, 1, 0, 2, 0, 3, 0, 1, 1, 4, 1, 5, 1, 2, 1, 0, 0, 99, 0, 1, 0}));
        GeometryBuilder::setPrimitives(
            geometry, {{Geometry::QUADS, 4}, {Geometry::POLYGON, 4}, {Geometry::TRIANGLES, 3}});
        const NodeRefPtr root = shape(geometry, flat(1, 1, 1));
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -0.1F, 0), red);
        COMPARE_COLOR(colorAt(image, 0.1F, 0), blue);
        QCOMPARE(picture.action->getStatistics().triangles, UInt64(4));
        QCOMPARE(picture.action->getStatistics().drawCalls, UInt64(1));
    }

    void pointsAndLinesAreDrawn()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = flat(1, 0, 0);
        const PointChunkPtr points = PointChunk::create();
        points->setSize(9);
        material->addChunk(points);
        const LineChunkPtr lines = LineChunk::create();
        lines->setWidth(5);
        material->addChunk(lines);
        const NodeRefPtr root = group(
            {shape(GeometryBuilder::make(Geometry::POINTS, {{-3, 0, 0}}), material),
             shape(GeometryBuilder::make(Geometry::LINE_LOOP, {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}),
                   material)});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -3, 0), red);
        COMPARE_COLOR(colorAt(image, -2.9F, 0.1F), red);
        COMPARE_COLOR(colorAt(image, 1, 0), red);
        COMPARE_COLOR(colorAt(image, 0, 1), red);
        COMPARE_COLOR(colorAt(image, 1, 1), black);
        QCOMPARE(picture.action->getStatistics().lines, UInt64(4));
        QCOMPARE(picture.action->getStatistics().points, UInt64(1));
    }

    void backFacesAreCulledOnDemandEvenWhenMirrored()
    {
        GLPicture picture;
        const SimpleMaterialPtr solid = flat(1, 0, 0);
        const PolygonChunkPtr polygons = PolygonChunk::create();
        polygons->setCullFace(PolygonChunk::CULL_BACK);
        solid->addChunk(polygons);
        Matrix turned;
        turned.setTransform(Pnt3f(-3, 0, 0), Quaternion(Vec3f(0, 1, 0), Pi));
        Matrix mirrored;
        mirrored.setTransform(Pnt3f(3, 0, 0), Quaternion(), Vec3f(-1, 1, 1));
        const auto placed = [](const Matrix& matrix, const NodePtr& child) {
            const NodePtr node = at(0, 0, 0, child);
            TransformPtr::dcast(node->getCore())->setMatrix(matrix);
            return node;
        };
        const NodeRefPtr root = group(
            {placed(turned, shape(GeometryBuilder::square(), solid)), shape(GeometryBuilder::square(), solid),
             placed(mirrored, shape(GeometryBuilder::square(), solid)),
             at(0, 3, 0, placed(turned, shape(GeometryBuilder::square(), flat(0, 1, 0))))});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -3, 0), black);
        COMPARE_COLOR(colorAt(image, 0, 0), red);
        COMPARE_COLOR(colorAt(image, 3, 0), red);
        COMPARE_COLOR(colorAt(image, -3, 3), green);
    }

    void bothSidesAreLit()
    {
        GLPicture picture;
        Matrix turned;
        turned.setRotate(Quaternion(Vec3f(0, 1, 0), Pi));
        const NodePtr back = at(0, 0, 0, shape(GeometryBuilder::square(), lit(1, 0, 0)));
        TransformPtr::dcast(back->getCore())->setMatrix(turned);
        const NodeRefPtr root = litBy(DirectionalLight::create(), {back});
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), red);
    }

    void lightsShineOnTheirSubtreeOnly()
    {
        GLPicture picture;
        const DirectionalLightPtr redLight = DirectionalLight::create();
        redLight->setDiffuse(Color4f(1, 0, 0, 1));
        const DirectionalLightPtr blueLight = DirectionalLight::create();
        blueLight->setDiffuse(Color4f(0, 0, 1, 1));
        const DirectionalLightPtr off = DirectionalLight::create();
        off->setOn(false);
        const auto white = [](float x) {
            return at(x, 0, 0, shape(GeometryBuilder::square(0.9F), lit(1, 1, 1)));
        };
        const NodeRefPtr root = group(
            {litBy(redLight, {white(-2), litBy(blueLight, {white(0)})}), white(2), litBy(off, {white(4)})});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -2, 0), red);
        COMPARE_COLOR(colorAt(image, 0, 0), QColor(255, 0, 255));
        COMPARE_COLOR(colorAt(image, 2, 0), black);
        COMPARE_COLOR(colorAt(image, 4, 0), black);
    }

    void lightStandsAtItsBeacon()
    {
        GLPicture picture;
        const PointLightPtr light = PointLight::create();
        const NodePtr beacon = makeNodeFor(Group::create());
        const NodePtr lamp = at(0, 0, 1, beacon);
        light->setBeacon(beacon);
        light->setConstantAttenuation(0);
        light->setLinearAttenuation(2);
        const NodeRefPtr root =
            group({lamp, litBy(light, {shape(GeometryBuilder::square(0.1F), lit(1, 1, 1))})});
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), QColor(128, 128, 128));
        light->setBeacon(NullFC);
        light->setPosition(Pnt3f(0, 0, 0.5F));
        QVERIFY(colorAt(picture.draw(root), 0, 0).red() > 225);
    }

    void spotLightsOnlyItsCone()
    {
        GLPicture picture;
        const SpotLightPtr light = SpotLight::create();
        light->setPosition(Pnt3f(0, 0, 4));
        light->setSpotCutOff(Pi / 8);
        const auto small = [](float x) {
            return at(x, 0, 0, shape(GeometryBuilder::square(0.1F), lit(1, 1, 1)));
        };
        const NodeRefPtr root = litBy(light, {small(0), small(1), small(2.5F)});
        const QImage image = picture.draw(root);
        QVERIFY(colorAt(image, 0, 0).red() > 250);
        QVERIFY(colorAt(image, 1, 0).red() > 230);
        COMPARE_COLOR(colorAt(image, 2.5F, 0), black);
    }

    void shapesOutOfALightsRangeAreDark()
    {
        GLPicture picture;
        const PointLightPtr light = PointLight::create();
        light->setPosition(Pnt3f(0, 0, 1));
        light->setRange(2);
        const auto small = [](float x) {
            return at(x, 0, 0, shape(GeometryBuilder::square(0.1F), lit(1, 1, 1)));
        };
        const NodeRefPtr root = litBy(light, {small(0), small(3)});
        const QImage image = picture.draw(root);
        QVERIFY(colorAt(image, 0, 0).red() > 200);
        COMPARE_COLOR(colorAt(image, 3, 0), black);
    }

    void ofManyLightsTheNearestShine()
    {
        GLPicture picture;
        // Twelve lights side by side, each reaching as far as it likes; each shape takes the eight nearest.
        NodePtr inner = group({at(-3.5F, 0, 0, shape(GeometryBuilder::square(0.1F), lit(1, 1, 1))),
                               at(3.5F, 0, 0, shape(GeometryBuilder::square(0.1F), lit(1, 1, 1)))});
        for (int i = 0; i < 12; ++i) {
            const PointLightPtr light = PointLight::create();
            light->setPosition(Pnt3f(i < 6 ? -3.5F : 3.5F, 0, 1));
            light->setDiffuse(i < 6 ? Color4f(0.1F, 0, 0, 1) : Color4f(0, 0.1F, 0, 1));
            light->setQuadraticAttenuation(0);
            inner = litBy(light, {inner});
        }
        const NodeRefPtr root = inner;
        const QImage image = picture.draw(root);
        // Six near lights in full, and two of the others at a slant.
        QVERIFY(std::abs(colorAt(image, -3.5F, 0).red() - 153) < 4);
        QVERIFY(colorAt(image, -3.5F, 0).green() < 20);
        QVERIFY(std::abs(colorAt(image, 3.5F, 0).green() - 153) < 4);
        QVERIFY(colorAt(image, 3.5F, 0).red() < 20);
    }

    void cullingDoesNotChangeThePicture()
    {
        GLPicture picture;
        NodeRefPtr root = makeNodeFor(Group::create());
        for (int x = -9; x <= 9; ++x) {
            for (int y = -9; y <= 9; ++y) {
                const NodePtr part =
                    shape(GeometryBuilder::square(0.4F), flat(0.05F * (x + 10), 0.05F * (y + 10), 1));
                root->addChild(
                    at(static_cast<float>(x), static_cast<float>(y), static_cast<float>(x + y) / 4, part));
            }
        }
        const QImage culled = picture.draw(root);
        const RenderStatistics with = picture.action->getStatistics();
        picture.action->setFrustumCulling(false);
        const QImage all = picture.draw(root);
        QCOMPARE(culled, all);
        QVERIFY(with.culled > 100);
        QCOMPARE(with.shapes + with.culled, UInt64(361));
        QCOMPARE(picture.action->getStatistics().shapes, UInt64(361));
        QCOMPARE(picture.action->getStatistics().culled, UInt64(0));
    }

    void masksOfNodePortAndActionDecide()
    {
        GLPicture picture;
        const NodePtr node = shape(GeometryBuilder::square(), flat(1, 0, 0));
        const NodeRefPtr root = group({node});
        node->setTravMask(2);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), red);
        picture.port->setTravMask(1);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), black);
        picture.port->setTravMask(3);
        picture.action->setTravMask(~2U);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), black);
        QCOMPARE(picture.action->getTravMask(), ~2U);
    }

    void changedGeometryIsSeenAndBuiltOnce()
    {
        GLPicture picture;
        const GeometryPtr geometry = GeometryBuilder::square();
        const NodeRefPtr root = shape(geometry, flat(1, 0, 0));
        picture.draw(root);
        QCOMPARE(picture.action->getStatistics().geometriesBuilt, UInt64(1));
        picture.draw(root);
        QCOMPARE(picture.action->getStatistics().geometriesBuilt, UInt64(0));
        beginEditCP(geometry->getPositions());
        for (Pnt3f& position : geometry->getPositions()->editField())
            position += Vec3f(3, 0, 0);
        endEditCP(geometry->getPositions());
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, 0, 0), black);
        COMPARE_COLOR(colorAt(image, 3, 0), red);
        QCOMPARE(picture.action->getStatistics().geometriesBuilt, UInt64(1));
    }

    void sharedGeometryAndTreeAreDrawnInEachPlace()
    {
        GLPicture picture;
        const GeometryPtr geometry = GeometryBuilder::square();
        const NodePtr shared = at(0, 2, 0, shape(geometry, flat(1, 0, 0)));
        const VisitSubTreePtr visit = VisitSubTree::create();
        visit->setSubTreeRoot(shared);
        const NodeRefPtr root = group(
            {at(-3, 0, 0, shared), at(3, 0, 0, makeNodeFor(visit)), at(0, -2, 0, makeNodeFor(geometry))});
        const QImage image = picture.draw(root);
        for (const QPoint& place : {QPoint(-3, 2), QPoint(3, 2), QPoint(0, -2)})
            COMPARE_COLOR(colorAt(image, place.x(), place.y()), red);
        COMPARE_COLOR(colorAt(image, 0, 2), black);
        QCOMPARE(picture.action->getStatistics().geometriesBuilt, UInt64(1));
        QCOMPARE(picture.action->getStatistics().geometryChanges, UInt64(1));
    }

    void upperMaterialGroupHolds()
    {
        GLPicture picture;
        const GeometryPtr geometry = GeometryBuilder::square(0.9F);
        geometry->setMaterial(flat(1, 1, 1));
        const auto grouped = [](const MaterialPtr& material, const NodePtr& child) {
            const MaterialGroupPtr core = MaterialGroup::create();
            core->setMaterial(material);
            const NodePtr node = makeNodeFor(core);
            node->addChild(child);
            return node;
        };
        const NodeRefPtr root =
            group({grouped(flat(1, 0, 0), at(-2, 0, 0, makeNodeFor(geometry))),
                   grouped(flat(0, 1, 0), grouped(flat(0, 0, 1), makeNodeFor(geometry))),
                   grouped(NullFC, grouped(flat(0, 0, 1), at(2, 0, 0, makeNodeFor(geometry)))),
                   at(4, 0, 0, makeNodeFor(geometry))});
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, -2, 0), red);
        COMPARE_COLOR(colorAt(image, 0, 0), green);
        COMPARE_COLOR(colorAt(image, 2, 0), blue);
        COMPARE_COLOR(colorAt(image, 4, 0), QColor(255, 255, 255));
        QCOMPARE(picture.action->getStatistics().geometryChanges, UInt64(1));
    }

    void treeInsideItselfIsDrawnOnce()
    {
        GLPicture picture;
        const NodeRefPtr root = group({shape(GeometryBuilder::square(), flat(1, 0, 0))});
        const VisitSubTreePtr visit = VisitSubTree::create();
        visit->setSubTreeRoot(root);
        root->addChild(at(3, 0, 0, makeNodeFor(visit)));
        const QImage image = picture.draw(root);
        COMPARE_COLOR(colorAt(image, 0, 0), red);
        COMPARE_COLOR(colorAt(image, 3, 0), black);
        QCOMPARE(picture.action->getStatistics().shapes, UInt64(1));
    }

    void deepTreesAreDrawn()
    {
        GLPicture picture;
        NodePtr inner = shape(GeometryBuilder::square(), flat(1, 0, 0));
        for (int i = 0; i < 20000; ++i)
            inner = at(0.0001F, 0, 0, inner);
        const NodeRefPtr root = inner;
        COMPARE_COLOR(colorAt(picture.draw(root), 2, 0), red);
    }

    void stateOfOneMaterialDoesNotReachTheNext()
    {
        GLPicture picture;
        const SimpleMaterialPtr odd = flat(1, 1, 1, 0.5F);
        odd->addChunk(texture(quarters()));
        odd->addChunk(texture(quarters()));
        odd->addChunk(LineChunk::create());
        const PolygonChunkPtr polygons = PolygonChunk::create();
        polygons->setFrontMode(PolygonChunk::LINE_MODE);
        polygons->setBackMode(PolygonChunk::POINT_MODE);
        polygons->setOffsetFactor(1);
        odd->addChunk(polygons);
        const BlendChunkPtr blend = BlendChunk::create();
        blend->setAlphaFunc(0x0204);
        blend->setAlphaValue(0.9F);
        odd->addChunk(blend);
        const NodeRefPtr first = group({at(-3, 0, 0, shape(GeometryBuilder::square(), odd)),
                                        shape(GeometryBuilder::square(), flat(0, 1, 0)),
                                        at(3, 0, 0, shape(GeometryBuilder::square(), flat(0, 0, 1, 0.5F)))});
        for (int frame = 0; frame < 2; ++frame) {
            const QImage image = picture.draw(first);
            COMPARE_COLOR(colorAt(image, 0, 0), green);
            COMPARE_COLOR(colorAt(image, 3, 0), QColor(0, 0, 128));
        }
    }

    void everyChangeIsSeenAfterFramesWithoutOne()
    {
        GLPicture picture;
        picture.background->setColor(Color3f(0.3F, 0.3F, 0.3F));
        const GeometryPtr square = GeometryBuilder::square(0.8F);
        const GeoColorsPtr colors = GeoColors::create();
        for (int i = 0; i < 4; ++i)
            colors->addValue(Color4f(1, 1, 0, 1));
        const SimpleMaterialPtr shared = lit(1, 0, 0);
        const RefPtr<SimpleMaterialPtr> spare = flat(0, 1, 1);
        const RefPtr<ImagePtr> image = Image::create();
        const UInt8 opaque[] = {255, 255, 255, 255};
        image->set(Image::OSG_RGBA_PF, 1, 1, 1, 1, 1, 0, opaque);
        const SimpleMaterialPtr textured = flat(1, 1, 1);
        textured->addChunk(texture(image.get()));

        const NodePtr moved = at(-4, 4, 0, shape(GeometryBuilder::square(0.8F), shared));
        const MaterialGroupPtr looks = MaterialGroup::create();
        const NodePtr grouped = makeNodeFor(looks);
        grouped->addChild(at(-2, 4, 0, shape(square, shared)));
        const NodePtr behind = at(0, 4, -1, shape(GeometryBuilder::square(0.8F), flat(0, 0, 1)));
        const NodePtr picked = at(0, 4, 0, shape(GeometryBuilder::square(0.8F), textured));
        const NodePtr removed = at(2, 4, 0, shape(GeometryBuilder::square(0.8F), shared));
        const SwitchPtr choice = Switch::create();
        const NodePtr switched = makeNodeFor(choice);
        switched->addChild(at(4, 4, 0, shape(GeometryBuilder::square(0.8F), shared)));
        const NodePtr home = at(-4, 2, 0, shape(GeometryBuilder::square(0.8F), shared));
        const VisitSubTreePtr visit = VisitSubTree::create();
        const NodePtr visited = at(2, 0, 0, makeNodeFor(visit));
        const PointLightPtr light = PointLight::create();
        const TransformPtr lamp = Transform::create();
        const RefPtr<NodePtr> beacon = makeNodeFor(lamp);
        light->setBeacon(beacon.get());
        const RefPtr<NodePtr> root =
            litBy(light, {moved, grouped, behind, picked, removed, switched, home, visited});
        Matrix matrix;
        matrix.setTranslate(0, 0, 5);
        lamp->setMatrix(matrix);

        const std::vector<std::pair<const char*, std::function<void()>>> changes = {
            {"lamp", [&] { matrix.setTranslate(4, 0, 2), lamp->setMatrix(matrix); }},
            {"light color", [&] { light->setDiffuse(Color4f(0.5F, 1, 1, 1)); }},
            {"range", [&] { light->setRange(5); }},
            {"far range", [&] { light->setRange(20); }},
            {"off", [&] { light->setOn(false); }},
            {"on", [&] { light->setOn(true); }},
            {"move",
             [&] {
                 matrix.setTranslate(-3.5F, 3, 0), TransformPtr::dcast(moved->getCore())->setMatrix(matrix);
             }},
            {"color", [&] { shared->setDiffuse(Color3f(0, 1, 0)); }},
            {"transparency", [&] { shared->setTransparency(0.5F); }},
            {"force opaque", [&] { shared->setTransparencyMode(ChunkMaterial::TransparencyForceOpaque); }},
            {"group material", [&] { looks->setMaterial(spare.get()); }},
            {"no group material", [&] { looks->setMaterial(NullFC); }},
            {"geometry material", [&] { square->setMaterial(spare.get()); }},
            {"vertex colors", [&] { square->setColors(colors); }},
            {"vertex alpha", [&] { colors->editField()[0] = Color4f(1, 0, 0, 0.2F), endEditCP(colors); }},
            {"positions",
             [&] {
                 square->getPositions()->editField()[0] = Pnt3f(-2, -2, 0), endEditCP(square->getPositions());
             }},
            {"image alpha", [&] { image->getData()[3] = 100, endEditCP(image.get()); }},
            {"chunk",
             [&] {
                 textured->addChunk(PolygonChunk::create()),
                     textured->subChunk(textured->findChunk(StateChunk::TEXTURE));
             }},
            {"mask", [&] { picked->setTravMask(0); }},
            {"removed", [&] { root->subChild(removed); }},
            {"added", [&] { root->addChild(at(2, 2, 0, shape(GeometryBuilder::box(0.5F), spare.get()))); }},
            {"switch", [&] { choice->setChoice(0); }},
            {"referred", [&] { visit->setSubTreeRoot(home); }},
            {"core", [&] { home->getChild(0)->setCore(GeometryBuilder::box(0.7F)); }},
            {"camera",
             [&] {
                 matrix.setTranslate(1, 1, 10),
                     TransformPtr::dcast(picture.eye->getCore())->setMatrix(matrix);
             }},
            {"view", [&] { picture.camera->setFov(0.3F); }}};
        for (const auto& change : changes) {
            for (int frame = 0; frame < 3; ++frame)
                picture.draw(root);
            const QImage before = picture.draw(root);
            change.second();
            const QImage after = picture.draw(root);
            const QImage settled = (picture.draw(root), picture.draw(root));
            std::unique_ptr<RenderAction> fresh(RenderAction::create());
            fresh.swap(picture.action);
            const QImage expected = picture.draw(root);
            QVERIFY2(after == expected, change.first);
            QVERIFY2(settled == expected, change.first);
            QVERIFY2(before != after, change.first);
        }
    }

    void changesBelowAStaticVolumeAreSeen()
    {
        GLPicture picture;
        const NodePtr child = shape(GeometryBuilder::square(), flat(1, 0, 0));
        const NodeRefPtr root = group({group({child})});
        root->updateVolume();
        root->getVolume(false).setStatic();
        child->invalidateVolume();
        root->getChild(0)->getVolume(false).setStatic();
        root->getChild(0)->getVolume(false).setValid();
        for (int frame = 0; frame < 3; ++frame)
            COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), red);
        const GeometryPtr other = GeometryBuilder::square();
        other->setMaterial(flat(0, 1, 0));
        child->setCore(other);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), green);
        root->getChild(0)->subChild(child);
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), black);
    }

    void keptTreeMayGo()
    {
        GLPicture picture;
        for (int i = 0; i < 20; ++i) {
            const NodeRefPtr root = shape(GeometryBuilder::square(), i % 2 ? flat(1, 0, 0) : flat(0, 1, 0));
            for (int frame = 0; frame < 3; ++frame)
                COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), i % 2 ? red : green);
        }
    }

    void nothingIsBuiltAnewForAMovingCamera()
    {
        GLPicture picture;
        const NodeRefPtr root = makeNodeFor(Group::create());
        for (int i = 0; i < 50; ++i)
            root->addChild(
                at(static_cast<float>(i - 25), 0, 0, shape(GeometryBuilder::square(0.4F), flat(1, 0, 0))));
        for (int frame = 0; frame < 20; ++frame) {
            Matrix matrix;
            matrix.setTranslate(static_cast<float>(frame), 0, 10);
            TransformPtr::dcast(picture.eye->getCore())->setMatrix(matrix);
            picture.draw(root);
            const RenderStatistics& statistics = picture.action->getStatistics();
            QCOMPARE(statistics.shapes + statistics.culled, UInt64(50));
            QVERIFY(statistics.shapes >= 10 && statistics.shapes <= 12);
        }
    }

    void viewportsStayWithinTheirRectangles()
    {
        GLPicture picture;
        const RefPtr<ViewportPtr> right = Viewport::create();
        const RefPtr<SolidBackgroundPtr> greenGround = SolidBackground::create();
        greenGround->setColor(Color3f(0, 1, 0));
        picture.port->setSize(0, 0, 0.5F, 1);
        picture.background->setColor(Color3f(0, 0, 1));
        right->setSize(0.5F, 0, 1, 0.5F);
        right->setCamera(picture.camera.get());
        right->setBackground(greenGround.get());
        const NodeRefPtr root = shape(GeometryBuilder::square(), flat(1, 0, 0));
        right->setRoot(root);
        picture.window->addPort(right.get());
        QImage image = picture.draw(root);
        COMPARE_COLOR(image.pixelColor(50, 100), red);
        COMPARE_COLOR(image.pixelColor(5, 5), blue);
        COMPARE_COLOR(image.pixelColor(150, 150), red);
        COMPARE_COLOR(image.pixelColor(105, 195), green);
        COMPARE_COLOR(image.pixelColor(150, 50), black);
    }

    void eachWindowHasItsOwnObjects()
    {
        GLPicture first;
        GLPicture second(100, 50);
        const GeometryPtr geometry = GeometryBuilder::square();
        const NodeRefPtr root = shape(geometry, flat(1, 0, 0));
        for (int frame = 0; frame < 2; ++frame) {
            COMPARE_COLOR(colorAt(first.draw(root), 0, 0), red);
            COMPARE_COLOR(colorAt(second.draw(root), 0, 0), red);
            QCOMPARE(second.action->getStatistics().geometriesBuilt, UInt64(frame == 0));
        }
        // What goes between frames is freed in the next frame of each window.
        root->setCore(GeometryBuilder::square(2));
        COMPARE_COLOR(colorAt(second.draw(root), 1.5F, 0), QColor(0, 0, 0));
        GeometryPtr::dcast(root->getCore())->setMaterial(flat(0, 1, 0));
        COMPARE_COLOR(colorAt(first.draw(root), 1.5F, 0), green);
        COMPARE_COLOR(colorAt(second.draw(root), 1.5F, 0), green);
    }

    void objectsOfALostWindowAreForgotten()
    {
        const GeometryPtr geometry = GeometryBuilder::square();
        const NodeRefPtr root = shape(geometry, flat(1, 0, 0));
        {
            GLPicture picture;
            picture.draw(root);
            picture.context.doneCurrent();
            picture.window = RefPtr<PassiveWindowPtr>();
        }
        geometry->setNormals(NullFC);
        GLPicture picture;
        COMPARE_COLOR(colorAt(picture.draw(root), 0, 0), red);
    }

    void windowMayMoveToAnotherContext()
    {
        GLPicture picture;
        const NodeRefPtr root = shape(GeometryBuilder::square(), flat(1, 0, 0));
        picture.draw(root);
        GLContext other;
        picture.window->draw(picture.action.get());
        COMPARE_COLOR(colorAt(other.picture(), 0, 0), red);
    }

    void withoutContextAFrameIsSkipped()
    {
        GLPicture picture;
        const NodeRefPtr root = shape(GeometryBuilder::square(), flat(1, 0, 0));
        picture.port->setRoot(root);
        picture.context.doneCurrent();
        picture.window->resize(100, 100);
        picture.window->draw(picture.action.get());
        picture.window->resizeGL();
        QVERIFY(picture.window->isResizePending());
        QCOMPARE(picture.action->getStatistics().shapes, UInt64(0));
        picture.context.makeCurrent();
        picture.window->draw(picture.action.get());
        QVERIFY(!picture.window->isResizePending());
        QCOMPARE(picture.action->getStatistics().shapes, UInt64(1));
    }

    void noErrorIsLeft()
    {
        GLPicture picture;
        const SimpleMaterialPtr material = lit(1, 1, 1);
        material->addChunk(texture(quarters()));
        material->addChunk(TextureTransformChunk::create());
        material->addChunk(BlendChunk::create());
        material->addChunk(PolygonChunk::create());
        material->addChunk(LineChunk::create());
        material->addChunk(PointChunk::create());
        const NodeRefPtr root = litBy(SpotLight::create(), {shape(GeometryBuilder::box(), material),
                                                            shape(Geometry::create(), material)});
        picture.draw(root);
        // The frame itself asks and reports; a second look must find nothing either.
        QCOMPARE(QOpenGLContext::currentContext()->functions()->glGetError(), GLenum(GL_NO_ERROR));
    }

    void missingPartsLeaveTheWindowAlone()
    {
        GLPicture picture;
        picture.draw(NullFC);
        picture.port->setCamera(NullFC);
        const NodeRefPtr root = shape(GeometryBuilder::square(), flat(1, 0, 0));
        picture.draw(root);
        QCOMPARE(picture.action->getStatistics().shapes, UInt64(0));
        picture.window->renderAllViewports(nullptr);
        QCOMPARE(picture.action->apply(root), Action::Quit);
    }
};

QTEST_MAIN(tst_RenderAction)
#include "tst_RenderAction.moc"
