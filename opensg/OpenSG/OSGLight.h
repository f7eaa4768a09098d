#pragma once

#include "OSGColor.h"
#include "OSGGroup.h"
#include "OSGVector.h"

namespace osg {

class Light;
using LightPtr = FCPtr<NodeCorePtr, Light>;

/// The core of a node whose children are lit. The light itself stands in the system of its beacon, on which
/// no reference is held, and without one in that of its own node.
class OSG_SYSTEMLIB_DLLMAPPING Light : public NodeCore
{
public:
    using Ptr = LightPtr;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Color4f& getAmbient() const { return _ambient; }
    void setAmbient(const Color4f& color) { _ambient = color; }
    const Color4f& getDiffuse() const { return _diffuse; }
    void setDiffuse(const Color4f& color) { _diffuse = color; }
    const Color4f& getSpecular() const { return _specular; }
    void setSpecular(const Color4f& color) { _specular = color; }

    const NodePtr& getBeacon() const { return _beacon; }
    void setBeacon(const NodePtr& beacon) { _beacon = beacon; }
    bool getOn() const { return _on; }
    void setOn(bool on);

    /// At distance d the light is divided by constant + linear d + quadratic d^2. Default: 1, 0, 0.
    Real32 getConstantAttenuation() const { return _attenuation[0]; }
    void setConstantAttenuation(Real32 factor) { _attenuation[0] = factor; }
    Real32 getLinearAttenuation() const { return _attenuation[1]; }
    void setLinearAttenuation(Real32 factor) { _attenuation[1] = factor; }
    Real32 getQuadraticAttenuation() const { return _attenuation[2]; }
    void setQuadraticAttenuation(Real32 factor) { _attenuation[2] = factor; }

    /// Where the light is, in the system of the beacon; null for one that comes from far away.
    virtual const Pnt3f* getSource() const { return nullptr; }
    /// Shapes farther away than this are not lit; only with a source.
    virtual Real32 getRange() const { return Inf; }

    /// What programs that compute light get of it, beside GL's own values: its kind (1 from far away, 2 from
    /// a point, 3 a cone by GL's exponent, 4 a cone by angles, 5 a projector, 6 the
    /// surroundings), how far it reaches, its beam
    /// width and its cut-off angle. \a range is `getRange` in the units of the world.
    virtual Vec4f getShape(Real32 range) const;

    /// Sets GL light `index` with `toEye`, from the system of the beacon to the camera's. The modelview
    /// matrix is the identity.
    virtual void activate(UInt32 index, const Matrix& toEye) const;

    void renderEnter(RenderAction& action) override;
    void renderLeave(RenderAction& action) override;

protected:
    Light() = default;

private:
    Color4f _ambient = {0.f, 0.f, 0.f, 1.f};
    Color4f _diffuse = {1.f, 1.f, 1.f, 1.f};
    Color4f _specular = {1.f, 1.f, 1.f, 1.f};
    NodePtr _beacon;
    bool _on = true;
    Vec3f _attenuation = {1, 0, 0};
};

} // namespace osg
