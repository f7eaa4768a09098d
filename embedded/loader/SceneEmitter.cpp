#include "loader/SceneEmitter.h"

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
    const std::string& text = field._desc->defaultValue;
    // Most lists are empty by default; long ones need not be written to know that they differ.
    if (text.empty() && field.dataType() % 2 == 0)
        return field.size() == 0;
    return field.valueToString() == text;
}

void SceneEmitter::importedRoute(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                                 const EventInSlot& to)
{
    route(fromNode, from, toNode, to);
}

} // namespace Orvane
