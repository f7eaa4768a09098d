#include "LogCapture.h"
#include "QorNodeItem.h"
#include "QorScenegraphModel.h"
#include "TinyTree.h"
#include <QtTest>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

/// A model without rows of its own, for items of the test.
class Model : public QorScenegraphModel
{
public:
    Model()
        : QorScenegraphModel(nullptr, nullptr)
    {
    }
    QModelIndex indexOf(QorNodeItem* item, int row = 0) const { return createIndex(row, 0, item); }
};

QStringList rowsOf(const QorNodeItem& item)
{
    QStringList rows;
    for (int row = 0; row < item.childCount(); ++row)
        rows << item.child(row)->data(1).toString();
    return rows;
}

/// Counts the items that are alive.
class CountedItem : public QorNodeItem
{
public:
    CountedItem(QorScenegraphModel* model, QorNodeItem* parent)
        : QorNodeItem(model, NodePath(nullptr), parent)
    {
        ++count;
    }
    ~CountedItem() override { --count; }

    static int count;
};

int CountedItem::count = 0;

} // namespace

class tst_QorNodeItem : public QObject
{
    Q_OBJECT

private slots:
    void aNewItemHasNothingBuilt();
    void itKnowsTheNodeOfItsPath();
    void anItemOfADeadNodeCountsAsEmpty();
    void dataIsTypeNameAndValidity();
    void dataIsReadAnew();
    void textsMayHoldAnyLetters();

    void aNodeWithoutChildrenHasNoRows();
    void whatIsNotExpandedHasAPlaceholder();
    void everyPlaceholderIsAnotherOne();
    void staleRowsHideBehindThePlaceholder();
    void aStaleItemWithoutChildrenInTheGraphShowsItsList();
    void aPrototypeShowsItsBodyWhenAsked();
    void rowIsThePlaceInTheList();

    void appendingTakesOver();
    void clearingDeletesAndLeavesTheFlag();
    void clearingDropsTheIndexesBelow();
    void anItemTakesItsRowsAlong();
    void aDeepTreeGoesWithoutRecursion();
    void copiesHaveTheSameRows();

    void updateBuildsOneLevel();
    void updateOfAValidItemOnlySaysSo();
    void updateTellsViewsWhenAsked();
    void updateWithoutANodeIsValidAndEmpty();
    void pathsOfRowsGoOnFromTheItem();
    void rowsStandInOrderOfFieldAndElement();
    void eventLinksHaveNoRow();
    void anInvalidNodeIsLeftOutEverywhere();
    void addingGoesToTheGivenItem();
    void typesAreFiltered_data();
    void typesAreFiltered();

    void anInsertedChildGetsItsRow();
    void insertionGoesByTheGraphAlone();
    void insertionIntoAFilteredListUsesTheIndexAsItIs();
    void insertionOfAHiddenTypeMakesNoRow();
    void insertionBehindTheEndIsRefused();
    void insertionBelowADeadNodeIsRefused();
    void aRemovedChildLosesItsRow();
    void removalBehindTheEndIsLogged();
};

void tst_QorNodeItem::aNewItemHasNothingBuilt()
{
    const TinyTree tree;
    Model model;
    QorNodeItem top(&model, NodePath(nullptr), nullptr);
    const QorNodeItem item(&model, NodePath(&tree.root()), &top);
    QCOMPARE(item.model(), &model);
    QCOMPARE(item.parent(), &top);
    QVERIFY(item.nodePath() == NodePath(&tree.root()));
    QCOMPARE(item.node(), &tree.root());
    QVERIFY(!item.isValid());
    QCOMPARE(item.childCount(), 0);
    QCOMPARE(item.columnCount(), 2);
    // It is not in its parent's list until it is put there.
    QCOMPARE(top.childCount(), 0);
    QCOMPARE(item.row(), -1);
}

void tst_QorNodeItem::itKnowsTheNodeOfItsPath()
{
    const TinyTree tree;
    Model model;
    const QorNodeItem empty(&model, NodePath(nullptr), nullptr);
    QVERIFY(!empty.node());
    QVERIFY(!empty.parent());
    QVERIFY(!empty.nodePath().isValid());
    QCOMPARE(empty.row(), 0);
    QVERIFY(!empty.data(0).isValid());
}

void tst_QorNodeItem::anItemOfADeadNodeCountsAsEmpty()
{
    TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    TinyTree::add(group, "Shape");
    TinyTree::add(group, "Shape");
    Model model;
    QorNodeItem fresh(&model, NodePath(&group), nullptr);
    QorNodeItem built(&model, NodePath(&group), nullptr);
    built.updateCache(false);
    QCOMPARE(built.childCount(), 2);
    TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);

    QVERIFY(!fresh.node());
    QCOMPARE(fresh.childCount(), 0);
    QVERIFY(!fresh.child(0));
    QVERIFY(!fresh.data(0).isValid());
    QVERIFY(!fresh.data(2).isValid());
    QVERIFY(!built.node());
    QCOMPARE(built.childCount(), 2);
    QVERIFY(!built.child(0)->node());
    QVERIFY(!built.child(0)->data(1).isValid());
    built.updateInsertedChild(0);
    QCOMPARE(built.childCount(), 2);
    built.invalidate(nullptr);
    LogCapture log(osg::LOG_WARNING);
    built.updateCache(false);
    QCOMPARE(log.take(), QByteArrayList{"2 QorNodeItem::addNodeLink: node is 0!\n"});
    QCOMPARE(built.childCount(), 0);
}

void tst_QorNodeItem::dataIsTypeNameAndValidity()
{
    const TinyTree tree;
    Node& unnamed = TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    QCOMPARE(item.data(0).toString(), QStringLiteral("Scene"));
    QCOMPARE(item.data(1).toString(), QStringLiteral("root"));
    QCOMPARE(item.data(2).toString(), QStringLiteral("false"));
    QVERIFY(!item.data(3).isValid());
    QVERIFY(!item.data(-1).isValid());
    item.updateCache(false);
    QCOMPARE(item.data(2).toString(), QStringLiteral("true"));
    QCOMPARE(item.child(0)->data(1).toString(), QString::fromStdString(unnamed.getIDStr()));
}

void tst_QorNodeItem::dataIsReadAnew()
{
    const TinyTree tree;
    Model model;
    const QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    Tiny::setName(&tree.root(), "other");
    QCOMPARE(item.data(1).toString(), QStringLiteral("other"));
    Tiny::setName(&tree.root(), nullptr);
    QCOMPARE(item.data(1).toString(), QString::fromStdString(tree.root().getIDStr()));
}

void tst_QorNodeItem::textsMayHoldAnyLetters()
{
    const TinyTree tree;
    Model model;
    const QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    Tiny::setName(&tree.root(), "T\xfcr");
    QCOMPARE(item.data(1).toString(), QStringLiteral("Tür"));
    Tiny::setName(&tree.root(), "\xe6\xbc\xa2");
    QCOMPARE(item.data(1).toString(), QStringLiteral("漢"));
}

void tst_QorNodeItem::aNodeWithoutChildrenHasNoRows()
{
    const TinyTree tree;
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    QCOMPARE(item.childCount(), 0);
    QVERIFY(!item.child(0));
    item.updateCache(false);
    QVERIFY(item.isValid());
    QCOMPARE(item.childCount(), 0);
    QVERIFY(!item.child(0));
    QVERIFY(!item.child(-1));
}

void tst_QorNodeItem::whatIsNotExpandedHasAPlaceholder()
{
    const TinyTree tree;
    for (int i = 0; i < 3; ++i)
        TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem top(&model, NodePath(nullptr), nullptr);
    auto* item = new QorNodeItem(&model, NodePath(&tree.root()), &top);
    top.appendChild(item);
    QCOMPARE(item->childCount(), 1);
    const std::unique_ptr<QorNodeItem> placeholder(item->child(5));
    QVERIFY(placeholder);
    QCOMPARE(placeholder->model(), &model);
    QCOMPARE(placeholder->parent(), &top);
    QCOMPARE(placeholder->row(), -1);
    QVERIFY(!placeholder->node());
    QVERIFY(!placeholder->nodePath().isValid());
    QCOMPARE(placeholder->childCount(), 0);
    QVERIFY(!placeholder->child(0));
    QVERIFY(!placeholder->data(0).isValid());
    const std::unique_ptr<QorNodeItem> negative(item->child(-1));
    QVERIFY(negative);

    const QorNodeItem alone(&model, NodePath(&tree.root()), nullptr);
    const std::unique_ptr<QorNodeItem> beside(alone.child(0));
    QVERIFY(!beside->parent());
    QCOMPARE(beside->row(), 0);

    item->updateCache(false);
    QCOMPARE(item->childCount(), 3);
    QCOMPARE(item->child(2)->parent(), item);
    QVERIFY(!item->child(3));
    QVERIFY(!item->child(-1));
}

void tst_QorNodeItem::everyPlaceholderIsAnotherOne()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    const QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    const std::unique_ptr<QorNodeItem> first(item.child(0));
    const std::unique_ptr<QorNodeItem> second(item.child(0));
    QVERIFY(first != second);
}

void tst_QorNodeItem::staleRowsHideBehindThePlaceholder()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Group", "b");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    const QorNodeItem* kept = item.child(0);
    item.invalidate(nullptr);
    QVERIFY(!item.isValid());
    QCOMPARE(item.childCount(), 1);
    const std::unique_ptr<QorNodeItem> placeholder(item.child(0));
    QVERIFY(placeholder.get() != kept);
    QVERIFY(!placeholder->node());
    // The old rows are still there.
    QCOMPARE(kept->row(), 0);
    QCOMPARE(kept->data(1).toString(), QStringLiteral("a"));
}

void tst_QorNodeItem::aStaleItemWithoutChildrenInTheGraphShowsItsList()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    TinyTree::children(tree.root()).removeNode(0.0, 0, Field::EXTERNAL_CT);
    item.invalidate(nullptr);
    QCOMPARE(item.childCount(), 1);
    QCOMPARE(item.child(0)->parent(), &item);
    QVERIFY(!item.child(1));
}

void tst_QorNodeItem::aPrototypeShowsItsBodyWhenAsked()
{
    const TinyTree tree("ProtoLamp");
    TinyTree::add(tree.root(), "Group", "body");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    QCOMPARE(tree.root().childCount(), 1);
    QCOMPARE(item.childCount(), 0);
    LogCapture log;
    item.updateCache(false);
    QVERIFY(item.isValid());
    QCOMPARE(item.childCount(), 0);
    QVERIFY(!item.child(0));
    QCOMPARE(log.take().size(), 1);

    model.setShowProtoBody(true);
    item.invalidate(nullptr);
    QCOMPARE(item.childCount(), 1);
    item.updateCache(false);
    QCOMPARE(rowsOf(item), QStringList{QStringLiteral("body")});
    // Hidden again, the rows are there and do not count.
    model.setShowProtoBody(false);
    QCOMPARE(item.childCount(), 0);
    QVERIFY(item.child(0));
}

void tst_QorNodeItem::rowIsThePlaceInTheList()
{
    const TinyTree tree;
    for (int i = 0; i < 4; ++i)
        TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    for (int row = 0; row < 4; ++row)
        QCOMPARE(item.child(row)->row(), row);
    const std::unique_ptr<QorNodeItem> removed(item.child(1));
    item.updateRemovedChild(1);
    QCOMPARE(removed->row(), -1);
    QCOMPARE(item.child(2)->row(), 2);
}

void tst_QorNodeItem::appendingTakesOver()
{
    Model model;
    QorNodeItem other(&model, NodePath(nullptr), nullptr);
    {
        QorNodeItem item(&model, NodePath(nullptr), nullptr);
        auto* child = new CountedItem(&model, &other);
        item.appendChild(child);
        item.appendChild(nullptr);
        QCOMPARE(item.childCount(), 1);
        // The parent is the one that the child was made with.
        QCOMPARE(child->parent(), &other);
        QCOMPARE(CountedItem::count, 1);
    }
    QCOMPARE(CountedItem::count, 0);
}

void tst_QorNodeItem::clearingDeletesAndLeavesTheFlag()
{
    const TinyTree tree;
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    item.appendChild(new CountedItem(&model, &item));
    item.child(0)->appendChild(new CountedItem(&model, item.child(0)));
    QCOMPARE(CountedItem::count, 2);
    item.clearChildren();
    QCOMPARE(CountedItem::count, 0);
    QCOMPARE(item.childCount(), 0);
    QVERIFY(item.isValid());
    item.invalidate(nullptr);
    item.clearChildren();
    QVERIFY(!item.isValid());
}

void tst_QorNodeItem::clearingDropsTheIndexesBelow()
{
    Model model;
    QorNodeItem top(&model, NodePath(nullptr), nullptr);
    auto* left = new QorNodeItem(&model, NodePath(nullptr), &top);
    auto* right = new QorNodeItem(&model, NodePath(nullptr), &top);
    top.appendChild(left);
    top.appendChild(right);
    left->appendChild(new QorNodeItem(&model, NodePath(nullptr), left));
    left->child(0)->appendChild(new QorNodeItem(&model, NodePath(nullptr), left->child(0)));
    right->appendChild(new QorNodeItem(&model, NodePath(nullptr), right));
    const QPersistentModelIndex onLeft(model.indexOf(left));
    const QPersistentModelIndex below(model.indexOf(left->child(0)));
    const QPersistentModelIndex deepBelow(model.indexOf(left->child(0)->child(0)));
    const QPersistentModelIndex elsewhere(model.indexOf(right->child(0)));
    left->clearChildren();
    QVERIFY(onLeft.isValid());
    QVERIFY(!below.isValid());
    QVERIFY(!deepBelow.isValid());
    QVERIFY(elsewhere.isValid());
    QCOMPARE(elsewhere.internalPointer(), right->child(0));
}

void tst_QorNodeItem::anItemTakesItsRowsAlong()
{
    Model model;
    {
        QorNodeItem item(&model, NodePath(nullptr), nullptr);
        for (int i = 0; i < 3; ++i) {
            item.appendChild(new CountedItem(&model, &item));
            item.child(i)->appendChild(new CountedItem(&model, item.child(i)));
        }
        QCOMPARE(CountedItem::count, 6);
    }
    QCOMPARE(CountedItem::count, 0);
}

void tst_QorNodeItem::aDeepTreeGoesWithoutRecursion()
{
    Model model;
    {
        QorNodeItem item(&model, NodePath(nullptr), nullptr);
        QorNodeItem* deepest = &item;
        for (int i = 0; i < 500000; ++i) {
            deepest->appendChild(new CountedItem(&model, deepest));
            deepest = deepest->child(0);
        }
        QCOMPARE(model.searchNodeItems(nullptr, &item).size(), 500001);
    }
    QCOMPARE(CountedItem::count, 0);
}

void tst_QorNodeItem::copiesHaveTheSameRows()
{
    const TinyTree tree;
    Node& added = TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem top(&model, NodePath(nullptr), nullptr);
    QorNodeItem item(&model, NodePath(&tree.root()), &top);
    item.updateCache(false);
    {
        QorNodeItem copy(item);
        QCOMPARE(copy.model(), &model);
        QCOMPARE(copy.parent(), &top);
        QCOMPARE(copy.node(), &tree.root());
        QVERIFY(copy.nodePath() == item.nodePath());
        QVERIFY(copy.isValid());
        QCOMPARE(copy.childCount(), 1);
        QCOMPARE(copy.child(0), item.child(0));
        QCOMPARE(copy.child(0)->parent(), &item);
        // One of the two has to forget them.
        copy = QorNodeItem(&model, NodePath(&added), nullptr);
        QCOMPARE(copy.node(), &added);
        QVERIFY(!copy.parent());
        QVERIFY(!copy.isValid());
        QCOMPARE(copy.childCount(), 0);
    }
    QCOMPARE(item.childCount(), 1);

    // The node to leave out goes along.
    const LogCapture log;
    item.invalidate(&added);
    QorNodeItem copy(item);
    item = QorNodeItem(&model, NodePath(nullptr), nullptr);
    copy.updateCache(false);
    QCOMPARE(copy.childCount(), 0);
}

void tst_QorNodeItem::updateBuildsOneLevel()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(group, "Shape", "below");
    TinyTree::add(tree.root(), "Group", "b");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    LogCapture log;
    item.updateCache(false);
    QCOMPARE(log.take(),
             QByteArrayList({"3 QorNodeItem::updateCache(): item of node=" + address(&tree.root()) +
                                 "/root cache is invalid. Updating cache.\n",
                             "3 QorNodeItem::addNodeLink: adding 2 nodelinks.\n"}));
    QVERIFY(item.isValid());
    QCOMPARE(rowsOf(item), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(item.child(0)->node(), &group);
    QCOMPARE(item.child(0)->parent(), &item);
    QCOMPARE(item.child(0)->model(), &model);
    QVERIFY(!item.child(0)->isValid());
    QCOMPARE(item.child(0)->childCount(), 1);
}

void tst_QorNodeItem::updateOfAValidItemOnlySaysSo()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    const QorNodeItem* child = item.child(0);
    TinyTree::add(tree.root(), "Group");
    LogCapture log;
    int told = 0;
    QObject::connect(&model, &Model::layoutAboutToBeChanged, [&told] { ++told; });
    QObject::connect(&model, &Model::layoutChanged, [&told] { ++told; });
    item.updateCache(true);
    QCOMPARE(log.take(),
             QByteArrayList{"3 QorNodeItem::updateCache: node item is valid. Skipping update.\n"});
    QCOMPARE(item.childCount(), 1);
    QCOMPARE(item.child(0), child);
    QCOMPARE(told, 0);

    item.invalidate(nullptr);
    QVERIFY(log.take().isEmpty());
    item.updateCache(false);
    QCOMPARE(item.childCount(), 2);
}

void tst_QorNodeItem::updateTellsViewsWhenAsked()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    QStringList told;
    QObject::connect(&model, &Model::layoutAboutToBeChanged,
                     [&] { told << QStringLiteral("about, %1 rows").arg(item.childCount()); });
    QObject::connect(&model, &Model::layoutChanged, [&] {
        told << QStringLiteral("changed, %1 rows, %2").arg(item.childCount()).arg(item.isValid());
    });
    item.updateCache(false);
    QVERIFY(told.isEmpty());
    TinyTree::add(tree.root(), "Group");
    item.invalidate(nullptr);
    item.updateCache(true);
    QCOMPARE(told, QStringList({QStringLiteral("about, 1 rows"), QStringLiteral("changed, 2 rows, 1")}));
}

void tst_QorNodeItem::updateWithoutANodeIsValidAndEmpty()
{
    Model model;
    QorNodeItem item(&model, NodePath(nullptr), nullptr);
    item.appendChild(new CountedItem(&model, &item));
    LogCapture log;
    item.updateCache(false);
    QCOMPARE(log.take(), QByteArrayList({"3 QorNodeItem::updateCache(): item of node=" + address(nullptr) +
                                             "/ cache is invalid. Updating cache.\n",
                                         "2 QorNodeItem::addNodeLink: node is 0!\n"}));
    QVERIFY(item.isValid());
    QCOMPARE(item.childCount(), 0);
    QCOMPARE(CountedItem::count, 0);
}

void tst_QorNodeItem::pathsOfRowsGoOnFromTheItem()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    Node& twice = TinyTree::add(group, "Shape");
    Tiny::link(&group, "children", &twice);
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    QorNodeItem* below = item.child(0);
    below->updateCache(false);
    QCOMPARE(below->childCount(), 2);
    std::list<NodeLink*> links;
    below->child(1)->nodePath().nodeLinks(links);
    QCOMPARE(links,
             (std::list<NodeLink*>{&TinyTree::children(group)[1], &TinyTree::children(tree.root())[0]}));
    QCOMPARE(below->child(0)->node(), &twice);
    QCOMPARE(below->child(1)->node(), &twice);
    QVERIFY(!(below->child(0)->nodePath() == below->child(1)->nodePath()));
}

void tst_QorNodeItem::rowsStandInOrderOfFieldAndElement()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "b");
    TinyTree::add(tree.root(), "Group", "c");
    TinyTree::add(tree.root(), "Group", "a", "single");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    QCOMPARE(rowsOf(item), QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
}

void tst_QorNodeItem::eventLinksHaveNoRow()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "in", "in");
    TinyTree::add(tree.root(), "Group", "out", "out");
    TinyTree::add(tree.root(), "Group", "a");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    LogCapture log;
    item.updateCache(false);
    QCOMPARE(rowsOf(item), QStringList{QStringLiteral("a")});
    const QByteArray omitted =
        "3 QorNodeItem::addNodeLink: Omitting nodelink of type EVENTOUTP | EVENTINP.\n";
    QCOMPARE(log.take().mid(1),
             QByteArrayList({"3 QorNodeItem::addNodeLink: adding 3 nodelinks.\n", omitted, omitted}));
    // With events alone something to expand shows until it was expanded.
    const TinyTree events;
    TinyTree::add(events.root(), "Group", "in", "in");
    QorNodeItem eventItem(&model, NodePath(&events.root()), nullptr);
    QCOMPARE(eventItem.childCount(), 1);
    eventItem.updateCache(false);
    QCOMPARE(eventItem.childCount(), 0);
}

void tst_QorNodeItem::anInvalidNodeIsLeftOutEverywhere()
{
    const TinyTree tree;
    Node& twice = TinyTree::add(tree.root(), "Group", "twice");
    TinyTree::add(tree.root(), "Group", "other");
    Tiny::link(&tree.root(), "children", &twice);
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    QCOMPARE(item.childCount(), 3);
    item.invalidate(&twice);
    LogCapture log(osg::LOG_WARNING);
    item.updateCache(false);
    QCOMPARE(rowsOf(item), QStringList{QStringLiteral("other")});
    const QByteArray line = "2 QorNodeItem::addNodeLink: omitting invalid node " + address(&twice) + "\n";
    QCOMPARE(log.take(), QByteArrayList({line, line}));
    // It is forgotten after the rebuild.
    TinyTree::add(tree.root(), "Group", "last");
    item.invalidate(nullptr);
    item.updateCache(false);
    QCOMPARE(item.childCount(), 4);
    QVERIFY(log.take().isEmpty());
}

void tst_QorNodeItem::addingGoesToTheGivenItem()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Shape", "b");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    QorNodeItem target(&model, NodePath(nullptr), nullptr);
    QList<NodeLink*> stack;
    QStringList show{QStringLiteral("Shape")};
    QStringList hide;
    item.addNodeLink(stack, &target, show, hide);
    QVERIFY(stack.isEmpty());
    QCOMPARE(rowsOf(target), QStringList{QStringLiteral("b")});
    QCOMPARE(target.child(0)->parent(), &target);
    QVERIFY(!target.isValid());
    QCOMPARE(item.childCount(), 1);
    QVERIFY(!item.isValid());
}

void tst_QorNodeItem::typesAreFiltered_data()
{
    QTest::addColumn<QStringList>("show");
    QTest::addColumn<QStringList>("hide");
    QTest::addColumn<QStringList>("rows");
    const QString group = QStringLiteral("Group");
    const QString shape = QStringLiteral("Shape");
    const QString light = QStringLiteral("Light");
    const QStringList all{group, shape, light};
    QTest::newRow("none") << QStringList() << QStringList() << all;
    QTest::newRow("shown") << QStringList{shape} << QStringList() << QStringList{shape};
    QTest::newRow("hidden") << QStringList() << QStringList{shape} << QStringList{group, light};
    QTest::newRow("shown and hidden") << QStringList{shape} << QStringList{shape} << all;
    QTest::newRow("shown and others hidden")
        << QStringList{shape} << QStringList{group, light} << QStringList{shape};
    QTest::newRow("unknown shown") << QStringList{QStringLiteral("None")} << QStringList() << QStringList();
    QTest::newRow("unknown hidden") << QStringList() << QStringList{QStringLiteral("None")} << all;
    QTest::newRow("other case shown")
        << QStringList{QStringLiteral("shape")} << QStringList() << QStringList();
    QTest::newRow("other case hidden") << QStringList() << QStringList{QStringLiteral("shape")} << all;
    QTest::newRow("part of the name") << QStringList() << QStringList{QStringLiteral("Sha")} << all;
}

void tst_QorNodeItem::typesAreFiltered()
{
    QFETCH(QStringList, show);
    QFETCH(QStringList, hide);
    QFETCH(QStringList, rows);
    const TinyTree tree;
    for (const char* type : {"Group", "Shape", "Light"})
        TinyTree::add(tree.root(), type, type);
    Model model;
    model.setShowTypeFilter(show);
    model.setHideTypeFilter(hide);
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    QCOMPARE(rowsOf(item), rows);

    QorNodeItem inserted(&model, NodePath(&tree.root()), nullptr);
    TinyTree empty;
    QorNodeItem grown(&model, NodePath(&empty.root()), nullptr);
    grown.updateCache(false);
    for (const char* type : {"Group", "Shape", "Light"}) {
        TinyTree::add(empty.root(), type, type);
        grown.updateInsertedChild(static_cast<unsigned int>(empty.root().childCount() - 1));
    }
    QCOMPARE(rowsOf(grown), rows);
}

void tst_QorNodeItem::anInsertedChildGetsItsRow()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Group", "c");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    Node* b = TinyTree::make("Group", "b");
    TinyTree::children(tree.root()).insertNode(0.0, 1, b, Field::EXTERNAL_CT);
    LogCapture log;
    item.updateInsertedChild(1);
    QCOMPARE(log.take(), QByteArrayList({"3 QorNodeItem::updateInsertedChild: childIndex=1, itemcount=2, "
                                         "node->childCount=3\n",
                                         "3 QorNodeItem::updateInsertedChild: item nodePath().node()=root/" +
                                             address(&tree.root()) + ", nodeVec.size()=3\n"}));
    QCOMPARE(rowsOf(item), QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    QCOMPARE(item.child(1)->node(), b);
    QCOMPARE(item.child(1)->parent(), &item);
    QVERIFY(item.child(1)->nodePath() == NodePath(b));
    QVERIFY(item.isValid());
}

void tst_QorNodeItem::insertionGoesByTheGraphAlone()
{
    // Neither closed prototypes nor events nor the node to leave out nor validity count.
    const TinyTree tree("ProtoLamp");
    Node& in = TinyTree::add(tree.root(), "Group", "in", "in");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.invalidate(&in);
    item.updateInsertedChild(0);
    QVERIFY(!item.isValid());
    QCOMPARE(item.childCount(), 0);
    model.setShowProtoBody(true);
    QCOMPARE(item.childCount(), 1);
    TinyTree::single(tree.root(), "in").setNode(0.0, nullptr, Field::EXTERNAL_CT);
    QCOMPARE(item.childCount(), 1);
    QCOMPARE(item.child(0)->parent(), &item);
}

void tst_QorNodeItem::insertionIntoAFilteredListUsesTheIndexAsItIs()
{
    const TinyTree tree;
    for (const char* name : {"a", "b", "c"})
        TinyTree::add(tree.root(), "Group", name);
    TinyTree::add(tree.root(), "Shape", "d");
    Model model;
    model.setHideTypeFilter({QStringLiteral("Group")});
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    QCOMPARE(rowsOf(item), QStringList{QStringLiteral("d")});
    Node* e = TinyTree::make("Shape", "e");
    TinyTree::children(tree.root()).insertNode(0.0, 2, e, Field::EXTERNAL_CT);
    // The third child comes behind the fifth one, whose row is 0.
    item.updateInsertedChild(2);
    QCOMPARE(rowsOf(item), QStringList({QStringLiteral("d"), QStringLiteral("e")}));
}

void tst_QorNodeItem::insertionOfAHiddenTypeMakesNoRow()
{
    const TinyTree tree;
    Model model;
    model.setHideTypeFilter({QStringLiteral("Group")});
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    TinyTree::add(tree.root(), "Group");
    item.updateInsertedChild(0);
    QCOMPARE(item.childCount(), 0);
}

void tst_QorNodeItem::insertionBehindTheEndIsRefused()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    LogCapture log(osg::LOG_WARNING);
    item.updateInsertedChild(1);
    QCOMPARE(log.take(), QByteArrayList{"1 QorNodeItem::updateInsertedChild: childIndex=1 or "
                                        "nodeVec.size()=1. Skipping update.\n"});
    item.updateInsertedChild(2);
    item.updateInsertedChild(static_cast<unsigned int>(-1));
    QVERIFY(log.take().isEmpty());
    QCOMPARE(item.childCount(), 1);
    const TinyTree empty;
    QorNodeItem bare(&model, NodePath(&empty.root()), nullptr);
    bare.updateInsertedChild(0);
    QCOMPARE(log.take(), QByteArrayList{"1 QorNodeItem::updateInsertedChild: childIndex=0 or "
                                        "nodeVec.size()=0. Skipping update.\n"});
}

void tst_QorNodeItem::insertionBelowADeadNodeIsRefused()
{
    Model model;
    QorNodeItem item(&model, NodePath(nullptr), nullptr);
    LogCapture log;
    item.updateInsertedChild(0);
    QCOMPARE(log.take(), QByteArrayList{"3 QorNodeItem::updateInsertedChild: childIndex=0, itemcount=0, "
                                        "node->childCount=0\n"});
    QCOMPARE(item.childCount(), 0);
}

void tst_QorNodeItem::aRemovedChildLosesItsRow()
{
    const TinyTree tree;
    for (const char* name : {"a", "b", "c"})
        TinyTree::add(tree.root(), "Group", name);
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    const std::unique_ptr<QorNodeItem> removed(item.child(1));
    LogCapture log;
    item.updateRemovedChild(1);
    QCOMPARE(log.take(), QByteArrayList{"3 QorNodeItem::updateRemovedChild: childIndex=1\n"});
    QCOMPARE(rowsOf(item), QStringList({QStringLiteral("a"), QStringLiteral("c")}));
    QVERIFY(item.isValid());
    // It lives on.
    QCOMPARE(removed->data(1).toString(), QStringLiteral("b"));
    QCOMPARE(removed->parent(), &item);
}

void tst_QorNodeItem::removalBehindTheEndIsLogged()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    Model model;
    QorNodeItem item(&model, NodePath(&tree.root()), nullptr);
    item.updateCache(false);
    LogCapture log(osg::LOG_WARNING);
    item.updateRemovedChild(1);
    QCOMPARE(log.take(), QByteArrayList{"1 QorNodeItem::updateRemovedChild: removal at index 1 invalid. Node "
                                        "item only has 1 childs.\n"});
    item.updateRemovedChild(static_cast<unsigned int>(-1));
    QCOMPARE(log.take(),
             QByteArrayList{"1 QorNodeItem::updateRemovedChild: removal at index -1 invalid. Node "
                            "item only has 1 childs.\n"});
    QCOMPARE(item.childCount(), 1);
    QVERIFY(item.isValid());
}

QTEST_APPLESS_MAIN(tst_QorNodeItem)
#include "tst_QorNodeItem.moc"
