#pragma once

#include "OSGVolume.h"

namespace osg {

/// A sphere as bounding volume.
class OSG_BASE_DLLMAPPING SphereVolume final : public Volume
{
public:
    SphereVolume() = default;
    SphereVolume(const Pnt3f& center, Real32 radius) { setValue(center, radius); }

    using Volume::getCenter;
    const Pnt3f& getCenter() const { return _center; }
    Real32 getRadius() const { return _radius; }

    /// Sets the sphere; it is no longer empty or infinite. The sign of the radius does not matter.
    void setValue(const Pnt3f& center, Real32 radius);

    void getCenter(Pnt3f& center) const override;
    Real32 getScalarVolume() const override;
    void getBounds(Pnt3f& min, Pnt3f& max) const override;
    void extendBy(const Pnt3f& point) override;

    /// Another sphere is held tightly, any other volume by the sphere around its box.
    void extendBy(const Volume& volume) override;

    using Volume::intersect;
    bool intersect(const Pnt3f& point) const override;
    bool intersect(const Line& line, Real32& enter, Real32& exit) const override;

    void transform(const Matrix& matrix) override;

private:
    void extendBySphere(const Pnt3f& center, Real32 radius);

    Pnt3f _center;
    Real32 _radius = 0;
};

} // namespace osg
