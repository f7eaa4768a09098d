#include "LogCapture.h"
#include "QorNodeItem.h"
#include "QorScenegraphModel.h"
#include "TinyTree.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// Opens what is protected, and notes signals in words.
class Model : public QorScenegraphModel
{
public:
    explicit Model(Node* rootNode)
        : QorScenegraphModel(rootNode, nullptr)
    {
        const auto noteRows = [this](const char* word) {
            return [this, word](const QModelIndex& parent, int first, int last) {
                signalled << QStringLiteral("%1 %2 %3 below column %4 of %5")
                                 .arg(QLatin1String(word))
                                 .arg(first)
                                 .arg(last)
                                 .arg(parent.column())
                                 .arg(itemOf(parent)->data(1).toString());
            };
        };
        connect(this, &Model::rowsAboutToBeInserted, this, noteRows("inserting"));
        connect(this, &Model::rowsInserted, this, noteRows("inserted"));
        connect(this, &Model::rowsAboutToBeRemoved, this, noteRows("removing"));
        connect(this, &Model::rowsRemoved, this, noteRows("removed"));
        connect(this, &Model::layoutAboutToBeChanged, this, [this] { signalled << QStringLiteral("about"); });
        connect(this, &Model::layoutChanged, this, [this] { signalled << QStringLiteral("layout"); });
        connect(this, &Model::modelReset, this, [this] { signalled << QStringLiteral("reset"); });
    }

    using QorScenegraphModel::dumpNodeLinkStack;
    using QorScenegraphModel::internalRootItem;

    static QorNodeItem* itemOf(const QModelIndex& index)
    {
        return static_cast<QorNodeItem*>(index.internalPointer());
    }
    QModelIndex indexOf(QorNodeItem* item, int column = 0) const
    {
        return createIndex(item ? item->row() : 0, column, item);
    }
    QStringList take() { return std::exchange(signalled, {}); }

    QStringList signalled;
};

/// Writes down what is set up.
class SetupModel : public QorScenegraphModel
{
public:
    SetupModel()
        : QorScenegraphModel(nullptr, nullptr)
    {
    }
    using QorScenegraphModel::internalRootItem;

    Node* node = nullptr;
    QorNodeItem* parentItem = nullptr;
    int calls = 0;

protected:
    void setupRootNode(Node* rootNode, QorNodeItem* item) override
    {
        ++calls;
        node = rootNode;
        parentItem = item;
    }
};

QStringList namesBelow(const QAbstractItemModel& model, const QModelIndex& parent)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names << model.index(row, 1, parent).data().toString();
    return names;
}

} // namespace

class tst_QorScenegraphModel : public QObject
{
    Q_OBJECT

private slots:
    void withoutRootThereAreNoItems();
    void aNullRootHasNoRow();
    void theRootIsTheOneRowAtTopLevel();
    void rootHasOneRowUntilItIsExpanded();
    void theFirstLevelIsBuiltWithTheRoot();
    void theFirstLevelIsFiltered();
    void expansionBuildsTheFirstLevelAnew();
    void anotherRootStartsAnotherTree();
    void subclassesSetUpTheirOwnRoot();
    void itHasNoSignalsAndSlotsOfItsOwn();
    void itGoesWithItsParent();

    void headersAreTold_data();
    void headersAreTold();
    void cellsShowTexts();
    void everyRowIsFlaggedEditable();
    void anIndexLeadsToItsParent();
    void anyColumnHasAnIndex();
    void whatIsNotExpandedAnswersWithAPlaceholder();

    void aPlaceIsFoundInColumnOne();
    void aPlaceThatIsNotBuiltIsNotFound();
    void aSearchWithoutSenseIsLogged();
    void theSearchStopsAtTheFirstHit();
    void theSearchGoesOnBehindWhatIsNotExpanded();
    void theSearchMayStartAnywhere();
    void aTreeBelowANestedNodeIsSearched();
    void aSharedNodeHasARowAtEachPlace();
    void nodesAreSearchedParentsFirst();

    void filtersAreKeptAndTold();
    void prototypeBodiesAreShownFromTheNextRebuildOn();
    void filtersCountFromTheNextRebuildOn();

    void aRowIsInserted();
    void aRowIsRemoved();
    void rowsGoByTheParentInAnyColumn();
    void insertionIsRefused();
    void removalIsRefused();
    void noRowIsOneRow();
    void topLevelRowsCannotChange();
    void linksAreDumped();
};

void tst_QorScenegraphModel::withoutRootThereAreNoItems()
{
    Model model(nullptr);
    QVERIFY(!model.rootNode());
    QVERIFY(!model.rootItem());
    QVERIFY(!model.internalRootItem());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QVERIFY(!model.index(0, 0).isValid());
    QVERIFY(model.hideTypeFilter().isEmpty());
    QVERIFY(model.showTypeFilter().isEmpty());
    QVERIFY(!model.isShowingProtoBody());
    const TinyTree tree;
    LogCapture log;
    QVERIFY(!model.index(NodePath(&tree.root())).isValid());
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::recursiveSearchItemOf: current item is 0!\n"});
}

void tst_QorScenegraphModel::aNullRootHasNoRow()
{
    Model model(nullptr);
    LogCapture log;
    model.setRootNode(nullptr);
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::setupRootNode: root node is 0.\n"});
    QVERIFY(model.internalRootItem());
    QVERIFY(!model.rootItem());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QVERIFY(!model.index(0, 0).isValid());
    QVERIFY(model.take().isEmpty());
}

void tst_QorScenegraphModel::theRootIsTheOneRowAtTopLevel()
{
    const TinyTree tree;
    const Model model(&tree.root());
    QCOMPARE(model.rootNode(), &tree.root());
    QCOMPARE(model.rowCount(), 1);
    QorNodeItem* root = model.rootItem();
    QCOMPARE(Model::itemOf(model.index(0, 0)), root);
    QCOMPARE(root->node(), &tree.root());
    QCOMPARE(root->parent(), model.internalRootItem());
    QVERIFY(root->nodePath() == NodePath(&tree.root()));
    QVERIFY(!model.internalRootItem()->parent());
    QVERIFY(!model.internalRootItem()->node());
    QVERIFY(!model.parent(model.index(0, 0)).isValid());
    QVERIFY(model.nodePath(model.index(0, 1)) == NodePath(&tree.root()));
    QVERIFY(!model.index(1, 0).isValid());
    QVERIFY(!model.index(-1, 0).isValid());
}

void tst_QorScenegraphModel::rootHasOneRowUntilItIsExpanded()
{
    const TinyTree tree;
    for (int i = 0; i < 5; ++i)
        TinyTree::add(tree.root(), "Group");
    const Model model(&tree.root());
    const QModelIndex root = model.index(0, 0);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.rowCount(root), 1);
    model.rootItem()->updateCache(false);
    QCOMPARE(model.rowCount(root), 5);
}

void tst_QorScenegraphModel::theFirstLevelIsBuiltWithTheRoot()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "b");
    TinyTree::add(tree.root(), "Group", "event", "in");
    TinyTree::add(tree.root(), "Group", "a", "single");
    LogCapture log;
    const Model model(&tree.root());
    QVERIFY(log.take().isEmpty());
    QorNodeItem* root = model.rootItem();
    QVERIFY(!root->isValid());
    // Once the graph has no children to wait for, what was built shows, event links too.
    NodePath place(&TinyTree::single(tree.root()).link().directNode()[0]);
    QCOMPARE(root->childCount(), 1);
    TinyTree::single(tree.root()).setNode(0.0, nullptr, Field::EXTERNAL_CT);
    TinyTree::single(tree.root(), "in").setNode(0.0, nullptr, Field::EXTERNAL_CT);
    TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    QCOMPARE(root->childCount(), 3);
    QCOMPARE(root->child(0)->parent(), root);
    QVERIFY(root->child(0)->nodePath() == place);
}

void tst_QorScenegraphModel::theFirstLevelIsFiltered()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    TinyTree::add(tree.root(), "Shape");
    Model model(nullptr);
    model.setHideTypeFilter({QStringLiteral("Shape")});
    model.setRootNode(&tree.root());
    QorNodeItem* root = model.rootItem();
    TinyTree::children(tree.root()).clear();
    QCOMPARE(root->childCount(), 1);
    // The root itself has its row whatever its type.
    model.setShowTypeFilter({QStringLiteral("None")});
    model.setRootNode(&tree.root());
    QCOMPARE(model.rowCount(), 1);
}

void tst_QorScenegraphModel::expansionBuildsTheFirstLevelAnew()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Group", "event", "in");
    const Model model(&tree.root());
    model.rootItem()->updateCache(false);
    QCOMPARE(namesBelow(model, model.index(0, 0)), QStringList{QStringLiteral("a")});
}

void tst_QorScenegraphModel::anotherRootStartsAnotherTree()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    const TinyTree other;
    Tiny::setName(&other.root(), "other");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QPersistentModelIndex root(model.index(0, 0));
    const QPersistentModelIndex below(model.index(0, 0, root));
    model.setRootNode(&other.root());
    QCOMPARE(model.rootNode(), &other.root());
    QCOMPARE(namesBelow(model, QModelIndex()), QStringList{QStringLiteral("other")});
    // Nobody is told, but nothing dead is left in the hands of views.
    QVERIFY(model.take().isEmpty());
    QVERIFY(!root.isValid());
    QVERIFY(!below.isValid());
    LogCapture log;
    model.setRootNode(nullptr);
    QVERIFY(!model.rootNode());
    QCOMPARE(model.rowCount(), 0);
}

void tst_QorScenegraphModel::subclassesSetUpTheirOwnRoot()
{
    const TinyTree tree;
    SetupModel model;
    QCOMPARE(model.calls, 0);
    model.setRootNode(&tree.root());
    QCOMPARE(model.calls, 1);
    QCOMPARE(model.node, &tree.root());
    QCOMPARE(model.parentItem, model.internalRootItem());
    QVERIFY(model.internalRootItem());
    QVERIFY(!model.rootItem());
    model.setRootNode(nullptr);
    QCOMPARE(model.calls, 2);
    QVERIFY(!model.node);
}

void tst_QorScenegraphModel::itHasNoSignalsAndSlotsOfItsOwn()
{
    QCOMPARE(QorScenegraphModel::staticMetaObject.methodCount(),
             QAbstractItemModel::staticMetaObject.methodCount());
}

void tst_QorScenegraphModel::itGoesWithItsParent()
{
    const TinyTree tree;
    auto* owner = new QObject;
    const QPointer<QorScenegraphModel> model(new QorScenegraphModel(&tree.root(), owner));
    QCOMPARE(static_cast<QObject*>(model)->parent(), owner);
    delete owner;
    QVERIFY(!model);
}

void tst_QorScenegraphModel::headersAreTold_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("text");
    const int display = Qt::DisplayRole;
    QTest::newRow("0") << 0 << Qt::Horizontal << display << QVariant(QStringLiteral("Type"));
    QTest::newRow("1") << 1 << Qt::Horizontal << display << QVariant(QStringLiteral("Name"));
    QTest::newRow("2") << 2 << Qt::Horizontal << display << QVariant(QStringLiteral("Valid"));
    QTest::newRow("3") << 3 << Qt::Horizontal << display << QVariant();
    QTest::newRow("-1") << -1 << Qt::Horizontal << display << QVariant();
    QTest::newRow("vertical") << 0 << Qt::Vertical << display << QVariant();
    QTest::newRow("tool tip") << 0 << Qt::Horizontal << static_cast<int>(Qt::ToolTipRole) << QVariant();
}

void tst_QorScenegraphModel::headersAreTold()
{
    QFETCH(int, section);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(int, role);
    QTEST(Model(nullptr).headerData(section, orientation, role), "text");
}

void tst_QorScenegraphModel::cellsShowTexts()
{
    const TinyTree tree;
    const Model model(&tree.root());
    QCOMPARE(model.columnCount(), 2);
    const QModelIndex root = model.index(0, 0);
    QCOMPARE(model.columnCount(root), 2);
    QCOMPARE(root.data().toString(), QStringLiteral("Scene"));
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("root"));
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("false"));
    model.rootItem()->updateCache(false);
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("true"));
    QVERIFY(!model.index(0, 3).data().isValid());
    for (const int role :
         {Qt::EditRole, Qt::ToolTipRole, Qt::DecorationRole, Qt::FontRole, Qt::CheckStateRole})
        QVERIFY(!model.data(root, role).isValid());
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
}

void tst_QorScenegraphModel::everyRowIsFlaggedEditable()
{
    const TinyTree tree;
    Model model(&tree.root());
    const Qt::ItemFlags all = Qt::ItemIsSelectable | Qt::ItemIsEditable | Qt::ItemIsEnabled;
    QCOMPARE(model.flags(model.index(0, 0)), all);
    QCOMPARE(model.flags(model.index(0, 1)), all);
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags(Qt::ItemIsEnabled));
    QVERIFY(!model.setData(model.index(0, 1), QStringLiteral("other")));
}

void tst_QorScenegraphModel::anIndexLeadsToItsParent()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Node& group = TinyTree::add(tree.root(), "Group");
    TinyTree::add(group, "Shape");
    const Model model(&tree.root());
    model.rootItem()->updateCache(false);
    model.rootItem()->child(1)->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    const QModelIndex second = model.index(1, 1, root);
    QCOMPARE(model.parent(second), root);
    const QModelIndex shape = model.index(0, 1, second);
    QVERIFY(shape.isValid());
    QCOMPARE(model.parent(shape), second.sibling(1, 0));
    QVERIFY(!model.parent(QModelIndex()).isValid());
    QVERIFY(!model.parent(model.indexOf(nullptr)).isValid());
    QVERIFY(!model.parent(model.indexOf(model.internalRootItem())).isValid());
    QCOMPARE(static_cast<QObject*>(nullptr), model.QObject::parent());
}

void tst_QorScenegraphModel::anyColumnHasAnIndex()
{
    const TinyTree tree;
    const Model model(&tree.root());
    QCOMPARE(model.index(0, 7).column(), 7);
    QCOMPARE(Model::itemOf(model.index(0, 7)), model.rootItem());
}

void tst_QorScenegraphModel::whatIsNotExpandedAnswersWithAPlaceholder()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    const Model model(&tree.root());
    const QModelIndex root = model.index(0, 0);
    const QModelIndex placeholder = model.index(9, 1, root);
    QVERIFY(placeholder.isValid());
    QCOMPARE(placeholder.row(), 9);
    const std::unique_ptr<QorNodeItem> item(Model::itemOf(placeholder));
    QVERIFY(!item->node());
    QVERIFY(!placeholder.data().isValid());
    QCOMPARE(model.rowCount(placeholder), 0);
    // It stands beside the row that it was asked for.
    QVERIFY(!model.parent(placeholder).isValid());
    QVERIFY(!model.nodePath(placeholder).isValid());
}

void tst_QorScenegraphModel::aPlaceIsFoundInColumnOne()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Node& group = TinyTree::add(tree.root(), "Group");
    const Model model(&tree.root());
    const QModelIndex root = model.index(NodePath(&tree.root()));
    QCOMPARE(root.row(), 0);
    QCOMPARE(root.column(), 1);
    QCOMPARE(Model::itemOf(root), model.rootItem());
    model.rootItem()->updateCache(false);
    const QModelIndex found = model.index(NodePath(&group));
    QCOMPARE(found.row(), 1);
    QCOMPARE(found.column(), 1);
    QCOMPARE(Model::itemOf(found)->node(), &group);
}

void tst_QorScenegraphModel::aPlaceThatIsNotBuiltIsNotFound()
{
    TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    Node& shape = TinyTree::add(group, "Shape");
    const TinyTree elsewhere;
    Model model(&tree.root());
    LogCapture log;
    QVERIFY(!model.index(NodePath(&group)).isValid());
    model.rootItem()->updateCache(false);
    log.take();
    QVERIFY(!model.index(NodePath(&shape)).isValid());
    QVERIFY(!model.index(NodePath(&elsewhere.root())).isValid());
    QVERIFY(!model.index(NodePath(nullptr)).isValid());
    QVERIFY(log.take().isEmpty());
    // Rows of a stale item are not entered either.
    QVERIFY(model.index(NodePath(&group)).isValid());
    model.rootItem()->invalidate(nullptr);
    QVERIFY(!model.index(NodePath(&group)).isValid());
    const NodePath dead(&group);
    tree.end();
    QVERIFY(!model.index(dead).isValid());
    QVERIFY(log.take().isEmpty());
}

void tst_QorScenegraphModel::aSearchWithoutSenseIsLogged()
{
    const TinyTree tree;
    const Model model(&tree.root());
    LogCapture log;
    QVERIFY(!model.recursiveSearchItemOf(nullptr, NodePath(&tree.root())));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::recursiveSearchItemOf: current item is 0!\n"});
    QVERIFY(!model.recursiveSearchItemOf(model.rootItem(), NodePath(nullptr)));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::recursiveSearchItemOf: nodePath invalid or "
                                        "node is 0.\n Aborting recursive search.\n"});
    // The item comes first.
    QVERIFY(!model.recursiveSearchItemOf(nullptr, NodePath(nullptr)));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::recursiveSearchItemOf: current item is 0!\n"});
}

void tst_QorScenegraphModel::theSearchStopsAtTheFirstHit()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    const Model model(&tree.root());
    QorNodeItem* root = model.rootItem();
    root->updateCache(false);
    QorNodeItem* first = root->child(0);
    root->appendChild(new QorNodeItem(const_cast<Model*>(&model), NodePath(&group), root));
    QCOMPARE(model.recursiveSearchItemOf(root, NodePath(&group)), first);
    // Of two rows at one place the second one may be the one that is built.
    Node& shape = TinyTree::add(group, "Shape");
    root->child(1)->updateCache(false);
    QCOMPARE(model.recursiveSearchItemOf(root, NodePath(&shape)), root->child(1)->child(0));
}

void tst_QorScenegraphModel::theSearchGoesOnBehindWhatIsNotExpanded()
{
    const TinyTree tree;
    Node& first = TinyTree::add(tree.root(), "Group");
    TinyTree::add(first, "Shape");
    Node& second = TinyTree::add(tree.root(), "Group");
    Node& shape = TinyTree::add(second, "Shape");
    const Model model(&tree.root());
    model.rootItem()->updateCache(false);
    model.rootItem()->child(1)->updateCache(false);
    QCOMPARE(model.recursiveSearchItemOf(model.internalRootItem(), NodePath(&shape))->node(), &shape);
}

void tst_QorScenegraphModel::theSearchMayStartAnywhere()
{
    const TinyTree tree;
    Node& first = TinyTree::add(tree.root(), "Group");
    Node& second = TinyTree::add(tree.root(), "Group");
    Node& shape = TinyTree::add(second, "Shape");
    const Model model(&tree.root());
    QorNodeItem* root = model.rootItem();
    root->updateCache(false);
    root->child(1)->updateCache(false);
    QCOMPARE(model.recursiveSearchItemOf(root, NodePath(&shape)), root->child(1)->child(0));
    QCOMPARE(model.recursiveSearchItemOf(root->child(1), NodePath(&shape)), root->child(1)->child(0));
    QCOMPARE(model.recursiveSearchItemOf(root->child(1)->child(0), NodePath(&shape)),
             root->child(1)->child(0));
    QVERIFY(!model.recursiveSearchItemOf(root->child(0), NodePath(&shape)));
    QVERIFY(!model.recursiveSearchItemOf(root->child(1), NodePath(&first)));
    QVERIFY(!model.recursiveSearchItemOf(root->child(1), NodePath(&tree.root())));
    const TinyTree elsewhere;
    Node& stranger = TinyTree::add(elsewhere.root(), "Group");
    QVERIFY(!model.recursiveSearchItemOf(root, NodePath(&stranger)));
}

void tst_QorScenegraphModel::aTreeBelowANestedNodeIsSearched()
{
    const TinyTree tree;
    Node& group = TinyTree::add(TinyTree::add(tree.root(), "Group"), "Group");
    Node& shape = TinyTree::add(group, "Shape");
    const Model model(&group);
    model.rootItem()->updateCache(false);
    QCOMPARE(model.index(NodePath(&group)).internalPointer(), model.rootItem());
    QCOMPARE(model.index(NodePath(&shape)).internalPointer(), model.rootItem()->child(0));
    QVERIFY(!model.index(NodePath(&tree.root())).isValid());
}

void tst_QorScenegraphModel::aSharedNodeHasARowAtEachPlace()
{
    const TinyTree tree;
    Node& left = TinyTree::add(tree.root(), "Group");
    Node& right = TinyTree::add(tree.root(), "Group");
    Node& shared = TinyTree::add(left, "Shape", "shared");
    Tiny::link(&right, "children", &shared);
    const Model model(&tree.root());
    QorNodeItem* root = model.rootItem();
    root->updateCache(false);
    root->child(0)->updateCache(false);
    root->child(1)->updateCache(false);
    QorNodeItem* atLeft = root->child(0)->child(0);
    QorNodeItem* atRight = root->child(1)->child(0);
    QCOMPARE(model.searchNodeItems(&shared, root), (QVector<QorNodeItem*>{atLeft, atRight}));
    QCOMPARE(model.index(atLeft->nodePath()).internalPointer(), atLeft);
    QCOMPARE(model.index(atRight->nodePath()).internalPointer(), atRight);
}

void tst_QorScenegraphModel::nodesAreSearchedParentsFirst()
{
    // A node below itself, and again beside it.
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    Tiny::link(&group, "children", &group);
    Tiny::link(&tree.root(), "children", &group);
    const Model model(&tree.root());
    QorNodeItem* root = model.rootItem();
    root->updateCache(false);
    root->child(0)->updateCache(false);
    root->child(0)->child(0)->updateCache(false);
    QCOMPARE(model.searchNodeItems(&group, model.internalRootItem()),
             (QVector<QorNodeItem*>{root->child(0), root->child(0)->child(0),
                                    root->child(0)->child(0)->child(0), root->child(1)}));
    QCOMPARE(model.searchNodeItems(&tree.root(), root), QVector<QorNodeItem*>{root});
    QVERIFY(model.searchNodeItems(&tree.root(), root->child(0)).isEmpty());
    QVERIFY(model.searchNodeItems(&group, nullptr).isEmpty());
    TinyTree::children(group).removeNode(0.0, 0, Field::EXTERNAL_CT);
}

void tst_QorScenegraphModel::filtersAreKeptAndTold()
{
    const TinyTree tree;
    Model model(&tree.root());
    const QStringList types{QStringLiteral("Shape"), QStringLiteral("Group")};
    model.setShowTypeFilter(types);
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
    model.setShowTypeFilter(types);
    QVERIFY(model.take().isEmpty());
    QCOMPARE(model.showTypeFilter(), types);
    QVERIFY(model.hideTypeFilter().isEmpty());
    model.setShowTypeFilter({QStringLiteral("Group"), QStringLiteral("Shape")});
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
    model.setHideTypeFilter(types);
    model.setHideTypeFilter(types);
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
    QCOMPARE(model.hideTypeFilter(), types);
    model.setHideTypeFilter({});
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
    model.setShowProtoBody(true);
    model.setShowProtoBody(true);
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
    QVERIFY(model.isShowingProtoBody());
    model.setShowProtoBody(false);
    QCOMPARE(model.take(), QStringList{QStringLiteral("layout")});
}

void tst_QorScenegraphModel::prototypeBodiesAreShownFromTheNextRebuildOn()
{
    const TinyTree tree;
    Node& lamp = TinyTree::add(tree.root(), "ProtoLamp");
    TinyTree::add(lamp, "Shape", "body");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex row = model.index(0, 0, model.index(0, 0));
    QCOMPARE(model.rowCount(row), 0);
    model.setShowProtoBody(true);
    QCOMPARE(model.rowCount(row), 1);
    Model::itemOf(row)->updateCache(false);
    QCOMPARE(namesBelow(model, row), QStringList{QStringLiteral("body")});
}

void tst_QorScenegraphModel::filtersCountFromTheNextRebuildOn()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Shape", "b");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    model.setHideTypeFilter({QStringLiteral("Shape")});
    QCOMPARE(model.rowCount(root), 2);
    model.rootItem()->invalidate(nullptr);
    model.rootItem()->updateCache(false);
    QCOMPARE(namesBelow(model, root), QStringList{QStringLiteral("a")});
}

void tst_QorScenegraphModel::aRowIsInserted()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    TinyTree::add(tree.root(), "Group", "b");
    LogCapture log;
    QVERIFY(model.insertRows(1, 1, root));
    QCOMPARE(log.take().first(), QByteArray("3 QorScenegraphModel::insertRows: row=1, count=1\n"));
    QCOMPARE(model.take(), QStringList({QStringLiteral("inserting 1 1 below column 0 of root"),
                                        QStringLiteral("inserted 1 1 below column 0 of root")}));
    QCOMPARE(namesBelow(model, root), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(tree.root().childCount(), 2);
}

void tst_QorScenegraphModel::aRowIsRemoved()
{
    const TinyTree tree;
    for (const char* name : {"a", "b", "c"})
        TinyTree::add(tree.root(), "Group", name);
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    const QPersistentModelIndex b(model.index(1, 0, root));
    const QPersistentModelIndex c(model.index(2, 1, root));
    const std::unique_ptr<QorNodeItem> removed(Model::itemOf(b));
    LogCapture log;
    QVERIFY(model.removeRows(1, 1, root));
    QCOMPARE(log.take().first(), QByteArray("3 QorScenegraphModel::removeRows: row=1, count=1\n"));
    QCOMPARE(model.take(), QStringList({QStringLiteral("removing 1 1 below column 0 of root"),
                                        QStringLiteral("removed 1 1 below column 0 of root")}));
    QCOMPARE(namesBelow(model, root), QStringList({QStringLiteral("a"), QStringLiteral("c")}));
    // The graph is left alone.
    QCOMPARE(tree.root().childCount(), 3);
    QVERIFY(!b.isValid());
    QCOMPARE(c.row(), 1);
    QCOMPARE(c.data().toString(), QStringLiteral("c"));
}

void tst_QorScenegraphModel::rowsGoByTheParentInAnyColumn()
{
    const TinyTree tree;
    for (const char* name : {"a", "b"})
        TinyTree::add(tree.root(), "Group", name);
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QPersistentModelIndex last(model.index(1, 0, model.index(0, 0)));
    Node* first = TinyTree::make("Group", "first");
    TinyTree::children(tree.root()).insertNode(0.0, 0, first, Field::EXTERNAL_CT);
    const QModelIndex found = model.index(NodePath(&tree.root()));
    QCOMPARE(found.column(), 1);
    QVERIFY(model.insertRow(0, found));
    QCOMPARE(model.take().first(), QStringLiteral("inserting 0 0 below column 0 of root"));
    QCOMPARE(last.row(), 2);
    const std::unique_ptr<QorNodeItem> removed(model.rootItem()->child(0));
    QVERIFY(model.removeRow(0, found));
    QCOMPARE(model.take().first(), QStringLiteral("removing 0 0 below column 0 of root"));
    QCOMPARE(last.row(), 1);
}

void tst_QorScenegraphModel::insertionIsRefused()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(!model.insertRows(0, 1, QModelIndex()));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::insertRows: parent index is invalid!\n"});
    QVERIFY(!model.insertRows(0, 2, model.index(0, 0)));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::insertRows: inserting more than 1 row is not "
                                        "supported (used count=2)\n"});
    QVERIFY(!model.insertRows(0, 1, model.indexOf(nullptr)));
    QCOMPARE(log.take(),
             QByteArrayList{"1 QorScenegraphModel::insertRows: didn't an item for the model index.\n"});
    // The count is looked at before the item.
    QVERIFY(!model.insertRows(0, 3, model.indexOf(nullptr)));
    QVERIFY(log.take().first().contains("count=3"));
    QCOMPARE(model.rootItem()->childCount(), 1);
    QVERIFY(model.take().isEmpty());
}

void tst_QorScenegraphModel::removalIsRefused()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(!model.removeRows(0, 1, QModelIndex()));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::removeRows: invalid parent model index.\n"});
    QVERIFY(!model.removeRows(0, 2, model.index(0, 0)));
    QCOMPARE(log.take(), QByteArrayList{"1 QorScenegraphModel::removeRows: removing more than 1 row is not "
                                        "supported (used count=2)\n"});
    QVERIFY(!model.removeRows(0, 1, model.indexOf(nullptr)));
    QVERIFY(log.take().isEmpty());
    QCOMPARE(model.rootItem()->childCount(), 1);
    QVERIFY(model.take().isEmpty());
}

void tst_QorScenegraphModel::noRowIsOneRow()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    Model model(&tree.root());
    model.rootItem()->updateCache(false);
    const QModelIndex root = model.index(0, 0);
    TinyTree::add(tree.root(), "Group", "b");
    QVERIFY(model.insertRows(1, 0, root));
    QCOMPARE(model.rowCount(root), 2);
    QCOMPARE(model.take(), QStringList({QStringLiteral("inserting 1 0 below column 0 of root"),
                                        QStringLiteral("inserted 1 0 below column 0 of root")}));
    const std::unique_ptr<QorNodeItem> removed(model.rootItem()->child(0));
    QVERIFY(model.removeRows(0, 0, root));
    QCOMPARE(model.rowCount(root), 1);
    QCOMPARE(model.take(), QStringList({QStringLiteral("removing 0 -1 below column 0 of root"),
                                        QStringLiteral("removed 0 -1 below column 0 of root")}));
}

void tst_QorScenegraphModel::topLevelRowsCannotChange()
{
    const TinyTree tree;
    Model model(&tree.root());
    LogCapture log(osg::LOG_WARNING);
    QVERIFY(!model.insertRow(0));
    QVERIFY(!model.removeRow(0));
    QCOMPARE(log.take().size(), 2);
    QCOMPARE(model.rowCount(), 1);
}

void tst_QorScenegraphModel::linksAreDumped()
{
    const TinyTree tree;
    Node& unnamed = TinyTree::add(tree.root(), "Group");
    TinyTree::add(tree.root(), "Group", "b");
    MFNode& children = TinyTree::children(tree.root());
    QList<NodeLink*> links{&children[0], &children[1]};
    LogCapture log(osg::LOG_LOG);
    Model::dumpNodeLinkStack(links);
    QCOMPARE(log.take(), QByteArrayList({"0     " + address(&children[0]) + ", " +
                                             QByteArray::fromStdString(unnamed.getIDStr()) + "\n",
                                         "0     " + address(&children[1]) + ", b\n"}));
}

QTEST_APPLESS_MAIN(tst_QorScenegraphModel)
#include "tst_QorScenegraphModel.moc"
