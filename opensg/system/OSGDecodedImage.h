#pragma once

#include "OSGImageFormat.h"

#include <OpenSG/OSGImage.h>

namespace osg {

/// What a file type has read: complete pixels and all that describes them.
struct DecodedImage
{
    ImageForm form;
    std::vector<UInt8> pixels;
    /// Seconds.
    Time frameDelay = 0;
    /// Pixels per unit; files that tell none have the usual 72 per inch.
    Real32 resX = 72;
    Real32 resY = 72;
    UInt16 resUnit = Image::OSG_RESUNIT_INCH;
};

} // namespace osg
