#pragma once

#include "OSGCamera.h"

namespace osg {

class PerspectiveCamera;
using PerspectiveCameraPtr = FCPtr<CameraPtr, PerspectiveCamera>;

/// A camera that shows what is farther smaller.
class OSG_SYSTEMLIB_DLLMAPPING PerspectiveCamera : public Camera
{
public:
    using Ptr = PerspectiveCameraPtr;

    enum : UInt32 { FovFieldId = Camera::NextFieldId, AspectFieldId, NextFieldId };
    static constexpr BitVector FovFieldMask = BitVector(1) << FovFieldId;
    static constexpr BitVector AspectFieldMask = BitVector(1) << AspectFieldId;

    static PerspectiveCameraPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// The vertical angle of view in radians; a value above pi counts as degrees.
    Real32 getFov() const { return _fov; }
    void setFov(Real32 fov) { _fov = fov; }
    /// Width of a pixel divided by its height.
    Real32 getAspect() const { return _aspect; }
    void setAspect(Real32 aspect) { _aspect = aspect; }

    /// The identity when angle, aspect, planes or size are out of their range.
    void getProjection(Matrix& result, UInt32 width, UInt32 height) const override;

protected:
    PerspectiveCamera() = default;

private:
    Real32 _fov = Pi / 4;
    Real32 _aspect = 1;
};

} // namespace osg
