#pragma once

#include "core/GroupProc.h"
#include "core/PointingSensor.h"
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of an `Anchor`: a group that leads elsewhere when it is clicked.
class ORVANE_API AnchorProc : public GroupProc, public PointingSensor
{
public:
    using GroupProc::GroupProc;

    /// An anchor without an address leads nowhere and lets what is above it be clicked.
    bool isEnabled() const override;
    bool isActivated() const override { return _active; }
    void setOver(bool, double) override {}
    void activate(const PointerSpot&, double) override { _active = true; }
    void deactivate(bool over, double time) override;

    /// Opens the first of its addresses that can be opened: a scene, a viewpoint in it ("file.x3d#Name"), or
    /// a viewpoint of the anchor's own scene ("#Name"). False when there is none. What is replaced, which may
    /// be the anchor itself, lives until the frame ends.
    bool open(double time);

private:
    bool _active = false;
};

} // namespace Orvane
