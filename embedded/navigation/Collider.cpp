#include "navigation/Collider.h"

#include "core/Part.h"
#include "core/SceneProc.h"
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part enabledPart("enabled");

/// So many surfaces that are no obstacle may stand one behind the other.
constexpr int mostPassed = 32;
/// A step is broken by at most so many surfaces, as by the two walls of a corner.
constexpr int mostSlides = 3;

bool isObstacle(const std::vector<Node*>& chain)
{
    return std::none_of(chain.begin(), chain.end(), [](const Node* node) {
        return isOfType(*node->type(), "Collision") && enabledPart.isIn(*node) &&
               !enabledPart.read<SFBool>(*node).value();
    });
}

osg::Pnt3f toPoint(const osg::Vec3d& v)
{
    return osg::Pnt3f(static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2]));
}

} // namespace

Collider::Collider(SceneProc& scene, const NavigationSettings& avatar)
    : _scene(scene)
    , _radius(avatar.avatarRadius)
    , _height(avatar.avatarHeight)
    , _stepHeight(avatar.stepHeight)
{
}

bool Collider::castRay(const osg::Vec3d& from, const osg::Vec3d& direction, Obstacle& obstacle) const
{
    const osg::Pnt3f turned = toPoint(direction);
    double passed = 0.0;
    for (int i = 0; i < mostPassed; ++i) {
        const osg::Line ray(toPoint(from + direction * passed), osg::Vec3f(turned[0], turned[1], turned[2]));
        std::vector<Node*> chain;
        osg::Vec3f normal;
        float distance = 0.0F;
        if (!_scene.castRay(ray, chain, nullptr, &normal, nullptr, nullptr, &distance) ||
            !std::isfinite(distance))
            return false;
        if (isObstacle(chain)) {
            obstacle = {passed + static_cast<double>(distance), osg::Vec3d(normal[0], normal[1], normal[2])};
            return true;
        }
        passed += static_cast<double>(distance) + _radius * 0.01;
    }
    return false;
}

bool Collider::findObstacle(const osg::Vec3d& eye, const osg::Vec3d& direction, const osg::Vec3d& up,
                            bool upright, Obstacle& nearest) const
{
    const double knee = std::max(_height - _stepHeight * 1.001, 0.0);
    const double depths[] = {0.0, knee * 0.5, knee};
    const int count = upright ? 3 : 1;
    bool found = false;
    for (int i = 0; i < count; ++i) {
        Obstacle obstacle{};
        if (castRay(eye - up * depths[i], direction, obstacle) &&
            (!found || obstacle.distance < nearest.distance)) {
            nearest = obstacle;
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
        Obstacle obstacle{};
        if (!findObstacle(eye + gone, direction, up, upright, obstacle))
            return gone + left;
        const double free = std::max(obstacle.distance - _radius, 0.0);
        if (length <= free)
            return gone + left;
        gone = gone + direction * free;
        left = left - direction * free;
        left = left - obstacle.normal * left.dot(obstacle.normal);
        if (upright)
            left = left - up * left.dot(up);
    }
    return gone;
}

bool Collider::findFloor(const osg::Vec3d& eye, const osg::Vec3d& up, double& distance) const
{
    Obstacle floor{};
    if (!castRay(eye, -up, floor))
        return false;
    distance = floor.distance;
    return true;
}

} // namespace Orvane
