#pragma once

#include "loader/KeptStatements.h"
#include <string>
#include <string_view>

namespace Orvane {

class EventInSlot;
class EventOutSlot;
class Field;
class Node;
class NodeType;

/// Writes one encoding, as `GraphWalk` leads it over a graph. Texts are in the form of the graph.
///
/// Of each node it hears `beginNode`, its plain values, its IS connections, `endValues`, then its declared
/// fields and the nodes of its fields, and `endNode`.
class SceneEmitter
{
public:
    virtual ~SceneEmitter();

    /// The form of a name that the encoding can say; two names may come to one.
    virtual std::string sayableName(std::string_view name) const;
    /// True when a reader of the encoding gives the field this value without being told.
    virtual bool isDefault(const Node& node, const Field& field) const;
    /// True for a type whose nodes may need values in the file for fields that nobody has touched.
    virtual bool writesUntouched(const NodeType&) const { return false; }
    /// True when the encoding can say that a field holds no node.
    virtual bool saysEmpty() const { return false; }

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

    /// The field stands for one of the prototype around.
    virtual void isConnection(const Field& field, const Field& protoField) = 0;

    /// A field that an author added. The nodes up to `endDeclaration` are its value.
    virtual void beginDeclaration(const Field& field, bool hasNodes) = 0;
    virtual void endDeclaration(const Field& field, bool hasNodes) = 0;
    /// The nodes of one field of the type begin and end.
    virtual void beginNodes(const Field& field, bool hasNodes) = 0;
    virtual void endNodes(const Field& field, bool hasNodes) = 0;

    /// A prototype: the fields of its interface as declarations, then, up to `endProto`, its body.
    virtual void beginProto(const NodeType& type, bool hasInterface) = 0;
    virtual void beginProtoBody(bool hasInterface) = 0;
    virtual void endProto() = 0;
    /// A prototype of another file. Its fields have no values; the last part of the type is none of them.
    virtual void externProto(const NodeType& type, const std::vector<std::string>& urls) = 0;

    /// The nodes up to `endUnseen` do their work without being drawn.
    virtual void beginUnseen() = 0;
    virtual void endUnseen() = 0;

    virtual void route(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                       const EventInSlot& to) = 0;
    /// A route from or to a node that is imported.
    virtual void importedRoute(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                               const EventInSlot& to);
    /// A route of which an imported end is not there.
    virtual void waitingRoute(const KeptRoute& route) = 0;
    virtual void importStatement(std::string_view inlineName, std::string_view exportedName,
                                 std::string_view name) = 0;
    virtual void exportStatement(std::string_view localName, std::string_view exportedName) = 0;
    virtual void comment(std::string_view text) = 0;
};

} // namespace Orvane
