#include "SceneDrawing.h"
#include <memory>

using namespace Orvane;

/// How deep in fog the points of a mesh lie, where the scene says so.
class tst_FogCoordinates : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void depthsStandInForTheDistance_data();
    void depthsStandInForTheDistance();
    void depthsRunBetweenThePoints();
    void exponentialFogTakesShareOfItsRange();
    void linesAndPointsHaveDepths_data();
    void linesAndPointsHaveDepths();
    void shapesBesideKeepTheirDistance();
    void depthsAreFollowed();
    void badDepthsAreHarmless();

private:
    std::unique_ptr<SceneDrawing> _drawing;
};

namespace {

/// The eye stands 10 before the shapes: by the distance half of the fog would be seen.
const std::string LinearFog = "DEF F Fog { color 0 0 1 visibilityRange 20 } ";
const std::string Glow = "material UnlitMaterial { emissiveColor 1 0 0 }";

std::string depths(const std::string& list)
{
    return "fogCoord DEF D FogCoordinate { depth [ " + list + " ] }";
}

} // namespace

void tst_FogCoordinates::initTestCase()
{
    _drawing = std::make_unique<SceneDrawing>();
    QVERIFY(_drawing->isValid());
}

void tst_FogCoordinates::depthsStandInForTheDistance_data()
{
    QTest::addColumn<QByteArray>("material");
    QTest::addColumn<QByteArray>("group");
    QTest::newRow("fixed steps") << QByteArray(Glow.c_str()) << QByteArray("Group");
    QTest::newRow("program") << QByteArray(
                                    "material PhysicalMaterial { baseColor 0 0 0 emissiveColor 1 0 0 }")
                             << QByteArray("Group");
    QTest::newRow("scaled") << QByteArray(Glow.c_str()) << QByteArray("Transform { scale 1 1 0.1");
}

void tst_FogCoordinates::depthsStandInForTheDistance()
{
    QFETCH(QByteArray, material);
    QFETCH(QByteArray, group);
    const std::string open = group.contains('{') ? group.toStdString() : group.toStdString() + " {";
    CoreScene scene((LinearFog + open + " children " +
                     squareWith(material.toStdString(), depths("0.25 0.25 0.25 0.25")) + " }")
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xBF, 0, 0x40));
    scene.set("D", "depth", "1 1 1 1");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0, 0, 0xFF));
    QCOMPARE(scene.messageCount(), std::size_t(0));
    QCOMPARE(_drawing->error(), 0U);
}

void tst_FogCoordinates::depthsRunBetweenThePoints()
{
    CoreScene scene((LinearFog + squareWith(Glow, depths("0 1 1 0"))).c_str());
    COMPARE_DRAWN(_drawing->at(scene, -0.5, 0, false), QColor(0xBF, 0, 0x40));
    COMPARE_DRAWN(_drawing->at(scene, 0.5, 0, false), QColor(0x40, 0, 0xBF));
}

void tst_FogCoordinates::exponentialFogTakesShareOfItsRange()
{
    CoreScene scene(("Fog { color 0 0 1 fogType EXPONENTIAL visibilityRange 20 } " +
                     squareWith(Glow, depths("0.5 0.5 0.5 0.5")))
                        .c_str());
    CoreScene plain(
        ("Fog { color 0 0 1 fogType EXPONENTIAL visibilityRange 20 } " + squareWith(Glow)).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), _drawing->middleOf(plain, false));
    scene.set("D", "depth", "0 0 0 0");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xFF, 0, 0));
}

void tst_FogCoordinates::linesAndPointsHaveDepths_data()
{
    QTest::addColumn<QByteArray>("geometry");
    QTest::newRow("indexed lines") << QByteArray("IndexedLineSet { coordIndex [ 0 1 -1 ] ");
    QTest::newRow("lines") << QByteArray("LineSet { vertexCount [ 2 ] ");
    QTest::newRow("points") << QByteArray("PointSet { ");
}

void tst_FogCoordinates::linesAndPointsHaveDepths()
{
    QFETCH(QByteArray, geometry);
    CoreScene scene(
        (LinearFog + "Shape { appearance Appearance { " + Glow +
         " pointProperties PointProperties { pointSizeScaleFactor 20 pointSizeMaxValue 20 } } geometry " +
         geometry.toStdString() + "coord Coordinate { point [ 0 0 0, 0.2 0 0 ] } " + depths("1 1") + " } }")
            .c_str());
    const QImage image = _drawing->draw(scene, false);
    int shown = 0;
    for (int x = 95; x < 115; ++x) {
        for (int y = 95; y < 105; ++y) {
            const QColor color = image.pixelColor(x, y);
            QVERIFY2(color.red() < 6, qPrintable(color.name()));
            shown += color.blue() > 250 ? 1 : 0;
        }
    }
    QVERIFY(shown > 0);
}

void tst_FogCoordinates::shapesBesideKeepTheirDistance()
{
    CoreScene scene((LinearFog + squareWith(Glow, depths("0 0 0 0")) +
                     " Transform { translation 3 0 0 children Shape { appearance Appearance { " + Glow +
                     " } geometry Box { } } }")
                        .c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xFF, 0, 0));
    const QColor beside = _drawing->at(scene, 3, 0, false);
    QVERIFY2(beside.blue() > 0x60 && beside.blue() < 0x80, qPrintable(beside.name()));
}

void tst_FogCoordinates::depthsAreFollowed()
{
    CoreScene scene((LinearFog + squareWith(Glow, depths("0 0 0 0"))).c_str());
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0xFF, 0, 0));
    scene.set("D", "depth", "0.5 0.5 0.5 0.5");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0, 0x80));
    scene.set("D", "depth", "");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0, 0x80));
    scene.set("D", "depth", "1 1 1 1");
    scene.set("G", "fogCoord", "NULL");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0, 0x80));
}

void tst_FogCoordinates::badDepthsAreHarmless()
{
    CoreScene scene((LinearFog + squareWith(Glow, depths("nan -1 inf 1e30"))).c_str());
    QVERIFY(_drawing->at(scene, -0.9, -0.9, false).red() > 240);
    QVERIFY(_drawing->at(scene, 0.9, 0.9, false).blue() > 230);
    QCOMPARE(scene.messageCount(), std::size_t(0));
    scene.set("D", "depth", "1");
    QVERIFY(_drawing->at(scene, 0.9, 0.9, false).red() > 230);
    QCOMPARE(scene.messageCount(), std::size_t(1));
    scene.set("D", "depth", "0.5 0.5 0.5 0.5 0.5 0.5 0.5");
    COMPARE_DRAWN(_drawing->middleOf(scene, false), QColor(0x80, 0, 0x80));
}

QTEST_MAIN(tst_FogCoordinates)
#include "tst_FogCoordinates.moc"
