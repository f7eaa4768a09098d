#pragma once

#include <OpenSG/OSGNode.h>

#include <type_traits>
#include <vector>

namespace osg {

/// Walks through a tree of nodes and the trees that it refers to, without recursion, with the matrix from
/// each node to the start at hand. Ends at a tree that appears inside itself, and after a number of nodes
/// that only trees of mutual references reach.
class Traversal
{
    template <class Visitor, class = void>
    struct Selects : std::false_type
    {
    };
    template <class Visitor>
    struct Selects<Visitor, std::void_t<decltype(&Visitor::select)>> : std::true_type
    {
    };

public:
    struct Level
    {
        Node* node;
        UInt32 next;
        UInt32 last;
        bool referred; ///< the tree that the core refers to is still to come
        bool isReferred;
        int mark; ///< what the visitor answered
        Matrix toWorld;
        bool isSelected = false; ///< `next` and `last` are places in the list of selected children
        UInt32 firstSelected = 0;
    };

    /// `visitor` has `int enter(Node&, const Matrix& parentToWorld, int parentMark)`, whose answer is the
    /// node's mark, or below 0 to leave out the node with all below it; `void visit(NodeCore&)`; `void
    /// leave(NodeCore&)`. The start's parent has the mark 0. It may have `bool select(Node&,
    /// std::vector<UInt32>&)` too, which may append the numbers of those children that are to be visited, in
    /// that order; false for all. It is asked about nodes that show all their children.
    template <class Visitor>
    void run(const NodePtr& start, UInt32 mask, Visitor& visitor)
    {
        _path.clear();
        _selected.clear();
        _referredVisits = 0;
        tryEnter(*start, Matrix::identity(), 0, mask, false, visitor);
        while (!_path.empty()) {
            Level& level = _path.back();
            if (level.next < level.last) {
                const UInt32 place = level.next++;
                Node& child = *level.node->getChildren()[level.isSelected ? _selected[place] : place];
                tryEnter(child, level.toWorld, level.mark, mask, false, visitor);
            } else if (level.referred) {
                level.referred = false;
                const NodePtr tree = level.node->getCore()->getReferredTree();
                if (tree && !isOpen(*tree))
                    tryEnter(*tree, level.toWorld, level.mark, mask, true, visitor);
            } else {
                if (level.node->getCore())
                    visitor.leave(*level.node->getCore());
                _referredDepth -= level.isReferred;
                if (level.isSelected)
                    _selected.resize(level.firstSelected);
                _path.pop_back();
            }
        }
    }

    /// From the start to the present node.
    const std::vector<Level>& getPath() const { return _path; }
    const Matrix& getToWorld() const { return _path.back().toWorld; }

private:
    template <class Visitor>
    void tryEnter(Node& node, const Matrix& parentToWorld, int parentMark, UInt32 mask, bool isReferred,
                  Visitor& visitor)
    {
        if (!(node.getTravMask() & mask) || (_referredDepth + isReferred > 0 && !hasVisitsLeft()))
            return;
        const int mark = visitor.enter(node, parentToWorld, parentMark);
        if (mark < 0)
            return;
        NodeCore* core = node.getCore().getCPtr();
        const UInt32 count = node.getNChildren();
        const NodeCore::ChildRange range =
            core ? core->getActiveChildren(count) : NodeCore::ChildRange{0, count};
        // A copy, as the matrix may lie in the vector that grows.
        Matrix toWorld = parentToWorld;
        if (core)
            core->accumulateMatrix(toWorld);
        _path.push_back({&node, range.first, range.last, core != nullptr, isReferred, mark, toWorld});
        _referredDepth += isReferred;
        if (core)
            visitor.visit(*core);
        if constexpr (Selects<Visitor>::value) {
            const auto before = static_cast<UInt32>(_selected.size());
            if (range.first == 0 && range.last >= count && visitor.select(node, _selected)) {
                Level& level = _path.back();
                level.isSelected = true;
                level.firstSelected = before;
                level.next = before;
                level.last = static_cast<UInt32>(_selected.size());
            }
        }
    }

    bool isOpen(const Node& tree) const;
    bool hasVisitsLeft();

    std::vector<Level> _path;
    std::vector<UInt32> _selected; ///< children to visit, of those levels that have selected some
    UInt32 _referredDepth = 0;
    UInt32 _referredVisits = 0;
    bool _told = false;
};

} // namespace osg
