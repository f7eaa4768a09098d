#pragma once

#include "OSGMatrix.h"
#include "OSGPlane.h"

#include <array>

namespace osg {

class BoxVolume;
class Line;

/// A view volume between six planes that face inwards. It tests other volumes and lines and bounds nothing
/// itself.
class OSG_BASE_DLLMAPPING FrustumVolume
{
public:
    enum Side { NEAR_PLANE, FAR_PLANE, LEFT_PLANE, RIGHT_PLANE, BOTTOM_PLANE, TOP_PLANE };

    /// How a volume lies to the frustum. What is INSIDE needs no further test for anything within it.
    enum Containment { OUTSIDE, CROSSING, INSIDE };

    /// The cube from -1 to 1.
    FrustumVolume() { setPlanes(Matrix::identity()); }
    explicit FrustumVolume(const Matrix& clip) { setPlanes(clip); }

    /// Takes the planes of what a matrix to clip space (projection x viewing) leaves visible, in the
    /// system that the matrix comes from.
    void setPlanes(const Matrix& clip);
    void setPlane(Side side, const Plane& plane) { _planes[side] = plane; }
    const Plane& getPlane(Side side) const { return _planes[side]; }

    /// Whether the point lies inside or on the surface.
    bool intersect(const Pnt3f& point) const;

    /// Conservative: a box near an edge of the frustum may count as crossing though it is outside. An
    /// empty box is outside, an infinite one crosses.
    Containment classify(const BoxVolume& box) const;
    bool intersect(const BoxVolume& box) const { return classify(box) != OUTSIDE; }

    bool intersect(const Line& line, Real32& enter, Real32& exit) const;

private:
    std::array<Plane, 6> _planes;
};

} // namespace osg
