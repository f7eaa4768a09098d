#pragma once

#include "core/MeshFaults.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <vector>

namespace Orvane {

/// One polygon: a run of places in an index list. A face that cannot be drawn keeps its number but has no
/// corners.
struct Face
{
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/// The polygons that an index list describes over a list of points. It refers to both, which must outlive it.
class ORVANE_API FaceList
{
public:
    FaceList(const std::vector<osg::Vec3f>& points, const std::vector<int>& index)
        : _points(&points)
        , _index(&index)
    {
    }

    /// Reads polygons that end with -1 each; the last one may lack it.
    void readPolygons(MeshFaults& faults);
    /// Reads triangles of three indices each; a rest of one or two is left out.
    void readTriangles(MeshFaults& faults) { readEqual(3, faults); }
    /// Reads faces of four indices each; a rest of up to three is left out.
    void readQuads(MeshFaults& faults) { readEqual(4, faults); }

    const std::vector<Face>& faces() const { return _faces; }
    /// Corners of all faces that can be drawn.
    std::size_t cornerCount() const { return _cornerCount; }
    /// Triangles that convex faces give.
    std::size_t triangleCount() const { return _triangleCount; }

    const std::vector<osg::Vec3f>& points() const { return *_points; }
    const std::vector<int>& index() const { return *_index; }
    /// Number of the point at a place of the index list; only for places of faces.
    std::uint32_t pointAt(std::uint32_t place) const { return static_cast<std::uint32_t>((*_index)[place]); }
    const osg::Vec3f& cornerAt(std::uint32_t place) const { return (*_points)[pointAt(place)]; }

private:
    void readEqual(std::size_t corners, MeshFaults& faults);
    bool prepare(MeshFaults& faults);
    void addFace(std::size_t first, std::size_t count, bool inRange, MeshFaults& faults);

    const std::vector<osg::Vec3f>* _points;
    const std::vector<int>* _index;
    std::vector<Face> _faces;
    std::vector<bool> _undrawable; ///< by point; empty when all can be drawn
    std::size_t _cornerCount = 0;
    std::size_t _triangleCount = 0;
};

/// The index list of points in their order, cut into runs as long as \a counts say, each with -1 after it.
/// What goes past the points is left out.
ORVANE_API std::vector<int> pointRuns(const std::vector<int>& counts, std::size_t pointCount);

} // namespace Orvane
