#pragma once

#include "OSGAction.h"
#include "OSGLine.h"
#include "OSGMatrix.h"
#include "OSGNodeFields.h"

#include <vector>

namespace osg {

class Node;
class NodeCore;
class Traversal;

/// Finds the first triangle that a ray meets, from either side. The line is in the system of the parent of
/// the node that `apply` is called on, which is the world for a root. Whoever makes the action deletes it.
class OSG_SYSTEMLIB_DLLMAPPING IntersectAction : public Action
{
public:
    static IntersectAction* create();
    static IntersectAction* create(const Line& line, Real32 maxdist = Inf);

    void setLine(const Line& line, Real32 maxdist = Inf);
    const Line& getLine() const { return _line; }
    Real32 getMaxDist() const { return _maxDist; }

    /// Forgets the last result and looks for a new one.
    ResultE apply(const NodePtr& node) override;

    bool didHit() const { return static_cast<bool>(_hitObject); }
    /// Distance along the line; -1 without a hit.
    Real32 getHitT() const { return didHit() ? static_cast<Real32>(_hitT) : -1; }
    /// In the system of the line; null without a hit, like all that follows.
    Pnt3f getHitPoint() const;
    /// The unit normal of the triangle's plane, in the system of the geometry.
    Vec3f getHitNormal() const { return _hitNormal; }
    NodePtr getHitObject() const { return _hitObject; }
    /// The number for `TriangleIterator::seek`; -1 without a hit.
    Int32 getHitTriangle() const { return _hitTriangle; }
    /// From the system of the geometry to that of the line, along the way that the ray took: a tree that is
    /// shown in several places has as many.
    const Matrix& getHitToWorld() const { return _hitToWorld; }
    /// The nodes from the one that `apply` was called on to the hit one; a tree that a VisitSubTree refers to
    /// follows that core's node.
    const MFNodePtr& getHitPath() const { return _hitPath; }

    /// For cores: the ray in the system of the present node, from where hits begin to count. False when the
    /// node is squeezed flat.
    bool getLocalRay(Pnt3d& origin, Vec3d& direction) const;
    /// For cores: the t on the local ray that a hit must stay below.
    Real64 getNearest() const;
    /// For cores: takes a hit at a t of the local ray that is nearer than all before.
    void setHit(Real64 t, Int32 triangle, const Vec3f& normal);
    /// For cores: until taken back, only points of the present node's system with a x + b y + c z + d >= 0
    /// count.
    void pushHalfSpace(const Vec4f& plane);
    void popHalfSpace() { _spans.pop_back(); }

protected:
    IntersectAction() = default;

private:
    friend class Traversal;

    int enter(Node& node, const Matrix& parentToWorld, int parentMark);
    void visit(NodeCore& core);
    bool select(Node& node, std::vector<UInt32>& chosen);
    void leave(NodeCore& core);

    /// The part of the line on which hits count.
    struct Span
    {
        Real64 from;
        Real64 until;
    };

    Line _line;
    std::vector<Span> _spans;
    Real32 _maxDist = Inf;
    Real64 _nearest = 0;

    const Traversal* _traversal = nullptr;
    Real64 _hitT = -1;
    Vec3f _hitNormal;
    NodePtr _hitObject;
    Int32 _hitTriangle = -1;
    Matrix _hitToWorld;
    MFNodePtr _hitPath;
};

} // namespace osg
