#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// Nearly raw raster data, to be read: planes and volumes of 1 to 4 components, L, LA, RGB or RGBA, as plain
/// bytes, compressed by gzip or as text, in one file with their header. Bytes stay as they are; other numbers
/// are stretched from the smallest to the largest to 16 bits.
class NRRDImageFileType : public ImageFileType
{
public:
    NRRDImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
