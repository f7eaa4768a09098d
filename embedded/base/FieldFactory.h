#pragma once

#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <memory>

namespace Orvane {

class Field;
class Node;
class NodePartDesc;

/// True for the data types of which there are fields.
constexpr bool isValueType(NodePartDataType type)
{
    return type >= SFBOOL_DT && type <= MFVEC4F_DT;
}

/// Makes the field of a part with the part's default value.
std::unique_ptr<Field> makeField(Node& node, NodePartDesc& desc);

/// Makes the field that holds the part's default value and belongs to no node.
ORVANE_API std::unique_ptr<Field> makeDefaultField(NodePartDesc& desc);

} // namespace Orvane
