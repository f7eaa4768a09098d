#pragma once

#include <Orvane/EventSlot.h>

namespace Orvane {

/// The end at which events come into a field.
class ORVANE_API EventInSlot : public EventSlot
{
public:
    /// Made by the field alone.
    explicit EventInSlot(Field* field);
    ~EventInSlot() override;

    const char* name() const override;
};

} // namespace Orvane
