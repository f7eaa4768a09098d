// The tree of the workbench at work on whole scenes: opened, compared with the graph, walked through, changed
// and filtered. The scenes are the examples and those of the folder that ORVANE_SCENES names.
#include "SceneDock.h"
#include "SceneFiles.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QorNodeItem.h>
#include <QorObservingScenegraphModel.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <QtTest>
#include <base/Graph.h>

using namespace Orvane;
using namespace Orvane::Qt4;

class tst_TreeOfScenes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void aSceneIsExplored_data();
    void aSceneIsExplored();

private:
    SceneTreeView* tree() const { return _window->findChild<SceneTreeView*>(); }
    QorObservingScenegraphModel* model() const
    {
        return qobject_cast<QorObservingScenegraphModel*>(tree()->model());
    }
    QModelIndex root() const { return model()->index(0, 0); }
    void openRows();
    QVector<QorNodeItem*> items() const;
    void compareWithGraph();
    void select();
    void change();
    void filter(int mode, const QString& types);

    std::unique_ptr<WorkbenchWindow> _window;
    int _explored = 0;
    int _refused = 0;
    int _withPrototypes = 0;
    int _withSharedNodes = 0;
};

namespace {

// Scenes may contain themselves, and nodes that are shared by many.
constexpr int deepestRow = 16;
constexpr int mostRows = 3000;

QorNodeItem* itemOf(const QModelIndex& index)
{
    return static_cast<QorNodeItem*>(index.internalPointer());
}

/// The nodes that have rows below a node, by the rules of the graph alone.
std::vector<Node*> nodesBelow(Node& node, bool showsBodies)
{
    std::vector<Node*> nodes;
    if (node.type()->isProto() && !showsBodies)
        return nodes;
    QList<NodeLink*> links;
    nodeLinks(&node, links, false);
    for (NodeLink* link : qAsConst(links)) {
        const NodePartType part = link->field()->partType();
        if (part != EVENTINP && part != EVENTOUTP)
            nodes.push_back(link->directNode());
    }
    return nodes;
}

MFNode* childrenOf(Node& node)
{
    return dynamic_cast<MFNode*>(node.findField("children", Node::EXACT_FSO));
}

} // namespace

void tst_TreeOfScenes::initTestCase()
{
    _window = std::make_unique<WorkbenchWindow>(false);
    // Rows that go are told at every level of the log.
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    osg::osgLogP->getLogBuf().setEnabled(false);
    _window->resize(900, 600);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
}

void tst_TreeOfScenes::cleanupTestCase()
{
    qInfo("%d scenes explored, %d with prototypes, %d with shared nodes, %d refused", _explored,
          _withPrototypes, _withSharedNodes, _refused);
    QVERIFY(_withPrototypes > 0);
    QVERIFY(_withSharedNodes > 0);
    _window.reset();
}

void tst_TreeOfScenes::aSceneIsExplored_data()
{
    QTest::addColumn<QString>("path");
    QStringList folders{qEnvironmentVariable("ORVANE_SOURCE_DIR") + QStringLiteral("/examples/scenes")};
    if (qEnvironmentVariableIsSet("ORVANE_SCENES"))
        folders << qEnvironmentVariable("ORVANE_SCENES");
    for (const QString& folder : qAsConst(folders)) {
        const QStringList paths = sceneFiles(folder);
        QVERIFY2(!paths.isEmpty(), qPrintable(QStringLiteral("no scenes in ") + folder));
        for (const QString& path : paths)
            QTest::newRow(qPrintable(QDir(folder).relativeFilePath(path))) << path;
    }
}

/// Opens row after row, from top to bottom.
void tst_TreeOfScenes::openRows()
{
    int count = 0;
    for (QModelIndex row = root(); row.isValid() && ++count < mostRows; row = tree()->indexBelow(row)) {
        int depth = 0;
        for (QModelIndex up = row.parent(); up.isValid(); up = up.parent())
            ++depth;
        if (depth < deepestRow)
            tree()->expand(row);
    }
}

/// All rows that the view shows and that have a node.
QVector<QorNodeItem*> tst_TreeOfScenes::items() const
{
    QVector<QorNodeItem*> found;
    for (QModelIndex row = root(); row.isValid(); row = tree()->indexBelow(row)) {
        if (itemOf(row)->node())
            found << itemOf(row);
    }
    return found;
}

void tst_TreeOfScenes::compareWithGraph()
{
    const QVector<QorNodeItem*> shown = items();
    for (const QorNodeItem* item : shown) {
        if (!item->isValid())
            continue;
        const std::vector<Node*> nodes = nodesBelow(*item->node(), model()->isShowingProtoBody());
        QCOMPARE(item->childCount(), static_cast<int>(nodes.size()));
        for (std::size_t row = 0; row < nodes.size(); ++row)
            QCOMPARE(item->child(static_cast<int>(row))->node(), nodes[row]);
    }
}

/// Selects places all over the scene, those of shared nodes above all.
void tst_TreeOfScenes::select()
{
    std::vector<NodePath> places;
    const QVector<QorNodeItem*> shown = items();
    for (int i = 0; i < shown.size(); ++i) {
        if (shown[i]->node()->isShared() || i % 10 == 0)
            places.push_back(shown[i]->nodePath());
    }
    places.resize(std::min<std::size_t>(places.size(), 200));
    tree()->collapseAll();
    for (const NodePath& place : places) {
        _window->selection()->selectPath(place);
        QCOMPARE(_window->selection()->node(), place.node());
        QCOMPARE(itemOf(tree()->currentIndex())->nodePath(), place);
        QVERIFY(tree()->viewport()->rect().intersects(tree()->visualRect(tree()->currentIndex())));
    }
}

/// Adds and removes nodes of the running scene in all groups that stand at one place.
void tst_TreeOfScenes::change()
{
    QRandomGenerator random(1);
    std::vector<NodePath> parents;
    for (const QorNodeItem* item : items()) {
        if (item->isValid() && !item->node()->type()->isProto() && childrenOf(*item->node()) &&
            item->nodePath() == NodePath(item->node()) &&
            model()->searchNodeItems(item->node(), model()->rootItem()).size() == 1)
            parents.push_back(item->nodePath());
    }
    QVERIFY(!parents.empty());
    for (int i = 0; i < 100; ++i) {
        Node* parent = parents[random.bounded(static_cast<quint32>(parents.size()))].node();
        if (!parent)
            continue;
        MFNode& children = *childrenOf(*parent);
        const int size = static_cast<int>(children.size());
        if (i % 2 == 0)
            children.insertNode(0.0, random.bounded(size + 1),
                                createNode(*parent->context(), *findType("Group"), HOST_NC).get(),
                                Field::EXTERNAL_CT);
        else if (size > 0)
            children.removeNode(0.0, random.bounded(size), Field::EXTERNAL_CT);
        if (i % 16 == 0) {
            _window->viewManager()->runFrame();
            QCoreApplication::processEvents();
        }
    }
}

void tst_TreeOfScenes::filter(int mode, const QString& types)
{
    _window->findChild<QLineEdit*>(QStringLiteral("types"))->setText(types);
    _window->findChild<SceneDock*>()->findChild<QComboBox*>()->setCurrentIndex(mode);
    QCoreApplication::processEvents();
}

void tst_TreeOfScenes::aSceneIsExplored()
{
    QFETCH(QString, path);
    if (!_window->open(path)) {
        QVERIFY(!_window->loadError().isEmpty());
        ++_refused;
        return;
    }
    ++_explored;
    for (int i = 0; i < 3; ++i) {
        _window->viewManager()->runFrame();
        QCoreApplication::processEvents();
    }
    QVERIFY(model());
    openRows();
    compareWithGraph();

    auto* bodies = _window->findChild<SceneDock*>()->findChild<QCheckBox*>();
    bodies->setChecked(true);
    openRows();
    compareWithGraph();
    const QVector<QorNodeItem*> shown = items();
    const auto has = [&shown](auto property) { return std::any_of(shown.begin(), shown.end(), property); };
    _withPrototypes += has([](const QorNodeItem* item) { return item->node()->type()->isProto(); });
    _withSharedNodes += has([](const QorNodeItem* item) { return item->node()->isShared(); });
    tree()->viewport()->grab();
    select();
    bodies->setChecked(false);

    filter(2, QStringLiteral("Shape Group"));
    openRows();
    for (const QorNodeItem* item : items())
        QVERIFY(item->node()->type()->name != "Shape" && item->node()->type()->name != "Group");
    filter(0, QString());
    openRows();
    compareWithGraph();

    change();
    compareWithGraph();
    tree()->viewport()->grab();
}

QTEST_MAIN(tst_TreeOfScenes)
#include "tst_TreeOfScenes.moc"
