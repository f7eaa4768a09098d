#include "base/TextCoding.h"

#include <cstdint>
#include <cstring>

namespace Orvane::coding {

namespace {

constexpr std::uint64_t highBits = 0x8080808080808080ULL;

/// Position of the first byte above 127, or the size of the text.
std::size_t asciiPrefix(std::string_view text, std::size_t from)
{
    while (from + 8 <= text.size()) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + from, 8);
        if (word & highBits)
            break;
        from += 8;
    }
    while (from < text.size() && static_cast<unsigned char>(text[from]) < 0x80)
        ++from;
    return from;
}

/// Bytes of the character that begins at \a at, 0 when none does; \a code is the character then.
int decode(std::string_view text, std::size_t at, std::uint32_t& code)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned int first = byte(at);
    if (first < 0x80) {
        code = first;
        return 1;
    }
    const int length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || at + static_cast<std::size_t>(length) > text.size())
        return 0;
    code = first & (0x7FU >> length);
    for (int i = 1; i < length; ++i) {
        const unsigned int next = byte(at + static_cast<std::size_t>(i));
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code < 0xE000;
    return code < least[length] || code > 0x10FFFF || surrogate ? 0 : length;
}

void encode(std::string& out, std::uint32_t code)
{
    const auto put = [&](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

} // namespace

bool isAscii(std::string_view text)
{
    return asciiPrefix(text, 0) == text.size();
}

bool isUtf8(std::string_view text)
{
    std::uint32_t code = 0;
    for (std::size_t at = asciiPrefix(text, 0); at < text.size(); at = asciiPrefix(text, at)) {
        const int length = decode(text, at, code);
        if (length == 0)
            return false;
        at += static_cast<std::size_t>(length);
    }
    return true;
}

std::string latin1ToUtf8(std::string_view text)
{
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (const char c : text)
        encode(out, static_cast<unsigned char>(c));
    return out;
}

std::string wideToUtf8(std::string_view bytes, int unitBytes, bool bigEndian)
{
    constexpr std::uint32_t replacement = 0xFFFD;
    const auto unitSize = static_cast<std::size_t>(unitBytes);
    const auto unit = [&](std::size_t at) {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < unitSize; ++i) {
            const std::size_t place = bigEndian ? at + i : at + unitSize - 1 - i;
            value = (value << 8) | static_cast<unsigned char>(bytes[place]);
        }
        return value;
    };
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t at = 0; at + unitSize <= bytes.size(); at += unitSize) {
        std::uint32_t code = unit(at);
        if (unitBytes == 2 && code >= 0xD800 && code < 0xDC00 && at + 2 * unitSize <= bytes.size()) {
            const std::uint32_t low = unit(at + unitSize);
            if (low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                at += unitSize;
            }
        }
        const bool surrogate = code >= 0xD800 && code < 0xE000;
        encode(out, surrogate || code > 0x10FFFF ? replacement : code);
    }
    return out;
}

std::string toGraph(std::string_view utf8)
{
    const std::size_t ascii = asciiPrefix(utf8, 0);
    std::string latin1(utf8.substr(0, ascii));
    std::uint32_t code = 0;
    for (std::size_t at = ascii; at < utf8.size();) {
        const int length = decode(utf8, at, code);
        if (length == 0 || code > 0xFF)
            return std::string(utf8);
        latin1.push_back(static_cast<char>(code));
        at += static_cast<std::size_t>(length);
    }
    if (latin1.size() != utf8.size() && isUtf8(latin1))
        return std::string(utf8);
    return latin1;
}

std::string toFile(std::string_view text)
{
    return isUtf8(text) ? std::string(text) : latin1ToUtf8(text);
}

} // namespace Orvane::coding
