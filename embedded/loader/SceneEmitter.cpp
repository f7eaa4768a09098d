#include "loader/SceneEmitter.h"

#include "base/Graph.h"
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>

namespace Orvane {

SceneEmitter::~SceneEmitter() = default;

std::string SceneEmitter::sayableName(std::string_view name) const
{
    return std::string(name);
}

bool SceneEmitter::isDefault(const Node& node, const Field& field) const
{
    if (field.node() != &node)
        return true;
    // Only what is equal must be looked at as text, which tells minus zero from zero.
    return field.hasValueOf(readDefault(*field._desc)) && field.valueToString() == field._desc->defaultValue;
}

void SceneEmitter::importedRoute(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                                 const EventInSlot& to)
{
    route(fromNode, from, toNode, to);
}

} // namespace Orvane
