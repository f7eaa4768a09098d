#include "SceneDrawing.h"
#include <memory>

using namespace Orvane;

/// Projectors that throw images onto shapes.
class tst_TextureProjectors : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void imageLiesOnAFace();
    void imageLiesOnPhysicalSurfaces();
    void parallelRaysKeepTheSize();
    void fieldsAreFollowed();
    void imageIsBoundedByItsDistances();
    void firstProjectorCounts();
    void projectorWithoutAnImageIsDark();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

const std::string Halves =
    "texture DEF T PixelTexture { image 2 1 3 0xFF0000 0x00FF00 textureProperties TextureProperties { "
    "magnificationFilter NEAREST_PIXEL minificationFilter NEAREST_PIXEL } } ";

/// A face of side 8 at z = 0, into which is looked from (0, 0, 10).
std::string face(const std::string& material = "Material { diffuseColor 1 1 1 }")
{
    return "Transform { scale 4 4 4 children " + squareWith("material " + material) + " }";
}

/// One at (0, 0, 2) that shows 4 by 2 units of the face.
std::string projector(const std::string& fields = std::string())
{
    return "DEF P TextureProjector { location 0 0 2 direction 0 0 -1 fieldOfView 0.9273 " + Halves + fields +
           " } ";
}

} // namespace

void tst_TextureProjectors::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_TextureProjectors::imageLiesOnAFace()
{
    CoreScene scene((projector() + face()).c_str());
    const QColor left = _drawing->at(scene, -0.2, 0, false);
    QVERIFY2(left.red() > 240 && left.green() == 0, qPrintable(left.name()));
    const QColor right = _drawing->at(scene, 0.2, 0, false);
    QVERIFY2(right.green() > 240 && right.red() == 0, qPrintable(right.name()));
    // A slope of a half above, of one to the sides.
    QVERIFY(_drawing->at(scene, 0.2, 0.9, false).green() > 200);
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 1.1, false), QColor(0, 0, 0));
    QVERIFY(_drawing->at(scene, 1.9, 0, false).green() > 150);
    COMPARE_DRAWN(_drawing->at(scene, 2.1, 0, false), QColor(0, 0, 0));
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_TextureProjectors::imageLiesOnPhysicalSurfaces()
{
    CoreScene scene(
        (projector("intensity 5 ") + face("PhysicalMaterial { baseColor 1 1 1 metallic 0 roughness 1 }"))
            .c_str());
    const QColor left = _drawing->at(scene, -0.2, 0, false);
    QVERIFY2(left.red() > 240 && left.green() == 0, qPrintable(left.name()));
    COMPARE_DRAWN(_drawing->at(scene, 2.1, 0, false), QColor(0, 0, 0));
}

void tst_TextureProjectors::parallelRaysKeepTheSize()
{
    CoreScene scene(
        ("DEF P TextureProjectorParallel { location 1 0 5 direction 0 0 -1 fieldOfView -1 -1 1 1 " + Halves +
         " } " + face())
            .c_str());
    COMPARE_DRAWN(_drawing->at(scene, 0.1, 0.9, false), QColor(255, 0, 0));
    COMPARE_DRAWN(_drawing->at(scene, 1.9, -0.9, false), QColor(0, 255, 0));
    COMPARE_DRAWN(_drawing->at(scene, -0.1, 0, false), QColor(0, 0, 0));
    COMPARE_DRAWN(_drawing->at(scene, 1, 1.1, false), QColor(0, 0, 0));
    scene.set("P", "fieldOfView", "-3 -1 1 1");
    COMPARE_DRAWN(_drawing->at(scene, -0.1, 0, false), QColor(255, 0, 0));
}

void tst_TextureProjectors::fieldsAreFollowed()
{
    CoreScene scene((projector() + face()).c_str());
    scene.set("P", "location", "3 0 2");
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 0, false), QColor(0, 0, 0));
    QVERIFY(_drawing->at(scene, 3.2, 0, false).green() > 240);
    scene.set("P", "upVector", "1 0 0");
    QVERIFY(_drawing->at(scene, 3.2, 0.5, false).red() > 200);
    QVERIFY(_drawing->at(scene, 3.2, -0.5, false).green() > 200);
    scene.set("T", "image", "1 1 3 0x0000FF");
    QVERIFY(_drawing->at(scene, 3.2, 0.5, false).blue() > 200);
    scene.set("P", "color", "1 1 0");
    COMPARE_DRAWN(_drawing->at(scene, 3.2, 0.5, false), QColor(0, 0, 0));
    scene.set("P", "color", "1 1 1");
    scene.set("P", "on", "FALSE");
    COMPARE_DRAWN(_drawing->at(scene, 3.2, 0.5, false), QColor(0, 0, 0));
}

void tst_TextureProjectors::imageIsBoundedByItsDistances()
{
    CoreScene scene((projector() + face()).c_str());
    scene.set("P", "farDistance", "1.9");
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 0, false), QColor(0, 0, 0));
    scene.set("P", "farDistance", "2.1");
    QVERIFY(_drawing->at(scene, 0.2, 0, false).green() > 240);
    scene.set("P", "nearDistance", "2.05");
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 0, false), QColor(0, 0, 0));
}

void tst_TextureProjectors::firstProjectorCounts()
{
    CoreScene scene((projector() +
                     "TextureProjector { location 0 0 2 direction 0 0 -1 texture PixelTexture { image 1 1 3 "
                     "0x0000FF } } " +
                     face())
                        .c_str());
    const QColor found = _drawing->at(scene, 0.2, 0, false);
    QVERIFY((found.green() > 240) != (found.blue() > 240));
}

void tst_TextureProjectors::projectorWithoutAnImageIsDark()
{
    CoreScene scene((projector() + face()).c_str());
    scene.set("P", "texture", "NULL");
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 0, false), QColor(0, 0, 0));
    scene.set("P", "direction", "0 0 0");
    scene.set("P", "fieldOfView", "-1");
    COMPARE_DRAWN(_drawing->at(scene, 0.2, 0, false), QColor(0, 0, 0));
    QCOMPARE(_drawing->error(), 0U);
}

QTEST_MAIN(tst_TextureProjectors)
#include "tst_TextureProjectors.moc"
