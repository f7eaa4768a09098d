#pragma once

#include "navigation/NavigationSettings.h"
#include "navigation/Pose.h"

namespace Orvane {

class SceneProc;

/// Keeps an avatar out of walls and on the floor, by rays into the scene. What stands below a `Collision`
/// that is switched off is no obstacle.
class Collider
{
public:
    Collider(SceneProc& scene, const NavigationSettings& avatar);

    /// The part of a step that is free: up to the avatar's radius in front of an obstacle, and along it from
    /// there. With \a upright the whole body counts down to the height of a step, else the eye alone.
    osg::Vec3d allowed(const osg::Vec3d& eye, const osg::Vec3d& step, const osg::Vec3d& up,
                       bool upright) const;

    /// How far below the eye the floor lies. False when there is none.
    bool findFloor(const osg::Vec3d& eye, const osg::Vec3d& up, double& distance) const;

private:
    struct Obstacle
    {
        double distance;
        osg::Vec3d normal;
    };

    bool castRay(const osg::Vec3d& from, const osg::Vec3d& direction, Obstacle& obstacle) const;
    bool findObstacle(const osg::Vec3d& eye, const osg::Vec3d& direction, const osg::Vec3d& up, bool upright,
                      Obstacle& nearest) const;

    SceneProc& _scene;
    double _radius;
    double _height;
    double _stepHeight;
};

} // namespace Orvane
