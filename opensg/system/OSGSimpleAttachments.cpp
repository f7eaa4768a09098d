#include <OpenSG/OSGSimpleAttachments.h>

namespace osg {

namespace {

NamePtr findName(const AttachmentContainerPtr& container)
{
    return container ? NamePtr::dcast(container->findAttachment(Name::getClassType())) : NamePtr();
}

} // namespace

NamePtr Name::create()
{
    return NamePtr(new Name);
}

FieldContainerType& Name::getClassType()
{
    static FieldContainerType type("Name", &Attachment::getClassType());
    return type;
}

FieldContainerType& Name::getType() const
{
    return getClassType();
}

const Char8* getName(const AttachmentContainerPtr& container)
{
    const NamePtr name = findName(container);
    return name ? name->getFieldPtr().c_str() : nullptr;
}

void setName(const AttachmentContainerPtr& container, const std::string& name)
{
    if (!container)
        return;
    NamePtr attachment = findName(container);
    if (!attachment) {
        attachment = Name::create();
        container->addAttachment(attachment);
    }
    attachment->getFieldPtr() = name;
}

void setName(const AttachmentContainerPtr& container, const Char8* name)
{
    if (name)
        setName(container, std::string(name));
    else if (container)
        container->subAttachment(findName(container));
}

} // namespace osg
