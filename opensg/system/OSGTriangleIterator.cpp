#include <OpenSG/OSGTriangleIterator.h>

#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGNode.h>

#include "OSGPrimitives.h"

namespace osg {

namespace {

// How many triangles a primitive is split into, those that are left out of strips included.
UInt32 countTriangles(UInt32 type, UInt32 length)
{
    if (length < 3)
        return 0;
    switch (type) {
    case Geometry::TRIANGLES:
        return length / 3;
    case Geometry::QUADS:
        return length / 4 * 2;
    case Geometry::TRIANGLE_STRIP:
    case Geometry::QUAD_STRIP:
    case Geometry::TRIANGLE_FAN:
    case Geometry::POLYGON:
        return length - 2;
    default:
        return 0;
    }
}

bool isStrip(UInt32 type)
{
    return type == Geometry::TRIANGLE_STRIP || type == Geometry::QUAD_STRIP;
}

} // namespace

TriangleIterator::TriangleIterator(const NodePtr& node)
{
    const GeometryPtr geometry = node ? GeometryPtr::dcast(node->getCore()) : GeometryPtr();
    if (!geometry)
        SWARNING << "TriangleIterator: the node has no geometry" << std::endl;
    setGeometry(geometry);
}

void TriangleIterator::setGeometry(const GeometryPtr& geometry)
{
    *this = TriangleIterator();
    _geometry = geometry;
    _atEnd = !geometry;
}

void TriangleIterator::setToEnd()
{
    _atEnd = true;
}

void TriangleIterator::seek(Int32 index)
{
    _atEnd = !_geometry || index < 0;
    if (_atEnd)
        return;
    _index = 0;
    _primitive = 0;
    _firstVertex = 0;
    // Whole primitives are stepped over where the number of their triangles is known without a look.
    bool there = startPrimitive();
    while (there && _index < index) {
        const UInt32 missing = static_cast<UInt32>(index - _index);
        if (isStrip(_type)) {
            there = toNextTriangle();
        } else if (missing < _triangleCount - _triangle) {
            _triangle += missing;
            _index = index;
            setCorners();
        } else {
            _index += static_cast<Int32>(_triangleCount - _triangle);
            _firstVertex += _length;
            ++_primitive;
            there = startPrimitive();
        }
    }
    _atEnd = !there;
}

void TriangleIterator::operator++()
{
    if (!_atEnd)
        _atEnd = !toNextTriangle();
}

// Goes to the first triangle of the present primitive, or of the next that has one.
bool TriangleIterator::startPrimitive()
{
    const Primitives primitives(*_geometry);
    for (; _primitive < primitives.getCount(); ++_primitive) {
        _type = primitives.getType(_primitive);
        _length = primitives.getLength(_primitive, _firstVertex);
        _triangleCount = countTriangles(_type, _length);
        if (_triangleCount > 0) {
            _triangle = 0;
            setCorners();
            return true;
        }
        _firstVertex += _length;
    }
    return false;
}

bool TriangleIterator::toNextTriangle()
{
    ++_index;
    while (++_triangle < _triangleCount) {
        setCorners();
        if (!isStrip(_type))
            return true;
        const Int32 a = getPositionIndex(0);
        const Int32 b = getPositionIndex(1);
        const Int32 c = getPositionIndex(2);
        if (a != b && b != c && c != a)
            return true;
    }
    _firstVertex += _length;
    ++_primitive;
    return startPrimitive();
}

void TriangleIterator::setCorners()
{
    const UInt32 n = _triangle;
    const auto set = [this](UInt32 a, UInt32 b, UInt32 c) {
        _corners[0] = _firstVertex + a;
        _corners[1] = _firstVertex + b;
        _corners[2] = _firstVertex + c;
    };
    if (_type == Geometry::TRIANGLES)
        set(3 * n, 3 * n + 1, 3 * n + 2);
    else if (_type == Geometry::QUADS)
        set(n / 2 * 4, n / 2 * 4 + 1 + n % 2, n / 2 * 4 + 2 + n % 2);
    else if (!isStrip(_type))
        set(0, n + 1, n + 2);
    else if (n % 2 == 0)
        set(n, n + 1, n + 2);
    else
        set(n + 1, n, n + 2);
}

bool TriangleIterator::operator==(const TriangleIterator& other) const
{
    if (_atEnd || other._atEnd)
        return _atEnd == other._atEnd;
    return _geometry == other._geometry && _index == other._index;
}

Int32 TriangleIterator::indexOf(const GeoPropertyPtr& property, UInt32 mapBit, Int32 which) const
{
    return _geometry && property ? getPropertyIndex(*_geometry, *property, mapBit, _corners[which]) : -1;
}

Int32 TriangleIterator::getPositionIndex(Int32 which) const
{
    return _geometry ? indexOf(_geometry->getPositions(), Geometry::MapPosition, which) : -1;
}

Int32 TriangleIterator::getNormalIndex(Int32 which) const
{
    return _geometry ? indexOf(_geometry->getNormals(), Geometry::MapNormal, which) : -1;
}

Int32 TriangleIterator::getColorIndex(Int32 which) const
{
    return _geometry ? indexOf(_geometry->getColors(), Geometry::MapColor, which) : -1;
}

Int32 TriangleIterator::getTexCoordsIndex(Int32 which, UInt32 unit) const
{
    if (!_geometry || unit >= Geometry::MaxTexCoords)
        return -1;
    return indexOf(_geometry->getTexCoords(unit), Geometry::MapTexCoords << unit, which);
}

Pnt3f TriangleIterator::getPosition(Int32 which) const
{
    const Int32 index = getPositionIndex(which);
    return index < 0 ? Pnt3f() : _geometry->getPositions()->getValue(static_cast<UInt32>(index));
}

Vec3f TriangleIterator::getNormal(Int32 which) const
{
    const Int32 index = getNormalIndex(which);
    return index < 0 ? Vec3f() : _geometry->getNormals()->getValue(static_cast<UInt32>(index));
}

Color3f TriangleIterator::getColor(Int32 which) const
{
    const Int32 index = getColorIndex(which);
    return index < 0 ? Color3f() : _geometry->getColors()->getValue(static_cast<UInt32>(index));
}

Vec2f TriangleIterator::getTexCoords(Int32 which, UInt32 unit) const
{
    const Int32 index = getTexCoordsIndex(which, unit);
    return index < 0 ? Vec2f() : _geometry->getTexCoords(unit)->getValue(static_cast<UInt32>(index));
}

} // namespace osg
