// What the route graph costs: painting, hovering, dragging and importing, beside another graph canvas.
#include "BenchNode.h"
#include "LineReporter.h"
#include "QorGraphNodeView.h"
#include "QorGraphView.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Route.h>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <benchmark/benchmark.h>
#include <memory>
#include <vector>
#ifdef ORVANE_BENCH_QTNODES
#include "QtNodesGraph.h"
#endif

namespace {

using namespace Orvane;
using namespace Orvane::Qt4;

struct Grid
{
    int columns;
    int rows;
};
constexpr Grid grid1000{40, 25};
constexpr Grid grid10000{125, 80};

/// A group of Transforms, each of which routes three of its fields to the next three nodes.
class RoutedScene
{
public:
    explicit RoutedScene(int count)
        : _context(Context::create())
        , root(createRoot(_context, "Scene", nullptr, HOST_NC))
    {
        auto& children = static_cast<MFNode&>(*root->findField("children", Node::EXACT_FSO));
        for (int i = 0; i < count; ++i) {
            const NodeRef node = createNode(*_context, *findType("Transform"), HOST_NC);
            children.addNode(0.0, node.get(), Field::EXTERNAL_CT);
            nodes.push_back(node.get());
        }
        const char* const fields[] = {"translation", "rotation", "scale"};
        for (int i = 0; i < count; ++i) {
            for (int k = 0; k < 3; ++k) {
                Field& from = *nodes[static_cast<std::size_t>(i)]->findField(fields[k], Node::EXACT_FSO);
                Field& to = *nodes[static_cast<std::size_t>((i + k + 1) % count)]->findField(fields[k],
                                                                                             Node::EXACT_FSO);
                from.createOutSlot(false);
                to.createInSlot(false);
                Route::create(*from._outSlot, *to._inSlot, Route::SCENE_RT);
            }
        }
    }
    RoutedScene(const RoutedScene&) = delete;
    RoutedScene& operator=(const RoutedScene&) = delete;
    ~RoutedScene() { _context->subRef(); }

private:
    Context* _context;

public:
    Node* root;
    std::vector<Node*> nodes;
};

/// The scene on a canvas, all of it in sight.
class RoutedGraph
{
public:
    explicit RoutedGraph(const Grid& grid)
        : _scene(grid.columns * grid.rows)
    {
        view.resize(1920, 1080);
        const double cellWidth = 1900.0 / grid.columns;
        const double cellHeight = 1040.0 / grid.rows;
        // The boxes are added while the canvas is hidden, so that it reads the routes once.
        for (std::size_t i = 0; i < _scene.nodes.size(); ++i) {
            const int column = static_cast<int>(i) % grid.columns;
            const int row = static_cast<int>(i) / grid.columns;
            QorGraphNodeView* const box = view.add(_scene.nodes[i], QPoint());
            box->move(QPointF(10 + column * cellWidth, 10 + row * cellHeight));
            box->resize(QSizeF(cellWidth * 0.75, cellWidth * 0.75 / 4));
            _boxes.push_back(box);
        }
        view.show();
        // Or a press between lines that stand so close would hit one of them.
        QorGraphView::setRouteHitDistance(1.0F);
    }

    /// A place in the upper part of a box, off the lines that cross its middle.
    QPoint onNode(int index) const
    {
        const QRectF box = _boxes[static_cast<std::size_t>(index)]->rect();
        return {static_cast<int>(box.center().x()), static_cast<int>(box.y() + 2.0)};
    }

private:
    RoutedScene _scene;
    std::vector<QorGraphNodeView*> _boxes;

public:
    QorGraphView view;
};

QWidget& surfaceOf(RoutedGraph& graph)
{
    return graph.view;
}
#ifdef ORVANE_BENCH_QTNODES
QWidget& surfaceOf(QtNodesGraph& graph)
{
    return *graph.view.viewport();
}
template <class Graph>
std::unique_ptr<Graph> makeGraph(const Grid& grid)
{
    if constexpr (std::is_same_v<Graph, QtNodesGraph>)
        return std::make_unique<QtNodesGraph>(grid.columns, grid.rows);
    else
        return std::make_unique<Graph>(grid);
}
#else
template <class Graph>
std::unique_ptr<Graph> makeGraph(const Grid& grid)
{
    return std::make_unique<Graph>(grid);
}
#endif

void sendMouse(QWidget& widget, QEvent::Type type, QPoint at, Qt::MouseButtons buttons)
{
    const auto button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget.mapToGlobal(at), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

template <class Graph>
void paint(benchmark::State& state, Grid grid)
{
    const auto graph = makeGraph<Graph>(grid);
    QCoreApplication::processEvents();
    for (auto _ : state)
        surfaceOf(*graph).repaint();
}

/// One move of the mouse over boxes and lines, and the picture that follows.
template <class Graph>
void hover(benchmark::State& state)
{
    const auto graph = makeGraph<Graph>(grid1000);
    QCoreApplication::processEvents();
    QPoint at(5, 5);
    for (auto _ : state) {
        at = QPoint((at.x() + 7) % 1900, (at.y() + 3) % 1000);
        sendMouse(surfaceOf(*graph), QEvent::MouseMove, at, Qt::NoButton);
        QCoreApplication::processEvents();
    }
}

/// One move of a box that is dragged, and the picture that follows.
template <class Graph>
void drag(benchmark::State& state)
{
    const auto graph = makeGraph<Graph>(grid1000);
    QCoreApplication::processEvents();
    QWidget& surface = surfaceOf(*graph);
    QPoint at = graph->onNode(410);
    sendMouse(surface, QEvent::MouseMove, at, Qt::NoButton);
    sendMouse(surface, QEvent::MouseButtonPress, at, Qt::LeftButton);
    const QPoint before = graph->onNode(410);
    int step = 0;
    for (auto _ : state) {
        at += ++step % 100 < 50 ? QPoint(5, 2) : QPoint(-5, -2);
        sendMouse(surface, QEvent::MouseMove, at, Qt::LeftButton);
        QCoreApplication::processEvents();
    }
    if (step % 100 != 99 && graph->onNode(410) == before)
        state.SkipWithError("nothing is dragged");
    sendMouse(surface, QEvent::MouseButtonRelease, at, Qt::NoButton);
}

void import(benchmark::State& state)
{
    const RoutedScene scene(1000);
    for (auto _ : state) {
        QorGraphView view;
        view.resize(1920, 1080);
        view.show();
        view.importChildrenRecursive(scene.root);
        if (!view.viewOf(scene.nodes.front()))
            state.SkipWithError("nothing is imported");
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    const auto add = [](const char* name, auto run) {
        return benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond);
    };
    add("graph_paint_1000", [](benchmark::State& state) { paint<RoutedGraph>(state, grid1000); });
    add("graph_paint_10000", [](benchmark::State& state) { paint<RoutedGraph>(state, grid10000); });
    add("graph_hover_1000", [](benchmark::State& state) { hover<RoutedGraph>(state); });
    add("graph_drag_1000", [](benchmark::State& state) { drag<RoutedGraph>(state); });
    add("graph_import_1000", import)->Iterations(1);
#ifdef ORVANE_BENCH_QTNODES
    add("graph_paint_1000/qtnodes", [](benchmark::State& state) { paint<QtNodesGraph>(state, grid1000); });
    add("graph_paint_10000/qtnodes", [](benchmark::State& state) { paint<QtNodesGraph>(state, grid10000); });
    add("graph_hover_1000/qtnodes", [](benchmark::State& state) { hover<QtNodesGraph>(state); });
    add("graph_drag_1000/qtnodes", [](benchmark::State& state) { drag<QtNodesGraph>(state); });
#endif
    return runBenchmarks(argc, argv);
}
