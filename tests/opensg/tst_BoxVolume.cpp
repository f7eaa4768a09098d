#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGSphereVolume.h>

#include <QtTest>

using namespace osg;

namespace {

void compareBounds(const Volume& volume, const Pnt3f& min, const Pnt3f& max)
{
    Pnt3f foundMin;
    Pnt3f foundMax;
    volume.getBounds(foundMin, foundMax);
    QVERIFY(foundMin.equals(min, 1e-5f));
    QVERIFY(foundMax.equals(max, 1e-5f));
}

} // namespace

class tst_BoxVolume : public QObject
{
    Q_OBJECT

private slots:
    void freshBoxIsEmptyAndValid();
    void firstPointDefinesTheBox();
    void cornersInAnyOrder();
    void centerSizeAndContent();
    void extendByVolumes();
    void infiniteSwallowsAll();
    void emptyAndInfiniteExcludeEachOther();
    void statesAreKeptApart();
    void containsPoints();
    void meetsOtherVolumes();
    void transformTurnsTheBox();
    void transformLeavesEmptyAndInfinite();
    void comparison();
};

void tst_BoxVolume::freshBoxIsEmptyAndValid()
{
    const BoxVolume box;
    QVERIFY(box.isEmpty());
    QVERIFY(box.isValid());
    QVERIFY(!box.isStatic());
    QVERIFY(!box.isInfinite());
    QCOMPARE(box.getScalarVolume(), 0.0f);
    compareBounds(box, Pnt3f(), Pnt3f());
}

void tst_BoxVolume::firstPointDefinesTheBox()
{
    BoxVolume box;
    box.extendBy(Pnt3f(5, 6, 7));
    QVERIFY(!box.isEmpty());
    compareBounds(box, Pnt3f(5, 6, 7), Pnt3f(5, 6, 7));
    box.extendBy(Pnt3f(4, 8, 7));
    compareBounds(box, Pnt3f(4, 6, 7), Pnt3f(5, 8, 7));
}

void tst_BoxVolume::cornersInAnyOrder()
{
    const BoxVolume box(Pnt3f(1, -2, 3), Pnt3f(-1, 2, -3));
    compareBounds(box, Pnt3f(-1, -2, -3), Pnt3f(1, 2, 3));
}

void tst_BoxVolume::centerSizeAndContent()
{
    BoxVolume box;
    box.setBoundsByCenterAndSize(Pnt3f(1, 2, 3), Vec3f(2, 4, 6));
    compareBounds(box, Pnt3f(0, 0, 0), Pnt3f(2, 4, 6));
    Pnt3f center;
    box.getCenter(center);
    QVERIFY(center == Pnt3f(1, 2, 3));
    Vec3f size;
    box.getSize(size);
    QVERIFY(size == Vec3f(2, 4, 6));
    QCOMPARE(box.getScalarVolume(), 48.0f);
}

void tst_BoxVolume::extendByVolumes()
{
    BoxVolume box;
    box.extendBy(BoxVolume());
    QVERIFY(box.isEmpty());
    box.extendBy(BoxVolume(0, 0, 0, 1, 1, 1));
    box.extendBy(SphereVolume(Pnt3f(5, 0, 0), 2));
    compareBounds(box, Pnt3f(0, -2, -2), Pnt3f(7, 2, 2));
    box.extendBy(BoxVolume());
    compareBounds(box, Pnt3f(0, -2, -2), Pnt3f(7, 2, 2));
}

void tst_BoxVolume::infiniteSwallowsAll()
{
    BoxVolume infinite;
    infinite.setInfinite();
    BoxVolume box(0, 0, 0, 1, 1, 1);
    box.extendBy(infinite);
    QVERIFY(box.isInfinite());
    box.extendBy(Pnt3f(3, 3, 3));
    QVERIFY(box.isInfinite());
    compareBounds(box, Pnt3f(NegInf, NegInf, NegInf), Pnt3f(Inf, Inf, Inf));
    QCOMPARE(box.getScalarVolume(), Inf);
    box.setBounds(0, 0, 0, 1, 1, 1);
    QVERIFY(!box.isInfinite());
}

void tst_BoxVolume::emptyAndInfiniteExcludeEachOther()
{
    BoxVolume box;
    box.setInfinite();
    QVERIFY(!box.isEmpty());
    box.setEmpty();
    QVERIFY(!box.isInfinite());
    QVERIFY(box.isEmpty());
}

void tst_BoxVolume::statesAreKeptApart()
{
    BoxVolume box;
    box.setStatic();
    box.setValid(false);
    QVERIFY(box.isStatic() && !box.isValid() && box.isEmpty());
    box.setValid();
    box.setStatic(false);
    QVERIFY(!box.isStatic() && box.isValid() && box.isEmpty());
}

void tst_BoxVolume::containsPoints()
{
    BoxVolume box(0, 0, 0, 1, 2, 3);
    QVERIFY(box.intersect(Pnt3f(1, 2, 3)));
    QVERIFY(box.intersect(Pnt3f(0.5f, 1, 1)));
    QVERIFY(!box.intersect(Pnt3f(0.5f, 2.1f, 1)));
    QVERIFY(!box.intersect(Pnt3f(0.5f, 1, -0.1f)));
    QVERIFY(!box.intersect(Pnt3f(std::numeric_limits<float>::quiet_NaN(), 1, 1)));
    box.setEmpty();
    QVERIFY(!box.intersect(Pnt3f(0.5f, 1, 1)));
    box.setInfinite();
    QVERIFY(box.intersect(Pnt3f(50, 1, 1)));
}

void tst_BoxVolume::meetsOtherVolumes()
{
    const BoxVolume box(0, 0, 0, 1, 1, 1);
    QVERIFY(box.intersect(BoxVolume(1, 1, 1, 2, 2, 2)));
    QVERIFY(!box.intersect(BoxVolume(1.1f, 0, 0, 2, 2, 2)));
    QVERIFY(!box.intersect(BoxVolume(0, 0, -2, 2, 2, -1)));
    QVERIFY(box.intersect(SphereVolume(Pnt3f(2, 0.5f, 0.5f), 1)));
    QVERIFY(!box.intersect(BoxVolume()));
}

void tst_BoxVolume::transformTurnsTheBox()
{
    Matrix m;
    m.setTransform(Vec3f(10, 0, 0), Quaternion(Vec3f(0, 0, 1), Pi / 2), Vec3f(1, 2, 1));
    BoxVolume box(0, 0, 0, 1, 2, 3);
    box.transform(m);
    compareBounds(box, Pnt3f(6, 0, 0), Pnt3f(10, 1, 3));

    // Exactly the box around the eight transformed corners.
    m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(1, 2, 3), 1), Vec3f(1, -2, 3));
    BoxVolume corners;
    for (int i = 0; i < 8; ++i) {
        Pnt3f corner(i & 1 ? 4 : -1, i & 2 ? 5 : -2, i & 4 ? 6 : -3);
        m.mult(corner);
        corners.extendBy(corner);
    }
    box.setBounds(-1, -2, -3, 4, 5, 6);
    box.transform(m);
    compareBounds(box, corners.getMin(), corners.getMax());
}

void tst_BoxVolume::transformLeavesEmptyAndInfinite()
{
    Matrix m;
    m.setTranslate(1, 2, 3);
    BoxVolume box;
    box.transform(m);
    QVERIFY(box.isEmpty());
    box.setInfinite();
    box.transform(m);
    compareBounds(box, Pnt3f(NegInf, NegInf, NegInf), Pnt3f(Inf, Inf, Inf));
}

void tst_BoxVolume::comparison()
{
    QVERIFY(BoxVolume(0, 0, 0, 1, 1, 1) == BoxVolume(1, 1, 1, 0, 0, 0));
    QVERIFY(BoxVolume(0, 0, 0, 1, 1, 1) != BoxVolume(0, 0, 0, 1, 1, 2));
    QVERIFY(BoxVolume(0, 0, 0, 0, 0, 0) != BoxVolume());
    BoxVolume empty(0, 0, 0, 1, 1, 1);
    empty.setEmpty();
    QVERIFY(empty == BoxVolume());
}

QTEST_APPLESS_MAIN(tst_BoxVolume)
#include "tst_BoxVolume.moc"
