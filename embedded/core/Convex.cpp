#include "core/Convex.h"
#include "core/DoubleMatrix.h"
#include <algorithm>
#include <cmath>
#include <limits>

namespace Orvane {

namespace {

/// Up to four places whose hull is looked at, and where it is nearest to the origin.
class Hull
{
public:
    bool has(const osg::Vec3d& place) const
    {
        return std::any_of(_places.begin(), _places.begin() + _count,
                           [&](const osg::Vec3d& each) { return (each - place).squareLength() == 0.0; });
    }
    void add(const osg::Vec3d& place) { _places[_count++] = place; }

    /// The place of the hull that is nearest to the origin. Leaves only those corners that it lies between;
    /// null when the origin lies inside.
    osg::Vec3d reduce()
    {
        switch (_count) {
        case 1:
            return _places[0];
        case 2:
            return take(onEdge({0, 1}));
        case 3:
            return take(onFace({0, 1, 2}));
        default:
            return inside() ? osg::Vec3d() : take(nearestFace());
        }
    }

private:
    using Corners = std::array<unsigned int, 3>;

    /// A place on a corner, an edge or a face.
    struct Nearest
    {
        osg::Vec3d place;
        Corners corners;
        unsigned int count;
    };

    Nearest onEdge(const std::array<unsigned int, 2>& edge) const
    {
        const osg::Vec3d& a = _places[edge[0]];
        const osg::Vec3d along = _places[edge[1]] - a;
        const double length = along.squareLength();
        const double share = length > 0.0 ? -a.dot(along) / length : 0.0;
        if (!(share > 0.0))
            return {a, {edge[0]}, 1};
        if (share >= 1.0)
            return {_places[edge[1]], {edge[1]}, 1};
        return {a + along * share, {edge[0], edge[1]}, 2};
    }

    Nearest onFace(const Corners& face) const
    {
        const osg::Vec3d& a = _places[face[0]];
        const osg::Vec3d ab = _places[face[1]] - a;
        const osg::Vec3d ac = _places[face[2]] - a;
        const osg::Vec3d normal = ab.cross(ac);
        const double area = normal.squareLength();
        // Inside all three edges, seen along the normal.
        const auto isInside = [&](unsigned int from, unsigned int to) {
            const osg::Vec3d& p = _places[face[from]];
            return (_places[face[to]] - p).cross(osg::Vec3d() - p).dot(normal) >= 0.0;
        };
        if (area > 0.0 && isInside(0, 1) && isInside(1, 2) && isInside(2, 0))
            return {normal * (a.dot(normal) / area), face, 3};
        Nearest best = onEdge({face[0], face[1]});
        for (const auto& edge : {std::array<unsigned int, 2>{face[1], face[2]}, {face[2], face[0]}}) {
            const Nearest other = onEdge(edge);
            if (other.place.squareLength() < best.place.squareLength())
                best = other;
        }
        return best;
    }

    static constexpr std::array<Corners, 4> Faces{{{0, 1, 2}, {0, 2, 3}, {0, 3, 1}, {1, 3, 2}}};

    /// True when the origin is on the inner side of all four faces of a body with a volume.
    bool inside() const
    {
        for (const Corners& face : Faces) {
            const osg::Vec3d& a = _places[face[0]];
            const osg::Vec3d normal = (_places[face[1]] - a).cross(_places[face[2]] - a);
            const osg::Vec3d& opposite = _places[6 - face[0] - face[1] - face[2]];
            const double inner = normal.dot(opposite - a);
            const double origin = -normal.dot(a);
            if (inner == 0.0 || origin * inner < 0.0)
                return false;
        }
        return true;
    }

    Nearest nearestFace() const
    {
        Nearest best = onFace(Faces[0]);
        for (std::size_t i = 1; i < Faces.size(); ++i) {
            const Nearest other = onFace(Faces[i]);
            if (other.place.squareLength() < best.place.squareLength())
                best = other;
        }
        return best;
    }

    osg::Vec3d take(const Nearest& nearest)
    {
        std::array<osg::Vec3d, 4> left;
        for (unsigned int i = 0; i < nearest.count; ++i)
            left[i] = _places[nearest.corners[i]];
        _places = left;
        _count = nearest.count;
        return nearest.place;
    }

    std::array<osg::Vec3d, 4> _places;
    unsigned int _count = 0;
};

/// The place of a circle about y that lies farthest in a direction.
osg::Vec3d onCircle(const osg::Vec3d& direction, double radius, double height)
{
    const double length = std::hypot(direction[0], direction[2]);
    const double scale = length > 0.0 ? radius / length : 0.0;
    return osg::Vec3d(direction[0] * scale, height, direction[2] * scale);
}

} // namespace

Convex Convex::point(const osg::Vec3d& place)
{
    Convex result;
    result._corners[0] = place;
    return result;
}

Convex Convex::triangle(const osg::Vec3d& a, const osg::Vec3d& b, const osg::Vec3d& c)
{
    Convex result;
    result._kind = TRIANGLE;
    result._corners = {a, b, c};
    return result;
}

Convex Convex::box(const osg::Vec3d& center, const osg::Vec3d& size)
{
    Convex result;
    result._kind = BOX;
    result._center = center;
    result._size = size * 0.5;
    return result;
}

Convex Convex::sphere(double radius)
{
    Convex result;
    result._kind = SPHERE;
    result._size[0] = radius;
    return result;
}

Convex Convex::cone(double radius, double height)
{
    Convex result;
    result._kind = CONE;
    result._size = osg::Vec3d(radius, 0.5 * height, 0.0);
    return result;
}

Convex Convex::cylinder(double radius, double height)
{
    Convex result = cone(radius, height);
    result._kind = CYLINDER;
    return result;
}

Convex Convex::in(const osg::Matrix4d& matrix) const
{
    Convex result = *this;
    result._matrix = matrix;
    result._matrix.mult(_matrix);
    return result;
}

osg::Vec3d Convex::farthest(const osg::Vec3d& direction) const
{
    // The farthest place of the bent body is that of the straight one, asked in the direction bent back.
    osg::Vec3d own;
    for (osg::UInt32 i = 0; i < 3; ++i)
        own[i] = osg::Vec3d(_matrix[i][0], _matrix[i][1], _matrix[i][2]).dot(direction);
    osg::Vec3d place;
    switch (_kind) {
    case POINT:
        place = _corners[0];
        break;
    case TRIANGLE:
        place = *std::max_element(_corners.begin(), _corners.end(),
                                  [&](const auto& a, const auto& b) { return a.dot(own) < b.dot(own); });
        break;
    case BOX:
        for (osg::UInt32 i = 0; i < 3; ++i)
            place[i] = _center[i] + (own[i] < 0.0 ? -_size[i] : _size[i]);
        break;
    case SPHERE: {
        const double length = own.length();
        place = length > 0.0 ? own * (_size[0] / length) : osg::Vec3d(_size[0], 0.0, 0.0);
        break;
    }
    case CONE: {
        const osg::Vec3d rim = onCircle(own, _size[0], -_size[1]);
        const osg::Vec3d tip(0.0, _size[1], 0.0);
        place = tip.dot(own) > rim.dot(own) ? tip : rim;
        break;
    }
    case CYLINDER:
        place = onCircle(own, _size[0], own[1] < 0.0 ? -_size[1] : _size[1]);
        break;
    }
    return transformed(_matrix, place);
}

osg::Vec3d Convex::middle() const
{
    switch (_kind) {
    case POINT:
        return transformed(_matrix, _corners[0]);
    case TRIANGLE:
        return transformed(_matrix, (_corners[0] + _corners[1] + _corners[2]) * (1.0 / 3.0));
    default:
        return transformed(_matrix, _center);
    }
}

osg::BoxVolume Convex::bounds() const
{
    osg::Pnt3f least;
    osg::Pnt3f most;
    for (osg::UInt32 i = 0; i < 3; ++i) {
        osg::Vec3d axis;
        axis[i] = 1.0;
        // A little more, as single precision is coarse.
        const double high = farthest(axis)[i];
        const double low = farthest(osg::Vec3d() - axis)[i];
        const double slack = 1e-6 * (std::abs(high) + std::abs(low));
        most[i] = static_cast<float>(high + slack);
        least[i] = static_cast<float>(low - slack);
    }
    return osg::BoxVolume(least, most);
}

double Convex::distance(const Convex& a, const Convex& b)
{
    constexpr int MostSteps = 64;
    constexpr double Touching = 1e-7; ///< in relation to the size, as places come in single precision
    constexpr double Progress = 1e-9;
    osg::Vec3d nearest = a.middle() - b.middle();
    double size = 0.0;
    Hull hull;
    for (int i = 0; i < MostSteps; ++i) {
        const osg::Vec3d next = a.farthest(osg::Vec3d() - nearest) - b.farthest(nearest);
        const double square = nearest.squareLength();
        if (!std::isfinite(square) || !std::isfinite(next.squareLength()))
            return std::numeric_limits<double>::infinity();
        size = std::max(size, next.squareLength());
        if (square <= Touching * Touching * size)
            return 0.0;
        if (i > 0 && (square - nearest.dot(next) <= Progress * square || hull.has(next)))
            break;
        hull.add(next);
        nearest = hull.reduce();
    }
    return nearest.length();
}

} // namespace Orvane
