#pragma once

#include "OSGFieldContainerPtr.h"

namespace osg {

class AttachmentContainer;

/// The pointer to any container that can carry attachments.
class OSG_SYSTEMLIB_DLLMAPPING AttachmentContainerPtr : public FieldContainerPtr
{
public:
    constexpr AttachmentContainerPtr() = default;
    AttachmentContainerPtr(const NullFieldContainerPtr&) {}
    explicit AttachmentContainerPtr(const AttachmentContainer* container);
    explicit AttachmentContainerPtr(const AttachmentContainer& container);

    /// The container; nothing may be done through a null pointer.
    AttachmentContainer* operator->() const { return getCPtr(); }
    AttachmentContainer& operator*() const { return *getCPtr(); }
    /// The plain address; may be null.
    AttachmentContainer* getCPtr() const;

    /// `other` as a pointer to an attachment container; null where it is none.
    static AttachmentContainerPtr dcast(const FieldContainerPtr& other);
};

} // namespace osg
