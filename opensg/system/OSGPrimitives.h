#pragma once

#include <OpenSG/OSGGeometry.h>

#include <algorithm>

namespace osg {

/// The primitives of a geometry, with what is missing or too long put right: no lengths mean one primitive
/// over all vertices, and none reaches beyond the last vertex.
class Primitives
{
public:
    explicit Primitives(const Geometry& geometry)
        : _types(geometry.getTypes().getCPtr())
        , _lengths(geometry.getLengths().getCPtr())
    {
        const UInt32 stride = std::max<UInt32>(1, static_cast<UInt32>(geometry.getIndexMapping().size()));
        if (geometry.getIndices())
            _vertexCount = geometry.getIndices()->getSize() / stride;
        else if (geometry.getPositions())
            _vertexCount = geometry.getPositions()->getSize();
        _count = _types ? _types->getSize() : 0;
        _count = std::min(_count, _lengths ? _lengths->getSize() : 1);
    }

    UInt32 getVertexCount() const { return _vertexCount; }
    UInt32 getCount() const { return _count; }
    UInt32 getType(UInt32 primitive) const { return _types->getField()[primitive]; }
    /// For a primitive whose first vertex is `firstVertex`, the sum of the lengths before.
    UInt32 getLength(UInt32 primitive, UInt32 firstVertex) const
    {
        const UInt32 left = _vertexCount - std::min(_vertexCount, firstVertex);
        return _lengths ? std::min(_lengths->getField()[primitive], left) : left;
    }

private:
    const GeoPTypes* _types;
    const GeoPLengths* _lengths;
    UInt32 _vertexCount = 0;
    UInt32 _count = 0;
};

/// The value of `property` that a vertex uses; -1 when there is none.
inline Int32 getPropertyIndex(const Geometry& geometry, const GeoProperty& property, UInt32 mapBit,
                              UInt32 vertex)
{
    UInt32 index = vertex;
    if (const GeoIndices* indices = geometry.getIndices().getCPtr()) {
        const Int32 offset = geometry.calcMappingIndex(mapBit);
        if (offset < 0)
            return -1;
        const std::size_t stride = std::max<std::size_t>(1, geometry.getIndexMapping().size());
        const std::size_t place = vertex * stride + static_cast<std::size_t>(offset);
        if (place >= indices->getField().size())
            return -1;
        index = indices->getField()[place];
    }
    return index < property.getSize() && index <= 0x7fffffff ? static_cast<Int32>(index) : -1;
}

} // namespace osg
