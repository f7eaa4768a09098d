#include "OSGMesh.h"

#include "OSGPrimitives.h"

#include <OpenSG/OSGTriangleIterator.h>

#include <cstring>

namespace osg {

Mesh::Mesh(const Geometry& geometry, Real32 alpha)
    : _geometry(geometry)
{
    if (!geometry.getPositions() || geometry.calcMappingIndex(Geometry::MapPosition) < 0)
        return;
    findVertices();
    makeLayout();
    writeVertices(alpha);
    collectPrimitives();
    collectTriangles();
}

void Mesh::findVertices()
{
    vertexCount = _geometry.getPositions()->getSize();
    if (!_geometry.getIndices())
        return;
    _indices = &_geometry.getIndices()->getField();
    _stride = std::max<UInt32>(1, static_cast<UInt32>(_geometry.getIndexMapping().size()));
    if (_stride > 1)
        unifyVertices();
}

// GL takes one index per vertex: each combination of indices that occurs becomes a vertex. Those that share a
// position are chained, so that a combination is looked for among its likes only.
void Mesh::unifyVertices()
{
    const UInt32 none = ~UInt32(0);
    const UInt32 longestSearch = 16; // a twin costs a few bytes, a long search takes seconds
    const UInt32 positionCount = vertexCount;
    const UInt32 positionOffset = static_cast<UInt32>(_geometry.calcMappingIndex(Geometry::MapPosition));
    const UInt32 count = static_cast<UInt32>(_indices->size() / _stride);
    std::vector<UInt32> first(positionCount, none);
    std::vector<UInt32> next;
    _vertexOf.resize(count, none);
    for (UInt32 number = 0; number < count; ++number) {
        const UInt32* tuple = _indices->data() + std::size_t(number) * _stride;
        const UInt32 position = tuple[positionOffset];
        if (position >= positionCount)
            continue;
        UInt32 vertex = first[position];
        for (UInt32 tries = 0; vertex != none; vertex = next[vertex]) {
            const UInt32* other = _indices->data() + std::size_t(_exampleOf[vertex]) * _stride;
            if (std::memcmp(tuple, other, _stride * sizeof(UInt32)) == 0)
                break;
            if (++tries == longestSearch) {
                vertex = none;
                break;
            }
        }
        if (vertex == none) {
            vertex = static_cast<UInt32>(_exampleOf.size());
            _exampleOf.push_back(number);
            next.push_back(first[position]);
            first[position] = vertex;
        }
        _vertexOf[number] = vertex;
    }
    vertexCount = static_cast<UInt32>(_exampleOf.size());
}

UInt32 Mesh::vertexOf(UInt32 number) const
{
    if (!_indices)
        return number;
    const std::vector<UInt32>& table = _stride > 1 ? _vertexOf : *_indices;
    return number < table.size() ? table[number] : ~UInt32(0);
}

UInt32 Mesh::valueOf(UInt32 vertex, UInt32 mappingIndex) const
{
    return _stride > 1 ? (*_indices)[std::size_t(_exampleOf[vertex]) * _stride + mappingIndex] : vertex;
}

void Mesh::makeLayout()
{
    const auto isMapped = [this](UInt32 bit) { return !_indices || _geometry.calcMappingIndex(bit) >= 0; };
    layout.stride = sizeof(Pnt3f);
    const auto place = [this](UInt32 size) {
        const UInt32 offset = layout.stride;
        layout.stride += size;
        return offset;
    };
    if (_geometry.getNormals() && isMapped(Geometry::MapNormal))
        layout.normal = place(sizeof(Vec3f));
    if (_geometry.getColors() && isMapped(Geometry::MapColor))
        layout.color = place(4);
    if (_geometry.getFogDepths())
        layout.fogDepth = place(sizeof(Real32));
    for (UInt32 unit = 0; unit < Geometry::MaxTexCoords; ++unit) {
        const GeoTexCoordsPtr texCoords = _geometry.getTexCoords(unit);
        if (!texCoords || !isMapped(Geometry::MapTexCoords << unit))
            continue;
        layout.dimensions[unit] = texCoords->getDimension();
        layout.texCoords[unit] = place(texCoords->getDimension() * sizeof(Real32));
        layout.units = unit + 1;
    }
    for (const VertexAttribute& attribute : _geometry.getAttributes())
        layout.attributes.push_back({attribute.name,
                                     place(attribute.columns * attribute.rows * UInt32(sizeof(Real32))),
                                     attribute.columns, attribute.rows});
}

// `write(target, index)` writes one value; it is called for vertices only that have one.
template <class Write>
void Mesh::writeAttribute(UInt32 offset, const GeoProperty& property, UInt32 mapBit, Write write)
{
    const UInt32 mappingIndex = static_cast<UInt32>(std::max(0, _geometry.calcMappingIndex(mapBit)));
    const UInt32 size = property.getSize();
    UInt8* target = vertices.data() + offset;
    for (UInt32 vertex = 0; vertex < vertexCount; ++vertex, target += layout.stride) {
        const UInt32 index = valueOf(vertex, mappingIndex);
        if (index < size)
            write(target, index);
    }
}

void Mesh::writeVertices(Real32 alpha)
{
    vertices.resize(std::size_t(vertexCount) * layout.stride);
    const Pnt3f* positions = _geometry.getPositions()->getField().data();
    writeAttribute(0, *_geometry.getPositions(), Geometry::MapPosition, [=](UInt8* target, UInt32 index) {
        std::memcpy(target, positions + index, sizeof(Pnt3f));
    });
    if (layout.normal != VertexLayout::none) {
        const Vec3f* normals = _geometry.getNormals()->getField().data();
        writeAttribute(
            layout.normal, *_geometry.getNormals(), Geometry::MapNormal,
            [=](UInt8* target, UInt32 index) { std::memcpy(target, normals + index, sizeof(Vec3f)); });
    }
    if (layout.color != VertexLayout::none) {
        const Color4f* colors = _geometry.getColors()->getField().data();
        const bool hasAlpha = _geometry.getColors()->hasAlpha();
        writeAttribute(layout.color, *_geometry.getColors(), Geometry::MapColor,
                       [=](UInt8* target, UInt32 index) {
                           Color4f color = colors[index];
                           if (!hasAlpha)
                               color[3] = alpha;
                           const UInt32 packed = color.getRGBA();
                           for (int i = 0; i < 4; ++i)
                               target[i] = static_cast<UInt8>(packed >> (8 * i));
                       });
    }
    for (UInt32 unit = 0; unit < layout.units; ++unit) {
        const UInt32 dimension = layout.dimensions[unit];
        if (dimension == 0)
            continue;
        const Real32* values = _geometry.getTexCoords(unit)->getField().data();
        writeAttribute(layout.texCoords[unit], *_geometry.getTexCoords(unit), Geometry::MapTexCoords << unit,
                       [=](UInt8* target, UInt32 index) {
                           std::memcpy(target, values + std::size_t(index) * dimension,
                                       dimension * sizeof(Real32));
                       });
    }
    writeOwnAttributes();
}

void Mesh::writeOwnAttributes()
{
    const UInt32 mappingIndex =
        static_cast<UInt32>(std::max(0, _geometry.calcMappingIndex(Geometry::MapPosition)));
    if (layout.fogDepth != VertexLayout::none) {
        const std::vector<Real32>& depths = *_geometry.getFogDepths();
        UInt8* target = vertices.data() + layout.fogDepth;
        for (UInt32 vertex = 0; vertex < vertexCount; ++vertex, target += layout.stride) {
            const UInt32 index = valueOf(vertex, mappingIndex);
            if (index < depths.size())
                std::memcpy(target, &depths[index], sizeof(Real32));
        }
    }
    for (std::size_t i = 0; i < layout.attributes.size(); ++i) {
        const std::vector<Real32>& values = _geometry.getAttributes()[i].values;
        const std::size_t count = std::size_t(layout.attributes[i].columns) * layout.attributes[i].rows;
        UInt8* target = vertices.data() + layout.attributes[i].offset;
        for (UInt32 vertex = 0; vertex < vertexCount; ++vertex, target += layout.stride) {
            const UInt32 index = valueOf(vertex, mappingIndex);
            if (index < values.size() / count)
                std::memcpy(target, values.data() + index * count, count * sizeof(Real32));
        }
    }
}

void Mesh::collectPrimitives()
{
    const auto addLine = [this](UInt32 from, UInt32 to) {
        const UInt32 a = vertexOf(from);
        const UInt32 b = vertexOf(to);
        if (a < vertexCount && b < vertexCount)
            lines.insert(lines.end(), {a, b});
    };
    const Primitives primitives(_geometry);
    UInt32 first = 0;
    for (UInt32 i = 0; i < primitives.getCount(); ++i) {
        const UInt32 type = primitives.getType(i);
        const UInt32 length = primitives.getLength(i, first);
        if (type == Geometry::POINTS) {
            for (UInt32 n = 0; n < length; ++n) {
                if (vertexOf(first + n) < vertexCount)
                    points.push_back(vertexOf(first + n));
            }
        } else if (type == Geometry::LINES) {
            for (UInt32 n = 1; n < length; n += 2)
                addLine(first + n - 1, first + n);
        } else if (type == Geometry::LINE_STRIP || type == Geometry::LINE_LOOP) {
            for (UInt32 n = 1; n < length; ++n)
                addLine(first + n - 1, first + n);
            if (type == Geometry::LINE_LOOP && length > 2)
                addLine(first + length - 1, first);
        }
        first += length;
    }
}

void Mesh::collectTriangles()
{
    for (TriangleIterator it = _geometry.beginTriangles(); !it.isAtEnd(); ++it) {
        const UInt32 corners[3] = {vertexOf(it.getVertex(0)), vertexOf(it.getVertex(1)),
                                   vertexOf(it.getVertex(2))};
        if (corners[0] < vertexCount && corners[1] < vertexCount && corners[2] < vertexCount)
            triangles.insert(triangles.end(), corners, corners + 3);
    }
}

} // namespace osg
