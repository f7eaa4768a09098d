#pragma once

#include "OSGBaseTypes.h"

#include <atomic>

namespace osg {

/// An object that its users count, in any thread. It starts with the count 0 and dies with the release that
/// brings the count to 0 or below.
class OSG_BASE_DLLMAPPING MemoryObject
{
public:
    MemoryObject(const MemoryObject&) = delete;
    MemoryObject& operator=(const MemoryObject&) = delete;

    void addRef() { ++_refCount; }
    void subRef()
    {
        if (--_refCount <= 0)
            delete this;
    }
    Int32 getRefCount() const { return _refCount; }

protected:
    MemoryObject() = default;
    virtual ~MemoryObject();

private:
    std::atomic<Int32> _refCount{0};
};

/// Null-safe forms.
template <class T>
void addRefP(T* object)
{
    if (object)
        object->addRef();
}

template <class T>
void subRefP(T* object)
{
    if (object)
        object->subRef();
}

} // namespace osg
