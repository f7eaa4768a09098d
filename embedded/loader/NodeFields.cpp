#include "loader/NodeFields.h"

#include "base/Graph.h"
#include "loader/ChildPlacement.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Orvane {

bool holdsNodes(const Field& field)
{
    return field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT;
}

bool isDeclaredField(const NodeType& owner, const Field& field)
{
    return field._desc->objExt() && !isUnknown(owner) && !owner.isProto();
}

int linkCount(const Field& field)
{
    return field.dataType() == SFNODE_DT ? 1 : static_cast<int>(field.size());
}

const Node* linkedNode(const Field& field, int link)
{
    // Looking at a link's node needs a link that may be written.
    if (field.dataType() == SFNODE_DT)
        return const_cast<SFNode&>(static_cast<const SFNode&>(field)).link().directNode();
    return static_cast<const MFNode&>(field).elem(link).directNode();
}

bool hasNodes(const Field& field)
{
    if (!holdsNodes(field))
        return false;
    const int count = linkCount(field);
    for (int link = 0; link < count; ++link)
        if (linkedNode(field, link))
            return true;
    return false;
}

namespace {

/// Pairs the nodes of two graphs as it meets them.
class Likeness
{
public:
    bool compare(const Field& a, const Field& b)
    {
        if (!compareFields(a, b))
            return false;
        while (!_waiting.empty()) {
            const auto [first, second] = _waiting.back();
            _waiting.pop_back();
            if (!compareNodes(*first, *second))
                return false;
        }
        return true;
    }

private:
    bool compareFields(const Field& a, const Field& b)
    {
        if (a.dataType() != b.dataType())
            return false;
        if (!holdsNodes(a))
            return a.hasValueOf(b);
        const int count = linkCount(a);
        if (count != linkCount(b))
            return false;
        for (int link = 0; link < count; ++link) {
            const Node* first = linkedNode(a, link);
            const Node* second = linkedNode(b, link);
            if (!first != !second)
                return false;
            if (!first)
                continue;
            const auto [known, isNew] = _partners.emplace(first, second);
            if (known->second != second)
                return false;
            if (isNew)
                _waiting.emplace_back(first, second);
        }
        return true;
    }

    bool compareNodes(const Node& a, const Node& b)
    {
        const unsigned int count = a.partDescCount();
        if (a.type() != b.type() || count != b.partDescCount())
            return false;
        for (unsigned int part = 0; part < count; ++part) {
            const Field& first = readField(a, part);
            const Field& second = readField(b, part);
            if (first._desc->name != second._desc->name)
                return false;
            const bool counts = (first._desc->partType & FIELDP) && !first._desc->privateAccess();
            if (counts && !compareFields(first, second))
                return false;
        }
        return true;
    }

    std::unordered_map<const Node*, const Node*> _partners;
    std::vector<std::pair<const Node*, const Node*>> _waiting;
};

} // namespace

bool holdsAlike(const Field& a, const Field& b)
{
    return Likeness().compare(a, b);
}

} // namespace Orvane
