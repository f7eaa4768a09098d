#include <OpenSG/OSGIntersectAction.h>

#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>

#include "OSGChildTree.h"
#include "OSGTraversal.h"

#include <cmath>

namespace osg {

namespace {

// Whether the ray passes the box at a t of 0 to `nearest`. Boxes are made a little larger than they are, as
// they were carried through matrices in single precision.
bool meets(const BoxVolume& box, const Line& line, Real64 nearest)
{
    if (box.isInfinite())
        return true;
    if (box.isEmpty())
        return false;
    Real64 enter = 0;
    Real64 exit = nearest;
    for (UInt32 i = 0; i < 3; ++i) {
        const Real64 slack = 1e-6 * (std::abs(Real64(box.getMin()[i])) + std::abs(Real64(box.getMax()[i])));
        const Real64 min = box.getMin()[i] - slack;
        const Real64 max = box.getMax()[i] + slack;
        const Real64 position = line.getPosition()[i];
        const Real64 direction = line.getDirection()[i];
        if (direction == 0) {
            if (position < min || position > max)
                return false;
            continue;
        }
        const Real64 a = (min - position) / direction;
        const Real64 b = (max - position) / direction;
        enter = osgMax(enter, osgMin(a, b));
        exit = osgMin(exit, osgMax(a, b));
    }
    return enter <= exit;
}

} // namespace

IntersectAction* IntersectAction::create()
{
    return new IntersectAction;
}

IntersectAction* IntersectAction::create(const Line& line, Real32 maxdist)
{
    IntersectAction* action = create();
    action->setLine(line, maxdist);
    return action;
}

void IntersectAction::setLine(const Line& line, Real32 maxdist)
{
    _line = line;
    _maxDist = maxdist;
}

Action::ResultE IntersectAction::apply(const NodePtr& node)
{
    _hitObject = NullFC;
    _hitTriangle = -1;
    _hitNormal.setNull();
    _hitToWorld.setIdentity();
    _hitPath.clear();
    if (!node) {
        SWARNING << "IntersectAction: no node to apply to" << std::endl;
        return Quit;
    }
    // The largest distance counts as a hit still.
    _nearest = std::nextafter(Real64(_maxDist), Real64(Inf) * 2);
    _spans.assign(1, {0, Real64(Inf) * 2});
    Traversal traversal;
    _traversal = &traversal;
    traversal.run(node, getTravMask(), *this);
    _traversal = nullptr;
    return Continue;
}

Pnt3f IntersectAction::getHitPoint() const
{
    return didHit() ? _line.getPosition() + _line.getDirection() * getHitT() : Pnt3f();
}

int IntersectAction::enter(Node& node, const Matrix& parentToWorld, int)
{
    BoxVolume box;
    box.setEmpty();
    box.extendBy(node.getVolume(true));
    box.transform(parentToWorld);
    return meets(box, _line, _nearest) ? 0 : -1;
}

bool IntersectAction::select(Node& node, std::vector<UInt32>& chosen)
{
    Pnt3d origin;
    Vec3d direction;
    // A static volume says nothing of what is below it.
    if (node.getNChildren() < ChildTree::fewestChildren || node.getVolume().isStatic() ||
        !getLocalRay(origin, direction))
        return false;
    node.childTree().collect(origin, direction, getNearest(), chosen);
    return true;
}

void IntersectAction::visit(NodeCore& core)
{
    core.intersect(*this);
}

void IntersectAction::leave(NodeCore& core)
{
    core.intersectLeave(*this);
}

Real64 IntersectAction::getNearest() const
{
    const Span& span = _spans.back();
    return osgMax(0.0, osgMin(_nearest, span.until) - span.from);
}

void IntersectAction::pushHalfSpace(const Vec4f& plane)
{
    Span span = _spans.back();
    Pnt3d origin;
    Vec3d direction;
    if (getLocalRay(origin, direction)) {
        Real64 height = plane[3];
        Real64 rise = 0;
        for (UInt32 i = 0; i < 3; ++i) {
            height += Real64(plane[i]) * origin[i];
            rise += Real64(plane[i]) * direction[i];
        }
        const Real64 t = span.from - height / rise;
        if (rise > 0)
            span.from = osgMax(span.from, t);
        else if (rise < 0)
            span.until = osgMin(span.until, t);
        else if (height < 0)
            span.until = span.from;
    }
    _spans.push_back(span);
}

bool IntersectAction::getLocalRay(Pnt3d& origin, Vec3d& direction) const
{
    const Matrix& toWorld = _traversal->getToWorld();
    Matrix4d toLocal;
    for (UInt32 c = 0; c < 4; ++c)
        toLocal[c] = Vec4d(toWorld[c]);
    if (!toLocal.invert())
        return false;
    toLocal.multMatrixPnt(Pnt3d(_line.getPosition()), origin);
    toLocal.multMatrixVec(Vec3d(_line.getDirection()), direction);
    for (UInt32 i = 0; i < 3; ++i)
        origin[i] += direction[i] * _spans.back().from;
    return true;
}

void IntersectAction::setHit(Real64 t, Int32 triangle, const Vec3f& normal)
{
    t += _spans.back().from;
    _nearest = t;
    _hitT = t;
    _hitTriangle = triangle;
    _hitNormal = normal;
    _hitToWorld = _traversal->getToWorld();
    _hitPath.clear();
    for (const Traversal::Level& level : _traversal->getPath())
        _hitPath.push_back(NodePtr(level.node));
    _hitObject = _hitPath.back();
}

} // namespace osg
