#include <OpenSG/OSGTriangleTree.h>

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTriangleIterator.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace osg {

namespace {

const UInt32 leafSize = 4;
const int binCount = 16;
// From this depth on ranges are halved by count, which bounds the depth of any tree.
const UInt32 mostUnevenDepth = 56;
const UInt32 mostDepth = mostUnevenDepth + 32;

struct Bounds
{
    Real32 min[3] = {Inf, Inf, Inf};
    Real32 max[3] = {NegInf, NegInf, NegInf};

    void extend(const Real32* low, const Real32* high)
    {
        for (int i = 0; i < 3; ++i) {
            min[i] = low[i] < min[i] ? low[i] : min[i];
            max[i] = high[i] > max[i] ? high[i] : max[i];
        }
    }

    // Half the surface, in double precision because products of large extents leave the range of single.
    Real64 area() const
    {
        const Real64 x = Real64(max[0]) - min[0];
        const Real64 y = Real64(max[1]) - min[1];
        const Real64 z = Real64(max[2]) - min[2];
        return x * y + y * z + z * x;
    }
};

} // namespace

// A triangle while the tree is built.
struct TriangleTree::Bounded
{
    Real32 min[3];
    UInt32 index;
    Real32 max[3];

    Real32 middle(int axis) const { return 0.5f * min[axis] + 0.5f * max[axis]; }
};

struct TriangleTree::Range
{
    UInt32 branch;
    UInt32 first;
    UInt32 last;
    UInt32 depth;
};

TriangleTree::TriangleTree(const Geometry& geometry)
    : _geometry(geometry)
{
    std::vector<Bounded> bounded;
    collect(bounded);
    if (!bounded.empty())
        build(bounded);
}

void TriangleTree::collect(std::vector<Bounded>& bounded)
{
    if (!_geometry.getPositions())
        return;
    const std::vector<Pnt3f>& positions = _geometry.getPositions()->getField();
    for (TriangleIterator it = _geometry.beginTriangles(); !it.isAtEnd(); ++it) {
        Triangle triangle;
        Bounds bounds;
        bool usable = true;
        for (int i = 0; i < 3 && usable; ++i) {
            const Int32 index = it.getPositionIndex(i);
            usable = index >= 0;
            if (!usable)
                break;
            triangle.positions[i] = static_cast<UInt32>(index);
            const Real32* p = positions[triangle.positions[i]].getValues();
            bounds.extend(p, p);
            // Also false for what is no number.
            usable = std::abs(p[0]) < Inf && std::abs(p[1]) < Inf && std::abs(p[2]) < Inf;
        }
        if (!usable)
            continue;
        triangle.number = it.getIndex();
        Bounded next;
        std::copy_n(bounds.min, 3, next.min);
        std::copy_n(bounds.max, 3, next.max);
        next.index = static_cast<UInt32>(_triangles.size());
        bounded.push_back(next);
        _triangles.push_back(triangle);
    }
}

// Cuts a range in two along the longest axis of its middles, where boxes of few triangles and small surface
// arise; answers where the second part begins.
UInt32 TriangleTree::split(std::vector<Bounded>& bounded, const Range& range)
{
    const UInt32 half = range.first + (range.last - range.first) / 2;
    if (range.depth >= mostUnevenDepth)
        return half;
    Bounds middles;
    for (UInt32 i = range.first; i < range.last; ++i) {
        const Real32 middle[3] = {bounded[i].middle(0), bounded[i].middle(1), bounded[i].middle(2)};
        middles.extend(middle, middle);
    }
    int axis = 0;
    for (int i = 1; i < 3; ++i) {
        if (middles.max[i] - middles.min[i] > middles.max[axis] - middles.min[axis])
            axis = i;
    }
    const Real32 start = middles.min[axis];
    const Real32 scale = binCount / (middles.max[axis] - start);
    // Equal middles, or ones so near that the quotient has no value.
    if (!(scale > 0) || !(scale < Inf))
        return half;
    const auto binOf = [=](const Bounded& triangle) {
        return std::min(static_cast<int>((triangle.middle(axis) - start) * scale), binCount - 1);
    };

    Bounds bins[binCount];
    UInt32 counts[binCount] = {};
    for (UInt32 i = range.first; i < range.last; ++i) {
        const int bin = binOf(bounded[i]);
        bins[bin].extend(bounded[i].min, bounded[i].max);
        ++counts[bin];
    }
    Real64 costsAbove[binCount];
    Bounds side;
    UInt32 count = 0;
    for (int bin = binCount - 1; bin > 0; --bin) {
        side.extend(bins[bin].min, bins[bin].max);
        count += counts[bin];
        costsAbove[bin] = count ? count * side.area() : 0;
    }
    side = Bounds();
    count = 0;
    int best = 1;
    Real64 bestCost = std::numeric_limits<Real64>::infinity();
    for (int bin = 1; bin < binCount; ++bin) {
        side.extend(bins[bin - 1].min, bins[bin - 1].max);
        count += counts[bin - 1];
        const Real64 cost = (count ? count * side.area() : 0) + costsAbove[bin];
        if (cost < bestCost) {
            bestCost = cost;
            best = bin;
        }
    }
    const auto middle = std::partition(bounded.begin() + range.first, bounded.begin() + range.last,
                                       [&](const Bounded& triangle) { return binOf(triangle) < best; });
    const UInt32 cut = static_cast<UInt32>(middle - bounded.begin());
    return cut == range.first || cut == range.last ? half : cut;
}

void TriangleTree::build(std::vector<Bounded>& bounded)
{
    const UInt32 total = static_cast<UInt32>(bounded.size());
    _branches.reserve(total / 2 + 1);
    _branches.emplace_back();
    std::vector<Range> waiting{{0, 0, total, 0}};
    while (!waiting.empty()) {
        const Range range = waiting.back();
        waiting.pop_back();
        Bounds bounds;
        for (UInt32 i = range.first; i < range.last; ++i)
            bounds.extend(bounded[i].min, bounded[i].max);
        Branch branch;
        std::copy_n(bounds.min, 3, branch.min);
        std::copy_n(bounds.max, 3, branch.max);
        branch.first = range.first;
        branch.count = range.last - range.first;
        if (branch.count > leafSize) {
            const UInt32 cut = split(bounded, range);
            branch.first = static_cast<UInt32>(_branches.size());
            branch.count = 0;
            waiting.push_back({branch.first, range.first, cut, range.depth + 1});
            waiting.push_back({branch.first + 1, cut, range.last, range.depth + 1});
            _branches.resize(_branches.size() + 2);
        }
        _branches[range.branch] = branch;
    }
    _branches.shrink_to_fit();

    std::vector<Triangle> ordered;
    ordered.reserve(total);
    for (const Bounded& triangle : bounded)
        ordered.push_back(_triangles[triangle.index]);
    _triangles = std::move(ordered);
}

bool TriangleTree::test(const Triangle& triangle, const Pnt3d& origin, const Vec3d& direction,
                        Real64& nearest) const
{
    const std::vector<Pnt3f>& positions = _geometry.getPositions()->getField();
    const Pnt3d p0(positions[triangle.positions[0]]);
    const Vec3d e1 = Pnt3d(positions[triangle.positions[1]]) - p0;
    const Vec3d e2 = Pnt3d(positions[triangle.positions[2]]) - p0;
    const Vec3d p = direction.cross(e2);
    const Real64 det = e1.dot(p);
    if (det == 0)
        return false;
    // A ray that meets an edge meets one of the two triangles at least.
    const Real64 slack = 1e-9;
    const Vec3d s = origin - p0;
    const Real64 u = s.dot(p) / det;
    if (!(u >= -slack && u <= 1 + slack))
        return false;
    const Vec3d q = s.cross(e1);
    const Real64 v = direction.dot(q) / det;
    if (!(v >= -slack && u + v <= 1 + slack))
        return false;
    const Real64 t = e2.dot(q) / det;
    if (!(t >= 0 && t < nearest))
        return false;
    nearest = t;
    return true;
}

/// A ray and the boxes of the hierarchy.
class TriangleTree::RayBoxes
{
public:
    RayBoxes(const Pnt3d& origin, const Vec3d& direction)
        : _origin(origin)
        , _direction(direction)
        , _inverse(1 / direction[0], 1 / direction[1], 1 / direction[2])
    {
    }

    // Where the ray enters a box; a value of `nearest` or more when it does not.
    Real64 entry(const Branch& branch, Real64 nearest) const
    {
        Real64 enter = 0;
        Real64 exit = nearest;
        for (UInt32 i = 0; i < 3; ++i) {
            if (_direction[i] == 0) {
                if (_origin[i] < branch.min[i] || _origin[i] > branch.max[i])
                    return nearest;
                continue;
            }
            const Real64 a = (branch.min[i] - _origin[i]) * _inverse[i];
            const Real64 b = (branch.max[i] - _origin[i]) * _inverse[i];
            enter = std::max(enter, std::min(a, b));
            exit = std::min(exit, std::max(a, b));
        }
        // The products are rounded: flat boxes must not slip away between two of them.
        return enter <= exit + 1e-12 * std::abs(exit) ? enter : nearest;
    }

private:
    Pnt3d _origin;
    Vec3d _direction;
    Vec3d _inverse;
};

bool TriangleTree::intersect(const Pnt3d& origin, const Vec3d& direction, Real64 nearest, Hit& hit) const
{
    if (_branches.empty())
        return false;
    const RayBoxes ray(origin, direction);
    const auto entry = [&](const Branch& branch) { return ray.entry(branch, nearest); };

    struct Waiting
    {
        const Branch* branch;
        Real64 entry;
    };
    Waiting waiting[mostDepth + 1];
    UInt32 count = 0;
    const Triangle* found = nullptr;
    waiting[count++] = {&_branches[0], entry(_branches[0])};
    while (count > 0) {
        const Waiting next = waiting[--count];
        if (!(next.entry < nearest))
            continue;
        if (next.branch->count > 0) {
            for (UInt32 i = 0; i < next.branch->count; ++i) {
                const Triangle& triangle = _triangles[next.branch->first + i];
                if (test(triangle, origin, direction, nearest))
                    found = &triangle;
            }
            continue;
        }
        Waiting a{&_branches[next.branch->first], 0};
        Waiting b{&_branches[next.branch->first + 1], 0};
        a.entry = entry(*a.branch);
        b.entry = entry(*b.branch);
        if (a.entry < b.entry)
            std::swap(a, b);
        if (a.entry < nearest)
            waiting[count++] = a;
        if (b.entry < nearest)
            waiting[count++] = b;
    }
    if (!found)
        return false;
    const std::vector<Pnt3f>& positions = _geometry.getPositions()->getField();
    const Pnt3d p0(positions[found->positions[0]]);
    const Vec3d normal =
        (Pnt3d(positions[found->positions[1]]) - p0).cross(Pnt3d(positions[found->positions[2]]) - p0);
    const Real64 length = normal.length();
    hit.t = nearest;
    hit.triangle = found->number;
    hit.normal = length > 0 ? Vec3f(normal / length) : Vec3f();
    return true;
}

UInt32 TriangleTree::countHits(const Pnt3d& origin, const Vec3d& direction) const
{
    if (_branches.empty())
        return 0;
    const Real64 farthest = std::numeric_limits<Real64>::max();
    const RayBoxes ray(origin, direction);
    const Branch* waiting[mostDepth + 1];
    UInt32 count = 0;
    UInt32 hits = 0;
    waiting[count++] = &_branches[0];
    while (count > 0) {
        const Branch& branch = *waiting[--count];
        if (!(ray.entry(branch, farthest) < farthest))
            continue;
        for (UInt32 i = 0; i < branch.count; ++i) {
            Real64 nearest = farthest;
            hits += test(_triangles[branch.first + i], origin, direction, nearest) ? 1 : 0;
        }
        if (branch.count == 0) {
            waiting[count++] = &_branches[branch.first + 1];
            waiting[count++] = &_branches[branch.first];
        }
    }
    return hits;
}

bool TriangleTree::anyIn(const BoxVolume& box, const TriangleTest& test) const
{
    if (_branches.empty() || box.isEmpty())
        return false;
    const std::vector<Pnt3f>& positions = _geometry.getPositions()->getField();
    const bool isEverywhere = box.isInfinite();
    const Branch* waiting[mostDepth + 1];
    UInt32 count = 0;
    waiting[count++] = &_branches[0];
    while (count > 0) {
        const Branch& branch = *waiting[--count];
        bool meets = true;
        for (UInt32 i = 0; i < 3; ++i)
            meets = meets && branch.min[i] <= box.getMax()[i] && branch.max[i] >= box.getMin()[i];
        if (!meets && !isEverywhere)
            continue;
        for (UInt32 i = 0; i < branch.count; ++i) {
            const Triangle& triangle = _triangles[branch.first + i];
            if (test(positions[triangle.positions[0]], positions[triangle.positions[1]],
                     positions[triangle.positions[2]]))
                return true;
        }
        if (branch.count == 0) {
            waiting[count++] = &_branches[branch.first + 1];
            waiting[count++] = &_branches[branch.first];
        }
    }
    return false;
}

} // namespace osg
