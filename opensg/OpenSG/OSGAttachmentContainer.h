#pragma once

#include "OSGAttachment.h"
#include "OSGAttachmentContainerPtr.h"

#include <memory>
#include <vector>

namespace osg {

/// A container that can carry attachments, such as the name that `setName` gives it.
class OSG_SYSTEMLIB_DLLMAPPING AttachmentContainer : public FieldContainer
{
public:
    using Ptr = AttachmentContainerPtr;

    static constexpr UInt32 AttachmentsFieldId = 1;
    static constexpr BitVector AttachmentsFieldMask = BitVector(1) << AttachmentsFieldId;
    /// The first field id that a class directly below gives out.
    static constexpr UInt32 NextFieldId = 2;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Takes a reference on `attachment`, which replaces one of the same class; null is ignored.
    void addAttachment(const AttachmentPtr& attachment);
    /// Drops `attachment`; nothing happens when it is not carried here.
    void subAttachment(const AttachmentPtr& attachment);
    /// The attachment of the class `type`; null when there is none.
    AttachmentPtr findAttachment(const FieldContainerType& type) const;

protected:
    AttachmentContainer() = default;
    ~AttachmentContainer() override;

private:
    // Few containers have any.
    std::unique_ptr<std::vector<AttachmentPtr>> _attachments;
};

} // namespace osg
