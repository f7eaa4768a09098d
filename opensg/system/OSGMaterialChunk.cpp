#include <OpenSG/OSGMaterialChunk.h>

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGRenderActionBase.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

#include <algorithm>
#include <cstring>
#include <epoxy/gl.h>
#include <iterator>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(MaterialChunk, StateChunk)

namespace {

struct SideColor
{
    GLenum name;
    Color4f MaterialChunk::Side::*color;
};

const SideColor sideColors[] = {{GL_AMBIENT, &MaterialChunk::Side::ambient},
                                {GL_DIFFUSE, &MaterialChunk::Side::diffuse},
                                {GL_SPECULAR, &MaterialChunk::Side::specular},
                                {GL_EMISSION, &MaterialChunk::Side::emission}};

// Sends what differs from `old`, or everything without one.
void sendSide(GLenum face, const MaterialChunk::Side& side, const MaterialChunk::Side* old)
{
    for (const SideColor& entry : sideColors) {
        const Color4f& color = side.*entry.color;
        if (!old || std::memcmp(&color, &(old->*entry.color), sizeof(Color4f)) != 0)
            glMaterialfv(face, entry.name, color.getValuesRGBA());
    }
    if (!old || side.shininess != old->shininess)
        glMaterialf(face, GL_SHININESS, side.shininess);
}

Real32 keptShininess(Real32 shininess)
{
    return osgClamp(0.f, shininess, 128.f);
}

} // namespace

void MaterialChunk::setShininess(Real32 shininess)
{
    _front.shininess = keptShininess(shininess);
}

void MaterialChunk::setDiffuse(const Color4f& color)
{
    if (color.alpha() != _front.diffuse.alpha())
        SceneStamp::renew();
    _front.diffuse = color;
}

void MaterialChunk::clearBack()
{
    SceneStamp::renew();
    _back.reset();
}

void MaterialChunk::setBack(const Side& side)
{
    SceneStamp::renew();
    _back = std::make_unique<Side>(side);
    _back->shininess = keptShininess(side.shininess);
}

void MaterialChunk::setColorMaterial(UInt32 mode)
{
    const UInt32 modes[] = {NO_COLOR_MATERIAL, AMBIENT_COLOR,  DIFFUSE_COLOR,
                            SPECULAR_COLOR,    EMISSION_COLOR, AMBIENT_AND_DIFFUSE_COLOR};
    if (std::find(std::begin(modes), std::end(modes), mode) != std::end(modes))
        _colorMaterial = mode;
}

bool MaterialChunk::isTransparent() const
{
    return _front.diffuse.alpha() < 1 || (_back && _back->diffuse.alpha() < 1);
}

void MaterialChunk::activate(RenderActionBase& action, UInt32)
{
    if (!_lit) {
        glDisable(GL_LIGHTING);
        glColor4fv(_front.diffuse.getValuesRGBA());
        return;
    }
    glEnable(GL_LIGHTING);
    sendSide(_back ? GL_FRONT : GL_FRONT_AND_BACK, _front, nullptr);
    if (_back)
        sendSide(GL_BACK, *_back, nullptr);
    if (action.hasVertexColors() && _colorMaterial != NO_COLOR_MATERIAL) {
        glColorMaterial(GL_FRONT_AND_BACK, _colorMaterial);
        glEnable(GL_COLOR_MATERIAL);
    }
}

void MaterialChunk::changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot)
{
    const MaterialChunk& last = static_cast<const MaterialChunk&>(old);
    if (_lit && last._lit && !_back && !last._back && !action.hasVertexColors())
        sendSide(GL_FRONT_AND_BACK, _front, &last._front);
    else
        StateChunk::changeFrom(action, old, slot);
}

void MaterialChunk::deactivate(RenderActionBase&, UInt32)
{
    // Colours of materials are set anew by whoever draws with lights.
    glDisable(GL_LIGHTING);
    glDisable(GL_COLOR_MATERIAL);
}

} // namespace osg
