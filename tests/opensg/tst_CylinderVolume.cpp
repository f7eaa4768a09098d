#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGCylinderVolume.h>

#include <QtTest>

using namespace osg;

class tst_CylinderVolume : public QObject
{
    Q_OBJECT

private slots:
    void bounds();
    void content();
    void containsPoints();
    void extendByPoint();
    void extendByBoxHoldsItsCorners();
    void transformHoldsTheCylinder_data();
    void transformHoldsTheCylinder();
};

void tst_CylinderVolume::bounds()
{
    Pnt3f min;
    Pnt3f max;
    CylinderVolume(Pnt3f(1, 0, 0), Vec3f(0, -4, 0), 2).getBounds(min, max);
    QVERIFY(min == Pnt3f(-1, -4, -2));
    QVERIFY(max == Pnt3f(3, 0, 2));
    // A slanted axis: the rim reaches radius * sin of the angle to the axis in question.
    CylinderVolume(Pnt3f(), Vec3f(3, 4, 0), 1).getBounds(min, max);
    QVERIFY(min == Pnt3f(-0.8f, -0.6f, -1));
    QVERIFY(max == Pnt3f(3.8f, 4.6f, 1));
}

void tst_CylinderVolume::content()
{
    QCOMPARE(CylinderVolume(Pnt3f(), Vec3f(0, 0, 3), 2).getScalarVolume(), Pi * 12);
    QCOMPARE(CylinderVolume().getScalarVolume(), 0.0f);
    Pnt3f center;
    CylinderVolume(Pnt3f(1, 2, 3), Vec3f(0, 4, 0), 2).getCenter(center);
    QVERIFY(center == Pnt3f(1, 4, 3));
}

void tst_CylinderVolume::containsPoints()
{
    const CylinderVolume cylinder(Pnt3f(1, 0, 0), Vec3f(0, 4, 0), 2);
    QVERIFY(cylinder.intersect(Pnt3f(3, 4, 0)));
    QVERIFY(!cylinder.intersect(Pnt3f(3.1f, 2, 0)));
    QVERIFY(!cylinder.intersect(Pnt3f(1, 4.1f, 0)));
    QVERIFY(!cylinder.intersect(Pnt3f(1, -0.1f, 0)));
}

void tst_CylinderVolume::extendByPoint()
{
    CylinderVolume cylinder(Pnt3f(), Vec3f(0, 2, 0), 1);
    cylinder.extendBy(Pnt3f(3, 5, 0));
    QVERIFY(cylinder.getAxis() == Vec3f(0, 5, 0));
    QCOMPARE(cylinder.getRadius(), 3.0f);
    cylinder.extendBy(Pnt3f(0, -1, 0));
    QVERIFY(cylinder.getBase() == Pnt3f(0, -1, 0));
    QVERIFY(cylinder.getAxis() == Vec3f(0, 6, 0));
    CylinderVolume fresh;
    fresh.extendBy(Pnt3f(1, 1, 1));
    QVERIFY(!fresh.isEmpty());
    QVERIFY(fresh.getBase() == Pnt3f(1, 1, 1));
}

void tst_CylinderVolume::extendByBoxHoldsItsCorners()
{
    CylinderVolume cylinder(Pnt3f(), Vec3f(0, 2, 0), 1);
    cylinder.extendBy(BoxVolume(-1, 0, -1, 2, 3, 1));
    QCOMPARE(cylinder.getRadius(), std::sqrt(5.0f));
    QVERIFY(cylinder.getAxis() == Vec3f(0, 3, 0));
}

void tst_CylinderVolume::transformHoldsTheCylinder_data()
{
    QTest::addColumn<bool>("sheared");
    QTest::newRow("turned and scaled") << false;
    QTest::newRow("sheared") << true;
}

void tst_CylinderVolume::transformHoldsTheCylinder()
{
    QFETCH(bool, sheared);
    Matrix m;
    m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(1, 2, 3), 1), Vec3f(2, 2, 2));
    if (sheared) {
        Matrix shear;
        shear[0][1] = 0.7f;
        shear[2][0] = -0.4f;
        m.mult(shear);
    }
    CylinderVolume cylinder(Pnt3f(), Vec3f(0, 3, 0), 1);
    cylinder.transform(m);
    if (!sheared) {
        QVERIFY(std::abs(cylinder.getRadius() - 2) < 1e-4f);
        QVERIFY(std::abs(cylinder.getAxis().length() - 6) < 1e-3f);
    }
    const CylinderVolume roomy(cylinder.getBase() - cylinder.getAxis() * 1e-4f, cylinder.getAxis() * 1.0002f,
                               cylinder.getRadius() * 1.0001f);
    for (int i = 0; i < 360; ++i) {
        const float angle = osgDegree2Rad(float(i));
        for (float height : {0.0f, 3.0f}) {
            Pnt3f p(std::cos(angle), height, std::sin(angle));
            m.mult(p);
            QVERIFY(roomy.intersect(p));
        }
    }
}

QTEST_APPLESS_MAIN(tst_CylinderVolume)
#include "tst_CylinderVolume.moc"
