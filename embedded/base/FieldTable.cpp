#include "base/FieldTable.h"
#include "base/SmallBlocks.h"
#include <algorithm>

namespace Orvane {

namespace {

Field** makeList(std::size_t count)
{
    return static_cast<Field**>(smallBlocks::allocate(count * sizeof(Field*)));
}

void dropList(Field** list, std::size_t count)
{
    smallBlocks::release(list, count * sizeof(Field*));
}

} // namespace

FieldTable::~FieldTable()
{
    if (_made & flat) {
        const auto count = reinterpret_cast<std::uintptr_t>(_list[-1]);
        std::for_each_n(_list, count, std::default_delete<Field>());
        dropList(_list - 1, count + 1);
    } else if (isSingle()) {
        delete _field;
    } else if (_made) {
        std::for_each_n(_list, bitsBelow(63), std::default_delete<Field>());
        dropList(_list, bitsBelow(63));
    }
}

Field& FieldTable::insert(unsigned int part, unsigned int partCount, std::unique_ptr<Field> field)
{
    Field* const made = field.release();
    if (partCount > 63) {
        if (!_made) {
            _list = makeList(std::size_t(partCount) + 1) + 1;
            _list[-1] = reinterpret_cast<Field*>(std::uintptr_t(partCount));
            std::fill_n(_list, partCount, nullptr);
            _made = flat;
        }
        _list[part] = made;
        return *made;
    }
    const unsigned int count = bitsBelow(63);
    const unsigned int place = bitsBelow(part);
    if (count == 0) {
        _field = made;
    } else if (count == 1) {
        Field** const list = makeList(2);
        list[1 - place] = _field;
        list[place] = made;
        _list = list;
    } else {
        Field** const list = makeList(count + 1);
        std::copy_n(_list, place, list);
        list[place] = made;
        std::copy(_list + place, _list + count, list + place + 1);
        dropList(_list, count);
        _list = list;
    }
    _made |= std::uint64_t(1) << part;
    return *made;
}

} // namespace Orvane
