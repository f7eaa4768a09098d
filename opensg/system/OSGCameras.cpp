#include <OpenSG/OSGMatrixCamera.h>
#include <OpenSG/OSGOrthographicCamera.h>
#include <OpenSG/OSGPerspectiveCamera.h>

#include "OSGContainerType.h"

#include <cmath>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(PerspectiveCamera, Camera)
OSG_CREATABLE_CONTAINER_TYPE(OrthographicCamera, Camera)
OSG_CREATABLE_CONTAINER_TYPE(MatrixCamera, Camera)

void PerspectiveCamera::getProjection(Matrix& result, UInt32 width, UInt32 height) const
{
    result.setIdentity();
    const Real32 fov = _fov > Pi ? osgDegree2Rad(_fov) : _fov;
    const bool usable = fov > 0 && fov < Pi && _aspect > 0 && getNear() > 0 && getFar() > getNear();
    if (!usable || width == 0 || height == 0)
        return;
    const Real32 cotangent = 1 / std::tan(fov / 2);
    const Real32 depth = getFar() - getNear();
    // clang-format off
    result.setValue(cotangent * static_cast<Real32>(height) / (static_cast<Real32>(width) * _aspect), 0, 0, 0,
                    0, cotangent, 0, 0,
                    0, 0, -(getFar() + getNear()) / depth, -2 * getFar() * getNear() / depth,
                    0, 0, -1, 0);
    // clang-format on
}

void OrthographicCamera::getProjection(Matrix& result, UInt32 width, UInt32 height) const
{
    result.setIdentity();
    const bool usable = _verticalSize > 0 && _aspect > 0 && getFar() > getNear();
    if (!usable || width == 0 || height == 0)
        return;
    const Real32 horizontalSize =
        _verticalSize * static_cast<Real32>(width) * _aspect / static_cast<Real32>(height);
    const Real32 depth = getFar() - getNear();
    result.setScale(2 / horizontalSize, 2 / _verticalSize, -2 / depth);
    result.setTranslate(0, 0, -(getFar() + getNear()) / depth);
}

void MatrixCamera::getProjection(Matrix& result, UInt32, UInt32) const
{
    result = _projection;
}

void MatrixCamera::getViewing(Matrix& result, UInt32, UInt32) const
{
    result = _modelview;
}

} // namespace osg
