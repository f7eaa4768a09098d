#include "CoreScene.h"
#include "core/GeometryProc.h"
#include <OpenSG/OSGGeometry.h>
#include <QtTest>
#include <cmath>

using namespace Orvane;

/// Curves and surfaces that control points pull at, by numbers.
class tst_Nurbs : public QObject
{
    Q_OBJECT

private slots:
    void curveRunsThroughItsEnds();
    void weightsMakeACircle();
    void tessellationCountsPieces();
    void patchIsSmooth();
    void patchFollowsItsPoints();
    void badNumbersAreToldAndHarmless_data();
    void badNumbersAreToldAndHarmless();

private:
    static const std::vector<osg::Pnt3f>& positions(const CoreScene& scene)
    {
        return scene.procOf<GeometryProc>("G").geometry()->getPositions()->getField();
    }
};

void tst_Nurbs::curveRunsThroughItsEnds()
{
    CoreScene scene("Shape { geometry DEF G NurbsCurve { order 3 tessellation 2 controlPoint "
                    "Coordinate { point [ 0 0 0, 1 2 0, 2 0 0 ] } } }");
    QCOMPARE(positions(scene).size(), std::size_t(3));
    QCOMPARE(positions(scene)[0], osg::Pnt3f(0, 0, 0));
    QCOMPARE(positions(scene)[1], osg::Pnt3f(1, 1, 0));
    QCOMPARE(positions(scene)[2], osg::Pnt3f(2, 0, 0));
}

void tst_Nurbs::weightsMakeACircle()
{
    CoreScene scene(
        "Shape { geometry DEF G NurbsCurve { order 3 knot [ 0 0 0 1 1 1 ] weight [ 1 0.70710678 1 ] "
        "tessellation 16 controlPoint Coordinate { point [ 1 0 0, 1 1 0, 0 1 0 ] } } }");
    QCOMPARE(positions(scene).size(), std::size_t(17));
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(std::abs(std::hypot(p[0], p[1]) - 1.0F) < 1e-5F);
}

void tst_Nurbs::tessellationCountsPieces()
{
    CoreScene scene(
        "Shape { geometry DEF G NurbsCurve { controlPoint Coordinate { point [ 0 0 0, 1 2 0, 2 0 0 ] } } }");
    const std::size_t usual = positions(scene).size();
    QVERIFY(usual > 10);
    scene.set("G", "tessellation", "5");
    QCOMPARE(positions(scene).size(), std::size_t(6));
    scene.set("G", "tessellation", "-4");
    QCOMPARE(positions(scene).size(), std::size_t(13));
    scene.set("G", "tessellation", "2147483647");
    QVERIFY(positions(scene).size() < 10000);
    scene.set("G", "tessellation", "-2147483648");
    QVERIFY(positions(scene).size() < 10000);
}

namespace {

const char Patch[] =
    "Shape { geometry DEF G NurbsPatchSurface { uDimension 3 vDimension 2 uOrder 3 vOrder 2 uTessellation 4 "
    "vTessellation 2 controlPoint DEF C Coordinate { point [ -1 0 1, 0 2 1, 1 0 1, -1 0 -1, 0 2 -1, 1 0 -1 ] "
    "} } }";

} // namespace

void tst_Nurbs::patchIsSmooth()
{
    CoreScene scene(Patch);
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(low, osg::Pnt3f(-1, 0, -1));
    QCOMPARE(high, osg::Pnt3f(1, 1, 1));
    const osg::GeometryPtr mesh = scene.procOf<GeometryProc>("G").geometry();
    QCOMPARE(mesh->getNormals()->getSize(), mesh->getPositions()->getSize());
    // Seen from above its front shows, and a point has one normal.
    SceneHit hit;
    QVERIFY(scene.proc().castRay(osg::Line(osg::Pnt3f(0.1F, 5, 0.1F), osg::Vec3f(0, -1, 0)), hit));
    QVERIFY(hit.normal[1] > 0.5F);
    QCOMPARE(mesh->getPositions()->getSize(), 15U);
}

void tst_Nurbs::patchFollowsItsPoints()
{
    CoreScene scene(Patch);
    scene.set("C", "point", "[-1 0 1, 0 6 1, 1 0 1, -1 0 -1, 0 6 -1, 1 0 -1]");
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(1, 3, 1));
}

void tst_Nurbs::badNumbersAreToldAndHarmless_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("messages");
    const QString points = QStringLiteral("controlPoint Coordinate { point [ 0 0 0, 1 2 0, 2 0 0, 3 3 3 ] }");
    QTest::newRow("no points") << QStringLiteral("NurbsCurve { }") << 0;
    QTest::newRow("order above points") << QStringLiteral("NurbsCurve { order 9 %1 }").arg(points) << 1;
    QTest::newRow("order below 2") << QStringLiteral("NurbsCurve { order -3 %1 }").arg(points) << 1;
    QTest::newRow("knots fall") << QStringLiteral("NurbsCurve { knot [ 9 8 7 6 5 4 3 ] %1 }").arg(points)
                                << 0;
    QTest::newRow("knots in one place")
        << QStringLiteral("NurbsCurve { knot [ 1 1 1 1 1 1 1 ] %1 }").arg(points) << 0;
    QTest::newRow("weights of 0") << QStringLiteral("NurbsCurve { weight [ 0 0 0 0 ] %1 }").arg(points) << 0;
    QTest::newRow("huge points")
        << QStringLiteral("NurbsCurve { controlPoint Coordinate { point [ 1e38 0 0, 1e38 1e38 0, 0 0 "
                          "0 ] } }")
        << 0;
    QTest::newRow("huge dimensions")
        << QStringLiteral("NurbsPatchSurface { uDimension 2147483647 vDimension 2147483647 %1 }").arg(points)
        << 1;
    QTest::newRow("too few points")
        << QStringLiteral("NurbsPatchSurface { uDimension 3 vDimension 3 %1 }").arg(points) << 1;
    QTest::newRow("empty")
        << QStringLiteral("NurbsPatchSurface { uDimension -1 vDimension 0 %1 }").arg(points) << 0;
}

void tst_Nurbs::badNumbersAreToldAndHarmless()
{
    QFETCH(QString, text);
    QFETCH(int, messages);
    CoreScene scene(QStringLiteral("Shape { geometry DEF G %1 }").arg(text).toUtf8().constData());
    scene.context->runFrame();
    QCOMPARE(int(scene.messageCount()), messages);
    for (const osg::Pnt3f& p : positions(scene))
        QVERIFY(std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]));
}

QTEST_GUILESS_MAIN(tst_Nurbs)
#include "tst_Nurbs.moc"
