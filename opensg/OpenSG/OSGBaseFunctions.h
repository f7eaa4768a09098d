#pragma once

#include "OSGBaseTypes.h"

#include <cmath>
#include <type_traits>

namespace osg {

/// Starts the system: prototypes, main thread, image file types. May be called again after osgExit.
/// Lives in OSGSystem. False when the caller was built against another version of the headers.
OSG_SYSTEMLIB_DLLMAPPING bool osgInit(Int32 argc, Char8** argv, UInt16 major = OSG_MAJOR_VERSION,
                                      UInt16 minor = OSG_MINOR_VERSION, UInt16 release = OSG_RELEASE_VERSION);

/// Ends the system and deletes the log. Lives in OSGSystem.
OSG_SYSTEMLIB_DLLMAPPING bool osgExit();

template <class T>
constexpr const T& osgMin(const T& a, const T& b)
{
    return b < a ? b : a;
}

template <class T>
constexpr const T& osgMax(const T& a, const T& b)
{
    return a < b ? b : a;
}

/// value, moved into [low, high]. A value that is not a number gives low.
template <class T>
constexpr const T& osgClamp(const T& low, const T& value, const T& high)
{
    return !(low < value) ? low : high < value ? high : value;
}

/// Whether a and b differ by at most tolerance; equal infinities do not differ. Safe for unsigned types.
template <class T>
constexpr bool osgEquals(T a, T b, T tolerance)
{
    return a == b || (a < b ? b - a : a - b) <= tolerance;
}

template <class T>
constexpr T osgDegree2Rad(T degrees)
{
    return degrees * static_cast<T>(Pi) / static_cast<T>(180);
}

template <class T>
constexpr T osgRad2Degree(T radians)
{
    return radians * static_cast<T>(180) / static_cast<T>(Pi);
}

/// The smallest power of two that is not below value; 1 for 0. Values above 2^31 give 2^31.
constexpr UInt32 osgNextPower2(UInt32 value)
{
    UInt32 power = 1;
    while (power < value && power < 0x80000000u)
        power <<= 1;
    return power;
}

} // namespace osg
