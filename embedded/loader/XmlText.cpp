#include "loader/XmlText.h"

#include "loader/FileText.h"
#include "loader/IndentedText.h"

namespace Orvane::xml {

std::string escaped(std::string_view text, char quote)
{
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '&')
            out += "&amp;";
        else if (c == '<')
            out += "&lt;";
        else if (c == quote)
            out += quote == '"' ? "&quot;" : "&apos;";
        else if (byte < 0x20)
            out += "&#" + std::to_string(byte) + ";";
        else
            out += c;
    }
    return out;
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

std::string sayableName(std::string_view name)
{
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
               static_cast<unsigned char>(c) >= 0x80;
    };
    std::string result(name);
    for (char& c : result)
        if (!isLetter(c) && !(c >= '0' && c <= '9') && c != '-' && c != '.' && c != ':')
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
