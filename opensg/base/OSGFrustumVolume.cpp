#include "OpenSG/OSGFrustumVolume.h"

#include "OpenSG/OSGBoxVolume.h"
#include "OpenSG/OSGLine.h"

namespace osg {

void FrustumVolume::setPlanes(const Matrix& clip)
{
    // A point is visible where -w <= x, y, z <= w in clip space, with x, y, z, w the rows times the point.
    const struct
    {
        Side side;
        UInt32 row;
        Real32 sign;
    } limits[] = {{NEAR_PLANE, 2, 1},   {FAR_PLANE, 2, -1},   {LEFT_PLANE, 0, 1},
                  {RIGHT_PLANE, 0, -1}, {BOTTOM_PLANE, 1, 1}, {TOP_PLANE, 1, -1}};
    for (const auto& limit : limits) {
        Vec4f factors;
        for (UInt32 c = 0; c < 4; ++c)
            factors[c] = clip[c][3] + limit.sign * clip[c][limit.row];
        _planes[limit.side].set(Vec3f(factors), -factors[3]);
    }
}

bool FrustumVolume::intersect(const Pnt3f& point) const
{
    for (const Plane& plane : _planes) {
        if (!plane.isInHalfSpace(point))
            return false;
    }
    return true;
}

FrustumVolume::Containment FrustumVolume::classify(const BoxVolume& box) const
{
    if (box.isInfinite())
        return CROSSING;
    if (box.isEmpty())
        return OUTSIDE;
    Containment result = INSIDE;
    for (const Plane& plane : _planes) {
        // The corners farthest along the normal and farthest against it.
        Pnt3f farthest;
        Pnt3f nearest;
        for (UInt32 i = 0; i < 3; ++i) {
            const bool up = plane.getNormal()[i] >= 0;
            farthest[i] = up ? box.getMax()[i] : box.getMin()[i];
            nearest[i] = up ? box.getMin()[i] : box.getMax()[i];
        }
        if (!plane.isInHalfSpace(farthest))
            return OUTSIDE;
        if (!plane.isInHalfSpace(nearest))
            result = CROSSING;
    }
    return result;
}

bool FrustumVolume::intersect(const Line& line, Real32& enter, Real32& exit) const
{
    Real32 first = 0;
    Real32 last = Inf;
    for (const Plane& plane : _planes) {
        const Real32 distance = plane.distance(line.getPosition());
        const Real32 approach = plane.getNormal().dot(line.getDirection());
        if (approach > 0)
            first = osgMax(first, -distance / approach);
        else if (approach < 0)
            last = osgMin(last, -distance / approach);
        else if (!(distance >= 0))
            return false;
        if (first > last)
            return false;
    }
    enter = first;
    exit = last;
    return true;
}

} // namespace osg
