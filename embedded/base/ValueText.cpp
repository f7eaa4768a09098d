#include "base/ValueText.h"
#include <charconv>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <type_traits>

namespace Orvane::text {

namespace {

bool isDivider(char c)
{
    return c == ' ' || c == ',' || c == '\t' || c == '\n' || c == '\r';
}

bool endsWord(char c)
{
    return isDivider(c) || c == '[' || c == ']';
}

bool isWord(std::string_view word, std::string_view wanted)
{
    if (word.size() != wanted.size())
        return false;
    for (std::size_t i = 0; i < word.size(); ++i)
        if ((word[i] | 0x20) != wanted[i])
            return false;
    return true;
}

/// Infinity or nothing, or a number that only a wider type holds. The program's own locale may write points
/// as commas.
double beyondRange(const std::string& number)
{
    static const locale_t classic = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    return strtod_l(number.c_str(), nullptr, classic);
}

/// Number behind its sign; \a text is what is left of the reader. Null when there is none.
template <class N>
const char* parseReal(std::string_view text, N& value)
{
    const char* begin = text.data();
    const char* const end = begin + text.size();
    if (begin != end && *begin == '+' && end - begin > 1 && begin[1] != '-')
        ++begin;
    const std::from_chars_result result = std::from_chars(begin, end, value);
    if (result.ec == std::errc::result_out_of_range)
        value = static_cast<N>(beyondRange(std::string(begin, result.ptr)));
    return result.ec == std::errc::invalid_argument ? nullptr : result.ptr;
}

/// Decimal or, behind "0x", hexadecimal.
template <class N>
const char* parseInteger(std::string_view text, N& value)
{
    const char* begin = text.data();
    const char* const end = begin + text.size();
    bool isNegative = false;
    if (begin != end && (*begin == '+' || *begin == '-'))
        isNegative = *begin++ == '-';
    int base = 10;
    if (end - begin > 2 && begin[0] == '0' && (begin[1] | 0x20) == 'x') {
        base = 16;
        begin += 2;
    }
    if (begin == end || *begin == '-')
        return nullptr;
    unsigned long magnitude = 0;
    const std::from_chars_result result = std::from_chars(begin, end, magnitude, base);
    if (result.ec != std::errc() || (isNegative && std::is_unsigned_v<N>))
        return nullptr;
    // Hexadecimal numbers give the bits: 0xFFFFFFFF is -1.
    constexpr unsigned long largest = std::numeric_limits<N>::max();
    const bool isBits = base == 16 && magnitude <= std::numeric_limits<unsigned int>::max();
    if (magnitude > largest + (isNegative ? 1 : 0) && !isBits)
        return nullptr;
    const auto bits = static_cast<unsigned int>(magnitude);
    value = static_cast<N>(isNegative ? 0U - bits : bits);
    return result.ptr;
}

template <class N>
void writeNumber(std::string& text, N value)
{
    char buffer[32];
    text.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

} // namespace

void Reader::skipDividers()
{
    std::size_t i = 0;
    while (i < _rest.size() && isDivider(_rest[i]))
        ++i;
    _rest.remove_prefix(i);
}

void Reader::openList()
{
    if (_rest.empty() || _rest[0] != '[')
        return;
    _inBrackets = true;
    _rest.remove_prefix(1);
    skipDividers();
}

bool Reader::atEnd()
{
    return _rest.empty() || (_inBrackets && _rest[0] == ']');
}

bool Reader::finish()
{
    if (_inBrackets) {
        if (_rest.empty())
            return fail("a closing bracket");
        if (_rest[0] == ']') {
            _inBrackets = false;
            _rest.remove_prefix(1);
            skipDividers();
        }
    }
    return _rest.empty() || fail("the end");
}

bool Reader::fail(std::string_view expected)
{
    constexpr std::size_t longest = 40;
    std::size_t length = 0;
    while (length < _rest.size() && !isDivider(_rest[length]))
        ++length;
    _error.assign("expected ").append(expected).append(", found ");
    if (length == 0)
        _error += "the end";
    else
        _error.append("\"").append(_rest.substr(0, std::min(length, longest))).append("\"");
    return false;
}

std::string_view Reader::takeWord()
{
    std::size_t length = 0;
    while (length < _rest.size() && !endsWord(_rest[length]))
        ++length;
    const std::string_view word = _rest.substr(0, length);
    _rest.remove_prefix(length);
    skipDividers();
    return word;
}

bool Reader::read(bool& value)
{
    const std::string_view before = _rest;
    const std::string_view word = takeWord();
    value = isWord(word, "true");
    if (value || isWord(word, "false"))
        return true;
    _rest = before;
    return fail("TRUE or FALSE");
}

bool Reader::takeNumber(const char* end, std::string_view expected)
{
    if (!end || (end != _rest.end() && !endsWord(*end)))
        return fail(expected);
    _rest.remove_prefix(static_cast<std::size_t>(end - _rest.data()));
    skipDividers();
    return true;
}

bool Reader::read(int& value)
{
    return takeNumber(parseInteger(_rest, value), "a whole number of 32 bits");
}

bool Reader::read(unsigned int& value)
{
    return takeNumber(parseInteger(_rest, value), "a whole number from 0");
}

bool Reader::read(float& value)
{
    return takeNumber(parseReal(_rest, value), "a number");
}

bool Reader::read(double& value)
{
    return takeNumber(parseReal(_rest, value), "a number");
}

bool Reader::read(std::string& value)
{
    value.clear();
    if (_rest.empty())
        return fail("a text in quotes");
    if (_rest[0] != '"') {
        const std::string_view word = takeWord();
        value = word;
        return !word.empty() || fail("a text in quotes");
    }
    std::size_t i = 1;
    for (; i < _rest.size() && _rest[i] != '"'; ++i) {
        // Before any other character a backslash is itself: sources and patterns have many.
        const bool isEscape =
            _rest[i] == '\\' && i + 1 < _rest.size() && (_rest[i + 1] == '"' || _rest[i + 1] == '\\');
        if (isEscape)
            ++i;
        value += _rest[i];
    }
    if (i >= _rest.size()) {
        _rest = {};
        return fail("a closing quote");
    }
    _rest.remove_prefix(i + 1);
    skipDividers();
    return true;
}

void write(std::string& text, bool value)
{
    text += value ? "TRUE" : "FALSE";
}

void write(std::string& text, int value)
{
    writeNumber(text, value);
}

void write(std::string& text, float value)
{
    writeNumber(text, value);
}

void write(std::string& text, double value)
{
    writeNumber(text, value);
}

void write(std::string& text, const std::string& value)
{
    text += '"';
    for (const char c : value) {
        if (c == '"' || c == '\\')
            text += '\\';
        text += c;
    }
    text += '"';
}

} // namespace Orvane::text
