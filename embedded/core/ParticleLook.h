#pragma once

#include "core/GeometryProc.h"
#include "core/MeshData.h"
#include "core/ParticleProcs.h"
#include "core/Surface.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <cstddef>
#include <vector>

namespace Orvane {

/// How the particles of a system look, as its fields say, and the one mesh that they make together.
class ORVANE_API ParticleLook
{
public:
    /// Most vertices of all copies of a geometry.
    static constexpr std::size_t MostVertices = 1000000;

    /// Reads the fields of a `ParticleSystem`. The nodes of its ramps and its geometry may be null.
    void read(const Node& system, const Node* colors, const Node* texCoords, GeometryProc* geometry);

    /// The geometry has died.
    void dropGeometry() { _geometry = nullptr; }

    Surface::Kind kind() const;
    bool isSolid() const;
    /// True when the particles have colours of their own.
    bool hasColors() const;
    /// True when these have alpha.
    bool hasAlpha() const { return _rampHasAlpha; }
    /// True when the particles turn to the viewer.
    bool facesViewer() const { return _shape == TRIANGLES || _shape == QUADS; }
    /// A texture is put on the particles.
    void needTexCoords();
    /// How many particles can be drawn.
    std::size_t limit() const;

    /// The particles as they are now, for a viewer with these axes.
    MeshData mesh(const std::vector<Particle>& particles, const osg::Vec3f& right,
                  const osg::Vec3f& up) const;

private:
    enum Shape { POINTS, LINES, TRIANGLES, QUADS, GEOMETRY };

    struct Corner
    {
        float s;
        float t;
    };

    void readColors(const Node* ramp);
    void readTexCoords(const Node* ramp);
    osg::Color4f colorAt(float share) const;
    /// Coordinates of the first corner at a share of the life; null when the ramp has none.
    const osg::Vec2f* texCoordsAt(float share) const;
    std::size_t cornerCount() const;
    void addCopy(MeshData& mesh, const Particle& particle, const osg::Color4f& color) const;
    void addFlat(MeshData& mesh, const Particle& particle, const osg::Color4f& color, const osg::Vec3f& right,
                 const osg::Vec3f& up) const;

    Shape _shape = QUADS;
    osg::Vec2f _half; ///< of the size
    std::vector<osg::Color4f> _colors;
    std::vector<float> _colorKeys;
    bool _rampHasAlpha = false;
    std::vector<osg::Vec2f> _texCoords; ///< those of each key after the other
    std::vector<float> _texCoordKeys;
    GeometryProc* _geometry = nullptr;
};

} // namespace Orvane
