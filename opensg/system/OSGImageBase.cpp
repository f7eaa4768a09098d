#include <OpenSG/OSGImage.h>

#include <algorithm>

namespace osg {

ImagePtr ImageBase::create()
{
    return ImagePtr(new Image);
}

ImagePtr ImageBase::createEmpty()
{
    return create();
}

FieldContainerType& ImageBase::getClassType()
{
    static FieldContainerType type("Image", &AttachmentContainer::getClassType());
    return type;
}

FieldContainerType& ImageBase::getType() const
{
    return getClassType();
}

void ImageBase::addParent(const FieldContainerPtr& parent)
{
    if (parent)
        _parents.push_back(parent);
}

void ImageBase::subParent(const FieldContainerPtr& parent)
{
    const auto found = std::find(_parents.begin(), _parents.end(), parent);
    if (found != _parents.end())
        _parents.erase(found);
}

} // namespace osg
