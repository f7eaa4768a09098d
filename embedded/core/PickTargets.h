#pragma once

#include "core/PickFilter.h"
#include <OpenSG/OSGBoxVolume.h>
#include <OpenSG/OSGGeometry.h>
#include <OpenSG/OSGMatrix.h>
#include <Orvane/Export.h>
#include <unordered_set>
#include <vector>

namespace Orvane {

class ElementProc;
class MFNode;
class Node;
class SceneLayer;

/// A shape at one of its places, as a pick sensor meets it.
struct PickTarget
{
    Node* shape;
    osg::GeometryPtr geometry;
    osg::Matrix4d toSensor; ///< from the system of the geometry
    osg::Matrix4d toOwn;    ///< and back

    /// The box round the geometry, in its own system.
    const osg::BoxVolume& box() const { return geometry->getBox(); }
};

/// What a pick sensor looks for: the shapes below some nodes that are drawn, where they stand in its layer.
class ORVANE_API PickTargets
{
public:
    PickTargets(const MFNode& targets, const PickFilter& filter);

    /// Adds the shapes whose bounds reach into \a region, a box in the system of the sensor, to which \a
    /// toSensor leads from the world. False when there were too many to go through.
    bool collect(SceneLayer& layer, const osg::Matrix4d& toSensor, const osg::BoxVolume& region,
                 std::vector<PickTarget>& found) const;

private:
    const PickFilter& _filter;
    std::unordered_set<const ElementProc*> _targets;
    std::unordered_set<const ElementProc*> _above; ///< and the targets themselves
};

/// The box round a box in another system.
ORVANE_API osg::BoxVolume boxIn(const osg::Matrix4d& matrix, const osg::BoxVolume& box);

} // namespace Orvane
