#pragma once

#include "core/SceneLayer.h"

namespace Orvane {

/// Behaviour of a `Layer`: what its children show is a world of its own, drawn by the `LayerSet` that lists
/// it.
class ORVANE_API LayerProc : public SceneLayer
{
public:
    explicit LayerProc(Node& node);
    /// A layer that is of another kind for OpenSG too.
    LayerProc(Node& node, const osg::NodeCorePtr& core);
    ~LayerProc() override;

    /// None: a layer is no part of a group, wherever it stands.
    osg::NodePtr tree() const override { return osg::NullFC; }

    bool isVisible() const override;
    bool isPickable() const override;
    SurfacePart surface() const override;
};

} // namespace Orvane
