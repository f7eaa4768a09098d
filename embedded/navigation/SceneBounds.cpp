#include "navigation/SceneBounds.h"

#include "core/SceneLayer.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

constexpr double farthest = 1e15;

template <class Visit>
void forEachCorner(const SceneBounds& bounds, const Pose& camera, Visit visit)
{
    const Pose toCamera = camera.inverse();
    const osg::Vec3d half = (bounds.high - bounds.low) * 0.5;
    for (unsigned int corner = 0; corner < 8; ++corner) {
        const osg::Vec3d arm((corner & 1U) ? half[0] : -half[0], (corner & 2U) ? half[1] : -half[1],
                             (corner & 4U) ? half[2] : -half[2]);
        visit(toCamera.turned(arm));
    }
}

} // namespace

SceneBounds SceneBounds::of(SceneLayer& scene)
{
    return of(scene.root()->getVolume(true));
}

SceneBounds SceneBounds::of(const osg::DynamicVolume& volume)
{
    SceneBounds result;
    if (!volume.isValid() || volume.isEmpty())
        return result;
    osg::Pnt3f low;
    osg::Pnt3f high;
    volume.getBounds(low, high);
    for (osg::UInt32 i = 0; i < 3; ++i) {
        result.low[i] = static_cast<double>(low[i]);
        result.high[i] = static_cast<double>(high[i]);
        if (!(result.low[i] <= result.high[i]) || !(result.low[i] > -farthest) ||
            !(result.high[i] < farthest))
            return result;
    }
    result.isEmpty = false;
    return result;
}

double SceneBounds::viewingDistance(const Pose& camera, double sideways, double upwards) const
{
    double distance = 0.0;
    forEachCorner(*this, camera, [&](const osg::Vec3d& corner) {
        const double needed = std::max(std::abs(corner[0]) / sideways, std::abs(corner[1]) / upwards);
        distance = std::max(distance, needed + corner[2]);
    });
    return distance;
}

osg::Vec2d SceneBounds::halfSize(const Pose& camera) const
{
    osg::Vec2d half;
    forEachCorner(*this, camera, [&](const osg::Vec3d& corner) {
        half[0] = std::max(half[0], std::abs(corner[0]));
        half[1] = std::max(half[1], std::abs(corner[1]));
    });
    return half;
}

} // namespace Orvane
