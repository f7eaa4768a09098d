#include "SceneDrawing.h"
#include <memory>

using namespace Orvane;

/// Textures of the two sides of a surface.
class tst_BackTextures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sidesHaveTheirTextures_data();
    void sidesHaveTheirTextures();
    void commonTextureIsOnBothSides();
    void sidesHaveTheirNormals();
    void sidesHaveTheirOcclusion();
    void fieldsAreFollowed();
    void tooManyTexturesAreReported();

private:
    /// The middle of the front, then of the back.
    std::pair<QColor, QColor> sidesOf(const CoreScene& scene);

    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

std::string pixel(const std::string& color)
{
    return "PixelTexture { image 1 1 3 0x" + color + " } ";
}

std::string turning(const std::string& appearance)
{
    return "DEF T Transform { children " + squareWith(appearance) + " }";
}

} // namespace

void tst_BackTextures::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

std::pair<QColor, QColor> tst_BackTextures::sidesOf(const CoreScene& scene)
{
    scene.set("T", "rotation", "0 1 0 0");
    const QColor front = _drawing->middleOf(scene);
    scene.set("T", "rotation", "0 1 0 3.1415927");
    return {front, _drawing->middleOf(scene)};
}

void tst_BackTextures::sidesHaveTheirTextures_data()
{
    QTest::addColumn<QByteArray>("front");
    QTest::addColumn<QByteArray>("back");
    QTest::addColumn<QColor>("frontColor");
    QTest::addColumn<QColor>("backColor");
    const auto row = [](const char* name, const std::string& front, const std::string& back,
                        const QColor& frontColor, const QColor& backColor) {
        QTest::newRow(name) << QByteArray::fromStdString(front) << QByteArray::fromStdString(back)
                            << frontColor << backColor;
    };
    const QColor red(0xFF, 0, 0);
    const QColor green(0, 0xFF, 0);
    const QColor white(0xFF, 0xFF, 0xFF);
    const std::string lit = "Material { diffuseColor 1 1 1 ";
    const std::string dark = "Material { diffuseColor 0 0 0 emissiveColor 1 1 1 ";
    const std::string unlit = "UnlitMaterial { emissiveColor 1 1 1 ";
    const std::string physical = "PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 1 1 ";
    row("two", lit + "diffuseTexture " + pixel("FF0000"), lit + "diffuseTexture " + pixel("00FF00"), red,
        green);
    row("front only", lit + "diffuseTexture " + pixel("FF0000"), lit, red, white);
    row("back only", lit, lit + "diffuseTexture " + pixel("00FF00"), white, green);
    row("glow", dark + "emissiveTexture " + pixel("FF0000"), dark + "emissiveTexture " + pixel("00FF00"), red,
        green);
    row("unlit", unlit + "emissiveTexture " + pixel("FF0000"), unlit + "emissiveTexture " + pixel("00FF00"),
        red, green);
    row("physical", physical + "emissiveTexture " + pixel("FF0000"),
        physical + "emissiveTexture " + pixel("00FF00"), red, green);
}

void tst_BackTextures::sidesHaveTheirTextures()
{
    QFETCH(QByteArray, front);
    QFETCH(QByteArray, back);
    QFETCH(QColor, frontColor);
    QFETCH(QColor, backColor);
    CoreScene scene(
        turning("material " + front.toStdString() + "} backMaterial " + back.toStdString() + "}").c_str());
    const auto sides = sidesOf(scene);
    COMPARE_DRAWN(sides.first, frontColor);
    COMPARE_DRAWN(sides.second, backColor);
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_BackTextures::commonTextureIsOnBothSides()
{
    CoreScene scene(
        turning("texture " + pixel("FF8040") +
                "material Material { diffuseColor 1 0 0 } backMaterial Material { diffuseColor 0 1 1 }")
            .c_str());
    auto sides = sidesOf(scene);
    COMPARE_DRAWN(sides.first, QColor(0xFF, 0, 0));
    COMPARE_DRAWN(sides.second, QColor(0, 0x80, 0x40));
    // The one stands in where a material has none of its own.
    CoreScene mixed(turning("texture " + pixel("FF8040") +
                            "material Material { diffuseColor 1 1 1 } backMaterial "
                            "Material { diffuseColor 1 1 1 diffuseTexture " +
                            pixel("00FF00") + "}")
                        .c_str());
    sides = sidesOf(mixed);
    COMPARE_DRAWN(sides.first, QColor(0xFF, 0x80, 0x40));
    COMPARE_DRAWN(sides.second, QColor(0, 0xFF, 0));
}

void tst_BackTextures::sidesHaveTheirNormals()
{
    // 60 degrees to the side: the light of the eye arrives by a half.
    CoreScene scene(
        turning("material Material { diffuseColor 1 1 1 } backMaterial DEF B Material { diffuseColor 1 1 "
                "1 normalTexture " +
                pixel("EE80BF") + "}")
            .c_str());
    auto sides = sidesOf(scene);
    COMPARE_DRAWN(sides.first, QColor(0xFF, 0xFF, 0xFF));
    COMPARE_DRAWN(sides.second, QColor(0x80, 0x80, 0x80));
    scene.set("B", "normalScale", "0");
    sides = sidesOf(scene);
    COMPARE_DRAWN(sides.second, QColor(0xFF, 0xFF, 0xFF));
}

void tst_BackTextures::sidesHaveTheirOcclusion()
{
    CoreScene scene(
        turning("material Material { diffuseColor 1 1 1 occlusionStrength 0.5 occlusionTexture DEF O " +
                pixel("000000") + "} backMaterial Material { diffuseColor 1 1 1 occlusionTexture USE O }")
            .c_str());
    const auto sides = sidesOf(scene);
    COMPARE_DRAWN(sides.first, QColor(0x80, 0x80, 0x80));
    COMPARE_DRAWN(sides.second, QColor(0, 0, 0));
}

void tst_BackTextures::fieldsAreFollowed()
{
    CoreScene scene(
        turning("material Material { diffuseColor 1 1 1 } backMaterial DEF B Material { diffuseColor 1 1 "
                "1 diffuseTexture DEF P " +
                pixel("00FF00") + "}")
            .c_str());
    scene.set("P", "image", "1 1 3 0x0000FF");
    COMPARE_DRAWN(sidesOf(scene).second, QColor(0, 0, 0xFF));
    scene.set("B", "diffuseTexture", "NULL");
    COMPARE_DRAWN(sidesOf(scene).second, QColor(0xFF, 0xFF, 0xFF));
    scene.set("A", "backMaterial", "NULL");
    COMPARE_DRAWN(sidesOf(scene).second, QColor(0xFF, 0xFF, 0xFF));
}

void tst_BackTextures::tooManyTexturesAreReported()
{
    std::string material = "PhysicalMaterial { ";
    for (const char* field : {"base", "emissive", "metallicRoughness", "normal", "occlusion"})
        material += std::string(field) + "Texture " + pixel("FFFFFF");
    CoreScene scene(turning("material " + material + "} backMaterial " + material + "}").c_str());
    sidesOf(scene);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(_drawing->error(), 0U);
}

QTEST_MAIN(tst_BackTextures)
#include "tst_BackTextures.moc"
