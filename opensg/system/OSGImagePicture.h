#pragma once

#include "OSGImageFormat.h"

#include <OpenSG/OSGImage.h>

namespace osg {

/// The one picture of an image that files of a single picture hold: level 0 of the first slice, side and
/// frame. It points into the image, which must outlive it.
struct Picture
{
    const UInt8* pixels = nullptr;
    UInt32 width = 0;
    UInt32 height = 0;
    UInt32 components = 0;
    /// Bytes of a component.
    UInt32 componentSize = 0;
    Int32 dataType = 0;
    /// Blue comes first.
    bool isBgr = false;
    std::size_t rowSize = 0;

    /// Row `y` from the top, while the image counts from the bottom.
    const UInt8* rowFromTop(UInt32 y) const { return pixels + (height - 1 - y) * rowSize; }
};

/// Fills `picture` from `image`. False where there are no pixels or they are compressed. What lies beyond the
/// one picture is told in a warning.
bool pictureOf(const ImagePtr& image, Picture& picture);

/// The rows of a picture that is being read, the uppermost first, as libraries ask for them.
std::vector<UInt8*> rowsFromTop(std::vector<UInt8>& pixels, UInt32 height);

/// The plain format for a number of components of 1 to 4: L, LA, RGB, RGBA.
UInt32 formatForComponents(UInt32 components);

} // namespace osg
