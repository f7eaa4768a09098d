#pragma once

#include "OSGColor.h"
#include "OSGGeoProperty.h"
#include "OSGVector.h"

namespace osg {

class GeoPositions;
class GeoNormals;
class GeoColors;
class GeoTexCoords;
class GeoIndices;
class GeoPTypes;
class GeoPLengths;

using GeoPositionsPtr = FCPtr<GeoPropertyPtr, GeoPositions>;
using GeoNormalsPtr = FCPtr<GeoPropertyPtr, GeoNormals>;
using GeoColorsPtr = FCPtr<GeoPropertyPtr, GeoColors>;
using GeoTexCoordsPtr = FCPtr<GeoPropertyPtr, GeoTexCoords>;
using GeoIndicesPtr = FCPtr<GeoPropertyPtr, GeoIndices>;
using GeoPTypesPtr = FCPtr<GeoPropertyPtr, GeoPTypes>;
using GeoPLengthsPtr = FCPtr<GeoPropertyPtr, GeoPLengths>;

/// Where the vertices are.
class OSG_SYSTEMLIB_DLLMAPPING GeoPositions : public GeoVectorProperty<Pnt3f>
{
public:
    static GeoPositionsPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

/// Where the surface faces at a vertex; any length above 0.
class OSG_SYSTEMLIB_DLLMAPPING GeoNormals : public GeoVectorProperty<Vec3f>
{
public:
    static GeoNormalsPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

/// Colours of vertices, which stand for the diffuse colour of the material.
class OSG_SYSTEMLIB_DLLMAPPING GeoColors : public GeoVectorProperty<Color4f>
{
public:
    static GeoColorsPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    Color3f getValue(UInt32 index) const
    {
        const Color4f color = getValue4(index);
        return {color.red(), color.green(), color.blue()};
    }
    Color4f getValue4(UInt32 index) const { return GeoVectorProperty::getValue(index); }

    void addValue(const Color3f& color)
    {
        _values.emplace_back(color.red(), color.green(), color.blue(), 1.f);
    }
    /// From the first colour with alpha on, the alphas count instead of the material's.
    void addValue(const Color4f& color)
    {
        _values.push_back(color);
        _hasAlpha = true;
    }

    bool hasAlpha() const { return _hasAlpha; }
    void setHasAlpha(bool alpha) { _hasAlpha = alpha; }
    /// True when alphas count and one is below 1.
    bool isTransparent() const;

private:
    bool _hasAlpha = false;
};

/// Places in a texture, of two to four coordinates each.
class OSG_SYSTEMLIB_DLLMAPPING GeoTexCoords : public GeoProperty
{
public:
    /// `dimension` is kept between 2 and 4.
    static GeoTexCoordsPtr create(UInt32 dimension = 2);
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt32 getDimension() const { return _dimension; }
    UInt32 getSize() const override { return static_cast<UInt32>(_values.size() / _dimension); }

    /// The first two coordinates; zeros where there is no such value.
    Vec2f getValue(UInt32 index) const { return Vec2f(getValue4(index)); }
    /// All coordinates; missing ones are 0, a missing fourth is 1.
    Vec4f getValue4(UInt32 index) const;
    /// Coordinates beyond the dimension are left out, missing ones are 0.
    void addValue(const Vec2f& value) { addValue(Vec4f(value[0], value[1], 0, 1)); }
    void addValue(const Vec3f& value) { addValue(Vec4f(value[0], value[1], value[2], 1)); }
    void addValue(const Vec4f& value);
    void push_back(const Vec2f& value) { addValue(value); }
    void clear() { _values.clear(); }

    /// All coordinates in place, `getDimension()` for each value.
    std::vector<Real32>& editField() { return _values; }
    const std::vector<Real32>& getField() const { return _values; }

protected:
    explicit GeoTexCoords(UInt32 dimension)
        : _dimension(dimension)
    {
    }

private:
    UInt32 _dimension;
    std::vector<Real32> _values;
};

/// Which values the vertices use; see Geometry for their order.
class OSG_SYSTEMLIB_DLLMAPPING GeoIndices : public GeoVectorProperty<UInt32>
{
public:
    static GeoIndicesPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

/// The kinds of the primitives, values of `Geometry::PrimitiveType`.
class OSG_SYSTEMLIB_DLLMAPPING GeoPTypes : public GeoVectorProperty<UInt8>
{
public:
    static GeoPTypesPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

/// How many vertices each primitive has.
class OSG_SYSTEMLIB_DLLMAPPING GeoPLengths : public GeoVectorProperty<UInt32>
{
public:
    static GeoPLengthsPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;
};

// The names of the forms that other scenes use; there is one form of each here.
using GeoPositions3f = GeoPositions;
using GeoNormals3f = GeoNormals;
using GeoColors4f = GeoColors;
using GeoTexCoords2f = GeoTexCoords;
using GeoIndicesUI32 = GeoIndices;
using GeoPTypesUI8 = GeoPTypes;
using GeoPLengthsUI32 = GeoPLengths;

} // namespace osg
