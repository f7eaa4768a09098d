#include "core/NurbsProcs.h"
#include "core/Triangulator.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

using Outline = std::vector<osg::Vec2f>;

/// The part of an outline on one side of a line: where the coordinate \a axis is not beyond \a limit. Parts
/// that the line cuts apart stay joined along it, which encloses nothing.
Outline clipped(const Outline& outline, osg::UInt32 axis, float limit, bool below)
{
    Outline result;
    const auto isIn = [&](const osg::Vec2f& p) { return below ? p[axis] <= limit : p[axis] >= limit; };
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const osg::Vec2f& a = outline[i];
        const osg::Vec2f& b = outline[(i + 1) % outline.size()];
        if (isIn(a))
            result.push_back(a);
        if (isIn(a) == isIn(b))
            continue;
        osg::Vec2f crossing;
        const float t = (limit - a[axis]) / (b[axis] - a[axis]);
        crossing[1 - axis] = a[1 - axis] + (b[1 - axis] - a[1 - axis]) * t;
        crossing[axis] = limit;
        result.push_back(crossing);
    }
    return result;
}

std::vector<Outline> clipped(const std::vector<Outline>& outlines, osg::UInt32 axis, float low, float high)
{
    std::vector<Outline> result;
    for (const Outline& outline : outlines) {
        Outline part = clipped(clipped(outline, axis, low, false), axis, high, true);
        if (part.size() >= 3)
            result.push_back(std::move(part));
    }
    return result;
}

double areaOf(const Outline& outline)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const osg::Vec2f& a = outline[i];
        const osg::Vec2f& b = outline[(i + 1) % outline.size()];
        sum += static_cast<double>(a[0]) * static_cast<double>(b[1]) -
               static_cast<double>(b[0]) * static_cast<double>(a[1]);
    }
    return 0.5 * sum;
}

/// Cuts the part of a cell that is left into triangles and adds them.
class CellMesher
{
public:
    CellMesher(const NurbsPatch& patch, const NurbsPatch* texCoords)
        : _patch(patch)
        , _texCoords(texCoords)
    {
    }

    MeshData mesh;

    void add(const std::vector<Outline>& outlines)
    {
        std::vector<std::vector<osg::Vec3f>> corners;
        double area = 0.0;
        for (const Outline& outline : outlines) {
            area += std::abs(areaOf(outline));
            corners.emplace_back();
            for (const osg::Vec2f& p : outline)
                corners.back().emplace_back(p[0], p[1], 0.0F);
        }
        if (!(area > 1e-12))
            return;
        const std::vector<std::uint32_t>& triangles =
            _triangulator.triangulate(corners, osg::Vec3f(0.0F, 0.0F, 1.0F));
        std::vector<osg::Vec3f> places;
        for (const std::vector<osg::Vec3f>& outline : corners)
            places.insert(places.end(), outline.begin(), outline.end());
        for (const Triangulator::Crossing& crossing : _triangulator.crossings())
            places.push_back(crossing.position);
        const auto first = static_cast<std::uint32_t>(mesh.positions.size());
        for (const osg::Vec3f& place : places)
            addVertex(static_cast<double>(place[0]), static_cast<double>(place[1]));
        for (const std::uint32_t corner : triangles)
            mesh.indices.push_back(first + corner);
    }

private:
    void addVertex(double u, double v)
    {
        u = std::clamp(u, 0.0, 1.0);
        v = std::clamp(v, 0.0, 1.0);
        mesh.positions.emplace_back(_patch.at(u, v));
        mesh.normals.push_back(_patch.normalAt(u, v));
        const osg::Vec3f texCoord = _texCoords
                                        ? _texCoords->at(u, v)
                                        : osg::Vec3f(static_cast<float>(u), static_cast<float>(v), 0.0F);
        mesh.texCoords.push_back(texCoord[0]);
        mesh.texCoords.push_back(texCoord[1]);
    }

    const NurbsPatch& _patch;
    const NurbsPatch* _texCoords;
    Triangulator _triangulator;
};

} // namespace

MeshData trimmedMesh(const NurbsPatch& patch, const NurbsPatch* texCoords,
                     const std::vector<std::vector<osg::Vec2f>>& outlines, std::size_t columns,
                     std::size_t rows)
{
    CellMesher mesher(patch, texCoords);
    const auto edge = [](std::size_t i, std::size_t count) {
        return static_cast<float>(i) / static_cast<float>(count);
    };
    // Strip by strip, so that each cell looks at what lies in its row alone.
    for (std::size_t row = 0; row < rows; ++row) {
        const std::vector<Outline> strip = clipped(outlines, 1, edge(row, rows), edge(row + 1, rows));
        for (std::size_t column = 0; column < columns && !strip.empty(); ++column)
            mesher.add(clipped(strip, 0, edge(column, columns), edge(column + 1, columns)));
    }
    const auto isBad = [](const osg::Pnt3f& place) { return !isDrawable(place); };
    if (std::any_of(mesher.mesh.positions.begin(), mesher.mesh.positions.end(), isBad))
        return {};
    return std::move(mesher.mesh);
}

} // namespace Orvane
