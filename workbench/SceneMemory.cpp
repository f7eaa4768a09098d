#include "SceneMemory.h"

#include "NodeSearch.h"
#include "Selection.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePath.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFNode.h>
#include <Orvane/Scene.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QorRenderView.h>
#include <QorViewManager.h>
#include <SAI/SAIBrowserRef.h>
#include <algorithm>
#include <list>
#include <memory>

using namespace Orvane;
using namespace Orvane::Qt4;

namespace {

Node* sceneOf(QorViewManager& manager)
{
    const std::unique_ptr<__SAI_SAIBrowserRef> browser(manager.getSAI());
    Context* const context = browser ? browser->getExecutionContext() : nullptr;
    return context ? context->findRoot(Scene::_type) : nullptr;
}

/// The viewareas of all views, in the order of the views.
std::vector<ViewareaProc*> viewareasOf(const QorViewManager& manager)
{
    std::vector<ViewareaProc*> found;
    const auto views = manager.findChildren<QorRenderView*>();
    for (const QorRenderView* view : views) {
        const WindowProc* const proc = view->windowProc();
        MFNode* const areas = proc && proc->window() ? proc->window()->viewareas() : nullptr;
        for (unsigned int i = 0; areas && i < areas->size(); ++i) {
            auto* const area = dynamic_cast<Viewarea*>(areas->elem(static_cast<int>(i)).node());
            if (area && area->getViewareaProc())
                found.push_back(area->getViewareaProc());
        }
    }
    return found;
}

bool isBound(const Node& node)
{
    const auto* const flag = dynamic_cast<SFBool*>(node.findField("isBound", Node::EXACT_FSO));
    return flag && flag->value();
}

/// Where a viewpoint is and how it looks; the same for all other nodes.
std::string valuesOf(const Node& node)
{
    std::string values;
    for (const char* const name : {"position", "orientation", "fieldOfView", "geoSystem", "viewAll"}) {
        const Field* const field = node.findField(name, Node::EXACT_FSO);
        values += (field ? field->valueToString() : std::string()) + '\n';
    }
    return values;
}

} // namespace

SceneMemory::SceneMemory(QorViewManager& manager, const Selection& selection)
{
    Node* const scene = sceneOf(manager);
    if (!scene)
        return;
    _selected = ScenePlace::of(selection.path());
    const NodeSearch nodes(*scene, false);
    for (int i = 0; i < nodes.size(); ++i) {
        if (isBound(*nodes.node(i)))
            _bound.push_back({ScenePlace::of(nodes.path(i)), valuesOf(*nodes.node(i))});
    }
    for (const ViewareaProc* const area : viewareasOf(manager)) {
        osg::Matrix place;
        if (area->userPlace(place))
            _views.push_back(place);
    }
}

void SceneMemory::recall(QorViewManager& manager, Selection& selection) const
{
    Node* const scene = sceneOf(manager);
    if (!scene)
        return;
    bool isSameView = true;
    for (const Bound& bound : _bound) {
        Node* const node = bound.place.find(*scene).node();
        const bool isSame = node && valuesOf(*node) == bound.values;
        // Only viewpoints say where from to look; of the others each stands for itself.
        if (bound.place.type.find("Viewpoint") != std::string::npos)
            isSameView = isSameView && isSame;
        auto* const bind =
            node ? dynamic_cast<SFBool*>(node->findField("set_bind", Node::EXACT_FSO)) : nullptr;
        if (bind && !isBound(*node))
            bind->setValue(0.0, true, Field::EXTERNAL_CT);
    }
    // What is bound is so from the next frame on, and then there is a way to it.
    manager.runFrame();
    const std::vector<ViewareaProc*> areas = viewareasOf(manager);
    for (std::size_t i = 0; isSameView && i < std::min(areas.size(), _views.size()); ++i)
        areas[i]->moveUser(_views[i]);
    if (!_selected.type.empty() && sceneOf(manager) == scene)
        selection.selectPath(_selected.find(*scene));
}
