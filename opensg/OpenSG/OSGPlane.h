#pragma once

#include "OSGVector.h"

namespace osg {

/// A plane with a unit normal; the half space that the normal points into is its inside.
class OSG_BASE_DLLMAPPING Plane
{
public:
    /// The plane z = 0 with its inside above.
    Plane() = default;

    /// All points with normal . p = distanceFromOrigin; the normal is scaled to length 1.
    Plane(const Vec3f& normal, Real32 distanceFromOrigin) { set(normal, distanceFromOrigin); }
    Plane(const Vec3f& normal, const Pnt3f& point) { set(normal, normal.dot(point.subZero())); }

    /// Both factors are divided by the length of the normal; a normal without length is ignored.
    void set(const Vec3f& normal, Real32 distanceFromOrigin)
    {
        const Real32 length = normal.length();
        if (!(length > 0))
            return;
        _normal = normal / length;
        _distance = distanceFromOrigin / length;
    }

    const Vec3f& getNormal() const { return _normal; }
    Real32 getDistanceFromOrigin() const { return _distance; }

    /// Signed distance of the point: positive on the inside.
    Real32 distance(const Pnt3f& point) const { return _normal.dot(point.subZero()) - _distance; }

    /// Whether the point lies inside or on the plane.
    bool isInHalfSpace(const Pnt3f& point) const { return distance(point) >= 0; }

private:
    Vec3f _normal = {0, 0, 1};
    Real32 _distance = 0;
};

} // namespace osg
