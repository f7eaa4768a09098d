#pragma once

#include "OSGGroup.h"

namespace osg {

class VisitSubTree;
using VisitSubTreePtr = FCPtr<GroupPtr, VisitSubTree>;

/// The core of a node below which a tree appears that stands elsewhere, so that one tree is drawn and hit in
/// several places. The tree's own ancestors do not count here. No reference is held on its root: when the
/// root goes, the pointer becomes null. A tree that appears inside itself ends at the second time.
class OSG_SYSTEMLIB_DLLMAPPING VisitSubTree : public Group
{
public:
    using Ptr = VisitSubTreePtr;

    enum : UInt32 { SubTreeRootFieldId = Group::NextFieldId, NextFieldId };
    static constexpr BitVector SubTreeRootFieldMask = BitVector(1) << SubTreeRootFieldId;

    static VisitSubTreePtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const NodePtr& getSubTreeRoot() const { return _subTreeRoot; }
    void setSubTreeRoot(const NodePtr& root);

    NodePtr getReferredTree() const override { return _subTreeRoot; }

protected:
    VisitSubTree() = default;
    ~VisitSubTree() override;

private:
    friend class Node;

    NodePtr _subTreeRoot;
};

} // namespace osg
