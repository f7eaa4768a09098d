#include "core/SurfacePoint.h"
#include "core/NormalGenerator.h"
#include "core/SceneHit.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGTriangleIterator.h>

namespace Orvane {

namespace {

/// How much of each corner of a triangle is in a place on it; all of the first one for a triangle without
/// area.
osg::Vec3d weightsAt(const osg::TriangleIterator& triangle, const osg::Pnt3d& place)
{
    const osg::Pnt3d first(triangle.getPosition(0));
    const osg::Vec3d a = osg::Pnt3d(triangle.getPosition(1)) - first;
    const osg::Vec3d b = osg::Pnt3d(triangle.getPosition(2)) - first;
    const osg::Vec3d p = place - first;
    const double aa = a.dot(a);
    const double ab = a.dot(b);
    const double bb = b.dot(b);
    const double det = aa * bb - ab * ab;
    if (!(det > 0.0))
        return {1.0, 0.0, 0.0};
    const double v = (p.dot(a) * bb - p.dot(b) * ab) / det;
    const double w = (p.dot(b) * aa - p.dot(a) * ab) / det;
    return {1.0 - v - w, v, w};
}

} // namespace

osg::Vec3f worldNormal(const osg::Vec3f& normal, const osg::Matrix& toWorld)
{
    osg::Matrix inverse;
    toWorld.inverse(inverse);
    osg::Vec3f result;
    inverse.multVecMatrix(normal, result);
    return unitVector(result);
}

SurfacePoint surfaceAt(const SceneHit& hit)
{
    const osg::GeometryPtr geometry = osg::GeometryPtr::dcast(hit.geometry->getCore());
    return surfaceAt(geometry, hit.triangle, hit.toWorld, hit.point, hit.normal);
}

SurfacePoint surfaceAt(const osg::GeometryPtr& geometry, osg::Int32 which, const osg::Matrix& toWorld,
                       const osg::Pnt3f& point, const osg::Vec3f& flat)
{
    SurfacePoint result;
    result.normal = flat;
    if (!geometry)
        return result;
    osg::TriangleIterator triangle(geometry);
    triangle.seek(which);
    if (triangle.isAtEnd())
        return result;
    osg::Matrix toLocal;
    toWorld.inverse(toLocal);
    osg::Pnt3f place;
    toLocal.multMatrixPnt(point, place);
    const osg::Vec3d weights = weightsAt(triangle, osg::Pnt3d(place));
    osg::Vec3d normal;
    osg::Vec2d texCoord;
    for (osg::Int32 corner = 0; corner < 3; ++corner) {
        const double weight = weights[static_cast<osg::UInt32>(corner)];
        normal += osg::Vec3d(triangle.getNormal(corner)) * weight;
        texCoord += osg::Vec2d(triangle.getTexCoords(corner)) * weight;
    }
    const osg::Vec3f smooth = worldNormal(osg::Vec3f(normal), toWorld);
    if (triangle.getNormalIndex(0) >= 0 && isUsable(smooth) && !isNull(smooth))
        result.normal = smooth;
    result.hasTexCoord = triangle.getTexCoordsIndex(0) >= 0 && isDrawable(float(texCoord[0])) &&
                         isDrawable(float(texCoord[1]));
    result.texCoord = osg::Vec2f(texCoord);
    return result;
}

} // namespace Orvane
