#include "base/NodeClass.h"
#include "core/SceneProc.h"
#include <Orvane/Scene.h>

namespace Orvane {

NodeType Scene::_type("Scene");

namespace {

class SceneNode : public Scene
{
};

const NodeClassRegistration registration("Scene", makeNodeClass<SceneNode>);

} // namespace

Scene::Scene() = default;

Scene::~Scene() = default;

Scene* Scene::create(BaseObject* owner, const char* name, NodeCreator creator)
{
    return static_cast<Scene*>(createRoot(owner, "Scene", name, creator));
}

SceneBaseNode::SceneBaseNode() = default;

SceneBaseNode::~SceneBaseNode() = default;

SceneBaseNodeProc* SceneBaseNode::getSceneBaseNodeProc()
{
    return procAs<SceneProc>(this);
}

SceneBaseNodeProc::SceneBaseNodeProc(Node* scene)
    : NodeProc(scene)
{
}

SceneBaseNodeProc::~SceneBaseNodeProc() = default;

bool SceneBaseNodeProc::pick(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point,
                             osg::Vec3f* normal, osg::NodePtr* osgNode, unsigned int* triangle,
                             float* distance)
{
    auto* const scene = procAs<SceneProc>(_node);
    return scene && scene->castRay(ray, nodes, point, normal, osgNode, triangle, distance);
}

} // namespace Orvane
