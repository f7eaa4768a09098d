#pragma once

#include "OSGMemoryObject.h"

#include <mutex>

namespace osg {

/// A recursive lock. Named locks live as long as the process; locks of create() belong to whoever counts
/// them (addRefP, subRefP).
class OSG_BASE_DLLMAPPING Lock : public MemoryObject
{
public:
    /// The lock of this name, made at the first call; a null name makes a new lock, see create().
    static Lock* get(const Char8* name);

    /// The lock of this name, or null.
    static Lock* find(const Char8* name);

    /// A lock without a name.
    static Lock* create();

    /// Waits until the lock is this thread's. The spelling is the interface.
    void aquire() { _mutex.lock(); }
    void release() { _mutex.unlock(); }

    /// Takes the lock when nobody else has it. True if obtained.
    bool request() { return _mutex.try_lock(); }

protected:
    Lock() = default;
    ~Lock() override = default;

private:
    std::recursive_mutex _mutex;
};

} // namespace osg
