#include "loader/Vrml97Emitter.h"

#include "base/Graph.h"
#include "base/TextCoding.h"
#include "loader/AccessWord.h"
#include "loader/ChildPlacement.h"
#include "loader/ClassicText.h"
#include "loader/Vrml97Names.h"
#include <Orvane/Field.h>
#include <Orvane/FieldType.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

/// True for a type whose fields a file declares itself.
bool isDeclared(const NodeType& type)
{
    return type.isProto() || isUnknown(type);
}

} // namespace

std::string_view Vrml97Emitter::accessWord(NodePartType access) const
{
    return vrml97AccessWord(access);
}

bool Vrml97Emitter::isDefault(const Node& node, const Field& field) const
{
    const NodePartDesc& desc = *field._desc;
    return ClassicEmitter::isDefault(node, field) &&
           (desc.objExt() || vrml97Default(*node.type(), desc.id) == desc.defaultValue);
}

bool Vrml97Emitter::writesUntouched(const NodeType& type) const
{
    return !vrml97Defaults(type.name).empty();
}

std::string Vrml97Emitter::fieldName(const NodeType& type, const NodePartDesc& desc, std::string_view name)
{
    if (desc.objExt() || isDeclared(type))
        return ClassicEmitter::fieldName(type, desc, name);
    const std::string_view partName = vrml97Name(type, desc.id);
    if (vrml97::hasNode(type.name) && !vrml97::hasField(type.name, partName))
        note(type.name + "." + desc.name + ": VRML97 has no such field; written all the same");
    std::string result(name);
    // An event's name holds that of its field.
    if (partName != desc.name)
        if (const std::size_t at = result.find(desc.name); at != std::string::npos)
            result.replace(at, desc.name.size(), partName);
    return ClassicEmitter::fieldName(type, desc, result);
}

void Vrml97Emitter::beginNode(const Node& node, std::string_view name, const Field* holder)
{
    const NodeType& type = *node.type();
    if (!isDeclared(type) && !vrml97::hasNode(type.name))
        note(type.name + ": VRML97 has no such node; written all the same");
    ClassicEmitter::beginNode(node, name, holder);
}

void Vrml97Emitter::checkDeclaration(const NodePartDesc& desc, const NodeType& type)
{
    if (!vrml97::hasDataType(desc.dataType))
        note(FieldType::dataTypeName(desc.dataType) + ": VRML97 has no such type; written all the same");
    if (desc.partType == EXPOSEDFIELDP && !type.isProto() && type.name == "Script")
        note("exposedField in a Script: VRML97 has only field, eventIn and eventOut there; written all the "
             "same");
}

void Vrml97Emitter::writeHead(const std::vector<KeptHead>& head)
{
    _out += "#VRML V2.0 utf8";
    _out.newLine();
    for (const KeptHead& statement : head) {
        switch (statement.kind) {
        case HeadStatement::PROFILE:
            comment("PROFILE " + statement.name);
            break;
        case HeadStatement::COMPONENT:
            comment("COMPONENT " + statement.name + ":" + statement.content);
            break;
        case HeadStatement::UNIT:
            comment("UNIT " + statement.name + " " + statement.content + " " + statement.factor);
            break;
        case HeadStatement::META:
            comment("META " + classic::quoted(statement.name) + " " + classic::quoted(statement.content));
            break;
        }
    }
    // The others only say what a browser needs.
    for (const auto& [kind, word] :
         {std::pair(HeadStatement::META, "META"), std::pair(HeadStatement::UNIT, "UNIT")})
        if (std::any_of(head.begin(), head.end(),
                        [kind = kind](const KeptHead& each) { return each.kind == kind; }))
            note(std::string(word) + ": VRML97 has no such statement; written as a comment");
    _out.newLine();
}

void Vrml97Emitter::importedRoute(std::string_view fromNode, const EventOutSlot& from,
                                  std::string_view toNode, const EventInSlot& to)
{
    comment(routeText(fromNode, from, toNode, to));
}

void Vrml97Emitter::waitingRoute(const KeptRoute& route)
{
    comment(routeText(route));
}

void Vrml97Emitter::importStatement(std::string_view inlineName, std::string_view exportedName,
                                    std::string_view name)
{
    comment("IMPORT " + std::string(inlineName) + "." + std::string(exportedName) + " AS " +
            std::string(name));
    note("IMPORT: VRML97 has no such statement; written as a comment, with the routes to what it imports");
}

void Vrml97Emitter::exportStatement(std::string_view localName, std::string_view exportedName)
{
    comment("EXPORT " + std::string(localName) + " AS " + std::string(exportedName));
    note("EXPORT: VRML97 has no such statement; written as a comment");
}

} // namespace Orvane
