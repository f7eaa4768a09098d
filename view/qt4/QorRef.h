#pragma once

#include <utility>

namespace Orvane::Qt4 {

/// A counted reference to an object of the runtime (a `RefCountObject`): the object lives at least as long.
template <class T>
class QorRef
{
public:
    QorRef() = default;
    /// Takes a reference; null is allowed.
    explicit QorRef(T* object)
        : _object(object)
    {
        if (_object)
            ++_object->_refCount;
    }
    /// References of a copy are its own; one that is moved from is null.
    QorRef(const QorRef& other)
        : QorRef(other._object)
    {
    }
    /// Takes the reference over.
    QorRef(QorRef&& other) noexcept
        : _object(std::exchange(other._object, nullptr))
    {
    }
    QorRef& operator=(QorRef other) noexcept
    {
        std::swap(_object, other._object);
        return *this;
    }
    ~QorRef()
    {
        if (_object)
            _object->subRef();
    }

    /// Takes over the reference that the caller holds on \a object.
    static QorRef adopt(T* object)
    {
        QorRef ref;
        ref._object = object;
        return ref;
    }

    /// The object, or null.
    T* get() const { return _object; }
    T* operator->() const { return _object; }
    explicit operator bool() const { return _object != nullptr; }

private:
    T* _object = nullptr;
};

} // namespace Orvane::Qt4
