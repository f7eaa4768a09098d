#include "loader/ClassicTokens.h"

#include <array>
#include <cstring>

namespace Orvane {

namespace {

enum CharClass : unsigned char {
    PLAIN = 0,
    DIVIDER = 1, ///< between tokens
    MARK = 2,    ///< ends a word without being a divider
    NUMERIC = 4  ///< may stand in a list of numbers
};

constexpr std::array<unsigned char, 256> charClasses = [] {
    std::array<unsigned char, 256> classes{};
    const auto add = [&classes](std::string_view chars, unsigned char flags) {
        for (const char c : chars)
            classes[static_cast<unsigned char>(c)] |= flags;
    };
    add(" ,\t\r\n", DIVIDER | NUMERIC);
    add("{}[]\"#", MARK);
    classes[0] |= MARK;
    add("0123456789+-.eExXabcdfABCDF", NUMERIC);
    return classes;
}();

bool isOf(char c, unsigned char flags)
{
    return charClasses[static_cast<unsigned char>(c)] & flags;
}

bool isLineEnd(char c)
{
    return c == '\n' || c == '\r';
}

bool beginsNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

/// The numbers that have no digits, as they are written.
bool isEndless(std::string_view word)
{
    return word == "inf" || word == "nan";
}

bool isEscape(const char* at)
{
    return *at == '\\' && (at[1] == '"' || at[1] == '\\');
}

} // namespace

ClassicTokens::ClassicTokens(char* text, std::size_t size)
    : _text(text)
    , _textEnd(text + size)
    , _begin(text)
    , _end(text)
    , _lastEnd(text)
{
    next();
}

void ClassicTokens::blankComment(char* at)
{
    while (*at && !isLineEnd(*at))
        *at++ = ' ';
}

void ClassicTokens::next()
{
    char* at = _end;
    _lastEnd = _end;
    while (true) {
        while (isOf(*at, DIVIDER))
            ++at;
        if (*at != '#')
            break;
        blankComment(at);
    }
    _begin = at;
    switch (*at) {
    case '\0':
        _kind = END;
        _end = at;
        return;
    case '{':
        _kind = OPEN_BRACE;
        break;
    case '}':
        _kind = CLOSE_BRACE;
        break;
    case '[':
        _kind = OPEN_BRACKET;
        break;
    case ']':
        _kind = CLOSE_BRACKET;
        break;
    case '"':
        _kind = STRING;
        readString();
        return;
    default:
        while (!isOf(*at, DIVIDER | MARK))
            ++at;
        _end = at;
        _kind = beginsNumber(*_begin) || isEndless(text()) ? NUMBER : WORD;
        return;
    }
    _end = at + 1;
}

void ClassicTokens::readString()
{
    char* at = _begin + 1;
    bool hasReturns = false;
    for (; *at && *at != '"'; ++at) {
        if (isEscape(at))
            ++at;
        hasReturns = hasReturns || *at == '\r';
    }
    _isClosed = *at == '"';
    _end = _isClosed ? at + 1 : at;
    if (!hasReturns)
        return;
    char* out = _begin;
    for (const char* in = _begin; in != _end; ++in) {
        if (*in == '\r' && in + 1 != _end && in[1] == '\n')
            continue;
        *out++ = *in == '\r' ? '\n' : *in;
    }
    std::memset(out, ' ', static_cast<std::size_t>(_end - out));
    _end = out;
}

bool ClassicTokens::opensBrace() const
{
    const char* at = _end;
    while (isOf(*at, DIVIDER) || *at == '#') {
        if (*at == '#')
            while (at[1] && !isLineEnd(at[1]))
                ++at;
        ++at;
    }
    return *at == '{';
}

std::string_view ClassicTokens::since(std::size_t offset) const
{
    const auto end = static_cast<std::size_t>(_lastEnd - _text);
    return {_text + offset, end > offset ? end - offset : 0};
}

std::string_view ClassicTokens::takeString()
{
    char* const begin = _begin + 1;
    char* const end = _isClosed ? _end - 1 : _end;
    const auto size = static_cast<std::size_t>(end - begin);
    char* out = static_cast<char*>(size == 0 ? nullptr : std::memchr(begin, '\\', size));
    if (out) {
        for (const char* in = out; in != end;) {
            if (isEscape(in) && in + 1 != end)
                ++in;
            *out++ = *in++;
        }
    } else {
        out = end;
    }
    next();
    return {begin, static_cast<std::size_t>(out - begin)};
}

bool ClassicTokens::takeNumbers(std::string_view& list)
{
    char* at = _end;
    while (true) {
        while (isOf(*at, NUMERIC))
            ++at;
        if (*at != '#')
            break;
        blankComment(at);
    }
    if (*at != ']')
        return false;
    const char* begin = _end;
    const char* end = at;
    while (begin != end && isOf(*begin, DIVIDER))
        ++begin;
    while (begin != end && isOf(end[-1], DIVIDER))
        --end;
    list = {begin, static_cast<std::size_t>(end - begin)};
    _end = at + 1;
    next();
    return true;
}

void ClassicTokens::skipGroup()
{
    std::size_t depth = 0;
    do {
        if (_kind == OPEN_BRACE || _kind == OPEN_BRACKET)
            ++depth;
        else if (_kind == CLOSE_BRACE || _kind == CLOSE_BRACKET)
            --depth;
        next();
    } while (depth > 0 && _kind != END);
}

} // namespace Orvane
