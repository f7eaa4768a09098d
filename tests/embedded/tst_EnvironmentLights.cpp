#include "SceneDrawing.h"
#include "core/EnvironmentMap.h"
#include <cmath>
#include <memory>

using namespace Orvane;

/// The light of what stands around, on physical materials.
class tst_EnvironmentLights : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void coefficientsLightMattFaces();
    void sidesHaveTheirLight_data();
    void sidesHaveTheirLight();
    void whiteSurroundingsShowTheBaseColor_data();
    void whiteSurroundingsShowTheBaseColor();
    void smoothMetalMirrorsWhatIsBehindTheEye();
    void roughFacesMirrorTheWholeAround();
    void rotationTurnsTheSurroundings();
    void fieldsAreFollowed();
    void lightIsThatOfItsGroup();
    void lightStaysWhereOthersCome();
    void firstLightCounts();
    void otherMaterialsTakeNoPart();
    void badValuesAreHarmless();
    void flatAndMissingTexturesAreDark();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

const std::string Matt = "material DEF M PhysicalMaterial { baseColor 1 1 1 metallic 0 roughness 1 }";
const std::string Mirror = "material DEF M PhysicalMaterial { baseColor 1 1 1 metallic 1 roughness 0 }";

/// A cube of one colour to each side; to +x, -x, +y, -y, +z and -z.
std::string cube(const std::array<const char*, 6>& colors)
{
    const char* const names[] = {"right", "left", "top", "bottom", "back", "front"};
    std::string result = "ComposedCubeMapTexture { ";
    for (std::size_t i = 0; i < 6; ++i)
        result += std::string(names[i]) + "Texture PixelTexture { image 1 1 3 0x" + colors[i] + " } ";
    return result + "} ";
}

std::string plainCube(const char* color)
{
    return cube({color, color, color, color, color, color});
}

std::string light(const std::string& fields)
{
    return "DEF L EnvironmentLight { " + fields + " } ";
}

/// As a screen shows that much light.
int shown(double light)
{
    return qRound(255 * std::pow(qBound(0.0, light, 1.0), 1 / 2.2));
}

} // namespace

void tst_EnvironmentLights::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_EnvironmentLights::coefficientsLightMattFaces()
{
    // The same from all sides, of which a matt face throws back one part in pi.
    std::string numbers = "1 2 4";
    for (int i = 0; i < 24; ++i)
        numbers += " 0";
    CoreScene scene((light("diffuseCoefficients [ " + numbers + " ]") + squareWith(Matt)).c_str());
    const double share = 0.282095 * 0.96 / M_PI;
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(shown(share), shown(2 * share), shown(4 * share)));
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_EnvironmentLights::sidesHaveTheirLight_data()
{
    QTest::addColumn<int>("term");
    QTest::addColumn<QByteArray>("rotation");
    QTest::addColumn<double>("factor");
    // What faces +z, to which the square is turned.
    QTest::newRow("z") << 2 << QByteArray("0 1 0 0") << 0.488603;
    QTest::newRow("y") << 1 << QByteArray("0 1 0 0") << 0.0;
    QTest::newRow("x") << 3 << QByteArray("0 1 0 0") << 0.0;
    QTest::newRow("zz") << 6 << QByteArray("0 1 0 0") << 2 * 0.315392;
    // Turned by 60 degrees to the right, and up.
    QTest::newRow("x turned") << 3 << QByteArray("0 1 0 1.0472") << 0.488603 * 0.866025;
    QTest::newRow("y turned") << 1 << QByteArray("1 0 0 -1.0472") << 0.488603 * 0.866025;
    QTest::newRow("xz turned") << 7 << QByteArray("0 1 0 1.0472") << 1.092548 * 0.866025 * 0.5;
    QTest::newRow("yz turned") << 5 << QByteArray("1 0 0 -1.0472") << 1.092548 * 0.866025 * 0.5;
    QTest::newRow("xx turned") << 8 << QByteArray("0 1 0 1.0472") << 0.546274 * 0.75;
}

void tst_EnvironmentLights::sidesHaveTheirLight()
{
    QFETCH(int, term);
    QFETCH(QByteArray, rotation);
    QFETCH(double, factor);
    std::string numbers;
    for (int i = 0; i < 27; ++i)
        numbers += i / 3 == term ? "2 " : "0 ";
    CoreScene scene((light("diffuseCoefficients [ " + numbers + " ]") + "Transform { rotation " +
                     rotation.toStdString() + " children " + squareWith(Matt) + " }")
                        .c_str());
    const int grey = shown(2 * factor * 0.96 / M_PI);
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(grey, grey, grey));
}

void tst_EnvironmentLights::whiteSurroundingsShowTheBaseColor_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("scattered") << QByteArray("diffuseTexture");
    QTest::newRow("seen") << QByteArray("specularTexture");
}

void tst_EnvironmentLights::whiteSurroundingsShowTheBaseColor()
{
    QFETCH(QByteArray, field);
    CoreScene scene((light(field.toStdString() + " " + plainCube("FFFFFF")) +
                     squareWith("material PhysicalMaterial { baseColor 0.5 0.5 0.5 metallic 0 roughness 1 }"))
                        .c_str());
    const QColor color = _drawing->middleOf(scene, false);
    // What is mirrored comes on top.
    QVERIFY2(color.red() >= shown(0.48) - 4 && color.red() <= shown(0.55), qPrintable(color.name()));
}

void tst_EnvironmentLights::smoothMetalMirrorsWhatIsBehindTheEye()
{
    CoreScene scene(
        (light("specularTexture " + cube({"FF0000", "00FFFF", "00FF00", "FF00FF", "0000FF", "FFFF00"})) +
         "DEF T Transform { children " + squareWith(Mirror) + " }")
            .c_str());
    const QColor behind = _drawing->middleOf(scene, false);
    QVERIFY2(behind.blue() > 240 && behind.red() < 30 && behind.green() < 30, qPrintable(behind.name()));
    // Turned by half a right angle it shows what is to the right, and what is above.
    scene.set("T", "rotation", "0 1 0 0.7854");
    const QColor right = _drawing->middleOf(scene, false);
    QVERIFY2(right.red() > 240 && right.green() < 30 && right.blue() < 30, qPrintable(right.name()));
    scene.set("T", "rotation", "1 0 0 -0.7854");
    const QColor above = _drawing->middleOf(scene, false);
    QVERIFY2(above.green() > 240 && above.red() < 30 && above.blue() < 30, qPrintable(above.name()));
}

void tst_EnvironmentLights::roughFacesMirrorTheWholeAround()
{
    std::string side = "PixelTexture { image 4 4 3";
    for (int i = 0; i < 16; ++i)
        side += (i + i / 4) % 2 == 0 ? " 0xFFFFFF" : " 0x000000";
    side += " } ";
    std::string map = "ComposedCubeMapTexture { ";
    for (const char* name : {"right", "left", "top", "bottom", "back", "front"})
        map += std::string(name) + "Texture " + side;
    // A ball shows nearly all of it.
    CoreScene scene((light("specularTexture " + map + "}") + "Shape { appearance Appearance { " + Mirror +
                     " } geometry Sphere { radius 2 } }")
                        .c_str());
    const auto contrast = [&] {
        int least = 255;
        int most = 0;
        const QImage image = _drawing->draw(scene, false);
        for (int x = 70; x < 130; ++x) {
            least = qMin(least, image.pixelColor(x, 105).red());
            most = qMax(most, image.pixelColor(x, 105).red());
        }
        return most - least;
    };
    const int smooth = contrast();
    QVERIFY2(smooth > 100, QByteArray::number(smooth).constData());
    scene.set("M", "roughness", "1");
    const int rough = contrast();
    QVERIFY2(rough < smooth / 4, QByteArray::number(rough).constData());
}

void tst_EnvironmentLights::rotationTurnsTheSurroundings()
{
    CoreScene scene(
        (light("specularTexture " + cube({"FF0000", "00FFFF", "00FF00", "FF00FF", "0000FF", "FFFF00"})) +
         squareWith(Mirror))
            .c_str());
    // What was to the right (red) comes behind the eye.
    scene.set("L", "rotation", "0 1 0 -1.5708");
    const QColor color = _drawing->middleOf(scene, false);
    QVERIFY2(color.red() > 240 && color.blue() < 30, qPrintable(color.name()));
}

void tst_EnvironmentLights::fieldsAreFollowed()
{
    CoreScene scene((light("specularTexture DEF C " + plainCube("FFFFFF")) + squareWith(Mirror)).c_str());
    QVERIFY(_drawing->middleOf(scene, false).red() > 240);
    scene.set("L", "color", "1 0 0");
    QVERIFY(_drawing->middleOf(scene, false).green() < 6);
    scene.set("L", "intensity", "0.5");
    const QColor half = _drawing->middleOf(scene, false);
    QVERIFY2(qAbs(half.red() - shown(0.5)) < 12, qPrintable(half.name()));
    scene.set("L", "on", "FALSE");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
    scene.set("L", "on", "TRUE");
    scene.set("L", "specularTexture", "NULL");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
}

void tst_EnvironmentLights::lightIsThatOfItsGroup()
{
    CoreScene scene(("Group { children [ " + light("specularTexture " + plainCube("FFFFFF")) +
                     "Transform { translation 3 0 0 children Shape { appearance Appearance { " + Mirror +
                     " } geometry Box { } } } ] } " +
                     squareWith("material PhysicalMaterial { metallic 1 roughness 0 }"))
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
    QVERIFY(_drawing->at(scene, 3, 0, false).red() > 240);
    scene.set("L", "global", "TRUE");
    QVERIFY(_drawing->middleOf(scene, false).red() > 240);
}

void tst_EnvironmentLights::lightStaysWhereOthersCome()
{
    const std::string ball = " Shape { appearance Appearance { " + Mirror + " } geometry Sphere { } } ";
    CoreScene scene(
        (light("global TRUE specularTexture " + plainCube("FFFFFF")) + ball +
         "Transform { translation 3 0 0 children [ DirectionalLight { intensity 0 }" + ball + "] }" +
         "Transform { translation -3 0 0 children [ PointLight { global FALSE intensity 0 }" + ball + "] }")
            .c_str());
    QVERIFY(_drawing->middleOf(scene, false).red() > 240);
    QVERIFY(_drawing->at(scene, 3, 0, false).red() > 240);
    QVERIFY(_drawing->at(scene, -3, 0, false).red() > 240);
}

void tst_EnvironmentLights::firstLightCounts()
{
    CoreScene scene((light("specularTexture " + plainCube("FF0000")) + "EnvironmentLight { specularTexture " +
                     plainCube("00FF00") + "} " + squareWith(Mirror))
                        .c_str());
    const QColor color = _drawing->middleOf(scene, false);
    QVERIFY2(color.red() > 240 && color.green() < 6, qPrintable(color.name()));
}

void tst_EnvironmentLights::otherMaterialsTakeNoPart()
{
    CoreScene scene((light("ambientIntensity 1 specularTexture " + plainCube("FFFFFF")) +
                     squareWith("material Material { diffuseColor 1 1 1 specularColor 1 1 1 }"))
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
}

void tst_EnvironmentLights::badValuesAreHarmless()
{
    std::string numbers = "nan inf -inf";
    for (int i = 0; i < 24; ++i)
        numbers += " -1e38";
    CoreScene scene((light("diffuseCoefficients [ " + numbers + " ]") + squareWith(Matt)).c_str());
    scene.set("L", "rotation", "nan 0 0 nan");
    _drawing->draw(scene, false);
    scene.set("L", "diffuseCoefficients", "1 2 3");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("L", "color", "nan nan nan");
    scene.set("L", "intensity", "inf");
    _drawing->draw(scene, false);
    QCOMPARE(_drawing->error(), 0U);
}

void tst_EnvironmentLights::flatAndMissingTexturesAreDark()
{
    CoreScene scene(
        (light("diffuseTexture ImageCubeMapTexture { } specularTexture ComposedCubeMapTexture { }") +
         squareWith(Matt))
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0));
    QVERIFY(!irradianceOf(osg::NullFC, EnvironmentMap::SEEN));
    QVERIFY(!irradianceOf(osg::Image::create(), EnvironmentMap::SEEN));
    QVERIFY(!irradianceOf(std::vector<float>(26)));
}

QTEST_MAIN(tst_EnvironmentLights)
#include "tst_EnvironmentLights.moc"
