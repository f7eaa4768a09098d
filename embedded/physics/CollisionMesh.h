#pragma once

#include "physics/Dynamics.h"
#include <OpenSG/OSGGeometry.h>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Orvane {

/// Triangles that bodies collide with. Geoms share it.
class CollisionMesh
{
public:
    static constexpr std::size_t MostTriangles = 1000000;

    /// The triangles of a geometry that have an area and can be worked with; null when there are none, or
    /// more than can be handled.
    static std::shared_ptr<const CollisionMesh> make(const osg::GeometryPtr& geometry);

    /// The triangles of a closed cone about y.
    static std::shared_ptr<const CollisionMesh> makeCone(double radius, double height);

    /// For the engine; may throw `DynamicsFault`.
    dxTriMeshData* data() const;

    const std::array<float, 3>& least() const { return _least; }
    const std::array<float, 3>& most() const { return _most; }

private:
    class Welder;

    /// The engine makes nothing of a mesh of one triangle.
    void divideLoneTriangle();
    void measure();

    std::vector<std::array<float, 3>> _corners;
    std::vector<std::uint32_t> _indices;
    std::array<float, 3> _least{};
    std::array<float, 3> _most{};
    mutable Dynamics::TriMeshData _data;
};

} // namespace Orvane
