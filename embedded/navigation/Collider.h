#pragma once

#include "navigation/NavigationSettings.h"
#include "navigation/Pose.h"

namespace Orvane {

class SceneLayer;
struct SceneHit;

/// Keeps an avatar out of walls and on the floor, by rays into what of the scene is an obstacle. Tells those
/// `Collision` nodes whose content it runs into.
class Collider
{
public:
    Collider(SceneLayer& scene, const NavigationSettings& avatar, double time);

    /// The part of a step that is free: up to the avatar's radius in front of an obstacle, and along it from
    /// there. With \a upright the whole body counts down to the height of a step, else the eye alone.
    osg::Vec3d allowed(const osg::Vec3d& eye, const osg::Vec3d& step, const osg::Vec3d& up,
                       bool upright) const;

    /// How far below the eye the floor lies. False when there is none.
    bool findFloor(const osg::Vec3d& eye, const osg::Vec3d& up, double& distance) const;

private:
    bool castRay(const osg::Vec3d& from, const osg::Vec3d& direction, SceneHit& hit) const;
    bool findObstacle(const osg::Vec3d& eye, const osg::Vec3d& direction, const osg::Vec3d& up, bool upright,
                      SceneHit& nearest) const;

    SceneLayer& _scene;
    double _radius;
    double _height;
    double _stepHeight;
    double _time;
};

} // namespace Orvane
