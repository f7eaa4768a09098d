#pragma once

#include "core/GroupProc.h"
#include "core/RayTarget.h"
#include "core/SceneHit.h"
#include "core/SceneState.h"
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <Orvane/Export.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <memory>

namespace osg {
class IntersectAction;
}

namespace Orvane {

/// What the bound nodes of a scene ask of a viewport, read anew for each drawn frame.
struct SceneView
{
    osg::Matrix viewpoint;       ///< camera to world; 10 m in front of the origin when nothing is bound
    float fieldOfView = 0.7854F; ///< radians, of the smaller of both directions
    bool orthographic = false;
    float fieldOfViewMin[2] = {-1, -1}; ///< of an orthographic view, in world units
    float fieldOfViewMax[2] = {1, 1};
    bool headlight = true;
    float avatarRadius = 0.25F;    ///< metres; the near plane lies at half of it at the most
    float visibilityLimit = 0.0F;  ///< metres; 0 means no limit
    float nearDistance = 0.0F;     ///< of the near plane, as the viewpoint wants it; 0 leaves it open
    float farDistance = 0.0F;      ///< of the far plane; goes before the visibility limit
    osg::BackgroundPtr background; ///< never null
};

/// Behaviour of a scene: the tree that is drawn, and the stacks of its bound nodes.
class ORVANE_API SceneProc : public SceneBaseNodeProc, public GroupProc
{
public:
    explicit SceneProc(Node& scene);
    ~SceneProc() override;

    NodeProc* nodeProc() override { return this; }
    void start(double time) override;

    /// Root of all that is drawn, global lights included; the same object for the scene's life. Several
    /// viewports may draw it.
    osg::NodePtr root() const { return tree(); }

    SceneView view() const;

    /// The stack of one kind of bindable nodes, in which the bound one and all others are found.
    BindableStack& stack(BindableKind kind) const { return _state->stack(kind); }

    /// What the nodes of the scene share.
    SceneState& state() const { return *_state; }

    /// Finds what a ray meets first, of what is seen or of what stands in the viewer's way. False, with \a
    /// hit as it was, when there is nothing.
    bool castRay(const osg::Line& ray, SceneHit& hit, RayTarget target = PictureTarget);
    /// The viewer runs into what was hit: the `Collision` nodes above it say so.
    static void collide(const SceneHit& hit, double time);
    /// As `SceneBaseNodeProc::pick`.
    bool castRay(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point, osg::Vec3f* normal,
                 osg::NodePtr* osgNode, unsigned int* triangle, float* distance);

    /// Changes when sensors come, go, or are switched on and off.
    unsigned long sensorVersion() const { return _state->sensorVersion(); }

    /// The lights that shine on the whole scene have changed.
    void lightsChanged() { askForLights(); }

protected:
    void collectLights(std::vector<osg::NodeCorePtr>& lights) const override;

private:
    std::shared_ptr<SceneState> _state;
    osg::RefPtr<osg::BackgroundPtr> _background; ///< shown while no background is bound
    std::unique_ptr<osg::IntersectAction> _action;
    osg::RefPtr<osg::NodePtr> _probe; ///< stands for the geometry of a hit in a shared tree
};

} // namespace Orvane
