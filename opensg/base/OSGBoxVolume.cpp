#include "OpenSG/OSGBoxVolume.h"

#include "OpenSG/OSGLine.h"

#include <cmath>

namespace osg {

void BoxVolume::getSize(Vec3f& size) const
{
    if (isInfinite())
        size.setValues(Inf, Inf, Inf);
    else if (isEmpty())
        size.setNull();
    else
        size = _max - _min;
}

void BoxVolume::setBounds(const Pnt3f& min, const Pnt3f& max)
{
    // Copies first, as the corners may be this box's own.
    const Pnt3f a(min);
    const Pnt3f b(max);
    for (UInt32 i = 0; i < 3; ++i) {
        _min[i] = osgMin(a[i], b[i]);
        _max[i] = osgMax(a[i], b[i]);
    }
    setEmpty(false);
    setInfinite(false);
}

void BoxVolume::getCenter(Pnt3f& center) const
{
    if (isInfinite() || isEmpty())
        center.setNull();
    else
        center = _min + (_max - _min) * 0.5f;
}

Real32 BoxVolume::getScalarVolume() const
{
    if (isInfinite())
        return Inf;
    Vec3f size;
    getSize(size);
    return size[0] * size[1] * size[2];
}

void BoxVolume::getBounds(Pnt3f& min, Pnt3f& max) const
{
    if (getSpecialBounds(min, max))
        return;
    min = _min;
    max = _max;
}

void BoxVolume::extendBy(const Pnt3f& point)
{
    if (isInfinite())
        return;
    if (isEmpty()) {
        setBounds(point, point);
        return;
    }
    for (UInt32 i = 0; i < 3; ++i) {
        _min[i] = osgMin(_min[i], point[i]);
        _max[i] = osgMax(_max[i], point[i]);
    }
}

void BoxVolume::extendBy(const Volume& volume)
{
    if (volume.isEmpty())
        return;
    if (volume.isInfinite()) {
        setInfinite();
        return;
    }
    Pnt3f min;
    Pnt3f max;
    volume.getBounds(min, max);
    extendBy(min);
    extendBy(max);
}

bool BoxVolume::intersect(const Pnt3f& point) const
{
    if (isInfinite() || isEmpty())
        return isInfinite();
    for (UInt32 i = 0; i < 3; ++i) {
        if (!(_min[i] <= point[i] && point[i] <= _max[i]))
            return false;
    }
    return true;
}

bool BoxVolume::intersect(const Line& line, Real32& enter, Real32& exit) const
{
    if (isEmpty())
        return false;
    Real32 first = 0;
    Real32 last = Inf;
    for (UInt32 i = 0; i < 3 && !isInfinite(); ++i) {
        const Real32 position = line.getPosition()[i];
        const Real32 direction = line.getDirection()[i];
        if (direction == 0) {
            if (!(_min[i] <= position && position <= _max[i]))
                return false;
            continue;
        }
        const Real32 a = (_min[i] - position) / direction;
        const Real32 b = (_max[i] - position) / direction;
        first = osgMax(first, osgMin(a, b));
        last = osgMin(last, osgMax(a, b));
        if (first > last)
            return false;
    }
    enter = first;
    exit = last;
    return true;
}

void BoxVolume::transform(const Matrix& matrix)
{
    if (isEmpty() || isInfinite())
        return;
    // Each term of the product has its least and greatest value at one of the box's two faces.
    Pnt3f min;
    Pnt3f max;
    for (UInt32 r = 0; r < 3; ++r) {
        min[r] = max[r] = matrix[3][r];
        for (UInt32 c = 0; c < 3; ++c) {
            const Real32 a = matrix[c][r] * _min[c];
            const Real32 b = matrix[c][r] * _max[c];
            min[r] += osgMin(a, b);
            max[r] += osgMax(a, b);
        }
    }
    _min = min;
    _max = max;
}

bool BoxVolume::operator==(const BoxVolume& other) const
{
    if (isEmpty() != other.isEmpty() || isInfinite() != other.isInfinite())
        return false;
    return isEmpty() || isInfinite() || (_min == other._min && _max == other._max);
}

} // namespace osg
