#pragma once

#include "core/SurfaceTexture.h"
#include <OpenSG/OSGColor.h>
#include <Orvane/Export.h>
#include <array>
#include <cstdint>
#include <vector>

namespace Orvane {

/// What a surface is drawn by where fixed steps do not do: light computed for each pixel, with textures that
/// change more than the colour. Fixed steps stand in for it where a window has no programs.
struct ORVANE_API SurfaceShading
{
    /// The equations of light.
    enum Model : std::uint8_t {
        PHONG,    ///< with the colours of the surface
        PHYSICAL, ///< with those of `sides`
    };
    /// What a texture takes part in.
    enum Role : std::uint8_t {
        COLOR, ///< diffuse or base colour, and alpha
        AMBIENT,
        SPECULAR,
        SHININESS,
        EMISSION,
        METALLIC_ROUGHNESS,
        OCCLUSION,
        NORMAL
    };

    /// Where a texture is seen.
    enum Sides : std::uint8_t { FRONT = 1, BACK = 2, BOTH_SIDES = FRONT | BACK };

    /// The values of one side of a surface. A surface under `PHONG` takes no base, metal
    /// and roughness.
    struct Side
    {
        osg::Color3f base;
        osg::Color3f emission;
        float metallic = 0.0F;
        float roughness = 1.0F;
        float normalScale = 1.0F;
        float occlusionStrength = 1.0F;

        bool operator==(const Side& other) const;
    };

    struct Texture
    {
        Role role = COLOR;
        SurfaceTexture texture;
        Sides sides = BOTH_SIDES;

        bool operator==(const Texture& other) const
        {
            return role == other.role && texture == other.texture && sides == other.sides;
        }
    };

    Model model = PHONG;
    std::array<Side, 2> sides; ///< front and back
    bool tintsAll = false;     ///< `COLOR` takes part in all light, for what shows its colours as they are
    std::vector<Texture> textures;

    bool operator==(const SurfaceShading& other) const;
    std::size_t hash() const;
};

} // namespace Orvane
