#include "base/FrameClock.h"
#include <algorithm>

namespace Orvane {

double FrameClock::running() const
{
    return _offset + std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
}

double FrameClock::now(double last) const
{
    return std::max(_held >= 0.0 ? _held : running(), last);
}

void FrameClock::hold(double seconds, double last)
{
    if (seconds >= 0.0) {
        if (seconds >= last)
            _held = seconds;
        return;
    }
    if (_held >= 0.0)
        _offset += std::max(0.0, _held - running());
    _held = -1.0;
}

} // namespace Orvane
