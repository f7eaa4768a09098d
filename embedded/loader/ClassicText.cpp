#include "loader/ClassicText.h"

#include "base/TextCoding.h"
#include <algorithm>
#include <iterator>

namespace Orvane::classic {

namespace {

constexpr std::string_view keywords[] = {
    "AS",         "COMPONENT",    "DEF",   "EXPORT",         "EXTERNPROTO", "FALSE",
    "IMPORT",     "IS",           "META",  "NULL",           "PROFILE",     "PROTO",
    "ROUTE",      "TO",           "TRUE",  "UNIT",           "USE",         "eventIn",
    "eventOut",   "exposedField", "field", "initializeOnly", "inputOnly",   "inputOutput",
    "outputOnly",
};

bool mayStandInName(char c)
{
    return static_cast<unsigned char>(c) > 0x20 && c != 0x7F &&
           std::string_view("\"#',.[\\]{}").find(c) == std::string_view::npos;
}

bool mayBeginName(char c)
{
    return mayStandInName(c) && !(c >= '0' && c <= '9') && c != '+' && c != '-';
}

bool isNumberOrTruth(std::string_view word)
{
    if (word == "TRUE" || word == "FALSE")
        return true;
    const bool beginsNumber = (word[0] >= '0' && word[0] <= '9') ||
                              (word.size() > 1 && (word[0] == '+' || word[0] == '-' || word[0] == '.'));
    return beginsNumber && word.find_first_not_of("0123456789+-.eExXabcdfABCDF") == std::string_view::npos;
}

/// Takes a text in quotes and the dividers behind it; false when there is none.
bool takeQuoted(std::string_view& rest)
{
    if (rest.empty() || rest[0] != '"')
        return false;
    std::size_t end = 1;
    while (end < rest.size() && rest[end] != '"')
        end += rest[end] == '\\' ? 2 : 1;
    if (end >= rest.size())
        return false;
    rest.remove_prefix(end + 1);
    rest.remove_prefix(std::min(rest.find_first_not_of(" ,\t\r\n"), rest.size()));
    return true;
}

} // namespace

std::string sayableName(std::string_view name)
{
    std::string result(name);
    for (char& c : result)
        if (!mayStandInName(c))
            c = '_';
    if (result.empty() || !mayBeginName(result.front()) ||
        std::find(std::begin(keywords), std::end(keywords), result) != std::end(keywords))
        result.insert(0, 1, '_');
    return result;
}

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (const char c : coding::toFile(text)) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + '"';
}

bool isQuotedList(std::string_view text)
{
    while (takeQuoted(text))
        if (text.empty())
            return true;
    return false;
}

bool isNumberList(std::string_view text)
{
    constexpr std::string_view dividers = " ,\t\r\n";
    bool hasWords = false;
    while (!text.empty()) {
        const std::size_t begin = text.find_first_not_of(dividers);
        if (begin == std::string_view::npos)
            break;
        const std::size_t end = std::min(text.find_first_of(dividers, begin), text.size());
        if (!isNumberOrTruth(text.substr(begin, end - begin)))
            return false;
        hasWords = true;
        text.remove_prefix(end);
    }
    return hasWords;
}

} // namespace Orvane::classic
