#include "physics/CollisionMesh.h"
#include <OpenSG/OSGTriangleIterator.h>
#include <algorithm>
#include <cmath>
#include <ode/ode.h>
#include <type_traits>

namespace Orvane {

namespace {

static_assert(std::is_same_v<dTriIndex, std::uint32_t>, "the engine takes the indices as they are");

constexpr float Farthest = 1e6F;
/// Triangles with less than this, in relation to their sides, are lines.
constexpr double LeastArea = 1e-7;

bool isSolid(const std::array<osg::Pnt3f, 3>& corners)
{
    for (const osg::Pnt3f& corner : corners) {
        for (osg::UInt32 i = 0; i < 3; ++i) {
            if (!(std::abs(corner[i]) <= Farthest))
                return false;
        }
    }
    const auto side = [&corners](std::size_t from, std::size_t to) {
        return osg::Vec3d(double(corners[to][0]) - corners[from][0],
                          double(corners[to][1]) - corners[from][1],
                          double(corners[to][2]) - corners[from][2]);
    };
    const osg::Vec3d a = side(0, 1);
    const osg::Vec3d b = side(0, 2);
    const double longest = std::max({a.length(), b.length(), side(1, 2).length()});
    return longest > 1e-6 && a.cross(b).length() > LeastArea * longest * longest;
}

} // namespace

std::shared_ptr<const CollisionMesh> CollisionMesh::make(const osg::GeometryPtr& geometry)
{
    const auto mesh = std::make_shared<CollisionMesh>();
    if (!geometry || !geometry->getPositions())
        return nullptr;
    for (osg::TriangleIterator triangle = geometry->beginTriangles(); !triangle.isAtEnd(); ++triangle) {
        const std::array<osg::Pnt3f, 3> corners{triangle.getPosition(0), triangle.getPosition(1),
                                                triangle.getPosition(2)};
        if (!isSolid(corners))
            continue;
        if (mesh->_indices.size() >= 3 * MostTriangles)
            return nullptr;
        mesh->add(corners);
    }
    if (mesh->_indices.empty())
        return nullptr;
    mesh->measure();
    return mesh;
}

void CollisionMesh::add(const std::array<osg::Pnt3f, 3>& corners)
{
    for (const osg::Pnt3f& corner : corners) {
        _indices.push_back(static_cast<std::uint32_t>(_corners.size()));
        _corners.push_back({corner[0], corner[1], corner[2]});
    }
}

void CollisionMesh::measure()
{
    _least = _most = _corners.front();
    for (const auto& corner : _corners) {
        for (std::size_t i = 0; i < 3; ++i) {
            _least[i] = std::min(_least[i], corner[i]);
            _most[i] = std::max(_most[i], corner[i]);
        }
    }
}

dxTriMeshData* CollisionMesh::data() const
{
    if (!_data) {
        Dynamics::TriMeshData data(dGeomTriMeshDataCreate());
        dGeomTriMeshDataBuildSingle(data.get(), _corners.data(), sizeof(_corners[0]),
                                    static_cast<int>(_corners.size()), _indices.data(),
                                    static_cast<int>(_indices.size()), 3 * sizeof(_indices[0]));
        _data = std::move(data);
    }
    return _data.get();
}

} // namespace Orvane
