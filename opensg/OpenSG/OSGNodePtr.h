#pragma once

#include "OSGAttachmentContainerPtr.h"

namespace osg {

class Node;

/// The pointer to a node of the scene graph.
class NodePtr : public FCPtr<AttachmentContainerPtr, Node>
{
public:
    using FCPtr<AttachmentContainerPtr, Node>::FCPtr;

    constexpr NodePtr() = default;

    /// `other` as a pointer to a node; null where it is none.
    static NodePtr dcast(const FieldContainerPtr& other);
};

} // namespace osg
