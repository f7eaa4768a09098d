#pragma once

#include "base/Proc.h"
#include <OpenSG/OSGBackground.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGNode.h>
#include <Orvane/SceneBaseNodeProc.h>

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
    osg::BackgroundPtr background; ///< never null
};

/// Behaviour of a scene: the tree that is drawn, and the stacks of its bound nodes.
class SceneProc : public SceneBaseNodeProc, public Proc
{
public:
    explicit SceneProc(Node& scene);
    ~SceneProc() override;

    NodeProc* nodeProc() override { return this; }

    /// Root of all that is drawn, global lights included; the same object for the scene's life. Several
    /// viewports may draw it.
    osg::NodePtr root() const;

    SceneView view() const;
};

} // namespace Orvane
