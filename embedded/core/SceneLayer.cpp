#include "core/SceneLayer.h"
#include "base/NodeClimb.h"
#include "core/CollisionProc.h"
#include "core/EnvironmentProcs.h"
#include "core/LayerWatcher.h"
#include "core/SurfacePoint.h"
#include "core/ViewpointProc.h"
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGSolidBackground.h>
#include <OpenSG/OSGTransform.h>
#include <Orvane/MFNode.h>
#include <algorithm>
#include <memory>

namespace Orvane {

namespace {

/// Fills the chain of nodes from the scene to the shape at the end of a path through OpenSG's graph, with the
/// groups of the layer that it leads through.
void followPath(SceneLayer& layer, const osg::MFNodePtr& path, SceneHit& hit)
{
    hit.nodes = nodesAbove(layer.node());
    std::reverse(hit.nodes.begin(), hit.nodes.end());
    hit.nodes.push_back(&layer.node());
    hit.levels.clear();
    GroupProc* group = &layer;
    osg::Matrix toWorld;
    for (const osg::NodePtr& step : path) {
        if (Node* const child = group->childOf(step)) {
            hit.levels.push_back({group, toWorld});
            appendResolved(child, hit.nodes);
            group = procAs<GroupProc>(hit.nodes.back());
            if (!group)
                return;
        }
        // Else it is a light, or the root of a tree.
        if (step->getCore())
            step->getCore()->accumulateMatrix(toWorld);
    }
}

} // namespace

SceneLayer::SceneLayer(Node& node, const osg::NodeCorePtr& core)
    : GroupProc(node, core)
    , _state(SceneState::of(node))
    , _background(osg::BackgroundPtr(osg::SolidBackground::create()))
    , _action(osg::IntersectAction::create())
{
    if (!_state)
        _state = std::make_shared<SceneState>(); // runs outside of all scenes
    _state->setLayer(this);
}

SceneLayer::~SceneLayer()
{
    _state->setLayer(nullptr);
}

void SceneLayer::start(double time)
{
    GroupProc::start(time);
    for (const BindableKind kind :
         {BindableKind::Viewpoint, BindableKind::NavigationInfo, BindableKind::Background, BindableKind::Fog})
        _state->stack(kind).open(time);
    askForLights();
}

void SceneLayer::nodesMayMove(Node& group)
{
    if (LayerWatcher::layerCount() == 0)
        return;
    const std::shared_ptr<SceneState> scene = SceneState::ofScene(group);
    if (scene && scene->layer())
        scene->layer()->requestSettle();
}

void SceneLayer::settle(double)
{
    LayerWatcher::tellAll();
}

void SceneLayer::collectLights(std::vector<osg::NodeCorePtr>& lights) const
{
    _state->collectLights(lights);
    if (const auto* fog = static_cast<const FogProc*>(stack(BindableKind::Fog).bound()))
        lights.push_back(fog->core());
}

SceneView SceneLayer::view() const
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

bool SceneLayer::castRay(const osg::Line& ray, SceneHit& hit, RayTarget target)
{
    _action->setTravMask(target);
    _action->setLine(ray);
    _action->apply(root());
    if (!_action->didHit())
        return false;
    followPath(*this, _action->getHitPath(), hit);
    hit.point = _action->getHitPoint();
    hit.normal = worldNormal(_action->getHitNormal(), _action->getHitToWorld());
    hit.geometry = _action->getHitObject();
    hit.toWorld = _action->getHitToWorld();
    hit.triangle = _action->getHitTriangle();
    hit.distance = _action->getHitT();
    return true;
}

void SceneLayer::collide(const SceneHit& hit, double time)
{
    for (const SceneHit::Level& level : hit.levels) {
        if (auto* const collision = dynamic_cast<CollisionProc*>(level.group))
            collision->collide(time);
    }
}

bool SceneLayer::castRay(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point,
                         osg::Vec3f* normal, osg::NodePtr* osgNode, unsigned int* triangle, float* distance)
{
    SceneHit hit;
    if (!castRay(ray, hit))
        return false;
    nodes = std::move(hit.nodes);
    if (point)
        *point = hit.point;
    if (normal)
        *normal = hit.normal;
    if (triangle)
        *triangle = static_cast<unsigned int>(hit.triangle);
    if (distance)
        *distance = hit.distance;
    if (!osgNode)
        return true;
    *osgNode = hit.geometry;
    if ((*osgNode)->getToWorld() == hit.toWorld)
        return true;
    // Hit in another place than the one where its tree stands.
    const osg::TransformPtr transform = osg::Transform::create();
    transform->setMatrix(hit.toWorld);
    _probe = osg::makeNodeFor(transform);
    const osg::NodePtr geometry = osg::makeNodeFor((*osgNode)->getCore());
    _probe->addChild(geometry);
    *osgNode = geometry;
    return true;
}

} // namespace Orvane
