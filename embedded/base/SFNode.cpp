#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/NodeGraph.h"
#include "base/NodeText.h"
#include <Orvane/SFNode.h>

namespace Orvane {

SFNode::SFNode(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFNode::~SFNode() = default;

NodePartDataType SFNode::dataType() const
{
    return SFNODE_DT;
}

std::string SFNode::valueToString() const
{
    return nodeText(_link->directNode());
}

int SFNode::cardinality() const
{
    return 0;
}

unsigned int SFNode::size() const
{
    return 1;
}

void SFNode::clear()
{
}

bool SFNode::parseValue(std::string_view text, std::string& error)
{
    std::vector<NodeRef> nodes;
    if (!findNodes(*this, text, nodes, error))
        return false;
    if (nodes.size() > 1) {
        error = "expected one node or NULL, found " + std::to_string(nodes.size()) + " nodes";
        return false;
    }
    setNode(0.0, nodes.empty() ? nullptr : nodes[0].get(), LOADER_CT);
    return true;
}

void SFNode::assignValue(const Field& other)
{
    setNode(0.0, static_cast<const SFNode&>(other)._link->directNode(), LOADER_CT);
}

bool SFNode::hasValueOf(const Field& other) const
{
    return _link->directNode() == static_cast<const SFNode&>(other)._link->directNode();
}

bool SFNode::setNode(const double& time, Node* value, CallerType caller)
{
    if (!node() || (value && !mayLink(*this, value)))
        return false;
    Node& owner = *node();
    BusyScope busy(*owner.data()->context);
    const NodeRef kept(value);
    const UInt64 ownerId = owner.ID();
    if (_link->directNode() != value) {
        removeAllLinks(*this);
        // Observers of the removal may have put something else in its place, or ended the node.
        if (Node::findNode(ownerId) != &owner)
            return false;
        removeAllLinks(*this);
        if (kept && Node::findNode(ownerId) == &owner && !_link->directNode())
            setLink(*this, *kept);
    }
    if (Node::findNode(ownerId) == &owner)
        processValueChange(time, caller);
    return true;
}

} // namespace Orvane
