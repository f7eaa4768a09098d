#include <OpenSG/OSGImageFileHandler.h>

#include "OSGBMPImageFileType.h"
#include "OSGDDSImageFileType.h"
#include "OSGGIFImageFileType.h"
#include "OSGImageBytes.h"
#include "OSGImageFormat.h"
#include "OSGJPGImageFileType.h"
#include "OSGMTDImageFileType.h"
#include "OSGNRRDImageFileType.h"
#include "OSGPNGImageFileType.h"
#include "OSGPNMImageFileType.h"
#include "OSGSGIImageFileType.h"
#include "OSGTGAImageFileType.h"
#include "OSGTIFImageFileType.h"

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGLog.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

namespace osg {

namespace {

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
    return text;
}

// What follows the last dot of the file's own name.
std::string suffixOf(const std::string& fileName)
{
    const std::size_t dot = fileName.rfind('.');
    const std::size_t slash = fileName.rfind('/');
    if (dot == std::string::npos || (slash != std::string::npos && slash > dot))
        return std::string();
    return fileName.substr(dot + 1);
}

} // namespace

ImageFileHandler& ImageFileHandler::the()
{
    static ImageFileHandler handler;
    return handler;
}

ImageFileHandler::ImageFileHandler()
{
    _types.push_back(std::make_unique<MTDImageFileType>());
    _types.push_back(std::make_unique<PNGImageFileType>());
    _types.push_back(std::make_unique<JPGImageFileType>());
    _types.push_back(std::make_unique<TIFImageFileType>());
    _types.push_back(std::make_unique<GIFImageFileType>());
    _types.push_back(std::make_unique<PNMImageFileType>());
    _types.push_back(std::make_unique<SGIImageFileType>());
    _types.push_back(std::make_unique<TGAImageFileType>());
    _types.push_back(std::make_unique<BMPImageFileType>());
    _types.push_back(std::make_unique<DDSImageFileType>());
    _types.push_back(std::make_unique<NRRDImageFileType>());
}

ImageFileHandler::~ImageFileHandler() = default;

const ImageFileType* ImageFileHandler::findBySuffix(const std::string& suffix) const
{
    const std::string wanted = lowered(suffix);
    for (const auto& type : _types) {
        for (const std::string& known : type->getSuffixList()) {
            if (lowered(known) == wanted)
                return type.get();
        }
    }
    return nullptr;
}

const ImageFileType* ImageFileHandler::findByHeader(const UInt8* data, UInt64 size) const
{
    for (const auto& type : _types) {
        if (type->hasHeaderCheck() && type->checkHeader(data, size))
            return type.get();
    }
    return nullptr;
}

const ImageFileType* ImageFileHandler::getFileType(const Char8* mimeType, const Char8* fileName) const
{
    if (mimeType && *mimeType) {
        const std::string wanted = lowered(mimeType);
        for (const auto& type : _types) {
            if (wanted == type->getMimeType())
                return type.get();
        }
    }
    return fileName ? findBySuffix(suffixOf(fileName)) : nullptr;
}

int ImageFileHandler::getSuffixList(std::list<const Char8*>& suffixes, UInt32 flags) const
{
    int count = 0;
    for (const auto& type : _types) {
        if (!(type->getFlags() & flags))
            continue;
        for (const std::string& suffix : type->getSuffixList()) {
            suffixes.push_back(suffix.c_str());
            ++count;
        }
    }
    return count;
}

bool ImageFileHandler::decodeAs(const ImageFileType* type, const std::string& origin, ImagePtr& image,
                                const UInt8* data, UInt64 size) const
{
    if (!type || (type->hasHeaderCheck() && !type->checkHeader(data, size)))
        type = findByHeader(data, size);
    if (!type) {
        SWARNING << "ImageFileHandler: " << origin << " is no image of a known type" << std::endl;
        return false;
    }
    const ImagePtr target = image ? image : Image::create();
    bool done = false;
    try {
        done = type->decode(target, data, size);
    } catch (const std::bad_alloc&) {
    }
    if (!done) {
        SWARNING << "ImageFileHandler: " << origin << " cannot be read" << std::endl;
        if (!image)
            subRefCP(target);
        return false;
    }
    image = target;
    return true;
}

ImagePtr ImageFileHandler::read(const Char8* fileName, const Char8* mimeType)
{
    ImagePtr image;
    read(image, fileName, mimeType);
    return image;
}

bool ImageFileHandler::read(ImagePtr& image, const Char8* fileName, const Char8* mimeType)
{
    const std::string name = fileName ? fileName : "";
    const ImageFileType* type = getFileType(mimeType, name.c_str());
    if (!type) {
        SWARNING << "ImageFileHandler: no image type for the file name '" << name << "'" << std::endl;
        return false;
    }
    std::vector<UInt8> bytes;
    if (!readFileBytes(name, bytes)) {
        SWARNING << "ImageFileHandler: the file '" << name << "' cannot be read" << std::endl;
        return false;
    }
    if (!decodeAs(type, "the file '" + name + "'", image, bytes.data(), bytes.size()))
        return false;
    std::error_code error;
    const std::string path = std::filesystem::absolute(name, error).string();
    image->setName(path);
    image->setAttachmentField("fileName", name);
    image->setAttachmentField("fullFilePath", path);
    return true;
}

bool ImageFileHandler::write(const ImagePtr& image, const Char8* fileName, const Char8* mimeType)
{
    const std::string name = fileName ? fileName : "";
    const ImageFileType* type = getFileType(mimeType, name.c_str());
    if (!type) {
        SWARNING << "ImageFileHandler: no image type for the file name '" << name << "'" << std::endl;
        return false;
    }
    std::vector<UInt8> bytes;
    if (!type->encode(image, bytes))
        return false;
    std::ofstream out(name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out)
        SWARNING << "ImageFileHandler: the file '" << name << "' cannot be written" << std::endl;
    return !out.fail();
}

ImagePtr ImageFileHandler::read(std::istream& in, const std::string& mimeType)
{
    ImagePtr image;
    read(image, in, mimeType);
    return image;
}

bool ImageFileHandler::read(ImagePtr& image, std::istream& in, const std::string& mimeType)
{
    std::vector<UInt8> bytes;
    if (!readBytes(in, bytes)) {
        SWARNING << "ImageFileHandler: the stream cannot be read" << std::endl;
        return false;
    }
    return decodeAs(getFileType(mimeType.c_str()), "the stream", image, bytes.data(), bytes.size());
}

bool ImageFileHandler::write(const ImagePtr& image, std::ostream& out, const std::string& mimeType)
{
    const ImageFileType* type = getFileType(mimeType.c_str());
    if (!type)
        SWARNING << "ImageFileHandler: no image type '" << mimeType << "'" << std::endl;
    return type && type->write(image, out);
}

ImagePtr ImageFileHandler::decode(const UInt8* data, UInt64 size, const Char8* mimeType)
{
    ImagePtr image;
    decode(image, data, size, mimeType);
    return image;
}

bool ImageFileHandler::decode(ImagePtr& image, const UInt8* data, UInt64 size, const Char8* mimeType)
{
    return decodeAs(getFileType(mimeType), "the data", image, data, data ? size : 0);
}

UInt64 ImageFileHandler::store(const ImagePtr& image, const Char8* mimeType, UInt8* mem, Int32 memSize)
{
    const ImageFileType* type = getFileType(mimeType);
    std::vector<UInt8> payload;
    if (!type) {
        SWARNING << "ImageFileHandler: no image type '" << (mimeType ? mimeType : "") << "'" << std::endl;
        return 0;
    }
    if (!type->encode(image, payload))
        return 0;
    MTDHeader header;
    if (!header.describe(image))
        return 0;
    // The payload of the native type is the pixels alone, without the header of its files.
    const UInt64 skipped = type == findBySuffix("mtd") ? MTDHeader::Size : 0;
    const UInt64 total = MTDHeader::Size + payload.size() - skipped;
    if (!mem)
        return total;
    if (memSize >= 0 && total > static_cast<UInt64>(memSize)) {
        SWARNING << "ImageFileHandler::store: " << total << " bytes do not fit" << std::endl;
        return 0;
    }
    header.write(mem, type->getSuffixList().front().c_str());
    std::memcpy(mem + MTDHeader::Size, payload.data() + skipped, total - MTDHeader::Size);
    return total;
}

UInt64 ImageFileHandler::restore(ImagePtr& image, const UInt8* mem, Int32 memSize)
{
    constexpr UInt64 HeaderSize = MTDHeader::Size;
    if (!mem || (memSize >= 0 && static_cast<UInt64>(memSize) < HeaderSize)) {
        SWARNING << "ImageFileHandler::restore: no header" << std::endl;
        return 0;
    }
    const auto* suffixEnd = static_cast<const UInt8*>(std::memchr(mem, 0, MTDHeader::SuffixSize));
    const UInt64 suffixLength = suffixEnd ? static_cast<UInt64>(suffixEnd - mem) : MTDHeader::SuffixSize;
    const ImageFileType* type = findBySuffix(std::string(reinterpret_cast<const char*>(mem), suffixLength));
    if (!type) {
        SWARNING << "ImageFileHandler::restore: unknown type of pixels" << std::endl;
        return 0;
    }
    if (type == findBySuffix("mtd")) {
        MTDHeader header;
        header.read(mem);
        // A size that no image can have is left to the decoder to refuse.
        const UInt64 wanted = HeaderSize + std::min(header.form.size(), Image::MaxSize + 1);
        const UInt64 given = memSize < 0 ? wanted : static_cast<UInt64>(memSize);
        return decodeAs(type, "the stored image", image, mem, given) ? wanted : 0;
    }
    if (memSize < 0) {
        SWARNING << "ImageFileHandler::restore: the number of bytes is missing" << std::endl;
        return 0;
    }
    const auto size = static_cast<UInt64>(memSize);
    return decodeAs(type, "the stored image", image, mem + HeaderSize, size - HeaderSize) ? size : 0;
}

} // namespace osg
