#pragma once

#include "core/Blend.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Rotation.h>
#include <algorithm>
#include <cmath>
#include <vector>

namespace Orvane {

// What followers do with values: go a share of the way, go a share of another way, and measure what is left.

template <class Value>
struct Followed
{
    /// What lies at \a share, from 0 to 1, of the way between two values.
    static Value between(const Value& from, const Value& to, float share)
    {
        return from + (to - from) * share;
    }
    /// \a value, moved by \a share of the way between two others.
    static Value moved(const Value& value, const Value& from, const Value& to, float share)
    {
        return value + (to - from) * share;
    }
    /// How far two values are apart; no number when one of them is none.
    static float distance(const Value& a, const Value& b) { return (a - b).length(); }
};

template <>
inline float Followed<float>::distance(const float& a, const float& b)
{
    return std::abs(a - b);
}

/// Colours change in a straight line from red, green, blue to red, green, blue.
template <>
struct Followed<osg::Color3f>
{
    using Vectors = Followed<osg::Vec3f>;

    static osg::Color3f between(const osg::Color3f& from, const osg::Color3f& to, float share)
    {
        return color(Vectors::between(vector(from), vector(to), share));
    }
    static osg::Color3f moved(const osg::Color3f& value, const osg::Color3f& from, const osg::Color3f& to,
                              float share)
    {
        return color(Vectors::moved(vector(value), vector(from), vector(to), share));
    }
    static float distance(const osg::Color3f& a, const osg::Color3f& b)
    {
        return Vectors::distance(vector(a), vector(b));
    }

private:
    static osg::Vec3f vector(const osg::Color3f& c) { return {c.red(), c.green(), c.blue()}; }
    static osg::Color3f color(const osg::Vec3f& v) { return {v[0], v[1], v[2]}; }
};

/// Rotations turn along the shorter arc; their distance is the angle between them.
template <>
struct Followed<Rotation>
{
    static Rotation between(const Rotation& from, const Rotation& to, float share)
    {
        return blend(from, to, share);
    }
    static Rotation moved(const Rotation& value, const Rotation& from, const Rotation& to, float share)
    {
        return turned(value, blend(Rotation(), difference(from, to), share));
    }
    static float distance(const Rotation& a, const Rotation& b)
    {
        const float angle = std::abs(difference(a, b).angle());
        return std::min(angle, 6.28318531F - angle);
    }
};

/// Lists move value by value. Lists of different lengths have no way between them: they are where they go.
template <class Value>
struct Followed<std::vector<Value>>
{
    using List = std::vector<Value>;

    static List between(const List& from, const List& to, float share)
    {
        if (from.size() != to.size())
            return to;
        List result(from);
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = Followed<Value>::between(from[i], to[i], share);
        return result;
    }
    static List moved(const List& value, const List& from, const List& to, float share)
    {
        if (value.size() != to.size() || from.size() != to.size())
            return to;
        List result(value);
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = Followed<Value>::moved(value[i], from[i], to[i], share);
        return result;
    }
    static float distance(const List& a, const List& b)
    {
        float greatest = 0.0F;
        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
            const float one = Followed<Value>::distance(a[i], b[i]);
            if (std::isnan(one))
                return one;
            greatest = std::max(greatest, one);
        }
        return greatest;
    }
};

} // namespace Orvane
