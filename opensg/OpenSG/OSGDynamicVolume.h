#pragma once

#include "OSGBoxVolume.h"
#include "OSGSphereVolume.h"

#include <variant>

namespace osg {

/// A volume whose kind can change: the bounding volume of a node, a box unless asked otherwise. It holds
/// the volume of the current kind, its instance, by value; state and bounds are the instance's.
class OSG_BASE_DLLMAPPING DynamicVolume : public Volume
{
public:
    enum Type { BOX_VOLUME, SPHERE_VOLUME };

    explicit DynamicVolume(Type type = BOX_VOLUME) { setVolumeType(type); }

    Type getType() const { return static_cast<Type>(_instance.index()); }

    /// Changes the kind; the new instance is empty. The kind that it already has is left alone.
    void setVolumeType(Type type);

    Volume& getInstance();
    const Volume& getInstance() const;

    /// To be called after the instance was changed directly. Nothing lags here, so it has nothing to do.
    void instanceChanged() {}

    void getCenter(Pnt3f& center) const override { getInstance().getCenter(center); }
    Real32 getScalarVolume() const override { return getInstance().getScalarVolume(); }
    void getBounds(Pnt3f& min, Pnt3f& max) const override { getInstance().getBounds(min, max); }
    void extendBy(const Pnt3f& point) override { getInstance().extendBy(point); }
    void extendBy(const Volume& volume) override { getInstance().extendBy(volume); }

    using Volume::intersect;
    bool intersect(const Pnt3f& point) const override { return getInstance().intersect(point); }
    bool intersect(const Line& line, Real32& enter, Real32& exit) const override
    {
        return getInstance().intersect(line, enter, exit);
    }

    void transform(const Matrix& matrix) override { getInstance().transform(matrix); }

protected:
    UInt8 state() const override;
    void setState(UInt8 state) override;

private:
    std::variant<BoxVolume, SphereVolume> _instance;
};

} // namespace osg
