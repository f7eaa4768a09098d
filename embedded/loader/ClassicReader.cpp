#include "loader/ClassicReader.h"

#include "loader/ClassicWalk.h"
#include "loader/LoadMessages.h"
#include "loader/SourceText.h"
#include <string>

namespace Orvane {

namespace {

constexpr std::string_view blanks = " \t\r\n";

/// The first line that is not blank.
std::string_view firstLine(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    const std::string_view rest = text.substr(begin);
    return rest.substr(0, rest.find_first_of("\r\n"));
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

/// "3.3" from "#X3D V3.3 utf8"; empty when the line names no version.
std::string versionOf(std::string_view header)
{
    const std::size_t begin = header.find('V');
    if (!startsWith(header, "#X3D") || begin == std::string_view::npos)
        return {};
    const std::string_view rest = header.substr(begin + 1);
    return std::string(rest.substr(0, rest.find_first_not_of("0123456789.")));
}

bool read(SourceText& text, SceneSink& sink, LoadMessages& messages, const ClassicDialect& dialect,
          std::string_view header)
{
    const std::string_view line = firstLine(text.view());
    const bool hasHeader = startsWith(line, dialect.isVrml97 ? header : std::string_view("#X3D V"));
    if (!hasHeader)
        messages.warn(text.place(0), "expected the header " + quoted(header) + ", found " +
                                         (line.empty() ? "none" : quoted(line)));
    if (dialect.isVrml97)
        sink.version("2.0");
    else if (!dialect.version.empty())
        sink.version(dialect.version);
    ClassicWalk walk(text, sink, messages, dialect);
    const bool ok = walk.readScene(hasHeader);
    if (!ok && !walk.isGivenUp())
        messages.error(text.place(0), "expected nodes or statements, found none");
    return ok;
}

} // namespace

bool isClassic(std::string_view text)
{
    return startsWith(firstLine(text), "#X3D");
}

bool isVrml97(std::string_view text)
{
    const std::string_view line = firstLine(text);
    return startsWith(line, "#VRML") && !startsWith(line, "#VRML V1.0");
}

bool readClassic(SourceText& text, SceneSink& sink, LoadMessages& messages)
{
    const std::string version = versionOf(firstLine(text.view()));
    return read(text, sink, messages, {"X3D", version, false}, "#X3D V4.0 utf8");
}

bool readVrml97(SourceText& text, SceneSink& sink, LoadMessages& messages)
{
    return read(text, sink, messages, {"VRML97", {}, true}, "#VRML V2.0 utf8");
}

} // namespace Orvane
