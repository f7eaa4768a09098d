// Fields of a node: press on a shape, and edit the node that was hit while the scene runs.
//
//   example-node-editor SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/Node.h>
#include <QSplitter>
#include <QorNodeItemDelegate.h>
#include <QorObservingNodeEditor.h>
#include <QorRenderView.h>

using namespace Orvane::Qt4;

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window;
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* editor = new QorObservingNodeEditor(&window);
    QorNodeItemDelegate delegate(nullptr);
    editor->setItemDelegate(&delegate); // stays ours
    editor->setDescriptionVisible(true);
    window.setSizes({540, 360});

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;
    std::vector<Orvane::Node*> children;
    scene->collectAllChildren(children, 0);
    editor->setNode(children.empty() ? scene : children.back());

    // Views come and go with the windows of the scene; those of now are made to pick.
    const auto views = manager->findChildren<QorRenderView*>();
    for (QorRenderView* view : views) {
        view->setMouseMode(QorRenderView::PickMode);
        QObject::connect(view, &QorRenderView::nodePickedHierachy, editor,
                         [editor](const std::vector<Orvane::Node*>& nodes) {
                             if (!nodes.empty())
                                 editor->setNode(nodes.back());
                         });
    }
    const int status = host.run(*manager, window);
    editor->setNode(nullptr); // before the nodes go
    return status;
}
