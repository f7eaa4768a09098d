#include "base/TypeData.h"
#include <Orvane/FieldType.h>
#include <Orvane/NodePartDesc.h>
#include <algorithm>

namespace Orvane {

NodePartDesc::NodePartDesc()
    : _data(new Data)
{
}

NodePartDesc::~NodePartDesc()
{
    delete _data;
}

bool NodePartDesc::autoProcess() const
{
    return (partType & EVENTINP) && _data->behaviour && _data->behaviour->makeProc;
}

bool NodePartDesc::objExt() const
{
    return _data->objExt;
}

bool NodePartDesc::privateAccess() const
{
    return _data->privateAccess;
}

const std::string& NodePartDesc::dataTypeName() const
{
    return FieldType::dataTypeName(dataType);
}

const std::string& NodePartDesc::partTypeName() const
{
    static const std::string field("Field");
    static const std::string eventIn("EventIn");
    static const std::string eventOut("EventOut");
    static const std::string exposedField("ExposedField");
    static const std::string none;
    switch (partType) {
    case FIELDP:
        return field;
    case EVENTINP:
        return eventIn;
    case EVENTOUTP:
        return eventOut;
    case EXPOSEDFIELDP:
        return exposedField;
    case NO_PART:
        break;
    }
    return none;
}

std::vector<std::string> NodePartDesc::valueList() const
{
    std::vector<std::string> values;
    if (valueRestriction != LIST_VR)
        return values;
    for (std::size_t begin = 0; begin <= valueType.size();) {
        const std::size_t bar = std::min(valueType.find('|', begin), valueType.size());
        values.push_back(valueType.substr(begin, bar - begin));
        begin = bar + 1;
    }
    return values;
}

const std::string& eventInName(NodePartDesc& desc)
{
    if (desc.partType != EXPOSEDFIELDP)
        return desc.name;
    if (desc._data->inName.empty())
        desc._data->inName = "set_" + desc.name;
    return desc._data->inName;
}

const std::string& eventOutName(NodePartDesc& desc)
{
    if (desc.partType != EXPOSEDFIELDP)
        return desc.name;
    if (desc._data->outName.empty())
        desc._data->outName = desc.name + "_changed";
    return desc._data->outName;
}

} // namespace Orvane
