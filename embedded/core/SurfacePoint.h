#pragma once

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

namespace Orvane {

struct SceneHit;

/// What a geometry says of a place on it.
struct SurfacePoint
{
    osg::Vec3f normal;   ///< in the world, of length 1; between the vertices' normals, or the triangle's own
    osg::Vec2f texCoord; ///< likewise
    bool hasTexCoord = false;
};

/// A normal of the geometry's system in the world, of length 1; null when there is none.
osg::Vec3f worldNormal(const osg::Vec3f& normal, const osg::Matrix& toWorld);

SurfacePoint surfaceAt(const SceneHit& hit);
/// The same at a place of a triangle, both in the world; the geometry has its own system, and \a flat is the
/// triangle's own normal in the world.
SurfacePoint surfaceAt(const osg::GeometryPtr& geometry, osg::Int32 triangle, const osg::Matrix& toWorld,
                       const osg::Pnt3f& point, const osg::Vec3f& flat);

} // namespace Orvane
