#pragma once

#include <Orvane/Field.h>
#include <cstdint>
#include <memory>

namespace Orvane {

/// The fields that a node has made of the parts of its type. Most nodes make few of many, so the table is
/// packed: a bit says whether a field is there, the bits before it where. One field alone needs no list.
/// Types of more than 63 parts have one place for each part.
class FieldTable
{
public:
    FieldTable() = default;
    FieldTable(const FieldTable&) = delete;
    FieldTable& operator=(const FieldTable&) = delete;
    ~FieldTable();

    /// The field of a part below the type's number of parts; null when it has not been made.
    Field* at(unsigned int part) const
    {
        if (_made & flat)
            return _list[part];
        if (part >= 63 || !(_made >> part & 1U))
            return nullptr;
        return isSingle() ? _field : _list[bitsBelow(part)];
    }

    /// Takes a field that was not there. \a partCount is the type's number of parts.
    Field& insert(unsigned int part, unsigned int partCount, std::unique_ptr<Field> field);

private:
    static constexpr std::uint64_t flat = std::uint64_t(1) << 63;

    bool isSingle() const { return _made && !(_made & (_made - 1)); }
    unsigned int bitsBelow(unsigned int part) const
    {
        return static_cast<unsigned int>(__builtin_popcountll(_made & ((std::uint64_t(1) << part) - 1)));
    }

    std::uint64_t _made = 0;
    union {
        Field* _field = nullptr; ///< when there is just one
        Field** _list;           ///< when flat, its element -1 is the number of places
    };
};

} // namespace Orvane
