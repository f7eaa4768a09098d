#pragma once

#include <OpenSG/OSGVector.h>

#include <vector>

namespace osg {

class Node;

/// A hierarchy of boxes around the children of a node that has many, so that a ray looks only at those near
/// it. It is made for the first ray, follows children that move, and is made anew when others come or go or
/// when it has become too loose.
class ChildTree
{
public:
    /// Fewer children are looked at one by one.
    static constexpr UInt32 fewestChildren = 32;

    /// The volumes of the children may have changed.
    void setStale() { _isStale = true; }
    /// Takes in what has changed. The volumes of the children are up to date.
    void update(const Node& node);

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
        /// Where the ray enters the box; above `nearest` when it does not.
        Real64 entry(const Pnt3d& origin, const Vec3d& direction, Real64 nearest) const;
    };
    struct Branch
    {
        Box box;
        UInt32 first; ///< the first of two branches side by side, or of `count` children
        UInt32 count; ///< 0 for an inner branch
    };

    bool hasChildrenOf(const Node& node) const;
    void readBoxes(const Node& node);
    void build(const Node& node);
    void refit();
    Real64 totalArea() const;

    std::vector<const Node*> _children; ///< only compared
    std::vector<Box> _boxes;            ///< of the children
    std::vector<UInt32> _order;         ///< numbers of the children, as the branches hold them
    std::vector<UInt32> _everywhere;    ///< children that are met by any ray
    std::vector<Branch> _branches;
    Real64 _builtArea = 0;
    bool _isStale = true;
};

} // namespace osg
