#include "core/NormalGenerator.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

/// More corners than these round one point are gathered by the first one of a kind, as comparing each with
/// each would take too long.
constexpr std::size_t MaxPairedCorners = 48;

} // namespace

// By Newell's rule, which is right for faces that are not quite flat and for concave ones.
osg::Vec3f areaNormal(const FaceList& faces, const Face& face)
{
    // Counted from the first corner, so that faces far from the origin lose no digits.
    const osg::Vec3f& origin = faces.cornerAt(face.first);
    osg::Vec3f sum;
    osg::Vec3f previous = faces.cornerAt(face.first + 1) - origin;
    for (std::uint32_t i = 2; i < face.count; ++i) {
        const osg::Vec3f edge = faces.cornerAt(face.first + i) - origin;
        sum += osg::Vec3f(previous[1] * edge[2] - previous[2] * edge[1],
                          previous[2] * edge[0] - previous[0] * edge[2],
                          previous[0] * edge[1] - previous[1] * edge[0]);
        previous = edge;
    }
    return sum;
}

osg::Vec3f unitVector(const osg::Vec3f& v)
{
    const float square = v[0] * v[0] + v[1] * v[1] + v[2] * v[2];
    if (square > 1e-30F && square < 1e30F)
        return v * (1.0F / std::sqrt(square));
    const double length =
        std::sqrt(double(v[0]) * double(v[0]) + double(v[1]) * double(v[1]) + double(v[2]) * double(v[2]));
    if (!(length > 0.0) || !std::isfinite(length))
        return osg::Vec3f();
    const double factor = 1.0 / length;
    return osg::Vec3f(static_cast<float>(v[0] * factor), static_cast<float>(v[1] * factor),
                      static_cast<float>(v[2] * factor));
}

NormalGenerator::NormalGenerator(const FaceList& faces)
    : _faces(&faces)
{
    _area.reserve(faces.faces().size());
    _unit.reserve(faces.faces().size());
    for (const Face& face : faces.faces()) {
        _area.push_back(face.count > 0 ? areaNormal(faces, face) : osg::Vec3f());
        _unit.push_back(unitVector(_area.back()));
    }
}

std::vector<osg::Vec3f> NormalGenerator::pointNormals() const
{
    std::vector<osg::Vec3f> normals(_faces->points().size());
    for (std::size_t f = 0; f < _area.size(); ++f) {
        const Face& face = _faces->faces()[f];
        for (std::uint32_t i = 0; i < face.count; ++i)
            normals[_faces->pointAt(face.first + i)] += _area[f];
    }
    for (osg::Vec3f& normal : normals)
        normal = unitVector(normal);
    return normals;
}

std::vector<osg::Vec3f> NormalGenerator::cornerNormals(float creaseAngle,
                                                       std::vector<std::uint32_t>& normalOf) const
{
    // The corners of each point, one point after the other.
    std::vector<std::uint32_t> begin(_faces->points().size() + 1);
    for (const Face& face : _faces->faces()) {
        for (std::uint32_t i = 0; i < face.count; ++i)
            ++begin[_faces->pointAt(face.first + i) + 1];
    }
    for (std::size_t p = 1; p < begin.size(); ++p)
        begin[p] += begin[p - 1];
    std::vector<Corner> corners(_faces->cornerCount());
    std::vector<std::uint32_t> fill(begin.begin(), begin.end() - 1);
    for (std::size_t f = 0; f < _area.size(); ++f) {
        const Face& face = _faces->faces()[f];
        for (std::uint32_t i = 0; i < face.count; ++i)
            corners[fill[_faces->pointAt(face.first + i)]++] = {static_cast<std::uint32_t>(f),
                                                                face.first + i};
    }

    normalOf.assign(_faces->index().size(), 0);
    std::vector<osg::Vec3f> normals;
    normals.reserve(corners.size() / 2);
    const float limit = std::cos(creaseAngle) - 1e-6F;
    const auto smooth = [&](const Corner& a, const Corner& b) {
        return a.face == b.face || _unit[a.face].dot(_unit[b.face]) >= limit;
    };
    for (std::size_t p = 0; p + 1 < begin.size(); ++p) {
        const Corner* const first = corners.data() + begin[p];
        const Corner* const last = corners.data() + begin[p + 1];
        const auto firstNormal = static_cast<std::uint32_t>(normals.size());
        if (static_cast<std::size_t>(last - first) <= MaxPairedCorners) {
            for (const Corner* corner = first; corner != last; ++corner) {
                osg::Vec3f sum;
                for (const Corner* other = first; other != last; ++other) {
                    if (smooth(*corner, *other))
                        sum += _area[other->face];
                }
                sum = unitVector(sum);
                std::uint32_t i = firstNormal;
                while (i < normals.size() && !normals[i].equals(sum, 1e-5F))
                    ++i;
                if (i == normals.size())
                    normals.push_back(sum);
                normalOf[corner->place] = i;
            }
            continue;
        }
        std::vector<Corner> leaders; // the first corner of each kind
        for (const Corner* corner = first; corner != last; ++corner) {
            std::size_t kind = 0;
            while (kind < leaders.size() && !smooth(leaders[kind], *corner))
                ++kind;
            if (kind == leaders.size()) {
                if (leaders.size() < MaxPairedCorners) {
                    leaders.push_back(*corner);
                    normals.push_back(osg::Vec3f());
                } else
                    kind = MaxPairedCorners - 1;
            }
            const auto i = static_cast<std::uint32_t>(firstNormal + kind);
            normals[i] += _area[corner->face];
            normalOf[corner->place] = i;
        }
        for (std::size_t i = firstNormal; i < normals.size(); ++i)
            normals[i] = unitVector(normals[i]);
    }
    return normals;
}

} // namespace Orvane
