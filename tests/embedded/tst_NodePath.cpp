#include "BaseTools.h"
#include <Orvane/NodePath.h>
#include <Orvane/SFNode.h>
#include <QtTest>

using namespace Orvane;

namespace {

std::list<NodeLink*> linksOf(const NodePath& path)
{
    std::list<NodeLink*> links{nullptr};
    path.nodeLinks(links);
    return links;
}

} // namespace

class tst_NodePath : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _context.reset(); }

    void emptyPathIsNotValid();
    void pathOfARootHasNoLinks();
    void linksStandDeepestFirst();
    void childPathIsTheParentsWithItsLinkInFront();
    void climbsByTheOldestLinks();
    void climbsRoundCircles();
    void diesWithALink();
    void diesWithItsRoot();
    void singleLinkThatLeadsElsewhereEndsThePath();
    void copiesStaySafe();
    void equality();
    void addNodeTakesTheFirstLink();
    void addNodeLeavesCopiesAlone();
    void chainsThatDoNotHangTogetherAreNotValid();
    void outlivesTheContext();

private:
    std::unique_ptr<TestContext> _context;
    Node* _scene = nullptr;
    Node* _group = nullptr;
    Node* _shape = nullptr;
};

void tst_NodePath::init()
{
    _context = std::make_unique<TestContext>();
    _scene = &_context->scene();
    _group = &_context->add("Group");
    const NodeRef shape = _context->make("Shape");
    _shape = shape.get();
    addChild(*_group, *_shape);
}

void tst_NodePath::emptyPathIsNotValid()
{
    const NodePath path;
    QVERIFY(!path.isValid());
    QVERIFY(!path.node());
    QVERIFY(linksOf(path).empty());
    QVERIFY(!NodePath(std::list<NodeLink*>()).isValid());
}

void tst_NodePath::pathOfARootHasNoLinks()
{
    const NodePath path(_scene);
    QVERIFY(path.isValid());
    QCOMPARE(path.node(), _scene);
    QVERIFY(linksOf(path).empty());
    const NodeRef loose = _context->make("Box");
    QCOMPARE(NodePath(loose.get()).node(), loose.get());
}

void tst_NodePath::linksStandDeepestFirst()
{
    const NodePath path(_shape);
    QCOMPARE(path.node(), _shape);
    NodeLink* const toGroup = &field<MFNode>(*_scene, "children")[0];
    NodeLink* const toShape = &field<MFNode>(*_group, "children")[0];
    QCOMPARE(linksOf(path), (std::list<NodeLink*>{toShape, toGroup}));
    QVERIFY(NodePath(linksOf(path)) == path);
}

void tst_NodePath::childPathIsTheParentsWithItsLinkInFront()
{
    std::list<NodeLink*> links = linksOf(NodePath(_scene));
    links.push_front(&field<MFNode>(*_scene, "children")[0]);
    QVERIFY(NodePath(links) == NodePath(_group));
    links.push_front(&field<MFNode>(*_group, "children")[0]);
    QVERIFY(NodePath(links) == NodePath(_shape));
}

void tst_NodePath::climbsByTheOldestLinks()
{
    addChild(*_scene, *_shape);
    QCOMPARE(linksOf(NodePath(_shape)).size(), std::size_t(2));
    field<MFNode>(*_group, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(linksOf(NodePath(_shape)).size(), std::size_t(1));
}

void tst_NodePath::climbsRoundCircles()
{
    const NodeRef a = _context->make("Group");
    const NodeRef b = _context->make("Group");
    addChild(*b, *a);
    addChild(*a, *b);
    // Nowhere to climb to: the links lead only into the nodes below.
    QCOMPARE(NodePath(a.get()).node(), a.get());
    QVERIFY(linksOf(NodePath(a.get())).empty());
    addChild(*_scene, *a);
    QCOMPARE(linksOf(NodePath(a.get())).size(), std::size_t(1));
    QCOMPARE(linksOf(NodePath(b.get())).size(), std::size_t(2));
    QCOMPARE(linksOf(NodePath(b.get())).back()->parent(), _scene);
}

void tst_NodePath::diesWithALink()
{
    const NodeRef kept(_shape);
    const NodePath path(_shape);
    const NodePath other(_group);
    field<MFNode>(*_group, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(!path.isValid());
    QVERIFY(!path.node());
    QVERIFY(linksOf(path).empty());
    QVERIFY(other.isValid());
    addChild(*_group, *_shape);
    QVERIFY(!path.isValid());
    QVERIFY(!(NodePath(_shape) == path));
}

void tst_NodePath::diesWithItsRoot()
{
    const NodePath path(_shape);
    const NodePath root(_scene);
    (*_context)->removeRoot(*findType("Scene"));
    QVERIFY(!path.isValid());
    QVERIFY(!root.isValid());
    QVERIFY(!root.node());
}

void tst_NodePath::singleLinkThatLeadsElsewhereEndsThePath()
{
    auto& geometry = field<SFNode>(*_shape, "geometry");
    const NodeRef box = _context->make("Box");
    geometry.setNode(0.0, box.get(), Field::EXTERNAL_CT);
    const NodePath path(box.get());
    QCOMPARE(path.node(), box.get());
    geometry.setNode(0.0, _context->make("Cone").get(), Field::EXTERNAL_CT);
    QVERIFY(!path.isValid());
    geometry.setNode(0.0, box.get(), Field::EXTERNAL_CT);
    QVERIFY(!path.isValid());
    QVERIFY(NodePath(box.get()).isValid());
}

void tst_NodePath::copiesStaySafe()
{
    auto path = std::make_unique<NodePath>(_shape);
    NodePath copy(*path);
    NodePath assigned;
    assigned = copy;
    assigned = *&assigned;
    path.reset();
    QCOMPARE(copy.node(), _shape);
    QVERIFY(copy == assigned);
    delete _shape;
    QVERIFY(!copy.isValid() && !assigned.isValid());
}

void tst_NodePath::equality()
{
    addChild(*_scene, *_shape);
    const NodePath long_(_shape);
    const NodePath short_(std::list<NodeLink*>{&field<MFNode>(*_scene, "children")[1]});
    QCOMPARE(long_.node(), short_.node());
    QVERIFY(long_ != short_);
    QVERIFY(long_ == NodePath(_shape));
    QVERIFY(NodePath() == NodePath());
    QVERIFY(NodePath() != long_);
    QVERIFY(NodePath(_scene) != NodePath(_context->make("Group").get()));
}

void tst_NodePath::addNodeTakesTheFirstLink()
{
    addChild(*_group, *_shape);
    NodePath path(_scene);
    QCOMPARE(&path.addNode(_group), &path);
    path.addNode(_shape);
    QVERIFY(path == NodePath(_shape));
    QCOMPARE(linksOf(path).front(), &field<MFNode>(*_group, "children")[0]);
    path.addNode(_group);
    path.addNode(nullptr);
    QCOMPARE(path.node(), _shape);
    NodePath empty;
    empty.addNode(_group);
    QVERIFY(!empty.isValid());
}

void tst_NodePath::addNodeLeavesCopiesAlone()
{
    NodePath path(_group);
    const NodePath copy(path);
    path.addNode(_shape);
    QCOMPARE(path.node(), _shape);
    QCOMPARE(copy.node(), _group);
}

void tst_NodePath::chainsThatDoNotHangTogetherAreNotValid()
{
    NodeLink& toGroup = field<MFNode>(*_scene, "children")[0];
    NodeLink& toShape = field<MFNode>(*_group, "children")[0];
    NodeLink copy(toShape);
    QVERIFY(!NodePath(std::list<NodeLink*>{&toGroup, &toShape}).isValid());
    QVERIFY(!NodePath(std::list<NodeLink*>{&copy, &toGroup}).isValid());
    QVERIFY(!NodePath(std::list<NodeLink*>{nullptr}).isValid());
    QVERIFY(NodePath(std::list<NodeLink*>{&toShape}).isValid());
}

void tst_NodePath::outlivesTheContext()
{
    const NodePath path(_shape);
    _context.reset();
    QVERIFY(!path.isValid());
    QVERIFY(!path.node());
    const NodePath copy(path);
    QVERIFY(copy == path);
}

QTEST_APPLESS_MAIN(tst_NodePath)
#include "tst_NodePath.moc"
