#include "LogCapture.h"
#include "QorNodeItem.h"
#include "QorObservingScenegraphModel.h"
#include "QorScenegraphItemDelegate.h"
#include "QorScenegraphTreeView.h"
#include "TinyTree.h"
#include <QtGui/QStandardItemModel>
#include <QtTest>
#include <QtWidgets/QHeaderView>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

const QByteArray Class = "QorScenegraphTreeView::";

/// Notes what is selected, and opens what is protected.
class View : public QorScenegraphTreeView
{
    Q_OBJECT

public:
    View()
        : QorScenegraphTreeView(nullptr)
    {
        resize(400, 300);
        connect(this, SIGNAL(nodeSelected(Orvane::NodePath)), this, SLOT(onPath(Orvane::NodePath)));
        connect(this, SIGNAL(nodeSelected(Orvane::Node*)), this, SLOT(onNode(Orvane::Node*)));
    }
    explicit View(View& other)
        : QorScenegraphTreeView(other)
    {
    }

    using QorScenegraphTreeView::onItemExpanded;

    QModelIndex root() const { return model()->index(0, 0); }
    void click(const QModelIndex& index, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(viewport(), button, Qt::NoModifier, visualRect(index).center());
    }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < model()->rowCount(root()); ++row)
            names << model()->index(row, 1, root()).data().toString();
        return names;
    }
    QStringList take() { return std::exchange(selected, {}); }

    QStringList selected;

private slots:
    void onPath(const Orvane::NodePath& path)
    {
        selected << QStringLiteral("path to %1").arg(QString::fromStdString(path.node()->getIDStr()));
    }
    void onNode(Orvane::Node* node)
    {
        selected << QStringLiteral("node %1").arg(node ? QString::fromStdString(node->getIDStr())
                                                       : QStringLiteral("none"));
    }
};

QByteArrayList viewLines(LogCapture& log)
{
    QByteArrayList lines;
    for (const QByteArray& line : log.take()) {
        if (line.contains(Class))
            lines << line;
    }
    return lines;
}

} // namespace

class tst_QorScenegraphTreeView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void looksAndSettings();
    void itHasTheToldSignalsAndSlots();
    void aCopyIsEmpty();

    void aRootIsShownAndOpened();
    void anotherRootGetsAnotherModel();
    void theModelOfAHostGoesWithTheNextRoot();
    void theOwnModelGoesWithTheView();
    void theModelOfAHostOutlivesTheView();
    void theOwnModelGoesWhenAHostSetAnother();
    void aNullRootShowsNothing();
    void onlyScenegraphModelsAreGiven();

    void filtersReachTheNextModel();
    void aFilterTakesThePlaceOfTheOther();
    void aFilterIsRemoved();

    void expansionReadsOneLevel();
    void expansionIsLogged();
    void expansionIsTheOnlyRefresh();
    void anIndexWithoutItemIsIgnored();
    void expansionOfALiveModel();

    void leftAndRightButtonSelect_data();
    void leftAndRightButtonSelect();
    void pressAloneSelectsNothing();
    void keysSelectNothing();
    void clicksBesideTheRowsAreLogged();
    void aRowWithoutNodeIsLogged();
    void theReleaseCountsNotThePress();
    void aDoubleClickOpensNoEditor();
    void theViewMayDieInTheFirstSignal();
    void theNodeMayDieInTheFirstSignal();
    void releasesOverAForeignModelAreIgnored();
    void rowsOfAForeignModelAreLeftAlone();
};

void tst_QorScenegraphTreeView::initTestCase()
{
    QApplication::setStyle(QStringLiteral("Fusion"));
}

void tst_QorScenegraphTreeView::looksAndSettings()
{
    QWidget parent;
    const QorScenegraphTreeView view(&parent);
    QCOMPARE(view.parentWidget(), &parent);
    QCOMPARE(view.objectName(), QStringLiteral("QorScenegraphTreeView"));
    QCOMPARE(view.windowTitle(), QStringLiteral("Scenegraph tree view"));
    QVERIFY(view.alternatingRowColors());
    QCOMPARE(view.indentation(), 14);
    QVERIFY(view.rootIsDecorated());
    QVERIFY(!view.header()->sectionsClickable());
    QVERIFY(!view.header()->sectionsMovable());
    QVERIFY(qobject_cast<QorScenegraphItemDelegate*>(view.itemDelegate()));
    QCOMPARE(view.itemDelegate()->parent(), &view);
    QVERIFY(!view.model());
    QVERIFY(!view.scenegraphModel());
    QVERIFY(!view.dragEnabled());
    QVERIFY(!view.acceptDrops());

    const TinyTree tree;
    View shown;
    shown.setRootNode(&tree.root());
    QCOMPARE(shown.header()->count(), 2);
    QCOMPARE(shown.header()->sectionResizeMode(0), QHeaderView::Stretch);
    QCOMPARE(shown.header()->sectionResizeMode(1), QHeaderView::Stretch);
}

void tst_QorScenegraphTreeView::itHasTheToldSignalsAndSlots()
{
    const QMetaObject& meta = QorScenegraphTreeView::staticMetaObject;
    QCOMPARE(meta.methodCount(), QTreeView::staticMetaObject.methodCount() + 4);
    const auto method = [&meta](const char* signature) { return meta.method(meta.indexOfMethod(signature)); };
    QCOMPARE(method("nodeSelected(Orvane::NodePath)").methodType(), QMetaMethod::Signal);
    QCOMPARE(method("nodeSelected(Orvane::Node*)").methodType(), QMetaMethod::Signal);
    QCOMPARE(method("setRootNode(Orvane::Node*)").methodType(), QMetaMethod::Slot);
    QCOMPARE(method("setRootNode(Orvane::Node*)").access(), QMetaMethod::Public);
    QCOMPARE(method("onItemExpanded(QModelIndex)").methodType(), QMetaMethod::Slot);
    QCOMPARE(method("onItemExpanded(QModelIndex)").access(), QMetaMethod::Protected);
}

void tst_QorScenegraphTreeView::aCopyIsEmpty()
{
    const TinyTree tree;
    QWidget parent;
    View view;
    view.setParent(&parent);
    view.setHideTypeFilter({QStringLiteral("Group")});
    view.setRootNode(&tree.root());
    View copy(view);
    QVERIFY(!copy.parentWidget());
    QVERIFY(!copy.model());
    LogCapture log(osg::LOG_WARNING);
    copy.removeFilter();
    QCOMPARE(log.take().size(), 1);
}

void tst_QorScenegraphTreeView::aRootIsShownAndOpened()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(group, "Shape");
    View view;
    LogCapture log;
    view.setRootNode(&tree.root());
    QCOMPARE(log.take().first(), "3 " + Class + "setRootNode:\n");
    QCOMPARE(view.scenegraphModel()->rootNode(), &tree.root());
    QCOMPARE(static_cast<QAbstractItemModel*>(view.scenegraphModel()), view.model());
    QCOMPARE(view.scenegraphModel()->metaObject(), &QorScenegraphModel::staticMetaObject);
    QVERIFY(!static_cast<QObject*>(view.model())->parent());
    QVERIFY(view.isExpanded(view.root()));
    QCOMPARE(view.names(), QStringList{QStringLiteral("a")});
    QVERIFY(!view.isExpanded(view.model()->index(0, 0, view.root())));
}

void tst_QorScenegraphTreeView::anotherRootGetsAnotherModel()
{
    const TinyTree tree;
    const TinyTree other;
    TinyTree::add(other.root(), "Group", "b");
    View view;
    view.setRootNode(&tree.root());
    const QPointer<QorScenegraphModel> first(view.scenegraphModel());
    view.setRootNode(&other.root());
    QVERIFY(!first);
    QCOMPARE(view.names(), QStringList{QStringLiteral("b")});
    view.setRootNode(&other.root());
    QVERIFY(view.isExpanded(view.root()));
}

void tst_QorScenegraphTreeView::theModelOfAHostGoesWithTheNextRoot()
{
    const TinyTree tree;
    View view;
    const QPointer<QorScenegraphModel> hosts(new QorObservingScenegraphModel(&tree.root(), nullptr));
    view.setModel(hosts);
    QCOMPARE(view.scenegraphModel(), hosts.data());
    view.setRootNode(&tree.root());
    QVERIFY(!hosts);
}

void tst_QorScenegraphTreeView::theOwnModelGoesWithTheView()
{
    const TinyTree tree;
    auto* view = new View;
    view->setRootNode(&tree.root());
    const QPointer<QorScenegraphModel> model(view->scenegraphModel());
    delete view;
    QVERIFY(!model);
}

void tst_QorScenegraphTreeView::theModelOfAHostOutlivesTheView()
{
    const TinyTree tree;
    QorObservingScenegraphModel hosts(&tree.root(), nullptr);
    auto* view = new View;
    view->setModel(&hosts);
    const QPointer<QorScenegraphModel> living(&hosts);
    delete view;
    QVERIFY(living);
}

void tst_QorScenegraphTreeView::theOwnModelGoesWhenAHostSetAnother()
{
    const TinyTree tree;
    const QPointer<QorScenegraphModel> hosts(new QorObservingScenegraphModel(&tree.root(), nullptr));
    View view;
    view.setRootNode(&tree.root());
    const QPointer<QorScenegraphModel> own(view.scenegraphModel());
    view.setModel(hosts);
    QVERIFY(own);
    view.setRootNode(&tree.root());
    QVERIFY(!own);
    QVERIFY(!hosts);
    QVERIFY(view.scenegraphModel());
}

void tst_QorScenegraphTreeView::aNullRootShowsNothing()
{
    const TinyTree tree;
    View view;
    view.setRootNode(nullptr);
    QVERIFY(!view.model());
    view.setRootNode(&tree.root());
    const QPointer<QorScenegraphModel> model(view.scenegraphModel());
    view.setRootNode(nullptr);
    QVERIFY(!model);
    QVERIFY(!view.scenegraphModel());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.grab();
    LogCapture log(osg::LOG_WARNING);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    QCOMPARE(log.take(), QByteArrayList{"2 " + Class + "mousePressEvent: invalid model index.\n"});
}

void tst_QorScenegraphTreeView::onlyScenegraphModelsAreGiven()
{
    View view;
    QStandardItemModel other;
    view.setModel(&other);
    QVERIFY(!view.scenegraphModel());
}

void tst_QorScenegraphTreeView::filtersReachTheNextModel()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Shape", "b");
    View view;
    view.setRootNode(&tree.root());
    view.setShowTypeFilter({QStringLiteral("Shape")});
    QCOMPARE(view.names().size(), 2);
    QVERIFY(view.scenegraphModel()->showTypeFilter().isEmpty());
    view.setRootNode(&tree.root());
    QCOMPARE(view.scenegraphModel()->showTypeFilter(), QStringList{QStringLiteral("Shape")});
    QCOMPARE(view.names(), QStringList{QStringLiteral("b")});
    view.setHideTypeFilter({QStringLiteral("Shape")});
    view.setRootNode(&tree.root());
    QCOMPARE(view.scenegraphModel()->hideTypeFilter(), QStringList{QStringLiteral("Shape")});
    QVERIFY(view.scenegraphModel()->showTypeFilter().isEmpty());
    QCOMPARE(view.names(), QStringList{QStringLiteral("a")});
    view.removeFilter();
    QCOMPARE(view.names().size(), 1);
    view.setRootNode(&tree.root());
    QCOMPARE(view.names().size(), 2);
}

void tst_QorScenegraphTreeView::aFilterTakesThePlaceOfTheOther()
{
    const TinyTree tree;
    View view;
    view.setHideTypeFilter({QStringLiteral("Shape")});
    view.setShowTypeFilter({QStringLiteral("Group")});
    view.setRootNode(&tree.root());
    QVERIFY(view.scenegraphModel()->hideTypeFilter().isEmpty());
    QCOMPARE(view.scenegraphModel()->showTypeFilter(), QStringList{QStringLiteral("Group")});
    LogCapture log(osg::LOG_WARNING);
    view.removeFilter();
    QVERIFY(log.take().isEmpty());
    view.removeFilter();
    QCOMPARE(log.take(), QByteArrayList{"2 " + Class + "removeFilter: no filter found to remove.\n"});
    view.setRootNode(&tree.root());
    QVERIFY(view.scenegraphModel()->showTypeFilter().isEmpty());
}

void tst_QorScenegraphTreeView::aFilterIsRemoved()
{
    View view;
    LogCapture log;
    view.setHideTypeFilter({QStringLiteral("Shape")});
    QVERIFY(log.take().isEmpty());
    view.removeFilter();
    QCOMPARE(log.take(), QByteArrayList{"3 " + Class + "removeFilter\n"});
    view.removeFilter();
    QCOMPARE(log.take(), QByteArrayList({"3 " + Class + "removeFilter\n",
                                         "2 " + Class + "removeFilter: no filter found to remove.\n"}));
}

void tst_QorScenegraphTreeView::expansionReadsOneLevel()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group");
    Node& below = TinyTree::add(group, "Group", "below");
    TinyTree::add(below, "Shape");
    View view;
    view.setRootNode(&tree.root());
    const QModelIndex row = view.model()->index(0, 0, view.root());
    auto* item = static_cast<QorNodeItem*>(row.internalPointer());
    QVERIFY(!item->isValid());
    view.expand(row);
    QVERIFY(item->isValid());
    QCOMPARE(view.model()->index(0, 1, row).data().toString(), QStringLiteral("below"));
    QVERIFY(!item->child(0)->isValid());
}

void tst_QorScenegraphTreeView::expansionIsLogged()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "T\xfcr");
    View view;
    view.setRootNode(&tree.root());
    TinyTree::add(*TinyTree::children(tree.root())[0].directNode(), "Shape");
    int told = 0;
    connect(view.model(), &QAbstractItemModel::layoutChanged, [&told] { ++told; });
    LogCapture log;
    view.onItemExpanded(view.model()->index(0, 0, view.root()));
    QCOMPARE(viewLines(log), QByteArrayList({"3 " + Class + "onItemExpanded.\n",
                                             "3 " + Class + "onItemExpanded: item Group/T\xfcr\n",
                                             "3 " + Class + "onItemExpanded: leaving...\n"}));
    QCOMPARE(told, 1);
    view.onItemExpanded(view.model()->index(0, 0, view.root()));
    QCOMPARE(told, 1);
}

void tst_QorScenegraphTreeView::expansionIsTheOnlyRefresh()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    View view;
    view.setRootNode(&tree.root());
    TinyTree::add(tree.root(), "Group");
    QCOMPARE(view.names().size(), 1);
    view.collapse(view.root());
    view.expand(view.root());
    QCOMPARE(view.names().size(), 1);
    static_cast<QorNodeItem*>(view.root().internalPointer())->invalidate(nullptr);
    view.collapse(view.root());
    view.expand(view.root());
    QCOMPARE(view.names().size(), 2);
}

void tst_QorScenegraphTreeView::anIndexWithoutItemIsIgnored()
{
    View view;
    LogCapture log;
    view.onItemExpanded(QModelIndex());
    QCOMPARE(log.take(), QByteArrayList({"3 " + Class + "onItemExpanded.\n",
                                         "3 " + Class + "onItemExpanded: leaving...\n"}));
}

void tst_QorScenegraphTreeView::expansionOfALiveModel()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    QorObservingScenegraphModel model(&tree.root(), nullptr);
    View view;
    view.setModel(&model);
    view.expand(view.root());
    QCOMPARE(view.names(), QStringList{QStringLiteral("a")});
    TinyTree::add(tree.root(), "Group", "b");
    QCOMPARE(view.names(), QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    view.setModel(nullptr);
}

void tst_QorScenegraphTreeView::leftAndRightButtonSelect_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("selects");
    QTest::newRow("left") << static_cast<int>(Qt::LeftButton) << true;
    QTest::newRow("right") << static_cast<int>(Qt::RightButton) << true;
    QTest::newRow("middle") << static_cast<int>(Qt::MiddleButton) << false;
    QTest::newRow("back") << static_cast<int>(Qt::BackButton) << false;
}

void tst_QorScenegraphTreeView::leftAndRightButtonSelect()
{
    QFETCH(int, button);
    QFETCH(bool, selects);
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    LogCapture log(osg::LOG_WARNING);
    for (const int column : {0, 1}) {
        view.click(view.model()->index(0, column, view.root()), static_cast<Qt::MouseButton>(button));
        QCOMPARE(view.take(), selects ? QStringList({QStringLiteral("path to a"), QStringLiteral("node a")})
                                      : QStringList());
    }
    QVERIFY(log.take().isEmpty());
}

void tst_QorScenegraphTreeView::pressAloneSelectsNothing()
{
    const TinyTree tree;
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QPoint place = view.visualRect(view.root()).center();
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY(view.take().isEmpty());
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(view.take().size(), 2);
    // The view's own selection has followed.
    QCOMPARE(view.currentIndex(), view.root());
}

void tst_QorScenegraphTreeView::keysSelectNothing()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group");
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.setCurrentIndex(view.root());
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return, Qt::Key_Space, Qt::Key_F2})
        QTest::keyClick(&view, key);
    QVERIFY(view.take().isEmpty());
}

void tst_QorScenegraphTreeView::clicksBesideTheRowsAreLogged()
{
    const TinyTree tree;
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    LogCapture log(osg::LOG_WARNING);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        QTest::mouseClick(view.viewport(), button, Qt::NoModifier, QPoint(20, 200));
        QCOMPARE(log.take(), QByteArrayList{"2 " + Class + "mousePressEvent: invalid model index.\n"});
    }
    QVERIFY(view.take().isEmpty());
}

void tst_QorScenegraphTreeView::aRowWithoutNodeIsLogged()
{
    TinyTree tree;
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QModelIndex root = view.root();
    tree.end();
    LogCapture log;
    view.click(root);
    QCOMPARE(log.take(), QByteArrayList{"3 " + Class + "mousePressEvent: np.node()=0!\n"});
    view.click(root, Qt::MiddleButton);
    QVERIFY(log.take().isEmpty());
    QVERIFY(view.take().isEmpty());
}

void tst_QorScenegraphTreeView::theReleaseCountsNotThePress()
{
    const TinyTree tree;
    TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(tree.root(), "Group", "b");
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const auto place = [&](int row) {
        return view.visualRect(view.model()->index(row, 1, view.root())).center();
    };
    QTest::mousePress(view.viewport(), Qt::LeftButton, Qt::NoModifier, place(0));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, place(1));
    QCOMPARE(view.take(), QStringList({QStringLiteral("path to b"), QStringLiteral("node b")}));
}

void tst_QorScenegraphTreeView::aDoubleClickOpensNoEditor()
{
    const TinyTree tree;
    Node& group = TinyTree::add(tree.root(), "Group", "a");
    TinyTree::add(group, "Shape");
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QModelIndex row = view.model()->index(0, 0, view.root());
    const QPoint place = view.visualRect(row).center();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY(view.take().size() >= 4);
    // Whatever the flags say.
    QVERIFY(!view.indexWidget(row));
    QCOMPARE(view.viewport()->findChildren<QWidget*>().size(), 0);
    // The double click counts as the start of an edit; a host that wants it to expand turns that off.
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QVERIFY(view.isExpanded(row));
}

void tst_QorScenegraphTreeView::theViewMayDieInTheFirstSignal()
{
    const TinyTree tree;
    auto* view = new QorScenegraphTreeView(nullptr);
    view->setRootNode(&tree.root());
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view));
    const QRect row = view->visualRect(view->model()->index(0, 0));
    const QPointer<QorScenegraphTreeView> living(view);
    connect(view, QOverload<NodePath>::of(&QorScenegraphTreeView::nodeSelected), [view] { delete view; });
    QMouseEvent release(QEvent::MouseButtonRelease, row.center(), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    // Straight to the handler: the viewport's own delivery needs a living view behind it.
    struct Access : QorScenegraphTreeView
    {
        using QorScenegraphTreeView::mouseReleaseEvent;
    };
    (view->*&Access::mouseReleaseEvent)(&release);
    QVERIFY(!living);
}

void tst_QorScenegraphTreeView::theNodeMayDieInTheFirstSignal()
{
    TinyTree tree;
    View view;
    view.setRootNode(&tree.root());
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    connect(&view, QOverload<NodePath>::of(&QorScenegraphTreeView::nodeSelected), [&tree] { tree.end(); });
    view.click(view.root());
    QCOMPARE(view.take(), QStringList({QStringLiteral("path to root"), QStringLiteral("node none")}));
}

void tst_QorScenegraphTreeView::releasesOverAForeignModelAreIgnored()
{
    QStandardItemModel model;
    model.appendRow(new QStandardItem(QStringLiteral("x")));
    View view;
    view.setItemDelegate(new QItemDelegate(&view));
    view.setModel(&model);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.click(model.index(0, 0));
    QVERIFY(view.take().isEmpty());
}

void tst_QorScenegraphTreeView::rowsOfAForeignModelAreLeftAlone()
{
    QStandardItemModel model;
    auto* row = new QStandardItem(QStringLiteral("x"));
    row->appendRow(new QStandardItem(QStringLiteral("y")));
    model.appendRow(row);
    View view;
    view.setModel(&model);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    view.expand(row->index());
    QVERIFY(view.isExpanded(row->index()));
    QVERIFY(view.indexBelow(row->index()).isValid());
    view.viewport()->grab();
}

QTEST_MAIN(tst_QorScenegraphTreeView)
#include "tst_QorScenegraphTreeView.moc"
