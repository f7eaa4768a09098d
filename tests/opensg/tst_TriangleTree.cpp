#include <OpenSG/OSGGeometry.h>

#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTriangleTree.h>

#include <QtTest>

using namespace osg;

/// What of a geometry a ray or a box meets.
class tst_TriangleTree : public QObject
{
    Q_OBJECT

private slots:
    void rayCountsAllThatItMeets();
    void boxFindsWhatReachesIntoIt();
    void boxWithoutBoundsFindsAll();
    void asksNoMoreAfterAYes();
    void emptyGeometryHasNothing();

private:
    /// Squares of two triangles across z, of edge 2, at z = 0, 1, ... count - 1.
    static GeometryPtr squares(int count)
    {
        const GeometryPtr geometry = Geometry::create();
        geometry->setTypes(GeoPTypes::create());
        geometry->setLengths(GeoPLengths::create());
        geometry->setPositions(GeoPositions::create());
        beginEditCP(geometry);
        geometry->getTypes()->editField().assign(1, Geometry::QUADS);
        geometry->getLengths()->editField().assign(1, UInt32(4 * count));
        for (int i = 0; i < count; ++i) {
            for (const auto& corner : {Pnt3f(-1, -1, 0), Pnt3f(1, -1, 0), Pnt3f(1, 1, 0), Pnt3f(-1, 1, 0)})
                geometry->getPositions()->editField().emplace_back(corner[0], corner[1], float(i));
        }
        endEditCP(geometry);
        return geometry;
    }
    static int trianglesIn(const GeometryPtr& geometry, const BoxVolume& box)
    {
        int count = 0;
        geometry->getTriangleTree().anyIn(box, [&](const Pnt3f&, const Pnt3f&, const Pnt3f&) {
            ++count;
            return false;
        });
        return count;
    }
};

void tst_TriangleTree::rayCountsAllThatItMeets()
{
    const RefPtr<GeometryPtr> geometry(squares(50));
    const TriangleTree& tree = geometry->getTriangleTree();
    QCOMPARE(tree.countHits(Pnt3d(0.3, 0.1, -1), Vec3d(0, 0, 1)), 50U);
    QCOMPARE(tree.countHits(Pnt3d(0.3, 0.1, 19.5), Vec3d(0, 0, 1)), 30U);
    QCOMPARE(tree.countHits(Pnt3d(0.3, 0.1, 19.5), Vec3d(0, 0, -2)), 20U);
    QCOMPARE(tree.countHits(Pnt3d(1.3, 0.1, -1), Vec3d(0, 0, 1)), 0U);
    QCOMPARE(tree.countHits(Pnt3d(0.3, 0.1, 100), Vec3d(0, 0, 1)), 0U);
}

void tst_TriangleTree::boxFindsWhatReachesIntoIt()
{
    const RefPtr<GeometryPtr> geometry(squares(100));
    const int found = trianglesIn(geometry, BoxVolume(-0.1F, -0.1F, 40.5F, 0.1F, 0.1F, 44.5F));
    QVERIFY(found >= 8);  // four squares
    QVERIFY(found <= 40); // and some of their neighbours
    QCOMPARE(trianglesIn(geometry, BoxVolume(2, 2, 0, 3, 3, 50)), 0);
}

void tst_TriangleTree::boxWithoutBoundsFindsAll()
{
    const RefPtr<GeometryPtr> geometry(squares(100));
    BoxVolume box;
    box.setInfinite(true);
    QCOMPARE(trianglesIn(geometry, box), 200);
    box.setEmpty();
    QCOMPARE(trianglesIn(geometry, box), 0);
}

void tst_TriangleTree::asksNoMoreAfterAYes()
{
    const RefPtr<GeometryPtr> geometry(squares(100));
    int asked = 0;
    QVERIFY(geometry->getTriangleTree().anyIn(
        geometry->getBox(), [&](const auto&, const auto&, const auto&) { return ++asked == 3; }));
    QCOMPARE(asked, 3);
}

void tst_TriangleTree::emptyGeometryHasNothing()
{
    const RefPtr<GeometryPtr> geometry(Geometry::create());
    QCOMPARE(geometry->getTriangleTree().countHits(Pnt3d(), Vec3d(0, 0, 1)), 0U);
    QCOMPARE(trianglesIn(geometry, BoxVolume(-1, -1, -1, 1, 1, 1)), 0);
}

QTEST_APPLESS_MAIN(tst_TriangleTree)
#include "tst_TriangleTree.moc"
