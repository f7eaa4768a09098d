#include "../opensg/LogCollector.h"
#include "Numbers.h"
#include "SceneDrawing.h"
#include "VolumeScene.h"
#include <OpenSG/OSGOrthographicCamera.h>
#include <QtTest>

using namespace Orvane;

/// Volumes: where they are, what their voxels look like by default, and how they stand in a scene.
class tst_Volumes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(_drawing.isValid()); }
    void voxelsCoverByTheirThickness();
    void componentsAreColorAndOpacity_data();
    void componentsAreColorAndOpacity();
    void transferFunctionColorsVoxels();
    void secondComponentLeadsUpwardsInTheFunction();
    void functionWithoutAlphaKeepsTheOpacity();
    void functionWithDepthTakesThreeComponents();
    void slicesRiseAlongZ();
    void dimensionsAreFollowed();
    void voxelsAreFollowed();
    void invisibleVolumeIsNotDrawn();
    void opaqueShapesStopTheRay_data();
    void opaqueShapesStopTheRay();
    void depthIsThatOfThePartOfTheWindow();
    void camerasMayBeParallel();
    void cameraMayStandWithin();
    void planesCutTheRay();
    void fogLiesOverVolumes();
    void stylesThatAreOffAreNone();
    void badVolumesDrawNothing_data();
    void badVolumesDrawNothing();
    void badVolumesAreReported_data();
    void badVolumesAreReported();
    void boxIsHit();
    void equalVolumesShareTheirProgram();
    void nothingStandsInForAFaultyProgram();

private:
    SceneDrawing _drawing;
};

namespace {

/// Two layers of half opacity, with a blue wall between them to the right.
const std::string Parted = "Transform { translation 1 0 0 children Shape { appearance Appearance { material "
                           "UnlitMaterial { emissiveColor 0 0 1 } } geometry Rectangle2D { size 2 4 } } } " +
                           volume(voxels("4 1 1 2", "0xFFFFFF80 0xFFFFFF80"));

osg::NodePtr nodeOf(const CoreScene& scene)
{
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(scene.proc().root());
    return osg::makeNodeFor(osg::NodeCorePtr(reference));
}

} // namespace

void tst_Volumes::voxelsCoverByTheirThickness()
{
    // Two voxels of half opacity let a quarter through.
    const CoreScene scene(volume(voxels("4 1 1 2", "0xFFFFFF80 0xFFFFFF80")).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(191, 191, 191));
    COMPARE_DRAWN(_drawing.at(scene, 2.5, 0), QColor(Qt::black));
    // Twice as many in the same place: not the box counts, but what is in it.
    const CoreScene finer(volume(voxels("4 1 1 4", "0xFFFFFF80 0xFFFFFF80 0xFFFFFF80 0xFFFFFF80")).c_str());
    COMPARE_DRAWN(_drawing.middleOf(finer), QColor(239, 239, 239));
    QCOMPARE(_drawing.error(), 0U);
}

void tst_Volumes::componentsAreColorAndOpacity_data()
{
    QTest::addColumn<QByteArray>("size");
    QTest::addColumn<QByteArray>("pixels");
    QTest::addColumn<QColor>("color");
    QTest::newRow("grey") << QByteArray("1 1 1 2") << QByteArray("0x80 0x80") << QColor(96, 96, 96);
    QTest::newRow("grey and alpha") << QByteArray("2 1 1 2") << QByteArray("0x80FF 0x80FF")
                                    << QColor(128, 128, 128);
    QTest::newRow("colours") << QByteArray("3 1 1 2") << QByteArray("0x00FF00 0x00FF00")
                             << QColor(0, 212, 0); // two layers of 0.587
    QTest::newRow("colours and alpha")
        << QByteArray("4 1 1 2") << QByteArray("0xFF0000FF 0xFF0000FF") << QColor(255, 0, 0);
}

void tst_Volumes::componentsAreColorAndOpacity()
{
    QFETCH(QByteArray, size);
    QFETCH(QByteArray, pixels);
    QFETCH(QColor, color);
    const CoreScene scene(volume(voxels(size.toStdString(), pixels.toStdString())).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), color);
}

void tst_Volumes::transferFunctionColorsVoxels()
{
    const CoreScene scene(
        volume(Halves, "OpacityMapVolumeStyle { transferFunction PixelTexture { image 2 1 4 0x0000FFFF "
                       "0x00FF00FF " +
                           Sharp + "} } ")
            .c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::blue));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::green));
    QVERIFY(scene.messageCount() == 0);
    QCOMPARE(_drawing.error(), 0U);
}

void tst_Volumes::secondComponentLeadsUpwardsInTheFunction()
{
    // The same grey everywhere; alpha is larger to the right.
    const CoreScene scene(
        volume(voxels("2 2 1 2", "0x4000 0x40FF 0x4000 0x40FF"),
               "OpacityMapVolumeStyle { transferFunction PixelTexture { image 1 2 4 0xFF0000FF 0xFFFF00FF " +
                   Sharp + "} } ")
            .c_str());
    COMPARE_DRAWN(_drawing.at(scene, -1, 0), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(scene, 1, 0), QColor(Qt::yellow));
}

void tst_Volumes::functionWithoutAlphaKeepsTheOpacity()
{
    const CoreScene scene(volume(voxels("1 1 1 2", "0x80 0x80"),
                                 "OpacityMapVolumeStyle { transferFunction PixelTexture { "
                                 "image 1 1 3 0xFF0000 } } ")
                              .c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(191, 0, 0));
}

void tst_Volumes::functionWithDepthTakesThreeComponents()
{
    // Blue is the third component: at the far end of the function it is cyan.
    const CoreScene scene(volume(voxels("3 1 1 2", "0x0000FF 0x0000FF"),
                                 "OpacityMapVolumeStyle { transferFunction PixelTexture3D { image [ 4 1 1 2 "
                                 "0xFF0000FF 0x00FFFFFF ] " +
                                     Sharp + "} } ")
                              .c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::cyan));
}

void tst_Volumes::slicesRiseAlongZ()
{
    // The last slice is in front: the volume is turned, so that this is to the right.
    const CoreScene scene(("Transform { rotation 0 1 0 1.5708 children [ " +
                           volume(voxels("3 1 1 2", "0xFF0000 0x00FF00")) + " ] }")
                              .c_str());
    const QColor left = _drawing.at(scene, -1, 0);
    const QColor right = _drawing.at(scene, 1, 0);
    QVERIFY2(left.red() > 60 && left.green() < 6, qPrintable(left.name()));
    QVERIFY2(right.green() > 120 && right.red() < 6, qPrintable(right.name()));
}

void tst_Volumes::dimensionsAreFollowed()
{
    const CoreScene scene(volume(Solid).c_str());
    COMPARE_DRAWN(_drawing.at(scene, 3, 0), QColor(Qt::black));
    scene.set("V", "dimensions", "8 2 2");
    COMPARE_DRAWN(_drawing.at(scene, 3, 0), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(scene, 0, 1.5), QColor(Qt::black));
}

void tst_Volumes::voxelsAreFollowed()
{
    const CoreScene scene(volume(Solid).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::red));
    scene.set("T", "image", "4 1 1 2 0x0000FFFF 0x0000FFFF");
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::blue));
}

void tst_Volumes::invisibleVolumeIsNotDrawn()
{
    const CoreScene scene(volume(Solid).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::red));
    scene.set("V", "visible", "FALSE");
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::black));
}

void tst_Volumes::opaqueShapesStopTheRay_data()
{
    QTest::addColumn<double>("z");
    QTest::addColumn<QColor>("color");
    QTest::newRow("before") << 3.0 << QColor(0, 0, 255);
    QTest::newRow("within") << 0.0 << QColor(128, 128, 255);
    QTest::newRow("behind") << -3.0 << QColor(191, 191, 255);
}

void tst_Volumes::opaqueShapesStopTheRay()
{
    QFETCH(double, z);
    QFETCH(QColor, color);
    const std::string wall = "Transform { translation 0 0 " + textOf(z) +
                             " children Shape { appearance Appearance { material UnlitMaterial { "
                             "emissiveColor 0 0 1 } } geometry Rectangle2D { size 4 4 } } } ";
    const CoreScene scene((wall + volume(voxels("4 1 1 2", "0xFFFFFF80 0xFFFFFF80"))).c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), color);
    QCOMPARE(_drawing.error(), 0U);
}

void tst_Volumes::depthIsThatOfThePartOfTheWindow()
{
    const CoreScene scene(Parted.c_str());
    const osg::RefPtr<osg::NodePtr> root(nodeOf(scene));
    GLPicture picture;
    picture.port->setSize(0.5F, 0.5F, 1, 1); // the right upper quarter
    for (int i = 0; i < 2; ++i) {
        const QImage image = picture.draw(root.get());
        COMPARE_DRAWN(image.pixelColor(160, 50), QColor(128, 128, 255));
        COMPARE_DRAWN(image.pixelColor(140, 50), QColor(191, 191, 191));
    }
    picture.port->setSize(0, 0, 1, 1);
    const QImage image = picture.draw(root.get());
    COMPARE_DRAWN(image.pixelColor(120, 100), QColor(128, 128, 255));
    COMPARE_DRAWN(image.pixelColor(80, 100), QColor(191, 191, 191));
}

void tst_Volumes::camerasMayBeParallel()
{
    const CoreScene scene(Parted.c_str());
    const osg::RefPtr<osg::NodePtr> root(nodeOf(scene));
    GLPicture picture;
    const osg::OrthographicCameraPtr camera = osg::OrthographicCamera::create();
    camera->setVerticalSize(10);
    camera->setNear(0.1F);
    camera->setFar(100);
    camera->setBeacon(picture.eye.get());
    picture.port->setCamera(camera);
    const QImage image = picture.draw(root.get());
    COMPARE_DRAWN(image.pixelColor(102, 100), QColor(128, 128, 255));
    COMPARE_DRAWN(image.pixelColor(98, 100), QColor(191, 191, 191));
    // Rays do not fan out: the box is as large as its front.
    COMPARE_DRAWN(image.pixelColor(61, 100), QColor(191, 191, 191));
    COMPARE_DRAWN(image.pixelColor(58, 100), QColor(Qt::black));
}

void tst_Volumes::cameraMayStandWithin()
{
    // The camera stands at z = 10: a half of the box is before it.
    const CoreScene scene(("Transform { translation 0 0 10 children [ " +
                           volume(voxels("4 1 1 2", "0xFFFFFF80 0xFF000080")) + " ] }")
                              .c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(128, 128, 128));
}

void tst_Volumes::planesCutTheRay()
{
    const CoreScene scene(("Group { children [ ClipPlane { plane 0 0 -1 0 } " +
                           volume(voxels("4 1 1 2", "0xFFFFFF80 0xFF000080")) + " ] }")
                              .c_str());
    // Half of the voxels are cut away, and with them the red.
    COMPARE_DRAWN(_drawing.at(scene, 0, 0), QColor(128, 128, 128));
    const CoreScene half(
        ("Group { children [ ClipPlane { plane -1 0 0 0 } " + volume(Solid) + " ] }").c_str());
    COMPARE_DRAWN(_drawing.at(half, -1, 0), QColor(Qt::red));
    COMPARE_DRAWN(_drawing.at(half, 1, 0), QColor(Qt::black));
}

void tst_Volumes::fogLiesOverVolumes()
{
    const CoreScene scene(
        ("Group { children [ LocalFog { color 0 0 1 visibilityRange 1 } " + volume(Solid) + " ] }").c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::blue));
}

void tst_Volumes::stylesThatAreOffAreNone()
{
    const CoreScene scene(volume(Solid, "DEF O OpacityMapVolumeStyle { transferFunction PixelTexture { image "
                                        "1 1 3 0x00FF00 } } ")
                              .c_str());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::green));
    scene.set("O", "enabled", "FALSE");
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::red));
}

void tst_Volumes::badVolumesDrawNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray("VolumeData { }");
    QTest::newRow("no pixels") << QByteArray("VolumeData { voxels PixelTexture3D { } }");
    QTest::newRow("empty segments") << QByteArray("SegmentedVolumeData { }");
    QTest::newRow("empty surfaces") << QByteArray("IsoSurfaceVolumeData { }");
    QTest::newRow("no surface") << QByteArray("IsoSurfaceVolumeData { dimensions 4 4 4 voxels PixelTexture3D "
                                              "{ image [ 1 1 1 2 255 0 ] } }");
    QTest::newRow("no size") << QByteArray(volume(Solid, "", "dimensions 4 0 4").c_str());
    QTest::newRow("no number") << QByteArray(volume(Solid, "", "dimensions nan 4 4").c_str());
    QTest::newRow("inside out") << QByteArray(volume(Solid, "", "dimensions 4 4 -4").c_str());
}

void tst_Volumes::badVolumesDrawNothing()
{
    QFETCH(QByteArray, text);
    const CoreScene scene(text.constData());
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::black));
    QCOMPARE(_drawing.error(), 0U);
}

void tst_Volumes::badVolumesAreReported_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("size") << QByteArray(volume(Solid, "", "dimensions 4 0 4").c_str());
    QTest::newRow("flat voxels") << QByteArray(volume(voxels("1 1 1 1", "255")).c_str());
    QTest::newRow("flat normals") << QByteArray(
        volume(Solid, "EdgeEnhancementVolumeStyle { surfaceNormals PixelTexture3D { image [ 1 1 1 1 0 ] } } ")
            .c_str());
    QTest::newRow("flat blend") << QByteArray(
        volume(Solid, "BlendedVolumeStyle { voxels PixelTexture3D { image [ 1 1 1 1 0 ] } } ").c_str());
    QTest::newRow("weight without a table") << QByteArray(
        volume(Solid, "BlendedVolumeStyle { weightFunction1 \"TABLE\" voxels " + Solid + "} ").c_str());
    QTest::newRow("too many surfaces")
        << QByteArray("IsoSurfaceVolumeData { surfaceValues [ 0.5 ] contourStepSize 0.001 voxels "
                      "PixelTexture3D { image [ 1 "
                      "1 1 2 0 255 ] } }");
    QTest::newRow("flat segments") << QByteArray("SegmentedVolumeData { segmentIdentifiers PixelTexture3D { "
                                                 "image [ 1 1 1 1 0 ] } voxels PixelTexture3D "
                                                 "{ image [ 1 1 1 2 0 255 ] } }");
    QTest::newRow("shadows") << QByteArray(volume(Solid, "ShadedVolumeStyle { shadows TRUE } ").c_str());
    QTest::newRow("projection") << QByteArray(
        volume(Solid, "ProjectionVolumeStyle { type \"SUM\" } ").c_str());
}

void tst_Volumes::badVolumesAreReported()
{
    QFETCH(QByteArray, text);
    const CoreScene scene(text.constData());
    _drawing.draw(scene);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(_drawing.error(), 0U);
}

void tst_Volumes::boxIsHit()
{
    const CoreScene scene(volume(Solid).c_str());
    std::vector<Node*> nodes;
    osg::Pnt3f point;
    QVERIFY(scene.proc().pick(osg::Line(osg::Pnt3f(1, 1, 10), osg::Vec3f(0, 0, -1)), nodes, &point, nullptr,
                              nullptr, nullptr, nullptr));
    QCOMPARE(nodes.back(), &scene.node("V"));
    QVERIFY(point.dist(osg::Pnt3f(1, 1, 2)) < 1e-4F);
    QVERIFY(!scene.proc().pick(osg::Line(osg::Pnt3f(3, 1, 10), osg::Vec3f(0, 0, -1)), nodes, &point, nullptr,
                               nullptr, nullptr, nullptr));
}

void tst_Volumes::equalVolumesShareTheirProgram()
{
    const CoreScene scene((volume(Solid) + "DEF W VolumeData { voxels " + Halves +
                           "} DEF X VolumeData { voxels PixelTexture3D { image [ 4 1 1 2 0 0 ] } }")
                              .c_str());
    QVERIFY(volumeProgram(scene, "V") == volumeProgram(scene, "X"));
    QVERIFY(volumeProgram(scene, "V") != volumeProgram(scene, "W"));
}

void tst_Volumes::nothingStandsInForAFaultyProgram()
{
    const CoreScene scene(volume(Solid).c_str());
    LogCollector log(*osg::osgLogP);
    volumeProgram(scene, "V")->setSources({{osg::SHLProgram::FRAGMENT, "nonsense"}});
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::black));
    COMPARE_DRAWN(_drawing.middleOf(scene), QColor(Qt::black));
    QCOMPARE(QByteArray::fromStdString(log.take()).count("volumes are not drawn"), 1);
    QCOMPARE(_drawing.error(), 0U);
}

QTEST_MAIN(tst_Volumes)
#include "tst_Volumes.moc"
