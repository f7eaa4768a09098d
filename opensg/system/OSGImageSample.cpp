#include "OSGImageSample.h"

#include <OpenSG/OSGImage.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>

namespace osg {

namespace {

template <class T>
T loadRaw(const UInt8* from)
{
    T value;
    std::memcpy(&value, from, sizeof value);
    return value;
}

template <class T>
void storeRaw(UInt8* to, T value)
{
    std::memcpy(to, &value, sizeof value);
}

template <class T>
Real64 loadInteger(const UInt8* from)
{
    return static_cast<Real64>(loadRaw<T>(from)) / static_cast<Real64>(std::numeric_limits<T>::max());
}

template <class T>
void storeInteger(UInt8* to, Real64 value)
{
    const Real64 lowest = std::is_signed<T>::value ? -1.0 : 0.0;
    const Real64 kept = std::isnan(value) ? 0.0 : value < lowest ? lowest : value > 1.0 ? 1.0 : value;
    storeRaw<T>(to, static_cast<T>(std::round(kept * static_cast<Real64>(std::numeric_limits<T>::max()))));
}

} // namespace

Real64 loadSample(const UInt8* from, Int32 dataType)
{
    switch (dataType) {
    case Image::OSG_UINT8_IMAGEDATA:
        return loadInteger<UInt8>(from);
    case Image::OSG_INT16_IMAGEDATA:
        return loadInteger<Int16>(from);
    case Image::OSG_UINT16_IMAGEDATA:
        return loadInteger<UInt16>(from);
    case Image::OSG_INT32_IMAGEDATA:
        return loadInteger<Int32>(from);
    case Image::OSG_UINT32_IMAGEDATA:
        return loadInteger<UInt32>(from);
    case Image::OSG_FLOAT32_IMAGEDATA:
        return static_cast<Real64>(loadRaw<Real32>(from));
    case Image::OSG_FLOAT16_IMAGEDATA:
        return static_cast<Real64>(halfToFloat(loadRaw<UInt16>(from)));
    default:
        return 0.0;
    }
}

void storeSample(UInt8* to, Int32 dataType, Real64 value)
{
    switch (dataType) {
    case Image::OSG_UINT8_IMAGEDATA:
        return storeInteger<UInt8>(to, value);
    case Image::OSG_INT16_IMAGEDATA:
        return storeInteger<Int16>(to, value);
    case Image::OSG_UINT16_IMAGEDATA:
        return storeInteger<UInt16>(to, value);
    case Image::OSG_INT32_IMAGEDATA:
        return storeInteger<Int32>(to, value);
    case Image::OSG_UINT32_IMAGEDATA:
        return storeInteger<UInt32>(to, value);
    case Image::OSG_FLOAT32_IMAGEDATA:
        return storeRaw(to, static_cast<Real32>(value));
    case Image::OSG_FLOAT16_IMAGEDATA:
        return storeRaw(to, floatToHalf(static_cast<Real32>(value)));
    default:
        return;
    }
}

Real32 halfToFloat(UInt16 half)
{
    const int exponent = (half >> 10) & 0x1f;
    const int mantissa = half & 0x3ff;
    Real32 magnitude = 0;
    if (exponent == 0x1f)
        magnitude =
            mantissa ? std::numeric_limits<Real32>::quiet_NaN() : std::numeric_limits<Real32>::infinity();
    else if (exponent)
        magnitude = std::ldexp(static_cast<Real32>(mantissa + 0x400), exponent - 25);
    else
        magnitude = std::ldexp(static_cast<Real32>(mantissa), -24);
    return half & 0x8000 ? -magnitude : magnitude;
}

UInt16 floatToHalf(Real32 value)
{
    const UInt16 sign = std::signbit(value) ? 0x8000 : 0;
    if (std::isnan(value))
        return 0x7e00;
    const Real32 magnitude = std::fabs(value);
    // The largest half is 65504; from the middle to the next step on it rounds to infinity.
    if (magnitude >= 65520.0f)
        return static_cast<UInt16>(sign | 0x7c00);
    if (magnitude < std::ldexp(1.0f, -14))
        return static_cast<UInt16>(sign | static_cast<UInt16>(std::nearbyint(std::ldexp(magnitude, 24))));
    int exponent = 0;
    const Real32 fraction = std::frexp(magnitude, &exponent); // 0.5 <= fraction < 1
    // A mantissa that rounds up to 0x800 carries into the exponent by the addition.
    const int mantissa = static_cast<int>(std::nearbyint(std::ldexp(fraction, 11)));
    return static_cast<UInt16>(sign | (((exponent + 13) << 10) + mantissa));
}

} // namespace osg
