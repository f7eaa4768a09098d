#pragma once

#include "OSGPointLight.h"

namespace osg {

class SpotLight;
using SpotLightPtr = FCPtr<PointLightPtr, SpotLight>;

/// A light that shines from a point into a cone.
class OSG_SYSTEMLIB_DLLMAPPING SpotLight : public PointLight
{
public:
    using Ptr = SpotLightPtr;

    static SpotLightPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The axis of the cone, away from the light. Default: (0, 0, -1).
    const Vec3f& getDirection() const { return _direction; }
    void setDirection(const Vec3f& direction) { _direction = direction; }
    /// How much the light falls off from the axis, 0 to 128.
    Real32 getSpotExponent() const { return _exponent; }
    void setSpotExponent(Real32 exponent) { _exponent = exponent; }
    /// The angle between axis and edge of the cone in radians, up to pi / 2; more shines to all sides.
    Real32 getSpotCutOff() const { return _cutOff; }
    void setSpotCutOff(Real32 angle) { _cutOff = angle; }

    /// For programs that compute light, which fades evenly from this angle to the cut-off angle; negative
    /// (the default) where the exponent counts.
    Real32 getBeamWidth() const { return _beamWidth; }
    void setBeamWidth(Real32 angle) { _beamWidth = angle; }

    Vec4f getShape(Real32 range) const override;
    void activate(UInt32 index, const Matrix& toEye) const override;

protected:
    SpotLight() = default;

private:
    Vec3f _direction = {0, 0, -1};
    Real32 _exponent = 0;
    Real32 _cutOff = Pi / 4;
    Real32 _beamWidth = -1;
};

} // namespace osg
