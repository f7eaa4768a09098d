#include "physics/CollisionMesh.h"
#include <OpenSG/OSGTriangleIterator.h>
#include <algorithm>
#include <cmath>
#include <ode/ode.h>
#include <type_traits>
#include <unordered_map>
#include <utility>

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

/// Corners that stand at the same place are one, so that the engine knows which triangles are neighbours.
class CollisionMesh::Welder
{
public:
    explicit Welder(CollisionMesh& mesh)
        : _mesh(mesh)
    {
    }

    void add(const std::array<osg::Pnt3f, 3>& corners)
    {
        for (const osg::Pnt3f& corner : corners)
            _mesh._indices.push_back(indexOf({corner[0] + 0.0F, corner[1] + 0.0F, corner[2] + 0.0F}));
    }

private:
    struct Hash
    {
        std::size_t operator()(const std::array<float, 3>& place) const
        {
            std::size_t result = 0;
            for (const float value : place)
                result = result * 1000003 + std::hash<float>()(value);
            return result;
        }
    };

    std::uint32_t indexOf(const std::array<float, 3>& corner)
    {
        const auto next = static_cast<std::uint32_t>(_mesh._corners.size());
        const auto [place, isNew] = _known.emplace(corner, next);
        if (isNew)
            _mesh._corners.push_back(corner);
        return place->second;
    }

    CollisionMesh& _mesh;
    std::unordered_map<std::array<float, 3>, std::uint32_t, Hash> _known;
};

std::shared_ptr<const CollisionMesh> CollisionMesh::make(const osg::GeometryPtr& geometry)
{
    if (!geometry || !geometry->getPositions())
        return nullptr;
    const auto mesh = std::make_shared<CollisionMesh>();
    Welder welder(*mesh);
    for (osg::TriangleIterator triangle = geometry->beginTriangles(); !triangle.isAtEnd(); ++triangle) {
        const std::array<osg::Pnt3f, 3> corners{triangle.getPosition(0), triangle.getPosition(1),
                                                triangle.getPosition(2)};
        if (!isSolid(corners))
            continue;
        if (mesh->_indices.size() >= 3 * MostTriangles)
            return nullptr;
        welder.add(corners);
    }
    if (mesh->_indices.empty())
        return nullptr;
    mesh->divideLoneTriangle();
    mesh->measure();
    return mesh;
}

std::shared_ptr<const CollisionMesh> CollisionMesh::makeCone(double radius, double height)
{
    constexpr int Sides = 24;
    const auto half = static_cast<float>(0.5 * height);
    const osg::Pnt3f tip(0.0F, half, 0.0F);
    const osg::Pnt3f middle(0.0F, -half, 0.0F);
    const auto corner = [radius, half](int side) {
        const double angle = 2.0 * M_PI * (side % Sides) / Sides;
        return osg::Pnt3f(static_cast<float>(radius * std::sin(angle)), -half,
                          static_cast<float>(radius * std::cos(angle)));
    };
    const auto mesh = std::make_shared<CollisionMesh>();
    Welder welder(*mesh);
    for (int i = 0; i < Sides; ++i) {
        for (const std::array<osg::Pnt3f, 3>& corners :
             {std::array<osg::Pnt3f, 3>{tip, corner(i), corner(i + 1)},
              std::array<osg::Pnt3f, 3>{middle, corner(i + 1), corner(i)}})
        {
            if (isSolid(corners))
                welder.add(corners);
        }
    }
    if (mesh->_indices.empty())
        return nullptr;
    mesh->measure();
    return mesh;
}

void CollisionMesh::divideLoneTriangle()
{
    if (_indices.size() != 3)
        return;
    std::array<float, 3> middle{};
    for (std::size_t i = 0; i < 3; ++i)
        middle[i] = 0.5F * (_corners[0][i] + _corners[1][i]);
    _corners.push_back(middle);
    _indices = {0, 3, 2, 3, 1, 2};
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
