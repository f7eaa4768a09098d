#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// Rotation value of `SFRotation`: an axis and an angle in radians, kept as they were written.
class ORVANE_API Rotation
{
public:
    constexpr Rotation() = default;
    /// An axis, which need not be of length 1, and an angle in radians.
    constexpr Rotation(float x, float y, float z, float angle)
        : _x(x)
        , _y(y)
        , _z(z)
        , _angle(angle)
    {
    }

    /// The axis.
    constexpr float x() const { return _x; }
    constexpr float y() const { return _y; }
    constexpr float z() const { return _z; }
    /// Radians, by the right-hand rule round the axis.
    constexpr float angle() const { return _angle; }

    constexpr bool operator==(const Rotation& other) const
    {
        return _x == other._x && _y == other._y && _z == other._z && _angle == other._angle;
    }
    constexpr bool operator!=(const Rotation& other) const { return !(*this == other); }

private:
    float _x = 0.0F;
    float _y = 0.0F;
    float _z = 1.0F;
    float _angle = 0.0F;
};

} // namespace Orvane
