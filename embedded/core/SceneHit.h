#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGVector.h>
#include <vector>

namespace Orvane {

class GroupProc;
class Node;

/// What a ray meets first in a scene. The nodes and groups can be looked at until the scene changes.
struct SceneHit
{
    /// A group on the way to the hit, and where its children stand.
    struct Level
    {
        GroupProc* group;
        osg::Matrix toWorld;
    };

    std::vector<Node*> nodes;           ///< from the scene down to the shape
    std::vector<Level> levels;          ///< from the scene down to the group that holds the shape
    osg::Pnt3f point;                   ///< in the world
    osg::Vec3f normal;                  ///< of the triangle's plane, in the world, of length 1
    osg::RefPtr<osg::NodePtr> geometry; ///< has the geometry as its core
    osg::Matrix toWorld;                ///< from the system of the geometry, along the way that the ray took
    int triangle = -1;                  ///< for `osg::TriangleIterator::seek`
    float distance = 0.0F;              ///< along the ray
};

} // namespace Orvane
