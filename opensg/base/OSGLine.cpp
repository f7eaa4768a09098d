#include "OpenSG/OSGLine.h"

#include "OpenSG/OSGBoxVolume.h"
#include "OpenSG/OSGCylinderVolume.h"
#include "OpenSG/OSGFrustumVolume.h"
#include "OpenSG/OSGSphereVolume.h"

#include <cmath>

namespace osg {

void Line::setValue(const Pnt3f& position, const Vec3f& direction)
{
    _position = position;
    _direction = direction;
    _direction.normalize();
}

Pnt3f Line::getClosestPoint(const Pnt3f& point) const
{
    return _position + _direction * _direction.dot(point - _position);
}

Real32 Line::distance(const Pnt3f& point) const
{
    return getClosestPoint(point).dist(point);
}

bool Line::getClosestPoints(const Line& other, Pnt3f& onThis, Pnt3f& onOther) const
{
    const Vec3d between(other._position - _position);
    const Vec3d a(_direction);
    const Vec3d b(other._direction);
    const Real64 cosine = a.dot(b);
    const Real64 det = a.dot(a) * b.dot(b) - cosine * cosine;
    if (!(det > 1e-10))
        return false;
    const Real64 s = (a.dot(between) * b.dot(b) - cosine * b.dot(between)) / det;
    const Real64 t = (cosine * a.dot(between) - a.dot(a) * b.dot(between)) / det;
    const Pnt3f first = _position + _direction * static_cast<Real32>(s);
    onOther = other._position + other._direction * static_cast<Real32>(t);
    onThis = first;
    return true;
}

bool Line::intersect(const Pnt3f& v0, const Pnt3f& v1, const Pnt3f& v2, Real32& t, Vec3f* normal) const
{
    const Vec3f edge1 = v1 - v0;
    const Vec3f edge2 = v2 - v0;
    const Vec3f p = _direction.cross(edge2);
    const Real32 det = edge1.dot(p);
    if (!(std::abs(det) >= 1e-10f))
        return false;
    const Vec3f toPosition = _position - v0;
    const Real32 u = toPosition.dot(p) / det;
    if (!(u >= 0 && u <= 1))
        return false;
    const Vec3f q = toPosition.cross(edge1);
    const Real32 v = _direction.dot(q) / det;
    if (!(v >= 0 && u + v <= 1))
        return false;
    t = edge2.dot(q) / det;
    if (normal) {
        *normal = edge1.cross(edge2);
        // Small triangles have short products, which Vector::normalize would leave as they are.
        *normal /= normal->length();
    }
    return true;
}

bool Line::intersect(const BoxVolume& box, Real32& enter, Real32& exit) const
{
    return box.intersect(*this, enter, exit);
}

bool Line::intersect(const BoxVolume& box) const
{
    return box.intersect(*this);
}

bool Line::intersect(const SphereVolume& sphere, Real32& enter, Real32& exit) const
{
    return sphere.intersect(*this, enter, exit);
}

bool Line::intersect(const SphereVolume& sphere) const
{
    return sphere.intersect(*this);
}

bool Line::intersect(const CylinderVolume& cylinder, Real32& enter, Real32& exit) const
{
    return cylinder.intersect(*this, enter, exit);
}

bool Line::intersect(const CylinderVolume& cylinder) const
{
    return cylinder.intersect(*this);
}

bool Line::intersect(const FrustumVolume& frustum, Real32& enter, Real32& exit) const
{
    return frustum.intersect(*this, enter, exit);
}

bool Line::intersect(const FrustumVolume& frustum) const
{
    Real32 enter;
    Real32 exit;
    return frustum.intersect(*this, enter, exit);
}

} // namespace osg
