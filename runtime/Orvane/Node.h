#pragma once

#include <Orvane/BaseObject.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <Orvane/Subject.h>
#include <Orvane/Types.h>
#include <string>
#include <vector>

namespace Orvane {

class Context;
class Field;
class NodeNameSpace;
class NodeType;

/// A node of a scene: a type, a name and one field per part of its type. Nodes live as long as a link or
/// their context holds them.
class ORVANE_API Node : public BaseObject
{
public:
    /// How a name is matched with the node's fields.
    enum FieldSearchOrder : int {
        EXACT_FSO = 0,   ///< the declared name only
        DECLARED_FSO = 1 ///< the declared name, then the set_ and _changed forms of exposed fields
    };

    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() override;

    /// The living node with the process-wide id \a id; null when there is none.
    static Node* findNode(unsigned long long id);
    /// Id of the node, never used again in the process, never 0.
    unsigned long long ID() const;
    /// The node's id as users see it: its name while it has one, else type name, "#" and id.
    const std::string& getIDStr() const;

    /// The context that owns the node.
    Context* context();
    /// The root node (`ContextSetup`, `Engine` or `Scene`) above the node, itself for a root; null when it
    /// hangs nowhere.
    Node* contextRoot() const;
    /// True when more than one link leads to the node.
    bool isShared();
    /// Number of non-empty links of the node, over all its fields.
    int childCount() const;
    /// Fills \a children with the nodes of these links in order of field and element, and gives their number.
    /// \a mode is 0.
    int collectAllChildren(std::vector<Node*>& children, unsigned int mode);

    /// Field by part index; null when \a index is not below `partDescCount()`.
    Field* findField(unsigned int index) const;
    /// Field by name; null when the node has no such field.
    Field* findField(const std::string& name, FieldSearchOrder order) const;
    /// Number of parts (fields).
    unsigned int partDescCount() const;
    /// Part index of the field that takes the event \a name (with or without "set_"); -1 when there is none.
    int findEventInSlotID(const std::string& name) const;
    /// Part index of the field that sends the event \a name (with or without "_changed"); -1 when there is
    /// none.
    int findEventOutSlotID(const std::string& name) const;

    /// Gives this node alone one more field, as authors do with scripts and shaders. Null when the name is
    /// empty or that of a field of the node, and for types of which there are no fields.
    Field* addField(const std::string& name, NodePartDataType dataType, NodePartType partType);
    /// Takes a field that was added to this node alone out of it, with its routes. False for any other field.
    /// The object lives on with the node, as somebody may still look at it.
    bool removeField(Field& field);

    /// Never null.
    NodeType* type() const { return _type; }
    /// Null when unnamed.
    const std::string* name() const { return _name; }
    NodeState state() const { return _state; }
    /// The names among which the node's own stands; for a `Scene` those of the scene. May be null.
    NodeNameSpace* nameSpace() const { return _nameSpace; }

    /// A child was linked: first the reporting node, second the `NodeLink`, which is in its field.
    static Subject _childAdded;
    /// A child is about to be unlinked: as `_childAdded`, the link still at its place.
    static Subject _childRemoved;
    /// The node dies: first the node, whose fields, slots and name can still be read.
    static Subject _deleteObject;
    /// The node's name or name space has changed: first null, second the node.
    static Subject _nameSpaceChanged;

    struct Data;
    /// The runtime's own data.
    Data* data() const { return _data; }

protected:
    Node() = default;
    friend class NodeAccess;

    NodeType* _type = nullptr;
    const std::string* _name = nullptr;
    NodeState _state = CREATED_NS;
    NodeNameSpace* _nameSpace = nullptr;
    Data* _data = nullptr;
};

} // namespace Orvane
