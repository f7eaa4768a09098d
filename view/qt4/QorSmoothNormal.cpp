#include "QorSmoothNormal.h"

#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGTriangleIterator.h>
#include <cmath>

namespace Orvane::Qt4 {

namespace {

/// The node's matrix to the world, inverted; the identity when it cannot be.
osg::Matrix worldToObject(const osg::NodePtr& node)
{
    osg::Matrix inverse;
    node->getToWorld().inverse(inverse);
    return inverse;
}

osg::Vec3f normalised(const osg::Vec3f& vector)
{
    const float length = vector.length();
    return vector * (std::abs(length) < 1e-6F ? 1.0F : 1.0F / length);
}

} // namespace

osg::Vec3f smoothNormal(const osg::Line& ray, const osg::NodePtr& node, unsigned int triangle,
                        const osg::Vec3f& fallback)
{
    if (!node || !osg::GeometryPtr::dcast(node->getCore()))
        return fallback;
    osg::TriangleIterator corners(node);
    corners.seek(static_cast<osg::Int32>(triangle));
    if (corners.isAtEnd())
        return fallback;

    const osg::Matrix toObject = worldToObject(node);
    osg::Pnt3f origin;
    osg::Vec3f direction;
    toObject.multMatrixPnt(ray.getPosition(), origin);
    toObject.multMatrixVec(ray.getDirection(), direction);

    // The ray's place in the triangle, as weights of its second and third corner.
    const osg::Pnt3f first = corners.getPosition(0);
    const osg::Vec3f e1 = corners.getPosition(1) - first;
    const osg::Vec3f e2 = corners.getPosition(2) - first;
    const osg::Vec3f s = origin - first;
    const float a = -direction.dot(e1.cross(e2));
    if (a == 0.0F)
        return fallback;
    const float u = -direction.dot(s.cross(e2)) / a;
    const float v = -direction.dot(e1.cross(s)) / a;
    const osg::Vec3f smooth =
        corners.getNormal(0) * (1.0F - u - v) + corners.getNormal(1) * u + corners.getNormal(2) * v;

    // Normals go by the transposed inverse.
    osg::Matrix normalMatrix = worldToObject(node);
    normalMatrix.transpose();
    osg::Vec3f world;
    normalMatrix.multMatrixVec(smooth, world);
    // Coordinates that are no numbers give no direction.
    return std::isfinite(world.length()) ? normalised(world) : fallback;
}

} // namespace Orvane::Qt4
