#include "core/SurfaceShading.h"
#include <functional>
#include <tuple>

namespace Orvane {

namespace {

// Exactly: colours have a tolerant comparison of their own.
std::tuple<float, float, float> numbersOf(const osg::Color3f& color)
{
    return {color.red(), color.green(), color.blue()};
}

} // namespace

bool SurfaceShading::Side::operator==(const Side& other) const
{
    return numbersOf(base) == numbersOf(other.base) && numbersOf(emission) == numbersOf(other.emission) &&
           metallic == other.metallic && roughness == other.roughness && normalScale == other.normalScale &&
           occlusionStrength == other.occlusionStrength;
}

bool SurfaceShading::operator==(const SurfaceShading& other) const
{
    return model == other.model && sides == other.sides && tintsAll == other.tintsAll &&
           textures == other.textures;
}

std::size_t SurfaceShading::hash() const
{
    std::size_t result = model;
    const auto mix = [&result](std::size_t value) { result = result * 31 + value; };
    for (osg::UInt32 i = 0; i < 3; ++i)
        mix(std::hash<float>()(sides[0].base[i]));
    mix(std::hash<float>()(sides[0].metallic));
    mix(std::hash<float>()(sides[0].roughness));
    for (const Texture& texture : textures) {
        mix(texture.role);
        mix(texture.texture.hash());
    }
    return result;
}

} // namespace Orvane
