#pragma once

#include "OSGVolume.h"

namespace osg {

/// An axis-parallel box, the usual bounding volume of a node.
class OSG_BASE_DLLMAPPING BoxVolume final : public Volume
{
public:
    BoxVolume() = default;

    /// A box between two corners; the order of the corners does not matter.
    BoxVolume(const Pnt3f& min, const Pnt3f& max) { setBounds(min, max); }
    BoxVolume(Real32 minX, Real32 minY, Real32 minZ, Real32 maxX, Real32 maxY, Real32 maxZ)
    {
        setBounds(minX, minY, minZ, maxX, maxY, maxZ);
    }

    const Pnt3f& getMin() const { return _min; }
    const Pnt3f& getMax() const { return _max; }

    /// Edge lengths; null when empty, Inf when infinite.
    void getSize(Vec3f& size) const;

    /// Sets the box between two corners; it is no longer empty or infinite.
    void setBounds(const Pnt3f& min, const Pnt3f& max);
    void setBounds(Real32 minX, Real32 minY, Real32 minZ, Real32 maxX, Real32 maxY, Real32 maxZ)
    {
        setBounds(Pnt3f(minX, minY, minZ), Pnt3f(maxX, maxY, maxZ));
    }
    void setBoundsByCenterAndSize(const Pnt3f& center, const Vec3f& size)
    {
        setBounds(center - size * 0.5f, center + size * 0.5f);
    }

    void getCenter(Pnt3f& center) const override;
    Real32 getScalarVolume() const override;
    void getBounds(Pnt3f& min, Pnt3f& max) const override;
    void extendBy(const Pnt3f& point) override;
    void extendBy(const Volume& volume) override;

    using Volume::intersect;
    bool intersect(const Pnt3f& point) const override;
    bool intersect(const Line& line, Real32& enter, Real32& exit) const override;

    void transform(const Matrix& matrix) override;

    /// Whether both bound the same: tolerant on the corners, alike in being empty or infinite.
    bool operator==(const BoxVolume& other) const;
    bool operator!=(const BoxVolume& other) const { return !(*this == other); }

private:
    Pnt3f _min;
    Pnt3f _max;
};

} // namespace osg
