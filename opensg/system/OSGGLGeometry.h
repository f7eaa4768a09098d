#pragma once

#include "OSGGLObjects.h"

#include <OpenSG/OSGGeometry.h>

namespace osg {

struct RenderStatistics;

/// How the vertices of a geometry lie in their buffer: position first, then what else there is.
struct VertexLayout
{
    static constexpr UInt32 none = ~UInt32(0);

    UInt32 stride = 0;
    UInt32 normal = none; ///< offsets in bytes
    UInt32 color = none;
    UInt32 texCoords[Geometry::MaxTexCoords];
    UInt32 dimensions[Geometry::MaxTexCoords] = {}; ///< 0 where there are no coordinates
    UInt32 units = 0;                               ///< up to the last one with coordinates
};

/// The arrays that GL is told to read; shared by what is drawn one after the other.
struct VertexArrays
{
    bool normals = false;
    bool colors = false;
    UInt32 units = 0; ///< a bit for each unit

    /// Switches arrays on and off so that those of `layout` are on; without a layout, all off.
    void enable(const VertexLayout* layout, Int32 unitCount);
};

/// A geometry in buffers: points, lines and triangles, one call each.
class GLGeometry : public GLObject
{
public:
    /// Sends the geometry; colours without alpha get `alpha`.
    void build(const Geometry& geometry, Real32 alpha);
    void free() override;

    /// Lets GL read from the buffers.
    void bind(VertexArrays& arrays, Int32 unitCount) const;
    void draw(RenderStatistics& statistics) const;

    /// Whether colours were sent with another alpha than this.
    bool needsAlpha(Real32 alpha) const { return _bakedAlpha && _alpha != alpha; }

private:
    struct Range
    {
        UInt32 first = 0;
        UInt32 count = 0;
    };

    UInt32 _buffers[2] = {}; ///< vertices, indices
    VertexLayout _layout;
    bool _shortIndices = false;
    bool _bakedAlpha = false;
    Real32 _alpha = 1;
    Range _points;
    Range _lines;
    Range _triangles;
};

} // namespace osg
