#pragma once

#include "base/NodeRef.h"
#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <Orvane/Types.h>
#include <string>
#include <string_view>
#include <vector>

namespace Relayne {
class URL;
}

namespace Orvane {

class Context;
class Field;
class Node;
class NodeNameSpace;
class NodePartDesc;
class NodeType;

// ---- Types

/// The type of the catalogue called \a name, or null.
ORVANE_API NodeType* findType(std::string_view name);
/// A type for nodes of an unknown name; the same one at each call with the same name. Its nodes have the
/// fields that are added to them.
ORVANE_API NodeType* unknownType(std::string_view name);
/// Number of parts of a type, without what single nodes add.
ORVANE_API unsigned int partCount(const NodeType& type);
/// The part called \a name exactly, or under an older name of it; -1 when the type has none.
ORVANE_API int partIndex(const NodeType& type, std::string_view name);
ORVANE_API NodePartDesc* partDesc(const NodeType& type, unsigned int part);
/// The field of its parent into which a node of this type goes when the scene does not say ("children",
/// "geometry").
ORVANE_API std::string_view containerField(const NodeType& type);
/// A field and the value that it has when a file says nothing.
struct FieldDefault
{
    std::string_view field;
    std::string_view value;
};

/// The fields of a type whose defaults are others in VRML97 files.
ORVANE_API std::vector<FieldDefault> vrml97Defaults(std::string_view type);
/// What VRML97 calls the part, and the value that it has in VRML97 files that do not say.
ORVANE_API std::string_view vrml97Name(const NodeType& type, unsigned int part);
ORVANE_API std::string_view vrml97Default(const NodeType& type, unsigned int part);
/// True for the type itself and for its abstract bases ("X3DGeometryNode").
ORVANE_API bool isOfType(const NodeType& type, std::string_view name);

// ---- Nodes

/// Makes a node without parent and without name; an instance of a prototype with its body.
ORVANE_API NodeRef createNode(Context& context, NodeType& type, NodeCreator creator);
/// Names a node in a name space; an empty name takes its name away. Fires `Node::_nameSpaceChanged`. The node
/// that bore the name in that name space before keeps it as its own, but is no longer found by it.
ORVANE_API void setName(Node& node, NodeNameSpace* nameSpace, std::string_view name);
/// Where the node stands in its file, for messages: line and column from 1, 0 when not known.
ORVANE_API void setSourcePlace(Node& node, unsigned int line, unsigned int column);
ORVANE_API unsigned int sourceLine(const Node& node);
ORVANE_API unsigned int sourceColumn(const Node& node);

/// Adds a field to one node (a field of a script or shader). Null when the node has a field of that name.
ORVANE_API Field* addField(Node& node, std::string_view name, NodePartDataType dataType,
                           NodePartType partType);
/// Adds a part to one node that the user does not see and that no file names (`NodePartDesc::privateAccess`):
/// the content of an inline, what a loader keeps for the saver. Links in it count as children like any other.
/// Null when the node has a field of that name.
ORVANE_API Field* addPrivateField(Node& node, std::string_view name, NodePartDataType dataType);
/// Takes a field that was added to the node out of it. False when it is not such a field. The object lives on
/// with the node, as somebody may still look at it.
ORVANE_API bool removeField(Node& node, Field& field);

/// Context of a node that may be constant.
ORVANE_API Context& contextOf(const Node& node);

// ---- Values

/// The field of a part when it has been made, else the one that holds the type's default; makes none. Most
/// fields of most nodes are never touched, and cost nothing until they are.
ORVANE_API const Field& readField(const Node& node, unsigned int part);

/// Appends the fields of a node that have been made, in order of part.
ORVANE_API void madeFields(const Node& node, std::vector<const Field*>& fields);

/// The field that holds what a part has when nobody says.
ORVANE_API const Field& readDefault(const NodePartDesc& desc);

/// As `readField`, as the class of the part's data type.
template <class F>
const F& read(const Node& node, unsigned int part)
{
    return static_cast<const F&>(readField(node, part));
}

/// The field of a part as the class of its data type; made when it has not been.
ORVANE_API Field& editField(Node& node, unsigned int part);

template <class F>
F& edit(Node& node, unsigned int part)
{
    return static_cast<F&>(editField(node, part));
}

/// The node that the `SFNode` part holds, or null.
ORVANE_API Node* readNode(const Node& node, unsigned int part);

// ---- Name spaces

/// Makes a name space of a context. \a parent may be null. Owned by the context; dies with its root node, or
/// when that becomes the root of another one.
ORVANE_API NodeNameSpace* createNameSpace(Context& context, NodeNameSpace* parent, std::string_view name,
                                          Node* rootNode, const Relayne::URL& baseURL);

/// The newest version of X3D, in tenths: that of names and nodes which come from no file.
constexpr unsigned int newestVersion = 40;

/// The version of X3D that the file of some names is written in, in tenths; 20 for VRML97. Scenes look as
/// their version says. Null names have the newest one.
ORVANE_API unsigned int fileVersion(const NodeNameSpace* names);
/// Says so of names whose nodes are still to come.
ORVANE_API void setFileVersion(NodeNameSpace& names, unsigned int version);

} // namespace Orvane
