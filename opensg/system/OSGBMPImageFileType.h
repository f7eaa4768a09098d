#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// Windows bitmaps, to be read: all depths, with palettes, masks and packed rows; RGB, or RGBA where a mask
/// for alpha is given.
class BMPImageFileType : public ImageFileType
{
public:
    BMPImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
