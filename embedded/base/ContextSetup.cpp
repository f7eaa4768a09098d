#include "base/NodeClass.h"
#include <Orvane/ContextSetup.h>

namespace Orvane {

NodeType ContextSetup::_type("ContextSetup");

namespace {

class ContextSetupNode final : public ContextSetup
{
};

const NodeClassRegistration registration("ContextSetup", makeNodeClass<ContextSetupNode>);

} // namespace

ContextSetup::ContextSetup() = default;

ContextSetup::~ContextSetup() = default;

ContextSetup* ContextSetup::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    return static_cast<ContextSetup*>(createRoot(owner, "ContextSetup", name, creator));
}

} // namespace Orvane
