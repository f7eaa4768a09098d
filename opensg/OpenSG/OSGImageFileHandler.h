#pragma once

#include "OSGImageFileType.h"

#include <iosfwd>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace osg {

/// Reads and writes images in all formats that are known. The type of a file is told by a MIME type or else
/// by its suffix (any case); where its first bytes belong to another type, that one is taken. Failures log a
/// warning and leave the image as it was.
class OSG_SYSTEMLIB_DLLMAPPING ImageFileHandler
{
public:
    /// The only one; it lives until the process ends.
    static ImageFileHandler& the();

    /// A new image with the file's content, no reference held; NullFC on failure.
    ImagePtr read(const Char8* fileName, const Char8* mimeType = nullptr);
    /// Reads into `image`, made anew when it is null. The name of the image becomes the file's absolute path,
    /// and its attachments `fileName` and `fullFilePath` are set.
    bool read(ImagePtr& image, const Char8* fileName, const Char8* mimeType = nullptr);
    bool write(const ImagePtr& image, const Char8* fileName, const Char8* mimeType = nullptr);

    /// The same with streams; a stream is read to its end.
    ImagePtr read(std::istream& in, const std::string& mimeType);
    bool read(ImagePtr& image, std::istream& in, const std::string& mimeType);
    bool write(const ImagePtr& image, std::ostream& out, const std::string& mimeType);

    /// The same with a whole file in memory. Without a MIME type, or with an unknown one, the type is found
    /// by the first bytes.
    ImagePtr decode(const UInt8* data, UInt64 size, const Char8* mimeType = nullptr);
    bool decode(ImagePtr& image, const UInt8* data, UInt64 size, const Char8* mimeType = nullptr);

    /// See Image::store and Image::restore.
    UInt64 store(const ImagePtr& image, const Char8* mimeType, UInt8* mem, Int32 memSize = -1);
    UInt64 restore(ImagePtr& image, const UInt8* mem, Int32 memSize = -1);

    /// The type for a MIME type or else for the suffix of a file name; either may be null. Null when unknown.
    const ImageFileType* getFileType(const Char8* mimeType, const Char8* fileName = nullptr) const;
    /// Appends the suffixes of all types that can do one of `flags` (ImageFileType::Flags); their number.
    int getSuffixList(std::list<const Char8*>& suffixes, UInt32 flags = 1 | 2) const;

private:
    ImageFileHandler();
    ~ImageFileHandler();

    const ImageFileType* findBySuffix(const std::string& suffix) const;
    const ImageFileType* findByHeader(const UInt8* data, UInt64 size) const;
    bool decodeAs(const ImageFileType* type, const std::string& origin, ImagePtr& image, const UInt8* data,
                  UInt64 size) const;

    std::vector<std::unique_ptr<ImageFileType>> _types;
};

} // namespace osg
