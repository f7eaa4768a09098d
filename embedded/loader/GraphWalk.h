#pragma once

#include <Orvane/SaveOptions.h>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Orvane {

class Field;
class Node;
class SceneEmitter;

/// The one walk over a graph that is to be written: says what is written and in which order, gives names to
/// nodes that need one, and leaves the syntax to the emitter.
class GraphWalk
{
public:
    GraphWalk(const Node& root, const SaveOptions& options, SceneEmitter& emitter);

    void run();

private:
    /// A node in the middle of being written.
    struct Level
    {
        const Node* node = nullptr;
        std::vector<const Field*> fields; ///< declared ones first, then those that hold nodes
        std::size_t field = 0;
        int link = 0;
        bool isInField = false;
    };

    void collect(const Node& top);
    void giveNames();
    void giveName(const Node& node, std::string wanted);
    void giveImportedNames(const Node& inlineNode);
    std::string_view name(const Node& node) const;

    void writeTree(const Node& top, const Field* holder);
    void open(const Node& node, const Field* holder);
    void writeValues(const Node& node);
    void writeComments(const Node& node);
    void writeRoutes();
    std::vector<const Field*> contentOf(const Node& node) const;
    bool isWritten(const Node& node, const Field& field) const;

    const Node& _root;
    const SaveOptions _options;
    SceneEmitter& _emitter;
    std::vector<const Node*> _otherRoots;
    std::vector<const Node*> _order; ///< every node that is written, as its first place comes
    std::unordered_set<const Node*> _met;
    std::unordered_set<const Node*> _shared;
    std::vector<const Node*> _imported; ///< nodes of inlines that routes of the scene may lead to
    std::unordered_map<const Node*, std::string> _names;
    std::unordered_set<std::string> _takenNames;
    std::unordered_set<const Node*> _written;
};

} // namespace Orvane
