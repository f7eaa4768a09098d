#pragma once

#include <Orvane/NodePartDataType.h>
#include <string>
#include <string_view>

namespace Orvane {

/// The text of a scene file as it grows: lines that are indented by how deep they nest.
class IndentedText
{
public:
    explicit IndentedText(bool useTabs);

    void newLine();
    void deeper() { ++_depth; }
    void higher() { --_depth; }

    IndentedText& operator+=(std::string_view text);
    IndentedText& operator+=(char c);

    /// A list of values, on lines that can be read; they break only behind \a divider.
    void appendList(std::string_view list, std::string_view divider);

    const std::string& text() const { return _text; }
    std::string take() { return std::move(_text); }

private:
    std::string _text;
    std::size_t _lineStart = 0;
    unsigned int _depth = 0;
    bool _useTabs;
};

/// What divides the values in the text form of a field of this data type: so may a long list be broken.
std::string_view valueDivider(NodePartDataType dataType);

} // namespace Orvane
