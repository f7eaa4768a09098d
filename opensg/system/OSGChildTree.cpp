#include "OSGChildTree.h"

#include <OpenSG/OSGNode.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

namespace osg {

namespace {

constexpr UInt32 leafSize = 4;
// Children that have moved about make the boxes this much larger before it pays to sort them anew.
constexpr Real64 loosest = 2;

// Of this many children one may move between two updates before all are looked at.
constexpr std::size_t movedShare = 8;

bool isFinite(const Pnt3f& point)
{
    return std::isfinite(point[0]) && std::isfinite(point[1]) && std::isfinite(point[2]);
}

} // namespace

void ChildTree::Box::setEmpty()
{
    std::fill_n(min, 3, std::numeric_limits<Real32>::infinity());
    std::fill_n(max, 3, -std::numeric_limits<Real32>::infinity());
}

void ChildTree::Box::extend(const Box& other)
{
    for (int i = 0; i < 3; ++i) {
        min[i] = std::min(min[i], other.min[i]);
        max[i] = std::max(max[i], other.max[i]);
    }
}

Real64 ChildTree::Box::area() const
{
    if (!(min[0] <= max[0]))
        return 0;
    const Real64 x = Real64(max[0]) - min[0];
    const Real64 y = Real64(max[1]) - min[1];
    const Real64 z = Real64(max[2]) - min[2];
    return x * y + y * z + z * x;
}

Real64 ChildTree::Box::entry(const Pnt3d& origin, const Vec3d& direction, Real64 nearest) const
{
    const Real64 missed = std::numeric_limits<Real64>::infinity();
    Real64 enter = 0;
    Real64 exit = nearest;
    for (UInt32 i = 0; i < 3; ++i) {
        // A little larger than it is, as it was carried through matrices in single precision.
        const Real64 slack = 1e-6 * (std::abs(Real64(min[i])) + std::abs(Real64(max[i])));
        const Real64 low = min[i] - slack;
        const Real64 high = max[i] + slack;
        if (direction[i] == 0) {
            if (origin[i] < low || origin[i] > high)
                return missed;
            continue;
        }
        const Real64 a = (low - origin[i]) / direction[i];
        const Real64 b = (high - origin[i]) / direction[i];
        enter = std::max(enter, std::min(a, b));
        exit = std::min(exit, std::max(a, b));
    }
    return enter <= exit ? enter : missed;
}

bool ChildTree::Box::operator==(const Box& other) const
{
    return std::equal(min, min + 3, other.min) && std::equal(max, max + 3, other.max);
}

bool ChildTree::Box::read(const DynamicVolume& volume)
{
    setEmpty();
    if (volume.isEmpty())
        return true;
    Pnt3f low;
    Pnt3f high;
    volume.getBounds(low, high);
    if (volume.isInfinite() || !isFinite(low) || !isFinite(high))
        return false;
    std::copy_n(low.getValues(), 3, min);
    std::copy_n(high.getValues(), 3, max);
    return true;
}

void ChildTree::setStale()
{
    _isStale = true;
    _wasPassedOver = false;
    _moved.clear();
}

void ChildTree::noteMoved(Node& child)
{
    if (_isStale)
        return;
    _moved.push_back(&child);
    if (_moved.size() * movedShare > _children.size())
        setStale();
}

void ChildTree::update(const Node& node)
{
    if (_isStale || !updateMoved())
        updateAll(node);
    else if (_area > _builtArea * loosest)
        build(node);
    _isStale = false;
    _moved.clear();
}

bool ChildTree::getBounds(Pnt3f& low, Pnt3f& high) const
{
    const Box& all = _branches.front().box;
    low.setValues(all.min[0], all.min[1], all.min[2]);
    high.setValues(all.max[0], all.max[1], all.max[2]);
    return _everywhere.empty();
}

void ChildTree::updateAll(const Node& node)
{
    const std::vector<UInt32> everywhere = _everywhere;
    const bool isKnown = hasChildrenOf(node);
    readBoxes(node);
    if (!isKnown || everywhere != _everywhere) {
        build(node);
        return;
    }
    refit();
    if (_area > _builtArea * loosest)
        build(node);
}

// False when that does not do.
bool ChildTree::updateMoved()
{
    if (!_moved.empty() && !_everywhere.empty())
        return false;
    for (const Node* child : _moved) {
        const UInt32 index = indexOf(child);
        if (index == _children.size() || !_boxes[index].read(child->getVolume()))
            return false;
        refitUpwards(_leaves[index]);
    }
    return true;
}

UInt32 ChildTree::indexOf(const Node* child) const
{
    const auto found = std::lower_bound(
        _byAddress.begin(), _byAddress.end(), child,
        [this](UInt32 index, const Node* wanted) { return std::less<>()(_children[index], wanted); });
    return found != _byAddress.end() && _children[*found] == child ? *found
                                                                   : static_cast<UInt32>(_children.size());
}

bool ChildTree::hasChildrenOf(const Node& node) const
{
    const MFNodePtr& children = node.getChildren();
    return std::equal(_children.begin(), _children.end(), children.begin(), children.end(),
                      [](const Node* known, const NodePtr& child) { return known == child.getCPtr(); });
}

void ChildTree::readBoxes(const Node& node)
{
    const UInt32 count = node.getNChildren();
    _boxes.resize(count);
    _everywhere.clear();
    for (UInt32 i = 0; i < count; ++i) {
        if (!_boxes[i].read(node.getChildren()[i]->getVolume()))
            _everywhere.push_back(i);
    }
}

void ChildTree::build(const Node& node)
{
    struct Range
    {
        UInt32 branch;
        UInt32 first;
        UInt32 last;
    };

    _children.clear();
    for (const NodePtr& child : node.getChildren())
        _children.push_back(child.getCPtr());
    _order.resize(_children.size());
    std::iota(_order.begin(), _order.end(), 0);
    _byAddress = _order;
    std::sort(_byAddress.begin(), _byAddress.end(),
              [this](UInt32 a, UInt32 b) { return std::less<>()(_children[a], _children[b]); });
    _leaves.resize(_children.size());
    _branches.assign(1, Branch());
    std::vector<Range> waiting{{0, 0, static_cast<UInt32>(_order.size())}};
    while (!waiting.empty()) {
        const Range range = waiting.back();
        waiting.pop_back();
        Box box;
        box.setEmpty();
        for (UInt32 i = range.first; i < range.last; ++i)
            box.extend(_boxes[_order[i]]);
        const UInt32 count = range.last - range.first;
        const UInt32 above = _branches[range.branch].above;
        if (count <= leafSize) {
            _branches[range.branch] = {box, range.first, count, above};
            for (UInt32 i = range.first; i < range.last; ++i)
                _leaves[_order[i]] = range.branch;
            continue;
        }
        int axis = 0;
        for (int i = 1; i < 3; ++i)
            axis = box.max[i] - box.min[i] > box.max[axis] - box.min[axis] ? i : axis;
        // Empty boxes have no middle; they go to the end.
        const auto middle = [&](UInt32 child) {
            const Box& each = _boxes[child];
            return each.min[axis] <= each.max[axis] ? Real64(each.min[axis]) + each.max[axis]
                                                    : std::numeric_limits<Real64>::infinity();
        };
        const UInt32 cut = range.first + count / 2;
        std::nth_element(_order.begin() + range.first, _order.begin() + cut, _order.begin() + range.last,
                         [&](UInt32 a, UInt32 b) { return middle(a) < middle(b); });
        const auto below = static_cast<UInt32>(_branches.size());
        _branches[range.branch] = {box, below, 0, above};
        _branches.resize(_branches.size() + 2, Branch{Box(), 0, 0, range.branch});
        waiting.push_back({below, range.first, cut});
        waiting.push_back({below + 1, cut, range.last});
    }
    _area = totalArea();
    _builtArea = _area;
}

void ChildTree::refit()
{
    // Branches stand behind the one that they belong to.
    for (auto branch = _branches.rbegin(); branch != _branches.rend(); ++branch)
        refit(*branch);
    _area = totalArea();
}

void ChildTree::refit(Branch& branch)
{
    branch.box.setEmpty();
    if (branch.count == 0 && branch.first != 0) {
        branch.box.extend(_branches[branch.first].box);
        branch.box.extend(_branches[branch.first + 1].box);
    }
    for (UInt32 i = 0; i < branch.count; ++i)
        branch.box.extend(_boxes[_order[branch.first + i]]);
}

void ChildTree::refitUpwards(UInt32 branch)
{
    for (;;) {
        const Box before = _branches[branch].box;
        refit(_branches[branch]);
        _area += _branches[branch].box.area() - before.area();
        if (branch == 0 || _branches[branch].box == before)
            return;
        branch = _branches[branch].above;
    }
}

Real64 ChildTree::totalArea() const
{
    Real64 sum = 0;
    for (const Branch& branch : _branches)
        sum += branch.box.area();
    return sum;
}

void ChildTree::collect(const Pnt3d& origin, const Vec3d& direction, Real64 nearest,
                        std::vector<UInt32>& chosen) const
{
    struct Met
    {
        Real64 entry;
        UInt32 child;
    };

    std::vector<Met> met;
    std::vector<UInt32> waiting{0};
    while (!waiting.empty()) {
        const Branch& branch = _branches[waiting.back()];
        waiting.pop_back();
        if (branch.box.entry(origin, direction, nearest) > nearest)
            continue;
        if (branch.count == 0 && branch.first != 0) {
            waiting.push_back(branch.first);
            waiting.push_back(branch.first + 1);
        }
        for (UInt32 i = 0; i < branch.count; ++i) {
            const UInt32 child = _order[branch.first + i];
            const Real64 entry = _boxes[child].entry(origin, direction, nearest);
            if (entry <= nearest)
                met.push_back({entry, child});
        }
    }
    std::sort(met.begin(), met.end(), [](const Met& a, const Met& b) {
        return a.entry < b.entry || (a.entry == b.entry && a.child < b.child);
    });
    chosen.insert(chosen.end(), _everywhere.begin(), _everywhere.end());
    for (const Met& each : met)
        chosen.push_back(each.child);
}

} // namespace osg
