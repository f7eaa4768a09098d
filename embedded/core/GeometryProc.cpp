#include "core/GeometryProc.h"
#include "core/MeshBuilder.h"
#include <limits>

namespace Orvane {

namespace {

/// Vertices of one drawing call; OpenGL counts them in 32 bits.
constexpr std::size_t MaxVertices = std::numeric_limits<osg::UInt32>::max() / 2;

void setTexCoords(const osg::GeometryPtr& geometry, MeshData&& mesh)
{
    const auto made = [](unsigned int dimension, std::vector<float>&& values) {
        osg::GeoTexCoordsPtr texCoords;
        if (!values.empty()) {
            texCoords = osg::GeoTexCoords::create(dimension);
            texCoords->editField() = std::move(values);
        }
        return texCoords;
    };
    const std::size_t sets = mesh.texCoordSets.size();
    geometry->setTexCoords(sets > 0
                               ? made(mesh.texCoordSets[0].dimension, std::move(mesh.texCoordSets[0].values))
                               : made(2, std::move(mesh.texCoords)));
    for (osg::UInt32 i = 1; i < osg::Geometry::MaxTexCoords; ++i)
        geometry->setTexCoords(
            i < sets ? made(mesh.texCoordSets[i].dimension, std::move(mesh.texCoordSets[i].values))
                     : osg::GeoTexCoordsPtr(),
            i);
}

} // namespace

osg::GeometryPtr makeGeometry()
{
    const osg::GeometryPtr geometry = osg::Geometry::create();
    geometry->setTypes(osg::GeoPTypes::create());
    geometry->setLengths(osg::GeoPLengths::create());
    geometry->setPositions(osg::GeoPositions::create());
    return geometry;
}

void setMesh(const osg::GeometryPtr& geometry, MeshData&& mesh, Surface::Kind kind, bool hasAlpha)
{
    static constexpr osg::UInt8 Types[] = {osg::Geometry::TRIANGLES, osg::Geometry::LINES,
                                           osg::Geometry::POINTS};
    const std::size_t count = mesh.indices.empty() ? mesh.positions.size() : mesh.indices.size();
    const bool any = count > 0 && count < MaxVertices;
    osg::beginEditCP(geometry);
    geometry->getTypes()->editField().assign(any ? 1 : 0, Types[kind]);
    geometry->getLengths()->editField().assign(any ? 1 : 0, static_cast<osg::UInt32>(count));
    geometry->getPositions()->editField() = std::move(mesh.positions);
    osg::GeoNormalsPtr normals;
    if (!mesh.normals.empty()) {
        normals = osg::GeoNormals::create();
        normals->editField() = std::move(mesh.normals);
    }
    geometry->setNormals(normals);
    osg::GeoColorsPtr colors;
    if (!mesh.colors.empty()) {
        colors = osg::GeoColors::create();
        colors->editField() = std::move(mesh.colors);
        colors->setHasAlpha(hasAlpha);
    }
    geometry->setColors(colors);
    setTexCoords(geometry, std::move(mesh));
    osg::GeoIndicesPtr indices;
    if (!mesh.indices.empty()) {
        indices = osg::GeoIndices::create();
        indices->editField() = std::move(mesh.indices);
    }
    geometry->setIndices(indices);
    osg::endEditCP(geometry);
}

const std::vector<TexChannel>& GeometryProc::texChannels() const
{
    static const std::vector<TexChannel> none;
    return none;
}

MeshProc::MeshProc(Node& node)
    : GeometryProc(node)
    , _geometry(makeGeometry())
{
}

void MeshProc::show(MeshData&& mesh, bool hasAlpha)
{
    _hasColors = !mesh.colors.empty();
    setMesh(_geometry, std::move(mesh), kind(), hasAlpha);
    if (_needsTexCoords)
        addTexCoords();
    changed();
    pictureChanged();
}

void MeshProc::needTexCoords()
{
    if (_needsTexCoords)
        return;
    _needsTexCoords = true;
    addTexCoords();
}

void MeshProc::addTexCoords()
{
    if (_geometry->getTexCoords() || kind() != Surface::FACES || _geometry->getPositions()->getSize() == 0)
        return;
    const osg::GeoTexCoordsPtr texCoords = osg::GeoTexCoords::create();
    texCoords->editField() = defaultTexCoords(_geometry->getPositions()->getField());
    osg::beginEditCP(_geometry.get(), osg::Geometry::TexCoordsFieldMask);
    _geometry->setTexCoords(texCoords);
    osg::endEditCP(_geometry.get(), osg::Geometry::TexCoordsFieldMask);
}

} // namespace Orvane
