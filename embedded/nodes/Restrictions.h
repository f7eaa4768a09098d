#pragma once

#include "nodes/Catalogue.h"
#include <limits>

/// The words in which the tables write restrictions.
namespace Orvane::catalogue {

constexpr Restriction between(double minValue, double maxValue)
{
    return {NodePartDesc::MIN_MAX_VR, minValue, maxValue, {}};
}

constexpr Restriction atLeast(double minValue)
{
    return between(minValue, std::numeric_limits<double>::infinity());
}

/// `atLeast` for integer fields: their limits say "no upper limit" by 0.0.
constexpr Restriction intAtLeast(int minValue)
{
    return between(minValue, 0.0);
}

constexpr Restriction atMost(double maxValue)
{
    return between(-std::numeric_limits<double>::infinity(), maxValue);
}

constexpr Restriction oneOf(std::string_view values)
{
    return {NodePartDesc::LIST_VR, 0.0, 0.0, values};
}

constexpr Restriction nodes(std::string_view types)
{
    return {NodePartDesc::NODE_TYPE_VR, 0.0, 0.0, types};
}

constexpr Restriction sourceCode()
{
    return {NodePartDesc::CDATA_VR, 0.0, 0.0, {}};
}

// Node types that several components ask for.
constexpr std::string_view points = "Coordinate|CoordinateDouble";
constexpr std::string_view texCoords = "X3DSingleTextureCoordinateNode|MultiTextureCoordinate";

} // namespace Orvane::catalogue
