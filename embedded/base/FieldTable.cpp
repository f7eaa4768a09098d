#include "base/FieldTable.h"
#include <algorithm>
#include <cstdlib>
#include <new>

namespace Orvane {

namespace {

Field** resized(Field** list, std::size_t count)
{
    void* memory = std::realloc(list, count * sizeof(Field*));
    if (!memory)
        throw std::bad_alloc();
    return static_cast<Field**>(memory);
}

} // namespace

FieldTable::~FieldTable()
{
    if (_made & flat) {
        std::for_each_n(_list, reinterpret_cast<std::uintptr_t>(_list[-1]), std::default_delete<Field>());
        std::free(_list - 1);
    } else if (isSingle()) {
        delete _field;
    } else if (_made) {
        std::for_each_n(_list, bitsBelow(63), std::default_delete<Field>());
        std::free(_list);
    }
}

Field& FieldTable::insert(unsigned int part, unsigned int partCount, std::unique_ptr<Field> field)
{
    Field* const made = field.release();
    if (partCount > 63) {
        if (!_made) {
            _list = resized(nullptr, std::size_t(partCount) + 1) + 1;
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
        Field** const list = resized(nullptr, 2);
        list[1 - place] = _field;
        list[place] = made;
        _list = list;
    } else {
        _list = resized(_list, count + 1);
        std::copy_backward(_list + place, _list + count, _list + count + 1);
        _list[place] = made;
    }
    _made |= std::uint64_t(1) << part;
    return *made;
}

} // namespace Orvane
