#include "OSGGLTexture.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>

#include <algorithm>
#include <epoxy/gl.h>

namespace osg {

namespace {

struct Format
{
    UInt32 pixelFormat;
    GLint internal;
    GLenum external;
};

// Formats of integers show as those of fractions: fixed drawing cannot read the former.
const Format formats[] = {{Image::OSG_A_PF, GL_ALPHA, GL_ALPHA},
                          {Image::OSG_RGB_PF, GL_RGB, GL_RGB},
                          {Image::OSG_RGBA_PF, GL_RGBA, GL_RGBA},
                          {Image::OSG_L_PF, GL_LUMINANCE, GL_LUMINANCE},
                          {Image::OSG_LA_PF, GL_LUMINANCE_ALPHA, GL_LUMINANCE_ALPHA},
                          {Image::OSG_I_PF, GL_INTENSITY, GL_LUMINANCE},
                          {Image::OSG_BGR_PF, GL_RGB, GL_BGR},
                          {Image::OSG_BGRA_PF, GL_RGBA, GL_BGRA},
                          {Image::OSG_ALPHA_INTEGER_PF, GL_ALPHA, GL_ALPHA},
                          {Image::OSG_RGB_INTEGER_PF, GL_RGB, GL_RGB},
                          {Image::OSG_RGBA_INTEGER_PF, GL_RGBA, GL_RGBA},
                          {Image::OSG_BGR_INTEGER_PF, GL_RGB, GL_BGR},
                          {Image::OSG_BGRA_INTEGER_PF, GL_RGBA, GL_BGRA},
                          {Image::OSG_LUMINANCE_INTEGER_PF, GL_LUMINANCE, GL_LUMINANCE},
                          {Image::OSG_LUMINANCE_ALPHA_INTEGER_PF, GL_LUMINANCE_ALPHA, GL_LUMINANCE_ALPHA}};

const Format* findFormat(UInt32 pixelFormat)
{
    const auto found = std::find_if(std::begin(formats), std::end(formats),
                                    [=](const Format& format) { return format.pixelFormat == pixelFormat; });
    return found == std::end(formats) ? nullptr : found;
}

bool usesMipmaps(UInt32 filter)
{
    return filter != TextureChunk::NEAREST && filter != TextureChunk::LINEAR;
}

Int32 largestEdge(const Image& image)
{
    return osgMax(image.getWidth(), osgMax(image.getHeight(), image.getDepth()));
}

} // namespace

void GLTexture::free()
{
    if (_name)
        glDeleteTextures(1, &_name);
    _name = 0;
}

void GLTexture::bind() const
{
    glBindTexture(_target, _name);
}

void GLTexture::build(TextureChunk& chunk, const GLLimits& limits)
{
    if (chunk._imageStamp != _imageStamp || !_name)
        sendImage(chunk, limits);
    _imageStamp = chunk._imageStamp;
    if (_target)
        sendParameters(chunk, limits);
}

void GLTexture::sendImage(TextureChunk& chunk, const GLLimits& limits)
{
    ImagePtr image = chunk.getImage();
    if (!image || !image->isValid() || (!image->hasCompressedData() && !findFormat(image->getPixelFormat())))
    {
        free();
        _target = 0;
        return;
    }
    const UInt32 target = image->getSideCount() == 6 ? GL_TEXTURE_CUBE_MAP
                          : image->getDepth() > 1    ? GL_TEXTURE_3D
                                                     : GL_TEXTURE_2D;
    const Int32 limit = target == GL_TEXTURE_3D ? limits.textureSize3D : limits.textureSize;
    const RefPtr<ImagePtr> scaled = Image::create();
    if (largestEdge(*image) > limit) {
        if (image->hasCompressedData() ||
            !image->scale(osgMin(image->getWidth(), limit), osgMin(image->getHeight(), limit),
                          osgMin(image->getDepth(), limit), scaled.get()))
        {
            free();
            _target = 0;
            return;
        }
        image = scaled.get();
    }

    const bool hasLevels = image->getMipMapCount() > 1;
    const bool makeLevels = !hasLevels && usesMipmaps(chunk.getMinFilter()) && !image->hasCompressedData();
    const UInt64 form[4] = {UInt64(image->getPixelFormat()) << 32 | UInt32(image->getDataType()),
                            UInt64(image->getWidth()) << 32 | UInt32(image->getHeight()),
                            UInt64(image->getDepth()) << 32 | UInt32(image->getMipMapCount()),
                            UInt64(target) << 32 | UInt32(makeLevels)};
    const bool again = _name && std::equal(form, form + 4, _form);
    if (_name && target != _target)
        free();
    if (!_name)
        glGenTextures(1, &_name);
    std::copy_n(form, 4, _form);
    _target = target;
    _levels = static_cast<UInt32>(osgMax(image->getMipMapCount(), 1));

    bind();
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(_target, GL_TEXTURE_MAX_LEVEL, hasLevels || !makeLevels ? GLint(_levels) - 1 : 1000);
    if (makeLevels && !limits.generateMipmap)
        glTexParameteri(_target, GL_GENERATE_MIPMAP, GL_TRUE);
    const UInt32 frame = osgMin(chunk.getFrame(), static_cast<UInt32>(image->getFrameCount()) - 1);
    const UInt32 sides = _target == GL_TEXTURE_CUBE_MAP ? 6 : 1;
    for (UInt32 side = 0; side < sides; ++side) {
        const UInt32 face = sides == 6 ? GL_TEXTURE_CUBE_MAP_POSITIVE_X + side : _target;
        for (UInt32 level = 0; level < _levels; ++level)
            sendLevel(*image, face, level, frame, side, again);
    }
    if (makeLevels && limits.generateMipmap)
        glGenerateMipmap(_target);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
}

void GLTexture::sendLevel(Image& image, UInt32 target, UInt32 level, UInt32 frame, UInt32 side, bool again)
{
    UInt32 width = 0;
    UInt32 height = 0;
    UInt32 depth = 0;
    image.calcMipmapGeometry(level, width, height, depth);
    const GLsizei w = static_cast<GLsizei>(width);
    const GLsizei h = static_cast<GLsizei>(height);
    const GLsizei d = static_cast<GLsizei>(depth);
    const GLint l = static_cast<GLint>(level);
    const UInt8* data = image.getData(level, frame, side);
    if (image.hasCompressedData()) {
        // Blocks of 4 x 4 pixels, of 8 bytes without shades of alpha and 16 with them.
        const UInt32 format = image.getPixelFormat();
        const GLsizei block = format == Image::OSG_RGB_DXT1 || format == Image::OSG_RGBA_DXT1 ? 8 : 16;
        glCompressedTexImage2D(target, l, format, w, h, 0, (w + 3) / 4 * ((h + 3) / 4) * block, data);
        return;
    }
    const Format& format = *findFormat(image.getPixelFormat());
    const GLenum type = static_cast<GLenum>(image.getDataType());
    if (target == GL_TEXTURE_3D && again)
        glTexSubImage3D(target, l, 0, 0, 0, w, h, d, format.external, type, data);
    else if (target == GL_TEXTURE_3D)
        glTexImage3D(target, l, format.internal, w, h, d, 0, format.external, type, data);
    else if (again)
        glTexSubImage2D(target, l, 0, 0, w, h, format.external, type, data);
    else
        glTexImage2D(target, l, format.internal, w, h, 0, format.external, type, data);
}

void GLTexture::sendParameters(const TextureChunk& chunk, const GLLimits& limits)
{
    bind();
    glTexParameteri(_target, GL_TEXTURE_WRAP_S, static_cast<GLint>(chunk.getWrapS()));
    glTexParameteri(_target, GL_TEXTURE_WRAP_T, static_cast<GLint>(chunk.getWrapT()));
    if (_target != GL_TEXTURE_2D)
        glTexParameteri(_target, GL_TEXTURE_WRAP_R, static_cast<GLint>(chunk.getWrapR()));
    glTexParameteri(_target, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(chunk.getMinFilter()));
    glTexParameteri(_target, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(chunk.getMagFilter()));
    glTexParameterfv(_target, GL_TEXTURE_BORDER_COLOR, chunk.getBorderColor().getValuesRGBA());
    if (limits.anisotropy > 1)
        glTexParameterf(_target, GL_TEXTURE_MAX_ANISOTROPY_EXT,
                        osgClamp(1.f, chunk.getAnisotropy(), limits.anisotropy));
}

} // namespace osg
