#include "OpenSG/OSGCylinderVolume.h"

#include "OpenSG/OSGLine.h"

#include <cmath>

namespace osg {

void CylinderVolume::setValue(const Pnt3f& base, const Vec3f& axis, Real32 radius)
{
    _base = base;
    _axis = axis;
    _radius = std::abs(radius);
    setEmpty(false);
    setInfinite(false);
}

void CylinderVolume::getCenter(Pnt3f& center) const
{
    if (isInfinite() || isEmpty())
        center.setNull();
    else
        center = _base + _axis * 0.5f;
}

Real32 CylinderVolume::getScalarVolume() const
{
    if (isInfinite())
        return Inf;
    return isEmpty() ? 0 : Pi * _radius * _radius * _axis.length();
}

void CylinderVolume::getBounds(Pnt3f& min, Pnt3f& max) const
{
    if (getSpecialBounds(min, max))
        return;
    const Real32 square = _axis.squareLength();
    for (UInt32 i = 0; i < 3; ++i) {
        const Real32 along = square > 0 ? _axis[i] * _axis[i] / square : 0;
        const Real32 reach = _radius * std::sqrt(osgMax(0.0f, 1 - along));
        min[i] = osgMin(_base[i], _base[i] + _axis[i]) - reach;
        max[i] = osgMax(_base[i], _base[i] + _axis[i]) + reach;
    }
}

void CylinderVolume::extendBy(const Pnt3f& point)
{
    if (isInfinite())
        return;
    if (isEmpty()) {
        setValue(point, Vec3f(), 0);
        return;
    }
    Real32 height = _axis.length();
    const Vec3f up = height > 0 ? _axis / height : Vec3f(0, 0, 1);
    const Vec3f way = point - _base;
    const Real32 along = way.dot(up);
    _radius = osgMax(_radius, (way - up * along).length());
    if (along < 0) {
        _base += up * along;
        height -= along;
    }
    _axis = up * osgMax(height, along);
}

void CylinderVolume::extendBy(const Volume& volume)
{
    if (volume.isEmpty())
        return;
    if (volume.isInfinite()) {
        setInfinite();
        return;
    }
    Pnt3f corners[2];
    volume.getBounds(corners[0], corners[1]);
    for (int i = 0; i < 8; ++i)
        extendBy(Pnt3f(corners[i & 1][0], corners[i >> 1 & 1][1], corners[i >> 2][2]));
}

bool CylinderVolume::intersect(const Pnt3f& point) const
{
    if (isInfinite() || isEmpty())
        return isInfinite();
    const Real32 height = _axis.length();
    const Vec3f up = height > 0 ? _axis / height : Vec3f(0, 0, 1);
    const Vec3f way = point - _base;
    const Real32 along = way.dot(up);
    return along >= 0 && along <= height && (way - up * along).squareLength() <= _radius * _radius;
}

bool CylinderVolume::intersect(const Line& line, Real32& enter, Real32& exit) const
{
    if (isEmpty())
        return false;
    Real32 first = 0;
    Real32 last = Inf;
    if (!isInfinite()) {
        const Real32 height = _axis.length();
        const Vec3f up = height > 0 ? _axis / height : Vec3f(0, 0, 1);
        const Vec3f way = line.getPosition() - _base;
        const Real32 climb = line.getDirection().dot(up);
        const Real32 along = way.dot(up);
        const Vec3f acrossWay = way - up * along;
        const Vec3f across = line.getDirection() - up * climb;

        // The mantle: |acrossWay + t across| = radius.
        const Real32 a = across.squareLength();
        const Real32 b = across.dot(acrossWay);
        const Real32 c = acrossWay.squareLength() - _radius * _radius;
        if (a > 1e-12f) {
            const Real32 discriminant = b * b - a * c;
            if (!(discriminant >= 0))
                return false;
            const Real32 root = std::sqrt(discriminant);
            first = osgMax(first, (-b - root) / a);
            last = osgMin(last, (-b + root) / a);
        } else if (!(c <= 0)) {
            return false;
        }

        // The two ends.
        if (climb != 0) {
            const Real32 bottom = -along / climb;
            const Real32 top = (height - along) / climb;
            first = osgMax(first, osgMin(bottom, top));
            last = osgMin(last, osgMax(bottom, top));
        } else if (!(along >= 0 && along <= height)) {
            return false;
        }
        if (first > last)
            return false;
    }
    enter = first;
    exit = last;
    return true;
}

void CylinderVolume::transform(const Matrix& matrix)
{
    if (isEmpty() || isInfinite())
        return;
    // The ends stay where the axis leads; a shear tilts them, which the height must take in.
    const Real32 height = _axis.length();
    const Vec3f up = height > 0 ? _axis / height : Vec3f(0, 0, 1);
    const Vec3f side = std::abs(up[0]) < 0.6f ? up.cross(Vec3f(1, 0, 0)) : up.cross(Vec3f(0, 1, 0));
    Vec3f u = side / side.length() * _radius;
    Vec3f v = up.cross(u);
    matrix.multMatrixPnt(_base);
    matrix.multMatrixVec(_axis);
    matrix.multMatrixVec(u);
    matrix.multMatrixVec(v);

    const Real32 newHeight = _axis.length();
    Vec3f newUp(up);
    if (newHeight > 0) {
        newUp = _axis / newHeight;
    } else {
        matrix.multMatrixVec(newUp);
        newUp = newUp.length() > 0 ? newUp / newUp.length() : up;
    }
    const Real32 tilt = std::sqrt(u.dot(newUp) * u.dot(newUp) + v.dot(newUp) * v.dot(newUp));
    u -= newUp * u.dot(newUp);
    v -= newUp * v.dot(newUp);
    _radius = std::sqrt(osgMax(u.squareLength(), v.squareLength()) + std::abs(u.dot(v)));
    _base -= newUp * tilt;
    _axis = newUp * (newHeight + 2 * tilt);
}

} // namespace osg
