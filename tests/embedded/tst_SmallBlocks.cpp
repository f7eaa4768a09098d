#include "base/SmallBlocks.h"
#include <QtTest>
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <unordered_map>
#include <vector>

using namespace Orvane;

/// Counts what lives of it, in small blocks with what derives from it.
class Base
{
public:
    Base() { ++living; }
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
    virtual ~Base() { --living; }

    ORVANE_IN_SMALL_BLOCKS

    static inline int living = 0;
};

class Derived final : public Base
{
public:
    char text[500] = {};
};

class tst_SmallBlocks : public QObject
{
    Q_OBJECT

private slots:
    void blocksAreAlignedAndApart();
    void blocksOfAllSizesKeepTheirContent();
    void releasedBlockIsUsedAgain();
    void nullIsReleased();
    void objectsGoByTheirOwnSize();
    void containersLiveInThem();
};

void tst_SmallBlocks::blocksAreAlignedAndApart()
{
    for (const std::size_t size : {std::size_t(1), std::size_t(24), std::size_t(104), std::size_t(256)}) {
        std::vector<char*> blocks;
        for (int i = 0; i < 5000; ++i) {
            blocks.push_back(static_cast<char*>(smallBlocks::allocate(size)));
            QCOMPARE(reinterpret_cast<std::uintptr_t>(blocks.back()) % alignof(double), std::uintptr_t(0));
        }
        std::sort(blocks.begin(), blocks.end());
        for (std::size_t i = 1; i < blocks.size(); ++i)
            QVERIFY(blocks[i] - blocks[i - 1] >= static_cast<std::ptrdiff_t>(size));
        for (char* block : blocks)
            smallBlocks::release(block, size);
    }
}

void tst_SmallBlocks::blocksOfAllSizesKeepTheirContent()
{
    struct Block
    {
        unsigned char* bytes;
        std::size_t size;
        unsigned char value;
    };
    std::mt19937 random(7);
    std::vector<Block> blocks;
    for (int step = 0; step < 200000; ++step) {
        // Grows to some thousand blocks, then shrinks to none.
        const bool grows = step < 100000 ? random() % 3 != 0 : random() % 3 == 0;
        if (grows || blocks.empty()) {
            const std::size_t size = 1 + random() % 300;
            Block block{static_cast<unsigned char*>(smallBlocks::allocate(size)), size,
                        static_cast<unsigned char>(random())};
            std::memset(block.bytes, block.value, size);
            blocks.push_back(block);
            continue;
        }
        std::swap(blocks[random() % blocks.size()], blocks.back());
        const Block block = blocks.back();
        blocks.pop_back();
        QVERIFY(std::all_of(block.bytes, block.bytes + block.size,
                            [&block](unsigned char byte) { return byte == block.value; }));
        smallBlocks::release(block.bytes, block.size);
    }
    for (const Block& block : blocks)
        smallBlocks::release(block.bytes, block.size);
}

void tst_SmallBlocks::releasedBlockIsUsedAgain()
{
    // However often blocks come and go, they take no more room than the most that lived at once.
    std::vector<void*> first(10000);
    for (void*& block : first)
        block = smallBlocks::allocate(72);
    for (void* block : first)
        smallBlocks::release(block, 72);
#ifndef __SANITIZE_ADDRESS__
    void* const block = smallBlocks::allocate(72);
    smallBlocks::release(block, 72);
    QCOMPARE(smallBlocks::allocate(72), block);
    smallBlocks::release(block, 72);
#endif
}

void tst_SmallBlocks::nullIsReleased()
{
    smallBlocks::release(nullptr, 8);
    smallBlocks::release(nullptr, 1000);
}

void tst_SmallBlocks::objectsGoByTheirOwnSize()
{
    std::vector<std::unique_ptr<Base>> objects;
    for (int i = 0; i < 1000; ++i) {
        objects.push_back(std::make_unique<Base>());
        auto derived = std::make_unique<Derived>();
        std::memset(derived->text, 'x', sizeof derived->text);
        objects.push_back(std::move(derived));
    }
    QCOMPARE(Base::living, 2000);
    objects.clear();
    QCOMPARE(Base::living, 0);
}

void tst_SmallBlocks::containersLiveInThem()
{
    std::unordered_map<int, int, std::hash<int>, std::equal_to<int>,
                       smallBlocks::Allocator<std::pair<const int, int>>>
        map;
    for (int i = 0; i < 10000; ++i)
        map[i] = i * 2;
    for (int i = 0; i < 10000; i += 2)
        map.erase(i);
    QCOMPARE(map.size(), std::size_t(5000));
    QCOMPARE(map.at(777), 1554);
}

QTEST_APPLESS_MAIN(tst_SmallBlocks)
#include "tst_SmallBlocks.moc"
