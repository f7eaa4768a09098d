#pragma once

#include "core/SceneLayer.h"
#include <Orvane/SceneBaseNodeProc.h>

namespace Orvane {

class LayerSetProc;

/// Behaviour of a scene: its layer 0, and the layers that its `LayerSet` brings.
class ORVANE_API SceneProc : public SceneBaseNodeProc, public SceneLayer
{
public:
    explicit SceneProc(Node& scene);

    NodeProc* nodeProc() override { return this; }

    /// The layers that are drawn, the lowest one first. One that is drawn several times is there as often.
    std::vector<SceneLayer*> drawnLayers();
    /// The layer in which the user navigates.
    SceneLayer& activeLayer();

    /// Changes when sensors come, go, or are switched on and off.
    unsigned long sensorVersion() const { return state().sensorVersion(); }

protected:
    void contentChanged() override;

private:
    LayerSetProc* layerSet() const;

    Use _layerSet; ///< the first one of the scene
};

} // namespace Orvane
