#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGVisitSubTree.h>

#include <QtTest>
#include <random>

using namespace osg;

namespace {

using NodeRefPtr = RefPtr<NodePtr>;

class Box;
using BoxPtr = FCPtr<NodeCorePtr, Box>;

// A core that covers the cube from -1 to 1 and tells when it goes.
class Box : public NodeCore
{
public:
    static BoxPtr create() { return BoxPtr(new Box); }
    void adjustVolume(Volume& volume) override
    {
        volume.extendBy(Pnt3f(-size, -size, -size));
        volume.extendBy(Pnt3f(size, size, size));
        ++volumeQueries;
    }

    float size = 1;
    int volumeQueries = 0;
    static int alive;

protected:
    Box() { ++alive; }
    ~Box() override { --alive; }
};

int Box::alive = 0;

NodePtr groupNode()
{
    return makeNodeFor(Group::create());
}

TransformPtr translation(float x, float y, float z)
{
    const TransformPtr transform = Transform::create();
    Matrix matrix;
    matrix.setTranslate(x, y, z);
    transform->setMatrix(matrix);
    return transform;
}

NodePtr visitNode(const NodePtr& root)
{
    const VisitSubTreePtr visit = VisitSubTree::create();
    visit->setSubTreeRoot(root);
    return makeNodeFor(visit);
}

BoxVolume boundsOf(const NodePtr& node)
{
    Pnt3f min;
    Pnt3f max;
    node->getVolume(true).getBounds(min, max);
    return {min, max};
}

} // namespace

class tst_Node : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(Box::alive, 0); }

    void createdWithoutReference()
    {
        const NodePtr node = Node::create();
        QCOMPARE(node->getRefCount(), 0);
        QVERIFY(!node->getCore());
        QVERIFY(!node->getParent());
        QCOMPARE(node->getTravMask(), ~UInt32(0));
        subRefCP(node);
        QVERIFY(!node);
    }

    void setCoreRefsTheNewAndUnrefsTheOld()
    {
        const NodeRefPtr node = Node::create();
        const RefPtr<BoxPtr> first = Box::create();
        node->setCore(first.get());
        QCOMPARE(first->getRefCount(), 2);
        QCOMPARE(first->getParents().size(), std::size_t(1));
        node->setCore(Box::create());
        QCOMPARE(first->getRefCount(), 1);
        QVERIFY(first->getParents().empty());
        QCOMPARE(Box::alive, 2);
        node->setCore(NullFC);
        QCOMPARE(Box::alive, 1);
    }

    void coreIsSharedByNodes()
    {
        const RefPtr<BoxPtr> box = Box::create();
        {
            const NodeRefPtr a = makeNodeFor(box.get());
            const NodeRefPtr b = makeNodeFor(box.get());
            QCOMPARE(box->getRefCount(), 3);
            QCOMPARE(box->getParents().size(), std::size_t(2));
        }
        QCOMPARE(box->getRefCount(), 1);
        QVERIFY(box->getParents().empty());
    }

    void childrenAreReferenced()
    {
        const NodeRefPtr root = groupNode();
        const NodeRefPtr child = groupNode();
        root->addChild(child);
        QCOMPARE(child->getRefCount(), 2);
        QVERIFY(child->getParent() == root);
        root->subChild(child);
        QCOMPARE(child->getRefCount(), 1);
        QVERIFY(!child->getParent());
        root->insertChild(7, child);
        root->subChild(UInt32(0));
        QCOMPARE(child->getRefCount(), 1);
        root->subChild(UInt32(0));
        root->subChild(child);
        root->addChild(NullFC);
        QCOMPARE(root->getNChildren(), 0U);
    }

    void addingMovesAChildFromItsOldParent()
    {
        const NodeRefPtr a = groupNode();
        const NodeRefPtr b = groupNode();
        const NodePtr child = groupNode();
        a->addChild(child);
        b->addChild(child);
        QCOMPARE(a->getNChildren(), 0U);
        QCOMPARE(b->getNChildren(), 1U);
        QCOMPARE(child->getRefCount(), 1);
        QVERIFY(child->getParent() == b);
    }

    void childrenKeepTheirOrder()
    {
        const NodeRefPtr root = groupNode();
        const NodePtr a = groupNode();
        const NodePtr b = groupNode();
        const NodePtr c = groupNode();
        root->addChild(a);
        root->addChild(c);
        root->insertChild(1, b);
        QVERIFY(root->getChildren() == (MFNodePtr{a, b, c}));
        QCOMPARE(root->findChild(c), 2);
        QVERIFY(!root->getChild(3));
        root->addChild(a);
        QVERIFY(root->getChildren() == (MFNodePtr{b, c, a}));
        QCOMPARE(a->getRefCount(), 1);
    }

    void replacingUnrefsTheOldChild()
    {
        const NodeRefPtr root = groupNode();
        const NodeRefPtr a = groupNode();
        const NodeRefPtr b = groupNode();
        root->addChild(a);
        root->replaceChild(0, b);
        QCOMPARE(a->getRefCount(), 1);
        QVERIFY(!a->getParent());
        QCOMPARE(b->getRefCount(), 2);
        QVERIFY(root->replaceChildBy(b, a));
        QVERIFY(!root->replaceChildBy(b, a));
        QVERIFY(!root->replaceChildBy(a, NullFC));
        QCOMPARE(root->findChild(b), -1);
        QCOMPARE(root->findChild(a), 0);
        root->addChild(b);
        root->replaceChild(0, b);
        QVERIFY(root->getChildren() == MFNodePtr{b});
        QCOMPARE(b->getRefCount(), 2);
        QCOMPARE(a->getRefCount(), 1);
    }

    void nodeIsNeverBelowItself()
    {
        const NodeRefPtr root = groupNode();
        const NodePtr child = groupNode();
        root->addChild(child);
        child->addChild(root);
        root->addChild(root);
        QCOMPARE(child->getNChildren(), 0U);
        QCOMPARE(root->getNChildren(), 1U);
        QVERIFY(!root->getParent());
    }

    void childrenGoWithTheirParent()
    {
        const NodeRefPtr kept = makeNodeFor(Box::create());
        {
            const NodeRefPtr root = groupNode();
            root->addChild(kept);
            root->addChild(makeNodeFor(Box::create()));
        }
        QCOMPARE(Box::alive, 1);
        QVERIFY(!kept->getParent());
    }

    void toWorldMultipliesFromRootToLeafWithTheOwnCore()
    {
        const NodeRefPtr root = makeNodeFor(translation(1, 2, 3));
        const TransformPtr scale = Transform::create();
        Matrix matrix;
        matrix.setScale(2);
        scale->setMatrix(matrix);
        const NodePtr leaf = makeNodeFor(scale);
        root->addChild(leaf);
        Matrix result;
        result.setTranslate(9, 9, 9);
        leaf->getToWorld(result);
        QVERIFY(result == Matrix(2, 0, 0, 1, 0, 2, 0, 2, 0, 0, 2, 3, 0, 0, 0, 1));
        QVERIFY(leaf->getToWorld() == result);
        QVERIFY(root->getToWorld()[3] == Vec4f(1, 2, 3, 1));
    }

    void volumeIsInTheParentsSystem()
    {
        const NodeRefPtr root = makeNodeFor(translation(10, 0, 0));
        const NodePtr middle = makeNodeFor(translation(0, 5, 0));
        const NodePtr leaf = makeNodeFor(Box::create());
        root->addChild(middle);
        middle->addChild(leaf);
        QVERIFY(boundsOf(leaf) == BoxVolume(-1, -1, -1, 1, 1, 1));
        QVERIFY(boundsOf(middle) == BoxVolume(-1, 4, -1, 1, 6, 1));
        QVERIFY(boundsOf(root) == BoxVolume(9, 4, -1, 11, 6, 1));
        DynamicVolume world;
        leaf->getWorldVolume(world);
        Pnt3f center;
        world.getCenter(center);
        QVERIFY(center == Pnt3f(10, 5, 0));
    }

    void volumeIsComputedWhenAskedForAndOnlyOnce()
    {
        const BoxPtr box = Box::create();
        const NodeRefPtr root = groupNode();
        root->addChild(makeNodeFor(box));
        QVERIFY(!root->getVolume().isValid());
        root->updateVolume();
        root->getVolume(true);
        QVERIFY(root->getVolume().isValid());
        QCOMPARE(box->volumeQueries, 1);
    }

    void changesReachTheVolumesAbove()
    {
        const NodeRefPtr root = groupNode();
        const TransformPtr transform = translation(1, 0, 0);
        const NodePtr middle = makeNodeFor(transform);
        const BoxPtr box = Box::create();
        root->addChild(middle);
        middle->addChild(makeNodeFor(box));
        QVERIFY(boundsOf(root) == BoxVolume(0, -1, -1, 2, 1, 1));
        box->size = 2;
        box->invalidateVolume();
        QVERIFY(!root->getVolume().isValid());
        QVERIFY(boundsOf(root) == BoxVolume(-1, -2, -2, 3, 2, 2));
        beginEditCP(transform, Transform::MatrixFieldMask);
        transform->getMatrix().setTranslate(0, 0, 0);
        endEditCP(transform, Transform::MatrixFieldMask);
        QVERIFY(boundsOf(root) == BoxVolume(-2, -2, -2, 2, 2, 2));
        root->subChild(middle);
        QVERIFY(boundsOf(root) == BoxVolume(0, 0, 0, 0, 0, 0));
        QVERIFY(root->getVolume().isEmpty());
    }

    void volumeOfManyChildrenFollowsThem()
    {
        const NodeRefPtr root = makeNodeFor(translation(100, 0, 0));
        std::mt19937 random(7);
        std::uniform_real_distribution<float> place(-50, 50);
        const auto move = [&](const NodePtr& child, float x, float y, float z) {
            const TransformPtr transform = TransformPtr::dcast(child->getCore());
            Matrix matrix;
            matrix.setTranslate(x, y, z);
            beginEditCP(transform);
            transform->setMatrix(matrix);
            endEditCP(transform);
        };
        const auto add = [&] {
            const NodePtr child = makeNodeFor(translation(place(random), place(random), place(random)));
            child->addChild(makeNodeFor(Box::create()));
            root->addChild(child);
        };
        const auto isAsOneByOne = [&] {
            BoxVolume all;
            all.setEmpty();
            for (const NodePtr& child : root->getChildren())
                all.extendBy(boundsOf(child));
            if (!all.isEmpty()) {
                Matrix matrix;
                matrix.setTranslate(100, 0, 0);
                all.transform(matrix);
            }
            // The children are up to date by now; whether the volume is shall not come from that.
            return boundsOf(root) == all;
        };
        const auto check = [&] {
            root->updateVolume();
            return isAsOneByOne();
        };
        for (int i = 0; i < 200; ++i)
            add();
        QVERIFY(check());
        // One or a few, also those at the border, far away and back again.
        for (int i = 0; i < 300; ++i) {
            for (int k = 0; k <= i % 4; ++k) {
                const NodePtr child = root->getChild(static_cast<UInt32>(random() % 200));
                move(child, place(random), place(random), i % 10 == 0 ? 1000 : place(random));
            }
            QVERIFY(check());
        }
        for (UInt32 i = 0; i < 200; i += 2)
            move(root->getChild(i), place(random) * 2, place(random), place(random));
        QVERIFY(check());
        // A child that goes, comes, or becomes empty; and a box that grows below one.
        for (int i = 0; i < 40; ++i) {
            root->subChild(static_cast<UInt32>(random() % 150));
            QVERIFY(check());
            add();
            move(root->getChild(3), place(random), place(random), place(random));
            QVERIFY(check());
            root->getChild(5)->subChild(UInt32(0));
            QVERIFY(check());
            root->getChild(5)->addChild(makeNodeFor(Box::create()));
            QVERIFY(check());
            const BoxPtr box = BoxPtr::dcast(root->getChild(7)->getChild(0)->getCore());
            box->size = static_cast<float>(i % 7 * 20);
            box->invalidateVolume();
            QVERIFY(check());
        }
    }

    void oneOfManyChildrenIsEverywhere()
    {
        const NodeRefPtr root = groupNode();
        std::vector<BoxPtr> boxes;
        for (int i = 0; i < 100; ++i) {
            boxes.push_back(Box::create());
            root->addChild(makeNodeFor(boxes.back()));
        }
        const auto grow = [&](float size) {
            boxes[3]->size = size;
            boxes[3]->invalidateVolume();
        };
        for (int i = 1; i < 5; ++i) {
            grow(static_cast<float>(i));
            root->updateVolume();
        }
        root->getChild(8)->getVolume(true).setInfinite();
        root->invalidateVolume();
        QVERIFY(root->getVolume(true).isInfinite());
        grow(2);
        QVERIFY(root->getVolume(true).isInfinite());
        boxes[8]->invalidateVolume();
        QVERIFY(boundsOf(root) == BoxVolume(-2, -2, -2, 2, 2, 2));
        grow(1);
        QVERIFY(boundsOf(root) == BoxVolume(-1, -1, -1, 1, 1, 1));
    }

    void staticVolumeStays()
    {
        const NodeRefPtr root = groupNode();
        const BoxPtr box = Box::create();
        root->addChild(makeNodeFor(box));
        root->updateVolume();
        root->getVolume(false).setStatic();
        box->size = 5;
        box->invalidateVolume();
        QVERIFY(boundsOf(root) == BoxVolume(-1, -1, -1, 1, 1, 1));
    }

    void switchBoundsWhatItShows()
    {
        const SwitchPtr core = Switch::create();
        const NodeRefPtr root = makeNodeFor(core);
        root->addChild(makeNodeFor(Box::create()));
        const NodePtr moved = makeNodeFor(translation(4, 0, 0));
        moved->addChild(makeNodeFor(Box::create()));
        root->addChild(moved);
        QVERIFY(root->getVolume(true).isEmpty());
        core->setChoice(1);
        QVERIFY(boundsOf(root) == BoxVolume(3, -1, -1, 5, 1, 1));
        core->setChoice(Switch::ALL);
        QVERIFY(boundsOf(root) == BoxVolume(-1, -1, -1, 5, 1, 1));
        core->setChoice(2);
        QVERIFY(root->getVolume(true).isEmpty());
    }

    void referredTreeBoundsEachPlaceAndTellsAllOfChanges()
    {
        const BoxPtr box = Box::create();
        const NodeRefPtr home = makeNodeFor(translation(100, 0, 0));
        const NodePtr shared = makeNodeFor(box);
        home->addChild(shared);
        const NodeRefPtr here = makeNodeFor(translation(2, 0, 0));
        const NodeRefPtr there = makeNodeFor(translation(0, 3, 0));
        here->addChild(visitNode(shared));
        there->addChild(visitNode(shared));
        QVERIFY(boundsOf(here) == BoxVolume(1, -1, -1, 3, 1, 1));
        QVERIFY(boundsOf(there) == BoxVolume(-1, 2, -1, 1, 4, 1));
        QCOMPARE(box->volumeQueries, 1);
        box->size = 2;
        box->invalidateVolume();
        QVERIFY(boundsOf(here) == BoxVolume(0, -2, -2, 4, 2, 2));
        QVERIFY(boundsOf(there) == BoxVolume(-2, 1, -2, 2, 5, 2));
        QVERIFY(boundsOf(home) == BoxVolume(98, -2, -2, 102, 2, 2));
    }

    void referredTreeMayGoFirst()
    {
        NodePtr shared = makeNodeFor(Box::create());
        addRefCP(shared);
        const NodeRefPtr place = visitNode(shared);
        QCOMPARE(shared->getRefCount(), 1);
        QVERIFY(!place->getVolume(true).isEmpty());
        subRefCP(shared);
        QVERIFY(!VisitSubTreePtr::dcast(place->getCore())->getSubTreeRoot());
        QVERIFY(place->getVolume(true).isEmpty());
    }

    void treeInsideItselfHasAVolume()
    {
        const NodeRefPtr root = makeNodeFor(translation(1, 0, 0));
        root->addChild(makeNodeFor(Box::create()));
        root->addChild(visitNode(root));
        QVERIFY(boundsOf(root) == BoxVolume(0, -1, -1, 2, 1, 1));
        root->getChild(1)->invalidateVolume();
        QVERIFY(!root->getVolume().isValid());
        root->updateVolume();
        QVERIFY(root->getVolume().isValid());
    }

    void deepChainNeedsNoStack()
    {
        const int depth = 20000;
        const NodeRefPtr root = groupNode();
        NodePtr last = root;
        for (int i = 0; i < depth; ++i) {
            const NodePtr next = makeNodeFor(translation(1, 0, 0));
            last->addChild(next);
            last = next;
        }
        last->addChild(makeNodeFor(Box::create()));
        QVERIFY(boundsOf(root) == BoxVolume(depth - 1, -1, -1, depth + 1, 1, 1));
        QVERIFY(last->getToWorld()[3] == Vec4f(depth, 0, 0, 1));
        const NodeRefPtr copy = cloneTree(root);
        QVERIFY(boundsOf(copy) == boundsOf(root));
    }

    void cloneSharesCores()
    {
        const NodeRefPtr root = groupNode();
        const BoxPtr box = Box::create();
        root->addChild(makeNodeFor(box));
        root->addChild(groupNode());
        root->getChild(1)->setTravMask(6);
        const NodeRefPtr copy = cloneTree(root);
        QCOMPARE(copy->getNChildren(), 2U);
        QVERIFY(copy->getChild(0)->getCore() == box);
        QCOMPARE(copy->getChild(1)->getTravMask(), 6U);
        QCOMPARE(box->getRefCount(), 2);
        QVERIFY(!cloneTree(NullFC));
    }

    void activeIsTheWholeMask()
    {
        const NodeRefPtr node = Node::create();
        node->setActive(false);
        QCOMPARE(node->getTravMask(), 0U);
        QVERIFY(!node->getActive());
        node->setActive(true);
        QCOMPARE(node->getTravMask(), ~UInt32(0));
    }

    void pointersCastAlongTheHierarchy()
    {
        const NodeRefPtr node = makeNodeFor(translation(0, 0, 0));
        const FieldContainerPtr any = node.get();
        QVERIFY(NodePtr::dcast(any) == node);
        QVERIFY(!NodePtr::dcast(node->getCore()));
        QVERIFY(TransformPtr::dcast(node->getCore()));
        QVERIFY(!SwitchPtr::dcast(node->getCore()));
        QVERIFY(node->getCore()->getType().isDerivedFrom(Group::getClassType()));
        QCOMPARE(node->getCore()->getTypeName(), "Transform");
    }

    void fieldNumbers()
    {
        QCOMPARE(UInt32(Node::VolumeFieldId), 2U);
        QCOMPARE(UInt32(Node::CoreFieldId), 6U);
    }
};

QTEST_APPLESS_MAIN(tst_Node)
#include "tst_Node.moc"
