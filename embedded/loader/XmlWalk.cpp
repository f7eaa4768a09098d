#include "loader/XmlWalk.h"

#include "loader/AccessWord.h"
#include "loader/FileText.h"
#include "loader/LoadMessages.h"
#include "loader/SceneSink.h"
#include "loader/SourceText.h"
#include <Orvane/FieldType.h>
#include <algorithm>
#include <cstring>
#include <functional>

namespace Orvane {

using pugi::xml_attribute;
using pugi::xml_node;

namespace {

/// Attributes that every element may bear and that say nothing about the scene.
bool saysNothing(std::string_view attribute)
{
    return attribute == "class" || attribute == "id" || attribute == "style" || attribute == "xmlns" ||
           attribute.find(':') != std::string_view::npos;
}

} // namespace

// In order of name, for the search.
const XmlWalk::ElementName XmlWalk::statements[] = {
    {"EXPORT", Element::EXPORT},
    {"ExternProtoDeclare", Element::EXTERN_PROTO},
    {"IMPORT", Element::IMPORT},
    {"IS", Element::IS},
    {"ProtoBody", Element::PROTO_BODY},
    {"ProtoDeclare", Element::PROTO},
    {"ProtoInstance", Element::INSTANCE},
    {"ProtoInterface", Element::PROTO_INTERFACE},
    {"ROUTE", Element::ROUTE},
    {"connect", Element::CONNECT},
    {"field", Element::FIELD},
    {"fieldValue", Element::FIELD_VALUE},
};

XmlWalk::Element XmlWalk::elementOf(std::string_view name)
{
    const auto* const found =
        std::lower_bound(std::begin(statements), std::end(statements), name,
                         [](const ElementName& row, std::string_view wanted) { return row.name < wanted; });
    return found != std::end(statements) && found->name == name ? found->element : Element::NODE;
}

SourcePlace XmlWalk::place(const char* at) const
{
    const std::less<const char*> before;
    if (before(at, _buffer) || !before(at, _buffer + _text.size()))
        return {};
    return _text.place(static_cast<std::size_t>(at - _buffer));
}

SourcePlace XmlWalk::place(xml_node node) const
{
    const char* name = node.name();
    return place(*name ? name - 1 : node.value());
}

SourcePlace XmlWalk::place(xml_attribute attribute) const
{
    const SourcePlace value = place(attribute.value());
    return value.line > 0 ? value : place(attribute.name());
}

void XmlWalk::warn(SourcePlace at, std::string text)
{
    _messages.warn(at, std::move(text));
}

bool XmlWalk::readDocument(const pugi::xml_document& document)
{
    const xml_node root = document.document_element();
    if (std::strcmp(root.name(), "X3D") != 0) {
        _messages.error(place(root), "expected the root element X3D, found " + quoted(root.name()));
        return false;
    }
    if (const xml_node second = root.next_sibling(); second.type() == pugi::node_element)
        warn(place(second),
             "expected the end of the file after the root element, found " + quoted(second.name()));
    for (const xml_attribute attribute : root.attributes()) {
        const std::string_view name = attribute.name();
        if (name != "profile" && name != "version" && !saysNothing(name))
            warn(place(attribute), "X3D: expected profile or version, found " + quoted(name));
    }
    if (const xml_attribute version = root.attribute("version"))
        _sink.version(version.value());
    if (const xml_attribute profile = root.attribute("profile"))
        _sink.head({HeadStatement::PROFILE, profile.value(), root.attribute("version").value(), 1.0,
                    place(profile)});
    xml_node scene;
    xml_node stray;
    for (const xml_node child : root.children()) {
        const std::string_view name = child.name();
        if (name == "head" && !scene)
            readHead(child);
        else if (name == "Scene" && !scene)
            scene = child;
        else if (!stray)
            stray = child;
    }
    if (!scene && !stray) {
        _messages.error(place(root), "expected a Scene in X3D, found none");
        return false;
    }
    if (stray)
        warn(place(stray), std::string("X3D: expected ") + (scene ? "one head and one Scene" : "a Scene") +
                               ", found " + quoted(*stray.name() ? stray.name() : stray.value()));
    // Nodes without the Scene around them are a scene all the same.
    return readContent(scene ? scene : root);
}

void XmlWalk::readHead(xml_node head)
{
    for (const xml_node child : head.children()) {
        const std::string_view name = child.name();
        HeadStatement statement;
        statement.place = place(child);
        statement.name = child.attribute("name").value();
        if (name == "meta") {
            statement.content = child.attribute("content").value();
        } else if (name == "component") {
            statement.kind = HeadStatement::COMPONENT;
            statement.content = child.attribute("level").value();
        } else if (name == "unit") {
            statement.kind = HeadStatement::UNIT;
            statement.content = statement.name;
            statement.name = child.attribute("category").value();
            statement.factor = child.attribute("conversionFactor").as_double(1.0);
        } else {
            warn(statement.place, "head: expected component, unit or meta, found " +
                                      quoted(*child.name() ? child.name() : child.value()));
            continue;
        }
        _sink.head(statement);
    }
}

bool XmlWalk::readContent(xml_node top)
{
    const bool isScene = std::strcmp(top.name(), "Scene") == 0;
    if (isScene) {
        if (const xml_attribute name = top.attribute("DEF")) {
            if (!_sink.beginNode({"Scene", name.value(), {}, false, place(name)}))
                return false;
            _sink.endNode();
        }
        for (const xml_attribute attribute : top.attributes()) {
            if (!saysNothing(attribute.name()) && std::strcmp(attribute.name(), "DEF") != 0)
                _sink.fieldValue(attribute.name(), attribute.value(), place(attribute));
        }
    }
    xml_node node = top.first_child();
    while (node) {
        bool descend = true;
        if (!enter(node, descend))
            return false;
        if (descend && node.first_child()) {
            node = node.first_child();
            continue;
        }
        if (descend)
            leave();
        while (!node.next_sibling()) {
            node = node.parent();
            if (node == top)
                return true;
            leave();
        }
        node = node.next_sibling();
    }
    return true;
}

/// Begins an element. With \a descend false it is done with, else its content and `leave` follow.
bool XmlWalk::enter(xml_node node, bool& descend)
{
    if (node.type() != pugi::node_element) {
        descend = false;
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            readText(node);
        return true;
    }
    const std::string_view name = node.name();
    const Element element = elementOf(name);
    switch (element) {
    case Element::NODE:
        if (_open.empty() && (name == "head" || name == "Scene")) {
            descend = false;
            return true;
        }
        if (!beginNode(node, name, false, descend))
            return false;
        if (_openBodies > 0)
            moveConnections(node);
        break;
    case Element::INSTANCE:
        if (!beginNode(node, needed(node, "name"), true, descend))
            return false;
        break;
    case Element::FIELD:
        beginField(node);
        break;
    case Element::FIELD_VALUE:
        beginFieldValue(node);
        if (!node.first_child())
            descend = false;
        break;
    case Element::CONNECT:
        readConnection(node);
        descend = false;
        break;
    case Element::ROUTE:
        readRoute(node);
        descend = false;
        break;
    case Element::IMPORT:
    case Element::EXPORT:
        readExchange(node, element == Element::IMPORT);
        descend = false;
        break;
    case Element::PROTO:
        _sink.beginProto(needed(node, "name"), place(node));
        break;
    case Element::PROTO_BODY:
        if (!_open.empty() && _open.back() == Element::PROTO)
            _sink.beginProtoBody();
        ++_openBodies;
        break;
    case Element::EXTERN_PROTO:
        _sink.beginExternProto(needed(node, "name"), needed(node, "url"), place(node));
        break;
    case Element::IS:
    case Element::PROTO_INTERFACE:
        break;
    }
    if (descend)
        _open.push_back(element);
    return true;
}

void XmlWalk::leave()
{
    const Element element = _open.back();
    _open.pop_back();
    switch (element) {
    case Element::NODE:
    case Element::INSTANCE:
        _sink.endNode();
        break;
    case Element::FIELD:
        _sink.endDeclaration();
        break;
    case Element::FIELD_VALUE:
        _sink.endFieldNodes();
        break;
    case Element::PROTO:
        _sink.endProto();
        break;
    case Element::PROTO_BODY:
        --_openBodies;
        break;
    case Element::EXTERN_PROTO:
        _sink.endExternProto();
        break;
    default:
        break;
    }
}

bool XmlWalk::beginNode(xml_node node, std::string_view type, bool isInstance, bool& descend)
{
    const SourcePlace at = place(node);
    std::string_view name;
    std::string_view container;
    for (const xml_attribute attribute : node.attributes()) {
        const std::string_view attributeName = attribute.name();
        if (attributeName == "USE") {
            _sink.useNode({isInstance ? std::string_view() : type, attribute.value(),
                           node.attribute("containerField").value(), at});
            if (const xml_node child = node.first_child())
                warn(place(child), type.empty()
                                       ? "USE: expected no content, found some"
                                       : std::string(type) + ": expected no content with USE, found some");
            descend = false;
            return true;
        }
        if (attributeName == "DEF")
            name = attribute.value();
        else if (attributeName == "containerField")
            container = attribute.value();
    }
    if (!_sink.beginNode({type, name, container, isInstance, at}))
        return false;
    for (const xml_attribute attribute : node.attributes()) {
        const std::string_view attributeName = attribute.name();
        if (attributeName == "DEF" || attributeName == "containerField" ||
            (isInstance && attributeName == "name"))
            continue;
        // Some nodes have a field of such a name: "style" of a font.
        if (saysNothing(attributeName) && _sink.fieldType(attributeName) == NO_DT)
            continue;
        _sink.fieldValue(attributeName, attribute.value(), place(attribute));
    }
    return true;
}

/// Moves what an IS connects behind the fields that the node declares, as those may stand after it.
void XmlWalk::moveConnections(xml_node node)
{
    xml_node behind;
    for (const xml_node child : node.children("field"))
        behind = child;
    if (!behind)
        return;
    const xml_node last = behind;
    xml_node child = node.first_child();
    while (child != last) {
        const xml_node next = child.next_sibling();
        if (std::strcmp(child.name(), "IS") == 0)
            behind = node.insert_move_after(child, behind);
        child = next;
    }
}

/// The value of an attribute without which the element means nothing.
std::string_view XmlWalk::needed(xml_node node, const char* attribute)
{
    const std::string_view value = node.attribute(attribute).value();
    if (value.empty())
        warn(place(node),
             std::string(node.name()) + ": expected the attribute " + attribute + ", found none");
    return value;
}

void XmlWalk::beginField(xml_node node)
{
    FieldDeclaration declaration;
    declaration.name = needed(node, "name");
    declaration.place = place(node);
    const xml_attribute type = node.attribute("type");
    declaration.dataType = FieldType::dataType(type.value());
    if (declaration.dataType == NO_DT)
        warn(type ? place(type) : declaration.place,
             "field: expected a data type, found " + quoted(type.value()));
    const xml_attribute access = node.attribute("accessType");
    declaration.access = accessOfWord(access.value());
    if (declaration.access == NO_PART)
        warn(access ? place(access) : declaration.place,
             "field: expected initializeOnly, inputOnly, outputOnly or inputOutput, found " +
                 quoted(access.value()));
    const xml_attribute value = node.attribute("value");
    declaration.hasValue = static_cast<bool>(value);
    declaration.value = value.value();
    declaration.valuePlace = place(value);
    _sink.beginDeclaration(declaration);
}

void XmlWalk::beginFieldValue(xml_node node)
{
    const std::string_view name = needed(node, "name");
    if (const xml_attribute value = node.attribute("value"))
        _sink.fieldValue(name, value.value(), place(value));
    if (node.first_child()) {
        _sink.beginFieldNodes(name, place(node));
        return;
    }
    // With neither it says that the field holds no node.
    const NodePartDataType type = _sink.fieldType(name);
    if (!node.attribute("value") && (type == SFNODE_DT || type == MFNODE_DT)) {
        _sink.beginFieldNodes(name, place(node));
        _sink.endFieldNodes();
    }
}

void XmlWalk::readConnection(xml_node node)
{
    _sink.isConnection(needed(node, "nodeField"), needed(node, "protoField"), place(node));
}

void XmlWalk::readRoute(xml_node node)
{
    const RouteStatement route = {needed(node, "fromNode"), needed(node, "fromField"), needed(node, "toNode"),
                                  needed(node, "toField"), place(node)};
    if (!route.fromNode.empty() && !route.fromField.empty() && !route.toNode.empty() &&
        !route.toField.empty())
        _sink.route(route);
}

void XmlWalk::readExchange(xml_node node, bool isImport)
{
    ExchangeStatement statement;
    statement.place = place(node);
    statement.name = node.attribute("AS").value();
    if (isImport) {
        statement.inlineName = needed(node, "inlineDEF");
        statement.exportedName = needed(node, "importedDEF");
        if (!statement.inlineName.empty() && !statement.exportedName.empty())
            _sink.importNode(statement);
    } else {
        statement.exportedName = needed(node, "localDEF");
        if (!statement.exportedName.empty())
            _sink.exportNode(statement);
    }
}

void XmlWalk::readText(xml_node node)
{
    if (_open.empty()) {
        warn(place(node), "Scene: expected elements, found the text " + quoted(node.value()));
        return;
    }
    // Neighbouring texts are one: so a source may hold the end mark of the sections that it is written in.
    // The blanks round it are the file's, unless a section holds nothing else.
    if (const xml_node previous = node.previous_sibling();
        previous.type() == pugi::node_pcdata || previous.type() == pugi::node_cdata)
        return;
    std::string before;
    std::string source;
    std::string behind;
    for (xml_node part = node; part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata;
         part = part.next_sibling())
    {
        if (trimmedText(part.value()).empty()) {
            (source.empty() ? before : behind) += part.value();
        } else {
            source += behind + part.value();
            behind.clear();
        }
    }
    if (!source.empty())
        _sink.sourceText(before + std::string(trimmedText(source)) + behind, place(node));
}

} // namespace Orvane
