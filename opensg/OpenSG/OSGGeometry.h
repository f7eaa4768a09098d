#pragma once

#include "OSGBoxVolume.h"
#include "OSGGLSlot.h"
#include "OSGGeoProperties.h"
#include "OSGMaterialDrawable.h"

#include <memory>
#include <string>
#include <vector>

namespace osg {

class Geometry;
class TriangleIterator;

/// Values of vertices that only programs read, under a name of theirs: numbers, vectors or square matrices.
struct VertexAttribute
{
    std::string name;
    UInt32 columns = 1; ///< of a matrix; each is a vector of `rows` numbers, 1 to 4
    UInt32 rows = 4;
    std::vector<Real32> values; ///< `columns` times `rows` for each position, in GL's order
};

class TriangleTree;

using GeometryPtr = FCPtr<MaterialDrawablePtr, Geometry>;

/// Points, lines and faces, described by properties on which it holds references. The types and lengths tell
/// of primitives, each of which takes the next vertices. Without indices, vertex n has the n-th value of each
/// property. With indices and no mapping, it has the value that the n-th index names. With a mapping of m
/// entries each vertex has m indices in a row, and entry i tells which properties the i-th of them serves.
class OSG_SYSTEMLIB_DLLMAPPING Geometry : public MaterialDrawable
{
public:
    using Ptr = GeometryPtr;

    /// The values are OpenGL's.
    enum PrimitiveType : UInt8 {
        POINTS,
        LINES,
        LINE_LOOP,
        LINE_STRIP,
        TRIANGLES,
        TRIANGLE_STRIP,
        TRIANGLE_FAN,
        QUADS,
        QUAD_STRIP,
        POLYGON
    };

    /// Bits of an index mapping; that of texture coordinates n is `MapTexCoords << n`.
    enum MapBits : UInt16 {
        MapPosition = 1,
        MapNormal = 2,
        MapColor = 4,
        MapSecondaryColor = 8,
        MapTexCoords = 16
    };

    static constexpr UInt32 MaxTexCoords = 8;

    enum : UInt32 {
        TypesFieldId = MaterialDrawable::NextFieldId,
        LengthsFieldId,
        PositionsFieldId,
        NormalsFieldId,
        ColorsFieldId,
        TexCoordsFieldId,
        IndicesFieldId,
        IndexMappingFieldId,
        NextFieldId
    };
    static constexpr BitVector TypesFieldMask = BitVector(1) << TypesFieldId;
    static constexpr BitVector LengthsFieldMask = BitVector(1) << LengthsFieldId;
    static constexpr BitVector PositionsFieldMask = BitVector(1) << PositionsFieldId;
    static constexpr BitVector NormalsFieldMask = BitVector(1) << NormalsFieldId;
    static constexpr BitVector ColorsFieldMask = BitVector(1) << ColorsFieldId;
    static constexpr BitVector TexCoordsFieldMask = BitVector(1) << TexCoordsFieldId;
    static constexpr BitVector IndicesFieldMask = BitVector(1) << IndicesFieldId;
    static constexpr BitVector IndexMappingFieldMask = BitVector(1) << IndexMappingFieldId;

    static GeometryPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const GeoPTypesPtr& getTypes() const { return _types; }
    const GeoPLengthsPtr& getLengths() const { return _lengths; }
    const GeoPositionsPtr& getPositions() const { return _positions; }
    const GeoNormalsPtr& getNormals() const { return _normals; }
    const GeoColorsPtr& getColors() const { return _colors; }
    /// The coordinates for texture `unit`; null when there are none.
    GeoTexCoordsPtr getTexCoords(UInt32 unit = 0) const;
    const GeoIndicesPtr& getIndices() const { return _indices; }
    const std::vector<UInt16>& getIndexMapping() const { return _indexMapping; }

    /// Each takes a reference in place of the one it held; null takes the property away.
    void setTypes(const GeoPTypesPtr& types);
    void setLengths(const GeoPLengthsPtr& lengths);
    void setPositions(const GeoPositionsPtr& positions);
    void setNormals(const GeoNormalsPtr& normals);
    void setColors(const GeoColorsPtr& colors);
    /// A unit of `MaxTexCoords` or more is ignored.
    void setTexCoords(const GeoTexCoordsPtr& texCoords, UInt32 unit = 0);
    void setIndices(const GeoIndicesPtr& indices);
    void setIndexMapping(std::vector<UInt16> mapping);
    /// Which of a vertex' indices serves the property of a map bit; -1 if none. 0 without a mapping.
    Int32 calcMappingIndex(UInt32 mapBit) const;

    /// What programs read beside the properties, picked like positions. Where values are missing they are
    /// zero.
    const std::vector<VertexAttribute>& getAttributes() const;
    void setAttributes(std::vector<VertexAttribute> attributes);

    /// How deep in fog each position lies, from 0 to 1, in place of its distance from the viewer; null when
    /// the distance counts. Picked like positions; missing ones are 0.
    const std::vector<Real32>* getFogDepths() const { return _fogDepths.get(); }
    /// An empty list has the distance count.
    void setFogDepths(std::vector<Real32> depths);

    TriangleIterator beginTriangles() const;
    TriangleIterator endTriangles() const;

    /// The box around all positions, in the geometry's own system.
    const BoxVolume& getBox() const;
    /// The hierarchy for ray tests; built when first asked for after a change.
    const TriangleTree& getTriangleTree() const;
    /// Whether colours have an alpha below 1 that counts.
    bool hasTransparentColors() const;
    /// What windows keep for this geometry.
    const GLSlot& getGLSlot() const { return _glSlot; }

    void changed(BitVector whichField, UInt32 origin) override;
    void adjustVolume(Volume& volume) override;
    void renderEnter(RenderAction& action) override;
    void intersect(IntersectAction& action) override;

protected:
    Geometry();
    ~Geometry() override;

private:
    friend class GeoProperty;

    template <class PropertyPtr>
    void setProperty(PropertyPtr& present, const PropertyPtr& next, BitVector mask);
    void addUse(const GeoPropertyPtr& property);
    void subUse(const GeoPropertyPtr& property);
    void propertyChanged(const GeoProperty* property);

    GeoPTypesPtr _types;
    GeoPLengthsPtr _lengths;
    GeoPositionsPtr _positions;
    GeoNormalsPtr _normals;
    GeoColorsPtr _colors;
    std::vector<GeoTexCoordsPtr> _texCoords;
    GeoIndicesPtr _indices;
    std::vector<UInt16> _indexMapping;
    std::unique_ptr<std::vector<VertexAttribute>> _attributes; ///< null for the many without
    std::unique_ptr<std::vector<Real32>> _fogDepths;           ///< likewise

    mutable BoxVolume _box;
    mutable bool _boxValid = false;
    mutable bool _colorsChecked = false;
    mutable bool _colorsTransparent = false;
    mutable std::unique_ptr<TriangleTree> _triangleTree;
    GLSlot _glSlot;
};

} // namespace osg
