#pragma once

#include "core/GroupProc.h"
#include "core/RayTarget.h"
#include "core/SceneHit.h"
#include "core/SceneState.h"
#include "core/SurfacePart.h"
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <Orvane/Export.h>
#include <memory>

namespace osg {
class IntersectAction;
}

namespace Orvane {

/// What the bound nodes of a layer ask of a viewport, read anew for each drawn frame.
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

/// A layer of a scene: a world of its own, seen through a camera of its own, with the stacks of its bound
/// nodes. Base of the behaviours of `Layer` nodes, and of that of a scene, which is the layer of all that
/// stands outside of them.
class ORVANE_API SceneLayer : public GroupProc
{
public:
    SceneLayer(Node& node, const osg::NodeCorePtr& core);
    ~SceneLayer() override;

    void start(double time) override;
    void settle(double time) override;

    /// Children of a group have come or gone: what stands below them may have been moved to another layer.
    /// Cheap while no scene has layers.
    static void nodesMayMove(Node& group);

    /// Root of all that is drawn, global lights included; the same object for the layer's life. Several
    /// viewports may draw it.
    osg::NodePtr root() const { return GroupProc::tree(); }

    virtual SceneView view() const;
    /// False while the layer is not drawn.
    virtual bool isVisible() const { return true; }
    /// False while the pointer looks through the layer.
    virtual bool isPickable() const { return true; }
    /// False for a layer whose view no user moves.
    virtual bool isNavigable() const { return true; }
    /// The part of a viewarea that the layer is drawn in.
    virtual SurfacePart surface() const { return {}; }

    /// The stack of one kind of bindable nodes, in which the bound one and all others are found.
    BindableStack& stack(BindableKind kind) const { return _state->stack(kind); }
    /// What the nodes of the layer share.
    SceneState& state() const { return *_state; }
    std::weak_ptr<SceneState> sharedState() const { return _state; }

    /// Finds what a ray meets first, of what is seen or of what stands in the viewer's way. False, with \a
    /// hit as it was, when there is nothing.
    bool castRay(const osg::Line& ray, SceneHit& hit, RayTarget target = PictureTarget);
    /// As `SceneBaseNodeProc::pick`.
    bool castRay(const osg::Line& ray, std::vector<Node*>& nodes, osg::Pnt3f* point, osg::Vec3f* normal,
                 osg::NodePtr* osgNode, unsigned int* triangle, float* distance);
    /// The viewer runs into what was hit: the `Collision` nodes above it say so.
    static void collide(const SceneHit& hit, double time);

    /// The lights that shine on the whole layer have changed.
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
