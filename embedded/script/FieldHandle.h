#pragma once

#include "base/NodeRef.h"
#include "script/FieldTuples.h"
#include <Orvane/Field.h>
#include <cstddef>
#include <duktape.h>
#include <memory>
#include <vector>

namespace Orvane {

class NodePartDesc;
class ScriptHeap;

/// The value behind an object of a script: a field of a node, or a list of the script's own. Shared by the
/// objects that show it or an element of it.
class FieldHandle
{
public:
    /// A field of a living node.
    FieldHandle(ScriptHeap& heap, Field& field);
    /// An empty list of its own.
    FieldHandle(ScriptHeap& heap, NodePartDataType type);
    FieldHandle(const FieldHandle&) = delete;
    FieldHandle& operator=(const FieldHandle&) = delete;
    ~FieldHandle();

    NodePartDataType type() const { return _type; }
    bool isLive() const { return _field; }

    /// False when the node of the field has died.
    bool exists() const { return !_field || _node; }
    /// The field; null for an own list of nodes. The value must exist.
    Field* field() const { return _field ? _field : _own.get(); }

    unsigned int size() const;
    /// Node of a list of nodes, or null.
    Node* nodeAt(unsigned int index) const;
    std::vector<NodeRef> nodes() const;

    /// Gives a list another length; false when it would be longer than scripts may have them. Without event.
    bool resize(unsigned int size);
    /// Replaces a node of a list, which is long enough. False when the node does not fit. Without event.
    bool setNode(unsigned int index, Node* node);
    /// Replaces all nodes. False when one does not fit; the others are there. Without event.
    bool setNodes(const std::vector<NodeRef>& nodes);

    /// The value was changed in place: it goes out as an event of the running script.
    void changed() const;

private:
    ScriptHeap& _heap;
    const NodePartDataType _type;
    NodeRef _node;
    Field* _field = nullptr;
    std::unique_ptr<Field> _own;
    std::vector<NodeRef> _nodes;
    std::size_t _charged = 0; ///< bytes of the own list
};

/// What an object of a script shows: a value, or an element of it.
struct View
{
    std::shared_ptr<FieldHandle> value;
    unsigned int index = 0;
    bool isElement = false; ///< of a list

    bool isWholeList() const { return isList(value->type()) && !isElement; }
};

/// Pushes an object of the class on top of the stack's prototype that shows the value; pops the prototype.
View& pushView(duk_context* engine);

/// The view behind an object; null when there is none.
View* viewAt(duk_context* engine, duk_idx_t index);

/// Raises an error when the value is gone, or is not to be written by the running script.
void checkLiving(duk_context* engine, const FieldHandle& value);
void checkWritable(duk_context* engine, const FieldHandle& value);
void checkWritable(duk_context* engine, const Field& field);

} // namespace Orvane
