#include "loader/SourceText.h"

#include "base/TextCoding.h"
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

namespace Orvane {

namespace {

/// Closes a file at the end of its scope.
struct FileDescriptor
{
    explicit FileDescriptor(const std::string& path)
        : number(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (number >= 0)
            ::close(number);
    }
    int number;
};

/// Ends a zlib stream at the end of its scope.
struct InflateStream
{
    z_stream z = {};
    bool good = inflateInit2(&z, 16 + MAX_WBITS) == Z_OK;
    InflateStream() = default;
    InflateStream(const InflateStream&) = delete;
    InflateStream& operator=(const InflateStream&) = delete;
    ~InflateStream()
    {
        if (good)
            inflateEnd(&z);
    }
};

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// The encoding that an XML declaration names, in lower case; empty when it names none.
std::string declaredEncoding(std::string_view text)
{
    if (!startsWith(text, "<?xml"))
        return {};
    const std::string_view declaration = text.substr(0, text.substr(0, 512).find("?>"));
    std::size_t at = declaration.find("encoding");
    at = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
    if (at == std::string_view::npos)
        return {};
    const std::size_t end = declaration.find(declaration[at], at + 1);
    if (end == std::string_view::npos)
        return {};
    std::string name(declaration.substr(at + 1, end - at - 1));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return name;
}

bool isLatin1Name(const std::string& name)
{
    return name == "iso-8859-1" || name == "iso8859-1" || name == "latin1" || name == "latin-1" ||
           name == "windows-1252" || name == "cp1252";
}

std::string tooLong()
{
    return "expected a scene of at most " + std::to_string(SourceText::maxBytes >> 20) + " MiB, found more";
}

} // namespace

bool SourceText::readFile(const std::string& path, SourceFault& fault)
{
    const FileDescriptor file(path);
    struct stat status = {};
    if (file.number < 0 || ::fstat(file.number, &status) != 0) {
        fault.text = std::string("expected a readable file, found: ") + std::strerror(errno);
        return false;
    }
    if (!S_ISREG(status.st_mode)) {
        fault.text = S_ISDIR(status.st_mode) ? "expected a file, found a directory"
                                             : "expected a file, found something else";
        return false;
    }
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > maxBytes) {
        fault.text = tooLong();
        return false;
    }
    _text.reset(new char[size + 1]);
    _size = 0;
    while (_size < size) {
        const ssize_t got = ::read(file.number, _text.get() + _size, size - _size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            fault.text = std::string("expected a readable file, found: ") + std::strerror(errno);
            return false;
        }
        if (got == 0)
            break;
        _size += static_cast<std::size_t>(got);
    }
    _bytesOnDisk = _size;
    return decode(fault);
}

bool SourceText::takeText(std::string_view text, SourceFault& fault)
{
    if (text.size() > maxBytes) {
        fault.text = tooLong();
        return false;
    }
    replace(text);
    _bytesOnDisk = _size;
    return decode(fault);
}

void SourceText::replace(std::string_view text)
{
    std::unique_ptr<char[]> copy(new char[text.size() + 1]);
    std::memcpy(copy.get(), text.data(), text.size());
    _text = std::move(copy);
    _size = text.size();
}

bool SourceText::unpack(SourceFault& fault)
{
    // Text hardly ever shrinks to a hundredth; what unpacks to far more is meant to fill the memory.
    constexpr std::size_t freeBytes = std::size_t(64) << 20;
    constexpr std::size_t maxRatio = 200;
    const std::size_t limit = std::min(maxBytes, std::max(freeBytes, _size * maxRatio));

    InflateStream stream;
    if (!stream.good) {
        fault.text = "expected a gzip stream, found no memory to unpack it";
        return false;
    }
    std::string out;
    std::size_t used = 0;
    stream.z.next_in = reinterpret_cast<Bytef*>(_text.get());
    stream.z.avail_in = static_cast<uInt>(_size);
    // A stream may have several members, one behind the other.
    const auto isMember = [&z = stream.z] {
        return z.avail_in > 1 && z.next_in[0] == 0x1f && z.next_in[1] == 0x8b;
    };
    for (int result = Z_OK; result != Z_STREAM_END;) {
        if (used >= limit) {
            fault.text = "expected a gzip stream of at most " + std::to_string(limit >> 20) +
                         " MiB when unpacked, found more";
            return false;
        }
        if (used == out.size())
            out.resize(std::min(limit, std::max(2 * used, std::size_t(1) << 16)));
        stream.z.next_out = reinterpret_cast<Bytef*>(&out[used]);
        stream.z.avail_out = static_cast<uInt>(out.size() - used);
        result = inflate(&stream.z, Z_NO_FLUSH);
        used = out.size() - stream.z.avail_out;
        if (result == Z_STREAM_END && isMember())
            result = inflateReset(&stream.z);
        if (result != Z_OK && result != Z_STREAM_END) {
            fault.text = std::string("expected a gzip stream, found ") +
                         (result == Z_BUF_ERROR ? "its end too early" : "damaged data at byte ") +
                         (result == Z_BUF_ERROR ? std::string() : std::to_string(stream.z.total_in));
            return false;
        }
    }
    replace(std::string_view(out.data(), used));
    return true;
}

bool SourceText::decode(SourceFault& fault)
{
    if (startsWith(view(), "\x1f\x8b") && !unpack(fault))
        return false;
    const std::string_view text = view();
    const auto begins = [&](const char* bytes, std::size_t count) {
        return startsWith(text, std::string_view(bytes, count));
    };
    if (begins("\xEF\xBB\xBF", 3))
        replace(std::string(text.substr(3)));
    else if (begins("\xFF\xFE\0\0", 4) || begins("<\0\0\0", 4))
        replace(coding::wideToUtf8(text.substr(text[0] == '<' ? 0 : 4), 4, false));
    else if (begins("\0\0\xFE\xFF", 4) || begins("\0\0\0<", 4))
        replace(coding::wideToUtf8(text.substr(text[3] == '<' ? 0 : 4), 4, true));
    else if (begins("\xFF\xFE", 2) || begins("<\0", 2))
        replace(coding::wideToUtf8(text.substr(text[0] == '<' ? 0 : 2), 2, false));
    else if (begins("\xFE\xFF", 2) || begins("\0<", 2))
        replace(coding::wideToUtf8(text.substr(text[1] == '<' ? 0 : 2), 2, true));
    else if (!coding::isAscii(text) && (isLatin1Name(declaredEncoding(text)) || !coding::isUtf8(text)))
        replace(coding::latin1ToUtf8(text));
    _text[_size] = '\0';
    indexLines();
    const char* nul = static_cast<const char*>(std::memchr(_text.get(), 0, _size));
    if (nul) {
        fault = {place(static_cast<std::size_t>(nul - _text.get())), "expected text, found a zero byte"};
        return false;
    }
    return true;
}

void SourceText::indexLines()
{
    _lineStarts.assign(1, 0);
    _lastLine = 0;
    const char* const begin = _text.get();
    const char* const end = begin + _size;
    if (std::memchr(begin, '\n', _size)) {
        for (const char* at = begin;
             (at = static_cast<const char*>(std::memchr(at, '\n', static_cast<std::size_t>(end - at))));)
            _lineStarts.push_back(static_cast<std::size_t>(++at - begin));
    } else {
        for (const char* at = begin;
             (at = static_cast<const char*>(std::memchr(at, '\r', static_cast<std::size_t>(end - at))));)
            _lineStarts.push_back(static_cast<std::size_t>(++at - begin));
    }
}

std::size_t SourceText::offset(SourcePlace place) const
{
    if (place.line == 0 || place.line > _lineStarts.size())
        return _size;
    return std::min(_size, _lineStarts[place.line - 1] + std::max(place.column, 1U) - 1);
}

SourcePlace SourceText::place(std::size_t offset) const
{
    const auto holds = [&](std::size_t line) {
        return line < _lineStarts.size() && _lineStarts[line] <= offset &&
               (line + 1 == _lineStarts.size() || offset < _lineStarts[line + 1]);
    };
    if (_lineStarts.empty())
        return {};
    if (!holds(_lastLine)) {
        if (holds(_lastLine + 1))
            ++_lastLine;
        else
            _lastLine = static_cast<std::size_t>(
                std::upper_bound(_lineStarts.begin(), _lineStarts.end(), offset) - _lineStarts.begin() - 1);
    }
    return {static_cast<unsigned int>(_lastLine + 1),
            static_cast<unsigned int>(offset - _lineStarts[_lastLine] + 1)};
}

} // namespace Orvane
