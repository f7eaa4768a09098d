#include <OpenSG/OSGGeoProperties.h>
#include <OpenSG/OSGGeometry.h>

#include "OSGContainerType.h"

#include <algorithm>

namespace osg {

OSG_CONTAINER_TYPE(GeoProperty, AttachmentContainer)
OSG_CREATABLE_CONTAINER_TYPE(GeoPositions, GeoProperty)
OSG_CREATABLE_CONTAINER_TYPE(GeoNormals, GeoProperty)
OSG_CREATABLE_CONTAINER_TYPE(GeoColors, GeoProperty)
OSG_CONTAINER_TYPE(GeoTexCoords, GeoProperty)
OSG_CREATABLE_CONTAINER_TYPE(GeoIndices, GeoProperty)
OSG_CREATABLE_CONTAINER_TYPE(GeoPTypes, GeoProperty)
OSG_CREATABLE_CONTAINER_TYPE(GeoPLengths, GeoProperty)

void GeoProperty::changed(BitVector whichField, UInt32 origin)
{
    for (Geometry* geometry : _users)
        geometry->propertyChanged(this);
    AttachmentContainer::changed(whichField, origin);
}

bool GeoColors::isTransparent() const
{
    return _hasAlpha && std::any_of(_values.begin(), _values.end(),
                                    [](const Color4f& color) { return color.alpha() < 1; });
}

GeoTexCoordsPtr GeoTexCoords::create(UInt32 dimension)
{
    return GeoTexCoordsPtr(new GeoTexCoords(osgClamp<UInt32>(2, dimension, 4)));
}

Vec4f GeoTexCoords::getValue4(UInt32 index) const
{
    if (index >= getSize())
        return Vec4f(0, 0, 0, 1);
    Vec4f result(0, 0, 0, 1);
    for (UInt32 i = 0; i < _dimension; ++i)
        result[i] = _values[std::size_t(index) * _dimension + i];
    return result;
}

void GeoTexCoords::addValue(const Vec4f& value)
{
    _values.insert(_values.end(), value.getValues(), value.getValues() + _dimension);
}

} // namespace osg
