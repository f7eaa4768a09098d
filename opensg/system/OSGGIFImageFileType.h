#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// GIF, to be read: each picture becomes a frame of the whole canvas, RGBA where pixels are left out, else
/// RGB. The delay is that of the first picture.
class GIFImageFileType : public ImageFileType
{
public:
    GIFImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
