#pragma once

#include <Orvane/NodePartDataType.h>
#include <string_view>

/// What VRML97 has of the nodes, fields and data types of today.
namespace Orvane::vrml97 {

bool hasNode(std::string_view type);
/// \a field is the name that VRML97 has for it.
bool hasField(std::string_view type, std::string_view field);
bool hasDataType(NodePartDataType type);

} // namespace Orvane::vrml97
