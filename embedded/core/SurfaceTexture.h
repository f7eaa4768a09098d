#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGTextureChunk.h>
#include <Orvane/Export.h>
#include <array>
#include <cstdint>
#include <optional>

namespace Orvane {

/// One of the textures of a surface: its image, where its coordinates come from, and how its colours join
/// those of the textures before it. Constants are those of `osg::TextureChunk`.
struct ORVANE_API SurfaceTexture
{
    /// Where coordinates come from.
    enum Coordinates : std::uint8_t {
        GIVEN,             ///< from the geometry
        CAMERA_SPHERE,     ///< the normal as the camera sees it, in a disc
        CAMERA_NORMAL,     ///< the same in space
        CAMERA_POSITION,   ///< the place as the camera sees it
        CAMERA_REFLECTION, ///< where the look of the camera is thrown back to
        REFLECTION_SPHERE, ///< the same, in a disc
        LOCAL_POSITION,    ///< the place in the system of the geometry
    };

    osg::RefPtr<osg::ImagePtr> image;
    std::array<osg::UInt32, 3> wrap{osg::TextureChunk::REPEAT, osg::TextureChunk::REPEAT,
                                    osg::TextureChunk::REPEAT};
    osg::UInt32 minFilter = osg::TextureChunk::LINEAR_MIPMAP_LINEAR;
    osg::UInt32 magFilter = osg::TextureChunk::LINEAR;
    float anisotropy = 1.0F;
    osg::Color4f borderColor;

    osg::UInt32 envMode = osg::TextureChunk::ENV_MODULATE;
    osg::TextureChunk::Combine combine; ///< counts with `ENV_COMBINE`
    osg::Color4f factor;                ///< the constant of `combine`

    unsigned int coordSet = 0; ///< which coordinates of the geometry
    Coordinates coordinates = GIVEN;
    std::optional<osg::Matrix> transform;

    /// The matrix that the coordinates go through, if any.
    std::optional<osg::Matrix> matrix() const;

    /// True for what surrounds the world and is found by directions that the camera sees: these are those of
    /// the world then.
    bool turnsWithCamera() const
    {
        return (coordinates == CAMERA_NORMAL || coordinates == CAMERA_REFLECTION) &&
               image->getSideCount() == 6;
    }

    /// True when \a other differs in nothing but its coordinates and their transform.
    bool hasStateOf(const SurfaceTexture& other) const;
    bool operator==(const SurfaceTexture& other) const;
    std::size_t hash() const;
};

} // namespace Orvane
