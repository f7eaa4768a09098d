#pragma once

#include "OSGVolume.h"

namespace osg {

/// A cylinder with flat ends as bounding volume: from its base point along an axis whose length is the
/// cylinder's height.
class OSG_BASE_DLLMAPPING CylinderVolume final : public Volume
{
public:
    CylinderVolume() = default;
    CylinderVolume(const Pnt3f& base, const Vec3f& axis, Real32 radius) { setValue(base, axis, radius); }

    const Pnt3f& getBase() const { return _base; }
    const Vec3f& getAxis() const { return _axis; }
    Real32 getRadius() const { return _radius; }

    /// Sets the cylinder; it is no longer empty or infinite. The sign of the radius does not matter.
    void setValue(const Pnt3f& base, const Vec3f& axis, Real32 radius);

    void getCenter(Pnt3f& center) const override;
    Real32 getScalarVolume() const override;
    void getBounds(Pnt3f& min, Pnt3f& max) const override;

    /// Grows in height and radius, the axis keeps its line; without a height it grows along z.
    void extendBy(const Pnt3f& point) override;
    void extendBy(const Volume& volume) override;

    using Volume::intersect;
    bool intersect(const Pnt3f& point) const override;
    bool intersect(const Line& line, Real32& enter, Real32& exit) const override;

    void transform(const Matrix& matrix) override;

private:
    Pnt3f _base;
    Vec3f _axis;
    Real32 _radius = 0;
};

} // namespace osg
