#pragma once

#include <OpenSG/OSGImageFileType.h>

namespace osg {

/// DirectDraw surfaces, to be read: flat images, volumes and the six sides of cubes, packed by DXT1, DXT3 or
/// DXT5 or with masks for their channels; L, LA, RGB or RGBA. Smaller levels are left out. Sides of cubes
/// stand as OpenGL wants them, the uppermost row first.
class DDSImageFileType : public ImageFileType
{
public:
    DDSImageFileType();
    bool decode(const ImagePtr& image, const UInt8* data, UInt64 size) const override;
};

} // namespace osg
