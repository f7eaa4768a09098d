#include "core/EnvironmentMap.h"
#include "core/UsableValues.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace Orvane {

namespace {

constexpr std::size_t Terms = 9;
constexpr float Pi = 3.14159265F;

/// Of the real spherical harmonics, in front of the terms that `osg::EnvironmentLight` names.
constexpr std::array<float, Terms> Factors = {0.282095F, 0.488603F, 0.488603F, 0.488603F, 1.092548F,
                                              1.092548F, 0.315392F, 1.092548F, 0.546274F};

std::array<float, Terms> termsOf(const osg::Vec3f& n)
{
    return {1.0F,
            n[1],
            n[2],
            n[0],
            n[0] * n[1],
            n[1] * n[2],
            3.0F * n[2] * n[2] - 1.0F,
            n[0] * n[2],
            n[0] * n[0] - n[1] * n[1]};
}

/// How much of a harmonic is left of it on faces, which take in half of all directions.
float shareOf(std::size_t term, EnvironmentMap kind)
{
    if (kind == EnvironmentMap::SCATTERED || term == 0)
        return Pi;
    return term < 4 ? 2.0F * Pi / 3.0F : Pi / 4.0F;
}

/// Where a place on a side of a cube lies, as OpenGL has them; u and v go from -1 to 1.
osg::Vec3f directionOf(osg::UInt32 side, float u, float v)
{
    switch (side) {
    case 0:
        return {1.0F, -v, -u};
    case 1:
        return {-1.0F, -v, u};
    case 2:
        return {u, 1.0F, v};
    case 3:
        return {u, -1.0F, -v};
    case 4:
        return {u, -v, 1.0F};
    default:
        return {-u, -v, -1.0F};
    }
}

/// A copy in plain colours, neither large nor coarse; null when it cannot be made.
osg::RefPtr<osg::ImagePtr> smallCopy(const osg::ImagePtr& cube)
{
    constexpr osg::Int32 LeastEdge = 16;
    constexpr osg::Int32 MostEdge = 32;
    const osg::Int32 edge = std::clamp(cube->getWidth(), LeastEdge, MostEdge);
    const osg::RefPtr<osg::ImagePtr> copy(osg::Image::create());
    if (!cube->isValid() || cube->getSideCount() != 6 || cube->hasCompressedData() ||
        !cube->subImage(0, 0, 0, cube->getWidth(), cube->getHeight(), 1, copy.get()) ||
        !copy->scale(edge, edge, 1) || !copy->reformat(osg::Image::OSG_RGB_PF) ||
        !copy->convertDataTypeTo(osg::Image::OSG_UINT8_IMAGEDATA))
        return {};
    return copy;
}

/// Light by what a screen shows.
std::array<float, 256> decodingTable()
{
    std::array<float, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = std::pow(static_cast<float>(i) / 255.0F, 2.2F);
    return table;
}

} // namespace

std::optional<osg::EnvironmentLight::Irradiance> irradianceOf(const osg::ImagePtr& cube, EnvironmentMap kind)
{
    static const std::array<float, 256> decoded = decodingTable();
    const osg::RefPtr<osg::ImagePtr> copy = cube ? smallCopy(cube) : osg::RefPtr<osg::ImagePtr>();
    if (!copy)
        return std::nullopt;
    const osg::Int32 edge = copy->getWidth();
    const float step = 2.0F / static_cast<float>(edge);
    osg::EnvironmentLight::Irradiance sums{};
    for (osg::UInt32 side = 0; side < 6; ++side) {
        const osg::UInt8* pixel = copy->getData(0, 0, side);
        for (osg::Int32 i = 0; i < edge * edge; ++i, pixel += 3) {
            osg::Vec3f direction = directionOf(side, (static_cast<float>(i % edge) + 0.5F) * step - 1.0F,
                                               (static_cast<float>(i / edge) + 0.5F) * step - 1.0F);
            const float length = direction.length();
            // The part of all directions that a pixel fills.
            const float weight = step * step / (length * length * length);
            const std::array<float, Terms> terms = termsOf(direction * (1.0F / length));
            for (std::size_t t = 0; t < Terms; ++t) {
                const float scale = weight * terms[t] * Factors[t] * Factors[t] * shareOf(t, kind);
                for (std::size_t c = 0; c < 3; ++c)
                    sums[3 * t + c] += scale * decoded[pixel[c]];
            }
        }
    }
    return sums;
}

std::optional<osg::EnvironmentLight::Irradiance> irradianceOf(const std::vector<float>& coefficients)
{
    osg::EnvironmentLight::Irradiance result{};
    if (coefficients.size() != result.size())
        return std::nullopt;
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = Factors[i / 3] * usableNumber(coefficients[i], 0.0F);
    return result;
}

} // namespace Orvane
