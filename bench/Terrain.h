#pragma once

#include <OpenSG/OSGGeometry.h>

#include <cmath>

/// A hilly grid of `size` x `size` squares, two triangles each, of indexed vertices with normals.
inline osg::GeometryPtr makeTerrain(int size)
{
    const osg::GeometryPtr geometry = osg::Geometry::create();
    const osg::GeoPositionsPtr positions = osg::GeoPositions::create();
    const osg::GeoNormalsPtr normals = osg::GeoNormals::create();
    const osg::GeoIndicesPtr indices = osg::GeoIndices::create();
    for (int y = 0; y <= size; ++y) {
        for (int x = 0; x <= size; ++x) {
            const float height =
                8 * std::sin(0.07F * static_cast<float>(x)) * std::cos(0.05F * static_cast<float>(y));
            positions->push_back(osg::Pnt3f(x, y, height));
            normals->push_back(osg::Vec3f(0, 0, 1));
        }
    }
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const auto corner = static_cast<osg::UInt32>(y * (size + 1) + x);
            const auto above = corner + static_cast<osg::UInt32>(size) + 1;
            for (osg::UInt32 index : {corner, corner + 1, above + 1, corner, above + 1, above})
                indices->push_back(index);
        }
    }
    const osg::GeoPTypesPtr types = osg::GeoPTypes::create();
    types->push_back(osg::Geometry::TRIANGLES);
    geometry->setTypes(types);
    geometry->setPositions(positions);
    geometry->setNormals(normals);
    geometry->setIndices(indices);
    return geometry;
}
