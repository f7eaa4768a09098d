#pragma once

#include "base/FieldTable.h"
#include "base/GraphLink.h"
#include "base/NodeRef.h"
#include "base/Proc.h"
#include "base/SmallBlocks.h"
#include "base/TypeData.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/SFNode.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

/// A part that one node has beside those of its type.
struct AddedPart
{
    std::unique_ptr<NodePartDesc> desc;
    std::unique_ptr<Field> field;
};

/// What few nodes have.
struct NodeExtras
{
    std::vector<AddedPart> parts;
    std::vector<AddedPart> removedParts; ///< somebody may still look at them
    std::string idText;                  ///< what `getIDStr` answers without a name, made when asked for
    std::unique_ptr<Proc> resting; ///< what the node did before it was put to rest, and does when it is back
    std::vector<std::shared_ptr<NodeType>> prototypes; ///< that the file of which this is the root declares
};

struct Node::Data
{
    UInt64 id = 0;
    Context* context = nullptr;
    GraphLink* firstParent = nullptr; ///< the oldest
    NodeRef* firstRef = nullptr;
    FieldTable fields;
    std::unique_ptr<NodeExtras> extras;
    std::unique_ptr<Proc> proc;
    std::uint64_t line : 28;
    std::uint64_t column : 34;
    std::uint64_t isReleased : 1;
    std::uint64_t isNameSpaceRoot : 1;

    Data()
        : line(0)
        , column(0)
        , isReleased(0)
        , isNameSpaceRoot(0)
    {
    }
    ORVANE_IN_SMALL_BLOCKS

    NodeExtras& makeExtras()
    {
        if (!extras)
            extras = std::make_unique<NodeExtras>();
        return *extras;
    }
};

/// Way into what nodes and holders keep from their users.
class NodeAccess
{
public:
    static void setType(Node& node, NodeType& type) { node._type = &type; }
    static void setData(Node& node, Node::Data* data) { node._data = data; }
    static void setState(Node& node, NodeState state) { node._state = state; }
    static void setName(Node& node, const std::string* name) { node._name = name; }
    static void setNameSpace(Node& node, NodeNameSpace* nameSpace) { node._nameSpace = nameSpace; }

    /// Empties all holders of the node.
    static void clearRefs(Node& node);
};

/// Way into what fields keep from their users.
class FieldAccess
{
public:
    static unsigned int& marks(Field& field) { return field._marks; }
    static void setLink(SFNode& field, GraphLink& link) { field._link = &link; }
    static GraphLink& link(const SFNode& field) { return static_cast<GraphLink&>(*field._link); }
    static std::vector<NodeLink*>& links(MFNode& field) { return field._links; }
    static const std::vector<NodeLink*>& links(const MFNode& field) { return field._links; }
};

inline bool isHeld(const Node& node)
{
    return node.data()->firstParent || node.data()->firstRef;
}

inline Field* addedField(const Node& node, unsigned int index)
{
    const NodeExtras* extras = node.data()->extras.get();
    return extras && index < extras->parts.size() ? extras->parts[index].field.get() : nullptr;
}

/// Calls \a visit with each link of a node field that leads to a node.
template <class Visit>
void forEachLink(const Field& field, Visit visit)
{
    if (field.dataType() == SFNODE_DT) {
        GraphLink& link = FieldAccess::link(static_cast<const SFNode&>(field));
        if (link.child())
            visit(link);
        return;
    }
    for (NodeLink* link : FieldAccess::links(static_cast<const MFNode&>(field)))
        if (link->directNode())
            visit(static_cast<GraphLink&>(*link));
}

/// Calls \a visit with each field of the node that has been made, in order of part.
template <class Visit>
void forEachField(const Node& node, Visit visit)
{
    const auto count = static_cast<unsigned int>(typeData(*node.type()).parts.size());
    for (unsigned int part = 0; part < count; ++part)
        if (Field* field = node.data()->fields.at(part))
            visit(*field);
    if (node.data()->extras)
        for (const AddedPart& part : node.data()->extras->parts)
            visit(*part.field);
}

/// Calls \a visit with each link to a child, in order of field and element. The links must not change.
template <class Visit>
void forEachChildLink(const Node& node, Visit visit)
{
    for (const unsigned int part : typeData(*node.type()).nodeParts)
        if (const Field* field = node.data()->fields.at(part))
            forEachLink(*field, visit);
    if (node.data()->extras)
        for (const AddedPart& part : node.data()->extras->parts)
            if (holdsNodes(part.desc->dataType))
                forEachLink(*part.field, visit);
}

} // namespace Orvane
