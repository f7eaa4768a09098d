#pragma once

#include <Orvane/BaseObject.h>

namespace Orvane {

/// An object that lives as long as somebody holds a counted reference to it. Counts belong to the thread of
/// the frames and are not atomic.
class ORVANE_API RefCountObject : public BaseObject
{
public:
    RefCountObject() = default;
    RefCountObject(const RefCountObject&) = delete;
    RefCountObject& operator=(const RefCountObject&) = delete;

    /// Drops one reference; the object deletes itself when none is left.
    void subRef() const;

    /// Number of references. A caller takes a reference by incrementing it.
    mutable int _refCount = 0;

protected:
    ~RefCountObject() override;
};

} // namespace Orvane
