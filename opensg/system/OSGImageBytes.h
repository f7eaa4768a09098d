#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <iosfwd>
#include <string>
#include <vector>

namespace osg {

/// The whole of a stream, or of a file, which must be a plain one. False when it cannot be read or has more
/// bytes than an image may have.
bool readBytes(std::istream& in, std::vector<UInt8>& bytes);
bool readFileBytes(const std::string& fileName, std::vector<UInt8>& bytes);

/// A place in the bytes of a file that is being read; every step is checked.
struct ByteReader
{
    const UInt8* data;
    UInt64 size;
    UInt64 position = 0;

    UInt64 rest() const { return size - position; }
    /// The next `count` bytes; null, and no step, when there are not as many.
    const UInt8* take(UInt64 count);
};

/// Numbers of two and four bytes.
inline UInt16 bigEndian16(const UInt8* p)
{
    return static_cast<UInt16>(p[0] << 8 | p[1]);
}
inline UInt16 littleEndian16(const UInt8* p)
{
    return static_cast<UInt16>(p[1] << 8 | p[0]);
}
inline UInt32 littleEndian32(const UInt8* p)
{
    return UInt32(littleEndian16(p + 2)) << 16 | littleEndian16(p);
}
inline void putBigEndian16(UInt8* p, UInt16 value)
{
    p[0] = static_cast<UInt8>(value >> 8);
    p[1] = static_cast<UInt8>(value);
}

/// True on machines whose lowest byte comes first.
inline bool isLittleEndianHost()
{
    const UInt16 one = 1;
    return *reinterpret_cast<const UInt8*>(&one) == 1;
}

} // namespace osg
