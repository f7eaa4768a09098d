#include "loader/XmlEmitter.h"

#include "base/Graph.h"
#include "base/TextCoding.h"
#include "loader/AccessWord.h"
#include "loader/NodeFields.h"
#include "loader/SaveNotes.h"
#include "loader/XmlText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/FieldType.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

constexpr char lastVersion[] = "4.0";

/// True for a node whose element names its prototype.
bool isInstance(const Node& node)
{
    return node.type()->isProto() || isMarkedInstance(node);
}

/// True for a field of an instance whose value is an element that names it. Metadata stand in the instance as
/// in any node.
bool isInstanceValue(const Field& field)
{
    const Node& node = *field.node();
    return isInstance(node) && !(node.type()->isProto() && field._desc->objExt());
}

} // namespace

void XmlEmitter::attribute(std::string_view name, std::string_view value)
{
    _out += ' ';
    _out += tagName(name, "field");
    _out += "=\"";
    if (coding::isAscii(value))
        xml::appendEscaped(_out, value, '"');
    else
        xml::appendEscaped(_out, coding::toFile(value), '"');
    _out += '"';
}

void XmlEmitter::stringsAttribute(std::string_view name, int count,
                                  const std::function<const std::string&(int)>& textAt)
{
    _out += ' ';
    _out += tagName(name, "field");
    _out += "='";
    for (int i = 0; i < count; ++i) {
        std::string quotedText = i > 0 ? " \"" : "\"";
        for (const char c : coding::toFile(textAt(i))) {
            if (c == '"' || c == '\\')
                quotedText += '\\';
            quotedText += c;
        }
        xml::appendEscaped(_out, quotedText + '"', '\'');
    }
    _out += '\'';
}

/// The value of a field as an attribute. Of an `MFString` only the first \a stringCount texts.
void XmlEmitter::fieldAttribute(std::string_view name, const Field& field, int stringCount)
{
    if (field.dataType() == MFSTRING_DT) {
        const auto& strings = static_cast<const MFString&>(field);
        return stringsAttribute(name, stringCount, [&](int i) -> const std::string& { return strings[i]; });
    }
    const NodePartDataType type = field.dataType();
    std::string text = field.valueToString();
    // XML files write the truth values as XML does.
    if (type == SFBOOL_DT || type == MFBOOL_DT)
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (type == SFSTRING_DT)
        return attribute(name, text);
    _out += ' ';
    _out += tagName(name, "field");
    _out += "=\"";
    _out.appendList(text, valueDivider(type));
    _out += '"';
}

void XmlEmitter::beginScene(const std::vector<KeptHead>& head, const Node* root, std::string_view rootName)
{
    _out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
    _out.newLine();
    _out += "<X3D";
    attribute("profile", profileOf(head));
    attribute("version", lastVersion);
    _out += '>';
    _out.deeper();
    const auto isKept = [](const KeptHead& statement) { return statement.kind != HeadStatement::PROFILE; };
    if (std::any_of(head.begin(), head.end(), isKept)) {
        _out.newLine();
        _out += "<head>";
        _out.deeper();
        // In this order they must stand.
        for (const HeadStatement::Kind kind :
             {HeadStatement::COMPONENT, HeadStatement::UNIT, HeadStatement::META})
            for (const KeptHead& statement : head)
                if (statement.kind == kind)
                    headElement(statement);
        _out.higher();
        _out.newLine();
        _out += "</head>";
    }
    _out.newLine();
    _out += "<Scene";
    if (!rootName.empty())
        attribute("DEF", rootName);
    if (root) {
        for (unsigned int part = 0; part < partCount(*root->type()); ++part) {
            const Field& field = readField(*root, part);
            if (field.dataType() == SFBOOL_DT && field.node() == root &&
                field.valueToString() != field._desc->defaultValue)
                fieldAttribute(field.name(), field, 0);
        }
    }
    _out += '>';
    _out.deeper();
}

void XmlEmitter::endScene()
{
    _out.higher();
    _out.newLine();
    _out += "</Scene>";
    _out.higher();
    _out.newLine();
    _out += "</X3D>\n";
}

void XmlEmitter::beginElement(const Node& node)
{
    _out.newLine();
    _out += '<';
    if (isInstance(node)) {
        _out += "ProtoInstance";
        attribute("name", node.type()->name);
    } else {
        _out += tagName(node.type()->name, "node type");
    }
}

/// A name as an element or attribute; when it changes, what it names is told.
std::string XmlEmitter::tagName(std::string_view name, const char* what)
{
    if (xml::isPlainName(name))
        return std::string(name);
    const std::string own = coding::toFile(name);
    std::string result = xml::sayableName(own);
    if (result != own)
        _notes.add(noteOfName(what, own, result));
    return result;
}

/// Says into which field a node goes, unless the reader finds that field by itself.
void XmlEmitter::container(const Node& node, const Field* holder)
{
    // The element of a declared field, or of an instance's value, says it already.
    if (!holder && _isUnseen && _open.empty() && !isUnknown(*node.type()) &&
        containerField(*node.type()) != "children")
        attribute("containerField", "children");
    if (!holder || isInstanceValue(*holder) || isDeclaredField(*holder->node()->type(), *holder))
        return;
    const Node& parent = *holder->node();
    const std::string_view byType = isUnknown(*node.type()) ? "children" : containerField(*node.type());
    const bool isDefault = byType == holder->name();
    if (isDefault && (isUnknown(*parent.type()) || _placement.accepts(*holder->_desc, *node.type())))
        return;
    // In a scene everything but metadata goes among its children.
    if (parent.type()->isContextRoot() && std::string_view(holder->name()) == "children" &&
        partIndex(*parent.type(), byType) < 0)
        return;
    attribute("containerField", holder->name());
}

void XmlEmitter::beginNode(const Node& node, std::string_view name, const Field* holder)
{
    beginElement(node);
    if (!name.empty())
        attribute("DEF", name);
    container(node, holder);
    const bool instance = isInstance(node);
    _open.push_back({instance ? "ProtoInstance" : tagName(node.type()->name, "node type"), instance});
}

void XmlEmitter::value(const Field& field)
{
    Element& element = _open.back();
    if (element.isInstance) {
        element.instanceValues.push_back(&field);
        return;
    }
    int strings = 0;
    if (field.dataType() == MFSTRING_DT) {
        const auto& texts = static_cast<const MFString&>(field);
        strings = static_cast<int>(texts.size());
        if (const std::string* source = sourceOf(field)) {
            element.source = coding::toFile(*source);
            if (--strings == 0)
                return;
        }
    }
    fieldAttribute(field.name(), field, strings);
}

void XmlEmitter::endValues(bool hasContent)
{
    Element& element = _open.back();
    element.hasContent = hasContent || !element.source.empty() || !element.instanceValues.empty() ||
                         !element.connections.empty();
    _out += element.hasContent ? ">" : "/>";
    _out.deeper();
    for (const Field* field : element.instanceValues) {
        _out.newLine();
        _out += "<fieldValue";
        attribute("name", field->name());
        fieldAttribute("value", *field, static_cast<int>(field->size()));
        _out += "/>";
    }
}

void XmlEmitter::isConnection(const Field& field, const Field& protoField)
{
    _open.back().connections.emplace_back(&field, &protoField);
}

/// Connections stand behind the declarations of the fields that they connect.
void XmlEmitter::writeConnections(Element& element)
{
    if (element.connections.empty())
        return;
    _out.newLine();
    _out += "<IS>";
    _out.deeper();
    for (const auto& [field, protoField] : element.connections) {
        _out.newLine();
        _out += "<connect";
        attribute("nodeField", field->name());
        attribute("protoField", protoField->name());
        _out += "/>";
    }
    _out.higher();
    _out.newLine();
    _out += "</IS>";
    element.connections.clear();
}

void XmlEmitter::beginNodes(const Field& field, bool hasNodes)
{
    if (!_open.empty())
        writeConnections(_open.back());
    if (!isInstanceValue(field))
        return;
    _out.newLine();
    _out += "<fieldValue";
    attribute("name", field.name());
    _out += hasNodes ? ">" : "/>";
    _out.deeper();
}

void XmlEmitter::endNodes(const Field& field, bool hasNodes)
{
    if (!isInstanceValue(field))
        return;
    _out.higher();
    if (!hasNodes)
        return;
    _out.newLine();
    _out += "</fieldValue>";
}

void XmlEmitter::endNode()
{
    Element element = std::move(_open.back());
    _open.pop_back();
    writeConnections(element);
    if (!element.source.empty())
        xml::appendSource(_out, element.source);
    _out.higher();
    if (element.hasContent) {
        _out.newLine();
        _out += "</" + element.name + ">";
    }
}

void XmlEmitter::use(const Node& node, std::string_view name, const Field* holder)
{
    beginElement(node);
    attribute("USE", name);
    container(node, holder);
    _out += "/>";
}

/// True for a field of the open node that has its value from the prototype around.
bool XmlEmitter::hasValueByIs(const Field& field) const
{
    if (_open.empty())
        return false;
    const auto& connections = _open.back().connections;
    return std::any_of(connections.begin(), connections.end(), [&](const auto& connection) {
        return connection.first == &field && (connection.second->_desc->partType & FIELDP);
    });
}

void XmlEmitter::beginDeclaration(const Field& field, bool hasNodes)
{
    const NodePartDesc& desc = *field._desc;
    beginDeclarationTag(desc);
    const bool isNodes = field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT;
    // What a prototype declares is the default itself.
    if (!isNodes && !hasValueByIs(field) && (desc.partType & FIELDP) &&
        (!desc.objExt() || field.valueToString() != desc.defaultValue))
        fieldAttribute("value", field, static_cast<int>(field.size()));
    _out += hasNodes ? ">" : "/>";
    _out.deeper();
}

void XmlEmitter::endDeclaration(const Field&, bool hasNodes)
{
    _out.higher();
    if (hasNodes) {
        _out.newLine();
        _out += "</field>";
    }
}

void XmlEmitter::beginDeclarationTag(const NodePartDesc& desc)
{
    _out.newLine();
    _out += "<field";
    attribute("accessType", x3dAccessWord(desc.partType));
    attribute("name", desc.name);
    attribute("type", FieldType::dataTypeName(desc.dataType));
}

} // namespace Orvane
