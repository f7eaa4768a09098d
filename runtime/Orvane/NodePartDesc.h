#pragma once

#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <string>
#include <vector>

namespace Orvane {

/// Description of one part (field) of a node type. Owned by the type, or by the node for a field that was
/// added to that node alone; never changes while a field uses it.
class ORVANE_API NodePartDesc
{
public:
    /// What a field's values are restricted to.
    enum ValueRestriction : int {
        NONE_VR = 1,      ///< anything of the data type
        CDATA_VR = 2,     ///< source code
        NODE_TYPE_VR = 3, ///< nodes of the types named in `valueType`
        MIN_MAX_VR = 4,   ///< numbers from `minValue` to `maxValue`
        LIST_VR = 5       ///< one of `valueList()`
    };

    NodePartDesc();
    virtual ~NodePartDesc();
    NodePartDesc(const NodePartDesc&) = delete;
    NodePartDesc& operator=(const NodePartDesc&) = delete;

    /// True when an event of this part is handled by the node's processing object.
    bool autoProcess() const;
    /// True for a field that an author added to the node (the fields of scripts and shaders).
    bool objExt() const;
    /// True for a part that the user does not see (the body of a prototype instance).
    bool privateAccess() const;
    /// Name of the data type, such as "SFBool".
    const std::string& dataTypeName() const;
    /// "Field", "EventIn", "EventOut" or "ExposedField".
    const std::string& partTypeName() const;
    /// The allowed values of an enumerated string field; empty when any text is allowed.
    std::vector<std::string> valueList() const;

    unsigned int id = 0;                     ///< part index in the node
    std::string valueType;                   ///< the restriction as text: node types, limits or values
    unsigned int valueRestriction = NONE_VR; ///< a `ValueRestriction`
    double minValue = 0.0;                   ///< lower limit under `MIN_MAX_VR`, may be infinite
    double maxValue = 0.0; ///< upper limit under `MIN_MAX_VR`; 0.0 on an integer field means none
    /// Name of the field.
    std::string name;
    std::string defaultValue; ///< in the text form of `Field::valueToString`
    std::string description;  ///< one line for the user, may be empty

    /// Type of the values, and access.
    NodePartDataType dataType = NO_DT;
    NodePartType partType = NO_PART;

    struct Data;
    /// The runtime's own data.
    Data* _data = nullptr;
};

} // namespace Orvane
