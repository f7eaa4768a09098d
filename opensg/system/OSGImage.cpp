#include <OpenSG/OSGImage.h>

#include "OSGImageFormat.h"

#include <OpenSG/OSGImageFileHandler.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace osg {

namespace {

// The part of [offset, offset + count) that lies in [0, size): first index and number.
struct Span
{
    Int64 begin;
    Int64 count;

    Span(Int64 offset, Int64 length, Int64 size)
        : begin(std::max<Int64>(offset, 0))
        , count(std::max<Int64>(std::min(offset + length, size) - begin, 0))
    {
    }
};

} // namespace

ImageForm Image::form() const
{
    return {_pixelFormat, _dataType, _width, _height, _depth, _mipMapCount, _frameCount, _sideCount};
}

void Image::changed(BitVector whichField, UInt32 origin)
{
    // A copy, because a parent may take itself out.
    const std::vector<FieldContainerPtr> parents = getParents();
    for (const FieldContainerPtr& parent : parents)
        changedCP(parent, FieldBits::NoField, ChangedOrigin::Child);
    ImageBase::changed(whichField, origin);
}

bool Image::set(UInt32 pixelFormat, Int32 width, Int32 height, Int32 depth, Int32 mipmapCount,
                Int32 frameCount, Time frameDelay, const UInt8* data, Int32 type, bool allocMem,
                Int32 sideCount)
{
    const ImageForm form{pixelFormat,
                         type,
                         std::max(width, 1),
                         std::max(height, 1),
                         std::max(depth, 1),
                         std::max(mipmapCount, 1),
                         std::max(frameCount, 1),
                         std::max(sideCount, 1)};
    const PixelFormatInfo* info = findPixelFormat(pixelFormat);
    const UInt64 size = form.size();
    std::vector<UInt8> pixels;
    bool possible = true;
    if (!info || !componentSizeOf(type)) {
        SWARNING << "Image::set: unknown pixel format " << pixelFormat << " or data type " << type
                 << std::endl;
        possible = false;
    } else if (size > MaxSize) {
        SWARNING << "Image::set: " << form.width << " x " << form.height << " x " << form.depth
                 << " pixels are more than an image can have" << std::endl;
        possible = false;
    } else if (allocMem && !data && size == _pixel.size()) {
        pixels.swap(_pixel);
    } else if (allocMem) {
        possible = allocate(pixels, size);
    }
    if (!possible) {
        becomeEmpty();
        return false;
    }
    // Copied before the old memory goes: `data` may point into it.
    if (data && allocMem)
        std::memcpy(pixels.data(), data, size);
    return adopt(form, frameDelay, std::move(pixels));
}

bool Image::adopt(const ImageForm& form, Time frameDelay, std::vector<UInt8>&& pixels)
{
    _pixelFormat = form.format;
    _dataType = form.dataType;
    _width = form.width;
    _height = form.height;
    _depth = form.depth;
    _mipMapCount = form.mipmaps;
    _frameCount = form.frames;
    _sideCount = form.sides;
    _frameDelay = frameDelay;
    _dimension = _depth > 1 ? 3 : _height > 1 ? 2 : 1;
    _componentSize = componentSizeOf(_dataType);
    _bpp = getComponents() * _componentSize;
    _sideSize = static_cast<Int32>(form.sideSize());
    _frameSize = _sideSize * _sideCount;
    _pixel = std::move(pixels);
    return isValid();
}

bool Image::set(ImagePtr image)
{
    if (!image) {
        SWARNING << "Image::set: no image given" << std::endl;
        return false;
    }
    if (image.getCPtr() == this)
        return true;
    _dimension = image->_dimension;
    _width = image->_width;
    _height = image->_height;
    _depth = image->_depth;
    _bpp = image->_bpp;
    _mipMapCount = image->_mipMapCount;
    _frameCount = image->_frameCount;
    _frameDelay = image->_frameDelay;
    _pixelFormat = image->_pixelFormat;
    _pixel = image->_pixel;
    _frameSize = image->_frameSize;
    _dataType = image->_dataType;
    _componentSize = image->_componentSize;
    _sideCount = image->_sideCount;
    _sideSize = image->_sideSize;
    _forceCompressedData = image->_forceCompressedData;
    _forceAlphaChannel = image->_forceAlphaChannel;
    _forceColorChannel = image->_forceColorChannel;
    _forceAlphaBinary = image->_forceAlphaBinary;
    _resX = image->_resX;
    _resY = image->_resY;
    _resUnit = image->_resUnit;
    return true;
}

void Image::becomeEmpty()
{
    const ImageRefPtr empty = ImageBase::create();
    _pixel = std::vector<UInt8>();
    set(empty.get());
}

bool Image::setData(const UInt8* data)
{
    if (!data) {
        SWARNING << "Image::setData: no data given" << std::endl;
        return false;
    }
    return set(_pixelFormat, _width, _height, _depth, _mipMapCount, _frameCount, _frameDelay, data, _dataType,
               true, _sideCount);
}

void Image::clearData()
{
    _pixel = std::vector<UInt8>();
}

bool Image::setSubData(Int32 offX, Int32 offY, Int32 offZ, Int32 srcW, Int32 srcH, Int32 srcD,
                       const UInt8* data)
{
    if (!data || !isEditable("setSubData"))
        return false;
    const Span x(offX, srcW, _width), y(offY, srcH, _height), z(offZ, srcD, _depth);
    if (!x.count || !y.count || !z.count)
        return true;
    for (Int64 slice = z.begin; slice < z.begin + z.count; ++slice) {
        for (Int64 row = y.begin; row < y.begin + y.count; ++row) {
            const Int64 source = ((slice - offZ) * srcH + row - offY) * srcW + x.begin - offX;
            const Int64 target = (slice * _height + row) * _width + x.begin;
            std::memmove(_pixel.data() + target * _bpp, data + source * _bpp,
                         static_cast<std::size_t>(x.count * _bpp));
        }
    }
    return true;
}

bool Image::read(const Char8* fileName)
{
    ImagePtr self(this);
    return ImageFileHandler::the().read(self, fileName);
}

bool Image::write(const Char8* fileName)
{
    return ImageFileHandler::the().write(ImagePtr(this), fileName);
}

UInt64 Image::store(const Char8* mimeType, UInt8* mem, Int32 memSize)
{
    return ImageFileHandler::the().store(ImagePtr(this), mimeType, mem, memSize);
}

UInt64 Image::restore(const UInt8* mem, Int32 memSize)
{
    ImagePtr self(this);
    return ImageFileHandler::the().restore(self, mem, memSize);
}

Image& Image::operator=(const Image& other)
{
    if (this != &other) {
        set(ImagePtr(other));
        _name = other._name;
        _texts = other._texts;
    }
    return *this;
}

bool Image::operator==(const Image& other) const
{
    return _pixelFormat == other._pixelFormat && _dataType == other._dataType && _width == other._width &&
           _height == other._height && _depth == other._depth && _mipMapCount == other._mipMapCount &&
           _frameCount == other._frameCount && _sideCount == other._sideCount &&
           _frameDelay == other._frameDelay && _pixel == other._pixel;
}

void Image::setAttachmentField(const std::string& key, const std::string& data)
{
    _texts[key] = data;
}

const std::string* Image::findAttachmentField(const std::string& key) const
{
    const auto found = _texts.find(key);
    return found == _texts.end() ? nullptr : &found->second;
}

UInt8 Image::getComponents() const
{
    if (const PixelFormatInfo* info = findPixelFormat(_pixelFormat))
        return static_cast<UInt8>(info->components());
    SWARNING << "Image::getComponents: unknown pixel format " << _pixelFormat << std::endl;
    return 0;
}

bool Image::hasAlphaChannel()
{
    const PixelFormatInfo* info = findPixelFormat(_pixelFormat);
    return _forceAlphaChannel || (info && info->hasAlpha);
}

bool Image::hasColorChannel()
{
    const PixelFormatInfo* info = findPixelFormat(_pixelFormat);
    return _forceColorChannel || !info || info->hasColor;
}

bool Image::isAlphaBinary()
{
    return _forceAlphaBinary || _pixelFormat == OSG_RGBA_DXT1;
}

bool Image::hasCompressedData()
{
    const PixelFormatInfo* info = findPixelFormat(_pixelFormat);
    return _forceCompressedData || (info && info->blockSize);
}

unsigned long Image::getSize(bool withMipmap, bool withFrames, bool withSides) const
{
    ImageForm counted = form();
    counted.mipmaps = withMipmap ? counted.mipmaps : 1;
    counted.frames = withFrames ? counted.frames : 1;
    counted.sides = withSides ? counted.sides : 1;
    return counted.size();
}

UInt8* Image::getData(UInt32 mipmap, UInt32 frame, UInt32 side)
{
    return const_cast<UInt8*>(static_cast<const Image*>(this)->getData(mipmap, frame, side));
}

const UInt8* Image::getData(UInt32 mipmap, UInt32 frame, UInt32 side) const
{
    if (!isValid())
        return nullptr;
    return _pixel.data() + UInt64(frame) * static_cast<UInt64>(_frameSize) +
           UInt64(side) * static_cast<UInt64>(_sideSize) + form().levelsSize(mipmap);
}

UInt8* Image::getDataByTime(Time time, UInt32)
{
    return getData(0, calcFrameNum(time));
}

UInt32 Image::calcFrameNum(Time time, bool) const
{
    const Time frame = std::floor(time / _frameDelay);
    if (!(_frameDelay > 0) || !std::isfinite(frame))
        return 0;
    const Time rest = std::fmod(frame, static_cast<Time>(_frameCount));
    return static_cast<UInt32>(rest < 0 ? rest + _frameCount : rest);
}

void Image::calcMipmapGeometry(UInt32 level, UInt32& width, UInt32& height, UInt32& depth) const
{
    width = mipmapEdge(_width, level);
    height = mipmapEdge(_height, level);
    depth = mipmapEdge(_depth, level);
}

UInt32 Image::calcMipmapLevelCount() const
{
    UInt32 count = 1;
    for (Int32 edge = std::max({_width, _height, _depth}); edge > 1; edge >>= 1)
        ++count;
    return count;
}

bool Image::isEditable(const Char8* operation) const
{
    const PixelFormatInfo* info = findPixelFormat(_pixelFormat);
    if (isValid() && info && !info->blockSize)
        return true;
    SWARNING << "Image::" << operation << ": not possible "
             << (isValid() ? "with compressed pixels" : "without pixels") << std::endl;
    return false;
}

} // namespace osg
