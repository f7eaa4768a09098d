#include <OpenSG/OSGCamera.h>

#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>

#include "OSGContainerType.h"

namespace osg {

namespace {

// Near and far plane may lie many powers of ten apart: single precision cannot invert such a projection.
Matrix4d toDouble(const Matrix& matrix)
{
    Matrix4d result;
    for (UInt32 c = 0; c < 4; ++c)
        result[c] = Vec4d(matrix[c]);
    return result;
}

} // namespace

OSG_CONTAINER_TYPE(Camera, AttachmentContainer)

void Camera::getProjectionTranslation(Matrix& result, UInt32, UInt32) const
{
    result.setIdentity();
}

void Camera::getViewing(Matrix& result, UInt32, UInt32) const
{
    if (_beacon)
        _beacon->getToWorld().inverse(result);
    else
        SWARNING << "Camera: no beacon to look from" << std::endl;
}

void Camera::getFrustum(FrustumVolume& result, const Viewport& port) const
{
    Matrix clip;
    getWorldToScreen(clip, port);
    result.setPlanes(clip);
}

void Camera::getWorldToScreen(Matrix& result, const Viewport& port) const
{
    const UInt32 width = static_cast<UInt32>(osgMax(port.getPixelWidth(), 0));
    const UInt32 height = static_cast<UInt32>(osgMax(port.getPixelHeight(), 0));
    Matrix next;
    getProjection(result, width, height);
    getProjectionTranslation(next, width, height);
    result.mult(next);
    next.setIdentity();
    getViewing(next, width, height);
    result.mult(next);
}

bool Camera::calcViewRay(Line& line, Int32 x, Int32 y, const Viewport& port, Real32* t) const
{
    if (!port.getParent() || port.getPixelWidth() <= 0 || port.getPixelHeight() <= 0)
        return false;

    const UInt32 width = static_cast<UInt32>(port.getPixelWidth());
    const UInt32 height = static_cast<UInt32>(port.getPixelHeight());
    Matrix projection;
    Matrix translation;
    Matrix viewing;
    getProjection(projection, width, height);
    getProjectionTranslation(translation, width, height);
    getViewing(viewing, width, height);

    Matrix4d toWorld = toDouble(projection);
    toWorld.mult(toDouble(translation));
    toWorld.mult(toDouble(viewing));
    toWorld.invert();

    // The top pixel belongs to the viewport, so that a full window is counted from y - 1.
    const Real64 fromTop = y - (port.getParent()->getHeight() - port.getPixelTop());
    const Real64 nx = (x - port.getPixelLeft()) / Real64(width) * 2 - 1;
    const Real64 ny = 1 - fromTop / Real64(height) * 2;
    Pnt3d from(nx, ny, -1.0);
    Pnt3d to(nx, ny, 1.0);
    toWorld.multFullMatrixPnt(from);
    toWorld.multFullMatrixPnt(to);

    const Vec3d way = to - from;
    line.setValue(Pnt3f(from), Vec3f(way));
    if (t)
        *t = static_cast<Real32>(way.length());
    return true;
}

} // namespace osg
