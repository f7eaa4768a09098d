// Routes of a scene: every node is a box, every route a line. New routes are drawn from the menu of a box,
// and Delete removes the selected lines.
//
//   example-route-graph SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/Node.h>
#include <QSplitter>
#include <QTimer>
#include <QorGraphNodeView.h>
#include <QorGraphView.h>

using namespace Orvane::Qt4;

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
    // Where boxes stand is up to the host: here those of named nodes, four in a row, once the canvas has its
    // size.
    QTimer::singleShot(0, canvas, [canvas, scene] {
        std::vector<Orvane::Node*> nodes;
        scene->collectAllChildren(nodes, 0);
        int count = 0;
        for (Orvane::Node* node : nodes) {
            const QPoint place(40 + 220 * (count % 4), 30 + 110 * (count / 4) + 40 * (count % 2));
            if (node->name() && canvas->add(node, place))
                ++count;
        }
    });
    return host.run(*manager, window);
}
