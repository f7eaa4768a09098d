#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// TIFF: one to four components of every data type as they stand; what is stored otherwise (palettes, tiles,
/// inks) comes as RGB or RGBA of 8 bits. The first page alone is read.
class TIFImageFileType : public ImageFileType
{
public:
    TIFImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
    bool encode(const ImagePtr& image, std::vector<UInt8>& file) const override;
};

} // namespace osg
