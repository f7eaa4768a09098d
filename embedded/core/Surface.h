#pragma once

#include "core/SurfaceShading.h"
#include "core/SurfaceTexture.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGStateChunk.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Orvane {

/// The colours of one side of a surface.
struct ORVANE_API SurfaceColors
{
    osg::Color3f ambient;
    osg::Color3f diffuse{1.0F, 1.0F, 1.0F}; ///< an unlit surface shows it as it is
    osg::Color3f specular;
    osg::Color3f emission;
    float shininess = 0.0F; ///< exponent, 0 to 128
    float alpha = 1.0F;

    bool hasColorsOf(const SurfaceColors& other) const;
};

/// How points are drawn, in pixels.
struct ORVANE_API PointLook
{
    float size = 1.0F;
    float minSize = 0.0F; ///< of what is left of the size in the distance
    float maxSize = -1.0F;
    osg::Vec3f attenuation{1.0F, 0.0F, 0.0F}; ///< see `osg::PointChunk`

    bool operator==(const PointLook& other) const;
};

/// How a shape looks: what its appearance, and the kind of its geometry, come to. Shapes whose surfaces are
/// equal share the state that OpenGL gets.
struct ORVANE_API Surface : SurfaceColors
{
    /// What the geometry consists of. Lines and points take no light.
    enum Kind : std::uint8_t { FACES, LINES, POINTS };
    /// Where colours of vertices come in.
    enum VertexColors : std::uint8_t {
        NO_COLORS,      ///< the geometry has none, or they do not count
        DIFFUSE_COLORS, ///< in place of the diffuse colour, or of the colour of an unlit surface
    };
    /// What alpha does.
    enum AlphaMode : std::uint8_t {
        AUTO_ALPHA,   ///< shades of it let shine through what is behind
        NO_ALPHA,     ///< nothing
        MASKED_ALPHA, ///< below `alphaCutoff` nothing is drawn, else all
        BLENDED_ALPHA ///< it lets shine through in any case
    };

    Kind kind = FACES;
    VertexColors vertexColors = NO_COLORS;
    bool lit = false;
    bool solid = true;                 ///< the inside is not seen
    std::optional<SurfaceColors> back; ///< of the inside, where it looks otherwise
    AlphaMode alphaMode = AUTO_ALPHA;
    float alphaCutoff = 0.5F;

    bool filled = true;                 ///< else faces are not drawn
    std::uint8_t hatchStyle = 0;        ///< of ISO 9592, of which the faces are drawn alone; 0 for none
    float lineWidth = 1.0F;             ///< in pixels
    std::uint16_t linePattern = 0xFFFF; ///< see `osg::LineChunk`
    std::optional<PointLook> pointLook;

    std::vector<SurfaceTexture> textures; ///< by texture unit

    /// Draws in place of the fixed steps where programs can be used.
    std::optional<SurfaceShading> shading;

    /// Targets of those who leave the shape out; not part of how it looks.
    std::uint32_t unseenBy = 0;

    osg::RefPtr<osg::StateChunkPtr> program; ///< draws in place of the fixed steps; null when there is none

    bool operator==(const Surface& other) const;
    std::size_t hash() const;
};

/// A part of the state that OpenGL gets.
using SurfaceChunk = osg::RefPtr<osg::StateChunkPtr>;

/// A surface as OpenSG draws it.
struct SurfaceCore
{
    osg::RefPtr<osg::NodeCorePtr> core; ///< of a node whose children look so
    // What other surfaces share.
    std::vector<std::shared_ptr<SurfaceChunk>> textures;
    std::shared_ptr<SurfaceChunk> polygon;
    std::vector<std::shared_ptr<SurfaceChunk>> programParts;
};

/// A texture as OpenSG puts it on, the same for equal ones as long as somebody holds it.
ORVANE_API std::shared_ptr<SurfaceChunk> surfaceTexture(const SurfaceTexture& texture);

/// The core for a surface, the same for equal ones as long as somebody holds it.
ORVANE_API std::shared_ptr<SurfaceCore> surfaceCore(const Surface& surface);

/// Number of different surfaces in use.
ORVANE_API std::size_t surfaceCount();

} // namespace Orvane
