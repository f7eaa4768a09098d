#include <OpenSG/OSGAttachment.h>

namespace osg {

FieldContainerType& Attachment::getClassType()
{
    static FieldContainerType type("Attachment", &FieldContainer::getClassType());
    return type;
}

FieldContainerType& Attachment::getType() const
{
    return getClassType();
}

} // namespace osg
