#pragma once

#include "OSGImageFields.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace osg {

struct DecodedImage;

/// One file format of images: its names, and how its bytes become an image and back. The types stand in
/// ImageFileHandler, which owns them; they have no state and may be used from any thread.
class OSG_SYSTEMLIB_DLLMAPPING ImageFileType
{
public:
    enum Flags : UInt32 { OSG_READ_SUPPORTED = 1, OSG_WRITE_SUPPORTED = 2 };

    virtual ~ImageFileType();
    ImageFileType(const ImageFileType&) = delete;
    ImageFileType& operator=(const ImageFileType&) = delete;

    const Char8* getMimeType() const { return _mimeType.c_str(); }
    /// The file suffixes without a dot, in small letters; the first is the type's short name.
    const std::vector<std::string>& getSuffixList() const { return _suffixes; }
    /// Bits of Flags.
    UInt32 getFlags() const { return _flags; }

    /// Whether the first bytes of a file tell this type from others, so that `checkHeader` means something.
    virtual bool hasHeaderCheck() const;
    /// True when the bytes begin like a file of this type.
    virtual bool checkHeader(const UInt8* data, UInt64 size) const;

    /// Reads a whole file out of memory. False with a warning when it is damaged, incomplete or bigger than
    /// `isPlausibleSize` allows; the image is unchanged then.
    virtual bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const;
    /// Writes a whole file to `file`. False with a warning when the format cannot hold the image.
    virtual bool encode(const ImagePtr& image, std::vector<UInt8>& file) const;

    /// The same with a stream, which is read to its end.
    bool read(const ImagePtr& image, std::istream& in) const;
    bool write(const ImagePtr& image, std::ostream& out) const;

    /// Whether a file of `fileSize` bytes may claim `pixelSize` bytes of pixels: at most 64 MiB and 1100
    /// times its own size, and never more than 1 GiB. No harmless picture of these formats is packed tighter,
    /// and a small file cannot ask for all of the memory.
    static bool isPlausibleSize(UInt64 pixelSize, UInt64 fileSize);

protected:
    ImageFileType(const Char8* mimeType, std::vector<std::string> suffixes, UInt32 flags);

    /// Hands the result of `decode` to the image, which takes over the memory. False when that is null.
    static bool give(const ImagePtr& image, DecodedImage&& decoded);
    /// Logs "<type>: <text>" as a warning and answers false.
    bool fail(const std::string& text) const;

private:
    std::string _mimeType;
    std::vector<std::string> _suffixes;
    UInt32 _flags;
};

} // namespace osg
