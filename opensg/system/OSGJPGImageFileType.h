#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// JPEG: luminance or RGB of 8 bits; the four inks of printing become RGB. Alpha is not written.
class JPGImageFileType : public ImageFileType
{
public:
    JPGImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
    bool encode(const ImagePtr& image, std::vector<UInt8>& file) const override;
};

} // namespace osg
