#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// PNG: one to four components of 8 or 16 bits; palettes and thin greys are widened to 8 bits.
class PNGImageFileType : public ImageFileType
{
public:
    PNGImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
    bool encode(const ImagePtr& image, std::vector<UInt8>& file) const override;
};

} // namespace osg
