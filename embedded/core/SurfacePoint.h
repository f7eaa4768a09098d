#pragma once

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

} // namespace Orvane
