#pragma once

#include "base/NodeRef.h"
#include "base/ProtoDeclaration.h"
#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <Orvane/Types.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

class Context;
class Field;

/// A field that a prototype declares.
struct PartDeclaration
{
    std::string name;
    NodePartDataType dataType = NO_DT;
    NodePartType partType = NO_PART;
    std::string defaultValue; ///< in the text form of `Field::valueToString`; of node fields not looked at
    std::string description = {};
};

/// Makes the node type of a prototype (`NodeType::isProto`), which no look-up by name finds. The type lives
/// as long as the result or a node of it beside its model. Of parts that bear the same name the first one
/// stays.
ORVANE_API std::shared_ptr<NodeType> createPrototype(std::string_view name,
                                                     const std::vector<PartDeclaration>& parts);

/// Gives a type the model of its instances, with an empty body that the caller fills before it makes further
/// ones. \a names become those of the body.
ORVANE_API Node& createModel(Context& context, NodeType& type, NodeNameSpace& names);

/// Gives the type of an extern prototype the body of the type that was found for it, by the names of the
/// parts. A part of an extern type that the other does not have in the same data type and access connects to
/// nothing; their names are appended to \a unmatched.
ORVANE_API void adoptModel(Context& context, NodeType& type, const NodeType& found,
                           std::vector<std::string>& unmatched);

/// Connects a field of an instance with one of its body. The value of a field that has one is handed on at
/// once. False when data types or access do not fit: an event needs one of its direction, a value one that is
/// set at the start, and what is all of them needs the same.
ORVANE_API bool connectIs(Field& instanceField, Field& bodyField);
ORVANE_API bool mayConnectIs(const Field& instanceField, const Field& bodyField);

/// Makes an instance that is still without its body.
ORVANE_API NodeRef createBareInstance(Context& context, NodeType& type, NodeCreator creator);

/// Gives an instance its body: a copy of the model's, into which the instance's values are handed. Node
/// fields that are not in \a given get copies of the default's nodes. The body's names lie below \a outer.
/// The nodes that were made are appended to \a made.
ORVANE_API void completeInstance(Node& instance, const std::vector<unsigned int>& given, NodeNameSpace* outer,
                                 std::vector<Node*>& made);

/// Number of nodes that an instance of the type brings beside itself, and how deep they nest. Both stop at
/// their largest values.
struct ProtoSize
{
    std::size_t nodes = 0;
    unsigned int depth = 0;
};
ORVANE_API ProtoSize protoSize(const NodeType& type);

/// An instance inside of a prototype. It gets its body when the first instance of that prototype is made:
/// what prototypes of prototypes come to is counted before anything is copied.
struct WaitingInstance
{
    NodeRef node;
    std::vector<unsigned int> given; ///< as in `completeInstance`
    NodeNameSpace* outer = nullptr;
};

/// Takes the instances that stand in a model which is complete but for their bodies.
ORVANE_API void holdInstances(NodeType& type, std::vector<WaitingInstance> instances);
/// True for a part of such an instance that will get the nodes of its default.
ORVANE_API bool waitsForDefault(const NodeType& type, const Node& instance, unsigned int part);
/// Number of nodes that the models get when the first instance of the type is made. Where it is more than
/// `maxModelNodes`, instances stay without a body.
ORVANE_API std::size_t waitingNodes(const NodeType& type);
constexpr std::size_t maxModelNodes = 1000000;

} // namespace Orvane
