#include "base/ContextId.h"
#include "base/Graph.h"
#include "base/Log.h"
#include "core/BindableProc.h"
#include "core/SceneProc.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/Engine.h>
#include <Orvane/MFNode.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <Orvane/Scene.h>

namespace SAI::Base {

SAIBrowserRef::~SAIBrowserRef() = default;

} // namespace SAI::Base

namespace Orvane {

struct SAIBrowserRef::Data
{
    UInt64 contextId;
};

SAIBrowserRef::SAIBrowserRef(Context* context)
    : _data(new Data{context ? contextId(*context) : 0})
{
}

SAIBrowserRef::~SAIBrowserRef()
{
    delete _data;
}

std::string SAIBrowserRef::getName() const
{
    return getExecutionContext() ? "Orvane" : std::string();
}

std::string SAIBrowserRef::getVersion() const
{
    return getExecutionContext() ? ORVANE_VERSION : std::string();
}

double SAIBrowserRef::getCurrentSpeed() const
{
    Context* context = getExecutionContext();
    auto* const scene = context ? procAs<SceneProc>(context->findRoot(Scene::_type)) : nullptr;
    if (!scene)
        return 0.0;
    const BindableProc* navigation = scene->activeLayer().stack(BindableKind::NavigationInfo).bound();
    if (!navigation)
        return 1.0;
    const int part = partIndex(*navigation->node().type(), "speed");
    return part < 0 ? 1.0 : read<SFFloat>(navigation->node(), static_cast<unsigned int>(part)).value();
}

double SAIBrowserRef::getCurrentFrameRate() const
{
    const Context* context = getExecutionContext();
    return context ? context->frameStatistics().framesPerSecond : 0.0;
}

Context* SAIBrowserRef::getExecutionContext() const
{
    return findContext(_data->contextId);
}

bool SAIBrowserRef::loadURL(const std::vector<std::string>& urls)
{
    for (const std::string& url : urls) {
        // A load may run scripts and end the context.
        Context* context = getExecutionContext();
        if (!context)
            return false;
        if (context->load(url, Context::REPLACE_LT, {}))
            return true;
    }
    return false;
}

void SAIBrowserRef::setDescription(const std::string& description)
{
    Context* context = getExecutionContext();
    Node* engine = context ? context->findRoot(Engine::_type) : nullptr;
    const auto* windows =
        engine ? dynamic_cast<MFNode*>(engine->findField("windows", Node::EXACT_FSO)) : nullptr;
    if (!windows)
        return;
    for (NodeLink& link : *windows) {
        Node* window = link.node();
        if (auto* title =
                window ? dynamic_cast<SFString*>(window->findField("title", Node::EXACT_FSO)) : nullptr)
            title->setValue(0.0, description, Field::EXTERNAL_CT);
    }
}

void SAIBrowserRef::print(const std::string& text)
{
    if (getExecutionContext())
        ORVANE_LOG(osg::LOG_LOG, "%s\n", text.c_str());
}

void SAIBrowserRef::dispose()
{
    _data->contextId = 0;
}

} // namespace Orvane
