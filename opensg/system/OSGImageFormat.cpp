#include "OSGImageFormat.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

namespace osg {

namespace {

constexpr UInt64 TooMuch = std::numeric_limits<UInt64>::max();

constexpr PixelFormatInfo pixelFormats[] = {
    {Image::OSG_A_PF, "A", true, false, 0},
    {Image::OSG_I_PF, "I", true, false, 0},
    {Image::OSG_L_PF, "L", false, false, 0},
    {Image::OSG_LA_PF, "LA", true, false, 0},
    {Image::OSG_RGB_PF, "RGB", false, true, 0},
    {Image::OSG_RGBA_PF, "RGBA", true, true, 0},
    {Image::OSG_BGR_PF, "BGR", false, true, 0},
    {Image::OSG_BGRA_PF, "BGRA", true, true, 0},
    {Image::OSG_RGB_DXT1, "RGB", false, true, 8},
    {Image::OSG_RGBA_DXT1, "RGBA", true, true, 8},
    {Image::OSG_RGBA_DXT3, "RGBA", true, true, 16},
    {Image::OSG_RGBA_DXT5, "RGBA", true, true, 16},
    {Image::OSG_ALPHA_INTEGER_PF, "A", true, false, 0},
    {Image::OSG_RGB_INTEGER_PF, "RGB", false, true, 0},
    {Image::OSG_RGBA_INTEGER_PF, "RGBA", true, true, 0},
    {Image::OSG_BGR_INTEGER_PF, "BGR", false, true, 0},
    {Image::OSG_BGRA_INTEGER_PF, "BGRA", true, true, 0},
    // Told to have colour, unlike plain luminance; programs choose their texture environment by it.
    {Image::OSG_LUMINANCE_INTEGER_PF, "L", false, true, 0},
    {Image::OSG_LUMINANCE_ALPHA_INTEGER_PF, "LA", true, false, 0},
};

UInt64 saturatedSum(UInt64 a, UInt64 b)
{
    return a > TooMuch - b ? TooMuch : a + b;
}

} // namespace

UInt32 PixelFormatInfo::components() const
{
    return static_cast<UInt32>(std::strlen(channels));
}

const PixelFormatInfo* findPixelFormat(UInt32 format)
{
    for (const PixelFormatInfo& info : pixelFormats) {
        if (info.format == format)
            return &info;
    }
    return nullptr;
}

Int32 componentSizeOf(Int32 dataType)
{
    switch (dataType) {
    case Image::OSG_UINT8_IMAGEDATA:
        return 1;
    case Image::OSG_INT16_IMAGEDATA:
    case Image::OSG_UINT16_IMAGEDATA:
    case Image::OSG_FLOAT16_IMAGEDATA:
        return 2;
    case Image::OSG_INT32_IMAGEDATA:
    case Image::OSG_UINT32_IMAGEDATA:
    case Image::OSG_FLOAT32_IMAGEDATA:
        return 4;
    default:
        return 0;
    }
}

UInt64 saturatedProduct(UInt64 a, UInt64 b)
{
    return b && a > TooMuch / b ? TooMuch : a * b;
}

UInt32 mipmapEdge(Int32 edge, UInt32 level)
{
    return level < 32 ? std::max(1u, static_cast<UInt32>(edge) >> level) : 1u;
}

UInt64 ImageForm::levelSize(UInt32 level) const
{
    const PixelFormatInfo* info = findPixelFormat(format);
    if (!info)
        return 0;
    UInt64 w = mipmapEdge(width, level);
    UInt64 h = mipmapEdge(height, level);
    UInt64 unit = info->components() * static_cast<UInt64>(componentSizeOf(dataType));
    if (info->blockSize) {
        w = (w + 3) / 4;
        h = (h + 3) / 4;
        unit = info->blockSize;
    }
    return saturatedProduct(saturatedProduct(w * h, mipmapEdge(depth, level)), unit);
}

UInt64 ImageForm::levelsSize(UInt32 count) const
{
    const UInt32 distinct = std::min(count, 32u);
    UInt64 sum = 0;
    for (UInt32 level = 0; level < distinct; ++level)
        sum = saturatedSum(sum, levelSize(level));
    // From level 32 on everything is one pixel.
    return saturatedSum(sum, saturatedProduct(levelSize(32), count - distinct));
}

UInt64 ImageForm::size() const
{
    return saturatedProduct(saturatedProduct(sideSize(), static_cast<UInt64>(sides)),
                            static_cast<UInt64>(frames));
}

bool allocate(std::vector<UInt8>& bytes, UInt64 size)
{
    if (size <= Image::MaxSize) {
        try {
            bytes.assign(size, 0);
            return true;
        } catch (const std::bad_alloc&) {
        }
    }
    SWARNING << "Image: no memory for " << size << " bytes of pixels" << std::endl;
    return false;
}

} // namespace osg
