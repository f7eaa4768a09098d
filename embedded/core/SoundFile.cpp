#include "core/SoundFile.h"
#include <algorithm>
#include <cstring>
#include <memory>
#include <sndfile.h>

namespace Orvane {

namespace {

/// Bytes that are read like a file.
struct ByteFile
{
    const std::vector<std::uint8_t>& bytes;
    sf_count_t place = 0;

    sf_count_t size() const { return static_cast<sf_count_t>(bytes.size()); }

    static sf_count_t length(void* user) { return static_cast<ByteFile*>(user)->size(); }
    static sf_count_t tell(void* user) { return static_cast<ByteFile*>(user)->place; }

    static sf_count_t seek(sf_count_t offset, int whence, void* user)
    {
        auto& file = *static_cast<ByteFile*>(user);
        const sf_count_t from = whence == SEEK_CUR ? file.place : whence == SEEK_END ? file.size() : 0;
        // The library may hand on an offset of the file, which can be any number.
        if (offset >= -from && offset <= file.size() - from)
            file.place = from + offset;
        return file.place;
    }

    static sf_count_t read(void* to, sf_count_t count, void* user)
    {
        auto& file = *static_cast<ByteFile*>(user);
        const sf_count_t part = std::clamp<sf_count_t>(count, 0, file.size() - file.place);
        if (part > 0)
            std::memcpy(to, file.bytes.data() + file.place, static_cast<std::size_t>(part));
        file.place += part;
        return part;
    }

    static sf_count_t write(const void*, sf_count_t, void*) { return 0; }
};

double durationOf(SNDFILE* opened, const SF_INFO& info)
{
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(opened, &sf_close);
    // What comes in a stream may tell no length, which the library gives as its largest number.
    if (!file || info.frames <= 0 || info.frames >= SF_COUNT_MAX || info.samplerate <= 0)
        return 0.0;
    return static_cast<double>(info.frames) / static_cast<double>(info.samplerate);
}

} // namespace

double soundDuration(const std::string& file)
{
    SF_INFO info{};
    SNDFILE* const opened = sf_open(file.c_str(), SFM_READ, &info);
    return durationOf(opened, info);
}

double soundDuration(const std::vector<std::uint8_t>& data)
{
    SF_INFO info{};
    ByteFile file{data};
    SF_VIRTUAL_IO access{&ByteFile::length, &ByteFile::seek, &ByteFile::read, &ByteFile::write,
                         &ByteFile::tell};
    SNDFILE* const opened = sf_open_virtual(&access, SFM_READ, &info, &file);
    return durationOf(opened, info);
}

} // namespace Orvane
