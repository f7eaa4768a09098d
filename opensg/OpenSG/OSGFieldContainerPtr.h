#pragma once

#include "OSGBaseTypes.h"
#include "OSGConfig.h"
#include "OSGFieldContainerBits.h"

#include <functional>

namespace osg {

class FieldContainer;

/// What all container pointers have in common: null, identity and the numbers of the container behind.
/// A pointer is one address wide and counts nothing by itself: `addRefCP` and `subRefCP` do.
class OSG_SYSTEMLIB_DLLMAPPING FieldContainerPtrBase
{
public:
    constexpr FieldContainerPtrBase() = default;

    /// The number of the container, unique in this process; 0 for null.
    UInt32 getFieldContainerId() const;
    /// The number of references held on the container; 0 for null.
    Int32 getRefCount() const;

    explicit operator bool() const { return _store != nullptr; }
    bool operator!() const { return !_store; }

    friend bool operator==(const FieldContainerPtrBase& a, const FieldContainerPtrBase& b)
    {
        return a._store == b._store;
    }
    friend bool operator!=(const FieldContainerPtrBase& a, const FieldContainerPtrBase& b)
    {
        return a._store != b._store;
    }
    /// An order by address; null comes before everything else.
    friend bool operator<(const FieldContainerPtrBase& a, const FieldContainerPtrBase& b)
    {
        return std::less<FieldContainer*>()(a._store, b._store);
    }

protected:
    explicit FieldContainerPtrBase(FieldContainer* container)
        : _store(container)
    {
    }

    // Mutable because subRefCP takes a const pointer and yet nulls it when the container goes.
    mutable FieldContainer* _store = nullptr;

    friend OSG_SYSTEMLIB_DLLMAPPING void addRefCP(const FieldContainerPtrBase& p);
    friend OSG_SYSTEMLIB_DLLMAPPING void subRefCP(const FieldContainerPtrBase& p);
    friend OSG_SYSTEMLIB_DLLMAPPING void setRefdCP(FieldContainerPtrBase& p, const FieldContainerPtrBase& n);
    friend OSG_SYSTEMLIB_DLLMAPPING void clearRefCP(FieldContainerPtrBase& p);
};

class NullFieldContainerPtr;

/// A pointer to any container. Typed pointers derive from it along the hierarchy of their containers, so that
/// an `ImagePtr` passes where a `FieldContainerPtr` is asked for; `X::dcast` goes the other way.
class OSG_SYSTEMLIB_DLLMAPPING FieldContainerPtr : public FieldContainerPtrBase
{
public:
    constexpr FieldContainerPtr() = default;
    FieldContainerPtr(const NullFieldContainerPtr&) {}

    /// The container; nothing may be done through a null pointer.
    FieldContainer* operator->() const { return _store; }
    FieldContainer& operator*() const { return *_store; }
    /// The plain address; may be null.
    FieldContainer* getCPtr() const { return _store; }
    /// `other` as it is: every container is a FieldContainer.
    static FieldContainerPtr dcast(const FieldContainerPtr& other) { return other; }

protected:
    explicit FieldContainerPtr(const FieldContainer* container)
        : FieldContainerPtrBase(const_cast<FieldContainer*>(container))
    {
    }
};

/// The type of `NullFC`, the null that every container pointer is made of, set to and compared with.
class NullFieldContainerPtr : public FieldContainerPtr
{
public:
    constexpr NullFieldContainerPtr() = default;
};

inline constexpr NullFieldContainerPtr NullFC{};

/// The pointer to containers of class `FC`; `BasePtr` is the pointer to FC's base class. FC may be incomplete
/// where the pointer is only passed on.
template <class BasePtr, class FC>
class FCPtr : public BasePtr
{
public:
    using Container = FC;

    constexpr FCPtr() = default;
    FCPtr(const NullFieldContainerPtr&) {}
    /// The pointer to an object at hand, `XPtr self(this)`; no reference is taken.
    explicit FCPtr(const FC* container)
        : BasePtr(container)
    {
    }
    explicit FCPtr(const FC& container)
        : BasePtr(&container)
    {
    }

    /// The container; nothing may be done through a null pointer.
    FC* operator->() const { return getCPtr(); }
    FC& operator*() const { return *getCPtr(); }
    /// The plain address; may be null.
    FC* getCPtr() const { return static_cast<FC*>(this->_store); }

    /// `other` as a pointer to FC; null where its container is of another class.
    static FCPtr dcast(const FieldContainerPtr& other)
    {
        return FCPtr(dynamic_cast<const FC*>(other.getCPtr()));
    }
};

/// Takes a reference; nothing happens for null.
OSG_SYSTEMLIB_DLLMAPPING void addRefCP(const FieldContainerPtrBase& p);
/// Gives a reference back. The container is destroyed when none is left afterwards (a fresh one, on which
/// nobody holds a reference, too), and the variable that was passed becomes null; other copies dangle.
/// Containers that lose their last reference inside a destructor go before the outermost call returns.
OSG_SYSTEMLIB_DLLMAPPING void subRefCP(const FieldContainerPtrBase& p);
/// Lets `p` hold a reference on `n` in place of the container that it held. Equal pointers: no change.
OSG_SYSTEMLIB_DLLMAPPING void setRefdCP(FieldContainerPtrBase& p, const FieldContainerPtrBase& n);
/// Gives the reference of `p` back and sets it to null.
OSG_SYSTEMLIB_DLLMAPPING void clearRefCP(FieldContainerPtrBase& p);

/// Announces a change of the fields in `which`. Null is allowed.
OSG_SYSTEMLIB_DLLMAPPING void beginEditCP(const FieldContainerPtr& p, BitVector which = FieldBits::AllFields,
                                          UInt32 origin = ChangedOrigin::External);
/// Ends a change: the container's `changed(which, origin)` runs. Null is allowed.
OSG_SYSTEMLIB_DLLMAPPING void endEditCP(const FieldContainerPtr& p, BitVector which = FieldBits::AllFields,
                                        UInt32 origin = ChangedOrigin::External);
/// Runs the container's `changed(which, origin)` without an edit. Null is allowed.
OSG_SYSTEMLIB_DLLMAPPING void changedCP(const FieldContainerPtr& p, BitVector which = FieldBits::AllFields,
                                        UInt32 origin = ChangedOrigin::External);
/// Ends a change without telling the container. Null is allowed.
OSG_SYSTEMLIB_DLLMAPPING void endEditNotChangedCP(const FieldContainerPtr& p,
                                                  BitVector which = FieldBits::AllFields,
                                                  UInt32 origin = ChangedOrigin::External);

/// The same questions as free functions, for code that is written for several kinds of pointer.
template <class Ptr>
auto getCPtr(const Ptr& p) -> decltype(p.getCPtr())
{
    return p.getCPtr();
}
inline Int32 getRefCount(const FieldContainerPtrBase& p)
{
    return p.getRefCount();
}
inline UInt32 getContainerId(const FieldContainerPtrBase& p)
{
    return p.getFieldContainerId();
}
inline void addRef(const FieldContainerPtrBase& p)
{
    addRefCP(p);
}
inline void subRef(const FieldContainerPtrBase& p)
{
    subRefCP(p);
}
template <class Ptr>
Ptr dynamic_pointer_cast(const FieldContainerPtr& p)
{
    return Ptr::dcast(p);
}

} // namespace osg
