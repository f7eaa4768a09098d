#pragma once

#include "loader/NodeNames.h"
#include "loader/ResolvedProtos.h"
#include <Orvane/SaveOptions.h>
#include <memory>
#include <string_view>
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
        std::vector<const Field*> fields; ///< declared ones first, then those that hold nodes
        std::size_t field = 0;
        int link = 0;
        bool isInField = false;
    };

    /// The scene, or the declaration of a prototype: what has names of its own.
    struct Scope
    {
        Scope(const GraphWalk& walk, NodeNameSpace* nameSpace, const Node* model)
            : nameSpace(nameSpace)
            , model(model)
            , protos(walk._options.resolveProtos && !model)
            , names(walk._emitter, protos, walk._notes)
        {
        }

        NodeNameSpace* nameSpace;
        const Node* model; ///< of the prototype; null for the scene
        ResolvedProtos protos;
        std::vector<const Node*> order; ///< every node that is written, as its first place comes
        std::unordered_set<const Node*> met;
        std::unordered_set<const Node*> needed;  ///< nodes that USEs and routes call by name
        std::vector<const Node*> imported;       ///< nodes of inlines that routes of the scene may lead to
        std::vector<const NodeType*> prototypes; ///< whose declarations are in the scope
        std::vector<WrittenRoute> routes;
        std::unordered_set<const Node*> written;
        NodeNames names;
    };

    void collect(const Node* top);
    void collectField(const Field& field);
    void collectUnseen();
    void collectPrototypes(const std::vector<std::shared_ptr<NodeType>>& declared);
    void collectRoutes();
    void giveNames();
    void giveImportedNames(const Node& inlineNode);

    void writeScene();
    void writePrototypes();
    void writePrototype(const NodeType& type);
    void writeInterface(const Node& model);
    void writeLinks(const Field& field);
    void writeTree(const Node* top, const Field* holder);
    void writeUnseen();
    void writeValues(const Node& node);
    void writeConnections(const Node& node);
    void writeComments(const Node& node);
    void writeStatements();

    std::vector<const Field*> contentOf(const Node& node) const;
    bool isWritten(const Node& node, const Field& field) const;
    bool holdsDefaultNodes(const Node& instance, const Field& field) const;
    std::vector<const Field*> connectionsOf(const Field& field) const;
    bool hasValueByIs(const Field& field) const;

    const Node& _root;
    const SaveOptions _options;
    SceneEmitter& _emitter;
    SaveNotes& _notes;
    std::vector<const Node*> _otherRoots;
    Scope* _scope = nullptr;
    std::unordered_set<const NodeType*> _declared; ///< prototypes whose names are known where the writing is
};

} // namespace Orvane
