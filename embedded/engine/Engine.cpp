#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/Engine.h>

namespace Orvane {

NodeType Engine::_type("Engine");

namespace {

class EngineNode : public Engine
{
};

const NodeClassRegistration registration("Engine", makeNodeClass<EngineNode>);

} // namespace

Engine::Engine() = default;

Engine::~Engine() = default;

Engine* Engine::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    return static_cast<Engine*>(createRoot(owner, "Engine", name, creator));
}

} // namespace Orvane
