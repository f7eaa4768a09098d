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

    ~LiveRoute() override
    {
        if (opposite)
            opposite->opposite = nullptr;
    }

    std::uint64_t lastRun = 0;     ///< number of the run of events in which it handed on a value
    LiveRoute* opposite = nullptr; ///< of two IS connections between the same fields, the other one
    bool leadsInto = false;        ///< an IS connection from an instance to its body
};

} // namespace Orvane
