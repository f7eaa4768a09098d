#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGMatrix.h"
#include "OSGNodeFields.h"

namespace osg {

class IntersectAction;
class NodeCore;
class RenderAction;
class Volume;

using NodeCorePtr = FCPtr<AttachmentContainerPtr, NodeCore>;

/// What a node is: a group, a transform, a light, a geometry. A core may serve many nodes, which hold the
/// references on it. A new kind of core overrides what it takes part in: matrices, volumes, drawing, picking.
class OSG_SYSTEMLIB_DLLMAPPING NodeCore : public AttachmentContainer
{
public:
    using Ptr = NodeCorePtr;

    /// Some of a node's children, `first` up to but not including `last`.
    struct ChildRange
    {
        UInt32 first;
        UInt32 last;
    };

    enum : UInt32 { ParentsFieldId = AttachmentContainer::NextFieldId, NextFieldId };
    static constexpr BitVector ParentsFieldMask = BitVector(1) << ParentsFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The nodes that have this core.
    const MFNodePtr& getParents() const { return _parents; }

    /// Multiplies the matrix of this core to the right of `result`.
    virtual void accumulateMatrix(Matrix& result) const;
    /// Turns the volume of a node's children into the volume of the node: adds what the core itself shows,
    /// and moves the whole into the system of the node's parent.
    virtual void adjustVolume(Volume& volume);
    /// The children that are seen, drawn and hit, of `count` children.
    virtual ChildRange getActiveChildren(UInt32 count) const;
    /// The root of a tree that is to appear below the node though it is none of its children; mostly null.
    virtual NodePtr getReferredTree() const;

    /// Takes part in drawing: before and after what is below the node.
    virtual void renderEnter(RenderAction& action);
    virtual void renderLeave(RenderAction& action);
    /// Takes part in picking: before and after what is below the node.
    virtual void intersect(IntersectAction& action);
    virtual void intersectLeave(IntersectAction& action);

    /// To be called when the core covers another part of space: the volumes of its nodes are out of date.
    void invalidateVolume();

protected:
    NodeCore() = default;

private:
    friend class Node;
    void addParent(const NodePtr& node);
    void subParent(const NodePtr& node);

    MFNodePtr _parents;
};

} // namespace osg
