#include "core/CubeImage.h"
#include <algorithm>
#include <cstring>

namespace Orvane {

namespace {

constexpr osg::Int32 MaxEdge = 2048;
constexpr std::size_t Up = 2;
constexpr std::size_t Down = 3;

/// The image in the form of the cube's sides; null when it cannot be brought into it.
osg::RefPtr<osg::ImagePtr> inForm(const osg::ImagePtr& image, osg::Image::PixelFormat format, osg::Int32 edge)
{
    const osg::RefPtr<osg::ImagePtr> result(osg::Image::create());
    if (!image->isValid() || image->hasCompressedData() || !image->reformat(format, result.get()) ||
        !result->convertDataTypeTo(osg::Image::OSG_UINT8_IMAGEDATA))
        return {};
    // One slice of one frame.
    if (!result->subImage(0, 0, 0, result->getWidth(), result->getHeight(), 1) ||
        !result->scale(edge, edge, 1))
        return {};
    return result;
}

} // namespace

osg::ImagePtr cubeImage(const CubeSides& sides)
{
    osg::Int32 edge = 1;
    bool hasAlpha = false;
    for (const auto& side : sides) {
        if (!side.get())
            continue;
        edge = std::max({edge, side->getWidth(), side->getHeight()});
        hasAlpha |= side->hasAlphaChannel();
    }
    edge = std::min(edge, MaxEdge);
    const osg::Image::PixelFormat format = hasAlpha ? osg::Image::OSG_RGBA_PF : osg::Image::OSG_RGB_PF;
    const std::size_t pixelSize = hasAlpha ? 4 : 3;
    const osg::ImagePtr cube = osg::Image::create();
    if (!cube->set(format, edge, edge, 1, 1, 1, 0.0, nullptr, osg::Image::OSG_UINT8_IMAGEDATA, true, 6))
        return osg::NullFC;
    const std::size_t count = static_cast<std::size_t>(edge) * static_cast<std::size_t>(edge);
    for (std::size_t s = 0; s < sides.size(); ++s) {
        const osg::RefPtr<osg::ImagePtr> side =
            sides[s].get() ? inForm(sides[s].get(), format, edge) : osg::RefPtr<osg::ImagePtr>();
        if (!side.get())
            continue;
        osg::UInt8* const target = cube->getData(0, 0, static_cast<osg::UInt32>(s));
        const osg::UInt8* const source = side->getData();
        // OpenGL looks at the sides from outside, with all but the upper and the lower one on their heads.
        if (s == Up || s == Down) {
            std::memcpy(target, source, count * pixelSize);
            continue;
        }
        for (std::size_t i = 0; i < count; ++i)
            std::memcpy(target + i * pixelSize, source + (count - 1 - i) * pixelSize, pixelSize);
    }
    return cube;
}

} // namespace Orvane
