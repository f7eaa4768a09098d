#pragma once

#include "core/GroupProc.h"

namespace Orvane {

/// Behaviour of a `Collision`: a group that says what of it stands in the viewer's way.
class ORVANE_API CollisionProc : public GroupProc
{
public:
    explicit CollisionProc(Node& node);

    void update() override;
    void tick(double time) override;

    osg::NodePtr tree() const override { return _outer; }
    /// The proxy counts as a child.
    Node* childOf(const osg::NodePtr& shown) const override;

    /// The viewer runs into something in this group; told anew in each frame in which it does.
    void collide(double time);

private:
    void showProxy();

    osg::RefPtr<osg::NodePtr> _outer; ///< over the group, and the proxy where there is one
    osg::RefPtr<osg::NodePtr> _proxy; ///< refers to the proxy's tree; null without one
    Use _proxyUse;
    double _collidedAt = 0.0;
    bool _active = false;
};

} // namespace Orvane
