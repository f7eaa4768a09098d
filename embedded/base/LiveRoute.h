#pragma once

#include <Orvane/Route.h>
#include <cstdint>

namespace Orvane {

/// A route as the cascade needs it.
class LiveRoute final : public Route
{
public:
    LiveRoute(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
        : Route(outSlot, inSlot, type)
    {
    }

    std::uint64_t lastRun = 0; ///< number of the run of events in which it handed on a value
};

} // namespace Orvane
