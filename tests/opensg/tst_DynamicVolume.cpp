#include <OpenSG/OSGDynamicVolume.h>

#include <QtTest>

using namespace osg;

class tst_DynamicVolume : public QObject
{
    Q_OBJECT

private slots:
    void isABoxByDefault();
    void changesItsKind();
    void sameKindIsLeftAlone();
    void stateIsTheInstances();
    void copyIsIndependent();
    void forwardsToItsInstance();
};

void tst_DynamicVolume::isABoxByDefault()
{
    DynamicVolume volume;
    QCOMPARE(volume.getType(), DynamicVolume::BOX_VOLUME);
    QVERIFY(dynamic_cast<BoxVolume*>(&volume.getInstance()));
    QVERIFY(volume.isEmpty() && volume.isValid());
}

void tst_DynamicVolume::changesItsKind()
{
    DynamicVolume volume;
    volume.extendBy(Pnt3f(1, 2, 3));
    volume.setVolumeType(DynamicVolume::SPHERE_VOLUME);
    QVERIFY(dynamic_cast<SphereVolume*>(&volume.getInstance()));
    QVERIFY(volume.isEmpty());
    QCOMPARE(DynamicVolume(DynamicVolume::SPHERE_VOLUME).getType(), DynamicVolume::SPHERE_VOLUME);
}

void tst_DynamicVolume::sameKindIsLeftAlone()
{
    DynamicVolume volume;
    volume.extendBy(Pnt3f(1, 2, 3));
    volume.setVolumeType(DynamicVolume::BOX_VOLUME);
    QVERIFY(!volume.isEmpty());
}

void tst_DynamicVolume::stateIsTheInstances()
{
    DynamicVolume volume;
    volume.setValid(false);
    QVERIFY(!volume.getInstance().isValid());
    volume.getInstance().setValid();
    volume.getInstance().setInfinite();
    QVERIFY(volume.isValid() && volume.isInfinite() && !volume.isEmpty());
    volume.instanceChanged();
    QVERIFY(volume.isValid() && volume.isInfinite());
}

void tst_DynamicVolume::copyIsIndependent()
{
    DynamicVolume volume;
    volume.extendBy(Pnt3f(1, 2, 3));
    DynamicVolume copy(volume);
    copy.extendBy(Pnt3f(9, 9, 9));
    Pnt3f min;
    Pnt3f max;
    volume.getBounds(min, max);
    QVERIFY(max == Pnt3f(1, 2, 3));
    copy.getBounds(min, max);
    QVERIFY(max == Pnt3f(9, 9, 9));
}

void tst_DynamicVolume::forwardsToItsInstance()
{
    DynamicVolume volume;
    BoxVolume box(0, 0, 0, 2, 2, 2);
    volume.extendBy(box);
    Pnt3f center;
    volume.getCenter(center);
    QVERIFY(center == Pnt3f(1, 1, 1));
    QCOMPARE(volume.getScalarVolume(), 8.0f);
    QVERIFY(volume.intersect(Pnt3f(1, 1, 1)));
    Matrix m;
    m.setTranslate(10, 0, 0);
    volume.transform(m);
    QVERIFY(!volume.intersect(Pnt3f(1, 1, 1)));
    QVERIFY(volume.intersect(Pnt3f(11, 1, 1)));
    box.extendBy(volume);
    QVERIFY(box == BoxVolume(0, 0, 0, 12, 2, 2));
}

QTEST_APPLESS_MAIN(tst_DynamicVolume)
#include "tst_DynamicVolume.moc"
