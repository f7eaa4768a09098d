// What the tree of a scene costs: attaching it, opening rows, and following a running graph; beside an item
// model that is filled with everything at once. What counts is the time of the processor.
#include "LineReporter.h"
#include "QorNodeItem.h"
#include "QorObservingScenegraphModel.h"
#include "QorScenegraphTreeView.h"
#include "QorTools.h"
#include "base/Graph.h"
#include "base/NodeClass.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QtCore/QRandomGenerator>
#include <QtGui/QPixmap>
#include <QtGui/QStandardItemModel>
#include <QtWidgets/QApplication>
#include <QtWidgets/QTreeView>
#include <benchmark/benchmark.h>
#include <ctime>
#include <malloc.h>
#include <memory>

namespace {

using namespace Orvane;
using namespace Orvane::Qt4;

MFNode& childrenOf(Node& node)
{
    return static_cast<MFNode&>(*node.findField("children", Node::EXACT_FSO));
}

/// A running scene of groups that each have as many shapes.
class World
{
public:
    World(int groups, int shapes)
        : _context(Context::create())
        , _scene(createRoot(_context, "Scene", nullptr, HOST_NC))
    {
        for (int i = 0; i < groups; ++i) {
            Node& group = add(*_scene, "Group", i);
            for (int k = 0; k < shapes; ++k)
                add(group, "Shape", k);
        }
        _context->setRootState(0.0, RUNNING_NS);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World() { _context->subRef(); }

    Node& scene() const { return *_scene; }
    void runFrame() const { _context->runFrame(); }
    Node& group(int row) const { return *childrenOf(*_scene)[row].directNode(); }
    Node& add(Node& parent, const char* type, int row) const
    {
        const NodeRef node = createNode(*_context, *findType(type), HOST_NC);
        childrenOf(parent).insertNode(0.0, row, node.get(), Field::EXTERNAL_CT);
        return *node;
    }

private:
    Context* _context;
    Node* _scene;
};

/// The scene of a million nodes, made once.
const World& bigWorld()
{
    static const World world(1000, 999);
    return world;
}

/// A shown view that can be made to lay out and paint its rows.
template <class V>
class Shown : public V
{
public:
    Shown()
        : V(nullptr)
        , _picture(500, 400)
    {
        this->resize(500, 400);
        this->show();
        QCoreApplication::processEvents();
    }
    void layOut() { this->executeDelayedItemsLayout(); }
    void paint() { this->viewport()->render(&_picture); }

private:
    QPixmap _picture;
};

class SceneView : public QorScenegraphTreeView
{
public:
    explicit SceneView(QWidget* parent)
        : QorScenegraphTreeView(parent)
    {
    }
};

/// Type and name of a node.
QStandardItem* insertEager(QStandardItem* parent, int row, const Node& node)
{
    auto* item = new QStandardItem(fromRuntime(node.type()->name));
    parent->insertRow(row, {item, new QStandardItem(fromRuntime(nodeName(&node)))});
    return item;
}

/// The same, and all that hangs below.
void fill(QStandardItem* parent, int row, Node& node)
{
    QStandardItem* item = insertEager(parent, row, node);
    std::vector<Node*> children;
    node.collectAllChildren(children, 0);
    for (std::size_t i = 0; i < children.size(); ++i)
        fill(item, static_cast<int>(i), *children[i]);
}

/// Seconds of the processor that \a run takes.
template <class Run>
double secondsOf(Run run)
{
    const std::clock_t start = std::clock();
    run();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

std::size_t heapBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void attach(benchmark::State& state, const World& world)
{
    Shown<SceneView> view;
    for (auto _ : state) {
        std::unique_ptr<QorObservingScenegraphModel> model;
        state.SetIterationTime(secondsOf([&] {
            model = std::make_unique<QorObservingScenegraphModel>(&world.scene(), nullptr);
            view.setModel(model.get());
            view.layOut();
        }));
        if (model->rowCount(model->index(0, 0)) != 1)
            state.SkipWithError("the tree is not as expected");
        view.setModel(nullptr);
    }
}

void attachPlainView(benchmark::State& state, const World& world)
{
    Shown<SceneView> view;
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] {
            view.setRootNode(&world.scene());
            view.layOut();
        }));
    }
}

void attachEager(benchmark::State& state, const World& world)
{
    Shown<QTreeView> view;
    for (auto _ : state) {
        QStandardItemModel model;
        state.SetIterationTime(secondsOf([&] {
            fill(model.invisibleRootItem(), 0, world.scene());
            view.setModel(&model);
            view.layOut();
        }));
        view.setModel(nullptr);
    }
}

/// Opens the root of a tree that was just attached.
void expand(benchmark::State& state, int count)
{
    const World world(count, 0);
    Shown<SceneView> view;
    for (auto _ : state) {
        QorObservingScenegraphModel model(&world.scene(), nullptr);
        view.setModel(&model);
        view.layOut();
        state.SetIterationTime(secondsOf([&] {
            view.expand(model.index(0, 0));
            view.layOut();
        }));
        if (model.rowCount(model.index(0, 0)) != count)
            state.SkipWithError("rows are missing");
        view.setModel(nullptr);
    }
}

/// Opens a root whose rows are all there.
void expandEager(benchmark::State& state, int count)
{
    const World world(count, 0);
    Shown<QTreeView> view;
    QStandardItemModel model;
    fill(model.invisibleRootItem(), 0, world.scene());
    view.setModel(&model);
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] {
            view.expand(model.index(0, 0));
            view.layOut();
        }));
        view.collapse(model.index(0, 0));
        view.layOut();
    }
}

/// From the scene to the open root. Rows of ours are made when it opens; the other model has made them all.
void makeAndExpand(benchmark::State& state, int count)
{
    const World world(count, 0);
    Shown<SceneView> view;
    for (auto _ : state) {
        std::unique_ptr<QorObservingScenegraphModel> model;
        state.SetIterationTime(secondsOf([&] {
            model = std::make_unique<QorObservingScenegraphModel>(&world.scene(), nullptr);
            view.setModel(model.get());
            view.expand(model->index(0, 0));
            view.layOut();
        }));
        if (model->rowCount(model->index(0, 0)) != count)
            state.SkipWithError("rows are missing");
        view.setModel(nullptr);
    }
}

void makeAndExpandEager(benchmark::State& state, int count)
{
    const World world(count, 0);
    Shown<QTreeView> view;
    for (auto _ : state) {
        QStandardItemModel model;
        state.SetIterationTime(secondsOf([&] {
            fill(model.invisibleRootItem(), 0, world.scene());
            view.setModel(&model);
            view.expand(model.index(0, 0));
            view.layOut();
        }));
        view.setModel(nullptr);
    }
}

/// A thousand children come and go in one group, with a frame and a picture sixty times: a second of a
/// lively scene.
template <class Change, class Draw>
void changes(benchmark::State& state, Change change, Draw draw)
{
    QRandomGenerator random(1);
    for (auto _ : state) {
        state.SetIterationTime(secondsOf([&] {
            for (int i = 0; i < 1000; ++i) {
                change(i % 2 == 0, random.bounded(1000));
                if (i % 16 == 0)
                    draw();
            }
        }));
    }
}

void changeGraph(const World& world, Node& parent, bool adds, int row)
{
    if (adds)
        world.add(parent, "Shape", row);
    else
        childrenOf(parent).removeNode(0.0, row, Field::EXTERNAL_CT);
}

void liveChanges(benchmark::State& state, int groups, int changedGroup, bool paints)
{
    const World world(groups, groups == 1 ? 1000 : 10);
    Node& parent = world.group(changedGroup);
    for (int i = childrenOf(parent).size(); i < 1000; ++i)
        world.add(parent, "Shape", 0);
    QorObservingScenegraphModel model(&world.scene(), nullptr);
    Shown<SceneView> view;
    view.setModel(&model);
    view.expand(model.index(0, 0));
    for (int row = 0; row < groups; ++row)
        view.expand(model.index(row, 0, model.index(0, 0)));
    view.scrollTo(model.index(500, 0, model.index(changedGroup, 0, model.index(0, 0))));
    changes(
        state, [&](bool adds, int row) { changeGraph(world, parent, adds, row); },
        [&] {
            world.runFrame();
            view.layOut();
            if (paints)
                view.paint();
        });
    if (model.rowCount(model.index(changedGroup, 0, model.index(0, 0))) !=
        static_cast<int>(childrenOf(parent).size()))
        state.SkipWithError("the tree has not followed");
    view.setModel(nullptr);
}

/// Changes below rows that were never opened.
void unseenChanges(benchmark::State& state)
{
    const World world(1, 1000);
    Node& parent = world.group(0);
    QorObservingScenegraphModel model(&world.scene(), nullptr);
    Shown<SceneView> view;
    view.setModel(&model);
    changes(
        state, [&](bool adds, int row) { changeGraph(world, parent, adds, row); },
        [&] {
            world.runFrame();
            view.paint();
        });
    view.setModel(nullptr);
}

void graphAlone(benchmark::State& state)
{
    const World world(1, 1000);
    Node& parent = world.group(0);
    changes(
        state, [&](bool adds, int row) { changeGraph(world, parent, adds, row); }, [&] { world.runFrame(); });
}

void eagerChanges(benchmark::State& state, int groups, int changedGroup, bool paints)
{
    const World world(groups, groups == 1 ? 1000 : 10);
    Node& group = world.group(changedGroup);
    for (int i = childrenOf(group).size(); i < 1000; ++i)
        world.add(group, "Shape", 0);
    Shown<QTreeView> view;
    QStandardItemModel model;
    fill(model.invisibleRootItem(), 0, world.scene());
    view.setModel(&model);
    view.expandAll();
    QStandardItem* parent = model.item(0)->child(changedGroup);
    view.scrollTo(model.indexFromItem(parent->child(500)));
    changes(
        state,
        [&](bool adds, int row) {
            if (adds)
                insertEager(parent, row, group);
            else
                parent->removeRow(row);
        },
        [&] {
            view.layOut();
            if (paints)
                view.paint();
        });
}

/// A thousand times the way from a place to its row, in a tree of which all is open.
void findPlace(benchmark::State& state)
{
    const World world(1000, 20);
    QorObservingScenegraphModel model(&world.scene(), nullptr);
    model.rootItem()->updateCache(false);
    for (int row = 0; row < 1000; ++row)
        model.rootItem()->child(row)->updateCache(false);
    const NodePath last(childrenOf(world.group(999))[19].directNode());
    for (auto _ : state)
        benchmark::DoNotOptimize(model.index(last).isValid());
}

/// What the heap grows by when a tree is attached to a scene.
void reportMemory(const char* name, const World& world)
{
    QTreeView view;
    view.resize(500, 400);
    const std::size_t before = heapBytes();
    QorObservingScenegraphModel model(&world.scene(), nullptr);
    view.setModel(&model);
    QCoreApplication::processEvents();
    std::printf("%s;orvane;%.1f;kB;1\n", name, static_cast<double>(heapBytes() - before) / 1024.0);
    view.setModel(nullptr);
}

void reportEagerMemory(const char* name, const World& world)
{
    const std::size_t before = heapBytes();
    QStandardItemModel model;
    fill(model.invisibleRootItem(), 0, world.scene());
    std::printf("%s;QStandardItemModel;%.1f;kB;1\n", name,
                static_cast<double>(heapBytes() - before) / 1024.0);
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    // Rows that go are told at every level of the log.
    osg::doInitLog();
    osg::osgLogP->setLogType(osg::LOG_BUFFER, true);
    osg::osgLogP->getLogBuf().setEnabled(false);

    {
        const World middle(100, 999);
        reportMemory("memory_attach_100k_nodes", middle);
        reportEagerMemory("memory_attach_100k_nodes", middle);
        reportMemory("memory_attach_1m_nodes", bigWorld());
    }
    static const World middle(100, 999);
    const auto add = [](const char* name, auto run, benchmark::TimeUnit unit) {
        benchmark::RegisterBenchmark(name, run)->Unit(unit)->UseManualTime();
    };
    add(
        "attach_1m_nodes", [](benchmark::State& state) { attach(state, bigWorld()); },
        benchmark::kMicrosecond);
    add(
        "attach_1m_nodes_and_open_root", [](benchmark::State& state) { attachPlainView(state, bigWorld()); },
        benchmark::kMicrosecond);
    add(
        "attach_100k_nodes", [](benchmark::State& state) { attach(state, middle); }, benchmark::kMicrosecond);
    add(
        "attach_100k_nodes/QStandardItemModel", [](benchmark::State& state) { attachEager(state, middle); },
        benchmark::kMicrosecond);
    add(
        "expand_1k", [](benchmark::State& state) { expand(state, 1000); }, benchmark::kMicrosecond);
    add(
        "expand_1k/QStandardItemModel", [](benchmark::State& state) { expandEager(state, 1000); },
        benchmark::kMicrosecond);
    add(
        "expand_100k", [](benchmark::State& state) { expand(state, 100000); }, benchmark::kMillisecond);
    add(
        "expand_100k/QStandardItemModel", [](benchmark::State& state) { expandEager(state, 100000); },
        benchmark::kMillisecond);
    add(
        "make_and_expand_100k", [](benchmark::State& state) { makeAndExpand(state, 100000); },
        benchmark::kMillisecond);
    add(
        "make_and_expand_100k/QStandardItemModel",
        [](benchmark::State& state) { makeAndExpandEager(state, 100000); }, benchmark::kMillisecond);
    add(
        "changes_1k_in_1k_rows", [](benchmark::State& state) { liveChanges(state, 1, 0, false); },
        benchmark::kMillisecond);
    add(
        "changes_1k_in_1k_rows/QStandardItemModel",
        [](benchmark::State& state) { eagerChanges(state, 1, 0, false); }, benchmark::kMillisecond);
    add(
        "changes_1k_in_1k_rows_painted", [](benchmark::State& state) { liveChanges(state, 1, 0, true); },
        benchmark::kMillisecond);
    add(
        "changes_1k_in_1k_rows_painted/QStandardItemModel",
        [](benchmark::State& state) { eagerChanges(state, 1, 0, true); }, benchmark::kMillisecond);
    add(
        "changes_1k_in_12k_rows", [](benchmark::State& state) { liveChanges(state, 1000, 999, false); },
        benchmark::kMillisecond);
    add(
        "changes_1k_in_12k_rows/QStandardItemModel",
        [](benchmark::State& state) { eagerChanges(state, 1000, 999, false); }, benchmark::kMillisecond);
    add("changes_1k_in_1k_rows/graph_alone", graphAlone, benchmark::kMillisecond);
    add("changes_1k_unseen", unseenChanges, benchmark::kMillisecond);
    benchmark::RegisterBenchmark("find_place_in_21k_rows", findPlace)->Unit(benchmark::kMicrosecond);
    return runBenchmarks(argc, argv);
}
