#include "base/FieldTable.h"
#include <algorithm>
#include <new>

namespace Orvane {

namespace {

Field** resized(Field** fields, std::size_t count)
{
    void* memory = std::realloc(fields, count * sizeof(Field*));
    if (!memory)
        throw std::bad_alloc();
    return static_cast<Field**>(memory);
}

} // namespace

FieldTable::~FieldTable()
{
    if (_made & flat) {
        const auto count = reinterpret_cast<std::uintptr_t>(_fields[-1]);
        for (std::size_t i = 0; i < count; ++i)
            delete _fields[i];
        std::free(_fields - 1);
        return;
    }
    for (unsigned int i = 0, count = bitsBelow(63); i < count; ++i)
        delete _fields[i];
    std::free(_fields);
}

Field& FieldTable::insert(unsigned int part, unsigned int partCount, std::unique_ptr<Field> field)
{
    Field* const made = field.get();
    if (partCount > 63) {
        if (!(_made & flat)) {
            _fields = resized(nullptr, std::size_t(partCount) + 1) + 1;
            _fields[-1] = reinterpret_cast<Field*>(std::uintptr_t(partCount));
            std::fill_n(_fields, partCount, nullptr);
            _made = flat;
        }
        _fields[part] = field.release();
        return *made;
    }
    const unsigned int count = bitsBelow(63);
    const unsigned int place = bitsBelow(part);
    _fields = resized(_fields, count + 1);
    std::copy_backward(_fields + place, _fields + count, _fields + count + 1);
    _fields[place] = field.release();
    _made |= std::uint64_t(1) << part;
    return *made;
}

} // namespace Orvane
