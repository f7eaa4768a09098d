#include "navigation/Collider.h"

#include "core/SceneHit.h"
#include "core/SceneLayer.h"
#include <OpenSG/OSGLine.h>
#include <algorithm>
#include <cmath>
#include <utility>

namespace Orvane {

namespace {

/// A step is broken by at most so many surfaces, as by the two walls of a corner.
constexpr int mostSlides = 3;

osg::Pnt3f toPoint(const osg::Vec3d& v)
{
    return osg::Pnt3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
}

} // namespace

Collider::Collider(SceneLayer& scene, const NavigationSettings& avatar, double time)
    : _scene(scene)
    , _radius(avatar.avatarRadius)
    , _height(avatar.avatarHeight)
    , _stepHeight(avatar.stepHeight)
    , _time(time)
{
}

bool Collider::castRay(const osg::Vec3d& from, const osg::Vec3d& direction, SceneHit& hit) const
{
    const osg::Pnt3f turned = toPoint(direction);
    const osg::Line ray(toPoint(from), osg::Vec3f(turned[0], turned[1], turned[2]));
    return _scene.castRay(ray, hit, ObstacleTarget) && std::isfinite(hit.distance);
}

bool Collider::findObstacle(const osg::Vec3d& eye, const osg::Vec3d& direction, const osg::Vec3d& up,
                            bool upright, SceneHit& nearest) const
{
    const double knee = std::max(_height - _stepHeight * 1.001, 0.0);
    const double depths[] = {0.0, knee * 0.5, knee};
    const int count = upright ? 3 : 1;
    bool found = false;
    for (int i = 0; i < count; ++i) {
        SceneHit hit;
        if (castRay(eye - up * depths[i], direction, hit) && (!found || hit.distance < nearest.distance)) {
            nearest = std::move(hit);
            found = true;
        }
    }
    return found;
}

osg::Vec3d Collider::allowed(const osg::Vec3d& eye, const osg::Vec3d& step, const osg::Vec3d& up,
                             bool upright) const
{
    osg::Vec3d gone;
    osg::Vec3d left = step;
    for (int slide = 0; slide < mostSlides; ++slide) {
        const double length = left.length();
        if (!(length > _radius * 1e-6))
            break;
        const osg::Vec3d direction = left * (1.0 / length);
        SceneHit obstacle;
        if (!findObstacle(eye + gone, direction, up, upright, obstacle))
            return gone + left;
        const double free = std::max(static_cast<double>(obstacle.distance) - _radius, 0.0);
        if (length <= free)
            return gone + left;
        SceneLayer::collide(obstacle, _time);
        const osg::Vec3d normal(obstacle.normal[0], obstacle.normal[1], obstacle.normal[2]);
        gone = gone + direction * free;
        left = left - direction * free;
        left = left - normal * left.dot(normal);
        if (upright)
            left = left - up * left.dot(up);
    }
    return gone;
}

bool Collider::findFloor(const osg::Vec3d& eye, const osg::Vec3d& up, double& distance) const
{
    SceneHit floor;
    if (!castRay(eye, -up, floor))
        return false;
    distance = static_cast<double>(floor.distance);
    return true;
}

} // namespace Orvane
