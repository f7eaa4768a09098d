// The model over nodes of the embedded runtime, in a real tree view. The model breaks rules that Qt's model
// tester asks for (row 0 for every parent, rows below every column, rows that change without notice), so that
// what counts is tested here: whatever views hold on to stays alive, and what they paint is right.
#include "EmbeddedWorld.h"
#include "LogCapture.h"
#include "QorMFieldItem.h"
#include "QorMFieldValueItem.h"
#include "QorNodeModel.h"
#include "QorTools.h"
#include "base/Graph.h"
#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Observer.h>
#include <QtCore/QRandomGenerator>
#include <QtTest>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QTreeView>
#include <set>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const std::set<NodePartDataType> EditableLists = {
    MFBOOL_DT,   MFCOLOR_DT, MFCOLORRGBA_DT, MFDOUBLE_DT, MFFLOAT_DT, MFINT32_DT, MFROTATION_DT,
    MFSTRING_DT, MFVEC2F_DT, MFVEC3F_DT,     MFVEC4F_DT,  MFVEC2D_DT, MFVEC3D_DT, MFVEC4D_DT};

QorFieldItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorFieldItem*>(index.internalPointer());
}

QString display(const QModelIndex& index)
{
    return index.data(Qt::DisplayRole).toString();
}

/// Notes the values that are asked for as text.
class WatchedModel : public QorNodeModel
{
public:
    using QorNodeModel::QorNodeModel;

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (index.isValid() && index.column() == FieldValue && role == Qt::DisplayRole)
            asked.insert(::itemOf(index));
        return QorNodeModel::data(index, role);
    }

    mutable std::set<QorFieldItem*> asked;
};

/// A tree view that can be told to lay out its rows anew.
class View : public QTreeView
{
public:
    View()
    {
        resize(500, 300);
        setEditTriggers(NoEditTriggers);
    }
    void showModel(QAbstractItemModel* model)
    {
        setModel(model);
        show();
        QVERIFY(QTest::qWaitForWindowExposed(this));
    }
    void layOutAnew() { scheduleDelayedItemsLayout(); }
    /// Paints all that shows now, through the event loop.
    void paintNow()
    {
        viewport()->update();
        QCoreApplication::processEvents();
        viewport()->grab();
    }
};

Field& fieldOf(const Node& node, const char* name)
{
    return *node.findField(name, Node::EXACT_FSO);
}

} // namespace

class tst_NodeModelInView : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void everyNodeTypeIsShownAndEveryListChanges();
    void onlyWhatShowsIsTurnedIntoText();
    void theRowsOfALargeFieldComeWithTheirTexts();
    void changesOfTheSceneShowAtTheNextPaint();
    void hugeAndStrangeTextsAreShown();
    void persistentIndexesOutliveTheRowsOfValues_data();
    void persistentIndexesOutliveTheRowsOfValues();
    void aNodeDiesUnderItsView();
    void aFieldTakenOutOfItsNodeStaysReadable();
    void anyUseLeavesTheViewIntact_data();
    void anyUseLeavesTheViewIntact();
};

void tst_NodeModelInView::cleanup()
{
    QorMFieldItem::setValueCountThreshold(50);
}

void tst_NodeModelInView::everyNodeTypeIsShownAndEveryListChanges()
{
    const EmbeddedWorld world;
    const LogCapture log(osg::LOG_FATAL);
    std::vector<NodeType*> types;
    QVERIFY(NodeType::getTypeVec(types, 1) > 200);
    View view;
    int lists = 0;
    for (NodeType* type : types) {
        const NodeRef node = world.make(*type);
        QVERIFY2(node.get(), type->name.c_str());
        QorNodeModel model(node.get(), nullptr);
        view.showModel(&model);

        int row = 0;
        for (unsigned int part = node->partDescCount(); part-- > 0;) {
            Field* field = node->findField(part);
            if (field->_desc->privateAccess()) {
                QVERIFY(!model.index(field).isValid());
                continue;
            }
            const QModelIndex top = model.index(row, 0);
            QCOMPARE(model.index(field), top.sibling(row, QorNodeModel::FieldValue));
            QCOMPARE(display(top), fromRuntime(field->name()));
            QCOMPARE(display(top.sibling(row, QorNodeModel::DataType)), fromRuntime(field->dataTypeName()));
            QVERIFY(!display(top.sibling(row, QorNodeModel::FieldType)).isEmpty());
            QCOMPARE(display(top.sibling(row, QorNodeModel::ID)), QString::number(part));
            QVERIFY(display(top.sibling(row, QorNodeModel::ValueRestriction)) != QLatin1String("UNKNOWN_VR"));
            QVERIFY(top.data(Qt::ToolTipRole).toString().startsWith(QLatin1String("<b>")));

            const bool canChange = EditableLists.count(field->dataType()) != 0;
            QCOMPARE(model.canInsertRows(top), canChange);
            QCOMPARE(model.canRemoveRows(top), canChange);
            if (canChange) {
                ++lists;
                view.expand(top);
                const int size = static_cast<int>(field->size());
                QVERIFY(model.insertRows(size, 1, top));
                QVERIFY(model.insertRows(0, 1, top));
                QCOMPARE(static_cast<int>(field->size()), size + 2);
                QCOMPARE(model.rowCount(top), size + 2);
                QVERIFY(model.removeRows(size + 1, 1, top));
                QVERIFY(model.removeRows(0, 1, top));
                QCOMPARE(static_cast<int>(field->size()), size);
                QCOMPARE(model.rowCount(top), size);
            }
            ++row;
        }
        QCOMPARE(model.rowCount(), row);
        view.paintNow();
        view.setModel(nullptr);
    }
    QVERIFY(lists > 100);
}

void tst_NodeModelInView::onlyWhatShowsIsTurnedIntoText()
{
    const EmbeddedWorld world;
    const NodeRef node = world.make("Script");
    for (int i = 0; i < 500; ++i) {
        Field* field = addField(*node, "f" + std::to_string(i), MFFLOAT_DT, EXPOSEDFIELDP);
        static_cast<MFFloat*>(field)->editValues().assign(5, 1.0F);
    }
    WatchedModel model(node.get(), nullptr);
    View view;
    view.showModel(&model);
    view.expand(model.index(0, 0));
    view.paintNow();
    model.asked.clear();
    view.paintNow();

    const int rowHeight = view.visualRect(model.index(0, 0)).height();
    QVERIFY(rowHeight > 0);
    const auto shown = static_cast<std::size_t>(view.viewport()->height() / rowHeight + 2);
    QVERIFY(!model.asked.empty());
    QVERIFY2(model.asked.size() <= shown, QByteArray::number(static_cast<int>(model.asked.size())));
    QVERIFY(model.asked.count(itemOf(model.index(0, 0))));
    QVERIFY(model.asked.count(itemOf(model.index(0, 0))->child(4)));
    // Below a collapsed row nothing is asked for.
    QVERIFY(!model.asked.count(itemOf(model.index(1, 0))->child(0)));

    view.scrollToBottom();
    view.paintNow();
    model.asked.clear();
    view.paintNow();
    QVERIFY(model.asked.size() <= shown);
    QVERIFY(!model.asked.count(itemOf(model.index(0, 0))));
    QVERIFY(model.asked.count(itemOf(model.index(model.rowCount() - 1, 0))));
}

void tst_NodeModelInView::theRowsOfALargeFieldComeWithTheirTexts()
{
    const EmbeddedWorld world;
    const NodeRef node = world.make("CoordinateInterpolator");
    auto& keys = static_cast<MFFloat&>(fieldOf(*node, "key"));
    for (int i = 0; i < 20000; ++i)
        keys.editValues().push_back(static_cast<float>(i) / 4.0F);
    WatchedModel model(node.get(), nullptr);
    const QModelIndex top = model.index(&keys).sibling(model.index(&keys).row(), 0);
    QCOMPARE(model.rowCount(top), 1);
    QCOMPARE(display(model.index(&keys)), QStringLiteral("20000 values [MFFloat]"));

    View view;
    view.showModel(&model);
    view.paintNow();
    // As a press does it, while the row is collapsed.
    itemOf(top)->toMFieldItem()->updateChildValues(true);
    view.expand(top);
    model.asked.clear();
    view.paintNow();
    QVERIFY(model.asked.size() < 100);
    const QModelIndex last = model.index(19999, QorNodeModel::FieldValue, top);
    QCOMPARE(display(last).trimmed(), QStringLiteral("4999.75"));
    view.scrollTo(last);
    view.paintNow();
    QVERIFY(model.asked.count(itemOf(last)));
    QCOMPARE(itemOf(view.indexAt(view.visualRect(last).center())), itemOf(last));
}

void tst_NodeModelInView::changesOfTheSceneShowAtTheNextPaint()
{
    const EmbeddedWorld world;
    Node& node = world.add("NavigationInfo");
    QorNodeModel model(&node, nullptr);
    View view;
    view.showModel(&model);
    const QModelIndex speed = model.index(&fieldOf(node, "speed"));
    const QModelIndex avatar = model.index(&fieldOf(node, "avatarSize"));
    view.expand(avatar.sibling(avatar.row(), 0));
    view.paintNow();
    const QString first = display(model.index(0, QorNodeModel::FieldValue, avatar));

    fieldOf(node, "speed").setValueByStr(0.0, "7.5");
    fieldOf(node, "avatarSize").setValueByStr(0.0, "9, 8, 7, 6");
    world->runFrame();
    view.paintNow();
    QCOMPARE(display(speed), QStringLiteral("7.5"));
    QCOMPARE(display(avatar), QStringLiteral("4 values [MFFloat]"));
    // Rows of values keep number and text until they are built anew.
    QCOMPARE(model.rowCount(avatar), 3);
    QCOMPARE(display(model.index(0, QorNodeModel::FieldValue, avatar)), first);
}

void tst_NodeModelInView::hugeAndStrangeTextsAreShown()
{
    const EmbeddedWorld world;
    const NodeRef node = world.make("Script");
    std::string huge(100000, 'x');
    huge[5] = '\0';
    addField(*node, "one", SFSTRING_DT, EXPOSEDFIELDP)->setValueByStr(0.0, std::string(100000, 'x').c_str());
    auto& many = static_cast<MFString&>(*addField(*node, "many", MFSTRING_DT, EXPOSEDFIELDP));
    many.addValue(huge);
    many.addValue("\xe6\xbc\xa2\xe5\xad\x97, \xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d");
    many.addValue("first\nsecond\ttab <b>bold</b> %1");
    many.addValue("\xff\xfe\x80");
    QorNodeModel model(node.get(), nullptr);
    View view;
    view.showModel(&model);
    const QModelIndex top = model.index(&many);
    view.expand(top.sibling(top.row(), 0));
    view.paintNow();
    const auto text = [&](int row) { return display(model.index(row, QorNodeModel::FieldValue, top)); };
    QCOMPARE(text(0).size(), 100000);
    QCOMPARE(text(0).at(5), QChar(0));
    QCOMPARE(text(1), QString::fromUtf8("\xe6\xbc\xa2\xe5\xad\x97, \xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d"));
    QCOMPARE(text(2), QStringLiteral("first\nsecond\ttab <b>bold</b> %1"));
    QCOMPARE(text(3), QString::fromLatin1("\xff\xfe\x80"));
    QCOMPARE(display(model.index(&fieldOf(*node, "one"))).size(), 100000);
}

void tst_NodeModelInView::persistentIndexesOutliveTheRowsOfValues_data()
{
    QTest::addColumn<bool>("isInTopRow");
    QTest::newRow("field in the top row") << true;
    QTest::newRow("field in another row") << false;
}

void tst_NodeModelInView::persistentIndexesOutliveTheRowsOfValues()
{
    QFETCH(bool, isInTopRow);
    const EmbeddedWorld world;
    const NodeRef node = world.make("Script");
    addField(*node, "list", MFINT32_DT, EXPOSEDFIELDP)->setValueByStr(0.0, "1, 2, 3, 4, 5");
    if (!isInTopRow)
        addField(*node, "above", SFBOOL_DT, EXPOSEDFIELDP);
    auto& list = static_cast<MFInt32&>(fieldOf(*node, "list"));
    QorNodeModel model(node.get(), nullptr);
    View view;
    view.showModel(&model);
    const QModelIndex top = model.index(isInTopRow ? 0 : 1, 0);
    QCOMPARE(itemOf(top)->field(), &list);
    view.expand(top);
    QList<QPersistentModelIndex> kept;
    for (int row = 0; row < 5; ++row)
        kept << QPersistentModelIndex(model.index(row, QorNodeModel::FieldValue, top));
    view.setCurrentIndex(kept[2]);
    view.selectAll();
    view.paintNow();

    QVERIFY(model.insertRows(1, 2, top));
    view.layOutAnew();
    view.paintNow();
    QVERIFY(model.removeRows(6, 1, top));
    view.layOutAnew();
    view.paintNow();
    QVERIFY(model.removeRows(0, 1, top));
    itemOf(top)->toMFieldItem()->updateChildValues(false);
    view.layOutAnew();
    view.paintNow();

    QCOMPARE(list.values(), std::vector<int>({0, 0, 2, 3, 4}));
    for (const QPersistentModelIndex& index : kept) {
        if (!index.isValid())
            continue;
        QCOMPARE(itemOf(index)->field(), &list);
        QVERIFY(itemOf(index)->toMFieldValueItem());
        QCOMPARE(itemOf(index.parent()), itemOf(top));
        QVERIFY(!display(index).isEmpty());
    }
    QVERIFY(view.isExpanded(top));
    for (int row = 0; row < 5; ++row) {
        const QModelIndex cell = model.index(row, QorNodeModel::FieldValue, top);
        QCOMPARE(display(cell).trimmed(), QString::number(list.values()[static_cast<std::size_t>(row)]));
        // The view paints the rows that the model has now.
        QCOMPARE(itemOf(view.indexAt(view.visualRect(top).center() +
                                     QPoint(30, (row + 1) * view.visualRect(top).height()))),
                 itemOf(cell));
    }
}

void tst_NodeModelInView::aNodeDiesUnderItsView()
{
    /// Lets go of the model before the node is gone, as whoever shows a node has to.
    class Guard : public Observer
    {
    public:
        Guard(Node* node, std::unique_ptr<QorNodeModel>& model)
            : Observer(nullptr)
            , _node(node)
            , _model(model)
        {
            Node::_deleteObject.attach(*this);
        }
        void notify(const double&, BaseObject* first, BaseObject*, BaseObject*) override
        {
            if (dynamic_cast<Node*>(first) == _node)
                _model.reset();
        }

    private:
        Node* _node;
        std::unique_ptr<QorNodeModel>& _model;
    };

    const EmbeddedWorld world;
    Node& node = world.add("NavigationInfo");
    auto model = std::make_unique<QorNodeModel>(&node, nullptr);
    const Guard guard(&node, model);
    View view;
    view.showModel(model.get());
    view.expandAll();
    const QModelIndex avatar = model->index(&fieldOf(node, "avatarSize"));
    QVERIFY(model->insertRows(1, 1, avatar));
    const QPersistentModelIndex kept = model->index(2, 1, avatar);
    view.setCurrentIndex(kept);
    view.selectAll();
    view.paintNow();

    world.removeAdded();
    QVERIFY(!model);
    QVERIFY(!kept.isValid());
    QVERIFY(!view.currentIndex().isValid());
    view.paintNow();
    world->runFrame();
    view.paintNow();
}

void tst_NodeModelInView::aFieldTakenOutOfItsNodeStaysReadable()
{
    const EmbeddedWorld world;
    const NodeRef node = world.make("Script");
    Field* list = addField(*node, "list", MFFLOAT_DT, EXPOSEDFIELDP);
    list->setValueByStr(0.0, "1, 2");
    Field* single = addField(*node, "single", SFFLOAT_DT, EXPOSEDFIELDP);
    QorNodeModel model(node.get(), nullptr);
    View view;
    view.showModel(&model);
    view.expandAll();
    QVERIFY(removeField(*node, *list));
    QVERIFY(removeField(*node, *single));
    view.paintNow();
    QVERIFY(model.insertRows(1, 1, model.index(list)));
    view.layOutAnew();
    view.paintNow();
    QCOMPARE(model.rowCount(model.index(list)), 3);
    QVERIFY(!QorNodeModel(node.get(), nullptr).index(list).isValid());
}

void tst_NodeModelInView::anyUseLeavesTheViewIntact_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<bool>("laysOut");
    for (quint32 seed = 1; seed <= 3; ++seed) {
        QTest::addRow("rows laid out anew, %u", seed) << seed << true;
        QTest::addRow("view not told, %u", seed) << seed << false;
    }
}

void tst_NodeModelInView::anyUseLeavesTheViewIntact()
{
    QFETCH(quint32, seed);
    QFETCH(bool, laysOut);
    // A view that is not told asks for rows that are no more, one line each.
    const LogCapture log(osg::LOG_LOG);
    QorMFieldItem::setValueCountThreshold(12);
    const EmbeddedWorld world;
    const NodeRef node = world.make("Script");
    const NodePartDataType types[] = {MFFLOAT_DT, SFVEC3F_DT, MFBOOL_DT,     MFSTRING_DT, SFSTRING_DT,
                                      MFVEC3F_DT, MFNODE_DT,  MFROTATION_DT, MFTIME_DT};
    for (int i = 0; i < 18; ++i)
        addField(*node, "f" + std::to_string(i), types[i % 9], EXPOSEDFIELDP);
    QorNodeModel model(node.get(), nullptr);
    View view;
    view.showModel(&model);
    QRandomGenerator random(seed);
    QList<QPersistentModelIndex> kept;
    const auto pick = [&] {
        QModelIndex index = model.index(random.bounded(model.rowCount()), random.bounded(10));
        if (random.bounded(2) && model.rowCount(index) > 0)
            index = model.index(random.bounded(model.rowCount(index)), random.bounded(10), index);
        return index;
    };
    for (int step = 0; step < 250; ++step) {
        const QModelIndex index = pick();
        QorMFieldItem* list = itemOf(index)->toMFieldItem();
        const QModelIndex field = list ? index.sibling(index.row(), 0) : index.parent();
        switch (random.bounded(13)) {
        case 0:
            view.setExpanded(index.sibling(index.row(), 0), random.bounded(3) != 0);
            break;
        case 1:
            view.setCurrentIndex(index);
            break;
        case 2:
            kept << QPersistentModelIndex(index);
            break;
        case 3:
            view.scrollTo(index);
            break;
        case 4:
            view.verticalScrollBar()->setValue(random.bounded(200));
            break;
        case 5:
        case 6:
            if (field.isValid())
                model.insertRows(random.bounded(static_cast<int>(itemOf(field)->field()->size()) + 2),
                                 1 + random.bounded(3), field);
            break;
        case 7:
            if (field.isValid())
                model.removeRows(random.bounded(static_cast<int>(itemOf(field)->field()->size()) + 1), 1,
                                 field);
            break;
        case 8:
            if (list && !view.isExpanded(index.sibling(index.row(), 0)))
                list->updateChildValues(true);
            break;
        case 9:
            model.setData(index, QStringLiteral("1 2 3"));
            break;
        case 10:
            QTest::mouseClick(
                view.viewport(), Qt::LeftButton, Qt::NoModifier,
                QPoint(random.bounded(view.viewport()->width()), random.bounded(view.viewport()->height())));
            break;
        case 11: {
            const Qt::Key keys[] = {Qt::Key_Down, Qt::Key_Up, Qt::Key_Right, Qt::Key_Left, Qt::Key_End};
            QTest::keyClick(&view, keys[random.bounded(5)]);
            break;
        }
        case 12:
            world->runFrame();
            break;
        }
        if (laysOut)
            view.layOutAnew();
        view.paintNow();
        for (const QPersistentModelIndex& persistent : qAsConst(kept)) {
            if (persistent.isValid())
                QVERIFY(itemOf(persistent)->field()->node() == node.get());
        }
    }
    view.setModel(nullptr);
}

QTEST_MAIN(tst_NodeModelInView)
#include "tst_NodeModelInView.moc"
