#pragma once

#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <string>

namespace Orvane {

/// The names of the data types.
class ORVANE_API FieldType
{
public:
    /// Name of a data type as the user sees it, such as "SFBool". Never empty for 1 to 48, empty for any
    /// other number.
    static const std::string& dataTypeName(NodePartDataType type);

    /// Number of a data type's name; `NO_DT` when no type has it.
    static NodePartDataType dataType(const std::string& name);
};

} // namespace Orvane
