#pragma once

#include <chrono>

namespace Orvane {

/// The clock of a context: seconds since 1970 by the system's clock when the context began, running on by the
/// steady clock. It can be held, and never goes back.
class FrameClock
{
public:
    /// The present time, not before \a last.
    double now(double last) const;

    /// Holds the clock at \a seconds; one in front of \a last changes nothing. A negative value lets the
    /// clock go on, from the held time if that is ahead.
    void hold(double seconds, double last);

private:
    double running() const;

    std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
    double _offset =
        std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    double _held = -1.0;
};

} // namespace Orvane
