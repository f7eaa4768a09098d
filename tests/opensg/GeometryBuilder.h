#pragma once

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGNode.h>

#include <initializer_list>

/// Short ways to make geometries for tests.
namespace GeometryBuilder {

struct Primitive
{
    osg::UInt8 type;
    osg::UInt32 length;
};

inline void setPrimitives(const osg::GeometryPtr& geometry, std::initializer_list<Primitive> primitives)
{
    const osg::GeoPTypesPtr types = osg::GeoPTypes::create();
    const osg::GeoPLengthsPtr lengths = osg::GeoPLengths::create();
    for (const Primitive& primitive : primitives) {
        types->push_back(primitive.type);
        lengths->push_back(primitive.length);
    }
    geometry->setTypes(types);
    geometry->setLengths(lengths);
}

inline osg::GeoPositionsPtr positions(std::initializer_list<osg::Pnt3f> values)
{
    const osg::GeoPositionsPtr result = osg::GeoPositions::create();
    result->editField() = values;
    return result;
}

inline osg::GeoIndicesPtr indices(std::initializer_list<osg::UInt32> values)
{
    const osg::GeoIndicesPtr result = osg::GeoIndices::create();
    result->editField() = values;
    return result;
}

/// A geometry of one primitive.
inline osg::GeometryPtr make(osg::UInt8 type, std::initializer_list<osg::Pnt3f> points)
{
    const osg::GeometryPtr geometry = osg::Geometry::create();
    geometry->setPositions(positions(points));
    setPrimitives(geometry, {{type, static_cast<osg::UInt32>(points.size())}});
    return geometry;
}

/// A square in the plane z = `z`, from -`half` to `half`, that faces +z, with normals and texture
/// coordinates.
inline osg::GeometryPtr square(float half = 1, float z = 0)
{
    const osg::GeometryPtr geometry =
        make(osg::Geometry::QUADS, {{-half, -half, z}, {half, -half, z}, {half, half, z}, {-half, half, z}});
    const osg::GeoNormalsPtr normals = osg::GeoNormals::create();
    normals->editField().assign(4, osg::Vec3f(0, 0, 1));
    geometry->setNormals(normals);
    const osg::GeoTexCoordsPtr texCoords = osg::GeoTexCoords::create();
    for (const osg::Vec2f& corner : {osg::Vec2f(0, 0), osg::Vec2f(1, 0), osg::Vec2f(1, 1), osg::Vec2f(0, 1)})
        texCoords->addValue(corner);
    geometry->setTexCoords(texCoords);
    return geometry;
}

/// A cube from -`half` to `half` in all directions, with normals, counter-clockwise from outside.
inline osg::GeometryPtr box(float half = 1)
{
    const osg::GeometryPtr geometry = osg::Geometry::create();
    const osg::GeoPositionsPtr points = osg::GeoPositions::create();
    const osg::GeoNormalsPtr normals = osg::GeoNormals::create();
    for (osg::UInt32 axis = 0; axis < 3; ++axis) {
        for (float side : {-1.f, 1.f}) {
            osg::Vec3f normal;
            osg::Vec3f u;
            normal[axis] = side;
            u[(axis + 1) % 3] = 1;
            const osg::Vec3f v = normal.cross(u);
            for (const osg::Vec3f& corner : {-u - v, u - v, u + v, -u + v}) {
                points->push_back(osg::Pnt3f((normal + corner) * half));
                normals->push_back(normal);
            }
        }
    }
    geometry->setPositions(points);
    geometry->setNormals(normals);
    setPrimitives(geometry, {{osg::Geometry::QUADS, 24}});
    return geometry;
}

} // namespace GeometryBuilder
