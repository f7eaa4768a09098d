#pragma once

#include <Orvane/Export.h>
#include <cstdint>
#include <vector>

namespace Orvane {

/// True for the hatch styles that have a pattern of their own: 1 to 6, and 19.
ORVANE_API bool isKnownHatch(int style);

/// The pattern of a hatch style for `osg::PolygonChunk`: lines that lie flat, stand, rise, fall, cross
/// upright, cross aslant, or dots. Any other style looks like the first.
ORVANE_API std::vector<std::uint32_t> hatchPattern(int style);

} // namespace Orvane
