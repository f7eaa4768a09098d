#pragma once

#include "base/NodeRef.h"
#include <Orvane/Export.h>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

class MFNode;
class Node;
class NodeNameSpace;
class NodeType;

/// The statement that made the type of a prototype; the type owns it.
///
/// The interface is the type's parts without the last one, which holds the body and which nobody sees. All
/// else stands in the model, the instance that every other one is copied from and that never runs: the values
/// of its fields are the defaults, its body is the body of the statement, the IS connections of the statement
/// are its routes of type `Route::IS_RT` to and from nodes of the body, and routes of the statement are
/// routes between these nodes. Instances of other prototypes in it have no bodies of their own until the
/// first instance of this one is made.
struct ProtoDeclaration
{
    NodeRef model;         ///< empty while the statement is read, or when its file is not there
    bool isExtern = false; ///< says where the prototype is; then the model is a copy of what was found
    std::vector<std::string> urls; ///< of an extern one
    unsigned int line = 0;         ///< of the statement, from 1; 0 when not known
    unsigned int column = 0;

    /// The prototypes that the body declares, in the order of their statements.
    std::vector<std::shared_ptr<NodeType>> inner;
};

/// The declaration of a prototype's type; null for other types.
ORVANE_API ProtoDeclaration* protoDeclaration(const NodeType& type);

/// The body of an instance, or of the model: the part that nobody sees. The type must be a prototype's.
ORVANE_API MFNode& protoBody(Node& instance);
ORVANE_API const MFNode& protoBody(const Node& instance);

/// Instances may begin their bodies with instances so many times: more than in any sound scene.
constexpr int maxNestedInstances = 256;

/// The node that stands for an instance where it is placed: the first one of its body. Null when the body is
/// empty; the node itself when it is no instance.
ORVANE_API Node* protoStandIn(Node& node);

/// The names of which a node is the root: of an instance's body, of a model's, or of the file of an inline;
/// null while it has none.
ORVANE_API NodeNameSpace* rootNames(const Node& root);

/// The prototypes that a file declares outside of other prototypes, in the order of their statements. They
/// belong to the root of the file: the `Scene`, or the `Inline` that it was read into.
ORVANE_API const std::vector<std::shared_ptr<NodeType>>& declaredPrototypes(const Node& root);
ORVANE_API void addDeclaredPrototype(Node& root, std::shared_ptr<NodeType> type);
/// The root's names are read anew.
ORVANE_API void clearDeclaredPrototypes(Node& root);

} // namespace Orvane
