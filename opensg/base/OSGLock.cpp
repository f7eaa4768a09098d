#include "OpenSG/OSGLock.h"

#include <map>
#include <string>

namespace osg {

MemoryObject::~MemoryObject() = default;

namespace {

std::mutex namesMutex;

/// Never destroyed, as locks are asked for in destructors of static objects too.
std::map<std::string, Lock*>& lockNames()
{
    static auto& names = *new std::map<std::string, Lock*>;
    return names;
}

} // namespace

Lock* Lock::get(const Char8* name)
{
    if (!name)
        return create();
    const std::lock_guard<std::mutex> guard(namesMutex);
    Lock*& lock = lockNames()[name];
    if (!lock) {
        lock = create();
        addRefP(lock);
    }
    return lock;
}

Lock* Lock::find(const Char8* name)
{
    if (!name)
        return nullptr;
    const std::lock_guard<std::mutex> guard(namesMutex);
    const auto found = lockNames().find(name);
    return found == lockNames().end() ? nullptr : found->second;
}

Lock* Lock::create()
{
    return new Lock;
}

} // namespace osg
