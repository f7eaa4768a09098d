#pragma once

#include <Orvane/EventSlot.h>

namespace Orvane {

class EventInSlot;

/// The end from which events of a field go out.
class ORVANE_API EventOutSlot : public EventSlot
{
public:
    /// Made by the field alone.
    explicit EventOutSlot(Field* field);
    ~EventOutSlot() override;

    const char* name() const override;

    /// The route from this slot to \a inSlot, or null.
    Route* findRoute(EventInSlot* inSlot);
};

} // namespace Orvane
