#include <OpenSG/OSGAttachmentContainer.h>

#include <algorithm>

namespace osg {

AttachmentContainerPtr::AttachmentContainerPtr(const AttachmentContainer* container)
    : FieldContainerPtr(container)
{
}

AttachmentContainerPtr::AttachmentContainerPtr(const AttachmentContainer& container)
    : FieldContainerPtr(&container)
{
}

AttachmentContainer* AttachmentContainerPtr::getCPtr() const
{
    return static_cast<AttachmentContainer*>(_store);
}

AttachmentContainerPtr AttachmentContainerPtr::dcast(const FieldContainerPtr& other)
{
    return AttachmentContainerPtr(dynamic_cast<const AttachmentContainer*>(other.getCPtr()));
}

FieldContainerType& AttachmentContainer::getClassType()
{
    static FieldContainerType type("AttachmentContainer", &FieldContainer::getClassType());
    return type;
}

FieldContainerType& AttachmentContainer::getType() const
{
    return getClassType();
}

AttachmentContainer::~AttachmentContainer()
{
    if (_attachments)
        for (AttachmentPtr& attachment : *_attachments)
            clearRefCP(attachment);
}

void AttachmentContainer::addAttachment(const AttachmentPtr& attachment)
{
    if (!attachment)
        return;
    if (!_attachments)
        _attachments = std::make_unique<std::vector<AttachmentPtr>>();
    for (AttachmentPtr& present : *_attachments) {
        if (present->getType() == attachment->getType()) {
            setRefdCP(present, attachment);
            return;
        }
    }
    addRefCP(attachment);
    _attachments->push_back(attachment);
}

void AttachmentContainer::subAttachment(const AttachmentPtr& attachment)
{
    if (!attachment || !_attachments)
        return;
    const auto found = std::find(_attachments->begin(), _attachments->end(), attachment);
    if (found == _attachments->end())
        return;
    const AttachmentPtr dropped = *found;
    _attachments->erase(found);
    subRefCP(dropped);
}

AttachmentPtr AttachmentContainer::findAttachment(const FieldContainerType& type) const
{
    if (!_attachments)
        return NullFC;
    for (const AttachmentPtr& attachment : *_attachments) {
        if (attachment->getType() == type)
            return attachment;
    }
    return NullFC;
}

} // namespace osg
