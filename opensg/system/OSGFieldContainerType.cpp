#include <OpenSG/OSGFieldContainerType.h>

#include <atomic>

namespace osg {

namespace {

UInt32 nextTypeId()
{
    static std::atomic<UInt32> last{0};
    return ++last;
}

} // namespace

FieldContainerType::FieldContainerType(const Char8* name, const FieldContainerType* parent)
    : _name(name)
    , _id(nextTypeId())
    , _parent(parent)
{
}

bool FieldContainerType::isDerivedFrom(const FieldContainerType& other) const
{
    for (const FieldContainerType* type = this; type; type = type->_parent) {
        if (*type == other)
            return true;
    }
    return false;
}

} // namespace osg
