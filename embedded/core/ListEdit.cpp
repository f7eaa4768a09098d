#include "core/ListEdit.h"
#include <Orvane/NodeLink.h>
#include <algorithm>

namespace Orvane {

namespace {

bool holds(const MFNode& list, const Node* node)
{
    return std::any_of(list.begin(), list.end(),
                       [node](NodeLink& link) { return link.directNode() == node; });
}

} // namespace

void editList(MFNode& list, const MFNode& nodes, bool add, double time)
{
    for (NodeLink& link : nodes) {
        Node* const node = link.directNode();
        if (!node || holds(list, node) == add)
            continue;
        if (add) {
            list.addNode(time, node, Field::EVENT_CT);
            continue;
        }
        for (int i = static_cast<int>(list.size()); i-- > 0;) {
            if (list.elem(i).directNode() == node)
                list.removeNode(time, i, Field::EVENT_CT);
        }
    }
}

bool setNodes(MFNode& list, const std::vector<Node*>& nodes, double time)
{
    const auto isSame = [](NodeLink& link, const Node* node) { return link.directNode() == node; };
    if (std::equal(list.begin(), list.end(), nodes.begin(), nodes.end(), isSame))
        return false;
    list.clear();
    for (Node* const node : nodes)
        list.addNode(time, node, Field::EVENT_CT);
    if (nodes.empty())
        list.processValueChange(time, Field::EVENT_CT);
    return true;
}

} // namespace Orvane
