#include <OpenSG/OSGDepthClearBackground.h>
#include <OpenSG/OSGPassiveBackground.h>
#include <OpenSG/OSGSolidBackground.h>

#include "OSGContainerType.h"

#include <epoxy/gl.h>

namespace osg {

OSG_CONTAINER_TYPE(Background, AttachmentContainer)
OSG_CREATABLE_CONTAINER_TYPE(DepthClearBackground, Background)
OSG_CREATABLE_CONTAINER_TYPE(PassiveBackground, Background)
OSG_CREATABLE_CONTAINER_TYPE(SolidBackground, Background)

void SolidBackground::clear(RenderActionBase&, Viewport&)
{
    glClearColor(_color.red(), _color.green(), _color.blue(), _alpha);
    glClearDepth(1);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void DepthClearBackground::clear(RenderActionBase&, Viewport&)
{
    glClearDepth(1);
    glClearStencil(0);
    glClear(GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

void PassiveBackground::clear(RenderActionBase&, Viewport&)
{
}

} // namespace osg
