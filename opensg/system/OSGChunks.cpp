#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGBlendChunk.h>
#include <OpenSG/OSGLineChunk.h>
#include <OpenSG/OSGPointChunk.h>
#include <OpenSG/OSGPolygonChunk.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGTexGenChunk.h>
#include <OpenSG/OSGTextureTransformChunk.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

#include <epoxy/gl.h>

namespace osg {

OSG_CONTAINER_TYPE(StateChunk, AttachmentContainer)
OSG_CREATABLE_CONTAINER_TYPE(TextureTransformChunk, StateChunk)
OSG_CREATABLE_CONTAINER_TYPE(TexGenChunk, StateChunk)
OSG_CREATABLE_CONTAINER_TYPE(BlendChunk, StateChunk)
OSG_CREATABLE_CONTAINER_TYPE(PolygonChunk, StateChunk)
OSG_CREATABLE_CONTAINER_TYPE(LineChunk, StateChunk)
OSG_CREATABLE_CONTAINER_TYPE(PointChunk, StateChunk)

void StateChunk::changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot)
{
    old.deactivate(action, slot);
    activate(action, slot);
}

void TextureTransformChunk::activate(RenderActionBase& action, UInt32 slot)
{
    Matrix matrix = _matrix;
    if (_fromCamera)
        matrix.mult(action.getTurnToWorld());
    glActiveTexture(GL_TEXTURE0 + slot);
    glMatrixMode(GL_TEXTURE);
    glLoadMatrixf(matrix.getValues());
    glMatrixMode(GL_MODELVIEW);
}

void TextureTransformChunk::changeFrom(RenderActionBase& action, StateChunk&, UInt32 slot)
{
    activate(action, slot);
}

void TextureTransformChunk::deactivate(RenderActionBase&, UInt32 slot)
{
    glActiveTexture(GL_TEXTURE0 + slot);
    glMatrixMode(GL_TEXTURE);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
}

namespace {

struct GenCoordinate
{
    GLenum name;
    GLenum capability;
};

const GenCoordinate genCoordinates[] = {
    {GL_S, GL_TEXTURE_GEN_S}, {GL_T, GL_TEXTURE_GEN_T}, {GL_R, GL_TEXTURE_GEN_R}, {GL_Q, GL_TEXTURE_GEN_Q}};

} // namespace

void TexGenChunk::activate(RenderActionBase&, UInt32 slot)
{
    glActiveTexture(GL_TEXTURE0 + slot);
    // GL takes planes of the eye through the matrix of the moment.
    glLoadIdentity();
    for (UInt32 i = 0; i < 4; ++i) {
        const UInt32 function = _functions[i];
        if (function == NO_GEN)
            continue;
        const GLenum name = genCoordinates[i].name;
        glTexGeni(name, GL_TEXTURE_GEN_MODE, static_cast<GLint>(function));
        if (function == EYE_LINEAR)
            glTexGenfv(name, GL_EYE_PLANE, _planes[i].getValues());
        else if (function == OBJECT_LINEAR)
            glTexGenfv(name, GL_OBJECT_PLANE, _planes[i].getValues());
        glEnable(genCoordinates[i].capability);
    }
}

void TexGenChunk::deactivate(RenderActionBase&, UInt32 slot)
{
    glActiveTexture(GL_TEXTURE0 + slot);
    for (const GenCoordinate& coordinate : genCoordinates)
        glDisable(coordinate.capability);
}

void BlendChunk::setDestFactor(UInt32 factor)
{
    SceneStamp::renew();
    _destFactor = factor;
}

void BlendChunk::activate(RenderActionBase&, UInt32)
{
    glEnable(GL_BLEND);
    // The alpha of the picture is that of what lies over each other: windows may be mixed with what is
    // behind.
    glBlendFuncSeparate(_srcFactor, _destFactor, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glBlendColor(_color.red(), _color.green(), _color.blue(), _color.alpha());
    if (_alphaFunc != NO_ALPHA_FUNC) {
        glEnable(GL_ALPHA_TEST);
        glAlphaFunc(_alphaFunc, _alphaValue);
    }
}

void BlendChunk::deactivate(RenderActionBase&, UInt32)
{
    glDisable(GL_BLEND);
    if (_alphaFunc != NO_ALPHA_FUNC)
        glDisable(GL_ALPHA_TEST);
}

void PolygonChunk::activate(RenderActionBase& action, UInt32)
{
    if (_cullFace != CULL_NONE) {
        glEnable(GL_CULL_FACE);
        glCullFace(_cullFace);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, _cullFace != CULL_BACK);
    }
    action.setFrontFace(_frontFace);
    if (_frontMode != FILL_MODE || _backMode != FILL_MODE) {
        glPolygonMode(GL_FRONT, _frontMode);
        glPolygonMode(GL_BACK, _backMode);
    }
    if (_offsetFactor != 0 || _offsetBias != 0) {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(_offsetFactor, _offsetBias);
    }
    if (_stipple.size() == 32) {
        UInt8 mask[128];
        for (UInt32 i = 0; i < 128; ++i)
            mask[i] = static_cast<UInt8>(_stipple[i / 4] >> (24 - 8 * (i % 4)));
        glEnable(GL_POLYGON_STIPPLE);
        glPolygonStipple(mask);
    }
}

void PolygonChunk::deactivate(RenderActionBase& action, UInt32)
{
    if (_cullFace != CULL_NONE) {
        glDisable(GL_CULL_FACE);
        glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    }
    action.setFrontFace(COUNTERCLOCKWISE);
    glPolygonMode(GL_FRONT_AND_BACK, action.getPolygonMode());
    glDisable(GL_POLYGON_OFFSET_FILL);
    glDisable(GL_POLYGON_STIPPLE);
}

void LineChunk::activate(RenderActionBase&, UInt32)
{
    glLineWidth(_width > 0 ? _width : 1);
    if (_stipplePattern != 0xffff) {
        glEnable(GL_LINE_STIPPLE);
        glLineStipple(_stippleRepeat, _stipplePattern);
    }
    if (_smooth)
        glEnable(GL_LINE_SMOOTH);
}

void LineChunk::deactivate(RenderActionBase&, UInt32)
{
    glLineWidth(1);
    glDisable(GL_LINE_STIPPLE);
    glDisable(GL_LINE_SMOOTH);
}

namespace {

void setPointParameters(const Vec3f& attenuation, Real32 minSize, Real32 maxSize)
{
    glPointParameterfv(GL_POINT_DISTANCE_ATTENUATION, attenuation.getValues());
    glPointParameterf(GL_POINT_SIZE_MIN, minSize);
    glPointParameterf(GL_POINT_SIZE_MAX, maxSize);
}

// What stands for no bound.
const Real32 largestPoint = 8192;

} // namespace

void PointChunk::activate(RenderActionBase&, UInt32)
{
    glPointSize(_size > 0 ? _size : 1);
    setPointParameters(_attenuation, osgMax(_minSize, 0.f), _maxSize >= 0 ? _maxSize : largestPoint);
    if (_smooth)
        glEnable(GL_POINT_SMOOTH);
}

void PointChunk::deactivate(RenderActionBase&, UInt32)
{
    glPointSize(1);
    setPointParameters(Vec3f(1, 0, 0), 0, largestPoint);
    glDisable(GL_POINT_SMOOTH);
}

} // namespace osg
