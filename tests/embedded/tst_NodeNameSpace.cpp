#include "BaseTools.h"
#include <Orvane/NodeNameSpace.h>
#include <QtTest>

using namespace Orvane;

class tst_NodeNameSpace : public QObject
{
    Q_OBJECT

private slots:
    void init() { _context = std::make_unique<TestContext>(); }
    void cleanup() { _context.reset(); }

    void sceneBringsItsNameSpace();
    void namedNodesAreFound();
    void renamingTellsObserversAfterwards();
    void whoTakesANameIsFound();
    void olderBearerDoesNotTakeTheNameAlong();
    void nodesMoveBetweenNameSpaces();
    void nestedNameSpaces();
    void firstLivingContextAnswers();
    void nameSpaceClosesWithItsRoot();

private:
    std::unique_ptr<TestContext> _context;
};

void tst_NodeNameSpace::sceneBringsItsNameSpace()
{
    Node& scene = _context->scene();
    NodeNameSpace* const names = NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false);
    QVERIFY(names);
    QCOMPARE(names->rootNode(), &scene);
    QCOMPARE(scene.nameSpace(), names);
    QVERIFY(names->baseURL().isEmpty());
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "other", nullptr, true));
}

void tst_NodeNameSpace::namedNodesAreFound()
{
    Node& node = _context->add("Box");
    NodeNameSpace* const names = _context->scene().nameSpace();
    setName(node, names, "Crate");
    QCOMPARE(*node.name(), std::string("Crate"));
    QCOMPARE(NodeNameSpace::findNode(names, "Crate"), &node);
    QVERIFY(!NodeNameSpace::findNode(names, "crate"));
    QVERIFY(!NodeNameSpace::findNode(names, ""));
    QVERIFY(!NodeNameSpace::findNode(nullptr, "Crate"));
    setName(node, names, "");
    QVERIFY(!node.name());
    QCOMPARE(node.nameSpace(), names);
    QVERIFY(!NodeNameSpace::findNode(names, "Crate"));
    setName(node, nullptr, "Loose");
    QCOMPARE(*node.name(), std::string("Loose"));
    QVERIFY(!node.nameSpace());
}

void tst_NodeNameSpace::renamingTellsObserversAfterwards()
{
    Node& node = _context->add("Box");
    NodeNameSpace* const names = _context->scene().nameSpace();
    bool right = false;
    TestObserver observer([&](double, BaseObject* first, BaseObject* second) {
        right = !first && second == &node && NodeNameSpace::findNode(names, "New") == &node;
    });
    setName(node, names, "Old");
    Node::_nameSpaceChanged.attach(observer);
    setName(node, names, "New");
    QVERIFY(right);
    QVERIFY(!NodeNameSpace::findNode(names, "Old"));
    setName(node, names, "New");
    QCOMPARE(observer.count, 1);
}

void tst_NodeNameSpace::whoTakesANameIsFound()
{
    Node& first = _context->add("Box");
    Node& second = _context->add("Box");
    NodeNameSpace* const names = _context->scene().nameSpace();
    setName(first, names, "Same");
    setName(second, names, "Same");
    QCOMPARE(NodeNameSpace::findNode(names, "Same"), &second);
    QCOMPARE(*first.name(), std::string("Same"));
    delete &second;
    QVERIFY(!NodeNameSpace::findNode(names, "Same"));
    setName(first, names, "Same");
    QCOMPARE(NodeNameSpace::findNode(names, "Same"), &first);
}

void tst_NodeNameSpace::olderBearerDoesNotTakeTheNameAlong()
{
    Node& first = _context->add("Box");
    Node& second = _context->add("Box");
    NodeNameSpace* const names = _context->scene().nameSpace();
    setName(first, names, "Same");
    setName(second, names, "Same");
    setName(first, names, "Other");
    QCOMPARE(NodeNameSpace::findNode(names, "Same"), &second);
    delete &first;
    QCOMPARE(NodeNameSpace::findNode(names, "Same"), &second);
    QVERIFY(!NodeNameSpace::findNode(names, "Other"));
}

void tst_NodeNameSpace::nodesMoveBetweenNameSpaces()
{
    Node& node = _context->add("Box");
    NodeNameSpace* const names = _context->scene().nameSpace();
    NodeNameSpace* const other =
        createNameSpace(**_context, names, "inner", nullptr, Relayne::URL("inner.x3d"));
    setName(node, names, "Crate");
    setName(node, other, "Crate");
    QCOMPARE(node.nameSpace(), other);
    QVERIFY(!NodeNameSpace::findNode(names, "Crate"));
    QCOMPARE(NodeNameSpace::findNode(other, "Crate"), &node);
    QCOMPARE(other->baseURL().toString(), std::string("inner.x3d"));
}

void tst_NodeNameSpace::nestedNameSpaces()
{
    NodeNameSpace* const names = _context->scene().nameSpace();
    Context& context = **_context;
    NodeNameSpace* const inner = createNameSpace(context, names, "inner", nullptr, Relayne::URL());
    NodeNameSpace* const innermost = createNameSpace(context, inner, "innermost", nullptr, Relayne::URL());
    QCOMPARE(NodeNameSpace::findNameSpace(names, "inner", nullptr, false), inner);
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "inner", &context, false));
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "inner", &context, true), inner);
    QVERIFY(!NodeNameSpace::findNameSpace(names, "innermost", nullptr, false));
    QCOMPARE(NodeNameSpace::findNameSpace(names, "innermost", nullptr, true), innermost);
    QVERIFY(!NodeNameSpace::findNameSpace(innermost, "inner", nullptr, true));
}

void tst_NodeNameSpace::firstLivingContextAnswers()
{
    auto second = std::make_unique<TestContext>();
    auto third = std::make_unique<TestContext>();
    third->scene();
    second->scene();
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false), second->scene().nameSpace());
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "scene", &**third, false), third->scene().nameSpace());
    second.reset();
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false), third->scene().nameSpace());
    third.reset();
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false));
}

void tst_NodeNameSpace::nameSpaceClosesWithItsRoot()
{
    Node& outer = _context->add("Inline");
    NodeNameSpace* const names = _context->scene().nameSpace();
    NodeRef root(&outer);
    NodeNameSpace* const inner =
        createNameSpace(**_context, names, "inner", &outer, Relayne::URL("inner.x3d"));
    QCOMPARE(inner->rootNode(), &outer);
    QVERIFY(outer.nameSpace() != inner);
    const NodeRef member = _context->make("Box");
    setName(*member, inner, "Crate");
    delete &outer;
    QVERIFY(!NodeNameSpace::findNameSpace(names, "inner", nullptr, false));
    // Who stands in it still knows its address.
    QCOMPARE(member->nameSpace(), inner);
    QVERIFY(!inner->rootNode());
    QCOMPARE(inner->baseURL().toString(), std::string("inner.x3d"));
    setName(*member, names, "Crate");
    QCOMPARE(NodeNameSpace::findNode(names, "Crate"), member.get());
}

QTEST_APPLESS_MAIN(tst_NodeNameSpace)
#include "tst_NodeNameSpace.moc"
