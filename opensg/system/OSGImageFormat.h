#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <vector>

namespace osg {

/// What is fixed for a pixel format.
struct PixelFormatInfo
{
    UInt32 format;
    /// One letter per component in the order of memory: R G B A, L luminance, I intensity.
    const char* channels;
    bool hasAlpha;
    bool hasColor;
    /// Bytes of a compressed block of 4 x 4 pixels; 0 for formats that are not compressed.
    UInt32 blockSize;

    UInt32 components() const;
};

/// The record of a format; null for an unknown one.
const PixelFormatInfo* findPixelFormat(UInt32 format);
/// Bytes of one component of a data type; 0 for an unknown one.
Int32 componentSizeOf(Int32 dataType);

/// Everything that the number of bytes of an image depends on.
struct ImageForm
{
    UInt32 format = 0;
    Int32 dataType = 0;
    Int32 width = 1;
    Int32 height = 1;
    Int32 depth = 1;
    Int32 mipmaps = 1;
    Int32 frames = 1;
    Int32 sides = 1;

    /// Bytes of one level. Sums and products that no 64 bits hold answer the largest number.
    UInt64 levelSize(UInt32 level) const;
    /// Bytes of the first `count` levels of one side of one frame.
    UInt64 levelsSize(UInt32 count) const;
    /// Bytes of one side of one frame.
    UInt64 sideSize() const { return levelsSize(static_cast<UInt32>(mipmaps)); }
    /// Bytes of everything.
    UInt64 size() const;
};

/// An edge of a level: halved per level and never below 1.
UInt32 mipmapEdge(Int32 edge, UInt32 level);

/// Product of two sizes; the largest number where 64 bits do not hold it.
UInt64 saturatedProduct(UInt64 a, UInt64 b);

/// Gives `bytes` the wanted size, all zero. False with a warning where that is more than an image may have or
/// than the machine gives.
bool allocate(std::vector<UInt8>& bytes, UInt64 size);

} // namespace osg
