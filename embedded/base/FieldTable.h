#pragma once

#include <Orvane/Field.h>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace Orvane {

/// The fields that a node has made of the parts of its type. Most nodes make few of many, so the table is
/// packed: a bit says whether a field is there, the bits before it where. Types of more than 63 parts have
/// one place for each part.
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
            return _fields[part];
        if (part >= 63 || !(_made >> part & 1U))
            return nullptr;
        return _fields[bitsBelow(part)];
    }

    /// Takes a field that was not there. \a partCount is the type's number of parts.
    Field& insert(unsigned int part, unsigned int partCount, std::unique_ptr<Field> field);

private:
    static constexpr std::uint64_t flat = std::uint64_t(1) << 63;

    unsigned int bitsBelow(unsigned int part) const
    {
        return static_cast<unsigned int>(__builtin_popcountll(_made & ((std::uint64_t(1) << part) - 1)));
    }

    std::uint64_t _made = 0;
    Field** _fields = nullptr; ///< when flat, its element -1 is the number of places
};

} // namespace Orvane
