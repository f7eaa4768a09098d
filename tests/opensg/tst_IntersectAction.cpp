#include "GeometryBuilder.h"

#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <OpenSG/OSGVisitSubTree.h>

#include <QtTest>

#include <cmath>
#include <limits>
#include <memory>
#include <random>

using namespace osg;
using NodeRefPtr = RefPtr<NodePtr>;

namespace {

NodePtr transformNode(const Matrix& matrix)
{
    const TransformPtr transform = Transform::create();
    transform->setMatrix(matrix);
    return makeNodeFor(transform);
}

NodePtr at(float x, float y, float z)
{
    Matrix matrix;
    matrix.setTranslate(x, y, z);
    return transformNode(matrix);
}

// Looks along -z from z = 10.
Line down(float x, float y)
{
    return {Pnt3f(x, y, 10), Vec3f(0, 0, -1)};
}

using ActionPtr = std::unique_ptr<IntersectAction>;

ActionPtr shoot(const NodePtr& node, const Line& line, Real32 maxdist = Inf)
{
    ActionPtr action(IntersectAction::create(line, maxdist));
    action->apply(node);
    return action;
}

} // namespace

class tst_IntersectAction : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsHitAtFirst()
    {
        const ActionPtr action(IntersectAction::create());
        QVERIFY(!action->didHit());
        QCOMPARE(action->getHitT(), -1.F);
        QVERIFY(action->getHitPoint() == Pnt3f());
        QVERIFY(!action->getHitObject());
        QCOMPARE(action->getHitTriangle(), -1);
        QCOMPARE(action->apply(NullFC), Action::Quit);
    }

    void hitTellsPointNodeAndTriangle()
    {
        const NodeRefPtr root = at(0, 0, 2);
        const NodePtr shape = makeNodeFor(GeometryBuilder::square());
        root->addChild(shape);
        const ActionPtr action = shoot(root, down(-0.5F, 0.25F));
        QVERIFY(action->didHit());
        QCOMPARE(action->getHitT(), 8.F);
        QVERIFY(action->getHitPoint() == Pnt3f(-0.5F, 0.25F, 2));
        QVERIFY(action->getHitObject() == shape);
        QCOMPARE(action->getHitTriangle(), 1);
        QVERIFY(action->getHitNormal() == Vec3f(0, 0, 1));
        QVERIFY(action->getHitToWorld() == root->getToWorld());
        QVERIFY(action->getHitPath() == (MFNodePtr{root, shape}));
        action->setLine(down(5, 0));
        action->apply(root);
        QVERIFY(!action->didHit());
        QVERIFY(action->getHitPath().empty());
    }

    void bothSidesCountAndTheNormalStays()
    {
        const NodeRefPtr shape = makeNodeFor(GeometryBuilder::square());
        const ActionPtr action = shoot(shape, Line(Pnt3f(0.5F, 0, -3), Vec3f(0, 0, 1)));
        QCOMPARE(action->getHitT(), 3.F);
        QVERIFY(action->getHitNormal() == Vec3f(0, 0, 1));
    }

    void nearestInFrontWithinTheDistanceCounts()
    {
        const NodeRefPtr root = makeNodeFor(Group::create());
        const NodePtr farther = makeNodeFor(GeometryBuilder::square(1, 1));
        const NodePtr nearer = makeNodeFor(GeometryBuilder::square(1, 4));
        const NodePtr behind = makeNodeFor(GeometryBuilder::square(1, 11));
        for (const NodePtr& node : {farther, nearer, behind})
            root->addChild(node);
        QVERIFY(shoot(root, down(0.5F, 0))->getHitObject() == nearer);
        QCOMPARE(shoot(root, down(0.5F, 0), 6)->getHitT(), 6.F);
        QVERIFY(!shoot(root, down(0.5F, 0), 5.9F)->didHit());
    }

    void scaledTransformsKeepTheDistanceOfTheWorld()
    {
        Matrix matrix;
        matrix.setTransform(Pnt3f(3, 0, 0), Quaternion(Vec3f(0, 0, 1), Pi / 2), Vec3f(4, 2, 0.5F));
        const NodeRefPtr root = transformNode(matrix);
        const NodePtr shape = makeNodeFor(GeometryBuilder::box());
        root->addChild(shape);
        // Turned: 2 to each side in x, 4 in y.
        const ActionPtr action = shoot(root, down(4.9F, 3.9F));
        QVERIFY(action->didHit());
        QVERIFY(action->getHitPoint() == Pnt3f(4.9F, 3.9F, 0.5F));
        QCOMPARE(action->getHitT(), 9.5F);
        QVERIFY(action->getHitNormal() == Vec3f(0, 0, 1));
        QVERIFY(!shoot(root, down(5.1F, 0))->didHit());
        QVERIFY(!shoot(root, down(3, 4.1F))->didHit());
    }

    void flatMatrixIsNotHit()
    {
        Matrix matrix;
        matrix.setScale(0);
        const NodeRefPtr root = transformNode(matrix);
        root->addChild(makeNodeFor(GeometryBuilder::box()));
        QVERIFY(!shoot(root, down(0, 0))->didHit());
    }

    void maskedNodesAreSkipped()
    {
        const NodeRefPtr root = makeNodeFor(Group::create());
        const NodePtr hidden = makeNodeFor(GeometryBuilder::square(1, 4));
        const NodePtr shown = makeNodeFor(GeometryBuilder::square(1, 1));
        root->addChild(hidden);
        root->addChild(shown);
        hidden->setTravMask(0);
        QVERIFY(shoot(root, down(0, 0.5F))->getHitObject() == shown);
        hidden->setTravMask(2);
        shown->setTravMask(1);
        const ActionPtr action(IntersectAction::create(down(0, 0.5F)));
        action->setTravMask(2);
        root->setTravMask(3);
        action->apply(root);
        QVERIFY(action->getHitObject() == hidden);
        root->setTravMask(1);
        action->apply(root);
        QVERIFY(!action->didHit());
    }

    void switchedOffIsNotHit()
    {
        const SwitchPtr core = Switch::create();
        const NodeRefPtr root = makeNodeFor(core);
        root->addChild(makeNodeFor(GeometryBuilder::square(1, 4)));
        root->addChild(makeNodeFor(GeometryBuilder::square(1, 2)));
        QVERIFY(!shoot(root, down(0, 0))->didHit());
        core->setChoice(1);
        QCOMPARE(shoot(root, down(0, 0.5F))->getHitT(), 8.F);
        core->setChoice(Switch::ALL);
        QCOMPARE(shoot(root, down(0, 0.5F))->getHitT(), 6.F);
    }

    void sharedTreeIsHitInEachOfItsPlaces()
    {
        const NodeRefPtr root = makeNodeFor(Group::create());
        const NodePtr shared = at(0, 0, 1);
        const NodePtr shape = makeNodeFor(GeometryBuilder::square());
        shared->addChild(shape);
        const NodePtr home = at(-5, 0, 0);
        home->addChild(shared);
        const VisitSubTreePtr visit = VisitSubTree::create();
        visit->setSubTreeRoot(shared);
        const NodePtr visitNode = makeNodeFor(visit);
        const NodePtr away = at(5, 0, 2);
        away->addChild(visitNode);
        root->addChild(home);
        root->addChild(away);
        const ActionPtr first = shoot(root, down(-5.5F, 0));
        QVERIFY(first->getHitPath() == (MFNodePtr{root, home, shared, shape}));
        QVERIFY(first->getHitToWorld()[3] == Vec4f(-5, 0, 1, 1));
        const ActionPtr second = shoot(root, down(5.5F, 0));
        QVERIFY(second->getHitObject() == shape);
        QVERIFY(second->getHitPath() == (MFNodePtr{root, away, visitNode, shared, shape}));
        QVERIFY(second->getHitToWorld()[3] == Vec4f(5, 0, 3, 1));
        QCOMPARE(second->getHitT(), 7.F);
    }

    void treeInsideItselfEnds()
    {
        const NodeRefPtr root = at(1, 0, 0);
        root->addChild(makeNodeFor(GeometryBuilder::square()));
        const VisitSubTreePtr visit = VisitSubTree::create();
        visit->setSubTreeRoot(root);
        root->addChild(makeNodeFor(visit));
        QVERIFY(shoot(root, down(1.5F, 0))->didHit());
        QVERIFY(!shoot(root, down(9, 0))->didHit());
    }

    void multipliedReferencesEnd()
    {
        // Each tree shows the next one twice: 2^40 places, if nobody stopped.
        NodeRefPtr shown = makeNodeFor(GeometryBuilder::square());
        std::vector<NodeRefPtr> trees{shown};
        for (int i = 0; i < 40; ++i) {
            const NodeRefPtr tree = makeNodeFor(Group::create());
            for (int twice = 0; twice < 2; ++twice) {
                const VisitSubTreePtr visit = VisitSubTree::create();
                visit->setSubTreeRoot(shown);
                tree->addChild(makeNodeFor(visit));
            }
            trees.push_back(tree);
            shown = tree;
        }
        QVERIFY(shoot(shown, down(0.5F, 0))->didHit());
    }

    void changedGeometryIsHitWhereItIsNow()
    {
        const GeometryPtr geometry = GeometryBuilder::square();
        const NodeRefPtr node = makeNodeFor(geometry);
        QVERIFY(!shoot(node, down(3, 0))->didHit());
        beginEditCP(geometry->getPositions());
        for (UInt32 i = 0; i < 4; ++i)
            geometry->getPositions()->editField()[i] += Vec3f(3, 0, 5);
        endEditCP(geometry->getPositions());
        const ActionPtr action = shoot(node, down(3, 0.5F));
        QCOMPARE(action->getHitT(), 5.F);
        geometry->setIndices(GeometryBuilder::indices({0, 1}));
        QVERIFY(!shoot(node, down(3, 0.5F))->didHit());
    }

    void hitTriangleIsTheIteratorsNumber()
    {
        const GeometryPtr geometry = Geometry::create();
        const GeoPositionsPtr positions = GeoPositions::create();
        // A strip of squares along x, with lines and a degenerate bridge before the last one.
        for (int x = 0; x <= 6; ++x) {
            positions->push_back(Pnt3f(x, 0, 0));
            positions->push_back(Pnt3f(x, 1, 0));
        }
        geometry->setPositions(positions);
        geometry->setIndices(GeometryBuilder::indices({0, 1, 0, 1, 2, 3, 4, 5, 5, 8, 8, 9, 10, 11}));
        GeometryBuilder::setPrimitives(geometry, {{Geometry::LINES, 2}, {Geometry::TRIANGLE_STRIP, 12}});
        const NodeRefPtr node = makeNodeFor(geometry);
        const ActionPtr action = shoot(node, down(4.9F, 0.9F));
        QVERIFY(action->didHit());
        TriangleIterator it(action->getHitObject());
        it.seek(action->getHitTriangle());
        for (int corner = 0; corner < 3; ++corner)
            QVERIFY(it.getPosition(corner).x() >= 4);
    }

    void brokenTrianglesAreSafe()
    {
        const float nan = std::numeric_limits<float>::quiet_NaN();
        const float infinite = std::numeric_limits<float>::infinity();
        const GeometryPtr geometry = GeometryBuilder::make(Geometry::TRIANGLES, {{nan, 0, 0},
                                                                                 {1, 0, 0},
                                                                                 {0, 1, 0},
                                                                                 {infinite, 0, 0},
                                                                                 {1, 0, 0},
                                                                                 {0, 1, 0},
                                                                                 {0.5F, 0.5F, 1},
                                                                                 {0.5F, 0.5F, 1},
                                                                                 {0.5F, 0.5F, 1},
                                                                                 {-1, 0, 2},
                                                                                 {0, 0, 2},
                                                                                 {1, 0, 2},
                                                                                 {-1, -1, 0},
                                                                                 {1, -1, 0},
                                                                                 {0, 1, 0},
                                                                                 {-1e29F, -1e29F, -9},
                                                                                 {1e29F, -1e29F, -9},
                                                                                 {0, 1e29F, -9}});
        const NodeRefPtr node = makeNodeFor(geometry);
        const ActionPtr action = shoot(node, down(0, 0.1F));
        QVERIFY(action->didHit());
        QCOMPARE(action->getHitTriangle(), 4);
        QCOMPARE(action->getHitT(), 10.F);
        QCOMPARE(shoot(node, down(7, 7))->getHitTriangle(), 5);
    }

    void manyEqualTrianglesAreSafe()
    {
        const GeometryPtr geometry = Geometry::create();
        const GeoPositionsPtr positions = GeoPositions::create();
        for (int i = 0; i < 20000; ++i) {
            positions->push_back(Pnt3f(-1, -1, 0));
            positions->push_back(Pnt3f(1, -1, 0));
            positions->push_back(Pnt3f(0, 1, 0));
        }
        geometry->setPositions(positions);
        GeometryBuilder::setPrimitives(geometry, {{Geometry::TRIANGLES, 60000}});
        const NodeRefPtr node = makeNodeFor(geometry);
        QCOMPARE(shoot(node, down(0, 0))->getHitT(), 10.F);
    }

    void growingTrianglesAreSafe()
    {
        // Sizes from 1e-20 to 1e20, which cut the hierarchy as unevenly as possible.
        const GeometryPtr geometry = Geometry::create();
        const GeoPositionsPtr positions = GeoPositions::create();
        for (int i = 0; i < 4000; ++i) {
            const float s = std::pow(10.F, -20 + i * 0.01F);
            positions->push_back(Pnt3f(s, s, 0));
            positions->push_back(Pnt3f(2 * s, s, 0));
            positions->push_back(Pnt3f(s, 2 * s, 0));
        }
        geometry->setPositions(positions);
        GeometryBuilder::setPrimitives(geometry, {{Geometry::TRIANGLES, 12000}});
        const NodeRefPtr node = makeNodeFor(geometry);
        QVERIFY(shoot(node, down(1.2F, 1.2F))->didHit());
        QVERIFY(!shoot(node, down(-1, 1))->didHit());
    }

    void hierarchyAgreesWithEveryTriangle()
    {
        std::mt19937 random(7);
        std::uniform_real_distribution<float> place(-5, 5);
        std::uniform_real_distribution<float> edge(-0.7F, 0.7F);
        const GeometryPtr geometry = Geometry::create();
        const GeoPositionsPtr positions = GeoPositions::create();
        const int count = 3000;
        for (int i = 0; i < count; ++i) {
            const Pnt3f corner(place(random), place(random), place(random));
            positions->push_back(corner);
            positions->push_back(corner + Vec3f(edge(random), edge(random), edge(random)));
            positions->push_back(corner + Vec3f(edge(random), edge(random), edge(random)));
        }
        geometry->setPositions(positions);
        GeometryBuilder::setPrimitives(geometry, {{Geometry::TRIANGLES, count * 3}});
        const NodeRefPtr node = makeNodeFor(geometry);
        int hits = 0;
        for (int ray = 0; ray < 200; ++ray) {
            const Line line(Pnt3f(place(random), place(random), 9), Pnt3f(place(random), place(random), -9));
            Real32 nearest = Inf;
            for (TriangleIterator it = geometry->beginTriangles(); !it.isAtEnd(); ++it) {
                Real32 t = 0;
                if (line.intersect(it.getPosition(0), it.getPosition(1), it.getPosition(2), t) && t >= 0)
                    nearest = std::min(nearest, t);
            }
            const ActionPtr action = shoot(node, line);
            QCOMPARE(action->didHit(), nearest < Inf);
            if (nearest < Inf) {
                ++hits;
                QVERIFY(std::abs(action->getHitT() - nearest) < 1e-3F);
            }
        }
        QVERIFY(hits > 50);
    }

    void raysBetweenNeighboursDoNotSlipThrough()
    {
        // A grid in a tilted plane, hit exactly on its edges and corners.
        const int size = 20;
        const GeometryPtr geometry = Geometry::create();
        const GeoPositionsPtr positions = GeoPositions::create();
        const GeoIndicesPtr indices = GeoIndices::create();
        for (int y = 0; y <= size; ++y) {
            for (int x = 0; x <= size; ++x)
                positions->push_back(Pnt3f(x * 0.1F, y * 0.1F, x * 0.037F + y * 0.021F));
        }
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                const UInt32 first = static_cast<UInt32>(y * (size + 1) + x);
                for (UInt32 corner : {first, first + 1, first + size + 2, first + size + 1})
                    indices->push_back(corner);
            }
        }
        geometry->setPositions(positions);
        geometry->setIndices(indices);
        GeometryBuilder::setPrimitives(geometry, {{Geometry::QUADS, size * size * 4}});
        const NodeRefPtr node = makeNodeFor(geometry);
        for (int y = 1; y < 4 * size; ++y) {
            for (int x = 1; x < 4 * size; ++x)
                QVERIFY(shoot(node, down(x * 0.025F, y * 0.025F))->didHit());
        }
    }

    void deepTreesAreSearched()
    {
        const NodeRefPtr root = at(0, 0, 0);
        NodePtr last = root;
        for (int i = 0; i < 20000; ++i) {
            const NodePtr next = at(0.001F, 0, 0);
            last->addChild(next);
            last = next;
        }
        last->addChild(makeNodeFor(GeometryBuilder::square()));
        const ActionPtr action = shoot(root, down(20.5F, 0));
        QVERIFY(action->didHit());
        QCOMPARE(action->getHitPath().size(), std::size_t(20002));
    }

    void nearestOfManyChildrenIsFound()
    {
        const NodeRefPtr root = at(0, 0, 0);
        std::mt19937 random(5);
        std::uniform_real_distribution<float> place(-20, 20);
        const auto moveChild = [&](const NodePtr& child) {
            const TransformPtr transform = TransformPtr::dcast(child->getCore());
            Matrix matrix;
            matrix.setTranslate(place(random), place(random), place(random));
            beginEditCP(transform);
            transform->setMatrix(matrix);
            endEditCP(transform);
        };
        const auto addChild = [&] {
            const NodePtr child = at(0, 0, 0);
            child->addChild(makeNodeFor(GeometryBuilder::square()));
            root->addChild(child);
            moveChild(child);
        };
        // Each child by itself, which no order among many plays a part in.
        const auto isAsOneByOne = [&](const Line& ray) {
            Real32 nearest = -1;
            for (const NodePtr& child : root->getChildren()) {
                const ActionPtr single = shoot(child, ray);
                if (single->didHit() && (nearest < 0 || single->getHitT() < nearest))
                    nearest = single->getHitT();
            }
            return shoot(root, ray)->getHitT() == nearest;
        };
        const auto compare = [&] {
            for (int i = 0; i < 60; ++i) {
                const Pnt3f from(place(random), place(random), 50);
                if (!isAsOneByOne(Line(from, Pnt3f(place(random), place(random), -50))))
                    return false;
            }
            return true;
        };
        for (int i = 0; i < 300; ++i)
            addChild();
        QVERIFY(compare());
        for (UInt32 i = 0; i < 150; ++i)
            moveChild(root->getChild(i * 2));
        QVERIFY(compare());
        for (int i = 0; i < 100; ++i)
            root->subChild(static_cast<UInt32>(i));
        QVERIFY(compare());
        addChild();
        root->getChild(3)->setActive(false);
        root->getChild(5)->setTravMask(0);
        QVERIFY(shoot(root, down(1000, 1000))->getHitT() == -1);
        for (int i = 0; i < 60; ++i) {
            const Matrix target = root->getChild(static_cast<UInt32>(i))->getToWorld();
            QVERIFY(isAsOneByOne(down(target[3][0], target[3][1])));
        }
    }

    void manyChildrenOfOddVolumesAreSearched()
    {
        const NodeRefPtr root = at(0, 0, 0);
        for (int i = 0; i < 50; ++i)
            root->addChild(makeNodeFor(Group::create()));
        QVERIFY(!shoot(root, down(0, 0))->didHit());
        const NodePtr everywhere = makeNodeFor(GeometryBuilder::square());
        everywhere->getVolume(true).setInfinite();
        everywhere->getVolume(false).setStatic();
        root->addChild(everywhere);
        const NodePtr far = at(1e30F, 1e30F, 0);
        far->addChild(makeNodeFor(GeometryBuilder::square()));
        root->addChild(far);
        QVERIFY(shoot(root, down(0.5F, 0))->didHit());
        QVERIFY(!shoot(root, down(5, 0))->didHit());
        // A list of children that is held fast by a static volume is gone through as it is.
        root->getVolume(true).setStatic();
        const NodePtr late = at(5, 0, 0);
        late->addChild(makeNodeFor(GeometryBuilder::square()));
        root->addChild(late);
        QVERIFY(shoot(root, down(5, 0))->didHit());
    }

    void nestedListsOfManyChildrenAreSearched()
    {
        const NodeRefPtr root = at(0, 0, 0);
        for (int x = 0; x < 40; ++x) {
            const NodePtr column = at(3.0F * static_cast<float>(x), 0, 0);
            root->addChild(column);
            for (int y = 0; y < 40; ++y) {
                const NodePtr shape = at(0, 3.0F * static_cast<float>(y), -0.01F * static_cast<float>(x));
                shape->addChild(makeNodeFor(GeometryBuilder::square()));
                column->addChild(shape);
            }
        }
        for (int x = 0; x < 40; x += 3) {
            const ActionPtr action = shoot(root, down(3.0F * static_cast<float>(x), 3.0F * 17));
            QVERIFY(action->didHit());
            QCOMPARE(action->getHitPath()[1], root->getChild(static_cast<UInt32>(x)));
            QCOMPARE(action->getHitPath()[2], root->getChild(static_cast<UInt32>(x))->getChild(17));
        }
    }
};

QTEST_APPLESS_MAIN(tst_IntersectAction)
#include "tst_IntersectAction.moc"
