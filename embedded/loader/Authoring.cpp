#include "base/Graph.h"
#include "loader/AdoptedNodes.h"
#include "loader/ChildPlacement.h"
#include "loader/ClassicWriter.h"
#include <Orvane/Authoring.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <algorithm>

namespace Orvane {

void Authoring::setName(Node& node, const std::string& name)
{
    Orvane::setName(node, node.nameSpace(), name);
}

std::string Authoring::freeName(const Node& scene, const std::string& name)
{
    const auto isTaken = [&scene](const std::string& candidate) {
        return NodeNameSpace::findNode(scene.nameSpace(), candidate) != nullptr;
    };
    if (!isTaken(name))
        return name;
    // "Wheel_2" is followed by "Wheel_3".
    std::string stem = name;
    const std::size_t digits = stem.find_last_not_of("0123456789");
    if (digits != std::string::npos && digits > 0 && digits + 1 < stem.size() && stem[digits] == '_')
        stem.resize(digits);
    std::string candidate;
    for (unsigned long long number = 2; candidate.empty() || isTaken(candidate); ++number)
        candidate = stem + "_" + std::to_string(number);
    return candidate;
}

std::string Authoring::text(const Node& node, std::string& error)
{
    std::vector<std::string> notes;
    try {
        return classicText(node, {}, notes);
    } catch (const std::exception& exception) {
        error = std::string("expected room for the text of the node, found: ") + exception.what();
        return {};
    }
}

std::string Authoring::origin(const Node& node)
{
    const NodeNameSpace* const names = node.nameSpace();
    return names ? names->baseURL().toString() : std::string();
}

std::vector<NodeType*> Authoring::prototypes(const Node& scene)
{
    std::vector<NodeType*> types;
    for (const auto& type : usablePrototypes(scene))
        types.push_back(type.get());
    return types;
}

Field* Authoring::fieldFor(Node& parent, const NodeType& child)
{
    const int part = ChildPlacement().find(parent, child);
    Field* const field = part < 0 ? nullptr : parent.findField(static_cast<unsigned int>(part));
    return field && accepts(*field, child) ? field : nullptr;
}

std::vector<NodeType*> Authoring::parentTypes(const NodeType& child)
{
    ChildPlacement placement;
    std::vector<NodeType*> types;
    NodeType::getTypeVec(types, 1);
    std::vector<NodeType*> usual;
    std::vector<NodeType*> all;
    for (NodeType* const type : types) {
        if (type->isContextRoot())
            continue;
        bool takes = false;
        bool takesUsually = false;
        for (unsigned int part = 0; part < partCount(*type); ++part) {
            const NodePartDesc& desc = *partDesc(*type, part);
            const bool holdsNodes = desc.dataType == SFNODE_DT || desc.dataType == MFNODE_DT;
            if (!holdsNodes || !(desc.partType & FIELDP) || desc.privateAccess() ||
                desc.valueRestriction != NodePartDesc::NODE_TYPE_VR || !placement.accepts(desc, child))
                continue;
            takes = true;
            takesUsually = takesUsually || desc.name == containerField(child);
        }
        if (takes)
            all.push_back(type);
        if (takesUsually)
            usual.push_back(type);
    }
    return usual.empty() ? all : usual;
}

bool Authoring::accepts(const Field& field, const NodeType& child)
{
    const bool holdsNodes = field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT;
    if (!holdsNodes || !(field.partType() & FIELDP) || field._desc->privateAccess())
        return false;
    // A file may hold anything at its top; an author does not mean that.
    const bool mayStandAlone = child.isProto() || isUnknown(child) || isOfType(child, "X3DChildNode");
    if (field.node()->type()->isContextRoot() && field._desc->name == "children")
        return mayStandAlone;
    return ChildPlacement().accepts(*field._desc, child);
}

} // namespace Orvane
