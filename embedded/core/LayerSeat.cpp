#include "core/LayerSeat.h"
#include <utility>

namespace Orvane {

void LayerSeat::take(Node& node, Moved moved)
{
    _layer = SceneState::of(node);
    _node = &node;
    _moved = std::move(moved);
}

void LayerSeat::leave()
{
    _layer.reset();
    _node = nullptr;
    _moved = {};
}

void LayerSeat::nodesMoved()
{
    // What only a script knows stays where it was.
    const std::shared_ptr<SceneState> present = _layer ? SceneState::seatOf(*_node) : nullptr;
    if (!present || present == _layer)
        return;
    const std::shared_ptr<SceneState> former = std::exchange(_layer, present);
    if (_moved)
        _moved(*former);
}

} // namespace Orvane
