#include "SceneDrawing.h"
#include <memory>

using namespace Orvane;

/// Lights that are so near to a shape that they change over its faces.
class tst_NearLights : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void spotIsSeenOnAFace();
    void spotFadesBetweenItsAngles();
    void pointLightEndsAtItsRadius();
    void attenuationIsThatOfThePlace();
    void highlightIsSeenOnAFace();
    void textureIsTinted();
    void lightsAreFollowed();
    void farLightsAreLeftToFixedSteps();
    void shapesOfOneSurfaceMayDiffer();
    void fogLiesOverLitFaces();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

/// A face of side 8 at z = 0.
std::string face(const std::string& appearance)
{
    return "Transform { scale 4 4 4 children " + squareWith(appearance) + " }";
}

const std::string White = "material DEF M Material { diffuseColor 1 1 1 } ";

QColor grey(double share)
{
    const int value = qRound(255 * share);
    return QColor(value, value, value);
}

} // namespace

void tst_NearLights::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_NearLights::spotIsSeenOnAFace()
{
    CoreScene scene(("SpotLight { location 0 0 2 cutOffAngle 0.5 beamWidth 0.5 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), grey(1));
    COMPARE_DRAWN(_drawing->at(scene, 0.9, 0, false), grey(0.91)); // 2 / sqrt(4.81)
    COMPARE_DRAWN(_drawing->at(scene, 1.3, 0, false), grey(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_NearLights::spotFadesBetweenItsAngles()
{
    // At 2 from below the light the angle is pi / 4; the cosine of the normal is 0.707.
    CoreScene scene(
        ("DEF L SpotLight { location 0 0 2 cutOffAngle 1.0 beamWidth 0.5 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0.707 * (1.0 - 0.785) / 0.5));
    scene.set("L", "beamWidth", "0.9");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0.707));
    scene.set("L", "cutOffAngle", "0.7");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0));
}

void tst_NearLights::pointLightEndsAtItsRadius()
{
    CoreScene scene(("DEF L PointLight { location 0 0 1 radius 2 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->at(scene, 1.5, 0, false), grey(0.555));
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0));
    scene.set("L", "radius", "3");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0.447));
}

void tst_NearLights::attenuationIsThatOfThePlace()
{
    CoreScene scene(("PointLight { location 0 0 1 attenuation 0 0 1 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), grey(1));
    COMPARE_DRAWN(_drawing->at(scene, 1, 0, false), grey(0.707 / 2));
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0.447 / 5));
}

void tst_NearLights::highlightIsSeenOnAFace()
{
    CoreScene scene(("PointLight { location 0 0 2 } " +
                     face("material Material { diffuseColor 0 0 0 specularColor 1 0 0 shininess 0.5 }"))
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(255, 0, 0));
    COMPARE_DRAWN(_drawing->at(scene, 3, 0, false), QColor(0, 0, 0));
}

void tst_NearLights::textureIsTinted()
{
    CoreScene scene(
        ("PointLight { location 0 0 1 } " + face(White + "texture PixelTexture { image 1 1 3 0x80FF00 }"))
            .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0xFF, 0));
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), QColor(57, 114, 0));
}

void tst_NearLights::lightsAreFollowed()
{
    CoreScene scene(("DEF L PointLight { location 0 0 1 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(0.447));
    scene.set("L", "location", "2 0 1");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), grey(1));
    scene.set("L", "color", "1 0 0");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), QColor(255, 0, 0));
    scene.set("L", "on", "FALSE");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), QColor(0, 0, 0));
    scene.set("L", "on", "TRUE");
    scene.set("M", "diffuseColor", "0.5 0 0");
    COMPARE_DRAWN(_drawing->at(scene, 2, 0, false), QColor(128, 0, 0));
}

void tst_NearLights::farLightsAreLeftToFixedSteps()
{
    // The corners are lit alike from far away; a cone far off still shows.
    CoreScene scene(("DEF L PointLight { location 0 0 80 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), grey(1));
    CoreScene cone(("SpotLight { location 0 0 80 cutOffAngle 0.02 beamWidth 0.02 } " + face(White)).c_str());
    COMPARE_DRAWN(_drawing->middleOf(cone, false), grey(1));
    COMPARE_DRAWN(_drawing->at(cone, 2, 0, false), grey(0));
}

void tst_NearLights::shapesOfOneSurfaceMayDiffer()
{
    // One is near the light, the other takes the same colours from afar.
    CoreScene scene(
        "PointLight { location -3 0 1 attenuation 0 0 1 } Transform { translation -3 0 0 children DEF S "
        "Shape { appearance Appearance { material Material { diffuseColor 1 1 1 } } geometry Box { "
        "size 2 2 0.01 } } } Transform { translation 3 0 0 scale 0.1 0.1 0.1 children USE S } "
        "Transform { translation -3 3 0 scale 0.1 0.1 0.1 children USE S }");
    COMPARE_DRAWN(_drawing->at(scene, -3, 0, false), grey(1));
    COMPARE_DRAWN(_drawing->at(scene, -2.1, 0, false), grey(0.41));
    COMPARE_DRAWN(_drawing->at(scene, 3, 0, false), grey(0));
    COMPARE_DRAWN(_drawing->at(scene, -3, 3, false), grey(0.032));
}

void tst_NearLights::fogLiesOverLitFaces()
{
    const std::string lit = "PointLight { location 0 0 1 } " + face(White);
    for (const char* kind : {"LINEAR", "EXPONENTIAL"}) {
        const std::string fog =
            std::string("Fog { color 0 0 1 visibilityRange 15 fogType \"") + kind + "\" } ";
        CoreScene near((fog + lit).c_str());
        CoreScene plain((fog + face("material UnlitMaterial { emissiveColor 1 1 1 }")).c_str());
        COMPARE_DRAWN(_drawing->middleOf(near, false), _drawing->middleOf(plain, false));
    }
}

QTEST_MAIN(tst_NearLights)
#include "tst_NearLights.moc"
