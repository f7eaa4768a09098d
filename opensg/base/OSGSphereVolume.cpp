#include "OpenSG/OSGSphereVolume.h"

#include "OpenSG/OSGLine.h"

#include <cmath>

namespace osg {

void SphereVolume::setValue(const Pnt3f& center, Real32 radius)
{
    _center = center;
    _radius = std::abs(radius);
    setEmpty(false);
    setInfinite(false);
}

void SphereVolume::getCenter(Pnt3f& center) const
{
    if (isInfinite() || isEmpty())
        center.setNull();
    else
        center = _center;
}

Real32 SphereVolume::getScalarVolume() const
{
    if (isInfinite())
        return Inf;
    return isEmpty() ? 0 : 4 * Pi / 3 * _radius * _radius * _radius;
}

void SphereVolume::getBounds(Pnt3f& min, Pnt3f& max) const
{
    if (getSpecialBounds(min, max))
        return;
    const Vec3f reach(_radius, _radius, _radius);
    min = _center - reach;
    max = _center + reach;
}

void SphereVolume::extendBy(const Pnt3f& point)
{
    extendBySphere(point, 0);
}

void SphereVolume::extendBy(const Volume& volume)
{
    if (volume.isEmpty())
        return;
    if (volume.isInfinite()) {
        setInfinite();
        return;
    }
    if (const SphereVolume* sphere = dynamic_cast<const SphereVolume*>(&volume)) {
        extendBySphere(sphere->_center, sphere->_radius);
        return;
    }
    Pnt3f min;
    Pnt3f max;
    volume.getBounds(min, max);
    const Vec3f half = (max - min) * 0.5f;
    extendBySphere(min + half, half.length());
}

void SphereVolume::extendBySphere(const Pnt3f& center, Real32 radius)
{
    if (isInfinite())
        return;
    if (isEmpty()) {
        setValue(center, radius);
        return;
    }
    const Vec3f way = center - _center;
    const Real32 distance = way.length();
    if (distance + radius <= _radius)
        return;
    if (distance + _radius <= radius) {
        _center = center;
        _radius = radius;
        return;
    }
    const Real32 reach = (_radius + distance + radius) * 0.5f;
    _center += way * ((reach - _radius) / distance);
    _radius = reach;
}

bool SphereVolume::intersect(const Pnt3f& point) const
{
    if (isInfinite() || isEmpty())
        return isInfinite();
    return _center.dist2(point) <= _radius * _radius;
}

bool SphereVolume::intersect(const Line& line, Real32& enter, Real32& exit) const
{
    if (isEmpty())
        return false;
    if (isInfinite()) {
        enter = 0;
        exit = Inf;
        return true;
    }
    const Real32 middle = line.getDirection().dot(_center - line.getPosition());
    const Real32 square = _radius * _radius - _center.dist2(line.getClosestPoint(_center));
    if (!(square >= 0))
        return false;
    const Real32 half = std::sqrt(square);
    if (middle + half < 0)
        return false;
    enter = osgMax(0.0f, middle - half);
    exit = middle + half;
    return true;
}

void SphereVolume::transform(const Matrix& matrix)
{
    if (isEmpty() || isInfinite())
        return;
    matrix.multMatrixPnt(_center);
    // The square of the largest stretch is at most the largest row sum of the columns' products.
    Real32 longest = 0;
    Real32 shear = 0;
    for (UInt32 c = 0; c < 3; ++c) {
        const Vec3f column(matrix[c]);
        longest = osgMax(longest, column.squareLength());
        shear += std::abs(column.dot(Vec3f(matrix[(c + 1) % 3])));
    }
    _radius *= std::sqrt(longest + shear);
}

} // namespace osg
