#pragma once

#include "OSGCamera.h"

namespace osg {

class OrthographicCamera;
using OrthographicCameraPtr = FCPtr<CameraPtr, OrthographicCamera>;

/// A camera that shows everything in the same size, however far.
class OSG_SYSTEMLIB_DLLMAPPING OrthographicCamera : public Camera
{
public:
    using Ptr = OrthographicCameraPtr;

    enum : UInt32 { VerticalSizeFieldId = Camera::NextFieldId, AspectFieldId, NextFieldId };
    static constexpr BitVector VerticalSizeFieldMask = BitVector(1) << VerticalSizeFieldId;
    static constexpr BitVector AspectFieldMask = BitVector(1) << AspectFieldId;

    static OrthographicCameraPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// What is seen from bottom to top, in units of the camera's system.
    Real32 getVerticalSize() const { return _verticalSize; }
    void setVerticalSize(Real32 size) { _verticalSize = size; }
    /// Width of a pixel divided by its height.
    Real32 getAspect() const { return _aspect; }
    void setAspect(Real32 aspect) { _aspect = aspect; }

    /// The identity when sizes, aspect or planes are out of their range.
    void getProjection(Matrix& result, UInt32 width, UInt32 height) const override;

protected:
    OrthographicCamera() = default;

private:
    Real32 _verticalSize = 2;
    Real32 _aspect = 1;
};

} // namespace osg
