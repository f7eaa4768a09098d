#include "OpenSG/OSGDynamicVolume.h"

namespace osg {

void DynamicVolume::setVolumeType(Type type)
{
    if (type == getType())
        return;
    if (type == SPHERE_VOLUME)
        _instance = SphereVolume();
    else
        _instance = BoxVolume();
}

Volume& DynamicVolume::getInstance()
{
    return std::visit([](auto& volume) -> Volume& { return volume; }, _instance);
}

const Volume& DynamicVolume::getInstance() const
{
    return std::visit([](const auto& volume) -> const Volume& { return volume; }, _instance);
}

UInt8 DynamicVolume::state() const
{
    return getInstance().state();
}

void DynamicVolume::setState(UInt8 state)
{
    getInstance().setState(state);
}

} // namespace osg
