#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// The pictures of SGI, to be read: one to four components of 8 or 16 bits.
class SGIImageFileType : public ImageFileType
{
public:
    SGIImageFileType();
    bool hasHeaderCheck() const override { return true; }
    bool checkHeader(const UInt8* data, UInt64 size) const override;
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
