#include <OpenSG/OSGTextureChunk.h>

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGWindow.h>

#include "OSGContainerType.h"
#include "OSGGLTexture.h"
#include "OSGSceneStamp.h"

#include <algorithm>
#include <epoxy/gl.h>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(TextureChunk, StateChunk)

namespace {

template <std::size_t N>
bool isOneOf(UInt32 value, const UInt32 (&values)[N])
{
    return std::find(values, values + N, value) != values + N;
}

const UInt32 wraps[] = {TextureChunk::CLAMP, TextureChunk::REPEAT, TextureChunk::CLAMP_TO_BORDER,
                        TextureChunk::CLAMP_TO_EDGE, TextureChunk::MIRRORED_REPEAT};
const UInt32 minFilters[] = {TextureChunk::NEAREST,
                             TextureChunk::LINEAR,
                             TextureChunk::NEAREST_MIPMAP_NEAREST,
                             TextureChunk::LINEAR_MIPMAP_NEAREST,
                             TextureChunk::NEAREST_MIPMAP_LINEAR,
                             TextureChunk::LINEAR_MIPMAP_LINEAR};
const UInt32 magFilters[] = {TextureChunk::NEAREST, TextureChunk::LINEAR};

} // namespace

TextureChunk::~TextureChunk()
{
    setImage(NullFC);
}

void TextureChunk::setImage(const ImagePtr& image)
{
    if (image == _image)
        return;
    const ImagePtr next = image;
    if (_image)
        _image->subParent(TextureChunkPtr(this));
    setRefdCP(_image, next);
    if (_image)
        _image->addParent(TextureChunkPtr(this));
    changed(ImageFieldMask, ChangedOrigin::External);
}

void TextureChunk::setFrame(UInt32 frame)
{
    if (frame == _frame)
        return;
    _frame = frame;
    changed(FrameFieldMask, ChangedOrigin::External);
}

void TextureChunk::setWrap(UInt32 axis, UInt32 wrap)
{
    if (isOneOf(wrap, wraps))
        _wrap[axis] = wrap;
    changed(FilterFieldMask, ChangedOrigin::External);
}

void TextureChunk::setMinFilter(UInt32 filter)
{
    // Levels may have to be made that were not needed before.
    if (isOneOf(filter, minFilters) && filter != _minFilter) {
        _minFilter = filter;
        changed(FilterFieldMask | ImageFieldMask, ChangedOrigin::External);
    }
}

void TextureChunk::setMagFilter(UInt32 filter)
{
    if (isOneOf(filter, magFilters))
        _magFilter = filter;
    changed(FilterFieldMask, ChangedOrigin::External);
}

void TextureChunk::setAnisotropy(Real32 anisotropy)
{
    _anisotropy = anisotropy;
    changed(FilterFieldMask, ChangedOrigin::External);
}

void TextureChunk::setBorderColor(const Color4f& color)
{
    _borderColor = color;
    changed(FilterFieldMask, ChangedOrigin::External);
}

void TextureChunk::changed(BitVector whichField, UInt32 origin)
{
    // An image tells of its changes as those of a child, without a field.
    if (origin == ChangedOrigin::Child || (whichField & (ImageFieldMask | FrameFieldMask))) {
        ++_imageStamp;
        // Nobody has asked for what is not known.
        const Alpha last = _alpha;
        _alpha = Alpha::UNKNOWN;
        if (last != Alpha::UNKNOWN && getAlpha() != last)
            SceneStamp::renew();
        _glSlot.touch();
    } else if (whichField & FilterFieldMask) {
        _glSlot.touch();
    }
    StateChunk::changed(whichField, origin);
}

TextureChunk::Alpha TextureChunk::getAlpha() const
{
    if (_alpha != Alpha::UNKNOWN)
        return _alpha;
    _alpha = Alpha::NONE;
    if (!_image || !_image->isValid() || !_image->hasAlphaChannel())
        return _alpha;
    _alpha = _image->isAlphaBinary() ? Alpha::BINARY : Alpha::SHADES;
    const UInt32 components = _image->getComponents();
    if (_alpha == Alpha::BINARY || _image->hasCompressedData() ||
        _image->getDataType() != Image::OSG_UINT8_IMAGEDATA || components == 0)
        return _alpha;
    // Alpha is the last component of all formats of bytes.
    const UInt8* data = _image->getData();
    const UInt8* end = data + _image->getSize();
    bool opaque = true;
    for (const UInt8* pixel = data + components - 1; pixel < end; pixel += components) {
        if (*pixel != 0 && *pixel != 255)
            return _alpha;
        opaque &= *pixel == 255;
    }
    return _alpha = opaque ? Alpha::NONE : Alpha::BINARY;
}

bool TextureChunk::isTransparent() const
{
    return getAlpha() == Alpha::SHADES;
}

bool TextureChunk::hasHoles() const
{
    return getAlpha() == Alpha::BINARY;
}

void TextureChunk::setCoordSet(UInt32 set)
{
    _coordSet = set < MaxSlots ? static_cast<Int32>(set) : -1;
}

void TextureChunk::applyEnv(const GLLimits& limits) const
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, static_cast<GLint>(_envMode));
    glTexEnvfv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_COLOR, _envColor.getValuesRGBA());
    if (_envMode != ENV_COMBINE)
        return;
    const auto function = [&limits](UInt32 wanted) {
        const bool replaced = wanted == COMBINE_MODULATE_ADD && !limits.combineModulateAdd;
        return static_cast<GLint>(replaced ? GL_ADD : wanted);
    };
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_RGB, function(_combine.rgb));
    glTexEnvi(GL_TEXTURE_ENV, GL_COMBINE_ALPHA, function(_combine.alpha));
    for (GLenum i = 0; i < 3; ++i) {
        glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_RGB + i, static_cast<GLint>(_combine.source[0][i]));
        glTexEnvi(GL_TEXTURE_ENV, GL_SOURCE0_ALPHA + i, static_cast<GLint>(_combine.source[1][i]));
        glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_RGB + i, static_cast<GLint>(_combine.operand[0][i]));
        glTexEnvi(GL_TEXTURE_ENV, GL_OPERAND0_ALPHA + i, static_cast<GLint>(_combine.operand[1][i]));
    }
    glTexEnvf(GL_TEXTURE_ENV, GL_RGB_SCALE, _combine.rgbScale);
    glTexEnvf(GL_TEXTURE_ENV, GL_ALPHA_SCALE, _combine.alphaScale);
}

UInt32 TextureChunk::bind(RenderActionBase& action, UInt32 unit)
{
    GLObjects& objects = action.getWindow()->getGLObjects();
    glActiveTexture(GL_TEXTURE0 + unit);
    const GLTexture& texture = objects.get<GLTexture>(_glSlot, [&](auto old) {
        auto made = old ? std::move(old) : std::make_unique<GLTexture>();
        made->build(*this, objects.getLimits());
        return made;
    });
    if (texture.getTarget())
        texture.bind();
    return texture.getTarget();
}

void TextureChunk::activate(RenderActionBase& action, UInt32 slot)
{
    const UInt32 target = bind(action, slot);
    if (!target)
        return;
    glEnable(target);
    applyEnv(action.getWindow()->getGLObjects().getLimits());
}

void TextureChunk::deactivate(RenderActionBase&, UInt32 slot)
{
    glActiveTexture(GL_TEXTURE0 + slot);
    for (GLenum target : {GL_TEXTURE_2D, GL_TEXTURE_3D, GL_TEXTURE_CUBE_MAP})
        glDisable(target);
}

} // namespace osg
