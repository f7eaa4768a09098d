#pragma once

#include "OSGFieldContainer.h"

namespace osg {

/// Data that hangs on a container without being one of its fields. A container carries at most one attachment
/// of each class and holds a reference on it.
class OSG_SYSTEMLIB_DLLMAPPING Attachment : public FieldContainer
{
public:
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

using AttachmentPtr = FCPtr<FieldContainerPtr, Attachment>;

} // namespace osg
