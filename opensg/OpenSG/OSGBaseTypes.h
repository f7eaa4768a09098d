#pragma once

#include "OSGConfig.h"

#include <cstdint>

namespace osg {

typedef char Char8;
typedef unsigned char UChar8;
typedef std::int8_t Int8;
typedef std::uint8_t UInt8;
typedef std::int16_t Int16;
typedef std::uint16_t UInt16;
typedef std::int32_t Int32;
typedef std::uint32_t UInt32;
typedef std::int64_t Int64;
typedef std::uint64_t UInt64;
typedef float Real32;
typedef double Real64;
typedef long double Real128;

/// Seconds.
typedef Real64 Time;

/// One bit per field of a container; 64 bits wide, so that -1 means every field.
typedef UInt64 BitVector;

/// Tolerance of the value types' comparisons.
inline constexpr Real32 Eps = 1e-6f;
inline constexpr Real32 Pi = 3.14159265358979323846f;

/// Farther than anything in a scene. Finite, so that sums and differences stay numbers.
inline constexpr Real32 Inf = 1e30f;
inline constexpr Real32 NegInf = -1e30f;

} // namespace osg
