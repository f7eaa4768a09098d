#include "core/Blend.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace Orvane {

namespace {

struct Hsv
{
    float hue; ///< turns, from 0 to 1
    float saturation;
    float value;
};

Hsv toHsv(const osg::Color3f& color)
{
    const float r = color.red(), g = color.green(), b = color.blue();
    const float high = std::max({r, g, b});
    const float range = high - std::min({r, g, b});
    Hsv hsv{0.0F, high > 0.0F ? range / high : 0.0F, high};
    if (range > 0.0F) {
        float sixth = 0.0F;
        if (high == r)
            sixth = (g - b) / range;
        else if (high == g)
            sixth = 2.0F + (b - r) / range;
        else
            sixth = 4.0F + (r - g) / range;
        hsv.hue = sixth / 6.0F;
        hsv.hue -= std::floor(hsv.hue);
    }
    return hsv;
}

osg::Color3f toRgb(const Hsv& hsv)
{
    const auto channel = [&hsv](float offset) {
        float sixth = offset + hsv.hue * 6.0F;
        sixth -= 6.0F * std::floor(sixth / 6.0F);
        const float share = std::clamp(std::min(sixth, 4.0F - sixth), 0.0F, 1.0F);
        return hsv.value * (1.0F - hsv.saturation * share);
    };
    return osg::Color3f(channel(5.0F), channel(3.0F), channel(1.0F));
}

using Quaternion = std::array<double, 4>; // x, y, z, w

Quaternion toQuaternion(const Rotation& r)
{
    const double length = std::hypot(double(r.x()), double(r.y()), double(r.z()));
    if (!(length > 0.0))
        return {0.0, 0.0, 0.0, 1.0};
    const double half = 0.5 * double(r.angle());
    const double s = std::sin(half) / length;
    return {r.x() * s, r.y() * s, r.z() * s, std::cos(half)};
}

Rotation toRotation(const Quaternion& q)
{
    const double s = std::hypot(q[0], q[1], q[2]);
    if (!(s > 1e-12))
        return Rotation();
    const double angle = 2.0 * std::atan2(s, q[3]);
    return Rotation(static_cast<float>(q[0] / s), static_cast<float>(q[1] / s), static_cast<float>(q[2] / s),
                    static_cast<float>(angle));
}

/// Shares of the two ends of an arc of \a cosine at \a t.
std::array<double, 2> arcShares(double cosine, double t)
{
    const double arc = std::acos(std::clamp(cosine, -1.0, 1.0));
    const double s = std::sin(arc);
    if (s < 1e-6)
        return {1.0 - t, t};
    return {std::sin((1.0 - t) * arc) / s, std::sin(t * arc) / s};
}

} // namespace

osg::Color3f blend(const osg::Color3f& a, const osg::Color3f& b, float t)
{
    if (t <= 0.0F)
        return a;
    if (t >= 1.0F)
        return b;
    Hsv from = toHsv(a);
    Hsv to = toHsv(b);
    // A grey has no hue of its own: it takes that of the other colour.
    if (from.saturation == 0.0F)
        from.hue = to.hue;
    if (to.saturation == 0.0F)
        to.hue = from.hue;
    if (to.hue - from.hue > 0.5F)
        from.hue += 1.0F;
    else if (from.hue - to.hue > 0.5F)
        to.hue += 1.0F;
    return toRgb({blend(from.hue, to.hue, t), blend(from.saturation, to.saturation, t),
                  blend(from.value, to.value, t)});
}

Rotation blend(const Rotation& a, const Rotation& b, float t)
{
    if (t <= 0.0F)
        return a;
    if (t >= 1.0F)
        return b;
    const Quaternion from = toQuaternion(a);
    Quaternion to = toQuaternion(b);
    double cosine = from[0] * to[0] + from[1] * to[1] + from[2] * to[2] + from[3] * to[3];
    if (cosine < 0.0) {
        cosine = -cosine;
        for (double& component : to)
            component = -component;
    }
    const std::array<double, 2> shares = arcShares(cosine, double(t));
    Quaternion result;
    for (std::size_t i = 0; i < 4; ++i)
        result[i] = shares[0] * from[i] + shares[1] * to[i];
    return toRotation(result);
}

osg::Vec3f blendDirections(const osg::Vec3f& a, const osg::Vec3f& b, float t)
{
    const double lengths = std::sqrt(double(a.squareLength()) * double(b.squareLength()));
    if (!(lengths > 0.0))
        return blend(a, b, t);
    const std::array<double, 2> shares = arcShares(double(a.dot(b)) / lengths, double(t));
    return a * static_cast<float>(shares[0]) + b * static_cast<float>(shares[1]);
}

} // namespace Orvane
