#pragma once

#include "base/FieldFactory.h"
#include "base/NodeClass.h"
#include "base/Proc.h"
#include "nodes/Catalogue.h"
#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Orvane {

struct PrototypeData;

/// What pools have registered for a type. Stays at its place for the life of the process.
struct TypeBehaviour
{
    ProcFactory makeProc = nullptr;
    NodeClassFactory makeNode = nullptr;
};

struct NodePartDesc::Data
{
    bool objExt = false;
    bool privateAccess = false;
    const TypeBehaviour* behaviour = nullptr; ///< of the part's type; null for an added part
    std::string inName;                       ///< name of the event in, made when asked for
    std::string outName;
    std::unique_ptr<Field> defaultField; ///< made when asked for
};

/// The parts of a type, made when the type is first used.
struct NodeType::Data
{
    Data();
    ~Data();

    const catalogue::NodeEntry* entry = nullptr; ///< null for prototypes and unknown types
    const TypeBehaviour* behaviour = nullptr;
    bool hasParts = false;
    std::vector<std::unique_ptr<NodePartDesc>> parts;
    std::vector<unsigned int> byName;    ///< part indices in order of name
    std::vector<unsigned int> nodeParts; ///< parts that hold links to nodes
    std::vector<std::string_view> bases; ///< all abstract types above, direct or not

    std::unique_ptr<PrototypeData> prototype; ///< null for other types
};

/// Makes the parts of a type.
void makeParts(NodeType::Data& data);

/// The type's data with its parts made.
inline NodeType::Data& typeData(const NodeType& type)
{
    NodeType::Data& data = *type.data();
    if (!data.hasParts)
        makeParts(data);
    return data;
}

/// Numbers the parts and makes the look-ups over them.
void finishParts(NodeType::Data& data);

/// A node of the type has come into being, or has gone; the type of a prototype may end with it.
void countNode(NodeType& type, int change);

/// What pools have registered for the type called \a name.
TypeBehaviour& behaviourOf(std::string_view name);

/// True when pools have registered behaviours at all.
bool hasBehaviours();

/// Part index of a field that was taken out of its node.
constexpr unsigned int removedPart = static_cast<unsigned int>(-1);

/// The field that holds the default of the part; it belongs to no node.
inline const Field& defaultField(NodePartDesc& desc)
{
    if (!desc._data->defaultField)
        desc._data->defaultField = makeDefaultField(desc);
    return *desc._data->defaultField;
}

/// Name of the event that comes into the part ("set_translation") or goes out of it
/// ("translation_changed").
const std::string& eventInName(NodePartDesc& desc);
const std::string& eventOutName(NodePartDesc& desc);

constexpr bool holdsNodes(NodePartDataType type)
{
    return type == SFNODE_DT || type == MFNODE_DT;
}

} // namespace Orvane
