#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>

#include <QtTest>

using namespace osg;

class tst_SphereVolume : public QObject
{
    Q_OBJECT

private slots:
    void boundsAndContent();
    void extendByPoints();
    void extendBySpheres();
    void extendByBoxHoldsItsCorners();
    void containsPoints();
    void transformHoldsTheStretchedSphere();
};

void tst_SphereVolume::boundsAndContent()
{
    const SphereVolume sphere(Pnt3f(1, 2, 3), -2);
    Pnt3f min;
    Pnt3f max;
    sphere.getBounds(min, max);
    QVERIFY(min == Pnt3f(-1, 0, 1));
    QVERIFY(max == Pnt3f(3, 4, 5));
    QCOMPARE(sphere.getScalarVolume(), 4 * Pi / 3 * 8);
    QCOMPARE(SphereVolume().getScalarVolume(), 0.0f);
    QVERIFY(SphereVolume().isEmpty());
}

void tst_SphereVolume::extendByPoints()
{
    SphereVolume sphere;
    sphere.extendBy(Pnt3f(1, 0, 0));
    QCOMPARE(sphere.getRadius(), 0.0f);
    sphere.extendBy(Pnt3f(3, 0, 0));
    QVERIFY(sphere.getCenter() == Pnt3f(2, 0, 0));
    QCOMPARE(sphere.getRadius(), 1.0f);
    sphere.extendBy(Pnt3f(2, 0.5f, 0));
    QCOMPARE(sphere.getRadius(), 1.0f);
}

void tst_SphereVolume::extendBySpheres()
{
    SphereVolume sphere(Pnt3f(0, 0, 0), 1);
    sphere.extendBy(SphereVolume(Pnt3f(4, 0, 0), 1));
    QVERIFY(sphere.getCenter() == Pnt3f(2, 0, 0));
    QCOMPARE(sphere.getRadius(), 3.0f);
    sphere.extendBy(SphereVolume(Pnt3f(2, 1, 0), 10));
    QVERIFY(sphere.getCenter() == Pnt3f(2, 1, 0));
    QCOMPARE(sphere.getRadius(), 10.0f);
    SphereVolume infinite;
    infinite.setInfinite();
    sphere.extendBy(infinite);
    QVERIFY(sphere.isInfinite());
}

void tst_SphereVolume::extendByBoxHoldsItsCorners()
{
    SphereVolume sphere(Pnt3f(0, 0, 0), 1);
    sphere.extendBy(BoxVolume(2, 2, 2, 3, 3, 3));
    QVERIFY(sphere.getCenter().dist(Pnt3f(3, 3, 3)) <= sphere.getRadius() + 1e-5f);
    QVERIFY(sphere.getCenter().dist(Pnt3f(-1, 0, 0)) <= sphere.getRadius() + 1e-5f);
}

void tst_SphereVolume::containsPoints()
{
    const SphereVolume sphere(Pnt3f(1, 0, 0), 2);
    QVERIFY(sphere.intersect(Pnt3f(3, 0, 0)));
    QVERIFY(!sphere.intersect(Pnt3f(2.5f, 1.5f, 0)));
    QVERIFY(!SphereVolume().intersect(Pnt3f()));
}

void tst_SphereVolume::transformHoldsTheStretchedSphere()
{
    Matrix m;
    m.setTransform(Vec3f(5, 0, 0), Quaternion(Vec3f(1, 2, 3), 1), Vec3f(1, 2, 3));
    SphereVolume sphere(Pnt3f(1, 0, 0), 2);
    sphere.transform(m);
    Pnt3f center(1, 0, 0);
    m.mult(center);
    QVERIFY(sphere.getCenter() == center);
    QVERIFY(std::abs(sphere.getRadius() - 6) < 1e-4f);

    // A shear stretches more than its longest column says.
    Matrix shear;
    shear[1][0] = 1;
    sphere.setValue(Pnt3f(), 1);
    sphere.transform(shear);
    for (int i = 0; i < 360; ++i) {
        Pnt3f p(std::cos(osgDegree2Rad(float(i))), std::sin(osgDegree2Rad(float(i))), 0);
        shear.mult(p);
        QVERIFY(sphere.intersect(p));
    }
}

QTEST_APPLESS_MAIN(tst_SphereVolume)
#include "tst_SphereVolume.moc"
