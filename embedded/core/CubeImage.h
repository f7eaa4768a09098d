#pragma once

#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>
#include <array>

namespace Orvane {

/// Images on the sides of a cube, as they are seen from its middle: to the right, left, up, down, back and to
/// the front (towards -z). Upwards and downwards one looks from the front. Null ones are black.
using CubeSides = std::array<osg::RefPtr<osg::ImagePtr>, 6>;

/// One image of six sides, for cube maps: all sides get the size of the largest, within bounds. Null when
/// there is no memory for it.
ORVANE_API osg::ImagePtr cubeImage(const CubeSides& sides);

} // namespace Orvane
