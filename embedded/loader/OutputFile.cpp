#include "loader/OutputFile.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace Orvane {

namespace {

std::string packed(std::string_view text)
{
    z_stream z = {};
    if (deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        return {};
    std::string out;
    std::size_t used = 0;
    int result = Z_OK;
    while (result != Z_STREAM_END) {
        // Both counters of zlib are narrower than a scene may be long.
        const std::size_t piece = std::min<std::size_t>(text.size() - used, INT_MAX);
        z.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data() + used));
        z.avail_in = static_cast<uInt>(piece);
        do {
            const std::size_t size = out.size();
            constexpr std::size_t step = std::size_t(1) << 18;
            out.resize(size + step);
            z.next_out = reinterpret_cast<Bytef*>(&out[size]);
            z.avail_out = static_cast<uInt>(step);
            result = deflate(&z, used + piece == text.size() ? Z_FINISH : Z_NO_FLUSH);
            out.resize(size + step - z.avail_out);
        } while (z.avail_out == 0 && result == Z_OK);
        used += piece;
    }
    deflateEnd(&z);
    return out;
}

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

bool writeOutputFile(const std::string& path, std::string_view text, bool pack, std::string& error)
{
    const std::string bytes = pack ? packed(text) : std::string();
    // A link stays a link: what it leads to is replaced.
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr), &std::free);
    const std::string target = real ? std::string(real.get()) : path;
    struct stat status = {};
    const bool exists = ::stat(target.c_str(), &status) == 0;
    if (exists && !S_ISREG(status.st_mode)) {
        error =
            path + ": expected a file, found " + (S_ISDIR(status.st_mode) ? "a directory" : "something else");
        return false;
    }
    std::string temporary = target + ".XXXXXX";
    const int file = ::mkstemp(temporary.data());
    bool ok = file >= 0 && writeAll(file, pack ? std::string_view(bytes) : text);
    if (ok) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        ok = ::fchmod(file, exists ? status.st_mode & 07777 : 0666 & ~mask) == 0;
    }
    int reason = ok ? 0 : errno;
    if (file >= 0 && ::close(file) != 0 && ok) {
        ok = false;
        reason = errno;
    }
    if (ok && ::rename(temporary.c_str(), target.c_str()) != 0) {
        ok = false;
        reason = errno;
    }
    if (!ok) {
        if (file >= 0)
            ::unlink(temporary.c_str());
        error = path + ": expected a file that can be written, found: " + std::strerror(reason);
    }
    return ok;
}

} // namespace Orvane
