#include "../opensg/GLPicture.h"
#include "CoreScene.h"
#include "base/ValueFields.h"
#include "core/ViewFollower.h"
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGSkyBackground.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFFloat.h>
#include <QtTest>
#include <cmath>
#include <limits>
#include <memory>

using namespace Orvane;

/// What surrounds shapes, and acts on them from outside, as pictures. The viewer stands at (0, 0, 10) and
/// looks along -z; at z = 0 the picture shows x and y from -5 to 5.
class tst_Environment : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void skyRunsFromTopToBottom();
    void groundEndsAtItsLastAngle();
    void skyTurnsWithTheView();
    void skyTurnsWithItsGroup();
    void sidesOfTheBoxStandAroundTheViewer_data();
    void sidesOfTheBoxStandAroundTheViewer();
    void textureBackgroundShowsItsTextures();
    void seeThroughPictureShowsTheSky();
    void skyFollowsEdits();
    void anotherBackgroundIsBound();
    void parallelViewShowsTheSky();
    void badSkyIsHarmless();
    void manyColorsAreHarmless();
    void linearFogGrowsWithTheDistance();
    void exponentialFogGrowsFasterBehind();
    void fogIsAsLargeAsItsGroup();
    void boundFogComesAndGoes();
    void localFogLiesOverItsGroup();
    void localFogMayBeSwitchedOff();
    void clipPlaneCutsItsGroup();
    void clipPlaneMovesWithItsGroup();
    void cutPartsAreNotHit();
    void badFogAndPlanesAreHarmless();
    void billboardTurnsRoundItsAxis();
    void billboardWithoutAxisFacesTheViewer();
    void billboardBelowATransformFacesTheViewer();
    void unitOfAScreenGroupIsAPixel();

private:
    /// Draws what the scene's nodes ask for.
    QImage draw(const CoreScene& scene);
    /// Turns the viewer on the spot: -z of the camera looks along \a ahead.
    void look(const osg::Vec3f& ahead, const osg::Vec3f& up);
    /// The colour at a place of z = 0.
    static QColor at(const QImage& image, double x, double y)
    {
        return image.pixelColor(qRound((x + 5) * 20), qRound((5 - y) * 20));
    }
    static bool isNear(const QColor& a, const QColor& b)
    {
        constexpr int Tolerance = 12;
        return qAbs(a.red() - b.red()) < Tolerance && qAbs(a.green() - b.green()) < Tolerance &&
               qAbs(a.blue() - b.blue()) < Tolerance;
    }

    std::unique_ptr<GLPicture> _picture;
};

void tst_Environment::initTestCase()
{
    _picture = std::make_unique<GLPicture>();
    QVERIFY(_picture->context.isValid());
}

QImage tst_Environment::draw(const CoreScene& scene)
{
    DrawnView view;
    view.cameraToWorld = _picture->eye->getToWorld();
    view.pixelSize = 0.005F;
    scene.proc().state().followView(view);
    _picture->port->setBackground(scene.proc().view().background);
    const QImage image = _picture->draw(scene.proc().root());
    _picture->port->setBackground(_picture->background.get());
    return image;
}

void tst_Environment::look(const osg::Vec3f& ahead, const osg::Vec3f& up)
{
    const osg::Vec3f right = ahead.cross(up);
    osg::Matrix place;
    for (osg::UInt32 row = 0; row < 3; ++row) {
        place[0][row] = right[row];
        place[1][row] = up[row];
        place[2][row] = -ahead[row];
    }
    place[3].setValues(0, 0, 10, 1);
    osg::TransformPtr::dcast(_picture->eye->getCore())->setMatrix(place);
}

void tst_Environment::skyRunsFromTopToBottom()
{
    // The picture reaches from 63 to 117 degrees from the top.
    CoreScene scene("Background { skyColor [ 0 0 1, 1 0 0, 0 1 0 ] skyAngle [ 1.3 1.5707963 ] }");
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, 0, -3), Qt::green));
    QVERIFY(isNear(at(image, 0, -0.1), Qt::green));
    // Half way between two angles half of both colours.
    const double middle = std::tan((1.5707963 - 1.3) / 2) * 10;
    QVERIFY(isNear(at(image, 0, middle), QColor(128, 128, 0)));
    QVERIFY(isNear(at(image, 0, std::tan(1.5707963 - 1.3) * 10), Qt::red));
}

void tst_Environment::groundEndsAtItsLastAngle()
{
    CoreScene scene("Background { skyColor 0 0 1 groundColor [ 0 1 0, 1 0 0 ] groundAngle 1.5 }");
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    const double edge = -std::tan(1.5707963 - 1.5) * 10;
    QVERIFY(isNear(at(image, 0, edge + 0.1), Qt::blue));
    QVERIFY(at(image, 0, edge - 0.1).red() > 230);
    look({0, -1, 0}, {0, 0, -1});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::green));
}

void tst_Environment::skyTurnsWithTheView()
{
    CoreScene scene("Background { skyColor [ 0 0 1, 1 0 0 ] skyAngle 1.5 }");
    look({0, 1, 0}, {0, 0, 1});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::blue));
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, -1), Qt::red));
}

void tst_Environment::skyTurnsWithItsGroup()
{
    // Moves and sizes of the group do not count.
    CoreScene scene("Transform { rotation 1 0 0 -1.5707963 translation 100 5 7 scale 3 3 3 "
                    "children Background { skyColor [ 0 0 1, 1 0 0 ] skyAngle 1.5 } }");
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::blue));
}

void tst_Environment::sidesOfTheBoxStandAroundTheViewer_data()
{
    QTest::addColumn<QVector<double>>("ahead");
    QTest::addColumn<QVector<double>>("up");
    QTest::addColumn<QString>("side");
    QTest::newRow("front") << QVector<double>{0, 0, -1} << QVector<double>{0, 1, 0} << "front";
    QTest::newRow("back") << QVector<double>{0, 0, 1} << QVector<double>{0, 1, 0} << "back";
    QTest::newRow("left") << QVector<double>{-1, 0, 0} << QVector<double>{0, 1, 0} << "left";
    QTest::newRow("right") << QVector<double>{1, 0, 0} << QVector<double>{0, 1, 0} << "right";
    QTest::newRow("top") << QVector<double>{0, 1, 0} << QVector<double>{0, 0, 1} << "top";
    QTest::newRow("bottom") << QVector<double>{0, -1, 0} << QVector<double>{0, 0, -1} << "bottom";
}

void tst_Environment::sidesOfTheBoxStandAroundTheViewer()
{
    QFETCH(QVector<double>, ahead);
    QFETCH(QVector<double>, up);
    QFETCH(QString, side);
    // Two rows of two pixels, the lower row first: red, green; blue, white.
    const std::string text = "TextureBackground { " + side.toStdString() +
                             "Texture PixelTexture { image 2 2 3 0xFF0000 0x00FF00 0x0000FF 0xFFFFFF } }";
    CoreScene scene(text.c_str());
    const auto vector = [](const QVector<double>& v) {
        return osg::Vec3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
    };
    look(vector(ahead), vector(up));
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, -4.9, -4.9), QColor(255, 0, 0)));
    QVERIFY(isNear(at(image, 4.9, -4.9), QColor(0, 255, 0)));
    QVERIFY(isNear(at(image, -4.9, 4.9), QColor(0, 0, 255)));
    QVERIFY(isNear(at(image, 4.9, 4.9), QColor(255, 255, 255)));
}

void tst_Environment::textureBackgroundShowsItsTextures()
{
    CoreScene scene("TextureBackground { skyColor 1 1 1 "
                    "frontTexture DEF T PixelTexture { image 1 1 3 0xFF0000 } }");
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::red));
    scene.set("T", "image", "1 1 3 0x00FF00");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::green));
    scene.set("T", "image", "0 0 0");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::white));
}

void tst_Environment::seeThroughPictureShowsTheSky()
{
    CoreScene scene("TextureBackground { skyColor 0 0 1 "
                    "frontTexture PixelTexture { image 1 1 4 0xFF000080 } }");
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), QColor(128, 0, 127)));
}

void tst_Environment::skyFollowsEdits()
{
    CoreScene scene("DEF B Background { skyColor 0 0 1 } Shape { geometry Box { } }");
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 3, 1), Qt::blue));
    scene.set("B", "skyColor", "[1 0 0, 0 1 0]");
    scene.set("B", "skyAngle", "1.5");
    QVERIFY(isNear(at(draw(scene), 3, -1), Qt::green));
    scene.set("B", "groundColor", "[1 1 1, 1 1 1]");
    scene.set("B", "groundAngle", "1.57");
    QVERIFY(isNear(at(draw(scene), 3, -1), Qt::white));
}

void tst_Environment::anotherBackgroundIsBound()
{
    CoreScene scene("DEF A Background { skyColor 1 0 0 } DEF B Background { skyColor 0 1 0 }");
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::red));
    scene.set("B", "set_bind", "TRUE");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::green));
    scene.set("B", "set_bind", "FALSE");
    scene.set("A", "set_bind", "FALSE");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::black));
}

void tst_Environment::parallelViewShowsTheSky()
{
    CoreScene scene("Background { skyColor [ 0 0 1, 1 0 0 ] skyAngle 1.5 groundColor [ 0 1 0, 0 1 0 ] "
                    "groundAngle 1.5 }");
    look({0, 0, -1}, {0, 1, 0});
    const osg::RefPtr<osg::OrthographicCameraPtr> camera(osg::OrthographicCamera::create());
    camera->setBeacon(_picture->eye.get());
    camera->setVerticalSize(10);
    camera->setNear(1);
    camera->setFar(20);
    _picture->port->setCamera(camera.get());
    const QImage image = draw(scene);
    _picture->port->setCamera(_picture->camera.get());
    QVERIFY(isNear(at(image, 0, 0), Qt::red));
    QVERIFY(isNear(at(image, 0, -3), Qt::green));
}

void tst_Environment::badSkyIsHarmless()
{
    CoreScene scene("DEF B Background { skyColor [ 0 0 1, 1 0 0, 0 1 0 ] skyAngle [ 1.5 0.5 ] }");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, -1), Qt::green));
    const float infinity = std::numeric_limits<float>::infinity();
    auto& angles = static_cast<MFFloat&>(scene.field("B", "skyAngle"));
    angles.editValues() = {std::nanf(""), -infinity, infinity, 1e30F};
    angles.processValueChange(0.0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    draw(scene);
    scene.set("B", "skyColor", "[]");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::black));
    scene.set("B", "groundColor", "[1 1 1]");
    QVERIFY(isNear(at(draw(scene), 0, -4), Qt::black));
}

void tst_Environment::manyColorsAreHarmless()
{
    CoreScene scene("DEF B Background { }");
    const std::size_t count = 100000;
    auto& colors = static_cast<MFColor&>(scene.field("B", "skyColor"));
    colors.editValues().assign(count, osg::Color3f(0, 1, 0));
    colors.processValueChange(0.0, Field::EXTERNAL_CT);
    auto& angles = static_cast<MFFloat&>(scene.field("B", "skyAngle"));
    for (std::size_t i = 0; i < count; ++i)
        angles.editValues().push_back(3.14F * static_cast<float>(i) / count);
    angles.processValueChange(0.0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::green));
}

namespace {

/// A white square of side 2 in the plane z = 0, not lit.
const std::string Square = "Shape { geometry IndexedFaceSet { solid FALSE coordIndex [ 0 1 2 3 ] coord "
                           "Coordinate { point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] } } } ";

std::string moved(const char* translation, const std::string& node)
{
    return std::string("Transform { translation ") + translation + " children [ " + node + " ] } ";
}

} // namespace

void tst_Environment::linearFogGrowsWithTheDistance()
{
    CoreScene scene((Square + moved("-10 0 -10", Square) + moved("15 0 -20", Square) +
                     "Fog { color 1 0 0 visibilityRange 20 }")
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, 0, 0), QColor(255, 128, 128)));
    QVERIFY(isNear(at(image, -4.9, 0), QColor(255, 0, 0))); // just at the range
    QVERIFY(isNear(at(image, 4.9, 0), QColor(255, 0, 0)));
}

void tst_Environment::exponentialFogGrowsFasterBehind()
{
    CoreScene scene((Square + "Fog { color 0 0 0 fogType EXPONENTIAL visibilityRange 20 }").c_str());
    look({0, 0, -1}, {0, 1, 0});
    // exp(-d / (range - d))
    const int gray = qRound(255 * std::exp(-1.0));
    QVERIFY(isNear(at(draw(scene), 0, 0), QColor(gray, gray, gray)));
}

void tst_Environment::fogIsAsLargeAsItsGroup()
{
    CoreScene scene(
        (Square + "DEF T Transform { scale 2 2 2 children Fog { color 1 0 0 visibilityRange 10 } }").c_str());
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), QColor(255, 128, 128)));
    scene.set("T", "scale", "4 4 4");
    QVERIFY(isNear(at(draw(scene), 0, 0), QColor(255, 192, 192)));
}

void tst_Environment::boundFogComesAndGoes()
{
    CoreScene scene((Square + "DEF G Group { children [ DEF A Fog { color 1 0 0 visibilityRange 5 } "
                              "DEF B Fog { color 0 1 0 visibilityRange 5 } ] }")
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::red));
    scene.set("B", "set_bind", "TRUE");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::green));
    scene.set("B", "color", "0 0 1");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::blue));
    scene.set("B", "set_bind", "FALSE");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::red));
    static_cast<MFNode&>(scene.field("G", "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::white));
}

void tst_Environment::localFogLiesOverItsGroup()
{
    CoreScene scene(("Fog { color 0 0 1 visibilityRange 5 } Group { children [ LocalFog { color 1 0 0 "
                     "visibilityRange 5 } " +
                     moved("-3 0 0", Square) + " ] } " + moved("3 0 0", Square))
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, -3, 0), Qt::red));
    QVERIFY(isNear(at(image, 3, 0), Qt::blue));
}

void tst_Environment::localFogMayBeSwitchedOff()
{
    CoreScene scene(("DEF L LocalFog { color 1 0 0 visibilityRange 5 } " + Square).c_str());
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::red));
    scene.set("L", "enabled", "FALSE");
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::white));
}

void tst_Environment::clipPlaneCutsItsGroup()
{
    CoreScene scene(("Group { children [ DEF P ClipPlane { plane 1 0 0 0.5 } " + Square + " ] } " +
                     moved("3 0 0", Square))
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    QImage image = draw(scene);
    QVERIFY(isNear(at(image, -0.8, 0), Qt::black));
    QVERIFY(isNear(at(image, -0.2, 0), Qt::white));
    QVERIFY(isNear(at(image, 2.2, 0), Qt::white));
    scene.set("P", "plane", "-1 0 0 -0.5");
    image = draw(scene);
    QVERIFY(isNear(at(image, -0.8, 0), Qt::white));
    QVERIFY(isNear(at(image, -0.2, 0), Qt::black));
    scene.set("P", "enabled", "FALSE");
    QVERIFY(isNear(at(draw(scene), -0.2, 0), Qt::white));
}

void tst_Environment::clipPlaneMovesWithItsGroup()
{
    CoreScene scene(("DEF T Transform { rotation 0 0 1 1.5707963 children [ ClipPlane { plane 1 0 0 0 } " +
                     Square + "] }")
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    QImage image = draw(scene);
    QVERIFY(isNear(at(image, -0.5, 0.5), Qt::white));
    QVERIFY(isNear(at(image, -0.5, -0.5), Qt::black));
    scene.set("T", "rotation", "0 0 1 -1.5707963");
    image = draw(scene);
    QVERIFY(isNear(at(image, -0.5, 0.5), Qt::black));
    QVERIFY(isNear(at(image, -0.5, -0.5), Qt::white));
}

void tst_Environment::cutPartsAreNotHit()
{
    // The front of the box is cut away; what is hit is its back, from inside.
    CoreScene scene("Group { children [ ClipPlane { plane 0 0 -1 0.5 } Shape { geometry Box { } } ] } "
                    "Transform { translation 0 0 -3 children Shape { geometry Box { } } }");
    SceneHit hit;
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(0, 0, 10), osg::Vec3f(0, 0, -1)), hit));
    QCOMPARE(hit.point, osg::Pnt3f(0, 0, -1));
    QCOMPARE(hit.distance, 11.0F);
    // From the other side the ray ends at the plane.
    QVERIFY(!scene.proc().castRay(osg::Line(osg::Pnt3f(0, 0, 0), osg::Vec3f(0, 0, 1)), hit));
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(0, 0, -2), osg::Vec3f(0, 0, -1)), hit));
    QCOMPARE(hit.point, osg::Pnt3f(0, 0, -2));
}

void tst_Environment::badFogAndPlanesAreHarmless()
{
    CoreScene scene((Square + "DEF F Fog { visibilityRange -1 } DEF L LocalFog { color 1 0 0 fogType DENSE } "
                              "DEF P ClipPlane { plane 0 0 0 0 }")
                        .c_str());
    look({0, 0, -1}, {0, 1, 0});
    QVERIFY(isNear(at(draw(scene), 0, 0), Qt::white));
    for (const float value : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
        static_cast<SFFloat&>(scene.field("F", "visibilityRange")).setValue(0.0, value, Field::EXTERNAL_CT);
        static_cast<SFFloat&>(scene.field("L", "visibilityRange")).setValue(0.0, value, Field::EXTERNAL_CT);
        static_cast<SFVec4f&>(scene.field("P", "plane"))
            .setValue(0.0, osg::Vec4f(value, 0, 0, 0), Field::EXTERNAL_CT);
        scene.context->runFrame();
        QVERIFY(isNear(at(draw(scene), 0, 0), Qt::white));
    }
    std::string planes;
    for (int i = 0; i < 20; ++i)
        planes += "ClipPlane { plane 1 0 0 0.5 } ";
    CoreScene many((planes + Square).c_str());
    const QImage image = draw(many);
    QVERIFY(isNear(at(image, -0.8, 0), Qt::black));
    QVERIFY(isNear(at(image, 0.8, 0), Qt::white));
}

void tst_Environment::billboardTurnsRoundItsAxis()
{
    // Seen from the side the square would be a line; round the axis x it cannot turn to the viewer.
    CoreScene scene(("DEF B Billboard { children " + Square + " }").c_str());
    const osg::TransformPtr eye = osg::TransformPtr::dcast(_picture->eye->getCore());
    look({-1, 0, 0}, {0, 1, 0});
    osg::Matrix place = eye->getMatrix();
    place[3].setValues(10, 0, 0, 1);
    eye->setMatrix(place);
    QVERIFY(isNear(at(draw(scene), 0.8, 0.8), Qt::white));
    scene.set("B", "axisOfRotation", "1 0 0");
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, 0.8, 0.8), Qt::white)); // as it stood before
}

void tst_Environment::billboardWithoutAxisFacesTheViewer()
{
    CoreScene scene(("Billboard { axisOfRotation 0 0 0 children " + Square + " }").c_str());
    // From above, with the head tilted.
    const float half = std::sqrt(0.5F);
    look({0, -1, 0}, {half, 0, half});
    const osg::TransformPtr eye = osg::TransformPtr::dcast(_picture->eye->getCore());
    osg::Matrix place = eye->getMatrix();
    place[3].setValues(0, 10, 0, 1);
    eye->setMatrix(place);
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, 0.9, 0.9), Qt::white));
    QVERIFY(isNear(at(image, 1.2, 0), Qt::black));
}

void tst_Environment::billboardBelowATransformFacesTheViewer()
{
    CoreScene scene(
        ("Transform { rotation 0 1 0 1.2 scale 1 2 1 translation 0 1 0 children Billboard { children "
         "Billboard { children " +
         Square + " } } }")
            .c_str());
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    QVERIFY(isNear(at(image, -0.9, 2.8), Qt::white));
    QVERIFY(isNear(at(image, 0.9, -0.8), Qt::white));
    QVERIFY(isNear(at(image, 1.2, 1), Qt::black));
}

void tst_Environment::unitOfAScreenGroupIsAPixel()
{
    CoreScene scene(
        ("Transform { scale 3 3 3 translation 0 0 -10 children ScreenGroup { children Transform { "
         "scale 40 20 1 children " +
         Square + " } } }")
            .c_str());
    look({0, 0, -1}, {0, 1, 0});
    const QImage image = draw(scene);
    QVERIFY(isNear(image.pixelColor(100 - 38, 100), Qt::white));
    QVERIFY(isNear(image.pixelColor(100 - 42, 100), Qt::black));
    QVERIFY(isNear(image.pixelColor(100, 100 - 18), Qt::white));
    QVERIFY(isNear(image.pixelColor(100, 100 - 22), Qt::black));
}

QTEST_MAIN(tst_Environment)
#include "tst_Environment.moc"
