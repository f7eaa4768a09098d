#pragma once

#include "CoreScene.h"
#include "core/ShapeProc.h"
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <vector>

// What the shape called S of a scene draws.

inline osg::GeometryPtr geometryOf(const CoreScene& scene, const char* name = "S")
{
    return osg::GeometryPtr::dcast(scene.procOf<Orvane::ShapeProc>(name).tree()->getChild(0)->getCore());
}

struct DrawnTriangle
{
    osg::Pnt3f corners[3];
    osg::Vec3f normals[3]; ///< as they are given
    osg::Vec2f texCoords[3];

    /// Of twice the area in length, towards the side from which the corners run anticlockwise.
    osg::Vec3f facing() const { return (corners[1] - corners[0]).cross(corners[2] - corners[0]); }
};

inline std::vector<DrawnTriangle> trianglesOf(const CoreScene& scene)
{
    std::vector<DrawnTriangle> triangles;
    const osg::GeometryPtr geometry = geometryOf(scene);
    for (osg::TriangleIterator i = geometry->beginTriangles(); !i.isAtEnd(); ++i) {
        DrawnTriangle triangle;
        for (int corner = 0; corner < 3; ++corner) {
            triangle.corners[corner] = i.getPosition(corner);
            if (geometry->getNormals())
                triangle.normals[corner] = i.getNormal(corner);
            if (geometry->getTexCoords())
                triangle.texCoords[corner] = i.getTexCoords(corner);
        }
        triangles.push_back(triangle);
    }
    return triangles;
}

/// Area of all triangles, each counted by what looks along \a direction; what looks the other way counts
/// against.
inline float areaTowards(const std::vector<DrawnTriangle>& triangles, const osg::Vec3f& direction)
{
    float area = 0.0F;
    for (const DrawnTriangle& triangle : triangles)
        area += 0.5F * triangle.facing().dot(direction);
    return area;
}

/// Six times the volume that the triangles enclose is the sum of their corners' determinants; positive when
/// they look outwards.
inline float volumeOf(const std::vector<DrawnTriangle>& triangles)
{
    float sum = 0.0F;
    for (const DrawnTriangle& triangle : triangles) {
        const osg::Pnt3f origin;
        sum += (triangle.corners[0] - origin)
                   .dot((triangle.corners[1] - origin).cross(triangle.corners[2] - origin));
    }
    return sum / 6.0F;
}
