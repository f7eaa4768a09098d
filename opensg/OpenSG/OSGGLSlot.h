#pragma once

#include "OSGBaseTypes.h"
#include "OSGConfig.h"

namespace osg {

/// The tie between a container and what windows keep for it in their GL contexts: a place in every window's
/// table, and a stamp that tells whether what stands there is up to date. When the slot goes, each window
/// frees its object in its next frame. Slots go on the thread that draws.
class OSG_SYSTEMLIB_DLLMAPPING GLSlot
{
public:
    GLSlot();
    ~GLSlot();
    GLSlot(const GLSlot&) = delete;
    GLSlot& operator=(const GLSlot&) = delete;

    /// Puts what windows keep out of date.
    void touch();

    /// The place in the tables; given to another slot when this one has gone.
    UInt32 getPlace() const { return _place; }
    /// A number that changes with every `touch`; no two slots ever have the same.
    UInt64 getStamp() const { return _stamp; }
    /// The stamp that the slot was born with.
    UInt64 getOwner() const { return _owner; }

private:
    UInt32 _place;
    UInt64 _owner;
    UInt64 _stamp;
};

} // namespace osg
