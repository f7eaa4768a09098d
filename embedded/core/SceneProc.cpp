#include "core/SceneProc.h"
#include "core/EnvironmentProcs.h"
#include "core/NormalGenerator.h"
#include "core/ViewpointProc.h"
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <Orvane/MFNode.h>
#include <memory>

namespace Orvane {

namespace {

const ProcRegistration registration("Scene", makeProc<SceneProc>);

/// The chain from a scene to the node that shows the end of a path through OpenSG's graph.
std::vector<Node*> chainOf(SceneProc& scene, const osg::MFNodePtr& path)
{
    std::vector<Node*> chain{&scene.node()};
    const GroupProc* group = &scene;
    for (const osg::NodePtr& step : path) {
        Node* const child = group->childOf(step);
        if (!child)
            continue; // a light, or the root of a tree
        appendResolved(child, chain);
        group = procAs<GroupProc>(chain.back());
        if (!group)
            break;
    }
    return chain;
}

osg::Vec3f worldNormal(const osg::Vec3f& normal, const osg::Matrix& toWorld)
{
    osg::Matrix inverse;
    toWorld.inverse(inverse);
    osg::Vec3f result;
    for (osg::UInt32 i = 0; i < 3; ++i)
        result[i] = inverse[i][0] * normal[0] + inverse[i][1] * normal[1] + inverse[i][2] * normal[2];
    return unitVector(result);
}

} // namespace

SceneProc::SceneProc(Node& scene)
    : SceneBaseNodeProc(&scene)
    , GroupProc(scene)
    , _state(SceneState::of(scene))
    , _background(osg::BackgroundPtr(osg::SolidBackground::create()))
{
    _state->setScene(this);
}

SceneProc::~SceneProc()
{
    _state->setScene(nullptr);
}

void SceneProc::start(double time)
{
    GroupProc::start(time);
    for (const BindableKind kind :
         {BindableKind::Viewpoint, BindableKind::NavigationInfo, BindableKind::Background, BindableKind::Fog})
        _state->stack(kind).open(time);
    askForLights();
}

void SceneProc::collectLights(std::vector<osg::NodeCorePtr>& lights) const
{
    _state->collectLights(lights);
}

SceneView SceneProc::view() const
{
    SceneView view;
    view.viewpoint.setTranslate(0.0F, 0.0F, 10.0F);
    view.background = _background;
    if (const auto* viewpoint = static_cast<const ViewpointProc*>(stack(BindableKind::Viewpoint).bound()))
        viewpoint->describe(view);
    if (const auto* info =
            static_cast<const NavigationInfoProc*>(stack(BindableKind::NavigationInfo).bound()))
        info->describe(view);
    if (const auto* background = static_cast<const BackgroundProc*>(stack(BindableKind::Background).bound()))
        view.background = background->background();
    return view;
}

bool SceneProc::castRay(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point,
                        osg::Vec3f* normal, osg::NodePtr* osgNode, unsigned int* triangle, float* distance)
{
    const std::unique_ptr<osg::IntersectAction> action(osg::IntersectAction::create(ray));
    action->apply(root());
    if (!action->didHit())
        return false;
    nodes = chainOf(*this, action->getHitPath());
    if (point)
        *point = action->getHitPoint();
    if (normal)
        *normal = worldNormal(action->getHitNormal(), action->getHitToWorld());
    if (triangle)
        *triangle = static_cast<unsigned int>(action->getHitTriangle());
    if (distance)
        *distance = action->getHitT();
    if (!osgNode)
        return true;
    *osgNode = action->getHitObject();
    if ((*osgNode)->getToWorld() == action->getHitToWorld())
        return true;
    // Hit in another place than the one where its tree stands.
    const osg::TransformPtr transform = osg::Transform::create();
    transform->setMatrix(action->getHitToWorld());
    _probe = osg::makeNodeFor(transform);
    const osg::NodePtr geometry = osg::makeNodeFor((*osgNode)->getCore());
    _probe->addChild(geometry);
    *osgNode = geometry;
    return true;
}

} // namespace Orvane
