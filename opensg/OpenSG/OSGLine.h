#pragma once

#include "OSGVector.h"

namespace osg {

class BoxVolume;
class CylinderVolume;
class FrustumVolume;
class SphereVolume;

/// A ray: a position and a direction of length 1 (or none at all, the default). Parameters along the line
/// are distances from the position. A volume is hit only at parameters of 0 and above, a triangle anywhere.
class OSG_BASE_DLLMAPPING Line
{
public:
    /// At the origin, without direction.
    Line() = default;

    /// From p0 towards p1.
    Line(const Pnt3f& p0, const Pnt3f& p1) { setValue(p0, p1); }

    /// From position along direction.
    Line(const Pnt3f& position, const Vec3f& direction) { setValue(position, direction); }

    void setValue(const Pnt3f& p0, const Pnt3f& p1) { setValue(p0, p1 - p0); }
    void setValue(const Pnt3f& position, const Vec3f& direction);

    const Pnt3f& getPosition() const { return _position; }
    const Vec3f& getDirection() const { return _direction; }

    /// The point of the infinite line that is nearest to point.
    Pnt3f getClosestPoint(const Pnt3f& point) const;

    /// Distance of point to the infinite line.
    Real32 distance(const Pnt3f& point) const;

    /// The nearest points of this line and other. False, and both points untouched, when they are parallel.
    bool getClosestPoints(const Line& other, Pnt3f& onThis, Pnt3f& onOther) const;

    /// Whether the infinite line meets the triangle, from either side. t becomes the parameter, negative
    /// when the triangle is behind the position; normal the unit normal (v1 - v0) x (v2 - v0).
    bool intersect(const Pnt3f& v0, const Pnt3f& v1, const Pnt3f& v2, Real32& t,
                   Vec3f* normal = nullptr) const;

    /// Whether the ray passes through the volume, and where it enters and leaves it. A ray that starts
    /// inside enters at 0. Nothing passes through an empty volume, everything through an infinite one.
    bool intersect(const BoxVolume& box, Real32& enter, Real32& exit) const;
    bool intersect(const BoxVolume& box) const;
    bool intersect(const SphereVolume& sphere, Real32& enter, Real32& exit) const;
    bool intersect(const SphereVolume& sphere) const;
    bool intersect(const CylinderVolume& cylinder, Real32& enter, Real32& exit) const;
    bool intersect(const CylinderVolume& cylinder) const;
    bool intersect(const FrustumVolume& frustum, Real32& enter, Real32& exit) const;
    bool intersect(const FrustumVolume& frustum) const;

    bool operator==(const Line& other) const
    {
        return _position == other._position && _direction == other._direction;
    }
    bool operator!=(const Line& other) const { return !(*this == other); }

private:
    Pnt3f _position;
    Vec3f _direction;
};

} // namespace osg
