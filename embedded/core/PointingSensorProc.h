#pragma once

#include "core/ElementProc.h"
#include "core/PointingSensor.h"
#include "core/SceneState.h"
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

/// Behaviour of a node that senses the pointer over its siblings.
class ORVANE_API PointingSensorProc : public ElementProc, public PointingSensor
{
public:
    using ElementProc::ElementProc;
    ~PointingSensorProc() override;

    // Proc
    void start(double time) override;
    void fieldChanged(Field& field, double time) override;

    // PointingSensor
    bool isEnabled() const override;
    bool isActivated() const override { return _active; }
    void setOver(bool over, double time) override;
    void activate(const PointerSpot& spot, double time) override;
    void deactivate(bool over, double time) override;

protected:
    /// The sensor becomes active at a place of its geometry.
    virtual void begin(const PointerSpot&, double) {}
    /// It ends being active; \a over tells whether the pointer is over its geometry.
    virtual void end(bool /*over*/, double /*time*/) {}

private:
    std::shared_ptr<SceneState> _scene;
    bool _active = false;
    bool _over = false;
};

} // namespace Orvane
