#include "OSGGLGeometry.h"

#include "OSGMesh.h"

#include <OpenSG/OSGRenderStatistics.h>

#include <epoxy/gl.h>

namespace osg {

namespace {

const void* at(UInt32 offset)
{
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(offset));
}

void setClientState(GLenum array, bool on)
{
    if (on)
        glEnableClientState(array);
    else
        glDisableClientState(array);
}

/// Whether each vertex stands at its own place and none twice.
bool isSequence(const std::vector<UInt32>& indices)
{
    for (std::size_t i = 0; i < indices.size(); ++i) {
        if (indices[i] != i)
            return false;
    }
    return true;
}

void sendIndices(const std::vector<UInt32>& indices, bool asShort)
{
    if (!asShort) {
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(UInt32)),
                     indices.data(), GL_STATIC_DRAW);
        return;
    }
    const std::vector<UInt16> shortened(indices.begin(), indices.end());
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(shortened.size() * sizeof(UInt16)),
                 shortened.data(), GL_STATIC_DRAW);
}

} // namespace

void VertexArrays::enable(const VertexLayout* layout, const TexCoordSets& wanted, UInt32 unitCount)
{
    const bool needNormals = layout && layout->normal != VertexLayout::none;
    const bool needColors = layout && layout->color != VertexLayout::none;
    const bool needDepths = layout && layout->fogDepth != VertexLayout::none;
    UInt32 needUnits = 0;
    for (UInt32 unit = 0; layout && unit < Geometry::MaxTexCoords && unit < unitCount; ++unit)
        needUnits |= UInt32(layout->setFor(unit, wanted) != VertexLayout::none) << unit;

    if (needNormals != normals) {
        setClientState(GL_NORMAL_ARRAY, needNormals);
        if (!needNormals)
            glNormal3f(0, 0, 1);
    }
    if (needColors != colors)
        setClientState(GL_COLOR_ARRAY, needColors);
    if (needDepths != fogDepths)
        setClientState(GL_FOG_COORD_ARRAY, needDepths);
    for (UInt32 unit = 0; (needUnits ^ units) >> unit; ++unit) {
        if (((needUnits ^ units) >> unit & 1) == 0)
            continue;
        glClientActiveTexture(GL_TEXTURE0 + unit);
        setClientState(GL_TEXTURE_COORD_ARRAY, needUnits >> unit & 1);
    }
    normals = needNormals;
    colors = needColors;
    fogDepths = needDepths;
    units = needUnits;
}

void GLGeometry::build(const Geometry& geometry, Real32 alpha)
{
    const Mesh mesh(geometry, alpha);
    _isSequence = false;
    _layout = mesh.layout;
    _bakedAlpha = geometry.getColors() && !geometry.getColors()->hasAlpha();
    _alpha = alpha;
    _points = {0, static_cast<UInt32>(mesh.points.size())};
    _lines = {_points.count, static_cast<UInt32>(mesh.lines.size())};
    _triangles = {_lines.first + _lines.count, static_cast<UInt32>(mesh.triangles.size())};
    _shortIndices = mesh.vertexCount <= 0x10000;

    if (!_buffers[0])
        glGenBuffers(2, _buffers);
    glBindBuffer(GL_ARRAY_BUFFER, _buffers[0]);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(mesh.vertices.size()), mesh.vertices.data(),
                 GL_STATIC_DRAW);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _buffers[1]);
    if (_points.count == 0 && _lines.count == 0) {
        // Faces that share no vertex need no list; drivers take them faster without.
        _isSequence = isSequence(mesh.triangles);
        sendIndices(_isSequence ? std::vector<UInt32>() : mesh.triangles, _shortIndices);
        return;
    }
    std::vector<UInt32> indices = mesh.points;
    indices.insert(indices.end(), mesh.lines.begin(), mesh.lines.end());
    indices.insert(indices.end(), mesh.triangles.begin(), mesh.triangles.end());
    sendIndices(indices, _shortIndices);
}

void GLGeometry::free()
{
    if (_buffers[0])
        glDeleteBuffers(2, _buffers);
    _buffers[0] = _buffers[1] = 0;
}

void GLGeometry::bind(VertexArrays& arrays, const TexCoordSets& wanted, UInt32 unitCount) const
{
    glBindBuffer(GL_ARRAY_BUFFER, _buffers[0]);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, _buffers[1]);
    arrays.enable(&_layout, wanted, unitCount);
    const GLsizei stride = static_cast<GLsizei>(_layout.stride);
    glVertexPointer(3, GL_FLOAT, stride, at(0));
    if (arrays.normals)
        glNormalPointer(GL_FLOAT, stride, at(_layout.normal));
    if (arrays.colors)
        glColorPointer(4, GL_UNSIGNED_BYTE, stride, at(_layout.color));
    if (arrays.fogDepths)
        glFogCoordPointer(GL_FLOAT, stride, at(_layout.fogDepth));
    for (UInt32 unit = 0; arrays.units >> unit; ++unit) {
        if ((arrays.units >> unit & 1) == 0)
            continue;
        glClientActiveTexture(GL_TEXTURE0 + unit);
        const UInt32 set = _layout.setFor(unit, wanted);
        glTexCoordPointer(static_cast<GLint>(_layout.dimensions[set]), GL_FLOAT, stride,
                          at(_layout.texCoords[set]));
    }
}

UInt32 GLGeometry::bindAttributes(const std::function<Int32(const std::string&)>& placeOf) const
{
    UInt32 arrays = 0;
    glBindBuffer(GL_ARRAY_BUFFER, _buffers[0]);
    for (const VertexLayout::Attribute& attribute : _layout.attributes) {
        const Int32 first = placeOf(attribute.name);
        for (UInt32 column = 0; first >= 0 && column < attribute.columns; ++column) {
            const GLuint place = static_cast<GLuint>(first) + column;
            glVertexAttribPointer(place, static_cast<GLint>(attribute.rows), GL_FLOAT, GL_FALSE,
                                  static_cast<GLsizei>(_layout.stride),
                                  at(attribute.offset + column * attribute.rows * UInt32(sizeof(Real32))));
            glEnableVertexAttribArray(place);
            arrays |= 1U << place;
        }
    }
    return arrays;
}

void GLGeometry::draw(RenderStatistics& statistics) const
{
    const auto drawRange = [&](GLenum mode, const Range& range) {
        if (range.count == 0)
            return;
        const UInt32 size = _shortIndices ? sizeof(UInt16) : sizeof(UInt32);
        if (_isSequence)
            glDrawArrays(mode, 0, static_cast<GLsizei>(range.count));
        else
            glDrawElements(mode, static_cast<GLsizei>(range.count),
                           _shortIndices ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT,
                           reinterpret_cast<const void*>(std::uintptr_t(range.first) * size));
        ++statistics.drawCalls;
    };
    drawRange(GL_TRIANGLES, _triangles);
    drawRange(GL_LINES, _lines);
    drawRange(GL_POINTS, _points);
    statistics.triangles += _triangles.count / 3;
    statistics.lines += _lines.count / 2;
    statistics.points += _points.count;
}

} // namespace osg
