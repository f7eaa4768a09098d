#pragma once

#include "core/LayerSeat.h"
#include "core/ViewFollower.h"
#include <Orvane/Export.h>

namespace Orvane {

/// Keeps a follower of views on the list of the layer in which its node stands, as long as both live and
/// wherever it is moved.
class ORVANE_API FollowedLayer
{
public:
    FollowedLayer() = default;
    FollowedLayer(const FollowedLayer&) = delete;
    FollowedLayer& operator=(const FollowedLayer&) = delete;
    ~FollowedLayer();

    void join(Node& node, ViewFollower& follower);
    void leave();
    bool isJoined() const { return _follower; }

private:
    LayerSeat _layer;
    ViewFollower* _follower = nullptr;
};

} // namespace Orvane
