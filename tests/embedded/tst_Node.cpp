#include "BaseTools.h"
#include "base/Prototype.h"
#include "base/ValueFields.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodePath.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFNode.h>
#include <QtTest>

using namespace Orvane;

class tst_Node : public QObject
{
    Q_OBJECT

private slots:
    void init() { _context = std::make_unique<TestContext>(); }
    void cleanup() { _context.reset(); }

    void idsAreFoundAndNeverUsedAgain();
    void idTextFollowsTheName();
    void fieldsByIndexAndName();
    void readingMakesNoField();
    void eventNames();
    void typesOfManyParts();
    void childrenInFieldAndElementOrder();
    void sharedNodes();
    void contextRoot();
    void linkingTellsObservers();
    void unlinkingTellsObserversAtTheOldPlace();
    void wholeFieldWriteFiresOncePerLink();
    void copiesOfLinksAreNoLinks();
    void linkAddressesStay();
    void nodeOfAnotherContextIsRefused();
    void clearOfNodesTellsObserversButMarksNothing();
    void nodeDiesWithItsLastHolder();
    void nodeMovesFromHolderToHolder();
    void deathIsToldWhileAllCanBeRead();
    void routesGoAfterTheNodeIsTold();
    void hostMayDeleteALinkedNode();
    void hostMayDeleteARoot();
    void observersMayDeleteAnything();
    void releasedNodesOfADeepGraphDie();
    void circlesDieWithTheirRoot();
    void contextEndsAllNodes();
    void addedFields();
    void privateFields();
    void removedFieldLivesOnWithTheNode();
    void removalOfAFieldNumbersAnewAndTellsOfRoutes();
    void prototypes();

private:
    std::unique_ptr<TestContext> _context;
};

void tst_Node::idsAreFoundAndNeverUsedAgain()
{
    UInt64 last = 0;
    for (int i = 0; i < 2000; ++i) {
        const NodeRef node = _context->make("Group");
        QVERIFY(node->ID() > last);
        last = node->ID();
        QCOMPARE(Node::findNode(last), node.get());
    }
    QVERIFY(!Node::findNode(last));
    QVERIFY(!Node::findNode(0));
    QVERIFY(!Node::findNode(~0ULL));
}

void tst_Node::idTextFollowsTheName()
{
    Node& node = _context->add("Box");
    const std::string unnamed = "Box#" + std::to_string(node.ID());
    QCOMPARE(node.getIDStr(), unnamed);
    QVERIFY(!node.name());
    std::string during;
    TestObserver observer(
        [&](double, BaseObject*, BaseObject* second) { during = dynamic_cast<Node*>(second)->getIDStr(); });
    Node::_nameSpaceChanged.attach(observer);
    setName(node, _context->scene().nameSpace(), "Crate");
    QCOMPARE(during, std::string("Crate"));
    QCOMPARE(node.getIDStr(), std::string("Crate"));
    setName(node, node.nameSpace(), "");
    QCOMPARE(node.getIDStr(), unnamed);
}

void tst_Node::fieldsByIndexAndName()
{
    Node& node = _context->add("Transform");
    QCOMPARE(node.partDescCount(), partCount(*node.type()));
    for (unsigned int i = 0; i < node.partDescCount(); ++i) {
        Field* made = node.findField(i);
        QVERIFY(made);
        QCOMPARE(made->_desc->id, i);
        QCOMPARE(made->node(), &node);
        QCOMPARE(node.findField(made->name(), Node::EXACT_FSO), made);
        QCOMPARE(node.findField(i), made);
    }
    QVERIFY(!node.findField(node.partDescCount()));
    QVERIFY(!node.findField(static_cast<unsigned int>(-1)));
    Field* translation = node.findField("translation", Node::DECLARED_FSO);
    QCOMPARE(node.findField("set_translation", Node::DECLARED_FSO), translation);
    QCOMPARE(node.findField("translation_changed", Node::DECLARED_FSO), translation);
    QVERIFY(!node.findField("set_translation", Node::EXACT_FSO));
    QVERIFY(!node.findField("set_", Node::DECLARED_FSO));
    QVERIFY(!node.findField("", Node::DECLARED_FSO));
    // initializeOnly: no events, so no forms of event names.
    QVERIFY(node.findField("bboxSize", Node::DECLARED_FSO));
    QVERIFY(!node.findField("set_bboxSize", Node::DECLARED_FSO));
}

void tst_Node::readingMakesNoField()
{
    Node& node = _context->add("Material");
    const auto part = static_cast<unsigned int>(partIndex(*node.type(), "transparency"));
    const Field& unmade = readField(node, part);
    QVERIFY(!unmade.node());
    QCOMPARE(read<SFFloat>(node, part).value(), 0.0F);
    edit<SFFloat>(node, part).setValue(0.0, 0.5F, Field::EXTERNAL_CT);
    QVERIFY(&readField(node, part) != &unmade);
    QCOMPARE(read<SFFloat>(node, part).value(), 0.5F);
    QCOMPARE(static_cast<const SFFloat&>(unmade).value(), 0.0F);
    QVERIFY(!readNode(_context->add("Shape"),
                      static_cast<unsigned int>(partIndex(*findType("Shape"), "geometry"))));
}

void tst_Node::eventNames()
{
    Node& node = _context->add("Transform");
    Field& translation = *node.findField("translation", Node::EXACT_FSO);
    QVERIFY(!translation._inSlot && !translation._outSlot);
    QVERIFY(!translation.getOutSlot(false, false));
    translation.createInSlot(false);
    translation.createOutSlot(false);
    QCOMPARE(translation._inSlot->name(), "set_translation");
    QCOMPARE(translation._outSlot->name(), "translation_changed");
    QCOMPARE(translation.getOutSlot(false, false), translation._outSlot);
    QCOMPARE(translation._outSlot->field(), &translation);

    Field& addChildren = *node.findField("addChildren", Node::EXACT_FSO);
    addChildren.createInSlot(false);
    addChildren.createOutSlot(false);
    QCOMPARE(addChildren._inSlot->name(), "addChildren");
    QCOMPARE(addChildren._outSlot->name(), "addChildren");

    // Slots are made for any access: who watches a field watches both.
    Field& bboxSize = *node.findField("bboxSize", Node::EXACT_FSO);
    bboxSize.createInSlot(false);
    QCOMPARE(bboxSize._inSlot->name(), "bboxSize");
    EventInSlot* const made = bboxSize._inSlot;
    bboxSize.createInSlot(false);
    QCOMPARE(bboxSize._inSlot, made);
    EventOutSlot* const madeOut = bboxSize.getOutSlot(true, false);
    QVERIFY(madeOut);
    QCOMPARE(bboxSize._outSlot, madeOut);
    QCOMPARE(node.findEventInSlotID("bboxSize"), -1);
    QCOMPARE(node.findEventOutSlotID("bboxSize"), -1);

    const int id = static_cast<int>(translation._desc->id);
    for (const char* name : {"translation", "set_translation"})
        QCOMPARE(node.findEventInSlotID(name), id);
    for (const char* name : {"translation", "translation_changed"})
        QCOMPARE(node.findEventOutSlotID(name), id);
    QCOMPARE(node.findEventInSlotID("translation_changed"), -1);
    QCOMPARE(node.findEventOutSlotID("addChildren"), -1);
    QCOMPARE(node.findEventInSlotID("addChildren"), int(addChildren._desc->id));
    QCOMPARE(node.findEventInSlotID("set_addChildren"), int(addChildren._desc->id));
    QCOMPARE(node.findEventInSlotID("nothing"), -1);
    QCOMPARE(node.findEventInSlotID(""), -1);

    Node& sensor = _context->add("ScalarInterpolator");
    const int fraction = sensor.findEventInSlotID("set_fraction");
    QVERIFY(fraction >= 0);
    QCOMPARE(sensor.findEventInSlotID("fraction"), fraction);
    const int value = sensor.findEventOutSlotID("value_changed");
    QVERIFY(value >= 0);
    QCOMPARE(sensor.findEventOutSlotID("value"), value);
    QCOMPARE(std::string(sensor.findField(static_cast<unsigned int>(value))->name()),
             std::string("value_changed"));
}

void tst_Node::typesOfManyParts()
{
    // Prototypes may have any number of parts.
    for (const unsigned int count : {61U, 62U, 63U, 64U, 300U}) {
        std::vector<PartDeclaration> parts;
        for (unsigned int i = 0; i < count; ++i)
            parts.push_back({"p" + std::to_string(i), SFFLOAT_DT, EXPOSEDFIELDP, std::to_string(i)});
        const std::shared_ptr<NodeType> type = createPrototype("Many", parts);
        const NodeRef node = createNode(**_context, *type, HOST_NC);
        QCOMPARE(node->partDescCount(), count + 1); // with the body
        for (unsigned int i = count; i > 0; i -= (i > 3 ? 3 : i))
            edit<SFFloat>(*node, i - 1).setValue(0.0, 0.5F, Field::EXTERNAL_CT);
        for (unsigned int i = 0; i < count; ++i) {
            const bool isMade = readField(*node, i).node();
            QCOMPARE(read<SFFloat>(*node, i).value(), isMade ? 0.5F : float(i));
        }
    }
}

void tst_Node::childrenInFieldAndElementOrder()
{
    Node& group = _context->add("Group");
    const NodeRef a = _context->make("Shape");
    const NodeRef b = _context->make("Shape");
    const NodeRef metadata = _context->make("MetadataString");
    addChild(group, *a);
    addChild(group, *b);
    addChild(group, *a);
    field<SFNode>(group, "metadata").setNode(0.0, metadata.get(), Field::EXTERNAL_CT);
    std::vector<Node*> children{nullptr};
    QCOMPARE(group.collectAllChildren(children, 0), 4);
    QCOMPARE(group.childCount(), 4);
    QCOMPARE(children, (std::vector<Node*>{a.get(), b.get(), a.get(), metadata.get()}));
    QCOMPARE(a->childCount(), 0);
}

void tst_Node::sharedNodes()
{
    Node& group = _context->add("Group");
    const NodeRef shape = _context->make("Shape");
    QVERIFY(!shape->isShared());
    addChild(group, *shape);
    QVERIFY(!shape->isShared());
    addChild(_context->scene(), *shape);
    QVERIFY(shape->isShared());
    field<MFNode>(group, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(!shape->isShared());
}

void tst_Node::contextRoot()
{
    Node& scene = _context->scene();
    QCOMPARE(scene.contextRoot(), &scene);
    const NodeRef group = _context->make("Group");
    const NodeRef loose = _context->make("Group");
    QVERIFY(!group->contextRoot());
    addChild(*loose, *group);
    QVERIFY(!group->contextRoot());
    addChild(scene, *group);
    QCOMPARE(group->contextRoot(), &scene);
    // A circle above does not hide the way.
    const NodeRef a = _context->make("Group");
    const NodeRef b = _context->make("Group");
    addChild(*a, *b);
    addChild(*b, *a);
    QVERIFY(!a->contextRoot());
    addChild(*group, *a);
    QCOMPARE(b->contextRoot(), &scene);
}

void tst_Node::linkingTellsObservers()
{
    Node& group = _context->add("Group");
    const NodeRef shape = _context->make("Shape");
    bool right = false;
    TestObserver observer([&](double, BaseObject* first, BaseObject* second) {
        auto* link = dynamic_cast<NodeLink*>(second);
        right = dynamic_cast<Node*>(first) == &group && link && link->node() == shape.get() &&
                link->directNode() == shape.get() && link->parent() == &group &&
                link == &field<MFNode>(group, "children")[0];
    });
    Node::_childAdded.attach(observer);
    addChild(group, *shape);
    QCOMPARE(observer.count, 1);
    QVERIFY(right);
}

void tst_Node::unlinkingTellsObserversAtTheOldPlace()
{
    Node& group = _context->add("Group");
    std::vector<NodeRef> shapes;
    for (int i = 0; i < 3; ++i) {
        shapes.push_back(_context->make("Shape"));
        addChild(group, *shapes.back());
    }
    auto& children = field<MFNode>(group, "children");
    bool right = false;
    TestObserver observer([&](double, BaseObject* first, BaseObject* second) {
        right = first == &group && second == &children[1] && children[1].node() == shapes[1].get() &&
                children.size() == 3;
    });
    Node::_childRemoved.attach(observer);
    QVERIFY(children.removeNode(0.0, 1, Field::EXTERNAL_CT));
    QVERIFY(right);
    QCOMPARE(children.size(), 2U);
    QCOMPARE(children[1].node(), shapes[2].get());
    QVERIFY(!children.removeNode(0.0, 2, Field::EXTERNAL_CT));
    QVERIFY(!children.removeNode(0.0, -1, Field::EXTERNAL_CT));
}

void tst_Node::wholeFieldWriteFiresOncePerLink()
{
    Node& from = _context->add("Group");
    Node& to = _context->add("Group");
    const NodeRef a = _context->make("Shape");
    const NodeRef b = _context->make("Shape");
    addChild(from, *b);
    addChild(from, *a);
    addChild(to, *a);
    addChild(to, *a);
    auto& children = field<MFNode>(to, "children");
    std::vector<unsigned int> sizes;
    TestObserver removed([&](double, BaseObject*, BaseObject*) { sizes.push_back(children.size()); });
    TestObserver added([&](double, BaseObject*, BaseObject*) { sizes.push_back(children.size() + 10); });
    Node::_childRemoved.attach(removed);
    Node::_childAdded.attach(added);
    children.assignValue(field<MFNode>(from, "children"));
    QCOMPARE(sizes, (std::vector<unsigned int>{2, 1, 11, 12}));
    QCOMPARE(children[0].node(), b.get());
    QVERIFY(children.hasValueOf(field<MFNode>(from, "children")));
}

void tst_Node::copiesOfLinksAreNoLinks()
{
    Node& group = _context->add("Group");
    const NodeRef shape = _context->make("Shape");
    addChild(group, *shape);
    NodeLink& link = field<MFNode>(group, "children")[0];
    {
        NodeLink copy(link);
        NodeLink assigned;
        assigned = link;
        QVERIFY(!copy.field() && !assigned.field() && !copy.parent());
        QCOMPARE(copy.node(), shape.get());
        QCOMPARE(assigned.directNode(), shape.get());
        QVERIFY(!shape->isShared());
        link = NodeLink();
    }
    QCOMPARE(link.node(), shape.get());
    QCOMPARE(link.field(), &field<MFNode>(group, "children"));
    QVERIFY(!NodeLink().node());
}

void tst_Node::linkAddressesStay()
{
    Node& group = _context->add("Group");
    auto& children = field<MFNode>(group, "children");
    const NodeRef shape = _context->make("Shape");
    addChild(group, *shape);
    NodeLink* const link = &children[0];
    for (int i = 0; i < 100; ++i)
        children.insertNode(0.0, 0, _context->make("Shape").get(), Field::EXTERNAL_CT);
    QCOMPARE(&children[100], link);
    for (int i = 0; i < 100; ++i)
        children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(&children[0], link);
    auto& geometry = field<SFNode>(*shape, "geometry");
    NodeLink* const single = &geometry.link();
    geometry.setNode(0.0, _context->make("Box").get(), Field::EXTERNAL_CT);
    geometry.setNode(0.0, _context->make("Cone").get(), Field::EXTERNAL_CT);
    QCOMPARE(&geometry.link(), single);
    QCOMPARE(single->node()->type()->name, std::string("Cone"));
}

void tst_Node::nodeOfAnotherContextIsRefused()
{
    const TestContext other;
    const NodeRef foreign = other.make("Box");
    Node& shape = _context->add("Shape");
    QVERIFY(!field<SFNode>(shape, "geometry").setNode(0.0, foreign.get(), Field::EXTERNAL_CT));
    QVERIFY(!field<MFNode>(_context->scene(), "children").addNode(0.0, foreign.get(), Field::EXTERNAL_CT));
    QVERIFY(!field<MFNode>(_context->scene(), "children").addNode(0.0, nullptr, Field::EXTERNAL_CT));
    QVERIFY(field<SFNode>(shape, "geometry").setNode(0.0, nullptr, Field::EXTERNAL_CT));
}

void tst_Node::clearOfNodesTellsObserversButMarksNothing()
{
    Node& group = _context->add("Group");
    addChild(group, *_context->make("Shape"));
    addChild(group, *_context->make("Shape"));
    _context->run();
    auto& children = field<MFNode>(group, "children");
    children.createOutSlot(false);
    TestObserver removed(nullptr);
    TestObserver event(nullptr);
    Node::_childRemoved.attach(removed);
    children._outSlot->processEventSubject().attach(event);
    children.clear();
    QCOMPARE(children.size(), 0U);
    QCOMPARE(removed.count, 2);
    (*_context)->runFrame();
    QCOMPARE(event.count, 0);
}

void tst_Node::nodeDiesWithItsLastHolder()
{
    Node& group = _context->add("Group");
    NodeRef shape = _context->make("Shape");
    const UInt64 id = shape->ID();
    const UInt64 boxId = [&] {
        const NodeRef box = _context->make("Box");
        field<SFNode>(*shape, "geometry").setNode(0.0, box.get(), Field::EXTERNAL_CT);
        return box->ID();
    }();
    addChild(group, *shape);
    shape = NodeRef();
    QVERIFY(Node::findNode(id) && Node::findNode(boxId));
    field<MFNode>(group, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(!Node::findNode(id) && !Node::findNode(boxId));
}

void tst_Node::nodeMovesFromHolderToHolder()
{
    NodeRef a = _context->make("Group");
    NodeRef b = _context->make("Group");
    const UInt64 idOfA = a->ID();
    const UInt64 idOfB = b->ID();
    NodeRef moved(std::move(a));
    QVERIFY(!a && moved && Node::findNode(idOfA));
    NodeRef copy = moved;
    moved = std::move(b);
    QVERIFY(Node::findNode(idOfA) && Node::findNode(idOfB));
    copy = moved;
    QVERIFY(!Node::findNode(idOfA));
    copy = NodeRef(copy.get());
    moved = NodeRef();
    QVERIFY(Node::findNode(idOfB));
    copy = NodeRef();
    QVERIFY(!Node::findNode(idOfB));
}

void tst_Node::deathIsToldWhileAllCanBeRead()
{
    NodeRef group = _context->make("Group");
    setName(*group, _context->scene().nameSpace(), "Box of boxes");
    addChild(*group, *_context->make("Shape"));
    _context->run();
    bool right = false;
    TestObserver observer([&](double, BaseObject* first, BaseObject* second) {
        auto* node = dynamic_cast<Node*>(first);
        if (node != group.get() || second)
            return;
        right = node->state() != RUNNING_NS && node->name() && *node->name() == "Box of boxes" &&
                node->childCount() == 1 && Node::findNode(node->ID()) == node &&
                NodeNameSpace::findNode(node->nameSpace(), "Box of boxes") == node &&
                !field<MFNode>(*node, "children").addNode(0.0, &_context->scene(), Field::EXTERNAL_CT);
    });
    Node::_deleteObject.attach(observer);
    delete group.get();
    QVERIFY(right);
    QVERIFY(!group);
    QCOMPARE(observer.count, 2);
    QVERIFY(!NodeNameSpace::findNode(_context->scene().nameSpace(), "Box of boxes"));
}

void tst_Node::routesGoAfterTheNodeIsTold()
{
    Node& a = _context->add("Transform");
    NodeRef b = _context->make("Transform");
    connectFields(*a.findField("translation", Node::EXACT_FSO),
                  *b->findField("translation", Node::EXACT_FSO));
    connectFields(*b->findField("scale", Node::EXACT_FSO), *a.findField("scale", Node::EXACT_FSO));
    std::string order;
    TestObserver node([&](double, BaseObject*, BaseObject*) { order += 'n'; });
    TestObserver route([&](double, BaseObject* first, BaseObject*) {
        auto* dying = dynamic_cast<Route*>(first);
        const bool isFound = dying->outSlot()->findRoute(dying->inSlot()) == dying;
        order += isFound && dying->outSlot()->field()->node() && dying->inSlot()->field()->node() ? 'r' : 'x';
    });
    Node::_deleteObject.attach(node);
    Route::_deleteObject.attach(route);
    b = NodeRef();
    QCOMPARE(order, std::string("nrr"));
    QCOMPARE(a.findField("translation", Node::EXACT_FSO)->outRouteCount(true, false), 0U);
}

void tst_Node::hostMayDeleteALinkedNode()
{
    Node& group = _context->add("Group");
    const NodeRef shape = _context->make("Shape");
    const NodeRef box = _context->make("Box");
    field<SFNode>(*shape, "geometry").setNode(0.0, box.get(), Field::EXTERNAL_CT);
    addChild(group, *shape);
    addChild(_context->scene(), *shape);
    TestObserver removed(nullptr);
    Node::_childRemoved.attach(removed);
    delete box.get();
    QVERIFY(!field<SFNode>(*shape, "geometry").link().node());
    QCOMPARE(removed.count, 1);
    delete shape.get();
    QCOMPARE(removed.count, 3);
    QCOMPARE(group.childCount(), 0);
    QCOMPARE(_context->scene().childCount(), 1);
}

void tst_Node::hostMayDeleteARoot()
{
    Node* scene = &_context->scene();
    _context->add("Group");
    delete scene;
    QVERIFY(!(*_context)->findRoot(*findType("Scene")));
    QVERIFY(!NodeNameSpace::findNameSpace(nullptr, "scene", &**_context, false));
}

void tst_Node::observersMayDeleteAnything()
{
    // Whatever the first notification of a change deletes, the change comes to an end.
    for (const int victim : {0, 1, 2}) {
        const TestContext context;
        NodeRef parent = context.make("Group");
        NodeRef child = context.make("Shape");
        NodeRef other = context.make("Shape");
        addChild(*parent, *other);
        TestObserver killer([&](double, BaseObject*, BaseObject*) {
            if (killer.count == 1)
                delete (victim == 0 ? parent : victim == 1 ? child : other).get();
        });
        Node::_childAdded.attach(killer);
        addChild(*parent, *child);
        Node::_childAdded.detach(killer);
        QCOMPARE(killer.count, 1);
        QCOMPARE(bool(parent), victim != 0);
    }
    for (const int victim : {0, 1}) {
        const TestContext context;
        NodeRef parent = context.make("Group");
        NodeRef child = context.make("Shape");
        addChild(*parent, *child);
        TestObserver killer([&](double, BaseObject*, BaseObject*) {
            if (killer.count == 1)
                delete (victim == 0 ? parent : child).get();
        });
        Node::_childRemoved.attach(killer);
        field<MFNode>(*parent, "children").setValueByStr(0.0, "");
        Node::_childRemoved.detach(killer);
        QVERIFY(killer.count >= 1);
    }
}

void tst_Node::releasedNodesOfADeepGraphDie()
{
    constexpr int depth = 100000;
    int died = 0;
    TestObserver observer([&](double, BaseObject*, BaseObject*) { ++died; });
    NodeRef top = _context->make("Group");
    NodeRef bottom = top;
    for (int i = 1; i < depth; ++i) {
        const NodeRef next = _context->make("Group");
        addChild(*bottom, *next);
        bottom = next;
    }
    QCOMPARE(NodePath(bottom.get()).node(), bottom.get());
    QVERIFY(!bottom->contextRoot());
    addChild(_context->scene(), *top);
    _context->run();
    QCOMPARE(int(bottom->state()), int(RUNNING_NS));
    QCOMPARE(bottom->contextRoot(), &_context->scene());
    bottom = NodeRef();
    top = NodeRef();
    Node::_deleteObject.attach(observer);
    field<MFNode>(_context->scene(), "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(died, depth);
}

void tst_Node::circlesDieWithTheirRoot()
{
    Node& a = _context->add("Group");
    const NodeRef b = _context->make("Group");
    const UInt64 id = a.ID();
    addChild(a, *b);
    addChild(*b, a);
    const NodeRef held = _context->make("Group");
    _context->run();
    QVERIFY((*_context)->removeRoot(*findType("Scene")));
    QVERIFY(Node::findNode(id)); // b is still held, and with it the circle
    const TestContext other;
    Node& c = other.add("Group");
    const UInt64 otherId = c.ID();
    addChild(c, c);
    QVERIFY(other->removeRoot(*findType("Scene")));
    QVERIFY(!Node::findNode(otherId));
    QVERIFY(held);
}

void tst_Node::contextEndsAllNodes()
{
    auto context = std::make_unique<TestContext>();
    const NodeRef held = context->make("Group");
    const NodeRef shape = context->make("Shape");
    addChild(*held, *shape);
    addChild(*held, *held);
    context->add("Group");
    int died = 0;
    TestObserver observer([&](double, BaseObject*, BaseObject*) { ++died; });
    Node::_deleteObject.attach(observer);
    context.reset();
    QCOMPARE(died, 4);
    QVERIFY(!held && !shape);
}

void tst_Node::addedFields()
{
    Node& script = _context->add("Script");
    const unsigned int own = script.partDescCount();
    Field* speed = addField(script, "speed", SFFLOAT_DT, EXPOSEDFIELDP);
    QVERIFY(speed);
    QCOMPARE(speed->_desc->id, own);
    QVERIFY(speed->_desc->objExt());
    QVERIFY(!speed->_desc->privateAccess());
    QCOMPARE(speed->_desc->partTypeName(), std::string("ExposedField"));
    QCOMPARE(speed->dataTypeName(), std::string("SFFloat"));
    QCOMPARE(script.partDescCount(), own + 1);
    QCOMPARE(script.findField(own), speed);
    QCOMPARE(script.findField("set_speed", Node::DECLARED_FSO), speed);
    QCOMPARE(script.findEventOutSlotID("speed_changed"), int(own));
    QVERIFY(!addField(script, "speed", SFINT32_DT, FIELDP));
    QVERIFY(!addField(script, "url", SFINT32_DT, FIELDP));
    QVERIFY(!addField(script, "", SFINT32_DT, FIELDP));
    QVERIFY(!addField(script, "odd", SFRESERVED1_DT, FIELDP));
    QVERIFY(!addField(script, "odd", SFINT32_DT, NO_PART));
    QVERIFY(!removeField(script, *script.findField("url", Node::EXACT_FSO)));
}

void tst_Node::privateFields()
{
    Node& node = _context->add("Inline");
    auto* content = dynamic_cast<MFNode*>(addPrivateField(node, "content", MFNODE_DT));
    QVERIFY(content);
    QVERIFY(content->_desc->privateAccess());
    QVERIFY(!content->_desc->objExt());
    const NodeRef child = _context->make("Group");
    content->addNode(0.0, child.get(), Field::EXTERNAL_CT);
    QCOMPARE(node.childCount(), 1);
    QCOMPARE(child->contextRoot(), &_context->scene());
    QCOMPARE(NodePath(child.get()).node(), child.get());
}

void tst_Node::removedFieldLivesOnWithTheNode()
{
    Node& script = _context->add("Script");
    Field* target = addField(script, "target", SFNODE_DT, EXPOSEDFIELDP);
    const NodeRef box = _context->make("Box");
    static_cast<SFNode*>(target)->setNode(0.0, box.get(), Field::EXTERNAL_CT);
    TestObserver removed(nullptr);
    Node::_childRemoved.attach(removed);
    QVERIFY(removeField(script, *target));
    QCOMPARE(removed.count, 1);
    QVERIFY(!script.findField("target", Node::DECLARED_FSO));
    QCOMPARE(target->name(), "target");
    QCOMPARE(target->node(), &script);
    QVERIFY(!script.findField(target->_desc->id));
    QVERIFY(!removeField(script, *target));
    QVERIFY(addField(script, "target", SFINT32_DT, FIELDP));
}

void tst_Node::removalOfAFieldNumbersAnewAndTellsOfRoutes()
{
    Node& script = _context->add("Script");
    Node& other = _context->add("Script");
    const unsigned int own = script.partDescCount();
    Field* a = addField(script, "a", SFINT32_DT, EXPOSEDFIELDP);
    Field* b = addField(script, "b", SFINT32_DT, EXPOSEDFIELDP);
    Field* c = addField(script, "c", SFINT32_DT, EXPOSEDFIELDP);
    Field* in = addField(other, "in", SFINT32_DT, EXPOSEDFIELDP);
    connectFields(*a, *in);
    Route* kept = connectFields(*c, *in);
    Route* within = connectFields(*c, *b);
    QVERIFY(within);
    connectFields(*in, *b);
    std::vector<BaseObject*> created;
    int deleted = 0;
    TestObserver isNew([&](double, BaseObject* route, BaseObject*) { created.push_back(route); });
    TestObserver isGone([&](double, BaseObject*, BaseObject*) { ++deleted; });
    Route::_newObject.attach(isNew);
    Route::_deleteObject.attach(isGone);
    QVERIFY(removeField(script, *a));
    QCOMPARE(deleted, 1);
    QCOMPARE(created.size(), std::size_t(3));
    QVERIFY(std::find(created.begin(), created.end(), kept) != created.end());
    QCOMPARE(script.partDescCount(), own + 2);
    QCOMPARE(b->_desc->id, own);
    QCOMPARE(c->_desc->id, own + 1);
    QCOMPARE(script.findField(own + 1), c);
}

void tst_Node::prototypes()
{
    NodeRef node;
    {
        const std::shared_ptr<NodeType> type =
            createPrototype("Lamp", {{"on", SFBOOL_DT, EXPOSEDFIELDP, "TRUE"},
                                     {"children", MFNODE_DT, EXPOSEDFIELDP, ""},
                                     {"on", SFINT32_DT, FIELDP, "1"},
                                     {"bright", SFFLOAT_DT, FIELDP, "0.5", "How bright."}});
        QVERIFY(type->isProto());
        QVERIFY(!type->isContextRoot());
        QVERIFY(!findType("Lamp"));
        node = createNode(**_context, *type, LOADER_NC);
    }
    // The type lives on with its node.
    QCOMPARE(node->type()->name, std::string("Lamp"));
    QCOMPARE(node->partDescCount(), 4U); // the body is the last one
    QVERIFY(node->findField(3U)->_desc->privateAccess());
    QCOMPARE(node->findField("bright", Node::EXACT_FSO)->valueToString(), std::string("0.5"));
    QCOMPARE(node->findField(2U)->_desc->description, std::string("How bright."));
    QCOMPARE(node->findField("set_on", Node::DECLARED_FSO)->valueToString(), std::string("TRUE"));
    addChild(*node, *_context->make("Box"));
    QCOMPARE(node->childCount(), 1);
}

QTEST_APPLESS_MAIN(tst_Node)
#include "tst_Node.moc"
