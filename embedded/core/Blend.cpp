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

Quaternion product(const Quaternion& a, const Quaternion& b)
{
    return {a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
            a[3] * b[1] - a[0] * b[2] + a[1] * b[3] + a[2] * b[0],
            a[3] * b[2] + a[0] * b[1] - a[1] * b[0] + a[2] * b[3],
            a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]};
}

Quaternion inverse(const Quaternion& q)
{
    return {-q[0], -q[1], -q[2], q[3]};
}

double cosineBetween(const Quaternion& a, const Quaternion& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

Quaternion mixed(const Quaternion& a, double shareA, const Quaternion& b, double shareB)
{
    Quaternion result;
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = shareA * a[i] + shareB * b[i];
    return result;
}

/// Along the arc that runs between just these two, be it the longer one.
Quaternion alongArc(const Quaternion& a, const Quaternion& b, double t)
{
    const std::array<double, 2> shares = arcShares(cosineBetween(a, b), t);
    return mixed(a, shares[0], b, shares[1]);
}

/// The same rotation, on the side of \a other.
Quaternion towards(const Quaternion& other, const Quaternion& q)
{
    return cosineBetween(other, q) < 0.0 ? mixed(q, -1.0, q, 0.0) : q;
}

/// The logarithm of a unit quaternion: axis by half the angle.
std::array<double, 3> logarithm(const Quaternion& q)
{
    const double s = std::hypot(q[0], q[1], q[2]);
    const double factor = s > 1e-12 ? std::atan2(s, q[3]) / s : 0.0;
    return {q[0] * factor, q[1] * factor, q[2] * factor};
}

/// The point beside key \a b that makes the way through it smooth.
Quaternion controlPoint(const Quaternion& a, const Quaternion& b, const Quaternion& c)
{
    const Quaternion back = inverse(b);
    const std::array<double, 3> before = logarithm(product(back, a));
    const std::array<double, 3> after = logarithm(product(back, c));
    std::array<double, 3> v;
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = -0.25 * (before[i] + after[i]);
    const double half = std::hypot(v[0], v[1], v[2]);
    const double factor = half > 1e-12 ? std::sin(half) / half : 1.0;
    return product(b, {v[0] * factor, v[1] * factor, v[2] * factor, std::cos(half)});
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
    return toRotation(alongArc(from, towards(from, toQuaternion(b)), double(t)));
}

Rotation turned(const Rotation& first, const Rotation& second)
{
    return toRotation(product(toQuaternion(second), toQuaternion(first)));
}

Rotation difference(const Rotation& from, const Rotation& to)
{
    const Quaternion turn = product(toQuaternion(to), inverse(toQuaternion(from)));
    return toRotation(towards({0.0, 0.0, 0.0, 1.0}, turn));
}

Rotation blendSmoothly(const Rotation& a, const Rotation& b, const Rotation& c, const Rotation& d, float t)
{
    const Quaternion from = toQuaternion(b);
    const Quaternion before = towards(from, toQuaternion(a));
    const Quaternion to = towards(from, toQuaternion(c));
    const Quaternion after = towards(to, toQuaternion(d));
    const double share = double(t);
    return toRotation(alongArc(alongArc(from, to, share),
                               alongArc(controlPoint(before, from, to), controlPoint(from, to, after), share),
                               2.0 * share * (1.0 - share)));
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
