#pragma once

#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/NodeProc.h>
#include <vector>

namespace Orvane {

/// Processing object of a scene.
class ORVANE_API SceneBaseNodeProc : public NodeProc
{
public:
    ~SceneBaseNodeProc() override;

    /// Casts a ray in world coordinates. True on a hit; \a nodes then holds the chain from the scene down to
    /// the shape. Of the other results those that are not null are filled: hit point and normal in world
    /// coordinates, the OpenSG node of the geometry, the triangle's number for `osg::TriangleIterator::seek`,
    /// and the distance along the ray.
    bool pick(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point, osg::Vec3f* normal,
              osg::NodePtr* osgNode, unsigned int* triangle, float* distance);

protected:
    explicit SceneBaseNodeProc(Node* scene);
};

} // namespace Orvane
