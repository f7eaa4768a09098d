#pragma once

#include "base/FieldTable.h"
#include "base/GraphLink.h"
#include "base/NodeRef.h"
#include "base/Proc.h"
#include "base/TypeData.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/SFNode.h>
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

struct AddedParts
{
    std::vector<AddedPart> parts;
    std::vector<AddedPart> removed; ///< somebody may still look at them
};

struct Node::Data
{
    UInt64 id = 0;
    Context* context = nullptr;
    Node* previousNode = nullptr; ///< of the context
    Node* nextNode = nullptr;
    GraphLink* firstParent = nullptr;
    GraphLink* lastParent = nullptr;
    NodeRef* firstRef = nullptr;
    FieldTable fields;
    std::unique_ptr<AddedParts> added;
    std::unique_ptr<Proc> proc;
    std::unique_ptr<std::string> idText; ///< what `getIDStr` answers without a name, made when asked for
    unsigned int line = 0;
    unsigned int column = 0;
    unsigned int visit = 0; ///< number of the last walk that came by
    bool isReleased = false;
    bool isNameSpaceRoot = false;
};

/// Way into what nodes and holders keep from their users.
class NodeAccess
{
public:
    static Node* make() { return new Node; }
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
    const AddedParts* added = node.data()->added.get();
    return added && index < added->parts.size() ? added->parts[index].field.get() : nullptr;
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
    if (node.data()->added)
        for (const AddedPart& part : node.data()->added->parts)
            visit(*part.field);
}

/// Calls \a visit with each link to a child, in order of field and element. The links must not change.
template <class Visit>
void forEachChildLink(const Node& node, Visit visit)
{
    for (const unsigned int part : typeData(*node.type()).nodeParts)
        if (const Field* field = node.data()->fields.at(part))
            forEachLink(*field, visit);
    if (node.data()->added)
        for (const AddedPart& part : node.data()->added->parts)
            if (holdsNodes(part.desc->dataType))
                forEachLink(*part.field, visit);
}

/// A number that no walk over nodes has had, for `Node::Data::visit`.
unsigned int newVisit();

} // namespace Orvane
