#include "base/SmallBlocks.h"
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ORVANE_EACH_BLOCK_FROM_SYSTEM 1
#else
#define ORVANE_EACH_BLOCK_FROM_SYSTEM 0
#endif

namespace Orvane::smallBlocks {

namespace {

constexpr std::size_t step = 8;         ///< sizes are rounded up to it
constexpr std::size_t largest = 256;    ///< what is larger comes from the system
constexpr std::size_t slabSpan = 16384; ///< slabs begin at multiples of it

/// What the system's allocator puts in front of the next slab, which must begin right behind this one.
constexpr std::size_t allocatorWords = 2 * sizeof(void*);

/// A block that nobody uses.
struct FreeBlock
{
    FreeBlock* next;
};

/// Head of a slab; its blocks follow.
struct Slab
{
    Slab* previous; ///< among the slabs of that size with room
    Slab* next;
    FreeBlock* free;
    char* fresh;        ///< from here on no block has been used
    std::uint32_t used; ///< blocks
};

constexpr std::size_t slabSize = slabSpan - allocatorWords;

/// The blocks of one size.
class Pool
{
public:
    void* allocate(std::size_t size)
    {
        if (!_withRoom)
            addSlab();
        Slab& slab = *_withRoom;
        ++slab.used;
        void* block = slab.free;
        if (slab.free) {
            slab.free = slab.free->next;
        } else {
            block = slab.fresh;
            slab.fresh += size;
        }
        if (!hasRoom(slab, size))
            unlink(slab);
        return block;
    }

    void release(void* block, std::size_t size) noexcept
    {
        Slab& slab = *reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(slabSpan - 1));
        if (!hasRoom(slab, size))
            link(slab);
        slab.free = new (block) FreeBlock{slab.free};
        // The last slab with room stays, for one who makes and drops an object in turn.
        if (--slab.used == 0 && (slab.previous || slab.next)) {
            unlink(slab);
            std::free(&slab);
        }
    }

private:
    static bool hasRoom(const Slab& slab, std::size_t size)
    {
        return slab.free || slab.fresh + size <= reinterpret_cast<const char*>(&slab) + slabSize;
    }

    void addSlab()
    {
        void* memory = nullptr;
        if (posix_memalign(&memory, slabSpan, slabSize) != 0)
            throw std::bad_alloc();
        auto* const slab = new (memory) Slab{};
        slab->fresh = static_cast<char*>(memory) + sizeof(Slab);
        link(*slab);
    }

    void link(Slab& slab)
    {
        slab.previous = nullptr;
        slab.next = _withRoom;
        if (_withRoom)
            _withRoom->previous = &slab;
        _withRoom = &slab;
    }

    void unlink(Slab& slab)
    {
        (slab.previous ? slab.previous->next : _withRoom) = slab.next;
        if (slab.next)
            slab.next->previous = slab.previous;
        slab.previous = slab.next = nullptr;
    }

    Slab* _withRoom = nullptr;
};

/// Needs neither construction nor end, so that objects may come before `main` and go behind it.
std::array<Pool, largest / step> pools;

bool isSmall(std::size_t size)
{
    return !ORVANE_EACH_BLOCK_FROM_SYSTEM && size > 0 && size <= largest;
}

constexpr std::size_t poolIndex(std::size_t size)
{
    return (size - 1) / step;
}

} // namespace

void* allocate(std::size_t size)
{
    if (!isSmall(size))
        return ::operator new(size);
    const std::size_t index = poolIndex(size);
    return pools[index].allocate((index + 1) * step);
}

void release(void* block, std::size_t size) noexcept
{
    if (!block)
        return;
    if (!isSmall(size)) {
        ::operator delete(block);
        return;
    }
    const std::size_t index = poolIndex(size);
    pools[index].release(block, (index + 1) * step);
}

} // namespace Orvane::smallBlocks
