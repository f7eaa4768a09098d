#include <OpenSG/OSGGeometry.h>

#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <OpenSG/OSGTriangleTree.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

#include <algorithm>
#include <cmath>

namespace osg {

OSG_CONTAINER_TYPE(Drawable, NodeCore)
OSG_CONTAINER_TYPE(MaterialDrawable, Drawable)
OSG_CREATABLE_CONTAINER_TYPE(Geometry, MaterialDrawable)

MaterialDrawable::~MaterialDrawable()
{
    clearRefCP(_material);
}

void MaterialDrawable::setMaterial(const MaterialPtr& material)
{
    if (material != _material)
        SceneStamp::renew();
    setRefdCP(_material, material);
}

Geometry::Geometry() = default;

Geometry::~Geometry()
{
    const GeoPropertyPtr properties[] = {_types, _lengths, _positions, _normals, _colors, _indices};
    for (const GeoPropertyPtr& property : properties)
        subUse(property);
    for (const GeoTexCoordsPtr& property : _texCoords)
        subUse(property);
}

void Geometry::addUse(const GeoPropertyPtr& property)
{
    if (!property)
        return;
    addRefCP(property);
    property->_users.push_back(this);
}

void Geometry::subUse(const GeoPropertyPtr& property)
{
    if (!property)
        return;
    std::vector<Geometry*>& users = property->_users;
    // One of the entries: a property may serve twice in one geometry.
    const auto found = std::find(users.rbegin(), users.rend(), this);
    *found = users.back();
    users.pop_back();
    subRefCP(GeoPropertyPtr(property));
}

template <class PropertyPtr>
void Geometry::setProperty(PropertyPtr& present, const PropertyPtr& next, BitVector mask)
{
    if (present == next)
        return;
    const PropertyPtr dropped = present;
    present = next;
    addUse(present);
    subUse(dropped);
    changed(mask, ChangedOrigin::External);
}

void Geometry::setTypes(const GeoPTypesPtr& types)
{
    setProperty(_types, types, TypesFieldMask);
}

void Geometry::setLengths(const GeoPLengthsPtr& lengths)
{
    setProperty(_lengths, lengths, LengthsFieldMask);
}

void Geometry::setPositions(const GeoPositionsPtr& positions)
{
    setProperty(_positions, positions, PositionsFieldMask);
}

void Geometry::setNormals(const GeoNormalsPtr& normals)
{
    setProperty(_normals, normals, NormalsFieldMask);
}

void Geometry::setColors(const GeoColorsPtr& colors)
{
    setProperty(_colors, colors, ColorsFieldMask);
}

void Geometry::setIndices(const GeoIndicesPtr& indices)
{
    setProperty(_indices, indices, IndicesFieldMask);
}

GeoTexCoordsPtr Geometry::getTexCoords(UInt32 unit) const
{
    return unit < _texCoords.size() ? _texCoords[unit] : GeoTexCoordsPtr();
}

void Geometry::setTexCoords(const GeoTexCoordsPtr& texCoords, UInt32 unit)
{
    if (unit >= MaxTexCoords)
        return;
    if (unit >= _texCoords.size() && texCoords)
        _texCoords.resize(unit + 1);
    if (unit < _texCoords.size())
        setProperty(_texCoords[unit], texCoords, TexCoordsFieldMask);
}

const std::vector<VertexAttribute>& Geometry::getAttributes() const
{
    static const std::vector<VertexAttribute> none;
    return _attributes ? *_attributes : none;
}

void Geometry::setAttributes(std::vector<VertexAttribute> attributes)
{
    if (attributes.empty() && !_attributes)
        return;
    _attributes =
        attributes.empty() ? nullptr : std::make_unique<std::vector<VertexAttribute>>(std::move(attributes));
    _glSlot.touch();
}

void Geometry::setFogDepths(std::vector<Real32> depths)
{
    if (depths.empty() && !_fogDepths)
        return;
    _fogDepths = depths.empty() ? nullptr : std::make_unique<std::vector<Real32>>(std::move(depths));
    _glSlot.touch();
}

void Geometry::setIndexMapping(std::vector<UInt16> mapping)
{
    _indexMapping = std::move(mapping);
    changed(IndexMappingFieldMask, ChangedOrigin::External);
}

Int32 Geometry::calcMappingIndex(UInt32 mapBit) const
{
    if (_indexMapping.empty())
        return 0;
    for (std::size_t i = 0; i < _indexMapping.size(); ++i) {
        if (_indexMapping[i] & mapBit)
            return static_cast<Int32>(i);
    }
    return -1;
}

TriangleIterator Geometry::beginTriangles() const
{
    TriangleIterator it{GeometryPtr(this)};
    it.seek(0);
    return it;
}

TriangleIterator Geometry::endTriangles() const
{
    TriangleIterator it{GeometryPtr(this)};
    it.setToEnd();
    return it;
}

void Geometry::propertyChanged(const GeoProperty* property)
{
    const auto is = [property](const GeoPropertyPtr& own) { return own.getCPtr() == property; };
    BitVector mask = 0;
    mask |= is(_types) ? TypesFieldMask : 0;
    mask |= is(_lengths) ? LengthsFieldMask : 0;
    mask |= is(_positions) ? PositionsFieldMask : 0;
    mask |= is(_normals) ? NormalsFieldMask : 0;
    mask |= is(_colors) ? ColorsFieldMask : 0;
    mask |= is(_indices) ? IndicesFieldMask : 0;
    mask |= std::any_of(_texCoords.begin(), _texCoords.end(), is) ? TexCoordsFieldMask : 0;
    changed(mask, ChangedOrigin::Child);
}

void Geometry::changed(BitVector whichField, UInt32 origin)
{
    const BitVector shape =
        TypesFieldMask | LengthsFieldMask | PositionsFieldMask | IndicesFieldMask | IndexMappingFieldMask;
    const BitVector looks = NormalsFieldMask | ColorsFieldMask | TexCoordsFieldMask;
    if (whichField & (shape | looks))
        _glSlot.touch();
    if (whichField & shape)
        _triangleTree.reset();
    if (whichField & ColorsFieldMask) {
        _colorsChecked = false;
        SceneStamp::renew();
    }
    if (whichField & PositionsFieldMask) {
        _boxValid = false;
        invalidateVolume();
    }
    MaterialDrawable::changed(whichField, origin);
}

const BoxVolume& Geometry::getBox() const
{
    if (_boxValid)
        return _box;
    _boxValid = true;
    _box.setEmpty();
    if (!_positions)
        return _box;
    Pnt3f min(Inf, Inf, Inf);
    Pnt3f max(NegInf, NegInf, NegInf);
    for (const Pnt3f& position : _positions->getField()) {
        const Real32* p = position.getValues();
        // Also false for what is no number.
        if (!(std::abs(p[0]) < Inf && std::abs(p[1]) < Inf && std::abs(p[2]) < Inf))
            continue;
        for (UInt32 i = 0; i < 3; ++i) {
            min[i] = osgMin(min[i], p[i]);
            max[i] = osgMax(max[i], p[i]);
        }
    }
    if (min[0] <= max[0])
        _box.setBounds(min, max);
    return _box;
}

bool Geometry::hasTransparentColors() const
{
    if (!_colorsChecked)
        _colorsTransparent = _colors && _colors->isTransparent();
    _colorsChecked = true;
    return _colorsTransparent;
}

void Geometry::adjustVolume(Volume& volume)
{
    volume.extendBy(getBox());
}

const TriangleTree& Geometry::getTriangleTree() const
{
    if (!_triangleTree)
        _triangleTree = std::make_unique<TriangleTree>(*this);
    return *_triangleTree;
}

void Geometry::renderEnter(RenderAction& action)
{
    action.addGeometry(*this);
}

void Geometry::intersect(IntersectAction& action)
{
    Pnt3d origin;
    Vec3d direction;
    TriangleTree::Hit hit;
    if (action.getLocalRay(origin, direction) &&
        getTriangleTree().intersect(origin, direction, action.getNearest(), hit))
        action.setHit(hit.t, hit.triangle, hit.normal);
}

} // namespace osg
