#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGImage.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNodeCore.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGStateChunk.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace Orvane {

/// How a shape looks: what its appearance, and the kind of its geometry, come to. Shapes whose surfaces are
/// equal share the state that OpenGL gets.
struct ORVANE_API Surface
{
    /// What the geometry consists of. Lines and points take no light.
    enum Kind : std::uint8_t { FACES, LINES, POINTS };
    /// Where colours of vertices come in.
    enum VertexColors : std::uint8_t {
        NO_COLORS,      ///< the geometry has none, or they do not count
        DIFFUSE_COLORS, ///< in place of the diffuse colour, or of the colour of an unlit surface
    };

    Kind kind = FACES;
    VertexColors vertexColors = NO_COLORS;
    bool lit = false;
    bool solid = true; ///< the inside is not seen
    osg::Color3f ambient;
    osg::Color3f diffuse{1.0F, 1.0F, 1.0F}; ///< an unlit surface shows it as it is
    osg::Color3f specular;
    osg::Color3f emission;
    float shininess = 0.0F; ///< exponent, 0 to 128
    float alpha = 1.0F;

    osg::RefPtr<osg::ImagePtr> image; ///< of the texture; null when there is none
    bool repeatS = true;
    bool repeatT = true;
    std::optional<osg::Matrix> textureTransform;

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
    std::shared_ptr<SurfaceChunk> texture;
    std::shared_ptr<SurfaceChunk> polygon;
};

/// The core for a surface, the same for equal ones as long as somebody holds it.
ORVANE_API std::shared_ptr<SurfaceCore> surfaceCore(const Surface& surface);

/// Number of different surfaces in use.
ORVANE_API std::size_t surfaceCount();

} // namespace Orvane
