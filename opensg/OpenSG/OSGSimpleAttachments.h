#pragma once

#include "OSGAttachmentContainer.h"

#include <string>

namespace osg {

class Name;
using NamePtr = FCPtr<AttachmentPtr, Name>;

/// The attachment that holds a container's name.
class OSG_SYSTEMLIB_DLLMAPPING Name : public Attachment
{
public:
    static NamePtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The name, to be read and set in place.
    std::string& getFieldPtr() { return _name; }
    const std::string& getFieldPtr() const { return _name; }

private:
    Name() = default;

    std::string _name;
};

/// The name of `container`, valid until it is set anew; null when it has none (or is null).
OSG_SYSTEMLIB_DLLMAPPING const Char8* getName(const AttachmentContainerPtr& container);
/// Names `container`; an empty name is a name, too. A null container is ignored.
OSG_SYSTEMLIB_DLLMAPPING void setName(const AttachmentContainerPtr& container, const std::string& name);
/// The same; null takes the name away.
OSG_SYSTEMLIB_DLLMAPPING void setName(const AttachmentContainerPtr& container, const Char8* name);

} // namespace osg
