#include <OpenSG/OSGImage.h>

#include "OSGImageFormat.h"
#include "OSGImageSample.h"

#include <OpenSG/OSGBaseFunctions.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace osg {

namespace {

struct Rgba
{
    Real64 r = 0, g = 0, b = 0, a = 1;
};

Rgba loadPixel(const UInt8* from, const PixelFormatInfo& info, Int32 dataType, Int32 componentSize)
{
    Rgba pixel;
    for (const char* channel = info.channels; *channel; ++channel, from += componentSize) {
        const Real64 value = loadSample(from, dataType);
        switch (*channel) {
        case 'R':
            pixel.r = value;
            break;
        case 'G':
            pixel.g = value;
            break;
        case 'B':
            pixel.b = value;
            break;
        case 'L':
            pixel.r = pixel.g = pixel.b = value;
            break;
        case 'I':
            pixel = {value, value, value, value};
            break;
        default:
            // Alpha alone counts as intensity, so that nothing is lost on the way to another format.
            if (info.components() == 1)
                pixel = {value, value, value, value};
            pixel.a = value;
        }
    }
    return pixel;
}

void storePixel(UInt8* to, const PixelFormatInfo& info, Int32 dataType, Int32 componentSize,
                const Rgba& pixel)
{
    for (const char* channel = info.channels; *channel; ++channel, to += componentSize) {
        Real64 value = pixel.a;
        switch (*channel) {
        case 'R':
            value = pixel.r;
            break;
        case 'G':
            value = pixel.g;
            break;
        case 'B':
            value = pixel.b;
            break;
        case 'L':
        case 'I':
            value = 0.299 * pixel.r + 0.587 * pixel.g + 0.114 * pixel.b;
            break;
        default:
            break;
        }
        storeSample(to, dataType, value);
    }
}

struct Box
{
    Int64 x, y, z, width, height, depth;
};

// Copies a box out of `from`, whose rows and slices have the given edges, tightly into `to`.
void copyBox(UInt8* to, const UInt8* from, Int64 fromWidth, Int64 fromHeight, const Box& box, Int64 bpp)
{
    for (Int64 z = 0; z < box.depth; ++z) {
        for (Int64 y = 0; y < box.height; ++y) {
            const Int64 source = ((box.z + z) * fromHeight + box.y + y) * fromWidth + box.x;
            std::memcpy(to, from + source * bpp, static_cast<std::size_t>(box.width * bpp));
            to += box.width * bpp;
        }
    }
}

} // namespace

bool Image::replacePixels(ImagePtr destination, const ImageForm& form, std::vector<UInt8>&& pixels)
{
    const ImagePtr target = destination ? destination : ImagePtr(this);
    return target->adopt(form, _frameDelay, std::move(pixels));
}

bool Image::reformat(PixelFormat pixelFormat, ImagePtr destination)
{
    if (!isEditable("reformat"))
        return false;
    const PixelFormatInfo* source = findPixelFormat(_pixelFormat);
    const PixelFormatInfo* target = findPixelFormat(pixelFormat);
    if (!target || target->blockSize) {
        SWARNING << "Image::reformat: no conversion to pixel format " << pixelFormat << std::endl;
        return false;
    }
    ImageForm result = form();
    result.format = pixelFormat;
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    const std::size_t step = target->components() * static_cast<std::size_t>(_componentSize);
    UInt8* to = pixels.data();
    const UInt8* const end = _pixel.data() + _pixel.size();
    for (const UInt8* from = _pixel.data(); from != end; from += _bpp, to += step) {
        if (source == target)
            std::memcpy(to, from, step);
        else
            storePixel(to, *target, _dataType, _componentSize,
                       loadPixel(from, *source, _dataType, _componentSize));
    }
    return replacePixels(destination, result, std::move(pixels));
}

bool Image::convertDataTypeTo(Int32 dataType)
{
    if (!isEditable("convertDataTypeTo"))
        return false;
    ImageForm result = form();
    result.dataType = dataType;
    const Int32 size = componentSizeOf(dataType);
    if (!size) {
        SWARNING << "Image::convertDataTypeTo: unknown data type " << dataType << std::endl;
        return false;
    }
    if (dataType == _dataType)
        return true;
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    UInt8* to = pixels.data();
    const UInt8* const end = _pixel.data() + _pixel.size();
    for (const UInt8* from = _pixel.data(); from != end; from += _componentSize, to += size)
        storeSample(to, dataType, loadSample(from, _dataType));
    return replacePixels(NullFC, result, std::move(pixels));
}

bool Image::scale(Int32 width, Int32 height, Int32 depth, ImagePtr destination)
{
    if (!isEditable("scale"))
        return false;
    ImageForm result = form();
    result.width = std::max(width, 1);
    result.height = std::max(height, 1);
    result.depth = std::max(depth, 1);
    const Int32 largest = std::max({result.width, result.height, result.depth});
    while (result.mipmaps > 1 && (result.mipmaps > 32 || largest >> (result.mipmaps - 1) == 0))
        --result.mipmaps;
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    const auto bpp = static_cast<std::size_t>(_bpp);
    UInt8* to = pixels.data();
    for (Int32 frame = 0; frame < _frameCount; ++frame) {
        for (Int32 side = 0; side < _sideCount; ++side) {
            for (Int32 level = 0; level < result.mipmaps; ++level) {
                const auto number = static_cast<UInt32>(level);
                const UInt8* from = getData(number, static_cast<UInt32>(frame), static_cast<UInt32>(side));
                UInt32 w, h, d;
                calcMipmapGeometry(number, w, h, d);
                const UInt64 newW = mipmapEdge(result.width, number);
                const UInt64 newH = mipmapEdge(result.height, number);
                const UInt64 newD = mipmapEdge(result.depth, number);
                for (UInt64 z = 0; z < newD; ++z) {
                    for (UInt64 y = 0; y < newH; ++y) {
                        const UInt64 row = (z * d / newD * h + y * h / newH) * w;
                        for (UInt64 x = 0; x < newW; ++x, to += bpp)
                            std::memcpy(to, from + (row + x * w / newW) * bpp, bpp);
                    }
                }
            }
        }
    }
    return replacePixels(destination, result, std::move(pixels));
}

bool Image::scaleNextPower2(ImagePtr destination)
{
    const auto next = [](Int32 edge) {
        return static_cast<Int32>(std::min(osgNextPower2(static_cast<UInt32>(edge)), 1u << 30));
    };
    return scale(next(_width), next(_height), next(_depth), destination);
}

bool Image::subImage(Int32 offX, Int32 offY, Int32 offZ, Int32 width, Int32 height, Int32 depth,
                     ImagePtr destination)
{
    if (!isEditable("subImage"))
        return false;
    const auto inside = [](Int64 offset, Int64 count, Int64 size) {
        return offset >= 0 && count > 0 && offset + count <= size;
    };
    if (!inside(offX, width, _width) || !inside(offY, height, _height) || !inside(offZ, depth, _depth)) {
        SWARNING << "Image::subImage: the box does not lie inside the image" << std::endl;
        return false;
    }
    ImageForm result = form();
    result.width = width;
    result.height = height;
    result.depth = depth;
    result.mipmaps = 1;
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    UInt8* to = pixels.data();
    for (Int32 frame = 0; frame < _frameCount; ++frame) {
        for (Int32 side = 0; side < _sideCount; ++side, to += result.sideSize())
            copyBox(to, getData(0, static_cast<UInt32>(frame), static_cast<UInt32>(side)), _width, _height,
                    {offX, offY, offZ, width, height, depth}, _bpp);
    }
    return replacePixels(destination, result, std::move(pixels));
}

bool Image::slice(Int32 offX, Int32 offY, Int32 offZ, ImagePtr destination)
{
    if ((offX >= 0) + (offY >= 0) + (offZ >= 0) != 1) {
        SWARNING << "Image::slice: needs one coordinate" << std::endl;
        return false;
    }
    if (offZ >= 0)
        return subImage(0, 0, offZ, _width, _height, 1, destination);

    const ImageRefPtr plane = Image::create();
    const bool inside = offX >= 0 ? subImage(offX, 0, 0, 1, _height, _depth, plane)
                                  : subImage(0, offY, 0, _width, 1, _depth, plane);
    if (!inside)
        return false;
    // The plane lies in memory with z as the slowest edge: rows already for y, columns still for x.
    ImageForm result = plane->form();
    std::vector<UInt8> pixels(plane->_pixel);
    result.width = offX >= 0 ? plane->_depth : plane->_width;
    result.height = offX >= 0 ? plane->_height : plane->_depth;
    result.depth = 1;
    if (offX >= 0) {
        const auto bpp = static_cast<std::size_t>(_bpp);
        const std::size_t w = static_cast<std::size_t>(result.width);
        const std::size_t h = static_cast<std::size_t>(result.height);
        for (std::size_t first = 0; first < pixels.size(); first += w * h * bpp) {
            for (std::size_t i = 0; i < w * h; ++i)
                std::memcpy(&pixels[first + (i % h * w + i / h) * bpp], &plane->_pixel[first + i * bpp], bpp);
        }
    }
    return replacePixels(destination, result, std::move(pixels));
}

bool Image::createMipmap(Int32 level, ImagePtr destination)
{
    if (!isEditable("createMipmap"))
        return false;
    ImageForm result = form();
    const auto all = static_cast<Int32>(calcMipmapLevelCount());
    result.mipmaps = level < 0 ? all : std::min(std::max(level, 1), all);
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    const std::size_t components = findPixelFormat(_pixelFormat)->components();
    const auto size = static_cast<std::size_t>(_componentSize);
    const auto bpp = static_cast<std::size_t>(_bpp);
    UInt8* to = pixels.data();
    for (Int32 frame = 0; frame < _frameCount; ++frame) {
        for (Int32 side = 0; side < _sideCount; ++side) {
            const UInt8* from = to;
            std::memcpy(to, getData(0, static_cast<UInt32>(frame), static_cast<UInt32>(side)),
                        result.levelSize(0));
            to += result.levelSize(0);
            for (UInt32 number = 1; number < static_cast<UInt32>(result.mipmaps); ++number) {
                UInt32 fromW, fromH, fromD, w, h, d;
                calcMipmapGeometry(number - 1, fromW, fromH, fromD);
                calcMipmapGeometry(number, w, h, d);
                const UInt8* const levelStart = to;
                for (std::size_t i = 0; i < std::size_t(w) * h * d; ++i, to += bpp) {
                    const std::size_t x = i % w * 2, y = i / w % h * 2, z = i / w / h * 2;
                    for (std::size_t c = 0; c < components; ++c) {
                        Real64 sum = 0;
                        for (std::size_t corner = 0; corner < 8; ++corner) {
                            const std::size_t cx = std::min<std::size_t>(x + (corner & 1), fromW - 1);
                            const std::size_t cy = std::min<std::size_t>(y + (corner >> 1 & 1), fromH - 1);
                            const std::size_t cz = std::min<std::size_t>(z + (corner >> 2), fromD - 1);
                            const std::size_t index = (cz * fromH + cy) * fromW + cx;
                            sum += loadSample(from + index * bpp + c * size, _dataType);
                        }
                        storeSample(to + c * size, _dataType, sum / 8);
                    }
                }
                from = levelStart;
            }
        }
    }
    return replacePixels(destination, result, std::move(pixels));
}

bool Image::removeMipmap()
{
    if (_mipMapCount == 1)
        return isValid();
    return subImage(0, 0, 0, _width, _height, _depth);
}

bool Image::swapDataEndian()
{
    if (!isEditable("swapDataEndian"))
        return false;
    for (auto at = _pixel.begin(); at != _pixel.end(); at += _componentSize)
        std::reverse(at, at + _componentSize);
    return true;
}

bool Image::flipDepthFrameData()
{
    if (!isEditable("flipDepthFrameData"))
        return false;
    if (_mipMapCount > 1) {
        SWARNING << "Image::flipDepthFrameData: not possible with mipmap levels" << std::endl;
        return false;
    }
    ImageForm result = form();
    std::swap(result.depth, result.frames);
    std::vector<UInt8> pixels;
    if (!allocate(pixels, result.size()))
        return false;
    const auto sliceSize = static_cast<std::size_t>(_sideSize / _depth);
    const auto depth = static_cast<std::size_t>(_depth), frames = static_cast<std::size_t>(_frameCount);
    const auto sides = static_cast<std::size_t>(_sideCount);
    for (std::size_t frame = 0; frame < frames; ++frame) {
        for (std::size_t side = 0; side < sides; ++side) {
            for (std::size_t slice = 0; slice < depth; ++slice) {
                const std::size_t from = (frame * sides + side) * depth + slice;
                const std::size_t to = (slice * sides + side) * frames + frame;
                std::memcpy(&pixels[to * sliceSize], &_pixel[from * sliceSize], sliceSize);
            }
        }
    }
    return replacePixels(NullFC, result, std::move(pixels));
}

} // namespace osg
