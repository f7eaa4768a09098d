#include "SceneDrawing.h"
#include "VolumeScene.h"
#include <QtTest>

using namespace Orvane;

/// What styles make of volumes.
class tst_VolumeStyles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(_drawing.isValid()); }
    void projectionShowsIntensities_data();
    void projectionShowsIntensities();
    void boundariesAreEnhanced();
    void edgesAreColored();
    void normalsMayComeFromATexture();
    void silhouettesAreEnhanced();
    void toneFollowsTheLight();
    void cartoonHasSteps_data();
    void cartoonHasSteps();
    void lightShinesOnGradients();
    void nearLightReachesVolumes();
    void materialColorsTheShade();
    void stylesAreComposed();
    void volumesAreBlended_data();
    void volumesAreBlended();
    void segmentsHaveStyles();
    void segmentsMayBeOff();
    void surfacesStandWhereTheValueIs();
    void surfacesHaveStyles();
    void contoursFollowTheFirstSurface();
    void weakSurfacesAreLeftOut();
    void styleFieldsAreFollowed();
    void deepStylesEnd();
    void projectionOfPartsIsReported();
    void badValuesDoNoHarm_data();
    void badValuesDoNoHarm();

private:
    QColor middle(const std::string& text, bool headlight = true)
    {
        const CoreScene scene(text.c_str());
        const QColor color = _drawing.middleOf(scene, headlight);
        if (_drawing.error() != 0U)
            qWarning("OpenGL complains");
        return color;
    }

    SceneDrawing _drawing;
};

namespace {

const std::string Green =
    "OpacityMapVolumeStyle { transferFunction PixelTexture { image 1 1 4 0x00FF00FF } } ";
const std::string Blue =
    "OpacityMapVolumeStyle { transferFunction PixelTexture { image 1 1 4 0x0000FFFF } } ";

/// White and opaque at the back, nothing in front: normals look at the viewer.
const std::string Wall = softVoxels("2 1 1 4", "0xFFFF 0xFFFF 0xFF00 0x0000");
/// The same to the left and to the right: normals stand across the look.
const std::string Side = softVoxels("2 4 1 2", "0xFFFF 0xFFFF 0x0000 0x0000 0xFFFF 0xFFFF 0x0000 0x0000");

std::string segmented(const std::string& fields)
{
    return "DEF V SegmentedVolumeData { dimensions 4 4 4 voxels " + Solid +
           "segmentIdentifiers PixelTexture3D { image [ 1 2 1 2 0 1 0 1 ] } " + fields + " } ";
}

std::string surfaces(const std::string& voxels, const std::string& fields)
{
    return "DEF V IsoSurfaceVolumeData { dimensions 4 4 4 voxels " + voxels + fields + " } ";
}

/// Brighter and brighter to the right.
const std::string Ramp = softVoxels("1 4 1 2", "0 85 170 255 0 85 170 255");
/// The same towards the viewer.
const std::string Rise = softVoxels("1 1 1 4", "0 85 170 255");

} // namespace

void tst_VolumeStyles::projectionShowsIntensities_data()
{
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<int>("grey");
    QTest::newRow("largest") << QByteArray("type \"MAX\"") << 0xC0;
    QTest::newRow("least") << QByteArray("type \"MIN\"") << 0x20;
    QTest::newRow("average") << QByteArray("type \"AVERAGE\"") << (0x60 + 0x20 + 0xC0 + 0x40) / 4;
    // The front is the last slice.
    QTest::newRow("first peak") << QByteArray("type \"MAX\" intensityThreshold 0.2") << 0x60;
    QTest::newRow("first high peak") << QByteArray("type \"MAX\" intensityThreshold 0.5") << 0xC0;
    QTest::newRow("least above") << QByteArray("type \"MIN\" intensityThreshold 0.2") << 0x40;
}

void tst_VolumeStyles::projectionShowsIntensities()
{
    QFETCH(QByteArray, style);
    QFETCH(int, grey);
    COMPARE_DRAWN(middle(volume(voxels("1 1 1 4", "0x40 0xC0 0x20 0x60"),
                                "ProjectionVolumeStyle { " + style.toStdString() + " } ")),
                  QColor(grey, grey, grey));
}

void tst_VolumeStyles::boundariesAreEnhanced()
{
    // Even voxels keep a share of their opacity, those at an end of the volume too.
    const std::string even = voxels("4 1 1 2", "0xFFFFFF80 0xFFFFFF80");
    COMPARE_DRAWN(middle(volume(even, "BoundaryEnhancementVolumeStyle { retainedOpacity 0.5 "
                                      "boundaryOpacity 1 opacityFactor 1 } ")),
                  QColor(112, 112, 112)); // twice a quarter
    const std::string jump = "BoundaryEnhancementVolumeStyle { retainedOpacity 0 boundaryOpacity 1 "
                             "opacityFactor 1 } ";
    COMPARE_DRAWN(middle(volume(even, jump)), QColor(Qt::black));
    const QColor side = middle(volume(softVoxels("2 2 1 2", "0xFFFF 0x00FF 0xFFFF 0x00FF"), jump));
    QVERIFY2(side.red() > 120 && side.red() < 135, qPrintable(side.name()));
}

void tst_VolumeStyles::edgesAreColored()
{
    const std::string style = "EdgeEnhancementVolumeStyle { edgeColor 1 0 0 1 gradientThreshold 0.8 } ";
    const QColor wall = middle(volume(Wall, style));
    QVERIFY2(wall.green() > 200, qPrintable(wall.name()));
    const CoreScene scene(volume(Side, style).c_str());
    const QColor side = _drawing.at(scene, -0.3, 0);
    QVERIFY2(side.red() > 200 && side.green() < 10, qPrintable(side.name()));
}

void tst_VolumeStyles::normalsMayComeFromATexture()
{
    // All normals to the right, where the voxels know none.
    const std::string normals = "surfaceNormals PixelTexture3D { image [ 3 1 1 2 0xFF8080 0xFF8080 ] } ";
    COMPARE_DRAWN(middle(volume(Solid, "EdgeEnhancementVolumeStyle { edgeColor 0 0 1 1 } ")),
                  QColor(Qt::red));
    COMPARE_DRAWN(middle(volume(Solid, "EdgeEnhancementVolumeStyle { edgeColor 0 0 1 1 " + normals + "} ")),
                  QColor(Qt::blue));
}

void tst_VolumeStyles::silhouettesAreEnhanced()
{
    const std::string style = "SilhouetteEnhancementVolumeStyle { silhouetteRetainedOpacity 0 "
                              "silhouetteBoundaryOpacity 1 silhouetteSharpness 4 } ";
    const QColor wall = middle(volume(Wall, style));
    QVERIFY2(wall.red() < 10, qPrintable(wall.name()));
    const CoreScene scene(volume(Side, style).c_str());
    const QColor side = _drawing.at(scene, -0.3, 0);
    QVERIFY2(side.red() > 150, qPrintable(side.name()));
}

void tst_VolumeStyles::toneFollowsTheLight()
{
    const std::string style = "ToneMappedVolumeStyle { coolColor 0 0 1 0 warmColor 1 0 0 0 } ";
    const QColor lit = middle(volume(Wall, style));
    QVERIFY2(lit.red() > 230 && lit.blue() < 20, qPrintable(lit.name()));
    const QColor dark = middle(volume(Wall, style), false);
    QVERIFY2(dark.red() < 20 && dark.blue() > 230, qPrintable(dark.name()));
    // Light from the right stands across: half of both.
    const QColor half = middle("Group { children [ DirectionalLight { direction -1 0 0 global FALSE } " +
                                   volume(Wall, style) + " ] }",
                               false);
    QVERIFY2(qAbs(half.red() - 128) < 12 && qAbs(half.blue() - 128) < 12, qPrintable(half.name()));
}

void tst_VolumeStyles::cartoonHasSteps_data()
{
    QTest::addColumn<QByteArray>("normal"); // x, y and z from 00 to FF
    QTest::addColumn<QColor>("color");
    QTest::newRow("across the look") << QByteArray("0x8080FF") << QColor(Qt::red);
    QTest::newRow("nearly so") << QByteArray("0xA080F7") << QColor(Qt::red);
    QTest::newRow("half") << QByteArray("0xDA80DA") << QColor(255, 255, 0); // red to green by way of yellow
    QTest::newRow("along the look") << QByteArray("0xFF8080") << QColor(Qt::green);
}

void tst_VolumeStyles::cartoonHasSteps()
{
    QFETCH(QByteArray, normal);
    QFETCH(QColor, color);
    const std::string text = normal.toStdString();
    COMPARE_DRAWN(middle(volume(Solid, "CartoonVolumeStyle { colorSteps 3 orthogonalColor 1 0 0 1 "
                                       "parallelColor 0 1 0 1 surfaceNormals PixelTexture3D { image [ "
                                       "3 1 1 2 " +
                                           text + " " + text + " ] } } ")),
                  color);
}

void tst_VolumeStyles::lightShinesOnGradients()
{
    const std::string style = "DEF L ShadedVolumeStyle { lighting TRUE } ";
    const QColor lit = middle(volume(Wall, style));
    QVERIFY2(lit.red() > 220, qPrintable(lit.name()));
    const QColor dark = middle(volume(Wall, style), false);
    QVERIFY2(dark.red() < 6, qPrintable(dark.name()));
    const CoreScene scene(volume(Wall, style).c_str());
    scene.set("L", "lighting", "FALSE");
    const QColor plain = _drawing.middleOf(scene, false);
    QVERIFY2(plain.red() > 220, qPrintable(plain.name()));
}

void tst_VolumeStyles::nearLightReachesVolumes()
{
    const std::string text = "Group { children [ PointLight { location 0 0 1.5 radius 2.3 color 0 1 0 "
                             "attenuation 1 0 0 global FALSE } " +
                             volume(Wall, "ShadedVolumeStyle { lighting TRUE } ") + " ] }";
    const CoreScene scene(text.c_str());
    const QColor found = _drawing.middleOf(scene, false);
    QVERIFY2(found.green() > 200 && found.red() < 10, qPrintable(found.name()));
    // The corner is out of its reach.
    const QColor corner = _drawing.at(scene, 1.7, 1.7, false);
    QVERIFY2(corner.green() < 10, qPrintable(corner.name()));
}

void tst_VolumeStyles::materialColorsTheShade()
{
    const QColor found = middle(volume(Wall, "ShadedVolumeStyle { lighting TRUE material Material { "
                                             "diffuseColor 0 1 0 } } "));
    QVERIFY2(found.green() > 220 && found.red() < 10, qPrintable(found.name()));
    COMPARE_DRAWN(middle(volume(voxels("4 1 1 2", "0xFFFFFFFF 0xFFFFFFFF"),
                                "ShadedVolumeStyle { material UnlitMaterial { emissiveColor 1 0 1 "
                                "transparency 0.5 } } ")),
                  QColor(191, 0, 191));
}

void tst_VolumeStyles::stylesAreComposed()
{
    COMPARE_DRAWN(middle(volume(Solid, "ComposedVolumeStyle { renderStyle [ " + Green + Blue + "] } ")),
                  QColor(Qt::blue));
    COMPARE_DRAWN(middle(volume(Solid, "ComposedVolumeStyle { renderStyle [ " + Green +
                                           "ShadedVolumeStyle { material UnlitMaterial { transparency 0.5 "
                                           "emissiveColor 1 1 0 } } ] } ")),
                  QColor(191, 191, 0));
}

void tst_VolumeStyles::volumesAreBlended_data()
{
    QTest::addColumn<QByteArray>("weights");
    QTest::addColumn<QColor>("color");
    QTest::newRow("constants") << QByteArray("weightConstant1 0.25 weightConstant2 0.75")
                               << QColor(64, 0, 191);
    QTest::newRow("first alpha") << QByteArray("weightFunction1 \"ALPHA1\" weightFunction2 "
                                               "\"ONE_MINUS_ALPHA1\"")
                                 << QColor(255, 0, 0);
    QTest::newRow("second alpha") << QByteArray("weightFunction1 \"ONE_MINUS_ALPHA2\" weightFunction2 "
                                                "\"ALPHA2\"")
                                  << QColor(0, 0, 255);
    QTest::newRow("table") << QByteArray("weightFunction1 \"TABLE\" weightTransferFunction1 PixelTexture { "
                                         "image 1 1 1 0x33 } weightFunction2 \"ALPHA2\"")
                           << QColor(51, 0, 255);
}

void tst_VolumeStyles::volumesAreBlended()
{
    QFETCH(QByteArray, weights);
    QFETCH(QColor, color);
    COMPARE_DRAWN(middle(volume(Solid, "BlendedVolumeStyle { " + weights.toStdString() +
                                           " voxels PixelTexture3D { image [ 1 1 1 2 255 255 ] } "
                                           "renderStyle " +
                                           Blue + "} ")),
                  color);
}

void tst_VolumeStyles::segmentsHaveStyles()
{
    const CoreScene scene(segmented("renderStyle [ " + Green + Blue + "]").c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::green));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::blue));
    // What has no style is shown as it is.
    const CoreScene one(segmented("renderStyle [ " + Green + "]").c_str());
    COMPARE_DRAWN(_drawing.at(one, 1, 0), QColor(Qt::red));
}

void tst_VolumeStyles::segmentsMayBeOff()
{
    const CoreScene scene(segmented("segmentEnabled [ FALSE TRUE ]").c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::black));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::red));
    scene.set("V", "segmentEnabled", "TRUE FALSE");
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::black));
}

void tst_VolumeStyles::surfacesStandWhereTheValueIs()
{
    // From x = -1.5 to 1.5 the ramp goes from 0 to 1: the surface of 2/3 stands at 0.5, across the picture,
    // and is seen in the box turned by a quarter only.
    const CoreScene scene(("Transform { rotation 0 1 0 0.5 children [ " +
                           surfaces(Ramp, "surfaceValues [ 0.667 ] renderStyle [ " + Green + "]") + " ] }")
                              .c_str());
    // The plane x = 0.5 through (0.5, y, z), turned: its trace runs through x = 0.44 at z = 0.
    COMPARE_DRAWN(_drawing.at(scene, 0.44, 0), QColor(Qt::green));
    COMPARE_DRAWN(_drawing.at(scene, -0.9, 0), QColor(Qt::black));
    COMPARE_DRAWN(_drawing.at(scene, 1.8, 0), QColor(Qt::black));
}

void tst_VolumeStyles::surfacesHaveStyles()
{
    // The larger value is in front, whatever the order.
    COMPARE_DRAWN(middle(surfaces(Rise, "surfaceValues [ 0.8 0.2 ] renderStyle [ " + Green + Blue + "]")),
                  QColor(Qt::green));
    COMPARE_DRAWN(middle(surfaces(Rise, "surfaceValues [ 0.2 0.8 ] renderStyle [ " + Green + Blue + "]")),
                  QColor(Qt::blue));
    // By default they are as dense as their value.
    COMPARE_DRAWN(middle(surfaces(Rise, "surfaceValues [ 0.5 ]")), QColor(64, 64, 64));
}

void tst_VolumeStyles::contoursFollowTheFirstSurface()
{
    // 0.75 before 0.5 before 0.25.
    const double grey = 0.75 * 0.75 + 0.25 * (0.5 * 0.5 + 0.5 * 0.25 * 0.25);
    const int expected = qRound(255 * grey);
    COMPARE_DRAWN(middle(surfaces(Rise, "surfaceValues [ 0.5 ] contourStepSize 0.25")),
                  QColor(expected, expected, expected));
}

void tst_VolumeStyles::weakSurfacesAreLeftOut()
{
    const std::string fields = "surfaceValues [ 0.5 ] renderStyle [ " + Green + "] surfaceTolerance ";
    COMPARE_DRAWN(middle(surfaces(Rise, fields + "0.5")), QColor(Qt::green));
    COMPARE_DRAWN(middle(surfaces(Rise, fields + "0.8")), QColor(Qt::black));
    // Gradients that are given count in place of those of the voxels.
    COMPARE_DRAWN(middle(surfaces(Rise, fields + "0.8 gradients PixelTexture3D { image [ 3 1 1 2 0x8080FF "
                                                 "0x8080FF ] } ")),
                  QColor(Qt::green));
}

void tst_VolumeStyles::styleFieldsAreFollowed()
{
    const CoreScene scene(volume(Solid,
                                 "ComposedVolumeStyle { renderStyle DEF E ShadedVolumeStyle { material DEF M "
                                 "UnlitMaterial { emissiveColor 0 1 0 } } } ")
                              .c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::green));
    scene.set("M", "emissiveColor", "0 0 1");
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::blue));
    scene.set("E", "enabled", "FALSE");
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::red));
}

void tst_VolumeStyles::deepStylesEnd()
{
    std::string style = Green;
    for (int i = 0; i < 40; ++i)
        style = "ComposedVolumeStyle { renderStyle " + style + "} ";
    COMPARE_DRAWN(middle(volume(Solid, style)), QColor(Qt::red));
}

void tst_VolumeStyles::projectionOfPartsIsReported()
{
    const CoreScene scene(segmented("renderStyle [ ProjectionVolumeStyle { } ]").c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

void tst_VolumeStyles::badValuesDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("text");
    const auto row = [](const char* name, const std::string& text) {
        QTest::newRow(name) << QByteArray::fromStdString(text);
    };
    row("boundary", volume(Wall, "BoundaryEnhancementVolumeStyle { retainedOpacity [ nan ] boundaryOpacity "
                                 "[ inf ] opacityFactor [ -1e30 ] } "));
    row("edges", volume(Wall, "EdgeEnhancementVolumeStyle { edgeColor [ nan inf -1 nan ] gradientThreshold "
                              "[ inf ] } "));
    row("silhouette", volume(Wall, "SilhouetteEnhancementVolumeStyle { silhouetteSharpness [ nan ] "
                                   "silhouetteBoundaryOpacity [ -inf ] } "));
    row("no steps", volume(Wall, "CartoonVolumeStyle { colorSteps -3 orthogonalColor [ nan 2 2 nan ] } "));
    row("many steps", volume(Wall, "CartoonVolumeStyle { colorSteps 2147483647 } "));
    row("threshold", volume(Wall, "ProjectionVolumeStyle { intensityThreshold [ nan ] } "));
    row("weights",
        volume(Wall, "BlendedVolumeStyle { weightConstant1 [ nan ] weightConstant2 [ inf ] voxels " + Solid +
                         "} "));
    row("no surface", surfaces(Rise, "surfaceValues [ nan inf ] surfaceTolerance [ nan ]"));
    row("surfaces outside", surfaces(Rise, "surfaceValues [ -5 7 1e30 ]"));
    row("endless contours", surfaces(Rise, "surfaceValues [ 0.5 ] contourStepSize 1e-30"));
    row("no segments", segmented("renderStyle [ ] segmentEnabled [ ]"));
    row("empty styles", volume(Wall, "ComposedVolumeStyle { renderStyle [ BlendedVolumeStyle { } "
                                     "ComposedVolumeStyle { } OpacityMapVolumeStyle { transferFunction "
                                     "PixelTexture { } } ShadedVolumeStyle { surfaceNormals PixelTexture3D "
                                     "{ } } ] } "));
}

void tst_VolumeStyles::badValuesDoNoHarm()
{
    QFETCH(QByteArray, text);
    const CoreScene scene(text.constData());
    _drawing.draw(scene);
    QCOMPARE(_drawing.error(), 0U);
    QVERIFY(volumeProgram(scene, "V")->getStatus() == osg::SHLProgram::GOOD);
}

QTEST_MAIN(tst_VolumeStyles)
#include "tst_VolumeStyles.moc"
