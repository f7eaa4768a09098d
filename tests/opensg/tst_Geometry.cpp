#include "GeometryBuilder.h"

#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSimpleMaterial.h>

#include <QtTest>

#include <limits>

using namespace osg;

class tst_Geometry : public QObject
{
    Q_OBJECT

private slots:
    void propertiesAreReferencedAndLetGo()
    {
        const RefPtr<GeoPositionsPtr> positions = GeometryBuilder::positions({{0, 0, 0}});
        const RefPtr<GeometryPtr> a = Geometry::create();
        {
            const RefPtr<GeometryPtr> b = Geometry::create();
            a->setPositions(positions.get());
            b->setPositions(positions.get());
            QCOMPARE(positions->getRefCount(), 3);
        }
        QCOMPARE(positions->getRefCount(), 2);
        a->setPositions(positions.get());
        QCOMPARE(positions->getRefCount(), 2);
        a->setPositions(NullFC);
        QCOMPARE(positions->getRefCount(), 1);
        QVERIFY(!a->getPositions());
    }

    void oneSetOfCoordinatesMayServeTwoUnits()
    {
        const RefPtr<GeoTexCoordsPtr> texCoords = GeoTexCoords::create();
        {
            const RefPtr<GeometryPtr> geometry = Geometry::create();
            geometry->setTexCoords(texCoords.get(), 0);
            geometry->setTexCoords(texCoords.get(), 3);
            geometry->setTexCoords(texCoords.get(), 8);
            QCOMPARE(texCoords->getRefCount(), 3);
            QVERIFY(!geometry->getTexCoords(1));
            QVERIFY(geometry->getTexCoords(3) == texCoords);
            QVERIFY(!geometry->getTexCoords(99));
        }
        QCOMPARE(texCoords->getRefCount(), 1);
    }

    void materialIsReferenced()
    {
        const RefPtr<SimpleMaterialPtr> material = SimpleMaterial::create();
        {
            const RefPtr<GeometryPtr> geometry = Geometry::create();
            geometry->setMaterial(material.get());
            QCOMPARE(material->getRefCount(), 2);
        }
        QCOMPARE(material->getRefCount(), 1);
    }

    void endOfAnEditReachesEveryGeometryAndItsNodes()
    {
        const RefPtr<GeometryPtr> a = GeometryBuilder::square();
        const RefPtr<GeometryPtr> b = Geometry::create();
        b->setPositions(a->getPositions());
        const RefPtr<NodePtr> nodeA = makeNodeFor(a.get());
        const RefPtr<NodePtr> nodeB = makeNodeFor(b.get());
        nodeA->updateVolume();
        nodeB->updateVolume();
        const UInt64 stamp = a->getGLSlot().getStamp();
        beginEditCP(a->getPositions());
        a->getPositions()->setValue(Pnt3f(5, 5, 5), 0);
        endEditCP(a->getPositions());
        for (const NodePtr& node : {nodeA.get(), nodeB.get()}) {
            QVERIFY(!node->getVolume().isValid());
            Pnt3f min;
            Pnt3f max;
            node->getVolume(true).getBounds(min, max);
            QVERIFY(max == Pnt3f(5, 5, 5));
        }
        QVERIFY(a->getGLSlot().getStamp() != stamp);
    }

    void materialChangeKeepsBuffers()
    {
        const RefPtr<GeometryPtr> geometry = GeometryBuilder::square();
        const UInt64 stamp = geometry->getGLSlot().getStamp();
        geometry->setMaterial(SimpleMaterial::create());
        endEditCP(geometry.get(), Geometry::MaterialFieldMask);
        QCOMPARE(geometry->getGLSlot().getStamp(), stamp);
    }

    void boxLeavesOutWhatIsNoPlace()
    {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float infinite = std::numeric_limits<float>::infinity();
        const RefPtr<GeometryPtr> geometry =
            GeometryBuilder::make(Geometry::POINTS, {{nan, 0, 0}, {1, 2, 3}, {0, infinite, 0}, {-1, 0, 0}});
        QVERIFY(geometry->getBox() == BoxVolume(-1, 0, 0, 1, 2, 3));
        geometry->setPositions(GeometryBuilder::positions({{nan, nan, nan}}));
        QVERIFY(geometry->getBox().isEmpty());
    }

    void colorsKnowTheirAlpha()
    {
        const RefPtr<GeometryPtr> geometry = GeometryBuilder::square();
        QVERIFY(!geometry->hasTransparentColors());
        const GeoColorsPtr colors = GeoColors::create();
        colors->addValue(Color3f(1, 0, 0));
        geometry->setColors(colors);
        QVERIFY(!colors->hasAlpha());
        QVERIFY(!geometry->hasTransparentColors());
        colors->addValue(Color4f(0, 1, 0, 0.5F));
        endEditCP(colors);
        QVERIFY(colors->hasAlpha());
        QVERIFY(geometry->hasTransparentColors());
        QVERIFY(colors->getValue(1) == Color3f(0, 1, 0));
        QVERIFY(colors->getValue4(0) == Color4f(1, 0, 0, 1));
        QVERIFY(colors->getValue(2) == Color3f());
    }

    void texCoordsHaveTheirDimension()
    {
        const RefPtr<GeoTexCoordsPtr> two = GeoTexCoords::create();
        two->addValue(Vec4f(1, 2, 3, 4));
        QVERIFY(two->getValue4(0) == Vec4f(1, 2, 0, 1));
        const RefPtr<GeoTexCoordsPtr> four = GeoTexCoords::create(9);
        QCOMPARE(four->getDimension(), 4U);
        four->addValue(Vec2f(1, 2));
        four->addValue(Vec4f(1, 2, 3, 4));
        QCOMPARE(four->getSize(), 2U);
        QVERIFY(four->getValue4(0) == Vec4f(1, 2, 0, 1));
        QVERIFY(four->getValue(1) == Vec2f(1, 2));
        QVERIFY(four->getValue(2) == Vec2f());
    }

    void mappingIndex()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        QCOMPARE(geometry->calcMappingIndex(Geometry::MapColor), 0);
        geometry->setIndexMapping(
            {Geometry::MapPosition, Geometry::MapNormal | (Geometry::MapTexCoords << 2)});
        QCOMPARE(geometry->calcMappingIndex(Geometry::MapNormal), 1);
        QCOMPARE(geometry->calcMappingIndex(Geometry::MapTexCoords << 2), 1);
        QCOMPARE(geometry->calcMappingIndex(Geometry::MapColor), -1);
    }
};

QTEST_APPLESS_MAIN(tst_Geometry)
#include "tst_Geometry.moc"
