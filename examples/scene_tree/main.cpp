// The tree of a scene: it follows the running graph, and a click on a row shows the fields of its node.
//
//   example-scene-tree SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <QSplitter>
#include <QorObservingNodeEditor.h>
#include <QorObservingScenegraphModel.h>
#include <QorScenegraphTreeView.h>

using namespace Orvane::Qt4;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window;
    auto* tree = new QorScenegraphTreeView(&window);
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* editor = new QorObservingNodeEditor(&window);
    window.setSizes({240, 360, 300});

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;

    // setRootNode() would do for a tree that is read once; this model follows what is added and removed.
    const auto model = std::make_unique<QorObservingScenegraphModel>(scene, nullptr);
    tree->setModel(model.get());
    tree->expandToDepth(1);
    editor->setNode(scene);
    // The host joins the widgets; the library itself makes no such connection.
    QObject::connect(tree, SIGNAL(nodeSelected(Orvane::Node*)), editor, SLOT(setNode(Orvane::Node*)));
    QObject::connect(model.get(), &QorObservingScenegraphModel::childsRemoved, tree,
                     [tree](const QModelIndex& row) { tree->collapse(row.sibling(row.row(), 0)); });

    const int status = host.run(*manager, window);
    editor->setNode(nullptr);
    tree->setModel(nullptr);
    return status;
}
