#pragma once

#include "tinyruntime/Tiny.h"
#include <Orvane/NodePartDesc.h>
#include <string>
#include <vector>

/// A part of a data type with a default, for tests that need nothing else.
inline Tiny::Part part(const char* name, Orvane::NodePartDataType dataType, const char* value = "",
                       Orvane::NodePartType access = Orvane::EXPOSEDFIELDP)
{
    Tiny::Part result;
    result.name = name;
    result.dataType = dataType;
    result.value = value;
    result.access = access;
    return result;
}

/// A part that no user gets to see.
inline Tiny::Part privatePart(const char* name, Orvane::NodePartDataType dataType = Orvane::SFBOOL_DT)
{
    Tiny::Part result = part(name, dataType);
    result.privateAccess = true;
    return result;
}

/// A part whose numbers have limits.
inline Tiny::Part limited(const char* name, Orvane::NodePartDataType dataType, const char* value, double min,
                          double max)
{
    Tiny::Part result = part(name, dataType, value);
    result.restriction = Orvane::NodePartDesc::MIN_MAX_VR;
    result.minValue = min;
    result.maxValue = max;
    return result;
}

/// A part with a list of allowed values.
inline Tiny::Part listed(const char* name, Orvane::NodePartDataType dataType, const char* value,
                         const std::vector<std::string>& values)
{
    Tiny::Part result = part(name, dataType, value);
    result.restriction = Orvane::NodePartDesc::LIST_VR;
    result.valueList = values;
    return result;
}

/// The text of so many values, from 0 on: "0, 1, 2".
inline std::string numbersText(int count, const char* separator = ", ")
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += (i ? separator : "") + std::to_string(i);
    return text;
}
