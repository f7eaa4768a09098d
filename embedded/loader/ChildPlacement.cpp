#include "loader/ChildPlacement.h"

#include "base/Graph.h"
#include "base/ProtoDeclaration.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>

namespace Orvane {

namespace {

const NodePartDesc& descOf(const Node& node, unsigned int part)
{
    return *readField(node, part)._desc;
}

/// True for types of the catalogue: their bases say where they may stand, those of others are not known.
bool saysItsPlace(const NodeType& type)
{
    return !type.isProto() && !isUnknown(type);
}

/// The type by which a node finds its place: for an instance that of the first node of its body.
const NodeType& placingType(const NodeType& type)
{
    const ProtoDeclaration* const declaration = protoDeclaration(type);
    const Node* const standIn =
        declaration && declaration->model ? protoStandIn(*declaration->model) : nullptr;
    return standIn ? *standIn->type() : type;
}

bool allows(const NodePartDesc& desc, const NodeType& child)
{
    if (desc.valueRestriction != NodePartDesc::NODE_TYPE_VR || !saysItsPlace(child))
        return true;
    std::string_view rest = desc.valueType;
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of("|, ");
        if (isOfType(child, rest.substr(0, end)))
            return true;
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return false;
}

} // namespace

bool isUnknown(const NodeType& type)
{
    // Every type of the catalogue has parts.
    return !type.isProto() && partCount(type) == 0;
}

bool ChildPlacement::holdsNodes(const Node& parent, unsigned int part)
{
    const NodePartDesc& desc = descOf(parent, part);
    return (desc.dataType == SFNODE_DT || desc.dataType == MFNODE_DT) && (desc.partType & FIELDP) &&
           !desc.privateAccess();
}

bool ChildPlacement::accepts(const NodePartDesc& desc, const NodeType& child)
{
    if (desc.valueRestriction != NodePartDesc::NODE_TYPE_VR)
        return true;
    const auto [known, isNew] = _accepted.try_emplace({&desc, &child}, false);
    if (isNew)
        known->second = allows(desc, placingType(child));
    return known->second;
}

bool ChildPlacement::isFull(const Node& parent, unsigned int part)
{
    return descOf(parent, part).dataType == SFNODE_DT && readNode(parent, part);
}

int ChildPlacement::find(const Node& parent, const NodeType& child)
{
    const auto [known, isNew] = _parts.try_emplace({parent.type(), &child}, -1);
    if (isNew)
        known->second = search(parent, placingType(child), false);
    const int part = known->second;
    if (part < 0 || !isFull(parent, static_cast<unsigned int>(part)))
        return part;
    const int freePart = search(parent, placingType(child), true);
    return freePart >= 0 ? freePart : part;
}

int ChildPlacement::search(const Node& parent, const NodeType& child, bool onlyFree)
{
    const auto usable = [&](int part) {
        const auto index = static_cast<unsigned int>(part);
        return part >= 0 && holdsNodes(parent, index) && !(onlyFree && isFull(parent, index));
    };
    const bool known = saysItsPlace(child);
    const int byDefault = partIndex(*parent.type(), known ? containerField(child) : "children");
    if (usable(byDefault) && accepts(*partDesc(*parent.type(), static_cast<unsigned int>(byDefault)), child))
        return byDefault;
    const unsigned int count = partCount(*parent.type());
    for (unsigned int part = 0; part < count; ++part) {
        const int index = static_cast<int>(part);
        const NodePartDesc& desc = descOf(parent, part);
        const bool names =
            known ? desc.valueRestriction == NodePartDesc::NODE_TYPE_VR : desc.name != "metadata";
        if (usable(index) && names && accepts(desc, child))
            return index;
    }
    return usable(byDefault) ? byDefault : -1;
}

} // namespace Orvane
