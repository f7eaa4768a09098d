#pragma once

#include "navigation/Pose.h"
#include <OpenSG/OSGDynamicVolume.h>

namespace Orvane {

class SceneLayer;

/// The box around all that a scene shows, in world coordinates.
struct SceneBounds
{
    osg::Vec3d low;
    osg::Vec3d high;
    bool isEmpty = true; ///< nothing is shown, or nowhere that could be looked at

    static SceneBounds of(SceneLayer& scene);
    static SceneBounds of(const osg::DynamicVolume& volume);

    osg::Vec3d center() const { return (low + high) * 0.5; }
    double diagonal() const { return (high - low).length(); }

    /// How far from the centre a camera must stand to see all of the box, with tangents of the half angles of
    /// view to the side and upwards.
    double viewingDistance(const Pose& camera, double sideways, double upwards) const;
    /// Half the size of the box as a camera without perspective sees it, to the side and upwards.
    osg::Vec2d halfSize(const Pose& camera) const;
};

} // namespace Orvane
