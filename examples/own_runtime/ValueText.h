#pragma once

#include <Orvane/Rotation.h>
#include <charconv>
#include <string>
#include <string_view>
#include <type_traits>

/// The text form of values: `put` appends one to a text, `take` takes one from its front. What `put` wrote,
/// `take` reads.

inline void skipBlanks(std::string_view& text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n,[]"), text.size()));
}

inline void put(std::string& text, const std::string& value)
{
    text += '"';
    for (const char c : value)
        text.append(c == '"' || c == '\\' ? "\\" : "").append(1, c);
    text += '"';
}

template <class T>
void put(std::string& text, const T& value)
{
    if constexpr (std::is_same_v<T, bool>) {
        text += value ? "TRUE" : "FALSE";
    } else if constexpr (std::is_arithmetic_v<T>) {
        char digits[32];
        text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    } else if constexpr (std::is_same_v<T, Orvane::Rotation>) {
        const float numbers[] = {value.x(), value.y(), value.z(), value.angle()};
        for (const float& number : numbers)
            put(text.append(&number == numbers ? "" : " "), number);
    } else {
        for (unsigned int i = 0; i < sizeof(T) / sizeof(value[0]); ++i)
            put(text.append(i == 0 ? "" : " "), value[i]);
    }
}

inline bool take(std::string_view& text, std::string& value)
{
    skipBlanks(text);
    if (text.empty() || text.front() != '"')
        return false;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"') {
            text.remove_prefix(i + 1);
            return true;
        }
        if (text[i] == '\\' && ++i == text.size())
            return false;
        value += text[i];
    }
    return false;
}

template <class T>
bool take(std::string_view& text, T& value)
{
    if constexpr (std::is_same_v<T, bool>) {
        skipBlanks(text);
        value = text.substr(0, 4) == "TRUE";
        const bool known = value || text.substr(0, 5) == "FALSE";
        text.remove_prefix(known ? (value ? 4 : 5) : 0);
        return known;
    } else if constexpr (std::is_arithmetic_v<T>) {
        skipBlanks(text);
        const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        return fault == std::errc();
    } else if constexpr (std::is_same_v<T, Orvane::Rotation>) {
        float numbers[4] = {};
        for (float& number : numbers) {
            if (!take(text, number))
                return false;
        }
        value = {numbers[0], numbers[1], numbers[2], numbers[3]};
        return true;
    } else {
        for (unsigned int i = 0; i < sizeof(T) / sizeof(value[0]); ++i) {
            if (!take(text, value[i]))
                return false;
        }
        return true;
    }
}

/// Reads a text to its end into any number of values, which `add` is given one by one.
template <class T, class Add>
bool takeAll(std::string_view text, Add add)
{
    for (skipBlanks(text); !text.empty(); skipBlanks(text)) {
        T value{};
        if (!take(text, value))
            return false;
        add(value);
    }
    return true;
}
