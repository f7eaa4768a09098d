#pragma once

#include "OSGGeometry.h"

namespace osg {

/// Walks over the faces of a geometry, split into triangles with running numbers. Right after construction
/// all three corners are vertex 0: use `seek`, or `Geometry::beginTriangles`. Good as long as the geometry
/// does not change. What a geometry lacks has index -1 and the value zero.
class OSG_SYSTEMLIB_DLLMAPPING TriangleIterator
{
public:
    TriangleIterator() = default;
    explicit TriangleIterator(const GeometryPtr& geometry) { setGeometry(geometry); }
    /// Of a node whose core is a geometry; with another one a warning is logged and there are no triangles.
    explicit TriangleIterator(const NodePtr& node);

    void setGeometry(const GeometryPtr& geometry);

    /// Goes to a triangle by its number; one that is none is the end.
    void seek(Int32 index);
    void setToBegin() { seek(0); }
    void setToEnd();
    bool isAtEnd() const { return _atEnd; }
    void operator++();

    bool operator==(const TriangleIterator& other) const;
    bool operator!=(const TriangleIterator& other) const { return !(*this == other); }

    const GeometryPtr& getGeometry() const { return _geometry; }
    /// The running number of the triangle.
    Int32 getIndex() const { return _index; }
    /// Kind and number of vertices of the primitive that the triangle is a part of.
    UInt32 getType() const { return _type; }
    UInt32 getLength() const { return _length; }

    /// The vertex of a corner, 0 to 2: its number in the order in which the primitives take vertices.
    UInt32 getVertex(Int32 which) const { return _corners[which]; }

    Pnt3f getPosition(Int32 which) const;
    Int32 getPositionIndex(Int32 which) const;
    Vec3f getNormal(Int32 which) const;
    Int32 getNormalIndex(Int32 which) const;
    Color3f getColor(Int32 which) const;
    Int32 getColorIndex(Int32 which) const;
    /// There are no secondary colours.
    Color3f getSecondaryColor(Int32) const { return Color3f(); }
    Int32 getSecondaryColorIndex(Int32) const { return -1; }
    Vec2f getTexCoords(Int32 which, UInt32 unit = 0) const;
    Int32 getTexCoordsIndex(Int32 which, UInt32 unit = 0) const;
    Vec2f getTexCoords1(Int32 which) const { return getTexCoords(which, 1); }
    Vec2f getTexCoords2(Int32 which) const { return getTexCoords(which, 2); }
    Vec2f getTexCoords3(Int32 which) const { return getTexCoords(which, 3); }
    Vec2f getTexCoords4(Int32 which) const { return getTexCoords(which, 4); }
    Vec2f getTexCoords5(Int32 which) const { return getTexCoords(which, 5); }
    Vec2f getTexCoords6(Int32 which) const { return getTexCoords(which, 6); }
    Vec2f getTexCoords7(Int32 which) const { return getTexCoords(which, 7); }

private:
    bool startPrimitive();
    bool toNextTriangle();
    void setCorners();
    Int32 indexOf(const GeoPropertyPtr& property, UInt32 mapBit, Int32 which) const;

    GeometryPtr _geometry;
    bool _atEnd = true;
    Int32 _index = 0;
    UInt32 _type = 0;
    UInt32 _length = 0;
    UInt32 _primitive = 0;
    UInt32 _firstVertex = 0;
    UInt32 _triangle = 0;
    UInt32 _triangleCount = 0;
    UInt32 _corners[3] = {};
};

} // namespace osg
