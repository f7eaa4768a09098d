#pragma once

#include "core/LayerWatcher.h"
#include "core/SceneState.h"
#include <Orvane/Export.h>
#include <functional>
#include <memory>

namespace Orvane {

/// The layer in which a node stands, wherever it is moved while it runs.
class ORVANE_API LayerSeat : private LayerWatcher
{
public:
    /// Called when the node has come to another layer, with the former one.
    using Moved = std::function<void(SceneState& former)>;

    /// From now on, the layer of \a node, by the first place where it is used.
    void take(Node& node, Moved moved = {});
    void leave();

    /// Null before a layer was taken, and for a node that stood in none then.
    SceneState* get() const { return _layer.get(); }
    SceneState* operator->() const { return _layer.get(); }
    explicit operator bool() const { return _layer != nullptr; }

private:
    void nodesMoved() override;

    std::shared_ptr<SceneState> _layer;
    Node* _node = nullptr;
    Moved _moved;
};

} // namespace Orvane
