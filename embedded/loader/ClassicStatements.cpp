#include "loader/ClassicStatements.h"

#include "base/ValueText.h"
#include "loader/ClassicInput.h"
#include "loader/ClassicValues.h"
#include "loader/SceneSink.h"

namespace Orvane {

bool ClassicStatements::isHead(std::string_view word)
{
    return word == "PROFILE" || word == "COMPONENT" || word == "UNIT" || word == "META";
}

bool ClassicStatements::isExchange(std::string_view word)
{
    return word == "IMPORT" || word == "EXPORT";
}

bool ClassicStatements::isKeyword(std::string_view word)
{
    return word == "ROUTE" || word == "PROTO" || word == "EXTERNPROTO" || isHead(word) || isExchange(word);
}

/// True, and told, when a word that is still missing is that of a node or another statement, which goes on
/// from there.
bool ClassicStatements::endsEarly(std::string_view where, std::string_view what)
{
    const ClassicTokens& tokens = _input.tokens;
    if (tokens.kind() != ClassicTokens::WORD)
        return false;
    const bool isOther =
        tokens.is("DEF") || tokens.is("USE") || tokens.opensBrace() || isKeyword(tokens.text());
    if (isOther)
        _input.expected(where, what);
    return isOther;
}

std::string_view ClassicStatements::takeName(std::string_view where, std::string_view what)
{
    return endsEarly(where, what) ? std::string_view() : _input.takeName(where, what);
}

bool ClassicStatements::readHead()
{
    HeadStatement statement;
    statement.place = _input.place();
    const std::string_view word = _input.takeName({}, "a statement");
    bool ok = false;
    if (word == "PROFILE") {
        statement.kind = HeadStatement::PROFILE;
        statement.content = _version;
        statement.name = takeName("PROFILE", "the name of a profile");
        ok = !statement.name.empty();
    } else if (word == "COMPONENT") {
        statement.kind = HeadStatement::COMPONENT;
        ok = readComponent(statement.name, statement.content);
    } else if (word == "UNIT") {
        statement.kind = HeadStatement::UNIT;
        ok = readUnit(statement.name, statement.content, statement.factor);
    } else {
        statement.kind = HeadStatement::META;
        ok = readMeta(statement.name, statement.content);
    }
    if (ok)
        _sink.head(statement);
    return ok;
}

/// "Text:2", with blanks anywhere in it.
bool ClassicStatements::readComponent(std::string_view& name, std::string_view& level)
{
    const std::string_view word = takeName("COMPONENT", "the name of a component");
    const std::size_t colon = word.find(':');
    name = word.substr(0, colon);
    if (colon != std::string_view::npos)
        level = word.substr(colon + 1);
    else if (const std::string_view next = _input.tokens.text(); !name.empty() && next.substr(0, 1) == ":") {
        level = next.substr(1);
        _input.tokens.next();
    }
    if (name.empty())
        return false;
    if (level.empty())
        level = takeName("COMPONENT", "a colon and the level");
    return !level.empty();
}

bool ClassicStatements::readUnit(std::string_view& category, std::string_view& name, double& factor)
{
    category = takeName("UNIT", "a category");
    if (category.empty())
        return false;
    name = takeName("UNIT", "the name of a unit");
    if (name.empty())
        return false;
    ClassicValues::Value value;
    if (endsEarly("UNIT." + std::string(name), "a value of type SFDouble") ||
        !_values.take(SFDOUBLE_DT, {"UNIT", name}, value))
        return false;
    std::string error;
    if (text::parse(value.text, factor, error))
        return true;
    _input.warn(value.offset, "UNIT." + std::string(name) + ": " + error);
    return false;
}

bool ClassicStatements::readMeta(std::string_view& name, std::string_view& content)
{
    ClassicValues::Value value;
    if (endsEarly("META.name", "a text in quotes") || !_values.take(SFSTRING_DT, {"META", "name"}, value))
        return false;
    name = value.text;
    if (endsEarly("META.content", "a text in quotes") ||
        !_values.take(SFSTRING_DT, {"META", "content"}, value))
        return false;
    content = value.text;
    return true;
}

/// "node.field", with blanks anywhere in it.
bool ClassicStatements::readEnd(const Statement& statement, End& end)
{
    const std::string_view word = takeName(statement.word, statement.end);
    if (word.empty())
        return false;
    // Names should have no dots, but some do; fields never have.
    const std::size_t dot = word.rfind('.');
    end.node = word.substr(0, dot);
    if (dot != std::string_view::npos) {
        end.name = word.substr(dot + 1);
    } else if (const std::string_view next = _input.tokens.text(); next.substr(0, 1) == ".") {
        end.name = next.substr(1);
        _input.tokens.next();
    } else {
        _input.expected(statement.word, statement.end);
        return false;
    }
    if (end.name.empty())
        end.name = takeName(statement.word, statement.end);
    return !end.node.empty() && !end.name.empty();
}

bool ClassicStatements::readRoute()
{
    constexpr Statement route = {"ROUTE", "node.field"};
    const SourcePlace place = _input.place();
    _input.tokens.next();
    End from;
    End to;
    if (!readEnd(route, from))
        return false;
    if (!_input.tokens.is("TO")) {
        _input.expected(route.word, "TO");
        return false;
    }
    _input.tokens.next();
    if (!readEnd(route, to))
        return false;
    _sink.route({from.node, from.name, to.node, to.name, place});
    return true;
}

/// An AS with the name behind it, which may be missing.
bool ClassicStatements::readAs(std::string_view& name)
{
    if (!_input.tokens.is("AS"))
        return true;
    _input.tokens.next();
    name = takeName("AS", "a name");
    return !name.empty();
}

bool ClassicStatements::readExchange()
{
    ExchangeStatement statement;
    statement.place = _input.place();
    const bool isImport = _input.tokens.is("IMPORT");
    _input.tokens.next();
    if (isImport) {
        End end;
        if (!readEnd({"IMPORT", "inline.node"}, end))
            return false;
        statement.inlineName = end.node;
        statement.exportedName = end.name;
    } else {
        statement.exportedName = takeName("EXPORT", "the name of a node");
    }
    if (statement.exportedName.empty() || !readAs(statement.name))
        return false;
    if (isImport)
        _sink.importNode(statement);
    else
        _sink.exportNode(statement);
    return true;
}

} // namespace Orvane
