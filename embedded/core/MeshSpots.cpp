#include "core/MeshSpots.h"
#include "core/NormalGenerator.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGTriangleIterator.h>
#include <algorithm>

namespace Orvane {

void MeshSpots::clear()
{
    _triangles.clear();
}

void MeshSpots::add(const osg::GeometryPtr& geometry)
{
    if (!geometry)
        return;
    osg::TriangleIterator triangle(geometry);
    for (triangle.setToBegin(); !triangle.isAtEnd(); ++triangle)
        add(osg::Vec3f(triangle.getPosition(0)), osg::Vec3f(triangle.getPosition(1)),
            osg::Vec3f(triangle.getPosition(2)));
}

void MeshSpots::add(const osg::Vec3f& a, const osg::Vec3f& b, const osg::Vec3f& c)
{
    const osg::Vec3f across = (b - a).cross(c - a);
    const float area = across.length();
    if (!isUsable(a) || !isUsable(b) || !isUsable(c) || !(area > 0.0F) || !isDrawable(area))
        return;
    const double before = _triangles.empty() ? 0.0 : _triangles.back().until;
    if (_triangles.empty())
        _low = _high = a;
    for (const osg::Vec3f* corner : {&a, &b, &c}) {
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            _low[axis] = std::min(_low[axis], (*corner)[axis]);
            _high[axis] = std::max(_high[axis], (*corner)[axis]);
        }
    }
    _triangles.push_back({a, {b - a, c - a}, unitVector(across), before + static_cast<double>(area)});
}

void MeshSpots::pickOn(osg::Vec3f& position, osg::Vec3f& normal, Chance& chance) const
{
    const double wanted = static_cast<double>(chance.share()) * _triangles.back().until;
    auto triangle = std::lower_bound(_triangles.begin(), _triangles.end(), wanted,
                                     [](const Triangle& t, double area) { return t.until < area; });
    if (triangle == _triangles.end())
        --triangle;
    float u = chance.share();
    float v = chance.share();
    if (u + v > 1.0F) {
        u = 1.0F - u;
        v = 1.0F - v;
    }
    position = triangle->corner + triangle->sides[0] * u + triangle->sides[1] * v;
    normal = triangle->normal;
}

bool MeshSpots::pickIn(osg::Vec3f& position, Chance& chance) const
{
    constexpr int Tries = 32;
    for (int i = 0; i < Tries; ++i) {
        for (osg::UInt32 axis = 0; axis < 3; ++axis)
            position[axis] = _low[axis] + (_high[axis] - _low[axis]) * chance.share();
        if (isInside(position))
            return true;
    }
    return false;
}

bool MeshSpots::isInside(const osg::Vec3f& place) const
{
    // A line along x leaves a closed mesh as often as it enters it.
    bool inside = false;
    for (const Triangle& triangle : _triangles) {
        const auto cross = [](const osg::Vec3f& a, const osg::Vec3f& b) {
            return static_cast<double>(a[1]) * static_cast<double>(b[2]) -
                   static_cast<double>(a[2]) * static_cast<double>(b[1]);
        };
        const double area = cross(triangle.sides[0], triangle.sides[1]);
        if (area == 0.0)
            continue;
        const osg::Vec3f way = place - triangle.corner;
        const double u = cross(way, triangle.sides[1]) / area;
        const double v = cross(triangle.sides[0], way) / area;
        if (u < 0.0 || v < 0.0 || u + v > 1.0)
            continue;
        const double x = static_cast<double>(triangle.corner[0]) +
                         u * static_cast<double>(triangle.sides[0][0]) +
                         v * static_cast<double>(triangle.sides[1][0]);
        if (x > static_cast<double>(place[0]))
            inside = !inside;
    }
    return inside;
}

} // namespace Orvane
