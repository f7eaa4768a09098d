#pragma once

#include "OSGBaseFunctions.h"
#include "OSGBaseTypes.h"

#include <cmath>
#include <limits>
#include <ostream>
#include <type_traits>

namespace osg {

namespace ColorDetail {

/// The value of full intensity: 1 for floating types, the largest number for integers.
template <class T>
constexpr T full()
{
    if constexpr (std::is_floating_point_v<T>)
        return T(1);
    else
        return std::numeric_limits<T>::max();
}

/// One component as a byte, clamped to the type's range of intensity and rounded.
template <class T>
UInt32 toByte(T value)
{
    const Real64 intensity = static_cast<Real64>(value) / static_cast<Real64>(full<T>());
    return static_cast<UInt32>(osgClamp(0.0, intensity, 1.0) * 255.0 + 0.5);
}

/// The component for intensity in [0, 1].
template <class T>
T fromIntensity(Real64 intensity)
{
    const Real64 value = intensity * static_cast<Real64>(full<T>());
    return static_cast<T>(std::is_floating_point_v<T> ? value : value + 0.5);
}

template <class T>
T fromByte(UInt32 packed, int shift)
{
    return fromIntensity<T>(((packed >> shift) & 0xffu) / 255.0);
}

/// Sets rgb from hue (a full turn is 1; wraps), saturation and value in [0, 1].
template <class T>
void fromHSV(T* rgb, Real32 hue, Real32 saturation, Real32 value)
{
    const Real64 top = osgClamp(0.0f, value, 1.0f);
    const Real64 span = top * osgClamp(0.0f, saturation, 1.0f);
    const Real64 turn = std::isfinite(hue) ? hue - std::floor(hue) : 0.0;
    const int offsets[3] = {5, 3, 1};
    for (int i = 0; i < 3; ++i) {
        const Real64 k = std::fmod(offsets[i] + turn * 6.0, 6.0);
        rgb[i] = fromIntensity<T>(top - span * osgClamp(0.0, osgMin(k, 4.0 - k), 1.0));
    }
}

template <class T>
constexpr bool equals(const T* a, const T* b, int count, T tolerance)
{
    for (int i = 0; i < count; ++i) {
        if (!osgEquals(a[i], b[i], tolerance))
            return false;
    }
    return true;
}

} // namespace ColorDetail

/// Red, green, blue: three values and nothing else. Integer types use their whole positive range. Not a
/// vector, and not convertible to or from Color4. Comparison is tolerant (Eps).
template <class T>
class OSG_BASE_DLLMAPPING Color3
{
public:
    typedef T ValueType;

    /// Black.
    static const Color3 Null;

    constexpr Color3() = default;
    constexpr Color3(T red, T green, T blue)
        : _values{red, green, blue}
    {
    }

    constexpr T red() const { return _values[0]; }
    constexpr T green() const { return _values[1]; }
    constexpr T blue() const { return _values[2]; }

    constexpr T& operator[](UInt32 index) { return _values[index]; }
    constexpr const T& operator[](UInt32 index) const { return _values[index]; }

    constexpr T* getValuesRGB() { return _values; }
    constexpr const T* getValuesRGB() const { return _values; }

    constexpr void setValuesRGB(T red, T green, T blue) { *this = Color3(red, green, blue); }

    /// Hue as a fraction of the full turn (0 red, 1/3 green), saturation and value in [0, 1].
    void setValuesHSV(Real32 hue, Real32 saturation, Real32 value)
    {
        ColorDetail::fromHSV(_values, hue, saturation, value);
    }

    constexpr void clear() { *this = Color3(); }

    /// The colour in bytes, red in the lowest one: 0x00BBGGRR.
    UInt32 getRGB() const
    {
        return ColorDetail::toByte(_values[0]) | ColorDetail::toByte(_values[1]) << 8 |
               ColorDetail::toByte(_values[2]) << 16;
    }

    void setRGB(UInt32 packed)
    {
        for (int i = 0; i < 3; ++i)
            _values[i] = ColorDetail::fromByte<T>(packed, 8 * i);
    }

    constexpr bool equals(const Color3& other, T tolerance) const
    {
        return ColorDetail::equals(_values, other._values, 3, tolerance);
    }

    constexpr bool operator==(const Color3& other) const { return equals(other, static_cast<T>(Eps)); }
    constexpr bool operator!=(const Color3& other) const { return !(*this == other); }

private:
    T _values[3] = {};
};

template <class T>
inline const Color3<T> Color3<T>::Null;

/// Red, green, blue, alpha: four values and nothing else; alpha is 0 by default. See Color3.
template <class T>
class OSG_BASE_DLLMAPPING Color4
{
public:
    typedef T ValueType;

    /// Transparent black.
    static const Color4 Null;

    constexpr Color4() = default;
    constexpr Color4(T red, T green, T blue, T alpha)
        : _values{red, green, blue, alpha}
    {
    }

    constexpr T red() const { return _values[0]; }
    constexpr T green() const { return _values[1]; }
    constexpr T blue() const { return _values[2]; }
    constexpr T alpha() const { return _values[3]; }

    constexpr T& operator[](UInt32 index) { return _values[index]; }
    constexpr const T& operator[](UInt32 index) const { return _values[index]; }

    constexpr T* getValuesRGBA() { return _values; }
    constexpr const T* getValuesRGBA() const { return _values; }

    constexpr void setValuesRGBA(T red, T green, T blue, T alpha) { *this = Color4(red, green, blue, alpha); }

    /// See Color3; alpha stays.
    void setValuesHSV(Real32 hue, Real32 saturation, Real32 value)
    {
        ColorDetail::fromHSV(_values, hue, saturation, value);
    }

    constexpr void clear() { *this = Color4(); }

    /// The colour in bytes, red in the lowest one: 0xAABBGGRR.
    UInt32 getRGBA() const
    {
        return ColorDetail::toByte(_values[0]) | ColorDetail::toByte(_values[1]) << 8 |
               ColorDetail::toByte(_values[2]) << 16 | ColorDetail::toByte(_values[3]) << 24;
    }

    void setRGBA(UInt32 packed)
    {
        for (int i = 0; i < 4; ++i)
            _values[i] = ColorDetail::fromByte<T>(packed, 8 * i);
    }

    constexpr bool equals(const Color4& other, T tolerance) const
    {
        return ColorDetail::equals(_values, other._values, 4, tolerance);
    }

    constexpr bool operator==(const Color4& other) const { return equals(other, static_cast<T>(Eps)); }
    constexpr bool operator!=(const Color4& other) const { return !(*this == other); }

private:
    T _values[4] = {};
};

template <class T>
inline const Color4<T> Color4<T>::Null;

/// Writes the components, separated by single blanks.
template <class T>
std::ostream& operator<<(std::ostream& stream, const Color3<T>& color)
{
    return stream << +color[0] << ' ' << +color[1] << ' ' << +color[2];
}

template <class T>
std::ostream& operator<<(std::ostream& stream, const Color4<T>& color)
{
    return stream << +color[0] << ' ' << +color[1] << ' ' << +color[2] << ' ' << +color[3];
}

typedef Color3<Real32> Color3f;
typedef Color4<Real32> Color4f;
typedef Color3<UInt8> Color3ub;
typedef Color4<UInt8> Color4ub;

static_assert(sizeof(Color3f) == 12 && std::is_trivially_copyable_v<Color3f>);
static_assert(sizeof(Color4ub) == 4 && std::is_trivially_copyable_v<Color4ub>);

} // namespace osg
