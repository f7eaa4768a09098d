#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// Targa, to be read: greys, palettes and colours, packed or not; L, RGB, or RGBA where alpha is told.
class TGAImageFileType : public ImageFileType
{
public:
    TGAImageFileType();
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
