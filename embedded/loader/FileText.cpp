#include "loader/FileText.h"

#include "base/TextCoding.h"
#include <Orvane/MFString.h>

namespace Orvane {

namespace {

bool parseStrings(MFString& strings, std::string_view text, std::string& error)
{
    const std::string_view inner = trimmedText(text);
    if (!inner.empty() && inner.front() != '"' && inner.front() != '[') {
        strings.clear();
        strings.addValue(coding::toGraph(text));
        return true;
    }
    if (!strings.parseValue(text, error))
        return false;
    if (coding::isAscii(text))
        return true;
    for (int i = 0; i < static_cast<int>(strings.size()); ++i)
        strings.elem(i) = coding::toGraph(strings.elem(i));
    return true;
}

} // namespace

bool parseFileText(Field& field, std::string_view text, std::string& error)
{
    if (field.dataType() == MFSTRING_DT)
        return parseStrings(static_cast<MFString&>(field), text, error);
    if (field.dataType() == SFSTRING_DT && !coding::isAscii(text))
        return field.parseValue(coding::toGraph(text), error);
    return field.parseValue(text, error);
}

std::string_view trimmedText(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

} // namespace Orvane
