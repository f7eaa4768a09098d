#pragma once

#include "OSGLight.h"

namespace osg {

class DirectionalLight;
using DirectionalLightPtr = FCPtr<LightPtr, DirectionalLight>;

/// A light whose rays are parallel.
class OSG_SYSTEMLIB_DLLMAPPING DirectionalLight : public Light
{
public:
    using Ptr = DirectionalLightPtr;

    static DirectionalLightPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Points to where the light comes from: (0, 0, 1), the default, lights what faces +z.
    const Vec3f& getDirection() const { return _direction; }
    void setDirection(const Vec3f& direction) { _direction = direction; }

    void activate(UInt32 index, const Matrix& toEye) const override;

protected:
    DirectionalLight() = default;

private:
    Vec3f _direction = {0, 0, 1};
};

} // namespace osg
