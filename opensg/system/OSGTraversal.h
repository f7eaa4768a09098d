#pragma once

#include <OpenSG/OSGNode.h>

#include <vector>

namespace osg {

/// Walks through a tree of nodes and the trees that it refers to, without recursion, with the matrix from
/// each node to the start at hand. Ends at a tree that appears inside itself, and after a number of nodes
/// that only trees of mutual references reach.
class Traversal
{
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
    };

    /// `visitor` has `int enter(Node&, const Matrix& parentToWorld, int parentMark)`, whose answer is the
    /// node's mark, or below 0 to leave out the node with all below it; `void visit(NodeCore&)`; `void
    /// leave(NodeCore&)`. The start's parent has the mark 0.
    template <class Visitor>
    void run(const NodePtr& start, UInt32 mask, Visitor& visitor)
    {
        _path.clear();
        _referredVisits = 0;
        tryEnter(*start, Matrix::identity(), 0, mask, false, visitor);
        while (!_path.empty()) {
            Level& level = _path.back();
            if (level.next < level.last) {
                Node& child = *level.node->getChildren()[level.next++];
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
    }

    bool isOpen(const Node& tree) const;
    bool hasVisitsLeft();

    std::vector<Level> _path;
    UInt32 _referredDepth = 0;
    UInt32 _referredVisits = 0;
    bool _told = false;
};

} // namespace osg
