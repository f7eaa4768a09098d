#include "loader/ClassicWalk.h"

#include "base/Graph.h"
#include "loader/AccessWord.h"
#include "loader/SourceText.h"
#include <Orvane/FieldType.h>

namespace Orvane {

namespace {

using Levels = ClassicLevels;
using Tokens = ClassicTokens;

/// True for the first word of a statement that may stand in a node.
bool isInnerKeyword(std::string_view word)
{
    return ClassicStatements::isKeyword(word) && !ClassicStatements::isHead(word);
}

} // namespace

ClassicWalk::ClassicWalk(SourceText& text, SceneSink& sink, LoadMessages& messages,
                         const ClassicDialect& dialect)
    : _input(text, messages)
    , _sink(sink)
    , _dialect(dialect)
    , _values(_input, sink)
    , _statements(_input, _values, sink, dialect.version)
    , _levels(sink)
{
}

bool ClassicWalk::readScene(bool mayBeEmpty)
{
    while (!_isGivenUp && _input.tokens.kind() != Tokens::END)
        readElement();
    if (_isGivenUp)
        return false;
    endFile();
    return _understood > 0 || (mayBeEmpty && _input.faults() == 0);
}

void ClassicWalk::readElement()
{
    const Tokens::Kind kind = _input.tokens.kind();
    if (kind == Tokens::CLOSE_BRACE || kind == Tokens::CLOSE_BRACKET) {
        readCloser();
        return;
    }
    switch (_levels.top().kind) {
    case Levels::NODE:
        readNodeElement();
        break;
    case Levels::INTERFACE:
        readInterfaceElement();
        break;
    default:
        readStatement();
        break;
    }
}

// ---- Levels

/// Takes a brace or bracket that closes. What is open inside of its partner was never closed, and ends too.
void ClassicWalk::readCloser()
{
    Tokens& tokens = _input.tokens;
    const bool isBrace = tokens.kind() == Tokens::CLOSE_BRACE;
    if (!_levels.isAnyClosedBy(isBrace)) {
        _input.expected({}, "a node or statement");
        tokens.next();
        return;
    }
    if (!_levels.isTopClosedBy(isBrace)) {
        _input.expected(_levels.top().name, isBrace ? "]" : "}");
        while (!_levels.isTopClosedBy(isBrace))
            _levels.end();
    }
    tokens.next();
    if (_levels.top().kind == Levels::INTERFACE)
        beginBody();
    else
        _levels.end();
}

void ClassicWalk::endFile()
{
    if (!_levels.isScene()) {
        const Level& level = _levels.top();
        const SourcePlace begin = _input.place(level.offset);
        _input.expected(level.name, std::string(_levels.isTopClosedBy(true) ? "}" : "]") +
                                        " for the beginning at " + std::to_string(begin.line) + ":" +
                                        std::to_string(begin.column));
    }
    while (!_levels.isScene())
        _levels.end();
}

/// Goes to where a statement may begin: a word that is known or that a brace follows, or what closes a level.
void ClassicWalk::skipToStatement()
{
    Tokens& tokens = _input.tokens;
    while (true) {
        switch (tokens.kind()) {
        case Tokens::END:
        case Tokens::CLOSE_BRACE:
        case Tokens::CLOSE_BRACKET:
            return;
        case Tokens::OPEN_BRACE:
        case Tokens::OPEN_BRACKET:
            tokens.skipGroup();
            break;
        case Tokens::WORD:
            if (ClassicStatements::isKeyword(tokens.text()) || tokens.is("DEF") || tokens.is("USE") ||
                tokens.opensBrace())
                return;
            if (_levels.top().kind == Levels::NODE && _values.beginsElement())
                return;
            tokens.next();
            break;
        default:
            tokens.next();
            break;
        }
    }
}

// ---- Statements

void ClassicWalk::readStatement()
{
    Tokens& tokens = _input.tokens;
    const Level& level = _levels.top();
    if (tokens.kind() != Tokens::WORD) {
        _input.expected(level.name, "a node or statement");
        skipToStatement();
        return;
    }
    const std::string_view word = tokens.text();
    if (isInnerKeyword(word)) {
        readKeyword();
    } else if (ClassicStatements::isHead(word)) {
        if (_dialect.isVrml97 || level.kind != Levels::SCENE)
            _input.expected(level.name, "a node or statement of " + std::string(_dialect.name));
        if (_statements.readHead())
            ++_understood;
        else
            skipToStatement();
    } else if (word == "USE") {
        readUse();
    } else if (level.holder == Levels::FIELD && !tokens.opensBrace() && _values.beginsElement()) {
        _input.expected(level.name, "a node or ]");
        _levels.end();
    } else {
        readNode(Levels::NO_HOLDER);
    }
}

/// A statement that may stand between nodes as well as between the fields of a node.
void ClassicWalk::readKeyword()
{
    const Tokens& tokens = _input.tokens;
    if (tokens.is("PROTO")) {
        readProto();
        return;
    }
    if (tokens.is("EXTERNPROTO")) {
        readExternProto();
        return;
    }
    if (_dialect.isVrml97 && ClassicStatements::isExchange(tokens.text()))
        _input.expected(_levels.top().name, "a node or statement of " + std::string(_dialect.name));
    if (tokens.is("ROUTE") ? _statements.readRoute() : _statements.readExchange())
        ++_understood;
    else
        skipToStatement();
}

void ClassicWalk::readUse()
{
    const SourcePlace place = _input.place();
    _input.tokens.next();
    const std::string_view name = _input.takeName("USE", "the name of a node");
    if (name.empty())
        return;
    ++_understood;
    _sink.useNode({{}, name, {}, place});
}

// ---- Nodes

/// Reads the beginning of a node, from DEF or its type to its brace. The holder ends with the node, or at
/// once when there is none.
void ClassicWalk::readNode(Holder holder)
{
    Tokens& tokens = _input.tokens;
    const std::size_t offset = tokens.offset();
    std::string_view name;
    if (tokens.is("DEF")) {
        tokens.next();
        name = _input.takeName("DEF", "a name");
    }
    if (tokens.kind() != Tokens::WORD || !tokens.opensBrace()) {
        const std::string_view type = tokens.kind() == Tokens::WORD ? tokens.text() : std::string_view();
        if (type.empty() || type == "NULL") {
            _input.expected(_levels.top().name, "a node");
        } else {
            tokens.next();
            _input.expected(type, "{");
        }
        _levels.endHolder(holder);
        skipToStatement();
        return;
    }
    const std::string_view type = tokens.text();
    const bool isInstance = _levels.isProto(type);
    const SourcePlace place = _input.place(offset);
    ++_understood;
    if (!_sink.beginNode({type, name, {}, isInstance, place})) {
        _isGivenUp = true;
        return;
    }
    tokens.next();
    tokens.next();
    _levels.begin(Levels::NODE, holder, type, offset);
    if (_dialect.isVrml97 && !isInstance)
        tellDefaults(type, place);
}

/// Tells of the fields whose values are others when a file says nothing.
void ClassicWalk::tellDefaults(std::string_view type, SourcePlace place)
{
    for (const FieldDefault& row : vrml97Defaults(type))
        _sink.fieldValue(row.field, row.value, place);
}

void ClassicWalk::readNodeElement()
{
    Tokens& tokens = _input.tokens;
    const std::string_view type = _levels.top().name;
    if (tokens.kind() != Tokens::WORD) {
        _input.expected(type, "a field or }");
        _values.skip();
        return;
    }
    const std::string_view word = tokens.text();
    if (isInnerKeyword(word)) {
        readKeyword();
    } else if (accessOfWord(word) != NO_PART) {
        readDeclaration();
    } else if (word == "USE") {
        _input.expected(type, "a field in front of the node");
        readUse();
    } else if (word == "DEF" || (tokens.opensBrace() && _sink.fieldType(word) == NO_DT)) {
        _input.expected(type, "a field in front of the node");
        readNode(Levels::NO_HOLDER);
    } else {
        readField();
    }
}

void ClassicWalk::readField()
{
    Tokens& tokens = _input.tokens;
    const std::size_t offset = tokens.offset();
    const FieldLabel label = {_levels.top().name, tokens.text()};
    tokens.next();
    if (tokens.is("IS")) {
        readConnection(label, offset);
        return;
    }
    const NodePartDataType type = _sink.fieldType(label.field);
    if (holdsNodes(type) || (type == NO_DT && _values.beginsNodes())) {
        readNodes(type, label, Levels::FIELD, offset);
        return;
    }
    ClassicValues::Value value;
    if (_values.take(type, label, value))
        _sink.fieldValue(label.field, value.text, _input.place(type == NO_DT ? offset : value.offset));
}

void ClassicWalk::readConnection(const FieldLabel& label, std::size_t offset)
{
    _input.tokens.next();
    const std::string_view name = _input.takeName(toString(label), "the name of a prototype's field");
    if (!name.empty())
        _sink.isConnection(label.field, name, _input.place(offset));
}

/// Reads a value of nodes, or of a list of them the beginning. A declaration is open already.
void ClassicWalk::readNodes(NodePartDataType type, const FieldLabel& label, Holder holder, std::size_t offset)
{
    Tokens& tokens = _input.tokens;
    const bool isList = tokens.kind() == Tokens::OPEN_BRACKET;
    if (!isList && !_values.beginsNodes()) {
        _input.expected(toString(label), "a node");
        _values.skip();
        if (holder == Levels::DECLARATION)
            _levels.endHolder(holder);
        return;
    }
    if (holder == Levels::FIELD)
        _sink.beginFieldNodes(label.field, _input.place(offset));
    if (isList) {
        if (type == SFNODE_DT)
            _input.expected(toString(label), "a node");
        tokens.next();
        _levels.begin(Levels::NODES, holder, label.field, offset);
    } else if (tokens.is("NULL")) {
        tokens.next();
        _levels.endHolder(holder);
    } else if (tokens.is("USE")) {
        readUse();
        _levels.endHolder(holder);
    } else {
        readNode(holder);
    }
}

// ---- Declarations

/// Reads "access type name". False, and told, when there is no name.
bool ClassicWalk::readDeclarationHead(FieldDeclaration& declaration)
{
    Tokens& tokens = _input.tokens;
    const std::string_view where = _levels.top().name;
    declaration.place = _input.place();
    declaration.access = accessOfWord(tokens.text());
    tokens.next();
    declaration.dataType = FieldType::dataType(std::string(tokens.text()));
    if (declaration.dataType == NO_DT)
        _input.expected(where, "a data type");
    if (tokens.kind() == Tokens::WORD)
        tokens.next();
    declaration.name = _input.takeName(where, "the name of a field");
    return !declaration.name.empty();
}

void ClassicWalk::readDeclaration()
{
    FieldDeclaration declaration;
    if (!readDeclarationHead(declaration))
        return;
    Tokens& tokens = _input.tokens;
    const FieldLabel label = {_levels.top().name, declaration.name};
    const bool isConnected = _levels.top().kind == Levels::NODE && tokens.is("IS");
    const bool hasValue = (declaration.access & FIELDP) && !isConnected;
    const std::size_t offset = tokens.offset();
    if (hasValue &&
        (holdsNodes(declaration.dataType) || (declaration.dataType == NO_DT && _values.beginsNodes())))
    {
        _sink.beginDeclaration(declaration);
        readNodes(declaration.dataType, label, Levels::DECLARATION, offset);
        return;
    }
    if (hasValue) {
        ClassicValues::Value value;
        declaration.hasValue = _values.take(declaration.dataType, label, value);
        declaration.value = declaration.hasValue ? value.text : std::string_view();
        declaration.valuePlace = _input.place(value.offset);
    }
    _sink.beginDeclaration(declaration);
    _sink.endDeclaration();
    if (isConnected)
        readConnection(label, offset);
}

// ---- Prototypes

void ClassicWalk::readProto()
{
    Tokens& tokens = _input.tokens;
    const std::size_t offset = tokens.offset();
    tokens.next();
    const std::string_view name = _input.takeName("PROTO", "a name");
    if (name.empty() || (tokens.kind() != Tokens::OPEN_BRACKET && tokens.kind() != Tokens::OPEN_BRACE)) {
        if (!name.empty())
            _input.expected(name, "[");
        skipToStatement();
        return;
    }
    _sink.beginProto(name, _input.place(offset));
    ++_understood;
    _levels.declareProto(name); // before its body, so that an instance in there is known for what it is
    _levels.begin(Levels::INTERFACE, Levels::NO_HOLDER, name, offset);
    if (tokens.kind() == Tokens::OPEN_BRACKET) {
        tokens.next();
    } else {
        _input.expected(name, "[");
        beginBody();
    }
}

void ClassicWalk::readInterfaceElement()
{
    Tokens& tokens = _input.tokens;
    if (tokens.kind() == Tokens::WORD && accessOfWord(tokens.text()) != NO_PART) {
        readDeclaration();
        return;
    }
    _input.expected(_levels.top().name, "a field or ]");
    if (tokens.kind() == Tokens::OPEN_BRACE) {
        beginBody();
        return;
    }
    if (tokens.kind() == Tokens::OPEN_BRACKET) {
        tokens.skipGroup();
        return;
    }
    do
        tokens.next();
    while (tokens.kind() == Tokens::STRING || tokens.kind() == Tokens::NUMBER ||
           (tokens.kind() == Tokens::WORD && accessOfWord(tokens.text()) == NO_PART));
}

/// Makes the open interface a body, or ends the prototype when there is none.
void ClassicWalk::beginBody()
{
    if (_input.tokens.kind() != Tokens::OPEN_BRACE) {
        _input.expected(_levels.top().name, "{");
        _levels.end();
        return;
    }
    _input.tokens.next();
    _levels.beginBody();
}

void ClassicWalk::readExternProto()
{
    Tokens& tokens = _input.tokens;
    const SourcePlace place = _input.place();
    tokens.next();
    const std::string_view name = _input.takeName("EXTERNPROTO", "a name");
    if (name.empty() || tokens.kind() != Tokens::OPEN_BRACKET) {
        if (!name.empty())
            _input.expected(name, "[");
        skipToStatement();
        return;
    }
    tokens.next();
    // The addresses, which the sink is told of first, come last.
    const std::vector<FieldDeclaration> declarations = readExternFields(name);
    ClassicValues::Value urls;
    if (tokens.kind() == Tokens::STRING || tokens.kind() == Tokens::OPEN_BRACKET)
        _values.take(MFSTRING_DT, {name, "url"}, urls);
    else
        _input.expected(name, "its addresses");
    _sink.beginExternProto(name, urls.text, place);
    for (const FieldDeclaration& declaration : declarations) {
        _sink.beginDeclaration(declaration);
        _sink.endDeclaration();
    }
    _sink.endExternProto();
    ++_understood;
    _levels.declareProto(name);
}

/// Reads the fields of a prototype of another file and the bracket behind them.
std::vector<FieldDeclaration> ClassicWalk::readExternFields(std::string_view name)
{
    Tokens& tokens = _input.tokens;
    std::vector<FieldDeclaration> declarations;
    while (tokens.kind() == Tokens::WORD && accessOfWord(tokens.text()) != NO_PART) {
        FieldDeclaration declaration;
        if (readDeclarationHead(declaration))
            declarations.push_back(declaration);
        const bool isNext = tokens.kind() == Tokens::CLOSE_BRACKET ||
                            (tokens.kind() == Tokens::WORD && accessOfWord(tokens.text()) != NO_PART);
        if (!isNext) {
            _input.expected(name, "a field or ]");
            _values.skip();
        }
    }
    if (tokens.kind() == Tokens::CLOSE_BRACKET)
        tokens.next();
    else
        _input.expected(name, "a field or ]");
    return declarations;
}

} // namespace Orvane
