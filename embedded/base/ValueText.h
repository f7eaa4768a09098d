#pragma once

#include "base/ValueFields.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <Orvane/Image.h>
#include <Orvane/Rotation.h>
#include <array>
#include <string>
#include <string_view>

/// The text form of values: what `Field::valueToString` writes and `Field::parseValue` reads.
namespace Orvane::text {

/// Goes over a text value by value. Blanks, line ends and commas divide values.
class ORVANE_API Reader
{
public:
    explicit Reader(std::string_view text)
        : _rest(text)
    {
        skipDividers();
    }

    /// A list may stand in brackets.
    void openList();
    /// True behind the last value; the end of a list that was opened in brackets is its bracket.
    bool atEnd();
    /// True when nothing but dividers is left; otherwise there is an error.
    bool finish();

    bool read(bool& value);
    bool read(int& value);
    bool read(float& value);
    bool read(double& value);
    /// A text in quotes, or the next word.
    bool read(std::string& value);
    /// The number of a pixel: up to four bytes, decimal or hexadecimal.
    bool read(unsigned int& value);

    /// Number of characters that are left.
    std::size_t size() const { return _rest.size(); }

    /// Says what was expected in place of what comes next; always false.
    bool fail(std::string_view expected);
    /// Why the last reading failed: "expected a number, found "red"".
    const std::string& error() const { return _error; }

private:
    void skipDividers();
    std::string_view takeWord();
    /// Goes on behind a number, unless it does not end at \a end or there is none (null).
    bool takeNumber(const char* end, std::string_view expected);

    std::string_view _rest;
    bool _inBrackets = false;
    std::string _error;
};

void write(std::string& text, bool value);
void write(std::string& text, int value);
ORVANE_API void write(std::string& text, float value);
ORVANE_API void write(std::string& text, double value);
/// In quotes, as a list has its texts.
void write(std::string& text, const std::string& value);

bool read(Reader& reader, Image& value);
void write(std::string& text, const Image& value);
/// A number for a message, as scenes write it.
template <class N>
std::string written(N number)
{
    std::string text;
    write(text, number);
    return text;
}
/// Same form and pixels.
bool isSame(const Image& a, const Image& b);

/// What a value consists of.
template <class T>
struct Components;

template <class N, std::size_t Count, class T>
struct IndexedComponents
{
    using Number = N;
    static constexpr std::size_t count = Count;
    static N get(const T& value, std::size_t i) { return value[static_cast<osg::UInt32>(i)]; }
    static void set(T& value, const std::array<N, Count>& numbers)
    {
        for (std::size_t i = 0; i < Count; ++i)
            value[static_cast<osg::UInt32>(i)] = numbers[i];
    }
};

template <class N>
struct Components<osg::Color3<N>> : IndexedComponents<N, 3, osg::Color3<N>>
{
};
template <class N>
struct Components<osg::Color4<N>> : IndexedComponents<N, 4, osg::Color4<N>>
{
};
template <class N, osg::UInt32 Count>
struct Components<osg::Vector<N, Count>> : IndexedComponents<N, Count, osg::Vector<N, Count>>
{
};

template <class N, int Edge>
struct Components<SquareMatrix<N, Edge>>
{
    using Number = N;
    static constexpr std::size_t count = static_cast<std::size_t>(Edge) * Edge;
    static N get(const SquareMatrix<N, Edge>& value, std::size_t i) { return value.v[i]; }
    static void set(SquareMatrix<N, Edge>& value, const std::array<N, count>& numbers) { value.v = numbers; }
};

template <>
struct Components<Rotation>
{
    using Number = float;
    static constexpr std::size_t count = 4;
    static float get(const Rotation& value, std::size_t i)
    {
        return i == 0 ? value.x() : i == 1 ? value.y() : i == 2 ? value.z() : value.angle();
    }
    static void set(Rotation& value, const std::array<float, 4>& n) { value = {n[0], n[1], n[2], n[3]}; }
};

inline bool read(Reader& reader, bool& value)
{
    return reader.read(value);
}
inline bool read(Reader& reader, int& value)
{
    return reader.read(value);
}
inline bool read(Reader& reader, float& value)
{
    return reader.read(value);
}
inline bool read(Reader& reader, double& value)
{
    return reader.read(value);
}
inline bool read(Reader& reader, std::string& value)
{
    return reader.read(value);
}

template <class T, std::size_t = Components<T>::count>
bool read(Reader& reader, T& value)
{
    std::array<typename Components<T>::Number, Components<T>::count> numbers;
    for (auto& number : numbers)
        if (!reader.read(number))
            return false;
    Components<T>::set(value, numbers);
    return true;
}

template <class T, std::size_t = Components<T>::count>
void write(std::string& text, const T& value)
{
    for (std::size_t i = 0; i < Components<T>::count; ++i) {
        if (i > 0)
            text += ' ';
        write(text, Components<T>::get(value, i));
    }
}

inline bool isSame(bool a, bool b)
{
    return a == b;
}
inline bool isSame(int a, int b)
{
    return a == b;
}
inline bool isSame(float a, float b)
{
    return a == b;
}
inline bool isSame(double a, double b)
{
    return a == b;
}
inline bool isSame(const std::string& a, const std::string& b)
{
    return a == b;
}

/// Exact, unlike the tolerant comparison of the value classes.
template <class T, std::size_t = Components<T>::count>
bool isSame(const T& a, const T& b)
{
    for (std::size_t i = 0; i < Components<T>::count; ++i)
        if (Components<T>::get(a, i) != Components<T>::get(b, i))
            return false;
    return true;
}

/// Reads a text that holds just one value.
template <class T>
bool parse(std::string_view text, T& value, std::string& error)
{
    Reader reader(text);
    T parsed{};
    if (!read(reader, parsed) || !reader.finish()) {
        error = reader.error();
        return false;
    }
    value = std::move(parsed);
    return true;
}

/// Reads a list; its cells are made of a value each.
template <class T, class Cell>
bool parseList(std::string_view text, std::vector<Cell>& cells, std::string& error)
{
    Reader reader(text);
    std::vector<Cell> parsed;
    reader.openList();
    while (!reader.atEnd()) {
        T value{};
        if (!read(reader, value)) {
            error = reader.error();
            return false;
        }
        parsed.push_back(Cell{std::move(value)});
    }
    if (!reader.finish()) {
        error = reader.error();
        return false;
    }
    parsed.shrink_to_fit();
    cells = std::move(parsed);
    return true;
}

/// Values divided by ", ".
template <class Iterator, class Value>
std::string writeList(Iterator begin, Iterator end, Value value)
{
    std::string text;
    for (Iterator i = begin; i != end; ++i) {
        if (i != begin)
            text += ", ";
        write(text, value(*i));
    }
    return text;
}

} // namespace Orvane::text
