#include <OpenSG/OSGImageFileType.h>

#include "OSGDecodedImage.h"
#include "OSGImageBytes.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>

#include <ostream>
#include <utility>

namespace osg {

ImageFileType::ImageFileType(const Char8* mimeType, std::vector<std::string> suffixes, UInt32 flags)
    : _mimeType(mimeType)
    , _suffixes(std::move(suffixes))
    , _flags(flags)
{
}

ImageFileType::~ImageFileType() = default;

bool ImageFileType::hasHeaderCheck() const
{
    return false;
}

bool ImageFileType::checkHeader(const UInt8*, UInt64) const
{
    return true;
}

bool ImageFileType::decode(const ImagePtr&, const UInt8*, UInt64) const
{
    return fail("files of this type cannot be read");
}

bool ImageFileType::encode(const ImagePtr&, std::vector<UInt8>&) const
{
    return fail("files of this type cannot be written");
}

bool ImageFileType::read(const ImagePtr& image, std::istream& in) const
{
    std::vector<UInt8> bytes;
    return readBytes(in, bytes) ? decode(image, bytes.data(), bytes.size())
                                : fail("the stream cannot be read");
}

bool ImageFileType::write(const ImagePtr& image, std::ostream& out) const
{
    std::vector<UInt8> bytes;
    if (!encode(image, bytes))
        return false;
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return out.flush() ? true : fail("the stream cannot be written");
}

bool ImageFileType::isPlausibleSize(UInt64 pixelSize, UInt64 fileSize)
{
    constexpr UInt64 Limit = UInt64(1) << 30;
    if (pixelSize > Limit)
        return false;
    return fileSize >= Limit || pixelSize <= (UInt64(64) << 20) + 1100 * fileSize;
}

bool ImageFileType::give(const ImagePtr& image, DecodedImage&& decoded)
{
    if (!image)
        return false;
    image->setResX(decoded.resX);
    image->setResY(decoded.resY);
    image->setResUnit(decoded.resUnit);
    return image->adopt(decoded.form, decoded.frameDelay, std::move(decoded.pixels));
}

bool ImageFileType::fail(const std::string& text) const
{
    SWARNING << "Image file (" << _suffixes.front() << "): " << text << std::endl;
    return false;
}

} // namespace osg
