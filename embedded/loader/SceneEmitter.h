#pragma once

#include "loader/KeptStatements.h"
#include <string>
#include <string_view>

namespace Orvane {

class Field;
class Node;

/// Writes one encoding, as `GraphWalk` leads it over a graph. Texts are in the form of the graph.
///
/// Of each node it hears `beginNode`, its plain values, `endValues`, then its declared fields and the nodes
/// of its fields, and `endNode`.
class SceneEmitter
{
public:
    virtual ~SceneEmitter();

    /// \a root is null when the file shall hold only what hangs below the root.
    virtual void beginScene(const std::vector<KeptHead>& head, const Node* root,
                            std::string_view rootName) = 0;
    virtual void endScene() = 0;

    /// \a holder is the field of the parent that holds the node; null for a root.
    virtual void beginNode(const Node& node, std::string_view name, const Field* holder) = 0;
    virtual void value(const Field& field) = 0;
    /// \a hasContent says that declared fields or nodes follow.
    virtual void endValues(bool hasContent) = 0;
    virtual void endNode() = 0;
    /// A further place of a node that has been written.
    virtual void use(const Node& node, std::string_view name, const Field* holder) = 0;

    /// A field that an author added. The nodes up to `endDeclaration` are its value.
    virtual void beginDeclaration(const Field& field, bool hasNodes) = 0;
    virtual void endDeclaration(bool hasNodes) = 0;
    /// The nodes of one field of the type begin and end.
    virtual void beginNodes(const Field& field) = 0;
    virtual void endNodes() = 0;

    virtual void route(std::string_view fromNode, std::string_view fromField, std::string_view toNode,
                       std::string_view toField) = 0;
    virtual void importStatement(std::string_view inlineName, std::string_view exportedName,
                                 std::string_view name) = 0;
    virtual void exportStatement(std::string_view localName, std::string_view exportedName) = 0;
    virtual void comment(std::string_view text) = 0;
};

} // namespace Orvane
