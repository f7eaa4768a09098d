#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <Orvane/Rotation.h>

namespace Orvane {

/// What lies between two key values: \a t runs from 0 to 1.
inline float blend(float a, float b, float t)
{
    return a + (b - a) * t;
}

template <osg::UInt32 N>
osg::Vector<float, N> blend(const osg::Vector<float, N>& a, const osg::Vector<float, N>& b, float t)
{
    return a + (b - a) * t;
}

/// Along the straight line in HSV space, round the colour circle by the shorter way.
ORVANE_API osg::Color3f blend(const osg::Color3f& a, const osg::Color3f& b, float t);

/// Along the shorter arc. Axes need not be of unit length; a rotation without an axis is none.
ORVANE_API Rotation blend(const Rotation& a, const Rotation& b, float t);

/// The rotation \a first, and after it \a second.
ORVANE_API Rotation turned(const Rotation& first, const Rotation& second);

/// The rotation that comes after \a from to make \a to, with an angle of at most half a turn.
ORVANE_API Rotation difference(const Rotation& from, const Rotation& to);

/// Smoothly through key rotations: what lies between \a b and \a c at \a t, when \a a comes before them and
/// \a d after them. After Shoemake's spherical cubic (SIGGRAPH 1987 course notes).
ORVANE_API Rotation blendSmoothly(const Rotation& a, const Rotation& b, const Rotation& c, const Rotation& d,
                                  float t);

/// Along the arc between two directions, of unit length when both are.
ORVANE_API osg::Vec3f blendDirections(const osg::Vec3f& a, const osg::Vec3f& b, float t);

} // namespace Orvane
