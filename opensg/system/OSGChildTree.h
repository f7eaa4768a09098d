#pragma once

#include <OpenSG/OSGVector.h>

#include <utility>
#include <vector>

namespace osg {

class DynamicVolume;
class Node;

/// A hierarchy of boxes around the children of a node that has many, so that a ray looks only at those near
/// it, and a child that moves costs the node little. It is made for the first ray or the first child that
/// moves, and made anew when others come or go or when it has become too loose. Its node owns it.
class ChildTree
{
public:
    /// Fewer children are looked at one by one.
    static constexpr UInt32 fewestChildren = 32;

    /// Other children may have come, or all volumes changed.
    void setStale();
    /// The volume of one child will change. Many at once make the tree stale.
    void noteMoved(Node& child);
    bool isStale() const { return _isStale; }
    /// The children that have moved since the last update, some more than once; of a tree that is not stale.
    const std::vector<Node*>& moved() const { return _moved; }
    /// True when it pays to update the tree for the volume of its node alone: not while it becomes stale
    /// again and again.
    bool isSettled() { return !_isStale || std::exchange(_wasPassedOver, true); }

    /// Takes in what has changed. The volumes of the children are up to date.
    void update(const Node& node);
    /// The box around all children, in their system: false when one of them is infinite or has no usable
    /// bounds. An empty one leaves \a low above \a high. The tree is up to date.
    bool getBounds(Pnt3f& low, Pnt3f& high) const;

    /// Appends the numbers of those children whose boxes a ray, in the system of the children, may meet at a
    /// t of 0 to `nearest`, the first ones first.
    void collect(const Pnt3d& origin, const Vec3d& direction, Real64 nearest,
                 std::vector<UInt32>& chosen) const;

private:
    struct Box
    {
        Real32 min[3];
        Real32 max[3];

        void setEmpty();
        void extend(const Box& other);
        Real64 area() const;
        bool operator==(const Box& other) const;
        /// Takes the bounds of a volume; false when it is infinite or they are not usable.
        bool read(const DynamicVolume& volume);
        /// Where the ray enters the box; above `nearest` when it does not.
        Real64 entry(const Pnt3d& origin, const Vec3d& direction, Real64 nearest) const;
    };
    struct Branch
    {
        Box box;
        UInt32 first; ///< the first of two branches side by side, or of `count` children
        UInt32 count; ///< 0 for an inner branch
        UInt32 above;
    };

    void updateAll(const Node& node);
    bool updateMoved();
    bool hasChildrenOf(const Node& node) const;
    UInt32 indexOf(const Node* child) const;
    void readBoxes(const Node& node);
    void build(const Node& node);
    void refit();
    void refit(Branch& branch);
    void refitUpwards(UInt32 branch);
    Real64 totalArea() const;

    std::vector<const Node*> _children; ///< only compared
    std::vector<Box> _boxes;            ///< of the children
    std::vector<UInt32> _leaves;        ///< the branches that hold the children
    std::vector<UInt32> _byAddress;     ///< numbers of the children, by their addresses
    std::vector<UInt32> _order;         ///< numbers of the children, as the branches hold them
    std::vector<UInt32> _everywhere;    ///< children that are met by any ray
    std::vector<Branch> _branches;
    std::vector<Node*> _moved;
    Real64 _area = 0; ///< of all branches
    Real64 _builtArea = 0;
    bool _isStale = true;
    bool _wasPassedOver = false; ///< while stale
};

} // namespace osg
