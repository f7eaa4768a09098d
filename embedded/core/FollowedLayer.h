#pragma once

#include "core/SceneState.h"
#include "core/ViewFollower.h"
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

/// Keeps a follower of views on the list of the layer in which its node stands, as long as both live.
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
    std::shared_ptr<SceneState> _layer;
    ViewFollower* _follower = nullptr;
};

} // namespace Orvane
