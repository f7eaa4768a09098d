#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/NodeGraph.h"
#include "base/NodeText.h"
#include <Orvane/MFNode.h>
#include <algorithm>

namespace Orvane {

namespace {

/// The only fields of this kind.
MFNode& asField(Field& field)
{
    return static_cast<MFNode&>(field);
}

/// Replaces all links.
void relink(MFNode& field, const std::vector<NodeRef>& nodes)
{
    if (!field.node())
        return;
    Node& owner = *field.node();
    BusyScope busy(*owner.data()->context);
    const UInt64 ownerId = owner.ID();
    removeAllLinks(field);
    for (const NodeRef& node : nodes) {
        if (Node::findNode(ownerId) != &owner)
            return;
        if (mayLink(field, node.get()))
            insertLink(field, field.size(), *node);
    }
}

} // namespace

template <class T>
MLField<T, 1>::MLField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T>
MLField<T, 1>::~MLField()
{
    for (const NodeLink* link : _links)
        delete link;
}

template <class T>
std::string MLField<T, 1>::valueToString() const
{
    std::string text;
    for (NodeLink* link : _links) {
        if (!text.empty())
            text += ", ";
        text += nodeText(link->directNode());
    }
    return text;
}

template <class T>
int MLField<T, 1>::cardinality() const
{
    return 1;
}

template <class T>
unsigned int MLField<T, 1>::size() const
{
    return static_cast<unsigned int>(_links.size());
}

template <class T>
void MLField<T, 1>::clear()
{
    if (node())
        relink(asField(*this), {});
}

template <class T>
bool MLField<T, 1>::parseValue(std::string_view text, std::string& error)
{
    std::vector<NodeRef> nodes;
    if (!findNodes(*this, text, nodes, error))
        return false;
    relink(asField(*this), nodes);
    return true;
}

template <class T>
void MLField<T, 1>::assignValue(const Field& other)
{
    std::vector<NodeRef> nodes;
    for (NodeLink* link : static_cast<const MLField&>(other)._links)
        nodes.emplace_back(link->directNode());
    relink(asField(*this), nodes);
}

template <class T>
bool MLField<T, 1>::hasValueOf(const Field& other) const
{
    const std::vector<NodeLink*>& links = static_cast<const MLField&>(other)._links;
    return std::equal(_links.begin(), _links.end(), links.begin(), links.end(),
                      [](NodeLink* a, NodeLink* b) { return a->directNode() == b->directNode(); });
}

template <class T>
bool MLField<T, 1>::addNode(const double& time, Node* child, CallerType caller)
{
    return insertNode(time, static_cast<int>(_links.size()), child, caller);
}

template <class T>
bool MLField<T, 1>::insertNode(const double& time, int index, Node* child, CallerType caller)
{
    if (!mayLink(*this, child))
        return false;
    Node& owner = *node();
    BusyScope busy(*owner.data()->context);
    const UInt64 ownerId = owner.ID();
    const int place = std::clamp(index, 0, static_cast<int>(_links.size()));
    insertLink(asField(*this), static_cast<unsigned int>(place), *child);
    if (Node::findNode(ownerId) == &owner)
        processValueChange(time, caller);
    return true;
}

template <class T>
bool MLField<T, 1>::removeNode(const double& time, int index, CallerType caller)
{
    if (!node() || index < 0 || static_cast<std::size_t>(index) >= _links.size())
        return false;
    Node& owner = *node();
    BusyScope busy(*owner.data()->context);
    const UInt64 ownerId = owner.ID();
    removeLink(static_cast<GraphLink&>(*_links[static_cast<std::size_t>(index)]));
    if (Node::findNode(ownerId) == &owner)
        processValueChange(time, caller);
    return true;
}

MFNode::MFNode(Node* node, NodePartDesc* desc)
    : MLField<NodeLink, 1>(node, desc)
{
}

MFNode::~MFNode() = default;

NodePartDataType MFNode::dataType() const
{
    return MFNODE_DT;
}

template class MLField<NodeLink, 1>;

} // namespace Orvane
