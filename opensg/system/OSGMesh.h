#pragma once

#include "OSGGLGeometry.h"

namespace osg {

/// The data of a geometry in the form that GL takes: one index per vertex, and only points, lines and
/// triangles. Vertices whose position does not exist are left out with all that is made of them.
class Mesh
{
public:
    Mesh(const Geometry& geometry, Real32 alpha);

    VertexLayout layout;
    std::vector<UInt8> vertices;
    UInt32 vertexCount = 0;
    std::vector<UInt32> points;
    std::vector<UInt32> lines;
    std::vector<UInt32> triangles;

private:
    void findVertices();
    void unifyVertices();
    void makeLayout();
    void writeVertices(Real32 alpha);
    void writeOwnAttributes();
    void collectPrimitives();
    void collectTriangles();

    /// The buffer's vertex for one of the geometry's, in the order in which primitives take them;
    /// `vertexCount` or above when there is none.
    UInt32 vertexOf(UInt32 number) const;
    /// The value that a vertex of the buffer has of the property behind one of the indices.
    UInt32 valueOf(UInt32 vertex, UInt32 mappingIndex) const;
    template <class Write>
    void writeAttribute(UInt32 offset, const GeoProperty& property, UInt32 mapBit, Write write);

    const Geometry& _geometry;
    const std::vector<UInt32>* _indices = nullptr;
    UInt32 _stride = 1;
    std::vector<UInt32> _vertexOf;  ///< with several indices per vertex
    std::vector<UInt32> _exampleOf; ///< and the way back
};

} // namespace osg
