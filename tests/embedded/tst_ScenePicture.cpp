#include "SceneDrawing.h"
#include <QtTest>
#include <memory>

using namespace Orvane;

/// What scenes look like: the pieces that make up a surface, drawn together.
class tst_ScenePicture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void unlitShapeIsWhite();
    void litShapeTakesTheHeadLight();
    void backOfASolidFaceIsNotSeen();
    void backOfAnOpenFaceIsLit();
    void mirroredSolidIsSeenFromOutside();
    void sharedShapeIsDrawnInBothPlaces();
    void scopedLightLightsOnlyItsGroup();
    void scopedLightFollowsTheUsesOfItsGroup();
    void globalLightLightsAll();
    void pointLightEndsAtItsRadius();
    void colorsOfVerticesAreDrawn();
    void transparencyShowsWhatIsBehind();
    void textureStandsOnItsFace();
    void textureTakesTheColorOfTheMaterial();
    void textureTransformMovesTheTexture();
    void linesAndPointsAreUnlit();
    void switchAndVisibleHide();
    void materialEditIsDrawn();

private:
    /// Leaves room for the blend of texels beside their centres.
    static bool isNear(const QColor& a, const QColor& b)
    {
        constexpr int Tolerance = 24;
        return qAbs(a.red() - b.red()) < Tolerance && qAbs(a.green() - b.green()) < 8 &&
               qAbs(a.blue() - b.blue()) < Tolerance;
    }

    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

const char Square[] = "geometry IndexedFaceSet { coordIndex [ 0 1 2 3 ] coord Coordinate { "
                      "point [ -1 -1 0, 1 -1 0, 1 1 0, -1 1 0 ] } ";

/// A square of side 2 in the plane z = 0 that faces the viewer, with an appearance.
std::string square(const std::string& appearance, const std::string& fields = std::string())
{
    return "Shape { appearance Appearance { " + appearance + " } " + Square + fields + " } }";
}

std::string moved(const char* translation, const std::string& node)
{
    return std::string("Transform { translation ") + translation + " children " + node + " } ";
}

const std::string Red = "material Material { diffuseColor 1 0 0 }";

} // namespace

void tst_ScenePicture::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_ScenePicture::unlitShapeIsWhite()
{
    CoreScene scene(("Shape { " + std::string(Square) + " } }").c_str());
    const QImage image = _drawing->draw(scene, false);
    QVERIFY(isNear(SceneDrawing::at(image, 0, 0), Qt::white));
    QVERIFY(isNear(SceneDrawing::at(image, 2, 0), Qt::black));
}

void tst_ScenePicture::litShapeTakesTheHeadLight()
{
    CoreScene scene(square(Red).c_str());
    QVERIFY(isNear(_drawing->middleOf(scene), Qt::red));
    QVERIFY(isNear(_drawing->middleOf(scene, false), Qt::black));
}

void tst_ScenePicture::backOfASolidFaceIsNotSeen()
{
    CoreScene scene(square(Red, "ccw FALSE").c_str());
    QVERIFY(isNear(_drawing->middleOf(scene), Qt::black));
}

void tst_ScenePicture::backOfAnOpenFaceIsLit()
{
    CoreScene scene(square(Red, "ccw FALSE solid FALSE").c_str());
    QVERIFY(isNear(_drawing->middleOf(scene), Qt::red));
}

void tst_ScenePicture::mirroredSolidIsSeenFromOutside()
{
    CoreScene scene(("Transform { scale -1 1 1 children " + square(Red) + " }").c_str());
    QVERIFY(isNear(_drawing->middleOf(scene), Qt::red));
}

void tst_ScenePicture::sharedShapeIsDrawnInBothPlaces()
{
    CoreScene scene((moved("-3 0 0", "DEF S " + square(Red)) + moved("3 0 0", "USE S")).c_str());
    const QImage image = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(image, -3, 0), Qt::red));
    QVERIFY(isNear(SceneDrawing::at(image, 3, 0), Qt::red));
    QVERIFY(isNear(SceneDrawing::at(image, 0, 0), Qt::black));
}

void tst_ScenePicture::scopedLightLightsOnlyItsGroup()
{
    CoreScene scene(("Group { children [ DirectionalLight { } " + moved("-3 0 0", square(Red)) + " ] } " +
                     moved("3 0 0", square(Red)))
                        .c_str());
    const QImage image = _drawing->draw(scene, false);
    QVERIFY(isNear(SceneDrawing::at(image, -3, 0), Qt::red));
    QVERIFY(isNear(SceneDrawing::at(image, 3, 0), Qt::black));
}

void tst_ScenePicture::scopedLightFollowsTheUsesOfItsGroup()
{
    // In its first place the group lies on its back, far away.
    CoreScene scene(
        ("Transform { translation 0 20 0 rotation 1 0 0 -1.5707963 children DEF G Group { children [ "
         "DirectionalLight { direction 0 0 -1 } " +
         square(Red) + " ] } } Transform { translation 3 0 0 children USE G }")
            .c_str());
    QVERIFY(isNear(_drawing->at(scene, 3, 0, false), Qt::red));
}

void tst_ScenePicture::globalLightLightsAll()
{
    CoreScene scene(
        ("Group { children DirectionalLight { global TRUE } } " + moved("3 0 0", square(Red))).c_str());
    QVERIFY(isNear(_drawing->at(scene, 3, 0, false), Qt::red));
}

void tst_ScenePicture::pointLightEndsAtItsRadius()
{
    CoreScene scene((moved("-3 0 0", square(Red)) + moved("3 0 0", square(Red)) +
                     "PointLight { location -3 0 3 radius 3.5 }")
                        .c_str());
    const QImage image = _drawing->draw(scene, false);
    QVERIFY(SceneDrawing::at(image, -3, 0).red() > 200);
    QVERIFY(isNear(SceneDrawing::at(image, 3, 0), Qt::black));
}

void tst_ScenePicture::colorsOfVerticesAreDrawn()
{
    const std::string colors = "color Color { color [ 0 1 0, 0 1 0, 0 0 1, 0 0 1 ] }";
    CoreScene scene((moved("-3 0 0", square(Red, colors)) + moved("3 0 0", square("", colors))).c_str());
    const QImage image = _drawing->draw(scene);
    for (const double x : {-3.0, 3.0}) {
        QVERIFY(SceneDrawing::at(image, x, -0.9).green() > 200);
        QVERIFY(SceneDrawing::at(image, x, 0.9).blue() > 200);
        QVERIFY(SceneDrawing::at(image, x, 0.0).red() < 8);
    }
}

void tst_ScenePicture::transparencyShowsWhatIsBehind()
{
    CoreScene scene(
        (square("material Material { diffuseColor 0 1 0 transparency 0.5 }") + moved("0 0 -0.1", square(Red)))
            .c_str());
    QVERIFY(isNear(_drawing->middleOf(scene), QColor(128, 128, 0)));
}

void tst_ScenePicture::textureStandsOnItsFace()
{
    // Two rows of two pixels, the lower row first: red, green; blue, white.
    CoreScene scene(
        square("texture PixelTexture { image 2 2 3 0xFF0000 0x00FF00 0x0000FF 0xFFFFFF }").c_str());
    const QImage image = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(image, -0.5, -0.5), Qt::red));
    QVERIFY(isNear(SceneDrawing::at(image, 0.5, -0.5), Qt::green));
    QVERIFY(isNear(SceneDrawing::at(image, -0.5, 0.5), Qt::blue));
    QVERIFY(isNear(SceneDrawing::at(image, 0.5, 0.5), Qt::white));
}

void tst_ScenePicture::textureTakesTheColorOfTheMaterial()
{
    CoreScene scene((moved("-3 0 0", square(Red + " texture PixelTexture { image 1 1 1 0x80 }")) +
                     moved("3 0 0", square(Red + " texture PixelTexture { image 1 1 3 0x80FF00 }")))
                        .c_str());
    const QImage image = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(image, -3, 0), QColor(128, 0, 0)));
    QVERIFY(isNear(SceneDrawing::at(image, 3, 0), QColor(128, 0, 0)));
}

void tst_ScenePicture::textureTransformMovesTheTexture()
{
    CoreScene scene(square("texture PixelTexture { image 2 1 3 0xFF0000 0x00FF00 } "
                           "textureTransform TextureTransform { translation 0.5 0 }")
                        .c_str());
    const QImage image = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(image, -0.5, 0), Qt::green));
    QVERIFY(isNear(SceneDrawing::at(image, 0.5, 0), Qt::red));
}

void tst_ScenePicture::linesAndPointsAreUnlit()
{
    CoreScene scene(
        "Shape { appearance Appearance { material Material { emissiveColor 0 1 0 } } geometry "
        "IndexedLineSet { coordIndex [ 0 1 ] coord Coordinate { point [ -4 0.025 0, 4 0.025 0 ] } } }");
    const QImage image = _drawing->draw(scene, false);
    bool seen = false;
    for (int y = 95; y < 105; ++y)
        seen = seen || isNear(image.pixelColor(100, y), Qt::green);
    QVERIFY(seen);
}

void tst_ScenePicture::switchAndVisibleHide()
{
    CoreScene scene(("DEF W Switch { children " + moved("-3 0 0", square(Red)) +
                     " } DEF G Group { visible FALSE children " + moved("3 0 0", square(Red)) + " }")
                        .c_str());
    const QImage hidden = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(hidden, -3, 0), Qt::black));
    QVERIFY(isNear(SceneDrawing::at(hidden, 3, 0), Qt::black));
    scene.set("W", "whichChoice", "0");
    scene.set("G", "visible", "TRUE");
    const QImage shown = _drawing->draw(scene);
    QVERIFY(isNear(SceneDrawing::at(shown, -3, 0), Qt::red));
    QVERIFY(isNear(SceneDrawing::at(shown, 3, 0), Qt::red));
}

void tst_ScenePicture::materialEditIsDrawn()
{
    CoreScene scene(square("material DEF M Material { }").c_str());
    _drawing->draw(scene);
    scene.set("M", "diffuseColor", "0 0 1");
    QVERIFY(isNear(_drawing->middleOf(scene), Qt::blue));
    scene.set("M", "emissiveColor", "0 1 0");
    QVERIFY(isNear(_drawing->middleOf(scene, false), Qt::green));
}

QTEST_MAIN(tst_ScenePicture)
#include "tst_ScenePicture.moc"
