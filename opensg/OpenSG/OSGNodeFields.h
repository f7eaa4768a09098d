#pragma once

#include "OSGNodePtr.h"

#include <cstddef>
#include <initializer_list>

namespace osg {

/// Pointers to nodes in order: the children of a node, the parents of a core, a path. No references are held.
/// Used like a vector; a single pointer, which is what most lists hold, needs no memory beside the list.
class OSG_SYSTEMLIB_DLLMAPPING MFNodePtr
{
public:
    using value_type = NodePtr;
    using iterator = NodePtr*;
    using const_iterator = const NodePtr*;

    MFNodePtr() = default;
    MFNodePtr(std::initializer_list<NodePtr> pointers);
    MFNodePtr(const MFNodePtr& other);
    MFNodePtr& operator=(const MFNodePtr& other);
    ~MFNodePtr();

    std::size_t size() const { return _size; }
    bool empty() const { return _size == 0; }

    iterator begin() { return isInside() ? &_one : _many; }
    iterator end() { return begin() + _size; }
    const_iterator begin() const { return isInside() ? &_one : _many; }
    const_iterator end() const { return begin() + _size; }

    /// `index` must be below `size()`.
    NodePtr& operator[](std::size_t index) { return begin()[index]; }
    const NodePtr& operator[](std::size_t index) const { return begin()[index]; }
    /// The list must not be empty.
    NodePtr& front() { return *begin(); }
    NodePtr& back() { return end()[-1]; }
    const NodePtr& front() const { return *begin(); }
    const NodePtr& back() const { return end()[-1]; }

    void push_back(const NodePtr& pointer) { insert(end(), pointer); }
    void pop_back() { erase(end() - 1); }
    void insert(const_iterator place, const NodePtr& pointer);
    void erase(const_iterator place);
    void clear();

    friend OSG_SYSTEMLIB_DLLMAPPING bool operator==(const MFNodePtr& a, const MFNodePtr& b);
    friend bool operator!=(const MFNodePtr& a, const MFNodePtr& b) { return !(a == b); }

private:
    bool isInside() const { return _room == 1; }
    void setRoom(UInt32 room);

    UInt32 _size = 0;
    UInt32 _room = 1; ///< 1 says that the one pointer stands in the list itself
    union {
        NodePtr _one{};
        NodePtr* _many; ///< owned
    };
};

} // namespace osg
