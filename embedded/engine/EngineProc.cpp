#include "EngineProc.h"

#include "base/Graph.h"
#include "base/ValueFields.h"
#include <Orvane/Engine.h>
#include <Orvane/MFNode.h>
#include <Orvane/Viewarea.h>
#include <Orvane/Window.h>

namespace Orvane {

namespace {

const ProcRegistration engineRegistration("Engine", makeProc<EngineProc>);

unsigned int part(const Node& node, std::string_view name)
{
    return static_cast<unsigned int>(partIndex(*node.type(), name));
}

constexpr float defaultWidth = 800.0F;
constexpr float defaultHeight = 600.0F;

} // namespace

EngineProc::EngineProc(Node& engine)
    : Proc(engine)
{
}

void EngineProc::start(double)
{
    if (read<MFNode>(node(), part(node(), "windows")).size() == 0)
        makeDefaultWindow();
    update();
}

void EngineProc::makeDefaultWindow()
{
    const NodeRef window = createNode(context(), *findType("Window"), RUNTIME_NC);
    const NodeRef viewarea = createNode(context(), *findType("Viewarea"), RUNTIME_NC);
    edit<SFVec2f>(*window, part(*window, "size"))
        .setValue(0.0, osg::Vec2f(defaultWidth, defaultHeight), Field::LOADER_CT);
    edit<MFNode>(*window, part(*window, "viewareas")).addNode(0.0, viewarea.get(), Field::LOADER_CT);
    edit<MFNode>(node(), part(node(), "windows")).addNode(0.0, window.get(), Field::LOADER_CT);
}

void EngineProc::childrenChanged(Field&)
{
    requestUpdate();
    requestFrame();
}

void EngineProc::update()
{
    std::vector<NodeRef> present;
    const MFNode& windows = read<MFNode>(node(), part(node(), "windows"));
    for (NodeLink& link : windows) {
        if (link.node())
            present.emplace_back(link.node());
    }
    _windows = std::move(present);
}

} // namespace Orvane
