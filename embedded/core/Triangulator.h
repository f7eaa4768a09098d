#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class GLUtesselator;

namespace Orvane {

/// Cuts polygons into triangles: concave ones, ones with holes that a bridge joins to the outline, and ones
/// that cross themselves. Keep one for many polygons; its lists are used again.
class ORVANE_API Triangulator
{
public:
    /// A corner that the polygon did not have, where edges cross: shares of up to four others, each a corner
    /// of the polygon or a crossing before this one.
    struct Crossing
    {
        osg::Vec3f position;
        std::array<std::uint32_t, 4> corners;
        std::array<float, 4> shares; ///< 0 for what is not used
    };

    Triangulator();
    Triangulator(const Triangulator&) = delete;
    Triangulator& operator=(const Triangulator&) = delete;
    ~Triangulator();

    /// True for a polygon that a fan from its first corner fills.
    static bool isConvex(const std::vector<osg::Vec3f>& polygon);

    /// Cuts a polygon. The result holds three numbers a triangle, corners of \a polygon or, from its size on,
    /// crossings; triangles run round the same way as the polygon. It is valid until the next call, and empty
    /// for a polygon without area.
    const std::vector<std::uint32_t>& triangulate(const std::vector<osg::Vec3f>& polygon);

    /// The same for several outlines in one plane, whose normal is given; what they run round a number of
    /// times other than 0 is filled, so that holes run the other way. The corners of all outlines are
    /// numbered in order.
    const std::vector<std::uint32_t>& triangulate(const std::vector<std::vector<osg::Vec3f>>& outlines,
                                                  const osg::Vec3f& normal);

    const std::vector<Crossing>& crossings() const { return _crossings; }

private:
    struct Callbacks;

    void begin(const osg::Vec3f& normal);
    void addOutline(const std::vector<osg::Vec3f>& outline);
    void end();
    bool isAt(std::uint32_t corner, const double position[3]) const;

    GLUtesselator* _tesselator;
    std::vector<std::array<double, 3>> _coordinates; ///< of the corners of the present polygon
    std::vector<std::uint32_t> _triangles;
    std::vector<Crossing> _crossings;
    bool _failed = false;
};

/// Normal of a polygon, of twice its area in length.
ORVANE_API osg::Vec3f polygonNormal(const std::vector<osg::Vec3f>& polygon);

} // namespace Orvane
