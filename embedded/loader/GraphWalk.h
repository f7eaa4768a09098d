#pragma once

#include "loader/NodeNames.h"
#include "loader/ResolvedProtos.h"
#include "loader/WrittenFields.h"
#include <Orvane/SaveOptions.h>
#include <cstddef>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Orvane {

class Field;
class Node;
class NodeNameSpace;
class NodeType;
class SaveNotes;
class SceneEmitter;

/// The one walk over a graph that is to be written: says what is written and in which order, gives names to
/// nodes that need one, and leaves the syntax to the emitter.
class GraphWalk
{
public:
    /// \a notes is told of names that change.
    GraphWalk(const Node& root, const SaveOptions& options, SceneEmitter& emitter, SaveNotes& notes);

    void run();

private:
    /// A node in the middle of being written.
    struct Level
    {
        const Node* node = nullptr;
        std::size_t fieldsBegin = 0; ///< of its fields in `_content`
        std::size_t fieldsEnd = 0;
        std::size_t field = 0;
        int link = 0;
        bool isInField = false;
    };

    /// A node that may be met again, or that routes call by name.
    struct Meeting
    {
        bool isNeeded = false; ///< must have a name
        bool isWritten = false;
    };

    /// The scene, or the declaration of a prototype: what has names of its own.
    struct Scope
    {
        Scope(const GraphWalk& walk, NodeNameSpace* nameSpace, const Node* model)
            : nameSpace(nameSpace)
            , fields(walk._options, walk._emitter, model)
            , protos(walk._options.resolveProtos && !model)
            , names(walk._emitter, protos, walk._notes)
        {
        }

        NodeNameSpace* nameSpace;
        WrittenFields fields;
        ResolvedProtos protos;
        std::unordered_map<const Node*, Meeting> met;
        // In the order in which their first places come:
        std::vector<const Node*> callable;  ///< nodes that have or may need a name
        std::vector<const Node*> instances; ///< of prototypes
        std::vector<const Node*> importers; ///< inlines from which nodes are imported

        std::vector<const Node*> imported;       ///< nodes of inlines that routes of the scene may lead to
        std::vector<const NodeType*> prototypes; ///< whose declarations are in the scope
        std::vector<WrittenRoute> routes;
        NodeNames names;
    };

    void enter(const Node& node);
    void leave();
    const Node* collectNode(const Node* placed, bool isTop);
    void collect(const Node* top);
    void collectField(const Field& field);
    void collectUnseen();
    void collectPrototypes(const std::vector<std::shared_ptr<NodeType>>& declared);
    void giveNames();
    void giveImportedNames(const Node& inlineNode);

    void writeScene();
    void writePrototypes();
    void writePrototype(const NodeType& type);
    void writeInterface(const Node& model);
    void writeLinks(const Field& field);
    void writeTree(const Node* top, const Field* holder);
    void writeNode(const Node* placed, const Field* holder);
    void writeUnseen();
    void writeComments(const Node& node);
    const std::string& abstractTypes(const NodeType& type);
    std::string writtenName(const std::string& name) const;
    void writeStatements();
    void writeWaitingRoutes();

    const Node& _root;
    const SaveOptions _options;
    SceneEmitter& _emitter;
    SaveNotes& _notes;
    std::vector<const Node*> _otherRoots;
    Scope* _scope = nullptr;
    std::vector<Level> _levels;
    std::vector<const Field*> _content; ///< fields of the open nodes that are still to be gone through
    std::vector<const Field*> _fields;  ///< of the node that was entered last
    std::vector<const Field*> _made;
    std::unordered_map<const NodeType*, std::string> _abstractTypes; ///< what is said of each type met
    std::unordered_set<const NodeType*> _declared; ///< prototypes whose names are known where the writing is
};

} // namespace Orvane
