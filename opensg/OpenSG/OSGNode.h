#pragma once

#include "OSGDynamicVolume.h"
#include "OSGNodeCore.h"
#include "OSGNodeFields.h"

#include <memory>
#include <vector>

namespace osg {

class ChildTree;
class VisitSubTree;

/// A place in the scene graph: a core, which tells what it is, and children in order. A node holds references
/// on its core and on its children and has at most one parent; the same tree is shown in a second place by a
/// VisitSubTree core. Volumes are kept in the system of the parent and brought up to date when asked for.
class OSG_SYSTEMLIB_DLLMAPPING Node : public AttachmentContainer
{
public:
    using Ptr = NodePtr;

    enum : UInt32 {
        VolumeFieldId = AttachmentContainer::NextFieldId,
        TravMaskFieldId,
        ParentFieldId,
        ChildrenFieldId,
        CoreFieldId,
        NextFieldId
    };
    static constexpr BitVector VolumeFieldMask = BitVector(1) << VolumeFieldId;
    static constexpr BitVector TravMaskFieldMask = BitVector(1) << TravMaskFieldId;
    static constexpr BitVector ParentFieldMask = BitVector(1) << ParentFieldId;
    static constexpr BitVector ChildrenFieldMask = BitVector(1) << ChildrenFieldId;
    static constexpr BitVector CoreFieldMask = BitVector(1) << CoreFieldId;

    static NodePtr create();
    static NodePtr createEmpty();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const NodeCorePtr& getCore() const { return _core; }
    /// Takes a reference on `core` in place of the present one; null takes the core away.
    void setCore(const NodeCorePtr& core);

    const NodePtr& getParent() const { return _parent; }

    UInt32 getNChildren() const { return static_cast<UInt32>(_children.size()); }
    /// Null when there is no such child.
    NodePtr getChild(UInt32 index) const;
    const MFNodePtr& getChildren() const { return _children; }
    /// Takes a reference on `child`, which leaves the parent that it has. Null, and a node that this one lies
    /// below, are refused.
    void addChild(const NodePtr& child);
    /// The same at a place; one behind the end counts as the end.
    void insertChild(UInt32 index, const NodePtr& child);
    /// Nothing happens when there is no such child.
    void replaceChild(UInt32 index, const NodePtr& child);
    /// False when `present` is no child, or `next` cannot be one.
    bool replaceChildBy(const NodePtr& present, const NodePtr& next);
    /// The index of `child`; -1 if it is none.
    Int32 findChild(const NodePtr& child) const;
    /// Gives the reference on the child back; nothing happens when there is none.
    void subChild(const NodePtr& child);
    void subChild(UInt32 index);

    /// From the node's own system, its core's matrix included, to that of the root of its tree.
    Matrix getToWorld() const;
    void getToWorld(Matrix& result) const;

    /// The volume as it was when last updated.
    const DynamicVolume& getVolume() const { return _volume; }
    /// The volume in the system of the parent, with `update` brought up to date first.
    DynamicVolume& getVolume(bool update);
    /// The volume in the system of the tree's root, up to date.
    void getWorldVolume(DynamicVolume& result);
    /// Brings the volume and those that it depends on up to date; a static one stays as it is.
    void updateVolume();
    /// Puts the volume out of date, and those that depend on it.
    void invalidateVolume();

    /// Actions skip a node, and what is below it, when no bit of this mask is in theirs. Default: all ones.
    UInt32 getTravMask() const { return _travMask; }
    void setTravMask(UInt32 mask);
    bool getActive() const { return _travMask != 0; }
    /// Sets the mask to all ones or to none.
    void setActive(bool active) { setTravMask(active ? ~UInt32(0) : 0); }

private:
    friend class IntersectAction;
    friend class VisitSubTree;

    Node();
    ~Node() override;

    bool canAdopt(const NodePtr& child) const;
    void adopt(const NodePtr& child);
    void dropAt(UInt32 index);
    void computeVolume();
    void uniteChildren();
    void noteMoved(Node& child);

    void addReferrer(VisitSubTree* referrer);
    void subReferrer(VisitSubTree* referrer);
    /// The boxes of the children, up to date; the volume has to be that.
    const ChildTree& childTree();
    ChildTree& makeChildTree();

    // What every walk through the tree reads stands together.
    UInt32 _travMask = ~UInt32(0);
    bool _updating = false;
    NodeCorePtr _core;
    MFNodePtr _children;
    DynamicVolume _volume;
    NodePtr _parent;
    // Few nodes have any.
    struct Extras;
    std::unique_ptr<Extras> _extras;
};

inline NodePtr NodePtr::dcast(const FieldContainerPtr& other)
{
    return NodePtr(dynamic_cast<const Node*>(other.getCPtr()));
}

/// A new node with `core`.
OSG_SYSTEMLIB_DLLMAPPING NodePtr makeNodeFor(const NodeCorePtr& core);
/// A copy of the tree below `root`, which shares its cores; null for null.
OSG_SYSTEMLIB_DLLMAPPING NodePtr cloneTree(const NodePtr& root);

} // namespace osg
