#include "base/NodeRef.h"
#include <Orvane/HeldNode.h>

namespace Orvane {

struct HeldNode::Data
{
    NodeRef node;
};

HeldNode::HeldNode(Node* node)
    : _data(node ? std::make_shared<Data>(Data{NodeRef(node)}) : nullptr)
{
}

Node* HeldNode::node() const
{
    return _data ? _data->node.get() : nullptr;
}

} // namespace Orvane
