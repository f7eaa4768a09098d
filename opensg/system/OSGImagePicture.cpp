#include "OSGImagePicture.h"

#include <OpenSG/OSGLog.h>

namespace osg {

bool pictureOf(const ImagePtr& image, Picture& picture)
{
    const PixelFormatInfo* info = image ? findPixelFormat(image->getPixelFormat()) : nullptr;
    if (!info || info->blockSize || !image->isValid()) {
        SWARNING << "Image file: there are no uncompressed pixels to write" << std::endl;
        return false;
    }
    picture.pixels = image->getData();
    picture.width = static_cast<UInt32>(image->getWidth());
    picture.height = static_cast<UInt32>(image->getHeight());
    picture.components = info->components();
    picture.componentSize = static_cast<UInt32>(image->getComponentSize());
    picture.dataType = image->getDataType();
    picture.isBgr = info->channels[0] == 'B';
    picture.rowSize = std::size_t(picture.width) * picture.components * picture.componentSize;
    if (picture.rowSize * picture.height < image->getSize())
        SWARNING << "Image file: only the first picture of the image is written" << std::endl;
    return true;
}

std::vector<UInt8*> rowsFromTop(std::vector<UInt8>& pixels, UInt32 height)
{
    const std::size_t rowSize = pixels.size() / height;
    std::vector<UInt8*> rows(height);
    for (std::size_t y = 0; y < height; ++y)
        rows[y] = pixels.data() + (height - 1 - y) * rowSize;
    return rows;
}

UInt32 formatForComponents(UInt32 components)
{
    switch (components) {
    case 1:
        return Image::OSG_L_PF;
    case 2:
        return Image::OSG_LA_PF;
    case 3:
        return Image::OSG_RGB_PF;
    case 4:
        return Image::OSG_RGBA_PF;
    default:
        return Image::OSG_INVALID_PF;
    }
}

} // namespace osg
