// Code of a script: the first Script of the scene is edited while the scene runs, its fields, too.
//
//   example-code SCENE [--frames N]     with --frames it ends after N frames

#include "../ExampleHost.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <QSplitter>
#include <QorCodeWidget.h>
#include <unordered_set>

using namespace Orvane::Qt4;

namespace {

/// The first node of a type below a root; null when there is none.
Orvane::Node* findByType(Orvane::Node* root, const char* type)
{
    std::vector<Orvane::Node*> waiting{root};
    std::unordered_set<Orvane::Node*> known; // nodes may stand at several places
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        if (waiting[i]->type()->name == type)
            return waiting[i];
        std::vector<Orvane::Node*> children;
        waiting[i]->collectAllChildren(children, 0);
        for (Orvane::Node* child : children) {
            if (known.insert(child).second)
                waiting.push_back(child);
        }
    }
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const ExampleHost host;
    QSplitter window;
    auto* manager = new QorViewManager(&window, host.triggerMode());
    auto* code = new QorCodeWidget(&window);
    window.setStretchFactor(0, 1);

    Orvane::Node* scene = host.load(*manager);
    if (!scene)
        return 1;
    Orvane::Node* script = findByType(scene, "Script");
    code->setLanguage(QorCodeWidget::LANGUAGE_ECMA);
    code->setCodeNode(script);
    code->setFieldNode(script);

    // The widget asks for what changes the node; this host only ever takes fields away.
    QObject::connect(code, &QorCodeWidget::wantsDeleteField, code,
                     [](Orvane::Node* node, const QString& name) {
                         Orvane::Field* field = node->findField(toRuntime(name), Orvane::Node::EXACT_FSO);
                         if (field)
                             node->removeField(*field);
                     });
    const int status = host.run(*manager, window);
    code->setCodeNode(nullptr);
    return status;
}
