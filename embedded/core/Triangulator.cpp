#include "core/Triangulator.h"
#include <GL/glu.h>
#include <cmath>
#include <cstddef>

namespace Orvane {

// The tessellator hands corners round as pointers; ours are numbers in disguise, from 1 so that none is null.
struct Triangulator::Callbacks
{
    static void* toPointer(std::size_t corner)
    {
        return reinterpret_cast<void*>(static_cast<std::uintptr_t>(corner + 1)); // NOLINT: never followed
    }
    static std::uint32_t toCorner(const void* pointer)
    {
        return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer) - 1);
    }

    static void vertex(void* corner, void* self)
    {
        static_cast<Triangulator*>(self)->_triangles.push_back(toCorner(corner));
    }

    // With an edge flag callback the tessellator sends nothing but separate triangles.
    static void edgeFlag(GLboolean, void*) {}

    static void combine(GLdouble position[3], void* corners[4], GLfloat shares[4], void** result, void* self)
    {
        auto& triangulator = *static_cast<Triangulator*>(self);
        Crossing crossing;
        crossing.position = osg::Vec3f(static_cast<float>(position[0]), static_cast<float>(position[1]),
                                       static_cast<float>(position[2]));
        for (std::size_t i = 0; i < 4; ++i) {
            const bool used = corners[i] && shares[i] != 0.0F;
            crossing.corners[i] = used ? toCorner(corners[i]) : 0;
            crossing.shares[i] = used ? shares[i] : 0.0F;
            // Corners that merely touch are one of them: a bridge to a hole runs over its points twice.
            if (used && triangulator.isAt(crossing.corners[i], position)) {
                *result = corners[i];
                return;
            }
        }
        *result = toPointer(triangulator._coordinates.size());
        triangulator._coordinates.push_back({position[0], position[1], position[2]});
        triangulator._crossings.push_back(crossing);
    }

    static void error(GLenum, void* self) { static_cast<Triangulator*>(self)->_failed = true; }
};

Triangulator::Triangulator()
    : _tesselator(gluNewTess())
{
    using Function = void (*)();
    const auto set = [this](GLenum which, auto callback) {
        gluTessCallback(_tesselator, which, reinterpret_cast<Function>(callback));
    };
    set(GLU_TESS_VERTEX_DATA, &Callbacks::vertex);
    set(GLU_TESS_EDGE_FLAG_DATA, &Callbacks::edgeFlag);
    set(GLU_TESS_COMBINE_DATA, &Callbacks::combine);
    set(GLU_TESS_ERROR_DATA, &Callbacks::error);
}

Triangulator::~Triangulator()
{
    gluDeleteTess(_tesselator);
}

bool Triangulator::isConvex(const std::vector<osg::Vec3f>& polygon)
{
    const std::size_t count = polygon.size();
    if (count <= 3)
        return true;
    const osg::Vec3f normal = polygonNormal(polygon);
    // A convex polygon turns one way at each corner, and once round in all: along any direction it goes forth
    // and back once.
    std::size_t flips[3] = {0, 0, 0};
    osg::Vec3f lastEdge = polygon[0] - polygon[count - 1];
    osg::Vec3f lastMove = lastEdge;
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec3f edge = polygon[(i + 1) % count] - polygon[i];
        if (lastEdge.cross(edge).dot(normal) < 0.0F)
            return false;
        if (edge[0] != 0.0F || edge[1] != 0.0F || edge[2] != 0.0F)
            lastEdge = edge;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            if (edge[axis] == 0.0F)
                continue;
            if ((edge[axis] > 0.0F) != (lastMove[axis] > 0.0F) && lastMove[axis] != 0.0F && ++flips[axis] > 2)
                return false;
            lastMove[axis] = edge[axis];
        }
    }
    return true;
}

const std::vector<std::uint32_t>& Triangulator::triangulate(const std::vector<osg::Vec3f>& polygon)
{
    begin(polygonNormal(polygon));
    addOutline(polygon);
    end();
    return _triangles;
}

const std::vector<std::uint32_t>&
Triangulator::triangulate(const std::vector<std::vector<osg::Vec3f>>& outlines, const osg::Vec3f& normal)
{
    begin(normal);
    for (const std::vector<osg::Vec3f>& outline : outlines)
        addOutline(outline);
    end();
    return _triangles;
}

void Triangulator::begin(const osg::Vec3f& normal)
{
    _coordinates.clear();
    _triangles.clear();
    _crossings.clear();
    _failed = false;
    gluTessProperty(_tesselator, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_NONZERO);
    gluTessNormal(_tesselator, normal[0], normal[1], normal[2]);
    gluTessBeginPolygon(_tesselator, this);
}

void Triangulator::addOutline(const std::vector<osg::Vec3f>& outline)
{
    gluTessBeginContour(_tesselator);
    for (const osg::Vec3f& corner : outline) {
        _coordinates.push_back({corner[0], corner[1], corner[2]});
        // The tessellator copies the coordinates at once; only the number must last.
        gluTessVertex(_tesselator, _coordinates.back().data(), Callbacks::toPointer(_coordinates.size() - 1));
    }
    gluTessEndContour(_tesselator);
}

void Triangulator::end()
{
    gluTessEndPolygon(_tesselator);
    if (_failed) {
        _triangles.clear();
        _crossings.clear();
    }
}

bool Triangulator::isAt(std::uint32_t corner, const double position[3]) const
{
    // The tessellator works in the coordinates of a plane and back, at the cost of the last digits.
    constexpr double Tolerance = 1e-6;
    const std::array<double, 3>& known = _coordinates[corner];
    for (std::size_t i = 0; i < 3; ++i) {
        if (std::abs(known[i] - position[i]) > Tolerance * (1.0 + std::abs(known[i])))
            return false;
    }
    return true;
}

osg::Vec3f polygonNormal(const std::vector<osg::Vec3f>& polygon)
{
    osg::Vec3f sum;
    for (std::size_t i = 2; i < polygon.size(); ++i)
        sum += (polygon[i - 1] - polygon[0]).cross(polygon[i] - polygon[0]);
    return sum;
}

} // namespace Orvane
