#include "loader/IndentedText.h"

namespace Orvane {

namespace {

constexpr std::size_t lineLength = 100;
constexpr std::size_t shortestPiece = 40; ///< of a line that begins far to the right

} // namespace

IndentedText::IndentedText(bool useTabs)
    : _useTabs(useTabs)
{
}

void IndentedText::newLine()
{
    _text += '\n';
    _lineStart = _text.size();
    _text.append(_useTabs ? _depth : 2 * std::size_t(_depth), _useTabs ? '\t' : ' ');
}

IndentedText& IndentedText::operator+=(std::string_view text)
{
    _text += text;
    return *this;
}

IndentedText& IndentedText::operator+=(char c)
{
    _text += c;
    return *this;
}

void IndentedText::appendList(std::string_view list, std::string_view divider)
{
    ++_depth;
    for (;;) {
        const std::size_t used = _text.size() - _lineStart;
        const std::size_t room = used + shortestPiece < lineLength ? lineLength - used : shortestPiece;
        if (list.size() <= room)
            break;
        std::size_t end = list.rfind(divider, room);
        if (end == std::string_view::npos)
            end = list.find(divider, room);
        if (end == std::string_view::npos)
            break;
        // The blank at the end of the divider is the line's end.
        _text += list.substr(0, end + divider.size() - 1);
        list.remove_prefix(end + divider.size());
        newLine();
    }
    _text += list;
    --_depth;
}

std::string_view valueDivider(NodePartDataType dataType)
{
    // An image is one value of many numbers.
    return dataType == SFIMAGE_DT || dataType == MFIMAGE_DT ? " " : ", ";
}

} // namespace Orvane
