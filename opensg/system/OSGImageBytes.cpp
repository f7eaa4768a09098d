#include "OSGImageBytes.h"

#include <OpenSG/OSGImage.h>

#include <filesystem>
#include <fstream>
#include <new>

namespace osg {

bool readBytes(std::istream& in, std::vector<UInt8>& bytes)
{
    constexpr std::size_t Chunk = 1 << 16;
    std::size_t filled = 0;
    try {
        while (in) {
            bytes.resize(filled + Chunk);
            in.read(reinterpret_cast<char*>(bytes.data() + filled), Chunk);
            filled += static_cast<std::size_t>(in.gcount());
            if (filled > Image::MaxSize)
                return false;
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    bytes.resize(filled);
    return in.eof();
}

bool readFileBytes(const std::string& fileName, std::vector<UInt8>& bytes)
{
    std::error_code error;
    // A pipe or a device would be waited for without end.
    if (!std::filesystem::is_regular_file(fileName, error))
        return false;
    std::ifstream in(fileName, std::ios::binary);
    return in && readBytes(in, bytes);
}

const UInt8* ByteReader::take(UInt64 count)
{
    if (count > rest())
        return nullptr;
    const UInt8* taken = data + position;
    position += count;
    return taken;
}

} // namespace osg
