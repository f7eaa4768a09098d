#include "loader/ClassicEmitter.h"

#include "base/Graph.h"
#include "base/TextCoding.h"
#include "loader/AccessWord.h"
#include "loader/ChildPlacement.h"
#include "loader/ClassicText.h"
#include "loader/NodeFields.h"
#include "loader/SaveNotes.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/FieldType.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

// ---- Names

std::string ClassicEmitter::sayableName(std::string_view name) const
{
    return classic::sayableName(name);
}

std::string ClassicEmitter::fieldName(const NodeType&, const NodePartDesc&, std::string_view name)
{
    return sayable(name, "field");
}

std::string ClassicEmitter::nameOf(const Field& field)
{
    return fieldName(owner(), *field._desc, field.name());
}

/// A name as it is written; when it changes, what it names is told.
std::string ClassicEmitter::sayable(std::string_view name, const char* what)
{
    const std::string result = coding::toFile(sayableName(name));
    if (const std::string own = coding::toFile(name); result != own)
        note(noteOfName(what, own, result));
    return result;
}

std::string_view ClassicEmitter::accessWord(NodePartType access) const
{
    return x3dAccessWord(access);
}

void ClassicEmitter::note(const std::string& text)
{
    if (_notes.add(text))
        comment(text);
}

// ---- The file

void ClassicEmitter::writeHead(const std::vector<KeptHead>& head)
{
    _out += "#X3D V4.0 utf8";
    _out.newLine();
    const auto write = [&](HeadStatement::Kind kind, auto line) {
        for (const KeptHead& statement : head) {
            if (statement.kind != kind)
                continue;
            _out.newLine();
            line(statement);
        }
    };
    _out.newLine();
    _out += "PROFILE " + coding::toFile(sayableName(profileOf(head)));
    write(HeadStatement::COMPONENT, [&](const KeptHead& component) {
        _out += "COMPONENT " + coding::toFile(sayableName(component.name)) + ":" +
                coding::toFile(component.content);
    });
    write(HeadStatement::UNIT, [&](const KeptHead& unit) {
        _out += "UNIT " + coding::toFile(sayableName(unit.name)) + " " +
                coding::toFile(sayableName(unit.content)) + " " + unit.factor;
    });
    write(HeadStatement::META, [&](const KeptHead& meta) {
        _out += "META " + classic::quoted(meta.name) + " " + classic::quoted(meta.content);
    });
    _out.newLine();
}

void ClassicEmitter::beginScene(const std::vector<KeptHead>& head, const Node* root,
                                std::string_view rootName)
{
    writeHead(head);
    if (!root)
        return;
    // The root itself is not in the file, unless it bears something.
    std::vector<const Field*> values;
    for (unsigned int part = 0; part < partCount(*root->type()); ++part) {
        const Field& field = readField(*root, part);
        if (!holdsNodes(field) && field.node() == root && !isDefault(*root, field))
            values.push_back(&field);
    }
    if (rootName.empty() && values.empty())
        return;
    beginNode(*root, rootName, nullptr);
    for (const Field* field : values)
        value(*field);
    endValues(false);
    endNode();
}

void ClassicEmitter::endScene()
{
    _out += '\n';
}

void ClassicEmitter::comment(std::string_view text)
{
    std::string rest = coding::toFile(text);
    std::replace(rest.begin(), rest.end(), '\r', '\n');
    for (std::size_t begin = 0; begin <= rest.size();) {
        const std::size_t end = std::min(rest.find('\n', begin), rest.size());
        _out.newLine();
        _out += "# ";
        _out += std::string_view(rest).substr(begin, end - begin);
        begin = end + 1;
    }
    _isBehindField = false;
}

// ---- Nodes

void ClassicEmitter::startNode()
{
    if (_isBehindField)
        _out += ' ';
    else
        _out.newLine();
    _isBehindField = false;
}

void ClassicEmitter::writeType(const Node& node, std::string_view name)
{
    const std::string type = sayable(node.type()->name, "node type");
    startNode();
    if (!name.empty())
        _out += "DEF " + coding::toFile(name) + " ";
    _out += type + " {";
}

void ClassicEmitter::beginNode(const Node& node, std::string_view name, const Field*)
{
    writeType(node, name);
    _out.deeper();
    _open.push_back({node.type()});
}

void ClassicEmitter::endValues(bool hasContent)
{
    if (hasContent)
        _open.back().isEmpty = false;
}

void ClassicEmitter::endNode()
{
    const Level& level = _open.back();
    for (const std::string& connection : level.connections) {
        _out.newLine();
        _out += connection;
    }
    if (level.source) {
        _out.newLine();
        _out += "url ";
        writeStrings(*level.source);
    }
    _out.higher();
    if (level.isEmpty)
        _out += ' ';
    else
        _out.newLine();
    _out += '}';
    _open.pop_back();
}

void ClassicEmitter::use(const Node&, std::string_view name, const Field*)
{
    startNode();
    _out += "USE " + coding::toFile(name);
}

void ClassicEmitter::beginNodes(const Field& field, bool hasNodes)
{
    const std::string name = nameOf(field);
    _out.newLine();
    _out += name;
    beginValueNodes(field, hasNodes);
}

void ClassicEmitter::beginValueNodes(const Field& field, bool hasNodes)
{
    if (field.dataType() == MFNODE_DT) {
        _out += hasNodes ? " [" : " [ ]";
        _out.deeper();
    } else if (hasNodes) {
        _isBehindField = true;
    } else {
        _out += " NULL";
    }
}

void ClassicEmitter::endNodes(const Field& field, bool hasNodes)
{
    if (field.dataType() != MFNODE_DT)
        return;
    _out.higher();
    if (hasNodes) {
        _out.newLine();
        _out += ']';
    }
}

// ---- Values

void ClassicEmitter::value(const Field& field)
{
    Level& level = _open.back();
    level.isEmpty = false;
    if (sourceOf(field)) {
        level.source = &field;
        return;
    }
    const std::string name = nameOf(field);
    _out.newLine();
    _out += name + ' ';
    writeValue(field);
}

void ClassicEmitter::writeValue(const Field& field)
{
    const NodePartDataType type = field.dataType();
    if (type == MFSTRING_DT)
        return writeStrings(field);
    const std::string text = field.valueToString();
    if (type == SFSTRING_DT) {
        // Of a field of unknown type only the text is known.
        const bool isOpen = isUnknown(owner());
        if (isOpen && classic::isNumberList(text))
            _out += text;
        else if (isOpen && classic::isQuotedList(text))
            _out += "[ " + coding::toFile(text) + " ]";
        else
            _out += classic::quoted(text);
    } else if (type % 2 != 0) {
        _out.appendList(text, valueDivider(type));
    } else {
        _out += "[ ";
        _out.appendList(text, valueDivider(type));
        _out += text.empty() ? "]" : " ]";
    }
}

/// A single text stands without brackets unless \a asList asks for them.
template <class TextAt>
void ClassicEmitter::writeTexts(int count, bool asList, TextAt textAt)
{
    if (count == 1 && !asList) {
        _out += classic::quoted(textAt(0));
        return;
    }
    _out += '[';
    _out.deeper();
    for (int i = 0; i < count; ++i) {
        if (count > 1)
            _out.newLine();
        else
            _out += ' ';
        _out += classic::quoted(textAt(i));
    }
    _out.higher();
    if (count > 1)
        _out.newLine();
    else
        _out += ' ';
    _out += ']';
}

void ClassicEmitter::writeStrings(const Field& field)
{
    const auto& strings = static_cast<const MFString&>(field);
    writeTexts(static_cast<int>(strings.size()), isUnknown(owner()),
               [&](int i) -> const std::string& { return strings[i]; });
}

void ClassicEmitter::beginDeclaration(const Field& field, bool hasNodes)
{
    const NodePartDesc& desc = *field._desc;
    declare(desc, owner());
    if (const auto connected = _connected.find(&field); connected != _connected.end()) {
        _out += " IS " + connected->second;
        return;
    }
    if (!(desc.partType & FIELDP))
        return;
    if (holdsNodes(field)) {
        beginValueNodes(field, hasNodes);
    } else {
        _out += ' ';
        writeValue(field);
    }
}

void ClassicEmitter::endDeclaration(const Field& field, bool hasNodes)
{
    if (_connected.erase(&field) == 0 && (field._desc->partType & FIELDP))
        endNodes(field, hasNodes);
}

void ClassicEmitter::checkDeclaration(const NodePartDesc&, const NodeType&)
{
}

void ClassicEmitter::declare(const NodePartDesc& desc, const NodeType& type)
{
    checkDeclaration(desc, type);
    const std::string name = sayable(desc.name, "field");
    _out.newLine();
    _out +=
        std::string(accessWord(desc.partType)) + " " + FieldType::dataTypeName(desc.dataType) + " " + name;
}

void ClassicEmitter::isConnection(const Field& field, const Field& protoField)
{
    Level& level = _open.back();
    level.isEmpty = false;
    const std::string protoName = fieldName(*protoField.node()->type(), *protoField._desc, protoField.name());
    const bool isDeclared = isDeclaredField(owner(), field);
    // A declaration says either the value or what the field stands for.
    const bool fits = !(field._desc->partType & FIELDP) || (protoField._desc->partType & FIELDP);
    if (isDeclared && fits && _connected.emplace(&field, protoName).second)
        return;
    const std::string line = nameOf(field) + " IS " + protoName;
    if (isDeclared) {
        level.connections.push_back(line);
        return;
    }
    _out.newLine();
    _out += line;
}

// ---- Prototypes

void ClassicEmitter::beginProto(const NodeType& type, bool hasInterface)
{
    const std::string name = sayable(type.name, "node type");
    _proto = &type;
    _out.newLine();
    _out += "PROTO " + name + (hasInterface ? " [" : " [ ]");
    _out.deeper();
}

void ClassicEmitter::beginProtoBody(bool hasInterface)
{
    _out.higher();
    if (hasInterface) {
        _out.newLine();
        _out += ']';
    }
    _out += " {";
    _out.deeper();
}

void ClassicEmitter::endProto()
{
    _out.higher();
    _out.newLine();
    _out += '}';
}

void ClassicEmitter::externProto(const NodeType& type, const std::vector<std::string>& urls)
{
    const std::string name = sayable(type.name, "node type");
    const bool hasInterface = partCount(type) > 1;
    _out.newLine();
    _out += "EXTERNPROTO " + name + " [";
    _out.deeper();
    for (unsigned int part = 0; part + 1 < partCount(type); ++part)
        declare(*partDesc(type, part), type);
    _out.higher();
    if (hasInterface)
        _out.newLine();
    _out += hasInterface ? "] " : " ] ";
    writeTexts(static_cast<int>(urls.size()), false,
               [&](int i) -> const std::string& { return urls[static_cast<std::size_t>(i)]; });
}

void ClassicEmitter::beginUnseen()
{
    _out.newLine();
    _out += "Switch {"; // shows none of its children unless it is told to
    _out.deeper();
    _out.newLine();
    _out += std::string(switchField()) + " [";
    _out.deeper();
}

void ClassicEmitter::endUnseen()
{
    for (const char* closer : {"]", "}"}) {
        _out.higher();
        _out.newLine();
        _out += closer;
    }
}

// ---- Statements

std::string ClassicEmitter::routeText(std::string_view fromNode, const EventOutSlot& from,
                                      std::string_view toNode, const EventInSlot& to)
{
    const std::string fromField = fieldName(*from.field()->node()->type(), *from.field()->_desc, from.name());
    const std::string toField = fieldName(*to.field()->node()->type(), *to.field()->_desc, to.name());
    return routeText({std::string(fromNode), fromField, std::string(toNode), toField});
}

std::string ClassicEmitter::routeText(const KeptRoute& route)
{
    return "ROUTE " + coding::toFile(route.fromNode) + "." + route.fromField + " TO " +
           coding::toFile(route.toNode) + "." + route.toField;
}

void ClassicEmitter::route(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                           const EventInSlot& to)
{
    const std::string text = routeText(fromNode, from, toNode, to);
    _out.newLine();
    _out += text;
}

void ClassicEmitter::waitingRoute(const KeptRoute& route)
{
    _out.newLine();
    _out += routeText(route);
}

void ClassicEmitter::importStatement(std::string_view inlineName, std::string_view exportedName,
                                     std::string_view name)
{
    _out.newLine();
    _out += "IMPORT " + coding::toFile(inlineName) + "." + coding::toFile(exportedName);
    if (name != exportedName)
        _out += " AS " + coding::toFile(name);
}

void ClassicEmitter::exportStatement(std::string_view localName, std::string_view exportedName)
{
    _out.newLine();
    _out += "EXPORT " + coding::toFile(localName);
    if (exportedName != localName)
        _out += " AS " + coding::toFile(exportedName);
}

} // namespace Orvane
