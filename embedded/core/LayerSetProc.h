#pragma once

#include "core/ElementProc.h"
#include "core/SceneState.h"
#include <Orvane/Export.h>
#include <memory>
#include <vector>

namespace Orvane {

class SceneLayer;

/// Behaviour of a `LayerSet`: knows the layers by their numbers, and in which order they are drawn. The first
/// one among the outermost nodes of a scene counts; the scene itself is layer 0.
class ORVANE_API LayerSetProc : public ElementProc
{
public:
    using ElementProc::ElementProc;
    ~LayerSetProc() override;

    void start(double time) override;
    void update() override;

    /// The layers that are drawn, the lowest one first; \a scene is layer 0.
    std::vector<SceneLayer*> drawnLayers(SceneLayer& scene) const;
    SceneLayer& activeLayer(SceneLayer& scene) const;

    /// Says that the layers of this set are not drawn.
    void tellUnused();

private:
    SceneLayer* layerAt(int number, SceneLayer& scene) const;

    std::shared_ptr<SceneState> _scene;
    std::vector<Use> _layers; ///< from number 1 on; empty in place of what is no layer
    bool _isPlaced = false;   ///< what stands above the node is known
};

} // namespace Orvane
