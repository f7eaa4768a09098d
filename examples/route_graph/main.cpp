// Routes of a scene: nodes are boxes, routes are lines. New routes are drawn from the menu of a box,
// and Delete removes the selected lines.
//
//   example-route-graph SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <QSplitter>
#include <QTimer>
#include <QorGraphNodeView.h>
#include <QorGraphView.h>

using namespace Orvane::Qt4;

namespace {

/// 0 for a node that only sends, 1 for one that takes and sends, 2 for one that only takes, -1 without
/// routes.
int columnOf(Orvane::Node& node)
{
    bool sends = false;
    bool takes = false;
    for (unsigned int i = 0; i < node.partDescCount(); ++i) {
        const Orvane::Field* field = node.findField(i);
        sends = sends || (field && field->_outSlot && field->_outSlot->begin() != field->_outSlot->end());
        takes = takes || (field && field->_inSlot && field->_inSlot->begin() != field->_inSlot->end());
    }
    return sends ? (takes ? 1 : 0) : (takes ? 2 : -1);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window(Qt::Vertical);
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* canvas = new QorGraphView(&window);
    window.setSizes({320, 240});

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;

    // The canvas changes the scene itself; with false it would ask by wantsCreateRoute and wantsDeleteRoute.
    canvas->setManageRoutes(true);
    QObject::connect(canvas, &QorGraphView::nodeSelected, canvas, [](Orvane::Node* node) {
        std::printf("%s\n", node ? node->getIDStr().c_str() : "nothing");
    });
    // Where boxes stand is up to the host: here from left to right, once the canvas has its size.
    QTimer::singleShot(0, canvas, [canvas, scene] {
        std::vector<Orvane::Node*> nodes;
        scene->collectAllChildren(nodes, 0);
        int count[3] = {0, 0, 0};
        for (Orvane::Node* node : nodes) {
            const int column = columnOf(*node);
            if (column >= 0)
                canvas->add(node, QPoint(120 + 280 * column, 50 + 80 * count[column]++));
        }
    });
    return host.run(*manager, window);
}
