#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGCylinderVolume.h>
#include <OpenSG/OSGFrustumVolume.h>
#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGSphereVolume.h>

#include <QtTest>

using namespace osg;

class tst_Line : public QObject
{
    Q_OBJECT

private slots:
    void defaultHasNoDirection();
    void directionIsNormalised();
    void twoPointsOrPointAndDirection();
    void closestPointAndDistance();
    void closestPointsOfTwoLines();
    void parallelLinesHaveNoClosestPoints();
    void triangleFromTheFront();
    void triangleFromBehind();
    void triangleBehindThePosition();
    void triangleMissed();
    void triangleEdgeOn();
    void smallTriangleHasUnitNormal();
    void box_data();
    void box();
    void emptyAndInfiniteBox();
    void sphere();
    void cylinder();
    void frustum();
    void comparison();
};

void tst_Line::defaultHasNoDirection()
{
    const Line line;
    QVERIFY(line.getPosition() == Pnt3f());
    QVERIFY(line.getDirection() == Vec3f());
}

void tst_Line::directionIsNormalised()
{
    QVERIFY(Line(Pnt3f(1, 2, 3), Vec3f(0, 0, -7)).getDirection() == Vec3f(0, 0, -1));
    QVERIFY(Line(Pnt3f(1, 0, 0), Pnt3f(1, 5, 0)).getDirection() == Vec3f(0, 1, 0));
}

void tst_Line::twoPointsOrPointAndDirection()
{
    Line line(Pnt3f(1, 1, 1), Pnt3f(3, 1, 1));
    QVERIFY(line.getDirection() == Vec3f(1, 0, 0));
    line.setValue(Pnt3f(1, 1, 1), Vec3f(0, 3, 0));
    QVERIFY(line.getPosition() == Pnt3f(1, 1, 1));
    QVERIFY(line.getDirection() == Vec3f(0, 1, 0));
}

void tst_Line::closestPointAndDistance()
{
    const Line line(Pnt3f(1, 0, 0), Vec3f(0, 1, 0));
    QVERIFY(line.getClosestPoint(Pnt3f(4, -5, 4)) == Pnt3f(1, -5, 0));
    QCOMPARE(line.distance(Pnt3f(4, -5, 4)), 5.0f);
}

void tst_Line::closestPointsOfTwoLines()
{
    const Line a(Pnt3f(0, 0, 0), Vec3f(1, 0, 0));
    const Line b(Pnt3f(5, -3, 2), Vec3f(0, 1, 0));
    Pnt3f onA;
    Pnt3f onB;
    QVERIFY(a.getClosestPoints(b, onA, onB));
    QVERIFY(onA == Pnt3f(5, 0, 0));
    QVERIFY(onB == Pnt3f(5, 0, 2));
}

void tst_Line::parallelLinesHaveNoClosestPoints()
{
    Pnt3f a(7, 7, 7);
    Pnt3f b(8, 8, 8);
    QVERIFY(!Line(Pnt3f(), Vec3f(1, 0, 0)).getClosestPoints(Line(Pnt3f(0, 1, 0), Vec3f(-1, 0, 0)), a, b));
    QVERIFY(a == Pnt3f(7, 7, 7) && b == Pnt3f(8, 8, 8));
}

void tst_Line::triangleFromTheFront()
{
    const Line line(Pnt3f(0.25f, 0.25f, 3), Vec3f(0, 0, -1));
    float t = 0;
    Vec3f normal;
    QVERIFY(line.intersect(Pnt3f(0, 0, 1), Pnt3f(1, 0, 1), Pnt3f(0, 1, 1), t, &normal));
    QCOMPARE(t, 2.0f);
    QVERIFY(normal == Vec3f(0, 0, 1));
}

void tst_Line::triangleFromBehind()
{
    const Line line(Pnt3f(0.25f, 0.25f, -3), Vec3f(0, 0, 1));
    float t = 0;
    Vec3f normal;
    QVERIFY(line.intersect(Pnt3f(0, 0, 1), Pnt3f(1, 0, 1), Pnt3f(0, 1, 1), t, &normal));
    QCOMPARE(t, 4.0f);
    QVERIFY(normal == Vec3f(0, 0, 1));
}

void tst_Line::triangleBehindThePosition()
{
    const Line line(Pnt3f(0.25f, 0.25f, 3), Vec3f(0, 0, 1));
    float t = 0;
    QVERIFY(line.intersect(Pnt3f(0, 0, 1), Pnt3f(1, 0, 1), Pnt3f(0, 1, 1), t));
    QCOMPARE(t, -2.0f);
}

void tst_Line::triangleMissed()
{
    float t = 5;
    const Pnt3f corners[] = {Pnt3f(0, 0, 0), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0)};
    for (const Pnt3f& p : {Pnt3f(-0.1f, 0.5f, 1), Pnt3f(0.5f, -0.1f, 1), Pnt3f(0.6f, 0.6f, 1)})
        QVERIFY(!Line(p, Vec3f(0, 0, -1)).intersect(corners[0], corners[1], corners[2], t));
    QCOMPARE(t, 5.0f);
}

void tst_Line::triangleEdgeOn()
{
    float t = 0;
    QVERIFY(!Line(Pnt3f(-1, 0.2f, 0), Vec3f(1, 0, 0)).intersect(Pnt3f(), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0), t));
    QVERIFY(!Line().intersect(Pnt3f(), Pnt3f(1, 0, 0), Pnt3f(0, 1, 0), t));
}

void tst_Line::smallTriangleHasUnitNormal()
{
    float t = 0;
    Vec3f normal;
    const Line line(Pnt3f(1e-4f, 1e-4f, 1), Vec3f(0, 0, -1));
    QVERIFY(line.intersect(Pnt3f(), Pnt3f(5e-4f, 0, 0), Pnt3f(0, 5e-4f, 0), t, &normal));
    QVERIFY(normal == Vec3f(0, 0, 1));
}

void tst_Line::box_data()
{
    QTest::addColumn<QVector<float>>("line");
    QTest::addColumn<bool>("hit");
    QTest::addColumn<float>("enter");
    QTest::addColumn<float>("exit");
    typedef QVector<float> F;
    QTest::newRow("through") << F{-5, 0, 0, 1, 0, 0} << true << 4.0f << 6.0f;
    QTest::newRow("from inside") << F{0, 0, 0, 0, 0, -1} << true << 0.0f << 1.0f;
    QTest::newRow("box behind") << F{5, 0, 0, 1, 0, 0} << false << 0.0f << 0.0f;
    QTest::newRow("beside, parallel") << F{-5, 2, 0, 1, 0, 0} << false << 0.0f << 0.0f;
    QTest::newRow("along a face") << F{-5, 1, 0, 1, 0, 0} << true << 4.0f << 6.0f;
    QTest::newRow("passes the corner") << F{-5, 0, 0, 1, 0.5f, 0} << false << 0.0f << 0.0f;
}

void tst_Line::box()
{
    QFETCH(QVector<float>, line);
    QFETCH(bool, hit);
    QFETCH(float, enter);
    QFETCH(float, exit);
    const Line ray(Pnt3f(line[0], line[1], line[2]), Vec3f(line[3], line[4], line[5]));
    const BoxVolume box(-1, -1, -1, 1, 1, 1);
    float foundEnter = 0;
    float foundExit = 0;
    QCOMPARE(ray.intersect(box, foundEnter, foundExit), hit);
    QCOMPARE(foundEnter, enter);
    QCOMPARE(foundExit, exit);
    QCOMPARE(ray.intersect(box), hit);
}

void tst_Line::emptyAndInfiniteBox()
{
    const Line line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1));
    BoxVolume box;
    QVERIFY(!line.intersect(box));
    box.setInfinite();
    float enter = 9;
    float exit = 9;
    QVERIFY(line.intersect(box, enter, exit));
    QCOMPARE(enter, 0.0f);
    QCOMPARE(exit, Inf);
}

void tst_Line::sphere()
{
    const SphereVolume sphere(Pnt3f(0, 0, 0), 2);
    float enter = 0;
    float exit = 0;
    QVERIFY(Line(Pnt3f(0, 0, 5), Vec3f(0, 0, -1)).intersect(sphere, enter, exit));
    QCOMPARE(enter, 3.0f);
    QCOMPARE(exit, 7.0f);
    QVERIFY(Line(Pnt3f(0, 0, 1), Vec3f(0, 0, -1)).intersect(sphere, enter, exit));
    QCOMPARE(enter, 0.0f);
    QCOMPARE(exit, 3.0f);
    QVERIFY(!Line(Pnt3f(0, 0, 5), Vec3f(0, 0, 1)).intersect(sphere));
    QVERIFY(!Line(Pnt3f(0, 2.1f, 5), Vec3f(0, 0, -1)).intersect(sphere));
}

void tst_Line::cylinder()
{
    const CylinderVolume cylinder(Pnt3f(0, 0, 0), Vec3f(0, 4, 0), 1);
    float enter = 0;
    float exit = 0;
    QVERIFY(Line(Pnt3f(-5, 2, 0), Vec3f(1, 0, 0)).intersect(cylinder, enter, exit));
    QCOMPARE(enter, 4.0f);
    QCOMPARE(exit, 6.0f);
    QVERIFY(Line(Pnt3f(0, 10, 0), Vec3f(0, -1, 0)).intersect(cylinder, enter, exit));
    QCOMPARE(enter, 6.0f);
    QCOMPARE(exit, 10.0f);
    QVERIFY(Line(Pnt3f(0, 1, 0), Vec3f(0, 1, 0)).intersect(cylinder, enter, exit));
    QCOMPARE(enter, 0.0f);
    QCOMPARE(exit, 3.0f);
    QVERIFY(!Line(Pnt3f(-5, 4.1f, 0), Vec3f(1, 0, 0)).intersect(cylinder));
    QVERIFY(!Line(Pnt3f(2, 10, 0), Vec3f(0, -1, 0)).intersect(cylinder));
    QVERIFY(!Line(Pnt3f(-5, 2, 0), Vec3f(-1, 0, 0)).intersect(cylinder));
}

void tst_Line::frustum()
{
    const FrustumVolume cube;
    float enter = 0;
    float exit = 0;
    QVERIFY(Line(Pnt3f(-5, 0, 0), Vec3f(1, 0, 0)).intersect(cube, enter, exit));
    QCOMPARE(enter, 4.0f);
    QCOMPARE(exit, 6.0f);
    QVERIFY(!Line(Pnt3f(-5, 2, 0), Vec3f(1, 0, 0)).intersect(cube));
    QVERIFY(!Line(Pnt3f(5, 0, 0), Vec3f(1, 0, 0)).intersect(cube));
}

void tst_Line::comparison()
{
    QVERIFY(Line(Pnt3f(1, 0, 0), Vec3f(0, 2, 0)) == Line(Pnt3f(1, 0, 0), Pnt3f(1, 9, 0)));
    QVERIFY(Line(Pnt3f(1, 0, 0), Vec3f(0, 2, 0)) != Line(Pnt3f(1, 0, 0), Vec3f(0, -2, 0)));
    QVERIFY(Line(Pnt3f(1, 0, 0), Vec3f(0, 2, 0)) != Line(Pnt3f(2, 0, 0), Vec3f(0, 2, 0)));
}

QTEST_APPLESS_MAIN(tst_Line)
#include "tst_Line.moc"
