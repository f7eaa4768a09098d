#include "base/ContextData.h"
#include "base/FieldFactory.h"
#include "base/Graph.h"
#include "base/NodeData.h"
#include "base/NodeDeath.h"
#include "base/NodeGraph.h"
#include "base/NodeTable.h"
#include "base/Prototype.h"
#include "base/SceneLoader.h"
#include <Orvane/Field.h>
#include <algorithm>

namespace Orvane {

namespace {

/// A node of a type without a class of its own.
class PlainNode final : public Node
{
public:
    PlainNode() = default;
    ORVANE_IN_SMALL_BLOCKS
};

} // namespace

Subject Node::_childAdded;
Subject Node::_childRemoved;
Subject Node::_deleteObject;
Subject Node::_nameSpaceChanged;

namespace {

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() > end.size() && text.substr(text.size() - end.size()) == end;
}

bool startsWith(std::string_view text, std::string_view start)
{
    return text.size() > start.size() && text.substr(0, start.size()) == start;
}

constexpr std::string_view inPrefix = "set_";
constexpr std::string_view outSuffix = "_changed";

/// Index of the part that bears the name itself, added ones included; -1 when none does.
int ownPartIndex(const Node& node, std::string_view name)
{
    const int index = partIndex(*node.type(), name);
    const NodeExtras* extras = node.data()->extras.get();
    if (index >= 0 || !extras)
        return index;
    const auto found = std::find_if(extras->parts.begin(), extras->parts.end(),
                                    [name](const AddedPart& part) { return part.desc->name == name; });
    return found == extras->parts.end()
               ? -1
               : static_cast<int>(partCount(*node.type()) + (found - extras->parts.begin()));
}

const NodePartDesc& descOf(const Node& node, int part)
{
    const auto index = static_cast<unsigned int>(part);
    const unsigned int typeParts = partCount(*node.type());
    return index < typeParts ? *partDesc(*node.type(), index)
                             : *node.data()->extras->parts[index - typeParts].desc;
}

/// As `ownPartIndex`, for a part of an access that has all bits of \a access.
int partIndexOfAccess(const Node& node, std::string_view name, NodePartType access)
{
    const int index = ownPartIndex(node, name);
    return index >= 0 && (descOf(node, index).partType & access) == access ? index : -1;
}

} // namespace

Node* Node::findNode(unsigned long long id)
{
    return nodeTable::find(id);
}

unsigned long long Node::ID() const
{
    return _data->id;
}

const std::string& Node::getIDStr() const
{
    if (_name)
        return *_name;
    std::string& text = _data->makeExtras().idText;
    if (text.empty())
        text = _type->name + "#" + std::to_string(_data->id);
    return text;
}

Context* Node::context()
{
    return _data->context;
}

bool Node::isShared()
{
    return _data->firstParent && _data->firstParent->nextParentLink();
}

int Node::childCount() const
{
    int count = 0;
    forEachChildLink(*this, [&count](GraphLink&) { ++count; });
    return count;
}

int Node::collectAllChildren(std::vector<Node*>& children, unsigned int)
{
    children.clear();
    forEachChildLink(*this, [&children](GraphLink& link) { children.push_back(link.child()); });
    return static_cast<int>(children.size());
}

Field* Node::findField(unsigned int index) const
{
    const unsigned int typeParts = partCount(*_type);
    if (index >= typeParts)
        return addedField(*this, index - typeParts);
    // Made on demand: a node that is only looked at may be constant to the one who looks.
    return &editField(const_cast<Node&>(*this), index);
}

Field* Node::findField(const std::string& name, FieldSearchOrder order) const
{
    int index = ownPartIndex(*this, name);
    if (index < 0 && order == DECLARED_FSO) {
        const std::string_view text = name;
        if (startsWith(text, inPrefix))
            index = partIndexOfAccess(*this, text.substr(inPrefix.size()), EXPOSEDFIELDP);
        else if (endsWith(text, outSuffix))
            index = partIndexOfAccess(*this, text.substr(0, text.size() - outSuffix.size()), EXPOSEDFIELDP);
    }
    return index >= 0 ? findField(static_cast<unsigned int>(index)) : nullptr;
}

unsigned int Node::partDescCount() const
{
    const std::size_t added = _data->extras ? _data->extras->parts.size() : 0;
    return partCount(*_type) + static_cast<unsigned int>(added);
}

int Node::findEventInSlotID(const std::string& name) const
{
    int index = partIndexOfAccess(*this, name, EVENTINP);
    if (index < 0 && startsWith(name, inPrefix))
        index = partIndexOfAccess(*this, std::string_view(name).substr(inPrefix.size()), EVENTINP);
    return index >= 0 ? index : partIndexOfAccess(*this, std::string(inPrefix) + name, EVENTINP);
}

int Node::findEventOutSlotID(const std::string& name) const
{
    int index = partIndexOfAccess(*this, name, EVENTOUTP);
    if (index < 0 && endsWith(name, outSuffix))
        index = partIndexOfAccess(*this, std::string_view(name).substr(0, name.size() - outSuffix.size()),
                                  EVENTOUTP);
    return index >= 0 ? index : partIndexOfAccess(*this, name + std::string(outSuffix), EVENTOUTP);
}

NodeRef createNode(Context& context, NodeType& type, NodeCreator creator)
{
    NodeRef node = createBareInstance(context, type, creator);
    if (const ProtoDeclaration* declaration = protoDeclaration(type); declaration && declaration->model) {
        const NodeNameSpace* const names = rootNames(*declaration->model);
        std::vector<Node*> made;
        completeInstance(*node, {}, names ? names->data()->parent : nullptr, made);
        for (Node* part : made)
            if (part->type() == findType("Inline"))
                reloadInline(*part);
    }
    return node;
}

NodeRef createBareInstance(Context& context, NodeType& type, NodeCreator creator)
{
    const NodeClassFactory makeNode = type.data()->behaviour->makeNode;
    Node* const node = makeNode ? makeNode() : new PlainNode;
    auto* const data = new Node::Data;
    data->context = &context;
    NodeAccess::setType(*node, type);
    NodeAccess::setState(*node, creator == LOADER_NC ? LOADED_NS : CREATED_NS);
    NodeAccess::setData(*node, data);
    countNode(type, 1);
    data->id = nodeTable::add(*node);
    ++context.data()->nodeCount;
    return NodeRef(node);
}

void setSourcePlace(Node& node, unsigned int line, unsigned int column)
{
    constexpr unsigned int largestLine = (1U << 28) - 1;
    node.data()->line = line <= largestLine ? line : 0;
    node.data()->column = column;
}

unsigned int sourceLine(const Node& node)
{
    return static_cast<unsigned int>(node.data()->line);
}

unsigned int sourceColumn(const Node& node)
{
    return static_cast<unsigned int>(node.data()->column);
}

Context& contextOf(const Node& node)
{
    return *node.data()->context;
}

const Field& readField(const Node& node, unsigned int part)
{
    const NodeType::Data& type = typeData(*node.type());
    if (part >= type.parts.size())
        return *addedField(node, part - static_cast<unsigned int>(type.parts.size()));
    const Field* field = node.data()->fields.at(part);
    return field ? *field : defaultField(*type.parts[part]);
}

void madeFields(const Node& node, std::vector<const Field*>& fields)
{
    forEachField(node, [&fields](const Field& field) { fields.push_back(&field); });
}

const Field& readDefault(const NodePartDesc& desc)
{
    return defaultField(const_cast<NodePartDesc&>(desc));
}

Field& editField(Node& node, unsigned int part)
{
    const NodeType::Data& type = typeData(*node.type());
    const auto typeParts = static_cast<unsigned int>(type.parts.size());
    if (part >= typeParts)
        return *addedField(node, part - typeParts);
    if (Field* field = node.data()->fields.at(part))
        return *field;
    return node.data()->fields.insert(part, typeParts, makeField(node, *type.parts[part]));
}

Node* readNode(const Node& node, unsigned int part)
{
    return FieldAccess::link(static_cast<const SFNode&>(readField(node, part))).child();
}

} // namespace Orvane
