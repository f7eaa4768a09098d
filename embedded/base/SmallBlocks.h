#pragma once

#include <Orvane/Export.h>
#include <cstddef>

/// Memory for the many small objects of a scene: nodes, fields, links, behaviours. Blocks of one size stand
/// side by side in slabs, without the words that a general allocator keeps beside each; a slab goes back when
/// its last block has gone. For the thread of the scenes only. Builds that look for faults in the use of
/// memory get each block from the system, so that they see them all.
namespace Orvane::smallBlocks {

/// A block of at least \a size bytes, aligned for every type of ordinary alignment.
ORVANE_API void* allocate(std::size_t size);
/// Gives a block back; \a size is what it was asked for with. Null is ignored.
ORVANE_API void release(void* block, std::size_t size) noexcept;

/// Lets the cells of a container live in small blocks.
template <class T>
struct Allocator
{
    using value_type = T;

    Allocator() = default;
    template <class U>
    Allocator(const Allocator<U>&) noexcept
    {
    }

    T* allocate(std::size_t count) { return static_cast<T*>(smallBlocks::allocate(count * sizeof(T))); }
    void deallocate(T* cells, std::size_t count) noexcept { release(cells, count * sizeof(T)); }

    template <class U>
    bool operator==(const Allocator<U>&) const
    {
        return true;
    }
    template <class U>
    bool operator!=(const Allocator<U>&) const
    {
        return false;
    }
};

} // namespace Orvane::smallBlocks

/// Put into a class, lets its objects, and those of classes derived from it, live in small blocks.
#define ORVANE_IN_SMALL_BLOCKS                                                                               \
    static void* operator new(std::size_t size)                                                              \
    {                                                                                                        \
        return Orvane::smallBlocks::allocate(size);                                                          \
    }                                                                                                        \
    static void operator delete(void* block, std::size_t size) noexcept                                      \
    {                                                                                                        \
        Orvane::smallBlocks::release(block, size);                                                           \
    }
