#include "core/Surface.h"
#include <tuple>

namespace Orvane {

namespace {

// Exactly: colours have a tolerant comparison of their own.
bool isSame(const osg::Color3f& a, const osg::Color3f& b)
{
    return a.red() == b.red() && a.green() == b.green() && a.blue() == b.blue();
}

} // namespace

bool SurfaceColors::hasColorsOf(const SurfaceColors& other) const
{
    return isSame(ambient, other.ambient) && isSame(diffuse, other.diffuse) &&
           isSame(specular, other.specular) && isSame(emission, other.emission) &&
           shininess == other.shininess && alpha == other.alpha;
}

bool PointLook::operator==(const PointLook& other) const
{
    const auto values = [](const PointLook& look) {
        return std::make_tuple(look.size, look.minSize, look.maxSize, look.attenuation[0],
                               look.attenuation[1], look.attenuation[2]);
    };
    return values(*this) == values(other);
}

bool Surface::operator==(const Surface& other) const
{
    const auto values = [](const Surface& s) {
        return std::make_tuple(s.kind, s.vertexColors, s.lit, s.solid, s.alphaMode, s.alphaCutoff, s.filled,
                               s.hatchStyle, s.lineWidth, s.linePattern);
    };
    return values(*this) == values(other) && hasColorsOf(other) &&
           back.has_value() == other.back.has_value() && (!back || back->hasColorsOf(*other.back)) &&
           pointLook == other.pointLook && textures == other.textures && shading == other.shading &&
           program == other.program;
}

std::size_t Surface::hash() const
{
    std::size_t result = 0;
    const auto mix = [&result](std::size_t value) {
        result ^= value + 0x9e3779b97f4a7c15ULL + (result << 6) + (result >> 2);
    };
    for (const osg::Color3f* color : {&ambient, &diffuse, &specular, &emission}) {
        for (osg::UInt32 i = 0; i < 3; ++i)
            mix(std::hash<float>()((*color)[i]));
    }
    mix(std::hash<float>()(shininess));
    mix(std::hash<float>()(alpha));
    for (const SurfaceTexture& texture : textures)
        mix(texture.hash());
    mix(static_cast<std::size_t>(kind) * 64 + vertexColors * 16U + (lit ? 8 : 0) + (solid ? 4 : 0) +
        alphaMode);
    if (shading)
        mix(shading->hash());
    mix(std::hash<const void*>()(program.get().getCPtr()));
    mix(linePattern + (filled ? 0x10000U : 0U) + hatchStyle * 0x20000U);
    return result;
}

} // namespace Orvane
