#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// The portable maps of bits, greys and colours, as text or as bytes: L or RGB of 8 or 16 bits. Alpha is not
/// written.
class PNMImageFileType : public ImageFileType
{
public:
    PNMImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
    bool encode(const ImagePtr& image, std::vector<UInt8>& file) const override;
};

} // namespace osg
