#include "OpenSG/OSGVolume.h"

namespace osg {

Volume::~Volume() = default;

void Volume::set(State flag, bool on, int excluded)
{
    const int old = state();
    setState(static_cast<UInt8>(on ? (old & ~excluded) | flag : old & ~flag));
}

bool Volume::getSpecialBounds(Pnt3f& min, Pnt3f& max) const
{
    if (isInfinite()) {
        min.setValues(NegInf, NegInf, NegInf);
        max.setValues(Inf, Inf, Inf);
        return true;
    }
    if (isEmpty()) {
        min.setNull();
        max.setNull();
        return true;
    }
    return false;
}

bool Volume::intersect(const Line& line) const
{
    Real32 enter;
    Real32 exit;
    return intersect(line, enter, exit);
}

bool Volume::intersect(const Volume& volume) const
{
    if (isEmpty() || volume.isEmpty())
        return false;
    if (isInfinite() || volume.isInfinite())
        return true;
    Pnt3f min;
    Pnt3f max;
    Pnt3f otherMin;
    Pnt3f otherMax;
    getBounds(min, max);
    volume.getBounds(otherMin, otherMax);
    for (UInt32 i = 0; i < 3; ++i) {
        if (!(min[i] <= otherMax[i] && otherMin[i] <= max[i]))
            return false;
    }
    return true;
}

} // namespace osg
