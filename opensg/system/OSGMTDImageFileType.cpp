#include "OSGMTDImageFileType.h"

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>
#include <utility>

namespace osg {

bool MTDHeader::describe(const ImagePtr& image)
{
    form = {image->getPixelFormat(), image->getDataType(),    image->getWidth(),      image->getHeight(),
            image->getDepth(),       image->getMipMapCount(), image->getFrameCount(), image->getSideCount()};
    frameDelay = image->getFrameDelay();
    const Time milliseconds = std::round(frameDelay * 1000);
    const bool fits =
        std::max({form.width, form.height, form.depth, form.mipmaps, form.frames, form.sides}) <= 0xffff &&
        milliseconds >= 0 && milliseconds <= 0xffff;
    if (!fits)
        SWARNING << "Image file (mtd): a size, count or delay needs more than 16 bits" << std::endl;
    return fits;
}

void MTDHeader::read(const UInt8* bytes)
{
    // Older files have no count and no type: 0 stands for one, and for bytes.
    const auto count = [bytes](int offset) { return std::max<Int32>(bigEndian16(bytes + offset), 1); };
    form.format = bigEndian16(bytes + 8);
    form.width = count(10);
    form.height = count(12);
    form.depth = count(14);
    form.mipmaps = count(16);
    form.frames = count(18);
    frameDelay = bigEndian16(bytes + 20) / 1000.0;
    form.sides = count(22);
    const Int32 dataType = bigEndian16(bytes + 24);
    form.dataType = dataType ? dataType : static_cast<Int32>(Image::OSG_UINT8_IMAGEDATA);
}

void MTDHeader::write(UInt8* bytes, const Char8* suffix) const
{
    std::fill(bytes, bytes + Size, 0);
    std::memcpy(bytes, suffix, std::min<std::size_t>(std::strlen(suffix), SuffixSize - 1));
    UInt8* to = bytes + SuffixSize;
    for (const Int64 number :
         {Int64(form.format), Int64(form.width), Int64(form.height), Int64(form.depth), Int64(form.mipmaps),
          Int64(form.frames), Int64(std::lround(frameDelay * 1000)), Int64(form.sides), Int64(form.dataType)})
    {
        putBigEndian16(to, static_cast<UInt16>(number));
        to += 2;
    }
}

MTDImageFileType::MTDImageFileType()
    : ImageFileType("image/x-mtd", {"mtd", "opensg", "opensgImage"}, OSG_READ_SUPPORTED | OSG_WRITE_SUPPORTED)
{
}

bool MTDImageFileType::decode(const ImagePtr& image, const UInt8* data, UInt64 size) const
{
    if (size < MTDHeader::Size)
        return fail("the file ends within its header");
    MTDHeader header;
    header.read(data);
    if (!findPixelFormat(header.form.format) || !componentSizeOf(header.form.dataType))
        return fail("unknown pixel format or data type");
    const UInt64 pixelSize = header.form.size();
    if (pixelSize > size - MTDHeader::Size)
        return fail("the file ends within its pixels");
    DecodedImage decoded;
    decoded.form = header.form;
    decoded.frameDelay = header.frameDelay;
    if (!allocate(decoded.pixels, pixelSize))
        return false;
    std::memcpy(decoded.pixels.data(), data + MTDHeader::Size, pixelSize);
    return give(image, std::move(decoded));
}

bool MTDImageFileType::encode(const ImagePtr& image, std::vector<UInt8>& file) const
{
    MTDHeader header;
    if (!image || !image->isValid())
        return fail("there are no pixels to write");
    if (!header.describe(image))
        return false;
    if (!allocate(file, MTDHeader::Size + image->getSize()))
        return false;
    header.write(file.data(), "mtd");
    std::memcpy(file.data() + MTDHeader::Size, image->getData(), image->getSize());
    return true;
}

} // namespace osg
