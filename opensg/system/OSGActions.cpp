#include <OpenSG/OSGAction.h>
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>

namespace osg {

Action::~Action() = default;

void RenderActionBase::setViewport(Viewport* viewport)
{
    _viewport = viewport;
    _window = viewport ? viewport->getParent().getCPtr() : nullptr;
    _polygonMode = viewport ? viewport->getPolygonMode() : 0x1B02;
    _viewing.setIdentity();
    _projection.setIdentity();
    if (!viewport || !viewport->getCamera())
        return;
    const UInt32 width = static_cast<UInt32>(osgMax(viewport->getPixelWidth(), 0));
    const UInt32 height = static_cast<UInt32>(osgMax(viewport->getPixelHeight(), 0));
    const Camera& camera = *viewport->getCamera();
    Matrix translation;
    camera.getProjection(_projection, width, height);
    camera.getProjectionTranslation(translation, width, height);
    _projection.mult(translation);
    camera.getViewing(_viewing, width, height);
}

Matrix RenderActionBase::getTurnToWorld() const
{
    Matrix result;
    for (UInt32 column = 0; column < 3; ++column) {
        for (UInt32 row = 0; row < 3; ++row)
            result[column][row] = _viewing[row][column];
    }
    return result;
}

} // namespace osg
