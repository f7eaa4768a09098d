#include "core/FollowedLayer.h"

namespace Orvane {

ViewFollower::~ViewFollower() = default;

FollowedLayer::~FollowedLayer()
{
    leave();
}

void FollowedLayer::join(Node& node, ViewFollower& follower)
{
    leave();
    _layer.take(node, [this](SceneState& former) {
        former.removeViewFollower(*_follower);
        _layer->addViewFollower(*_follower);
    });
    if (!_layer)
        return;
    _follower = &follower;
    _layer->addViewFollower(follower);
}

void FollowedLayer::leave()
{
    if (_follower)
        _layer->removeViewFollower(*_follower);
    _follower = nullptr;
    _layer.leave();
}

} // namespace Orvane
