#pragma once

#include <string_view>
#include <unordered_map>
#include <utility>

namespace Orvane {

class Node;
class NodePartDesc;
class NodeType;

/// True for a type of which only the name is known: its nodes have the fields that the scene gives them.
bool isUnknown(const NodeType& type);

/// Finds the part of a parent that takes a child of some type, when the scene leaves that open.
class ChildPlacement
{
public:
    /// The part that the child's type goes into by default, else the first that names its type, else, for a
    /// child of unknown type, one that takes any; -1 when the parent has none. A part that holds one node and
    /// has it already counts only when there is no other.
    int find(const Node& parent, const NodeType& child);

    /// True for a part that holds nodes and has a value, so not for one that only takes or sends events.
    static bool holdsNodes(const Node& parent, unsigned int part);
    /// True when the part's restriction allows the type, or it has none.
    bool accepts(const NodePartDesc& desc, const NodeType& child);
    /// True for a part of one node that holds a node.
    static bool isFull(const Node& parent, unsigned int part);

private:
    /// Of two types, or of a part's description and a type.
    using Pair = std::pair<const void*, const NodeType*>;

    struct Hash
    {
        std::size_t operator()(const Pair& pair) const
        {
            const auto number = [](const void* p) { return reinterpret_cast<std::size_t>(p) >> 4; };
            return number(pair.first) * 31 + number(pair.second);
        }
    };

    int search(const Node& parent, const NodeType& child, bool onlyFree);

    std::unordered_map<Pair, int, Hash> _parts;
    std::unordered_map<Pair, bool, Hash> _accepted;
};

} // namespace Orvane
