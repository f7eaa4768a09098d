#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGFrustumVolume.h>

#include <QtTest>

using namespace osg;

namespace {

/// Sees 90 degrees down the negative z axis, from 1 to 10.
FrustumVolume pyramid()
{
    const float f = -(10 + 1) / float(10 - 1);
    const float g = -2 * 10 * 1 / float(10 - 1);
    return FrustumVolume(Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, f, g, 0, 0, -1, 0));
}

} // namespace

class tst_FrustumVolume : public QObject
{
    Q_OBJECT

private slots:
    void planesOfAPerspective();
    void planesFaceInwards();
    void containsPoints();
    void boxes_data();
    void boxes();
    void emptyAndInfiniteBoxes();
    void planeNormalisesBothFactors();
    void planeThroughAPoint();
};

void tst_FrustumVolume::planesOfAPerspective()
{
    const FrustumVolume frustum = pyramid();
    QVERIFY(frustum.getPlane(FrustumVolume::NEAR_PLANE).getNormal().equals(Vec3f(0, 0, -1), 1e-5f));
    QVERIFY(std::abs(frustum.getPlane(FrustumVolume::NEAR_PLANE).getDistanceFromOrigin() - 1) < 1e-5f);
    QVERIFY(frustum.getPlane(FrustumVolume::FAR_PLANE).getNormal().equals(Vec3f(0, 0, 1), 1e-5f));
    QVERIFY(std::abs(frustum.getPlane(FrustumVolume::FAR_PLANE).getDistanceFromOrigin() + 10) < 1e-4f);
    const float half = std::sqrt(0.5f);
    QVERIFY(frustum.getPlane(FrustumVolume::LEFT_PLANE).getNormal() == Vec3f(half, 0, -half));
    QVERIFY(frustum.getPlane(FrustumVolume::TOP_PLANE).getNormal() == Vec3f(0, -half, -half));
}

void tst_FrustumVolume::planesFaceInwards()
{
    const FrustumVolume frustum = pyramid();
    for (int side = FrustumVolume::NEAR_PLANE; side <= FrustumVolume::TOP_PLANE; ++side)
        QVERIFY(frustum.getPlane(FrustumVolume::Side(side)).distance(Pnt3f(0, 0, -5)) > 0);
}

void tst_FrustumVolume::containsPoints()
{
    const FrustumVolume frustum = pyramid();
    QVERIFY(frustum.intersect(Pnt3f(0, 0, -5)));
    QVERIFY(frustum.intersect(Pnt3f(4.9f, 4.9f, -5)));
    QVERIFY(!frustum.intersect(Pnt3f(5.1f, 0, -5)));
    QVERIFY(!frustum.intersect(Pnt3f(0, -5.1f, -5)));
    QVERIFY(!frustum.intersect(Pnt3f(0, 0, -0.9f)));
    QVERIFY(!frustum.intersect(Pnt3f(0, 0, -10.1f)));
    QVERIFY(!frustum.intersect(Pnt3f(0, 0, 5)));
}

void tst_FrustumVolume::boxes_data()
{
    QTest::addColumn<QVector<float>>("bounds");
    QTest::addColumn<int>("containment");
    typedef QVector<float> F;
    QTest::newRow("inside") << F{-1, -1, -6, 1, 1, -4} << int(FrustumVolume::INSIDE);
    QTest::newRow("across the left side") << F{-6, -1, -6, 1, 1, -4} << int(FrustumVolume::CROSSING);
    QTest::newRow("across the near side")
        << F{-0.1f, -0.1f, -3, 0.1f, 0.1f, 3} << int(FrustumVolume::CROSSING);
    QTest::newRow("around everything") << F{-90, -90, -90, 90, 90, 90} << int(FrustumVolume::CROSSING);
    QTest::newRow("right of it") << F{8, -1, -6, 9, 1, -4} << int(FrustumVolume::OUTSIDE);
    QTest::newRow("above it") << F{-1, 8, -6, 1, 9, -4} << int(FrustumVolume::OUTSIDE);
    QTest::newRow("behind the eye") << F{-1, -1, 1, 1, 1, 2} << int(FrustumVolume::OUTSIDE);
    QTest::newRow("too far") << F{-1, -1, -20, 1, 1, -11} << int(FrustumVolume::OUTSIDE);
}

void tst_FrustumVolume::boxes()
{
    QFETCH(QVector<float>, bounds);
    QFETCH(int, containment);
    const BoxVolume box(bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]);
    QCOMPARE(int(pyramid().classify(box)), containment);
    QCOMPARE(pyramid().intersect(box), containment != FrustumVolume::OUTSIDE);
}

void tst_FrustumVolume::emptyAndInfiniteBoxes()
{
    BoxVolume box;
    QCOMPARE(pyramid().classify(box), FrustumVolume::OUTSIDE);
    box.setInfinite();
    QCOMPARE(pyramid().classify(box), FrustumVolume::CROSSING);
}

void tst_FrustumVolume::planeNormalisesBothFactors()
{
    Plane plane(Vec3f(0, 4, 0), 8);
    QVERIFY(plane.getNormal() == Vec3f(0, 1, 0));
    QCOMPARE(plane.getDistanceFromOrigin(), 2.0f);
    plane.set(Vec3f(), 5);
    QCOMPARE(plane.getDistanceFromOrigin(), 2.0f);
}

void tst_FrustumVolume::planeThroughAPoint()
{
    const Plane plane(Vec3f(0, 0, -2), Pnt3f(1, 2, 3));
    QCOMPARE(plane.distance(Pnt3f(7, 7, 3)), 0.0f);
    QCOMPARE(plane.distance(Pnt3f(0, 0, 1)), 2.0f);
    QVERIFY(plane.isInHalfSpace(Pnt3f(7, 7, 3)));
    QVERIFY(!plane.isInHalfSpace(Pnt3f(7, 7, 3.5f)));
}

QTEST_APPLESS_MAIN(tst_FrustumVolume)
#include "tst_FrustumVolume.moc"
