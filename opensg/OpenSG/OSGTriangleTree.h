#pragma once

#include "OSGBoxVolume.h"
#include "OSGVector.h"

#include <functional>
#include <vector>

namespace osg {

class Geometry;

/// A hierarchy of boxes around the triangles of a geometry, for tests of rays and places. Triangles with
/// corners that are no numbers or do not exist are left out. Positions stay in the geometry, which drops the
/// tree when it changes.
class OSG_SYSTEMLIB_DLLMAPPING TriangleTree
{
public:
    explicit TriangleTree(const Geometry& geometry);

    struct Hit
    {
        Real64 t;
        Int32 triangle;
        Vec3f normal;
    };

    /// Finds the first triangle at 0 <= t < `nearest`; direction need not have length 1.
    bool intersect(const Pnt3d& origin, const Vec3d& direction, Real64 nearest, Hit& hit) const;

    /// How many triangles a ray meets, from either side.
    UInt32 countHits(const Pnt3d& origin, const Vec3d& direction) const;

    /// Asks about a triangle, by its corners.
    using TriangleTest = std::function<bool(const Pnt3f& a, const Pnt3f& b, const Pnt3f& c)>;
    /// True when the answer is yes for one of the triangles in or near a box, all those that reach into it
    /// included. No others are asked about from then on.
    bool anyIn(const BoxVolume& box, const TriangleTest& test) const;

private:
    struct Branch
    {
        Real32 min[3];
        Real32 max[3];
        UInt32 first; ///< the first of two branches side by side, or of `count` triangles
        UInt32 count; ///< 0 for an inner branch
    };

    struct Triangle
    {
        UInt32 positions[3];
        Int32 number;
    };

    struct Bounded;
    struct Range;
    class RayBoxes;

    void collect(std::vector<Bounded>& bounded);
    void build(std::vector<Bounded>& bounded);
    static UInt32 split(std::vector<Bounded>& bounded, const Range& range);
    bool test(const Triangle& triangle, const Pnt3d& origin, const Vec3d& direction, Real64& nearest) const;

    const Geometry& _geometry;
    std::vector<Branch> _branches;
    std::vector<Triangle> _triangles;
};

} // namespace osg
