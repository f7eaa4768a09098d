#pragma once

#include "OSGImageFormat.h"

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// The 32 bytes in front of the pixels in native files and stored images; all numbers have the high byte
/// first.
struct MTDHeader
{
    static constexpr UInt64 Size = 32;
    static constexpr UInt64 SuffixSize = 8;

    ImageForm form;
    /// Seconds, kept in whole milliseconds.
    Time frameDelay = 0;

    /// Takes the form of `image`; false with a warning when 16 bits do not hold a number.
    bool describe(const ImagePtr& image);
    void read(const UInt8* bytes);
    void write(UInt8* bytes, const Char8* suffix) const;
};

/// The native format: a header and the pixels as they lie in memory, in the writer's byte order.
class MTDImageFileType : public ImageFileType
{
public:
    MTDImageFileType();
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
    bool encode(const ImagePtr& image, std::vector<UInt8>& file) const override;
};

} // namespace osg
