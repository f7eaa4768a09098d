#pragma once

#include "OSGLight.h"

namespace osg {

class PointLight;
using PointLightPtr = FCPtr<LightPtr, PointLight>;

/// A light that shines to all sides from a point.
class OSG_SYSTEMLIB_DLLMAPPING PointLight : public Light
{
public:
    using Ptr = PointLightPtr;

    static PointLightPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Pnt3f& getPosition() const { return _position; }
    void setPosition(const Pnt3f& position) { _position = position; }
    /// In the units of the beacon's system; shapes that lie wholly outside are not lit. Default: Inf.
    void setRange(Real32 range);

    const Pnt3f* getSource() const override { return &_position; }
    Real32 getRange() const override { return _range; }
    Vec4f getShape(Real32 range) const override;
    void activate(UInt32 index, const Matrix& toEye) const override;

protected:
    PointLight() = default;

private:
    Pnt3f _position;
    Real32 _range = Inf;
};

} // namespace osg
