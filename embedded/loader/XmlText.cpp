#include "loader/XmlText.h"

#include "loader/FileText.h"
#include "loader/IndentedText.h"
#include <algorithm>

namespace Orvane::xml {

namespace {

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isNameCharacter(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

} // namespace

void appendEscaped(IndentedText& out, std::string_view text, char quote)
{
    const auto isPlain = [quote](char c) {
        return c != '&' && c != '<' && c != quote && static_cast<unsigned char>(c) >= 0x20;
    };
    while (!text.empty()) {
        const auto* const end = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto plain = static_cast<std::size_t>(end - text.begin());
        out += text.substr(0, plain);
        if (plain == text.size())
            return;
        if (*end == '&')
            out += "&amp;";
        else if (*end == '<')
            out += "&lt;";
        else if (*end == quote)
            out += quote == '"' ? "&quot;" : "&apos;";
        else
            out += "&#" + std::to_string(static_cast<unsigned char>(*end)) + ";";
        text.remove_prefix(plain + 1);
    }
}

std::string commentText(std::string_view text)
{
    std::string out;
    // Two dashes end a comment.
    char previous = ' ';
    for (const char c : text) {
        if (c == '-' && previous == '-')
            out += ' ';
        out += c;
        previous = c;
    }
    return out;
}

bool isPlainName(std::string_view name)
{
    const auto isPlain = [](char c) { return isNameCharacter(c) && static_cast<unsigned char>(c) < 0x80; };
    return !name.empty() && isLetter(name.front()) && std::all_of(name.begin(), name.end(), isPlain);
}

std::string sayableName(std::string_view name)
{
    std::string result(name);
    for (char& c : result)
        if (!isNameCharacter(c))
            c = '_';
    if (result.empty() || !isLetter(result.front()))
        result.insert(0, 1, '_');
    return result;
}

void appendSource(IndentedText& out, std::string_view source)
{
    const std::string_view inner = trimmedText(source);
    const auto begin = static_cast<std::size_t>(inner.data() - source.data());
    const auto section = [&](std::string_view text) {
        out += "<![CDATA[";
        out += text;
        out += "]]>";
    };
    out.newLine();
    // A reader takes the blanks round the source for those of the file, unless they are all of a section.
    if (begin > 0)
        section(source.substr(0, begin));
    out += "<![CDATA[\n";
    // The end mark of the section cannot stand inside it.
    std::string_view rest = inner;
    for (std::size_t mark = rest.find("]]>"); mark != std::string_view::npos; mark = rest.find("]]>")) {
        out += rest.substr(0, mark + 2);
        out += "]]><![CDATA[";
        rest.remove_prefix(mark + 2);
    }
    out += rest;
    out += "\n]]>";
    if (begin + inner.size() < source.size())
        section(source.substr(begin + inner.size()));
}

} // namespace Orvane::xml
