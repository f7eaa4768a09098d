#pragma once

#include "core/ClipEdges.h"
#include "core/FollowedLayer.h"
#include "core/GroupProc.h"
#include "core/SurfacePart.h"
#include "core/ViewFollower.h"

namespace Orvane {

/// Behaviour of a `Viewport`: a part of the surface that a layer is drawn in. As a group among others it
/// shows its children inside of that part alone.
class ORVANE_API ViewportProc : public GroupProc, public ViewFollower
{
public:
    using GroupProc::GroupProc;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void update() override;
    bool follow(const DrawnView& view) override;

    SurfacePart part() const;
    /// The part that a node asks for in its field `viewport`; the whole surface when it names none.
    static SurfacePart partOf(const Node& node);

protected:
    void collectLights(std::vector<osg::NodeCorePtr>& lights) const override;

private:
    ClipEdges _edges;
    FollowedLayer _followed;
};

} // namespace Orvane
