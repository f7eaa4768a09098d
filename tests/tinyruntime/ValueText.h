#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Rotation.h>
#include <array>
#include <charconv>
#include <string>
#include <string_view>

/// The text form of single values.
namespace Tiny::text {

inline std::string_view trimmed(std::string_view text)
{
    const char* blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

template <class N>
std::string write(const N* numbers, std::size_t count)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        char buffer[64];
        const auto end = std::to_chars(buffer, buffer + sizeof(buffer), numbers[i]).ptr;
        result.append(i ? " " : "").append(buffer, end);
    }
    return result;
}

/// Reads exactly \a count numbers that stand apart by blanks.
template <class N>
bool read(std::string_view text, N* numbers, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        text = trimmed(text);
        const auto result = std::from_chars(text.data(), text.data() + text.size(), numbers[i]);
        if (result.ec != std::errc())
            return false;
        text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    }
    return trimmed(text).empty();
}

inline std::string write(bool value)
{
    return value ? "TRUE" : "FALSE";
}
inline bool read(std::string_view text, bool& value)
{
    text = trimmed(text);
    value = text == "TRUE" || text == "true";
    return value || text == "FALSE" || text == "false";
}

inline std::string write(int value)
{
    return write(&value, 1);
}
inline bool read(std::string_view text, int& value)
{
    return read(text, &value, 1);
}
inline std::string write(float value)
{
    return write(&value, 1);
}
inline bool read(std::string_view text, float& value)
{
    return read(text, &value, 1);
}
inline std::string write(double value)
{
    return write(&value, 1);
}
inline bool read(std::string_view text, double& value)
{
    return read(text, &value, 1);
}

template <class N, osg::UInt32 Count>
std::string write(const osg::Vector<N, Count>& value)
{
    return write(value.getValues(), Count);
}
template <class N, osg::UInt32 Count>
bool read(std::string_view text, osg::Vector<N, Count>& value)
{
    return read(text, value.getValues(), Count);
}

inline std::string write(const osg::Color3f& value)
{
    const std::array<float, 3> numbers = {value.red(), value.green(), value.blue()};
    return write(numbers.data(), numbers.size());
}
inline bool read(std::string_view text, osg::Color3f& value)
{
    std::array<float, 3> numbers{};
    const bool done = read(text, numbers.data(), numbers.size());
    value.setValuesRGB(numbers[0], numbers[1], numbers[2]);
    return done;
}
inline std::string write(const osg::Color4f& value)
{
    const std::array<float, 4> numbers = {value.red(), value.green(), value.blue(), value.alpha()};
    return write(numbers.data(), numbers.size());
}
inline bool read(std::string_view text, osg::Color4f& value)
{
    std::array<float, 4> numbers{};
    const bool done = read(text, numbers.data(), numbers.size());
    value.setValuesRGBA(numbers[0], numbers[1], numbers[2], numbers[3]);
    return done;
}
inline std::string write(const Orvane::Rotation& value)
{
    const std::array<float, 4> numbers = {value.x(), value.y(), value.z(), value.angle()};
    return write(numbers.data(), numbers.size());
}
inline bool read(std::string_view text, Orvane::Rotation& value)
{
    std::array<float, 4> numbers{};
    const bool done = read(text, numbers.data(), numbers.size());
    value = Orvane::Rotation(numbers[0], numbers[1], numbers[2], numbers[3]);
    return done;
}

/// A text in a list of texts stands in quotes.
inline std::string write(const std::string& value)
{
    std::string result = "\"";
    for (const char c : value) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + '"';
}

/// Cuts the next item of a list off \a list: up to a comma outside quotes.
inline std::string_view nextItem(std::string_view& list)
{
    bool quoted = false;
    std::size_t i = 0;
    for (; i < list.size() && (quoted || list[i] != ','); ++i) {
        if (quoted && list[i] == '\\')
            ++i;
        else if (list[i] == '"')
            quoted = !quoted;
    }
    const std::string_view item = list.substr(0, i);
    list.remove_prefix(i < list.size() ? i + 1 : list.size());
    return item;
}

inline bool read(std::string_view text, std::string& value)
{
    text = trimmed(text);
    if (text.size() < 2 || text.front() != '"' || text.back() != '"')
        return false;
    value.clear();
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (text[i] == '\\' && i + 2 < text.size())
            ++i;
        value += text[i];
    }
    return true;
}

/// Equality without tolerance.
template <class T>
bool same(const T& a, const T& b)
{
    return write(a) == write(b);
}

} // namespace Tiny::text
