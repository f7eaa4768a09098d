#pragma once

#include "OSGFieldContainerPtr.h"

#include <utility>

namespace osg {

/// Holds one reference on a container as long as it lives or points elsewhere; `Ptr` is the plain pointer
/// class, as in `RefPtr<ImagePtr>`.
template <class Ptr>
class RefPtr
{
public:
    RefPtr() = default;
    RefPtr(const NullFieldContainerPtr&) {}
    RefPtr(const Ptr& p)
        : _p(p)
    {
        addRefCP(_p);
    }
    RefPtr(const RefPtr& other)
        : RefPtr(other._p)
    {
    }
    RefPtr(RefPtr&& other) noexcept
        : _p(std::exchange(other._p, Ptr()))
    {
    }
    ~RefPtr() { clearRefCP(_p); }

    RefPtr& operator=(const RefPtr& other) { return *this = other._p; }
    RefPtr& operator=(RefPtr&& other) noexcept
    {
        std::swap(_p, other._p);
        return *this;
    }
    RefPtr& operator=(const Ptr& p)
    {
        setRefdCP(_p, p);
        return *this;
    }
    RefPtr& operator=(const NullFieldContainerPtr&)
    {
        clearRefCP(_p);
        return *this;
    }

    /// The plain pointer; it keeps nothing alive.
    const Ptr& get() const { return _p; }
    operator const Ptr&() const { return _p; }
    auto operator->() const { return _p.operator->(); }
    auto& operator*() const { return *_p; }
    explicit operator bool() const { return static_cast<bool>(_p); }
    bool operator!() const { return !_p; }

    friend bool operator==(const RefPtr& a, const RefPtr& b) { return a._p == b._p; }
    friend bool operator!=(const RefPtr& a, const RefPtr& b) { return a._p != b._p; }
    friend bool operator<(const RefPtr& a, const RefPtr& b) { return a._p < b._p; }
    friend bool operator==(const RefPtr& a, const FieldContainerPtrBase& b) { return a._p == b; }
    friend bool operator!=(const RefPtr& a, const FieldContainerPtrBase& b) { return a._p != b; }
    friend bool operator==(const FieldContainerPtrBase& a, const RefPtr& b) { return a == b._p; }
    friend bool operator!=(const FieldContainerPtrBase& a, const RefPtr& b) { return a != b._p; }

private:
    Ptr _p;
};

} // namespace osg
