#pragma once

#include "core/SurfaceShading.h"
#include <OpenSG/OSGSHLProgram.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvane {

/// What the text of a program for surfaces depends on. Values, which stand in uniforms, are no part of it.
struct ORVANE_API ShadingPlan
{
    /// The kinds of images that samplers know.
    enum Sampler : std::uint8_t { FLAT, CUBE, SPACE };

    struct Texture
    {
        SurfaceShading::Role role = SurfaceShading::COLOR;
        SurfaceTexture::Coordinates coordinates = SurfaceTexture::GIVEN;
        unsigned int unit = 0; ///< whose coordinates of the geometry it takes
        Sampler sampler = FLAT;
        bool hasTransform = false;
        SurfaceShading::Sides sides = SurfaceShading::BOTH_SIDES;
    };

    SurfaceShading::Model model = SurfaceShading::PHONG;
    bool hasVertexColors = false; ///< in place of the diffuse or base colour
    bool tintsAll = false;        ///< the colour texture takes part in all light but highlights, as in OpenGL
    std::vector<Texture> textures;
};

/// Names of the uniforms of such a program, beside those that `osg::Surroundings` tells of.
namespace ShadingNames {
ORVANE_API std::string map(std::size_t texture);       ///< the sampler of a texture of the plan
ORVANE_API std::string transform(std::size_t texture); ///< the matrix of its coordinates
ORVANE_API extern const char* const baseColors;        ///< two colours with alpha, front and back
ORVANE_API extern const char* const emissions;         ///< two colours
ORVANE_API extern const char* const metalRoughness;    ///< two pairs
ORVANE_API extern const char* const normalScale;       ///< two numbers
ORVANE_API extern const char* const occlusionStrength; ///< two numbers
} // namespace ShadingNames

/// What programs share that compute light at an `eyePlace`, in GLSL 1.20: `unit`, `reach` and `inFog`.
ORVANE_API const char* shadingLights();
/// The lines of a function that gather the light of all sources in `sum` and `highlights`, from `normal`,
/// `look`, `diffuse`, `ambient`, `specular`, `emission` and `shininess`.
ORVANE_API const char* phongSum();

/// The texts of a program, in GLSL 1.20, that computes the light of each pixel.
ORVANE_API std::vector<osg::SHLProgram::Source> shadingText(const ShadingPlan& plan);

} // namespace Orvane
