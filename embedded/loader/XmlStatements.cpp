// What the XML emitter writes beside nodes and their fields.
#include "base/Graph.h"
#include "base/TextCoding.h"
#include "loader/XmlEmitter.h"
#include "loader/XmlText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>

namespace Orvane {

void XmlEmitter::headElement(const KeptHead& statement)
{
    _out.newLine();
    switch (statement.kind) {
    case HeadStatement::COMPONENT:
        _out += "<component";
        attribute("name", statement.name);
        attribute("level", statement.content);
        break;
    case HeadStatement::UNIT:
        _out += "<unit";
        attribute("category", statement.name);
        attribute("name", statement.content);
        attribute("conversionFactor", statement.factor);
        break;
    default:
        _out += "<meta";
        attribute("name", statement.name);
        attribute("content", statement.content);
    }
    _out += "/>";
}

void XmlEmitter::openTag(std::string_view name)
{
    _out.newLine();
    _out += "<" + std::string(name) + ">";
    _out.deeper();
}

void XmlEmitter::closeTag(std::string_view name)
{
    _out.higher();
    _out.newLine();
    _out += "</" + std::string(name) + ">";
}

void XmlEmitter::beginProto(const NodeType& type, bool hasInterface)
{
    _out.newLine();
    _out += "<ProtoDeclare";
    attribute("name", type.name);
    _out += '>';
    _out.deeper();
    if (hasInterface)
        openTag("ProtoInterface");
}

void XmlEmitter::beginProtoBody(bool hasInterface)
{
    if (hasInterface)
        closeTag("ProtoInterface");
    openTag("ProtoBody");
}

void XmlEmitter::endProto()
{
    closeTag("ProtoBody");
    closeTag("ProtoDeclare");
}

void XmlEmitter::externProto(const NodeType& type, const std::vector<std::string>& urls)
{
    _out.newLine();
    _out += "<ExternProtoDeclare";
    attribute("name", type.name);
    stringsAttribute("url", static_cast<int>(urls.size()),
                     [&](int i) -> const std::string& { return urls[static_cast<std::size_t>(i)]; });
    _out += '>';
    _out.deeper();
    for (unsigned int part = 0; part + 1 < partCount(type); ++part) {
        beginDeclarationTag(*partDesc(type, part));
        _out += "/>";
    }
    closeTag("ExternProtoDeclare");
}

void XmlEmitter::beginUnseen()
{
    openTag("Switch"); // shows none of its children unless it is told to
    _isUnseen = true;
}

void XmlEmitter::endUnseen()
{
    _isUnseen = false;
    closeTag("Switch");
}

void XmlEmitter::route(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                       const EventInSlot& to)
{
    waitingRoute({std::string(fromNode), from.name(), std::string(toNode), to.name()});
}

void XmlEmitter::waitingRoute(const KeptRoute& route)
{
    _out.newLine();
    _out += "<ROUTE";
    attribute("fromNode", route.fromNode);
    attribute("fromField", route.fromField);
    attribute("toNode", route.toNode);
    attribute("toField", route.toField);
    _out += "/>";
}

void XmlEmitter::importStatement(std::string_view inlineName, std::string_view exportedName,
                                 std::string_view name)
{
    _out.newLine();
    _out += "<IMPORT";
    attribute("inlineDEF", inlineName);
    attribute("importedDEF", exportedName);
    if (name != exportedName)
        attribute("AS", name);
    _out += "/>";
}

void XmlEmitter::exportStatement(std::string_view localName, std::string_view exportedName)
{
    _out.newLine();
    _out += "<EXPORT";
    attribute("localDEF", localName);
    if (exportedName != localName)
        attribute("AS", exportedName);
    _out += "/>";
}

void XmlEmitter::comment(std::string_view text)
{
    _out.newLine();
    _out += "<!-- " + xml::commentText(coding::toFile(text)) + " -->";
}

} // namespace Orvane
