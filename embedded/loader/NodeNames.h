#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Orvane {

class Node;
class NodeNameSpace;
class ResolvedProtos;
class SaveNotes;
class SceneEmitter;

/// The names that nodes of one scope bear in a file: their own, unless the encoding cannot say them or others
/// bear them too, and new ones for nodes that must be called by name.
class NodeNames
{
public:
    NodeNames(const SceneEmitter& emitter, const ResolvedProtos& protos, SaveNotes& notes)
        : _emitter(emitter)
        , _protos(protos)
        , _notes(notes)
    {
    }

    /// Names the nodes that \a nameSpace finds by their names. What it does not find follows with `giveRest`.
    void giveFound(const std::vector<const Node*>& order, NodeNameSpace* nameSpace);
    /// \a isNeeded says which nodes are called by name.
    void giveRest(const std::vector<const Node*>& order, NodeNameSpace* nameSpace,
                  const std::function<bool(const Node&)>& isNeeded);
    void giveTo(const Node& node, const std::string& wanted);
    /// A name that a statement of the file brings.
    void take(const Node& node, std::string_view name);

    bool has(const Node& node) const { return _names.count(&node) > 0; }
    /// Empty for a node without a name.
    std::string_view of(const Node& node) const;

private:
    const SceneEmitter& _emitter;
    const ResolvedProtos& _protos;
    SaveNotes& _notes;
    std::unordered_map<const Node*, std::string> _names;
    std::unordered_set<std::string> _taken;
};

} // namespace Orvane
