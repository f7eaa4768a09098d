#include "GeometryBuilder.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTriangleIterator.h>

#include <QtTest>

using namespace osg;
using GeometryBuilder::make;
using GeometryBuilder::setPrimitives;
using Triangles = QVector<QVector<int>>;

namespace {

// Points whose x tells their number.
GeoPositionsPtr numberedPositions(int count)
{
    const GeoPositionsPtr positions = GeoPositions::create();
    for (int i = 0; i < count; ++i)
        positions->push_back(Pnt3f(i, 0, 0));
    return positions;
}

Triangles trianglesOf(const GeometryPtr& geometry)
{
    Triangles result;
    int number = 0;
    for (TriangleIterator it = geometry->beginTriangles(); it != geometry->endTriangles(); ++it) {
        if (it.getIndex() != number++)
            return {{-1}};
        result.append({it.getPositionIndex(0), it.getPositionIndex(1), it.getPositionIndex(2)});
    }
    return result;
}

} // namespace

class tst_TriangleIterator : public QObject
{
    Q_OBJECT

private slots:
    void splitsEachKindOfPrimitive_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("length");
        QTest::addColumn<Triangles>("expected");
        QTest::newRow("points") << int(Geometry::POINTS) << 6 << Triangles();
        QTest::newRow("lines") << int(Geometry::LINES) << 6 << Triangles();
        QTest::newRow("line loop") << int(Geometry::LINE_LOOP) << 6 << Triangles();
        QTest::newRow("line strip") << int(Geometry::LINE_STRIP) << 6 << Triangles();
        QTest::newRow("triangles") << int(Geometry::TRIANGLES) << 8 << Triangles{{0, 1, 2}, {3, 4, 5}};
        QTest::newRow("strip") << int(Geometry::TRIANGLE_STRIP) << 6
                               << Triangles{{0, 1, 2}, {2, 1, 3}, {2, 3, 4}, {4, 3, 5}};
        QTest::newRow("fan") << int(Geometry::TRIANGLE_FAN) << 5
                             << Triangles{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}};
        QTest::newRow("quads") << int(Geometry::QUADS) << 9
                               << Triangles{{0, 1, 2}, {0, 2, 3}, {4, 5, 6}, {4, 6, 7}};
        QTest::newRow("quad strip") << int(Geometry::QUAD_STRIP) << 6
                                    << Triangles{{0, 1, 2}, {2, 1, 3}, {2, 3, 4}, {4, 3, 5}};
        QTest::newRow("polygon") << int(Geometry::POLYGON) << 5 << Triangles{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}};
        QTest::newRow("polygon of two") << int(Geometry::POLYGON) << 2 << Triangles();
        QTest::newRow("unknown kind") << 77 << 6 << Triangles();
    }

    void splitsEachKindOfPrimitive()
    {
        QFETCH(int, type);
        QFETCH(int, length);
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        geometry->setPositions(numberedPositions(length));
        setPrimitives(geometry.get(), {{static_cast<UInt8>(type), static_cast<UInt32>(length)}});
        QTEST(trianglesOf(geometry.get()), "expected");
    }

    void numbersRunOverPrimitives()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        geometry->setPositions(numberedPositions(20));
        setPrimitives(geometry.get(), {{Geometry::POLYGON, 2},
                                       {Geometry::LINES, 2},
                                       {Geometry::TRIANGLES, 3},
                                       {Geometry::POINTS, 1},
                                       {Geometry::QUADS, 4},
                                       {Geometry::POLYGON, 4}});
        QCOMPARE(trianglesOf(geometry.get()),
                 (Triangles{{4, 5, 6}, {8, 9, 10}, {8, 10, 11}, {12, 13, 14}, {12, 14, 15}}));
        TriangleIterator it(geometry.get());
        it.seek(2);
        QCOMPARE(it.getType(), UInt32(Geometry::QUADS));
        QCOMPARE(it.getLength(), 4U);
    }

    void degenerateTrianglesInsideStripsHaveNoNumber()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        geometry->setPositions(numberedPositions(8));
        geometry->setIndices(GeometryBuilder::indices({0, 0, 1, 2, 2, 3, 4}));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLE_STRIP, 7}});
        // The first is not looked at; (1, 2, 2) and (2, 2, 3) are left out.
        QCOMPARE(trianglesOf(geometry.get()), (Triangles{{0, 0, 1}, {1, 0, 2}, {2, 3, 4}}));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 6}});
        QCOMPARE(trianglesOf(geometry.get()), (Triangles{{0, 0, 1}, {2, 2, 3}}));
    }

    void seekFindsEveryTriangleAndEndsOutside()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        geometry->setPositions(numberedPositions(40));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 9},
                                       {Geometry::LINE_LOOP, 4},
                                       {Geometry::TRIANGLE_STRIP, 5},
                                       {Geometry::QUADS, 8},
                                       {Geometry::POLYGON, 1},
                                       {Geometry::TRIANGLE_FAN, 6}});
        const Triangles all = trianglesOf(geometry.get());
        QCOMPARE(all.size(), 14);
        TriangleIterator it(geometry.get());
        for (int i = all.size() - 1; i >= 0; --i) {
            it.seek(i);
            QVERIFY(!it.isAtEnd());
            QCOMPARE(it.getIndex(), i);
            QCOMPARE(it.getPositionIndex(0), all[i][0]);
            QCOMPARE(it.getPositionIndex(2), all[i][2]);
        }
        for (int outside : {14, 15, 100000, -1}) {
            it.seek(outside);
            QVERIFY(it.isAtEnd());
            QVERIFY(it == geometry->endTriangles());
        }
        ++it;
        QVERIFY(it.isAtEnd());
    }

    void freshIteratorRefersToVertexZero()
    {
        const RefPtr<GeometryPtr> geometry = make(Geometry::TRIANGLES, {{5, 0, 0}, {6, 0, 0}, {7, 0, 0}});
        const TriangleIterator it(geometry.get());
        for (int corner = 0; corner < 3; ++corner)
            QCOMPARE(it.getPosition(corner).x(), 5.F);
    }

    void withoutLengthsThereIsOnePrimitive()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        geometry->setPositions(numberedPositions(6));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 0}});
        geometry->setLengths(NullFC);
        QCOMPARE(trianglesOf(geometry.get()).size(), 2);
        geometry->setIndices(GeometryBuilder::indices({0, 1, 2, 2, 1, 3, 3, 1, 4}));
        QCOMPARE(trianglesOf(geometry.get()).size(), 3);
    }

    void singleIndexServesAllProperties()
    {
        const RefPtr<GeometryPtr> geometry = GeometryBuilder::square();
        geometry->setIndices(GeometryBuilder::indices({3, 2, 1}));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 3}});
        const TriangleIterator it = geometry->beginTriangles();
        QCOMPARE(it.getNormalIndex(0), 3);
        QCOMPARE(it.getTexCoordsIndex(1), 2);
        QVERIFY(it.getTexCoords(0) == Vec2f(0, 1));
        QVERIFY(it.getNormal(2) == Vec3f(0, 0, 1));
    }

    void mappingTellsWhichIndexServesWhat()
    {
        const RefPtr<GeometryPtr> geometry = GeometryBuilder::square();
        const GeoColorsPtr colors = GeoColors::create();
        colors->addValue(Color3f(1, 0, 0));
        colors->addValue(Color3f(0, 1, 0));
        geometry->setColors(colors);
        geometry->setIndexMapping({Geometry::MapPosition | Geometry::MapNormal, Geometry::MapColor});
        geometry->setIndices(GeometryBuilder::indices({0, 1, 1, 0, 2, 1}));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 3}});
        const TriangleIterator it = geometry->beginTriangles();
        QCOMPARE(it.getPositionIndex(2), 2);
        QCOMPARE(it.getNormalIndex(2), 2);
        QCOMPARE(it.getColorIndex(0), 1);
        QVERIFY(it.getColor(0) == Color3f(0, 1, 0));
        QVERIFY(it.getColor(1) == Color3f(1, 0, 0));
        QCOMPARE(it.getTexCoordsIndex(0), -1);
    }

    void whatIsMissingIsNull()
    {
        const RefPtr<GeometryPtr> geometry = make(Geometry::TRIANGLES, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
        const TriangleIterator it = geometry->beginTriangles();
        QCOMPARE(it.getNormalIndex(0), -1);
        QCOMPARE(it.getColorIndex(0), -1);
        QCOMPARE(it.getTexCoordsIndex(0, 7), -1);
        QCOMPARE(it.getTexCoordsIndex(0, 99), -1);
        QCOMPARE(it.getSecondaryColorIndex(0), -1);
        QVERIFY(it.getNormal(0) == Vec3f());
        QVERIFY(it.getTexCoords7(1) == Vec2f());
    }

    void indicesOutsideAreNull()
    {
        const RefPtr<GeometryPtr> geometry = make(Geometry::TRIANGLES, {{1, 0, 0}, {2, 0, 0}});
        geometry->setIndices(GeometryBuilder::indices({0, 1, 4000000000U}));
        setPrimitives(geometry.get(), {{Geometry::TRIANGLES, 1000000}});
        QCOMPARE(trianglesOf(geometry.get()), (Triangles{{0, 1, -1}}));
        QVERIFY(geometry->beginTriangles().getPosition(2) == Pnt3f());
    }

    void emptyGeometryHasNoTriangles()
    {
        const RefPtr<GeometryPtr> geometry = Geometry::create();
        QVERIFY(geometry->beginTriangles() == geometry->endTriangles());
        setPrimitives(geometry.get(), {{Geometry::POLYGON, 3}});
        QVERIFY(geometry->beginTriangles().isAtEnd());
    }

    void nodesWithoutGeometryAreRefused()
    {
        const RefPtr<NodePtr> node = makeNodeFor(Group::create());
        TriangleIterator it(node.get());
        QVERIFY(it.isAtEnd());
        it.seek(0);
        QVERIFY(it.isAtEnd());
        QVERIFY(it.getPosition(0) == Pnt3f());
        const RefPtr<NodePtr> shape = makeNodeFor(GeometryBuilder::square());
        TriangleIterator found(shape.get());
        found.seek(1);
        QCOMPARE(found.getPositionIndex(2), 3);
    }
};

QTEST_APPLESS_MAIN(tst_TriangleIterator)
#include "tst_TriangleIterator.moc"
