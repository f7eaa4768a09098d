#pragma once

#include "OSGGLObjects.h"

#include <OpenSG/OSGGeometry.h>

#include <functional>
#include <string>
#include <vector>

namespace osg {

struct RenderStatistics;

/// Which coordinates of a geometry each texture unit reads: by default those of its own number.
struct TexCoordSets
{
    UInt32 sets = 0x76543210; ///< four bits for each unit
    UInt32 textured = 0;      ///< a bit for each unit that shows a texture

    void take(UInt32 unit, UInt32 set)
    {
        sets = (sets & ~(0xfU << (4 * unit))) | set << (4 * unit);
        textured |= 1U << unit;
    }
    UInt32 get(UInt32 unit) const { return sets >> (4 * unit) & 0xf; }
    bool isTextured(UInt32 unit) const { return textured >> unit & 1; }
    bool operator==(const TexCoordSets& other) const
    {
        return sets == other.sets && textured == other.textured;
    }
};

/// How the vertices of a geometry lie in their buffer: position first, then what else there is.
struct VertexLayout
{
    static constexpr UInt32 none = ~UInt32(0);

    UInt32 stride = 0;
    UInt32 normal = none; ///< offsets in bytes
    UInt32 color = none;
    UInt32 fogDepth = none;
    UInt32 texCoords[Geometry::MaxTexCoords];
    UInt32 dimensions[Geometry::MaxTexCoords] = {}; ///< 0 where there are no coordinates
    UInt32 units = 0;                               ///< up to the last one with coordinates

    struct Attribute
    {
        std::string name;
        UInt32 offset;
        UInt32 columns;
        UInt32 rows;
    };
    std::vector<Attribute> attributes;

    /// The coordinates that a unit reads: textures share the last ones when there are too few. `none` when
    /// there are none for it.
    UInt32 setFor(UInt32 unit, const TexCoordSets& wanted) const
    {
        const UInt32 set = wanted.get(unit);
        if (set < units && dimensions[set] > 0)
            return set;
        return units > 0 && wanted.isTextured(unit) ? units - 1 : none;
    }
};

/// The arrays that GL is told to read; shared by what is drawn one after the other.
struct VertexArrays
{
    bool normals = false;
    bool colors = false;
    bool fogDepths = false;
    UInt32 units = 0; ///< a bit for each unit

    /// Switches arrays on and off so that those of `layout` are on; without a layout, all off.
    void enable(const VertexLayout* layout, const TexCoordSets& wanted, UInt32 unitCount);
};

/// A geometry in buffers: points, lines and triangles, one call each.
class GLGeometry : public GLObject
{
public:
    /// Sends the geometry; colours without alpha get `alpha`.
    void build(const Geometry& geometry, Real32 alpha);
    void free() override;

    /// Lets GL read from the buffers.
    void bind(VertexArrays& arrays, const TexCoordSets& wanted, UInt32 unitCount) const;
    void draw(RenderStatistics& statistics) const;

    bool hasFogDepths() const { return _layout.fogDepth != VertexLayout::none; }
    bool hasAttributes() const { return !_layout.attributes.empty(); }
    /// Lets GL read what programs call by name; `placeOf` tells where a program takes it, or a negative
    /// number. The answer has a bit for each array that is on now.
    UInt32 bindAttributes(const std::function<Int32(const std::string&)>& placeOf) const;

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
    bool _isSequence = false; ///< triangles without indices
    bool _bakedAlpha = false;
    Real32 _alpha = 1;
    Range _points;
    Range _lines;
    Range _triangles;
};

} // namespace osg
