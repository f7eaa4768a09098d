#include "LogCapture.h"
#include "QorNodeItem.h"
#include "QorObservingScenegraphModel.h"
#include "TinyTree.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const QByteArray Notify = "QorObservingScenegraphModel::ChangedObserver::notify: ";

QorNodeItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorNodeItem*>(index.internalPointer());
}

/// Notes signals in words.
class Model : public QorObservingScenegraphModel
{
public:
    explicit Model(Node* rootNode)
        : QorObservingScenegraphModel(rootNode, nullptr)
    {
        const auto noteRows = [this](const char* word) {
            return [this, word](const QModelIndex& parent, int first, int last) {
                signalled << QStringLiteral("%1 %2 %3 below %4")
                                 .arg(QLatin1String(word))
                                 .arg(first)
                                 .arg(last)
                                 .arg(::itemOf(parent)->data(1).toString());
            };
        };
        connect(this, &Model::rowsInserted, this, noteRows("inserted"));
        connect(this, &Model::rowsRemoved, this, noteRows("removed"));
        connect(this, &Model::layoutChanged, this, [this] { signalled << QStringLiteral("layout"); });
        connect(this, &Model::childsRemoved, this, [this](const QModelIndex& index) {
            signalled << QStringLiteral("childs of %1").arg(::itemOf(index)->data(1).toString());
        });
    }
    ~Model() override { qDeleteAll(removed); }

    using QorObservingScenegraphModel::internalRootItem;

    QStringList take() { return std::exchange(signalled, {}); }
    QStringList rows(Node& node)
    {
        const QVector<QorNodeItem*> items = searchNodeItems(&node, rootItem());
        QStringList names;
        for (int row = 0; !items.isEmpty() && row < items[0]->childCount(); ++row)
            names << items[0]->child(row)->data(1).toString();
        return names;
    }
    /// The row goes out of the tree and stays the test's.
    void keepForRemoval(QorNodeItem* item) { removed << item; }

    QStringList signalled;
    QList<QorNodeItem*> removed;
};

/// A running tree with two groups, both expanded, of which the first has two shapes.
class Watched
{
public:
    Watched()
        : group(TinyTree::add(tree.root(), "Group", "group"))
        , a(TinyTree::add(group, "Shape", "a"))
        , b(TinyTree::add(group, "Shape", "b"))
        , empty(TinyTree::add(tree.root(), "Group", "empty"))
        , model(&tree.root())
    {
        model.rootItem()->updateCache(false);
        model.rootItem()->child(0)->updateCache(false);
        model.take();
    }

    QorNodeItem* groupItem() const { return model.rootItem()->child(0); }
    MFNode& shapes() const { return TinyTree::children(group); }

    TinyTree tree;
    Node& group;
    Node& a;
    Node& b;
    Node& empty;
    Model model;
};

QByteArrayList grep(const QByteArrayList& lines, const QByteArray& text)
{
    QByteArrayList found;
    for (const QByteArray& line : lines) {
        if (line.contains(text))
            found << line;
    }
    return found;
}

QByteArray named(Node& node)
{
    return QByteArray::fromStdString(node.name() ? *node.name() : node.getIDStr()) + "/" + address(&node);
}

} // namespace

class tst_QorObservingScenegraphModel : public QObject
{
    Q_OBJECT

private slots:
    void theRootHasARowAndNothingElse();
    void aNullRootHasNoRow();
    void settingUpIsLogged();
    void itObservesAsLongAsItLives();
    void theOwnEndTakesTheRemovalObserverOut();
    void anotherRootKeepsTheObservers();
    void hostsCanBeToldOfRemovedChildren();

    void whatIsNoLinkIsLogged();
    void whatIsNoNodeIsDropped();
    void eventLinksAreIgnored_data();
    void eventLinksAreIgnored();
    void onlyRunningNodesCount_data();
    void onlyRunningNodesCount();
    void withoutALivingRootNothingHappens();
    void otherChangesEndTheCall();

    void anAddedChildGetsItsRow();
    void anAddedChildOfTheContextRootGetsItsRow();
    void rowsCountTheEarlierFields();
    void aChildOfWhatIsNotBuiltIsLogged();
    void aChildOfAnotherContextIsLogged();
    void aStrayAddedLinkEndsTheRepair();
    void insertionIntoWhatIsNotExpandedKeepsItsPlaceholder();
    void filteredRowsAreNotTranslated();

    void aRemovedChildLosesItsRow();
    void aRemovedChildOfTheContextRootLosesItsRow();
    void aRemovalInAnotherContextIsIgnored();
    void aRemovalBelowWhatIsNotBuiltIsIgnored();
    void aRemovalFromAPathlessParentIsLogged();
    void aGoneLinkInvalidatesAllItemsOfItsParent();
    void aGoneLinkOfTheContextRootRebuildsIt();
    void aGoneLinkOfAnUnbuiltRootMarksNothingElse();
    void onlyOnePlaceOfASharedParentIsRepaired();
    void aSingleNodeIsReplaced();
    void theModelMayDieInItsOwnSignal();
    void itemsMayBeRebuiltInTheSignal();
    void theRootMayGoInTheSignal();
};

void tst_QorObservingScenegraphModel::theRootHasARowAndNothingElse()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model(&tree.root());
    QCOMPARE(model.rootNode(), &tree.root());
    QCOMPARE(model.rowCount(), 1);
    QorNodeItem* root = model.rootItem();
    QCOMPARE(root->node(), &tree.root());
    QCOMPARE(root->parent(), model.internalRootItem());
    QVERIFY(!root->isValid());
    LogCapture log(osg::LOG_WARNING);
    TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(log.take(), QByteArrayList{"1 QorNodeItem::updateRemovedChild: removal at index 0 invalid. Node "
                                        "item only has 0 childs.\n"});
    QCOMPARE(root->childCount(), 0);
}

void tst_QorObservingScenegraphModel::aNullRootHasNoRow()
{
    Model model(nullptr);
    QVERIFY(!model.internalRootItem());
    QVERIFY(!model.rootItem());
    LogCapture log(osg::LOG_WARNING);
    model.setRootNode(nullptr);
    QVERIFY(model.internalRootItem());
    QVERIFY(!model.rootItem());
    QCOMPARE(model.rowCount(), 0);
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    QVERIFY(log.take().isEmpty());
    model.setRootNode(&tree.root());
    QCOMPARE(model.rowCount(), 1);
}

void tst_QorObservingScenegraphModel::settingUpIsLogged()
{
    const TinyTree tree;
    LogCapture log;
    Model model(&tree.root());
    QCOMPARE(log.take(),
             QByteArrayList{"3 QorObservingScenegraphModel::setupRootNode: #1 rootItem()=" +
                            address(nullptr) + ", node=" + address(&tree.root()) + ", nodename=root\n"});
}

void tst_QorObservingScenegraphModel::itObservesAsLongAsItLives()
{
    QVERIFY(Node::_childAdded.isUntouched());
    QVERIFY(Node::_childRemoved.isUntouched());
    {
        const Model model(nullptr);
        QVERIFY(!Node::_childAdded.isUntouched());
        QVERIFY(!Node::_childRemoved.isUntouched());
        QVERIFY(Node::_deleteObject.isUntouched());
        QVERIFY(Node::_nameSpaceChanged.isUntouched());
    }
    // Whoever has left is not called, and nobody is left.
    const TinyTree tree;
    LogCapture log;
    TinyTree::add(tree.root(), "Group");
    TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(Node::_childAdded.isUntouched());
}

void tst_QorObservingScenegraphModel::theOwnEndTakesTheRemovalObserverOut()
{
    {
        const Model model(nullptr);
    }
    QVERIFY(Node::_childRemoved.isUntouched());
}

void tst_QorObservingScenegraphModel::anotherRootKeepsTheObservers()
{
    const TinyTree tree;
    const TinyTree other;
    Model model(&tree.root());
    model.setRootNode(&other.root());
    model.rootItem()->updateCache(false);
    TinyTree::add(other.root(), "Group", "a");
    QCOMPARE(model.rows(other.root()), QStringList{QStringLiteral("a")});
    QCOMPARE(model.take(), QStringList{QStringLiteral("inserted 0 0 below root")});
}

void tst_QorObservingScenegraphModel::hostsCanBeToldOfRemovedChildren()
{
    Watched scene;
    const QModelIndex root = scene.model.index(0, 0);
    QSignalSpy spy(&scene.model, SIGNAL(childsRemoved(QModelIndex)));
    scene.model.invalidateRemovedChilds(root);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy[0][0].value<QModelIndex>(), root);
    QVERIFY(scene.model.rootItem()->isValid());
    QCOMPARE(QorObservingScenegraphModel::staticMetaObject.methodCount(),
             QorScenegraphModel::staticMetaObject.methodCount() + 1);
}

void tst_QorObservingScenegraphModel::whatIsNoLinkIsLogged()
{
    Watched scene;
    LogCapture log;
    for (Subject* subject : {&Node::_childAdded, &Node::_childRemoved}) {
        subject->fire(0.0, &scene.group, nullptr);
        QCOMPARE(log.take(), QByteArrayList{"1 " + Notify + "invalid NodeLink! Ignoring update.\n"});
        subject->fire(0.0, &scene.group, &scene.a);
        QCOMPARE(log.take(), QByteArrayList{"1 " + Notify + "invalid NodeLink! Ignoring update.\n"});
        NodeLink copy(scene.shapes()[0]);
        subject->fire(0.0, &scene.group, &copy);
        QCOMPARE(log.take(), QByteArrayList{"1 " + Notify + "invalid field in NodeLink! Ignoring update.\n"});
        Field* bare = Tiny::addFieldWithoutDescription(&scene.empty);
        StrayLink stray(bare, &scene.a);
        subject->fire(0.0, &scene.empty, &stray);
        QCOMPARE(log.take(),
                 QByteArrayList{"1 " + Notify + "invalid field description in NodeLink! Ignoring update.\n"});
    }
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::whatIsNoNodeIsDropped()
{
    Watched scene;
    LogCapture log;
    Node::_childAdded.fire(0.0, nullptr, &scene.shapes()[0]);
    Node::_childAdded.fire(0.0, &scene.shapes()[0], &scene.shapes()[0]);
    Node::_childRemoved.fire(0.0, nullptr, &scene.shapes()[0]);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::eventLinksAreIgnored_data()
{
    QTest::addColumn<QByteArray>("field");
    QTest::newRow("in") << QByteArray("in");
    QTest::newRow("out") << QByteArray("out");
}

void tst_QorObservingScenegraphModel::eventLinksAreIgnored()
{
    QFETCH(QByteArray, field);
    Watched scene;
    LogCapture log;
    TinyTree::add(scene.group, "Shape", "event", field.constData());
    scene.group.findField(field.toStdString(), Node::EXACT_FSO)->clear();
    if (field == "in")
        TinyTree::single(scene.group, "in").setNode(0.0, nullptr, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
    QCOMPARE(scene.model.rows(scene.group).size(), 2);
}

void tst_QorObservingScenegraphModel::onlyRunningNodesCount_data()
{
    QTest::addColumn<bool>("root");
    QTest::addColumn<int>("state");
    for (const int state : {CREATED_NS, LOADED_NS, SETUP_NS, DYING_NS}) {
        QTest::addRow("reporting node, %d", state) << false << state;
        QTest::addRow("root, %d", state) << true << state;
    }
}

void tst_QorObservingScenegraphModel::onlyRunningNodesCount()
{
    QFETCH(bool, root);
    QFETCH(int, state);
    Watched scene;
    Node& changed = root ? scene.tree.root() : scene.group;
    Tiny::setState(&changed, static_cast<NodeState>(state));
    LogCapture log;
    TinyTree::add(scene.group, "Shape");
    scene.shapes().removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
    QCOMPARE(scene.groupItem()->childCount(), 2);
}

void tst_QorObservingScenegraphModel::withoutALivingRootNothingHappens()
{
    TinyTree tree;
    const TinyTree other;
    Model model(&tree.root());
    QorObservingScenegraphModel::ChangedObserver idle(nullptr, QorObservingScenegraphModel::ADD);
    Node::_childAdded.attach(idle);
    tree.end();
    model.take();
    LogCapture log;
    TinyTree::add(other.root(), "Group");
    TinyTree::children(other.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::otherChangesEndTheCall()
{
    Watched scene;
    QorObservingScenegraphModel::ChangedObserver other(&scene.model, 2);
    LogCapture log;
    other.notify(0.0, &scene.group, &scene.shapes()[0], nullptr);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
    other.notify(0.0, &scene.group, nullptr, nullptr);
    QCOMPARE(log.take().size(), 1);
    QVERIFY(other.observerName().empty());
}

void tst_QorObservingScenegraphModel::anAddedChildGetsItsRow()
{
    Watched scene;
    Node* c = TinyTree::make("Shape", "c");
    LogCapture log;
    scene.shapes().insertNode(0.0, 1, c, Field::EXTERNAL_CT);
    const QByteArrayList lines = log.take();
    QCOMPARE(grep(lines, Notify),
             QByteArrayList({"3 " + Notify + "ADDING nodeLink.node()=" + named(*c) +
                                 " to nodeLink.parent()=" + named(scene.group) + ".\n",
                             "3 " + Notify + "ADDING found node of item to add at index 1\n"}));
    QVERIFY(grep(lines, "insertRows: row=1, count=1").size() == 1);
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 1 1 below group")});
    QCOMPARE(scene.model.rows(scene.group),
             QStringList({QStringLiteral("a"), QStringLiteral("c"), QStringLiteral("b")}));
}

void tst_QorObservingScenegraphModel::anAddedChildOfTheContextRootGetsItsRow()
{
    Watched scene;
    Node* c = TinyTree::make("Shape", "c");
    LogCapture log;
    TinyTree::children(scene.tree.root()).addNode(0.0, c, Field::EXTERNAL_CT);
    QCOMPARE(grep(log.take(), Notify),
             QByteArrayList({"3 " + Notify + "ADDING nodeLink.node()=" + named(*c) +
                                 " to context root nodeLink.parent()=" + named(scene.tree.root()) + "\n",
                             "3 " + Notify + "ADDING found node of item to add at index 2\n"}));
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 2 2 below root")});
}

void tst_QorObservingScenegraphModel::rowsCountTheEarlierFields()
{
    Watched scene;
    TinyTree::add(scene.group, "Shape", "first", "single");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 0 0 below group")});
    TinyTree::add(scene.group, "Shape", "last");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 3 3 below group")});
    QCOMPARE(scene.model.rows(scene.group), QStringList({QStringLiteral("first"), QStringLiteral("a"),
                                                         QStringLiteral("b"), QStringLiteral("last")}));
    scene.model.keepForRemoval(scene.groupItem()->child(1));
    LogCapture log(osg::LOG_LOG);
    scene.shapes().removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(log.take(), QByteArrayList{"0 " + Notify + "REMOVING specialized update row 1\n"});
    QCOMPARE(scene.model.rows(scene.group),
             QStringList({QStringLiteral("first"), QStringLiteral("b"), QStringLiteral("last")}));
}

void tst_QorObservingScenegraphModel::aChildOfWhatIsNotBuiltIsLogged()
{
    Watched scene;
    LogCapture log(osg::LOG_WARNING);
    TinyTree::add(scene.a, "Group", "below");
    QVERIFY(log.take().isEmpty());
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 0 0 below a")});
    // "below" has no item: "a" was never expanded.
    Node& below = *TinyTree::children(scene.a)[0].directNode();
    TinyTree::add(below, "Group");
    QCOMPARE(log.take(), QByteArrayList{"2 ADD... no item found for node " + named(below) + ".\n"});
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::aChildOfAnotherContextIsLogged()
{
    Watched scene;
    const TinyTree other;
    LogCapture log(osg::LOG_WARNING);
    TinyTree::add(other.root(), "Group");
    QCOMPARE(log.take(), QByteArrayList{"2 #### NOT found model for index nodepath.\n"});
    Node& group = *TinyTree::children(other.root())[0].directNode();
    TinyTree::add(group, "Group");
    QCOMPARE(log.take(), QByteArrayList{"2 ADD... no item found for node " + named(group) + ".\n"});
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::aStrayAddedLinkEndsTheRepair()
{
    Watched scene;
    StrayLink stray(&scene.shapes(), &scene.a);
    LogCapture log;
    Node::_childAdded.fire(0.0, &scene.group, &stray);
    QCOMPARE(log.take().last(), "3 " + Notify + "ADDING found node of item to add at index -1\n");
    QVERIFY(scene.model.take().isEmpty());
    QCOMPARE(scene.groupItem()->childCount(), 2);
}

void tst_QorObservingScenegraphModel::insertionIntoWhatIsNotExpandedKeepsItsPlaceholder()
{
    Watched scene;
    scene.groupItem()->invalidate(nullptr);
    TinyTree::add(scene.group, "Shape", "c");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 2 2 below group")});
    QCOMPARE(scene.groupItem()->childCount(), 1);
    scene.groupItem()->updateCache(false);
    QCOMPARE(scene.groupItem()->childCount(), 3);
}

void tst_QorObservingScenegraphModel::filteredRowsAreNotTranslated()
{
    Watched scene;
    scene.model.setHideTypeFilter({QStringLiteral("Shape")});
    scene.groupItem()->invalidate(nullptr);
    scene.groupItem()->updateCache(false);
    QCOMPARE(scene.groupItem()->childCount(), 0);
    scene.model.take();
    // The third child, and the first one with a row.
    TinyTree::add(scene.group, "Group", "c");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 2 2 below group")});
    QCOMPARE(scene.model.rows(scene.group), QStringList{QStringLiteral("c")});
    TinyTree::add(scene.group, "Shape", "d");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 3 3 below group")});
    QCOMPARE(scene.groupItem()->childCount(), 1);
    LogCapture log(osg::LOG_FATAL);
    scene.shapes().removeNode(0.0, 2, Field::EXTERNAL_CT);
    QCOMPARE(grep(log.take(), "updateRemovedChild").size(), 1);
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("removed 2 2 below group")});
    QCOMPARE(scene.groupItem()->childCount(), 1);
}

void tst_QorObservingScenegraphModel::aRemovedChildLosesItsRow()
{
    Watched scene;
    scene.model.keepForRemoval(scene.groupItem()->child(0));
    const QByteArray removed = named(scene.a);
    LogCapture log;
    scene.shapes().removeNode(0.0, 0, Field::EXTERNAL_CT);
    const QByteArrayList lines = log.take();
    QCOMPARE(grep(lines, Notify), QByteArrayList({"3 " + Notify + "REMOVING nodeLink.node()=" + removed +
                                                      " from nodeLink.parent()=" + named(scene.group) + ".\n",
                                                  "0 " + Notify + "REMOVING specialized update row 0\n"}));
    QCOMPARE(grep(lines, "removeRows: row=0, count=1").size(), 1);
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("removed 0 0 below group")});
    QCOMPARE(scene.model.rows(scene.group), QStringList{QStringLiteral("b")});
    QVERIFY(scene.groupItem()->isValid());
}

void tst_QorObservingScenegraphModel::aRemovedChildOfTheContextRootLosesItsRow()
{
    Watched scene;
    scene.model.keepForRemoval(scene.model.rootItem()->child(1));
    NodeLink& link = TinyTree::children(scene.tree.root())[1];
    const QByteArray line = "3 " + Notify + "REMOVE context root=" + address(&scene.tree.root()) +
                            ", nodeLink=" + address(&link) + ", nodeLink->node()=" + address(&scene.empty) +
                            ", nodeLink->parent()=" + address(&scene.tree.root()) + ", name=empty.\n";
    LogCapture log;
    TinyTree::children(scene.tree.root()).removeNode(0.0, 1, Field::EXTERNAL_CT);
    QCOMPARE(grep(log.take(), Notify), QByteArrayList{line});
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("removed 1 1 below root")});
    QCOMPARE(scene.model.rows(scene.tree.root()), QStringList{QStringLiteral("group")});
}

void tst_QorObservingScenegraphModel::aRemovalInAnotherContextIsIgnored()
{
    Watched scene;
    const TinyTree other;
    {
        LogCapture log(osg::LOG_LOG);
        TinyTree::add(other.root(), "Group");
    }
    LogCapture log(osg::LOG_WARNING);
    TinyTree::children(other.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::aRemovalBelowWhatIsNotBuiltIsIgnored()
{
    Watched scene;
    Node* below = TinyTree::make("Group");
    {
        const LogCapture log(osg::LOG_LOG);
        Tiny::link(below, "children", TinyTree::make("Shape"));
        Tiny::link(&scene.a, "children", below);
    }
    scene.model.take();
    LogCapture log(osg::LOG_WARNING);
    TinyTree::children(*below).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QVERIFY(log.take().isEmpty());
    QVERIFY(scene.model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::aRemovalFromAPathlessParentIsLogged()
{
    // A link whose field belongs to no node.
    Watched scene;
    NodePartDesc desc;
    desc.partType = EXPOSEDFIELDP;
    MFNode homeless(nullptr, &desc);
    StrayLink stray(&homeless, &scene.a);
    LogCapture log(osg::LOG_WARNING);
    Node::_childRemoved.fire(0.0, &scene.group, &stray);
    QCOMPARE(log.take(),
             QByteArrayList({"1 " + Notify + "REMOVE could not create valid nodepath for parent item \n",
                             "1 " + Notify + "REMOVE Invalid NodePath! Skipping treeview update.\n"}));
    // The root's own path is not looked at again.
    Node::_childRemoved.fire(0.0, &scene.tree.root(), &stray);
    QCOMPARE(log.take().first(), "1 " + Notify + "REMOVE could not create valid nodepath for parent item \n");
    Node::_childAdded.fire(0.0, &scene.group, &stray);
    QCOMPARE(log.take(),
             QByteArrayList({"1 QorScenegraphModel::recursiveSearchItemOf: nodePath invalid or node is "
                             "0.\n Aborting recursive search.\n",
                             "2 ADD... no item found for node /" + address(nullptr) + ".\n"}));
}

void tst_QorObservingScenegraphModel::aGoneLinkInvalidatesAllItemsOfItsParent()
{
    Watched scene;
    // The group stands below the other one too.
    Tiny::link(&scene.empty, "children", &scene.group);
    QorNodeItem* second = scene.model.rootItem()->child(1);
    second->updateCache(false);
    second->child(0)->updateCache(false);
    scene.model.take();
    StrayLink stray(&scene.shapes(), &scene.a);
    LogCapture log;
    Node::_childRemoved.fire(0.0, &scene.group, &stray);
    const QByteArrayList lines = log.take();
    QCOMPARE(grep(lines, "Unable"),
             QByteArrayList{"2 " + Notify +
                            "Unable to find NodeLink in field. field.size=2, indexOfRemovedNode=-1\n"});
    QCOMPARE(grep(lines, "items for node"),
             QByteArrayList{"3 " + Notify + "REMOVING found 2 items for node \n"});
    QVERIFY(!scene.groupItem()->isValid());
    QVERIFY(!second->child(0)->isValid());
    QVERIFY(scene.model.rootItem()->isValid());
    QCOMPARE(scene.model.take(),
             QStringList({QStringLiteral("childs of group"), QStringLiteral("childs of group")}));
    // The next rebuild leaves the node out.
    second->child(0)->updateCache(false);
    QCOMPARE(second->child(0)->childCount(), 1);
    QCOMPARE(second->child(0)->child(0)->node(), &scene.b);
}

void tst_QorObservingScenegraphModel::aGoneLinkOfTheContextRootRebuildsIt()
{
    Watched scene;
    StrayLink stray(&TinyTree::children(scene.tree.root()), &scene.group);
    const QPersistentModelIndex below(scene.model.index(0, 0, scene.model.index(0, 0)));
    LogCapture log(osg::LOG_WARNING);
    Node::_childRemoved.fire(0.0, &scene.tree.root(), &stray);
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("layout")});
    QVERIFY(scene.model.rootItem()->isValid());
    QCOMPARE(scene.model.rows(scene.tree.root()), QStringList{QStringLiteral("empty")});
    QVERIFY(!below.isValid());
    QCOMPARE(grep(log.take(), "omitting invalid node").size(), 1);
}

void tst_QorObservingScenegraphModel::aGoneLinkOfAnUnbuiltRootMarksNothingElse()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    TinyTree::add(group, "Shape");
    Model model(&tree.root());
    StrayLink stray(&TinyTree::children(group), &group);
    LogCapture log(osg::LOG_WARNING);
    Node::_childRemoved.fire(0.0, &group, &stray);
    QVERIFY(log.take().isEmpty());
    QVERIFY(model.take().isEmpty());
}

void tst_QorObservingScenegraphModel::onlyOnePlaceOfASharedParentIsRepaired()
{
    Watched scene;
    Tiny::link(&scene.empty, "children", &scene.group);
    QorNodeItem* second = scene.model.rootItem()->child(1);
    second->updateCache(false);
    second->child(0)->updateCache(false);
    scene.model.take();
    TinyTree::add(scene.group, "Shape", "c");
    QCOMPARE(scene.model.take(), QStringList{QStringLiteral("inserted 2 2 below group")});
    QCOMPARE(scene.groupItem()->childCount(), 3);
    QCOMPARE(second->child(0)->childCount(), 2);
    QVERIFY(second->child(0)->isValid());
}

void tst_QorObservingScenegraphModel::aSingleNodeIsReplaced()
{
    Watched scene;
    TinyTree::add(scene.group, "Shape", "first", "single");
    scene.model.take();
    scene.model.keepForRemoval(scene.groupItem()->child(0));
    const LogCapture log(osg::LOG_LOG);
    TinyTree::single(scene.group).setNode(0.0, TinyTree::make("Shape", "other"), Field::EXTERNAL_CT);
    QCOMPARE(scene.model.take(), QStringList({QStringLiteral("removed 0 0 below group"),
                                              QStringLiteral("inserted 0 0 below group")}));
    QCOMPARE(scene.model.rows(scene.group).first(), QStringLiteral("other"));
}

void tst_QorObservingScenegraphModel::theModelMayDieInItsOwnSignal()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    const LogCapture log(osg::LOG_LOG);
    for (const int change : {0, 1, 2}) {
        auto* model = new QorObservingScenegraphModel(&tree.root(), nullptr);
        model->rootItem()->updateCache(false);
        const std::unique_ptr<QorNodeItem> removed(change == 1 ? model->rootItem()->child(0) : nullptr);
        const QPointer<QorObservingScenegraphModel> living(model);
        // Behind the model's own work: a queued view would be as late.
        const auto end = [model] { delete model; };
        if (change == 0) {
            QObject::connect(model, &QAbstractItemModel::rowsInserted, end);
            TinyTree::add(tree.root(), "Group");
        } else if (change == 1) {
            QObject::connect(model, &QAbstractItemModel::rowsRemoved, end);
            TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
        } else {
            Node& group = *TinyTree::children(tree.root())[0].directNode();
            QObject::connect(model, &QorObservingScenegraphModel::childsRemoved, end);
            StrayLink stray(&TinyTree::children(group), &tree.root());
            Node::_childRemoved.fire(0.0, &group, &stray);
        }
        QVERIFY(!living);
    }
    QVERIFY(Node::_childAdded.isUntouched());
}

void tst_QorObservingScenegraphModel::itemsMayBeRebuiltInTheSignal()
{
    // A node below itself: building its upper row anew ends the lower one.
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group", "group");
    Tiny::link(&group, "children", &group);
    TinyTree::add(group, "Shape", "a");
    Model model(&tree.root());
    QorNodeItem* root = model.rootItem();
    root->updateCache(false);
    root->child(0)->updateCache(false);
    root->child(0)->child(0)->updateCache(false);
    QObject::connect(&model, &Model::childsRemoved, [root] { root->child(0)->updateCache(false); });
    model.take();
    StrayLink stray(&TinyTree::children(group), TinyTree::children(group)[1].directNode());
    const LogCapture log(osg::LOG_LOG);
    Node::_childRemoved.fire(0.0, &group, &stray);
    // At least one; new rows may lie where old ones did.
    QVERIFY(model.take().startsWith(QStringLiteral("childs of group")));
    QCOMPARE(root->child(0)->childCount(), 1);
    TinyTree::children(group).removeNode(0.0, 0, Field::EXTERNAL_CT);
}

void tst_QorObservingScenegraphModel::theRootMayGoInTheSignal()
{
    Watched scene;
    scene.model.keepForRemoval(scene.groupItem()->child(0));
    QObject::connect(&scene.model, &QAbstractItemModel::rowsRemoved,
                     [&scene] { scene.model.setRootNode(nullptr); });
    LogCapture log(osg::LOG_WARNING);
    scene.shapes().removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(log.take().last(), QByteArray("2 REMOVE... NO ITEM FOR CONTEXT ROOT\n"));
    QVERIFY(!scene.model.rootItem());
}

QTEST_APPLESS_MAIN(tst_QorObservingScenegraphModel)
#include "tst_QorObservingScenegraphModel.moc"
