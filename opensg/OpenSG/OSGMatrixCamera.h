#pragma once

#include "OSGCamera.h"

namespace osg {

class MatrixCamera;
using MatrixCameraPtr = FCPtr<CameraPtr, MatrixCamera>;

/// A camera whose matrices are given as they are. It needs no beacon; near and far are not looked at.
class OSG_SYSTEMLIB_DLLMAPPING MatrixCamera : public Camera
{
public:
    using Ptr = MatrixCameraPtr;

    enum : UInt32 { ProjectionMatrixFieldId = Camera::NextFieldId, ModelviewMatrixFieldId, NextFieldId };
    static constexpr BitVector ProjectionMatrixFieldMask = BitVector(1) << ProjectionMatrixFieldId;
    static constexpr BitVector ModelviewMatrixFieldMask = BitVector(1) << ModelviewMatrixFieldId;

    static MatrixCameraPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const Matrix& getProjectionMatrix() const { return _projection; }
    void setProjectionMatrix(const Matrix& matrix) { _projection = matrix; }
    /// From world to the camera's system.
    const Matrix& getModelviewMatrix() const { return _modelview; }
    void setModelviewMatrix(const Matrix& matrix) { _modelview = matrix; }

    void getProjection(Matrix& result, UInt32 width, UInt32 height) const override;
    void getViewing(Matrix& result, UInt32 width, UInt32 height) const override;

protected:
    MatrixCamera() = default;

private:
    Matrix _projection;
    Matrix _modelview;
};

} // namespace osg
