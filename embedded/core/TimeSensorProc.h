#pragma once

#include "base/Proc.h"
#include "core/TimedRun.h"
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a `TimeSensor`. It ticks only while it is active or waits for a moment to come.
class ORVANE_API TimeSensorProc : public Proc, private TimedRun
{
public:
    explicit TimeSensorProc(Node& node);

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void tick(double time) override;
    bool rest(double) override { return true; }
    /// The run goes on as if it had not been away.
    void resume(double) override { setTicking(true); }

private:
    double cycleInterval() override;
    void beginCycle(double now) override;
    void sendFraction(double now, double fraction) override;
};

} // namespace Orvane
