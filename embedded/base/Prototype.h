#pragma once

#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class NodeType;

/// A field that a prototype declares.
struct PartDeclaration
{
    std::string name;
    NodePartDataType dataType = NO_DT;
    NodePartType partType = NO_PART;
    std::string defaultValue; ///< in the text form of `Field::valueToString`; of node fields not looked at
    std::string description = {};
};

/// Makes the node type of a prototype (`NodeType::isProto`), which no look-up by name finds. The type lives
/// as long as the result or a node of it. Of parts that bear the same name the first one stays.
ORVANE_API std::shared_ptr<NodeType> createPrototype(std::string_view name,
                                                     const std::vector<PartDeclaration>& parts);

} // namespace Orvane
